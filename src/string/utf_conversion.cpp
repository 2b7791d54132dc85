// UTF-16 <-> UTF-8 conversion after the Unicode Consortium's reference scheme, with
// its two simplifications kept: UTF-8 input is not validated, and code points beyond
// the Basic Multilingual Plane become U+FFFD in UTF-16. Results are built in a block
// of the shared byte pool, unlocked again before returning.
#include <zu/i18n.h>

#include <zu/pool.h>

#include "utf8_lengths.h"

#include <cstdint>
#include <cstring>

namespace {

const unsigned char firstByteMark[7] = {0x00, 0x00, 0xC0, 0xE0, 0xF0, 0xF8, 0xFC};

// Subtracted after accumulation, indexed by the number of continuation bytes.
const uint32_t offsetsFromUTF8[6] = {0x00000000UL, 0x00003080UL, 0x000E2080UL,
                                     0x03C82080UL, 0xFA082080UL, 0x82082080UL};

// Results larger than this cannot be held by a pool block.
const uint64_t LargestResult = 0x80000000u;

bool isHighSurrogate(uint32_t u) { return u >= 0xD800 && u <= 0xDBFF; }
bool isLowSurrogate(uint32_t u) { return u >= 0xDC00 && u <= 0xDFFF; }

unsigned sequenceLength(uint32_t ch) {
    if (ch < 0x80)
        return 1;
    if (ch < 0x800)
        return 2;
    if (ch < 0x10000)
        return 3;
    if (ch < 0x200000)
        return 4;
    if (ch < 0x4000000)
        return 5;
    return 6;
}

// Input may itself be an earlier result, still in an unlocked block of the byte pool.
// That block is locked for the conversion, so that it is neither handed out for the
// output (overwriting the input) nor moved by a grow (freeing it) while being read.
ZuMemoryPool::Block* pinInput(const void* text, size_t bytes) {
    const uintptr_t begin = reinterpret_cast<uintptr_t>(text), end = begin + bytes;
    for (ZuMemoryPool::Block* b = ZuCharPool::_Pool._blocks; b; b = b->_next) {
        const uintptr_t data = reinterpret_cast<uintptr_t>(b->_data);
        if (b->_data && begin < data + b->_size && data < end) {
            ++b->_locks;
            return b;
        }
    }
    return nullptr;
}

// Unlocks the output block and the pinned input block.
void finish(void* block, ZuMemoryPool::Block* pinned) {
    ZuCharPool::_Pool.release(block);
    ZuCharPool::_Pool.release(pinned);
}

// Reports an empty result (used when the pool cannot grow).
template <typename T> T* giveUp(void* block, ZuMemoryPool::Block* pinned, unsigned& length) {
    finish(block, pinned);
    length = 0;
    return nullptr;
}

} // namespace

unsigned char* ZuI18n::Utf16ToUtf8(unsigned& length, unsigned count, const unsigned short* text) {
    length = 0;
    if (!text || count == 0)
        return nullptr;
    ZuMemoryPool& pool = ZuCharPool::_Pool;
    ZuMemoryPool::Block* pinned = pinInput(text, size_t(count) * 2);
    void* block = nullptr;
    // An initial guess; the block grows one character at a time. A failed (empty)
    // block is not given up on here: the first grow allocates it again.
    unsigned char* out = static_cast<unsigned char*>(pool.take(block, count / 2, true));

    for (unsigned i = 0; i < count; ++i) {
        uint32_t ch = text[i];
        // The bound i + 2 is deliberate: a pair that ends the input is not combined.
        if (isHighSurrogate(ch) && uint64_t(count) > uint64_t(i) + 2 &&
            isLowSurrogate(text[i + 1])) {
            ch = ((ch - 0xD800) << 10) + text[i + 1] + 0x2400;
            ++i;
        }
        const unsigned n = sequenceLength(ch);
        if (uint64_t(length) + n > LargestResult)
            return giveUp<unsigned char>(block, pinned, length);
        length += n;
        out = static_cast<unsigned char*>(pool.grow(block, length, false));
        if (!out)
            return giveUp<unsigned char>(block, pinned, length);
        // Written backwards from the end of the sequence.
        unsigned char* p = out + length;
        for (unsigned k = 1; k < n; ++k) {
            *--p = static_cast<unsigned char>(0x80 | (ch & 0x3F));
            ch >>= 6;
        }
        *--p = static_cast<unsigned char>(firstByteMark[n] | ch);
    }
    finish(block, pinned);
    return out;
}

unsigned short* ZuI18n::Utf8ToUtf16(unsigned& length, unsigned count, const unsigned char* text) {
    length = 0;
    if (!text || count == 0)
        return nullptr;
    if (uint64_t(count) * 2 > LargestResult)
        return nullptr;
    ZuMemoryPool& pool = ZuCharPool::_Pool;
    ZuMemoryPool::Block* pinned = pinInput(text, count);
    void* block = nullptr;
    unsigned char* out = static_cast<unsigned char*>(pool.take(block, count * 2, true));

    unsigned pos = 0;
    while (pos < count) {
        const unsigned extra = zu_utf8::bytesFromUTF8[text[pos]];
        out = static_cast<unsigned char*>(pool.grow(block, length + 2, false));
        if (!out)
            return giveUp<unsigned short>(block, pinned, length);
        // Continuation bytes are taken as they come, unchecked. Bytes of a sequence
        // cut short by count read as 0: nothing past the caller's buffer is read.
        uint32_t c = 0;
        for (unsigned k = 0; k <= extra; ++k) {
            c += uint64_t(pos) + k < count ? text[pos + k] : 0;
            if (k < extra)
                c <<= 6;
        }
        pos += extra + 1;
        c -= offsetsFromUTF8[extra];
        const unsigned short unit = c < 0x10000 ? static_cast<unsigned short>(c) : 0xFFFD;
        std::memcpy(out + length, &unit, sizeof unit);
        length += 2;
    }
    finish(block, pinned);
    return reinterpret_cast<unsigned short*>(out);
}
