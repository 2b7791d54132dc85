#ifndef ZU_ALLOC_H
#define ZU_ALLOC_H

// Raw allocation entry points of the library, and ZuMemoryManager, a process-wide
// server of small fixed-size cells (8 to 64 bytes, in steps of 8) carved from large
// chunks and recycled through per-size free lists. The manager is off unless the
// environment variable ZU_MEMORYMANAGER is "true" or "yes" (any case); when off, every
// request goes straight to ZuMalloc/ZuFree. Nothing here is thread-safe: callers
// serialise their allocations.

#include <zu/export.h>

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <iosfwd>

// malloc(size).
ZU_API void* ZuMalloc(size_t size);
// free(p).
ZU_API void ZuFree(void* p);
// realloc(p, size).
ZU_API void* ZuRealloc(void* p, size_t size);
// memmove(to, from, n); returns to. A count of 0 touches no memory at all.
ZU_API void* ZuMemMove(void* to, const void* from, size_t n);

// Statistics switch of the memory manager, read from ZU_TRACEMEMORYMANAGER.
class ZU_API ZuMemoryManagerStats {
public:
    // The trace mode, read from the environment on the first call only:
    // "true"/"yes" give 3 (statistics plus a report on standard error after every
    // counted event), "update" gives 1 (statistics kept silently), anything else 0.
    static unsigned int GetTraceMode();

    // The mode in force; set by the manager's constructor from GetTraceMode(). A mode
    // set here later takes effect at the next alloc or release.
    static unsigned int Trace;
};

// Small-cell memory manager. Cells carry no header: release must be given the size
// passed to alloc. Chunks grow geometrically (4096, 8192, ... bytes) and are never
// returned to the system; cells only move between the chunks and the free lists.
class ZU_API ZuMemoryManager {
public:
    // The one manager, created on first call; it stays usable until the process ends
    // (also from static destructors).
    static inline ZuMemoryManager* GetInstance();

    // A block of at least size bytes, aligned on 8 bytes; null when a new chunk cannot
    // be had. 65 bytes or more come from ZuMalloc. A size of 0 is served as 8 bytes.
    // ZU_MEMORYMANAGER is read by the first alloc or release of the process.
    inline void* alloc(size_t size);

    // Gives back a block from alloc; size must be the size given to alloc. Null p does
    // nothing.
    inline void release(void* p, size_t size);

    // Writes the three-line report of allocated (chunk) and used (cell) bytes.
    void status(std::ostream& os) const;

    ZuMemoryManager(const ZuMemoryManager&) = delete;
    ZuMemoryManager& operator=(const ZuMemoryManager&) = delete;

private:
    ZuMemoryManager();

    // Builds the manager (a function-local static) and records it in _instance.
    static ZuMemoryManager* CreateInstance();
    static ZuMemoryManager* _instance;

    // Everything but the common case of a cell with statistics off.
    void* allocSlow(size_t size);
    void releaseSlow(void* p, size_t size);
    // A cell class (1 to 64 bytes), statistics off and the manager switched on.
    inline bool inlinePath(size_t size) const;
    void* carve(size_t rounded);
    bool outstandingCells() const;

    // Returns the chunks at process exit when no cell is outstanding, and switches the
    // manager off so that any later request goes to ZuMalloc/ZuFree.
    struct ExitHook {
        ~ExitHook();
    };
    static ExitHook _exitHook;

    void* _freeLists[9];      // head k: free cells of 8 * (k + 1) bytes; the ninth is unused
    char* _current;           // first unused byte of the current chunk
    char* _end;               // just past the current chunk
    uint32_t _chunkSize;      // size of the current chunk
    uint64_t _allocated;      // bytes obtained for chunks (statistics)
    uint64_t _used;           // bytes handed out in cells (statistics)
    uint32_t _requested;      // running sum of sizes asked of alloc (statistics)
    int32_t _requestedNow;    // second running sum of the same sizes (statistics)
    int32_t _requestedPeak;   // greatest _requestedNow (statistics)

    // Every chunk's start and size, so that chunks stay reachable and can be returned
    // at process exit when no cell is outstanding.
    static const unsigned MaxChunks = 64;
    void* _chunks[MaxChunks];
    uint32_t _chunkSizes[MaxChunks];
    unsigned _chunkCount;
    bool _fastPath;           // switch settled and on: inline paths serve when Trace is 0
};

// The common cases are inline so that a cell costs no call: a cell taken from a free
// list or from the current chunk, and a cell given back, with statistics off.

inline ZuMemoryManager* ZuMemoryManager::GetInstance() {
    return _instance ? _instance : CreateInstance();
}

inline bool ZuMemoryManager::inlinePath(size_t size) const {
    // One test for the size and the trace mode: any mode bit lands far above 63. size - 1
    // wraps for 0, which takes the slow path (served as 8 bytes there).
    const size_t key = (size - 1) | size_t(ZuMemoryManagerStats::Trace) << 32;
    return __builtin_expect(key < 64 && _fastPath, 1);
}

inline void* ZuMemoryManager::alloc(size_t size) {
    if (inlinePath(size)) {
        const size_t k = (size - 1) >> 3;
        void* cell = _freeLists[k];
        if (__builtin_expect(cell != nullptr, 1)) {
            void* next;
            std::memcpy(&next, cell, sizeof next); // a free cell links the next one
            _freeLists[k] = next;
            __builtin_prefetch(next); // the next pop of this class reads it
            return cell;
        }
        const size_t rounded = (k + 1) * 8;
        if (static_cast<size_t>(_end - _current) >= rounded) {
            cell = _current;
            _current += rounded;
            return cell;
        }
    }
    return allocSlow(size);
}

inline void ZuMemoryManager::release(void* p, size_t size) {
    if (inlinePath(size) && p) {
        void*& head = _freeLists[(size - 1) >> 3];
        std::memcpy(p, &head, sizeof head);
        head = p;
        return;
    }
    releaseSlow(p, size);
}

#endif
