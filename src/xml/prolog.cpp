// Productions outside elements: the XML declaration, Misc (comments, processing
// instructions, white space), the DOCTYPE declaration, and CDATA sections.
#include <zu/xml.h>

#include "xml/chars.h"

using namespace zu_xml;

namespace {

bool isQuote(int c) { return c == '\'' || c == '"'; }

bool isVersionChar(int c) {
    return IsAlpha_(c) || (c >= '0' && c <= '9') || c == '_' || c == '.' || c == ':' || c == '-';
}

bool isEncodingChar(int c) { return IsAlpha_(c) || IsDigit_(c) || c == '_' || c == '.' || c == '-'; }

// The PubidChar production of XML 1.0.
bool isPubidChar(int c) {
    if (c == 0x20 || c == 0x0D || c == 0x0A || IsAlpha_(c) || (c >= '0' && c <= '9'))
        return true;
    switch (c) {
    case '-': case '\'': case '(': case ')': case '+': case ',': case '.': case '/': case ':':
    case '=': case '?': case ';': case '!': case '*': case '#': case '@': case '$': case '_':
    case '%':
        return true;
    default:
        return false;
    }
}

char lower(char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; }

// A target beginning with x, m, l in any case, other than "xml-stylesheet".
bool isReservedTarget(const char* target) {
    static const char Stylesheet[] = "xml-stylesheet";
    const char* s = target;
    const char* w = Stylesheet;
    while (*s && *w && lower(*s) == *w) {
        ++s;
        ++w;
    }
    if (!*s && !*w)
        return false;
    return lower(target[0]) == 'x' && lower(target[1]) == 'm' && lower(target[2]) == 'l';
}

} // namespace

bool ZuXmlParser::parseProlog() {
    parseXMLDecl();
    if (ZuXmlError::IsSet())
        return false;
    parseMiscs();
    if (ZuXmlError::IsSet())
        return false;
    if (parseDoctypedecl())
        parseMiscs();
    return !ZuXmlError::IsSet();
}

bool ZuXmlParser::parseXMLDecl() {
    if (!parseIString("<?xml"))
        return false;
    // An error left from an earlier parse fails here too.
    if (!parseVersionInfo() || ZuXmlError::IsSet())
        return false;
    parseEncodingDecl();
    if (ZuXmlError::IsSet())
        return false;
    parseSDDecl();
    if (ZuXmlError::IsSet())
        return false;
    parseS();
    if (!parseString("?>")) {
        error(ZuXmlError::InvalidDeclarationEnd);
        return false;
    }
    return true;
}

bool ZuXmlParser::parseAttribute(const char* name) {
    const unsigned short* start = _position;
    if (parseS() && parseString(name) && parseEq())
        return true;
    _position = start;
    return false;
}

bool ZuXmlParser::parseVersionInfo() {
    if (!parseAttribute("version")) {
        error(ZuXmlError::InvalidVersionInfo);
        return false;
    }
    const int quote = nextChar();
    const unsigned short* start = _position;
    if (!isQuote(quote) || !parseVersionNum()) {
        error(ZuXmlError::InvalidVersionInfo);
        return false;
    }
    const unsigned short* end = _position;
    if (nextChar() != quote) {
        error(ZuXmlError::InvalidVersionInfo);
        return false;
    }
    _document->storeVersion(Marker(*this, start).getBlock(end, 0));
    return true;
}

bool ZuXmlParser::parseVersionNum() {
    const unsigned short* start = _position;
    while (_position < _end && isVersionChar(*_position))
        ++_position;
    return _position != start;
}

bool ZuXmlParser::parseEncodingDecl() {
    if (!parseAttribute("encoding"))
        return false;
    const int quote = nextChar();
    if (!isQuote(quote)) {
        error(ZuXmlError::InvalidEncodingDeclaration);
        return false;
    }
    // The name is checked only: the decoding chosen when loading stands.
    const unsigned short* afterQuote = _position;
    if (IsAlpha_(nextChar())) {
        int c = nextChar();
        while (isEncodingChar(c))
            c = nextChar();
        if (c == quote)
            return true;
    }
    _position = afterQuote;
    error(ZuXmlError::InvalidEncodingName);
    return false;
}

bool ZuXmlParser::parseSDDecl() {
    if (!parseAttribute("standalone"))
        return false;
    const int quote = nextChar();
    if (isQuote(quote) && (parseString("yes") || parseString("no")) && nextChar() == quote)
        return true;
    error(ZuXmlError::InvalidSDDeclaration);
    return false;
}

