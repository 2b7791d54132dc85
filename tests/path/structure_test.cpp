// Structural operations: levels, sub-directories, forcing, merging, the common
// leading and trailing parts, relative paths, shortened prints and localisation.
#include <zu/locale.h>
#include <zu/pathname.h>

#include "path_test_support.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <cstring>
#include <functional>
#include <string>

using zu_test::parts;

namespace {

// Runs op on a copy of the path text and returns the fields.
std::string after(const char* text, const std::function<void(ZuPathName&)>& op) {
    ZuPathName p(text);
    op(p);
    return parts(p);
}

} // namespace

TEST(PathStructure, LevelNumberCountsSlashesAfterTheFirstCharacter) {
    for (auto [dir, level] : {std::pair{"/", 0}, {"", 0}, {"a/", 1}, {"/a/", 1}, {"a/b/", 2}, {"/a/b/", 2}}) {
        ZuPathName p;
        p.setInternalDir(dir);
        EXPECT_EQ(p.computeLevelNumber(), level) << dir;
    }
}

TEST(PathStructure, SubDirectoryIsASubstringTest) {
    struct Case { const char *inner, *outer; bool expected; } cases[] = {
        {"/a/b/", "/a/", true},  {"/x/a/b/", "/a/", true}, // deliberate: not a prefix test
        {"/b/", "/a/", false},   {"/a/f.txt", "/a/", false}, {"/a/b/", "/a/f", false},
        {"a/b/", "a/", true},    {"", "", false},
    };
    for (const Case& c : cases)
        EXPECT_EQ(ZuPathName(c.inner).isSubDirectory(ZuPathName(c.outer)), c.expected) << c.inner << " in " << c.outer;
    ZuPathName c, d, e;
    c.setDosValue("C:\\a\\b\\");
    d.setDosValue("D:\\a\\");
    e.setDosValue("C:\\a\\");
    EXPECT_FALSE(c.isSubDirectory(d));
    EXPECT_TRUE(c.isSubDirectory(e));
    EXPECT_TRUE(c.isSubDirectory(ZuPathName("/a/")));
}

TEST(PathStructure, SubDirectoryNumbering) {
    const ZuPathName p("/a/b/c/f.x");
    EXPECT_STREQ(p.getSubDirectory(0, 0).getValue(), "/a/");
    EXPECT_STREQ(p.getSubDirectory(1, 1).getValue(), "b/");
    EXPECT_STREQ(p.getSubDirectory(0, 1).getValue(), "/a/b/");
    EXPECT_STREQ(p.getSubDirectory(2, -1).getValue(), "c/");
    EXPECT_STREQ(p.getSubDirectory(5, 6).getValue(), "");
    EXPECT_STREQ(p.getSubDirectory(2, 1).getValue(), "");
    struct Case { const char* text; const char *first, *last, *allButFirst, *allButLast; } cases[] = {
        {"/a/b/c/f.x", "|/a/|f|x", "|c/|f|x", "|b/c/|f|x", "|/a/b/|f|x"},
        {"x/y/", "|x/||", "|y/||", "|y/||", "|x/||"}, {"/a/", "|/a/||", "|/a/||", "|||", "|/||"},
        {"x/", "|x/||", "|x/||", "|||", "|||"}, {"/", "|/||", "|/||", "|/||", "|/||"},
        {"f", "||f|", "||f|", "||f|", "||f|"},
    };
    for (const Case& c : cases) {
        EXPECT_EQ(after(c.text, [](ZuPathName& p) { p.computeFirstSubDirectory(); }), c.first) << c.text;
        EXPECT_EQ(after(c.text, [](ZuPathName& p) { p.computeLastSubDirectory(); }), c.last) << c.text;
        EXPECT_EQ(after(c.text, [](ZuPathName& p) { p.computeAllButFirstSubDirectory(); }), c.allButFirst) << c.text;
        EXPECT_EQ(after(c.text, [](ZuPathName& p) { p.computeAllButLastSubDirectory(); }), c.allButLast) << c.text;
    }
}

