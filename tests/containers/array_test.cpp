// ZuArray and ZuBitArray: growth and shrink rules, erase ranges, bounds.
#include <zu/alloc.h>
#include <zu/array.h>

#include <gtest/gtest.h>

#include <cstdint>
#include <vector>

namespace {

void* P(uintptr_t i) { return reinterpret_cast<void*>(i); }

void fill(ZuArray& a, unsigned n) {
    for (unsigned i = 0; i < n; ++i)
        a.add(P(i + 1));
}

std::vector<uintptr_t> contents(const ZuArray& a) {
    std::vector<uintptr_t> out;
    for (unsigned i = 0; i < a.getLength(); ++i)
        out.push_back(reinterpret_cast<uintptr_t>(a[i]));
    return out;
}

} // namespace

TEST(ArrayCapacity, GrowsByPowersOfTwoFromFour) {
    struct Case { unsigned n; bool exact; unsigned expected; };
    const Case cases[] = {{0, false, 4}, {1, false, 4}, {4, false, 4}, {5, false, 8},
                          {9, false, 16}, {16, false, 16}, {17, false, 32}, {5, true, 5},
                          {0, true, 0}};
    for (const Case& c : cases) {
        ZuArray a;
        a.setMaxLength(c.n, c.exact);
        EXPECT_EQ(a._maxLength, c.expected) << c.n << (c.exact ? " exact" : "");
        EXPECT_EQ(a._data == nullptr, c.expected == 0);
    }
    // Appending one by one walks the same capacities.
    ZuArray a;
    std::vector<unsigned> seen;
    for (unsigned i = 0; i < 33; ++i) {
        a.add(P(i));
        if (seen.empty() || seen.back() != a._maxLength)
            seen.push_back(a._maxLength);
    }
    EXPECT_EQ(seen, (std::vector<unsigned>{4, 8, 16, 32, 64}));
    // Never below the contents.
    a.setMaxLength(3, true);
    EXPECT_EQ(a._maxLength, 64u);
    a.setMaxLength(33, true);
    EXPECT_EQ(a._maxLength, 33u);
    EXPECT_EQ(a[32], P(32));
}

TEST(ArrayCapacity, ShrinksWhenAQuarterFull) {
    struct Case { unsigned values, from, to, length, capacity; };
    const Case cases[] = {
        {16, 1, 16, 1, 4},    // all but one of 16
        {16, 4, 16, 4, 4},    // exactly a quarter
        {16, 5, 16, 5, 16},   // above a quarter: no shrink
        {32, 0, 25, 7, 8},    // quarter full with 7 left
        {16, 0, 16, 0, 4},    // empty still keeps 4
    };
    for (const Case& c : cases) {
        ZuArray a;
        fill(a, c.values);
        a.erase(c.from, c.to);
        EXPECT_EQ(a._length, c.length) << c.values << " " << c.from << ".." << c.to;
        EXPECT_EQ(a._maxLength, c.capacity) << c.values << " " << c.from << ".." << c.to;
    }
}

TEST(ArrayErase, ReversedOrOutOfRangeEndErasesToTheEnd) {
    struct Case { unsigned from, to; std::vector<uintptr_t> left; };
    const Case cases[] = {
        {3, 1, {1, 2, 3}},
        {3, 11, {1, 2, 3}},
        {2, 5, {1, 2, 6, 7, 8, 9, 10}},
        {0, 0, {1, 2, 3, 4, 5, 6, 7, 8, 9, 10}},
        {10, 10, {1, 2, 3, 4, 5, 6, 7, 8, 9, 10}},
        {12, 20, {1, 2, 3, 4, 5, 6, 7, 8, 9, 10}}, // start past the end: nothing
    };
    for (const Case& c : cases) {
        ZuArray a;
        fill(a, 10);
        a.erase(c.from, c.to);
        EXPECT_EQ(contents(a), c.left) << c.from << ".." << c.to;
    }
}

