// ZuHashTable: chained hashing of untyped keys, its entries and buckets.
#include <zu/alloc.h>
#include <zu/hash.h>
#include <zu/pool.h>

#include <cstdint>
#include <new>

static_assert(sizeof(ZuEntry) == 24, "entries are 24-byte manager cells");

namespace {

// A table never grows past this many buckets.
const unsigned MaxBuckets = 9239;

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

unsigned ZuHashTable::hash(void* key) const {
    uint32_t k = static_cast<uint32_t>(reinterpret_cast<uintptr_t>(key));
    uint32_t h = ((k >> 16) ^ k) & 0xFFFF;
    return h % _size;
}

bool ZuHashTable::match(void* key1, void* key2) const { return key1 == key2; }

void ZuHashTable::insert(void* key, void* value) { insert(hash(key), key, value); }

void ZuHashTable::insert(unsigned bucket, void* key, void* value) {
    if (!_buckets)
        return;
    ZuBucket& b = _buckets[bucket % _size];
    for (ZuEntry* e = b._entries; e; e = e->_next) {
        if (match(e->_key, key)) {
            e->_value = value;
            return;
        }
    }
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
    if (!_buckets)
        return false;
    for (ZuEntry* e = _buckets[hash(key)]._entries; e; e = e->_next)
        if (match(e->_key, key))
            return true;
    return false;
}

bool ZuHashTable::remove(void* key) { return remove(hash(key), key); }

bool ZuHashTable::remove(unsigned bucket, void* key) {
    if (!_buckets)
        return false;
    ZuBucket& b = _buckets[bucket % _size];
    for (ZuEntry** link = &b._entries; *link; link = &(*link)->_next) {
        ZuEntry* e = *link;
        if (!match(e->_key, key))
            continue;
        *link = e->_next;
        delete e;
        --b._length;
        --_count;
        shrinkingRehash();
        return true;
    }
    return false;
}

void* ZuHashTable::find(void* key, bool (*predicate)(void*, void*), void* arg) const {
    if (!_buckets)
        return nullptr;
    for (ZuEntry* e = _buckets[hash(key)]._entries; e; e = e->_next)
        if (match(e->_key, key) && (!predicate || predicate(e->_value, arg)))
            return e->_value;
    return nullptr;
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
    unsigned oldSize = _size;
    _size = newSize;
    _buckets = fresh;
    for (unsigned b = 0; b < oldSize; ++b) {
        for (ZuEntry* e = old[b]._entries; e;) {
            ZuEntry* next = e->_next;
            ZuBucket& to = _buckets[hash(e->_key)];
            e->_next = to._entries;
            to._entries = e;
            ++to._length;
            e = next;
        }
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