TEST(PathStructure, ForceMergeAndPrepend) {
    auto absolute = [](ZuPathName& p) { p.forceAbsolute(); };
    auto relative = [](ZuPathName& p) { p.forceRelative(); };
    auto directory = [](ZuPathName& p) { p.forceDirectory(); };
    EXPECT_EQ(after("", absolute), "|/||");
    EXPECT_EQ(after("a/f", absolute), "|/a/|f|");
    EXPECT_EQ(after("/a/f", absolute), "|/a/|f|");
    EXPECT_EQ(after("../a/", absolute), "|/../a/||");
    EXPECT_EQ(after("/a/f", relative), "|a/|f|");
    EXPECT_EQ(after("/", relative), "|||");
    EXPECT_EQ(after("a/b.c", directory), "|a/b.c/||");
    EXPECT_EQ(after(".profile", directory), "|.profile/||");
    EXPECT_EQ(after("a/", directory), "|a/||");
    auto mergeWith = [](const char* other) {
        return [other](ZuPathName& p) { p.merge(ZuPathName(other)); };
    };
    EXPECT_EQ(after("/base/x.y", mergeWith("sub/f.txt")), "|/base/sub/|f|txt");
    EXPECT_EQ(after("/base/x.y", mergeWith("/abs/g")), "|/abs/|g|");
    EXPECT_EQ(after("/base/x.y", mergeWith("z/")), "|/base/z/||"); // the empty file name is taken too
    EXPECT_EQ(after("/base/x.y", mergeWith("../q")), "|/|q|");
    EXPECT_EQ(after("", mergeWith("")), "|||");
    auto prependWith = [](const char* other) {
        return [other](ZuPathName& p) { p.prepend(ZuPathName(other)); };
    };
    EXPECT_EQ(after("f.txt", prependWith("/root/")), "|/root/|f|txt");
    EXPECT_EQ(after("s/f.txt", prependWith("/root/x")), "|/root/s/|f|txt");
    EXPECT_EQ(after("/abs/f", prependWith("/root/")), "|/abs/|f|");
}

TEST(PathStructure, LeadingParts) {
    auto same = [](const char* other) { return [other](ZuPathName& p) { p.computeSameLeading(ZuPathName(other)); }; };
    auto differ = [](const char* other) { return [other](ZuPathName& p) { p.computeDifferLeading(ZuPathName(other)); }; };
    EXPECT_EQ(after("/a/b/f.c", same("/a/c/f.c")), "|/a/||");
    EXPECT_EQ(after("/a/b/f.c", same("/a/b/g.c")), "|/a/b/||");
    EXPECT_EQ(after("/a/b/f.c", same("/a/b/f.h")), "|/a/b/|f|");
    EXPECT_EQ(after("/a/b/f.c", same("/a/b/f.c")), "|/a/b/|f|c");
    EXPECT_EQ(after("/a/b/f.c", same("/ab/b/f.c")), "|/||");
    EXPECT_EQ(after("ab/x/f", same("cd/y/f")), "|ab/||"); // deliberate: equal-length first parts
    EXPECT_EQ(after("ab/x/f", same("c/x/f")), "|||");
    EXPECT_EQ(after("/a/b/f.c", differ("/a/c/g.c")), "|b/|f|c");
    EXPECT_EQ(after("/a/b/f.c", differ("/a/b/g.c")), "||f|c");
    EXPECT_EQ(after("/a/f.c", differ("/a/b/f.c")), "|||");
    EXPECT_EQ(after("/a/f.c", differ("/a/b/f.h")), "|||c");
    EXPECT_EQ(after("/a/f.c", differ("/a/b/g.c")), "||f|c");
    ZuPathName c, d;
    c.setDosValue("C:\\a\\f");
    d.setDosValue("D:\\a\\f");
    ZuPathName c2(c);
    c2.computeSameLeading(d);
    EXPECT_EQ(parts(c2), "|||");
    c2 = c;
    c2.computeDifferLeading(d);
    EXPECT_EQ(parts(c2), "C|/a/|f|"); // devices differ: unchanged
}

TEST(PathStructure, TrailingParts) {
    auto same = [](const char* other) { return [other](ZuPathName& p) { p.computeSameTrailing(ZuPathName(other)); }; };
    auto differ = [](const char* other) { return [other](ZuPathName& p) { p.computeDifferTrailing(ZuPathName(other)); }; };
    EXPECT_EQ(after("/x/a/b/f.c", same("/y/a/b/f.c")), "|a/b/|f|c");
    EXPECT_EQ(after("/x/a/b/f.c", same("/x/a/b/g.c")), "|||c");
    EXPECT_EQ(after("/x/a/b/f.c", same("/x/a/b/f.h")), "|||");
    EXPECT_EQ(after("/a/b/f.c", same("a/b/f.c")), "|a/b/|f|c");
    EXPECT_EQ(after("/x/a/f.c", same("/a/x/f.c")), "||f|c");
    EXPECT_EQ(after("a/b/f.c", same("z/a/b/f.c")), "|a/b/|f|c");
    EXPECT_EQ(after("/x/a/b/f.c", differ("/y/a/b/f.c")), "|/x/||");
    EXPECT_EQ(after("/x/a/b/f.c", differ("/x/a/b/g.c")), "|/x/a/b/|f|");
    EXPECT_EQ(after("/x/a/b/f.c", differ("/x/a/b/f.h")), "|/x/a/b/|f|c");
    EXPECT_EQ(after("/x/a/b/f.c", differ("/x/a/b/f.c")), "|||");
    EXPECT_EQ(after("a/b/f.c", differ("z/a/b/f.c")), "|||");
    ZuPathName c, d;
    c.setDosValue("C:\\a\\f.c");
    d.setDosValue("D:\\a\\f.c");
    ZuPathName c2(c);
    c2.computeSameTrailing(d);
    EXPECT_EQ(parts(c2), "|/a/|f|c");
    c2 = c;
    c2.computeDifferTrailing(d);
    EXPECT_EQ(parts(c2), "C|||"); // equal directories emptied; the differing device stays
}

