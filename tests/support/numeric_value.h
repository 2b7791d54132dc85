// Test helper: a decimal value in a form independent of how ZuNumeric holds it.
#ifndef ZU_TEST_NUMERIC_VALUE_H
#define ZU_TEST_NUMERIC_VALUE_H

#include <zu/numeric.h>

#include <string>

// Value = (negative ? -1 : 1) * 0.digits * 10^exponent, digits without leading or trailing
// zeros; zero has empty digits, exponent 0 and no sign.
struct NumericValue {
    bool negative;
    std::string digits;
    int exponent;
    bool operator==(const NumericValue& o) const {
        return negative == o.negative && digits == o.digits && exponent == o.exponent;
    }
};

inline NumericValue numericValue(bool negative, std::string digits, int point) {
    const size_t first = digits.find_first_not_of('0');
    if (first == std::string::npos) return {false, "", 0};
    digits.erase(digits.find_last_not_of('0') + 1);
    return {negative, digits.substr(first), point - static_cast<int>(first)};
}

inline NumericValue numericValue(const ZuNumeric& n) {
    return numericValue(n.getSign() != 0, n.getDigits(), n.getPointPosition());
}

#endif
