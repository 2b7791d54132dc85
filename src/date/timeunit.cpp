// The nine time units and the predefined-unit sequence.
#include <zu/timeunit.h>

#include <cstdio>
#include <cstring>
#include <new>

namespace {

typedef ZuCalendar C;

// A new[] copy of formatted text sized to it ("%f" of a huge double runs to 300+ chars).
template <typename... Args>
char* format(const char* fmt, Args... args) {
    char buffer[64];
    int length = std::snprintf(buffer, sizeof buffer, fmt, args...);
    if (length < 0)
        length = 0;
    char* text = new (std::nothrow) char[length + 1];
    if (!text)
        return nullptr;
    if (static_cast<size_t>(length) < sizeof buffer)
        std::memcpy(text, buffer, length + 1);
    else
        std::snprintf(text, length + 1, fmt, args...);
    return text;
}

// Fields of an instant read through a temporary calendar in the default zone and locale.
struct Fields {
    int32_t values[C::kFieldCount];

    explicit Fields(double millis) {
        ZuDateErrorCode code = kDateNoError;
        ZuGregorianCalendar calendar(code);
        calendar.setTimeInMillis(millis, code);
        for (int32_t i = 0; i < C::kFieldCount; ++i)
            values[i] = calendar.get(static_cast<C::ZuDateFields>(i), code);
    }
    int32_t operator[](C::ZuDateFields field) const { return values[field]; }
};

void add(ZuCalendar& calendar, C::ZuDateFields field, int32_t amount) {
    ZuDateErrorCode code = kDateNoError;
    calendar.add(field, amount, code);
}

// The units clear kHour, not kHourOfDay: kHour becomes the newest hour stamp, so the
// hour is recomputed as kAmPm * 12 (an afternoon snaps to noon).
void clearTime(ZuCalendar& calendar, int depth) {
    const C::ZuDateFields order[] = {C::kMillisecond, C::kSecond, C::kMinute, C::kHour};
    for (int i = 0; i < depth; ++i)
        calendar.set(order[i], 0);
}

} // namespace

ZuTimeUnit::~ZuTimeUnit() = default;

// --- Millisecond, second, minute --------------------------------------------------------

void ZuTimeUnitMilliSecond::snapToPreviousTimeUnit(ZuCalendar&) const {}
void ZuTimeUnitMilliSecond::addTimeUnit(ZuCalendar& calendar) const {
    add(calendar, C::kMillisecond, 1);
}
double ZuTimeUnitMilliSecond::getMillis() const { return 1.0; }
char* ZuTimeUnitMilliSecond::toString(double millis) const { return format("%f", millis); }
ZuTimeUnit* ZuTimeUnitMilliSecond::copy() const {
    return new (std::nothrow) ZuTimeUnitMilliSecond();
}

void ZuTimeUnitSecond::snapToPreviousTimeUnit(ZuCalendar& calendar) const {
    clearTime(calendar, 1);
}
void ZuTimeUnitSecond::addTimeUnit(ZuCalendar& calendar) const { add(calendar, C::kSecond, 1); }
double ZuTimeUnitSecond::getMillis() const { return 1000.0; }
char* ZuTimeUnitSecond::toString(double millis) const {
    return format("%f", millis / getMillis());
}
ZuTimeUnit* ZuTimeUnitSecond::copy() const { return new (std::nothrow) ZuTimeUnitSecond(); }

void ZuTimeUnitMinute::snapToPreviousTimeUnit(ZuCalendar& calendar) const {
    clearTime(calendar, 2);
}
void ZuTimeUnitMinute::addTimeUnit(ZuCalendar& calendar) const { add(calendar, C::kMinute, 1); }
double ZuTimeUnitMinute::getMillis() const { return 60000.0; }
char* ZuTimeUnitMinute::toString(double millis) const {
    return format("%f", millis / getMillis());
}
ZuTimeUnit* ZuTimeUnitMinute::copy() const { return new (std::nothrow) ZuTimeUnitMinute(); }

// --- Hour, day, week --------------------------------------------------------------------

void ZuTimeUnitHour::snapToPreviousTimeUnit(ZuCalendar& calendar) const {
    clearTime(calendar, 3);
}
// kHour on purpose: add treats it as one hour of pure time.
void ZuTimeUnitHour::addTimeUnit(ZuCalendar& calendar) const { add(calendar, C::kHour, 1); }
double ZuTimeUnitHour::getMillis() const { return 3600000.0; }
char* ZuTimeUnitHour::toString(double millis) const {
    Fields f(millis);
    return format("%d:%d", f[C::kHourOfDay], f[C::kMinute]);
}
ZuTimeUnit* ZuTimeUnitHour::copy() const { return new (std::nothrow) ZuTimeUnitHour(); }

