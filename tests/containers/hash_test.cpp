// ZuHashTable and ZuStringHashTable: hashing, insertion and growth, shrinking after
// removal, rehashing without copying, lookups and conversions.
#include <zu/hash.h>
#include <zu/pool.h>

#include <gtest/gtest.h>

#include <cctype>
#include <cstdint>
#include <map>
#include <string>
#include <vector>

#include <strings.h>

namespace {

void* P(uintptr_t i) { return reinterpret_cast<void*>(i); }
void* S(const char* s) { return const_cast<char*>(s); }

// Every bucket's length matches its chain, each entry sits in its own bucket.
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
    const unsigned cases[][2] = {{0, 17}, {16, 17}, {17, 17}, {18, 19}, {25, 29},
                                 {10000, 9239}, {9238, 9239}, {119, 127}};
    for (const auto& c : cases)
        EXPECT_EQ(GoodPrimeNumber(c[0]), c[1]) << c[0];
    for (unsigned n = 17; n <= 9239; ++n) {
        unsigned p = GoodPrimeNumber(n);
        ASSERT_TRUE(p >= n && p <= 9239 && p % 2 && p % 3 && p % 5 && p % 7 && p % 11 && p % 13) << n;
    }
}

TEST(HashFunction, PointerAndStringHashesPickTheStatedBuckets) {
    ZuHashTable t(17);
    for (uintptr_t k : {uintptr_t(0), uintptr_t(0x12345678), uintptr_t(0xABCD00001234)}) {
        uint32_t low = static_cast<uint32_t>(k);
        EXPECT_EQ(t.hash(P(k)), (((low >> 16) ^ low) & 0xFFFF) % 17) << std::hex << k;
    }
    // "ab" = (0x61 << 4) + 0x62; 0xE9 enters as -23 = 0xFFFFFFE9, whose
    // top nibble is folded away; nine bytes overflow the top nibble too.
    ZuStringHashTable s(1000003);
    const std::pair<const char*, uint32_t> cases[] = {
        {"", 0}, {"ab", 0x672}, {"\xE9", 0x0FFFFF19}, {"aaaaaaaaa", 0x07771001}};
    for (const auto& c : cases)
        EXPECT_EQ(s.hash(S(c.first)), c.second % 1000003) << c.first;
}

TEST(HashInsert, ExistingKeyIsReplacedWithoutCounting) {
    ZuStringHashTable t(17);
    char k1[] = "key", k2[] = "key"; // two pointers, same text
    t.insert(k1, P(1));
    t.insert(k2, P(2));
    EXPECT_TRUE(t.replace(k1, P(3)) && t._count == 1 && t.find(k2, nullptr, nullptr) == P(3));
    ZuHashTable p(17);
    p.insert(k1, P(1));
    p.insert(k2, P(2));
    EXPECT_TRUE(p._count == 2 && !p.contains(P(5)));
}

TEST(HashGrowth, LoadSevenOrLongChainGrowsToNextGoodSize) {
    ZuHashTable t(17);
    for (uintptr_t k = 1; k <= 118; ++k)
        t.insert(P(k), P(k));
    EXPECT_EQ(t._size, 17u);
    t.insert(P(119), P(119));
    EXPECT_TRUE(t._size == 29 && wellFormed(t));

    // Multiples of 17 below 0x10000 all land in bucket 0 of 17.
    ZuHashTable lonely(17);
    for (uintptr_t i = 1; i <= 20; ++i)
        lonely.insert(P(17 * i), P(i)); // chain of 20 at load 1: no growth
    ZuHashTable c(17);
    for (uintptr_t k = 1; k <= 41; ++k)
        if (k % 17)
            c.insert(P(k), P(k)); // 39 keys on short chains
    for (uintptr_t i = 1; i <= 12; ++i)
        c.insert(P(17 * i), P(i)); // chain of 12 at load 3: no growth yet
    EXPECT_TRUE(lonely._size == 17 && c._count == 51 && c._size == 17);
    c.insert(P(17 * 13), P(13)); // chain of 13 at load 3
    EXPECT_EQ(c._size, 29u);

    ZuHashTable top(9239);
    for (uintptr_t k = 1; k <= 9239 * 8; ++k)
        top.insert(P(k), P(k));
    EXPECT_EQ(top._size, 9239u);
}

TEST(HashShrink, SmallTableBecomesSeventeenAfterRemoval) {
    ZuHashTable t(5);
    for (uintptr_t k = 1; k <= 11; ++k)
        t.insert(P(k), P(k));
    t.remove(P(11)); // load 2
    EXPECT_EQ(t._size, 5u);
    t.remove(P(10)); // load 1
    EXPECT_EQ(t._size, 17u);
    EXPECT_TRUE(wellFormed(t) && !t.remove(P(10)));

    ZuHashTable zero(0); // taken as one bucket
    zero.insert(P(1), P(2));
    zero.reHash(0);
    EXPECT_TRUE(zero._size == 1 && zero.find(P(1), nullptr, nullptr) == P(2) && !zero.remove(P(3)));
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
    EXPECT_TRUE(wellFormed(t));
    for (unsigned b = 0; b < t._size; ++b)
        for (ZuEntry* e = t._buckets[b]._entries; e; e = e->_next)
            EXPECT_EQ(before[e->_key], e);
    t.empty();
    EXPECT_TRUE(t._size == 101 && !t.contains(P(977)));
}

