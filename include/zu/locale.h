#ifndef ZU_LOCALE_H
#define ZU_LOCALE_H

// Locale names in one standard form ("ll_TT.CHARSET", e.g. fr_FR.ISO-8859-1) whatever
// the host's spelling, a fixed numbering of character sets, locale objects kept in a
// process-wide registry with one default locale, locale extensions hung on a locale,
// and conversions between doubles and text that ignore the numeric locale.
// Text returned as char* by these functions is new[]-allocated and released by the
// caller with delete[]. Nothing here is thread-safe: the registry and the host's
// locale setting are process-wide.

#include <zu/export.h>
#include <zu/string.h>

#include <clocale>
#include <cstdint>

// Character sets. The values are fixed: they index the encoding table and callers
// store them. 0 means unknown.
enum ZuEncoding {
    ZuEnc_Unknown = 0,
    ZuEnc_US_ASCII = 1,
    ZuEnc_ISO_8859_1 = 2,
    ZuEnc_ISO_8859_2 = 3,
    ZuEnc_ISO_8859_3 = 4,
    ZuEnc_ISO_8859_4 = 5,
    ZuEnc_ISO_8859_5 = 6,
    ZuEnc_ISO_8859_6 = 7,
    ZuEnc_ISO_8859_7 = 8,
    ZuEnc_ISO_8859_8 = 9,
    ZuEnc_ISO_8859_9 = 10,
    ZuEnc_ISO_8859_10 = 11,
    ZuEnc_EUC_JP = 12,
    ZuEnc_Shift_JIS = 13,
    ZuEnc_EUC_KR = 14,
    ZuEnc_GB2312 = 15,
    ZuEnc_Big5 = 16,
    ZuEnc_Big5_HKSCS = 17,
    ZuEnc_EUC_TW = 18,
    ZuEnc_HP_Roman8 = 19,
    ZuEnc_IBM850 = 20,
    ZuEnc_Windows_1250 = 21,
    ZuEnc_Windows_1251 = 22,
    ZuEnc_Windows_1252 = 23,
    ZuEnc_Windows_1253 = 24,
    ZuEnc_Windows_1254 = 25,
    ZuEnc_Windows_1255 = 26,
    ZuEnc_Windows_1256 = 27,
    ZuEnc_Windows_1257 = 28,
    ZuEnc_Windows_1258 = 29,
    ZuEnc_UTF_8 = 30,
    ZuEnc_ISO_8859_11 = 31,
    ZuEnc_ISO_8859_13 = 32,
    ZuEnc_ISO_8859_14 = 33,
    ZuEnc_ISO_8859_15 = 34,
    ZuEnc_Windows_949 = 35,
    ZuEnc_Windows_874 = 36,
    ZuEnc_GBK = 37,
    ZuEnc_DEC_Kanji = 38,
    ZuEnc_DEC_Korean = 39,
    ZuEnc_DEC_Hanzi = 40,
    ZuEnc_DEC_Hanyu = 41
};

// Locale categories, numbered as the host numbers them. The library keeps
// descriptors for the character-type and messages categories only.
enum ZuCategory {
    ZuCategory_CType = LC_CTYPE,       // 0
    ZuCategory_Numeric = LC_NUMERIC,   // 1
    ZuCategory_Time = LC_TIME,         // 2
    ZuCategory_Collate = LC_COLLATE,   // 3
    ZuCategory_Monetary = LC_MONETARY, // 4
    ZuCategory_Messages = LC_MESSAGES, // 5
    ZuCategory_All = LC_ALL            // 6
};

class ZuLocale;
class ZuLocaleExtension;

// The standard language/territory of a locale name without its code set: a name of
// 5 characters with "_" third is a pair already (its first two letters are lowered
// in name itself, the territory is left as written); otherwise the exact,
// case-sensitive alias table decides. New text, or null (also for a null name).
ZU_API char* ToStdLangTerr(char* name);

