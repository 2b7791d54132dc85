// ZuLocaleCatDescriptor: a system locale name turned into a standard language/territory
// and an encoding.
#include "locale/locale_internal.h"

#include <clocale>
#include <cstring>

using zu_locale::copyText;

ZuLocaleCatDescriptor::ZuLocaleCatDescriptor()
    : _systemLocaleName(nullptr), _valid(false), _stdLangTerr(nullptr), _encoding(ZuEnc_Unknown) {}

ZuLocaleCatDescriptor::~ZuLocaleCatDescriptor() {
    delete[] _systemLocaleName;
    delete[] _stdLangTerr;
}

bool ZuLocaleCatDescriptor::setSystemLocaleName(const char* name) {
    char* copy = copyText(name); // name may be our own text
    delete[] _systemLocaleName;
    _systemLocaleName = copy;
    return standardize();
}

namespace {

// The host's code set for a name carrying none. Deliberately no check that the
// switch succeeded: a refused name reports the code set in force.
char* hostCodesetOf(const char* name) {
    const char* current = std::setlocale(LC_CTYPE, nullptr);
    if (current && std::strcmp(current, name) == 0)
        return GetCurrentCodeset();
    char* saved = copyText(current);
    std::setlocale(LC_CTYPE, name);
    char* codeset = GetCurrentCodeset();
    if (saved)
        std::setlocale(LC_CTYPE, saved);
    delete[] saved;
    return codeset;
}

} // namespace

bool ZuLocaleCatDescriptor::standardize() {
    delete[] _stdLangTerr;
    _stdLangTerr = nullptr;
    _valid = false;
    _encoding = ZuEnc_Unknown;
    if (!_systemLocaleName)
        return false;

    zu_locale::SplitName split = zu_locale::splitName(_systemLocaleName);
    _stdLangTerr = ToStdLangTerr(split.langTerr);
    delete[] split.langTerr;
    if (!_stdLangTerr)
        return false;

    if (split.codeset) {
        _encoding = zu_locale::encodingValue(split.codeset, _stdLangTerr);
    } else if (std::strcmp(_systemLocaleName, "C") == 0) {
        _encoding = ZuEnc_US_ASCII;
    } else {
        char* codeset = hostCodesetOf(_systemLocaleName);
        _encoding = codeset ? zu_locale::encodingValue(codeset, _stdLangTerr) : ZuEnc_US_ASCII;
        delete[] codeset;
    }
    _valid = _encoding != ZuEnc_Unknown;
    return _valid;
}

void ZuLocaleCatDescriptor::setStdLangTerr(const char* langTerr, ZuEncoding e) {
    if (_stdLangTerr && langTerr && std::strcmp(_stdLangTerr, langTerr) == 0)
        return;
    delete[] _stdLangTerr;
    delete[] _systemLocaleName;
    _stdLangTerr = nullptr;
    _systemLocaleName = nullptr;
    _valid = false;
    _encoding = e;
    if (langTerr && std::strlen(langTerr) == 5 && langTerr[2] == '_') {
        _stdLangTerr = copyText(langTerr);
        _valid = true;
    } else {
        _systemLocaleName = copyText(langTerr);
    }
}

char* ZuLocaleCatDescriptor::getStdLocaleName() const {
    if (!_valid || !_stdLangTerr)
        return nullptr;
    return zu_locale::joinStdName(_stdLangTerr, _encoding);
}
