// Memory for node objects: small fixed-size cells carved from 64 KB chunks, one free
// list per size (multiples of 8 up to 128 bytes), so that the many small nodes of a
// parsed tree cost neither a malloc header nor a malloc call each. When the last node
// of a size is deleted, all chunks of that size but one go back to the system. Sanitizer builds use malloc
// directly, so that node misuse stays visible to them.
#include <zu/xml.h>

#include <cstdlib>
#include <new>

#if defined(__SANITIZE_ADDRESS__)
#define ZU_XML_PLAIN_NODE_MEMORY 1
#elif defined(__has_feature)
#if __has_feature(address_sanitizer)
#define ZU_XML_PLAIN_NODE_MEMORY 1
#endif
#endif

namespace {

#ifndef ZU_XML_PLAIN_NODE_MEMORY

const size_t Step = 8;
const size_t Largest = 128;
const size_t ChunkBytes = 64 * 1024;

struct Chunk {
    Chunk* next;
    alignas(16) unsigned char cells[ChunkBytes - 16];
};

struct SizeClass {
    void* free;             // freed cells, linked through their first word
    unsigned char* current; // next uncarved byte of the newest chunk
    unsigned char* end;     // end of the newest chunk
    Chunk* chunks;
    size_t live;            // cells handed out and not yet returned
};

SizeClass Classes[Largest / Step];

size_t classOf(size_t size) { return size == 0 ? 0 : (size - 1) / Step; }

void* take(size_t size) {
    SizeClass& c = Classes[classOf(size)];
    const size_t cell = (classOf(size) + 1) * Step;
    void* p = c.free;
    if (p) {
        c.free = *static_cast<void**>(p);
    } else {
        if (!c.current || c.current + cell > c.end) {
            Chunk* chunk = static_cast<Chunk*>(std::malloc(sizeof(Chunk)));
            if (!chunk)
                return nullptr;
            chunk->next = c.chunks;
            c.chunks = chunk;
            c.current = chunk->cells;
            c.end = chunk->cells + sizeof chunk->cells;
        }
        p = c.current;
        c.current += cell;
    }
    ++c.live;
    return p;
}

void give(void* p, size_t size) {
    SizeClass& c = Classes[classOf(size)];
    *static_cast<void**>(p) = c.free;
    c.free = p;
    if (--c.live != 0)
        return;
    // The newest chunk is kept for the next tree, the others go back.
    Chunk* kept = c.chunks;
    while (Chunk* chunk = kept->next) {
        kept->next = chunk->next;
        std::free(chunk);
    }
    c.free = nullptr;
    c.current = kept->cells;
    c.end = kept->cells + sizeof kept->cells;
}

#endif

} // namespace

void* ZuXmlNodeI::operator new(size_t size) noexcept {
#ifndef ZU_XML_PLAIN_NODE_MEMORY
    if (size <= Largest)
        return take(size);
#endif
    return std::malloc(size);
}

void* ZuXmlNodeI::operator new(size_t size, const std::nothrow_t&) noexcept {
    return operator new(size);
}

void ZuXmlNodeI::operator delete(void* p, size_t size) {
    if (!p)
        return;
#ifndef ZU_XML_PLAIN_NODE_MEMORY
    if (size <= Largest) {
        give(p, size);
        return;
    }
#endif
    (void)size;
    std::free(p);
}
