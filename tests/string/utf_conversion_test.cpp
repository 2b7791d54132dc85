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
    return p ? Bytes(p, p + length) : Bytes();
}

Units toUtf16(const Bytes& bytes, unsigned count) {
    unsigned length = 99;
    const unsigned short* p = ZuI18n::Utf8ToUtf16(length, count, bytes.data());
    EXPECT_EQ(length % 2, 0u);
    return p ? Units(p, p + length / 2) : Units();
}

// UTF-16 (host order) to UTF-8 by the C library's converter.
Bytes iconvUtf8(const Units& units) {
    iconv_t cd = iconv_open("UTF-8", "UTF-16LE");
    Bytes out(units.size() * 3 + 1);
    char* in = reinterpret_cast<char*>(const_cast<unsigned short*>(units.data()));
    char* to = reinterpret_cast<char*>(out.data());
    size_t inLeft = units.size() * 2, outLeft = out.size();
    size_t rc = iconv(cd, &in, &inLeft, &to, &outLeft);
    iconv_close(cd);
    EXPECT_NE(rc, size_t(-1));
    out.resize(out.size() - outLeft);
    return out;
}

} // namespace

TEST(Utf16ToUtf8, EncodesUnitsAndPairsNotEndingTheInput) {
    const struct { Units in; Bytes out; } cases[] = {
        {{0x41}, {0x41}},
        {{0xE9}, {0xC3, 0xA9}},
        {{0x20AC}, {0xE2, 0x82, 0xAC}},
        {{0x7F, 0x80, 0x7FF, 0x800, 0xFFFF},
         {0x7F, 0xC2, 0x80, 0xDF, 0xBF, 0xE0, 0xA0, 0x80, 0xEF, 0xBF, 0xBF}},
        {{0xD83D, 0xDE00, 0x41}, {0xF0, 0x9F, 0x98, 0x80, 0x41}},
        {{0xDBFF, 0xDFFF, 0}, {0xF4, 0x8F, 0xBF, 0xBF, 0}},
        // A pair ending the input is deliberately not combined.
        {{0xD83D, 0xDE00}, {0xED, 0xA0, 0xBD, 0xED, 0xB8, 0x80}},
        {{0x41, 0xD83D, 0xDE00}, {0x41, 0xED, 0xA0, 0xBD, 0xED, 0xB8, 0x80}},
        // Unpaired halves are encoded as their own code points.
        {{0xDC00, 0x41}, {0xED, 0xB0, 0x80, 0x41}},
        {{0xD800, 0x41, 0x42}, {0xED, 0xA0, 0x80, 0x41, 0x42}},
    };
    for (const auto& c : cases)
        EXPECT_EQ(toUtf8(c.in), c.out) << "first unit " << std::hex << c.in[0];
}

TEST(Utf8ToUtf16, DecodesWithoutValidating) {
    const struct { Bytes in; unsigned count; Units out; } cases[] = {
        {{0x41, 0x00, 0x7F}, 3, {0x41, 0x00, 0x7F}},
        {{0xC3, 0xA9}, 2, {0xE9}},
        {{0xE2, 0x82, 0xAC, 0x41}, 4, {0x20AC, 0x41}},
        // Beyond the Basic Multilingual Plane: one U+FFFD, no surrogate pair.
        {{0xF0, 0x9F, 0x98, 0x80}, 4, {0xFFFD}},
        {{0xFC, 0x84, 0x80, 0x80, 0x80, 0x80}, 6, {0xFFFD}},
        // Continuation bytes are not checked: (0xC3 << 6) + 'A' - 0x3080.
        {{0xC3, 0x41, 0x42}, 3, {0x81, 0x42}},
        // A stray continuation byte is taken as a one-byte sequence.
        {{0x80}, 1, {0x80}},
        // Bytes cut off by count read as 0, whatever follows in memory.
        {{0xC3, 0xA9}, 1, {0x40}},
        {{0xE2, 0x82, 0xAC}, 2, {0x2000}},
    };
    for (const auto& c : cases)
        EXPECT_EQ(toUtf16(c.in, c.count), c.out) << "lead byte " << std::hex << int(c.in[0]);
}

TEST(Utf8ToUtf16, NullTextOrZeroCountGiveNothing) {
    unsigned length = 5;
    const unsigned short units[] = {0x41};
    const unsigned char bytes[] = {0x41};
    EXPECT_EQ(ZuI18n::Utf16ToUtf8(length, 1, nullptr), nullptr);
    EXPECT_EQ(length, 0u);
    length = 5;
    EXPECT_EQ(ZuI18n::Utf16ToUtf8(length, 0, units), nullptr);
    EXPECT_EQ(length, 0u);
    length = 5;
    EXPECT_EQ(ZuI18n::Utf8ToUtf16(length, 1, nullptr), nullptr);
    EXPECT_EQ(length, 0u);
    length = 5;
    EXPECT_EQ(ZuI18n::Utf8ToUtf16(length, 0, bytes), nullptr);
    EXPECT_EQ(length, 0u);
}

TEST(Utf16ToUtf8, AgreesWithIconvAndRoundTrips) {
    std::mt19937 rng(11);
    for (int round = 0; round < 50; ++round) {
        Units text;
        size_t size = 1 + rng() % 3000; // long texts grow the pool block many times
        while (text.size() < size) {
            unsigned u = rng() % 0x10000;
            if (u >= 0xD800 && u <= 0xDFFF)
                text.insert(text.end(), {static_cast<unsigned short>(0xD800 | (u & 0x3FF)),
                                         static_cast<unsigned short>(0xDC00 | (rng() & 0x3FF))});
            else
                text.push_back(static_cast<unsigned short>(u));
        }
        text.push_back(0x2E); // pairs never end the input here
        Bytes utf8 = toUtf8(text);
        ASSERT_EQ(utf8, iconvUtf8(text)) << "round " << round;
        // Back to UTF-16, pairs come back as U+FFFD.
        Units expected;
        for (size_t i = 0; i < text.size(); ++i) {
            bool pair = text[i] >= 0xD800 && text[i] <= 0xDBFF;
            expected.push_back(pair ? 0xFFFD : text[i]);
            i += pair;
        }
        ASSERT_EQ(toUtf16(utf8, unsigned(utf8.size())), expected) << "round " << round;
    }
}

TEST(Utf8ToUtf16, ResultIsAnUnlockedBlockOfTheBytePool) {
    const unsigned char text[] = {0x41, 0x42};
    unsigned length = 0;
    unsigned short* first = ZuI18n::Utf8ToUtf16(length, 2, text);
    ZuMemoryPool::Block* block = ZuCharPool::_Pool.find(first);
    ASSERT_NE(block, nullptr);
    EXPECT_EQ(block->_locks, 0u);
    // Valid only until the pool's next use: the same block serves the next call.
    const unsigned short units[] = {0x43};
    unsigned char* second = ZuI18n::Utf16ToUtf8(length, 1, units);
    EXPECT_EQ(static_cast<void*>(second), static_cast<void*>(first));
    EXPECT_EQ(block->_locks, 0u);
}
