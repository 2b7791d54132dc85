// Helpers shared by the calendar sources: conversions that never overflow.
#ifndef ZU_SRC_DATE_INTERNAL_H
#define ZU_SRC_DATE_INTERNAL_H

#include <cmath>
#include <cstdint>

namespace zu_date {

// Clamps to the int32 range; NaN gives 0. Every double that becomes a field goes
// through here, so that absurd instants give absurd fields, never undefined behaviour.
inline int32_t clampToInt(double v) {
    if (!(v == v))
        return 0;
    if (v >= 2147483647.0)
        return INT32_MAX;
    if (v <= -2147483648.0)
        return INT32_MIN;
    return static_cast<int32_t>(v);
}

inline int32_t clampToInt(int64_t v) {
    if (v > INT32_MAX)
        return INT32_MAX;
    if (v < INT32_MIN)
        return INT32_MIN;
    return static_cast<int32_t>(v);
}

// x - floor(x / y) * y: the remainder in [0, y) for y > 0.
inline double floorMod(double x, double y) { return x - std::floor(x / y) * y; }

// a mod b made non-negative (b > 0).
inline int64_t positiveMod(int64_t a, int64_t b) {
    int64_t r = a % b;
    return r < 0 ? r + b : r;
}

} // namespace zu_date

#endif
