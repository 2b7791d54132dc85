// ZuSBString: one character per byte; every operation works on the bytes directly.
#include <zu/string.h>

#include "text_ops.h"

#include <cctype>
#include <cstring>
#include <typeinfo>
#include <strings.h>

namespace {

// Operations given a representation of another class do nothing: the string class
// never mixes them, and nothing may throw out of the library.
const ZuSBString* sameClass(const ZuInternalString& other) {
    // The exact class is the usual case and the cheap test; subclasses take the full cast.
    if (typeid(other) == typeid(ZuSBString)) return static_cast<const ZuSBString*>(&other);
    return dynamic_cast<const ZuSBString*>(&other);
}

// Function objects rather than pointers, so that the comparison loop inlines them.
struct FullCompare {
    int operator()(const char* a, const char* b) const { return std::strcmp(a, b); }
};
struct PartCompare {
    int operator()(const char* a, const char* b, size_t n) const { return std::strncmp(a, b, n); }
};
struct FullCaseCompare {
    int operator()(const char* a, const char* b) const { return strcasecmp(a, b); }
};
struct PartCaseCompare {
    int operator()(const char* a, const char* b, size_t n) const { return strncasecmp(a, b, n); }
};

} // namespace

ZuSBString::ZuSBString(const char* text) : ZuInternalString() {
    fillIn(text ? text : "", true, -1, true);
}

ZuSBString::ZuSBString(const ZuSBString& other) : ZuInternalString(other) {}

ZuSBString::~ZuSBString() = default;

void ZuSBString::fillIn(const char* text, bool copy, int length, bool deleteOld) {
    if (!text) {
        text = "";
        copy = true;
        length = -1;
    }
    char* old = _value;
    // Any negative length is taken as "up to the terminator".
    const int64_t n = length < 0 ? static_cast<int64_t>(std::strlen(text)) : length;
    char* value;
    if (!copy) {
        value = const_cast<char*>(text);
    } else {
        // Copy before releasing anything: text may lie inside the current array.
        value = new char[static_cast<size_t>(n + 1)];
        const size_t kept =
            length < 0 ? static_cast<size_t>(n) : strnlen(text, static_cast<size_t>(n));
        std::memcpy(value, text, kept);
        std::memset(value + kept, 0, static_cast<size_t>(n + 1) - kept);
    }
    _value = value;
    _length = n;
    _size = static_cast<uint64_t>(n + 1);
    if (deleteOld && old != value) delete[] old;
}

ZuInternalString* ZuSBString::getSubString(int start, int end) {
    int64_t from;
    int count;
    if (!subStringRange(start, end, _length, from, count))
        return ZuEmptyInitialization::GetEmpty()->getInternal();
    ZuSBString* sub = new ZuSBString("");
    sub->fillIn(_value + from, true, count, true);
    return sub;
}

int ZuSBString::getIndexOf(const ZuInternalString& sub, int start, int subStart,
                           int subEnd) const {
    const ZuSBString* s = sameClass(sub);
    if (!s) return -1;
    return indexOfRange(_value, _length, s->_value, s->_length, start, subStart, subEnd);
}

int ZuSBString::getLastIndexOf(const ZuInternalString& sub, int start, int subStart,
                               int subEnd) const {
    const ZuSBString* s = sameClass(sub);
    if (!s) return -1;
    return lastIndexOfRange(_value, _length, s->_value, s->_length, start, subStart, subEnd);
}

bool ZuSBString::isBlank() const {
    for (const char* p = _value; *p; ++p)
        if (!std::isspace(static_cast<unsigned char>(*p))) return false;
    return true;
}

int ZuSBString::compare(const ZuInternalString& other, int start, int end, int otherStart,
                        int otherEnd) const {
    const ZuSBString* o = sameClass(other);
    if (!o) return -1;
    return compareRanges(_value, _length, start, end, o->_value, o->_length, otherStart,
                         otherEnd, FullCompare(), PartCompare());
}

int ZuSBString::caseCompare(const ZuInternalString& other, int start, int end, int otherStart,
                            int otherEnd) const {
    const ZuSBString* o = sameClass(other);
    if (!o) return -1;
    return compareRanges(_value, _length, start, end, o->_value, o->_length, otherStart,
                         otherEnd, FullCaseCompare(), PartCaseCompare());
}

int ZuSBString::getType() const { return 0; }

void ZuSBString::replace(const ZuInternalString& with, int start, int end, int withStart,
                         int withEnd) {
    const ZuSBString* w = sameClass(with);
    if (!w) return;
    bool edited = false;
    auto* result =
        replaceRange(_value, _length, start, end, w->_value, w->_length, withStart, withEnd, edited);
    if (result)
        fillIn(result, false, -1, true);
    else if (edited)
        fillIn(_value, false, -1, false);
}

void ZuSBString::substitute(const ZuInternalString& from, const ZuInternalString& to,
                            int start, int end, int fromStart, int fromEnd, int toStart,
                            int toEnd) {
    const ZuSBString* f = sameClass(from);
    const ZuSBString* t = sameClass(to);
    if (!f || !t) return;
    bool edited = false;
    auto* result = substituteRanges(_value, _length, start, end, f->_value, f->_length, fromStart,
                                    fromEnd, t->_value, t->_length, toStart, toEnd, edited);
    if (result)
        fillIn(result, false, -1, true);
    else if (edited)
        fillIn(_value, false, -1, false);
}

void ZuSBString::toLower() {
    for (int64_t i = 0; i < _length; ++i)
        _value[i] = static_cast<char>(std::tolower(static_cast<unsigned char>(_value[i])));
}

void ZuSBString::toUpper() {
    for (int64_t i = 0; i < _length; ++i)
        _value[i] = static_cast<char>(std::toupper(static_cast<unsigned char>(_value[i])));
}

ZuInternalString* ZuSBString::duplicate() const { return new ZuSBString(*this); }

void ZuSBString::reserve(int size) { reserveBytes(size); }