// The ZuEncoding of a code set name; langTerr (a standard pair, may be null) settles
// names that are ambiguous alone ("950", "EUC"). Unknown names give 0.
// Windows numbers match only exactly: "1252" gives 23 but "cp1252" gives 0.
// Deliberately some canonical names are not recognised: "US-ASCII", "EUC-KR",
// "EUC-TW", "Shift_JIS", "hp-roman8" and the "windows-" and "DEC-" names give 0.
ZU_API ZuEncoding ToStdEncodingValue(ZuString codeset, const char* langTerr);

// A new copy of the host's code set name for the current character-type locale,
// or null when the host gives none or an empty one.
ZU_API char* GetCurrentCodeset();

// Finds or creates the locale for name (null: the environment's locale), makes it the
// default and returns it; null when the host refuses the name.
// Creating a locale switches the process locale (see ZuLocale::ZuLocale).
ZU_API ZuLocale* ZuSetLocale(const char* name);

// Writes value into buffer with format (null: "%.16g") and returns the length.
// NaN, +inf and -inf give "NaN", "Infinity" and "-Infinity". Every character before
// the first "e"/"E" that is not a digit, "+" or "-" becomes ".", so the result never
// depends on the numeric locale; deliberately this also rewrites other characters of a
// caller's format. The buffer must hold the longest text of the format (25 bytes for
// the default); the format must take one double. Allocates nothing.
ZU_API int ZuDoubleToString(char* buffer, double value, const char* format);

// Converts text to value with "." as the decimal point whatever the numeric locale;
// *end (when end is not null) is set past what was read. Returns false exactly when
// value is NaN. Text without "." after its sign and integer digits goes to the host's
// strtod as it is (so "1,5" follows the numeric locale there). After a fraction, an
// "e"/"E" and an optional sign are consumed even when no exponent digits follow.
// A null text gives 0, *end null, true.
ZU_API bool ZuStringToDouble(const char* text, char** end, double& value);

// Per-category record: turns a system locale name into a standard language/territory
// and an encoding. Valid when both were found. Not copyable.
class ZU_API ZuLocaleCatDescriptor {
public:
    // Empty: no names, invalid, encoding 0.
    ZuLocaleCatDescriptor();
    ~ZuLocaleCatDescriptor();
    ZuLocaleCatDescriptor(const ZuLocaleCatDescriptor&) = delete;
    ZuLocaleCatDescriptor& operator=(const ZuLocaleCatDescriptor&) = delete;

    // Stores a copy of name (may be null) and returns standardize().
    bool setSystemLocaleName(const char* name);
    // Recomputes the pair, encoding and validity from the system name (split at its
    // last "."). A name without a code set takes "C" as US-ASCII; any other is asked
    // of the host by switching LC_CTYPE to it and back. True when valid.
    // Deliberate: when the host refuses that switch, the current code set is used.
    bool standardize();
    // Stores a standard pair (5 characters, "_" third: valid) or else a system name
    // (invalid), with encoding e. Deliberate: when the stored pair already equals
    // langTerr nothing changes, not even the encoding.
    void setStdLangTerr(const char* langTerr, ZuEncoding e);
    // Null unless valid; else new text: pair, ".", canonical encoding name.
    char* getStdLocaleName() const;

    // The name as the host spells it (not a copy), or null.
    const char* getSystemLocaleName() const { return _systemLocaleName; }
    // True when a standard pair and a known encoding were found (or a pair was set).
    bool isValid() const { return _valid; }
    // The standard pair "ll_TT" (not a copy), or null.
    const char* getStdLangTerr() const { return _stdLangTerr; }
    // The encoding found or set; 0 when unknown.
    ZuEncoding getEncoding() const { return _encoding; }

private:
    char* _systemLocaleName; // as the host spells it, owned, may be null
    bool _valid;
    char* _stdLangTerr; // "ll_TT", owned, may be null
    ZuEncoding _encoding;
};

// Extensions attached to a locale, found by type. Holds pointers only: it never owns
// or deletes the extensions. Not copyable.
class ZU_API ZuExtensionList {
public:
    ZuExtensionList();
    // Releases the array only.
    ~ZuExtensionList();
    ZuExtensionList(const ZuExtensionList&) = delete;
    ZuExtensionList& operator=(const ZuExtensionList&) = delete;

