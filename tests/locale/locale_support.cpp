#include "locale_support.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdlib>

namespace {

struct Wanted { const char *name, *source, *charmap; }; // localedef -i source -f charmap
const Wanted kWanted[] = {
    {"fr_FR.ISO-8859-1", "fr_FR", "ISO-8859-1"}, {"de_DE", "de_DE", "ISO-8859-1"},
    {"de_DE.ISO-8859-15", "de_DE@euro", "ISO-8859-15"}, {"de_DE.UTF-8", "de_DE", "UTF-8"},
    {"de_DE.ISO-8859-15@euro", "de_DE@euro", "ISO-8859-15"}, {"ja_JP.EUC-JP", "ja_JP", "EUC-JP"},
    {"ko_KR.EUC-KR", "ko_KR", "EUC-KR"}, {"zh_TW.BIG5", "zh_TW", "BIG5"},
    {"zh_CN.GB2312", "zh_CN", "GB2312"}, {"ru_RU.KOI8-R", "ru_RU", "KOI8-R"}};

// Test processes run in parallel: one compiles under a lock while the others wait,
// and each locale is built aside and renamed into place.
class Generator : public ::testing::Environment {
    void SetUp() override {
        std::string dir = std::string(ZU_TEST_BINARY_DIR) + "/locales";
        mkdir(dir.c_str(), 0755);
        int lock = open((dir + "/.lock").c_str(), O_CREAT | O_RDWR, 0644);
        flock(lock, LOCK_EX);
        for (const Wanted& w : kWanted) {
            std::string target = dir + "/" + w.name, part = target + ".part";
            if (access((target + "/LC_CTYPE").c_str(), F_OK) == 0)
                continue;
            std::string cmd = "rm -rf '" + part + "'; localedef -c -i " + w.source + " -f " +
                              w.charmap + " '" + part + "' >/dev/null 2>&1";
            if (std::system(cmd.c_str()) != -1 && access((part + "/LC_CTYPE").c_str(), F_OK) == 0)
                rename(part.c_str(), target.c_str());
        }
        close(lock);
        setenv("LOCPATH", dir.c_str(), 1);
    }
};

const auto* const kEnvironment = ::testing::AddGlobalTestEnvironment(new Generator);

} // namespace
