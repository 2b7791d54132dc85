// Test helpers for decimal numbers: the formatted text, and the value in a form that does
// not depend on how ZuNumeric holds it.
#ifndef ZU_TEST_NUMERIC_VALUE_H
#define ZU_TEST_NUMERIC_VALUE_H

#include <zu/numeric.h>

#include <string>
#include <tuple>

inline std::string text(const ZuNumeric& n, int size = 128) { char out[128]; return n.get(out, size), out; }

// (negative, digits without leading or trailing zeros, E) for +-0.digits x 10^E; zero is
// (false, "", 0).
using NumericValue = std::tuple<bool, std::string, int>;

inline NumericValue numericValue(bool negative, std::string digits, int point) {
    const size_t first = digits.find_first_not_of('0');
    if (first == std::string::npos) return {false, "", 0};
    digits.erase(digits.find_last_not_of('0') + 1);
    return {negative, digits.substr(first), point - static_cast<int>(first)};
}

inline NumericValue numericValue(const ZuNumeric& n) { return numericValue(n.getSign(), n.getDigits(), n.getPointPosition()); }

#endif
