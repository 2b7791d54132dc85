#ifndef ZU_STRING_H
#define ZU_STRING_H

// ZuString: the library's text value. A handle of one pointer to a shared,
// reference-counted representation, either single-byte (ZuSBString, one byte per
// character) or multibyte (ZuMBString, kept both as bytes in the current C locale's
// encoding and as wide characters). Copies share; every mutator copies on write.
// The representation is chosen at construction from MB_CUR_MAX (> 1: multibyte)
// and kept when the locale changes later.
// Ranges are (start, end) character positions with end exclusive; end -1 (or any
// end past the text) means the end of the text. A negative start is taken as 0 (save
// the -1 of getLastIndexOf) and any other negative end makes a reversed range, so no
// range can reach outside the text. Nothing here is thread-safe.
// Two strings of different classes: an operation of a single-byte string (or of any
// string once the locale is no longer multibyte) gives up (-1, false, unchanged); a
// multibyte one reads the other's bytes in the current encoding.

#include <zu/export.h>

#include <cstddef>
#include <cstdint>
#include <iosfwd>

class ZuString;

// Abstract representation: owns the byte text and carries out every operation.
// A new representation has a count of 0 until a ZuString adopts it. Operations
// taking a second representation expect one of the same class.
class ZU_API ZuInternalString {
public:
    virtual ~ZuInternalString();

    // Virtual operations, in this slot order.
    virtual ZuInternalString* getSubString(int start, int end) = 0;
    virtual int getIndexOf(const ZuInternalString& sub, int start, int subStart, int subEnd) const = 0;
    virtual int getLastIndexOf(const ZuInternalString& sub, int start, int subStart, int subEnd) const = 0;
    virtual bool isBlank() const = 0;
    virtual int compare(const ZuInternalString& other, int start, int end, int otherStart,
                        int otherEnd) const = 0;
    virtual int caseCompare(const ZuInternalString& other, int start, int end, int otherStart,
                            int otherEnd) const = 0;
    // 0 for ZuSBString, 1 for ZuMBString.
    virtual int getType() const = 0;
    virtual void replace(const ZuInternalString& with, int start, int end, int withStart,
                         int withEnd) = 0;
    virtual void substitute(const ZuInternalString& from, const ZuInternalString& to, int start,
                            int end, int fromStart, int fromEnd, int toStart, int toEnd) = 0;
    virtual void toLower() = 0;
    virtual void toUpper() = 0;
    // A new representation of the same class, copy-constructed, count 0.
    virtual ZuInternalString* duplicate() const = 0;
    // Replaces the byte buffer by a new one of size bytes (at least 1) when size differs
    // from the current size. Deliberately loses the text and keeps the length.
    virtual void reserve(int size) = 0;

    const char* getValue() const { return _value; }
    uint64_t getSize() const { return _size; }
    int64_t getLength() const { return _length; }
    uint32_t getRefCount() const { return _refCount; }

protected:
    ZuInternalString();
    // Copies size and length and the byte text; count 0.
    ZuInternalString(const ZuInternalString& other);
    ZuInternalString& operator=(const ZuInternalString&) = delete;

    // The reserve of both classes. The new buffer is zero-filled and never smaller than
    // the length + 1, so operations still indexing by the kept length stay inside it.
    void reserveBytes(int size);

    char* _value;       // NUL-terminated byte text, owned
    uint64_t _size;     // byte length + 1
    int64_t _length;    // characters: bytes (single-byte) or wide characters (multibyte)
    uint32_t _refCount; // ZuString handles sharing this representation

    friend class ZuString;
};

// Single-byte representation: one character per byte.
class ZU_API ZuSBString : public ZuInternalString {
public:
    explicit ZuSBString(const char* text);
    ZuSBString(const ZuSBString& other);
    ~ZuSBString() override;

    ZuInternalString* getSubString(int start, int end) override;
    int getIndexOf(const ZuInternalString& sub, int start, int subStart, int subEnd) const override;
    int getLastIndexOf(const ZuInternalString& sub, int start, int subStart,
                       int subEnd) const override;
    bool isBlank() const override;
    int compare(const ZuInternalString& other, int start, int end, int otherStart,
                int otherEnd) const override;
    int caseCompare(const ZuInternalString& other, int start, int end, int otherStart,
                    int otherEnd) const override;
    int getType() const override;
    void replace(const ZuInternalString& with, int start, int end, int withStart,
                 int withEnd) override;
    void substitute(const ZuInternalString& from, const ZuInternalString& to, int start, int end,
                    int fromStart, int fromEnd, int toStart, int toEnd) override;
    void toLower() override;
    void toUpper() override;
    ZuInternalString* duplicate() const override;
    void reserve(int size) override;

