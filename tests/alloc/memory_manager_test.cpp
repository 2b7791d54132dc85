// The manager's switches are read once per process, so every scenario runs in a
// fresh child process (death-test style "threadsafe" re-executes the program).
#include <zu/alloc.h>

#include <gtest/gtest.h>

#include <sys/resource.h>

#include <cstdlib>
#include <iostream>
#include <sstream>
#include <vector>

namespace {

std::string report(uint64_t allocated, uint64_t used) {
    return "STATUS OF SMALL CELLS MEMORY:\nCURRENTLY ALLOCATED MEMORY " + std::to_string(allocated) +
           " BYTES.\nCURRENTLY USED MEMORY " + std::to_string(used) + " BYTES.\n";
}

// The report is checked on a stream set to hexadecimal too: its counts stay decimal.
bool statusIs(uint64_t allocated, uint64_t used) {
    std::ostringstream os, hex;
    hex << std::hex;
    ZuMemoryManager::GetInstance()->status(os);
    ZuMemoryManager::GetInstance()->status(hex);
    return os.str() == report(allocated, used) && hex.str() == os.str();
}

void setSwitch(const char* name, const char* value) {
    value ? setenv(name, value, 1) : unsetenv(name);
}

// Runs the lambda in a fresh process with the given switches; passes when it returns true.
#define EXPECT_IN_CHILD(manager, trace, ...)                                                \
    GTEST_FLAG_SET(death_test_style, "threadsafe");                                         \
    EXPECT_EXIT(setSwitch("ZU_MEMORYMANAGER", manager);                                     \
                setSwitch("ZU_TRACEMEMORYMANAGER", trace);                                  \
                std::exit((__VA_ARGS__)() ? 0 : 1), ::testing::ExitedWithCode(0), "")       \
        << "ZU_MEMORYMANAGER=" << (manager ? manager : "-")                                 \
        << " ZU_TRACEMEMORYMANAGER=" << (trace ? trace : "-")

// True when an 8-byte request is counted as a cell, i.e. served by the manager.
bool cellServed() {
    ZuMemoryManager* m = ZuMemoryManager::GetInstance();
    void* p = m->alloc(8);
    bool served = statusIs(4096, 8);
    m->release(p, 8);
    return served;
}

} // namespace

TEST(MemoryManager, SwitchesAreReadOnceAndIgnoreCase) {
    const struct { const char* value; bool on; } switches[] = {
        {nullptr, false}, {"no", false}, {"truee", false}, {"true", true}, {"YeS", true},
    };
    for (const auto& c : switches) {
        EXPECT_IN_CHILD(c.value, "update", [&] {
            bool first = cellServed(); // off: the request went to ZuMalloc, uncounted
            setenv("ZU_MEMORYMANAGER", c.on ? "no" : "yes", 1);
            return first == c.on && cellServed() == c.on;
        });
    }
    const struct { const char* value; unsigned mode; } modes[] = {
        {nullptr, 0}, {"updates", 0}, {"UpDate", 1}, {"true", 3}, {"Yes", 3},
    };
    for (const auto& c : modes) {
        EXPECT_IN_CHILD("yes", c.value, [&] {
            unsigned first = ZuMemoryManagerStats::GetTraceMode();
            setenv("ZU_TRACEMEMORYMANAGER", c.mode ? "no" : "yes", 1);
            ZuMemoryManager::GetInstance();
            return first == c.mode && ZuMemoryManagerStats::GetTraceMode() == c.mode &&
                   ZuMemoryManagerStats::Trace == c.mode;
        });
    }
    // The mode in force is Trace itself, even once cells have been served without it.
    EXPECT_IN_CHILD("yes", nullptr, [] {
        ZuMemoryManager* m = ZuMemoryManager::GetInstance();
        m->release(m->alloc(8), 8);
        ZuMemoryManagerStats::Trace = 1;
        bool counted = cellServed();
        ZuMemoryManagerStats::Trace = 0;
        return counted && cellServed() == false;
    });
}

