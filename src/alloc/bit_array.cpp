// ZuBitArray: a bit array that only grows.
#include <zu/alloc.h>
#include <zu/array.h>

#include <cstdint>
#include <cstring>

namespace {

size_t byteCount(unsigned length) { return (size_t(length) + 7) / 8; }

// The bytes for length bits plus one spare byte, so that the accepted index equal to
// the length always addresses allocated memory.
unsigned char* allocateBits(unsigned length) {
    return static_cast<unsigned char*>(ZuMalloc(byteCount(length) + 1));
}

} // namespace

ZuBitArray::ZuBitArray(unsigned length, bool value) : _length(length), _bits(allocateBits(length)) {
    if (_bits)
        memset(_bits, value ? 0xFF : 0, byteCount(length) + 1);
    else
        _length = 0; // no bytes: no bit may be addressed
}

ZuBitArray::ZuBitArray(const ZuBitArray& other)
    : _length(other._length), _bits(allocateBits(other._length)) {
    if (_bits && other._bits)
        memcpy(_bits, other._bits, byteCount(_length) + 1);
    else if (_bits)
        memset(_bits, 0, byteCount(_length) + 1);
    else
        _length = 0;
}

ZuBitArray& ZuBitArray::operator=(const ZuBitArray& other) {
    if (this == &other)
        return *this;
    unsigned char* bits = allocateBits(other._length);
    if (!bits)
        return *this;
    if (other._bits)
        memcpy(bits, other._bits, byteCount(other._length) + 1);
    else
        memset(bits, 0, byteCount(other._length) + 1);
    ZuFree(_bits);
    _bits = bits;
    _length = other._length;
    return *this;
}

ZuBitArray::~ZuBitArray() { ZuFree(_bits); }

bool ZuBitArray::isSet(unsigned i) const {
    if (i > _length || !_bits)
        return false;
    return (_bits[i / 8] >> (i % 8)) & 1;
}

void ZuBitArray::set(unsigned i, bool value) {
    if (i > _length || !_bits)
        return;
    unsigned char mask = static_cast<unsigned char>(1u << (i % 8));
    if (value)
        _bits[i / 8] |= mask;
    else
        _bits[i / 8] &= static_cast<unsigned char>(~mask);
}

void ZuBitArray::invert(unsigned i) {
    if (i > _length || !_bits)
        return;
    _bits[i / 8] ^= static_cast<unsigned char>(1u << (i % 8));
}

void ZuBitArray::setLength(unsigned length, bool value) {
    size_t oldBytes = byteCount(_length);
    size_t newBytes = byteCount(length);
    if (newBytes <= oldBytes)
        return;
    unsigned char* bits = allocateBits(length);
    if (!bits)
        return;
    if (_bits)
        memcpy(bits, _bits, oldBytes);
    memset(bits + oldBytes, value ? 0xFF : 0, newBytes + 1 - oldBytes);
    ZuFree(_bits);
    _bits = bits;
    _length = length;
}
