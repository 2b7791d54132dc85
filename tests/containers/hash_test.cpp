// ZuHashTable and ZuStringHashTable: hashing, insertion and growth, shrinking after
// removal, rehashing without copying, lookups and conversions.
#include <zu/hash.h>
#include <zu/pool.h>

#include <gtest/gtest.h>

#include <cstdint>
#include <cstring>
#include <map>
#include <set>
#include <string>
#include <vector>

namespace {

void* P(uintptr_t i) { return reinterpret_cast<void*>(i); }

// Reference ELF-style hash with bytes entering sign-extended.
uint32_t referenceStringHash(const std::string& s) {
    uint32_t h = 0;
    for (char ch : s) {
        h = (h << 4) + static_cast<uint32_t>(static_cast<int>(static_cast<signed char>(ch)));
        uint32_t g = h & 0xF0000000u;
        if (g)
            h ^= g >> 24;
        h &= ~g;
    }
    return h;
}

unsigned longestChain(const ZuHashTable& t) {
    unsigned longest = 0;
    for (unsigned b = 0; b < t._size; ++b)
        longest = std::max(longest, t._buckets[b]._length);
    return longest;
}

// Checks that every bucket's length matches its chain and each entry sits in its bucket.
bool wellFormed(const ZuHashTable& t) {
    unsigned total = 0;
    for (unsigned b = 0; b < t._size; ++b) {
        unsigned n = 0;
        for (ZuEntry* e = t._buckets[b]._entries; e; e = e->_next, ++n)
            if (t.hash(e->_key) != b)
                return false;
        if (n != t._buckets[b]._length)
            return false;
        total += n;
    }
    return total == t._count;
}

} // namespace

TEST(HashPrime, GoodPrimeNumberSkipsSmallFactorsWithinBounds) {
    const unsigned cases[][2] = {{0, 17}, {16, 17}, {17, 17}, {18, 19}, {25, 29}, {27, 29},
                                 {10000, 9239}, {9239, 9239}, {9238, 9239}, {119, 127}};
    for (const auto& c : cases)
        EXPECT_EQ(GoodPrimeNumber(c[0]), c[1]) << c[0];
    for (unsigned n = 17; n <= 9239; ++n) {
        unsigned p = GoodPrimeNumber(n);
        ASSERT_TRUE(p >= n && p <= 9239 && p % 2 && p % 3 && p % 5 && p % 7 && p % 11 && p % 13) << n;
    }
}

TEST(HashFunction, PointerAndStringHashesPickTheStatedBuckets) {
    ZuHashTable t(17);
    const uintptr_t keys[] = {0, 1, 0x12345678, 0xFFFF0000, 0xABCD00001234, 0x10001};
    for (uintptr_t k : keys) {
        uint32_t low = static_cast<uint32_t>(k);
        EXPECT_EQ(t.hash(P(k)), (((low >> 16) ^ low) & 0xFFFF) % 17) << std::hex << k;
    }
    ZuStringHashTable s(1000003);
    const char* words[] = {"", "a", "hello", "a rather longer key that overflows",
                           "\xC3\xA9t\xC3\xA9", "\xFF\xFF\xFF\xFF\xFF\xFF\xFF\xFF"};
    for (const char* w : words)
        EXPECT_EQ(s.hash(const_cast<char*>(w)), referenceStringHash(w) % 1000003) << w;
    // The sign extension is visible: 0xE9 enters as -23 (0xFFFFFFE9, then folded), not 233.
    EXPECT_EQ(s.hash(const_cast<char*>("\xE9")), 0x0FFFFF19u % 1000003);
    EXPECT_EQ(s.hash(nullptr), 0u);
}

TEST(HashInsert, ExistingKeyIsReplacedWithoutCounting) {
    ZuStringHashTable t(17);
    char k1[] = "key";
    char k2[] = "key"; // another pointer, same text
    t.insert(k1, P(1));
    t.insert(k2, P(2));
    EXPECT_EQ(t._count, 1u);
    EXPECT_EQ(t.find(k1, nullptr, nullptr), P(2));
    EXPECT_TRUE(t.replace(k1, P(3)));
    EXPECT_EQ(t._count, 1u);
    EXPECT_EQ(t.find(k2, nullptr, nullptr), P(3));

    ZuHashTable p(17);
    p.insert(k1, P(1));
    p.insert(k2, P(2)); // pointers differ: two keys
    EXPECT_EQ(p._count, 2u);
    EXPECT_TRUE(p.contains(k1));
    EXPECT_FALSE(p.contains(P(5)));
}

