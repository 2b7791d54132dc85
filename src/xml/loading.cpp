// Loading: the whole stream is read into one block of the character pool and decoded
// once into 16-bit units, from UTF-16 with a byte-order mark or from UTF-8.
#include <zu/xml.h>

#include <zu/i18n.h>
#include <zu/pool.h>

#include <istream>

namespace {

const unsigned Chunk = 2048;
// Inputs beyond this cannot be held in a pool block with room for the decoding.
const unsigned LargestInput = 0x3FFFF000u;

} // namespace

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
    unsigned length = 0;
    unsigned short* units = ZuI18n::Utf8ToUtf16(length, count, bytes);
    if (!units)
        return false;
    // The conversion's block (unlocked by the conversion) becomes the buffer block.
    void* converted = pool.getBlock(units);
    if (!converted)
        return false;
    const unsigned n = length / 2;
    units = static_cast<unsigned short*>(pool.grow(converted, length + 2, false));
    if (!units) {
        pool.release(converted);
        return false;
    }
    units[n] = 0;
    pool.release(_block);
    _block = converted;
    _text = units;
    _length = n;
    _end = units + n;
    _position = units;
    return true;
}

void ZuXmlParser::releaseBlocks() {
    ZuMemoryPool& pool = ZuCharPool::_Pool;
    if (_block) {
        pool.release(_block);
        _block = nullptr;
    }
    if (_scratchBlock) {
        pool.release(_scratchBlock);
        _scratchBlock = nullptr;
    }
}
