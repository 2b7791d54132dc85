#ifndef ZU_CALENDAR_H
#define ZU_CALENDAR_H

// Calendars. ZuCalendar keeps one instant (milliseconds since 1970-01-01 00:00:00 UTC,
// a double) and 19 broken-down fields, and keeps the two consistent lazily: setting a
// field marks the instant stale, reading a field or the instant recomputes what is
// stale. ZuGregorianCalendar, the only concrete calendar, is Julian before a cutover
// instant and Gregorian from it on. Errors go through a ZuDateErrorCode (declared in
// <zu/timezone.h>): once it holds a failure (> 0) every operation returns at once.

#include <zu/export.h>
#include <zu/locale.h>
#include <zu/timezone.h>

#include <cstdint>

class ZU_API ZuCalendar {
public:
    // The fields; the values index the field arrays and the limit tables.
    enum ZuDateFields : int32_t {
        kEra = 0,               // 0 before year 1, 1 from year 1 on
        kYear = 1,              // year within the era, from 1
        kMonth = 2,             // 0 = January to 11 = December
        kWeekOfYear = 3,
        kWeekOfMonth = 4,
        kDate = 5,              // day of the month, from 1
        kDayOfYear = 6,         // from 1
        kDayOfWeek = 7,         // 1 = Sunday to 7 = Saturday
        kDayOfWeekInMonth = 8,  // 1 for days 1-7, 2 for 8-14...; negative from the end
        kAmPm = 9,              // 0 before noon, 1 after
        kHour = 10,             // hour of the half day, 0-11
        kHourOfDay = 11,        // 0-23
        kMinute = 12,
        kSecond = 13,
        kMillisecond = 14,
        kZoneOffset = 15,       // raw zone offset, milliseconds
        kDstOffset = 16,        // daylight-saving offset, milliseconds
        kYearWoy = 17,          // the year the week of the year belongs to
        kDowLocal = 18          // day of the week from the first day of the week, 1-7
    };
    static const int32_t kFieldCount = 19;

    enum EDaysOfWeek : int32_t {
        kSunday = 1, kMonday = 2, kTuesday = 3, kWednesday = 4, kThursday = 5, kFriday = 6,
        kSaturday = 7
    };

    // Name of a locale resource ("DateTimeElements"); nothing in the library reads it.
    static const char* const kDateTimeElements;

    // Deletes the zone, unless it is the shared default zone.
    virtual ~ZuCalendar();
    // A new copy owned by the caller, or null when out of memory.
    virtual ZuCalendar* clone() const = 0;
    // Equal instants (a NaN instant is never equal), lenient flags, week data and zones.
    virtual bool operator==(const ZuCalendar& other) const;
    // operator== without the instants.
    virtual bool equivalentTo(const ZuCalendar& other) const;
    // Adds a signed amount to a field, carrying into larger fields.
    virtual void add(ZuDateFields field, int32_t amount, ZuDateErrorCode& code) = 0;
    // Adds a signed amount to a field without changing larger fields.
    virtual void roll(ZuDateFields field, int32_t amount, ZuDateErrorCode& code) = 0;
    // The number of add(field, +-1) steps from the current instant that do not pass
    // when. A linear search: the calendar is left moved by that many steps (on a
    // failure inside the search, wherever the search stopped).
    virtual int32_t fieldDifference(double when, ZuDateFields field, ZuDateErrorCode& code);
    virtual bool inDaylightTime(ZuDateErrorCode& code) = 0;
    // Field limits: smallest, largest, largest smallest and smallest largest values.
    // A field outside 0-18 gives 0.
    virtual int32_t getMinimum(ZuDateFields field) const = 0;
    virtual int32_t getMaximum(ZuDateFields field) const = 0;
    virtual int32_t getGreatestMinimum(ZuDateFields field) const = 0;
    virtual int32_t getLeastMaximum(ZuDateFields field) const = 0;
    // The instant from the fields, and the fields from the instant.
    virtual void computeTime(ZuDateErrorCode& code) = 0;
    virtual void computeFields(ZuDateErrorCode& code) = 0;

