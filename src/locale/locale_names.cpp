// Locale names: the standard language/territory of a name, the numbering of code set
// names, and the host's current code set.
#include "locale/locale_internal.h"

#include <langinfo.h>

#include <cstring>
#include <initializer_list>

namespace zu_locale {

char* copyText(const char* text) {
    return text ? copyText(text, std::strlen(text)) : nullptr;
}

char* copyText(const char* text, size_t length) {
    char* copy = new char[length + 1];
    std::memcpy(copy, text, length);
    copy[length] = '\0';
    return copy;
}

SplitName splitName(const char* name) {
    const char* dot = std::strrchr(name, '.');
    if (!dot)
        return {copyText(name), nullptr};
    return {copyText(name, static_cast<size_t>(dot - name)), dot + 1};
}

char* joinStdName(const char* pair, ZuEncoding e) {
    const char* name = ZuLocale::GetEncodingName(e);
    if (!name)
        name = "";
    size_t pairLength = std::strlen(pair);
    size_t nameLength = std::strlen(name);
    char* result = new char[pairLength + 1 + nameLength + 1];
    std::memcpy(result, pair, pairLength);
    result[pairLength] = '.';
    std::memcpy(result + pairLength + 1, name, nameLength + 1);
    return result;
}

} // namespace zu_locale

namespace {

// ASCII only: the host's case folding follows the current locale (a Turkish locale
// folds "I" to a dotless i), and code set names must not depend on it.
char lowerAscii(char c) {
    return (c >= 'A' && c <= 'Z') ? static_cast<char>(c - 'A' + 'a') : c;
}

bool equalsIgnoringCase(const char* a, const char* b) {
    for (; *a && *b; ++a, ++b)
        if (lowerAscii(*a) != lowerAscii(*b))
            return false;
    return *a == *b;
}

bool startsWith(const char* text, const char* prefix, bool ignoreCase) {
    for (; *prefix; ++text, ++prefix) {
        if (!*text)
            return false;
        if (ignoreCase ? lowerAscii(*text) != lowerAscii(*prefix) : *text != *prefix)
            return false;
    }
    return true;
}

bool equalsAny(const char* cs, std::initializer_list<const char*> names) {
    for (const char* n : names)
        if (equalsIgnoringCase(cs, n))
            return true;
    return false;
}

bool containsAny(const char* cs, std::initializer_list<const char*> names) {
    for (const char* n : names)
        if (std::strstr(cs, n))
            return true;
    return false;
}

// One row of the rules: equal to a name (case ignored) or containing one (case kept).
bool rule(const char* cs, std::initializer_list<const char*> equal,
          std::initializer_list<const char*> contained = {}) {
    return equalsAny(cs, equal) || containsAny(cs, contained);
}

bool isPair(const char* lt, const char* pair) { return lt && std::strcmp(lt, pair) == 0; }

// The ISO 8859 parts 1 to 10, rules 2 to 11: each accepts its three spellings or its
// "ISO8859-n" form anywhere in the name.
ZuEncoding isoPart(const char* cs) {
    static const char* const compact[] = {"iso88591", "iso88592", "iso88593", "iso88594",
                                          "iso88595", "iso88596", "iso88597", "iso88598",
                                          "iso88599", "iso885910"};
    static const char* const dashed[] = {"ISO8859-1", "ISO8859-2", "ISO8859-3", "ISO8859-4",
                                         "ISO8859-5", "ISO8859-6", "ISO8859-7", "ISO8859-8",
                                         "ISO8859-9", "ISO8859-10"};
    static const char* const full[] = {"ISO-8859-1", "ISO-8859-2", "ISO-8859-3", "ISO-8859-4",
                                       "ISO-8859-5", "ISO-8859-6", "ISO-8859-7", "ISO-8859-8",
                                       "ISO-8859-9", "ISO-8859-10"};
    for (int i = 0; i < 10; ++i) {
        if (equalsAny(cs, {compact[i], dashed[i], full[i]}))
            return static_cast<ZuEncoding>(i + 2);
        if (std::strstr(cs, dashed[i])) {
            // "ISO8859-1" is also inside the names of parts 10 to 15.
            if (i == 0 && containsAny(cs, {"ISO8859-10", "ISO8859-11", "ISO8859-13",
                                           "ISO8859-14", "ISO8859-15"}))
                continue;
            return static_cast<ZuEncoding>(i + 2);
        }
    }
    return ZuEnc_Unknown;
}

} // namespace

