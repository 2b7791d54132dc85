// ZuCalendar: field storage, stamps, lazy recomputation, zones and comparisons.
#include <zu/calendar.h>

#include "date/date_internal.h"

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <new>

const char* const ZuCalendar::kDateTimeElements = "DateTimeElements";

namespace {

bool validField(int32_t field) { return field >= 0 && field < ZuCalendar::kFieldCount; }

// The shared default zone is never freed, whoever holds it.
void releaseZone(ZuTimeZone* zone) {
    if (zone != ZuTimeZone::createDefault())
        delete zone;
}

} // namespace

ZuCalendar::ZuCalendar(ZuDateErrorCode& code)
    : _isTimeSet(false), _areFieldsSet(false), _areAllFieldsSet(false), _nextStamp(2),
      _time(0.0), _lenient(true), _zone(ZuTimeZone::createDefault()->clone()),
      _firstDayOfWeek(kMonday), _minimalDaysInFirstWeek(0) {
    clear();
    setDefaultWeekCountData(code);
}

ZuCalendar::ZuCalendar(const ZuTimeZone& zone, const ZuLocale& locale, ZuDateErrorCode& code)
    : _isTimeSet(false), _areFieldsSet(false), _areAllFieldsSet(false), _nextStamp(2),
      _time(0.0), _lenient(true), _zone(zone.clone()), _firstDayOfWeek(kMonday),
      _minimalDaysInFirstWeek(0) {
    clear();
    setWeekCountData(locale, code);
}

ZuCalendar::ZuCalendar(const ZuTimeZone* zone, const ZuLocale& locale, ZuDateErrorCode& code)
    : _isTimeSet(false), _areFieldsSet(false), _areAllFieldsSet(false), _nextStamp(2),
      _time(0.0), _lenient(true), _zone(zone ? zone->clone() : nullptr),
      _firstDayOfWeek(kMonday), _minimalDaysInFirstWeek(0) {
    clear();
    if (!zone && code <= 0)
        code = kDateIllegalArgument;
    setWeekCountData(locale, code);
}

ZuCalendar::ZuCalendar(const ZuCalendar& other) : _zone(nullptr) { *this = other; }

ZuCalendar::~ZuCalendar() { releaseZone(_zone); }

ZuCalendar& ZuCalendar::operator=(const ZuCalendar& other) {
    if (this == &other)
        return *this;
    _isTimeSet = other._isTimeSet;
    _areFieldsSet = other._areFieldsSet;
    _areAllFieldsSet = other._areAllFieldsSet;
    std::memcpy(_fields, other._fields, sizeof _fields);
    std::memcpy(_isSet, other._isSet, sizeof _isSet);
    std::memcpy(_stamp, other._stamp, sizeof _stamp);
    _nextStamp = other._nextStamp;
    _time = other._time;
    _lenient = other._lenient;
    releaseZone(_zone);
    _zone = other._zone ? other._zone->clone() : nullptr;
    _firstDayOfWeek = other._firstDayOfWeek;
    _minimalDaysInFirstWeek = other._minimalDaysInFirstWeek;
    return *this;
}

void ZuCalendar::setWeekCountData(const ZuLocale& locale, ZuDateErrorCode& code) {
    if (code > 0)
        return;
    _firstDayOfWeek = static_cast<EDaysOfWeek>(locale.getFirstDayOfWeek());
    _minimalDaysInFirstWeek = static_cast<uint8_t>(locale.getMinimalDaysInFirstWeek());
}

void ZuCalendar::setDefaultWeekCountData(ZuDateErrorCode& code) {
    // Creating a locale here would switch the process locale as a side effect, so with no
    // default locale the calendar takes the values that every locale gives.
    if (const ZuLocale* locale = ZuLocale::Get(false, nullptr)) {
        setWeekCountData(*locale, code);
    } else if (code <= 0) {
        _firstDayOfWeek = kMonday;
        _minimalDaysInFirstWeek = 0;
    }
}