    // Sets the text: length -1 means strlen(text); copy false adopts text (an array
    // allocated with new[]); deleteOld releases the current byte array (after copying,
    // and never when it is the adopted array itself). Null text is taken as "".
    void fillIn(const char* text, bool copy, int length, bool deleteOld);
};

// Multibyte representation: bytes in the current C locale's encoding plus the same
// text as wide characters. Operations run on the wide text and re-encode the bytes.
// Text that is not valid in the current encoding is held as an empty text.
class ZU_API ZuMBString : public ZuInternalString {
public:
    explicit ZuMBString(const char* text);
    explicit ZuMBString(const wchar_t* text);
    ZuMBString(const ZuMBString& other);
    ~ZuMBString() override;

    ZuInternalString* getSubString(int start, int end) override;
    int getIndexOf(const ZuInternalString& sub, int start, int subStart, int subEnd) const override;
    int getLastIndexOf(const ZuInternalString& sub, int start, int subStart,
                       int subEnd) const override;
    bool isBlank() const override;
    int compare(const ZuInternalString& other, int start, int end, int otherStart,
                int otherEnd) const override;
    // Deliberately compares past the ranges, up to the end of either text.
    int caseCompare(const ZuInternalString& other, int start, int end, int otherStart,
                    int otherEnd) const override;
    int getType() const override;
    void replace(const ZuInternalString& with, int start, int end, int withStart,
                 int withEnd) override;
    void substitute(const ZuInternalString& from, const ZuInternalString& to, int start, int end,
                    int fromStart, int fromEnd, int toStart, int toEnd) override;
    void toLower() override;
    void toUpper() override;
    ZuInternalString* duplicate() const override;
    void reserve(int size) override;

    // Sets the text from bytes; copy false adopts text (new[]). Does nothing when
    // copying the current byte text onto itself. Invalid text gives an empty text.
    void fillIn(const char* text, bool copy);
    // Sets the text from wide characters (length -1: wcslen), then re-encodes the bytes;
    // deleteOld releases the current wide array (never when it is the adopted one).
    void fillWIn(wchar_t* text, bool copy, int length, bool deleteOld);
    // Re-encodes _value from _wvalue, releasing the previous byte array. A character the
    // current encoding cannot hold makes the whole text empty.
    void update();

    const wchar_t* getWValue() const { return _wvalue; }
    int64_t getWSize() const { return _wsize; }

private:
    wchar_t* _wvalue; // NUL-terminated wide text, owned
    int64_t _wsize;   // wide characters allocated: _length + 1
};

class ZU_API ZuString {
public:
    // Default formats of the number constructors.
    static const char* DefaultShortFormat;            // "%hd"
    static const char* DefaultUnsignedShortFormat;    // "%hu"
    static const char* DefaultIntegerFormat;          // "%d"
    static const char* DefaultUnsignedIntegerFormat;  // "%u"
    static const char* DefaultLongFormat;             // "%ld"
    static const char* DefaultUnsignedLongFormat;     // "%lu"
    static const char* DefaultFloatFormat;            // "%f"
    static const char* DefaultDoubleFormat;           // "%g"

    // The empty string of the current mode.
    ZuString();
    // Null or "" gives the empty string: the shared empty static once GetEmpty() has
    // made it for the current mode, a private empty representation before that.
    ZuString(const char* text);
    ZuString(std::nullptr_t);
    // Adopts rep (its count is incremented); a null rep gives the empty string.
    ZuString(ZuInternalString* rep);
    // Shares other's representation: one count increment (inline, as is the release).
    ZuString(const ZuString& other) : _rep(other._rep) { ++_rep->_refCount; }

    // Number constructors: sprintf with the format, then a new representation of the
    // current mode. The whole formatted text is kept, however long (a null format gives
    // ""). Never shared, not even when empty.
    ZuString(short value, const char* format = DefaultShortFormat);
    ZuString(unsigned short value, const char* format = DefaultUnsignedShortFormat);
    ZuString(int value, const char* format = DefaultIntegerFormat);
    ZuString(unsigned int value, const char* format = DefaultUnsignedIntegerFormat);
    ZuString(long value, const char* format = DefaultLongFormat);
    ZuString(unsigned long value, const char* format = DefaultUnsignedLongFormat);
    // The float is widened to double before formatting.
    ZuString(float value, const char* format = DefaultFloatFormat);
    ZuString(double value, const char* format = DefaultDoubleFormat);

    // Releases the representation, destroying it with its last handle.
    ~ZuString() {
        if (--_rep->_refCount == 0) delete _rep;
    }
    // Safe on self-assignment.
    ZuString& operator=(const ZuString& other);

    // True when the text is null or "".
    bool isEmpty() const;
    // Number of characters (bytes single-byte, wide characters multibyte).
    int getLength() const;
    // Byte length + 1.
    size_t getSize() const;
    // The NUL-terminated byte text (not a copy).
    const char* getValue() const;
    // A new[] copy of getSize() bytes; the caller releases it with delete[].
    char* copyValue() const;
    // True for an empty string or one made only of white space.
    bool isBlank() const;

