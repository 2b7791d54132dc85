// Zu_List, its cells and its iterators.
#include <zu/alloc.h>
#include <zu/list.h>

#include "safe_iterators.h"

static_assert(sizeof(Zu_List::Cell) == 16, "list cells are 16-byte manager cells");
static_assert(sizeof(Zu_List) == 32, "lists are 32-byte manager cells");

// ---- Cell --------------------------------------------------------------------------

Zu_List::Cell::~Cell() {
    // Iterative, so that a long chain does not exhaust the stack.
    Cell* next = _next;
    while (next) {
        Cell* after = next->_next;
        next->_next = nullptr;
        delete next;
        next = after;
    }
}

Zu_List::Cell* Zu_List::Cell::getLast() {
    Cell* c = this;
    while (c->_next)
        c = c->_next;
    return c;
}

unsigned Zu_List::Cell::getLength() const {
    unsigned length = 1;
    for (const Cell* c = _next; c; c = c->_next)
        ++length;
    return length;
}

void* Zu_List::Cell::operator[](unsigned i) const {
    const Cell* c = this;
    while (c && i--)
        c = c->_next;
    return c ? c->_value : nullptr;
}

bool Zu_List::Cell::setValue(unsigned i, void* v) {
    Cell* c = this;
    while (c && i--)
        c = c->_next;
    if (!c)
        return false;
    c->_value = v;
    return true;
}

Zu_List::Cell* Zu_List::Cell::find(void* v) {
    for (Cell* c = this; c; c = c->_next)
        if (c->_value == v)
            return c;
    return nullptr;
}

Zu_List::Cell* Zu_List::Cell::remove(void* v) {
    Cell* previous = nullptr;
    for (Cell* c = this; c; previous = c, c = c->_next) {
        if (c->_value != v)
            continue;
        Cell* head = previous ? this : c->_next;
        if (previous)
            previous->_next = c->_next;
        c->_next = nullptr;
        delete c;
        return head;
    }
    return this;
}

Zu_List::Cell* Zu_List::Cell::copy() const {
    Cell* head = new Cell(_value);
    Cell* tail = head;
    for (const Cell* c = _next; c && tail; c = c->_next) {
        tail->_next = new Cell(c->_value);
        tail = tail->_next;
    }
    return head; // shorter than the original only when memory ran out
}

void* Zu_List::Cell::mapUntil(void* (*f)(void*, void*, void*), void* arg, void* sentinel) const {
    void* r = nullptr;
    if (!f)
        return r;
    for (const Cell* c = this; c; c = c->_next) {
        r = f(c->_value, arg, sentinel);
        if (r != sentinel)
            break;
    }
    return r;
}

void Zu_List::Cell::apply(void (*f)(void*, void*), void* arg) {
    if (!f)
        return;
    for (Cell* c = this; c;) {
        Cell* next = c->_next;
        f(c->_value, arg);
        c = next;
    }
}

void* Zu_List::Cell::operator new(size_t size) noexcept { return ZuMemoryManager::GetInstance()->alloc(size); }

void Zu_List::Cell::operator delete(void* p, size_t size) {
    ZuMemoryManager::GetInstance()->release(p, size);
}

// ---- Zu_List -----------------------------------------------------------------------

Zu_List::~Zu_List() {
    d();
    delete _first;
}

void* Zu_List::operator new(size_t size) noexcept { return ZuMemoryManager::GetInstance()->alloc(size); }

void Zu_List::operator delete(void* p, size_t size) { ZuMemoryManager::GetInstance()->release(p, size); }

void Zu_List::a(void* v) { append(new Cell(v)); }

void Zu_List::i(void* v, int index) { insert(new Cell(v), index); }

void Zu_List::append(Cell* cell) {
    if (!cell)
        return;
    cell->_next = nullptr;
    if (_last)
        _last->_next = cell;
    else
        _first = cell;
    _last = cell;
    ++_length;
}

void Zu_List::insert(Cell* cell, int index) {
    if (!cell)
        return;
    if (index < 0) {
        append(cell);
        return;
    }
    if (index == 0 || !_first) {
        cell->_next = _first;
        _first = cell;
        if (!_last)
            _last = cell;
        ++_length;
        return;
    }
    Cell* before = _first;
    for (int step = 1; step < index && before->_next; ++step)
        before = before->_next;
    cell->_next = before->_next;
    before->_next = cell;
    if (before == _last)
        _last = cell;
    ++_length;
}

Zu_List::Cell* Zu_List::removeCell(void* v) {
    Cell* previous = nullptr;
    Cell* c = _first;
    while (c && c->_value != v) {
        previous = c;
        c = c->_next;
    }
    if (!c)
        return nullptr;
    n(c);
    if (previous)
        previous->_next = c->_next;
    else
        _first = c->_next;
    if (_last == c)
        _last = previous;
    c->_next = nullptr;
    --_length;
    return c;
}

bool Zu_List::r(void* v) {
    Cell* c = removeCell(v);
    delete c;
    return c != nullptr;
}

void Zu_List::push(void* v) {
    if (_first == _last)
        return;
    for (Cell* c = _first; c->_next; c = c->_next) {
        if (c->_next->_value == v) {
            c->_next->_value = c->_value;
            c->_value = v;
            return;
        }
    }
}

void Zu_List::pop(void* v) {
    if (_first == _last)
        return;
    Cell* c = _first->find(v);
    if (c && c->_next) {
        c->_value = c->_next->_value;
        c->_next->_value = v;
    }
}

void Zu_List::swap(void* a, void* b) {
    if (!_first)
        return;
    Cell* ca = _first->find(a);
    Cell* cb = _first->find(b);
    if (!ca || !cb)
        return;
    ca->_value = b;
    cb->_value = a;
}

Zu_List* Zu_List::cp() const {
    Zu_List* copy = new Zu_List;
    if (!copy)
        return nullptr;
    for (const Cell* c = _first; c; c = c->_next)
        copy->a(c->_value);
    return copy;
}

void* Zu_List::mapUntil(void* (*f)(void*, void*, void*), void* arg, void* sentinel) const {
    return _first ? _first->mapUntil(f, arg, sentinel) : sentinel;
}

void Zu_List::apply(void (*f)(void*, void*), void* arg) {
    if (_first)
        _first->apply(f, arg);
}

void Zu_List::clear() {
    e();
    delete _first;
    _first = _last = nullptr;
    _length = 0;
}

// ---- safe iterator registry ----------------------------------------------------------

void Zu_List::d() const { detachIterators(_iterators); }

void Zu_List::e() const { endIterators(_iterators); }

void Zu_List::n(Cell* c) const { stepIteratorsOff(_iterators, c); }

void Zu_List::ai(Zu_SLIterator* it) const { linkIterator(_iterators, it); }

void Zu_List::ri(Zu_SLIterator* it) const { unlinkIterator(_iterators, it); }

// ---- iterators -----------------------------------------------------------------------

Zu_SLIterator::Zu_SLIterator(const Zu_List& list) : Zu_LIterator(list), _nextIterator(nullptr) {
    list.ai(this);
}

Zu_SLIterator::Zu_SLIterator(const Zu_SLIterator& other)
    : Zu_LIterator(other), _nextIterator(nullptr) {
    if (_list)
        _list->ai(this);
}

Zu_SLIterator& Zu_SLIterator::operator=(const Zu_SLIterator& other) {
    return assignIterator(*this, other);
}

Zu_SLIterator::~Zu_SLIterator() {
    if (_list)
        _list->ri(this);
}
