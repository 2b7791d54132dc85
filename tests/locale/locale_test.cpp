// ZuLocale over the host's real locales: registry, default, messages, encodings.
#include "locale_support.h"

#include <langinfo.h>

#include <cstdio>
#include <cstring>

namespace {

using namespace testing::internal; // CaptureStderr, GetCapturedStderr
using namespace zu_test;

class LocaleTest : public ::testing::Test {
    LocaleState _state;
};

TEST_F(LocaleTest, RegistryDoublesKeepsOrderAndTheFirstIsDefault) {
    ASSERT_EQ(ZuLocale::GetLocaleNumber(), 0);
    ZuLocale* l[5];
    const int capacity[] = {1, 2, 4, 4, 8};
    for (int i = 0; i < 5; ++i) {
        l[i] = new ZuLocale("C");
        EXPECT_EQ(ZuLocale::GetMaxLocaleNumber(), capacity[i]);
    }
    EXPECT_EQ(l[4]->getFirstDayOfWeek() * 10 + l[4]->getMinimalDaysInFirstWeek(), 20);
    EXPECT_EQ(ZuLocale::Get(false, nullptr), l[0]);
    delete l[2];
    EXPECT_EQ(ZuLocale::GetLocaleAt(2), l[3]);
    delete l[0];
    EXPECT_EQ(ZuLocale::Get(false, nullptr), nullptr);
    for (int i : {1, 3, 4})
        delete l[i];
    EXPECT_EQ(ZuLocale::GetMaxLocaleNumber(), 0);
}

TEST_F(LocaleTest, RefusedNameIsReportedAndFallsBackToC) {
    std::setlocale(LC_ALL, "C.UTF-8");
    CaptureStderr();
    ZuLocale* l = new ZuLocale("xx_XX.NOPE");
    EXPECT_EQ(GetCapturedStderr(), "ZuLocale::ZuLocale xx_XX.NOPE locale not supported by the system.\n");
    EXPECT_TRUE(l->hasFailed() && ZuLocale::GetLocaleNumber() == 1); // registered until deleted
    EXPECT_EQ(ZuLocale::Get(false, nullptr), nullptr);                 // but never the default
    EXPECT_EQ(host(LC_CTYPE) + host(LC_MESSAGES) + host(LC_NUMERIC), "CCC.UTF-8");
    delete l;
    EXPECT_EQ(ZuLocale::GetLocaleNumber(), 0);
}

TEST_F(LocaleTest, NonStandardHostNamesAreReportedPerCategory) {
    ZU_REQUIRE_LOCALE("ru_RU.KOI8-R");
    CaptureStderr();
    ZuLocale* l = ZuLocale::Get(true, "ru_RU.KOI8-R");
    EXPECT_EQ(GetCapturedStderr(), "Not a standard TRK locale ru_RU.KOI8-R\n");
    ASSERT_NE(l, nullptr); // usable, with an unknown encoding
    EXPECT_EQ(host(LC_ALL), "ru_RU.KOI8-R"); // the switch is not undone
    std::string mixed = "LC_CTYPE=C;LC_NUMERIC=C;LC_TIME=C;LC_COLLATE=C;LC_MONETARY=C;"
                        "LC_MESSAGES=ru_RU.KOI8-R;LC_PAPER=C;LC_NAME=C;LC_ADDRESS=C;"
                        "LC_TELEPHONE=C;LC_MEASUREMENT=C;LC_IDENTIFICATION=C";
    CaptureStderr();
    new ZuLocale(mixed.c_str());
    EXPECT_EQ(GetCapturedStderr(), "Not a standard Vantrel TRK locale ru_RU.KOI8-R\n");
}

TEST_F(LocaleTest, RealLocalesGiveEncodingCodesetAndCharacterSize) {
    const struct { const char* name; int e; const char* std; } cases[] = {
        {"C", 1, "en_US.US-ASCII"}, {"C.UTF-8", 30, "en_US.UTF-8"},
        {"fr_FR.ISO-8859-1", 2, "fr_FR.ISO-8859-1"}, {"de_DE", 2, "de_DE.ISO-8859-1"},
        {"de_DE.ISO-8859-15", 34, "de_DE.ISO-8859-15"}, {"de_DE.UTF-8", 30, "de_DE.UTF-8"},
        {"ja_JP.EUC-JP", 12, "ja_JP.EUC-JP"}, {"zh_TW.BIG5", 16, "zh_TW.Big5"},
        {"zh_CN.GB2312", 15, "zh_CN.GB2312"}, {"ko_KR.EUC-KR", 0, nullptr}}; // no rule for EUC-KR
    std::string missing;
    CaptureStderr();
    for (const auto& c : cases) {
        if (!haveLocale(c.name)) {
            missing += std::string(" ") + c.name;
            continue;
        }
        ZuLocale* l = ZuLocale::Get(true, c.name);
        ASSERT_NE(l, nullptr) << c.name;
        EXPECT_EQ(l->getEncoding(), c.e) << c.name;
        EXPECT_EQ(str(l->getCodeset()), nl_langinfo(CODESET));
        EXPECT_EQ(size_t{l->getMaxCharSize()}, c.e > 11 ? MB_CUR_MAX : 1) << c.name;
        EXPECT_EQ(take(l->getCategory(ZuCategory_CType)->getStdLocaleName()), str(c.std));
        EXPECT_EQ(ZuLocale::Get(false, host(LC_CTYPE).c_str()), l); // switched, not undone
    }
    GetCapturedStderr();
    if (!missing.empty())
        GTEST_SKIP() << "locales not available:" << missing;
}

TEST_F(LocaleTest, SetSystemLocaleNameAndAsymmetricCompatibility) {
    ZuLocale* l = ZuLocale::Get(true, "C");
    const struct { const char* name; int e, c; } cases[] = {
        {"fr_FR.ISO8859-1", 23, 1}, {"fr_FR.ISO8859-1", 34, 0}, {"fr_FR.1252", 2, 2},
        {"fr_FR.1252", 23, 1}, {"zh_CN.GBK", 15, 2}, {"zh_HK.hkbig5", 16, 1},
        {"th_TH.874", 31, 2}, {"fr_FR.KOI8-R", 0, 1}, {"fr_FR.KOI8-R", 1, 0}};
    for (const auto& c : cases) { // the descriptor alone takes the name; the host stays in C
        l->setSystemLocaleName(c.name, false, ZuCategory_CType);
        l->setEncoding();
        EXPECT_EQ(l->isEncodingCompatible(ZuEncoding(c.e)), c.c) << c.name << " " << c.e;
    }
    EXPECT_EQ(l->getCategory(ZuCategory_All), nullptr);
    EXPECT_TRUE(l->setSystemLocaleName(nullptr, true, ZuCategory_CType));
    EXPECT_FALSE(l->setSystemLocaleName("C", true, ZuCategory_Numeric)); // no descriptor
    EXPECT_FALSE(l->setSystemLocaleName("xx_YY.KOI8-R", true, ZuCategory_CType));
    EXPECT_EQ(host(LC_CTYPE), "C"); // invalid: not applied
    EXPECT_TRUE(l->setSystemLocaleName("xx_YY.KOI8-R", true, ZuCategory_CType)); // held already
    EXPECT_TRUE(l->setSystemLocaleName("C.UTF-8", true, ZuCategory_All));
    EXPECT_EQ(host(LC_CTYPE) + host(LC_MESSAGES), "C.UTF-8C.UTF-8");
    EXPECT_EQ(l->getEncoding(), ZuEnc_UTF_8);
    EXPECT_EQ(size_t{l->getMaxCharSize()}, MB_CUR_MAX);
    l->setSystemLocaleName("fr_FR.ISO8859-1", false, ZuCategory_CType); // host stays UTF-8
    EXPECT_EQ(l->setEncoding() + l->setMaxCharSize(), 2); // single-byte encodings give 1
}

ZuLocale* hooked = nullptr;

TEST_F(LocaleTest, ZuSetLocaleFindsOrCreatesAndMakesDefault) {
    ZuLocale::SetDefaultLocaleHook([](ZuLocale* l) { hooked = l; });
    ZuLocale* c = ZuSetLocale("C");
    EXPECT_EQ(hooked, ZuSetLocale("C.UTF-8"));
    EXPECT_EQ(ZuSetLocale("C"), c); // found, not created again
    EXPECT_EQ(ZuLocale::Get(false, nullptr), c);
    EXPECT_EQ(ZuLocale::GetLocaleNumber(), 2);
    ZuLocale::SetDefaultLocaleHook(nullptr);
}

TEST_F(LocaleTest, StdLocaleNameAsksTheHostAndRestoresTheProcessLocale) {
    std::setlocale(LC_ALL, "C.UTF-8");
    CaptureStderr();
    EXPECT_EQ(take(ZuLocale::GetStdLocaleName("C")), "en_US.US-ASCII");
    EXPECT_EQ(take(ZuLocale::GetStdLocaleName("xx_YY")), "xx_YY."); // refused by the host
    EXPECT_EQ(GetCapturedStderr(), "ZuLocale::ZuLocale xx_YY locale not supported by the system.\n");
    EXPECT_EQ(host(LC_ALL), "C.UTF-8");
    ZU_REQUIRE_LOCALE("de_DE");
    EXPECT_EQ(take(ZuLocale::GetStdLocaleName("de_DE")), "de_DE.ISO-8859-1");
}

TEST_F(LocaleTest, EveryInstalledLocaleHasAStandardNameOrTrailingDot) {
    std::string before = host(LC_ALL);
    FILE* p = popen("locale -a; ls \"$LOCPATH\"", "r"); // locale -a does not look there
    CaptureStderr();
    for (char line[256]; std::fgets(line, sizeof line, p);) {
        std::string name(line, std::strcspn(line, "\r\n"));
        std::string langTerr = name.substr(0, name.rfind('.'));
        std::string pair = take(ToStdLangTerr(&langTerr[0]));
        std::string result = take(ZuLocale::GetStdLocaleName(name.c_str()));
        std::string encoding = pair == "(null)" ? "" : result.substr(std::min<size_t>(6, result.size()));
        EXPECT_EQ(result, pair == "(null)" ? pair : pair + "." + encoding) << name;
        EXPECT_TRUE(encoding.empty() || ZuLocale::GetZuEncoding(encoding.c_str())) << result;
        EXPECT_EQ(host(LC_ALL), before) << name;
    }
    GetCapturedStderr();
    pclose(p);
}

} // namespace