TEST(HashGrowth, LoadSevenOrLongChainGrowsToNextGoodSize) {
    ZuHashTable t(17);
    for (uintptr_t k = 1; k <= 118; ++k)
        t.insert(P(k), P(k));
    EXPECT_EQ(t._size, 17u);
    t.insert(P(119), P(119));
    EXPECT_EQ(t._size, 29u);
    EXPECT_EQ(t._count, 119u);
    EXPECT_TRUE(wellFormed(t));
    for (uintptr_t k = 1; k <= 119; ++k)
        ASSERT_EQ(t.find(P(k), nullptr, nullptr), P(k)) << k;

    // One crowded chain: multiples of 17 below 0x10000 all hash to bucket 0 of 17.
    ZuHashTable c(17);
    for (uintptr_t i = 1; i <= 13; ++i)
        c.insert(P(17 * i), P(i));
    for (uintptr_t k = 1; k <= 40; ++k)
        if (k % 17)
            c.insert(P(k), P(k)); // short chains: no growth even at load 3
    EXPECT_EQ(c._count, 51u);
    EXPECT_EQ(c._size, 17u);
    c.insert(P(17 * 14), P(14)); // chain of 14 with load 3
    EXPECT_EQ(c._size, 29u);
    EXPECT_TRUE(wellFormed(c));

    // A chain longer than 12 alone does not grow the table while the load is 2 or less.
    ZuHashTable lonely(17);
    for (uintptr_t k = 17; k <= 17 * 20; k += 17)
        lonely.insert(P(k), P(k));
    EXPECT_EQ(lonely._size, 17u);
    EXPECT_EQ(longestChain(lonely), 20u);

    ZuHashTable top(9239);
    for (uintptr_t k = 1; k <= 9239 * 8; ++k)
        top.insert(P(k), P(k));
    EXPECT_EQ(top._size, 9239u);
}

TEST(HashShrink, SmallTableBecomesSeventeenAfterRemoval) {
    ZuHashTable t(5);
    for (uintptr_t k = 1; k <= 11; ++k)
        t.insert(P(k), P(k));
    EXPECT_EQ(t._size, 5u);
    t.remove(P(11)); // 10 left: load 2
    EXPECT_EQ(t._size, 5u);
    t.remove(P(10)); // 9 left: load 1
    EXPECT_EQ(t._size, 17u);
    EXPECT_TRUE(wellFormed(t));
    t.remove(P(9));
    EXPECT_EQ(t._size, 17u); // above 16: never shrinks
    EXPECT_FALSE(t.remove(P(9)));
    EXPECT_FALSE(t.remove(P(42)));

    ZuHashTable zero(0); // taken as one bucket
    EXPECT_EQ(zero._size, 1u);
    EXPECT_FALSE(zero.remove(P(1)));
    EXPECT_EQ(zero.find(P(1), nullptr, nullptr), nullptr);
    zero.insert(P(1), P(2));
    EXPECT_EQ(zero.find(P(1), nullptr, nullptr), P(2));
    zero.reHash(0);
    EXPECT_EQ(zero._size, 1u);
    EXPECT_TRUE(zero.contains(P(1)));
    EXPECT_TRUE(zero.remove(P(1)));
    EXPECT_EQ(zero._size, 17u);
}

TEST(HashRehash, MovesEntriesWithoutCopyingThem) {
    ZuHashTable t(17);
    std::map<void*, ZuEntry*> before;
    for (uintptr_t k = 1; k <= 50; ++k)
        t.insert(P(k * 977), P(k));
    for (unsigned b = 0; b < t._size; ++b)
        for (ZuEntry* e = t._buckets[b]._entries; e; e = e->_next)
            before[e->_key] = e;
    t.reHash(101);
    EXPECT_EQ(t._size, 101u);
    EXPECT_TRUE(wellFormed(t));
    for (unsigned b = 0; b < t._size; ++b)
        for (ZuEntry* e = t._buckets[b]._entries; e; e = e->_next)
            EXPECT_EQ(before[e->_key], e);
    t.empty();
    EXPECT_EQ(t._count, 0u);
    EXPECT_EQ(t._size, 101u);
    EXPECT_FALSE(t.contains(P(977)));
}

