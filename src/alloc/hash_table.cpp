// ZuHashTable: chained hashing of untyped keys, its entries and buckets.
#include <zu/alloc.h>
#include <zu/hash.h>
#include <zu/pool.h>

#include "hash_keys.h"

#include <cstdint>
#include <new>
#include <typeinfo>

static_assert(sizeof(ZuEntry) == 24, "entries are 24-byte manager cells");

namespace {

// A table never grows past this many buckets.
const unsigned MaxBuckets = 9239;

using zu_hash_keys::PointerKeys;
using zu_hash_keys::StringKeys;
using zu_hash_keys::VirtualKeys;

enum class KeyKind { Pointer, String, Virtual };

// The exact dynamic type decides whether hash and match are known. Type identity is
// checked by address: a miss only costs the virtual path, never a wrong answer.
KeyKind kindOf(const ZuHashTable& t) {
    const std::type_info* type = &typeid(t);
    if (type == &typeid(ZuHashTable))
        return KeyKind::Pointer;
    if (type == &typeid(ZuStringHashTable))
        return KeyKind::String;
    return KeyKind::Virtual;
}

// The first entry of bucket whose key matches and, with a predicate, whose value passes.
template <typename Keys>
ZuEntry* findEntry(const ZuHashTable& t, unsigned bucket, void* key,
                   bool (*predicate)(void*, void*), void* arg) {
    for (ZuEntry* e = t._buckets[bucket]._entries; e; e = e->_next)
        if (Keys::match(t, e->_key, key) && (!predicate || predicate(e->_value, arg)))
            return e;
    return nullptr;
}

template <typename Keys>
ZuEntry* lookUp(const ZuHashTable& t, void* key, bool (*predicate)(void*, void*), void* arg) {
    return findEntry<Keys>(t, Keys::bucket(t, key), key, predicate, arg);
}

ZuEntry* lookUp(const ZuHashTable& t, void* key, bool (*predicate)(void*, void*), void* arg) {
    switch (kindOf(t)) {
    case KeyKind::Pointer:
        return lookUp<PointerKeys>(t, key, predicate, arg);
    case KeyKind::String:
        return lookUp<StringKeys>(t, key, predicate, arg);
    default:
        return lookUp<VirtualKeys>(t, key, predicate, arg);
    }
}

ZuEntry* findInBucket(const ZuHashTable& t, unsigned bucket, void* key) {
    switch (kindOf(t)) {
    case KeyKind::Pointer:
        return findEntry<PointerKeys>(t, bucket, key, nullptr, nullptr);
    case KeyKind::String:
        return findEntry<StringKeys>(t, bucket, key, nullptr, nullptr);
    default:
        return findEntry<VirtualKeys>(t, bucket, key, nullptr, nullptr);
    }
}

unsigned bucketOf(const ZuHashTable& t, void* key) {
    switch (kindOf(t)) {
    case KeyKind::Pointer:
        return PointerKeys::bucket(t, key);
    case KeyKind::String:
        return StringKeys::bucket(t, key);
    default:
        return VirtualKeys::bucket(t, key);
    }
}

// Moves every entry of old (oldSize buckets) to the head of its bucket in t.
template <typename Keys>
void moveEntries(ZuHashTable& t, ZuBucket* old, unsigned oldSize) {
    for (unsigned b = 0; b < oldSize; ++b) {
        for (ZuEntry* e = old[b]._entries; e;) {
            ZuEntry* next = e->_next;
            ZuBucket& to = t._buckets[Keys::bucket(t, e->_key)];
            e->_next = to._entries;
            to._entries = e;
            ++to._length;
            e = next;
        }
    }
}

} // namespace

// ---- entries and buckets -------------------------------------------------------------

void* ZuEntry::operator new(size_t size) noexcept { return ZuMemoryManager::GetInstance()->alloc(size); }

void ZuEntry::operator delete(void* p, size_t size) { ZuMemoryManager::GetInstance()->release(p, size); }

void* ZuBucket::operator new(size_t size) noexcept { return ZuMemoryManager::GetInstance()->alloc(size); }

void ZuBucket::operator delete(void* p, size_t size) { ZuMemoryManager::GetInstance()->release(p, size); }

void* ZuBucket::operator new[](size_t size) noexcept { return ZuMemoryManager::GetInstance()->alloc(size); }

void ZuBucket::operator delete[](void* p, size_t size) {
    ZuMemoryManager::GetInstance()->release(p, size);
}

// ---- global helpers ------------------------------------------------------------------

unsigned GoodPrimeNumber(unsigned n) {
    if (n < 17)
        return 17;
    if (n > MaxBuckets)
        return MaxBuckets;
    if (n % 2 == 0)
        ++n;
    while (n % 3 == 0 || n % 5 == 0 || n % 7 == 0 || n % 11 == 0 || n % 13 == 0)
        n += 2;
    return n;
}

void AddValue(void*, void* value, void* cursor) {
    void*** slot = static_cast<void***>(cursor);
    *(*slot)++ = value;
}

