// ZuNumeric sums: add and sub through the digit kernels this processor runs best, and
// the signed operators that choose between them.
#include <zu/numeric.h>

#include "numeric_kernels.h"

using zu_numeric::SumOutcome;

ZuNumeric ZuNumeric::add(const ZuNumeric& other) const {
    ZuNumeric result;
    const auto kernel = zu_numeric::useWideKernels ? zu_numeric::addWide : zu_numeric::addPortable;
    const SumOutcome sum = kernel(_digits, _pointPosition, other._digits, other._pointPosition, result._digits);
    if (!sum.held) return result;
    result._pointPosition = sum.point;
    result._sign = sum.zero ? 0 : _sign;
    return result;
}

ZuNumeric ZuNumeric::sub(const ZuNumeric& other) const {
    ZuNumeric result;
    const auto kernel = zu_numeric::useWideKernels ? zu_numeric::subWide : zu_numeric::subPortable;
    const SumOutcome difference =
        kernel(_digits, _pointPosition, other._digits, other._pointPosition, result._digits);
    if (!difference.held) return result;
    result._pointPosition = difference.point;
    result._sign = difference.zero ? 0 : _sign;
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
