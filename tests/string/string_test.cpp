// ZuString handles: sharing, the empty statics, number constructors, comparisons.
#include <zu/string.h>

#include "locale_scope.h"

#include <gtest/gtest.h>

#include <cstdio>

namespace {

int sign(int v) { return (v > 0) - (v < 0); }

// Runs in a fresh process (the flags are process-wide): exits 0 when the empty string
// of the mode is private before the first GetEmpty() and shared after it.
void checkEmptyStatics(const char* locale, bool multi) {
    auto check = [](bool ok, const char* what) {
        if (ok) return;
        std::fprintf(stderr, "broken: %s\n", what);
        std::exit(1);
    };
    check(std::setlocale(LC_ALL, locale) != nullptr, "locale");
    bool& first = multi ? ZuEmptyInitialization::MultiFirst : ZuEmptyInitialization::MonoFirst;
    bool& other = multi ? ZuEmptyInitialization::MonoFirst : ZuEmptyInitialization::MultiFirst;
    ZuString a(""), b(nullptr);
    check(first && other && a.getInternal() != b.getInternal(),
          "flags true and private empty representations before GetEmpty");
    ZuString* empty = ZuEmptyInitialization::GetEmpty();
    check(!first && other && empty->getInternal()->getType() == (multi ? 1 : 0),
          "only the mode's flag is cleared, the static is of the mode");
    ZuString c(""), d(nullptr), e;
    check(c.getInternal() == empty->getInternal() && d.getInternal() == empty->getInternal() &&
              e.getInternal() == empty->getInternal() &&
              empty->getInternal()->getRefCount() == 4,
          "shared after GetEmpty");
    check(ZuString(0, "").getInternal() != empty->getInternal() &&
              ZuEmptyInitialization::GetEmpty() == empty,
          "one static per mode, never shared by numbers");
    std::exit(0);
}

} // namespace

TEST(StringSharing, CopiesShareAndMutatorsDetach) {
    ZuString a("hello"), b(a), c;
    c = (b = b); // self-assignment keeps the representation alive
    EXPECT_EQ(a.getInternal(), c.getInternal());
    EXPECT_EQ(3u, a.getInternal()->getRefCount());
    b.catenate(ZuString(" world")).toUpper();
    EXPECT_STREQ("hello", a.getValue());
    EXPECT_STREQ("HELLO WORLD", b.getValue());
    EXPECT_EQ(2u, a.getInternal()->getRefCount());
}

TEST(EmptyStatics, SharedOnlyAfterFirstGetEmpty) {
    GTEST_FLAG_SET(death_test_style, "threadsafe"); // re-run from scratch: fresh flags
    EXPECT_EXIT(checkEmptyStatics("C", false), ::testing::ExitedWithCode(0), "");
    LocaleScope probe("C.UTF-8");
    if (!probe.multibyte()) GTEST_SKIP() << "the C.UTF-8 locale is not installed";
    EXPECT_EXIT(checkEmptyStatics("C.UTF-8", true), ::testing::ExitedWithCode(0), "");
}

TEST(StringNumbers, FormatsWithDefaultsAndKeepsLongOutput) {
    const std::string defaults = std::string(ZuString::DefaultShortFormat) + " " +
        ZuString::DefaultUnsignedShortFormat + " " + ZuString::DefaultIntegerFormat + " " +
        ZuString::DefaultUnsignedIntegerFormat + " " + ZuString::DefaultLongFormat + " " +
        ZuString::DefaultUnsignedLongFormat + " " + ZuString::DefaultFloatFormat + " " +
        ZuString::DefaultDoubleFormat;
    EXPECT_EQ("%hd %hu %d %u %ld %lu %f %g", defaults);
    EXPECT_STREQ("-32768", ZuString(static_cast<short>(-32768)).getValue());
    EXPECT_STREQ("65535", ZuString(static_cast<unsigned short>(65535)).getValue());
    EXPECT_STREQ("-7", ZuString(-7).getValue());
    EXPECT_STREQ("4000000000", ZuString(4000000000u).getValue());
    EXPECT_STREQ("-9000000000", ZuString(-9000000000L).getValue());
    EXPECT_STREQ("18446744073709551615", ZuString(18446744073709551615UL).getValue());
    EXPECT_STREQ("1.500000", ZuString(1.5f).getValue());
    EXPECT_STREQ("0.1", ZuString(0.1).getValue());
    EXPECT_STREQ("0xff", ZuString(255, "%#x").getValue());
    // Output longer than the 160-byte shared buffer is kept whole.
    char expected[400];
    std::snprintf(expected, sizeof expected, "%f", 1e300);
    EXPECT_STREQ(expected, ZuString(1e300, "%f").getValue());
    EXPECT_EQ(300, ZuString(7, "%300d").getLength());
}

