// ZuTimeZone: the default zone, argument checks, the four rule modes, northern and
// southern daylight saving, and calendars running on rule zones.
#include "date_test_util.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <thread>
#include <utility>
#include <vector>

namespace {

typedef ZuTimeZone Z;
const int32_t kHour = 3600000;

// A zone of the given raw offset saving daylight from the start to the end rule, both on
// a Sunday in the kDowInMonth mode at the same time and time mode.
ZuTimeZone* ruled(int32_t raw, int startMonth, int startWeek, int endMonth, int endWeek, int32_t time, int mode) {
    ZuTimeZone* zone = new ZuTimeZone();
    zone->setRawOffset(raw), zone->setStartRule(startMonth, startWeek, 1, time, mode, Z::kDowInMonth);
    zone->setEndRule(endMonth, endWeek, 1, time, mode, Z::kDowInMonth);
    return zone;
}
// Central Europe: +1 h, from the last Sunday of March to the last Sunday of October at 01:00 UTC.
ZuTimeZone* northern() { return ruled(kHour, 2, -1, 9, -1, kHour, Z::kUtcTime); }
// -3 h, from the first Sunday of October to the third Sunday of February at midnight wall time.
ZuTimeZone* southern() { return ruled(-3 * kHour, 9, 1, 1, 3, 0, Z::kWallTime); }

int32_t offset(const ZuTimeZone& zone, int year, int month, int day, int dow, int32_t millis) {
    static const int lengths[] = {31, 29, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};  // 2004
    ZuDateErrorCode code = kDateNoError;
    int32_t result = zone.getOffset(1, year, month - 1, day, dow, millis, lengths[month - 1], code);
    EXPECT_EQ(code, kDateNoError);
    return result;
}

} // namespace

TEST(TimeZoneDefault, IsUtcWithoutDaylightSavingAndSharedOnce) {
    ZuTimeZone zone;
    EXPECT_EQ(std::make_pair(zone.getRawOffset(), zone.getDSTSavings()), std::make_pair(0, kHour));
    EXPECT_TRUE(!zone.getUseDaylight() && zone.useDaylightTime());  // the latter deliberately, whatever the flag
    for (int month = 1; month <= 12; ++month)
        EXPECT_EQ(offset(zone, 2004, month, 15, 3, 43200000), 0);
    std::vector<ZuTimeZone*> seen(8);
    std::vector<std::thread> threads;
    for (size_t i = 0; i < seen.size(); ++i)
        threads.emplace_back([&seen, i] { seen[i] = ZuTimeZone::createDefault(); });
    for (std::thread& t : threads) t.join();
    EXPECT_EQ(std::count(seen.begin(), seen.end(), ZuTimeZone::createDefault()), 8);
    // Every zone compares equal; a clone is a default zone, rules not copied.
    std::unique_ptr<ZuTimeZone> rules(northern()), copy(rules->clone());
    EXPECT_TRUE(*rules == zone && *copy == *ZuTimeZone::createDefault());
    EXPECT_EQ(copy->getRawOffset(), 0);
}

TEST(TimeZoneOffset, RejectsArgumentsOutOfRange) {
    ZuTimeZone zone;
    struct { int era, month, day, dow, millis, length; } bad[] = {
        {2, 0, 1, 1, 0, 31}, {1, -1, 1, 1, 0, 31}, {1, 12, 1, 1, 0, 31}, {1, 0, 0, 1, 0, 31},
        {1, 0, 32, 1, 0, 31}, {1, 1, 30, 1, 0, 29}, {1, 0, 1, 0, 0, 31}, {1, 0, 1, 8, 0, 31},
        {1, 0, 1, 1, -1, 31}, {1, 0, 1, 1, 86400000, 31}, {1, 0, 1, 1, 0, 27}, {1, 0, 1, 1, 0, 32}};
    for (auto& b : bad) {  // the short form checks the month first, then calls the full one
        ZuDateErrorCode code = kDateNoError;
        EXPECT_EQ(zone.getOffset(b.era, 2004, b.month, b.day, b.dow, b.millis, b.length, code), -1);
        EXPECT_EQ(code, kDateIllegalArgument);
    }
    ZuDateErrorCode failed = kDateInvalidFormat;
    EXPECT_EQ(zone.getOffset(1, 2004, 0, 1, 5, 0, 31, failed), 0);  // failed code: 0
}

