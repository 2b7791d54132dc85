// Documents: the interface defaults (notifications, node factories) and ZuXmlDocument
// with its list of top-level nodes.
#include <zu/xml.h>

#include <new>

namespace {

void deleteNode(void* node, void*) { delete static_cast<ZuXmlNodeI*>(node); }
void deleteString(void* s, void*) { delete[] static_cast<char*>(s); }

// The factory's node when it makes one, else an empty node of the default class.
template <class Interface, class Concrete>
Interface* makeLeaf(ZuXmlNodeFactory* factory, Interface* (ZuXmlNodeFactory::*create)()) {
    if (factory) {
        if (Interface* node = (factory->*create)())
            return node;
    }
    return new (std::nothrow) Concrete();
}

} // namespace

// ---- node factory hook ---------------------------------------------------------------

ZuXmlNodeFactory::~ZuXmlNodeFactory() {}
ZuXmlAttributeI* ZuXmlNodeFactory::createAttribute(ZuXmlElementI*, char*, char*) { return nullptr; }
ZuXmlElementI* ZuXmlNodeFactory::createElement(char*) { return nullptr; }
ZuXmlTextI* ZuXmlNodeFactory::createText() { return nullptr; }
ZuXmlCommentI* ZuXmlNodeFactory::createComment() { return nullptr; }
ZuXmlCharRefI* ZuXmlNodeFactory::createCharRef() { return nullptr; }
ZuXmlPII* ZuXmlNodeFactory::createPI() { return nullptr; }
ZuXmlCDataI* ZuXmlNodeFactory::createCData() { return nullptr; }

// ---- interface -----------------------------------------------------------------------

ZuXmlDocumentI::~ZuXmlDocumentI() {}

void ZuXmlDocumentI::startElement(ZuXmlElementI*) {}
void ZuXmlDocumentI::attributeAdded(ZuXmlElementI*, ZuXmlAttributeI*) {}
void ZuXmlDocumentI::endElement(ZuXmlElementI*) {}
void ZuXmlDocumentI::textAdded(ZuXmlTextI*) {}
void ZuXmlDocumentI::commentAdded(ZuXmlCommentI*) {}
void ZuXmlDocumentI::charRefAdded(ZuXmlCharRefI*) {}
void ZuXmlDocumentI::processingInstructionAdded(ZuXmlPII*) {}
void ZuXmlDocumentI::cDataAdded(ZuXmlCDataI*) {}

ZuXmlAttributeI* ZuXmlDocumentI::createAttribute(ZuXmlElementI* element, char* name,
                                                 char* value) const {
    if (element) {
        if (ZuXmlAttributeI* attribute = element->createAttribute(name, value))
            return attribute;
    }
    if (ZuXmlNodeFactory* factory = getNodeFactory()) {
        if (ZuXmlAttributeI* attribute = factory->createAttribute(element, name, value))
            return attribute;
    }
    ZuXmlAttribute* attribute = new (std::nothrow) ZuXmlAttribute(nullptr, nullptr);
    if (attribute) {
        attribute->storeName(name);
        attribute->storeValue(value);
    }
    return attribute;
}

ZuXmlElementI* ZuXmlDocumentI::createElement(char* tag) const {
    if (ZuXmlNodeFactory* factory = getNodeFactory()) {
        if (ZuXmlElementI* element = factory->createElement(tag))
            return element;
    }
    ZuXmlElement* element = new (std::nothrow) ZuXmlElement(nullptr);
    if (element)
        element->storeTag(tag);
    return element;
}

ZuXmlTextI* ZuXmlDocumentI::createText() const {
    return makeLeaf<ZuXmlTextI, ZuXmlText>(getNodeFactory(), &ZuXmlNodeFactory::createText);
}

ZuXmlCommentI* ZuXmlDocumentI::createComment() const {
    return makeLeaf<ZuXmlCommentI, ZuXmlComment>(getNodeFactory(), &ZuXmlNodeFactory::createComment);
}

ZuXmlCharRefI* ZuXmlDocumentI::createCharRef() const {
    return makeLeaf<ZuXmlCharRefI, ZuXmlCharRef>(getNodeFactory(), &ZuXmlNodeFactory::createCharRef);
}

ZuXmlPII* ZuXmlDocumentI::createPI() const {
    return makeLeaf<ZuXmlPII, ZuXmlPI>(getNodeFactory(), &ZuXmlNodeFactory::createPI);
}

ZuXmlCDataI* ZuXmlDocumentI::createCData() const {
    return makeLeaf<ZuXmlCDataI, ZuXmlCData>(getNodeFactory(), &ZuXmlNodeFactory::createCData);
}

ZuXmlNodeFactory* ZuXmlDocumentI::getNodeFactory() const { return nullptr; }
const char* ZuXmlDocumentI::getVersion() const { return "1.0"; }
const char* ZuXmlDocumentI::getDoctypeName() const { return nullptr; }
const char* ZuXmlDocumentI::getDoctypeRest() const { return nullptr; }
void ZuXmlDocumentI::empty() {}
ZuXmlNodeIteratorI* ZuXmlDocumentI::createNodesIterator() const { return nullptr; }
void ZuXmlDocumentI::storeVersion(char* version) { delete[] version; }

void ZuXmlDocumentI::storeDoctype(char* name, char* rest) {
    delete[] name;
    delete[] rest;
}

void ZuXmlDocumentI::read(std::istream& in) {
    empty();
    ZuXmlParser parser(in, this);
}

// ---- ZuXmlDocument -------------------------------------------------------------------

ZuXmlDocument::ZuXmlDocument() : _version(nullptr), _doctypeName(nullptr), _doctypeRest(nullptr) {}

ZuXmlDocument::~ZuXmlDocument() {
    delete[] _version;
    delete[] _doctypeName;
    delete[] _doctypeRest;
    _replaced.apply(deleteString, nullptr);
    empty();
}

void ZuXmlDocument::addNode(ZuXmlNodeI* node) {
    if (node)
        _nodes.a(node);
}

const char* ZuXmlDocument::getVersion() const { return _version ? _version : "1.0"; }
const char* ZuXmlDocument::getDoctypeName() const { return _doctypeName; }
const char* ZuXmlDocument::getDoctypeRest() const { return _doctypeRest; }

void ZuXmlDocument::empty() {
    _nodes.apply(deleteNode, nullptr);
    _nodes.clear();
}

ZuXmlNodeIteratorI* ZuXmlDocument::createNodesIterator() const {
    return new (std::nothrow) ZuXmlNodeListIterator(_nodes);
}

void ZuXmlDocument::storeVersion(char* version) {
    if (_version && _version != version)
        _replaced.a(_version);
    _version = version;
}

void ZuXmlDocument::storeDoctype(char* name, char* rest) {
    if (_doctypeName && _doctypeName != name)
        _replaced.a(_doctypeName);
    if (_doctypeRest && _doctypeRest != rest)
        _replaced.a(_doctypeRest);
    _doctypeName = name;
    _doctypeRest = rest;
}

ZuXmlElement* ZuXmlDocument::getRootElement() const {
    for (Zu_List::Cell* c = _nodes._first; c; c = c->_next) {
        ZuXmlNodeI* node = static_cast<ZuXmlNodeI*>(c->_value);
        if (node->getType() == ZuXmlNodeI::ElementNode)
            return dynamic_cast<ZuXmlElement*>(node);
    }
    return nullptr;
}
