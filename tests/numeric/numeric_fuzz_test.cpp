// Random texts through parsing, formatting and arithmetic: values stay well formed (digits,
// then NULs to the end of the array), buffers are respected, text reads back to the value.
#include <gtest/gtest.h>
#include <numeric_value.h>

#include <algorithm>
#include <cstring>
#include <random>

TEST(NumericFuzz, RandomTextsAndArithmeticStayInBounds) {
    std::mt19937 rng(20240611);
    const auto digits = [&](std::string& s, unsigned n) { while (n--) s += static_cast<char>('0' + rng() % 10); };
    const auto wellFormed = [](const ZuNumeric& n) {
        const long length = static_cast<long>(std::strspn(n.getDigits(), "0123456789"));
        return length <= 48 && std::count(n.getDigits() + length, n.getDigits() + 49, '\0') == 49 - length;
    };
    ZuNumeric pool[64];
    int accepted = 0;
    for (int i = 0; i < 300000; ++i) {
        std::string t = std::string(" \t+-+-+-+-").substr(rng() % 10, rng() % 3);
        if (rng() % 4 == 0) { // anything from a number's alphabet and a few strangers
            for (unsigned n = rng() % 80; n > 0; --n) t += "0123456789000.eE+- \t\x01\xff"[rng() % 22];
        } else {
            digits(t, rng() % 52);
            if (rng() % 2) t += '.', digits(t, rng() % 2 ? rng() % 52 : 0);
            const int exponent = static_cast<int>(rng() % 2 ? rng() % 121 : rng() % 65601) - (rng() % 2 ? 60 : 32800);
            if (rng() % 2) t += "eE"[rng() % 2] + std::to_string(exponent);
        }
        ZuNumeric n("-7.25"), again;
        if (!n.set(t.c_str())) {
            ASSERT_STREQ(n.getDigits(), "725") << t;
            continue;
        }
        ASSERT_TRUE(wellFormed(n)) << t;
        ++accepted;
        const int size = static_cast<int>(rng() % 64);
        std::string out(80, '#');
        n.get(&out[0], size);
        ASSERT_EQ(out.find_first_not_of('#', size), std::string::npos) << t << " in " << size;
        if (again.set(text(n).c_str())) // zero padding past 48 digits does not read back
            ASSERT_TRUE(numericValue(again) == numericValue(n)) << t << " read back from " << text(n);
        else
            ASSERT_GT(n.getPointPosition(), 48) << t;
        ZuNumeric& other = pool[rng() % 64];
        const ZuNumeric sum = n + other, difference = n - other, product = n * other;
        ASSERT_TRUE(wellFormed(sum) && wellFormed(difference) && wellFormed(product)) << t;
        ASSERT_TRUE(sum.isEqualTo(other + n) && product.isEqualTo(other * n)) << t;
        ASSERT_LE(std::strlen(product.getDigits()), 47u) << t;
        other = rng() % 2 ? n : sum;
    }
    EXPECT_GT(accepted, 100000);
}
