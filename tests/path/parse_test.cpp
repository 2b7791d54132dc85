// Parsing of internal, Unix and DOS notation, printing both ways and the cache rule.
#include <zu/pathname.h>

#include "path_test_support.h"

#include <gtest/gtest.h>

#include <string>

using zu_test::parts;

TEST(PathParse, SplitsUnixNotation) {
    struct Case {
        const char* text;
        const char* expected; // device|directory|base|extension
    } cases[] = {
        {"/", "|/||"}, {"", "|||"}, {"a/b/c.txt", "|a/b/|c|txt"}, {"/c.txt", "|/|c|txt"}, {"dir/", "|dir/||"},
        {".profile", "||.profile|"}, {"file.", "||file.|"}, {"a.b.c", "||a.b|c"}, {"x/..", "|x/|..|"},
        {"./x", "||x|"},
        {"a//b/./c/../d.e", "|a/b/|d|e"},
        {"C:\\x", "||C:\\x|"}, // Unix notation: the backslash is part of the name
    };
    for (const Case& c : cases) EXPECT_EQ(parts(ZuPathName(c.text)), c.expected) << c.text;
    EXPECT_EQ(parts(ZuPathName(static_cast<const char*>(nullptr))), "|||");
    EXPECT_EQ(parts(ZuPathName(ZuString("q/r.s"))), "|q/|r|s");
}

TEST(PathParse, DotKeepsTheDirectoryAndEmptiesTheFileName) {
    ZuPathName p("keep/old.txt");
    p.setUnixValue(".");
    EXPECT_EQ(parts(p), "|keep/||");
    p.setUnixValue("");
    EXPECT_EQ(parts(p), "|||");
}

TEST(PathParse, SplitsDosNotation) {
    struct Case { const char* text; const char* expected; } cases[] = {
        {"C:\\x\\y.txt", "C|/x/|y|txt"}, {"c:file", "c|/|file|"}, {"C:", "C|/||"}, {"c:sub\\f", "c|sub/|f|"},
        {"\\\\server\\share\\dir\\f.txt", "\\\\server\\share|/dir/|f|txt"},
        {"\\\\server", "|/|server|"},        // no share: no device; "//server" is "/" + server
        {"\\\\server\\share", "|/server/|share|"}, // unfinished prefix: no device
        {"1:\\a", "|1:/|a|"},                 // not a letter: part of the name
        {"a\\b\\", "|a/b/||"}, {"", "|||"},
    };
    for (const Case& c : cases) {
        ZuPathName p;
        p.setValue(c.text, -1, ZuPathName::DosPathType);
        EXPECT_EQ(parts(p), c.expected) << c.text;
    }
}

TEST(PathParse, PrintsBothWays) {
    struct Case { const char* dos; const char* unixPrint; const char* dosPrint; } cases[] = {
        {"C:\\x\\y.txt", "/x/y.txt", "C:\\x\\y.txt"}, {"", "./", ".\\"}, {"c:file", "/file", "c:\\file"},
        {"c:sub\\f", "sub/f", "c:\\sub\\f"}, {"\\\\srv\\sh\\d\\f.txt", "/d/f.txt", "\\\\srv\\sh\\d\\f.txt"},
        {"a\\b", "a/b", "a\\b"}, {"name.ext", "name.ext", "name.ext"},
    };
    for (const Case& c : cases) {
        ZuPathName p;
        p.setDosValue(c.dos);
        EXPECT_STREQ(p.getString(ZuPathName::DosPathType).getValue(), c.dosPrint) << c.dos;
        EXPECT_STREQ(p.getString(ZuPathName::UnixPathType).getValue(), c.unixPrint) << c.dos;
    }
    ZuPathName root("/");
    EXPECT_STREQ(root.getUnixValue().getValue(), "/");
}

TEST(PathParse, DosRequestAfterUnixPrintReturnsTheCachedUnixString) {
    ZuPathName p;
    p.setDosValue("C:\\x\\y.txt");
    EXPECT_STREQ(p.getString(ZuPathName::SystemPathType).getValue(), "/x/y.txt");
    EXPECT_STREQ(p.getString(ZuPathName::DosPathType).getValue(), "/x/y.txt");
    p.setBaseName("z.txt"); // any setter makes the cache stale
    EXPECT_STREQ(p.getString(ZuPathName::DosPathType).getValue(), "C:\\x\\z.txt");
    // a DOS print never makes the cache valid
    EXPECT_STREQ(p.getString(ZuPathName::DosPathType).getValue(), "C:\\x\\z.txt");
    EXPECT_STREQ(static_cast<const char*>(p), "/x/z.txt");
}

