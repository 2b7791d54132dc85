#ifndef ZU_SRC_ALLOC_SAFE_ITERATORS_H
#define ZU_SRC_ALLOC_SAFE_ITERATORS_H

// The chain of safe iterators a list keeps, shared by Zu_List and Zu_AList: each
// iterator has _list, _cell and _nextIterator, and the list holds the newest first.

namespace {

// The list is going away: every iterator forgets it and becomes harmless.
template <class It> void detachIterators(It*& head) {
    for (It* it = head; it;) {
        It* next = it->_nextIterator;
        it->_list = nullptr;
        it->_cell = nullptr;
        it->_nextIterator = nullptr;
        it = next;
    }
    head = nullptr;
}

// The list was emptied: every iterator stands at the end.
template <class It> void endIterators(It* head) {
    for (It* it = head; it; it = it->_nextIterator) it->_cell = nullptr;
}

// Cell c is leaving: iterators standing on it move to its successor.
template <class It, class Cell> void stepIteratorsOff(It* head, Cell* c) {
    for (It* it = head; it; it = it->_nextIterator)
        if (it->_cell == c) it->_cell = c->_next;
}

// An iterator already in the chain stays where it is: linking it again would close
// the chain into a cycle.
template <class It> void linkIterator(It*& head, It* it) {
    if (!it) return;
    for (It* in = head; in; in = in->_nextIterator)
        if (in == it) return;
    it->_nextIterator = head;
    head = it;
}

template <class It> void unlinkIterator(It*& head, It* it) {
    for (It** link = &head; *link; link = &(*link)->_nextIterator) {
        if (*link == it) {
            *link = it->_nextIterator;
            it->_nextIterator = nullptr;
            return;
        }
    }
}

// Copy assignment of a safe iterator: leaves its old list's chain, joins the new one.
template <class It> It& assignIterator(It& self, const It& other) {
    if (&self == &other) return self;
    if (self._list) self._list->ri(&self);
    self._list = other._list;
    self._cell = other._cell;
    self._nextIterator = nullptr;
    if (self._list) self._list->ai(&self);
    return self;
}

} // namespace

#endif
