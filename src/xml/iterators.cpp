// Node iterators over lists, arrays and plain pointer arrays, and the holder that
// deletes the iterator it is given.
#include <zu/xml.h>

ZuXmlNodeIteratorI::~ZuXmlNodeIteratorI() {}

ZuXmlNodeIterator::ZuXmlNodeIterator(ZuXmlNodeIteratorI* iterator) : _iterator(iterator) {}
ZuXmlNodeIterator::~ZuXmlNodeIterator() { delete _iterator; }
bool ZuXmlNodeIterator::hasMoreNodes() const { return _iterator && _iterator->hasMoreNodes(); }
ZuXmlNodeI* ZuXmlNodeIterator::getNextNode() { return _iterator ? _iterator->getNextNode() : nullptr; }

ZuXmlNodeListIterator::ZuXmlNodeListIterator(const Zu_List& list) : Zu_LIterator(list) {}
bool ZuXmlNodeListIterator::hasMoreNodes() const { return _cell != nullptr; }

ZuXmlNodeI* ZuXmlNodeListIterator::getNextNode() {
    return static_cast<ZuXmlNodeI*>(nextElement());
}

ZuXmlNodeArrayIterator::ZuXmlNodeArrayIterator(const ZuArray& array) : _array(array), _index(0) {}
bool ZuXmlNodeArrayIterator::hasMoreNodes() const { return _index < _array.getLength(); }

ZuXmlNodeI* ZuXmlNodeArrayIterator::getNextNode() {
    if (_index >= _array.getLength())
        return nullptr;
    return static_cast<ZuXmlNodeI*>(_array[_index++]);
}

ZuXmlNodePtrArrayIterator::ZuXmlNodePtrArrayIterator(unsigned int count,
                                                     const ZuXmlNodeI* const* nodes)
    : _count(nodes ? count : 0), _nodes(nodes), _index(0) {}

bool ZuXmlNodePtrArrayIterator::hasMoreNodes() const { return _index < _count; }

ZuXmlNodeI* ZuXmlNodePtrArrayIterator::getNextNode() {
    if (_index >= _count)
        return nullptr;
    return const_cast<ZuXmlNodeI*>(_nodes[_index++]);
}
