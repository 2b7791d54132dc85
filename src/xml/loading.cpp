// Loading: the whole stream is read into one block of the character pool and decoded
// once into 16-bit units, from UTF-16 with a byte-order mark or from UTF-8.
#include <zu/xml.h>

#include <zu/i18n.h>
#include <zu/pool.h>

#include "../string/utf8_lengths.h"

#include <cstdint>
#include <cstring>
#include <istream>

#include <sys/mman.h>
#ifdef __SSE2__
#include <emmintrin.h>
#endif
#include <unistd.h>

namespace {

const unsigned Chunk = 2048;
// Inputs beyond this cannot be held in a pool block with room for the decoding.
const unsigned LargestInput = 0x3FFFF000u;

// Gives the pages of a large block back to the system (the block stays in the pool).
// Lazily, the system takes them when it needs memory, and a next parse that comes
// first reuses them without page faults; dropped at once, they leave the resident size,
// as the read block must in the middle of a parse, where it would raise the peak.
// Kernels without lazy freeing drop them at once in both cases. Only the bytes used (at
// most the capacity) are concerned, and only from 1 MB up, so that small documents do
// not pay for the system calls.
void dropPages(void* block, unsigned used, bool lazily) {
    const ZuMemoryPool::Block* b = static_cast<const ZuMemoryPool::Block*>(block);
    if (!b || !b->_data || used < (1u << 20))
        return;
    if (used > b->_size)
        used = b->_size;
    const uintptr_t page = uintptr_t(sysconf(_SC_PAGESIZE));
    const uintptr_t begin = (uintptr_t(b->_data) + page - 1) & ~(page - 1);
    const uintptr_t end = (uintptr_t(b->_data) + used) & ~(page - 1);
    if (end <= begin)
        return;
    void* start = reinterpret_cast<void*>(begin);
    if (!lazily || madvise(start, end - begin, MADV_FREE) != 0)
        madvise(start, end - begin, MADV_DONTNEED);
}

} // namespace

void ZuXmlParser::releaseBlock(void*& block, unsigned int used, bool lazily) {
    if (!block)
        return;
    dropPages(block, used, lazily);
    ZuCharPool::_Pool.release(block);
    block = nullptr;
}

bool ZuXmlParser::fillBuffer(std::istream& in) {
    ZuMemoryPool& pool = ZuCharPool::_Pool;
    _block = nullptr;
    _text = nullptr;
    _length = 0;
    unsigned char* data = static_cast<unsigned char*>(pool.take(_block, Chunk, true));
    if (!data)
        return false;
    unsigned total = 0;
    try {
        // When the stream can tell how much it holds (a file, a string), the block is
        // grown once to that size: growing it chunk by chunk would copy it at every
        // doubling and leave the smaller copies behind in the heap.
        const std::streamsize ahead = in.rdbuf() ? in.rdbuf()->in_avail() : 0;
        if (ahead > Chunk && ahead < std::streamsize(LargestInput)) {
            data = static_cast<unsigned char*>(pool.grow(_block, unsigned(ahead) + Chunk, false));
            if (!data)
                return false;
        }
        for (;;) {
            in.read(reinterpret_cast<char*>(data) + total, Chunk);
            const unsigned got = static_cast<unsigned>(in.gcount());
            total += got;
            if (got < Chunk)
                break;
            if (total > LargestInput)
                return false;
            data = static_cast<unsigned char*>(pool.grow(_block, total + Chunk, false));
            if (!data)
                return false;
        }
    } catch (...) {
        // A stream that throws ends the input where it stopped.
    }
    if (total < 8)
        return false;

    const unsigned first = data[0] | data[1] << 8;
    if (first == 0xFEFF)
        return useUtf16(total, false, true);
    if (first == 0xFFFE)
        return useUtf16(total, true, true);
    // The second unit is read from bytes 1 and 2, deliberately: these two checks never
    // match, and unmarked UTF-16 goes on to the UTF-8 rule below.
    const unsigned second = data[1] | data[2] << 8;
    if ((first == 0x003C && second == 0x003F) || (first == 0x3C00 && second == 0x3F00)) {
        return useUtf16(total, first == 0x3C00, false);
    }
    if (data[0] == '<')
        return useUtf8(data, total);
    if (data[0] == 0xEF && data[1] == 0xBB && data[2] == 0xBF)
        return useUtf8(data + 3, total - 3);
    return false;
}

