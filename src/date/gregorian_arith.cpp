// ZuGregorianCalendar: add, roll, validation, actual limits, cutover and day helpers.
#include <zu/calendar.h>

#include "date/date_internal.h"

#include <cmath>
#include <memory>
#include <new>

using zu_date::clampToInt;
using zu_date::floorMod;
using zu_date::positiveMod;

// --- add --------------------------------------------------------------------------------

void ZuGregorianCalendar::add(ZuDateFields field, int32_t amount, ZuDateErrorCode& code) {
    if (amount == 0 || code > 0)
        return;
    complete(code);
    if (code > 0)
        return;

    double delta;
    bool keepWallTime = false;
    switch (field) {
    case kYear:
    case kYearWoy: {
        int32_t era = internalGet(kEra);
        int64_t y = era == 0 ? static_cast<int64_t>(internalGet(field)) - amount
                             : static_cast<int64_t>(internalGet(field)) + amount;
        if (y < 1) {
            set(field, clampToInt(1 - y));
            set(kEra, 1 - era);
        } else {
            set(field, clampToInt(y));
        }
        pinDayOfMonth();
        return;
    }
    case kMonth: {
        int64_t m = static_cast<int64_t>(internalGet(kMonth)) + amount;
        if (m >= 0) {
            add(kYear, static_cast<int32_t>(m / 12), code);
            set(kMonth, static_cast<int32_t>(m % 12));
        } else {
            add(kYear, static_cast<int32_t>((m + 1) / 12 - 1), code);
            set(kMonth, static_cast<int32_t>(positiveMod(m, 12)));
        }
        pinDayOfMonth();
        return;
    }
    case kEra: {
        int64_t era = static_cast<int64_t>(internalGet(kEra)) + amount;
        set(kEra, era < 0 ? 0 : era > 1 ? 1 : static_cast<int32_t>(era));
        return;
    }
    case kWeekOfYear:
    case kWeekOfMonth:
    case kDayOfWeekInMonth:
        delta = amount * kOneWeek;
        keepWallTime = true;
        break;
    case kDate:
    case kDayOfYear:
    case kDayOfWeek:
    case kDowLocal:
        delta = amount * kOneDay;
        keepWallTime = true;
        break;
    case kAmPm:
        delta = amount * 43200000.0;
        keepWallTime = true;
        break;
    case kHour:
    case kHourOfDay:
        delta = amount * static_cast<double>(kOneHour);
        break;
    case kMinute:
        delta = amount * static_cast<double>(kOneMinute);
        break;
    case kSecond:
        delta = amount * static_cast<double>(kOneSecond);
        break;
    case kMillisecond:
        delta = amount;
        break;
    default:  // kZoneOffset, kDstOffset, out of range
        code = kDateIllegalArgument;
        return;
    }

    int32_t oldDst = internalGet(kDstOffset);
    setTimeInMillis(_time + delta, code);
    if (keepWallTime && code <= 0) {
        int32_t newDst = internalGet(kDstOffset);
        if (newDst != oldDst)
            setTimeInMillis(_time + (static_cast<double>(oldDst) - newDst), code);
    }
}

// --- roll -------------------------------------------------------------------------------

