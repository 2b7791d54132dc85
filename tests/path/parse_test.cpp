// Parsing of internal, Unix and DOS notation, printing both ways and the cache rule.
#include <zu/pathname.h>

#include "path_test_support.h"

#include <gtest/gtest.h>

#include <initializer_list>
#include <string>

using zu_test::parts;

namespace {

typedef ZuPathName P;
const char* const kText = "xx/dir/file.ext";

// Applies each setter in turn to p, checking the fields after each.
struct Step { void (*set)(P&); const char* expected; };
void run(P p, std::initializer_list<Step> steps) {
    int i = 0;
    for (const Step& s : steps) {
        s.set(p);
        EXPECT_EQ(parts(p), s.expected) << "step " << i++;
    }
}

} // namespace

TEST(PathParse, SplitsUnixNotation) {
    struct Case { const char *text, *expected; } cases[] = { // expected: device|directory|base|extension
        {"/", "|/||"}, {"", "|||"}, {"a/b/c.txt", "|a/b/|c|txt"}, {"/c.txt", "|/|c|txt"}, {"dir/", "|dir/||"},
        {".profile", "||.profile|"}, {"file.", "||file.|"}, {"a.b.c", "||a.b|c"}, {"x/..", "|x/|..|"},
        {"./x", "||x|"}, {"a//b/./c/../d.e", "|a/b/|d|e"},
        {"C:\\x", "||C:\\x|"}, // Unix notation: the backslash is part of the name
    };
    for (const Case& c : cases) EXPECT_EQ(parts(ZuPathName(c.text)), c.expected) << c.text;
    EXPECT_EQ(parts(ZuPathName(static_cast<const char*>(nullptr))), "|||");
    EXPECT_EQ(parts(ZuPathName(ZuString("q/r.s"))), "|q/|r|s");
}

TEST(PathParse, SplitsAndPrintsDosNotation) {
    struct Case { const char *text, *fields, *unixPrint, *dosPrint; } cases[] = {
        {"C:\\x\\y.txt", "C|/x/|y|txt", "/x/y.txt", "C:\\x\\y.txt"}, {"", "|||", "./", ".\\"},
        {"c:file", "c|/|file|", "/file", "c:\\file"}, {"C:", "C|/||", "/", "C:\\"},
        {"c:sub\\f", "c|sub/|f|", "sub/f", "c:\\sub\\f"}, {"a\\b\\", "|a/b/||", "a/b/", "a\\b\\"},
        {"\\\\srv\\sh\\d\\f.txt", "\\\\srv\\sh|/d/|f|txt", "/d/f.txt", "\\\\srv\\sh\\d\\f.txt"},
        {"\\\\server", "|/|server|", "/server", "\\server"}, // no share: no device; "//server" is "/" + server
        {"\\\\server\\share", "|/server/|share|", "/server/share", "\\server\\share"}, // unfinished: no device
        {"1:\\a", "|1:/|a|", "1:/a", "1:\\a"}, // not a letter: part of the name
        {"name.ext", "||name|ext", "name.ext", "name.ext"},
    };
    for (const Case& c : cases) {
        ZuPathName p;
        p.setValue(c.text, -1, ZuPathName::DosPathType);
        EXPECT_EQ(parts(p), c.fields) << c.text;
        EXPECT_STREQ(p.getString(ZuPathName::DosPathType).getValue(), c.dosPrint) << c.text;
        EXPECT_STREQ(p.getString(ZuPathName::UnixPathType).getValue(), c.unixPrint) << c.text;
    }
    EXPECT_STREQ(ZuPathName("/").getUnixValue().getValue(), "/");
}

