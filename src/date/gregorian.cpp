// ZuGregorianCalendar: constants, limit tables, construction, comparison and the
// arithmetic helpers on years, months and Julian days.
#include <zu/calendar.h>

#include "date/date_internal.h"

#include <cmath>
#include <new>

const int32_t ZuGregorianCalendar::kNumDays[12] = {0,   31,  59,  90,  120, 151,
                                                   181, 212, 243, 273, 304, 334};
const int32_t ZuGregorianCalendar::kLeapNumDays[12] = {0,   31,  60,  91,  121, 152,
                                                       182, 213, 244, 274, 305, 335};
const int32_t ZuGregorianCalendar::kMonthLength[12] = {31, 28, 31, 30, 31, 30,
                                                       31, 31, 30, 31, 30, 31};
const int32_t ZuGregorianCalendar::kLeapMonthLength[12] = {31, 29, 31, 30, 31, 30,
                                                           31, 31, 30, 31, 30, 31};

// Indexed by ZuDateFields.
const int32_t ZuGregorianCalendar::kMinValues[kFieldCount] = {
    0, 1, 0, 1, 0, 1, 1, 1, -1, 0, 0, 0, 0, 0, 0, -43200000, 0, 1, 1};
const int32_t ZuGregorianCalendar::kLeastMaxValues[kFieldCount] = {
    1, 140742, 11, 52, 4, 28, 365, 7, 4, 1, 11, 23, 59, 59, 999, 43200000, 3600000, 140742, 7};
const int32_t ZuGregorianCalendar::kMaxValues[kFieldCount] = {
    1, 144683, 11, 53, 6, 31, 366, 7, 6, 1, 11, 23, 59, 59, 999, 43200000, 3600000, 144683, 7};

// --- Construction -----------------------------------------------------------------------

void ZuGregorianCalendar::initCutover() {
    _gregorianCutover = kPapalCutover;
    _normalizedGregorianCutover = kPapalCutover;
    _gregorianCutoverYear = 1582;
}

ZuGregorianCalendar::ZuGregorianCalendar(ZuDateErrorCode& code) : ZuCalendar(code) {
    initCutover();
    setTimeInMillis(getNow(), code);
}

ZuGregorianCalendar::ZuGregorianCalendar(const ZuTimeZone& zone, ZuDateErrorCode& code)
    : ZuCalendar(code) {
    initCutover();
    setTimeZone(zone);
    setTimeInMillis(getNow(), code);
}

ZuGregorianCalendar::ZuGregorianCalendar(const ZuTimeZone* zone, ZuDateErrorCode& code)
    : ZuCalendar(code) {
    initCutover();
    if (zone) {
        setTimeZone(*zone);
    } else {
        // Same as the (zone pointer, locale) form: code 1 and no zone.
        delete _zone;
        _zone = nullptr;
        if (code <= 0)
            code = kDateIllegalArgument;
    }
    setTimeInMillis(getNow(), code);
}

ZuGregorianCalendar::ZuGregorianCalendar(const ZuTimeZone& zone, const ZuLocale& locale,
                                         ZuDateErrorCode& code)
    : ZuCalendar(zone, locale, code) {
    initCutover();
    setTimeInMillis(getNow(), code);
}

ZuGregorianCalendar::ZuGregorianCalendar(const ZuTimeZone* zone, const ZuLocale& locale,
                                         ZuDateErrorCode& code)
    : ZuCalendar(zone, locale, code) {
    initCutover();
    setTimeInMillis(getNow(), code);
}

ZuGregorianCalendar::ZuGregorianCalendar(const ZuLocale& locale, ZuDateErrorCode& code)
    : ZuCalendar(*ZuTimeZone::createDefault(), locale, code) {
    initCutover();
    setTimeInMillis(getNow(), code);
}

ZuGregorianCalendar::ZuGregorianCalendar(int32_t year, int32_t month, int32_t date,
                                         ZuDateErrorCode& code)
    : ZuCalendar(code) {
    initCutover();
    set(kEra, 1);
    set(year, month, date);
}

ZuGregorianCalendar::ZuGregorianCalendar(int32_t year, int32_t month, int32_t date,
                                         int32_t hourOfDay, int32_t minute,
                                         ZuDateErrorCode& code)
    : ZuCalendar(code) {
    initCutover();
    set(kEra, 1);
    set(year, month, date, hourOfDay, minute);
}

ZuGregorianCalendar::ZuGregorianCalendar(int32_t year, int32_t month, int32_t date,
                                         int32_t hourOfDay, int32_t minute, int32_t second,
                                         ZuDateErrorCode& code)
    : ZuCalendar(code) {
    initCutover();
    set(kEra, 1);
    set(year, month, date, hourOfDay, minute, second);
}

ZuGregorianCalendar::ZuGregorianCalendar(const ZuGregorianCalendar& other)
    : ZuCalendar(other), _gregorianCutover(other._gregorianCutover),
      _normalizedGregorianCutover(other._normalizedGregorianCutover),
      _gregorianCutoverYear(other._gregorianCutoverYear) {}

ZuGregorianCalendar& ZuGregorianCalendar::operator=(const ZuGregorianCalendar& other) {
    if (this != &other) {
        ZuCalendar::operator=(other);
        _gregorianCutover = other._gregorianCutover;
        _normalizedGregorianCutover = other._normalizedGregorianCutover;
        _gregorianCutoverYear = other._gregorianCutoverYear;
    }
    return *this;
}