void ZuGregorianCalendar::roll(ZuDateFields field, int32_t amount, ZuDateErrorCode& code) {
    if (amount == 0 || code > 0)
        return;
    if (field < 0 || field >= kFieldCount) {
        code = kDateIllegalArgument;
        return;
    }
    complete(code);
    if (code > 0)
        return;

    int64_t min = getMinimum(field);
    int64_t max = getMaximum(field);
    switch (field) {
    case kDate:
    case kWeekOfMonth:
        rollCutoverAware(field, amount, code);
        return;
    case kEra:
    case kYear:
    case kAmPm:
    case kMinute:
    case kSecond:
    case kMillisecond:
    case kYearWoy:
        set(field, clampToInt(positiveMod(internalGet(field) + static_cast<int64_t>(amount) - min,
                                          max - min + 1) + min));
        return;
    case kMonth:
        set(kMonth, static_cast<int32_t>(positiveMod(internalGet(kMonth) + static_cast<int64_t>(amount), 12)));
        pinDayOfMonth();
        return;
    case kWeekOfYear: {
        int64_t woy = internalGet(kWeekOfYear);
        int32_t yearOfWeek = internalGet(kYearWoy);
        int64_t doy = internalGet(kDayOfYear);
        // Count the day of the year from the start of the week's own year.
        if (internalGet(kMonth) == 0) {
            if (woy >= 52)
                doy += yearLength(yearOfWeek);
        } else if (woy == 1) {
            doy -= yearLength(clampToInt(static_cast<int64_t>(yearOfWeek) - 1));
        }
        woy += amount;
        if (woy < 1 || woy > 52) {
            int64_t last = yearLength(yearOfWeek);
            int64_t lastRel =
                positiveMod(last - doy + internalGet(kDayOfWeek) - _firstDayOfWeek, 7);
            if (6 - lastRel >= _minimalDaysInFirstWeek)
                last -= 7;
            int64_t lastWoy = weekNumber(static_cast<int32_t>(last), static_cast<int32_t>(lastRel + 1));
            // Remainder with the sign of the dividend, deliberately: a large negative
            // amount can leave the week below 1.
            if (lastWoy > 0)
                woy = (woy + lastWoy - 1) % lastWoy + 1;
        }
        set(kWeekOfYear, clampToInt(woy));
        set(kYearWoy, yearOfWeek);
        return;
    }
    case kDayOfYear: {
        double start = _time - (internalGet(kDayOfYear) - 1.0) * kOneDay;
        double length = yearLength() * kOneDay;
        setTimeInMillis(start + floorMod(_time + amount * kOneDay - start, length), code);
        return;
    }
    case kDayOfWeek:
    case kDowLocal: {
        int64_t lead = field == kDayOfWeek
                           ? static_cast<int64_t>(internalGet(kDayOfWeek)) - _firstDayOfWeek
                           : static_cast<int64_t>(internalGet(kDowLocal)) - 1;
        if (lead < 0)
            lead += 7;
        double start = _time - lead * kOneDay;
        setTimeInMillis(start + floorMod(_time + amount * kOneDay - start, kOneWeek), code);
        return;
    }
    case kDayOfWeekInMonth: {
        int32_t date = internalGet(kDate);
        int64_t pre = (date - 1) / 7;
        int64_t post = (monthLength(internalGet(kMonth)) - date) / 7;
        double start = _time - pre * kOneWeek;
        double span = (pre + post + 1) * kOneWeek;
        setTimeInMillis(start + floorMod(amount * kOneWeek + _time - start, span), code);
        return;
    }
    case kHour:
    case kHourOfDay: {
        int64_t h = internalGet(field);
        int64_t n = positiveMod(h + amount, max + 1);
        setTimeInMillis(_time + static_cast<double>(n - h) * kOneHour, code);
        return;
    }
    default:  // kZoneOffset, kDstOffset
        code = kDateIllegalArgument;
        return;
    }
}

// kDate and kWeekOfMonth, whose month may be the cutover month, 10 days shorter.
void ZuGregorianCalendar::rollCutoverAware(ZuDateFields field, int32_t amount,
                                           ZuDateErrorCode& code) {
    int64_t dom = internalGet(kDate);
    int64_t length = monthLength(internalGet(kMonth));
    // Counting back the dropped days from a date after the cutover lands on the first of
    // the month only when the month is the cutover month.
    int64_t cutoverDom = _time >= _gregorianCutover ? dom - 10 : dom;
    double monthStart = _time - (cutoverDom - 1) * kOneDay;
    bool inCutoverMonth = monthStart < _gregorianCutover &&
                          monthStart + (length - 10) * kOneDay >= _gregorianCutover;
    if (inCutoverMonth) {
        dom = cutoverDom;
        length -= 10;
    }

    if (field == kDate) {
        if (!inCutoverMonth) {
            set(kDate, clampToInt(positiveMod(dom + static_cast<int64_t>(amount) - 1, length) + 1));
            return;
        }
        double span = length * kOneDay;
        setTimeInMillis(monthStart + floorMod(_time - monthStart + amount * kOneDay, span), code);
        return;
    }

    // Week of the month: move by whole weeks within the month's weeks, then clamp to it.
    int64_t dow = positiveMod(static_cast<int64_t>(internalGet(kDayOfWeek)) - _firstDayOfWeek, 7);
    int64_t first = positiveMod(dow - dom + 1, 7);
    int64_t start = (7 - first < _minimalDaysInFirstWeek) ? 8 - first : 1 - first;
    int64_t lastRel = (dow + length - dom) % 7;
    int64_t limit = length + 7 - lastRel;
    int64_t gap = limit - start;
    if (gap <= 0)
        return;
    int64_t day = positiveMod(dom + 7 * static_cast<int64_t>(amount) - start, gap) + start;
    if (day < 1)
        day = 1;
    if (day > length)
        day = length;
    if (!inCutoverMonth)
        set(kDate, static_cast<int32_t>(day));
    else
        setTimeInMillis(monthStart + (day - 1) * kOneDay, code);
}

// --- Validation and pinning -------------------------------------------------------------

