// ZuString handles: sharing, the empty statics, number constructors, comparisons.
#include <zu/string.h>

#include "locale_scope.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <cstring>

namespace {

std::string text(const ZuString& s) { return s.getValue(); }

int sign(int v) { return (v > 0) - (v < 0); }

} // namespace

TEST(StringSharing, CopiesShareAndMutatorsDetach) {
    ZuString a("hello");
    ZuString b(a);
    ZuString c;
    c = b;
    c = c; // self-assignment keeps the representation alive
    EXPECT_EQ(a.getInternal(), c.getInternal());
    EXPECT_EQ(3u, a.getInternal()->getRefCount());
    EXPECT_EQ(a.getInternal(), a.getSubString(0, -1).getInternal());

    b.catenate(ZuString(" world")).toUpper();
    EXPECT_EQ("hello", text(a));
    EXPECT_EQ("HELLO WORLD", text(b));
    EXPECT_NE(a.getInternal(), b.getInternal());
    EXPECT_EQ(2u, a.getInternal()->getRefCount());
    EXPECT_EQ(1u, b.getInternal()->getRefCount());

    char* copy = b.copyValue();
    EXPECT_STREQ("HELLO WORLD", copy);
    EXPECT_EQ(12u, b.getSize());
    delete[] copy;
}

namespace {

// Runs in a fresh process (the flags are process-wide): exits 0 when the empty string
// of the mode is private before the first GetEmpty() and shared after it.
void checkEmptyStatics(const char* locale, bool multi) {
    auto fail = [](const char* what) {
        std::fprintf(stderr, "broken: %s\n", what);
        std::exit(1);
    };
    if (!std::setlocale(LC_ALL, locale)) fail("locale");
    bool& first = multi ? ZuEmptyInitialization::MultiFirst : ZuEmptyInitialization::MonoFirst;
    bool& other = multi ? ZuEmptyInitialization::MonoFirst : ZuEmptyInitialization::MultiFirst;
    if (!first || !other) fail("both flags start true");
    ZuString a(""), b(nullptr);
    if (a.getInternal() == b.getInternal() || a.getInternal()->getRefCount() != 1)
        fail("private empty representations before GetEmpty");
    ZuString* empty = ZuEmptyInitialization::GetEmpty();
    if (first || !other) fail("only the mode's flag is cleared");
    if (empty->getInternal()->getType() != (multi ? 1 : 0)) fail("static of the mode");
    ZuString c(""), d(nullptr), e;
    if (c.getInternal() != empty->getInternal() || d.getInternal() != empty->getInternal() ||
        e.getInternal() != empty->getInternal())
        fail("shared after GetEmpty");
    if (empty->getInternal()->getRefCount() != 4) fail("sharing counts");
    if (ZuString(0, "").getInternal() == empty->getInternal()) fail("numbers never share");
    if (ZuString("abc").getSubString(3).getInternal() != empty->getInternal())
        fail("substring past the end");
    if (ZuEmptyInitialization::GetEmpty() != empty) fail("one static per mode");
    std::exit(0);
}

} // namespace

TEST(EmptyStatics, SharedOnlyAfterFirstGetEmpty) {
    GTEST_FLAG_SET(death_test_style, "threadsafe"); // re-run from scratch: fresh flags
    EXPECT_EXIT(checkEmptyStatics("C", false), ::testing::ExitedWithCode(0), "");
    LocaleScope probe("C.UTF-8");
    if (!probe.multibyte()) GTEST_SKIP() << "the C.UTF-8 locale is not installed";
    EXPECT_EXIT(checkEmptyStatics("C.UTF-8", true), ::testing::ExitedWithCode(0), "");
}

TEST(StringNumbers, FormatsWithDefaultsAndKeepsLongOutput) {
    EXPECT_STREQ("%hd", ZuString::DefaultShortFormat);
    EXPECT_STREQ("%hu", ZuString::DefaultUnsignedShortFormat);
    EXPECT_STREQ("%d", ZuString::DefaultIntegerFormat);
    EXPECT_STREQ("%u", ZuString::DefaultUnsignedIntegerFormat);
    EXPECT_STREQ("%ld", ZuString::DefaultLongFormat);
    EXPECT_STREQ("%lu", ZuString::DefaultUnsignedLongFormat);
    EXPECT_STREQ("%f", ZuString::DefaultFloatFormat);
    EXPECT_STREQ("%g", ZuString::DefaultDoubleFormat);
    const struct {
        ZuString value;
        const char* expected;
    } cases[] = {
        {ZuString(static_cast<short>(-32768)), "-32768"},
        {ZuString(static_cast<unsigned short>(65535)), "65535"},
        {ZuString(-7), "-7"},
        {ZuString(4000000000u), "4000000000"},
        {ZuString(-9000000000L), "-9000000000"},
        {ZuString(18446744073709551615UL), "18446744073709551615"},
        {ZuString(1.5f), "1.500000"},
        {ZuString(0.1), "0.1"},
        {ZuString(255, "%#x"), "0xff"},
        {ZuString(3.14159, "%.2f"), "3.14"},
    };
    for (const auto& c : cases) EXPECT_EQ(c.expected, text(c.value));

    // Output longer than the 160-byte shared buffer is kept whole.
    char expected[400];
    std::snprintf(expected, sizeof expected, "%f", 1e300);
    EXPECT_EQ(expected, text(ZuString(1e300, "%f")));
    EXPECT_EQ(300, ZuString(7, "%300d").getLength());
    EXPECT_TRUE(ZuString(1, nullptr).isEmpty());
}

