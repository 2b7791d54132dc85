#ifndef ZU_HASH_H
#define ZU_HASH_H

// ZuHashTable: maps untyped keys to untyped values by chained hashing. Key comparison
// and hashing are virtual; ZuStringHashTable keys the table by NUL-terminated strings.
// Keys and values are never owned. New entries go to the head of their chain; the
// table grows by about 1.6 to the next number free of small factors, up to 9239
// buckets. Entries and buckets come from the small-cell memory manager. Nothing here
// is thread-safe.

#include <zu/export.h>

#include <cstddef>
#include <cstdint>

// One key/value link of a bucket's chain.
class ZU_API ZuEntry {
public:
    ZuEntry(void* key, void* value, ZuEntry* next) : _key(key), _value(value), _next(next) {}

    // Allocation through the memory manager (24 bytes); null when memory runs out.
    static void* operator new(size_t size) noexcept;
    static void operator delete(void* p, size_t size);

    void* _key;
    void* _value;
    ZuEntry* _next;
};

// One chain of the table.
class ZU_API ZuBucket {
public:
    ZuBucket() : _length(0), _entries(nullptr) {}

    // Allocation through the memory manager; arrays carry a leading element count.
    // Null when memory runs out.
    static void* operator new(size_t size) noexcept;
    static void operator delete(void* p, size_t size);
    static void* operator new[](size_t size) noexcept;
    static void operator delete[](void* p, size_t size);

    uint32_t _length;   // entries in the chain
    ZuEntry* _entries;  // first entry or null
};

class ZU_API ZuHashTable {
public:
    // size buckets exactly (no rounding), all empty.
    // A size of 0 is taken as 1, the smallest table that never divides by zero.
    explicit ZuHashTable(unsigned size);
    // empty(), then the bucket array is released.
    virtual ~ZuHashTable();
    ZuHashTable(const ZuHashTable&) = delete;
    ZuHashTable& operator=(const ZuHashTable&) = delete;

    // insert(hash(key), key, value).
    virtual void insert(void* key, void* value);
    // insert(key, value); always true.
    virtual bool replace(void* key, void* value);
    // True when an entry's key matches key.
    virtual bool contains(void* key) const;
    // remove(hash(key), key).
    virtual bool remove(void* key);
    // The value of the first entry whose key matches and, when predicate is not null,
    // for which predicate(value, arg) is true; null when none.
    virtual void* find(void* key, bool (*predicate)(void*, void*), void* arg) const;
    // Pointer equality.
    virtual bool match(void* key1, void* key2) const;
    // The bucket of key: h = ((k >> 16) ^ k) & 0xFFFF of its low 32 bits k, modulo the size.
    virtual unsigned hash(void* key) const;

    // Overwrites the value of a matching entry in bucket (counts unchanged), or puts a
    // new entry at the chain's head. Then grows when the chain is longer than 12 with a
    // load above 2, or when the load is 7 or more; a table of 9239 buckets never grows.
    // A bucket past the size is taken modulo the size.
    void insert(unsigned bucket, void* key, void* value);
    // Unlinks and frees the first matching entry of bucket, then shrinkingRehash();
    // false when absent. A bucket past the size is taken modulo the size.
    bool remove(unsigned bucket, void* key);

    // f(key, value, arg) on every entry, bucket by bucket from 0, each chain from its
    // head. f must not change the table.
    void mapHash(void (*f)(void* key, void* value, void* arg), void* arg) const;
    // The values in mapHash order; count receives the number of entries. Null when the
    // table is empty. heap: array new (the caller deletes it with delete[]); otherwise
    // taken unlocked from ZuPointerPool::_Pool: the caller frees nothing, and the array
    // stays valid only until that pool's next use.
    void** convertToArray(unsigned& count, bool heap) const;

    // Frees every entry and starts again with the same number of empty buckets.
    void empty();
    // Moves every entry (never copied) to a new array of newSize buckets (0 is taken as 1).
    void reHash(unsigned newSize);
    // reHash(GoodPrimeNumber(size * 1.6)).
    void growingReHash();
    // When count / size <= 1 and size <= 16: reHash(GoodPrimeNumber(size * 0.5)).
    // Since that is never below 17, a table made with fewer than 17 buckets becomes 17
    // buckets, deliberately.
    void shrinkingRehash();

    unsigned getSize() const { return _size; }
    unsigned getCount() const { return _count; }

    ZuBucket* _buckets; // array new with a leading element count
    uint32_t _size;     // number of buckets
    uint32_t _count;    // number of entries

protected:
    // _size = size (0 taken as 1), _count 0, a new array of empty buckets.
    void init(unsigned size);

private:
    // Frees every entry and the bucket array (_buckets null).
    void freeAll();
};

// A ZuHashTable keyed by NUL-terminated strings (const char*, not copied).
class ZU_API ZuStringHashTable : public ZuHashTable {
public:
    // size buckets exactly; 0 is taken as 1.
    explicit ZuStringHashTable(unsigned size);
    ~ZuStringHashTable() override;

    // strcmp equality. A null key matches only a null key.
    bool match(void* key1, void* key2) const override;
    // ELF-style string hash modulo the size; bytes above 127 enter sign-extended,
    // deliberately. An empty string (or a null key) gives bucket 0.
    unsigned hash(void* key) const override;

    // The keys in mapHash order, sorted with StringCompare when sort is true; count
    // receives the number of entries; null when empty. Allocation as for convertToArray.
    const char** convertToStrings(unsigned& count, bool sort, bool heap) const;
};

// 17 below 17, 9239 above 9239; otherwise n made odd, then raised by 2 while divisible
// by 3, 5, 7, 11 or 13. Not always prime.
ZU_API unsigned GoodPrimeNumber(unsigned n);
// qsort comparison of two const char* slots: 0 when either string is null, else strcmp.
ZU_API int StringCompare(const void* a, const void* b);
// mapHash callback: stores value at the void** cursor that cursor points to, then
// advances that cursor by one slot.
ZU_API void AddValue(void* key, void* value, void* cursor);
// mapHash callback: stores key at the void** cursor that cursor points to, then
// advances that cursor by one slot.
ZU_API void AddTag(void* key, void* value, void* cursor);

// An interned name kept in the global context's symbol table, with one pointer of user
// data. Symbols are made and registered by Get; the context deletes those still
// registered when it is torn down at exit. Not copyable.
class ZU_API ZuSymbol {
public:
    // The registered symbol named name; when absent, a new one registered under that
    // name if create is true, else null. Null for a null name.
    static ZuSymbol* Get(const char* name, bool create);

    // Copies name (null stays null); data null. Does not register the symbol.
    explicit ZuSymbol(const char* name);
    // Leaves the symbol table when it is the symbol registered under its name, then
    // releases the name.
    ~ZuSymbol();
    ZuSymbol(const ZuSymbol&) = delete;
    ZuSymbol& operator=(const ZuSymbol&) = delete;

    const char* getName() const { return _name; }
    void* getData() const { return _data; }
    void setData(void* data) { _data = data; }

    char* _name;  // owned copy (array new)
    void* _data;  // for the user, never read by the library
};

#endif