    bool operator!=(const ZuCalendar& other) const { return !(*this == other); }
    // Copies every member; the zone is cloned (so it becomes a default zone).
    ZuCalendar& operator=(const ZuCalendar& other);

    // New ZuGregorianCalendar objects at the current time, owned by the caller, or null
    // when code is or becomes > 0 (7 when out of memory; the zone-pointer forms then
    // delete the zone). The zone is cloned, also from a pointer, which otherwise stays
    // the caller's. No zone: ZuTimeZone::createDefault(); no locale: the default locale.
    static ZuCalendar* createInstance(const ZuTimeZone& zone, const ZuLocale& locale,
                                      ZuDateErrorCode& code);
    static ZuCalendar* createInstance(const ZuTimeZone* zone, const ZuLocale& locale,
                                      ZuDateErrorCode& code);
    static ZuCalendar* createInstance(const ZuTimeZone& zone, ZuDateErrorCode& code);
    static ZuCalendar* createInstance(const ZuTimeZone* zone, ZuDateErrorCode& code);
    static ZuCalendar* createInstance(const ZuLocale& locale, ZuDateErrorCode& code);
    static ZuCalendar* createInstance(ZuDateErrorCode& code);

    // Takes ownership of zone (null is ignored), deleting the old one; fields go stale.
    void adoptTimeZone(ZuTimeZone* zone);
    // Adopts a clone of zone (that is, a default zone).
    void setTimeZone(const ZuTimeZone& zone);
    // The calendar's zone (the shared default zone when it has none).
    const ZuTimeZone& getTimeZone() const;
    // Hands the zone to the caller and puts the shared default zone itself in its place
    // (never freed by the calendar). Orphaning twice hands out the shared zone: do not
    // delete that one.
    ZuTimeZone* orphanTimeZone();

    // The instant, recomputed from the fields when stale; 0 on failure.
    double getTimeInMillis(ZuDateErrorCode& code);
    // Sets the instant and recomputes every field.
    void setTimeInMillis(double millis, ZuDateErrorCode& code);

    // The field's value after bringing the calendar up to date; 0 on failure
    // (and code 1 for a field outside 0-18).
    int32_t get(ZuDateFields field, ZuDateErrorCode& code);
    // Stores a value with the next stamp (newest wins when fields disagree); the
    // instant goes stale. A field outside 0-18 is ignored.
    void set(ZuDateFields field, int32_t value);
    // Sets kYear, kMonth, kDate[, kHourOfDay, kMinute[, kSecond]] in that order.
    void set(int32_t year, int32_t month, int32_t date);
    void set(int32_t year, int32_t month, int32_t date, int32_t hourOfDay, int32_t minute);
    void set(int32_t year, int32_t month, int32_t date, int32_t hourOfDay, int32_t minute,
             int32_t second);
    // Zeroes every value, stamp and set flag, and the three state flags.
    void clear();
    // Zeroes one field's value, stamp and set flag, and the three state flags.
    void clear(ZuDateFields field);
    bool isSet(ZuDateFields field) const;

    void setLenient(bool lenient) { _lenient = lenient; }
    bool isLenient() const { return _lenient; }
    void setFirstDayOfWeek(EDaysOfWeek value) { _firstDayOfWeek = value; }
    EDaysOfWeek getFirstDayOfWeek() const { return _firstDayOfWeek; }
    void setMinimalDaysInFirstWeek(uint8_t value) { _minimalDaysInFirstWeek = value; }
    uint8_t getMinimalDaysInFirstWeek() const { return _minimalDaysInFirstWeek; }
    // Takes the first day of the week and the minimal days of the first week from locale.
    void setWeekCountData(const ZuLocale& locale, ZuDateErrorCode& code);

    // Brings the instant and then the fields up to date.
    void complete(ZuDateErrorCode& code);
    // Recomputes the instant from the fields; a lenient calendar then recomputes its
    // fields on the next read, so that out-of-range input is normalised.
    void updateTime(ZuDateErrorCode& code);

    // The largest (smallest) value the field takes for the calendar's current date,
    // by setting increasing (decreasing) values on a lenient clone.
    int32_t getActualMaximum(ZuDateFields field, ZuDateErrorCode& code);
    int32_t getActualMinimum(ZuDateFields field, ZuDateErrorCode& code);

