// Elements: the interface defaults (attribute storage through the document, lookups over
// iterators) and ZuXmlElement with its child and attribute lists.
#include <zu/xml.h>

#include "xml/strings.h"

#include <cstring>
#include <new>
#include <typeinfo>

using zu_xml::duplicate;
using zu_xml::replace;

namespace {

bool sameName(const char* a, const char* b) {
    if (!a || !b)
        return a == b;
    return std::strcmp(a, b) == 0;
}

void deleteNode(void* node, void*) { delete static_cast<ZuXmlNodeI*>(node); }

} // namespace

// ---- interface -----------------------------------------------------------------------

unsigned int ZuXmlElementI::getType() const { return ElementNode; }
void ZuXmlElementI::setTag(const char* tag) { storeTag(duplicate(tag)); }
void ZuXmlElementI::addChild(ZuXmlNodeI* child) { delete child; }
void ZuXmlElementI::addAttribute(ZuXmlAttributeI* attribute) { delete attribute; }
ZuXmlElementI* ZuXmlElementI::createChildElement(char*) const { return nullptr; }
ZuXmlAttributeI* ZuXmlElementI::createAttribute(char*, char*) const { return nullptr; }
bool ZuXmlElementI::doesPreserveWhiteSpaces() const { return false; }
void ZuXmlElementI::preserveWhiteSpaces(bool) {}
const char* ZuXmlElementI::getText() const { return nullptr; }
ZuXmlNodeIteratorI* ZuXmlElementI::createChildrenIterator() const { return nullptr; }
ZuXmlNodeIteratorI* ZuXmlElementI::createAttributesIterator() const { return nullptr; }

void ZuXmlElementI::storeAttribute(ZuXmlDocumentI* doc, char* name, char* value) {
    ZuXmlAttributeI* attribute = nullptr;
    if (doc) {
        attribute = doc->createAttribute(this, name, value);
    } else {
        attribute = new (std::nothrow) ZuXmlAttribute(nullptr, nullptr);
        if (attribute) {
            attribute->storeName(name);
            attribute->storeValue(value);
        }
    }
    if (!attribute) {
        // Nobody took the strings.
        delete[] name;
        delete[] value;
        return;
    }
    if (doc)
        doc->attributeAdded(this, attribute);
    addAttribute(attribute);
}

ZuXmlAttributeI* ZuXmlElementI::getAttribute(const char* name) const {
    ZuXmlNodeIterator it(createAttributesIterator());
    while (ZuXmlNodeI* node = it.getNextNode()) {
        ZuXmlAttributeI* attribute = static_cast<ZuXmlAttributeI*>(node);
        if (sameName(attribute->getName(), name))
            return attribute;
    }
    return nullptr;
}

const char* ZuXmlElementI::getAttributeValue(const char* name) const {
    const ZuXmlAttributeI* attribute = getAttribute(name);
    return attribute ? attribute->getValue() : nullptr;
}

// ---- ZuXmlElement --------------------------------------------------------------------

ZuXmlElement::ZuXmlElement(const char* tag) : _tag(duplicate(tag)), _preserveWhiteSpaces(false) {}

ZuXmlElement::~ZuXmlElement() {
    _attributes.apply(deleteNode, nullptr);
    _attributes.clear();
    // Deep trees are deleted without deep recursion: the children of a plain ZuXmlElement
    // child are moved to the end of this chain before that child is deleted. Each cell is
    // freed as it is passed.
    _children.e();
    Zu_List::Cell* cell = _children._first;
    Zu_List::Cell* last = _children._last;
    _children._first = _children._last = nullptr;
    _children._length = 0;
    while (cell) {
        ZuXmlNodeI* node = static_cast<ZuXmlNodeI*>(cell->_value);
        if (node && typeid(*node) == typeid(ZuXmlElement)) {
            Zu_List& grandChildren = static_cast<ZuXmlElement*>(node)->_children;
            if (grandChildren._first) {
                grandChildren.e();
                last->_next = grandChildren._first;
                last = grandChildren._last;
                grandChildren._first = grandChildren._last = nullptr;
                grandChildren._length = 0;
            }
        }
        Zu_List::Cell* next = cell->_next;
        cell->_next = nullptr;
        delete cell;
        delete node;
        cell = next;
    }
    delete[] _tag;
}

const char* ZuXmlElement::getTag() const { return _tag; }
void ZuXmlElement::storeTag(char* tag) { replace(_tag, tag); }

void ZuXmlElement::addChild(ZuXmlNodeI* child) {
    if (child)
        _children.a(child);
}

void ZuXmlElement::addAttribute(ZuXmlAttributeI* attribute) {
    if (attribute)
        _attributes.a(attribute);
}

ZuXmlAttributeI* ZuXmlElement::getAttribute(const char* name) const {
    for (Zu_List::Cell* c = _attributes._first; c; c = c->_next) {
        ZuXmlAttributeI* attribute = static_cast<ZuXmlAttributeI*>(c->_value);
        if (sameName(attribute->getName(), name))
            return attribute;
    }
    return nullptr;
}

bool ZuXmlElement::doesPreserveWhiteSpaces() const { return _preserveWhiteSpaces; }
void ZuXmlElement::preserveWhiteSpaces(bool preserve) { _preserveWhiteSpaces = preserve; }

const char* ZuXmlElement::getText() const {
    for (Zu_List::Cell* c = _children._first; c; c = c->_next) {
        const ZuXmlNodeI* node = static_cast<const ZuXmlNodeI*>(c->_value);
        if (node->getType() == TextNode)
            return static_cast<const ZuXmlTextI*>(node)->getText();
    }
    return nullptr;
}

ZuXmlNodeIteratorI* ZuXmlElement::createChildrenIterator() const {
    return new (std::nothrow) ZuXmlNodeListIterator(_children);
}

ZuXmlNodeIteratorI* ZuXmlElement::createAttributesIterator() const {
    return new (std::nothrow) ZuXmlNodeListIterator(_attributes);
}

ZuXmlElement* ZuXmlElement::getElement(const char* tag, ZuXmlNodeI* after) const {
    Zu_List::Cell* c = _children._first;
    if (after) {
        while (c && c->_value != after)
            c = c->_next;
        if (!c)
            return nullptr;
        c = c->_next;
    }
    for (; c; c = c->_next) {
        ZuXmlNodeI* node = static_cast<ZuXmlNodeI*>(c->_value);
        if (node->getType() != ElementNode)
            continue;
        ZuXmlElement* element = dynamic_cast<ZuXmlElement*>(node);
        if (element && sameName(element->getTag(), tag))
            return element;
    }
    return nullptr;
}
