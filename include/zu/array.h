#ifndef ZU_ARRAY_H
#define ZU_ARRAY_H

// ZuArray: a growable array of untyped pointers. The values are never owned; the
// array stores and compares the pointers only. Capacities grow through 4, 8, 16, ...
// and the storage shrinks again when it is a quarter full. ZuBitArray: a fixed
// array of bits that can only grow. Nothing here is thread-safe.

#include <zu/export.h>

#include <cstdint>

class ZU_API ZuArray {
public:
    // An empty array with no storage.
    ZuArray() : _data(nullptr), _maxLength(0), _length(0) {}
    // A copy of other (see operator=).
    ZuArray(const ZuArray& other);
    // Releases the storage with ZuFree.
    ~ZuArray();

    // Releases the old storage, then copies other's capacity and values. An empty source
    // leaves no storage and a capacity of 0, whatever its capacity was.
    ZuArray& operator=(const ZuArray& other);

    // Position of the first value equal to value; 0xFFFFFFFF when absent or empty.
    uint32_t getIndex(void* const& value) const;

    // Sets the capacity to n (exact) or to the smallest of 4, 8, 16, ... not below n.
    // Does nothing when n is below the length. A capacity of 0 releases the storage.
    void setMaxLength(unsigned n, bool exact);

    // Inserts count values before position; a position past the end appends. The values
    // may come from this array itself: they are inserted as they were before the call.
    void insert(void* const* values, unsigned count, unsigned position);

    // Removes the positions from up to, not including, to. A to past the end or below
    // from erases to the end. Shrinks the storage when it is at least 4 times the length.
    void erase(unsigned from, unsigned to);

    // Releases the old storage and adopts data (from ZuMalloc), taken as exactly full:
    // capacity and length both become length. The third argument is ignored, deliberately.
    void setData(void** data, unsigned length, unsigned);

    // Appends value.
    void add(void* value) { insert(&value, 1, _length); }
    // The value at i, or null past the end.
    void* operator[](unsigned i) const { return i < _length ? _data[i] : nullptr; }
    // Stores value at i; false (nothing stored) past the end.
    bool set(unsigned i, void* value);

    unsigned getLength() const { return _length; }
    unsigned getMaxLength() const { return _maxLength; }
    void** getData() const { return _data; }

    void** _data;        // the values (ZuMalloc/ZuRealloc/ZuFree); null when capacity is 0
    uint32_t _maxLength; // capacity
    uint32_t _length;    // number of values
};

class ZU_API ZuBitArray {
public:
    // length bits, all set (value true) or all clear.
    ZuBitArray(unsigned length, bool value);
    // Same length and bits as other.
    ZuBitArray(const ZuBitArray& other);
    // Takes other's length and bits.
    ZuBitArray& operator=(const ZuBitArray& other);
    // Releases the bytes with ZuFree.
    virtual ~ZuBitArray();

    // Bit i; false when i is greater than the length.
    // The index equal to the length is accepted, deliberately: it reads the bit just
    // past the last one (one spare byte is always allocated, so it stays in bounds).
    bool isSet(unsigned i) const;
    // Sets bit i to value; nothing when i is greater than the length (equal is accepted).
    void set(unsigned i, bool value);
    // Flips bit i; nothing when i is greater than the length (equal is accepted).
    void invert(unsigned i);

    // Grows to length bits, the added bytes all ones (value true) or 0. Does nothing
    // at all, not even change the length, unless the byte count grows: the array never
    // shrinks, deliberately, and bits added inside the last byte keep their contents.
    void setLength(unsigned length, bool value);

    unsigned getLength() const { return _length; }

    uint32_t _length;      // number of bits
    unsigned char* _bits;  // (_length + 7) / 8 bytes plus one spare; bit i is bit i % 8 of byte i / 8
};

#endif
