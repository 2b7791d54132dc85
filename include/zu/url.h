#ifndef ZU_URL_H
#define ZU_URL_H

// URL streams. ZuIUrlStream is an input stream whose bytes come from an "http:", "ftp:"
// or "file:" URL, from a plain file name or from another input stream. Its buffer,
// ZuUrlBuf, reads the source in chunks of growing size through a Protocol object, keeps
// what it delivered so that the stream can seek backwards, and inflates gzip data and
// the first entry of a zip archive on the fly. Readers only ever see plain bytes.
// Nothing here is thread-safe; host lookups are not reentrant either.

#include <zu/export.h>

#include <sys/select.h>
#include <sys/time.h>

#include <istream>
#include <streambuf>

// Waits on fd with select(fd + 1, &read, nullptr, &except, &timeout), again while it
// fails with EINTR. Returns select's result: 0 on time-out, -1 on error.
// select updates the sets and the time-out; callers pass fresh copies for every wait.
ZU_API int Wait(int fd, fd_set& read, fd_set& except, timeval& timeout);

// Drains a server reply on fd: waits up to 10 seconds and reads up to 512 bytes, again
// as long as each read returns exactly 512 bytes. The text and its reply code are
// discarded. At most 64 KiB are drained, so an endless reply cannot hold the caller.
ZU_API void ReadAnswer(int fd);

// A byte source behind a ZuUrlBuf: opened by its constructor, read until read()
// returns 0 or less, closed by its destructor. Never reused.
class ZU_API Protocol {
public:
    // Closes whatever the protocol holds.
    virtual ~Protocol();
    // True when opening failed (the meaning differs for StreamProtocol).
    virtual bool isBad() const = 0;
    // Reads up to size bytes into buffer; the count read, or 0 or -1 at the end or on
    // an error.
    virtual int read(char* buffer, int size) = 0;
    // The response header kept by the protocol; null here.
    virtual const char* getHeader() const;

protected:
    Protocol() = default;
    Protocol(const Protocol&) = delete;
    Protocol& operator=(const Protocol&) = delete;
};

// An HTTP/1.0 GET over a TCP socket. The request lines end with bare line feeds and
// carry "User-Agent: Mozilla/1.5", the Host line and "Accept: */*". The response header
// (ended by CR LF CR LF or CR LF LF) is kept for getHeader and the body delivered as it
// comes; a reply not starting with "HTTP" is all body. The status line is not
// interpreted: an error page or a redirection is delivered as the body.
// Deliberately, a line feed right after a CR LF LF ending is dropped, not delivered.
class ZU_API HttpProtocol : public Protocol {
public:
    // Resolves host (a numeric IPv4 address is used as it is, without a reverse lookup),
    // connects to port and sends the request. Any failure leaves the protocol bad.
    // Connecting, like every wait, is given up after two 10-second periods.
    HttpProtocol(const char* host, const char* path, int port);
    // Closes the socket and frees the header text.
    ~HttpProtocol() override;
    // The socket is negative.
    bool isBad() const override;
    // Body bytes, the header being consumed first. Each wait lasts at most 10 seconds
    // and is tried twice; two time-outs in a row give -1.
    // A header still unfinished after 65536 bytes closes the connection and gives -1.
    int read(char* buffer, int size) override;
    // The response header, terminating blank line included (complete however the server
    // splits it), or null when there was none.
    const char* getHeader() const override;

protected:
    int _socket;         // -1 when bad
    int _headerDone;     // non-zero once the header has been consumed
    char* _header;       // header text, null until a header was seen
    fd_set _readSet;     // holds the socket
    fd_set _exceptSet;   // holds the socket
    timeval _timeout;    // 10 seconds, restored before every wait
    char _trail[4];      // last four bytes seen while looking for the end of the header

private:
    int receive(char* buffer, int size);
    int deliverPending(char* buffer, int size);
    // The server sent no header: what was gathered as header is body after all.
    int deliverHeaderAsBody(char* buffer, int size);
    int scanHeader(char* buffer, int size, int count);

    int _headerLength;   // bytes held in _header
    int _seen;           // header bytes seen so far
    char* _pending;      // body bytes read with the header that did not fit the caller's buffer
    int _pendingStart;
    int _pendingEnd;
};