// --- Creation ---------------------------------------------------------------------------

namespace {

// Destroys a calendar that was built with a failure.
ZuCalendar* checked(ZuCalendar* calendar, ZuDateErrorCode& code) {
    if (!calendar) {
        code = kDateMemoryAllocation;
        return nullptr;
    }
    if (code > 0) {
        delete calendar;
        return nullptr;
    }
    return calendar;
}

} // namespace

ZuCalendar* ZuCalendar::createInstance(const ZuTimeZone& zone, const ZuLocale& locale,
                                       ZuDateErrorCode& code) {
    if (code > 0)
        return nullptr;
    return checked(new (std::nothrow) ZuGregorianCalendar(zone, locale, code), code);
}

ZuCalendar* ZuCalendar::createInstance(const ZuTimeZone* zone, const ZuLocale& locale,
                                       ZuDateErrorCode& code) {
    if (code > 0)
        return nullptr;
    ZuCalendar* calendar = new (std::nothrow) ZuGregorianCalendar(zone, locale, code);
    if (!calendar)
        releaseZone(const_cast<ZuTimeZone*>(zone));
    return checked(calendar, code);
}

ZuCalendar* ZuCalendar::createInstance(const ZuTimeZone& zone, ZuDateErrorCode& code) {
    if (code > 0)
        return nullptr;
    return checked(new (std::nothrow) ZuGregorianCalendar(zone, code), code);
}

ZuCalendar* ZuCalendar::createInstance(const ZuTimeZone* zone, ZuDateErrorCode& code) {
    if (code > 0)
        return nullptr;
    ZuCalendar* calendar = new (std::nothrow) ZuGregorianCalendar(zone, code);
    if (!calendar)
        releaseZone(const_cast<ZuTimeZone*>(zone));
    return checked(calendar, code);
}

ZuCalendar* ZuCalendar::createInstance(const ZuLocale& locale, ZuDateErrorCode& code) {
    if (code > 0)
        return nullptr;
    return checked(new (std::nothrow) ZuGregorianCalendar(locale, code), code);
}

ZuCalendar* ZuCalendar::createInstance(ZuDateErrorCode& code) {
    if (code > 0)
        return nullptr;
    return checked(new (std::nothrow) ZuGregorianCalendar(code), code);
}

// --- Zones ------------------------------------------------------------------------------

void ZuCalendar::adoptTimeZone(ZuTimeZone* zone) {
    if (!zone)
        return;
    if (zone != _zone)
        releaseZone(_zone);
    _zone = zone;
    _areFieldsSet = false;
}

void ZuCalendar::setTimeZone(const ZuTimeZone& zone) { adoptTimeZone(zone.clone()); }

const ZuTimeZone& ZuCalendar::getTimeZone() const {
    return _zone ? *_zone : *ZuTimeZone::createDefault();
}

ZuTimeZone* ZuCalendar::orphanTimeZone() {
    ZuTimeZone* zone = _zone;
    _zone = ZuTimeZone::createDefault();
    return zone;
}

// --- Instant and fields -----------------------------------------------------------------

double ZuCalendar::getTimeInMillis(ZuDateErrorCode& code) {
    if (code > 0)
        return 0.0;
    if (!_isTimeSet) {
        updateTimeInternal(code);
        if (code > 0)
            return 0.0;
    }
    return _time;
}

void ZuCalendar::setTimeInMillis(double millis, ZuDateErrorCode& code) {
    if (code > 0)
        return;
    _time = millis;
    _isTimeSet = true;
    computeFields(code);
    if (code > 0)
        return;
    _areFieldsSet = true;
    _areAllFieldsSet = true;
}

int32_t ZuCalendar::get(ZuDateFields field, ZuDateErrorCode& code) {
    if (code > 0)
        return 0;
    if (!validField(field)) {
        code = kDateIllegalArgument;
        return 0;
    }
    if (!_isTimeSet || !_areFieldsSet)
        completeInternal(code);
    return code > 0 ? 0 : _fields[field];
}

