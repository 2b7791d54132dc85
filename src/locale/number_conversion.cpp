// Conversions between doubles and text with "." as the decimal point whatever the
// host's numeric locale.
#include <zu/locale.h>

#include <climits>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <new>

namespace {

bool isDigit(char c) { return c >= '0' && c <= '9'; }

// "e" and the exponent in decimal, as "e%d" would write it, without a formatted print.
void writeExponent(char* out, int exponent) {
    *out++ = 'e';
    long long e = exponent;
    if (e < 0) {
        *out++ = '-';
        e = -e;
    }
    char reversed[12];
    int n = 0;
    do {
        reversed[n++] = static_cast<char>('0' + e % 10);
        e /= 10;
    } while (e);
    while (n)
        *out++ = reversed[--n];
    *out = '\0';
}

} // namespace

int ZuDoubleToString(char* buffer, double value, const char* format) {
    if (!buffer)
        return 0;
    const char* special = nullptr;
    if (std::isnan(value))
        special = "NaN";
    else if (std::isinf(value))
        special = value < 0 ? "-Infinity" : "Infinity";
    if (special) {
        std::strcpy(buffer, special);
        return static_cast<int>(std::strlen(special));
    }
    // The caller vouches for the room (see the header); there is no size to pass on.
    std::sprintf(buffer, format ? format : "%.16g", value);
    // Whatever the locale wrote as a decimal separator becomes "."; the exponent
    // part is left alone.
    for (char* p = buffer; *p; ++p) {
        if (*p == 'e' || *p == 'E')
            break;
        if (!isDigit(*p) && *p != '+' && *p != '-')
            *p = '.';
    }
    return static_cast<int>(std::strlen(buffer));
}

bool ZuStringToDouble(const char* text, char** end, double& value) {
    if (!text) {
        value = 0;
        if (end)
            *end = nullptr;
        return true;
    }
    const char* p = text;
    if (*p == '+' || *p == '-')
        ++p;
    while (isDigit(*p))
        ++p;
    if (*p != '.') {
        value = std::strtod(text, end);
        return !std::isnan(value);
    }
    const char* integerEnd = p;
    const char* fraction = ++p;
    while (isDigit(*p))
        ++p;
    size_t fractionLength = static_cast<size_t>(p - fraction);
    long exponent = 0;
    if (*p == 'e' || *p == 'E') {
        const char* exponentText = ++p;
        if (*p == '+' || *p == '-')
            ++p;
        while (isDigit(*p))
            ++p;
        exponent = std::strtol(exponentText, nullptr, 10); // stops where the digits stop
    }
    if (end)
        *end = const_cast<char*>(p);

    // Rebuild the number without its ".": integer and fraction digits, then an exponent
    // lowered by the fraction's length. Clamping keeps absurd exponents finite in int
    // while still giving 0 or infinity.
    long long scaled = static_cast<long long>(exponent < INT_MIN   ? INT_MIN
                                              : exponent > INT_MAX ? INT_MAX
                                                                   : exponent) -
                       static_cast<long long>(fractionLength > INT_MAX ? INT_MAX : fractionLength);
    if (scaled < INT_MIN)
        scaled = INT_MIN;
    size_t integerLength = static_cast<size_t>(integerEnd - text);
    size_t size = integerLength + fractionLength + 16;
    char local[256];
    char* digits = size <= sizeof local ? local : new (std::nothrow) char[size];
    if (!digits) {
        value = 0;
        return true;
    }
    std::memcpy(digits, text, integerLength);
    std::memcpy(digits + integerLength, fraction, fractionLength);
    writeExponent(digits + integerLength + fractionLength, static_cast<int>(scaled));
    value = std::strtod(digits, nullptr);
    if (digits != local)
        delete[] digits;
    return !std::isnan(value);
}
