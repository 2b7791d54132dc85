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
        while (s.size() < n) s += alphabet[rng() % alphabet.size()];
        return s;
    };
    for (int round = 0; round < 3000; ++round) {
        const Str hay = pick(rng() % 100), source = pick(1 + rng() % 6);
        const int subStart = static_cast<int>(rng() % source.size());
        const int subEnd = subStart + 1 + static_cast<int>(rng() % (source.size() - subStart));
        const Str pat = source.substr(subStart, subEnd - subStart);
        const int start = static_cast<int>(rng() % (hay.size() + 3)) - 1;
        const ZuString h = fromWide(hay), s = fromWide(source);
        auto position = [&](auto at, auto none) { return at == none ? -1 : int(at - hay.begin()); };
        const auto from = hay.begin() + std::min<size_t>(std::max(start, 0), hay.size());
        ASSERT_EQ(position(std::search(from, hay.end(), pat.begin(), pat.end()), hay.end()),
                  h.getIndexOf(s, start, subStart, subEnd));
        ASSERT_EQ(position(std::find_end(hay.begin(), hay.end(), pat.begin(), pat.end()),
                           hay.end()),
                  h.getLastIndexOf(s, -1, subStart, subEnd));
        if (start >= 0 && start + pat.size() <= hay.size()) { // last one starting by start
            const auto to = hay.begin() + start + pat.size();
            ASSERT_EQ(position(std::find_end(hay.begin(), to, pat.begin(), pat.end()), to),
                      h.getLastIndexOf(s, start, subStart, subEnd));
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
        ZuString hello("hello"), empty("");
        EXPECT_EQ(5, hello.getIndexOf(empty)); // the length, not 0
        EXPECT_EQ(5, hello.getLastIndexOf(empty));
        EXPECT_EQ(-1, ZuString("lo").getIndexOf(hello)); // longer pattern
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
            const ZuString text(c.text), sub(c.sub);
            EXPECT_EQ(c.starts, text.startsWith(sub, c.subStart, c.subEnd)) << c.text << c.sub;
            EXPECT_EQ(c.ends, text.endsWith(sub, c.subStart, c.subEnd)) << c.text << c.sub;
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
