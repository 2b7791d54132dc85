// ZuLocaleExtension and ZuExtensionList: caller-defined objects hung on a locale.
#include <zu/locale.h>

ZuLocaleExtension::ZuLocaleExtension(ZuLocale* locale)
    : _flag(false), _locale(locale), _type(0), _refCount(0) {
    if (_locale && _locale->_refCount < UINT16_MAX)
        ++_locale->_refCount;
}

ZuLocaleExtension::~ZuLocaleExtension() {
    if (!_locale)
        return;
    // An extension still listed would leave a dangling entry behind.
    _locale->removeExtension(this);
    if (_locale->_refCount > 0 && --_locale->_refCount == 0)
        delete _locale;
}

uint16_t ZuLocaleExtension::getType() const { return _type; }

ZuExtensionList::ZuExtensionList() : _extensions(nullptr), _count(0), _capacity(0) {}

ZuExtensionList::~ZuExtensionList() { delete[] _extensions; }

uint16_t ZuExtensionList::add(ZuLocaleExtension* extension) {
    if (_count == UINT16_MAX)
        return _count;
    if (_count == _capacity) {
        uint16_t capacity = _capacity == 0 ? 1
                            : _capacity > UINT16_MAX / 2 ? UINT16_MAX
                                                         : static_cast<uint16_t>(_capacity * 2);
        ZuLocaleExtension** array = new ZuLocaleExtension*[capacity];
        for (uint16_t i = 0; i < _count; ++i)
            array[i] = _extensions[i];
        delete[] _extensions;
        _extensions = array;
        _capacity = capacity;
    }
    _extensions[_count++] = extension;
    return _count;
}

void ZuExtensionList::remove(ZuLocaleExtension* extension) {
    for (uint16_t i = 0; i < _count; ++i) {
        if (_extensions[i] != extension)
            continue;
        for (uint16_t j = i + 1; j < _count; ++j)
            _extensions[j - 1] = _extensions[j];
        --_count;
        return;
    }
}

ZuLocaleExtension* ZuExtensionList::find(int type) const {
    for (uint16_t i = 0; i < _count; ++i)
        if (_extensions[i] && _extensions[i]->getType() == type) // null entries are skipped
            return _extensions[i];
    return nullptr;
}
