#ifndef ZU_LIST_H
#define ZU_LIST_H

// Zu_List: a singly linked list of untyped pointers; Zu_AList: a singly linked list of
// key/value pointer pairs. Values (and keys) are never owned: the lists store and
// compare pointers only. Cells and list objects come from the small-cell memory
// manager. The short member names (a, i, r, g, f, rm, cp, n, d, e, ai, ri, gc, gfc)
// are the interface. Plain iterators are not told about removals; safe iterators
// register with their list and are moved off a leaving cell. Nothing is thread-safe.

#include <zu/export.h>

#include <cstddef>
#include <cstdint>

class Zu_SLIterator;
class Zu_SALIterator;

class ZU_API Zu_List {
public:
    // One link of the chain. Operations on a cell act on the chain starting there.
    class ZU_API Cell {
    public:
        explicit Cell(void* value, Cell* next = nullptr) : _value(value), _next(next) {}
        // Frees the whole rest of the chain (iteratively). Clear _next first to free
        // one cell alone.
        ~Cell();
        Cell(const Cell&) = delete;
        Cell& operator=(const Cell&) = delete;

        // The last cell of the chain.
        Cell* getLast();
        // Number of cells from this one (at least 1).
        unsigned getLength() const;
        // The i-th value from this cell, or null when the chain is shorter.
        void* operator[](unsigned i) const;
        // Stores v as the i-th value; false when the chain is shorter.
        bool setValue(unsigned i, void* v);
        // The first cell holding v, or null.
        Cell* find(void* v);
        // Unlinks and frees the first cell holding v; returns the new head of the chain
        // (this cell, its successor when this cell held v, or null).
        Cell* remove(void* v);
        // A new chain with the same values.
        Cell* copy() const;
        // r = f(value, arg, sentinel) for each cell until r differs from sentinel;
        // returns the last r.
        void* mapUntil(void* (*f)(void*, void*, void*), void* arg, void* sentinel) const;
        // f(value, arg) on each cell. The next cell is read before the call, so f may
        // free the current value.
        void apply(void (*f)(void*, void*), void* arg);

        // Allocation through the memory manager (16 bytes); null when memory runs out.
        static void* operator new(size_t size) noexcept;
        static void operator delete(void* p, size_t size);

        void* _value;
        Cell* _next;
    };

    Zu_List() : _first(nullptr), _last(nullptr), _iterators(nullptr), _length(0) {}
    // d(), then frees all cells.
    ~Zu_List();
    Zu_List(const Zu_List&) = delete;
    Zu_List& operator=(const Zu_List&) = delete;

    // Appends v.
    void a(void* v);
    // Inserts v at position index: 0 makes it the first; past the end or negative appends.
    void i(void* v, int index);
    // Removes the first cell holding v; true if one was removed.
    bool r(void* v);
    // Unlinks the first cell holding v and returns it, not freed (its _next cleared);
    // null when absent.
    Cell* removeCell(void* v);
    // Appends a ready cell (allocated with new; its _next is overwritten).
    void append(Cell* cell);
    // Inserts a ready cell at position index, like i.
    void insert(Cell* cell, int index);
    // Exchanges v with the value before it; nothing when v is first, absent, or the
    // list has fewer than two cells.
    void push(void* v);
    // Exchanges v with the value after it; nothing when v is last or absent.
    void pop(void* v);
    // Exchanges the values of the first cells holding a and b; nothing if either is absent.
    void swap(void* a, void* b);
    // A new list (to delete) holding the same values in the same order.
    Zu_List* cp() const;
    // r = f(value, arg, sentinel) for each value in order until r differs from
    // sentinel; returns the last r, or sentinel for an empty list.
    void* mapUntil(void* (*f)(void*, void*, void*), void* arg, void* sentinel) const;
    // f(value, arg) on each value; f may free the current value.
    void apply(void (*f)(void*, void*), void* arg);
    // Frees every cell; registered safe iterators end (e()).
    void clear();

    // Tells every registered safe iterator that the list is gone (list and cell null).
    void d() const;
    // Tells every registered safe iterator that the list was emptied (cell null).
    void e() const;
    // Moves every registered safe iterator standing on c to c's successor.
    void n(Cell* c) const;
    // Registers a safe iterator (newest first); nothing when it is already registered.
    void ai(Zu_SLIterator* it) const;
    // Unregisters a safe iterator; nothing when it is not registered.
    void ri(Zu_SLIterator* it) const;

    Cell* getFirst() const { return _first; }
    Cell* getLast() const { return _last; }
    unsigned getLength() const { return _length; }

    // Allocation through the memory manager (32 bytes); null when memory runs out.
    static void* operator new(size_t size) noexcept;
    static void operator delete(void* p, size_t size);

    Cell* _first;
    Cell* _last;
    mutable Zu_SLIterator* _iterators; // registered safe iterators, newest first
    uint32_t _length;
};

class ZU_API Zu_AList {
public:
    // One key/value link of the chain.
    class ZU_API Cell {
    public:
        Cell(void* key, void* value, Cell* next = nullptr) : _key(key), _value(value), _next(next) {}
        // Frees the whole rest of the chain (iteratively).
        ~Cell();
        Cell(const Cell&) = delete;
        Cell& operator=(const Cell&) = delete;

        // Allocation through the memory manager (24 bytes); null when memory runs out.
        static void* operator new(size_t size) noexcept;
        static void operator delete(void* p, size_t size);

        void* _key;
        void* _value;
        Cell* _next;
    };

    Zu_AList() : _first(nullptr), _iterators(nullptr), _length(0) {}
    // d(), then frees all cells.
    ~Zu_AList();
    Zu_AList(const Zu_AList&) = delete;
    Zu_AList& operator=(const Zu_AList&) = delete;

