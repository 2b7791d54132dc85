// Structural operations: levels, sub-directories, forcing, merging, the common
// leading and trailing parts, relative paths, shortened prints and localisation.
#include <zu/locale.h>
#include <zu/pathname.h>

#include "path_test_support.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <cstring>
#include <initializer_list>
#include <string>

using zu_test::parts;
using zu_test::path;

namespace {

typedef void (ZuPathName::*Unary)();
typedef void (ZuPathName::*Binary)(const ZuPathName&);

std::string after(const char* text, Unary op) {
    ZuPathName p = path(text);
    (p.*op)();
    return parts(p);
}

// Each row: the operation applied to path(text) with path(other), and the fields it leaves.
struct Step { Binary op; const char *text, *other, *expected; };
void check(std::initializer_list<Step> steps) {
    for (const Step& s : steps) {
        ZuPathName p = path(s.text);
        (p.*s.op)(path(s.other));
        EXPECT_EQ(parts(p), s.expected) << s.text << " with " << s.other;
    }
}

} // namespace

TEST(PathStructure, SubDirectoryIsASubstringTest) {
    struct Case { const char *inner, *outer; bool expected; } cases[] = {
        {"/a/b/", "/a/", true},  {"/x/a/b/", "/a/", true}, // deliberate: not a prefix test
        {"/b/", "/a/", false},   {"/a/f.txt", "/a/", false}, {"/a/b/", "/a/f", false},
        {"a/b/", "a/", true},    {"", "", false}, {"C:\\a\\b\\", "D:\\a\\", false},
        {"C:\\a\\b\\", "C:\\a\\", true}, {"C:\\a\\b\\", "/a/", true},
    };
    for (const Case& c : cases)
        EXPECT_EQ(path(c.inner).isSubDirectory(path(c.outer)), c.expected) << c.inner << " in " << c.outer;
}

TEST(PathStructure, LevelsAndSubDirectoryNumbering) {
    // The level counts the slashes after the first character.
    for (auto [dir, level] : {std::pair{"/", 0}, {"", 0}, {"a/", 1}, {"/a/", 1}, {"a/b/", 2}, {"/a/b/", 2}})
        EXPECT_EQ(path(dir).computeLevelNumber(), level) << dir;
    struct { int first, last; const char* expected; } ranges[] = {
        {0, 0, "/a/"}, {1, 1, "b/"}, {0, 1, "/a/b/"}, {2, -1, "c/"}, {5, 6, ""}, {2, 1, ""}};
    for (auto& r : ranges)
        EXPECT_STREQ(ZuPathName("/a/b/c/f.x").getSubDirectory(r.first, r.last).getValue(), r.expected) << r.first;
    const Unary ops[] = {&ZuPathName::computeFirstSubDirectory, &ZuPathName::computeLastSubDirectory,
                         &ZuPathName::computeAllButFirstSubDirectory, &ZuPathName::computeAllButLastSubDirectory};
    struct Case { const char* text; const char* expected[4]; } cases[] = { // first, last, all but first, all but last
        {"/a/b/c/f.x", {"|/a/|f|x", "|c/|f|x", "|b/c/|f|x", "|/a/b/|f|x"}},
        {"x/y/", {"|x/||", "|y/||", "|y/||", "|x/||"}}, {"/a/", {"|/a/||", "|/a/||", "|||", "|/||"}},
        {"x/", {"|x/||", "|x/||", "|||", "|||"}}, {"/", {"|/||", "|/||", "|/||", "|/||"}},
        {"f", {"||f|", "||f|", "||f|", "||f|"}},
    };
    for (const Case& c : cases)
        for (int i = 0; i < 4; ++i) EXPECT_EQ(after(c.text, ops[i]), c.expected[i]) << c.text << " operation " << i;
}

TEST(PathStructure, ForceMergeAndPrepend) {
    const Unary absolute = &ZuPathName::forceAbsolute, relative = &ZuPathName::forceRelative,
                directory = &ZuPathName::forceDirectory;
    struct { Unary op; const char *text, *expected; } forced[] = {
        {absolute, "", "|/||"}, {absolute, "a/f", "|/a/|f|"}, {absolute, "/a/f", "|/a/|f|"},
        {absolute, "../a/", "|/../a/||"}, {relative, "/a/f", "|a/|f|"}, {relative, "/", "|||"},
        {directory, "a/b.c", "|a/b.c/||"}, {directory, ".profile", "|.profile/||"}, {directory, "a/", "|a/||"}};
    for (auto& f : forced)
        EXPECT_EQ(after(f.text, f.op), f.expected) << f.text;
    const Binary merge = &ZuPathName::merge, prepend = &ZuPathName::prepend;
    check({{merge, "/base/x.y", "sub/f.txt", "|/base/sub/|f|txt"}, {merge, "/base/x.y", "/abs/g", "|/abs/|g|"},
           {merge, "/base/x.y", "z/", "|/base/z/||"}, // the empty file name is taken too
           {merge, "/base/x.y", "../q", "|/|q|"}, {merge, "", "", "|||"},
           {prepend, "f.txt", "/root/", "|/root/|f|txt"}, {prepend, "s/f.txt", "/root/x", "|/root/s/|f|txt"},
           {prepend, "/abs/f", "/root/", "|/abs/|f|"}});
}

