// Searches and substrings, checked against the standard search algorithms.
#include <zu/string.h>

#include "locale_scope.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>

namespace {

ZuString fromWide(const std::wstring& w) {
    std::string bytes(w.size() * MB_CUR_MAX + 1, '\0');
    bytes.resize(std::wcstombs(&bytes[0], w.c_str(), bytes.size()));
    return ZuString(bytes.c_str());
}
ZuString fromWide(const std::string& s) { return ZuString(s.c_str()); }

// Random texts over a small alphabet, so that occurrences are frequent and overlap.
template <class Str> void compareWithStdSearch(const Str& alphabet) {
    std::mt19937 rng(2024);
    auto pick = [&](size_t n) {
        Str s;
        for (size_t i = 0; i < n; ++i) s += alphabet[rng() % alphabet.size()];
        return s;
    };
    for (int round = 0; round < 3000; ++round) {
        const Str hay = pick(rng() % 40), source = pick(1 + rng() % 6);
        const int subStart = static_cast<int>(rng() % source.size());
        const int subEnd = subStart + 1 + static_cast<int>(rng() % (source.size() - subStart));
        const Str pat = source.substr(subStart, subEnd - subStart);
        const int start = static_cast<int>(rng() % (hay.size() + 3)) - 1;
        ZuString h = fromWide(hay), s = fromWide(source);
        // Positions of the first match from `from`, and of the last one ending by `to`.
        auto first = [&](size_t from) {
            auto at = std::search(hay.begin() + std::min(from, hay.size()), hay.end(),
                                  pat.begin(), pat.end());
            return at == hay.end() ? -1 : static_cast<int>(at - hay.begin());
        };
        auto last = [&](size_t to) {
            auto at = std::find_end(hay.begin(), hay.begin() + to, pat.begin(), pat.end());
            return at == hay.begin() + to ? -1 : static_cast<int>(at - hay.begin());
        };
        ASSERT_EQ(first(start < 0 ? 0 : start), h.getIndexOf(s, start, subStart, subEnd));
        ASSERT_EQ(last(hay.size()), h.getLastIndexOf(s, -1, subStart, subEnd));
        if (start >= 0 && start + pat.size() <= hay.size()) {
            ASSERT_EQ(last(start + pat.size()), h.getLastIndexOf(s, start, subStart, subEnd));
        }
    }
}

} // namespace

TEST(StringSearch, AgreesWithStdFindAndRfind) {
    compareWithStdSearch(std::string("abc"));
    ZU_IN_UTF8_LOCALE();
    compareWithStdSearch(std::wstring(L"aéß"));
}

TEST(StringSearch, EmptyPatternsAndPrefixRules) {
    auto run = [] {
        ZuString hello("hello"), empty(""), lo("lo");
        EXPECT_EQ(5, hello.getIndexOf(empty));           // the length, not 0
        EXPECT_EQ(5, hello.getIndexOf(hello, 2, 3, 3));
        EXPECT_EQ(-1, lo.getIndexOf(hello));              // longer pattern
        EXPECT_EQ(5, hello.getLastIndexOf(empty));
        EXPECT_EQ(0, ZuString("abcabc").getLastIndexOf(ZuString("abc"), 4)); // start - n + 1
        const struct {
            const char *text, *sub;
            int subStart, subEnd;
            bool starts, ends;
        } cases[] = {
            {"hello", "he", 0, -1, true, false}, {"hello", "", 0, -1, false, true},
            {"", "", 0, -1, true, true},         {"hello", "lo", 0, -1, false, true},
            {"hello", "xhe", 1, -1, true, false}, {"hello", "lol", 0, 2, false, true},
            {"lolo", "lo", 0, -1, true, true},  {"hello", "hello!", 0, -1, false, false},
            {"hello", "ho", 1, 0, false, true},  // a reversed sub range is empty
        };
        for (const auto& c : cases) {
            SCOPED_TRACE(std::string(c.text) + " / " + c.sub);
            EXPECT_EQ(c.starts, ZuString(c.text).startsWith(ZuString(c.sub), c.subStart, c.subEnd));
            EXPECT_EQ(c.ends, ZuString(c.text).endsWith(ZuString(c.sub), c.subStart, c.subEnd));
        }
    };
    run();
    ZU_IN_UTF8_LOCALE();
    run();
}

TEST(StringSubString, RangesAndSharing) {
    auto run = [](const char* text, const std::vector<const char*>& expected) {
        const int ranges[][2] = {{1, 3}, {3, -1}, {0, 99}, {-3, 2}, {4, 2}, {9, -1}, {2, 2}};
        ZuString s(text);
        for (size_t i = 0; i < expected.size(); ++i)
            EXPECT_STREQ(expected[i], s.getSubString(ranges[i][0], ranges[i][1]).getValue()) << i;
        EXPECT_EQ(ZuEmptyInitialization::GetEmpty()->getInternal(),
                  s.getSubString(2, 2).getInternal());
        EXPECT_EQ(s.getInternal(), s.getSubString(0, s.getLength()).getInternal());
    };
    run("hello", {"el", "lo", "hello", "he", "", "", ""});
    ZU_IN_UTF8_LOCALE();
    run("héllo", {"él", "lo", "héllo", "hé", "", "", ""});
}