// The read block becomes the text. With a mark (the first unit read as FEFF or FFFE)
// scanning starts after it, and a big-endian text has the bytes of every later unit
// swapped; the marked-less form starts at the first unit.
bool ZuXmlParser::useUtf16(unsigned int bytes, bool swap, bool marked) {
    ZuMemoryPool& pool = ZuCharPool::_Pool;
    const unsigned units = bytes / 2;
    // Room for the 0 unit kept after the text.
    unsigned short* text =
        static_cast<unsigned short*>(pool.grow(_block, units * 2 + 2, false));
    if (!text)
        return false;
    const unsigned from = marked ? 1 : 0;
    if (swap) {
        for (unsigned i = from; i < units; ++i)
            text[i] = static_cast<unsigned short>(text[i] << 8 | text[i] >> 8);
    }
    text[units] = 0;
    _text = text;
    _length = units;
    _end = text + units;
    _position = text + from;
    return true;
}

bool ZuXmlParser::useUtf8(const unsigned char* bytes, unsigned int count) {
    ZuMemoryPool& pool = ZuCharPool::_Pool;
    void* converted = nullptr;
    // One unit per byte at most, and room for the 0 unit kept after the text.
    unsigned short* units =
        static_cast<unsigned short*>(pool.take(converted, count * 2 + 2, true));
    if (!units)
        return false;
    // ASCII bytes are widened here; each stretch of multibyte sequences goes through
    // ZuI18n::Utf8ToUtf16, cut where that conversion's own walk puts a sequence end, so
    // that the result is the same as converting the whole text at once.
    unsigned n = 0;
    unsigned i = 0;
    while (i < count) {
#ifdef __SSE2__
        if (i + 16 <= count) {
            const __m128i sixteen = _mm_loadu_si128(reinterpret_cast<const __m128i*>(bytes + i));
            if (_mm_movemask_epi8(sixteen) == 0) {
                const __m128i zero = _mm_setzero_si128();
                _mm_storeu_si128(reinterpret_cast<__m128i*>(units + n), _mm_unpacklo_epi8(sixteen, zero));
                _mm_storeu_si128(reinterpret_cast<__m128i*>(units + n + 8), _mm_unpackhi_epi8(sixteen, zero));
                n += 16;
                i += 16;
                continue;
            }
        }
#endif
        if (i + 8 <= count) {
            uint64_t eight;
            std::memcpy(&eight, bytes + i, 8);
            if (!(eight & 0x8080808080808080ull)) {
                for (unsigned k = 0; k < 8; ++k)
                    units[n + k] = bytes[i + k];
                n += 8;
                i += 8;
                continue;
            }
        }
        if (bytes[i] < 0x80) {
            units[n++] = bytes[i++];
            continue;
        }
        unsigned j = i;
        while (j < count && bytes[j] >= 0x80)
            j += 1 + zu_utf8::bytesFromUTF8[bytes[j]];
        if (j > count)
            j = count;
        unsigned length = 0;
        const unsigned short* wide = ZuI18n::Utf8ToUtf16(length, j - i, bytes + i);
        if (!wide) {
            pool.release(converted);
            return false;
        }
        std::memcpy(units + n, wide, length);
        n += length / 2;
        i = j;
    }
    units[n] = 0;
    releaseBlock(_block, count, false);
    _block = converted;
    _text = units;
    _length = n;
    _end = units + n;
    _position = units;
    return true;
}

void ZuXmlParser::releaseBlocks() {
    releaseBlock(_block, _length * 2 + 2);
    releaseBlock(_scratchBlock, _scratchSize);
}
