// Small-cell memory manager: cells of 8 to 64 bytes carved from geometrically growing
// chunks and recycled through nine per-size free lists (the ninth is never used).
// Single-threaded by design: nothing is locked, callers serialise their allocations.
#include <zu/alloc.h>

// The manager's two invariant checks stay in release builds: they call the C
// library's assertion failure directly, which <assert.h> only declares without NDEBUG.
#undef NDEBUG
#include <assert.h>
#include <strings.h>

#include <cstdlib>
#include <cstring>
#include <iostream>
#include <string>

unsigned int ZuMemoryManagerStats::Trace = 0;

namespace {

// Mode bits: statistics kept (1), report written after every counted event (2).
const unsigned StatsBit = 1;
const unsigned ReportBit = 2;
const uint32_t FirstChunkSize = 4096;
const size_t LargestCell = 64;

// Settled by the first alloc or release of the process, from ZU_MEMORYMANAGER.
bool s_initialised = false;
bool s_useMemoryManager = false;

bool switchedOn(const char* value) {
    return value && (strcasecmp(value, "true") == 0 || strcasecmp(value, "yes") == 0);
}

void settleSwitch() {
    if (!s_initialised) {
        s_useMemoryManager = switchedOn(std::getenv("ZU_MEMORYMANAGER"));
        s_initialised = true;
    }
}

// Size rounded up to a multiple of 8 (a size of 0 is served as 8).
inline size_t roundedSize(size_t size) { return size == 0 ? 8 : (size + 7) & ~size_t(7); }

// Head index for a rounded size: 8 -> 0, ..., 64 -> 7.
inline size_t headOf(size_t rounded) { return rounded / 8 - 1; }

// A free cell's first word links to the next free cell; memcpy keeps the access
// free of aliasing and alignment assumptions.
inline void* nextOf(void* cell) {
    void* next;
    std::memcpy(&next, cell, sizeof next);
    return next;
}

inline void setNext(void* cell, void* next) { std::memcpy(cell, &next, sizeof next); }

// The manager's invariant checks report this location whatever file holds the code.
[[noreturn]] void failAssertion(const char* text, unsigned line) {
    __assert_fail(text, "src/alloc", line, "void* ZuMemoryManager::alloc(size_t)");
}

} // namespace

unsigned int ZuMemoryManagerStats::GetTraceMode() {
    static bool initialised = false;
    static unsigned int mode = 0;
    if (!initialised) {
        initialised = true;
        const char* value = std::getenv("ZU_TRACEMEMORYMANAGER");
        if (switchedOn(value))
            mode = StatsBit | ReportBit;
        else if (value && strcasecmp(value, "update") == 0)
            mode = StatsBit;
    }
    return mode;
}

ZuMemoryManager* ZuMemoryManager::_instance = nullptr;

ZuMemoryManager* ZuMemoryManager::CreateInstance() {
    // Trivially destructible: it stays usable from any static destructor.
    static ZuMemoryManager manager;
    _instance = &manager;
    return &manager;
}

ZuMemoryManager::ZuMemoryManager()
    : _freeLists(), _current(nullptr), _end(nullptr), _chunkSize(FirstChunkSize),
      _allocated(FirstChunkSize), _used(0), _requested(0), _requestedNow(0),
      _requestedPeak(0), _chunks(), _chunkSizes(), _chunkCount(0), _fastPath(false) {
    ZuMemoryManagerStats::Trace = ZuMemoryManagerStats::GetTraceMode();
    char* chunk = static_cast<char*>(ZuMalloc(FirstChunkSize));
    // Without a first chunk _current stays null and the first carve fails its check.
    if (chunk) {
        _current = chunk;
        _end = chunk + FirstChunkSize;
        _chunks[0] = chunk;
        _chunkSizes[0] = FirstChunkSize;
        _chunkCount = 1;
    }
}

void ZuMemoryManager::status(std::ostream& os) const {
    // The counts are always decimal, whatever number base the stream is set to.
    os << "STATUS OF SMALL CELLS MEMORY:\n"
       << "CURRENTLY ALLOCATED MEMORY " << std::to_string(_allocated) << " BYTES.\n"
       << "CURRENTLY USED MEMORY " << std::to_string(_used) << " BYTES.\n";
}

