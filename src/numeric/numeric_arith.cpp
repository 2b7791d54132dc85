// ZuNumeric arithmetic: aligned addition and subtraction of magnitudes, the signed
// operators built on them, and the product.
#include <zu/numeric.h>

#include <cstdint>
#include <cstring>

#include <emmintrin.h>

namespace {

constexpr std::uint64_t kZeros = 0x3030303030303030u; // "00000000"
constexpr std::uint64_t kLow = 0x0101010101010101u;
constexpr int kArray = ZuNumeric::MaxTextDigits; // digit characters an array can hold

// Length of a value's digit string: the first NUL among the array's 48 characters.
int digitCount(const char* digits) {
    const __m128i zero = _mm_setzero_si128();
    std::uint64_t mask = std::uint64_t{1} << kArray;
    for (int i = 0; i < kArray; i += 16) {
        const __m128i chunk = _mm_loadu_si128(reinterpret_cast<const __m128i*>(digits + i));
        mask |= static_cast<std::uint64_t>(_mm_movemask_epi8(_mm_cmpeq_epi8(chunk, zero))) << i;
    }
    return __builtin_ctzll(mask);
}

// Sets digits to the count characters at source and NULs after them. Fixed-size block
// moves through a scratch area: source must have kArray readable characters.
void copyDigits(char* digits, const char* source, int count) {
    char scratch[2 * kArray + 1];
    std::memcpy(scratch, source, kArray);
    std::memset(scratch + count, 0, kArray + 1);
    std::memcpy(digits, scratch, kArray + 1);
}

int maxOf(int a, int b) { return a > b ? a : b; }

// Both operands aligned on the point in a field of `width` columns; column j stands for
// ten to the power (point - 1 - j).
struct Alignment {
    int width;
    int point;
    int offsetA; // column of a's first digit
    int offsetB;
};

Alignment align(int countA, int pointA, int countB, int pointB) {
    const int point = maxOf(pointA, pointB);
    const int fraction = maxOf(countA - pointA, countB - pointB);
    return {point + fraction, point, point - pointA, point - pointB};
}

// The aligned fields are right-aligned in kField characters and worked on eight digits at
// a time: a word holds eight digit values, the least significant in its low byte, so that
// carries and borrows run from byte to byte like the ones of the 64-bit add itself.
constexpr int kField = 56;
constexpr std::uint64_t kTenComplement = 0xF6u * kLow; // 256 - 10 in every byte

std::uint64_t loadDigits(const char* p) {
    std::uint64_t v;
    std::memcpy(&v, p, 8);
    return __builtin_bswap64(v) - kZeros;
}

void storeDigits(char* p, std::uint64_t v) {
    v = __builtin_bswap64(v + kZeros);
    std::memcpy(p, &v, 8);
}

// A field of "0" characters holding the count digits of a value's array from `at`; the
// field has kSpread characters so that fixed-size blocks may run past its kField columns.
constexpr int kSpread = kField + kArray;

void spread(char* field, const char* digits, int count, int at) {
    std::memset(field, '0', kField);
    std::memcpy(field + at, digits, kArray);
    std::memset(field + at + count, '0', kArray);
}

// out = a + b over the words covering field[from..kField); the carry out is dropped (the
// callers leave a "0" place in front).
void addFields(const char* a, const char* b, char* out, int from) {
    std::uint64_t carry = 0;
    for (int w = kField - 8; w > from - 8; w -= 8) {
        // Adding 246 in every byte makes a byte overflow into the next exactly when its
        // digit sum reaches 10; bytes that did not overflow are left 246 too high.
        std::uint64_t sum = loadDigits(a + w) + loadDigits(b + w) + kTenComplement + carry;
        carry = (sum >> 63) ^ 1;
        sum -= ((sum >> 7) & kLow) * 0xF6u;
        storeDigits(out + w, sum);
    }
}

// out = a - b over the words covering field[from..kField); returns the final borrow.
int subtractFields(const char* a, const char* b, char* out, int from) {
    std::uint64_t borrow = 0;
    for (int w = kField - 8; w > from - 8; w -= 8) {
        // A byte that went below zero borrowed from the next and reads 246 + its digit.
        std::uint64_t difference = loadDigits(a + w) - loadDigits(b + w) - borrow;
        borrow = difference >> 63;
        difference -= ((difference >> 7) & kLow) * 0xF6u;
        storeDigits(out + w, difference);
    }
    // Words past `from` hold "0" in both fields, so a borrow there is the final one.
    return static_cast<int>(borrow);
}

// Drops digits after the point that are "0"; returns the new count.
int trimTrailingZeros(char* digits, int count, int point) {
    while (count > 0 && count - 1 >= point && digits[count - 1] == '0') --count;
    digits[count] = '\0';
    return count;
}

// Eight digit characters, most significant first, as a number.
std::uint64_t eightDigits(const char* p) {
    std::uint64_t v;
    std::memcpy(&v, p, 8);
    v = ((v & 0x0F0F0F0F0F0F0F0Fu) * (10 * 256 + 1)) >> 8; // pairs, in every other byte
    v = ((v & 0x00FF00FF00FF00FFu) * (100 * 65536 + 1)) >> 16;
    return ((v & 0x0000FFFF0000FFFFu) * (10000 * (std::uint64_t{1} << 32) + 1)) >> 32;
}

// The eight digit values of v < 10^8, one per byte, the most significant in the low byte
// (first in memory): the halves, quarters and eighths are split in parallel in one word.
std::uint64_t eightDigitValues(std::uint64_t v) {
    std::uint64_t x = (v / 10000) | ((v % 10000) << 32);
    std::uint64_t q = ((x * 10486) >> 20) & 0x0000007F0000007Fu; // x / 100 for x < 10^4
    x = q | ((x - q * 100) << 16);
    q = ((x * 103) >> 10) & 0x000F000F000F000Fu; // x / 10 for x < 100
    return q | ((x - q * 10) << 8);
}

// Limbs of eight digits, least significant first, of a value's digit string read as an
// integer. The short leading limb is read as the array's first eight characters, shifted
// to put "0"s in front of its count digits (the array holds 49 characters).
inline __attribute__((always_inline)) int toLimbs(const char* digits, int count, std::uint64_t* limbs) {
    int used = 0;
    for (; count >= 8; count -= 8) limbs[used++] = eightDigits(digits + count - 8);
    if (count > 0) {
        std::uint64_t w;
        std::memcpy(&w, digits, 8);
        w = (w << (8 * (8 - count))) | (kZeros >> (8 * count));
        char chunk[8];
        std::memcpy(chunk, &w, 8);
        limbs[used++] = eightDigits(chunk);
    }
    return used;
}

// Room for the product's text, and 48 more so that any 48 characters from its start can
// be copied as one block.
constexpr int kProductText = 12 * 8 + ZuNumeric::MaxTextDigits;

// Exact product of two digit strings read as integers, written into text; returns the
// start of its most significant non-zero digit and sets length (0 for a zero product).
// The schoolbook algorithm runs on limbs of eight digits.
const char* multiplyDigits(const char* a, int countA, const char* b, int countB, char* text, int& length) {
    constexpr std::uint64_t base = 100000000u;
    std::uint64_t x[6] = {}, y[6] = {}, product[12] = {};
    int limbsA = toLimbs(a, countA, x), limbsB = toLimbs(b, countB, y);
    // Each partial product is below 10^16 and at most six meet in a limb: no overflow
    // before the single carry pass. Values of up to 32 digits take a fixed, unrolled path.
    if (limbsA <= 4 && limbsB <= 4) {
        for (int j = 0; j < 4; ++j)
            for (int i = 0; i < 4; ++i) product[i + j] += x[i] * y[j];
        limbsA = limbsB = 4;
    } else {
        for (int j = 0; j < limbsB; ++j)
            for (int i = 0; i < limbsA; ++i) product[i + j] += x[i] * y[j];
    }
    const int limbs = limbsA + limbsB;
    std::uint64_t carry = 0;
    for (int k = 0; k < limbs; ++k) {
        const std::uint64_t t = product[k] + carry;
        carry = t / base;
        product[k] = t - carry * base;
    }
    int top = limbs - 1;
    while (top > 0 && product[top] == 0) --top;
    if (product[top] == 0) {
        length = 0;
        return text;
    }
    // Only the limbs that reach the 48th digit are written out.
    std::memset(text, '0', kProductText);
    const int lowest = top > 6 ? top - 6 : 0;
    const std::uint64_t leading = eightDigitValues(product[top]);
    std::uint64_t chars = leading + kZeros;
    std::memcpy(text, &chars, 8);
    for (int k = top - 1, at = 8; k >= lowest; --k, at += 8) {
        chars = eightDigitValues(product[k]) + kZeros;
        std::memcpy(text + at, &chars, 8);
    }
    const int first = __builtin_ctzll(leading) / 8;
    length = 8 * (top + 1) - first;
    return text + first;
}

} // namespace

