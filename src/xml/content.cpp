// Productions of elements: start and end tags, attributes and their values, content,
// references and names.
#include <zu/xml.h>

#include <zu/alloc.h>

#include "xml/chars.h"

#include <cstring>
#include <new>

using namespace zu_xml;

namespace {

// Units that end a run of character data in content ("]" is deliberately not one).
struct ContentStops {
    bool stop[128];
    constexpr ContentStops() : stop() {
        stop[0] = stop['&'] = stop['%'] = stop['<'] = true;
    }
};
constexpr ContentStops Stops{};

inline bool isText(unsigned short c) { return c >= 128 || !Stops.stop[c]; }

// A growing UTF-8 buffer for attribute values that hold references.
class ValueBuffer {
public:
    ValueBuffer() : _data(nullptr), _size(0), _capacity(0) {}
    ~ValueBuffer() { ZuFree(_data); }
    ValueBuffer(const ValueBuffer&) = delete;
    ValueBuffer& operator=(const ValueBuffer&) = delete;

    bool used() const { return _data != nullptr; }

    bool append(const char* s, size_t n) {
        if (_size + n + 1 > _capacity) {
            size_t capacity = _capacity ? _capacity : 64;
            while (_size + n + 1 > capacity)
                capacity *= 2;
            char* data = static_cast<char*>(ZuRealloc(_data, capacity));
            if (!data)
                return false;
            _data = data;
            _capacity = capacity;
        }
        std::memcpy(_data + _size, s, n);
        _size += n;
        _data[_size] = '\0';
        return true;
    }

    // A new[] copy of the contents.
    char* release() const {
        char* copy = new (std::nothrow) char[_size + 1];
        if (copy) {
            std::memcpy(copy, _data, _size);
            copy[_size] = '\0';
        }
        return copy;
    }

private:
    char* _data;
    size_t _size;
    size_t _capacity;
};

} // namespace

const unsigned short* ZuXmlParser::scanName(const unsigned short* p) const {
    // The 0 unit kept after the text stops the scan.
    if (!IsNameStart_(*p))
        return p;
    ++p;
    while (IsNameChar_(*p))
        ++p;
    return p;
}

bool ZuXmlParser::parseName(char*& name) {
    name = nullptr;
    const unsigned short* end = scanName(_position);
    if (end == _position)
        return false;
    name = Marker(*this, _position).getBlock(end, 0);
    _position = end;
    return name != nullptr;
}

bool ZuXmlParser::parseElement(ZuXmlElementI*& element) {
    element = nullptr;
    bool empty = false;
    ZuXmlElementI* created = nullptr;
    if (!parseTagStart(created, empty))
        return false;
    if (!empty) {
        if (_depth >= MaxDepth) {
            delete created;
            error(ZuXmlError::NestingTooDeep);
            return false;
        }
        ZuXmlElementI* previous = _current;
        _current = created;
        ++_depth;
        const bool ok = parseContent() && parseTagEnd(created);
        --_depth;
        _current = previous;
        if (!ok) {
            if (!ZuXmlError::IsSet())
                error(ZuXmlError::EndTagExpected);
            delete created;
            return false;
        }
    }
    _document->endElement(created);
    addNode(created);
    element = created;
    return true;
}

bool ZuXmlParser::parseTagStart(ZuXmlElementI*& element, bool& empty) {
    element = nullptr;
    empty = false;
    const unsigned short* start = _position;
    if (!parseChar('<'))
        return false;
    if (*_position == '/') {
        _position = start;
        return false;
    }
    char* name = nullptr;
    if (!parseName(name)) {
        _position = start;
        error(ZuXmlError::InvalidTagName);
        return false;
    }
    ZuXmlElementI* created = _current ? _current->createChildElement(name) : nullptr;
    if (!created)
        created = _document->createElement(name);
    if (!created) {
        delete[] name;
        error(ZuXmlError::NoElementCreated);
        return false;
    }
    _document->startElement(created);
    while (parseS()) {
        // White space not followed by a name ends the attribute list.
        if (!IsNameStart_(*_position))
            break;
        if (!parseAttribute(created)) {
            delete created;
            return false;
        }
    }
    const char* space = created->getAttributeValue("xml:space");
    if (space && std::strcmp(space, "preserve") == 0)
        created->preserveWhiteSpaces(true);
    parseS();
    if (parseChar('/')) {
        empty = true;
        if (!parseChar('>')) {
            delete created;
            error(ZuXmlError::InvalidTagEnd);
            return false;
        }
    } else if (!parseChar('>')) {
        delete created;
        error(ZuXmlError::InvalidTagEnd);
        return false;
    }
    element = created;
    return true;
}

bool ZuXmlParser::parseAttribute(ZuXmlElementI* element) {
    char* name = nullptr;
    if (!parseName(name))
        return false;
    if (!parseEq()) {
        delete[] name;
        error(ZuXmlError::EqualSignExpected);
        return false;
    }
    char* value = nullptr;
    if (!parseAttValue(value)) {
        delete[] name;
        if (!ZuXmlError::IsSet())
            error(ZuXmlError::InvalidAttributeValue);
        return false;
    }
    element->storeAttribute(_document, name, value);
    return true;
}

