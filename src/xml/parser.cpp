// The parser object: construction (load, then parse), reading primitives, markers,
// error recording and tree building.
#include <zu/xml.h>

#include <zu/i18n.h>
#include <zu/pool.h>

#include "xml/chars.h"

#include <cstring>
#include <new>

using namespace zu_xml;

namespace {

// True when every unit below to is ASCII.
bool isAscii(const unsigned short* from, const unsigned short* to) {
    unsigned short any = 0;
    for (; from < to; ++from)
        any |= *from;
    return any < 0x80;
}

// Case-insensitive comparison of a NUL-terminated string with a lower-case ASCII word.
bool equalsWord(const char* s, const char* word) {
    for (; *s && *word; ++s, ++word) {
        char c = *s;
        if (c >= 'A' && c <= 'Z')
            c = static_cast<char>(c - 'A' + 'a');
        if (c != *word)
            return false;
    }
    return *s == *word;
}

} // namespace

// ---- construction --------------------------------------------------------------------

ZuXmlParser::ZuXmlParser(std::istream& in, ZuXmlDocumentI* doc)
    : _document(doc), _block(nullptr), _text(nullptr), _length(0), _position(nullptr),
      _current(nullptr), _end(nullptr), _scratchBlock(nullptr), _scratchSize(0), _depth(0), _linePos(nullptr),
      _line(1) {
    // Without a document there is nothing to build: reported as an input not loaded.
    if (!doc || !fillBuffer(in)) {
        ZuXmlError::Set(ZuXmlError::Fatal, ZuXmlError::InvalidDocument, 1);
        reset();
        return;
    }
    _linePos = _text;
    parseDocument();
}

ZuXmlParser::~ZuXmlParser() {
    _document = nullptr;
    reset();
}

void ZuXmlParser::reset() {
    if (_document)
        _document->empty();
    releaseBlocks();
}

void ZuXmlParser::parseDocument() {
    parseProlog();
    if (ZuXmlError::IsSet()) {
        reset();
        return;
    }
    ZuXmlElementI* root = nullptr;
    if (!parseElement(root)) {
        // An empty document keeps what it has; the buffer goes with the destructor.
        if (ZuXmlError::IsSet())
            reset();
        else
            error(ZuXmlError::EmptyDocument);
        return;
    }
    parseMiscs();
    if (ZuXmlError::IsSet()) {
        reset();
        return;
    }
    if (nextChar() != 0) {
        // Deliberately the complete document is emptied too.
        error(ZuXmlError::EndOfDocumentExpected, ZuXmlError::Warning);
        reset();
        return;
    }
    releaseBlocks();
}

int ZuXmlParser::GetChar(ZuXmlCharRefI* ref) {
    if (!ref)
        return 0xFFFF;
    if (const char* name = ref->getRefName()) {
        if (equalsWord(name, "gt"))
            return '>';
        if (equalsWord(name, "lt"))
            return '<';
        if (equalsWord(name, "amp"))
            return '&';
        // "quote" for the apostrophe is deliberate.
        if (equalsWord(name, "quote"))
            return '\'';
        return 0xFFFF;
    }
    return ref->getRefCode() & 0xFFFF;
}

// ---- reading primitives --------------------------------------------------------------

int ZuXmlParser::nextChar() {
    if (_position >= _end)
        return 0;
    return *_position++;
}

void ZuXmlParser::previousChar() {
    if (_position > _text)
        --_position;
}

bool ZuXmlParser::parseChar(int c) {
    if (_position < _end && *_position == c) {
        ++_position;
        return true;
    }
    return false;
}

bool ZuXmlParser::parseS() {
    const unsigned short* start = _position;
    while (_position < _end && IsSpace_(*_position))
        ++_position;
    return _position != start;
}

bool ZuXmlParser::parseString(const char* s) {
    const unsigned short* start = _position;
    for (; *s; ++s) {
        if (nextChar() != static_cast<signed char>(*s)) {
            _position = start;
            return false;
        }
    }
    return true;
}

