#ifndef ZU_TESTS_PATH_SUPPORT_H
#define ZU_TESTS_PATH_SUPPORT_H

// Helpers of the path tests: a path shown field by field, a path read in either notation,
// and a fresh temporary directory that is the current directory while a test runs.
#include <zu/pathname.h>

#include <gtest/gtest.h>

#include <cstdlib>
#include <cstring>
#include <string>
#include <unistd.h>

namespace zu_test {

// "device|directory|base|extension".
inline std::string parts(const ZuPathName& p) {
    return std::string(p.getDevice().getValue()) + "|" + p.getInternalDirectory().getValue() + "|" +
           p.getBaseNameOnly().getValue() + "|" + p.getExtension().getValue();
}

// A path from Unix text, or from DOS text when it holds a backslash.
inline ZuPathName path(const char* text) {
    ZuPathName p;
    p.setValue(text, -1, std::strchr(text, '\\') ? ZuPathName::DosPathType : ZuPathName::UnixPathType);
    return p;
}

// A new empty directory under TMPDIR (or /tmp), made the current directory; both are
// undone (the tree removed with rm -rf) when the test ends.
class TempDirTest : public ::testing::Test {
protected:
    void SetUp() override {
        const char* base = std::getenv("TMPDIR");
        std::string pattern = std::string(base && *base ? base : "/tmp") + "/zu_path_XXXXXX";
        ASSERT_NE(::mkdtemp(&pattern[0]), nullptr);
        _dir = pattern + "/";
        char cwd[4096];
        ASSERT_NE(::getcwd(cwd, sizeof cwd), nullptr);
        _saved = cwd;
        ASSERT_EQ(::chdir(_dir.c_str()), 0);
    }
    void TearDown() override {
        if (!_saved.empty()) (void)!::chdir(_saved.c_str());
        if (!_dir.empty()) (void)!std::system(("chmod -R u+rwx '" + _dir + "'; rm -rf '" + _dir + "'").c_str());
    }
    std::string _dir; // absolute, ends with "/"
    std::string _saved;
};

} // namespace zu_test

#endif
