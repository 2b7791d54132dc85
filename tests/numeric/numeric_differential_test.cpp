// +, - and * against exact results from Python's decimal module (precision 200), read from
// tests/data/numeric_vectors.txt as written by tests/numeric/gen_vectors.py.
//
// Values are compared independently of how they are held: both sides are brought to
// (sign, significant digits without leading or trailing zeros, E) with value 0.DIGITS x 10^E.
// Where the library differs from the exact result on purpose, a rule decides, not a list:
// - operands spanning 48 or more aligned columns give zero for + and -, which is checked;
// - the sign is not compared when the exact result is zero (equal magnitudes may give a
//   zero with its sign set) or when the result is held with a leading zero digit (it counts
//   as zero, and addition clears the sign of such results);
// - a product keeps its 47 leading places, counting the zeros put before it when its
//   point position rule gives a negative sum, so only those digits are compared;
// - a product's point position is exact only for integer operands held with all their
//   digits (point position = digit count), so E is compared only there.
#include <zu/numeric.h>

#include <gtest/gtest.h>
#include <numeric_value.h>

#include <algorithm>
#include <fstream>
#include <string>

namespace {

NumericValue ofText(const std::string& t) { // [-]int[.frac][E[+|-]x]
    const size_t start = t[0] == '-' ? 1 : 0, e = t.find_first_of("Ee");
    std::string digits = t.substr(start, e - start);
    const size_t dot = digits.find('.');
    const int integerDigits = static_cast<int>(dot == std::string::npos ? digits.size() : dot);
    if (dot != std::string::npos) digits.erase(dot, 1);
    return numericValue(start == 1, digits, integerDigits + (e == std::string::npos ? 0 : std::stoi(t.substr(e + 1))));
}

int count(const ZuNumeric& n) { return static_cast<int>(std::string(n.getDigits()).size()); }

int contribution(const ZuNumeric& n) { return n.getPointPosition() >= 1 ? n.getPointPosition() : 1 - count(n); }

} // namespace

TEST(NumericDifferential, MatchesExactDecimalResults) {
    std::ifstream in(ZU_TEST_DATA_DIR "/numeric_vectors.txt");
    ASSERT_TRUE(in.good());
    std::string a, b, sum, difference, product;
    int lines = 0, tooWide = 0, exactProducts = 0;
    while (in >> a >> b >> sum >> difference >> product) {
        ++lines;
        ZuNumeric x, y;
        ASSERT_TRUE(x.set(a.c_str()) && y.set(b.c_str())) << a << ' ' << b;
        const int width = std::max(x.getPointPosition(), y.getPointPosition()) +
                          std::max(count(x) - x.getPointPosition(), count(y) - y.getPointPosition());
        const std::pair<ZuNumeric, std::string> results[] = {{x + y, sum}, {x - y, difference}};
        for (const auto& [got, expected] : results) {
            const NumericValue have = numericValue(got), want = ofText(expected);
            if (width >= 48) {
                EXPECT_TRUE(have.digits.empty()) << a << " with " << b;
                ++tooWide;
                continue;
            }
            EXPECT_EQ(have.digits, want.digits) << a << " with " << b << " = " << expected;
            EXPECT_EQ(have.exponent, want.exponent) << a << " with " << b << " = " << expected;
            if (!want.digits.empty() && !got.isZero()) {
                EXPECT_EQ(have.negative, want.negative) << a << " with " << b;
            }
        }
        const NumericValue have = numericValue(x * y), want = ofText(product);
        const int places = 47 - std::max(0, -(contribution(x) + contribution(y)));
        EXPECT_EQ(have.digits, numericValue(false, want.digits.substr(0, std::max(0, places)), 0).digits) << a << " * " << b;
        EXPECT_EQ(have.negative, want.negative) << a << " * " << b;
        if (x.getPointPosition() == count(x) && y.getPointPosition() == count(y)) {
            EXPECT_EQ(have.exponent, want.exponent) << a << " * " << b;
            ++exactProducts;
        }
    }
    EXPECT_GE(lines, 2000);
    EXPECT_GE(exactProducts, 500);
    EXPECT_GT(tooWide, 0);
}