    // Comparisons of the two instants. A calendar is not after or before itself and
    // equals itself.
    bool after(const ZuCalendar& when, ZuDateErrorCode& code);
    bool before(const ZuCalendar& when, ZuDateErrorCode& code);
    bool equals(const ZuCalendar& when, ZuDateErrorCode& code);

    // The current time in whole seconds, times 1000.0: the milliseconds are always 0.
    static double getNow();
    // A weekday number from decimal text. Empty (or null) text gives 0 and code 3; a
    // number outside 1-7 is returned with code 3.
    static int32_t stringToDayNumber(const char* text, ZuDateErrorCode& code);

protected:
    // Default zone and locale. Every constructor clears the fields, sets the instant to 0,
    // lenient to true and the next stamp to 2, and takes the week data from the locale.
    explicit ZuCalendar(ZuDateErrorCode& code);
    ZuCalendar(const ZuTimeZone& zone, const ZuLocale& locale, ZuDateErrorCode& code);
    // The zone is cloned, deliberately; a null zone sets code 1 and leaves no zone.
    ZuCalendar(const ZuTimeZone* zone, const ZuLocale& locale, ZuDateErrorCode& code);
    ZuCalendar(const ZuCalendar& other);

    int32_t internalGet(ZuDateFields field) const { return _fields[field]; }
    // Stores a value without a stamp.
    void internalSet(ZuDateFields field, int32_t value) { _fields[field] = value; }
    // set() for a field known to be valid. Stamps only need to stay ordered: past
    // INT32_MAX they stop growing rather than wrap.
    void stampField(ZuDateFields field, int32_t value) {
        _fields[field] = value;
        _stamp[field] = _nextStamp;
        if (_nextStamp < INT32_MAX)
            ++_nextStamp;
        _isSet[field] = true;
        _isTimeSet = false;
        _areFieldsSet = false;
    }
    // Week data of the default locale (2 and 0 when there is no default locale).
    void setDefaultWeekCountData(ZuDateErrorCode& code);
    // complete and updateTime for calls inside the library: not exported, so that those
    // calls stay direct (and inlinable) instead of going through the dynamic linker.
    [[gnu::visibility("hidden")]] void completeInternal(ZuDateErrorCode& code);
    [[gnu::visibility("hidden")]] void updateTimeInternal(ZuDateErrorCode& code);

    bool _isTimeSet;          // the instant is valid
    bool _areFieldsSet;       // the fields agree with the instant
    bool _areAllFieldsSet;    // every field was computed from the instant
    int32_t _fields[kFieldCount];
    bool _isSet[kFieldCount];
    // 0 unset, 1 computed, 2 and up set by the caller (higher is newer).
    int32_t _stamp[kFieldCount];
    int32_t _nextStamp;
    double _time;
    bool _lenient;
    ZuTimeZone* _zone;        // owned, unless it is the shared default zone
    EDaysOfWeek _firstDayOfWeek;
    uint8_t _minimalDaysInFirstWeek;
};

// The hybrid Julian/Gregorian calendar: Julian before the cutover instant, Gregorian
// from it on, with the 10 days that the switch drops. Day arithmetic works on Julian
// day numbers held in doubles. Years are proleptic inside (1 BC is 0), era-relative
// in the fields.
// Deliberate, from the stamp rules: fields computed from the instant all carry stamp 1,
// so when only a year, era or time field is set after a read, the day comes from the
// week of the month and the weekday (add(kYear, 1) on Wednesday 5 May 2004 gives
// Wednesday 4 May 2005, but 29 February is pinned to 28 February); kYearWoy set after
// kWeekOfYear lets the month and date decide (roll(kWeekOfYear) leaves the date); and
// kHourOfDay wins a stamp tie with kHour, so roll(kAmPm) leaves the hour.
class ZU_API ZuGregorianCalendar : public ZuCalendar {
public:
    static const int32_t kJan1_1JulianDay = 1721426;      // 1 January 1 (Gregorian)
    static const int32_t kEpochStartAsJulianDay = 2440588; // 1970-01-01
    static const int32_t kEpochYear = 1970;                // year used when none is set
    static constexpr double kPapalCutover = -12219292800000.0; // 1582-10-15 00:00 UTC
    static const int32_t kOneSecond = 1000;
    static const int32_t kOneMinute = 60000;
    static const int32_t kOneHour = 3600000;
    static constexpr double kOneDay = 86400000.0;
    static constexpr double kOneWeek = 604800000.0;
    static const int32_t kNumDays[12];          // days before each month, common year
    static const int32_t kLeapNumDays[12];      // days before each month, leap year
    static const int32_t kMonthLength[12];
    static const int32_t kLeapMonthLength[12];
    static const int32_t kMinValues[kFieldCount];
    static const int32_t kLeastMaxValues[kFieldCount];
    static const int32_t kMaxValues[kFieldCount];

