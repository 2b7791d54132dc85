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

// Used by a static initialiser of this program: the global pools are ready by then.
void* const s_earlyBuffer = ZuCharPool::_Pool.alloc(10, false);

} // namespace

TEST(MemoryPool, ReusesUnlockedBlocksBeforeAddingOne) {
    ZuMemoryPool pool;
    void* small = pool.alloc(1, false);
    EXPECT_EQ(capacities(pool), std::vector<unsigned>{64});
    // An unlocked block that is too small grows rather than a block being added.
    pool.alloc(65, false);
    EXPECT_EQ(capacities(pool), std::vector<unsigned>{128});
    EXPECT_EQ(pool.find(small), nullptr);

    // With every block locked, a new block goes to the head.
    void* a = pool.alloc(1, true);
    void* b = pool.alloc(100, true);
    void* c = pool.alloc(1, true);
    EXPECT_EQ(capacities(pool), (std::vector<unsigned>{64, 128, 128}));
    EXPECT_EQ(pool._blocks->_data, c);
    for (void* p : {a, b, c})
        EXPECT_EQ(pool.unLock(p), p);

    // First fit in chain order; else the largest too-small block, the later of equals.
    const struct { unsigned size; std::vector<unsigned> after; } cases[] = {
        {64, {64, 128, 128}},   // the head fits
        {100, {64, 128, 128}},  // the second block fits
        {129, {64, 128, 256}},  // the last 128 (later of two) grows
        {1000, {64, 128, 1024}}, // the 256 grows
    };
    for (const auto& t : cases) {
        void* block = nullptr;
        void* data = pool.take(block, t.size, false);
        EXPECT_EQ(pool.getData(block), data);
        EXPECT_EQ(capacities(pool), t.after) << "size " << t.size;
    }
}

TEST(MemoryPool, ReAllocGrowsOnlyWhenCapacityIsNotGreater) {
    ZuMemoryPool pool;
    void* block = nullptr;
    char* data = static_cast<char*>(pool.take(block, 10, true));
    std::strcpy(data, "kept");
    // (request, new buffer expected, capacity after)
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
    int unknown = 0;
    EXPECT_EQ(pool.reAlloc(&unknown, 10, false), nullptr);
    EXPECT_EQ(pool.grow(nullptr, 10, false), nullptr);
    // Requests a 32-bit capacity cannot hold fail instead of looping.
    EXPECT_EQ(pool.reAlloc(data, 0x90000000u, false), nullptr);
    EXPECT_EQ(Block(0x90000000u, nullptr)._size, 0u);
}

TEST(MemoryPool, LockCounts) {
    ZuMemoryPool pool;
    void* block = nullptr;
    void* data = pool.take(block, 8, true);
    Block* b = static_cast<Block*>(block);
    EXPECT_EQ(pool.lock(data), data);
    EXPECT_EQ(pool.getBlock(data), b);
    EXPECT_EQ(b->_locks, 3u);
    EXPECT_EQ(pool.release(block), data);
    EXPECT_EQ(pool.unLock(data), data);
    EXPECT_EQ(pool.unLock(data), data);
    EXPECT_EQ(pool.unLock(data), data); // never below 0
    EXPECT_EQ(b->_locks, 0u);
    int unknown = 0;
    EXPECT_EQ(pool.lock(&unknown), nullptr);
    EXPECT_EQ(pool.unLock(&unknown), nullptr);
    EXPECT_EQ(pool.getBlock(&unknown), nullptr);
    EXPECT_EQ(pool.getData(nullptr), nullptr);
    EXPECT_EQ(pool.release(nullptr), nullptr);
    pool.free();
    EXPECT_EQ(pool._blocks, nullptr);
    EXPECT_NE(pool.alloc(1, false), nullptr); // usable after free
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
             << "\t" << second << "\t\t256\t\t1\n"
             << "\t" << first << "\t\t64\t\t0\n";
    EXPECT_EQ(verbose.str(), expected.str());
}

TEST(MemoryPool, GlobalPools) {
    EXPECT_EQ(ZuCharPool::_Pool._elementSize, 1u);
    EXPECT_EQ(ZuPointerPool::_Pool._elementSize, 8u);
    EXPECT_EQ(ZuZuUIntPool::_Pool._elementSize, 4u);
    EXPECT_NE(ZuCharPool::_Pool.find(s_earlyBuffer), nullptr);
}
