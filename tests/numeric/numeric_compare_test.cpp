// Comparison, scale, digit areas and conversions to C numbers.
#include <zu/numeric.h>

#include <gtest/gtest.h>

#include <clocale>
#include <cstdlib>
#include <string>
#include <unistd.h>

static std::string text(const ZuNumeric& n) {
    char out[64];
    n.get(out, sizeof out);
    return out;
}

TEST(NumericCompare, EqualityAndOrderFollowTheHeldDigits) {
    struct Case { const char* a; const char* b; bool equal; bool greater; } cases[] = {
        {"1.0", "1", true, true},   {"1", "2", false, false},     {"0", "0.0", true, true},
        {"-100", "-1", false, true}, {"-1", "-100", false, false}, {"-1", "1", false, false},
        {"1", "-1", false, true},   {"0.0", "-3", false, true},   {"10", "1e1", true, true},
        {"1e1", "10", true, false}, {"2", "10", false, false},    {"0.05", "5e-2", false, true},
        {"0.5", "5e-2", false, true}, {"1.25", "1.3", false, false}, {"1.3", "1.25", false, true},
        {"-2.5", "-2.5", true, true}, {"7", "-7", false, true},   {"0.05", "0", true, true}};
    for (const Case& c : cases) {
        const ZuNumeric a(c.a), b(c.b);
        EXPECT_EQ(a.isEqualTo(b), c.equal) << c.a << " == " << c.b;
        EXPECT_EQ(a.isGreaterThan(b), c.greater) << c.a << " > " << c.b;
    }
    const ZuNumeric full(("-." + std::string(48, '3') + "e2").c_str());
    EXPECT_TRUE(full.isGreaterThan(full));
    EXPECT_EQ(text(ZuNumeric("-3.5").abs()), "3.5");
}

TEST(NumericCompare, IntegerRuleStopsAtTenDigits) {
    struct Case { const char* in; bool integer; } cases[] = {
        {"1", true},           {"-42", true},          {"123456789", true}, {"1e8", true},
        {"12e2", true},        {"2147483647", true},   {"1e9", true},       {"21474836471e-1", false},
        {"2147483648", false}, {"3e9", false},         {"1e10", false},     {"1.5", false},
        {"0", false},          {"0.0", false},         {".5", false},       {"5e-3", false}};
    for (const Case& c : cases) {
        EXPECT_EQ(ZuNumeric(c.in).isInteger(), c.integer) << c.in;
        EXPECT_EQ(ZuNumeric(c.in).isReal(), !c.integer) << c.in;
    }
}

TEST(NumericScale, ReadsDigitsAsScaledInteger) {
    struct Case { short scale; const char* out; } cases[] = {
        {2, "123.45"}, {7, ".0012345"}, {0, "12345"}, {5, ".12345"}, {-3, "12345000"},
        {48, ".000000000000000000000000000000000000000000012345"}, {60, ".12345e-55"}};
    for (const Case& c : cases) {
        ZuNumeric n(12345L);
        n.setScale(c.scale);
        EXPECT_EQ(text(n), c.out) << c.scale;
    }
    ZuNumeric top(12L);
    top.setScale(-32766); // position 32768 is out of range: unchanged
    EXPECT_EQ(top.getPointPosition(), 2);
    top.setScale(-32765);
    EXPECT_EQ(top.getPointPosition(), 32767);
}

TEST(NumericDigits, ToDecRightAlignsDigitValues) {
    struct Case { const char* in; int count; } cases[] = {{"0.0012", 2}, {"-9.5", 2}, {"0.0", 0}, {"1e40", 1}};
    for (const Case& c : cases) {
        char area[ZuNumeric::DecimalAreaSize + 1];
        area[ZuNumeric::DecimalAreaSize] = 'x';
        const ZuNumeric n(c.in);
        EXPECT_EQ(n.toDec(area), c.count) << c.in;
        std::string expected(ZuNumeric::DecimalAreaSize - std::string(n.getDigits()).size(), '\0');
        for (const char* d = n.getDigits(); *d; ++d) expected += static_cast<char>(*d - '0');
        EXPECT_EQ(std::string(area, 97), expected + 'x') << c.in;
    }
}

TEST(NumericConvert, UsesCNumericLocaleAndRestoresIt) {
    struct Case { const char* in; double d; long l; } cases[] = {
        {"-12.5", -12.5, -12}, {"5e-3", 0.005, 0}, {"1e3", 1000, 1000}, {"0", 0, 0},
        {"123456789012345678901234567890", 1.2345678901234568e29, 9223372036854775807L}};
    const auto check = [&] {
        for (const Case& c : cases) {
            EXPECT_DOUBLE_EQ(static_cast<double>(ZuNumeric(c.in)), c.d) << c.in;
            EXPECT_EQ(static_cast<long>(ZuNumeric(c.in)), c.l) << c.in;
        }
    };
    check();
    char dir[] = "/tmp/zu_numeric_locale_XXXXXX";
    ASSERT_NE(mkdtemp(dir), nullptr);
    const std::string command = "localedef -i de_DE -f UTF-8 " + std::string(dir) + "/de_DE.UTF-8 >/dev/null 2>&1";
    setenv("LOCPATH", dir, 1);
    const bool made = std::system(command.c_str()) == 0 && std::setlocale(LC_NUMERIC, "de_DE.UTF-8");
    std::system(("rm -rf " + std::string(dir)).c_str());
    if (!made) {
        unsetenv("LOCPATH");
        GTEST_SKIP() << "cannot build a de_DE.UTF-8 locale with localedef";
    }
    ASSERT_EQ(std::strtod("1.5", nullptr), 1.0); // a comma locale is in effect
    check();
    EXPECT_STREQ(std::setlocale(LC_NUMERIC, nullptr), "de_DE.UTF-8");
    std::setlocale(LC_NUMERIC, "C");
    unsetenv("LOCPATH");
}
