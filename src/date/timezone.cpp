// The time zone: raw offset plus a yearly daylight-saving period between two rules.
#include <zu/timezone.h>

#include "date/date_internal.h"

namespace {

const int32_t kMillisPerDay = 86400000;

} // namespace

const int8_t ZuTimeZone::staticMonthLength[12] = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};

ZuTimeZone::ZuTimeZone()
    : _startMonth(0), _startDay(0), _startDayOfWeek(0), _startTime(0), _startTimeMode(0),
      _endTimeMode(0), _endMonth(0), _endDay(0), _endDayOfWeek(0), _endTime(0), _startYear(0),
      _rawOffset(0), _useDaylight(false), _startMode(kDayOfMonth), _endMode(kDayOfMonth),
      _dstSavings(3600000) {}

ZuTimeZone* ZuTimeZone::createDefault() {
    // A function-local static is initialised exactly once, even under concurrent first
    // calls; the zone is deliberately never freed, so it outlives every calendar.
    static ZuTimeZone* const shared = new ZuTimeZone();
    return shared;
}

ZuTimeZone* ZuTimeZone::clone() const { return new ZuTimeZone(); }

bool ZuTimeZone::operator==(const ZuTimeZone&) const { return true; }

bool ZuTimeZone::useDaylightTime() const { return true; }

void ZuTimeZone::setStartRule(int8_t month, int8_t day, int8_t dayOfWeek, int32_t time,
                              int32_t timeMode, int32_t mode) {
    _startMonth = month;
    _startDay = day;
    _startDayOfWeek = dayOfWeek;
    _startTime = time;
    _startTimeMode = timeMode;
    _startMode = mode;
    _useDaylight = true;
}

void ZuTimeZone::setEndRule(int8_t month, int8_t day, int8_t dayOfWeek, int32_t time,
                            int32_t timeMode, int32_t mode) {
    _endMonth = month;
    _endDay = day;
    _endDayOfWeek = dayOfWeek;
    _endTime = time;
    _endTimeMode = timeMode;
    _endMode = mode;
    _useDaylight = true;
}

int32_t ZuTimeZone::getOffset(uint8_t era, int32_t year, int32_t month, int32_t day,
                              uint8_t dayOfWeek, int32_t millis, int32_t monthLength,
                              ZuDateErrorCode& code) const {
    if (code > 0)
        return 0;
    if (month < 0 || month > 11) {
        code = kDateIllegalArgument;
        return -1;
    }
    uint8_t prev = static_cast<uint8_t>(staticMonthLength[month == 0 ? 11 : month - 1]);
    return getOffset(era, year, month, day, dayOfWeek, millis, monthLength, prev, code);
}

int32_t ZuTimeZone::getOffset(uint8_t era, int32_t year, int32_t month, int32_t day,
                              uint8_t dayOfWeek, int32_t millis, int32_t monthLength,
                              uint8_t prevMonthLength, ZuDateErrorCode& code) const {
    if (code > 0)
        return 0;
    if (era > 1 || month < 0 || month > 11 || day < 1 || day > monthLength || dayOfWeek < 1 ||
        dayOfWeek > 7 || millis < 0 || millis >= kMillisPerDay || monthLength < 28 ||
        monthLength > 31) {
        code = kDateIllegalArgument;
        return -1;
    }
    if (!_useDaylight || year < _startYear || era != 1)
        return _rawOffset;

    bool southern = _startMonth > _endMonth;
    int32_t minusRaw = zu_date::clampToInt(-static_cast<int64_t>(_rawOffset));
    int32_t startDelta = _startTimeMode == kUtcTime ? minusRaw : 0;
    int32_t startCompare =
        compareToRule(month, monthLength, prevMonthLength, day, dayOfWeek, millis, startDelta,
                      _startMode, _startMonth, _startDayOfWeek, _startDay, _startTime);
    int32_t endCompare = 0;
    // The end rule only matters when the start comparison leaves the answer open.
    if (southern != (startCompare >= 0)) {
        // An end time in wall time is daylight time: compare standard time plus savings.
        int32_t endDelta = _endTimeMode == kWallTime   ? _dstSavings
                           : _endTimeMode == kUtcTime ? minusRaw
                                                      : 0;
        endCompare = compareToRule(month, monthLength, prevMonthLength, day, dayOfWeek, millis,
                                   endDelta, _endMode, _endMonth, _endDayOfWeek, _endDay, _endTime);
    }
    bool inDaylight = southern ? !(startCompare < 0 && endCompare >= 0)
                               : (startCompare >= 0 && endCompare < 0);
    return inDaylight ? zu_date::clampToInt(static_cast<int64_t>(_rawOffset) + _dstSavings)
                      : _rawOffset;
}

int32_t ZuTimeZone::compareToRule(int32_t month, int32_t monthLength, int32_t prevMonthLength,
                                  int32_t dayOfMonth, int32_t dayOfWeek, int32_t millis,
                                  int32_t millisDelta, int32_t ruleMode, int32_t ruleMonth,
                                  int32_t ruleDayOfWeek, int32_t ruleDay, int32_t ruleMillis) {
    // 64 bits throughout: arguments near the int32 limits must not overflow.
    int64_t ms = static_cast<int64_t>(millis) + millisDelta;
    int64_t mon = month, dom = dayOfMonth, dow = dayOfWeek;
    while (ms >= kMillisPerDay) {
        ms -= kMillisPerDay;
        ++dom;
        dow = 1 + (dow % 7);
        if (dom > monthLength) {
            dom = 1;
            ++mon;
        }
    }
    while (ms < 0) {
        ms += kMillisPerDay;
        --dom;
        dow = 1 + ((dow + 5) % 7);
        if (dom < 1) {
            dom = prevMonthLength;
            --mon;
        }
    }

    if (mon < ruleMonth)
        return -1;
    if (mon > ruleMonth)
        return 1;

    int64_t ruleDayOfMonth = 0;
    int64_t rdow = ruleDayOfWeek, rday = ruleDay, len = monthLength;
    switch (ruleMode) {
    case kDayOfMonth:
        ruleDayOfMonth = rday;
        break;
    case kDowInMonth:
        if (rday > 0)
            ruleDayOfMonth = 1 + (rday - 1) * 7 + (7 + rdow - (dow - dom + 1)) % 7;
        else
            ruleDayOfMonth = len + (rday + 1) * 7 - (7 + (dow + len - dom) - rdow) % 7;
        break;
    case kDowGeDom:
        ruleDayOfMonth = rday + (49 + rdow - rday - dow + dom) % 7;
        break;
    case kDowLeDom:
        ruleDayOfMonth = rday - (49 - rdow + rday + dow - dom) % 7;
        break;
    default:
        break;
    }

    if (dom < ruleDayOfMonth)
        return -1;
    if (dom > ruleDayOfMonth)
        return 1;
    if (ms < ruleMillis)
        return -1;
    if (ms > ruleMillis)
        return 1;
    return 0;
}
