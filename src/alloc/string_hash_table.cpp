// ZuStringHashTable: a hash table keyed by NUL-terminated strings.
#include <zu/hash.h>
#include <zu/pool.h>

#include "hash_keys.h"

#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <new>

int StringCompare(const void* a, const void* b) {
    if (!a || !b)
        return 0;
    const char* left = *static_cast<const char* const*>(a);
    const char* right = *static_cast<const char* const*>(b);
    if (!left || !right)
        return 0;
    return strcmp(left, right);
}

ZuStringHashTable::ZuStringHashTable(unsigned size) : ZuHashTable(size) {}

ZuStringHashTable::~ZuStringHashTable() = default;

bool ZuStringHashTable::match(void* key1, void* key2) const {
    return zu_hash_keys::stringMatch(key1, key2);
}

unsigned ZuStringHashTable::hash(void* key) const {
    return zu_hash_keys::StringKeys::bucket(*this, key);
}

const char** ZuStringHashTable::convertToStrings(unsigned& count, bool sort, bool heap) const {
    count = _count;
    if (_count == 0)
        return nullptr;
    const char** array = heap ? new (std::nothrow) const char*[_count]
                              : static_cast<const char**>(ZuPointerPool::_Pool.alloc(
                                    static_cast<unsigned>(sizeof(char*) * _count), false));
    if (!array) {
        count = 0;
        return nullptr;
    }
    const char** cursor = array;
    mapHash(AddTag, &cursor);
    if (sort)
        qsort(array, _count, sizeof(const char*), StringCompare);
    return array;
}