TEST(PathStructure, LeadingAndTrailingParts) {
    Binary same = &ZuPathName::computeSameLeading, differ = &ZuPathName::computeDifferLeading;
    check({{same, "/a/b/f.c", "/a/c/f.c", "|/a/||"}, {same, "/a/b/f.c", "/a/b/g.c", "|/a/b/||"},
           {same, "/a/b/f.c", "/a/b/f.h", "|/a/b/|f|"}, {same, "/a/b/f.c", "/a/b/f.c", "|/a/b/|f|c"},
           {same, "/a/b/f.c", "/ab/b/f.c", "|/||"}, {same, "ab/x/f", "c/x/f", "|||"},
           {same, "ab/x/f", "cd/y/f", "|ab/||"}, // deliberate: equal-length first parts
           {same, "C:\\a\\f", "D:\\a\\f", "|||"}, {differ, "/a/b/f.c", "/a/c/g.c", "|b/|f|c"},
           {differ, "/a/b/f.c", "/a/b/g.c", "||f|c"}, {differ, "/a/f.c", "/a/b/f.c", "|||"},
           {differ, "/a/f.c", "/a/b/f.h", "|||c"}, {differ, "/a/f.c", "/a/b/g.c", "||f|c"},
           {differ, "C:\\a\\f", "D:\\a\\f", "C|/a/|f|"}}); // devices differ: unchanged
    same = &ZuPathName::computeSameTrailing, differ = &ZuPathName::computeDifferTrailing;
    check({{same, "/x/a/b/f.c", "/y/a/b/f.c", "|a/b/|f|c"}, {same, "/x/a/b/f.c", "/x/a/b/g.c", "|||c"},
           {same, "/x/a/b/f.c", "/x/a/b/f.h", "|||"}, {same, "/a/b/f.c", "a/b/f.c", "|a/b/|f|c"},
           {same, "/x/a/f.c", "/a/x/f.c", "||f|c"}, {same, "a/b/f.c", "z/a/b/f.c", "|a/b/|f|c"},
           {same, "C:\\a\\f.c", "D:\\a\\f.c", "|/a/|f|c"}, {differ, "/x/a/b/f.c", "/y/a/b/f.c", "|/x/||"},
           {differ, "/x/a/b/f.c", "/x/a/b/g.c", "|/x/a/b/|f|"}, {differ, "/x/a/b/f.c", "/x/a/b/f.h", "|/x/a/b/|f|c"},
           {differ, "/x/a/b/f.c", "/x/a/b/f.c", "|||"}, {differ, "a/b/f.c", "z/a/b/f.c", "|||"},
           {differ, "C:\\a\\f.c", "D:\\a\\f.c", "C|||"}}); // equal directories emptied; the device stays
}

TEST(PathStructure, RelativePath) {
    const Binary rel = &ZuPathName::computeRelativePath;
    check({{rel, "/a/f", "/b/x", "|../a/|f|"}, {rel, "/a/b/c/f", "/a/x/", "|../b/c/|f|"},
           {rel, "/a/b/c/f", "/a/", "|b/c/|f|"}, {rel, "/a/", "/a/b/", "|../||"}, {rel, "/a/f", "/a/g", "||f|"},
           {rel, "/a/f", "b/", "|/a/|f|"}, {rel, "a/f", "/b/", "|a/|f|"},
           {rel, "ab/f", "x/", "|ab/|f|"}, // nothing in common
           {rel, "x/f", "y/", "||f|"},     // deliberate: equal-length first parts
           {rel, "C:\\a\\f", "D:\\b\\", "C|/a/|f|"}});
}

TEST(PathStructure, ShortenedPrints) {
    EXPECT_STREQ(path("C:\\Documents\\Projects.2024\\LongFileName.html").get83DosValue().getValue(),
                 "C:\\Document\\Projects.202\\LongFile.htm");
    EXPECT_STREQ(ZuPathName("../ab/c.d").get83DosValue().getValue(), "..\\ab\\c.d");
    const ZuPathName q("/very/long/path/name.txt"); // 24 characters
    for (auto [n, expected] : {std::pair{13, "/very...e.txt"}, {14, "/very...me.txt"},
                               {24, "/very/long/path/name.txt"}, {2, "..."}, {-5, "..."}})
        EXPECT_STREQ(q.getTruncatedValue(n).getValue(), expected) << n;
}

// Localisation under a messages locale; exits 0 when every print is right.
static void localizeInChild() {
    auto expect = [](const char* got, const char* expected) {
        if (std::strcmp(got, expected) == 0) return;
        std::fprintf(stderr, "%s, not %s\n", got, expected);
        std::exit(1);
    };
    ZuPathName p("data/msg.txt"), q("/d/x");
    if (!ZuLocale::Get(false, nullptr)) p.localize(), expect(p, "data/msg.txt"); // no default locale
    ZuLocale* locale = ZuSetLocale("C");
    if (!locale) expect("C refused", "");
    locale->getCategory(ZuCategory_Messages)->setStdLangTerr("fr_FR", ZuEnc_ISO_8859_1);
    expect(ZuPathName::Localize("data/msg.txt").getValue(), "data/locale/fr_FR.ISO-8859-1/msg.txt");
    locale->getCategory(ZuCategory_Messages)->setStdLangTerr("Cname", ZuEnc_US_ASCII);
    q.localize();
    expect(q, "/d/locale/Cname/x");
    std::exit(0);
}

// The default locale is process-wide: checked in a child process.
TEST(PathStructure, LocalizeInsertsTheMessagesLocale) {
    EXPECT_EXIT(localizeInChild(), ::testing::ExitedWithCode(0), "");
}