bool ZuXmlParser::parseMisc() {
    if (parseComment())
        return true;
    if (ZuXmlError::IsSet())
        return false;
    if (parsePI())
        return true;
    if (ZuXmlError::IsSet())
        return false;
    return parseS();
}

bool ZuXmlParser::parseMiscs() {
    bool any = false;
    while (!ZuXmlError::IsSet() && parseMisc())
        any = true;
    return any;
}

bool ZuXmlParser::parseDoctypedecl() {
    if (!parseString("<!DOCTYPE"))
        return false;
    parseS();
    char* name = nullptr;
    if (!parseName(name)) {
        error(ZuXmlError::InvalidDoctypeName);
        return false;
    }
    const Marker marker(*this, _position);
    if (parseS()) {
        parseExternalID();
        if (ZuXmlError::IsSet()) {
            delete[] name;
            return false;
        }
    }
    parseS();
    // The internal subset is skipped unparsed, up to the first "]", then up to ">".
    int stop = parseChar('[') ? ']' : '>';
    for (;;) {
        const int c = nextChar();
        if (c == 0) {
            delete[] name;
            error(ZuXmlError::EarlyEndOfDocument);
            return false;
        }
        if (c != stop)
            continue;
        if (stop == '>')
            break;
        stop = '>';
    }
    _document->storeDoctype(name, marker.getBlock(_position, 1));
    return true;
}

bool ZuXmlParser::parseExternalID() {
    if (parseString("SYSTEM")) {
        parseS();
        return parseLiteral(false);
    }
    if (parseString("PUBLIC")) {
        parseS();
        if (!parseLiteral(true))
            return false;
        return parseS() ? parseLiteral(false) : true;
    }
    return false;
}

bool ZuXmlParser::parseLiteral(bool pubid) {
    const int quote = nextChar();
    if (!isQuote(quote)) {
        error(ZuXmlError::InvalidPubidLiteral);
        return false;
    }
    for (;;) {
        const int c = nextChar();
        if (c == 0) {
            error(ZuXmlError::EarlyEndOfDocument);
            return false;
        }
        if (c == quote)
            return true;
        if (pubid && !isPubidChar(c)) {
            error(ZuXmlError::InvalidPubidLiteral);
            return false;
        }
    }
}

bool ZuXmlParser::scanPast(int first, const char* rest, bool cdata) {
    for (;;) {
        const int c = nextChar();
        if (c == 0) {
            error(ZuXmlError::EarlyEndOfDocument);
            return false;
        }
        if (c == first && parseString(rest))
            return true;
        if (cdata && c < 32 && !IsSpace_(c)) {
            error(ZuXmlError::InvalidCData);
            return false;
        }
    }
}

bool ZuXmlParser::parseComment() {
    if (!parseString("<!--"))
        return false;
    const Marker marker(*this, _position);
    if (!scanPast('-', "-", false))
        return false;
    if (!parseChar('>')) {
        error(ZuXmlError::InvalidCommentChars);
        return false;
    }
    char* text = marker.getBlock(_position, 3);
    ZuXmlCommentI* comment = _document->createComment();
    if (!comment) {
        delete[] text;
        return true;
    }
    comment->storeComment(text);
    _document->commentAdded(comment);
    addNode(comment);
    return true;
}

bool ZuXmlParser::parsePI() {
    const unsigned short* start = _position;
    if (!parseString("<?"))
        return false;
    char* target = nullptr;
    if (!parseName(target)) {
        _position = start;
        return false;
    }
    // Recorded, and the instruction is still read (in content the record is cleared).
    if (isReservedTarget(target))
        error(ZuXmlError::ReservedPITargetName);
    parseS();
    const Marker marker(*this, _position);
    // An unterminated instruction ends the parse instead of scanning forever.
    if (!scanPast('?', ">", false)) {
        delete[] target;
        return false;
    }
    char* data = marker.getBlock(_position, 2);
    ZuXmlPII* pi = _document->createPI();
    if (!pi) {
        delete[] target;
        delete[] data;
        return true;
    }
    pi->storeTarget(target);
    pi->storeData(data);
    addNode(pi);
    return true;
}

bool ZuXmlParser::parseCDSect() {
    if (!parseString("<![CDATA["))
        return false;
    const Marker marker(*this, _position);
    if (!scanPast(']', "]>", true))
        return false;
    char* data = marker.getBlock(_position, 3);
    ZuXmlCDataI* cdata = _document->createCData();
    if (!cdata) {
        delete[] data;
        return true;
    }
    cdata->storeData(data);
    _document->cDataAdded(cdata);
    addNode(cdata);
    return true;
}

bool ZuXmlParser::parseCharData() { return false; }
