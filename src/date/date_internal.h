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

// Quotient rounded toward minus infinity (b > 0; a at least b above the int64 minimum).
inline int64_t floorDiv(int64_t a, int64_t b) { return (a >= 0 ? a : a - (b - 1)) / b; }

inline bool gregorianLeap(int64_t year) {
    return (year % 4 == 0) && ((year % 100 != 0) || (year % 400 == 0));
}

// The leap rule of a hybrid calendar: Julian (the two low bits, right for negative
// years too) before the cutover year, Gregorian from it on.
inline bool hybridLeap(int64_t year, int64_t cutoverYear) {
    return year < cutoverYear ? (year & 3) == 0 : gregorianLeap(year);
}

// Julian day of the day before 1 January of a proleptic year, and the year's leap flag
// (Julian, or Gregorian when gregorian is set). Integer arithmetic: exact for any int32
// year, and the same values as the floor divisions on doubles.
inline double julianDayBeforeYear(bool gregorian, int64_t year, bool& leap) {
    int64_t y = year - 1;
    int64_t julianDay = 365 * y + floorDiv(y, 4) + 1721423;
    leap = (year & 3) == 0;
    if (gregorian) {
        leap = gregorianLeap(year);
        julianDay += floorDiv(y, 400) - floorDiv(y, 100) + 2;
    }
    return static_cast<double>(julianDay);
}

} // namespace zu_date

#endif
