// ZuGregorianCalendar: fields from an instant and an instant from fields.
#include <zu/calendar.h>

#include "date/date_internal.h"

#include <cmath>
#include <cstring>
#include <algorithm>

using zu_date::clampToInt;
using zu_date::floorDiv;
using zu_date::gregorianLeap;
using zu_date::julianDayBeforeYear;

namespace {

// Field computations run on local instants within this bound (about 3 million years
// either side of 1970): far beyond every limit table, and small enough that no year,
// day or week count overflows an int32. Larger instants give the bound's fields.
const double kMaxFieldMillis = 1.0e17;

// Guards on local = instant + offset: a sum whose sign flips against both operands is
// replaced by 2^52 - 1 with the right sign. With doubles this never fires in practice;
// it is kept so that the rule holds whatever the representation.
const double kGuardMillis = 4503599627370495.0;

double addOffset(double instant, double offset) {
    double local = instant + offset;
    if (instant > 0 && offset > 0 && local < 0)
        local = kGuardMillis;
    if (instant < 0 && offset < 0 && local > 0)
        local = -kGuardMillis;
    return local;
}

// The zone's getOffset without the month length of the previous month, as its short form
// does it. A zone without daylight saving gives its raw offset after the same argument
// checks, which are made here to spare two calls through the dynamic linker.
int32_t zoneOffset(const ZuTimeZone& zone, int32_t era, int32_t year, int32_t month, int32_t day,
                   int32_t dayOfWeek, int32_t millis, int32_t monthLength, ZuDateErrorCode& code) {
    if (month < 0 || month > 11) {
        code = kDateIllegalArgument;
        return -1;
    }
    if (!zone.getUseDaylight()) {
        uint8_t e = static_cast<uint8_t>(era), dow = static_cast<uint8_t>(dayOfWeek);
        if (e > 1 || day < 1 || day > monthLength || dow < 1 || dow > 7 || millis < 0 ||
            millis > 86399999 || monthLength < 28 || monthLength > 31) {
            code = kDateIllegalArgument;
            return -1;
        }
        return zone.getRawOffset();
    }
    return zone.getOffset(static_cast<uint8_t>(era), year, month, day,
                          static_cast<uint8_t>(dayOfWeek), millis, monthLength,
                          static_cast<uint8_t>(ZuTimeZone::staticMonthLength[(month + 11) % 12]),
                          code);
}

// Weekday 1-7 (1 = Sunday) from the base d of fmod(jd + 1, 7).
int32_t weekdayFromBase(double d) { return static_cast<int32_t>(d < 0 ? d + 8 : d + 1); }

} // namespace

// The month length handed to the zone, from the era and era-relative year in use.
// monthLength(month) would read the era only when its set flag is on, which it may not
// be here (after clear()); era 1 for a BC year could then give 28 days to a 29 February
// and make the zone refuse the date.
int32_t ZuGregorianCalendar::computedMonthLength(int32_t era, int32_t fieldYear) const {
    int64_t year = era == 0 ? 1 - static_cast<int64_t>(fieldYear) : fieldYear;
    int32_t month = internalGet(kMonth);
    if (month < 0 || month > 11)
        month = static_cast<int32_t>(zu_date::positiveMod(month, 12));
    return zu_date::hybridLeap(year, _gregorianCutoverYear) ? kLeapMonthLength[month]
                                                            : kMonthLength[month];
}

// --- Week helpers -----------------------------------------------------------------------

int32_t ZuGregorianCalendar::weekNumber(int32_t dayOfPeriod, int32_t dayOfWeek) const {
    int64_t s = zu_date::positiveMod(
        static_cast<int64_t>(dayOfWeek) - _firstDayOfWeek - dayOfPeriod + 1, 7);
    int64_t week = (static_cast<int64_t>(dayOfPeriod) + s - 1) / 7;
    if (7 - s >= _minimalDaysInFirstWeek)
        ++week;
    return clampToInt(week);
}

int32_t ZuGregorianCalendar::computeRelativeDOW(double julianDay) const {
    double d = std::fmod(julianDay + 1, 7);
    if (!(d == d))
        d = 0;
    int32_t relative = weekdayFromBase(d) - _firstDayOfWeek;
    return relative < 0 ? relative + 7 : relative;
}