bool ZuGregorianCalendar::boundsCheck(int32_t value, ZuDateFields field) const {
    return value >= getMinimum(field) && value <= getMaximum(field);
}

bool ZuGregorianCalendar::validateFields() const {
    for (int32_t i = 0; i < kFieldCount; ++i) {
        ZuDateFields field = static_cast<ZuDateFields>(i);
        if (field != kDate && field != kDayOfYear && _isSet[i] && !boundsCheck(_fields[i], field))
            return false;
    }
    if (_isSet[kDate]) {
        int32_t date = internalGet(kDate);
        if (date < getMinimum(kDate) || date > monthLength(internalGet(kMonth)))
            return false;
    }
    if (_isSet[kDayOfYear]) {
        int32_t doy = internalGet(kDayOfYear);
        if (doy < 1 || doy > yearLength())
            return false;
    }
    if (_isSet[kDayOfWeekInMonth] && internalGet(kDayOfWeekInMonth) == 0)
        return false;
    return true;
}

void ZuGregorianCalendar::pinDayOfMonth() {
    int32_t length = monthLength(internalGet(kMonth));
    if (internalGet(kDate) > length)
        set(kDate, length);
}

// --- Actual limits ----------------------------------------------------------------------

int32_t ZuGregorianCalendar::getActualMaximum(ZuDateFields field, ZuDateErrorCode& code) {
    if (code > 0)
        return 0;
    switch (field) {
    case kYear:
    case kYearWoy: {
        std::unique_ptr<ZuCalendar> work(clone());
        if (!work) {
            code = kDateMemoryAllocation;
            return 0;
        }
        work->setLenient(true);
        int32_t era = work->get(kEra, code);
        double instant = work->getTimeInMillis(code);
        int32_t low = kLeastMaxValues[field];
        int32_t high = kMaxValues[field] + 1;
        while (high > low + 1 && code <= 0) {
            int32_t y = (low + high) / 2;
            work->set(field, y);
            if (work->get(field, code) == y && work->get(kEra, code) == era) {
                low = y;
            } else {
                work->setTimeInMillis(instant, code);
                high = y;
            }
        }
        return code > 0 ? 0 : low;
    }
    case kWeekOfYear:
    case kWeekOfMonth:
    case kDayOfWeekInMonth:
        return ZuCalendar::getActualMaximum(field, code);
    case kDate: {
        int32_t month = get(kMonth, code);
        return code > 0 ? 0 : monthLength(month);
    }
    case kDayOfYear:
        return yearLength();
    default:
        return getMaximum(field);
    }
}

int32_t ZuGregorianCalendar::getActualMaximum(ZuDateFields field) {
    ZuDateErrorCode code = kDateNoError;
    return getActualMaximum(field, code);
}

int32_t ZuGregorianCalendar::getActualMinimum(ZuDateFields field, ZuDateErrorCode& code) {
    return code > 0 ? 0 : getMinimum(field);
}

int32_t ZuGregorianCalendar::getActualMinimum(ZuDateFields field) { return getMinimum(field); }

// --- Cutover, daylight time and epoch day -----------------------------------------------

void ZuGregorianCalendar::setGregorianChange(double millis, ZuDateErrorCode& code) {
    if (code > 0)
        return;
    _gregorianCutover = millis;
    double quotient = floorDivide(millis, kOneDay);
    _normalizedGregorianCutover = quotient * kOneDay;
    if (quotient < 0 && _normalizedGregorianCutover > 0)
        _normalizedGregorianCutover = (quotient + 1) * kOneDay;

    // The year comes from a calendar with the default cutover, in the same zone.
    ZuGregorianCalendar probe(getTimeZone(), code);
    probe.setTimeInMillis(millis, code);
    int32_t year = probe.get(kYear, code);
    int32_t era = probe.get(kEra, code);
    if (code > 0)
        return;
    _gregorianCutoverYear = era == 0 ? clampToInt(1 - static_cast<int64_t>(year)) : year;
}

bool ZuGregorianCalendar::inDaylightTime(ZuDateErrorCode& code) {
    if (code > 0 || !getTimeZone().useDaylightTime())
        return false;
    complete(code);
    return code <= 0 && internalGet(kDstOffset) != 0;
}

int32_t ZuGregorianCalendar::getEpochDay(ZuDateErrorCode& code) {
    if (code > 0)
        return 0;
    complete(code);
    if (code > 0)
        return 0;
    int64_t offsetSeconds =
        (static_cast<int64_t>(internalGet(kDstOffset)) + internalGet(kZoneOffset)) / 1000;
    return clampToInt(std::trunc((_time / 1000 + static_cast<double>(offsetSeconds)) / 86400));
}
