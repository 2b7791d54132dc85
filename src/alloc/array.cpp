// ZuArray: growable array of untyped pointers.
#include <zu/alloc.h>
#include <zu/array.h>

#include <cstdint>

namespace {

// Capacity chosen for n values when not exact: 4, 8, 16, ... not below n. Past 2^31
// doubling would wrap, so n itself is used there.
unsigned roundedCapacity(unsigned n) {
    uint64_t capacity = 4;
    while (capacity < n)
        capacity *= 2;
    return capacity > UINT32_MAX ? n : static_cast<unsigned>(capacity);
}

} // namespace

ZuArray::ZuArray(const ZuArray& other) : _data(nullptr), _maxLength(0), _length(0) {
    *this = other;
}

ZuArray::~ZuArray() { ZuFree(_data); }

ZuArray& ZuArray::operator=(const ZuArray& other) {
    if (this == &other)
        return *this;
    ZuFree(_data);
    _data = nullptr;
    _maxLength = 0;
    _length = 0;
    if (other._length == 0)
        return *this;
    void** data = static_cast<void**>(ZuMalloc(sizeof(void*) * size_t(other._maxLength)));
    if (!data)
        return *this;
    ZuMemMove(data, other._data, sizeof(void*) * size_t(other._length));
    _data = data;
    _maxLength = other._maxLength;
    _length = other._length;
    return *this;
}

uint32_t ZuArray::getIndex(void* const& value) const {
    for (uint32_t i = 0; i < _length; ++i)
        if (_data[i] == value)
            return i;
    return UINT32_MAX;
}

void ZuArray::setMaxLength(unsigned n, bool exact) {
    if (n < _length)
        return;
    unsigned capacity = exact ? n : roundedCapacity(n);
    if (capacity == _maxLength)
        return;
    if (capacity == 0) {
        ZuFree(_data);
        _data = nullptr;
        _maxLength = 0;
        return;
    }
    size_t bytes = sizeof(void*) * size_t(capacity);
    void** data = static_cast<void**>(_data ? ZuRealloc(_data, bytes) : ZuMalloc(bytes));
    // On failure the old storage stays as it was, which keeps every value reachable.
    if (!data)
        return;
    _data = data;
    _maxLength = capacity;
}

void ZuArray::insert(void* const* values, unsigned count, unsigned position) {
    if (count == 0 || !values)
        return;
    if (count > UINT32_MAX - _length)
        return; // the length could not be represented
    if (position > _length)
        position = _length;
    // Values taken from this array's own storage would move (or be freed by a
    // reallocation) before they are copied in: insert a copy of them instead.
    void** copy = nullptr;
    const uintptr_t from = reinterpret_cast<uintptr_t>(values);
    const uintptr_t start = reinterpret_cast<uintptr_t>(_data);
    if (_data && from < start + sizeof(void*) * size_t(_maxLength) &&
        from + sizeof(void*) * size_t(count) > start) {
        copy = static_cast<void**>(ZuMalloc(sizeof(void*) * size_t(count)));
        if (!copy)
            return;
        ZuMemMove(copy, values, sizeof(void*) * size_t(count));
        values = copy;
    }
    if (_length + count > _maxLength)
        setMaxLength(_length + count, false);
    if (_length + count <= _maxLength) { // else the storage could not grow
        ZuMemMove(_data + position + count, _data + position,
                  sizeof(void*) * size_t(_length - position));
        ZuMemMove(_data + position, values, sizeof(void*) * size_t(count));
        _length += count;
    }
    ZuFree(copy);
}

void ZuArray::erase(unsigned from, unsigned to) {
    // A start past the end has nothing to erase (the length would otherwise wrap).
    if (from > _length)
        return;
    if (to > _length || to < from)
        to = _length;
    else
        ZuMemMove(_data + from, _data + to, sizeof(void*) * size_t(_length - to));
    _length -= to - from;
    if (_maxLength >= 4 * uint64_t(_length))
        setMaxLength(_length, false);
}

void ZuArray::setData(void** data, unsigned length, unsigned) {
    if (data != _data)
        ZuFree(_data);
    _data = data;
    // Null data cannot hold values: the array is then empty, whatever length says.
    _maxLength = data ? length : 0;
    _length = data ? length : 0;
}

bool ZuArray::set(unsigned i, void* value) {
    if (i >= _length)
        return false;
    _data[i] = value;
    return true;
}