int32_t ZuGregorianCalendar::computeRelativeDOW() const {
    if (_stamp[kDowLocal] > _stamp[kDayOfWeek])
        return clampToInt(static_cast<int64_t>(internalGet(kDowLocal)) - 1);
    if (_stamp[kDayOfWeek] == 0)
        return 0;
    int64_t relative = static_cast<int64_t>(internalGet(kDayOfWeek)) - _firstDayOfWeek;
    return clampToInt(relative < 0 ? relative + 7 : relative);
}

int32_t ZuGregorianCalendar::computeDOYfromWOY(double julianDayOfYear) const {
    int32_t r = computeRelativeDOW(julianDayOfYear + 1);
    int64_t start = (7 - r < _minimalDaysInFirstWeek) ? 8 - r : 1 - r;
    return clampToInt(start + 7 * static_cast<int64_t>(internalGet(kWeekOfYear)) +
                      computeRelativeDOW() - 7);
}

// --- Instant to fields ------------------------------------------------------------------

void ZuGregorianCalendar::timeToFields(double localMillis, bool quick, ZuDateErrorCode& code) {
    if (code <= 0)
        fieldsFromLocal(localMillis, quick);
}

void ZuGregorianCalendar::fieldsFromLocal(double localMillis, bool quick) {
    double local = localMillis;
    if (!(local == local))
        local = 0;
    else if (local > kMaxFieldMillis)
        local = kMaxFieldMillis;
    else if (local < -kMaxFieldMillis)
        local = -kMaxFieldMillis;

    int64_t julianDay = static_cast<int64_t>(std::floor(local / kOneDay)) + kEpochStartAsJulianDay;
    fieldsFromDay(julianDay, local >= _normalizedGregorianCutover, quick);
}

// Integer day arithmetic: the bound on local instants keeps every Julian day within an
// int32, and on integral values these divisions equal the floor divisions and the fmod
// remainders of the double arithmetic.
void ZuGregorianCalendar::fieldsFromDay(int64_t julianDay, bool gregorianSide, bool quick) {
    int32_t year;
    int32_t dayOfYear;
    bool leap;
    int32_t weekdayBase;
    if (gregorianSide) {
        // 32 bits suffice, and the remainders are non-negative once the 400-year cycles
        // are taken off (unsigned divisions by constants are the cheapest).
        int32_t g = static_cast<int32_t>(julianDay - kJan1_1JulianDay);
        int32_t q400 = (g >= 0 ? g : g - 146096) / 146097;
        uint32_t r = static_cast<uint32_t>(g - q400 * 146097);
        uint32_t q100 = r / 36524u;
        r -= q100 * 36524u;
        uint32_t q4 = r / 1461u;
        r -= q4 * 1461u;
        uint32_t q1 = r / 365u;
        r -= q1 * 365u;
        year = 400 * q400 + static_cast<int32_t>(100 * q100 + 4 * q4 + q1);
        dayOfYear = static_cast<int32_t>(r);
        if (q100 == 4 || q1 == 4)
            dayOfYear = 365;  // the last day of a leap year
        else
            ++year;
        leap = (year & 3) == 0 && ((year % 100 != 0) || (year % 400 == 0));
        weekdayBase = (g + 1) % 7;
    } else {
        int64_t e = julianDay - (kJan1_1JulianDay - 2);
        year = static_cast<int32_t>(floorDiv(4 * e + 1464, 1461));
        dayOfYear = static_cast<int32_t>(e - (365 * (static_cast<int64_t>(year) - 1) +
                                              floorDiv(static_cast<int64_t>(year) - 1, 4)));
        leap = (year & 3) == 0;
        weekdayBase = static_cast<int32_t>((e - 1) % 7);
    }

    // Without branches on the leap flag, which random dates make unpredictable:
    // kLeapNumDays[m] is kNumDays[m] plus one from March on.
    int32_t isLeap = leap ? 1 : 0;
    int32_t correction = dayOfYear >= 59 + isLeap ? 2 - isLeap : 0;
    int32_t month = (12 * (dayOfYear + correction) + 6) / 367;
    int32_t date = dayOfYear - (kNumDays[month] + (isLeap & (month >= 2))) + 1;
    int32_t dayOfWeek = weekdayBase < 0 ? weekdayBase + 8 : weekdayBase + 1;
    int32_t era = year > 0 ? 1 : 0;
    // The cutover year counts from 1 January across the dropped days; month and date
    // already name the Gregorian day.
    if (year == _gregorianCutoverYear && gregorianSide)
        dayOfYear -= 10;

    internalSet(kEra, era);
    internalSet(kYear, era == 1 ? year : 1 - year);
    internalSet(kMonth, month);
    internalSet(kDate, date);
    internalSet(kDayOfWeek, dayOfWeek);
    internalSet(kDayOfYear, dayOfYear + 1);
    if (quick)
        return;

    int32_t doy = internalGet(kDayOfYear);
    int32_t dow = dayOfWeek;
    int32_t fieldYear = internalGet(kYear);
    // Weekday of 1 January relative to the first day of the week.
    int32_t j = (dow - doy - _firstDayOfWeek + 701) % 7;
    int32_t woy = (doy + j - 1) / 7;
    int32_t yearOfWeek;
    if (7 - j < _minimalDaysInFirstWeek) {
        yearOfWeek = fieldYear;
        if (woy == 0) {
            woy = weekNumber(doy + yearLength(year - 1), dow);
            yearOfWeek = fieldYear - 1;
        }
    } else {
        int32_t r = (dow - _firstDayOfWeek + 7) % 7;
        int32_t lengthOfYear = yearLength();
        int32_t q = (r + lengthOfYear - doy) % 7;
        int32_t next = doy - r + 7;
        if (doy >= 360 && 6 - (q < 0 ? q + 7 : q) >= _minimalDaysInFirstWeek &&
            lengthOfYear < next) {
            woy = 1;  // the week that holds the next 1 January
            yearOfWeek = fieldYear + 1;
        } else {
            ++woy;
            yearOfWeek = fieldYear;
        }
    }
    internalSet(kWeekOfYear, woy);
    internalSet(kYearWoy, yearOfWeek);
    internalSet(kWeekOfMonth, weekNumber(date, dow));
    internalSet(kDayOfWeekInMonth, (date - 1) / 7 + 1);
    int32_t dowLocal = dow - _firstDayOfWeek + 1;
    internalSet(kDowLocal, dowLocal < 1 ? dowLocal + 7 : dowLocal);
}

