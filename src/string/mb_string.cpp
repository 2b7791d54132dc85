// ZuMBString: the text as bytes in the current C locale's encoding and as wide
// characters. Operations run on the wide text; the bytes are then re-encoded.
#include <zu/string.h>

#include "text_ops.h"

#include <cstdlib>
#include <cstring>
#include <typeinfo>
#include <cwctype>

namespace {

// Operations given a representation of another class do nothing: the string class
// never mixes them, and nothing may throw out of the library.
const ZuMBString* sameClass(const ZuInternalString& other) {
    // The exact class is the usual case and the cheap test; subclasses take the full cast.
    if (typeid(other) == typeid(ZuMBString)) return static_cast<const ZuMBString*>(&other);
    return dynamic_cast<const ZuMBString*>(&other);
}

// Function objects rather than pointers, so that the comparison loop inlines them.
struct FullCompare {
    int operator()(const wchar_t* a, const wchar_t* b) const { return std::wcscmp(a, b); }
};
struct PartCompare {
    int operator()(const wchar_t* a, const wchar_t* b, size_t n) const {
        return std::wcsncmp(a, b, n);
    }
};

char* emptyBytes() { return new char[1](); }

} // namespace

ZuMBString::ZuMBString(const char* text) : ZuInternalString(), _wvalue(nullptr), _wsize(0) {
    fillIn(text ? text : "", true);
}

ZuMBString::ZuMBString(const wchar_t* text) : ZuInternalString(), _wvalue(nullptr), _wsize(0) {
    fillWIn(const_cast<wchar_t*>(text ? text : L""), true, -1, true);
}

ZuMBString::ZuMBString(const ZuMBString& other)
    : ZuInternalString(other), _wvalue(nullptr), _wsize(other._length + 1) {
    _wvalue = new wchar_t[static_cast<size_t>(_wsize)];
    std::wmemcpy(_wvalue, other._wvalue, static_cast<size_t>(_wsize));
}

ZuMBString::~ZuMBString() { delete[] _wvalue; }

void ZuMBString::fillIn(const char* text, bool copy) {
    if (!text) {
        text = "";
        copy = true;
    }
    if (copy && text == _value) return;
    char* adopted = copy ? nullptr : const_cast<char*>(text);
    // Decode before releasing anything: text may lie inside the current arrays.
    size_t n = *text ? std::mbstowcs(nullptr, text, 0) : 0;
    const bool valid = n != static_cast<size_t>(-1);
    if (!valid) n = 0; // not valid in the current encoding: held as an empty text
    wchar_t* wide = new wchar_t[n + 1];
    if (n) std::mbstowcs(wide, text, n + 1);
    wide[n] = 0;
    char* bytes;
    if (valid && adopted) {
        bytes = adopted;
    } else if (valid) {
        const size_t size = std::strlen(text) + 1;
        bytes = new char[size];
        std::memcpy(bytes, text, size);
    } else {
        bytes = emptyBytes();
    }
    delete[] _wvalue;
    // The previous byte array is released whenever it is replaced, so adopting never
    // leaks; an adopted invalid text is released too, since it is not kept.
    if (_value != bytes) delete[] _value;
    if (adopted && adopted != bytes && adopted != _value) delete[] adopted;
    _wvalue = wide;
    _length = static_cast<int64_t>(n);
    _wsize = _length + 1;
    _value = bytes;
    _size = std::strlen(bytes) + 1;
}

void ZuMBString::fillWIn(wchar_t* text, bool copy, int length, bool deleteOld) {
    if (!text) {
        text = const_cast<wchar_t*>(L"");
        copy = true;
        length = -1;
    }
    delete[] _value;
    _value = nullptr;
    _size = 0;
    _length = 0;
    wchar_t* old = _wvalue;
    // Any negative length is taken as "up to the terminator".
    const int64_t n = length < 0 ? static_cast<int64_t>(std::wcslen(text)) : length;
    wchar_t* wide;
    if (!copy) {
        wide = text;
    } else {
        // Copy before releasing anything: text may lie inside the current array.
        wide = new wchar_t[static_cast<size_t>(n + 1)];
        const size_t kept =
            length < 0 ? static_cast<size_t>(n) : wcsnlen(text, static_cast<size_t>(n));
        std::wmemcpy(wide, text, kept);
        std::wmemset(wide + kept, 0, static_cast<size_t>(n + 1) - kept);
    }
    if (deleteOld && old != wide) delete[] old;
    _wvalue = wide;
    _length = n;
    _wsize = n + 1;
    update();
}