TEST(HashFind, PredicatePicksAmongEntriesAndArraysFollowMapHashOrder) {
    ZuHashTable t(17);
    t.insert(P(1), P(100));
    t.insert(P(18), P(200)); // same bucket, goes to the chain's head
    t.insert(P(2), P(300));
    auto above = [](void* v, void* arg) { return uintptr_t(v) > uintptr_t(arg); };
    EXPECT_EQ(t.find(P(1), above, P(50)), P(100));
    EXPECT_EQ(t.find(P(1), above, P(150)), nullptr);
    unsigned n = 0;
    void** values = t.convertToArray(n, true);
    ASSERT_EQ(n, 3u);
    EXPECT_EQ(std::vector<void*>(values, values + 3), (std::vector<void*>{P(200), P(100), P(300)}));
    delete[] values;
    values = t.convertToArray(n, false);
    EXPECT_TRUE(ZuPointerPool::_Pool.find(values) && values[2] == P(300));
    EXPECT_TRUE(ZuHashTable(3).convertToArray(n, true) == nullptr && n == 0);
}

TEST(StringTable, ConvertToStringsSortsAndHelpersFillCursor) {
    ZuStringHashTable t(17);
    for (const char* k : {"b", "a", "delta", "c", "alpha"})
        t.insert(S(k), nullptr);
    unsigned n = 0;
    const char** sorted = t.convertToStrings(n, true, true);
    EXPECT_EQ(std::vector<std::string>(sorted, sorted + n),
              (std::vector<std::string>{"a", "alpha", "b", "c", "delta"}));
    delete[] sorted;
    const char** pooled = t.convertToStrings(n, true, false);
    EXPECT_TRUE(n == 5 && std::string(pooled[0]) == "a" && std::string(pooled[4]) == "delta");

    const char *x = "x", *y = "y", *nil = nullptr;
    EXPECT_LT(StringCompare(&x, &y), 0);
    EXPECT_EQ(StringCompare(&x, &nil), 0);
    EXPECT_EQ(StringCompare(&nil, &y), 0);
    void* slots[2] = {nullptr, nullptr};
    void** cursor = slots;
    AddValue(P(1), P(2), &cursor);
    AddTag(P(3), P(4), &cursor);
    EXPECT_TRUE(slots[0] == P(2) && slots[1] == P(3) && cursor == slots + 2);
}

TEST(StringTable, AgreesWithStdMapUnderMixedOperations) {
    ZuStringHashTable t(3);
    std::map<std::string, uintptr_t> ref;
    std::vector<std::string> keys;
    for (int i = 0; i < 3000; ++i)
        keys.push_back("k" + std::to_string(i * 7919 % 1500));
    for (int i = 0; i < 3000; ++i) {
        if (i % 3 == 2) {
            EXPECT_EQ(t.remove(&keys[i][0]), ref.erase(keys[i]) == 1) << keys[i];
        } else {
            t.insert(&keys[i][0], P(i + 1));
            ref[keys[i]] = i + 1;
        }
    }
    EXPECT_EQ(t._count, ref.size());
    EXPECT_TRUE(wellFormed(t));
    for (const auto& kv : ref)
        ASSERT_EQ(t.find(S(kv.first.c_str()), nullptr, nullptr), P(kv.second));
}

namespace {
// Keys compared and hashed without regard to case, through the virtual slots.
class CaseBlindTable : public ZuStringHashTable {
public:
    explicit CaseBlindTable(unsigned size) : ZuStringHashTable(size) {}
    bool match(void* a, void* b) const override { return strcasecmp(static_cast<char*>(a), static_cast<char*>(b)) == 0; }
    unsigned hash(void* key) const override { return unsigned(tolower(*static_cast<char*>(key))) % _size; }
};
} // namespace

TEST(HashSubclass, OverriddenMatchAndHashDriveEveryOperation) {
    CaseBlindTable t(2);
    for (const char* k : {"Alpha", "beta", "GAMMA", "delta", "Epsilon", "zeta"})
        t.insert(S(k), S(k));
    t.insert(S("ALPHA"), S("replaced"));
    t.reHash(5);
    EXPECT_TRUE(t._count == 6 && wellFormed(t) && t.find(S("alpha"), nullptr, nullptr) == S("replaced"));
    EXPECT_TRUE(t.contains(S("Gamma")) && t.remove(S("ZETA")) && !t.contains(S("zeta")));
}
