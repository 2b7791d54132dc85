// Random texts through parsing, formatting and arithmetic: values stay well formed,
// buffers are respected, and formatting reads back to the same value.
#include <zu/numeric.h>

#include <gtest/gtest.h>
#include <numeric_value.h>

#include <algorithm>
#include <cstring>
#include <random>
#include <string>

namespace {

std::string randomText(std::mt19937& rng) {
    std::string s;
    if (rng() % 4 == 0) { // anything from a number's alphabet and a few strangers
        static const char alphabet[] = "0123456789000.eE+- \t\x01\xff";
        for (unsigned n = rng() % 80; n > 0; --n) s += alphabet[rng() % (sizeof alphabet - 1)];
        return s;
    }
    if (rng() % 8 == 0) s += ' ';
    if (rng() % 2) s += "+-"[rng() % 2];
    if (rng() % 8 == 0) s += '\t';
    for (unsigned n = rng() % 52; n > 0; --n) s += static_cast<char>('0' + rng() % 10);
    if (rng() % 2) s += '.';
    for (unsigned n = rng() % 2 ? rng() % 52 : 0; n > 0; --n) s += static_cast<char>('0' + rng() % 10);
    const int exponent = static_cast<int>(rng() % 2 ? rng() % 121 : rng() % 65601) - (rng() % 2 ? 60 : 32800);
    if (rng() % 2) s += "eE"[rng() % 2] + std::to_string(exponent);
    return s;
}

// Digits only, then NULs to the end of the array (the arithmetic reads it in words).
bool wellFormed(const ZuNumeric& n) {
    const char* d = n.getDigits();
    const size_t length = std::strspn(d, "0123456789");
    return length <= 48 && std::count(d + length, d + ZuNumeric::MaxTextDigits + 1, '\0') == 49 - static_cast<long>(length) &&
           n.getSign() <= 1;
}

} // namespace

TEST(NumericFuzz, RandomTextsAndArithmeticStayInBounds) {
    std::mt19937 rng(20240611);
    ZuNumeric pool[64];
    int accepted = 0;
    for (int i = 0; i < 300000; ++i) {
        const std::string t = randomText(rng);
        ZuNumeric n("-7.25");
        if (!n.set(t.c_str())) {
            ASSERT_STREQ(n.getDigits(), "725") << t;
            continue;
        }
        ASSERT_TRUE(wellFormed(n)) << t;
        ++accepted;
        char out[80], back[80];
        const int size = static_cast<int>(rng() % 64);
        std::memset(out, '#', sizeof out);
        n.get(out, size);
        ASSERT_EQ(std::count(out + size, out + sizeof out, '#'), static_cast<long>(sizeof out) - size) << t << " in " << size;
        n.get(back, sizeof back);
        ZuNumeric again;
        if (again.set(back)) {
            ASSERT_TRUE(numericValue(again) == numericValue(n)) << t << " read back from " << back;
        } else {
            ASSERT_GT(n.getPointPosition(), 48) << t << " gave " << back; // zero padding past 48 digits
        }
        ZuNumeric& other = pool[rng() % 64];
        const ZuNumeric sum = n + other, difference = n - other, product = n * other;
        ASSERT_TRUE(wellFormed(sum) && wellFormed(difference) && wellFormed(product)) << t;
        ASSERT_TRUE(sum.isEqualTo(other + n)) << t;
        ASSERT_TRUE(product.isEqualTo(other * n)) << t;
        ASSERT_LE(std::strlen(product.getDigits()), 47u) << t;
        other = rng() % 2 ? n : sum;
    }
    EXPECT_GT(accepted, 100000);
}
