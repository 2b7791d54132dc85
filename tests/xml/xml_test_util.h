// Helpers shared by the XML tests: parse a string into a document and read the error
// record, write a document to a string.
#ifndef ZU_TESTS_XML_TEST_UTIL_H
#define ZU_TESTS_XML_TEST_UTIL_H

#include <zu/xml.h>

#include <cstring>
#include <sstream>
#include <string>

struct XmlOutcome {
    int code;
    int severity;
    int line;
    std::string name; // "" when Get returns null
};

// Resets the error record, reads text into doc and returns the record.
inline XmlOutcome parseInto(ZuXmlDocumentI& doc, const std::string& text) {
    ZuXmlError::Reset();
    std::istringstream in(text);
    doc.read(in);
    ZuXmlError::Severity severity;
    int code = 0, line = 0;
    const char* name = ZuXmlError::Get(severity, code, line);
    return {code, int(severity), line, name ? name : ""};
}

// s in UTF-16, little- or big-endian.
inline std::string utf16(const std::u16string& s, bool big) {
    std::string bytes;
    for (char16_t u : s)
        bytes += big ? std::string{char(u >> 8), char(u)} : std::string{char(u), char(u >> 8)};
    return bytes;
}

inline std::string written(const ZuXmlDocumentI& doc) {
    std::ostringstream out;
    doc.write(out);
    return out.str();
}

// A new[] copy, for the storing operations.
inline char* newString(const char* s) {
    char* copy = new char[std::strlen(s) + 1];
    std::strcpy(copy, s);
    return copy;
}

// A new text node holding a copy of text.
inline ZuXmlText* textNode(const char* text) {
    ZuXmlText* node = new ZuXmlText;
    node->setText(text);
    return node;
}

inline unsigned nodeCount(const ZuXmlDocument& doc) { return doc.getNodes().getLength(); }

#endif
