// ZuIUrlStream: an istream over a ZuUrlBuf opened on a URL, a file name or a stream.
#include <zu/url.h>

#include <new>

ZuIUrlStream::ZuIUrlStream(const char* url, bool flag)
    : std::istream(nullptr), _buffer(new (std::nothrow) ZuUrlBuf) {
    if (_buffer) {
        ZuUrlBuf& b = *_buffer;
        // Text the parser does not take is a plain file name.
        if (b.parseUrl(url, flag) != 0)
            b._protocol = new (std::nothrow) FileProtocol(url);
        // The first fill happens here: an empty resource fails the stream.
        if (!b._protocol || b._protocol->isBad() || b.fillbuf() == -1) {
            b.freeStrings();
            delete b._protocol;
            b._protocol = nullptr;
        }
    }
    rdbuf(_buffer);
    if (!_buffer || !_buffer->_protocol)
        setstate(std::ios_base::failbit);
}

ZuIUrlStream::ZuIUrlStream(std::istream* in)
    : std::istream(nullptr), _buffer(new (std::nothrow) ZuUrlBuf) {
    if (_buffer) {
        _buffer->_source = in;
        _buffer->_ownsSource = true;
        _buffer->_protocol = new (std::nothrow) StreamProtocol(in);
    } else {
        delete in; // owned from here on, whatever happens
    }
    rdbuf(_buffer);
}

ZuIUrlStream::ZuIUrlStream(std::istream& in)
    : std::istream(nullptr), _buffer(new (std::nothrow) ZuUrlBuf) {
    if (_buffer) {
        _buffer->_source = &in;
        _buffer->_protocol = new (std::nothrow) StreamProtocol(&in);
    }
    rdbuf(_buffer);
}

ZuIUrlStream::~ZuIUrlStream() { delete _buffer; }

ZuIUrlStream::StreamHint ZuIUrlStream::getHints() const {
    return _buffer ? _buffer->getHints() : NoHint;
}

void ZuIUrlStream::setHints(StreamHint hints) {
    if (_buffer)
        _buffer->setHints(hints);
}

unsigned int ZuIUrlStream::getBufferLimit() const {
    return _buffer ? _buffer->getBufferLimit() : 0x40000;
}

void ZuIUrlStream::setBufferLimit(unsigned int limit) {
    if (_buffer)
        _buffer->setBufferLimit(limit);
}

const char* ZuIUrlStream::getHeader() const { return _buffer ? _buffer->getHeader() : nullptr; }
