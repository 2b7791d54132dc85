// ZuUrlBuf filling: chunked reads, gzip and zip detection, inflation and the history.
#include <zu/pool.h>
#include <zu/url.h>

#include <zlib.h>

#include <climits>
#include <cstdint>
#include <cstring>
#include <new>

namespace {

const int InitialChunk = 4096;
const int OutputSize = 40960;
const unsigned PageSize = 4096;
// Chunks stop doubling here whatever the buffer limit, so sizes stay within int.
const int LargestChunk = 1 << 30;
// The history count is a signed 32-bit value: a longer resource ends there.
const long long HistoryLimit = INT_MAX;

const unsigned char GzipExtra = 4;
const unsigned char GzipName = 8;
const unsigned char GzipComment = 16;
const unsigned char GzipHeaderCheck = 2;

static_assert(sizeof(z_stream) == 112, "the zlib stream state must fit its field");

// Takes a locked block of size bytes from the character pool; null on failure, with
// nothing left locked.
char* TakeBlock(void*& handle, unsigned size) {
    handle = nullptr;
    void* data = ZuCharPool::_Pool.take(handle, size, true);
    if (!data && handle) {
        ZuCharPool::_Pool.release(handle);
        handle = nullptr;
    }
    return static_cast<char*>(data);
}

void ReleaseBlock(char*& data, void*& handle) {
    if (handle)
        ZuCharPool::_Pool.release(handle);
    handle = nullptr;
    data = nullptr;
}

} // namespace

z_stream& ZuUrlBuf::zs() { return *std::launder(reinterpret_cast<z_stream*>(_zstream)); }

ZuUrlBuf::ZuUrlBuf()
    : _source(nullptr), _ownsSource(false), _protocol(nullptr), _host(nullptr), _path(nullptr),
      _user(nullptr), _password(nullptr), _readBlock(nullptr), _readHandle(nullptr),
      _history(nullptr), _historyCount(0), _historyHandle(nullptr), _output(nullptr),
      _outputHandle(nullptr), _compressed(false), _firstFill(true), _zstream{},
      _chunkSize(InitialChunk), _bufferLimit(0x40000), _hints(ZuIUrlStream::NoHint),
      _inflating(false), _inputPending(false), _ended(false), _readCount(0), _readPos(0) {
    new (_zstream) z_stream();
}

ZuUrlBuf::~ZuUrlBuf() {
    if (_ownsSource)
        delete _source;
    _source = nullptr;
    delete _protocol;
    _protocol = nullptr;
    freeStrings();
    if (_inflating)
        inflateEnd(&zs());
    _inflating = false;
    ReleaseBlock(_output, _outputHandle);
    ReleaseBlock(_history, _historyHandle);
    ReleaseBlock(_readBlock, _readHandle);
}

const char* ZuUrlBuf::getHeader() const { return _protocol ? _protocol->getHeader() : nullptr; }

int ZuUrlBuf::endInput() {
    _ended = true;
    if (_inflating)
        inflateEnd(&zs());
    _inflating = false;
    _inputPending = false;
    return -1;
}

bool ZuUrlBuf::takeReadBlock(int size) {
    // A get area in the old block (no history) would outlive it: a fill that ends the
    // input right after must not leave it readable.
    if (_readBlock && eback() == _readBlock)
        setg(nullptr, nullptr, nullptr);
    // The old block goes back first, so the pool can grow it instead of adding another.
    ReleaseBlock(_readBlock, _readHandle);
    // Bytes are read to a page boundary inside the block: the kernel copies file pages
    // much faster to a page-aligned buffer (a quarter of the read time for large files).
    char* block = TakeBlock(_readHandle, static_cast<unsigned>(size) + PageSize);
    if (!block)
        return false;
    const uintptr_t at = reinterpret_cast<uintptr_t>(block);
    _readBlock = block + ((PageSize - at % PageSize) % PageSize);
    return true;
}

// The next byte of a compressed header, reading on when the chunk is used up; -1 at the
// end of input.
int ZuUrlBuf::headerByte() {
    if (_readPos >= _readCount) {
        const int n = _protocol->read(_readBlock, _chunkSize);
        if (n < 1)
            return -1;
        _readCount = n;
        _readPos = 0;
    }
    return static_cast<unsigned char>(_readBlock[_readPos++]);
}

bool ZuUrlBuf::skipHeaderBytes(unsigned count) {
    while (count > 0) {
        if (_readPos >= _readCount) {
            if (headerByte() < 0)
                return false;
            --count;
            continue;
        }
        unsigned step = static_cast<unsigned>(_readCount - _readPos);
        if (step > count)
            step = count;
        _readPos += static_cast<int>(step);
        count -= step;
    }
    return true;
}

bool ZuUrlBuf::skipUntilNul() {
    for (;;) {
        const int byte = headerByte();
        if (byte < 0)
            return false;
        if (byte == 0)
            return true;
    }
}

// Skips the gzip header after its two magic bytes (already consumed): method, flags,
// time, extra flags and system, then the optional fields the flags announce.
bool ZuUrlBuf::skipGzipHeader() {
    if (!skipHeaderBytes(1))
        return false;
    const int flags = headerByte();
    if (flags < 0 || !skipHeaderBytes(6))
        return false;
    if (flags & GzipExtra) {
        const int low = headerByte();
        const int high = headerByte();
        if (low < 0 || high < 0 || !skipHeaderBytes(static_cast<unsigned>(low | (high << 8))))
            return false;
    }
    if ((flags & GzipName) && !skipUntilNul())
        return false;
    if ((flags & GzipComment) && !skipUntilNul())
        return false;
    return !(flags & GzipHeaderCheck) || skipHeaderBytes(2);
}

