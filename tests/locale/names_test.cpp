// Standard pairs, code set numbering and category descriptors, decided by the tables.
#include "locale_support.h"

namespace {

using namespace zu_test;

TEST(LocaleNames, LangTerrFromPairsAndAliases) {
    const struct { const char *in, *out, *after; } cases[] = {
        {"FR_fr", "fr_fr", "fr_fr"}, {"french", "fr_FR", "french"}, {"French", 0, "French"},
        {"fr_FR.UTF-8", 0, "fr_FR.UTF-8"}, {"english", "en_GB", "english"}, {"sl", "sl_CS", "sl"},
        {"slovene", "sl_SI", "slovene"}, {"turkisk", "tr_TR", "turkisk"}, {"", 0, ""}};
    for (const auto& c : cases) {
        std::string buffer = c.in; // the pair's language is lowered in place
        EXPECT_EQ(take(ToStdLangTerr(&buffer[0])), str(c.out)) << c.in;
        EXPECT_EQ(buffer, c.after);
    }
    EXPECT_EQ(ToStdLangTerr(nullptr), nullptr);
}

TEST(LocaleNames, CodesetRulesInOrder) {
    const struct { const char *cs, *lt; int e; } cases[] = {
        {"646", 0, 1}, {"ISO_646.IRV:1983", 0, 1}, {"iso_646", 0, 0}, {"ISO8859-1", 0, 2},
        {"iso-8859-1", 0, 2}, {"iso88591", 0, 2}, {"xISO8859-1y", 0, 2}, {"ISO8859-15", 0, 34},
        {"iso885915x", 0, 34}, {"ISO8859-10", 0, 11}, {"ISO8859-13", 0, 32}, {"ISO8859-5", 0, 6},
        {"tactis", 0, 31}, {"xTIS620", 0, 31}, {"ISO8859-11", 0, 31}, {"eucjp", 0, 12},
        {"UJIS", 0, 12}, {"eucJP-utf8", 0, 12}, {"xSJIS", 0, 13}, {"KSC5601", 0, 14},
        {"EUC-KR", 0, 0}, {"GB2312", 0, 15}, {"zh.eucCN", 0, 15}, {"BIG5-HKSCS", 0, 17},
        {"xhkscs", 0, 17}, {"BIG5", 0, 16}, {"xBIG5", 0, 0}, {"cns11643", 0, 18}, {"gbk", 0, 37},
        {"xdeckanji", 0, 38}, {"sdeckanji", 0, 0}, {"deckorean", 0, 39}, {"roman8", 0, 19},
        {"IBM850", 0, 20}, {"1250", 0, 21}, {"1252", 0, 23}, {"cp1252", 0, 0}, {"IBM-932", 0, 13},
        {"936", 0, 15}, {"x936", 0, 0}, {"950", 0, 16}, {"950", "zh_HK", 17}, {"Utf-8", 0, 30},
        {"xUTF-8", 0, 30}, {"949", 0, 35}, {"874", 0, 36}, {"EUC", "ja_JP", 12}, {"euc", "ko_KR", 14},
        {"EUC", "zh_CN", 15}, {"EUC", "zh_TW", 18}, {"EUC", "fr_FR", 0}, {"", 0, 0}};
    for (const auto& c : cases)
        EXPECT_EQ(ToStdEncodingValue(c.cs, c.lt), c.e) << c.cs << " / " << str(c.lt);
}

TEST(LocaleNames, EncodingNamesAreExactAndCaseSensitive) {
    for (int e = 0; e < 42; ++e)
        EXPECT_EQ(ZuLocale::GetZuEncoding(ZuLocale::GetEncodingName(ZuEncoding(e))), e);
    EXPECT_STREQ(ZuLocale::GetEncodingName(ZuEnc_Unknown), "");
    EXPECT_STREQ(ZuLocale::GetEncodingName(ZuEnc_HP_Roman8), "hp-roman8");
    EXPECT_TRUE(!ZuLocale::GetEncodingName(ZuEncoding(42)) && !ZuLocale::GetEncodingName(ZuEncoding(-1)));
    EXPECT_EQ(ZuLocale::GetZuEncoding("UTF-8"), ZuEnc_UTF_8);
    EXPECT_EQ(ZuLocale::GetZuEncoding("utf-8"), ZuEnc_Unknown);
}

TEST(LocaleNames, StdLocaleNameOfNamesWithCodeset) {
    const struct { const char *in, *out; } cases[] = {
        {"de_DE.ISO8859-1", "de_DE.ISO-8859-1"}, {"ja_JP.eucJP", "ja_JP.EUC-JP"},
        {"zh_HK.950", "zh_HK.Big5-HKSCS"}, {"zh_TW.950", "zh_TW.Big5"}, {"ko_KR.EUC", "ko_KR.EUC-KR"},
        {"fr_FR.KOI8-R", "fr_FR."}, {"FR_FR.utf8", "fr_FR.UTF-8"}, {"french.UTF-8", "fr_FR.UTF-8"},
        {"de_DE.ISO-8859-15@euro", "de_DE."}, {"klingon.UTF-8", nullptr}, {"a.b_CC.UTF-8", nullptr}};
    for (const auto& c : cases)
        EXPECT_EQ(take(ZuLocale::GetStdLocaleName(c.in)), str(c.out)) << c.in;
}

TEST(LocaleCatDescriptor, StandardizesAndAsksTheHostForAMissingCodeset) {
    const struct { const char* name; bool valid; const char* pair; int e; const char* std; } cases[] = {
        {"fr_FR.ISO8859-15", true, "fr_FR", 34, "fr_FR.ISO-8859-15"},
        {"C", true, "en_US", 1, "en_US.US-ASCII"}, {"C.UTF-8", true, "en_US", 30, "en_US.UTF-8"},
        {"POSIX", false, "en_US", 0, nullptr}, // the host says ANSI_X3.4-1968: no number
        {"xx_YY.KOI8-R", false, "xx_YY", 0, nullptr}, {"klingon", false, nullptr, 0, nullptr},
        {nullptr, false, nullptr, 0, nullptr}};
    LocaleState state;
    std::setlocale(LC_CTYPE, "C.UTF-8");
    for (const auto& c : cases) {
        ZuLocaleCatDescriptor d;
        EXPECT_EQ(d.setSystemLocaleName(c.name), c.valid) << str(c.name);
        EXPECT_EQ(d.isValid(), c.valid);
        EXPECT_EQ(str(d.getStdLangTerr()), str(c.pair)) << str(c.name);
        EXPECT_EQ(d.getEncoding(), c.e) << str(c.name);
        EXPECT_EQ(take(d.getStdLocaleName()), str(c.std)) << str(c.name);
    }
    EXPECT_EQ(host(LC_CTYPE), "C.UTF-8"); // switched back after asking
}

TEST(LocaleCatDescriptor, SetStdLangTerrKeepsAnEqualPair) {
    ZuLocaleCatDescriptor d;
    ASSERT_TRUE(d.setSystemLocaleName("fr_FR.UTF-8"));
    d.setStdLangTerr("fr_FR", ZuEnc_ISO_8859_1); // same pair: nothing changes
    EXPECT_EQ(d.getEncoding(), ZuEnc_UTF_8);
    EXPECT_STREQ(d.getSystemLocaleName(), "fr_FR.UTF-8");
    d.setStdLangTerr("de_DE", ZuEnc_ISO_8859_15);
    EXPECT_EQ(d.getSystemLocaleName(), nullptr);
    EXPECT_EQ(take(d.getStdLocaleName()), "de_DE.ISO-8859-15");
    d.setStdLangTerr("german", ZuEnc_ISO_8859_1); // not a pair: kept as the system name
    EXPECT_TRUE(!d.isValid() && !d.getStdLangTerr());
    EXPECT_STREQ(d.getSystemLocaleName(), "german");
}

} // namespace
