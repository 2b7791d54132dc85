#ifndef ZU_TESTS_LOCALE_SUPPORT_H
#define ZU_TESTS_LOCALE_SUPPORT_H

// Real locales for the tests: the legacy ones are compiled with localedef into
// ZU_TEST_BINARY_DIR/locales once per build tree and found through LOCPATH.
#include <zu/locale.h>

#include <gtest/gtest.h>

#include <clocale>
#include <memory>
#include <string>

namespace zu_test {

inline std::string str(const char* s) { return s ? s : "(null)"; }
inline std::string take(char* s) { return str(std::unique_ptr<char[]>(s).get()); }
inline std::string host(int category) { return std::setlocale(category, nullptr); }

// True when the host accepts name; the process locale is kept.
inline bool haveLocale(const char* name) {
    std::string saved = host(LC_ALL);
    bool ok = std::setlocale(LC_ALL, name) != nullptr;
    std::setlocale(LC_ALL, saved.c_str());
    return ok;
}

// Restores the process locale and deletes the locales created in its lifetime.
struct LocaleState {
    std::string _saved = host(LC_ALL);
    uint16_t _count = ZuLocale::GetLocaleNumber();
    ~LocaleState() {
        while (ZuLocale::GetLocaleNumber() > _count)
            delete ZuLocale::GetLocaleAt(uint16_t(ZuLocale::GetLocaleNumber() - 1));
        std::setlocale(LC_ALL, _saved.c_str());
    }
};

} // namespace zu_test

#define ZU_REQUIRE_LOCALE(name) \
    if (!zu_test::haveLocale(name)) \
    GTEST_SKIP() << "locale " << (name) << " is not available and localedef could not make it"

#endif
