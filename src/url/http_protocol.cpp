// HttpProtocol: an HTTP/1.0 GET whose response header is consumed before the body.
#include <zu/url.h>

#include "url/socket_util.h"

#include <climits>
#include <cstdlib>
#include <cstring>

namespace {

// A header still unfinished past this many bytes is taken for a hostile server.
const int HeaderLimit = 65536;

} // namespace

HttpProtocol::HttpProtocol(const char* host, const char* path, int port)
    : _socket(-1), _headerDone(0), _header(nullptr), _timeout{zu_url::WaitSeconds, 0},
      _trail{0, 0, 0, 0}, _headerLength(0), _seen(0), _pending(nullptr), _pendingStart(0),
      _pendingEnd(0) {
    zu_url::SetOnly(-1, _readSet, _exceptSet);
    in_addr address;
    if (!host || !path || !zu_url::ResolveHost(host, address))
        return;
    _socket = zu_url::ConnectTo(address, port);
    if (_socket < 0)
        return;
    // Six writes, lines ended by bare line feeds; all but the last announce more to come
    // so that the kernel sends the request in one piece.
    const size_t hostLength = std::strlen(host);
    char* hostLine = static_cast<char*>(std::malloc(hostLength + 7));
    if (!hostLine) {
        zu_url::CloseFd(_socket);
        return;
    }
    std::memcpy(hostLine, "Host: ", 6);
    std::memcpy(hostLine + 6, host, hostLength + 1);
    const char* parts[6] = {"GET ", path, " HTTP/1.0\n", "User-Agent: Mozilla/1.5\n", hostLine,
                            "\nAccept: */*\n\n"};
    for (int i = 0; i < 6; ++i) {
        if (!zu_url::SendAll(_socket, parts[i], std::strlen(parts[i]), i < 5)) {
            zu_url::CloseFd(_socket);
            break;
        }
    }
    std::free(hostLine);
    if (_socket < 0)
        return;
    zu_url::SetOnly(_socket, _readSet, _exceptSet);
    _timeout.tv_sec = zu_url::WaitSeconds;
    _timeout.tv_usec = 0;
    std::memset(_trail, 0, sizeof _trail);
}

HttpProtocol::~HttpProtocol() {
    zu_url::CloseFd(_socket);
    std::free(_header);
    std::free(_pending);
}

bool HttpProtocol::isBad() const { return _socket < 0; }

const char* HttpProtocol::getHeader() const { return _header; }

int HttpProtocol::receive(char* buffer, int size) {
    return zu_url::WaitAndRead(_socket, _readSet, _exceptSet, _timeout, buffer, size);
}

int HttpProtocol::deliverPending(char* buffer, int size) {
    int count = _pendingEnd - _pendingStart;
    if (count > size)
        count = size;
    std::memcpy(buffer, _pending + _pendingStart, static_cast<size_t>(count));
    _pendingStart += count;
    if (_pendingStart >= _pendingEnd) {
        std::free(_pending);
        _pending = nullptr;
        _pendingStart = _pendingEnd = 0;
    }
    return count;
}

// Looks for the end of the header in the count bytes just read into buffer. Returns the
// count of body bytes moved to the front of buffer, 0 when more must be read, -1 when
// the header is too long.
int HttpProtocol::scanHeader(char* buffer, int size, int count) {
    // The header text collects every byte read before the end of the header, so that it
    // is complete however the server splits it; it is cut where the header ends.
    const size_t grownSize = static_cast<size_t>(_headerLength) + static_cast<size_t>(count) + 1;
    char* grown = count < INT_MAX - _headerLength
                      ? static_cast<char*>(std::realloc(_header, grownSize))
                      : nullptr;
    if (!grown) {
        zu_url::CloseFd(_socket);
        return -1;
    }
    _header = grown;
    const int chunkStart = _headerLength;
    std::memcpy(_header + chunkStart, buffer, static_cast<size_t>(count));
    _headerLength += count;
    _header[_headerLength] = '\0';

    for (int i = 0; i < count; ++i) {
        std::memmove(_trail, _trail + 1, 3);
        _trail[3] = buffer[i];
        ++_seen;
        if (_seen == 4 && std::memcmp(_trail, "HTTP", 4) != 0) {
            // No header: every byte read so far is body, from the first one on.
            return deliverHeaderAsBody(buffer, size);
        }
        if (_seen < 4 || _trail[0] != '\r' || _trail[1] != '\n')
            continue;
        int headerEnd;
        int bodyStart;
        if (_trail[2] == '\n') {
            // CR LF LF is seen one byte late: that byte is body unless it is a line feed.
            headerEnd = chunkStart + i;
            bodyStart = buffer[i] == '\n' ? i + 1 : i;
        } else if (_trail[2] == '\r' && _trail[3] == '\n') {
            headerEnd = chunkStart + i + 1;
            bodyStart = i + 1;
        } else {
            continue;
        }
        _headerDone = 1;
        _headerLength = headerEnd;
        _header[headerEnd] = '\0';
        const int body = count - bodyStart;
        std::memmove(buffer, buffer + bodyStart, static_cast<size_t>(body));
        return body;
    }
    if (_headerLength > HeaderLimit) {
        // Taken for a hostile server: no body is read from it.
        zu_url::CloseFd(_socket);
        std::free(_header);
        _header = nullptr;
        _headerLength = 0;
        return -1;
    }
    return 0;
}

int HttpProtocol::deliverHeaderAsBody(char* buffer, int size) {
    _pending = _header;
    _pendingStart = 0;
    _pendingEnd = _headerLength;
    _header = nullptr;
    _headerLength = 0;
    _headerDone = 1;
    return deliverPending(buffer, size);
}

int HttpProtocol::read(char* buffer, int size) {
    if (!buffer || size < 1)
        return 0;
    if (_pending)
        return deliverPending(buffer, size);
    for (;;) {
        const int count = receive(buffer, size);
        if (count < 1) {
            if (!_headerDone && _seen > 0 && _seen < 4) {
                // A reply shorter than four bytes cannot start with "HTTP": it is body.
                return deliverHeaderAsBody(buffer, size);
            }
            return count;
        }
        if (_headerDone)
            return count;
        const int body = scanHeader(buffer, size, count);
        if (body != 0)
            return body;
    }
}