TEST(HashFind, PredicatePicksAmongEqualKeysAndMapHashFollowsBuckets) {
    ZuHashTable t(17);
    // Two pointer keys, same bucket: the later one is at the chain's head.
    t.insert(P(1), P(100));
    t.insert(P(18), P(200));
    t.insert(P(2), P(300));
    auto big = [](void* v, void* arg) { return reinterpret_cast<uintptr_t>(v) > reinterpret_cast<uintptr_t>(arg); };
    EXPECT_EQ(t.find(P(1), big, P(50)), P(100));
    EXPECT_EQ(t.find(P(1), big, P(150)), nullptr);
    EXPECT_EQ(t.find(P(3), nullptr, nullptr), nullptr);

    std::vector<uintptr_t> order;
    t.mapHash([](void* k, void*, void* arg) {
        static_cast<std::vector<uintptr_t>*>(arg)->push_back(reinterpret_cast<uintptr_t>(k));
    }, &order);
    EXPECT_EQ(order, (std::vector<uintptr_t>{18, 1, 2}));
    unsigned n = 0;
    void** values = t.convertToArray(n, true);
    ASSERT_EQ(n, 3u);
    EXPECT_EQ(values[0], P(200));
    EXPECT_EQ(values[1], P(100));
    EXPECT_EQ(values[2], P(300));
    delete[] values;
    values = t.convertToArray(n, false);
    ASSERT_NE(values, nullptr);
    EXPECT_NE(ZuPointerPool::_Pool.find(values), nullptr);
    EXPECT_EQ(values[2], P(300));
    ZuHashTable none(3);
    n = 7;
    EXPECT_EQ(none.convertToArray(n, true), nullptr);
    EXPECT_EQ(n, 0u);
}

TEST(StringTable, ConvertToStringsSortsAndHelpersFillCursor) {
    ZuStringHashTable t(17);
    const char* keys[] = {"b", "a", "delta", "c", "alpha"};
    for (const char* k : keys)
        t.insert(const_cast<char*>(k), nullptr);
    unsigned n = 0;
    const char** sorted = t.convertToStrings(n, true, true);
    ASSERT_EQ(n, 5u);
    std::vector<std::string> got(sorted, sorted + n);
    EXPECT_EQ(got, (std::vector<std::string>{"a", "alpha", "b", "c", "delta"}));
    delete[] sorted;

    ZuStringHashTable two(17);
    two.insert(const_cast<char*>("b"), nullptr);
    two.insert(const_cast<char*>("a"), nullptr);
    const char** pooled = two.convertToStrings(n, true, false);
    ASSERT_EQ(n, 2u);
    EXPECT_STREQ(pooled[0], "a");
    EXPECT_STREQ(pooled[1], "b");

    const char* x = "x";
    const char* y = "y";
    const char* nil = nullptr;
    EXPECT_LT(StringCompare(&x, &y), 0);
    EXPECT_GT(StringCompare(&y, &x), 0);
    EXPECT_EQ(StringCompare(&x, &nil), 0);
    EXPECT_EQ(StringCompare(&nil, &y), 0);

    void* slots[2] = {nullptr, nullptr};
    void** cursor = slots;
    AddValue(P(1), P(2), &cursor);
    AddTag(P(3), P(4), &cursor);
    EXPECT_EQ(slots[0], P(2));
    EXPECT_EQ(slots[1], P(3));
    EXPECT_EQ(cursor, slots + 2);

    EXPECT_TRUE(t.remove(const_cast<char*>("delta")));
    EXPECT_FALSE(t.contains(const_cast<char*>("delta")));
    std::string alpha = "alpha";
    EXPECT_TRUE(t.contains(&alpha[0]));
    EXPECT_FALSE(t.match(nullptr, &alpha[0]));
    EXPECT_TRUE(t.match(nullptr, nullptr));
}

TEST(StringTable, AgreesWithStdMapUnderMixedOperations) {
    ZuStringHashTable t(3);
    std::map<std::string, uintptr_t> ref;
    std::vector<std::string> storage;
    storage.reserve(3000);
    for (int i = 0; i < 3000; ++i)
        storage.push_back("k" + std::to_string(i * 7919 % 1500));
    for (int i = 0; i < 3000; ++i) {
        std::string& k = storage[i];
        if (i % 3 == 2) {
            EXPECT_EQ(t.remove(&k[0]), ref.erase(k) == 1) << k;
        } else {
            t.insert(&k[0], P(i + 1));
            ref[k] = i + 1;
        }
    }
    EXPECT_EQ(t._count, ref.size());
    EXPECT_TRUE(wellFormed(t));
    for (const auto& kv : ref)
        ASSERT_EQ(t.find(const_cast<char*>(kv.first.c_str()), nullptr, nullptr), P(kv.second));
}
