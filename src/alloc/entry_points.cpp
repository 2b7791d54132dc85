// The library's raw allocation entry points: thin wrappers over the C library, so
// that every raw allocation of the library goes through one place.
#include <zu/alloc.h>

#include <cstdlib>
#include <cstring>

void* ZuMalloc(size_t size) { return std::malloc(size); }

void ZuFree(void* p) { std::free(p); }

void* ZuRealloc(void* p, size_t size) { return std::realloc(p, size); }

void* ZuMemMove(void* to, const void* from, size_t n) {
    // A zero count must not touch memory: either pointer may then be null.
    if (n != 0)
        std::memmove(to, from, n);
    return to;
}
