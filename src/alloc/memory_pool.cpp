// Memory pool: a chain of reusable scratch buffers, and the three process-wide pools.
#include <zu/pool.h>

#include <zu/alloc.h>

#include <new>
#include <ostream>

namespace {

const unsigned FirstCapacity = 64;
// Largest capacity a 32-bit size can hold; larger requests fail instead of looping.
const unsigned LargestCapacity = 0x80000000u;

// Capacity for size bytes: start from capacity (64 when 0), doubled while less than
// size. 0 when size is beyond LargestCapacity.
unsigned capacityFor(unsigned capacity, unsigned size) {
    if (size > LargestCapacity)
        return 0;
    if (capacity == 0)
        capacity = FirstCapacity;
    while (capacity < size)
        capacity *= 2;
    return capacity;
}

inline ZuMemoryPool::Block* asBlock(void* block) {
    return static_cast<ZuMemoryPool::Block*>(block);
}

} // namespace

// Constant-initialised (constexpr constructor): usable from any static initialiser.
// Their destructors run when the library's static objects are destroyed at exit,
// after those of every program and library linked against it.
ZuMemoryPool ZuCharPool::_Pool(1);
ZuMemoryPool ZuPointerPool::_Pool(8);
ZuMemoryPool ZuZuUIntPool::_Pool(4);

ZuMemoryPool::Block::Block(unsigned size, Block* next)
    : _data(nullptr), _locks(0), _size(capacityFor(FirstCapacity, size)), _next(next) {
    if (_size != 0)
        _data = ZuMalloc(_size);
    if (!_data)
        _size = 0;
}

void* ZuMemoryPool::Block::reAlloc(unsigned size, bool lock) {
    if (lock)
        ++_locks;
    if (_size > size)
        return _data;
    // A request equal to the capacity reallocates as well (same capacity).
    const unsigned capacity = capacityFor(_size, size);
    void* data = capacity ? ZuMalloc(capacity) : nullptr;
    if (!data)
        return nullptr;
    ZuMemMove(data, _data, _size);
    ZuFree(_data);
    _data = data;
    _size = capacity;
    return _data;
}

ZuMemoryPool::~ZuMemoryPool() { free(); }

void* ZuMemoryPool::take(void*& block, unsigned size, bool lock) {
    Block* candidate = nullptr;
    for (Block* b = _blocks; b; b = b->_next) {
        if (b->_locks != 0)
            continue;
        if (b->_size >= size) {
            block = b;
            if (lock)
                ++b->_locks;
            return b->_data;
        }
        // The largest too-small block; among equals the later one.
        if (!candidate || b->_size >= candidate->_size)
            candidate = b;
    }
    if (candidate) {
        block = candidate;
        return candidate->reAlloc(size, lock);
    }
    Block* b = new (std::nothrow) Block(size, _blocks);
    block = b;
    if (!b)
        return nullptr;
    _blocks = b;
    if (lock)
        ++b->_locks;
    return b->_data;
}

void* ZuMemoryPool::alloc(unsigned size, bool lock) {
    void* block = nullptr;
    return take(block, size, lock);
}

void* ZuMemoryPool::reAlloc(void* data, unsigned size, bool lock) {
    if (!data)
        return alloc(size, lock);
    Block* b = find(data);
    return b ? b->reAlloc(size, lock) : nullptr;
}

void* ZuMemoryPool::grow(void* block, unsigned size, bool lock) {
    return block ? asBlock(block)->reAlloc(size, lock) : nullptr;
}

ZuMemoryPool::Block* ZuMemoryPool::find(void* data) const {
    if (!data)
        return nullptr; // failed blocks have a null buffer; they are no one's data
    for (Block* b = _blocks; b; b = b->_next)
        if (b->_data == data)
            return b;
    return nullptr;
}

void* ZuMemoryPool::lock(void* data) const {
    Block* b = find(data);
    if (!b)
        return nullptr;
    ++b->_locks;
    return data;
}

void* ZuMemoryPool::unLock(void* data) const {
    Block* b = find(data);
    if (!b)
        return nullptr;
    if (b->_locks)
        --b->_locks;
    return data;
}

ZuMemoryPool::Block* ZuMemoryPool::getBlock(void* data) const {
    Block* b = find(data);
    if (b)
        ++b->_locks;
    return b;
}

void* ZuMemoryPool::getData(void* block) const { return block ? asBlock(block)->_data : nullptr; }

void* ZuMemoryPool::release(void* block) {
    if (!block)
        return nullptr;
    Block* b = asBlock(block);
    if (b->_locks)
        --b->_locks;
    return b->_data;
}

void ZuMemoryPool::free() {
    Block* b = _blocks;
    _blocks = nullptr;
    while (b) {
        Block* next = b->_next;
        ZuFree(b->_data);
        delete b;
        b = next;
    }
}

void ZuMemoryPool::printInformation(std::ostream& os, const char* name,
                                    unsigned short verbose) const {
    unsigned count = 0;
    for (const Block* b = _blocks; b; b = b->_next)
        ++count;
    os << "--  ZuPoolOf(" << (name ? name : "") << ")  --";
    if (verbose) {
        os << "\n#" << count << "\tAddress\t\tSize\t\tLocks\n";
        for (const Block* b = _blocks; b; b = b->_next)
            os << '\t' << static_cast<const void*>(b->_data) << "\t\t" << b->_size << "\t\t"
               << b->_locks << '\n';
    } else {
        os << '\t' << count << " Blocks\n";
    }
    os.flush();
}