bool ZuXmlParser::parseAttValue(char*& value) {
    value = nullptr;
    if (_position >= _end || (*_position != '"' && *_position != '\''))
        return false;
    const unsigned short quote = *_position++;
    ValueBuffer joined;
    const unsigned short* pending = _position;
    for (;;) {
        const unsigned short* p = _position;
        while (*p != quote && isText(*p))
            ++p;
        _position = p;
        const unsigned short c = *p;
        if (c == quote)
            break;
        if (c == 0) {
            error(ZuXmlError::EarlyEndOfDocument);
            return false;
        }
        if (c == '<') {
            error(ZuXmlError::UnexpectedTagSymbol);
            return false;
        }
        if (c == '%') {
            ++_position;
            continue;
        }
        // A reference: a known character is joined as one byte (its low 8 bits); an
        // unknown name is deliberately kept verbatim, reference text included.
        const unsigned short* amp = p;
        ZuXmlCharRefI* ref = nullptr;
        if (!parseReference(ref))
            return false;
        const int ch = GetChar(ref);
        delete ref;
        if (ch >= 0xFFFF)
            continue;
        const char byte = static_cast<char>(ch & 0xFF);
        const char* text = amp > pending ? scratchUtf8(pending, amp) : "";
        if (!text || !joined.append(text, std::strlen(text)) || !joined.append(&byte, 1))
            return false;
        pending = _position;
    }
    if (joined.used()) {
        const char* text = _position > pending ? scratchUtf8(pending, _position) : "";
        if (!text || !joined.append(text, std::strlen(text)))
            return false;
        value = joined.release();
    } else {
        value = Marker(*this, pending).getBlock(_position, 0);
    }
    ++_position; // the closing quote
    return value != nullptr;
}

bool ZuXmlParser::parseTagEnd(ZuXmlElementI* element) {
    if (!parseString("</"))
        return false;
    const unsigned short* start = _position;
    const unsigned short* end = scanName(start);
    if (end == start) {
        error(ZuXmlError::InvalidTagName);
        return false;
    }
    // Compared with the tag in place, case-sensitively.
    const char* tag = element->getTag();
    bool same = tag != nullptr;
    if (same) {
        const size_t count = size_t(end - start);
        const char* name = nullptr;
        char narrow[64];
        bool ascii = count < sizeof narrow;
        for (size_t i = 0; ascii && i < count; ++i) {
            ascii = start[i] < 0x80;
            narrow[i] = static_cast<char>(start[i]);
        }
        if (ascii) {
            narrow[count] = '\0';
            name = narrow;
        } else {
            name = scratchUtf8(start, end);
        }
        same = name && std::strcmp(name, tag) == 0;
    }
    _position = end;
    if (!same) {
        error(ZuXmlError::EndTagNotMatched);
        return false;
    }
    parseS();
    return parseChar('>');
}

bool ZuXmlParser::parseContent() {
    Marker marker(*this, _position);
    for (;;) {
        const unsigned short* p = _position;
        while (isText(*p))
            ++p;
        _position = p;
        const unsigned short c = *p;
        if (c == 0) {
            if (p < _end)
                ++_position;
            error(ZuXmlError::EndOfDocumentUnexpected);
            return false;
        }
        if (c == '&' || c == '%') {
            addText(marker);
            ZuXmlCharRefI* ref = nullptr;
            if (!parseReference(ref)) {
                error(ZuXmlError::InvalidReferenceDeclaration);
                return false;
            }
            const int ch = GetChar(ref);
            if (ch < 0xFFFF) {
                // One byte, the low 8 bits; a 0 byte adds nothing.
                const char text[2] = {static_cast<char>(ch & 0xFF), '\0'};
                delete ref;
                addText(text);
            } else {
                _document->charRefAdded(ref);
                addNode(ref);
            }
            marker._position = _position;
            continue;
        }
        // "<"
        addText(marker);
        if (p[1] == '/')
            return true;
        ZuXmlElementI* child = nullptr;
        if (!parseElement(child)) {
            const unsigned short* before = _position;
            marker._position = _position;
            if (parseCharData() || parseCDSect() || parsePI() || parseComment()) {
                // The failed element attempt has usually recorded INVALID_TAG_NAME.
                ZuXmlError::Reset();
            } else if (ZuXmlError::IsSet()) {
                return false;
            } else if (_position == before) {
                // Nothing recorded and nothing read (a notification cleared the record):
                // stop rather than read the same unit again.
                error(ZuXmlError::InvalidTagName);
                return false;
            }
        }
        marker._position = _position;
    }
}

bool ZuXmlParser::parseReference(ZuXmlCharRefI*& ref) {
    ref = nullptr;
    if (!parseChar('&')) {
        error(ZuXmlError::InvalidCharRefDeclaration);
        return false;
    }
    if (parseChar('#')) {
        const bool hex = parseChar('x');
        // Accumulated without overflow check (wrapping, as an unsigned value).
        uint32_t code = 0;
        for (;; ++_position) {
            const unsigned short c = *_position;
            unsigned digit;
            if (c >= '0' && c <= '9')
                digit = c - '0';
            else if (hex && c >= 'a' && c <= 'f')
                digit = c - 'a' + 10;
            else if (hex && c >= 'A' && c <= 'F')
                digit = c - 'A' + 10;
            else
                break;
            code = code * (hex ? 16 : 10) + digit;
        }
        ZuXmlCharRefI* node = parseChar(';') ? _document->createCharRef() : nullptr;
        if (!node) {
            error(ZuXmlError::InvalidCharRefDeclaration);
            return false;
        }
        node->setRefCode(static_cast<int>(code));
        ref = node;
        return true;
    }
    char* name = nullptr;
    ZuXmlCharRefI* node = nullptr;
    if (parseName(name) && parseChar(';'))
        node = _document->createCharRef();
    if (!node) {
        delete[] name;
        error(ZuXmlError::InvalidCharRefDeclaration);
        return false;
    }
    node->storeRefName(name);
    ref = node;
    return true;
}
