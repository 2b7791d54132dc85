#ifndef ZU_TESTS_STRING_LOCALE_SCOPE_H
#define ZU_TESTS_STRING_LOCALE_SCOPE_H

// Helpers of the string tests: a locale switched for one test, std::cerr capture.
#include <clocale>
#include <cstdlib>
#include <iostream>
#include <sstream>
#include <string>

// Sets LC_ALL for the life of the object and puts "C" back afterwards.
struct LocaleScope {
    explicit LocaleScope(const char* name) : ok(std::setlocale(LC_ALL, name) != nullptr) {}
    ~LocaleScope() { std::setlocale(LC_ALL, "C"); }
    bool multibyte() const { return ok && MB_CUR_MAX > 1; }
    bool ok;
};

// Switches the test to C.UTF-8, or skips it when that locale is missing.
#define ZU_IN_UTF8_LOCALE()                                                        \
    LocaleScope utf8Scope("C.UTF-8");                                              \
    if (!utf8Scope.multibyte()) GTEST_SKIP() << "the C.UTF-8 locale is not installed"

// Collects what is written to std::cerr while it lives.
struct CerrCapture {
    CerrCapture() : old(std::cerr.rdbuf(text.rdbuf())) {}
    ~CerrCapture() { std::cerr.rdbuf(old); }
    std::ostringstream text;
    std::streambuf* old;
};

#endif
