// Sign rules, widths and the product's point position.
#include <gtest/gtest.h>
#include <numeric_value.h>

static ZuNumeric apply(const std::string& a, char op, const std::string& b) {
    const ZuNumeric x(a.c_str()), y(b.c_str());
    return op == '+' ? x + y : op == '-' ? x - y : x * y;
}

TEST(NumericArith, SignRulesIncludingSignedZero) {
    struct Case { const char* a; char op; const char* b; const char* out; } cases[] = {
        {"0.1", '+', "0.2", ".3"}, {"-5", '+', "5", "-0"}, {"5", '+', "-5", "0"}, {"-5", '-', "-5", "-0"},
        {"5", '-', "5", "0"}, {"-100", '+', "1", "-99"}, {"1", '+', "-100", "-99"}, {"100", '+', "-1", "99"},
        {"-1", '+', "100", "99"}, {"-1", '-', "-100", "99"}, {"-100", '-', "-1", "-99"}, {"-1", '-', "2", "-3"},
        {"1", '-', "-2", "3"}, {"1", '-', "2", "-1"}, {"-1", '+', "-2", "-3"}, {"1.5", '-', "1.45", ".05"},
        {"12.5", '-', "12.4", ".1"}, {"9.99", '+', "0.01", "10"}, {"-0.05", '+', "-0.01", ".06"}, {"0.5", '+', "0.5", "1"},
        {"99", '+', "1", "100"}, {"1e3", '+', "1e-3", "1000.001"}, {"1200", '-', "200", "1000"}, {"0", '+', "0", "0"},
        {"1.5", '*', "1.5", "22.5"}, {"1e2", '*', "1e2", "1"}, {"-3", '*', "4", "-12"}, {"-3", '*', "-4", "12"},
        {"0.05", '*', "3", ".15"}, {"5e-3", '*', "2", "1.0"}, {"0.001", '*', "0.001", ".00001"},
        {"1200", '*', "35", "42000"}, {"0.0", '*', "-7", "0"}};
    for (const Case& c : cases) EXPECT_EQ(text(apply(c.a, c.op, c.b)), c.out) << c.a << ' ' << c.op << ' ' << c.b;
    EXPECT_EQ(text(ZuNumeric("2.5") + 3L), "5.5");
    EXPECT_EQ(text(ZuNumeric("-7").add(ZuNumeric("2"))), "-9");
    EXPECT_EQ(text(ZuNumeric("2").sub(ZuNumeric("7.5"))), "5.5"); // smaller first: the magnitude
}

TEST(NumericArith, WidthLimitsAndTruncation) {
    const std::string nines(47, '9'), eights(46, '8');
    struct Case { std::string a; char op; std::string b, out; } cases[] = {
        {nines, '+', "1", "1" + std::string(47, '0')},           // 47 columns and a carry fit
        {"1" + nines, '+', "0", "0"}, {"1e40", '+', "1e-10", "0"}, // 48 and 51 columns: zero
        {"1e38", '-', "-1e-8", "1" + std::string(38, '0') + ".00000001"},
        {".9e32767", '+', ".1e32767", "0"}, {".5e32767", '+', ".2e32767", ".7e32767"}, // the point may not pass 32767
        {".1e-32768", '-', ".1e32767", "0"}, {".5e32767", '*', ".5e32767", "25"},
        {nines, '*', nines, std::string(46, '9') + "8" + std::string(47, '0')},       // cut to 47 digits
        {"-.88e-5", '*', "." + eights + "e-32768", "-." + std::string(46, '0') + "7"}, // cut behind 46 zeros
        {"-." + eights + "e-32768", '*', "." + eights + "e-32768", "0"}};             // nothing left
    for (const Case& c : cases) EXPECT_EQ(text(apply(c.a, c.op, c.b)), c.out) << c.a << ' ' << c.op << ' ' << c.b;
}

// Sums run on AVX-512 kernels where the processor has them; ctest runs this suite again
// with ZU_NUMERIC_PORTABLE=1 for the portable kernels. Say so when only those can run.
TEST(NumericArith, WideSumKernelsAvailable) {
    if (!__builtin_cpu_supports("avx512bw") || !__builtin_cpu_supports("avx512vbmi"))
        GTEST_SKIP() << "no AVX-512 BW/VBMI on this processor: only the portable sum kernels are tested";
}