    // Default zone and locale, current time.
    explicit ZuGregorianCalendar(ZuDateErrorCode& code);
    // Current time; the zone is cloned (a null pointer sets code 1).
    ZuGregorianCalendar(const ZuTimeZone& zone, ZuDateErrorCode& code);
    ZuGregorianCalendar(const ZuTimeZone* zone, ZuDateErrorCode& code);
    ZuGregorianCalendar(const ZuTimeZone& zone, const ZuLocale& locale, ZuDateErrorCode& code);
    ZuGregorianCalendar(const ZuTimeZone* zone, const ZuLocale& locale, ZuDateErrorCode& code);
    ZuGregorianCalendar(const ZuLocale& locale, ZuDateErrorCode& code);
    // Default zone and locale; sets kEra = 1, kYear, kMonth (0-11), kDate[, kHourOfDay,
    // kMinute[, kSecond]] in that order, the instant left to be computed.
    ZuGregorianCalendar(int32_t year, int32_t month, int32_t date, ZuDateErrorCode& code);
    ZuGregorianCalendar(int32_t year, int32_t month, int32_t date, int32_t hourOfDay,
                        int32_t minute, ZuDateErrorCode& code);
    ZuGregorianCalendar(int32_t year, int32_t month, int32_t date, int32_t hourOfDay,
                        int32_t minute, int32_t second, ZuDateErrorCode& code);
    ZuGregorianCalendar(const ZuGregorianCalendar& other);
    ZuGregorianCalendar& operator=(const ZuGregorianCalendar& other);
    ~ZuGregorianCalendar() override;

    ZuCalendar* clone() const override;
    // Identical objects, or the base operator== and equal cutovers.
    bool operator==(const ZuCalendar& other) const override;
    bool equivalentTo(const ZuCalendar& other) const override;
    // Years and months carry and pin the date to the month's end; the other fields
    // move the instant, weeks, days and half days keeping the wall time across a
    // daylight change. kHour is pure time (one hour). kZoneOffset, kDstOffset: code 1.
    void add(ZuDateFields field, int32_t amount, ZuDateErrorCode& code) override;
    // Wraps the field inside its range without touching larger fields; the cutover
    // month is 10 days shorter. kZoneOffset, kDstOffset, fields outside 0-18: code 1.
    void roll(ZuDateFields field, int32_t amount, ZuDateErrorCode& code) override;
    // Whether the zone's daylight offset applies at the current instant.
    bool inDaylightTime(ZuDateErrorCode& code) override;
    int32_t getMinimum(ZuDateFields field) const override;
    int32_t getMaximum(ZuDateFields field) const override;
    int32_t getGreatestMinimum(ZuDateFields field) const override;
    int32_t getLeastMaximum(ZuDateFields field) const override;
    // Fields to instant: strict calendars validate first (code 1); the date fields are
    // chosen by their stamps, the newest combination winning.
    void computeTime(ZuDateErrorCode& code) override;
    // Instant to fields, in the zone's local time; every field gets stamp 1.
    void computeFields(ZuDateErrorCode& code) override;

    // Moves the cutover; the cutover year is taken from a default-cutover calendar.
    void setGregorianChange(double millis, ZuDateErrorCode& code);
    double getGregorianChange() const { return _gregorianCutover; }

