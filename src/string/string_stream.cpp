// ZuString on standard streams: plain output, the quoted form, word input.
#include <zu/string.h>

#include <cstring>
#include <istream>
#include <ostream>
#include <string>

namespace {

// Gathers characters read one at a time: a fixed local chunk, appended to a heap buffer
// when full, so the heap buffer does not grow character by character.
class Collector {
public:
    Collector() = default;
    Collector(const Collector&) = delete;
    Collector& operator=(const Collector&) = delete;
    ~Collector() { delete[] _heap; }

    void put(char c) {
        if (_used == sizeof _chunk) flush();
        _chunk[_used++] = c;
    }

    // The collected text, NUL-terminated.
    const char* text() {
        flush();
        return _heap ? _heap : "";
    }

private:
    void flush() {
        if (_used == 0) return;
        const size_t collected = _heapLength + _used;
        if (collected + 1 > _heapCapacity) {
            const size_t capacity = 2 * collected + 1;
            char* bigger = new char[capacity];
            if (_heap) std::memcpy(bigger, _heap, _heapLength);
            delete[] _heap;
            _heap = bigger;
            _heapCapacity = capacity;
        }
        std::memcpy(_heap + _heapLength, _chunk, _used);
        _heapLength = collected;
        _heap[_heapLength] = 0;
        _used = 0;
    }

    char _chunk[1024];
    size_t _used = 0;
    char* _heap = nullptr;
    size_t _heapLength = 0;
    size_t _heapCapacity = 0;
};

// Clears skipws for the time of one read and puts the caller's flags back.
class UnskippedReading {
public:
    explicit UnskippedReading(std::istream& is) : _is(is), _flags(is.flags()) {
        is.unsetf(std::ios_base::skipws);
    }
    UnskippedReading(const UnskippedReading&) = delete;
    UnskippedReading& operator=(const UnskippedReading&) = delete;
    ~UnskippedReading() { _is.flags(_flags); }

private:
    std::istream& _is;
    std::ios_base::fmtflags _flags;
};

bool isWordDelimiter(char c) {
    return c == ' ' || c == '\n' || c == '\t' || c == '\r' || c == '\0';
}

// Empties s, then appends text built in the current mode (so a string of the other
// mode stays empty, as any mixed catenate does).
void setText(ZuString& s, const char* text) {
    s.remove(0, -1);
    if (*text) s.catenate(ZuString(text));
}

} // namespace

std::ostream& operator<<(std::ostream& os, const ZuString& s) { return os << s.getValue(); }

std::ostream& ZuString::writeQuoted(std::ostream& os) const {
    const char* value = getValue();
    const size_t bytes = getSize() - 1;
    std::string quoted;
    quoted.reserve(bytes + 2);
    quoted += '"';
    for (size_t i = 0; i < bytes; ++i) {
        if (value[i] == '\\' || value[i] == '"') quoted += '\\';
        quoted += value[i];
    }
    quoted += '"';
    return os.write(quoted.data(), static_cast<std::streamsize>(quoted.size()));
}

std::istream& ZuString::readQuoted(std::istream& is) {
    Collector text;
    {
        UnskippedReading unskipped(is);
        char c;
        bool opened = false;
        while (!opened && is.get(c)) opened = c == '"';
        bool escaped = false;
        while (opened && is.get(c)) {
            if (escaped) {
                text.put(c);
                escaped = false;
            } else if (c == '\\') {
                escaped = true;
            } else if (c == '"') {
                break;
            } else {
                text.put(c);
            }
        }
    }
    setText(*this, text.text());
    return is;
}

std::istream& operator>>(std::istream& is, ZuString& s) {
    Collector word;
    {
        UnskippedReading unskipped(is);
        char c = 0;
        bool found = false;
        while (!found && is.get(c)) found = !isWordDelimiter(c);
        if (found) {
            word.put(c);
            while (is.get(c) && !isWordDelimiter(c)) word.put(c);
            // A word ended by the end of the stream has been read: only eofbit stays.
            if (is.eof()) is.clear(std::ios_base::eofbit);
        }
    }
    setText(s, word.text());
    return is;
}