void* ZuMemoryManager::allocSlow(size_t size) {
    settleSwitch();
    _fastPath = s_useMemoryManager;
    if (!s_useMemoryManager)
        return ZuMalloc(size);
    if (size == 0)
        size = 8;

    const unsigned trace = ZuMemoryManagerStats::Trace;
    if (trace & StatsBit) {
        _requested += static_cast<uint32_t>(size);
        // Wrapping sum kept in unsigned arithmetic, then stored as the signed field.
        _requestedNow = static_cast<int32_t>(static_cast<uint32_t>(_requestedNow) +
                                             static_cast<uint32_t>(size));
        if (_requestedNow > _requestedPeak)
            _requestedPeak = _requestedNow;
        if (trace & ReportBit)
            status(std::cerr);
    }
    if (size > LargestCell)
        return ZuMalloc(size);

    const size_t rounded = roundedSize(size);
    void*& head = _freeLists[headOf(rounded)];
    void* cell = head;
    if (cell) {
        head = nextOf(cell);
    } else {
        cell = carve(rounded);
        if (!cell)
            return nullptr;
    }
    if (trace & StatsBit) {
        _used += rounded;
        if (trace & ReportBit)
            status(std::cerr);
    }
    return cell;
}

// Takes a cell of rounded bytes from the current chunk, opening a new chunk when the
// current one is exhausted. _used is counted by the caller.
void* ZuMemoryManager::carve(size_t rounded) {
    if (_current == nullptr)
        failAssertion("(location != 0)", 274);

    // Compare lengths rather than form a pointer past the chunk's end.
    const size_t left = static_cast<size_t>(_end - _current);
    if (left >= rounded) {
        void* cell = _current;
        _current += rounded;
        return cell;
    }

    // The tail too small for this request becomes a free cell of its own size.
    if (left != 0) {
        if (left % 8)
            failAssertion("!(left%8)", 297);
        void*& tailHead = _freeLists[headOf(left)];
        setNext(_current, tailHead);
        tailHead = _current;
        _current = _end;
    }

    // Doubling stops at 2 GiB chunks, which the 32-bit size can still hold.
    if (_chunkSize < 0x80000000u)
        _chunkSize *= 2;
    if (_chunkCount == MaxChunks)
        return nullptr;
    char* chunk = static_cast<char*>(ZuMalloc(_chunkSize));
    if (!chunk)
        return nullptr;
    _chunks[_chunkCount] = chunk;
    _chunkSizes[_chunkCount++] = _chunkSize;
    if (ZuMemoryManagerStats::Trace & StatsBit)
        _allocated += _chunkSize;
    _end = chunk + _chunkSize;
    _current = chunk + rounded;
    return chunk;
}

void ZuMemoryManager::releaseSlow(void* p, size_t size) {
    if (!p)
        return;
    settleSwitch();
    _fastPath = s_useMemoryManager;
    if (!s_useMemoryManager || size > LargestCell) {
        ZuFree(p);
        return;
    }
    const size_t rounded = roundedSize(size);
    void*& head = _freeLists[headOf(rounded)];
    setNext(p, head);
    head = p;
    const unsigned trace = ZuMemoryManagerStats::Trace;
    if (trace & StatsBit) {
        _used -= rounded;
        if (trace & ReportBit)
            status(std::cerr);
    }
}

// Cells are not counted as they come and go (that would cost every request); instead
// the bytes carved from the chunks are compared with the bytes on the free lists. The
// walk is bounded, so a corrupted (cyclic) list counts as outstanding cells.
bool ZuMemoryManager::outstandingCells() const {
    uint64_t carved = 0;
    for (unsigned i = 0; i < _chunkCount; ++i)
        carved += _chunkSizes[i];
    carved -= static_cast<uint64_t>(_end - _current);
    uint64_t free = 0;
    for (size_t k = 0; k < 8; ++k)
        for (void* cell = _freeLists[k]; cell && free <= carved; cell = nextOf(cell))
            free += 8 * (k + 1);
    return free != carved;
}

// A static object of the library: its destructor runs after the static objects of
// every program using the library and after the library's objects created on first use.
ZuMemoryManager::ExitHook ZuMemoryManager::_exitHook;

ZuMemoryManager::ExitHook::~ExitHook() {
    ZuMemoryManager* manager = _instance;
    if (!manager || manager->outstandingCells())
        return; // cells still in use keep their chunks (reachable through _chunks)
    for (unsigned i = 0; i < manager->_chunkCount; ++i)
        ZuFree(manager->_chunks[i]);
    manager->_chunkCount = 0;
    std::memset(manager->_freeLists, 0, sizeof manager->_freeLists);
    manager->_current = nullptr;
    manager->_end = nullptr;
    // No cell is outstanding, so later requests can safely bypass the chunks.
    s_initialised = true;
    s_useMemoryManager = false;
    manager->_fastPath = false;
}
