#ifndef ZU_NUMERIC_H
#define ZU_NUMERIC_H

// ZuNumeric: an exact decimal value held as a string of ASCII digits, a decimal-point
// position and a sign. The value is 0.d1d2d3... times ten to the point position, so
// 0.05 is the digits "05" with point position 0 and 1200 may be "12" with position 4.
// Parsing, formatting, comparison and arithmetic work digit by digit, so decimal
// fractions such as 0.1 are exact. A plain value type: no heap memory, no virtuals.

#include <zu/export.h>

class ZU_API ZuNumeric {
public:
    // Places the arithmetic works in: sums spanning more columns are zero, products are
    // cut to this many digits.
    static constexpr int MaxDigits = 47;
    // Significant digits a text may carry (one more than MaxDigits; it is stored whole).
    static constexpr int MaxTextDigits = 48;
    // Size of the digit-value areas written by toDec.
    static constexpr int DecimalAreaSize = 96;

    // Zero: empty digits, point position 0, no sign.
    ZuNumeric() : _sign(0), _pointPosition(0), _digits{} {}
    ZuNumeric(const ZuNumeric& other) = default;
    // Same as set(long).
    ZuNumeric(long value);
    // The int overloads keep literal arguments such as 0 unambiguous.
    ZuNumeric(int value) : ZuNumeric(static_cast<long>(value)) {}
    // Same as set(const char*) on a zero; a refused text leaves the value zero.
    ZuNumeric(const char* text);
    ZuNumeric& operator=(const ZuNumeric& other) = default;

    // Copies all three fields. Always returns true.
    bool set(const ZuNumeric& other);
    // Digits of |value| without leading zeros, point position = their count; 0 gives
    // empty digits and point position 0. Always returns true.
    bool set(long value);
    bool set(int value) { return set(static_cast<long>(value)); }
    // Parses [space][+|-][space]digits[.digits][(e|E)[+|-]digits]. Returns false and leaves
    // the value untouched when the text is malformed, has more than 48 significant digits
    // or a point position outside -32768..32767. A null text sets zero.
    // Deliberate: only the exact text "0" is accepted without a significant digit ("00",
    // "-0" and "0e5" are refused; "0.0" has one). It is held as the digit "0", position 0.
    bool set(const char* text);

    // Formats into out, always NUL-terminated within size; nothing for null or size <= 0.
    // Empty digits give "0". A value below 1 starts with "." (".05", and ".0" for the digit
    // "0"); "12" at position 4 gives "1200" when it fits, otherwise, and for positions below
    // 0, the exponent form (".5e-2"). A buffer too small cuts the text short.
    void get(char* out, int size) const;
    // Writes the digit values (0-9, not characters) right-aligned into out[0..95], the rest
    // zero; returns the number of digits from the first non-zero one.
    int toDec(char* out) const;
    // Reads the stored digits as an integer with s implied decimal places; the digits are
    // never rounded or cut. When s exceeds the digits they are shifted right behind "0"s
    // and the point position becomes 0; past 48 places only the point position moves.
    // A point position that would leave -32768..32767 leaves the value unchanged.
    void setScale(short s);

    // True when the digits are empty or start with "0" (so 0.05, held as "05", is zero).
    bool isZero() const { return _digits[0] == '\0' || _digits[0] == '0'; }
    // Two zeros are equal; otherwise sign, point position and digits (trailing zeros aside)
    // must match. Deliberate: equal values held with different point positions differ.
    bool isEqualTo(const ZuNumeric& other) const;
    // Negative < non-negative; then larger point position, first larger digit, longer digits.
    // Deliberate: true for identical digits, and the sign is ignored once both signs agree,
    // so -100 is greater than -1.
    bool isGreaterThan(const ZuNumeric& other) const;
    // Point position 1-9 and not below the digit count, or exactly 10 with digits not
    // above "2147483647" as text. Deliberate: zero (position 0) is not an integer.
    bool isInteger() const;
    // The negation of isInteger.
    bool isReal() const;
    // A copy with the sign cleared.
    ZuNumeric abs() const;

    // Converts the text from get (48-byte buffer) with strtod / strtol under the "C"
    // numeric locale, then restores the previous one. Not thread-safe. A value whose text
    // needs more room converts from the shortened text; strtol saturates silently.
    operator double() const;
    operator long() const;

    // Sum of the magnitudes, with this value's sign. A result needing 48 or more places
    // (or a point position past 32767) is zero; a result that counts as zero loses its sign.
    ZuNumeric add(const ZuNumeric& other) const;
    // |this| - |other| for |this| not smaller than |other|, with this value's sign. A zero
    // difference is the digit "0" at position 1; leading zeros go while the position is positive.
    // Given a smaller |this| it returns the magnitude of the difference.
    ZuNumeric sub(const ZuNumeric& other) const;
    // Signed sum and difference chosen with isGreaterThan. Deliberate: equal magnitudes
    // may give a zero with its sign set ((-5) + 5 formats as "-0").
    ZuNumeric operator+(const ZuNumeric& other) const;
    ZuNumeric operator+(long value) const;
    ZuNumeric operator+(int value) const { return *this + static_cast<long>(value); }
    ZuNumeric operator-(const ZuNumeric& other) const;
    // Exact digits of the product, cut to the 47 most significant; the sign is set when
    // exactly one operand is negative. Deliberate: the point position is the sum of the
    // operands' positions (1 - digit count for a position below 1), capped at the product's
    // length, so 1.5 * 1.5 gives 22.5 and 1e2 * 1e2 gives 1. A negative sum moves the digits
    // right behind "0"s at position 0.
    ZuNumeric operator*(const ZuNumeric& other) const;

    // 1 for a negative value, 0 otherwise.
    unsigned short getSign() const { return _sign; }
    // Number of digits standing before the decimal point (may be negative).
    short getPointPosition() const { return _pointPosition; }
    // The NUL-terminated digit characters, most significant first.
    const char* getDigits() const { return _digits; }

private:
    void clear();

    unsigned short _sign;
    short _pointPosition;
    // Every character after the digits is NUL: the arithmetic reads the array in words.
    char _digits[MaxTextDigits + 1];
};

#endif