    // Appends the pair (walking the chain) and returns its cell. Duplicate keys are allowed.
    Cell* a(void* key, void* value);
    // Inserts the pair at position index (0 first; past the end or negative appends);
    // returns its cell.
    Cell* i(void* key, void* value, int index);
    // The value of the first pair with key, or null.
    void* g(void* key) const;
    // True when key is present; its value is stored through value when that is not null.
    bool f(void* key, void** value) const;
    // Replaces the value of the first pair with key; false (nothing added) when absent.
    bool r(void* key, void* value);
    // Removes the first pair with key; true if one was removed.
    bool rm(void* key);
    // Removes the first pair equal to (key, value); true if one was removed.
    bool rm(void* key, void* value);
    // The first cell with key, and through previous (when not null) the cell before it
    // (null for the first).
    Cell* gfc(void* key, Cell** previous) const;
    // The first cell holding exactly (key, value), and its predecessor like gfc.
    Cell* gc(void* key, void* value, Cell** previous) const;
    // f(key, value, arg) on each pair; the next cell is read before the call.
    void apply(void (*f)(void*, void*, void*), void* arg);
    // r = f(key, value, arg, sentinel) for each pair until r differs from sentinel;
    // returns the last r, or sentinel for an empty list.
    void* mapUntil(void* (*f)(void*, void*, void*, void*), void* arg, void* sentinel) const;
    // Frees every cell; registered safe iterators end (e()).
    void clear();

    // As for Zu_List: list gone, list emptied, cell c leaving, register (nothing when
    // already registered), unregister.
    void d() const;
    void e() const;
    void n(Cell* c) const;
    void ai(Zu_SALIterator* it) const;
    void ri(Zu_SALIterator* it) const;

    Cell* getFirst() const { return _first; }
    unsigned getLength() const { return _length; }

    // Allocation through the memory manager (24 bytes); null when memory runs out.
    static void* operator new(size_t size) noexcept;
    static void operator delete(void* p, size_t size);

    Cell* _first;
    mutable Zu_SALIterator* _iterators; // registered safe iterators, newest first
    uint32_t _length;

private:
    // Unlinks cell (whose predecessor is previous) after telling the safe iterators.
    void unlink(Cell* cell, Cell* previous);
};

// Walks a Zu_List. Not told about removals: removing the cell under it leaves it
// dangling.
class ZU_API Zu_LIterator {
public:
    // Positioned on the first cell.
    explicit Zu_LIterator(const Zu_List& list) : _list(&list), _cell(list._first) {}

    // The current value, then advances; null at the end (a stored null looks the same).
    inline void* nextElement();
    // Advances; nothing at the end.
    inline Zu_LIterator& operator++();

    const Zu_List* _list;
    Zu_List::Cell* _cell; // the next cell to visit
};

// A Zu_LIterator registered with its list: a removal moves it off the leaving cell, and
// a list destroyed first leaves it harmless (at its end).
class ZU_API Zu_SLIterator : public Zu_LIterator {
public:
    explicit Zu_SLIterator(const Zu_List& list);
    // Registers the copy with the same list.
    Zu_SLIterator(const Zu_SLIterator& other);
    // Moves the registration to other's list.
    Zu_SLIterator& operator=(const Zu_SLIterator& other);
    // Unregisters when the list still exists.
    ~Zu_SLIterator();

    Zu_SLIterator* _nextIterator; // link in the list's chain
};

// Walks a Zu_AList. Not told about removals.
class ZU_API Zu_ALIterator {
public:
    // Positioned on the first pair.
    explicit Zu_ALIterator(const Zu_AList& list) : _list(&list), _cell(list._first) {}

    // The current value, then advances; null at the end.
    inline void* nextElement();
    // The current key, then advances; null at the end.
    inline void* nextKey();
    // The current key, its value through value, then advances; null at the end
    // (value untouched then).
    inline void* nextPair(void*& value);
    // Advances; nothing at the end.
    inline Zu_ALIterator& operator++();

    const Zu_AList* _list;
    Zu_AList::Cell* _cell; // the next pair to visit
};

// A Zu_ALIterator registered with its list, like Zu_SLIterator.
class ZU_API Zu_SALIterator : public Zu_ALIterator {
public:
    explicit Zu_SALIterator(const Zu_AList& list);
    Zu_SALIterator(const Zu_SALIterator& other);
    Zu_SALIterator& operator=(const Zu_SALIterator& other);
    // Unregisters when the list still exists.
    ~Zu_SALIterator();

    Zu_SALIterator* _nextIterator; // link in the list's chain
};

// ---- iterator steps, inline: they run once per element ---------------------------------

inline void* Zu_LIterator::nextElement() {
    if (!_cell)
        return nullptr;
    void* value = _cell->_value;
    _cell = _cell->_next;
    return value;
}

inline Zu_LIterator& Zu_LIterator::operator++() {
    if (_cell)
        _cell = _cell->_next;
    return *this;
}

inline void* Zu_ALIterator::nextElement() {
    if (!_cell)
        return nullptr;
    void* value = _cell->_value;
    _cell = _cell->_next;
    return value;
}

inline void* Zu_ALIterator::nextKey() {
    if (!_cell)
        return nullptr;
    void* key = _cell->_key;
    _cell = _cell->_next;
    return key;
}

inline void* Zu_ALIterator::nextPair(void*& value) {
    if (!_cell)
        return nullptr;
    void* key = _cell->_key;
    value = _cell->_value;
    _cell = _cell->_next;
    return key;
}

inline Zu_ALIterator& Zu_ALIterator::operator++() {
    if (_cell)
        _cell = _cell->_next;
    return *this;
}

#endif