TEST(MemoryManager, FullTraceReportsEveryCountedEvent) {
    EXPECT_IN_CHILD("yes", "TRUE", [] {
        std::ostringstream captured;
        std::streambuf* old = std::cerr.rdbuf(captured.rdbuf());
        ZuMemoryManager* m = ZuMemoryManager::GetInstance();
        void* p = m->alloc(20);    // requested, then used
        m->release(p, 20);         // used
        void* big = m->alloc(100); // requested only: large blocks are not cells
        std::cerr.rdbuf(old);
        m->release(big, 100);
        return captured.str() ==
               report(4096, 0) + report(4096, 24) + report(4096, 0) + report(4096, 0);
    });
}

TEST(MemoryManager, CellClassesAndReuse) {
    EXPECT_IN_CHILD("yes", "update", [] {
        ZuMemoryManager* m = ZuMemoryManager::GetInstance();
        bool ok = statusIs(4096, 0);
        // (size released, size asked next, same cell expected)
        const struct { size_t freed, asked; bool same; } cases[] = {
            {1, 8, true}, {24, 17, true}, {24, 16, false}, {64, 57, true}, {56, 64, false},
            {0, 8, true}, {8, 0, true}};
        for (const auto& c : cases) {
            void* p = m->alloc(c.freed);
            m->release(p, c.freed);
            void* q = m->alloc(c.asked);
            ok = ok && (p == q) == c.same && reinterpret_cast<uintptr_t>(q) % 8 == 0;
            m->release(q, c.asked);
        }
        return ok && statusIs(4096, 0);
    });
}

TEST(MemoryManager, ChunkTailBecomesAFreeCellAndChunksDouble) {
    EXPECT_IN_CHILD("yes", "update", [] {
        ZuMemoryManager* m = ZuMemoryManager::GetInstance();
        char* first = static_cast<char*>(m->alloc(64));
        for (int i = 1; i < 63; ++i)
            m->alloc(64);
        char* last = static_cast<char*>(m->alloc(56)); // 8 bytes of the chunk left
        char* fresh = static_cast<char*>(m->alloc(16)); // opens an 8192-byte chunk
        bool ok = last == first + 63 * 64 && statusIs(4096 + 8192, 4088 + 16);
        ok = ok && m->alloc(8) == last + 56 && m->alloc(8) == fresh + 16;
        for (int i = 0; i < 128; ++i) // 24 + 127 * 64 bytes leave 40: the last opens a third
            m->alloc(64);
        return ok && statusIs(4096 + 8192 + 16384, 4088 + 8 + 24 + 128 * 64);
    });
}

TEST(MemoryManager, MissingFirstChunkFailsItsAssertion) {
#ifdef __SANITIZE_ADDRESS__
    GTEST_SKIP() << "an address-space limit cannot be combined with AddressSanitizer";
#endif
    auto allocWithoutFirstChunk = [] { // the heap is exhausted under a small limit
        setenv("ZU_MEMORYMANAGER", "yes", 1);
        rlimit limit{256u << 20, 256u << 20};
        setrlimit(RLIMIT_AS, &limit);
        std::vector<void*> held(1 << 20);
        for (size_t i = 0; (held[i] = std::malloc(4096)) != nullptr; ++i) {}
        ZuMemoryManager::GetInstance()->alloc(8);
    };
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    EXPECT_DEATH(allocWithoutFirstChunk(), "src/alloc:274: void\\* ZuMemoryManager::alloc"
                                           "\\(size_t\\): Assertion `\\(location != 0\\)' failed");
}

TEST(AllocEntryPoints, MemMoveWithZeroCountTouchesNothing) {
    char buffer[] = "abc";
    EXPECT_EQ(ZuMemMove(buffer, nullptr, 0), buffer);
}
