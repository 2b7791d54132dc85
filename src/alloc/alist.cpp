// Zu_AList, its cells and its iterators.
#include <zu/alloc.h>
#include <zu/list.h>

#include "safe_iterators.h"

static_assert(sizeof(Zu_AList::Cell) == 24, "association cells are 24-byte manager cells");

// ---- Cell --------------------------------------------------------------------------

Zu_AList::Cell::~Cell() {
    // Iterative, so that a long chain does not exhaust the stack.
    Cell* next = _next;
    while (next) {
        Cell* after = next->_next;
        next->_next = nullptr;
        delete next;
        next = after;
    }
}

void* Zu_AList::Cell::operator new(size_t size) noexcept { return ZuMemoryManager::GetInstance()->alloc(size); }

void Zu_AList::Cell::operator delete(void* p, size_t size) {
    ZuMemoryManager::GetInstance()->release(p, size);
}

// ---- Zu_AList ----------------------------------------------------------------------

Zu_AList::~Zu_AList() {
    d();
    delete _first;
}

void* Zu_AList::operator new(size_t size) noexcept { return ZuMemoryManager::GetInstance()->alloc(size); }

void Zu_AList::operator delete(void* p, size_t size) { ZuMemoryManager::GetInstance()->release(p, size); }

Zu_AList::Cell* Zu_AList::a(void* key, void* value) {
    Cell* cell = new Cell(key, value);
    if (!cell)
        return nullptr;
    if (!_first) {
        _first = cell;
    } else {
        Cell* last = _first;
        while (last->_next)
            last = last->_next;
        last->_next = cell;
    }
    ++_length;
    return cell;
}

Zu_AList::Cell* Zu_AList::i(void* key, void* value, int index) {
    if (index < 0)
        return a(key, value);
    Cell* cell = new Cell(key, value);
    if (!cell)
        return nullptr;
    if (index == 0 || !_first) {
        cell->_next = _first;
        _first = cell;
    } else {
        Cell* before = _first;
        for (int step = 1; step < index && before->_next; ++step)
            before = before->_next;
        cell->_next = before->_next;
        before->_next = cell;
    }
    ++_length;
    return cell;
}

Zu_AList::Cell* Zu_AList::gfc(void* key, Cell** previous) const {
    Cell* before = nullptr;
    for (Cell* c = _first; c; before = c, c = c->_next) {
        if (c->_key == key) {
            if (previous)
                *previous = before;
            return c;
        }
    }
    return nullptr;
}

Zu_AList::Cell* Zu_AList::gc(void* key, void* value, Cell** previous) const {
    Cell* before = nullptr;
    for (Cell* c = _first; c; before = c, c = c->_next) {
        if (c->_key == key && c->_value == value) {
            if (previous)
                *previous = before;
            return c;
        }
    }
    return nullptr;
}

void* Zu_AList::g(void* key) const {
    Cell* c = gfc(key, nullptr);
    return c ? c->_value : nullptr;
}

bool Zu_AList::f(void* key, void** value) const {
    Cell* c = gfc(key, nullptr);
    if (c && value)
        *value = c->_value;
    return c != nullptr;
}

bool Zu_AList::r(void* key, void* value) {
    Cell* c = gfc(key, nullptr);
    if (c)
        c->_value = value;
    return c != nullptr;
}

void Zu_AList::unlink(Cell* cell, Cell* previous) {
    n(cell);
    if (previous)
        previous->_next = cell->_next;
    else
        _first = cell->_next;
    cell->_next = nullptr;
    --_length;
    delete cell;
}

bool Zu_AList::rm(void* key) {
    Cell* previous = nullptr;
    Cell* c = gfc(key, &previous);
    if (c)
        unlink(c, previous);
    return c != nullptr;
}

bool Zu_AList::rm(void* key, void* value) {
    Cell* previous = nullptr;
    Cell* c = gc(key, value, &previous);
    if (c)
        unlink(c, previous);
    return c != nullptr;
}

void Zu_AList::apply(void (*f)(void*, void*, void*), void* arg) {
    if (!f)
        return;
    for (Cell* c = _first; c;) {
        Cell* next = c->_next;
        f(c->_key, c->_value, arg);
        c = next;
    }
}

void* Zu_AList::mapUntil(void* (*f)(void*, void*, void*, void*), void* arg, void* sentinel) const {
    void* r = sentinel;
    if (!f)
        return r;
    for (const Cell* c = _first; c; c = c->_next) {
        r = f(c->_key, c->_value, arg, sentinel);
        if (r != sentinel)
            break;
    }
    return r;
}

void Zu_AList::clear() {
    e();
    delete _first;
    _first = nullptr;
    _length = 0;
}

// ---- safe iterator registry ----------------------------------------------------------

void Zu_AList::d() const { detachIterators(_iterators); }

void Zu_AList::e() const { endIterators(_iterators); }

void Zu_AList::n(Cell* c) const { stepIteratorsOff(_iterators, c); }

void Zu_AList::ai(Zu_SALIterator* it) const { linkIterator(_iterators, it); }

void Zu_AList::ri(Zu_SALIterator* it) const { unlinkIterator(_iterators, it); }

// ---- iterators -----------------------------------------------------------------------

Zu_SALIterator::Zu_SALIterator(const Zu_AList& list) : Zu_ALIterator(list), _nextIterator(nullptr) {
    list.ai(this);
}

Zu_SALIterator::Zu_SALIterator(const Zu_SALIterator& other)
    : Zu_ALIterator(other), _nextIterator(nullptr) {
    if (_list)
        _list->ai(this);
}

Zu_SALIterator& Zu_SALIterator::operator=(const Zu_SALIterator& other) {
    return assignIterator(*this, other);
}

Zu_SALIterator::~Zu_SALIterator() {
    if (_list)
        _list->ri(this);
}
