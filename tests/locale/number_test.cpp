// Doubles to text and back with "." whatever the numeric locale.
#include "locale_support.h"

#include <cfloat>
#include <cmath>
#include <cstring>

namespace {

const double kInf = HUGE_VAL;

std::string text(double value, const char* format = nullptr) {
    char buffer[64];
    int length = ZuDoubleToString(buffer, value, format);
    EXPECT_EQ(length, int(std::strlen(buffer)));
    return buffer;
}

// Switches the numeric category to a locale whose separator is ",", or returns null.
const char* commaLocale() {
    for (const char* name : {"de_DE.UTF-8", "fr_FR.ISO-8859-1"})
        if (std::setlocale(LC_NUMERIC, name) && *localeconv()->decimal_point == ',')
            return name;
    return nullptr;
}

TEST(DoubleToString, SpecialValuesFormatsAndCommaLocales) {
    zu_test::LocaleState state;
    const struct { double value; const char *format, *text; } cases[] = {
        {NAN, nullptr, "NaN"}, {kInf, nullptr, "Infinity"}, {-kInf, "%f", "-Infinity"},
        {0.5, nullptr, "0.5"}, {1e300, nullptr, "1e+300"}, {-0.25, nullptr, "-0.25"},
        {2.5, "%.3f", "2.500"}, {1.5, "%E", "1.500000E+00"}, {2, "x%g%%", ".2."},
        {123456789012345678.0, nullptr, "1.234567890123457e+17"}};
    for (int pass = 0; pass < 2; ++pass) {
        for (const auto& c : cases)
            EXPECT_EQ(text(c.value, c.format), c.text);
        if (pass == 0 && !commaLocale())
            GTEST_SKIP() << "locales de_DE.UTF-8 and fr_FR.ISO-8859-1 are not available";
    }
}

TEST(StringToDouble, ReadsWithADotAndSetsTheEnd) {
    zu_test::LocaleState state;
    const struct { const char* text; double value; int end; } cases[] = {
        {"-.25e2", -25, 6}, {"12", 12, 2}, {"1.5x", 1.5, 3}, {"+3.75E-1", 0.375, 8},
        {".5", 0.5, 2}, {"1.5e", 1.5, 4}, {"1.5e+x", 1.5, 5}, {"abc", 0, 0}, {"-.", 0, 2},
        {"-inf", -kInf, 4}, {"7.e1", 70, 4}, {"1.5e99999999999", kInf, 15}, {"2.5e-999999999999", 0, 17},
        {"0.1000000000000000055511151231257827021181583404541015625", 0.1, 57},
        {"4.9406564584124654e-324", 5e-324, 23}, {"1.7976931348623157e308", DBL_MAX, 22}};
    for (int pass = 0; pass < 2; ++pass) {
        for (const auto& c : cases) {
            char* end = nullptr;
            double value = -1;
            EXPECT_TRUE(ZuStringToDouble(c.text, &end, value));
            EXPECT_EQ(value, c.value) << c.text;
            EXPECT_EQ(end - c.text, c.end) << c.text;
        }
        double value = 0; // without a ".", the host reads the text as the locale says
        EXPECT_EQ(ZuStringToDouble("1,5", nullptr, value), true);
        EXPECT_EQ(value, pass ? 1.5 : 1);
        EXPECT_FALSE(ZuStringToDouble("nan", nullptr, value));
        if (pass == 0 && !commaLocale())
            GTEST_SKIP() << "locales de_DE.UTF-8 and fr_FR.ISO-8859-1 are not available";
    }
}

} // namespace
