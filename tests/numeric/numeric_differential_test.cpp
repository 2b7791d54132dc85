// +, - and * against exact results from Python's decimal module (precision 200), read from
// tests/data/numeric_vectors.txt as written by tests/numeric/gen_vectors.py. Both sides are
// compared as NumericValue (sign, significant digits, power of ten), whatever the holding.
// Where the library differs on purpose, a rule decides, not a list:
// - operands spanning 48 or more aligned columns give zero for + and - (checked);
// - no sign is compared for an exact zero (equal magnitudes may give a zero with its sign
//   set), nor for a result held with a leading zero digit (it counts as zero, and addition
//   clears the sign of such results);
// - a product keeps its 47 leading places, counting the zeros put before it when the point
//   rule gives a negative sum: only those digits are compared;
// - a product's point is exact only for integer operands held with all their digits (point
//   position = digit count): its power of ten is compared only there.
#include <gtest/gtest.h>
#include <numeric_value.h>

#include <algorithm>
#include <fstream>

static NumericValue ofText(const std::string& t) { // [-]int[.frac][E[+|-]x]
    const size_t start = t[0] == '-' ? 1 : 0, e = t.find_first_of("Ee");
    std::string digits = t.substr(start, e - start);
    const size_t dot = digits.find('.');
    const int integerDigits = static_cast<int>(dot == std::string::npos ? digits.size() : dot);
    if (dot != std::string::npos) digits.erase(dot, 1);
    return numericValue(start == 1, digits, integerDigits + (e == std::string::npos ? 0 : std::stoi(t.substr(e + 1))));
}

TEST(NumericDifferential, MatchesExactDecimalResults) {
    std::ifstream in(ZU_TEST_DATA_DIR "/numeric_vectors.txt");
    ASSERT_TRUE(in.good());
    std::string a, b, sum, difference, product;
    int lines = 0, tooWide = 0, exactProducts = 0;
    while (in >> a >> b >> sum >> difference >> product) {
        ++lines;
        ZuNumeric x, y;
        ASSERT_TRUE(x.set(a.c_str()) && y.set(b.c_str())) << a << ' ' << b;
        const int px = x.getPointPosition(), py = y.getPointPosition();
        const int nx = static_cast<int>(std::string(x.getDigits()).size()), ny = static_cast<int>(std::string(y.getDigits()).size());
        const bool wide = std::max(px, py) + std::max(nx - px, ny - py) >= 48;
        for (const auto& [got, expected] : {std::make_pair(x + y, sum), std::make_pair(x - y, difference)}) {
            const auto [negative, digits, exponent] = numericValue(got);
            const auto [wantNegative, wantDigits, wantExponent] = ofText(expected);
            tooWide += wide;
            EXPECT_EQ(digits, wide ? "" : wantDigits) << a << " with " << b << " = " << expected;
            EXPECT_EQ(exponent, wide ? 0 : wantExponent) << a << " with " << b << " = " << expected;
            if (!wide && !wantDigits.empty() && !got.isZero()) { EXPECT_EQ(negative, wantNegative) << a << ", " << b; }
        }
        const auto [negative, digits, exponent] = numericValue(x * y);
        const auto [wantNegative, wantDigits, wantExponent] = ofText(product);
        const int places = std::max(0, 47 - std::max(0, -((px >= 1 ? px : 1 - nx) + (py >= 1 ? py : 1 - ny))));
        EXPECT_EQ(digits, std::get<1>(numericValue(false, wantDigits.substr(0, places), 0))) << a << " * " << b;
        EXPECT_EQ(negative, wantNegative) << a << " * " << b;
        if (px == nx && py == ny) { EXPECT_EQ(exponent, wantExponent) << a << " * " << b; }
        exactProducts += px == nx && py == ny;
    }
    EXPECT_GE(lines, 2000);
    EXPECT_GE(exactProducts, 500);
    EXPECT_GT(tooWide, 0);
}