// An FTP retrieval in active mode: USER (when a user is given), PASS (only when a
// password is given too), TYPE I, PORT, RETR of the path without its leading "/".
// Reply codes are never examined: a refused login or a missing file shows as a failed
// transfer or an empty one.
class ZU_API FtpProtocol : public Protocol {
public:
    // Runs the dialogue and accepts the data connection; a failure leaves it bad.
    // The wait for the data connection is bounded like every other wait (10 seconds,
    // twice) and ends at once when the server closes the control connection.
    FtpProtocol(const char* host, const char* user, const char* password, const char* path,
                int port);
    // Closes both sockets.
    ~FtpProtocol() override;
    // Either socket is negative.
    bool isBad() const override;
    // Bytes of the data connection; two 10-second time-outs in a row give -1.
    int read(char* buffer, int size) override;

protected:
    int _controlSocket; // -1 when bad
    int _dataSocket;    // -1 until the data connection is accepted
    fd_set _readSet;    // holds the data socket
    fd_set _exceptSet;  // holds the data socket
    timeval _timeout;   // 10 seconds, restored before every wait
};

// A local file opened read-only.
class ZU_API FileProtocol : public Protocol {
public:
    // Opens path read-only; a failure leaves the descriptor at -1.
    explicit FileProtocol(const char* path);
    // Closes the descriptor.
    ~FileProtocol() override;
    // The descriptor is negative.
    bool isBad() const override;
    // read(2) on the descriptor.
    int read(char* buffer, int size) override;

protected:
    int _fd; // -1 when bad
};

// Another input stream, not owned by the protocol.
class ZU_API StreamProtocol : public Protocol {
public:
    // Reads from in (may be null: then every read is -1).
    explicit StreamProtocol(std::istream* in);
    // Deliberately true when the source's state is good and false when there is no
    // source (an inverted sense kept as it stands; the buffer never consults it).
    bool isBad() const override;
    // -1 when the source's state is not good; otherwise reads size bytes and returns
    // the count actually read.
    int read(char* buffer, int size) override;

protected:
    std::istream* _source;
};

class ZuUrlBuf;
struct z_stream_s; // zlib's stream state, kept opaque here

// An input stream over a URL, a plain file name or another input stream.
class ZU_API ZuIUrlStream : public std::istream {
public:
    // Only NoHistory (1) has a meaning: the buffer keeps no history, so seeking fails.
    enum StreamHint : unsigned { NoHint = 0, NoHistory = 1 };

    // Opens url ("http://host[:port]/path", "ftp://[user[:password]@]host/path",
    // "file:path"), or, when it is no such URL, the file of that name, and reads the
    // first chunk. The failbit is set when nothing could be opened or the resource is
    // empty. The flag is not used. A port written in the URL is ignored: 80 and 21 are
    // always used.
    ZuIUrlStream(const char* url, bool flag);
    // Reads from in, which the stream deletes when it is destroyed. Nothing is read yet.
    explicit ZuIUrlStream(std::istream* in);
    // Reads from in, which stays the caller's. Nothing is read yet.
    explicit ZuIUrlStream(std::istream& in);
    // Destroys the buffer (and an owned source stream).
    ~ZuIUrlStream() override;
    ZuIUrlStream(const ZuIUrlStream&) = delete;
    ZuIUrlStream& operator=(const ZuIUrlStream&) = delete;

    // The buffer's hints; NoHint unless set.
    StreamHint getHints() const;
    // Applies to the fills that follow; the URL constructor has already filled once,
    // keeping that first chunk in the history.
    void setHints(StreamHint hints);
    // Plain data is read in chunks that double from 4096 bytes while they are at most
    // this limit (262144), so up to the first size above it. Compressed data is always
    // read 4096 bytes at a time.
    unsigned int getBufferLimit() const;
    // Applies to the fills that follow.
    void setBufferLimit(unsigned int limit);
    // The HTTP response header, or null (other protocols, no header, failed stream).
    const char* getHeader() const;

    // True when url starts with "http", "ftp" or "file" followed by ":" (and the text
    // is longer than the name).
    static bool IsAnURL(const char* url);

private:
    ZuUrlBuf* _buffer;
};

