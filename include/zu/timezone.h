#ifndef ZU_TIMEZONE_H
#define ZU_TIMEZONE_H

// ZuTimeZone: the offset of local time from UTC for a calendar. A raw offset plus,
// inside a yearly daylight-saving period, a daylight-saving amount. The period runs
// from a start rule to an end rule, each a (month, day, weekday, time of day, mode)
// with its time given as wall, standard or UTC time. The zone the library builds by
// itself is UTC without daylight saving; the setters below build other zones.
// Offsets and times are in milliseconds.

#include <zu/export.h>

#include <cstdint>

// Error code of the calendar and time classes: > 0 is a failure, and an operation
// receiving a failed code does nothing and returns 0, false or null.
typedef int32_t ZuDateErrorCode;

enum ZuDateErrorValue : int32_t {
    kDateNoError = 0,
    kDateIllegalArgument = 1,  // missing zone, invalid fields, field that cannot move
    kDateInvalidFormat = 3,    // day-number text that is not 1 to 7
    kDateMemoryAllocation = 7  // an instance could not be allocated
};

class ZU_API ZuTimeZone {
public:
    // Time modes of a rule's time of day.
    enum TimeMode : int32_t { kWallTime = 0, kStandardTime = 1, kUtcTime = 2 };
    // Rule modes: how a rule's day and weekday pick the day of the month.
    enum RuleMode : int32_t {
        kDayOfMonth = 1,        // the rule day itself
        kDowInMonth = 2,        // n-th weekday of the month (n < 1 counts from the end)
        kDowGeDom = 3,          // first weekday on or after the rule day
        kDowLeDom = 4           // last weekday on or before the rule day
    };

    // UTC, no daylight saving: every member 0 or false, except start and end mode 1
    // and a daylight-saving amount of 3600000.
    ZuTimeZone();

    // The one process-wide default zone (a default-constructed zone), built on first
    // use under a thread-safe one-time initialisation and never freed. Do not delete it;
    // changing it through the setters changes it for every calendar that uses it.
    static ZuTimeZone* createDefault();

    // A new default-constructed zone owned by the caller. Deliberately does not copy
    // the rules or offsets: a calendar given a zone by copy holds a default zone, so
    // give a calendar a rule zone with ZuCalendar::adoptTimeZone.
    ZuTimeZone* clone() const;

    // Always true, deliberately (every zone compares equal).
    bool operator==(const ZuTimeZone& other) const;
    bool operator!=(const ZuTimeZone& other) const { return !(*this == other); }

    // The raw (standard) offset from UTC.
    int32_t getRawOffset() const { return _rawOffset; }

    // Always true, whatever the use-daylight flag, deliberately.
    bool useDaylightTime() const;

    // Total offset (raw + daylight saving when in the period) of a local standard time.
    // era 0 or 1, month 0-11, day 1..monthLength, dayOfWeek 1-7 (1 = Sunday), millis
    // 0-86399999, monthLength 28-31; a violation sets code 1 and returns -1.
    int32_t getOffset(uint8_t era, int32_t year, int32_t month, int32_t day, uint8_t dayOfWeek,
                      int32_t millis, int32_t monthLength, uint8_t prevMonthLength,
                      ZuDateErrorCode& code) const;
    // The same with the previous month's length taken from staticMonthLength (31 for
    // January); a month outside 0-11 sets code 1 and returns -1.
    int32_t getOffset(uint8_t era, int32_t year, int32_t month, int32_t day, uint8_t dayOfWeek,
                      int32_t millis, int32_t monthLength, ZuDateErrorCode& code) const;

    // Compares a date and time (shifted by millisDelta, rolling over days and months)
    // with the day that a rule picks in the date's month: -1 before, 0 at, 1 after.
    static int32_t compareToRule(int32_t month, int32_t monthLength, int32_t prevMonthLength,
                                 int32_t dayOfMonth, int32_t dayOfWeek, int32_t millis,
                                 int32_t millisDelta, int32_t ruleMode, int32_t ruleMonth,
                                 int32_t ruleDayOfWeek, int32_t ruleDay, int32_t ruleMillis);

    // Setters, for zones other than the default. None is called by the library.
    void setRawOffset(int32_t offsetMillis) { _rawOffset = offsetMillis; }
    // Start and end rules: month 0-11, day and weekday (1-7) read by mode (RuleMode),
    // time of day in milliseconds read by timeMode (TimeMode). Switches daylight saving on.
    void setStartRule(int8_t month, int8_t day, int8_t dayOfWeek, int32_t time,
                      int32_t timeMode, int32_t mode);
    void setEndRule(int8_t month, int8_t day, int8_t dayOfWeek, int32_t time, int32_t timeMode,
                    int32_t mode);
    // No daylight saving in years before startYear.
    void setStartYear(int32_t year) { _startYear = year; }
    void setDSTSavings(int32_t millis) { _dstSavings = millis; }
    void setUseDaylight(bool on) { _useDaylight = on; }
    bool getUseDaylight() const { return _useDaylight; }
    int32_t getDSTSavings() const { return _dstSavings; }

    // Month lengths of a common year, January first.
    static const int8_t staticMonthLength[12];

private:
    int8_t _startMonth;
    int8_t _startDay;
    int8_t _startDayOfWeek;
    int32_t _startTime;
    int32_t _startTimeMode;
    int32_t _endTimeMode;
    int8_t _endMonth;
    int8_t _endDay;
    int8_t _endDayOfWeek;
    int32_t _endTime;
    int32_t _startYear;
    int32_t _rawOffset;
    bool _useDaylight;
    int32_t _startMode;
    int32_t _endMode;
    int32_t _dstSavings;
};

#endif
