#include <zu/pool.h>

#include <gtest/gtest.h>

#include <cstring>
#include <sstream>
#include <vector>

namespace {

using Block = ZuMemoryPool::Block;

std::vector<unsigned> capacities(const ZuMemoryPool& pool) {
    std::vector<unsigned> sizes;
    for (const Block* b = pool._blocks; b; b = b->_next)
        sizes.push_back(b->_size);
    return sizes;
}

} // namespace

TEST(MemoryPool, TakeIsFirstFitThenGrowsTheLargestUnlockedBlock) {
    ZuMemoryPool pool;
    pool.alloc(1, false);
    pool.alloc(65, false); // the unlocked 64-byte block grows; no block is added
    EXPECT_EQ(capacities(pool), std::vector<unsigned>{128});
    // With every block locked, a new block goes to the head.
    void* locked[] = {pool.alloc(1, true), pool.alloc(100, true), pool.alloc(1, true)};
    EXPECT_EQ(capacities(pool), (std::vector<unsigned>{64, 128, 128}));
    for (void* p : locked)
        EXPECT_EQ(pool.unLock(p), p);
    const struct { unsigned size; std::vector<unsigned> after; } cases[] = {
        {64, {64, 128, 128}},    // the head fits
        {100, {64, 128, 128}},   // the second block fits
        {129, {64, 128, 256}},   // none fits: the later of the two 128s grows
        {1000, {64, 128, 1024}}, // the largest grows
    };
    for (const auto& t : cases) {
        pool.alloc(t.size, false);
        EXPECT_EQ(capacities(pool), t.after) << "size " << t.size;
    }
}

TEST(MemoryPool, ReAllocMovesUnlessCapacityIsGreater) {
    ZuMemoryPool pool;
    void* block = nullptr;
    char* data = static_cast<char*>(pool.take(block, 10, true));
    std::strcpy(data, "kept");
    const struct { unsigned size; bool moved; unsigned capacity; } cases[] = {
        {63, false, 64}, {64, true, 64}, {65, true, 128}, {127, false, 128}, {513, true, 1024},
    };
    for (const auto& c : cases) {
        char* again = static_cast<char*>(pool.reAlloc(data, c.size, false));
        EXPECT_EQ(again != data, c.moved) << c.size;
        EXPECT_STREQ(again, "kept");
        EXPECT_EQ(static_cast<Block*>(block)->_size, c.capacity);
        data = again;
    }
    // Requests a 32-bit capacity cannot hold fail instead of looping.
    EXPECT_EQ(pool.reAlloc(data, 0x90000000u, false), nullptr);
    EXPECT_EQ(Block(0x90000000u, nullptr)._size, 0u);
}

TEST(MemoryPool, LockCountsStopAtZeroAndForeignPointersGiveNull) {
    ZuMemoryPool pool;
    void* block = nullptr;
    void* data = pool.take(block, 8, true);
    EXPECT_EQ(pool.getBlock(pool.lock(data)), block); // 3 locks
    for (int i = 0; i < 4; ++i)
        EXPECT_EQ(i ? pool.unLock(data) : pool.release(block), data);
    EXPECT_EQ(static_cast<Block*>(block)->_locks, 0u);
    int foreign = 0;
    for (void* p : {pool.reAlloc(&foreign, 10, false), pool.lock(&foreign), pool.unLock(&foreign),
                    static_cast<void*>(pool.getBlock(&foreign)), pool.release(nullptr)})
        EXPECT_EQ(p, nullptr);
}

TEST(MemoryPool, PrintInformation) {
    ZuMemoryPool pool(8);
    void* first = pool.alloc(1, true);
    void* second = pool.alloc(200, true);
    pool.unLock(first);
    std::ostringstream terse, verbose, expected;
    pool.printInformation(terse, "X", 0);
    EXPECT_EQ(terse.str(), "--  ZuPoolOf(X)  --\t2 Blocks\n");
    pool.printInformation(verbose, "chars", 1);
    expected << "--  ZuPoolOf(chars)  --\n#2\tAddress\t\tSize\t\tLocks\n"
             << "\t" << second << "\t\t256\t\t1\n\t" << first << "\t\t64\t\t0\n";
    EXPECT_EQ(verbose.str(), expected.str());
}
