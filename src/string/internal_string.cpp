// The representation base: the byte text, its size, the character count, the count of
// handles sharing it.
#include <zu/string.h>

#include <algorithm>
#include <cstring>

ZuInternalString::ZuInternalString() : _value(nullptr), _size(0), _length(0), _refCount(0) {}

ZuInternalString::ZuInternalString(const ZuInternalString& other)
    : _value(nullptr), _size(other._size), _length(other._length), _refCount(0) {
    const char* text = other._value ? other._value : "";
    const uint64_t bytes = std::strlen(text) + 1;
    // A reserved buffer may be larger than its text or report a size smaller than the
    // kept length: the copy is at least as large as every index the operations may use.
    const uint64_t room =
        std::max({_size, bytes, static_cast<uint64_t>(std::max<int64_t>(_length, 0)) + 1});
    _value = new char[room];
    std::memcpy(_value, text, bytes);
    std::memset(_value + bytes, 0, room - bytes);
}

ZuInternalString::~ZuInternalString() { delete[] _value; }

void ZuInternalString::reserveBytes(int size) {
    // A buffer always holds at least its terminator.
    const uint64_t wanted = size < 1 ? 1 : static_cast<uint64_t>(size);
    if (wanted == _size) return;
    const uint64_t room =
        std::max(wanted, static_cast<uint64_t>(std::max<int64_t>(_length, 0)) + 1);
    char* buffer = new char[room]();
    delete[] _value;
    _value = buffer;
    _size = wanted;
}
