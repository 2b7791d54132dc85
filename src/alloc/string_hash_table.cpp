// ZuStringHashTable: a hash table keyed by NUL-terminated strings.
#include <zu/hash.h>
#include <zu/pool.h>

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
    if (!key1 || !key2)
        return key1 == key2;
    return strcmp(static_cast<const char*>(key1), static_cast<const char*>(key2)) == 0;
}

unsigned ZuStringHashTable::hash(void* key) const {
    uint32_t h = 0;
    if (key) {
        for (const char* p = static_cast<const char*>(key); *p; ++p) {
            // Each byte enters as a signed char: above 127 it is sign-extended.
            int32_t c = static_cast<signed char>(*p);
            h = (h << 4) + static_cast<uint32_t>(c);
            uint32_t g = h & 0xF0000000u;
            if (g != 0)
                h = (h ^ g) ^ (g >> 24);
        }
    }
    return h % _size;
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