ZuNumeric ZuNumeric::add(const ZuNumeric& other) const {
    ZuNumeric result;
    const int countA = digitCount(_digits);
    const int countB = digitCount(other._digits);
    const Alignment at = align(countA, _pointPosition, countB, other._pointPosition);
    if (at.width >= MaxTextDigits || at.width < 0) return result; // too wide: zero, without notice
    // field[from] is the carry place, field[from + 1..kField) the aligned columns.
    const int from = kField - at.width - 1;
    char a[kSpread], b[kSpread], sum[kSpread];
    spread(a, _digits, countA, from + 1 + at.offsetA);
    spread(b, other._digits, countB, from + 1 + at.offsetB);
    addFields(a, b, sum, from);
    int point = at.point;
    int count = at.width;
    const char* first = sum + from + 1;
    if (sum[from] == '1') {
        if (++point > 32767) return result;
        --first;
        ++count;
    }
    copyDigits(result._digits, first, count);
    trimTrailingZeros(result._digits, count, point);
    result._pointPosition = static_cast<short>(point);
    result._sign = result.isZero() ? 0 : _sign;
    return result;
}

ZuNumeric ZuNumeric::sub(const ZuNumeric& other) const {
    ZuNumeric result;
    const int countA = digitCount(_digits);
    const int countB = digitCount(other._digits);
    const Alignment at = align(countA, _pointPosition, countB, other._pointPosition);
    if (at.width >= MaxTextDigits || at.width < 0) return result;
    const int from = kField - at.width;
    char a[kSpread], b[kSpread], difference[kSpread];
    spread(a, _digits, countA, from + at.offsetA);
    spread(b, other._digits, countB, from + at.offsetB);
    // Called with the smaller magnitude first: give the magnitude of the difference.
    if (subtractFields(a, b, difference, from)) subtractFields(b, a, difference, from);
    const char* digits = difference + from;
    int count = at.width;
    int zeros = 0;
    while (zeros < count && digits[zeros] == '0') ++zeros;
    if (zeros == count) {
        // Equal magnitudes: one "0" before the point, so a signed zero reads "-0".
        std::memcpy(result._digits, "0", 2);
        result._pointPosition = 1;
        return result;
    }
    // Leading zeros go while digits stand before the point, as the parser holds them.
    const int drop = zeros < at.point ? zeros : maxOf(at.point, 0);
    digits += drop;
    count -= drop;
    const int point = at.point - drop;
    copyDigits(result._digits, digits, count);
    trimTrailingZeros(result._digits, count, point);
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

ZuNumeric ZuNumeric::operator*(const ZuNumeric& other) const {
    ZuNumeric result;
    const int countA = digitCount(_digits);
    const int countB = digitCount(other._digits);
    char text[kProductText];
    int length = 0;
    const char* product = multiplyDigits(_digits, countA, other._digits, countB, text, length);
    // Each operand gives its point position, or 1 - its digit count when that is below 1.
    const int point = (_pointPosition >= 1 ? _pointPosition : 1 - countA) +
                      (other._pointPosition >= 1 ? other._pointPosition : 1 - countB);
    char* digits = result._digits;
    if (length > 0 && point < 0) {
        // Shifted right behind zeros, point position 0; what passes the 47th place is cut.
        const int zeros = -point;
        if (zeros < MaxDigits) {
            const int kept = zeros + length < MaxDigits ? length : MaxDigits - zeros;
            std::memset(digits, '0', static_cast<std::size_t>(zeros));
            std::memcpy(digits + zeros, product, static_cast<std::size_t>(kept));
            digits[zeros + kept] = '\0';
        }
    } else if (length > 0) {
        std::memcpy(digits, product, MaxTextDigits);
        digits[length < MaxDigits ? length : MaxDigits] = '\0';
        result._pointPosition = static_cast<short>(point >= length ? length : point);
    }
    result._sign = _sign != other._sign ? 1 : 0;
    return result;
}
