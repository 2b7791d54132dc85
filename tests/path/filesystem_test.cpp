// File-system operations, each test in a fresh temporary directory.
#include <zu/pathname.h>

#include "path_test_support.h"

#include <gtest/gtest.h>

#include <dirent.h>
#include <sys/stat.h>
#include <unistd.h>

#include <set>
#include <string>

using zu_test::parts;

namespace {

class PathFiles : public zu_test::TempDirTest {};

int openDescriptors() {
    DIR* d = ::opendir("/proc/self/fd");
    int n = 0;
    for (; d && ::readdir(d); ++n) {}
    return d ? (::closedir(d), n) : 0;
}

// The entries of a scan, each as its fields.
std::multiset<std::string> scan(const char* dir) {
    ZuPathName p(dir), entry("stale/value.x");
    std::multiset<std::string> entries;
    for (bool open = p.openDir(); open && p.readDir(entry);) entries.insert(parts(entry));
    return entries;
}

} // namespace

TEST_F(PathFiles, CreateFollowsTheRecursionRules) {
    struct { const char* text; short mode; bool recursive, expected; } steps[] = {
        {"a/b/c.txt", -1, false, false}, {"a/b/c.txt", -1, true, true},
        {"a/b/d.txt", 0600, false, true}, // its directory exists
        {"a/d/", -1, false, false},       // deliberate, though a/ exists
        {"a/d/", -1, true, true}, {"a/d/", -1, false, true}}; // the last: exists already
    for (auto& s : steps) EXPECT_EQ(ZuPathName(s.text).create(s.mode, s.recursive), s.expected) << s.text;
    short mode = 0;
    EXPECT_TRUE(ZuPathName("a/b/d.txt").queryMode(mode) && ZuPathName("a/b/c.txt").doesExist());
    EXPECT_EQ(mode & 0777, 0600);
    // "a/b": the file name taken as a directory
    for (auto [text, isDir] : {std::pair{"a/b/", true}, {_dir.c_str(), true}, {"a/b/c.txt", false}, {"a/b", true}})
        EXPECT_EQ(ZuPathName(text).isSystemDirectory(), isDir) << text;
}

TEST_F(PathFiles, RemoveFollowsTheRecursionRulesAndNeverLeavesTheTree) {
    ASSERT_TRUE(ZuPathName("t/s/f.txt").create(-1, true) && ZuPathName("out/keep.txt").create(-1, true));
    for (auto [target, link] :
         {std::pair{"out", "t/s/dirlink"}, {"out/keep.txt", "t/filelink"}, {"nowhere", "t/dangling"}, {"out", "top"}})
        ASSERT_EQ(::symlink((_dir + target).c_str(), link), 0);
    EXPECT_FALSE(ZuPathName("missing.txt").remove(true) || ZuPathName("t/").remove(false));
    EXPECT_TRUE(ZuPathName("t/s/f.txt").doesExist());
    EXPECT_TRUE(ZuPathName("t/").remove(true));
    EXPECT_FALSE(ZuPathName("t/").doesExist());
    EXPECT_TRUE(ZuPathName("top/").remove(true));        // a link to a directory goes as a link
    EXPECT_TRUE(ZuPathName("out/keep.txt").doesExist()); // no link was followed
    EXPECT_TRUE(ZuPathName("out/keep.txt").remove(false));
    EXPECT_TRUE(ZuPathName("out/").remove(false)); // now empty
}

TEST_F(PathFiles, ScansReturnEntryShapes) {
    ASSERT_TRUE(ZuPathName("e/").create(-1, true));
    EXPECT_EQ(scan("e/"), (std::multiset<std::string>{"|||", "|../||"}));
    EXPECT_TRUE(ZuPathName("e/").isEmptyDirectory());
    ASSERT_TRUE(ZuPathName("e/f.txt").create(-1, false) && ZuPathName("e/sub/").create(-1, true));
    EXPECT_EQ(scan("e/ignored.name"), (std::multiset<std::string>{"|||", "|../||", "||f|txt", "|sub/||"}));
    EXPECT_FALSE(ZuPathName("e/").isEmptyDirectory() || ZuPathName("nope/").isEmptyDirectory());
    ZuPathName none("e/"), entry;
    EXPECT_FALSE(none.readDir(entry)); // no open stream
    ASSERT_TRUE(none.openDir());
    int count = 0;
    for (int pass = 0; pass < 2; ++pass, none.rewindDir())
        while (none.readDir(entry)) count += pass ? -1 : 1;
    EXPECT_EQ(count, 0); // the rewound scan sees the same entries
    none.closeDir();
    EXPECT_FALSE(none.readDir(entry));
}

TEST_F(PathFiles, DirectoryStreamsAreAlwaysClosed) {
    ASSERT_TRUE(ZuPathName("d/").create(-1, true));
    const int before = openDescriptors();
    for (int i = 0; i < 50; ++i) {
        ZuPathName p("d/"), q("d/");
        ASSERT_TRUE(p.openDir() && p.openDir() && q.openDir()); // reopening closes the first stream
        q = p;                    // assignment closes q's stream
        EXPECT_TRUE(p.isEmptyDirectory());
        ASSERT_TRUE(p.openDir()); // the destructor closes this one
    }
    EXPECT_EQ(openDescriptors(), before);
}

TEST_F(PathFiles, QueriesAndCurrentDirectory) {
    ASSERT_TRUE(ZuPathName("f.txt").create(-1, false));
    const ZuPathName f("f.txt"), missing("new.txt");
    EXPECT_TRUE(f.isNewer(f) && !f.isNewer(missing) && ZuPathName::doesExist("f.txt"));
    // a missing file is writable when it can be created there
    EXPECT_TRUE(missing.isWritable() && !missing.isReadable() && !ZuPathName("no/new.txt").isWritable());
    EXPECT_TRUE(f.isReadable() && f.isWritable() && !f.isExecutable());
    EXPECT_TRUE(f.changeMode(0700) && f.isExecutable() && !missing.changeMode(0700));
    long m = 0, a = 0, c = 0;
    EXPECT_TRUE(f.queryModificationTime(m) && f.queryAccessTime(a) && f.queryChangedStatusTime(c));
    EXPECT_GT(m, 0);
    ZuPathName here("keep.me");
    here.queryCurrentDirectory(nullptr);
    EXPECT_EQ(parts(here), "|" + _dir + "|keep|me");
    char small[4];
    ZuPathName::QueryCurrentDirectory(small, sizeof small, nullptr); // too small: no overrun
    EXPECT_STREQ(small, "");
    ASSERT_TRUE(ZuPathName("sub/").create(-1, true));
    EXPECT_TRUE(ZuPathName("sub/x.y").changeCurrentDirectory());
    here.queryCurrentDirectory(nullptr);
    EXPECT_EQ(parts(here), "|" + _dir + "sub/|keep|me");
}
