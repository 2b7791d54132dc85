// Parsing and formatting of decimal numbers.
#include <gtest/gtest.h>
#include <numeric_value.h>

TEST(NumericParse, HoldsDigitsPointAndSign) {
    const std::string d48(48, '7');
    struct Case { std::string in; std::string digits; int point, sign; std::string out; } cases[] = {
        {"  -  12.500", "125", 2, 1, "-12.5"}, {"1e3", "1", 4, 0, "1000"}, {"0.0005", "0005", 0, 0, ".0005"},
        {"5e-3", "5", -2, 0, ".5e-2"}, {"0", "0", 0, 0, ".0"}, {"0.0", "", 0, 0, "0"}, {"+1.0", "1", 1, 0, "1"},
        {"1200", "1200", 4, 0, "1200"}, {"\t.05", "05", 0, 0, ".05"}, {"-1.5E+2", "15", 3, 1, "-150"},
        {"100.0", "1", 3, 0, "100"}, {"- 0012.5", "125", 2, 1, "-12.5"}, {"00.5e0", "5", 0, 0, ".5"},
        {"1e32766", "1", 32767, 0, ".1e32767"}, {".1e-32768", "1", -32768, 0, ".1e-32768"},
        {std::string("12\0x", 4), "12", 2, 0, "12"}, {d48, d48, 48, 0, d48}, {"-." + d48, d48, 0, 1, "-." + d48}};
    for (const auto& c : cases) {
        ZuNumeric n(3L);
        ASSERT_TRUE(n.set(c.in.c_str())) << c.in;
        EXPECT_EQ(n.getDigits(), c.digits) << c.in;
        EXPECT_EQ(n.getPointPosition(), c.point) << c.in;
        EXPECT_EQ(n.getSign(), c.sign) << c.in;
        EXPECT_EQ(text(n), c.out) << c.in;
    }
    ZuNumeric n(-42L);
    EXPECT_TRUE(n.set(static_cast<const char*>(nullptr)));
    EXPECT_EQ(text(n), "0");
    EXPECT_EQ(text(ZuNumeric(-9223372036854775807L - 1)), "-9223372036854775808");
    EXPECT_STREQ(ZuNumeric(0L).getDigits(), "");
}

TEST(NumericParse, RefusesMalformedTextAndKeepsValue) {
    const std::string tooMany = "1" + std::string(48, '0'), zeros = "." + std::string(49, '0');
    for (const char* t : {"", " ", ".", "-.", "e5", ".e5", "1e", "1e+", "1E-", "1 ", "1.2.3", "--1", "+-1", "- -1",
                          "1e5.5", "0x10", "00", "-0", "+0", "0e5", "1_0", "1 2", "1e32767", ".1e-32769",
                          "1e99999999999999999999", "1e-99999999999", "\t-\t", "1,5", "inf", tooMany.c_str(),
                          zeros.c_str()}) {
        ZuNumeric n("-7.25");
        EXPECT_FALSE(n.set(t)) << '"' << t << '"';
        EXPECT_EQ(text(n), "-7.25") << t;
    }
}

TEST(NumericFormat, NeverWritesPastTheBuffer) {
    struct Case { const char* in; int size; const char* out; } cases[] = {
        {"12345", 6, "12345"}, {"12345", 5, ".123"}, {"12e2", 5, "1200"}, {"12e2", 4, ".12"}, {"-12.5", 6, "-12.5"},
        {"-12.5", 5, "-12."}, {"5e-3", 6, ".5e-2"}, {"5e-3", 5, ".5"}, {"0.0", 2, "0"}, {"0.0", 1, ""}, {"-1", 2, "-"}};
    for (const Case& c : cases) EXPECT_EQ(text(ZuNumeric(c.in), c.size), c.out) << c.in << " in " << c.size;
    for (const char* in : {"-.123456789012345678901234567890123456789012345678e-32768", "-1e32766", "-1e60"})
        for (int size = 0; size <= 70; ++size) {
            std::string out(80, '#');
            ZuNumeric(in).get(&out[0], size);
            EXPECT_EQ(out.find_first_not_of('#', size), std::string::npos) << in << " in " << size;
            // Terminated inside the buffer; a buffer of 0 bytes gets nothing at all.
            if (size > 0) {
                EXPECT_LT(out.find('\0'), static_cast<size_t>(size)) << in << " in " << size;
            }
        }
    ZuNumeric("1").get(nullptr, 10);
}