void ZuMBString::update() {
    delete[] _value;
    _value = nullptr;
    const size_t bytes = std::wcstombs(nullptr, _wvalue, 0);
    if (bytes == static_cast<size_t>(-1)) {
        // A character the current encoding cannot hold: the whole text becomes empty,
        // keeping the bytes the encoding of the wide text.
        delete[] _wvalue;
        _wvalue = new wchar_t[1]();
        _length = 0;
        _wsize = 1;
        _value = emptyBytes();
        _size = 1;
        return;
    }
    _value = new char[bytes + 1];
    std::wcstombs(_value, _wvalue, bytes + 1);
    _value[bytes] = 0;
    _size = bytes + 1;
}

ZuInternalString* ZuMBString::getSubString(int start, int end) {
    int64_t from;
    int count;
    if (!subStringRange(start, end, _length, from, count))
        return ZuEmptyInitialization::GetEmpty()->getInternal();
    ZuMBString* sub = new ZuMBString("");
    sub->fillWIn(_wvalue + from, true, count, true);
    return sub;
}

int ZuMBString::getIndexOf(const ZuInternalString& sub, int start, int subStart,
                           int subEnd) const {
    const ZuMBString* s = sameClass(sub);
    if (!s) return -1;
    return indexOfRange(_wvalue, _length, s->_wvalue, s->_length, start, subStart, subEnd);
}

int ZuMBString::getLastIndexOf(const ZuInternalString& sub, int start, int subStart,
                               int subEnd) const {
    const ZuMBString* s = sameClass(sub);
    if (!s) return -1;
    return lastIndexOfRange(_wvalue, _length, s->_wvalue, s->_length, start, subStart, subEnd);
}

bool ZuMBString::isBlank() const {
    for (const wchar_t* p = _wvalue; *p; ++p)
        if (!std::iswspace(static_cast<wint_t>(*p))) return false;
    return true;
}

int ZuMBString::compare(const ZuInternalString& other, int start, int end, int otherStart,
                        int otherEnd) const {
    const ZuMBString* o = sameClass(other);
    if (!o) return -1;
    return compareRanges(_wvalue, _length, start, end, o->_wvalue, o->_length, otherStart,
                         otherEnd, FullCompare(), PartCompare());
}

int ZuMBString::caseCompare(const ZuInternalString& other, int start, int end, int otherStart,
                            int otherEnd) const {
    const ZuMBString* o = sameClass(other);
    if (!o) return -1;
    int64_t s = start, e = end, os = otherStart, oe = otherEnd;
    normaliseRange(s, e, _length);
    normaliseRange(os, oe, o->_length);
    if (e > 0 && _wvalue[s] != 0 && oe > 0 && o->_wvalue[os] != 0) {
        // The walk is bounded by the terminators only, not by the ranges (kept so).
        for (const wchar_t *a = _wvalue + s, *b = o->_wvalue + os; *a && *b; ++a, ++b) {
            const unsigned x = static_cast<unsigned>(std::towlower(static_cast<wint_t>(*a)));
            const unsigned y = static_cast<unsigned>(std::towlower(static_cast<wint_t>(*b)));
            if (x != y) return x > y ? 1 : -1;
        }
    }
    return static_cast<int>((e - s) - (oe - os));
}

int ZuMBString::getType() const { return 1; }

void ZuMBString::replace(const ZuInternalString& with, int start, int end, int withStart,
                         int withEnd) {
    const ZuMBString* w = sameClass(with);
    if (!w) return;
    bool edited = false;
    auto* result =
        replaceRange(_wvalue, _length, start, end, w->_wvalue, w->_length, withStart, withEnd, edited);
    if (result)
        fillWIn(result, false, -1, true);
    else if (edited)
        fillWIn(_wvalue, false, -1, false);
}

void ZuMBString::substitute(const ZuInternalString& from, const ZuInternalString& to,
                            int start, int end, int fromStart, int fromEnd, int toStart,
                            int toEnd) {
    const ZuMBString* f = sameClass(from);
    const ZuMBString* t = sameClass(to);
    if (!f || !t) return;
    bool edited = false;
    auto* result = substituteRanges(_wvalue, _length, start, end, f->_wvalue, f->_length, fromStart,
                                    fromEnd, t->_wvalue, t->_length, toStart, toEnd, edited);
    if (result)
        fillWIn(result, false, -1, true);
    else if (edited)
        fillWIn(_wvalue, false, -1, false);
}

void ZuMBString::toLower() {
    for (int64_t i = 0; i < _length; ++i)
        _wvalue[i] = static_cast<wchar_t>(std::towlower(static_cast<wint_t>(_wvalue[i])));
    update();
}

void ZuMBString::toUpper() {
    for (int64_t i = 0; i < _length; ++i)
        _wvalue[i] = static_cast<wchar_t>(std::towupper(static_cast<wint_t>(_wvalue[i])));
    update();
}

ZuInternalString* ZuMBString::duplicate() const { return new ZuMBString(*this); }

void ZuMBString::reserve(int size) { reserveBytes(size); }