void ZuCalendar::set(ZuDateFields field, int32_t value) {
    if (validField(field))
        stampField(field, value);
}

void ZuCalendar::set(int32_t year, int32_t month, int32_t date) {
    stampField(kYear, year);
    stampField(kMonth, month);
    stampField(kDate, date);
}

void ZuCalendar::set(int32_t year, int32_t month, int32_t date, int32_t hourOfDay,
                     int32_t minute) {
    set(year, month, date);
    stampField(kHourOfDay, hourOfDay);
    stampField(kMinute, minute);
}

void ZuCalendar::set(int32_t year, int32_t month, int32_t date, int32_t hourOfDay,
                     int32_t minute, int32_t second) {
    stampField(kYear, year);
    stampField(kMonth, month);
    stampField(kDate, date);
    stampField(kHourOfDay, hourOfDay);
    stampField(kMinute, minute);
    stampField(kSecond, second);
}

void ZuCalendar::clear() {
    std::memset(_fields, 0, sizeof _fields);
    std::memset(_stamp, 0, sizeof _stamp);
    std::memset(_isSet, 0, sizeof _isSet);
    _isTimeSet = _areFieldsSet = _areAllFieldsSet = false;
}

void ZuCalendar::clear(ZuDateFields field) {
    if (!validField(field))
        return;
    _fields[field] = 0;
    _stamp[field] = 0;
    _isSet[field] = false;
    _isTimeSet = _areFieldsSet = _areAllFieldsSet = false;
}

bool ZuCalendar::isSet(ZuDateFields field) const { return validField(field) && _isSet[field]; }

void ZuCalendar::updateTime(ZuDateErrorCode& code) { updateTimeInternal(code); }

void ZuCalendar::complete(ZuDateErrorCode& code) { completeInternal(code); }

void ZuCalendar::updateTimeInternal(ZuDateErrorCode& code) {
    if (code > 0)
        return;
    computeTime(code);
    if (code > 0)
        return;
    if (_lenient || !_areAllFieldsSet)
        _areFieldsSet = false;
    _isTimeSet = true;
}

void ZuCalendar::completeInternal(ZuDateErrorCode& code) {
    if (code > 0)
        return;
    if (!_isTimeSet) {
        updateTimeInternal(code);
        if (code > 0)
            return;
    }
    if (!_areFieldsSet) {
        computeFields(code);
        if (code > 0)
            return;
        _areFieldsSet = true;
        _areAllFieldsSet = true;
    }
}

// --- Limits by search -------------------------------------------------------------------

namespace {

// Sets field on a lenient copy of the calendar to each value from `first` towards `last`
// (inclusive, by step): the first value that does not read back ends the search with the
// last one that did (`first` when `first` itself fails).
int32_t lastValueReadBack(const ZuCalendar& calendar, ZuCalendar::ZuDateFields field, int32_t first,
                          int32_t last, int32_t step, bool setWeekDay, int32_t weekDay,
                          ZuDateErrorCode& code) {
    ZuCalendar* work = calendar.clone();
    if (!work) {
        code = kDateMemoryAllocation;
        return 0;
    }
    work->setLenient(true);
    if (setWeekDay)
        work->set(ZuCalendar::kDayOfWeek, weekDay);
    int32_t result = first;
    for (int32_t v = first; step > 0 ? v <= last : v >= last; v += step) {
        work->set(field, v);
        if (work->get(field, code) != v || code > 0)
            break;
        result = v;
    }
    delete work;
    return code > 0 ? 0 : result;
}

} // namespace

int32_t ZuCalendar::getActualMaximum(ZuDateFields field, ZuDateErrorCode& code) {
    if (code > 0)
        return 0;
    if (!validField(field)) {
        code = kDateIllegalArgument;
        return 0;
    }
    const int32_t low = getLeastMaximum(field);
    const int32_t high = getMaximum(field);
    if (low == high)
        return low;
    return lastValueReadBack(*this, field, low, high, 1,
                             field == kWeekOfYear || field == kWeekOfMonth, _firstDayOfWeek,
                             code);
}