TEST(StringCompare, PrefixRangeComparesGreater) {
    const struct {
        const char *a, *b;
        int start, end, otherStart, otherEnd, expected; // expected sign
    } cases[] = {
        {"abc", "abc", 0, 2, 0, -1, 1},   // proper prefix, not at the end: greater
        {"ab", "abc", 0, -1, 0, -1, -1},  // both reach the ends: plain comparison
        {"abX", "abY", 0, 2, 0, 2, 0},
        {"xabc", "abc", 1, 99, 0, -1, 0}, // an end past the text is the end
        {"", "", 3, 1, 5, 0, 0},          // two empty strings are equal whatever the ranges
        {"", "abc", 0, -1, 1, 1, 0},      // two empty ranges
    };
    auto run = [&] {
        for (const auto& c : cases) {
            ZuString a(c.a), b(c.b);
            EXPECT_EQ(c.expected, sign(a.compare(b, c.start, c.end, c.otherStart, c.otherEnd)))
                << c.a << " vs " << c.b;
            EXPECT_EQ(c.expected == 0, a.equals(b, c.start, c.end, c.otherStart, c.otherEnd));
        }
        ZuString word("Word");
        EXPECT_EQ(0, word.compare(word, 1, 3, 1, 3)); // one representation, one range
        EXPECT_EQ(0, word.caseCompare(ZuString("wORD")));
        EXPECT_EQ(-1, sign(ZuString("ABC").caseCompare(ZuString("abd"))));
    };
    run();
    ZU_IN_UTF8_LOCALE();
    run();
}

TEST(StringCompare, CaseCompareOfMultibyteRangesLooksPastThem) {
    EXPECT_EQ(1, sign(ZuString("ab").caseCompare(ZuString("ABC"), 0, 1, 0, 2)));
    ZU_IN_UTF8_LOCALE();
    EXPECT_EQ(-1, ZuString("abX").caseCompare(ZuString("ABY"), 0, 2, 0, 2));
    EXPECT_EQ(0, ZuString("ÉTÉ").caseCompare(ZuString("été")));
    EXPECT_EQ(1, ZuString("abc").caseCompare(ZuString("AB")));
    // Without a difference before a terminator: the difference of the range lengths.
    EXPECT_EQ(-1, ZuString("ab").caseCompare(ZuString("ABC"), 0, 1, 0, 2));
}

TEST(StringCompare, ReversedRangesWriteTheirMessage) {
    const struct {
        bool ignoreCase;
        int start, end, otherStart, otherEnd;
        const char* message;
    } cases[] = {
        {false, 2, 1, 0, -1, "ZuString::compare: second parameter is greater than third one.\n"},
        {false, 0, -1, 3, 2, "ZuString::compare: fourth parameter is greater than fifth one.\n"},
        {true, 2, 1, 0, -1,
         "ZuString::caseCompare: second parameter is greater than third one.\n"},
        {true, 0, -1, 3, 2,
         "ZuString::caseCompare: fourth parameter is greater than fifth one.\n"},
    };
    ZuString a("abcd"), b("abcd");
    for (const auto& c : cases) {
        CerrCapture err;
        EXPECT_EQ(-1, c.ignoreCase ? a.caseCompare(b, c.start, c.end, c.otherStart, c.otherEnd)
                                   : a.compare(b, c.start, c.end, c.otherStart, c.otherEnd));
        EXPECT_FALSE(a.equals(b, c.start, c.end, c.otherStart, c.otherEnd)); // silent
        EXPECT_EQ(c.message, err.text.str());
    }
}

TEST(StringMixed, SingleByteGivesUpAndMultibyteConverts) {
    ZuString single("naïve text"); // built under "C": single-byte
    ZU_IN_UTF8_LOCALE();
    ZuString multi("naïve text"), t(static_cast<ZuInternalString*>(new ZuSBString("text")));
    CerrCapture err;
    EXPECT_EQ(-1, single.compare(multi));
    EXPECT_EQ(-1, single.caseCompare(multi));
    EXPECT_EQ("", err.text.str()); // no message
    EXPECT_FALSE(single.equals(multi));
    EXPECT_STREQ("naïve text", single.catenate(multi).replace(multi, 0, 2).getValue());
    // Multibyte against single-byte: the bytes are read in the current encoding, and
    // searches ignore the caller's ranges.
    EXPECT_EQ(0, multi.compare(single));
    EXPECT_TRUE(multi.equals(single));
    EXPECT_EQ(6, multi.getIndexOf(t, 8, 3, 4));
    EXPECT_EQ(6, multi.getLastIndexOf(t, 2, 0, 1));
    EXPECT_TRUE(multi.endsWith(t));
    EXPECT_STREQ("naïve TEXT", ZuString(multi).substitute(t, ZuString("TEXT")).getValue());
    std::setlocale(LC_ALL, "C"); // no longer multibyte: the multibyte string gives up too
    EXPECT_EQ(-1, multi.compare(single));
}