TEST(PathStructure, RelativePath) {
    auto relativeTo = [](const char* ref) { return [ref](ZuPathName& p) { p.computeRelativePath(ZuPathName(ref)); }; };
    EXPECT_EQ(after("/a/f", relativeTo("/b/x")), "|../a/|f|");
    EXPECT_EQ(after("/a/b/c/f", relativeTo("/a/x/")), "|../b/c/|f|");
    EXPECT_EQ(after("/a/b/c/f", relativeTo("/a/")), "|b/c/|f|");
    EXPECT_EQ(after("/a/", relativeTo("/a/b/")), "|../||");
    EXPECT_EQ(after("/a/f", relativeTo("/a/g")), "||f|");
    EXPECT_EQ(after("/a/f", relativeTo("b/")), "|/a/|f|");
    EXPECT_EQ(after("a/f", relativeTo("/b/")), "|a/|f|");
    EXPECT_EQ(after("ab/f", relativeTo("x/")), "|ab/|f|"); // nothing in common
    EXPECT_EQ(after("x/f", relativeTo("y/")), "||f|");    // deliberate: equal-length first parts
    ZuPathName c, d;
    c.setDosValue("C:\\a\\f");
    d.setDosValue("D:\\b\\");
    c.computeRelativePath(d);
    EXPECT_EQ(parts(c), "C|/a/|f|");
}

TEST(PathStructure, ShortenedPrints) {
    ZuPathName p;
    p.setDosValue("C:\\Documents\\Projects.2024\\LongFileName.html");
    EXPECT_STREQ(p.get83DosValue().getValue(), "C:\\Document\\Projects.202\\LongFile.htm");
    EXPECT_STREQ(ZuPathName("../ab/c.d").get83DosValue().getValue(), "..\\ab\\c.d");
    const ZuPathName q("/very/long/path/name.txt"); // 24 characters
    EXPECT_STREQ(q.getTruncatedValue(13).getValue(), "/very...e.txt");
    EXPECT_STREQ(q.getTruncatedValue(14).getValue(), "/very...me.txt");
    EXPECT_STREQ(q.getTruncatedValue(24).getValue(), "/very/long/path/name.txt");
    EXPECT_STREQ(q.getTruncatedValue(2).getValue(), "...");
    EXPECT_STREQ(q.getTruncatedValue(-5).getValue(), "...");
}

// The default locale is process-wide: checked in a child process.
TEST(PathStructure, LocalizeInsertsTheMessagesLocale) {
    EXPECT_EXIT(
        {
            auto fail = [](const char* what, const char* got) {
                std::fprintf(stderr, "%s: %s\n", what, got);
                std::exit(1);
            };
            if (!ZuLocale::Get(false, nullptr)) {
                ZuPathName p("data/msg.txt");
                p.localize();
                if (std::strcmp(p, "data/msg.txt") != 0) fail("no default locale", p);
            }
            ZuLocale* locale = ZuSetLocale("C");
            if (!locale) fail("C", "refused");
            locale->getCategory(ZuCategory_Messages)->setStdLangTerr("fr_FR", ZuEnc_ISO_8859_1);
            const ZuString standard = ZuPathName::Localize("data/msg.txt");
            if (std::strcmp(standard.getValue(), "data/locale/fr_FR.ISO-8859-1/msg.txt") != 0)
                fail("standard name", standard.getValue());
            locale->getCategory(ZuCategory_Messages)->setStdLangTerr("Cname", ZuEnc_US_ASCII);
            ZuPathName q("/d/x");
            q.localize();
            if (std::strcmp(q, "/d/locale/Cname/x") != 0) fail("own name", q);
            std::exit(0);
        },
        ::testing::ExitedWithCode(0), "");
}
