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
    int n = 0;
    if (DIR* d = ::opendir("/proc/self/fd")) {
        while (::readdir(d)) ++n;
        ::closedir(d);
    }
    return n;
}

// The entries of a scan, each as its fields.
std::multiset<std::string> scan(const char* dir) {
    ZuPathName p(dir);
    std::multiset<std::string> entries;
    ZuPathName entry("stale/value.x");
    if (!p.openDir()) return entries;
    while (p.readDir(entry)) entries.insert(parts(entry));
    return entries;
}

} // namespace

TEST_F(PathFiles, CreateFollowsTheRecursionRules) {
    EXPECT_FALSE(ZuPathName("a/b/c.txt").create(-1, false));
    EXPECT_TRUE(ZuPathName("a/b/c.txt").create(-1, true));
    EXPECT_TRUE(ZuPathName("a/b/").isSystemDirectory());
    EXPECT_TRUE(ZuPathName("a/b/c.txt").doesExist());
    EXPECT_TRUE(ZuPathName("a/b/d.txt").create(0600, false)); // its directory exists
    short mode = 0;
    EXPECT_TRUE(ZuPathName("a/b/d.txt").queryMode(mode));
    EXPECT_EQ(mode & 0777, 0600);
    EXPECT_FALSE(ZuPathName("a/d/").create(-1, false)); // deliberate, though a/ exists
    EXPECT_TRUE(ZuPathName("a/d/").create(-1, true));
    EXPECT_TRUE(ZuPathName("a/d/").create(-1, false)); // exists already
    EXPECT_TRUE(ZuPathName(_dir.c_str()).isSystemDirectory());
    EXPECT_FALSE(ZuPathName("a/b/c.txt").isSystemDirectory());
    EXPECT_TRUE(ZuPathName("a/b").isSystemDirectory()); // the file name taken as a directory
}

TEST_F(PathFiles, RemoveFollowsTheRecursionRulesAndNeverLeavesTheTree) {
    ASSERT_TRUE(ZuPathName("t/s/f.txt").create(-1, true));
    ASSERT_TRUE(ZuPathName("out/keep.txt").create(-1, true));
    ASSERT_EQ(::symlink((_dir + "out").c_str(), "t/s/dirlink"), 0);
    ASSERT_EQ(::symlink((_dir + "out/keep.txt").c_str(), "t/filelink"), 0);
    ASSERT_EQ(::symlink((_dir + "nowhere").c_str(), "t/dangling"), 0);
    EXPECT_FALSE(ZuPathName("missing.txt").remove(true));
    EXPECT_FALSE(ZuPathName("t/").remove(false));
    EXPECT_TRUE(ZuPathName("t/s/f.txt").doesExist());
    EXPECT_TRUE(ZuPathName("t/").remove(true));
    EXPECT_FALSE(ZuPathName("t/").doesExist());
    EXPECT_TRUE(ZuPathName("out/keep.txt").doesExist()); // the links were not followed
    ASSERT_EQ(::symlink((_dir + "out").c_str(), "top"), 0);
    EXPECT_TRUE(ZuPathName("top/").remove(true)); // a link to a directory goes as a link
    EXPECT_TRUE(ZuPathName("out/keep.txt").doesExist());
    EXPECT_TRUE(ZuPathName("out/keep.txt").remove(false));
    EXPECT_TRUE(ZuPathName("out/").remove(false)); // now empty
}

TEST_F(PathFiles, ScansReturnEntryShapes) {
    ASSERT_TRUE(ZuPathName("e/").create(-1, true));
    EXPECT_EQ(scan("e/"), (std::multiset<std::string>{"|||", "|../||"}));
    EXPECT_TRUE(ZuPathName("e/").isEmptyDirectory());
    ASSERT_TRUE(ZuPathName("e/f.txt").create(-1, false));
    ASSERT_TRUE(ZuPathName("e/sub/").create(-1, true));
    EXPECT_EQ(scan("e/ignored.name"), (std::multiset<std::string>{"|||", "|../||", "||f|txt", "|sub/||"}));
    EXPECT_FALSE(ZuPathName("e/").isEmptyDirectory());
    EXPECT_FALSE(ZuPathName("nope/").isEmptyDirectory());
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
        ASSERT_TRUE(p.openDir());
        ASSERT_TRUE(p.openDir()); // reopening closes the first stream
        ASSERT_TRUE(q.openDir());
        q = p;                    // assignment closes q's stream
        EXPECT_TRUE(p.isEmptyDirectory());
        ASSERT_TRUE(p.openDir()); // the destructor closes this one
    }
    EXPECT_EQ(openDescriptors(), before);
}

TEST_F(PathFiles, QueriesAndCurrentDirectory) {
    ASSERT_TRUE(ZuPathName("f.txt").create(-1, false));
    const ZuPathName f("f.txt"), missing("new.txt");
    EXPECT_TRUE(f.isNewer(f) && !f.isNewer(missing));
    EXPECT_TRUE(missing.isWritable() && !missing.isReadable()); // can be created here
    EXPECT_FALSE(ZuPathName("no/new.txt").isWritable());
    EXPECT_TRUE(f.isReadable() && f.isWritable() && !f.isExecutable());
    EXPECT_TRUE(f.changeMode(0700));
    EXPECT_TRUE(f.isExecutable());
    EXPECT_FALSE(missing.changeMode(0700));
    long m = 0, a = 0, c = 0;
    EXPECT_TRUE(f.queryModificationTime(m) && f.queryAccessTime(a) && f.queryChangedStatusTime(c));
    EXPECT_GT(m, 0);
    EXPECT_TRUE(ZuPathName::doesExist("f.txt"));
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