// Skips a zip local file header after its four-byte signature: 22 more fixed bytes, the
// name and extra lengths, then both fields. The entry is taken to be deflated.
bool ZuUrlBuf::skipZipHeader() {
    if (!skipHeaderBytes(22))
        return false;
    int bytes[4];
    for (int& b : bytes)
        if ((b = headerByte()) < 0)
            return false;
    return skipHeaderBytes(static_cast<unsigned>((bytes[0] | (bytes[1] << 8)) +
                                                 (bytes[2] | (bytes[3] << 8))));
}

// First fill: reads the first chunk and looks at its first bytes. Returns the count of
// plain bytes in the read block, 0 when compressed data is ready to inflate, -1 at the
// end of input.
int ZuUrlBuf::readFirstChunk() {
    if (!takeReadBlock(_chunkSize))
        return -1;
    int count = _protocol->read(_readBlock, _chunkSize);
    if (count < 1)
        return -1;
    // A source may deliver fewer bytes than the magic numbers need: read on for them.
    while (count < 4) {
        const int more = _protocol->read(_readBlock + count, _chunkSize - count);
        if (more < 1)
            break;
        count += more;
    }
    const unsigned char* b = reinterpret_cast<const unsigned char*>(_readBlock);
    const bool gzip = count >= 2 && b[0] == 0x1F && b[1] == 0x8B;
    const bool zip = count >= 4 && b[0] == 'P' && b[1] == 'K' && b[2] == 3 && b[3] == 4;
    if (!gzip && !zip)
        return count;

    _compressed = true;
    _output = TakeBlock(_outputHandle, OutputSize);
    if (!_output)
        return -1;
    _readCount = count;
    _readPos = gzip ? 2 : 4;
    if (!(gzip ? skipGzipHeader() : skipZipHeader()))
        return -1; // truncated header: corrupt data ends the input
    z_stream& z = zs();
    std::memset(&z, 0, sizeof z);
    z.zalloc = Z_NULL;
    z.zfree = Z_NULL;
    z.opaque = Z_NULL;
    if (inflateInit2_(&z, -15, "1.1.3", static_cast<int>(sizeof(z_stream))) != Z_OK)
        return -1;
    _inflating = true;
    z.next_in = reinterpret_cast<Bytef*>(_readBlock + _readPos);
    z.avail_in = static_cast<uInt>(_readCount - _readPos);
    return 0;
}

// Inflates into the output block. Input left over from the last fill, and output the
// inflater still holds, are used before anything new is read, so no byte is lost
// whatever the ratio. A call that yields nothing reads on.
int ZuUrlBuf::inflateChunk() {
    z_stream& z = zs();
    for (;;) {
        if (!_inputPending && z.avail_in == 0) {
            const int n = _protocol->read(_readBlock, _chunkSize);
            if (n < 1)
                return endInput();
            z.next_in = reinterpret_cast<Bytef*>(_readBlock);
            z.avail_in = static_cast<uInt>(n);
        }
        const uInt before = z.avail_in;
        z.next_out = reinterpret_cast<Bytef*>(_output);
        z.avail_out = OutputSize;
        const int rc = inflate(&z, Z_NO_FLUSH);
        const int produced = OutputSize - static_cast<int>(z.avail_out);
        // A full output block may leave output inside the inflater.
        _inputPending = z.avail_out == 0;
        const bool stuck = rc == Z_BUF_ERROR && produced == 0 && before > 0 && z.avail_in == before;
        const bool finished = rc == Z_STREAM_END || (rc != Z_OK && rc != Z_BUF_ERROR) || stuck;
        if (finished) {
            // The end of the deflate data, or corrupt data: what came so far stays readable.
            endInput();
            return produced > 0 ? publish(_output, produced) : -1;
        }
        if (produced > 0)
            return publish(_output, produced);
    }
}

int ZuUrlBuf::readPlain() {
    if (_chunkSize <= LargestChunk / 2 &&
        static_cast<unsigned long long>(_chunkSize) <= _bufferLimit) {
        _chunkSize *= 2;
        if (!takeReadBlock(_chunkSize))
            return endInput();
    }
    const int n = _protocol->read(_readBlock, _chunkSize);
    if (n < 1)
        return endInput();
    return publish(_readBlock, n);
}

// Makes count new bytes readable: alone with the NoHistory hint, else appended to the
// history, which becomes the get area with the read position on the new bytes.
int ZuUrlBuf::publish(char* bytes, int count) {
    if (_hints & ZuIUrlStream::NoHistory) {
        setg(bytes, bytes, bytes + count);
        return count;
    }
    const long long total = static_cast<long long>(_historyCount) + count;
    if (total > HistoryLimit)
        return endInput();
    if (!_history) {
        _history = TakeBlock(_historyHandle, static_cast<unsigned>(total));
    } else if (static_cast<ZuMemoryPool::Block*>(_historyHandle)->_size <= total) {
        void* grown = ZuCharPool::_Pool.grow(_historyHandle, static_cast<unsigned>(total), false);
        if (!grown)
            return endInput(); // the history so far stays readable
        _history = static_cast<char*>(grown);
    }
    if (!_history)
        return endInput();
    std::memcpy(_history + _historyCount, bytes, static_cast<size_t>(count));
    const int start = _historyCount;
    _historyCount = static_cast<int>(total);
    setg(_history, _history + start, _history + _historyCount);
    return count;
}

int ZuUrlBuf::fillbuf() {
    if (_ended || !_protocol)
        return -1;
    if (_firstFill) {
        _firstFill = false;
        const int count = readFirstChunk();
        if (count < 0)
            return endInput();
        if (!_compressed)
            return publish(_readBlock, count);
    }
    return _compressed ? inflateChunk() : readPlain();
}