void AddTag(void* key, void*, void* cursor) {
    void*** slot = static_cast<void***>(cursor);
    *(*slot)++ = key;
}

// ---- ZuHashTable ---------------------------------------------------------------------

ZuHashTable::ZuHashTable(unsigned size) : _buckets(nullptr), _size(0), _count(0) { init(size); }

ZuHashTable::~ZuHashTable() { freeAll(); }

void ZuHashTable::init(unsigned size) {
    _size = size ? size : 1;
    _count = 0;
    // Null only when memory is exhausted; every operation then finds an empty table.
    _buckets = new ZuBucket[_size];
}

void ZuHashTable::freeAll() {
    if (_buckets) {
        for (unsigned b = 0; b < _size; ++b) {
            for (ZuEntry* e = _buckets[b]._entries; e;) {
                ZuEntry* next = e->_next;
                delete e;
                e = next;
            }
        }
    }
    delete[] _buckets;
    _buckets = nullptr;
    _count = 0;
}

void ZuHashTable::empty() {
    unsigned size = _size;
    freeAll();
    init(size);
}

unsigned ZuHashTable::hash(void* key) const { return PointerKeys::bucket(*this, key); }

bool ZuHashTable::match(void* key1, void* key2) const { return key1 == key2; }

void ZuHashTable::insert(void* key, void* value) {
    if (_buckets)
        insert(bucketOf(*this, key), key, value);
}

void ZuHashTable::insert(unsigned bucket, void* key, void* value) {
    if (!_buckets)
        return;
    bucket %= _size;
    if (ZuEntry* existing = findInBucket(*this, bucket, key)) {
        existing->_value = value;
        return;
    }
    ZuBucket& b = _buckets[bucket];
    ZuEntry* entry = new ZuEntry(key, value, b._entries);
    if (!entry)
        return;
    b._entries = entry;
    ++b._length;
    ++_count;
    if (_size == MaxBuckets)
        return;
    unsigned load = _count / _size;
    if ((b._length > 12 && load > 2) || load >= 7)
        growingReHash();
}

bool ZuHashTable::replace(void* key, void* value) {
    insert(key, value);
    return true;
}

bool ZuHashTable::contains(void* key) const {
    return _buckets && lookUp(*this, key, nullptr, nullptr);
}

bool ZuHashTable::remove(void* key) { return _buckets && remove(bucketOf(*this, key), key); }

bool ZuHashTable::remove(unsigned bucket, void* key) {
    if (!_buckets)
        return false;
    bucket %= _size;
    ZuEntry* e = findInBucket(*this, bucket, key);
    if (!e)
        return false;
    ZuBucket& b = _buckets[bucket];
    ZuEntry** link = &b._entries;
    while (*link != e)
        link = &(*link)->_next;
    *link = e->_next;
    delete e;
    --b._length;
    --_count;
    shrinkingRehash();
    return true;
}

void* ZuHashTable::find(void* key, bool (*predicate)(void*, void*), void* arg) const {
    ZuEntry* e = _buckets ? lookUp(*this, key, predicate, arg) : nullptr;
    return e ? e->_value : nullptr;
}

void ZuHashTable::mapHash(void (*f)(void*, void*, void*), void* arg) const {
    if (!f || !_buckets)
        return;
    for (unsigned b = 0; b < _size; ++b)
        for (ZuEntry* e = _buckets[b]._entries; e; e = e->_next)
            f(e->_key, e->_value, arg);
}

void** ZuHashTable::convertToArray(unsigned& count, bool heap) const {
    count = _count;
    if (_count == 0)
        return nullptr;
    void** array = heap ? new (std::nothrow) void*[_count]
                        : static_cast<void**>(ZuPointerPool::_Pool.alloc(
                              static_cast<unsigned>(sizeof(void*) * _count), false));
    if (!array) {
        count = 0;
        return nullptr;
    }
    void** cursor = array;
    mapHash(AddValue, &cursor);
    return array;
}

void ZuHashTable::reHash(unsigned newSize) {
    if (newSize == 0)
        newSize = 1;
    ZuBucket* fresh = new ZuBucket[newSize];
    if (!fresh)
        return; // out of memory: the table keeps its buckets
    ZuBucket* old = _buckets;
    unsigned oldSize = old ? _size : 0;
    _size = newSize;
    _buckets = fresh;
    switch (kindOf(*this)) {
    case KeyKind::Pointer:
        moveEntries<PointerKeys>(*this, old, oldSize);
        break;
    case KeyKind::String:
        moveEntries<StringKeys>(*this, old, oldSize);
        break;
    default:
        moveEntries<VirtualKeys>(*this, old, oldSize);
        break;
    }
    delete[] old;
}

void ZuHashTable::growingReHash() {
    float size = static_cast<float>(_size);
    reHash(GoodPrimeNumber(static_cast<unsigned>(static_cast<double>(size) * 1.6)));
}

void ZuHashTable::shrinkingRehash() {
    if (_count / _size <= 1 && _size <= 16)
        reHash(GoodPrimeNumber(static_cast<unsigned>(_size * 0.5)));
}
