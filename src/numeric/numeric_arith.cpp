// ZuNumeric arithmetic: aligned addition and subtraction of magnitudes, the signed
// operators built on them, and the product.
#include <zu/numeric.h>

#include <cstdint>
#include <cstring>

namespace {

int digitCount(const char* digits) { return static_cast<int>(std::strlen(digits)); }

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

// field[0..width) = a - b on digit characters; returns the final borrow (a < b).
int subtractColumns(char* field, const Alignment& at, const char* a, int countA, const char* b,
                    int countB) {
    std::memset(field, '0', static_cast<std::size_t>(at.width));
    std::memcpy(field + at.offsetA, a, static_cast<std::size_t>(countA));
    int borrow = 0;
    for (int i = countB - 1; i >= 0 || borrow; --i) {
        const int column = at.offsetB + i;
        if (column < 0) return borrow;
        int d = field[column] - '0' - borrow - (i >= 0 ? b[i] - '0' : 0);
        borrow = d < 0 ? 1 : 0;
        field[column] = static_cast<char>('0' + d + 10 * borrow);
    }
    return 0;
}

// Drops digits after the point that are "0"; returns the new count.
int trimTrailingZeros(char* digits, int count, int point) {
    while (count > 0 && count - 1 >= point && digits[count - 1] == '0') --count;
    digits[count] = '\0';
    return count;
}

// Exact product of two digit strings read as integers, most significant first and
// without leading zeros, into out (room for 96 digits and a NUL); returns its length.
// The schoolbook algorithm runs on limbs of nine digits.
int multiplyDigits(const char* a, int countA, const char* b, int countB, char* out) {
    constexpr std::uint64_t base = 1000000000u;
    std::uint64_t limbsA[6] = {}, limbsB[6] = {}, product[12] = {};
    auto toLimbs = [](const char* digits, int count, std::uint64_t* limbs) {
        int used = 0;
        for (int end = count; end > 0; end -= 9) {
            std::uint64_t v = 0;
            for (int k = end > 9 ? end - 9 : 0; k < end; ++k) v = v * 10 + static_cast<unsigned>(digits[k] - '0');
            limbs[used++] = v;
        }
        return used;
    };
    const int usedA = toLimbs(a, countA, limbsA);
    const int usedB = toLimbs(b, countB, limbsB);
    for (int j = 0; j < usedB; ++j) {
        if (limbsB[j] == 0) continue;
        std::uint64_t carry = 0;
        for (int i = 0; i < usedA; ++i) {
            const std::uint64_t t = product[i + j] + limbsA[i] * limbsB[j] + carry;
            product[i + j] = t % base;
            carry = t / base;
        }
        product[j + usedA] = carry;
    }
    int top = usedA + usedB - 1;
    while (top >= 0 && product[top] == 0) --top;
    if (top < 0) {
        out[0] = '\0';
        return 0;
    }
    char text[12 * 9];
    int length = 0;
    for (int limb = top; limb >= 0; --limb) {
        std::uint64_t v = product[limb];
        for (int k = 8; k >= 0; --k, v /= 10) text[length + k] = static_cast<char>('0' + v % 10);
        length += 9;
    }
    int first = 0;
    while (text[first] == '0') ++first;
    std::memcpy(out, text + first, static_cast<std::size_t>(length - first));
    out[length - first] = '\0';
    return length - first;
}

} // namespace

ZuNumeric ZuNumeric::add(const ZuNumeric& other) const {
    ZuNumeric result;
    const int countA = digitCount(_digits);
    const int countB = digitCount(other._digits);
    const Alignment at = align(countA, _pointPosition, countB, other._pointPosition);
    if (at.width >= MaxTextDigits) return result; // too wide: zero, without notice
    // digits[0] is the carry place, digits[1..width] the aligned columns.
    char* digits = result._digits;
    std::memset(digits, '0', static_cast<std::size_t>(at.width) + 1);
    std::memcpy(digits + 1 + at.offsetA, _digits, static_cast<std::size_t>(countA));
    int carry = 0;
    for (int i = countB - 1; i >= 0 || carry; --i) {
        const int column = 1 + at.offsetB + i;
        int d = digits[column] - '0' + carry + (i >= 0 ? other._digits[i] - '0' : 0);
        carry = d > 9 ? 1 : 0;
        digits[column] = static_cast<char>('0' + d - 10 * carry);
    }
    int point = at.point;
    int count = at.width + 1;
    if (digits[0] == '1') {
        if (++point > 32767) return ZuNumeric();
    } else {
        std::memmove(digits, digits + 1, static_cast<std::size_t>(at.width));
        --count;
    }
    trimTrailingZeros(digits, count, point);
    result._pointPosition = static_cast<short>(point);
    result._sign = result.isZero() ? 0 : _sign;
    return result;
}

ZuNumeric ZuNumeric::sub(const ZuNumeric& other) const {
    ZuNumeric result;
    const int countA = digitCount(_digits);
    const int countB = digitCount(other._digits);
    const Alignment at = align(countA, _pointPosition, countB, other._pointPosition);
    if (at.width >= MaxTextDigits) return result;
    char* digits = result._digits;
    if (subtractColumns(digits, at, _digits, countA, other._digits, countB)) {
        // Called with the smaller magnitude first: give the magnitude of the difference.
        const Alignment swapped = {at.width, at.point, at.offsetB, at.offsetA};
        subtractColumns(digits, swapped, other._digits, countB, _digits, countA);
    }
    int count = at.width;
    int point = at.point;
    digits[count] = '\0';
    int first = 0;
    while (first < count && digits[first] == '0') ++first;
    if (first == count) {
        // Equal magnitudes: one "0" before the point, so a signed zero reads "-0".
        std::memcpy(digits, "0", 2);
        result._pointPosition = 1;
        result._sign = 0;
        return result;
    }
    count = trimTrailingZeros(digits, count, point);
    // Leading zeros go while digits stand before the point, as the parser holds them.
    int drop = 0;
    while (drop < count && point > 0 && digits[drop] == '0') ++drop, --point;
    std::memmove(digits, digits + drop, static_cast<std::size_t>(count - drop) + 1);
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
    char product[2 * MaxTextDigits + 1];
    const int length = multiplyDigits(_digits, countA, other._digits, countB, product);
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
        const int kept = length < MaxDigits ? length : MaxDigits;
        std::memcpy(digits, product, static_cast<std::size_t>(kept));
        digits[kept] = '\0';
        result._pointPosition = static_cast<short>(point >= length ? length : point);
    }
    result._sign = _sign != other._sign ? 1 : 0;
    return result;
}
