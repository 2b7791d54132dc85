// ZuString: construction, sharing, release and the plain queries.
#include <zu/string.h>

#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <cstring>

const char* ZuString::DefaultShortFormat = "%hd";
const char* ZuString::DefaultUnsignedShortFormat = "%hu";
const char* ZuString::DefaultIntegerFormat = "%d";
const char* ZuString::DefaultUnsignedIntegerFormat = "%u";
const char* ZuString::DefaultLongFormat = "%ld";
const char* ZuString::DefaultUnsignedLongFormat = "%lu";
const char* ZuString::DefaultFloatFormat = "%f";
const char* ZuString::DefaultDoubleFormat = "%g";

char ZuString::S_Buffer[160];

namespace {

bool multibyteMode() { return MB_CUR_MAX > 1; }

ZuInternalString* newRepresentation(const char* text) {
    if (multibyteMode()) return new ZuMBString(text);
    return new ZuSBString(text);
}

} // namespace

ZuString::ZuString() : _rep(nullptr) { initFromText(nullptr); }

ZuString::ZuString(const char* text) : _rep(nullptr) { initFromText(text); }

ZuString::ZuString(std::nullptr_t) : _rep(nullptr) { initFromText(nullptr); }

ZuString::ZuString(ZuInternalString* rep) : _rep(nullptr) {
    if (rep)
        attach(rep);
    else
        initFromText(nullptr);
}

ZuString::ZuString(short value, const char* format) : _rep(nullptr) {
    initFromNumber(format, value);
}
ZuString::ZuString(unsigned short value, const char* format) : _rep(nullptr) {
    initFromNumber(format, value);
}
ZuString::ZuString(int value, const char* format) : _rep(nullptr) {
    initFromNumber(format, value);
}
ZuString::ZuString(unsigned int value, const char* format) : _rep(nullptr) {
    initFromNumber(format, value);
}
ZuString::ZuString(long value, const char* format) : _rep(nullptr) {
    initFromNumber(format, value);
}
ZuString::ZuString(unsigned long value, const char* format) : _rep(nullptr) {
    initFromNumber(format, value);
}
ZuString::ZuString(float value, const char* format) : _rep(nullptr) {
    initFromNumber(format, static_cast<double>(value));
}
ZuString::ZuString(double value, const char* format) : _rep(nullptr) {
    initFromNumber(format, value);
}

ZuString& ZuString::operator=(const ZuString& other) {
    ZuInternalString* rep = other._rep;
    ++rep->_refCount; // first, so that self-assignment never frees the representation
    if (--_rep->_refCount == 0) delete _rep;
    _rep = rep;
    return *this;
}

void ZuString::attach(ZuInternalString* rep) {
    _rep = rep;
    ++_rep->_refCount;
}

void ZuString::detach() {
    if (_rep->_refCount == 1) return;
    --_rep->_refCount;
    attach(_rep->duplicate());
}

void ZuString::initFromText(const char* text) {
    if (!text || !*text) {
        // Sharing waits until the mode's static exists: GetEmpty() builds that static
        // through this very path.
        const bool first =
            multibyteMode() ? ZuEmptyInitialization::MultiFirst : ZuEmptyInitialization::MonoFirst;
        if (!first) {
            attach(ZuEmptyInitialization::GetEmpty()->_rep);
            return;
        }
        text = "";
    }
    attach(newRepresentation(text));
}

void ZuString::initFromNumber(const char* format, ...) {
    va_list args;
    va_start(args, format);
    va_list again;
    va_copy(again, args);
    char* longer = nullptr;
    const char* text = "";
    if (format) {
        // Bounded: a longer result is formatted again into a heap buffer of its size.
        const int n = std::vsnprintf(S_Buffer, sizeof S_Buffer, format, args);
        if (n < 0) {
            S_Buffer[0] = 0;
        } else if (static_cast<size_t>(n) >= sizeof S_Buffer) {
            longer = new char[static_cast<size_t>(n) + 1];
            std::vsnprintf(longer, static_cast<size_t>(n) + 1, format, again);
        }
        text = longer ? longer : S_Buffer;
    }
    va_end(again);
    va_end(args);
    attach(newRepresentation(text));
    delete[] longer;
}

bool ZuString::isEmpty() const {
    const char* value = _rep->getValue();
    return !value || !*value;
}

int ZuString::getLength() const { return static_cast<int>(_rep->getLength()); }

size_t ZuString::getSize() const { return static_cast<size_t>(_rep->getSize()); }

const char* ZuString::getValue() const {
    const char* value = _rep->getValue();
    return value ? value : "";
}

char* ZuString::copyValue() const {
    const size_t size = getSize() ? getSize() : 1;
    char* copy = new char[size];
    std::memcpy(copy, getValue(), size);
    copy[size - 1] = 0;
    return copy;
}

bool ZuString::isBlank() const { return isEmpty() || _rep->isBlank(); }