TEST(PathParse, RangesAreEndThenStart) {
    const ZuString text("xx/dir/file.ext");
    ZuPathName p;
    p.setValue(text, 11, ZuPathName::UnixPathType, 3); // "dir/file"
    EXPECT_EQ(parts(p), "|dir/|file|");
    p.setBaseName(text, -1, 7); // "file.ext"
    EXPECT_EQ(parts(p), "|dir/|file|ext");
    p.setDevice(text, 2, 0);
    EXPECT_EQ(parts(p), "xx|dir/|file|ext");
    // empty ranges: end 0, end not past start, start past the end
    for (auto [end, start] : {std::pair{0, 0}, {3, 3}, {2, 5}, {-1, 15}, {-1, 99}}) {
        ZuPathName q("a/b.c");
        q.setUnixValue(text, end, start);
        EXPECT_EQ(parts(q), "|||") << end << "," << start;
    }
    ZuPathName q("a/b.c");
    q.setBaseName(text, 500, 12); // an end past the text reaches its end
    EXPECT_EQ(parts(q), "|a/|ext|");
}

TEST(PathParse, DirectorySettersKeepTheRest) {
    ZuPathName p("old/f.txt");
    p.setDirectory("x\\y", -1, ZuPathName::DosPathType);
    EXPECT_EQ(parts(p), "|x/y/|f|txt");
    p.setDirName("D:\\w", -1, ZuPathName::DosPathType);
    EXPECT_EQ(parts(p), "D|/w/|f|txt");
    p.setDirName("rel", -1, ZuPathName::UnixPathType);
    EXPECT_EQ(parts(p), "|rel/|f|txt");
    p.addDirectory("sub/../more");
    EXPECT_EQ(parts(p), "|rel/more/|f|txt");
    p.addDirectory("\\abs", -1, ZuPathName::DosPathType);
    EXPECT_EQ(parts(p), "|/abs/|f|txt");
    p.addDirectory("");
    EXPECT_EQ(parts(p), "|/abs/|f|txt");
    p.setUnixDirectory("");
    EXPECT_EQ(parts(p), "||f|txt");
    p.addUnixDirectory("q");
    EXPECT_EQ(parts(p), "|q/|f|txt");
    ZuPathName d;
    d.setDevice("E");
    EXPECT_EQ(parts(d), "E|/||");
}

TEST(PathParse, AssignmentAndCopyRenormaliseAndDropTheCache) {
    ZuPathName a;
    a.setDosValue("C:\\x\\y.txt");
    a.getUnixValue();
    ZuPathName b(a), c("z");
    c = a;
    EXPECT_TRUE(b == a);
    EXPECT_TRUE(c == a);
    // neither copy carries a valid cache, so a DOS request prints DOS
    EXPECT_STREQ(b.getString(ZuPathName::DosPathType).getValue(), "C:\\x\\y.txt");
    EXPECT_STREQ(c.getString(ZuPathName::DosPathType).getValue(), "C:\\x\\y.txt");
    c = c;
    EXPECT_TRUE(c == a);
    ZuPathName empty, target("a/b"), other("/x/Y.txt");
    target = empty;
    EXPECT_EQ(parts(target), "|||");
    EXPECT_FALSE(a == other); // case-sensitive, device included
    other.setBaseName("y.txt");
    other.setDevice("C");
    EXPECT_TRUE(a == other && a.isSensitive());
    other.setDevice("D");
    EXPECT_FALSE(a == other);
}

TEST(PathParse, DirectoryGetters) {
    ZuPathName p;
    p.setDosValue("C:\\x\\y\\f.txt");
    EXPECT_STREQ(p.getUnixDirectory(true).getValue(), "/x/y/");
    EXPECT_STREQ(p.getUnixDirectory(false).getValue(), "/x/y");
    EXPECT_STREQ(p.getDosDirectory(false).getValue(), "\\x\\y");
    EXPECT_STREQ(p.getDirName(true, ZuPathName::DosPathType).getValue(), "C:\\x\\y\\");
    EXPECT_STREQ(p.getDirName(false, ZuPathName::UnixPathType).getValue(), "/x/y");
    EXPECT_STREQ(p.getBaseName().getValue(), "f.txt");
    const ZuPathName e;
    EXPECT_STREQ(e.getDirectory(false, ZuPathName::UnixPathType).getValue(), ".");
    EXPECT_STREQ(e.getDosDirectory(true).getValue(), ".\\");
}
