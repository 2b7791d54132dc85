// ZuLocale: one system locale, the registry of live locales and the default locale.
#include "locale/locale_internal.h"

#include <clocale>
#include <cstdio>
#include <cstdlib>
#include <cstring>

using zu_locale::copyText;

ZuLocale* ZuLocale::_Locale = nullptr;
ZuLocale** ZuLocale::_LocaleList = nullptr;
uint16_t ZuLocale::_LocaleNumber = 0;
uint16_t ZuLocale::_MaxLocaleNumber = 0;

namespace {

void (*defaultLocaleHook)(ZuLocale*) = nullptr;

} // namespace

ZuLocale::ZuLocale(const char* name)
    : _failure(false), _ctype(nullptr), _codeset(nullptr), _encoding(ZuEnc_Unknown),
      _maxCharSize(1), _messages(nullptr), _extensions(), _refCount(0) {
    registerLocale();
    _ctype = new ZuLocaleCatDescriptor;
    _messages = new ZuLocaleCatDescriptor;

    if (std::setlocale(LC_ALL, name ? name : "")) {
        // Copies: the host's answers are overwritten by the next switch, and
        // standardizing may switch the character type to ask for a code set.
        char* ctypeName = copyText(std::setlocale(LC_CTYPE, nullptr));
        bool ctypeOk = setSystemLocaleName(ctypeName, false, ZuCategory_CType);
        if (!ctypeOk)
            std::fprintf(stderr, "Not a standard TRK locale %s\n", ctypeName ? ctypeName : "");
        char* messagesName = copyText(std::setlocale(LC_MESSAGES, nullptr));
        if (!setSystemLocaleName(messagesName, false, ZuCategory_Messages) && ctypeOk)
            std::fprintf(stderr, "Not a standard Vantrel TRK locale %s\n",
                         messagesName ? messagesName : "");
        delete[] ctypeName;
        delete[] messagesName;
    } else {
        // A refused environment locale (null name) is reported with an empty name.
        std::fprintf(stderr, "ZuLocale::ZuLocale %s locale not supported by the system.\n",
                     name ? name : "");
        _failure = true;
        setSystemLocaleName("C", true, ZuCategory_All);
    }

    if (!_failure) {
        if (!_Locale)
            _Locale = this;
        setEncoding();
        setMaxCharSize();
    }
}

ZuLocale::~ZuLocale() {
    delete _ctype;
    delete _messages;
    delete[] _codeset;
    if (_Locale == this)
        _Locale = nullptr;
    unregisterLocale();
}

void ZuLocale::registerLocale() {
    if (_LocaleNumber == _MaxLocaleNumber) {
        if (_MaxLocaleNumber == UINT16_MAX)
            return; // a full registry cannot grow within 16 bits: leave this one out
        uint16_t capacity =
            _MaxLocaleNumber == 0 ? 1
            : _MaxLocaleNumber > UINT16_MAX / 2 ? UINT16_MAX
                                                : static_cast<uint16_t>(_MaxLocaleNumber * 2);
        ZuLocale** list = new ZuLocale*[capacity];
        for (uint16_t i = 0; i < _LocaleNumber; ++i)
            list[i] = _LocaleList[i];
        delete[] _LocaleList;
        _LocaleList = list;
        _MaxLocaleNumber = capacity;
    }
    _LocaleList[_LocaleNumber++] = this;
}

void ZuLocale::unregisterLocale() {
    for (uint16_t i = 0; i < _LocaleNumber; ++i) {
        if (_LocaleList[i] != this)
            continue;
        for (uint16_t j = i + 1; j < _LocaleNumber; ++j)
            _LocaleList[j - 1] = _LocaleList[j];
        --_LocaleNumber;
        break;
    }
    if (_LocaleNumber == 0) {
        delete[] _LocaleList;
        _LocaleList = nullptr;
        _MaxLocaleNumber = 0;
    }
}

int ZuLocale::getFirstDayOfWeek() const { return 2; }

int ZuLocale::getMinimalDaysInFirstWeek() const { return 0; }

ZuLocale* ZuLocale::Get(bool create, const char* name) {
    if (!name) {
        if (_Locale)
            return _Locale;
    } else {
        for (uint16_t i = 0; i < _LocaleNumber; ++i) {
            const ZuLocaleCatDescriptor* ctype = _LocaleList[i]->_ctype;
            const char* system = ctype ? ctype->getSystemLocaleName() : nullptr;
            if (system && std::strcmp(system, name) == 0)
                return _LocaleList[i];
        }
    }
    if (!create)
        return nullptr;
    ZuLocale* locale = new ZuLocale(name);
    if (!locale->_failure)
        return locale;
    delete locale;
    return nullptr;
}

