#ifndef ZU_POOL_H
#define ZU_POOL_H

// ZuMemoryPool: a chain of reusable scratch buffers (Blocks). A caller takes a buffer
// of at least a given size, optionally locking it (a use count, not a thread lock) so
// that nobody else is handed it, and unlocks it when done; the buffer then stays in
// the pool for the next request. Buffers are freed only when the whole pool is.
// Three process-wide pools exist: ZuCharPool::_Pool, ZuPointerPool::_Pool and
// ZuZuUIntPool::_Pool. What a pool hands out unlocked is valid only until that pool's
// next use. Nothing here is thread-safe.

#include <zu/export.h>

#include <iosfwd>

class ZU_API ZuMemoryPool {
public:
    // One buffer of the chain.
    class ZU_API Block {
    public:
        // Capacity 64, doubled while less than size; buffer from ZuMalloc. When that
        // fails (or size is above 2^31) the capacity is 0 and the buffer null.
        Block(unsigned size, Block* next);

        // Increments the lock count first when lock is true. Returns the buffer as it is
        // when the capacity is greater than size; otherwise doubles the capacity while
        // less than size, moves the old bytes to a new buffer and frees the old one.
        // A request equal to the capacity also reallocates (same size), deliberately.
        // Null, with the block unchanged, when the new buffer cannot be had.
        void* reAlloc(unsigned size, bool lock);

        void* _data;     // the buffer (ZuMalloc/ZuFree)
        unsigned _locks; // lock count; 0 means free to be handed out
        unsigned _size;  // capacity in bytes: 64 times a power of two, or 0
        Block* _next;    // next block of the chain
    };

    // An empty pool; the element size is recorded only (operations take byte counts).
    // Constant-initialised when used for a static object, so such a pool is usable
    // from any static initialiser.
    constexpr explicit ZuMemoryPool(unsigned elementSize = 1) noexcept
        : _elementSize(elementSize), _blocks(nullptr) {}
    // free().
    ~ZuMemoryPool();
    ZuMemoryPool(const ZuMemoryPool&) = delete;
    ZuMemoryPool& operator=(const ZuMemoryPool&) = delete;

    // A buffer of at least size bytes; its Block is stored through block. First fit
    // among unlocked blocks in chain order; else the largest unlocked block (the later
    // one among equals) is grown; else a new block goes to the head of the chain.
    // The block is locked once when lock is true, even when null is returned because
    // it could not grow; block is null only when no block could be made.
    void* take(void*& block, unsigned size, bool lock);
    // take without returning the block.
    void* alloc(unsigned size, bool lock);
    // alloc(size, lock) for null data; else grows data's block. Null when data is not
    // in the pool.
    void* reAlloc(void* data, unsigned size, bool lock);
    // Block::reAlloc on block (a Block of this pool); null for a null block.
    void* grow(void* block, unsigned size, bool lock);
    // The block whose buffer is data, or null.
    Block* find(void* data) const;
    // Increments the lock count of data's block; returns data, or null when not found.
    void* lock(void* data) const;
    // Decrements the lock count of data's block (never below 0); returns data, or null
    // when not found.
    void* unLock(void* data) const;
    // The block of data with its lock count incremented; null when not found.
    Block* getBlock(void* data) const;
    // The block's buffer; null for a null block.
    void* getData(void* block) const;
    // Decrements the block's lock count (never below 0) and returns its buffer; null
    // for a null block.
    void* release(void* block);
    // Frees every buffer and every block; the chain becomes empty and the pool stays
    // usable.
    void free();

    // Writes "--  ZuPoolOf(name)  --" then, verbose, the block count and one line per
    // block (address, capacity, lock count), or else a tab, the count and " Blocks";
    // flushes the stream.
    void printInformation(std::ostream& os, const char* name, unsigned short verbose) const;

    unsigned _elementSize; // element size in bytes (not consulted by the operations)
    Block* _blocks;        // head of the chain; new blocks go to the head
};

// The process-wide byte pool (element size 1); scratch for UTF conversion and others.
class ZU_API ZuCharPool {
public:
    // Constant-initialised, freed when the library is unloaded at process exit.
    static ZuMemoryPool _Pool;
};

// The process-wide pointer pool (element size 8).
class ZU_API ZuPointerPool {
public:
    // Constant-initialised, freed when the library is unloaded at process exit.
    static ZuMemoryPool _Pool;
};

// The process-wide 32-bit unsigned pool (element size 4).
class ZU_API ZuZuUIntPool {
public:
    // Constant-initialised, freed when the library is unloaded at process exit.
    static ZuMemoryPool _Pool;
};

#endif
