// ZuNumeric sums: aligned addition and subtraction of magnitudes, and the signed
// operators that choose between them.
#include <zu/numeric.h>

#include "numeric_words.h"

namespace {

int maxOf(int a, int b) { return a > b ? a : b; }
int minOf(int a, int b) { return a < b ? a : b; }

// The field: kField columns, the operands aligned on the point and right-aligned at its
// end; column j stands for ten to the power (point - 1 - (j - first column)).
constexpr int kField = 56;
constexpr int kWords = kField / 8;

struct Alignment {
    int width; // columns from the most significant place to the last fraction digit
    int point; // the larger point position
    int offsetA; // columns before each operand's first digit
    int offsetB;
};

Alignment align(int countA, int pointA, int countB, int pointB) {
    const int point = maxOf(pointA, pointB);
    const int fraction = maxOf(countA - pointA, countB - pointB);
    return {point + fraction, point, point - pointA, point - pointB};
}

// Zeroes the words after the field, which finish reads past its end. (Stores one by one:
// a loop or an initialiser would become a slow string instruction.)
void clearPadding(std::uint64_t* field) {
    const __m128i zero = _mm_setzero_si128();
    field[kWords] = 0;
    _mm_storeu_si128(reinterpret_cast<__m128i*>(field + kWords + 1), zero);
    _mm_storeu_si128(reinterpret_cast<__m128i*>(field + kWords + 3), zero);
    _mm_storeu_si128(reinterpret_cast<__m128i*>(field + kWords + 5), zero);
}

// Writes the field's characters from column start into digits, without the zeros that
// end it after the point. The field must have 48 readable characters after any start.
void finish(char* digits, const std::uint64_t* field, int start, int point) {
    int count = kField - start;
    count -= minOf(trailingZeroCharacters(field, kWords), maxOf(count - maxOf(point, 0), 0));
    storeDigits(digits, reinterpret_cast<const char*>(field) + start, count);
}

} // namespace

ZuNumeric ZuNumeric::add(const ZuNumeric& other) const {
    ZuNumeric result;
    const int countA = digitCount(_digits), countB = digitCount(other._digits);
    const Alignment at = align(countA, _pointPosition, countB, other._pointPosition);
    if (at.width >= MaxTextDigits || at.width < 0) return result; // too wide: zero, without notice
    // Column `from` is the carry place, the operands follow it.
    const int from = kField - at.width - 1;
    const int atA = from + 1 + at.offsetA, atB = from + 1 + at.offsetB;
    std::uint64_t field[2 * kWords];
    clearPadding(field);
    std::uint64_t carry = 0;
    for (int k = kWords - 1; k >= 0; --k) { // the words before `from` come out "0"
        // Adding 246 in every byte makes a byte overflow into the next exactly when its
        // digit sum reaches 10; bytes that did not overflow are left 246 too high.
        std::uint64_t sum = fieldWord(_digits, atA, 8 * k) +
                            fieldWord(other._digits, atB, 8 * k) + 0xF6 * kLow + carry;
        carry = (sum >> 63) ^ 1;
        sum -= ((sum >> 7) & kLow) * 0xF6;
        field[k] = characters(sum);
    }
    int point = at.point, start = from + 1;
    if (((field[from / 8] >> (8 * (from % 8))) & 0xFF) == '1') {
        if (++point > 32767) return result;
        start = from;
    }
    finish(result._digits, field, start, point);
    result._pointPosition = static_cast<short>(point);
    result._sign = result.isZero() ? 0 : _sign;
    return result;
}

ZuNumeric ZuNumeric::sub(const ZuNumeric& other) const {
    ZuNumeric result;
    const int countA = digitCount(_digits), countB = digitCount(other._digits);
    const Alignment at = align(countA, _pointPosition, countB, other._pointPosition);
    if (at.width >= MaxTextDigits || at.width < 0) return result;
    const int from = kField - at.width;
    std::uint64_t field[2 * kWords];
    clearPadding(field);
    for (int swapped = 0; swapped < 2; ++swapped) {
        // Called with the smaller magnitude first: give the magnitude of the difference.
        const char* a = swapped ? other._digits : _digits;
        const char* b = swapped ? _digits : other._digits;
        const int atA = from + (swapped ? at.offsetB : at.offsetA);
        const int atB = from + (swapped ? at.offsetA : at.offsetB);
        std::uint64_t borrow = 0;
        for (int k = kWords - 1; k >= 0; --k) {
            // A byte that went below zero borrowed from the next and reads 246 + its digit.
            std::uint64_t difference = fieldWord(a, atA, 8 * k) -
                                       fieldWord(b, atB, 8 * k) - borrow;
            borrow = difference >> 63;
            difference -= ((difference >> 7) & kLow) * 0xF6;
            field[k] = characters(difference);
        }
        if (!borrow) break;
    }
    // Columns before `from` hold "0" too.
    int first = kField;
    for (int k = from / 8; k < kWords; ++k) {
        const std::uint64_t x = field[k] ^ kZeros;
        if (x) {
            first = 8 * k + __builtin_ctzll(x) / 8;
            break;
        }
    }
    if (first == kField) {
        // Equal magnitudes: one "0" before the point, so a signed zero reads "-0".
        result._digits[0] = '0';
        result._pointPosition = 1;
        return result;
    }
    // Leading zeros go while digits stand before the point, as the parser holds them.
    const int drop = minOf(first - from, maxOf(at.point, 0));
    const int point = at.point - drop;
    finish(result._digits, field, from + drop, point);
    result._pointPosition = static_cast<short>(point);
    result._sign = result.isZero() ? 0 : _sign;
    return result;
}

ZuNumeric ZuNumeric::operator+(const ZuNumeric& other) const {
    if (_sign == other._sign) return add(other);
    ZuNumeric result;
    if (_sign) {
        const ZuNumeric magnitude = abs();
        if (magnitude.isGreaterThan(other)) {
            result = magnitude.sub(other);
            result._sign = 1;
        } else {
            result = other.sub(magnitude);
        }
    } else {
        const ZuNumeric magnitude = other.abs();
        if (isGreaterThan(magnitude)) {
            result = sub(magnitude);
        } else {
            result = magnitude.sub(*this);
            result._sign = 1;
        }
    }
    return result;
}

ZuNumeric ZuNumeric::operator+(long value) const { return *this + ZuNumeric(value); }

ZuNumeric ZuNumeric::operator-(const ZuNumeric& other) const {
    ZuNumeric result;
    if (_sign && other._sign) {
        const ZuNumeric a = abs();
        const ZuNumeric b = other.abs();
        if (a.isGreaterThan(b)) {
            result = a.sub(b);
            result._sign = 1;
        } else {
            result = b.sub(a);
        }
    } else if (_sign) {
        result = abs().add(other);
        result._sign = 1;
    } else if (other._sign) {
        result = add(other.abs());
    } else if (isGreaterThan(other)) {
        result = sub(other);
    } else {
        result = other.sub(*this);
        result._sign = 1;
    }
    return result;
}
