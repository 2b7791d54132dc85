#include <zu/i18n.h>
#include <zu/pool.h>

#include <gtest/gtest.h>

#include <iconv.h>

#include <random>
#include <vector>

namespace {

using Bytes = std::vector<unsigned char>;
using Units = std::vector<unsigned short>;

Bytes toUtf8(const Units& units) {
    unsigned length = 99;
    const unsigned char* p = ZuI18n::Utf16ToUtf8(length, unsigned(units.size()), units.data());
    return p ? Bytes(p, p + length) : Bytes(length);
}

Units toUtf16(const Bytes& bytes, unsigned count) {
    unsigned length = 99;
    const unsigned short* p = ZuI18n::Utf8ToUtf16(length, count, bytes.data());
    return p ? Units(p, p + length / 2) : Units(length);
}

// UTF-16 (host order) to UTF-8 by the C library's converter.
Bytes iconvUtf8(Units units) {
    iconv_t cd = iconv_open("UTF-8", "UTF-16LE");
    Bytes out(units.size() * 3);
    char *in = reinterpret_cast<char*>(units.data()), *to = reinterpret_cast<char*>(out.data());
    size_t inLeft = units.size() * 2, outLeft = out.size();
    EXPECT_NE(iconv(cd, &in, &inLeft, &to, &outLeft), size_t(-1));
    iconv_close(cd);
    out.resize(out.size() - outLeft);
    return out;
}

} // namespace

TEST(Utf16ToUtf8, CombinesOnlyPairsThatDoNotEndTheInput) {
    const struct { Units in; Bytes out; } cases[] = {
        {{0xE9, 0x20AC}, {0xC3, 0xA9, 0xE2, 0x82, 0xAC}},
        {{0xD83D, 0xDE00, 0x41}, {0xF0, 0x9F, 0x98, 0x80, 0x41}},
        {{0xD83D, 0xDE00}, {0xED, 0xA0, 0xBD, 0xED, 0xB8, 0x80}}, // ends the input
        {{0xDC00, 0xD800, 0x41}, {0xED, 0xB0, 0x80, 0xED, 0xA0, 0x80, 0x41}}, // unpaired
        {{}, {}},
    };
    for (const auto& c : cases)
        EXPECT_EQ(toUtf8(c.in), c.out) << ::testing::PrintToString(c.in);
}

TEST(Utf8ToUtf16, DecodesWithoutValidating) {
    const struct { Bytes in; unsigned count; Units out; } cases[] = {
        {{0xC3, 0xA9, 0xE2, 0x82, 0xAC}, 5, {0xE9, 0x20AC}},
        {{0xF0, 0x9F, 0x98, 0x80}, 4, {0xFFFD}},   // beyond the BMP, no pair
        {{0xC3, 0x41, 0x42}, 3, {0x81, 0x42}},     // (0xC3 << 6) + 'A' - 0x3080
        {{0xC3, 0xA9}, 1, {0x40}},                 // bytes past count read as 0
        {{0xE2, 0x82, 0xAC}, 2, {0x2000}},
        {{0x41}, 0, {}},
    };
    for (const auto& c : cases)
        EXPECT_EQ(toUtf16(c.in, c.count), c.out) << ::testing::PrintToString(c.in);
    unsigned length = 5;
    EXPECT_EQ(ZuI18n::Utf8ToUtf16(length, 1, nullptr), nullptr);
    EXPECT_EQ(ZuI18n::Utf16ToUtf8(length, 1, nullptr), nullptr);
    EXPECT_EQ(length, 0u);
}

TEST(Utf16ToUtf8, AgreesWithIconvAndRoundTrips) {
    std::mt19937 rng(11);
    for (int round = 0; round < 50; ++round) {
        Units text, back(1 + rng() % 3000); // back: the BMP units Utf8ToUtf16 gives back
        for (unsigned short& u : back) {     // surrogate values stand for a whole pair
            u = static_cast<unsigned short>(rng());
            if (u < 0xD800 || u > 0xDFFF) {
                text.push_back(u);
                continue;
            }
            text.push_back(static_cast<unsigned short>(0xD800 | (u & 0x3FF)));
            text.push_back(static_cast<unsigned short>(0xDC00 | (rng() & 0x3FF)));
            u = 0xFFFD;
        }
        text.push_back('.'), back.push_back('.'); // no pair ends the input
        Bytes utf8 = toUtf8(text);
        ASSERT_EQ(utf8, iconvUtf8(text)) << "round " << round;
        ASSERT_EQ(toUtf16(utf8, unsigned(utf8.size())), back) << "round " << round;
    }
}

TEST(Utf8ToUtf16, ResultIsAnUnlockedBlockOfTheBytePool) {
    const unsigned char text[] = {0x41, 0x42};
    unsigned length = 0;
    unsigned short* result = ZuI18n::Utf8ToUtf16(length, 2, text);
    ZuMemoryPool::Block* block = ZuCharPool::_Pool.find(result);
    ASSERT_EQ(block ? block->_locks : 1, 0u);
    // Valid only until the pool's next use: the same block serves the next call.
    EXPECT_EQ(static_cast<void*>(ZuI18n::Utf8ToUtf16(length, 1, text)), block->_data);
    // A result converted straight back is neither overwritten nor moved while read.
    const Bytes euros = toUtf8(Units(500, 0x20AC));
    unsigned short* units = ZuI18n::Utf8ToUtf16(length, unsigned(euros.size()), euros.data());
    const unsigned char* utf8 = ZuI18n::Utf16ToUtf8(length, length / 2, units);
    EXPECT_EQ(Bytes(utf8, utf8 + length), euros);
}