TEST(ArrayInsert, PlacesValuesBeforePositionAndClampsPastTheEnd) {
    ZuArray a;
    void* first[] = {P(1), P(2), P(3)};
    a.insert(first, 3, 0);
    void* middle[] = {P(8), P(9)};
    a.insert(middle, 2, 1);
    void* last[] = {P(7)};
    a.insert(last, 1, 1000);
    a.insert(last, 0, 0); // count 0: nothing
    EXPECT_EQ(contents(a), (std::vector<uintptr_t>{1, 8, 9, 2, 3, 7}));
    EXPECT_EQ(a._maxLength, 8u);
    EXPECT_EQ(a.getIndex(P(9)), 2u);
    EXPECT_EQ(a.getIndex(P(42)), 0xFFFFFFFFu);
    EXPECT_EQ(ZuArray().getIndex(P(1)), 0xFFFFFFFFu);
    EXPECT_EQ(a[6], nullptr);
    EXPECT_FALSE(a.set(6, P(1)));
    EXPECT_TRUE(a.set(5, P(5)));
    EXPECT_EQ(a[5], P(5));
}

TEST(ArrayAdoptAndCopy, SetDataIsExactlyFullAndAssignmentCopiesCapacity) {
    ZuArray a;
    fill(a, 3);
    void** data = static_cast<void**>(ZuMalloc(7 * sizeof(void*)));
    for (int i = 0; i < 7; ++i)
        data[i] = P(100 + i);
    a.setData(data, 7, 100);
    EXPECT_EQ(a._maxLength, 7u);
    EXPECT_EQ(a._length, 7u);
    EXPECT_EQ(a[6], P(106));
    a.add(P(1)); // full: grows
    EXPECT_EQ(a._maxLength, 8u);

    ZuArray b;
    b = a;
    EXPECT_EQ(b._maxLength, 8u);
    EXPECT_EQ(contents(b), contents(a));
    EXPECT_NE(b._data, a._data);
    ZuArray empty;
    empty.setMaxLength(16, false);
    b = empty;
    EXPECT_EQ(b._data, nullptr);
    EXPECT_EQ(b._maxLength, 0u);
    b = b;
    ZuArray c(a);
    EXPECT_EQ(contents(c), contents(a));
}

TEST(BitArray, IndexEqualToLengthIsAcceptedAndBeyondIgnored) {
    ZuBitArray bits(8, false);
    bits.set(8, true); // accepted: the bit just past the last one
    EXPECT_TRUE(bits.isSet(8));
    bits.set(9, true);
    EXPECT_FALSE(bits.isSet(9));
    bits.invert(9);
    EXPECT_FALSE(bits.isSet(9));
    bits.invert(3);
    EXPECT_TRUE(bits.isSet(3));
    bits.invert(3);
    EXPECT_FALSE(bits.isSet(3));

    ZuBitArray ones(5, true);
    for (unsigned i = 0; i <= 5; ++i)
        EXPECT_TRUE(ones.isSet(i)) << i;
    EXPECT_FALSE(ones.isSet(6));
    ones.set(2, false);
    EXPECT_EQ(ones._bits[0], 0xFB);
    ZuBitArray copy(ones);
    EXPECT_FALSE(copy.isSet(2));
    EXPECT_TRUE(copy.isSet(4));
    ZuBitArray none(0, true);
    EXPECT_TRUE(none.isSet(0));
    EXPECT_FALSE(none.isSet(1));
}

TEST(BitArray, SetLengthOnlyGrowsByWholeBytes) {
    ZuBitArray bits(8, false);
    bits.setLength(6, true); // fewer bytes: nothing, not even the length
    EXPECT_EQ(bits._length, 8u);
    ZuBitArray partial(3, false);
    partial.set(1, true);
    partial.setLength(7, true); // same byte count: nothing
    EXPECT_EQ(partial._length, 3u);
    EXPECT_FALSE(partial.isSet(5));
    partial.setLength(20, true);
    EXPECT_EQ(partial._length, 20u);
    EXPECT_TRUE(partial.isSet(1));
    EXPECT_FALSE(partial.isSet(2));
    EXPECT_FALSE(partial.isSet(7)); // old last byte kept its contents
    EXPECT_TRUE(partial.isSet(8));
    EXPECT_TRUE(partial.isSet(20));
}