void ZuTimeUnitDay::snapToPreviousTimeUnit(ZuCalendar& calendar) const {
    clearTime(calendar, 4);
}
void ZuTimeUnitDay::addTimeUnit(ZuCalendar& calendar) const { add(calendar, C::kDate, 1); }
double ZuTimeUnitDay::getMillis() const { return 86400000.0; }
char* ZuTimeUnitDay::toString(double millis) const {
    Fields f(millis);
    return format("%d/%2.2d", f[C::kDate], f[C::kMonth] + 1);
}
ZuTimeUnit* ZuTimeUnitDay::copy() const { return new (std::nothrow) ZuTimeUnitDay(); }

void ZuTimeUnitWeek::snapToPreviousTimeUnit(ZuCalendar& calendar) const {
    clearTime(calendar, 4);
    calendar.set(C::kDayOfWeek, calendar.getFirstDayOfWeek());
}
void ZuTimeUnitWeek::addTimeUnit(ZuCalendar& calendar) const { add(calendar, C::kDate, 7); }
double ZuTimeUnitWeek::getMillis() const { return 604800000.0; }
char* ZuTimeUnitWeek::toString(double millis) const {
    Fields f(millis);
    return format("W%d", f[C::kWeekOfYear]);
}
ZuTimeUnit* ZuTimeUnitWeek::copy() const { return new (std::nothrow) ZuTimeUnitWeek(); }

// --- Month, quarter, year ---------------------------------------------------------------

void ZuTimeUnitMonth::snapToPreviousTimeUnit(ZuCalendar& calendar) const {
    clearTime(calendar, 4);
    calendar.set(C::kDate, 1);
}
void ZuTimeUnitMonth::addTimeUnit(ZuCalendar& calendar) const { add(calendar, C::kMonth, 1); }
double ZuTimeUnitMonth::getMillis() const { return 2592000000.0; }
char* ZuTimeUnitMonth::toString(double millis) const {
    Fields f(millis);
    return format("%2.2d/%d", f[C::kMonth] + 1, f[C::kYear]);
}
ZuTimeUnit* ZuTimeUnitMonth::copy() const { return new (std::nothrow) ZuTimeUnitMonth(); }

void ZuTimeUnitQuarter::snapToPreviousTimeUnit(ZuCalendar& calendar) const {
    ZuDateErrorCode code = kDateNoError;
    int32_t month = calendar.get(C::kMonth, code);
    clearTime(calendar, 4);
    calendar.set(C::kDate, 1);
    calendar.set(C::kMonth, month - month % 3);
}
void ZuTimeUnitQuarter::addTimeUnit(ZuCalendar& calendar) const { add(calendar, C::kMonth, 3); }
double ZuTimeUnitQuarter::getMillis() const { return 7776000000.0; }
char* ZuTimeUnitQuarter::toString(double millis) const {
    Fields f(millis);
    return format("Q%d %d", f[C::kMonth] / 3 + 1, f[C::kYear]);
}
ZuTimeUnit* ZuTimeUnitQuarter::copy() const { return new (std::nothrow) ZuTimeUnitQuarter(); }

void ZuTimeUnitYear::snapToPreviousTimeUnit(ZuCalendar& calendar) const {
    clearTime(calendar, 4);
    calendar.set(C::kDate, 1);
    calendar.set(C::kMonth, 1);  // February, deliberately
}
void ZuTimeUnitYear::addTimeUnit(ZuCalendar& calendar) const { add(calendar, C::kYear, 1); }
double ZuTimeUnitYear::getMillis() const { return 31536000000.0; }
char* ZuTimeUnitYear::toString(double millis) const {
    Fields f(millis);
    return format("%d", f[C::kYear]);
}
ZuTimeUnit* ZuTimeUnitYear::copy() const { return new (std::nothrow) ZuTimeUnitYear(); }

// --- Predefined units -------------------------------------------------------------------

ZuPredefinedUnits::ZuPredefinedUnits()
    : _index(0), _units(new (std::nothrow) ZuTimeUnit*[_nbUnits]) {
    if (!_units)
        return;
    // Finest first; a unit that cannot be allocated is handed out as null.
    _units[0] = new (std::nothrow) ZuTimeUnitMilliSecond();
    _units[1] = new (std::nothrow) ZuTimeUnitSecond();
    _units[2] = new (std::nothrow) ZuTimeUnitMinute();
    _units[3] = new (std::nothrow) ZuTimeUnitHour();
    _units[4] = new (std::nothrow) ZuTimeUnitDay();
    _units[5] = new (std::nothrow) ZuTimeUnitWeek();
    _units[6] = new (std::nothrow) ZuTimeUnitMonth();
    _units[7] = new (std::nothrow) ZuTimeUnitQuarter();
    _units[8] = new (std::nothrow) ZuTimeUnitYear();
}

ZuPredefinedUnits::~ZuPredefinedUnits() {
    if (!_units)
        return;
    for (uint32_t i = 0; i < _nbUnits; ++i)
        delete _units[i];
    delete[] _units;
}

ZuTimeUnit* ZuPredefinedUnits::getNextUnit() {
    if (!_units)
        return nullptr;
    // Past the nine units the year unit is handed out again, without advancing.
    if (_index >= _nbUnits)
        return _units[_nbUnits - 1];
    return _units[_index++];
}