void ZuGregorianCalendar::computeFields(ZuDateErrorCode& code) {
    if (code > 0)
        return;
    if (!_zone) {
        code = kDateIllegalArgument;
        return;
    }
    int32_t raw = _zone->getRawOffset();
    double local = addOffset(_time, raw);
    // One division gives both the day (for the date fields) and the time of day.
    double day = std::floor(local / kOneDay);
    double dayPart = local - day * kOneDay;
    if (std::fabs(local) <= kMaxFieldMillis)
        fieldsFromDay(static_cast<int64_t>(day) + kEpochStartAsJulianDay,
                      local >= _normalizedGregorianCutover, false);
    else
        fieldsFromLocal(local, false);  // out of bounds or NaN: clamped there
    int32_t millisInDay = clampToInt(dayPart);
    if (millisInDay < 0)
        millisInDay += static_cast<int32_t>(kOneDay);

    int32_t offset = zoneOffset(*_zone, internalGet(kEra), internalGet(kYear), internalGet(kMonth),
                                internalGet(kDate), internalGet(kDayOfWeek), millisInDay,
                                computedMonthLength(internalGet(kEra), internalGet(kYear)), code);
    if (code > 0)
        return;
    int32_t dst = clampToInt(static_cast<int64_t>(offset) - raw);

    int64_t wall = static_cast<int64_t>(millisInDay) + dst;
    if (wall > 86399999) {
        local = addOffset(local, dst);
        wall -= 86400000;
        fieldsFromLocal(local, false);
    }
    // A negative total is deliberately left as it is (the time fields go negative).
    int32_t inDay = clampToInt(wall);
    internalSet(kMillisecond, inDay % 1000);
    internalSet(kSecond, (inDay / 1000) % 60);
    internalSet(kMinute, (inDay / 60000) % 60);
    int32_t hourOfDay = inDay / 3600000;
    internalSet(kHourOfDay, hourOfDay);
    internalSet(kAmPm, hourOfDay / 12);
    internalSet(kHour, hourOfDay % 12);
    internalSet(kZoneOffset, raw);
    internalSet(kDstOffset, dst);
    // Every field computed: stamp 1, set.
    static const int32_t kComputed[kFieldCount] = {1, 1, 1, 1, 1, 1, 1, 1, 1, 1,
                                                   1, 1, 1, 1, 1, 1, 1, 1, 1};
    std::memcpy(_stamp, kComputed, sizeof _stamp);
    std::fill_n(_isSet, kFieldCount, true);
}