    // Appends and returns the new count. A full list doubles its capacity (0 becomes
    // 1, capped at 65535) and releases the old array. Null is appended like any entry
    // (find skips it); a list holding 65535 entries adds nothing and returns the count.
    uint16_t add(ZuLocaleExtension* extension);
    // Removes the first entry equal to extension, shifting the later ones down.
    void remove(ZuLocaleExtension* extension);
    // The first extension whose getType() equals type, or null.
    ZuLocaleExtension* find(int type) const;

    // Number of extensions held.
    uint16_t getCount() const { return _count; }
    // Size of the array: 0, 1, then doubling as the list grows.
    uint16_t getCapacity() const { return _capacity; }
    // Entry i, or null when i is not below the count.
    ZuLocaleExtension* get(uint16_t i) const { return i < _count ? _extensions[i] : nullptr; }

private:
    ZuLocaleExtension** _extensions; // owned array, may be null
    uint16_t _count;
    uint16_t _capacity;
};

// One system locale: the standard names of its character-type and messages
// categories, the host's code set, its encoding and largest character size.
// Every live locale is in a process-wide registry (creation order) with one default.
// Extensions built on a locale keep it alive by its reference count. Not copyable.
class ZU_API ZuLocale {
public:
    // Registers the locale and switches every host category to name (null or "": the
    // environment's locale). Deliberate: the switch is not undone. On refusal writes
    // "ZuLocale::ZuLocale <name> locale not supported by the system.", marks the locale
    // failed and switches to "C". A host name that is not standard writes "Not a
    // standard TRK locale <name>" (character type) or "Not a standard Vantrel TRK
    // locale <name>" (messages, only when the character type was standard).
    // The first locale built without failure becomes the default.
    explicit ZuLocale(const char* name);
    ZuLocale(const ZuLocale&) = delete;
    ZuLocale& operator=(const ZuLocale&) = delete;

    // Week data taken by calendars. Always 2 (Monday) for every locale.
    virtual int getFirstDayOfWeek() const;
    // Always 0 for every locale, deliberately (not 1).
    virtual int getMinimalDaysInFirstWeek() const;
    // Leaves the registry; the default becomes null when this was it.
    virtual ~ZuLocale();

    // Null name: the default locale. Otherwise the first registered locale whose
    // character-type system name equals name exactly. Not found: null, or when create
    // is set a new locale (switching the process locale), null if the host refuses it.
    static ZuLocale* Get(bool create, const char* name);
    // The standard form of any locale name as new text, or null when the name has no
    // standard language/territory. A name without a code set is resolved through the
    // host by Get(true, name) (which may create and register a locale); the process
    // locale is restored afterwards. An unknown encoding leaves a trailing "." ("xx_YY.").
    static char* GetStdLocaleName(const char* name);
    // The canonical name of e (the table's text, not a copy; "" for 0), or null when e
    // is outside the table.
    static const char* GetEncodingName(ZuEncoding e);
    // The encoding whose canonical name equals name exactly (case matters), or 0.
    static ZuEncoding GetZuEncoding(const char* name);

    // The character-type descriptor for 0, the messages descriptor for 5, else null.
    ZuLocaleCatDescriptor* getCategory(ZuCategory c) const;
    // 1 when e is this locale's encoding or fully compatible with it, 2 when partly
    // compatible, else 0. The lists are asymmetric: ISO-8859-1 takes windows-1252 fully,
    // windows-1252 takes ISO-8859-1 only partly.
    int isEncodingCompatible(ZuEncoding e) const;
    // Makes this locale the default.
    void setDefaultLocale();
    // Gives category c (6: both 0 and 5, true only if both succeed) the system name.
    // Null name: true, nothing done. A name the descriptor already holds: true
    // (even when invalid). With apply and a now valid descriptor, switches the host's
    // category c to name (for 0 also refreshing the encoding and character size).
    bool setSystemLocaleName(const char* name, bool apply, ZuCategory c);
    // Refreshes the code set from the host; the encoding becomes the character-type
    // descriptor's, or 1 (US-ASCII) when the host gives no code set. Returns true.
    bool setEncoding();
    // Refreshes and returns the largest character size: MB_CUR_MAX for encodings above
    // 11 when a character-type system name is held, else 1.
    uint16_t setMaxCharSize();