ZuGregorianCalendar::~ZuGregorianCalendar() = default;

ZuCalendar* ZuGregorianCalendar::clone() const {
    return new (std::nothrow) ZuGregorianCalendar(*this);
}

bool ZuGregorianCalendar::operator==(const ZuCalendar& other) const {
    if (this == &other)
        return true;
    const ZuGregorianCalendar* that = dynamic_cast<const ZuGregorianCalendar*>(&other);
    return that && ZuCalendar::operator==(other) && _gregorianCutover == that->_gregorianCutover;
}

bool ZuGregorianCalendar::equivalentTo(const ZuCalendar& other) const {
    const ZuGregorianCalendar* that = dynamic_cast<const ZuGregorianCalendar*>(&other);
    return that && ZuCalendar::equivalentTo(other) &&
           _gregorianCutover == that->_gregorianCutover;
}

// --- Limits -----------------------------------------------------------------------------

namespace {

int32_t limit(const int32_t* table, int32_t field) {
    return field >= 0 && field < ZuCalendar::kFieldCount ? table[field] : 0;
}

} // namespace

int32_t ZuGregorianCalendar::getMinimum(ZuDateFields field) const {
    return limit(kMinValues, field);
}
int32_t ZuGregorianCalendar::getMaximum(ZuDateFields field) const {
    return limit(kMaxValues, field);
}
int32_t ZuGregorianCalendar::getGreatestMinimum(ZuDateFields field) const {
    return limit(kMinValues, field);
}
int32_t ZuGregorianCalendar::getLeastMaximum(ZuDateFields field) const {
    return limit(kLeastMaxValues, field);
}

// --- Arithmetic helpers -----------------------------------------------------------------

double ZuGregorianCalendar::floorDivide(double numerator, double denominator) {
    return std::floor(numerator / denominator);
}

int32_t ZuGregorianCalendar::floorDivide(int32_t numerator, int32_t denominator) {
    if (denominator == 0)
        return 0;
    return numerator >= 0 ? numerator / denominator : ((numerator + 1) / denominator) - 1;
}

int32_t ZuGregorianCalendar::floorDivide(int32_t numerator, int32_t denominator,
                                         int32_t& remainder) {
    if (denominator == 0) {
        remainder = numerator;
        return 0;
    }
    int32_t quotient = floorDivide(numerator, denominator);
    remainder = zu_date::clampToInt(static_cast<int64_t>(numerator) -
                                    static_cast<int64_t>(denominator) * quotient);
    return quotient;
}

int32_t ZuGregorianCalendar::floorDivide(double numerator, int32_t denominator,
                                         int32_t& remainder) {
    if (denominator == 0) {
        remainder = zu_date::clampToInt(numerator);
        return 0;
    }
    double quotient;
    double rem;
    if (numerator >= 0) {
        quotient = std::trunc(numerator / denominator);
        rem = std::fmod(numerator, denominator);
    } else {
        quotient = std::trunc((numerator + 1) / denominator) - 1;
        rem = numerator - quotient * denominator;
    }
    remainder = zu_date::clampToInt(rem);
    return zu_date::clampToInt(quotient);
}

double ZuGregorianCalendar::julianDayToMillis(double julian) {
    return (julian - kEpochStartAsJulianDay) * kOneDay;
}

double ZuGregorianCalendar::millisToJulianDay(double millis) {
    return std::floor(millis / kOneDay) + kEpochStartAsJulianDay;
}

int32_t ZuGregorianCalendar::aggregateStamp(int32_t stampA, int32_t stampB) {
    return (stampA == 0 || stampB == 0) ? 0 : (stampA > stampB ? stampA : stampB);
}

double ZuGregorianCalendar::computeJulianDayOfYear(bool isGregorian, int32_t year, bool& isLeap) {
    return zu_date::julianDayBeforeYear(isGregorian, year, isLeap);
}

bool ZuGregorianCalendar::isLeapYear(int32_t year) const {
    return zu_date::hybridLeap(year, _gregorianCutoverYear);
}

int32_t ZuGregorianCalendar::monthLength(int32_t month, int32_t year) const {
    // The table is never read out of bounds: other months are taken modulo 12.
    int32_t m = static_cast<int32_t>(zu_date::positiveMod(month, 12));
    return zu_date::hybridLeap(year, _gregorianCutoverYear) ? kLeapMonthLength[m] : kMonthLength[m];
}

int32_t ZuGregorianCalendar::monthLength(int32_t month) const {
    int32_t year = internalGet(kYear);
    if (internalGetEra() == 0)
        year = zu_date::clampToInt(1 - static_cast<int64_t>(year));
    return monthLength(month, year);
}

int32_t ZuGregorianCalendar::yearLength(int32_t year) const {
    return zu_date::hybridLeap(year, _gregorianCutoverYear) ? 366 : 365;
}

int32_t ZuGregorianCalendar::yearLength() const { return yearLength(internalGet(kYear)); }

int32_t ZuGregorianCalendar::internalGetEra() const {
    return _isSet[kEra] ? internalGet(kEra) : 1;
}
