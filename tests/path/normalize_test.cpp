// Directory normalisation: the stated examples, the invariants, and agreement with
// std::filesystem::path::lexically_normal on generated relative paths.
#include <zu/pathname.h>

#include <gtest/gtest.h>

#include <filesystem>
#include <random>
#include <string>

namespace {

std::string normalised(const char* dir) {
    ZuPathName p;
    p.setInternalDir(dir);
    return p.getInternalDirectory().getValue();
}

} // namespace

TEST(PathNormalise, StatedExamples) {
    struct Case { const char* in; const char* out; } cases[] = {
        {"a/./b//c/../", "a/b/"}, {"./x", "x/"}, {"../../a/../b/", "../../b/"}, {"a/././b", "a/b/"},
        {"a///b", "a/b/"}, {".", ""}, {"./", ""}, {".//./a", "a/"}, {"/./", "/"}, {"//", "/"},
        {"x/..", ""}, {"a/b/../../c", "c/"}, {"..", "../"}, {"a/../../b", "../b/"},
        {"../a/../../b", "../../b/"}, // a ".." right after the leading ones joins them
        {"a/../../../b", "b/"},       // deliberate: ".." that reaches the front later is not kept
        {"/../a/", "/../a/"}, {"/a/../../b", "/../b/"}, {"/a/b/../c", "/a/c/"},
        {"/../a/../b", "/../a/../b/"}, // the ".." under the root ends the work
    };
    for (const Case& c : cases) EXPECT_EQ(normalised(c.in), c.out) << c.in;
}

// Components from names, ".", ".." and empty; the first is a name and no ".." climbs
// above it, so both normalisations must name the same directory.
TEST(PathNormalise, AgreesWithLexicallyNormal) {
    std::mt19937 random(20240611);
    const char* names[] = {"a", "b", "cc", "d.e", "..x", ".y"};
    for (int n = 0; n < 20000; ++n) {
        std::string text = names[random() % 6];
        int depth = 1;
        const int count = 1 + static_cast<int>(random() % 8);
        for (int i = 0; i < count; ++i) {
            text += '/';
            switch (random() % 5) {
            case 0: text += "."; break;
            case 1: break; // empty component
            case 2:
                if (depth > 0) {
                    text += "..";
                    --depth;
                    break;
                }
                [[fallthrough]];
            default:
                text += names[random() % 6];
                ++depth;
            }
        }
        if (random() % 2) text += '/';
        std::string expected = std::filesystem::path(text).lexically_normal().string();
        if (expected == ".") expected.clear();
        if (!expected.empty() && expected.back() != '/') expected += '/';
        const std::string ours = normalised(text.c_str());
        ASSERT_EQ(ours, expected) << text; // so no "//", no "/./", a final "/"
    }
}

TEST(PathNormalise, LongInputsStayLinear) {
    std::string deep;
    for (int i = 0; i < 20000; ++i) deep += "d/";
    for (int i = 0; i < 20000; ++i) deep += "../";
    EXPECT_EQ(normalised((deep + "end").c_str()), "end/");
    std::string dots(60000, '/');
    for (size_t i = 0; i < dots.size(); i += 2) dots[i] = '.';
    EXPECT_EQ(normalised(("/r/" + dots).c_str()), "/r/");
}