    // Forwarders to the extension list.
    ZuLocaleExtension* getExtension(int type) const;
    uint16_t addExtension(ZuLocaleExtension* extension);
    void removeExtension(ZuLocaleExtension* extension);

    // Called by ZuSetLocale with each locale it makes the default; null (the initial
    // value) calls nothing. The global context installs its locale extension here.
    static void SetDefaultLocaleHook(void (*hook)(ZuLocale* locale));

    // True when the host refused the name given to the constructor.
    bool hasFailed() const { return _failure; }
    // The host's code set name when last refreshed (not a copy), or null.
    const char* getCodeset() const { return _codeset; }
    // The locale's encoding (see setEncoding); 0 when unknown.
    ZuEncoding getEncoding() const { return _encoding; }
    // The largest size of one character in bytes (see setMaxCharSize).
    uint16_t getMaxCharSize() const { return _maxCharSize; }
    // Number of extensions built on this locale and not yet destroyed.
    uint16_t getRefCount() const { return _refCount; }
    // The extensions attached with addExtension.
    const ZuExtensionList& getExtensionList() const { return _extensions; }
    // Registry: number of live locales, capacity of the array, entry i (or null).
    static uint16_t GetLocaleNumber() { return _LocaleNumber; }
    static uint16_t GetMaxLocaleNumber() { return _MaxLocaleNumber; }
    static ZuLocale* GetLocaleAt(uint16_t i) {
        return i < _LocaleNumber ? _LocaleList[i] : nullptr;
    }

private:
    friend class ZuLocaleExtension; // raises and lowers _refCount

    void registerLocale();
    void unregisterLocale();

    bool _failure;                     // the host refused the name
    ZuLocaleCatDescriptor* _ctype;     // owned
    char* _codeset;                    // host's code set, owned, may be null
    ZuEncoding _encoding;
    uint16_t _maxCharSize;
    ZuLocaleCatDescriptor* _messages;  // owned
    ZuExtensionList _extensions;
    uint16_t _refCount;                // extensions built on this locale

    static ZuLocale* _Locale;          // the default, may be null
    static ZuLocale** _LocaleList;     // live locales in creation order
    static uint16_t _LocaleNumber;
    static uint16_t _MaxLocaleNumber;
};

// Base of caller-defined objects attached to a locale and found by type. Building one
// raises its locale's reference count; destroying one lowers it and deletes the
// locale when it reaches 0. Subclasses set _type in their constructor and define
// getName(). Not copyable.
class ZU_API ZuLocaleExtension {
public:
    // Stores locale (not owned; must not be null, a null one is simply not counted)
    // and raises its reference count. Flag false, reference count 0.
    explicit ZuLocaleExtension(ZuLocale* locale);
    // Leaves the locale's extension list if still there, lowers the locale's count and
    // deletes the locale at 0.
    virtual ~ZuLocaleExtension();
    ZuLocaleExtension(const ZuLocaleExtension&) = delete;
    ZuLocaleExtension& operator=(const ZuLocaleExtension&) = delete;

    // The type number chosen by the concrete extension.
    virtual uint16_t getType() const;
    // A short name of the concrete kind of extension, for diagnostics and lookups by
    // name; the text stays owned by the extension. Every concrete extension defines it.
    virtual const char* getName() const = 0;

    // The locale this extension keeps alive.
    ZuLocale* getLocale() const { return _locale; }
    // A flag for the concrete extension's own use; false after construction.
    bool getFlag() const { return _flag; }
    void setFlag(bool flag) { _flag = flag; }
    // Reference count kept by holders of the extension (the global context's current
    // extension); the extension never acts on it. Both return the new count, staying
    // within 0 to 65535; the holder deletes the extension when it falls to 0.
    uint16_t addReference() { return _refCount < UINT16_MAX ? ++_refCount : _refCount; }
    uint16_t removeReference() { return _refCount > 0 ? --_refCount : 0; }
    uint16_t getRefCount() const { return _refCount; }

protected:
    bool _flag;        // meaning left to the concrete extension
    ZuLocale* _locale; // not owned
    uint16_t _type;
    uint16_t _refCount;
};

#endif