// The stream buffer of ZuIUrlStream. Blocks come from ZuCharPool::_Pool and go back to
// it. Without the NoHistory hint the get area is the whole history of decoded bytes, so
// the stream can seek back anywhere in what it has read.
class ZU_API ZuUrlBuf : public std::streambuf {
public:
    // A buffer with no source: every fill reports the end of input.
    ZuUrlBuf();
    // Deletes an owned source stream and the protocol, frees the strings, ends the
    // inflater and releases the blocks.
    ~ZuUrlBuf() override;
    ZuUrlBuf(const ZuUrlBuf&) = delete;
    ZuUrlBuf& operator=(const ZuUrlBuf&) = delete;

    // Splits url into scheme, user, password, host and path, and opens the protocol.
    // 0 on success, 1 on failure (also when the protocol turns out bad). A user and a
    // password may precede the host; the password may hold one "@". A path is
    // required. The port in the URL is skipped: the scheme's default port is used.
    int parseUrl(const char* url, bool flag);
    // Reads the next chunk (detecting gzip and zip on the first one) and makes its
    // decoded bytes readable. The count of new bytes, or -1 at the end of input.
    // Never returns 0: a fill that decodes nothing reads on. No decoded byte is lost
    // whatever the ratio: input one inflate call leaves is used by the next fill.
    // Corrupt or truncated compressed data ends the input; what came stays readable.
    // Only the first gzip member is read; the first zip entry is taken to be deflated.
    // A history that would pass 2^31 - 1 bytes ends the input (use NoHistory instead).
    int fillbuf();

    // The fields behind ZuIUrlStream's accessors of the same names.
    ZuIUrlStream::StreamHint getHints() const { return _hints; }
    void setHints(ZuIUrlStream::StreamHint hints) { _hints = hints; }
    unsigned int getBufferLimit() const { return _bufferLimit; }
    void setBufferLimit(unsigned int limit) { _bufferLimit = limit; }
    // The protocol's header text, or null.
    const char* getHeader() const;

protected:
    // Seeks within the history. Deliberately reports the new position plus off (a seek
    // from the beginning to 10 reports 20); -1 on failure or with the NoHistory hint.
    // The end is the end of what has been read so far, not of the resource; a target
    // past the end of the input stops there.
    pos_type seekoff(off_type off, std::ios_base::seekdir dir,
                     std::ios_base::openmode mode) override;
    // seekoff(pos, beginning).
    pos_type seekpos(pos_type pos, std::ios_base::openmode mode) override;
    // Fills when the get area is used up; end-of-file at the end of input.
    int_type underflow() override;

private:
    friend class ZuIUrlStream;

    void freeStrings();
    int endInput();
    bool takeReadBlock(int size);
    int readFirstChunk();
    int headerByte();
    bool skipHeaderBytes(unsigned count);
    bool skipUntilNul();
    bool skipGzipHeader();
    bool skipZipHeader();
    int inflateChunk();
    int readPlain();
    int publish(char* bytes, int count);
    bool fillTo(long long target);
    z_stream_s& zs();

    std::istream* _source;       // read through a StreamProtocol
    bool _ownsSource;            // delete _source with the buffer
    Protocol* _protocol;         // owned; null when opening failed
    char* _host;
    char* _path;
    char* _user;
    char* _password;
    char* _readBlock;            // raw bytes from the protocol
    void* _readHandle;
    char* _history;              // every decoded byte delivered so far
    int _historyCount;
    void* _historyHandle;
    char* _output;               // 40960 bytes of inflate output
    void* _outputHandle;
    bool _compressed;
    bool _firstFill;
    alignas(8) unsigned char _zstream[112]; // the zlib stream state (z_stream)
    int _chunkSize;              // 4096, doubled for plain data
    unsigned int _bufferLimit;   // 262144
    ZuIUrlStream::StreamHint _hints;

    // Safety state: input carried over between fills, end of input reached.
    bool _inflating;             // the inflater is initialised
    bool _inputPending;          // inflate has input or output left from the last fill
    bool _ended;                 // end of input seen; later fills return -1 at once
    int _readCount;              // bytes held in the read block (header skipping)
    int _readPos;                // first unread byte of the read block
};

#endif