namespace zu_locale {

// The rules are tried in a fixed order and the first that holds wins. Names compare
// ignoring case, except the bare code page numbers; substrings and prefixes keep case,
// except the "ujis" prefix.
ZuEncoding encodingValue(const char* cs, const char* lt) {
    if (!cs)
        cs = "";
    if (rule(cs, {"646"}) || startsWith(cs, "ISO_646", false))
        return ZuEnc_US_ASCII;
    if (ZuEncoding e = isoPart(cs))
        return e;
    if (rule(cs, {"iso885911", "ISO8859-11", "ISO-8859-11", "tis620", "TIS-620", "TACTIS"},
             {"TIS620", "ISO8859-11"}))
        return ZuEnc_ISO_8859_11;
    if (rule(cs, {"iso885913", "ISO8859-13", "ISO-8859-13"}, {"ISO8859-13"}))
        return ZuEnc_ISO_8859_13;
    if (rule(cs, {"iso885914", "ISO8859-14", "ISO-8859-14"}, {"ISO8859-14"}))
        return ZuEnc_ISO_8859_14;
    if (rule(cs, {"iso885915", "ISO8859-15", "ISO-8859-15"}, {"iso885915", "ISO8859-15"}))
        return ZuEnc_ISO_8859_15;
    if (rule(cs, {"eucJP", "EUC-JP"}, {"eucJP"}) || startsWith(cs, "ujis", true))
        return ZuEnc_EUC_JP;
    if (rule(cs, {"SJIS", "PCK"}, {"SJIS"}))
        return ZuEnc_Shift_JIS;
    if (rule(cs, {"eucKR", "5601"}, {"eucKR", "5601"}))
        return ZuEnc_EUC_KR;
    if (rule(cs, {"gb2312", "hp15CN", "ugb"}, {"eucCN"}))
        return ZuEnc_GB2312;
    if (rule(cs, {"big5hkscs", "Big5-HKSCS", "hkbig5", "big5hk"}, {"HKSCS", "hkscs"}))
        return ZuEnc_Big5_HKSCS;
    if (rule(cs, {"big5"}, {"big5"}))
        return ZuEnc_Big5;
    if (rule(cs, {"eucTW", "cns11643", "ucns"}, {"eucTW"}))
        return ZuEnc_EUC_TW;
    if (rule(cs, {"GBK"}))
        return ZuEnc_GBK;
    if (rule(cs, {"deckanji"}) || (std::strstr(cs, "deckanji") && !std::strstr(cs, "sdeckanji")))
        return ZuEnc_DEC_Kanji;
    if (rule(cs, {"deckorean"}, {"deckorean"}))
        return ZuEnc_DEC_Korean;
    if (rule(cs, {"dechanzi"}, {"dechanzi"}))
        return ZuEnc_DEC_Hanzi;
    if (rule(cs, {"dechanyu"}, {"dechanyu"}))
        return ZuEnc_DEC_Hanyu;
    if (rule(cs, {"roman8"}))
        return ZuEnc_HP_Roman8;
    // From here the numbers are code pages: the windows ones match only exactly,
    // whereas 850 and 932 are also found inside longer names.
    if (containsAny(cs, {"850"}))
        return ZuEnc_IBM850;
    static const char* const windows[] = {"1250", "1251", "1252", "1253", "1254",
                                          "1255", "1256", "1257", "1258"};
    for (int i = 0; i < 9; ++i)
        if (std::strcmp(cs, windows[i]) == 0)
            return static_cast<ZuEncoding>(ZuEnc_Windows_1250 + i);
    if (containsAny(cs, {"932"}))
        return ZuEnc_Shift_JIS;
    if (std::strcmp(cs, "936") == 0)
        return ZuEnc_GB2312;
    if (std::strcmp(cs, "950") == 0)
        return isPair(lt, "zh_HK") ? ZuEnc_Big5_HKSCS : ZuEnc_Big5;
    if (rule(cs, {"utf8", "utf-8"}, {"utf8", "UTF-8"}))
        return ZuEnc_UTF_8;
    if (std::strcmp(cs, "949") == 0)
        return ZuEnc_Windows_949;
    if (std::strcmp(cs, "874") == 0)
        return ZuEnc_Windows_874;
    if (rule(cs, {"EUC"})) {
        if (isPair(lt, "ja_JP"))
            return ZuEnc_EUC_JP;
        if (isPair(lt, "ko_KR"))
            return ZuEnc_EUC_KR;
        if (isPair(lt, "zh_CN"))
            return ZuEnc_GB2312;
        if (isPair(lt, "zh_TW"))
            return ZuEnc_EUC_TW;
    }
    return ZuEnc_Unknown;
}

} // namespace zu_locale

char* ToStdLangTerr(char* name) {
    if (!name)
        return nullptr;
    if (std::strlen(name) == 5 && name[2] == '_') {
        for (int i = 0; i < 2; ++i)
            if (name[i] >= 'A' && name[i] <= 'Z')
                name[i] = static_cast<char>(name[i] - 'A' + 'a');
        return zu_locale::copyText(name);
    }
    for (int i = 0; zu_locale::unixLocales[i][0]; ++i)
        if (std::strcmp(zu_locale::unixLocales[i][0], name) == 0)
            return zu_locale::copyText(zu_locale::unixLocales[i][1]);
    return nullptr;
}

ZuEncoding ToStdEncodingValue(ZuString codeset, const char* langTerr) {
    return zu_locale::encodingValue(codeset.getValue(), langTerr);
}

char* GetCurrentCodeset() {
    const char* cs = nl_langinfo(CODESET);
    return (cs && *cs) ? zu_locale::copyText(cs) : nullptr;
}
