// ZuArray and ZuBitArray: growth and shrink rules, erase ranges, bounds.
#include <zu/alloc.h>
#include <zu/array.h>

#include <gtest/gtest.h>

#include <cstdint>
#include <vector>

namespace {

void* P(uintptr_t i) { return reinterpret_cast<void*>(i); }

std::vector<uintptr_t> contents(const ZuArray& a) {
    std::vector<uintptr_t> out;
    for (unsigned i = 0; i < a.getLength(); ++i)
        out.push_back(reinterpret_cast<uintptr_t>(a[i]));
    return out;
}

ZuArray* filled(unsigned n) {
    ZuArray* a = new ZuArray;
    for (unsigned i = 0; i < n; ++i)
        a->add(P(i + 1));
    return a;
}

} // namespace

TEST(ArrayCapacity, GrowsByPowersOfTwoFromFourAndNeverBelowLength) {
    const unsigned cases[][3] = {{0, 0, 4}, {4, 0, 4}, {5, 0, 8}, {9, 0, 16}, {17, 0, 32},
                                 {5, 1, 5}, {0, 1, 0}}; // n, exact, capacity
    for (const auto& c : cases) {
        ZuArray a;
        a.setMaxLength(c[0], c[1]);
        EXPECT_EQ(a._maxLength, c[2]) << c[0] << " exact " << c[1];
        EXPECT_EQ(a._data == nullptr, c[2] == 0);
    }
    ZuArray* a = filled(33);
    EXPECT_EQ(a->_maxLength, 64u);
    a->setMaxLength(3, true); // below the length: nothing
    EXPECT_EQ(a->_maxLength, 64u);
    a->setMaxLength(33, true);
    EXPECT_TRUE(a->_maxLength == 33 && (*a)[32] == P(33));
    delete a;
}

TEST(ArrayErase, ShrinksWhenAQuarterFullAndClampsTheEnd) {
    struct Case { unsigned values, from, to, length, capacity; };
    const Case cases[] = {
        {16, 1, 16, 1, 4}, {16, 4, 16, 4, 4}, {16, 5, 16, 5, 16}, {32, 0, 25, 7, 8},
        {16, 0, 16, 0, 4}, {10, 3, 1, 3, 4},   // reversed end: to the end
        {10, 3, 11, 3, 4}, {10, 2, 5, 7, 16},  // past the end; plain middle range
        {10, 12, 20, 10, 16},                  // start past the end: nothing
    };
    for (const Case& c : cases) {
        ZuArray* a = filled(c.values);
        a->erase(c.from, c.to);
        EXPECT_EQ(a->_length, c.length) << c.values << " " << c.from << ".." << c.to;
        EXPECT_EQ(a->_maxLength, c.capacity) << c.values << " " << c.from << ".." << c.to;
        delete a;
    }
    ZuArray* a = filled(10);
    a->erase(2, 5);
    EXPECT_EQ(contents(*a), (std::vector<uintptr_t>{1, 2, 6, 7, 8, 9, 10}));
    delete a;
}

TEST(ArrayInsert, PlacesValuesBeforePositionAndFindsThem) {
    ZuArray a;
    void* first[] = {P(1), P(2), P(3)};
    void* middle[] = {P(8), P(9)};
    a.insert(first, 3, 0);
    a.insert(middle, 2, 1);
    a.insert(middle, 1, 1000); // past the end: appends
    a.insert(middle, 0, 0);
    EXPECT_EQ(contents(a), (std::vector<uintptr_t>{1, 8, 9, 2, 3, 8}));
    EXPECT_EQ(a._maxLength, 8u);
    EXPECT_EQ(a.getIndex(P(8)), 1u);
    EXPECT_EQ(a.getIndex(P(42)), 0xFFFFFFFFu);
    EXPECT_EQ(ZuArray().getIndex(P(1)), 0xFFFFFFFFu);
    // Values from the array itself, moved by the shift and freed by the growth.
    a.insert(a._data + 1, 3, 2);
    a.insert(a._data, 9, 0);
    EXPECT_EQ(contents(a), (std::vector<uintptr_t>{1, 8, 8, 9, 2, 9, 2, 3, 8, 1, 8, 8, 9, 2,
                                                   9, 2, 3, 8}));
}

TEST(ArrayAdoptAndCopy, SetDataIsExactlyFullAndAssignmentCopiesCapacity) {
    ZuArray* a = filled(3);
    void** data = static_cast<void**>(ZuMalloc(7 * sizeof(void*)));
    for (int i = 0; i < 7; ++i)
        data[i] = P(100 + i);
    a->setData(data, 7, 100);
    EXPECT_TRUE(a->_maxLength == 7 && a->_length == 7);
    a->add(P(1));
    EXPECT_EQ(a->_maxLength, 8u);

    ZuArray b;
    b = *a;
    EXPECT_TRUE(b._maxLength == 8 && contents(b) == contents(*a) && b._data != a->_data);
    delete a;
    ZuArray empty;
    empty.setMaxLength(16, false);
    b = empty;
    EXPECT_TRUE(b._data == nullptr && b._maxLength == 0);
}

TEST(BitArray, IndexEqualToLengthIsAcceptedAndBeyondIgnored) {
    ZuBitArray bits(8, false);
    bits.set(8, true); // the accepted index past the last bit
    bits.set(9, true);
    bits.invert(9);
    bits.invert(3);
    EXPECT_TRUE(bits.isSet(8) && !bits.isSet(9) && bits.isSet(3));
    ZuBitArray ones(5, true);
    ones.set(2, false);
    EXPECT_EQ(ones._bits[0], 0xFB);
    ZuBitArray copy(ones);
    EXPECT_TRUE(copy.isSet(5) && !copy.isSet(2) && !copy.isSet(6));
}

TEST(BitArray, SetLengthOnlyGrowsByWholeBytes) {
    ZuBitArray bits(8, false);
    bits.setLength(6, true);
    ZuBitArray partial(3, false);
    partial.set(1, true);
    partial.setLength(7, true); // same byte count: not even the length changes
    EXPECT_TRUE(bits._length == 8 && partial._length == 3);
    partial.setLength(20, true);
    EXPECT_EQ(partial._length, 20u);
    EXPECT_TRUE(partial.isSet(1) && !partial.isSet(7)); // old byte kept
    EXPECT_TRUE(partial.isSet(8) && partial.isSet(20)); // added bytes all ones
}
