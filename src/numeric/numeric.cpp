// ZuNumeric: construction, digit areas, scale, comparisons and conversions to C numbers.
#include <zu/numeric.h>

#include <clocale>
#include <cstdlib>
#include <cstring>

namespace {

int digitCount(const char* digits) { return static_cast<int>(std::strlen(digits)); }

// Runs convert(text) on the value's text with LC_NUMERIC set to "C", restoring the
// caller's numeric locale afterwards (skipped when it already is "C").
template <typename T, typename Convert>
T convertInCLocale(const ZuNumeric& value, Convert convert) {
    char text[48];
    const char* current = std::setlocale(LC_NUMERIC, nullptr);
    if (!current || std::strcmp(current, "C") == 0) {
        value.get(text, sizeof text);
        return convert(text);
    }
    char savedLocal[256];
    char* saved = savedLocal;
    const std::size_t length = std::strlen(current);
    if (length >= sizeof savedLocal) saved = static_cast<char*>(std::malloc(length + 1));
    if (saved) std::memcpy(saved, current, length + 1);
    std::setlocale(LC_NUMERIC, "C");
    value.get(text, sizeof text);
    const T result = convert(text);
    if (saved) std::setlocale(LC_NUMERIC, saved);
    if (saved && saved != savedLocal) std::free(saved);
    return result;
}

} // namespace

ZuNumeric::ZuNumeric(long value) { set(value); }

ZuNumeric::ZuNumeric(const char* text) {
    clear();
    set(text);
}

void ZuNumeric::clear() {
    _sign = 0;
    _pointPosition = 0;
    std::memset(_digits, 0, sizeof _digits);
}

bool ZuNumeric::set(const ZuNumeric& other) {
    *this = other;
    return true;
}

bool ZuNumeric::set(long value) {
    clear();
    _sign = value < 0 ? 1 : 0;
    // Through unsigned so that the most negative long keeps its magnitude.
    unsigned long magnitude = value < 0 ? 0UL - static_cast<unsigned long>(value)
                                        : static_cast<unsigned long>(value);
    char reversed[24];
    int count = 0;
    for (; magnitude != 0; magnitude /= 10) reversed[count++] = static_cast<char>('0' + magnitude % 10);
    for (int i = 0; i < count; ++i) _digits[i] = reversed[count - 1 - i];
    _digits[count] = '\0';
    _pointPosition = static_cast<short>(count);
    return true;
}

int ZuNumeric::toDec(char* out) const {
    if (!out) return 0;
    std::memset(out, 0, DecimalAreaSize);
    const int n = digitCount(_digits);
    int first = -1;
    for (int i = 0; i < n; ++i) {
        out[DecimalAreaSize - n + i] = static_cast<char>(_digits[i] - '0');
        if (first < 0 && _digits[i] != '0') first = i;
    }
    return first < 0 ? 0 : n - first;
}

void ZuNumeric::setScale(short s) {
    const int n = digitCount(_digits);
    if (n >= s) {
        const int point = n - s;
        if (point <= 32767) _pointPosition = static_cast<short>(point);
        return;
    }
    if (s > MaxTextDigits) {
        // The shifted digits would not fit: hold the same value through the point
        // position instead, as 5e-3 is held.
        _pointPosition = static_cast<short>(n - s);
        return;
    }
    const int shift = s - n;
    std::memmove(_digits + shift, _digits, static_cast<std::size_t>(n) + 1);
    std::memset(_digits, '0', static_cast<std::size_t>(shift));
    _pointPosition = 0;
}

bool ZuNumeric::isEqualTo(const ZuNumeric& other) const {
    if (isZero() && other.isZero()) return true;
    if (_sign != other._sign || _pointPosition != other._pointPosition) return false;
    const char* a = _digits;
    const char* b = other._digits;
    for (; *a || *b; a += *a ? 1 : 0, b += *b ? 1 : 0) {
        const char x = *a ? *a : '0';
        const char y = *b ? *b : '0';
        if (x != y) return false;
    }
    return true;
}

bool ZuNumeric::isGreaterThan(const ZuNumeric& other) const {
    if (_sign && !other._sign) return false;
    if (!_sign && other._sign) return true;
    if (_pointPosition != other._pointPosition) return _pointPosition > other._pointPosition;
    for (int i = 0; i < MaxTextDigits; ++i) {
        const signed char a = static_cast<signed char>(_digits[i]);
        const signed char b = static_cast<signed char>(other._digits[i]);
        if (a != b) return a > b; // a NUL loses, so a longer string beats its prefix
        if (a == '\0') break;
    }
    return true;
}

bool ZuNumeric::isInteger() const {
    const int point = _pointPosition;
    if (point >= 1 && point <= 9) return point >= digitCount(_digits);
    if (point == 10) return std::strcmp(_digits, "2147483647") <= 0;
    return false;
}

bool ZuNumeric::isReal() const { return !isInteger(); }

ZuNumeric ZuNumeric::abs() const {
    ZuNumeric result(*this);
    result._sign = 0;
    return result;
}

ZuNumeric::operator double() const {
    return convertInCLocale<double>(*this, [](const char* text) { return std::strtod(text, nullptr); });
}

ZuNumeric::operator long() const {
    return convertInCLocale<long>(*this, [](const char* text) { return std::strtol(text, nullptr, 10); });
}
