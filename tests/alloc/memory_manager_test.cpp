// The manager's switches are read once per process, so every scenario runs in a
// fresh child process (death-test style "threadsafe" re-executes the program).
#include <zu/alloc.h>

#include <gtest/gtest.h>

#include <cstdlib>
#include <cstring>
#include <iostream>
#include <random>
#include <sstream>
#include <vector>

namespace {

std::string report(uint64_t allocated, uint64_t used) {
    return "STATUS OF SMALL CELLS MEMORY:\nCURRENTLY ALLOCATED MEMORY " + std::to_string(allocated) +
           " BYTES.\nCURRENTLY USED MEMORY " + std::to_string(used) + " BYTES.\n";
}

std::string status() {
    std::ostringstream os;
    ZuMemoryManager::GetInstance()->status(os);
    return os.str();
}

void setSwitches(const char* manager, const char* trace) {
    manager ? setenv("ZU_MEMORYMANAGER", manager, 1) : unsetenv("ZU_MEMORYMANAGER");
    trace ? setenv("ZU_TRACEMEMORYMANAGER", trace, 1) : unsetenv("ZU_TRACEMEMORYMANAGER");
}

// Runs body in a fresh process with the given switches; the child exits with 0 when
// body returns true.
#define EXPECT_IN_CHILD(manager, trace, ...)                                                \
    do {                                                                                    \
        GTEST_FLAG_SET(death_test_style, "threadsafe");                                     \
        EXPECT_EXIT(                                                                        \
            {                                                                               \
                setSwitches(manager, trace);                                                \
                std::exit((__VA_ARGS__)() ? 0 : 1);                                         \
            },                                                                              \
            ::testing::ExitedWithCode(0), "")                                               \
            << "ZU_MEMORYMANAGER=" << (manager ? manager : "(unset)")                       \
            << " ZU_TRACEMEMORYMANAGER=" << (trace ? trace : "(unset)");                    \
    } while (0)

// True when two 8-byte requests come from the manager (counted as used cells).
bool cellsServed() {
    ZuMemoryManager* m = ZuMemoryManager::GetInstance();
    void* a = m->alloc(8);
    void* b = m->alloc(8);
    bool served = status() == report(4096, 16);
    m->release(a, 8);
    m->release(b, 8);
    return served;
}

} // namespace

TEST(MemoryManager, SwitchIsReadOnceAndIgnoresCase) {
    const struct { const char* value; bool on; } cases[] = {
        {nullptr, false}, {"no", false}, {"1", false}, {"on", false}, {"truee", false},
        {"true", true},   {"TRUE", true}, {"yes", true}, {"YeS", true},
    };
    for (const auto& c : cases) {
        EXPECT_IN_CHILD(c.value, "update", [&] {
            // With the switch off, nothing is counted: both requests went to ZuMalloc.
            if (cellsServed() != c.on)
                return false;
            // Changing the variable after first use has no effect.
            setenv("ZU_MEMORYMANAGER", c.on ? "no" : "yes", 1);
            return cellsServed() == c.on;
        });
    }
}

TEST(MemoryManager, TraceModeIsReadOnceAndIgnoresCase) {
    const struct { const char* value; unsigned mode; } cases[] = {
        {nullptr, 0}, {"no", 0}, {"updates", 0}, {"update", 1}, {"UpDate", 1},
        {"true", 3},  {"Yes", 3},
    };
    for (const auto& c : cases) {
        EXPECT_IN_CHILD("yes", c.value, [&] {
            unsigned first = ZuMemoryManagerStats::GetTraceMode();
            setenv("ZU_TRACEMEMORYMANAGER", c.mode ? "no" : "yes", 1);
            ZuMemoryManager::GetInstance();
            return first == c.mode && ZuMemoryManagerStats::GetTraceMode() == c.mode &&
                   ZuMemoryManagerStats::Trace == c.mode;
        });
    }
}

TEST(MemoryManager, FullTraceReportsEveryCountedEvent) {
    EXPECT_IN_CHILD("yes", "TRUE", [] {
        std::ostringstream captured;
        std::streambuf* old = std::cerr.rdbuf(captured.rdbuf());
        ZuMemoryManager* m = ZuMemoryManager::GetInstance();
        void* p = m->alloc(20); // requested, then used
        m->release(p, 20);      // used
        void* big = m->alloc(100); // requested only: large blocks are not cells
        std::cerr.rdbuf(old);
        m->release(big, 100);
        return captured.str() == report(4096, 0) + report(4096, 24) + report(4096, 0) +
                                     report(4096, 0);
    });
}