// --- Fields to instant ------------------------------------------------------------------

double ZuGregorianCalendar::computeJulianDay(bool isGregorian, int32_t year) {
    return julianDayFromFields(isGregorian, year);
}

double ZuGregorianCalendar::julianDayFromFields(bool isGregorian, int32_t year) {
    int32_t best = std::max(std::max(_stamp[kDayOfYear], _stamp[kWeekOfMonth]),
                            std::max(std::max(_stamp[kDayOfWeekInMonth], _stamp[kMonth]), _stamp[kDate]));
    bool leap;

    if (_stamp[kWeekOfYear] >= best) {
        if (_stamp[kYearWoy] > _stamp[kYear]) {
            year = internalGet(kYearWoy);
            if (_stamp[kEra] != 0 && internalGet(kEra) == 0)
                year = clampToInt(1 - static_cast<int64_t>(year));
            best = _stamp[kWeekOfYear] + 1;
        } else if (_stamp[kWeekOfYear] > best) {
            if (_stamp[kYearWoy] == 0 || _stamp[kYearWoy] < _stamp[kYear]) {
                // Weeks straddle year ends: the year field names the calendar year of the
                // day, which may differ from the year its week belongs to.
                int32_t woy = internalGet(kWeekOfYear);
                if (woy == 1) {
                    double before = julianDayBeforeYear(isGregorian, year, leap);
                    int32_t r = computeRelativeDOW(before + 1);
                    bool late = 7 - r < _minimalDaysInFirstWeek;
                    int32_t rDay = computeRelativeDOW();
                    if ((late ? 8 : 1) - r < 1 && (r > rDay || rDay > (late ? 13 : 6)))
                        year = clampToInt(static_cast<int64_t>(year) + 1);
                } else if (woy > 51) {
                    double before = julianDayBeforeYear(isGregorian, year, leap);
                    if (computeDOYfromWOY(before) > yearLength(year))
                        year = clampToInt(static_cast<int64_t>(year) - 1);
                }
            }
            if (_stamp[kYearWoy] >= _stamp[kYear] && _stamp[kYearWoy] != 0)
                year = internalGet(kYearWoy);
            best = _stamp[kWeekOfYear];
        }
    }

    if (best == 0)
        return julianDayBeforeYear(isGregorian, year, leap) + 1;

    if ((best == _stamp[kDayOfYear] || best == _stamp[kWeekOfYear]) && best != _stamp[kMonth] &&
        best != _stamp[kDate] && best != _stamp[kWeekOfMonth] &&
        best != _stamp[kDayOfWeekInMonth]) {
        double start = julianDayBeforeYear(isGregorian, year, leap);
        double doy = best == _stamp[kDayOfYear] ? internalGet(kDayOfYear) : computeDOYfromWOY(start);
        if (isGregorian && year == _gregorianCutoverYear)
            doy -= 10;
        return start + doy;
    }

    int32_t month = 0;
    if (_stamp[kMonth] != 0) {
        month = internalGet(kMonth);
        if (month < 0 || month > 11) {
            int32_t rem;
            year = clampToInt(static_cast<int64_t>(year) + floorDivide(month, 12, rem));
            month = rem;
        }
    }
    double start = julianDayBeforeYear(isGregorian, year, leap);
    start += kNumDays[month] + ((leap ? 1 : 0) & (month >= 2));  // = kLeapNumDays in a leap year

    double date;
    if (best == _stamp[kWeekOfMonth] || best == _stamp[kDayOfWeekInMonth]) {
        int64_t first = computeRelativeDOW(start + 1);
        int64_t w = 0;
        if (_stamp[kDayOfWeek] != 0) {
            w = static_cast<int64_t>(internalGet(kDayOfWeek)) - _firstDayOfWeek;
            if (w < 0)
                w += 7;  // as computeRelativeDOW: a Sunday is the end of a Monday week
        }
        int64_t d = w - first;
        if (best == _stamp[kWeekOfMonth]) {
            d = 7 * static_cast<int64_t>(internalGet(kWeekOfMonth)) +
                ((7 - first < _minimalDaysInFirstWeek) ? d + 8 : d + 1) - 7;
        } else {
            int64_t d1 = d + 1 < 1 ? d + 8 : d + 1;
            int64_t n = internalGet(kDayOfWeekInMonth);
            if (n < 0)
                d = (n + (monthLength(month, year) - d1) / 7) * 7 + d1 + 7;
            else
                d = n * 7 + d1 - 7;
        }
        date = static_cast<double>(d);
    } else {
        date = _stamp[kDate] != 0 ? internalGet(kDate) : 1;
    }
    return start + date;
}