bool ZuXmlParser::parseIString(const char* s) {
    const unsigned short* start = _position;
    for (; *s; ++s) {
        int c = nextChar();
        int e = static_cast<signed char>(*s);
        if (c >= 'A' && c <= 'Z')
            c += 'a' - 'A';
        if (e >= 'A' && e <= 'Z')
            e += 'a' - 'A';
        if (c == 0 || c != e) {
            _position = start;
            return false;
        }
    }
    return true;
}

bool ZuXmlParser::parseEq() {
    const unsigned short* start = _position;
    parseS();
    if (!parseChar('=')) {
        _position = start;
        return false;
    }
    parseS();
    return true;
}

void ZuXmlParser::error(int code, ZuXmlError::Severity severity) {
    ZuXmlError::Set(severity, code, lineAt(_position));
}

// Line numbers are counted from a cached position, so that the errors that content
// parsing records and then clears cost no rescan from the start.
int ZuXmlParser::lineAt(const unsigned short* pos) {
    if (!_text || !pos)
        return 1;
    if (pos < _linePos) {
        _linePos = _text;
        _line = 1;
    }
    _line += GetLineNumber(_linePos, pos) - 1;
    _linePos = pos;
    return _line;
}

// ---- markers and text ----------------------------------------------------------------

char* ZuXmlParser::Marker::getBlock(const unsigned short* end, unsigned int drop) const {
    if (!_position || !end || end < _position || unsigned(end - _position) < drop)
        return nullptr;
    const unsigned short* stop = end - drop;
    const unsigned count = unsigned(stop - _position);
    if (isAscii(_position, stop)) {
        char* copy = new (std::nothrow) char[count + 1];
        if (!copy)
            return nullptr;
        for (unsigned i = 0; i < count; ++i)
            copy[i] = static_cast<char>(_position[i]);
        copy[count] = '\0';
        return copy;
    }
    unsigned length = 0;
    const unsigned char* utf8 = ZuI18n::Utf16ToUtf8(length, count, _position);
    if (!utf8)
        return nullptr;
    char* copy = new (std::nothrow) char[length + 1];
    if (!copy)
        return nullptr;
    std::memcpy(copy, utf8, length);
    copy[length] = '\0';
    return copy;
}

char* ZuXmlParser::scratch(unsigned int size) {
    ZuMemoryPool& pool = ZuCharPool::_Pool;
    if (size > _scratchSize)
        _scratchSize = size;
    if (!_scratchBlock)
        return static_cast<char*>(pool.take(_scratchBlock, size, true));
    return static_cast<char*>(pool.grow(_scratchBlock, size, false));
}

const char* ZuXmlParser::scratchUtf8(const unsigned short* from, const unsigned short* to) {
    const unsigned count = unsigned(to - from);
    if (isAscii(from, to)) {
        char* out = scratch(count + 1);
        if (!out)
            return nullptr;
        for (unsigned i = 0; i < count; ++i)
            out[i] = static_cast<char>(from[i]);
        out[count] = '\0';
        return out;
    }
    unsigned length = 0;
    const unsigned char* utf8 = ZuI18n::Utf16ToUtf8(length, count, from);
    if (!utf8)
        return nullptr;
    char* out = scratch(length + 1);
    if (!out)
        return nullptr;
    std::memcpy(out, utf8, length);
    out[length] = '\0';
    return out;
}

void ZuXmlParser::addNode(ZuXmlNodeI* node) {
    if (_current)
        _current->addChild(node);
    else
        _document->addNode(node);
}

void ZuXmlParser::addText(const char* utf8) {
    if (!utf8 || !*utf8)
        return;
    ZuXmlTextI* text = _document->createText();
    if (!text)
        return;
    text->setText(utf8);
    _document->textAdded(text);
    addNode(text);
}

void ZuXmlParser::addText(Marker& marker) {
    if (marker._position == _position)
        return;
    // The temporary copy lives in the parser's scratch block.
    addText(scratchUtf8(marker._position, _position));
}
