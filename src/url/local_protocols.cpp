// Protocol base, and the two local sources: a file and another input stream.
#include <zu/url.h>

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>

Protocol::~Protocol() = default;

const char* Protocol::getHeader() const { return nullptr; }

FileProtocol::FileProtocol(const char* path) : _fd(-1) {
    if (!path)
        return;
    do
        _fd = open(path, O_RDONLY | O_CLOEXEC);
    while (_fd < 0 && errno == EINTR);
}

FileProtocol::~FileProtocol() {
    if (_fd >= 0)
        close(_fd);
}

bool FileProtocol::isBad() const { return _fd < 0; }

int FileProtocol::read(char* buffer, int size) {
    if (_fd < 0)
        return -1;
    if (!buffer || size < 1)
        return 0;
    ssize_t n;
    do
        n = ::read(_fd, buffer, static_cast<size_t>(size));
    while (n < 0 && errno == EINTR);
    return static_cast<int>(n);
}

StreamProtocol::StreamProtocol(std::istream* in) : _source(in) {}

// Inverted on purpose: "bad" while the source is still good.
bool StreamProtocol::isBad() const {
    return _source && _source->rdstate() == std::ios_base::goodbit;
}

int StreamProtocol::read(char* buffer, int size) {
    if (!_source || _source->rdstate() != std::ios_base::goodbit)
        return -1;
    if (!buffer || size < 1)
        return 0;
    // A source with exceptions switched on must not throw through the library.
    try {
        _source->read(buffer, size);
    } catch (...) {
    }
    return static_cast<int>(_source->gcount());
}
