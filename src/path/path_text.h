#ifndef ZU_SRC_PATH_PATH_TEXT_H
#define ZU_SRC_PATH_PATH_TEXT_H

// Shared by the path sources only; nothing here is exported.
// The path code works on the bytes of its strings. The separators it looks for ("/",
// "\", ".", ":") are ASCII and never occur inside a multibyte character, so byte
// positions found in a view are safe to cut at. Every view handed around points into
// a NUL-terminated buffer (a ZuString's text or a std::string), so the byte just past a
// view can always be read.

#include <zu/string.h>

#include <cstddef>
#include <cstring>
#include <string>
#include <string_view>

namespace zu_path {

// The bytes of s, without the terminator. Reads the representation directly: this sits
// on every hot path of the path code.
inline std::string_view bytesOf(const ZuString& s) {
    const ZuInternalString* rep = s.getInternal();
    const char* value = rep->getValue();
    const size_t size = static_cast<size_t>(rep->getSize());
    if (!value || size == 0) return std::string_view();
    return std::string_view(value, size - 1);
}

// The characters [start, end) of s chosen by a path range (end, start). Character
// positions equal byte positions unless s holds multibyte characters; then the range is
// cut by the string class into keep, and the view points into keep.
inline std::string_view rangeView(const ZuString& s, int end, int start, ZuString& keep) {
    const std::string_view all = bytesOf(s);
    const long length = s.getLength();
    const long from = start < 0 ? 0 : start;
    const long to = (end < 0 || end > length) ? length : end;
    if (to <= from) return std::string_view();
    if (from == 0 && to == length) return all;
    if (static_cast<size_t>(length) == all.size())
        return all.substr(static_cast<size_t>(from), static_cast<size_t>(to - from));
    keep = s.getSubString(static_cast<int>(from), static_cast<int>(to));
    return bytesOf(keep);
}

// A range of a string together with the handles that keep its bytes alive, even when
// the string passed in is a field of the path being changed.
class Range {
public:
    Range(const ZuString& s, int end, int start) : _held(s) {
        _view = rangeView(_held, end, start, _keep);
    }
    std::string_view view() const { return _view; }

private:
    ZuString _held;
    ZuString _keep;
    std::string_view _view;
};

// A ZuString holding the bytes of v (the shared empty string for an empty view).
inline ZuString makeString(std::string_view v) {
    if (v.empty()) return ZuString();
    if (v.data()[v.size()] == '\0') return ZuString(v.data());
    char small[256];
    if (v.size() < sizeof small) {
        std::memcpy(small, v.data(), v.size());
        small[v.size()] = '\0';
        return ZuString(small);
    }
    return ZuString(std::string(v).c_str());
}

// Text built on the stack while short, NUL-terminated at every step.
class TextBuffer {
public:
    TextBuffer() { _small[0] = '\0'; }
    TextBuffer(const TextBuffer&) = delete;
    TextBuffer& operator=(const TextBuffer&) = delete;

    void append(std::string_view v) {
        if (_heap.empty() && _size + v.size() < sizeof _small) {
            std::memcpy(_small + _size, v.data(), v.size());
            _size += v.size();
            _small[_size] = '\0';
            return;
        }
        if (_heap.empty()) _heap.assign(_small, _size);
        _heap.append(v.data(), v.size());
        _size = _heap.size();
    }
    void append(char c) { append(std::string_view(&c, 1)); }
    std::string_view view() const {
        return _heap.empty() ? std::string_view(_small, _size) : std::string_view(_heap);
    }
    ZuString toString() const { return makeString(view()); }

private:
    char _small[240];
    size_t _size = 0;
    std::string _heap;
};

// Writes the normalised form of a non-empty directory text into buffer, which must hold
// dir.size() + 1 bytes, and returns its length (see the path name sources for the
// rules). It ends with "/" unless it is empty.
size_t normalizeDirectory(std::string_view dir, char* buffer);

// The index of the "/" closing the longest run of leading components common to a and
// b, or -1. The component before the first "/" is never compared.
int commonLeadingDirectories(std::string_view a, std::string_view b);
// The index in a of the "/" in front of the longest run of whole trailing components
// that a and b share, or -1 when all of a is shared.
int commonTrailingDirectories(std::string_view a, std::string_view b);

// Byte equality of two strings.
inline bool sameText(const ZuString& a, const ZuString& b) {
    return a.getInternal() == b.getInternal() || bytesOf(a) == bytesOf(b);
}

} // namespace zu_path

#endif