    // Julian rule before the cutover year, Gregorian from it on (proleptic years).
    bool isLeapYear(int32_t year) const;
    // Month length from the tables; a month outside 0-11 is taken modulo 12.
    int32_t monthLength(int32_t month, int32_t year) const;
    // Month length in the kYear field's year, turned proleptic by the era.
    int32_t monthLength(int32_t month) const;
    int32_t yearLength(int32_t year) const;
    // Deliberately uses the kYear field as it stands, without the era (unlike monthLength).
    int32_t yearLength() const;

    // Gregorian limits: kYear and kYearWoy by a binary search on a lenient clone; the
    // week fields by the linear search; kDate and kDayOfYear from the month and year
    // lengths; any other field its maximum.
    int32_t getActualMaximum(ZuDateFields field, ZuDateErrorCode& code);
    int32_t getActualMaximum(ZuDateFields field);
    // Always getMinimum.
    int32_t getActualMinimum(ZuDateFields field, ZuDateErrorCode& code);
    int32_t getActualMinimum(ZuDateFields field);
    // Days since 1970-01-01 in local time (truncated toward zero).
    int32_t getEpochDay(ZuDateErrorCode& code);
    // Strict-mode check of every set field against the limits, kDate against the
    // month's length, kDayOfYear against the year's; kDayOfWeekInMonth must not be 0.
    bool validateFields() const;
    bool boundsCheck(int32_t value, ZuDateFields field) const;
    // Lowers kDate to the month's last day when it is beyond it.
    void pinDayOfMonth();

    // Quotient rounded toward minus infinity (the remainder then lies in 0 to d - 1).
    // A zero denominator gives 0 (remainder: the numerator).
    static double floorDivide(double numerator, double denominator);
    static int32_t floorDivide(int32_t numerator, int32_t denominator);
    static int32_t floorDivide(int32_t numerator, int32_t denominator, int32_t& remainder);
    static int32_t floorDivide(double numerator, int32_t denominator, int32_t& remainder);
    static double julianDayToMillis(double julian);
    static double millisToJulianDay(double millis);
    // 0 when either stamp is 0, else the newer one.
    static int32_t aggregateStamp(int32_t stampA, int32_t stampB);
    // Julian day of the day before 1 January of year (proleptic) and its leap flag.
    static double computeJulianDayOfYear(bool isGregorian, int32_t year, bool& isLeap);

    // Week arithmetic with this calendar's week data.
    int32_t weekNumber(int32_t dayOfPeriod, int32_t dayOfWeek) const;
    // Weekday of a Julian day counted from the first day of the week, 0-6.
    int32_t computeRelativeDOW(double julianDay) const;
    // The same from the fields (kDowLocal when newer than kDayOfWeek).
    int32_t computeRelativeDOW() const;
    // Day of the year (from 1) that kWeekOfYear and the weekday fields give.
    int32_t computeDOYfromWOY(double julianDayOfYear) const;
    // Julian day from the date fields, chosen by their stamps.
    double computeJulianDay(bool isGregorian, int32_t year);
    // Date (and, unless quick, week) fields from local milliseconds.
    void timeToFields(double localMillis, bool quick, ZuDateErrorCode& code);
    // The kEra field when set, else 1.
    int32_t internalGetEra() const;

private:
    void initCutover();
    // The field computations proper, not exported (see completeInternal): the public
    // timeToFields and computeJulianDay forward to them.
    [[gnu::visibility("hidden")]] void fieldsFromLocal(double localMillis, bool quick);
    [[gnu::visibility("hidden")]] void fieldsFromDay(int64_t julianDay, bool gregorianSide,
                                                     bool quick);
    [[gnu::visibility("hidden")]] double julianDayFromFields(bool isGregorian, int32_t year);
    [[gnu::visibility("hidden")]] int32_t computedMonthLength(int32_t era, int32_t fieldYear) const;
    void rollCutoverAware(ZuDateFields field, int32_t amount, ZuDateErrorCode& code);

    double _gregorianCutover;           // instant of the switch
    double _normalizedGregorianCutover; // the switch rounded down to midnight UTC
    int32_t _gregorianCutoverYear;      // proleptic year of the switch
};

#endif
