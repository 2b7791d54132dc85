#ifndef ZU_TIMEUNIT_H
#define ZU_TIMEUNIT_H

// Time units: grains of calendar time (millisecond up to year) that snap a calendar
// back to the start of its current unit, step it forward by one unit, give the unit's
// nominal length in milliseconds and print an instant at the unit's grain.
// ZuPredefinedUnits hands out the nine units from the finest to the coarsest.
// Deliberate: the units clear kHour (not kHourOfDay), so an afternoon instant snaps to
// 12:00 and a morning one to 00:00; the hour unit adds to kHour (one hour of pure
// time); a year snaps to 1 February.

#include <zu/calendar.h>
#include <zu/export.h>

#include <cstdint>

class ZU_API ZuTimeUnit {
public:
    // Sets fields of the calendar so that it denotes the start of the unit holding it;
    // the calendar recomputes lazily.
    virtual void snapToPreviousTimeUnit(ZuCalendar& calendar) const = 0;
    // Adds one unit with the calendar's add (errors are ignored).
    virtual void addTimeUnit(ZuCalendar& calendar) const = 0;
    // The nominal length in milliseconds (a month is 30 days, a year 365).
    virtual double getMillis() const = 0;
    // The instant at the unit's grain, as new text released by the caller with delete[].
    virtual char* toString(double millis) const = 0;
    // A new unit of the same class, owned by the caller.
    virtual ZuTimeUnit* copy() const = 0;
    virtual ~ZuTimeUnit();
};

// No snap; adds kMillisecond; prints "%f" of the instant.
class ZU_API ZuTimeUnitMilliSecond : public ZuTimeUnit {
public:
    void snapToPreviousTimeUnit(ZuCalendar& calendar) const override;
    void addTimeUnit(ZuCalendar& calendar) const override;
    double getMillis() const override;
    char* toString(double millis) const override;
    ZuTimeUnit* copy() const override;
};

// Clears kMillisecond; adds kSecond; prints "%f" of the instant in seconds.
class ZU_API ZuTimeUnitSecond : public ZuTimeUnit {
public:
    void snapToPreviousTimeUnit(ZuCalendar& calendar) const override;
    void addTimeUnit(ZuCalendar& calendar) const override;
    double getMillis() const override;
    char* toString(double millis) const override;
    ZuTimeUnit* copy() const override;
};

// Clears kMillisecond, kSecond; adds kMinute; prints "%f" of the instant in minutes.
class ZU_API ZuTimeUnitMinute : public ZuTimeUnit {
public:
    void snapToPreviousTimeUnit(ZuCalendar& calendar) const override;
    void addTimeUnit(ZuCalendar& calendar) const override;
    double getMillis() const override;
    char* toString(double millis) const override;
    ZuTimeUnit* copy() const override;
};

// Clears kMillisecond, kSecond, kMinute; adds kHour; prints "H:M" (not padded, "12:0").
class ZU_API ZuTimeUnitHour : public ZuTimeUnit {
public:
    void snapToPreviousTimeUnit(ZuCalendar& calendar) const override;
    void addTimeUnit(ZuCalendar& calendar) const override;
    double getMillis() const override;
    char* toString(double millis) const override;
    ZuTimeUnit* copy() const override;
};

// Clears the time down to kHour (not kHourOfDay); adds kDate; prints "15/03".
class ZU_API ZuTimeUnitDay : public ZuTimeUnit {
public:
    void snapToPreviousTimeUnit(ZuCalendar& calendar) const override;
    void addTimeUnit(ZuCalendar& calendar) const override;
    double getMillis() const override;
    char* toString(double millis) const override;
    ZuTimeUnit* copy() const override;
};

// As the day, then kDayOfWeek = the first day of the week; adds 7 kDate; prints "W11".
class ZU_API ZuTimeUnitWeek : public ZuTimeUnit {
public:
    void snapToPreviousTimeUnit(ZuCalendar& calendar) const override;
    void addTimeUnit(ZuCalendar& calendar) const override;
    double getMillis() const override;
    char* toString(double millis) const override;
    ZuTimeUnit* copy() const override;
};

// As the day, then kDate = 1; adds kMonth; prints "03/1970".
class ZU_API ZuTimeUnitMonth : public ZuTimeUnit {
public:
    void snapToPreviousTimeUnit(ZuCalendar& calendar) const override;
    void addTimeUnit(ZuCalendar& calendar) const override;
    double getMillis() const override;
    char* toString(double millis) const override;
    ZuTimeUnit* copy() const override;
};

// As the month, then kMonth = the quarter's first month; adds 3 kMonth; prints "Q1 1970".
class ZU_API ZuTimeUnitQuarter : public ZuTimeUnit {
public:
    void snapToPreviousTimeUnit(ZuCalendar& calendar) const override;
    void addTimeUnit(ZuCalendar& calendar) const override;
    double getMillis() const override;
    char* toString(double millis) const override;
    ZuTimeUnit* copy() const override;
};

// As the month, then kMonth = 1: deliberately snaps to 1 February. Adds kYear;
// prints "1970".
class ZU_API ZuTimeUnitYear : public ZuTimeUnit {
public:
    void snapToPreviousTimeUnit(ZuCalendar& calendar) const override;
    void addTimeUnit(ZuCalendar& calendar) const override;
    double getMillis() const override;
    char* toString(double millis) const override;
    ZuTimeUnit* copy() const override;
};

// The nine predefined units, millisecond to year, handed out one after the other.
// The units belong to this object. Not copyable.
class ZU_API ZuPredefinedUnits {
public:
    static const uint32_t _nbUnits = 9;

    ZuPredefinedUnits();
    ~ZuPredefinedUnits();
    ZuPredefinedUnits(const ZuPredefinedUnits&) = delete;
    ZuPredefinedUnits& operator=(const ZuPredefinedUnits&) = delete;

    // The next unit, finest first; from the tenth call on, the year unit every time.
    ZuTimeUnit* getNextUnit();

private:
    uint32_t _index;
    ZuTimeUnit** _units;
};

#endif