char* ZuLocale::GetStdLocaleName(const char* name) {
    if (!name)
        return nullptr;
    zu_locale::SplitName split = zu_locale::splitName(name);
    char* pair = ToStdLangTerr(split.langTerr);
    delete[] split.langTerr;
    if (!pair)
        return nullptr;

    ZuEncoding e = ZuEnc_Unknown;
    if (split.codeset) {
        e = zu_locale::encodingValue(split.codeset, pair);
    } else {
        char* saved = copyText(std::setlocale(LC_ALL, nullptr));
        // A name the host refuses gives no locale; its encoding is then unknown.
        if (ZuLocale* locale = Get(true, name))
            e = locale->_encoding;
        if (saved)
            std::setlocale(LC_ALL, saved);
        delete[] saved;
    }
    char* result = zu_locale::joinStdName(pair, e);
    delete[] pair;
    return result;
}

const char* ZuLocale::GetEncodingName(ZuEncoding e) {
    int i = static_cast<int>(e);
    if (i < 0 || i >= zu_locale::kEncodingCount || zu_locale::encodings[i].value != i)
        return nullptr;
    return zu_locale::encodings[i].name;
}

ZuEncoding ZuLocale::GetZuEncoding(const char* name) {
    if (!name)
        return ZuEnc_Unknown;
    for (int i = 0; i < zu_locale::kEncodingCount; ++i)
        if (std::strcmp(zu_locale::encodings[i].name, name) == 0)
            return static_cast<ZuEncoding>(zu_locale::encodings[i].value);
    return ZuEnc_Unknown;
}

ZuLocaleCatDescriptor* ZuLocale::getCategory(ZuCategory c) const {
    if (c == ZuCategory_CType)
        return _ctype;
    if (c == ZuCategory_Messages)
        return _messages;
    return nullptr;
}

int ZuLocale::isEncodingCompatible(ZuEncoding e) const {
    if (e == _encoding)
        return 1;
    int own = static_cast<int>(_encoding);
    if (own < 0 || own >= zu_locale::kEncodingCount)
        return 0;
    const zu_locale::EncodingRow& row = zu_locale::encodings[own];
    for (int i = 0; i < 3 && row.full[i] != -1; ++i)
        if (row.full[i] == e)
            return 1;
    for (int i = 0; i < 3 && row.partial[i] != -1; ++i)
        if (row.partial[i] == e)
            return 2;
    return 0;
}

void ZuLocale::setDefaultLocale() { _Locale = this; }

bool ZuLocale::setSystemLocaleName(const char* name, bool apply, ZuCategory c) {
    if (c == ZuCategory_All) {
        bool ctypeDone = setSystemLocaleName(name, apply, ZuCategory_CType);
        bool messagesDone = setSystemLocaleName(name, apply, ZuCategory_Messages);
        return ctypeDone && messagesDone;
    }
    if (!name)
        return true;
    ZuLocaleCatDescriptor* d = getCategory(c);
    if (!d)
        return false;
    const char* held = d->getSystemLocaleName();
    bool result = (held && std::strcmp(held, name) == 0) ? true : d->setSystemLocaleName(name);
    if (apply && d->isValid()) {
        // The descriptor's copy: name may be a host buffer that standardizing overwrote.
        std::setlocale(c, d->getSystemLocaleName());
        if (c == ZuCategory_CType) {
            setEncoding();
            setMaxCharSize();
        }
    }
    return result;
}

bool ZuLocale::setEncoding() {
    delete[] _codeset;
    _codeset = GetCurrentCodeset();
    if (_codeset)
        _encoding = _ctype ? _ctype->getEncoding() : ZuEnc_Unknown;
    else
        _encoding = ZuEnc_US_ASCII;
    return true;
}

uint16_t ZuLocale::setMaxCharSize() {
    uint16_t size = 1;
    if (_ctype && _ctype->getSystemLocaleName() && _encoding > ZuEnc_ISO_8859_10) {
        size = static_cast<uint16_t>(MB_CUR_MAX);
        if (size == 0)
            size = 1;
    }
    _maxCharSize = size;
    return size;
}

ZuLocaleExtension* ZuLocale::getExtension(int type) const { return _extensions.find(type); }

uint16_t ZuLocale::addExtension(ZuLocaleExtension* extension) {
    return _extensions.add(extension);
}

void ZuLocale::removeExtension(ZuLocaleExtension* extension) { _extensions.remove(extension); }

void ZuLocale::SetDefaultLocaleHook(void (*hook)(ZuLocale*)) { defaultLocaleHook = hook; }

ZuLocale* ZuSetLocale(const char* name) {
    ZuLocale* locale = ZuLocale::Get(true, name);
    if (locale) {
        locale->setDefaultLocale();
        if (defaultLocaleHook)
            defaultLocaleHook(locale);
    }
    return locale;
}
