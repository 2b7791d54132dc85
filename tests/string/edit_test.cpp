// Mutators: substitute, replace and its shorthands, case conversion, reserve.
#include <zu/string.h>

#include "locale_scope.h"

#include <gtest/gtest.h>

namespace {

struct Edit {
    const char *text, *from, *to;
    int start, end;
    const char* expected;
};

void checkSubstitutions(const std::vector<Edit>& cases) {
    for (const auto& c : cases) {
        ZuString s(c.text), shared(s);
        s.substitute(ZuString(c.from), ZuString(c.to), c.start, c.end);
        EXPECT_STREQ(c.expected, s.getValue()) << c.text << " " << c.from << "->" << c.to;
        if (std::string(c.text) == c.expected && *c.from) { // untouched: not even detached
            EXPECT_EQ(shared.getInternal(), s.getInternal()) << c.text;
        }
    }
}

} // namespace

TEST(StringSubstitute, ReplacesEveryOccurrenceInRange) {
    checkSubstitutions({
        {"banana", "a", "xy", 0, -1, "bxynxynxy"},
        {"banana", "an", "AN", 0, -1, "bANANa"},
        {"banana", "a", "", 0, -1, "bnn"},
        {"banana", "a", "xy", 2, -1, "banxynxy"},
        {"banana", "a", "X", 0, 4, "bXnXna"},     // occurrences must end by end
        {"banana", "a", "xy", 0, 1, "banana"},    // first occurrence at/after end
        {"aaaa", "aa", "b", 0, -1, "bb"},         // other length: without overlap
        {"aaa", "aa", "xyz", 0, -1, "xyza"},
        {"aaaa", "aa", "bb", 0, -1, "bbbb"},      // same length: next search at p + 1
        {"abc", "z", "y", 0, -1, "abc"},
        {"abc", "", "y", 0, -1, "abc"},
    });
    ZuString s("banana");
    const char* before = s.getValue(); // same length: edited in place
    s.substitute(ZuString("xany"), ZuString("-AN-"), 0, -1, 1, 3, 1, 3);
    EXPECT_EQ(before, s.getValue());
    EXPECT_STREQ("bANANa", s.getValue());
    EXPECT_STREQ("ba", ZuString("banana").remove(ZuString("an")).getValue());
    ZU_IN_UTF8_LOCALE();
    checkSubstitutions({
        {"ñaña", "ña", "Ñ", 0, -1, "ÑÑ"},
        {"ñaña", "a", "á", 0, -1, "ñáñá"},
        {"日本日本", "本", "", 1, 3, "日日本"},
    });
}

TEST(StringReplace, RangesShorthandsAndSelfReference) {
    auto run = [](const char* hello, const char* edited) { // edited: hello with 1..3 = "EY"
        ZuString s(hello);
        const std::string text(hello), head = text.substr(0, 2), tail = text.substr(2);
        EXPECT_STREQ(edited, ZuString(s).replace(ZuString("EY"), 1, 3).getValue());
        EXPECT_EQ(">>" + text, ZuString(s).prepend(ZuString("x>>"), 1).getValue());
        EXPECT_EQ(head + "XY" + tail, ZuString(s).insert(ZuString("XY"), 2).getValue());
        EXPECT_EQ(text + "b", ZuString(s).catenate(ZuString("abc"), 1, 2).getValue());
        EXPECT_EQ(text, ZuString(s).replace(ZuString("X"), 3, 1).getValue()); // reversed
        EXPECT_EQ("h" + tail, ZuString(s).remove(1, 2).getValue());
        EXPECT_STREQ("", ZuString(s).remove().getValue());
        ZuString self(s);
        EXPECT_EQ(head + text + tail, self.insert(self, 2).getValue());
        EXPECT_STREQ(hello, s.getValue());
    };
    run("hello", "hEYlo");
    ZuString s("hello");
    const char* before = s.getValue();
    EXPECT_EQ(before, s.replace(ZuString("EY"), 1, 3).getValue()); // same length: in place
    ZU_IN_UTF8_LOCALE();
    run("heλλó", "hEYλó");
}

TEST(StringCase, ConvertsBytesOrWideCharacters) {
    EXPECT_STREQ("MIXED 1!", ZuString("MiXed 1!").toUpper().getValue());
    EXPECT_STREQ("mixed 1!", ZuString("MiXed 1!").toLower().getValue());
    EXPECT_TRUE(ZuString(" \t\n").isBlank() && !ZuString(" x ").isBlank());
    ZU_IN_UTF8_LOCALE();
    ZuString s("Été à Dvůr"), copy(s);
    EXPECT_STREQ("ÉTÉ À DVŮR", s.toUpper().getValue());
    EXPECT_STREQ("été à dvůr", s.toLower().getValue());
    EXPECT_STREQ("Été à Dvůr", copy.getValue());
    EXPECT_TRUE(ZuString("\u2003 \u3000").isBlank());
}

TEST(StringReserve, KeepsLengthLosesText) {
    ZuString s("hello"), shared(s);
    s.reserve(6); // the current size: nothing changes but the detach
    EXPECT_STREQ("hello", s.getValue());
    EXPECT_NE(shared.getInternal(), s.getInternal());
    s.reserve(40);
    EXPECT_EQ(40u, s.getSize());
    EXPECT_EQ(5, s.getLength());
    EXPECT_STRNE("hello", s.getValue());
    ZuString(s).catenate(ZuString("x")).toUpper(); // still safe to use
    s.reserve(-4);
    EXPECT_EQ(1u, s.getSize());
}