TEST(PathParse, RangesAreEndThenStart) {
    run(P(), {{[](P& p) { p.setValue(kText, 11, P::UnixPathType, 3); }, "|dir/|file|"}, // "dir/file"
              {[](P& p) { p.setBaseName(kText, -1, 7); }, "|dir/|file|ext"},              // "file.ext"
              {[](P& p) { p.setDevice(kText, 2, 0); }, "xx|dir/|file|ext"}});
    // empty ranges: end 0, end not past start, start past the end
    for (auto [end, start] : {std::pair{0, 0}, {3, 3}, {2, 5}, {-1, 15}, {-1, 99}}) {
        ZuPathName q("a/b.c");
        q.setUnixValue(kText, end, start);
        EXPECT_EQ(parts(q), "|||") << end << "," << start;
    }
    // an end past the text reaches its end
    run(P("a/b.c"), {{[](P& p) { p.setBaseName(kText, 500, 12); }, "|a/|ext|"}});
}

TEST(PathParse, SettersKeepTheRest) { // "." exactly empties the file name and keeps the directory
    run(P("old/f.txt"), {{[](P& p) { p.setDirectory("x\\y", -1, P::DosPathType); }, "|x/y/|f|txt"},
                         {[](P& p) { p.setDirName("D:\\w", -1, P::DosPathType); }, "D|/w/|f|txt"},
                         {[](P& p) { p.setDirName("rel", -1, P::UnixPathType); }, "|rel/|f|txt"},
                         {[](P& p) { p.addDirectory("sub/../more"); }, "|rel/more/|f|txt"},
                         {[](P& p) { p.addDirectory("\\abs", -1, P::DosPathType); }, "|/abs/|f|txt"},
                         {[](P& p) { p.addDirectory(""); }, "|/abs/|f|txt"},
                         {[](P& p) { p.setUnixDirectory(""); }, "||f|txt"},
                         {[](P& p) { p.addUnixDirectory("q"); }, "|q/|f|txt"},
                         {[](P& p) { p.setUnixValue("."); }, "|q/||"}, {[](P& p) { p.setUnixValue(""); }, "|||"},
                         {[](P& p) { p.setDevice("E"); }, "E|/||"}});
}

TEST(PathParse, UnixPrintIsCachedAndCopiesDropTheCache) {
    ZuPathName a, empty, target("a/b"), other("/x/Y.txt");
    a.setDosValue("C:\\x\\y.txt");
    EXPECT_STREQ(a.getString(P::SystemPathType).getValue(), "/x/y.txt");
    EXPECT_STREQ(a.getString(P::DosPathType).getValue(), "/x/y.txt"); // deliberate: the cached Unix print
    ZuPathName b(a), c("z");
    c = a;
    c = c;
    for (ZuPathName* copy : {&b, &c}) { // no copy carries a valid cache, so a DOS request prints DOS
        EXPECT_TRUE(*copy == a);
        EXPECT_STREQ(copy->getString(P::DosPathType).getValue(), "C:\\x\\y.txt");
    }
    target = empty;
    EXPECT_EQ(parts(target), "|||");
    EXPECT_FALSE(a == other); // case-sensitive, device included
    other.setBaseName("y.txt");
    other.setDevice("C");
    EXPECT_TRUE(a == other && a.isSensitive());
    other.setDevice("D");
    EXPECT_FALSE(a == other);
    a.setBaseName("z.txt"); // any setter makes the cache stale
    for (int i = 0; i < 2; ++i) // and a DOS print never makes it valid
        EXPECT_STREQ(a.getString(P::DosPathType).getValue(), "C:\\x\\z.txt");
    EXPECT_STREQ(static_cast<const char*>(a), "/x/z.txt");
}

TEST(PathParse, DirectoryGetters) {
    ZuPathName p;
    p.setDosValue("C:\\x\\y\\f.txt");
    const ZuPathName e;
    for (auto [got, expected] : {std::pair{p.getUnixDirectory(true), "/x/y/"}, {p.getUnixDirectory(false), "/x/y"},
             {p.getDosDirectory(false), "\\x\\y"}, {p.getDirName(true, P::DosPathType), "C:\\x\\y\\"},
             {p.getDirName(false, P::UnixPathType), "/x/y"}, {p.getBaseName(), "f.txt"},
             {e.getDirectory(false, P::UnixPathType), "."}, {e.getDosDirectory(true), ".\\"}})
        EXPECT_STREQ(got.getValue(), expected);
}