    // 0 when both are empty. -1 without a message when this string is single-byte and
    // the other is not. A reversed range writes "ZuString::compare: ..." and gives -1.
    // Deliberate: a range that is a proper prefix of the other compares greater (+1)
    // unless both ranges reach the ends of their texts.
    int compare(const ZuString& other, int start = 0, int end = -1, int otherStart = 0,
                int otherEnd = -1) const;
    // compare ignoring case; its messages name ZuString::caseCompare.
    int caseCompare(const ZuString& other, int start = 0, int end = -1, int otherStart = 0,
                    int otherEnd = -1) const;
    // Never writes a message; two empty ranges are equal.
    bool equals(const ZuString& other, int start = 0, int end = -1, int otherStart = 0,
                int otherEnd = -1) const;

    // First position >= start of sub's range, or -1. Returns the length, not 0, for an
    // empty pattern. Across representations the ranges are ignored (whole text, from 0).
    int getIndexOf(const ZuString& sub, int start = 0, int subStart = 0, int subEnd = -1) const;
    // Last position <= start of sub's range, or -1; start -1 means the end of the text.
    // Deliberate: a start past length - n is first moved back to start - n + 1.
    int getLastIndexOf(const ZuString& sub, int start = -1, int subStart = 0,
                       int subEnd = -1) const;
    // True when getIndexOf(sub, 0, ...) is 0: an empty sub is a prefix of "" only.
    bool startsWith(const ZuString& sub, int subStart = 0, int subEnd = -1) const;
    // True when the last occurrence of sub's range ends the text; an empty (or reversed)
    // sub range ends every string.
    bool endsWith(const ZuString& sub, int subStart = 0, int subEnd = -1) const;
    // Shares this representation for the whole text; the shared empty string when
    // start is past the text.
    ZuString getSubString(int start = 0, int end = -1) const;

    // Mutators: detach (copy on write), then edit; they return this string.
    ZuString& replace(const ZuString& with, int start = 0, int end = -1, int withStart = 0,
                      int withEnd = -1);
    // Replaces every occurrence of from's range inside [start, end) by to's range.
    // Left untouched (not detached) when the first occurrence is missing or at/after end.
    // A same-length replacement is made in place, each search starting one character
    // after the previous occurrence; otherwise occurrences are taken without overlap.
    ZuString& substitute(const ZuString& from, const ZuString& to, int start = 0, int end = -1,
                         int fromStart = 0, int fromEnd = -1, int toStart = 0, int toEnd = -1);
    ZuString& remove(int start = 0, int end = -1);
    // Deletes every occurrence of sub's range.
    ZuString& remove(const ZuString& sub, int subStart = 0, int subEnd = -1);
    ZuString& insert(const ZuString& s, int position, int sStart = 0, int sEnd = -1);
    ZuString& prepend(const ZuString& s, int sStart = 0, int sEnd = -1);
    ZuString& catenate(const ZuString& s, int sStart = 0, int sEnd = -1);
    // Detaches, then gives the byte buffer size bytes. Deliberately does not keep the text.
    void reserve(int size);
    ZuString& toUpper();
    ZuString& toLower();

    // "text" with each backslash and double quote preceded by a backslash.
    std::ostream& writeQuoted(std::ostream& os) const;
    // Skips to the first double quote, reads up to the closing one (consumed),
    // a backslash making the next character literal; end of stream ends the text.
    // The text takes the current mode: a string of the other mode is left empty.
    std::istream& readQuoted(std::istream& is);

    // The representation (never null).
    ZuInternalString* getInternal() const { return _rep; }

private:
    void attach(ZuInternalString* rep);
    void detach();
    void initFromText(const char* text);
    void initFromNumber(const char* format, ...);

    ZuInternalString* _rep;

    static char S_Buffer[160]; // shared by the number constructors
};

// Writes getValue() and nothing else.
ZU_API std::ostream& operator<<(std::ostream& os, const ZuString& s);
// Reads one word delimited by blank, newline, tab, carriage return or NUL (consumed).
// A word ended by the end of the stream leaves eofbit set but not failbit. As with
// readQuoted, the word takes the current mode.
ZU_API std::istream& operator>>(std::istream& is, ZuString& s);

// The shared empty strings, one per mode (single-byte, multibyte).
class ZU_API ZuEmptyInitialization {
public:
    // The empty string of the current mode; sets MonoFirst or MultiFirst to false.
    static ZuString* GetEmpty();

    static bool MonoFirst;  // true until the single-byte empty static exists
    static bool MultiFirst; // true until the multibyte empty static exists
};

#endif
