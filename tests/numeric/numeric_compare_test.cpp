// Comparison, scale, digit areas and conversions to C numbers.
#include <gtest/gtest.h>
#include <numeric_value.h>

#include <clocale>
#include <cstdlib>

TEST(NumericCompare, EqualityAndOrderFollowTheHeldDigits) {
    struct Case { const char* a; const char* b; bool equal, greater; } cases[] = {
        {"1.0", "1", true, true}, {"1", "2", false, false}, {"0", "0.0", true, true}, {"-100", "-1", false, true},
        {"-1", "-100", false, false}, {"-1", "1", false, false}, {"1", "-1", false, true}, {"0.0", "-3", false, true},
        {"10", "1e1", true, true}, {"1e1", "10", true, false}, {"2", "10", false, false}, {"0.05", "5e-2", false, true},
        {"1.25", "1.3", false, false}, {"1.3", "1.25", false, true}, {"-2.5", "-2.5", true, true}, {"0.05", "0", true, true}};
    for (const Case& c : cases) {
        EXPECT_EQ(ZuNumeric(c.a).isEqualTo(ZuNumeric(c.b)), c.equal) << c.a << " == " << c.b;
        EXPECT_EQ(ZuNumeric(c.a).isGreaterThan(ZuNumeric(c.b)), c.greater) << c.a << " > " << c.b;
    }
    const ZuNumeric full(("-." + std::string(48, '3') + "e2").c_str());
    EXPECT_TRUE(full.isGreaterThan(full));
    EXPECT_EQ(text(ZuNumeric("-3.5").abs()), "3.5");
}

TEST(NumericCompare, IntegerRuleStopsAtTenDigits) {
    for (const char* in : {"1", "-42", "123456789", "1e8", "12e2", "2147483647", "1e9"})
        EXPECT_TRUE(ZuNumeric(in).isInteger() && !ZuNumeric(in).isReal()) << in;
    for (const char* in : {"21474836471e-1", "2147483648", "3e9", "1e10", "1.5", "0", "0.0", ".5", "5e-3"})
        EXPECT_TRUE(ZuNumeric(in).isReal()) << in;
}

TEST(NumericScale, ReadsDigitsAsScaledIntegerWithoutCutting) {
    struct Case { short scale; const char* out; } cases[] = {
        {2, "123.45"}, {7, ".0012345"}, {0, "12345"}, {5, ".12345"}, {-3, "12345000"},
        {48, ".000000000000000000000000000000000000000000012345"}, {60, ".12345e-55"}, {-32766, "12345"}};
    for (const Case& c : cases) {
        ZuNumeric n(12345L);
        EXPECT_EQ((n.setScale(c.scale), text(n)), c.out) << c.scale;
    }
}

TEST(NumericDigits, ToDecRightAlignsDigitValues) {
    char area[ZuNumeric::DecimalAreaSize + 1];
    area[ZuNumeric::DecimalAreaSize] = 'x';
    EXPECT_EQ(ZuNumeric("-0.0095").toDec(area), 2);
    EXPECT_EQ(std::string(area, 97), std::string(94, '\0') + "\11\5x");
    EXPECT_EQ(ZuNumeric("0.0").toDec(area), 0);
}

TEST(NumericConvert, UsesCNumericLocaleAndRestoresIt) {
    const auto check = [] {
        EXPECT_DOUBLE_EQ(static_cast<double>(ZuNumeric("-12.5")) + static_cast<double>(ZuNumeric("5e-3")), -12.495);
        EXPECT_EQ(static_cast<long>(ZuNumeric("-12.5")) + static_cast<long>(ZuNumeric("1e3")), 988);
        EXPECT_EQ(static_cast<long>(ZuNumeric("123456789012345678901234567890")), 9223372036854775807L);
    };
    check();
    char dir[] = "/tmp/zu_numeric_locale_XXXXXX";
    ASSERT_NE(mkdtemp(dir), nullptr);
    setenv("LOCPATH", dir, 1);
    const bool made = std::system(("localedef -i de_DE -f UTF-8 " + std::string(dir) + "/de_DE.UTF-8 >/dev/null 2>&1").c_str()) == 0 &&
                      std::setlocale(LC_NUMERIC, "de_DE.UTF-8");
    if (made) {
        EXPECT_EQ(std::strtod("1.5", nullptr), 1.0); // a comma locale is in effect
        check();
        EXPECT_STREQ(std::setlocale(LC_NUMERIC, nullptr), "de_DE.UTF-8");
        std::setlocale(LC_NUMERIC, "C");
    }
    unsetenv("LOCPATH");
    std::system(("rm -rf " + std::string(dir)).c_str());
    if (!made) GTEST_SKIP() << "cannot build a de_DE.UTF-8 locale with localedef";
}
