// The leaf nodes and attributes: interface defaults (setters that copy) and the
// concrete classes holding the strings.
#include <zu/xml.h>

#include "xml/strings.h"

#include <cstring>
#include <new>

using zu_xml::duplicate;
using zu_xml::replace;

ZuXmlNodeI::~ZuXmlNodeI() {}

// ---- attribute -----------------------------------------------------------------------

unsigned int ZuXmlAttributeI::getType() const { return AttributeNode; }
void ZuXmlAttributeI::setName(const char* name) { storeName(duplicate(name)); }
void ZuXmlAttributeI::setValue(const char* value) { storeValue(duplicate(value)); }

ZuXmlAttribute::ZuXmlAttribute(const char* name, const char* value)
    : _name(duplicate(name)), _value(duplicate(value)) {}

ZuXmlAttribute::~ZuXmlAttribute() {
    delete[] _name;
    delete[] _value;
}

const char* ZuXmlAttribute::getName() const { return _name; }
void ZuXmlAttribute::storeName(char* name) { replace(_name, name); }
const char* ZuXmlAttribute::getValue() const { return _value; }
void ZuXmlAttribute::storeValue(char* value) { replace(_value, value); }

// ---- text ----------------------------------------------------------------------------

unsigned int ZuXmlTextI::getType() const { return TextNode; }
void ZuXmlTextI::setText(const char* text) { storeText(duplicate(text)); }

void ZuXmlTextI::appendText(const char* text) {
    const char* old = getText();
    if (!old) {
        setText(text);
        return;
    }
    if (!text || !*text)
        return;
    const size_t a = std::strlen(old);
    const size_t b = std::strlen(text);
    char* joined = new (std::nothrow) char[a + b + 1];
    if (!joined)
        return;
    std::memcpy(joined, old, a);
    std::memcpy(joined + a, text, b + 1);
    storeText(joined);
}

ZuXmlText::ZuXmlText() : _text(nullptr) {}
ZuXmlText::~ZuXmlText() { delete[] _text; }
const char* ZuXmlText::getText() const { return _text; }
void ZuXmlText::storeText(char* text) { replace(_text, text); }
void ZuXmlText::appendText(const char* text) { ZuXmlTextI::appendText(text); }

// ---- comment -------------------------------------------------------------------------

unsigned int ZuXmlCommentI::getType() const { return CommentNode; }
void ZuXmlCommentI::setComment(const char* comment) { storeComment(duplicate(comment)); }

ZuXmlComment::ZuXmlComment() : _comment(nullptr) {}
ZuXmlComment::~ZuXmlComment() { delete[] _comment; }
const char* ZuXmlComment::getComment() const { return _comment; }
void ZuXmlComment::storeComment(char* comment) { replace(_comment, comment); }

// ---- CDATA ---------------------------------------------------------------------------

unsigned int ZuXmlCDataI::getType() const { return CDataNode; }
void ZuXmlCDataI::setData(const char* data) { storeData(duplicate(data)); }

ZuXmlCData::ZuXmlCData() : _data(nullptr) {}
ZuXmlCData::~ZuXmlCData() { delete[] _data; }
const char* ZuXmlCData::getData() const { return _data; }
void ZuXmlCData::storeData(char* data) { replace(_data, data); }

// ---- processing instruction ----------------------------------------------------------

unsigned int ZuXmlPII::getType() const { return PINode; }
void ZuXmlPII::setTarget(const char* target) { storeTarget(duplicate(target)); }
void ZuXmlPII::setData(const char* data) { storeData(duplicate(data)); }

ZuXmlPI::ZuXmlPI() : _target(nullptr), _data(nullptr) {}

ZuXmlPI::~ZuXmlPI() {
    delete[] _target;
    delete[] _data;
}

const char* ZuXmlPI::getTarget() const { return _target; }
void ZuXmlPI::storeTarget(char* target) { replace(_target, target); }
const char* ZuXmlPI::getData() const { return _data; }
void ZuXmlPI::storeData(char* data) { replace(_data, data); }

// ---- character reference -------------------------------------------------------------

unsigned int ZuXmlCharRefI::getType() const { return CharRefNode; }

void ZuXmlCharRefI::setRefName(const char* name) {
    setRefCode(-1);
    storeRefName(duplicate(name));
}

ZuXmlCharRef::ZuXmlCharRef() : _code(0), _name(nullptr) {}
ZuXmlCharRef::~ZuXmlCharRef() { delete[] _name; }
int ZuXmlCharRef::getRefCode() const { return _code; }

void ZuXmlCharRef::setRefCode(int code) {
    replace(_name, nullptr);
    _code = code;
}

const char* ZuXmlCharRef::getRefName() const { return _name; }

void ZuXmlCharRef::storeRefName(char* name) {
    replace(_name, name);
    _code = -1;
}