void ZuGregorianCalendar::computeTime(ZuDateErrorCode& code) {
    if (code > 0)
        return;
    if (!_zone) {
        code = kDateIllegalArgument;
        return;
    }
    if (!_lenient && !validateFields()) {
        code = kDateIllegalArgument;
        return;
    }
    int32_t year = _stamp[kYear] != 0 ? internalGet(kYear) : kEpochYear;
    int32_t era = 1;
    if (_stamp[kEra] != 0) {
        era = internalGet(kEra);
        if (era == 0) {
            year = clampToInt(1 - static_cast<int64_t>(year));
        } else if (era != 1) {
            code = kDateIllegalArgument;
            return;
        }
    }

    bool isGregorian = year >= _gregorianCutoverYear;
    double julianDay = julianDayFromFields(isGregorian, year);
    double millis = (julianDay - kEpochStartAsJulianDay) * kOneDay;
    if (isGregorian != (millis >= _normalizedGregorianCutover) &&
        julianDay != -106749550580.0) {
        // The date lies on the other side of the cutover than its year suggests.
        isGregorian = !isGregorian;
        julianDay = julianDayFromFields(isGregorian, year);
        millis = (julianDay - kEpochStartAsJulianDay) * kOneDay;
    }

    int64_t hour = 0;
    if (_stamp[kHourOfDay] != 0 || _stamp[kHour] != 0) {
        if (_stamp[kHourOfDay] >= _stamp[kHour])
            hour = internalGet(kHourOfDay);
        else
            hour = static_cast<int64_t>(internalGet(kAmPm)) * 12 + internalGet(kHour);
    }
    int64_t wholeMillis =
        ((hour * 60 + internalGet(kMinute)) * 60 + internalGet(kSecond)) * 1000 + internalGet(kMillisecond);
    double millisInDay = static_cast<double>(wholeMillis);
    double local = millis + millisInDay;

    if (_stamp[kZoneOffset] < 2) {
        int32_t raw = _zone->getRawOffset();
        // Within about 80,000 years of 1970 and 12,000 days of time, every value below is
        // an exact integer in a double and the integer day arithmetic gives the same day
        // and time of day as local floor-divided by a day; elsewhere the doubles decide.
        double dayMillis;
        int64_t localDay = 0;
        bool exact = std::fabs(julianDay - kEpochStartAsJulianDay) < 30000000.0 &&
                     wholeMillis > -(INT64_C(1) << 40) && wholeMillis < (INT64_C(1) << 40);
        if (exact) {
            int64_t shift = floorDiv(wholeMillis, 86400000);
            localDay = static_cast<int64_t>(julianDay) + shift;
            dayMillis = static_cast<double>(wholeMillis - shift * 86400000);
        } else {
            dayMillis = zu_date::floorMod(local, kOneDay);
        }
        int32_t dayOfWeek;
        int32_t fieldYear;
        if (!_lenient && _stamp[kMonth] != 0 && _stamp[kDate] != 0 && millisInDay == dayMillis) {
            double d = std::fmod(julianDay + 1, 7);
            dayOfWeek = weekdayFromBase(d == d ? d : 0);
            // Validated fields; a year never set is the epoch year, as above.
            fieldYear = _stamp[kYear] != 0 ? internalGet(kYear) : kEpochYear;
        } else {
            if (exact)
                fieldsFromDay(localDay, local >= _normalizedGregorianCutover, true);
            else
                fieldsFromLocal(local, true);
            dayOfWeek = internalGet(kDayOfWeek);
            era = internalGet(kEra);
            fieldYear = internalGet(kYear);
        }
        int32_t offset = zoneOffset(*_zone, era, fieldYear, internalGet(kMonth), internalGet(kDate),
                                    dayOfWeek, clampToInt(dayMillis),
                                    computedMonthLength(era, fieldYear), code);
        if (code > 0)
            return;
        _time = local - raw - (static_cast<double>(offset) - raw);
    } else {
        // The daylight offset field is used only here; its own stamp is never tested.
        _time = local - internalGet(kZoneOffset) - internalGet(kDstOffset);
    }
}