TEST(TimeZoneRule, EachModePicksItsDay) {
    // May 2004: the 1st is a Saturday. Arguments: day, weekday, then the rule.
    struct { int mode, ruleDow, ruleDay, dom, dow; int32_t expect; } cases[] = {
        {Z::kDayOfMonth, 0, 15, 14, 6, -1}, {Z::kDayOfMonth, 0, 15, 15, 7, 0}, {Z::kDayOfMonth, 0, 15, 16, 1, 1},
        {Z::kDowInMonth, 1, 2, 9, 1, 0}, {Z::kDowInMonth, 1, 2, 8, 7, -1},  // 2nd Sunday: 9th
        {Z::kDowInMonth, 1, -1, 30, 1, 0}, {Z::kDowInMonth, 1, -1, 29, 7, -1}, {Z::kDowInMonth, 1, -1, 31, 2, 1},
        {Z::kDowGeDom, 1, 10, 16, 1, 0}, {Z::kDowGeDom, 1, 10, 15, 7, -1},  // on or after 10th
        {Z::kDowLeDom, 1, 10, 9, 1, 0}, {Z::kDowLeDom, 1, 10, 10, 2, 1},    // on or before 10th
        {9, 1, 10, 1, 7, 1}};  // unknown mode: rule day 0
    for (auto& c : cases)
        EXPECT_EQ(Z::compareToRule(4, 31, 30, c.dom, c.dow, 0, 0, c.mode, 4, c.ruleDow, c.ruleDay, 0),
                  c.expect) << "mode " << c.mode << " day " << c.dom;
    // Months, times of day; the delta rolls over days and months.
    EXPECT_EQ(Z::compareToRule(3, 30, 31, 30, 6, 0, 0, 1, 4, 1, 1, 0), -1);
    EXPECT_EQ(Z::compareToRule(4, 31, 30, 31, 2, 23 * kHour, 2 * kHour, 1, 5, 1, 1, kHour), 0);
    EXPECT_EQ(Z::compareToRule(5, 30, 31, 1, 3, 1800000, -kHour, 1, 4, 1, 31, 84600000), 0);
    // Through getOffset: a zone starting in each mode, off the day before, on at the start.
    struct { int mode, day, dow, before; } starts[] = {
        {Z::kDayOfMonth, 15, 0, 14}, {Z::kDowInMonth, 2, 1, 8}, {Z::kDowGeDom, 10, 1, 15}, {Z::kDowLeDom, 10, 1, 8}};
    for (auto& s : starts) {
        ZuTimeZone zone;
        zone.setStartRule(4, s.day, s.dow, 0, Z::kStandardTime, s.mode);
        zone.setEndRule(11, 1, 0, 0, Z::kStandardTime, Z::kDayOfMonth);
        EXPECT_EQ(offset(zone, 2004, 5, s.before, (s.before + 5) % 7 + 1, kHour), 0) << s.mode;
        EXPECT_EQ(offset(zone, 2004, 5, s.before + 1, (s.before + 6) % 7 + 1, 0), kHour) << s.mode;
    }
}

TEST(TimeZoneOffset, NorthernAndSouthernPeriods) {
    std::unique_ptr<ZuTimeZone> north(northern()), south(southern());
    struct { ZuTimeZone* zone; int month, day, dow; int32_t millis, expect; } cases[] = {
        {north.get(), 1, 15, 5, 12 * kHour, kHour}, {north.get(), 7, 15, 5, 12 * kHour, 2 * kHour},
        // 28 March and 31 October 2004, switches at 01:00 UTC = 02:00 standard time.
        {north.get(), 3, 28, 1, 2 * kHour - 1, kHour}, {north.get(), 3, 28, 1, 2 * kHour, 2 * kHour},
        {north.get(), 10, 31, 1, 2 * kHour - 1, 2 * kHour}, {north.get(), 10, 31, 1, 2 * kHour, kHour},
        {south.get(), 1, 15, 5, 0, -2 * kHour}, {south.get(), 7, 15, 5, 0, -3 * kHour},
        {south.get(), 10, 2, 7, 86399999, -3 * kHour}, {south.get(), 10, 3, 1, 0, -2 * kHour},
        // The end (15 February 00:00 wall time) is 14 February 23:00 standard time.
        {south.get(), 2, 14, 7, 23 * kHour - 1, -2 * kHour}, {south.get(), 2, 14, 7, 23 * kHour, -3 * kHour}};
    for (auto& c : cases)
        EXPECT_EQ(offset(*c.zone, 2004, c.month, c.day, c.dow, c.millis), c.expect)
            << c.month << "-" << c.day << " " << c.millis;
    ZuDateErrorCode code = kDateNoError;
    EXPECT_EQ(south->getOffset(0, 4, 0, 15, 5, 0, 31, code), -3 * kHour);  // BC: no saving
    north->setStartYear(2005);
    EXPECT_EQ(offset(*north, 2004, 7, 15, 5, 0), kHour);
    north->setStartYear(0), north->setUseDaylight(false);
    EXPECT_EQ(offset(*north, 2004, 7, 15, 5, 0), kHour);
}

TEST(TimeZoneCalendar, CalendarKeepsWallTimeAcrossTheChange) {
    ZuDateErrorCode code = kDateNoError;
    auto cal = at(2004, 7, 15, 12);  // 12:00 UTC in the default zone
    double noonUtc = cal->getTimeInMillis(code);
    cal->adoptTimeZone(northern());
    EXPECT_EQ(show(*cal), "2004-07-15 14:00:00.000");
    EXPECT_EQ(cal->get(C::kZoneOffset, code) + cal->get(C::kDstOffset, code), 2 * kHour);
    EXPECT_TRUE(cal->inDaylightTime(code));
    cal->set(C::kHourOfDay, 15);
    EXPECT_EQ(cal->getTimeInMillis(code), noonUtc + kHour);
    // From local times either side of the switches: a day keeps the wall time, 24 hours do not.
    run(*cal, {{[](C& c, E& e) { c.set(2004, 2, 27, 12, 0), c.add(C::kDate, 1, e); }, "2004-03-28 12:00:00.000"},
               {[](C& c, E& e) { c.set(2004, 2, 27, 12, 0), c.add(C::kHour, 24, e); }, "2004-03-28 13:00:00.000"},
               {[](C& c, E& e) { c.set(2004, 9, 30, 23, 30), c.add(C::kWeekOfYear, 1, e); },
                "2004-11-06 23:30:00.000"}});
    EXPECT_FALSE(cal->inDaylightTime(code));
    EXPECT_EQ(cal->getEpochDay(code), 12728);
    // Fields with an explicit zone offset bypass the zone's rules.
    cal->set(2004, 6, 15, 12, 0), cal->set(C::kZoneOffset, 0), cal->set(C::kDstOffset, 0);
    EXPECT_EQ(cal->getTimeInMillis(code), noonUtc);
    std::unique_ptr<ZuCalendar> copy(cal->clone());  // the copy's zone is a default zone
    EXPECT_EQ(copy->getTimeZone().getRawOffset() + code, 0);
}