TEST(MemoryManager, CellClassesAndReuse) {
    EXPECT_IN_CHILD("yes", "update", [] {
        ZuMemoryManager* m = ZuMemoryManager::GetInstance();
        bool ok = status() == report(4096, 0);
        // (size released, size asked next, same cell expected)
        const struct { size_t freed, asked; bool same; } cases[] = {
            {1, 8, true},   {8, 1, true},   {24, 17, true}, {24, 16, false},
            {64, 57, true}, {56, 64, false}, {0, 8, true},   {8, 0, true},
        };
        for (const auto& c : cases) {
            void* p = m->alloc(c.freed);
            m->release(p, c.freed);
            void* q = m->alloc(c.asked);
            ok = ok && (p == q) == c.same && reinterpret_cast<uintptr_t>(q) % 8 == 0;
            m->release(q, c.asked);
        }
        // 65 bytes and more bypass the cells.
        void* big = m->alloc(65);
        ok = ok && status() == report(4096, 0);
        m->release(big, 65);
        return ok && status() == report(4096, 0);
    });
}

TEST(MemoryManager, ChunkTailBecomesAFreeCellAndChunksDouble) {
    EXPECT_IN_CHILD("yes", "update", [] {
        ZuMemoryManager* m = ZuMemoryManager::GetInstance();
        char* first = static_cast<char*>(m->alloc(64));
        for (int i = 1; i < 63; ++i)
            m->alloc(64);
        char* last = static_cast<char*>(m->alloc(56)); // 8 bytes of the chunk left
        bool ok = last == first + 63 * 64;
        char* fresh = static_cast<char*>(m->alloc(16)); // opens an 8192-byte chunk
        ok = ok && status() == report(4096 + 8192, 4088 + 16);
        ok = ok && m->alloc(8) == last + 56 && m->alloc(8) == fresh + 16;
        while (status().find(" 12288 ") != std::string::npos)
            m->alloc(64);
        return ok && status().find(" " + std::to_string(4096 + 8192 + 16384) + " ") !=
                         std::string::npos;
    });
}

TEST(MemoryManager, RandomTrafficNeverOverlapsCells) {
    EXPECT_IN_CHILD("yes", nullptr, [] {
        ZuMemoryManager* m = ZuMemoryManager::GetInstance();
        std::mt19937 rng(7);
        struct Live { unsigned char* p; size_t size; unsigned char fill; };
        std::vector<Live> live;
        for (int step = 0; step < 200000; ++step) {
            if (live.empty() || rng() % 5 < 3) {
                size_t size = rng() % 81;
                auto* p = static_cast<unsigned char*>(m->alloc(size));
                auto fill = static_cast<unsigned char>(step);
                std::memset(p, fill, size);
                live.push_back({p, size, fill});
                continue;
            }
            size_t i = rng() % live.size();
            for (size_t k = 0; k < live[i].size; ++k)
                if (live[i].p[k] != live[i].fill)
                    return false;
            m->release(live[i].p, live[i].size);
            live[i] = live.back();
            live.pop_back();
        }
        for (const Live& l : live)
            m->release(l.p, l.size);
        return true;
    });
}

TEST(AllocEntryPoints, MemMoveAndRealloc) {
    char buffer[] = "abcdef";
    EXPECT_EQ(ZuMemMove(nullptr, nullptr, 0), nullptr);
    EXPECT_EQ(ZuMemMove(buffer, nullptr, 0), buffer);
    EXPECT_EQ(ZuMemMove(buffer + 1, buffer, 4), buffer + 1); // overlapping
    EXPECT_STREQ(buffer, "aabcdf");
    char* p = static_cast<char*>(ZuMalloc(4));
    ASSERT_NE(p, nullptr);
    std::memcpy(p, "xyz", 4);
    p = static_cast<char*>(ZuRealloc(p, 4096));
    ASSERT_NE(p, nullptr);
    EXPECT_STREQ(p, "xyz");
    ZuFree(p);
    ZuFree(nullptr);
}
