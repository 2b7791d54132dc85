// Key policies of the hash tables, shared by ZuHashTable and ZuStringHashTable.
// The table operations are written once as templates over a policy; a table whose
// dynamic type is exactly ZuHashTable or ZuStringHashTable uses the inline policy of
// that class, any other subclass goes through its virtual hash and match.
#ifndef ZU_SRC_ALLOC_HASH_KEYS_H
#define ZU_SRC_ALLOC_HASH_KEYS_H

#include <zu/hash.h>

#include <cstdint>
#include <cstring>

namespace zu_hash_keys {

// Pointer hash before the modulo: the low 32 bits folded onto 16.
inline uint32_t pointerHash(void* key) {
    uint32_t k = static_cast<uint32_t>(reinterpret_cast<uintptr_t>(key));
    return ((k >> 16) ^ k) & 0xFFFF;
}

// ELF-style string hash before the modulo; each byte enters as a signed char, so bytes
// above 127 are sign-extended. A null key hashes as the empty string.
inline uint32_t stringHash(const char* s) {
    uint32_t h = 0;
    if (!s)
        return h;
    for (; *s; ++s) {
        h = (h << 4) + static_cast<uint32_t>(static_cast<int32_t>(static_cast<signed char>(*s)));
        uint32_t g = h & 0xF0000000u;
        if (g != 0)
            h = (h ^ g) ^ (g >> 24);
    }
    return h;
}

// strcmp equality; a null key matches only a null key.
inline bool stringMatch(void* a, void* b) {
    if (a == b)
        return true;
    if (!a || !b)
        return false;
    const char* x = static_cast<const char*>(a);
    const char* y = static_cast<const char*>(b);
    return *x == *y && strcmp(x, y) == 0; // most mismatches end at the first byte
}

struct PointerKeys {
    static unsigned bucket(const ZuHashTable& t, void* key) { return pointerHash(key) % t._size; }
    static bool match(const ZuHashTable&, void* a, void* b) { return a == b; }
};

struct StringKeys {
    static unsigned bucket(const ZuHashTable& t, void* key) {
        return stringHash(static_cast<const char*>(key)) % t._size;
    }
    static bool match(const ZuHashTable&, void* a, void* b) { return stringMatch(a, b); }
};

struct VirtualKeys {
    static unsigned bucket(const ZuHashTable& t, void* key) { return t.hash(key) % t._size; }
    static bool match(const ZuHashTable& t, void* a, void* b) { return t.match(a, b); }
};

} // namespace zu_hash_keys

#endif
