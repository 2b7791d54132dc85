// Text conversion of ZuNumeric: the two-pass parser and the formatter.
#include <zu/numeric.h>

#include <cstdio>
#include <cstring>

namespace {

bool isBlank(char c) {
    return c == ' ' || c == '\t' || c == '\n' || c == '\v' || c == '\f' || c == '\r';
}

bool isDigit(char c) { return c >= '0' && c <= '9'; }

// First pass: decides whether the whole text is a number the value can hold, without
// touching the value. The point position is worked out in int, with the exponent
// saturated, so that no text can overflow the arithmetic.
bool validate(const char* s) {
    while (isBlank(*s)) ++s;
    if (*s == '+' || *s == '-') {
        ++s;
        while (isBlank(*s)) ++s;
    }
    int significant = 0;
    int integerDigits = 0;
    for (; isDigit(*s); ++s) {
        if (significant == 0 && *s == '0') continue; // leading zeros do not count
        if (significant <= ZuNumeric::MaxTextDigits) ++significant;
        ++integerDigits;
        if (integerDigits > 100000) integerDigits = 100000;
    }
    if (*s == '.') {
        for (++s; isDigit(*s); ++s)
            if (significant <= ZuNumeric::MaxTextDigits) ++significant;
    }
    long exponent = 0;
    if (*s == 'e' || *s == 'E') {
        ++s;
        bool negative = false;
        if (*s == '+' || *s == '-') negative = *s++ == '-';
        if (!isDigit(*s)) return false;
        for (; isDigit(*s); ++s)
            if (exponent < 1000000) exponent = exponent * 10 + (*s - '0');
        if (negative) exponent = -exponent;
    }
    if (*s != '\0') return false;
    if (significant < 1 || significant > ZuNumeric::MaxTextDigits) return false;
    const long point = integerDigits + exponent;
    return point >= -32768 && point <= 32767;
}

// A text of "0" characters only, after an optional sign in its first character.
bool isZeroText(const char* s) {
    if (*s == '+' || *s == '-') ++s;
    if (*s != '0') return false;
    while (*s == '0') ++s;
    return *s == '\0';
}

} // namespace

bool ZuNumeric::set(const char* text) {
    if (!text) {
        clear();
        return true;
    }
    if (std::strcmp(text, "0") != 0 && !validate(text)) return false;
    clear();
    if (isZeroText(text)) {
        _digits[0] = '0';
        _digits[1] = '\0';
        return true;
    }
    const char* s = text;
    while (isBlank(*s)) ++s;
    if (*s == '+' || *s == '-') _sign = *s++ == '-' ? 1 : 0;
    // Blanks may follow the sign; the leading zeros are skipped after them, so that
    // "- 012" is held as "12" like "-12".
    while (isBlank(*s)) ++s;
    while (*s == '0') ++s;
    int count = 0;
    int point = 0;
    bool dot = false;
    for (; *s; ++s) {
        const char c = *s;
        if (isDigit(c)) {
            if (count < MaxTextDigits) _digits[count++] = c;
        } else if (c == '.') {
            dot = true;
            point = count;
        } else if (c == 'e' || c == 'E') {
            ++s;
            bool negative = false;
            if (*s == '+' || *s == '-') negative = *s++ == '-';
            int exponent = 0;
            for (; isDigit(*s); ++s)
                if (exponent < 1000000) exponent = exponent * 10 + (*s - '0');
            point += negative ? -exponent : exponent;
            break;
        }
    }
    if (!dot) point += count;
    if (dot)
        while (count > 0 && _digits[count - 1] == '0') _digits[--count] = '\0';
    _pointPosition = static_cast<short>(point);
    return true;
}

void ZuNumeric::get(char* out, int size) const {
    if (!out || size <= 0) return;
    std::memset(out, 0, static_cast<std::size_t>(size));
    const int last = size - 1; // out[last] always stays NUL
    int pos = 0;
    if (_digits[0] == '\0') {
        if (pos < last) out[pos++] = '0';
        return;
    }
    const int sign = _sign ? 1 : 0;
    if (sign && pos < last) out[pos++] = '-';
    const int point = _pointPosition;
    // A leading point for values below 1, and for integer parts the buffer cannot hold.
    const bool leading = point < 1 || size <= sign + point;
    if (leading && pos < last) out[pos++] = '.';
    bool pointWritten = false;
    int n = 0;
    for (; _digits[n] != '\0' && pos < last; ++n) {
        if (!leading && !pointWritten && pos == point + sign) {
            out[pos++] = '.';
            pointWritten = true;
            if (pos >= last) break;
        }
        out[pos++] = _digits[n];
    }
    while (_digits[n] != '\0') ++n;
    if (point == n) return; // an integer is written without a point
    if (point == 0 || pointWritten) return;
    if (point > n && sign + point <= last) {
        while (pos < sign + point) out[pos++] = '0';
        return;
    }
    char exponent[8];
    const int length = std::snprintf(exponent, sizeof exponent, "e%hd", _pointPosition);
    if (length > 0 && pos + length <= last) std::memcpy(out + pos, exponent, static_cast<std::size_t>(length));
}