TEST(StringCompare, PrefixRangeComparesGreater) {
    const struct {
        const char *a, *b;
        int start, end, otherStart, otherEnd, expected; // expected sign
    } cases[] = {
        {"abc", "abc", 0, 2, 0, -1, 1},   // proper prefix, not at the end: greater
        {"abc", "abc", 0, -1, 0, 2, -1},
        {"ab", "abc", 0, -1, 0, -1, -1},  // both reach the ends: plain comparison
        {"abc", "ab", 0, -1, 0, -1, 1},
        {"abX", "abY", 0, 2, 0, 2, 0},
        {"xabc", "abc", 1, 99, 0, -1, 0}, // an end past the text is the end
        {"abd", "abc", 0, -1, 0, -1, 1},
        {"", "", 3, 1, 5, 0, 0},          // two empty strings are equal whatever the ranges
    };
    auto run = [&](const char* mode) {
        for (const auto& c : cases) {
            SCOPED_TRACE(std::string(mode) + " " + c.a + " vs " + c.b);
            ZuString a(c.a), b(c.b);
            EXPECT_EQ(c.expected, sign(a.compare(b, c.start, c.end, c.otherStart, c.otherEnd)));
            EXPECT_EQ(c.expected == 0, a.equals(b, c.start, c.end, c.otherStart, c.otherEnd));
        }
        ZuString word("Word");
        EXPECT_EQ(0, word.compare(word, 1, 3, 1, 3)); // one representation, one range
        EXPECT_EQ(0, word.caseCompare(ZuString("wORD")));
        EXPECT_EQ(0, ZuString("AB").caseCompare(ZuString("abz"), 0, -1, 0, 2));
        EXPECT_EQ(-1, sign(ZuString("ABC").caseCompare(ZuString("abd"))));
        EXPECT_TRUE(ZuString("").equals(ZuString("abc"), 0, -1, 1, 1)); // two empty ranges
        EXPECT_FALSE(ZuString("a").equals(ZuString("abc"), 0, -1, 1, 1));
    };
    run("single-byte");
    ZU_IN_UTF8_LOCALE();
    run("multibyte");
}

TEST(StringCompare, CaseCompareOfMultibyteRangesLooksPastThem) {
    EXPECT_EQ(0, ZuString("abX").caseCompare(ZuString("ABY"), 0, 2, 0, 2));
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
        {false, 9, -1, 0, -1, "ZuString::compare: second parameter is greater than third one.\n"},
    };
    ZuString a("abcd"), b("abcd");
    for (const auto& c : cases) {
        CerrCapture err;
        const int r = c.ignoreCase ? a.caseCompare(b, c.start, c.end, c.otherStart, c.otherEnd)
                                   : a.compare(b, c.start, c.end, c.otherStart, c.otherEnd);
        EXPECT_EQ(-1, r);
        EXPECT_EQ(c.message, err.text());
        CerrCapture quiet;
        EXPECT_FALSE(a.equals(b, c.start, c.end, c.otherStart, c.otherEnd));
        EXPECT_EQ("", quiet.text());
    }
}

TEST(StringMixed, SingleByteGivesUpAndMultibyteConverts) {
    LocaleScope c("C");
    ZuString single("naïve text");
    ZU_IN_UTF8_LOCALE();
    ZuString multi("naïve text");
    ASSERT_EQ(0, single.getInternal()->getType());
    ASSERT_EQ(1, multi.getInternal()->getType());
    {
        CerrCapture err;
        EXPECT_EQ(-1, single.compare(multi));
        EXPECT_EQ(-1, single.caseCompare(multi));
        EXPECT_EQ("", err.text());
    }
    EXPECT_FALSE(single.equals(multi));
    EXPECT_EQ(-1, single.getIndexOf(ZuString("text")));
    EXPECT_EQ(-1, single.getLastIndexOf(multi));
    EXPECT_EQ("naïve text", text(single.catenate(multi).replace(multi, 0, 2)));
    EXPECT_EQ("naïve text", text(single.substitute(ZuString("t"), ZuString("T"))));

    // Multibyte against single-byte: the bytes are read in the current encoding.
    EXPECT_EQ(0, multi.compare(single));
    EXPECT_TRUE(multi.equals(single));
    EXPECT_EQ(10, multi.getLength());
    ZuString t(static_cast<ZuInternalString*>(new ZuSBString("text")));
    EXPECT_EQ(6, multi.getIndexOf(t, 8, 3, 4)); // ranges ignored: whole "text" from 0
    EXPECT_EQ(6, multi.getLastIndexOf(t, 2, 0, 1));
    EXPECT_TRUE(multi.endsWith(t));
    EXPECT_EQ("naïve TEXT", text(ZuString(multi).substitute(t, ZuString("TEXT"))));
    std::setlocale(LC_ALL, "C"); // no longer multibyte: the multibyte string gives up too
    EXPECT_EQ(-1, multi.compare(single));
}
