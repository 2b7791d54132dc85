// Path lists: splitting, the three sub-lists, unique, the iterator and findInPath.
#include <zu/pathlist.h>

#include "path_test_support.h"

#include <gtest/gtest.h>

#include <string>

namespace {

std::string walk(const ZuPathList& list) {
    std::string text;
    for (ZuPathListIterator it(list); !!it; it++) text += std::string(static_cast<const ZuPathName&>(it)) + ";";
    return text;
}

// "prev|main|post", each as its string.
std::string lists(const ZuPathList& list) {
    return std::string(list.getPrevListString().getValue()) + "|" + list.getListString().getValue() + "|" +
           list.getPostListString().getValue();
}

class PathListFiles : public zu_test::TempDirTest {};

} // namespace

TEST(PathList, SplitsKeepingEmptyPiecesAndJoins) {
    struct Case { const char *in, *out; } cases[] = {
        {"a::b", "a/:./:b/"}, {"", "./"}, {":", "./:./"}, {"/x/f.txt:y", "/x/f.txt/:y/"}, {"c/./d/", "c/d/"},
    };
    for (const Case& c : cases) EXPECT_STREQ(ZuPathList(c.in).getString().getValue(), c.out) << c.in;
    EXPECT_STREQ(ZuPathList().getString().getValue(), "");
}

TEST(PathList, SubListFormsAndIteratorOrder) {
    ZuPathList list("m1:m2");
    list.setPrevList(ZuPathName("p1")), list.insertInPrevList("p0a:p0b"), list.addInPrevList(ZuPathName("p2/"));
    list.addInPostList("q1:q2"), list.insertInPostList(ZuPathName("q0"));
    list.insertInList(ZuPathName("m0")), list.addInList("m3");
    EXPECT_EQ(lists(list), "p0a/:p0b/:p1/:p2/|m0/:m1/:m2/:m3/|q0/:q1/:q2/");
    EXPECT_EQ(walk(list), "p0a/;p0b/;p1/;p2/;m0/;m1/;m2/;m3/;q0/;q1/;q2/;");
    ZuPathList other;
    other.setList(list), other.addInList(list); // the other's main list, twice
    other.insertInPostList(list), other.addInPrevList(list);
    EXPECT_STREQ(other.getString().getValue(),
                 "p0a/:p0b/:p1/:p2/:m0/:m1/:m2/:m3/:m0/:m1/:m2/:m3/:q0/:q1/:q2/");
    other.setList("z"), other.setPostList(ZuPathName("w")), other.setPrevList(ZuPathList());
    EXPECT_EQ(walk(other), "z/;w/;");
    // removal compares with the argument as parsed: "m1" is not the directory "m1/"
    list.removeFromList("m1"), list.removeFromList(ZuPathName("m2/"));
    list.removeFromPrevList("p1/"), list.removeFromPostList(ZuString("q2/"));
    EXPECT_EQ(walk(list), "p0a/;p0b/;p2/;m0/;m1/;m3/;q0/;q1/;");
}

TEST(PathList, UniqueKeepsTheFirstInSearchOrder) {
    auto unique = [](const char* prev, const char* main, const char* post) {
        ZuPathList list(main);
        list.setPrevList(prev), list.setPostList(post), list.unique();
        return lists(list);
    };
    EXPECT_EQ(unique("x:w:w", "x:y:x:z", "y:v:z:v"), "x/:w/|y/:z/|v/");
    EXPECT_EQ(unique("x", "x:y", "y"), "x/|y/|");
}

TEST_F(PathListFiles, FindInPathSearchesInOrderAndTraces) {
    for (const char* f : {"a/both.txt", "b/both.txt", "b/onlyb.txt", "post/late.txt", "abs.txt"})
        ASSERT_TRUE(ZuPathName(f).create(-1, true));
    ZuPathList list("a:b");
    list.setPostList("post");
    ZuPathName result("unchanged");
    for (auto [name, found] : {std::pair{std::string("both.txt"), std::string("a/both.txt")},
                               {"late.txt", "post/late.txt"}, {_dir + "abs.txt", _dir + "abs.txt"}}) {
        EXPECT_TRUE(list.findInPath(ZuPathName(name.c_str()), result, false)) << name;
        EXPECT_EQ(std::string(result), found);
    }
    EXPECT_FALSE(ZuPathList().findInPath(ZuPathName((_dir + "abs.txt").c_str()), result, false));
    testing::internal::CaptureStdout();
    EXPECT_TRUE(list.findInPath(ZuPathName("onlyb.txt"), result, true));
    EXPECT_FALSE(list.findInPath(ZuPathName("none"), result, true));
    EXPECT_EQ(testing::internal::GetCapturedStdout(),
              "ZuvPathList::findInPath file onlyb.txt not in a/.\n"
              "ZuvPathList::findInPath found: b/onlyb.txt.\n"
              "ZuvPathList::findInPath file none not in a/.\n"
              "ZuvPathList::findInPath file none not in b/.\n"
              "ZuvPathList::findInPath file none not in post/.\n");
    EXPECT_STREQ(result, "b/onlyb.txt"); // a miss leaves it alone
}
