// Directory normalisation: examples and long inputs, and agreement with
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

TEST(PathNormalise, ExamplesAndLongInputs) {
    std::string deep, dots(60000, '/'); // long inputs stay linear
    for (int i = 0; i < 20000; ++i) deep += "d/";
    for (int i = 0; i < 20000; ++i) deep += "../";
    for (size_t i = 0; i < dots.size(); i += 2) dots[i] = '.';
    struct Case { std::string in; const char* out; } cases[] = {
        {"a/./b//c/../", "a/b/"}, {"./x", "x/"}, {"../../a/../b/", "../../b/"}, {".", ""}, {"./", ""},
        {".//./a", "a/"}, {"/./", "/"}, {"//", "/"}, {"..", "../"}, {"a/../../b", "../b/"},
        {"../a/../../b", "../../b/"}, // a ".." right after the leading ones joins them
        {"a/../../../b", "b/"},       // deliberate: ".." that reaches the front later is not kept
        {"/../a/", "/../a/"}, {"/a/../../b", "/../b/"}, {"/a/b/../c", "/a/c/"},
        {"/../a/../b", "/../a/../b/"}, // the ".." under the root ends the work
        {deep + "end", "end/"}, {"/r/" + dots, "/r/"},
    };
    for (const Case& c : cases) EXPECT_EQ(normalised(c.in.c_str()), c.out) << c.in.substr(0, 40);
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
            const unsigned kind = random() % 5; // ".", empty, ".." while above the first, else a name
            if (kind == 0)
                text += ".";
            else if (kind == 2 && depth > 0)
                text += "..", --depth;
            else if (kind != 1)
                text += names[random() % 6], ++depth;
        }
        if (random() % 2) text += '/';
        std::string expected = std::filesystem::path(text).lexically_normal().string();
        if (expected == ".") expected.clear();
        if (!expected.empty() && expected.back() != '/') expected += '/';
        ASSERT_EQ(normalised(text.c_str()), expected) << text; // so no "//", no "/./", a final "/"
    }
}