int32_t ZuCalendar::getActualMinimum(ZuDateFields field, ZuDateErrorCode& code) {
    if (code > 0)
        return 0;
    if (!validField(field)) {
        code = kDateIllegalArgument;
        return 0;
    }
    const int32_t high = getGreatestMinimum(field);
    const int32_t low = getMinimum(field);
    if (low == high)
        return low;
    return lastValueReadBack(*this, field, high, low, -1, false, 0, code);
}

int32_t ZuCalendar::fieldDifference(double when, ZuDateFields field, ZuDateErrorCode& code) {
    if (code > 0)
        return 0;
    double t = getTimeInMillis(code);
    if (code > 0)
        return 0;
    int32_t count = 0;
    int32_t step = when > t ? 1 : when < t ? -1 : 0;
    // A step that does not move the instant (kEra at its limit) would never pass when:
    // the search stops there. The count cannot go past the int32 range either.
    while (step != 0 && count != (step > 0 ? INT32_MAX : -INT32_MAX)) {
        add(field, step, code);
        if (code > 0)
            return count;
        double ms = getTimeInMillis(code);
        if (code > 0)
            return count;
        if (step > 0 ? ms > when : ms < when)
            break;
        if (ms == t)
            break;
        count += step;
        t = ms;
    }
    setTimeInMillis(t, code);
    return count;
}

// --- Comparisons ------------------------------------------------------------------------

namespace {

// The instant of a calendar read through a const reference: recomputing stale state is
// not a visible change.
double instantOf(const ZuCalendar& calendar, ZuDateErrorCode& code) {
    return const_cast<ZuCalendar&>(calendar).getTimeInMillis(code);
}

} // namespace

bool ZuCalendar::operator==(const ZuCalendar& other) const {
    if (!equivalentTo(other))
        return false;
    ZuDateErrorCode code = kDateNoError;
    double mine = instantOf(*this, code);
    double theirs = instantOf(other, code);
    return code <= 0 && mine == theirs;
}

bool ZuCalendar::equivalentTo(const ZuCalendar& other) const {
    return _lenient == other._lenient && _firstDayOfWeek == other._firstDayOfWeek &&
           _minimalDaysInFirstWeek == other._minimalDaysInFirstWeek &&
           getTimeZone() == other.getTimeZone();
}

bool ZuCalendar::after(const ZuCalendar& when, ZuDateErrorCode& code) {
    if (code > 0 || this == &when)
        return false;
    double mine = getTimeInMillis(code);
    double theirs = instantOf(when, code);
    return code <= 0 && mine > theirs;
}

bool ZuCalendar::before(const ZuCalendar& when, ZuDateErrorCode& code) {
    if (code > 0 || this == &when)
        return false;
    double mine = getTimeInMillis(code);
    double theirs = instantOf(when, code);
    return code <= 0 && mine < theirs;
}

bool ZuCalendar::equals(const ZuCalendar& when, ZuDateErrorCode& code) {
    if (code > 0)
        return false;
    if (this == &when)
        return true;
    double mine = getTimeInMillis(code);
    double theirs = instantOf(when, code);
    return code <= 0 && mine == theirs;
}

// --- Class operations -------------------------------------------------------------------

double ZuCalendar::getNow() { return static_cast<double>(std::time(nullptr)) * 1000.0; }

int32_t ZuCalendar::stringToDayNumber(const char* text, ZuDateErrorCode& code) {
    if (code > 0)
        return 0;
    if (!text || !*text) {
        code = kDateInvalidFormat;
        return 0;
    }
    long value = std::strtol(text, nullptr, 10);
    if (value < 1 || value > 7)
        code = kDateInvalidFormat;
    return zu_date::clampToInt(static_cast<int64_t>(value));
}
