// ZuGregorianCalendar: the cutover, leap years, add and roll, strictness, weeks, limits.
#include "date_test_util.h"

#include <gtest/gtest.h>

#include <cstring>
#include <initializer_list>
#include <tuple>

namespace {

typedef void (ZuCalendar::*Op)(C::ZuDateFields, int32_t, ZuDateErrorCode&);

// Each row: op(f, amount) on y-m-d at h:30; the result down to the hour, or its leading
// part when expect is shorter.
struct Move { int y, m, d, h; C::ZuDateFields f; int amount; const char* expect; };
void check(Op op, std::initializer_list<Move> moves) {
    for (const Move& c : moves) {
        auto cal = at(c.y, c.m, c.d, c.h, 30);
        ZuDateErrorCode code = kDateNoError;
        ((*cal).*op)(c.f, c.amount, code);
        EXPECT_EQ(show(*cal).substr(0, std::strlen(c.expect)), c.expect)
            << c.y << "-" << c.m << "-" << c.d << " field " << c.f << " " << c.amount;
    }
}

} // namespace

TEST(GregorianCutover, AMovedCutoverStillSkipsTheGap) {
    ZuDateErrorCode code = kDateNoError;
    auto cal = at(1752, 9, 14);  // a later switch: 2 September is followed by 14 September
    double change = cal->getTimeInMillis(code);
    cal->setGregorianChange(change, code);
    EXPECT_EQ(cal->getGregorianChange(), change);
    EXPECT_TRUE(cal->isLeapYear(1700));  // still Julian
    EXPECT_EQ(at(1582, 10, 15)->getTimeInMillis(code), ZuGregorianCalendar::kPapalCutover);
    cal->setTimeInMillis(change - ZuGregorianCalendar::kOneDay, code);
    EXPECT_EQ(show(*cal), "1752-09-02 00:00:00.000");
    ZuGregorianCalendar other(code);
    EXPECT_FALSE(*cal == other || cal->equivalentTo(other));  // different cutovers
    EXPECT_EQ(code, kDateNoError);
}

TEST(GregorianHelpers, LeapYearsLengthsAndDivision) {
    typedef ZuGregorianCalendar G;
    ZuDateErrorCode code = kDateNoError;
    G cal(code);
    for (auto [year, leap] : {std::pair{1500, true}, {1700, false}, {1600, true}, {2000, true}, {1900, false},
                              {1, false}, {0, true}, {-4, true}, {-1, false}}) {
        EXPECT_EQ(cal.isLeapYear(year), leap) << year;
        EXPECT_EQ(cal.yearLength(year) * 100 + cal.monthLength(1, year), leap ? 36629 : 36528) << year;
    }
    EXPECT_EQ(cal.monthLength(13, 2004), 29);  // months outside 0-11 wrap, never overrun
    // 1 BC is proleptic year 0, a Julian leap year: monthLength turns the era into it,
    // yearLength() deliberately reads the year field (1) as it stands.
    cal.set(C::kEra, 0), cal.set(C::kYear, 1);
    EXPECT_EQ(cal.monthLength(1) * 1000 + cal.yearLength(), 29365);

    int32_t r = 0;
    EXPECT_EQ(G::floorDivide(-1, 4), -1);
    EXPECT_EQ(G::floorDivide(-4, 4), -1);  // (n + 1) / d - 1, kept as it stands
    EXPECT_EQ(G::floorDivide(-5, 4, r) * 10 + r, -17);
    EXPECT_EQ(G::floorDivide(-1.0, 4, r) * 10 + r, -7);
    EXPECT_EQ(G::floorDivide(9.5, 4, r) * 10 + r, 21);
    EXPECT_EQ(G::floorDivide(-7.5, 2.0), -4.0);
    EXPECT_EQ(G::floorDivide(5, 0), 0);  // no division by zero
    EXPECT_EQ(G::julianDayToMillis(2440589), 86400000.0);
    EXPECT_EQ(G::millisToJulianDay(-1), 2440587.0);
    EXPECT_EQ(G::aggregateStamp(0, 5) * 10 + G::aggregateStamp(3, 5), 5);
}

TEST(GregorianAdd, CarriesAndPinsAtMonthEnds) {
    check(&ZuCalendar::add, {
        {2004, 1, 31, 0, C::kMonth, 1, "2004-02-29 00"}, {2003, 1, 31, 0, C::kMonth, 1, "2003-02-28 00"},
        {2004, 3, 31, 0, C::kMonth, -1, "2004-02-29 00"}, {2004, 12, 15, 0, C::kMonth, 1, "2005-01-15 00"},
        {2004, 1, 15, 0, C::kMonth, -13, "2002-12-15 00"}, {2004, 2, 29, 0, C::kYear, 1, "2005-02-28 00"},
        {2004, 5, 5, 0, C::kWeekOfYear, 2, "2004-05-19 00"}, {2004, 5, 5, 0, C::kDayOfWeek, -5, "2004-04-30 00"},
        {2004, 5, 5, 0, C::kAmPm, 3, "2004-05-06 12"}, {2004, 12, 31, 23, C::kHourOfDay, 1, "2005-01-01 00"},
        {2004, 5, 5, 0, C::kHour, 24, "2004-05-06 00"}, {2004, 5, 5, 0, C::kMinute, -31, "2004-05-04 23"},
        {2004, 5, 5, 0, C::kSecond, -1800, "2004-05-05 00"}, {2004, 5, 5, 0, C::kEra, 1, "2004-05-05 00"},
        // Julian 4 October is followed by Gregorian 15 October; a date inside the gap is read
        // in the Julian calendar (10 October is 20 October).
        {1582, 10, 4, 9, C::kDate, 1, "1582-10-15 09"}, {1582, 10, 15, 9, C::kDate, -1, "1582-10-04 09"},
        {1582, 10, 10, 0, C::kDate, 0, "1582-10-20 00"},
        // Across the eras only the year is checked: with every computed stamp tied, the
        // day after a year change is resolved through the week of the month.
        {1, 6, 1, 0, C::kYear, -1, "0-"}, {0, 6, 1, 0, C::kYear, 1, "1-"}, {-4, 6, 1, 0, C::kYear, 10, "6-"},
        {-4, 6, 1, 0, C::kYear, -3, "-7-"}, {2004, 5, 5, 0, C::kEra, -1, "-2003-"}});
    auto cal = at(1, 1, 1);  // year 1 AD minus one year: year 1 of era 0
    ZuDateErrorCode code = kDateNoError;
    cal->add(C::kYear, -1, code);
    EXPECT_EQ(cal->get(C::kYear, code) * 10 + cal->get(C::kEra, code), 10);
    for (Op op : {&ZuCalendar::add, &ZuCalendar::roll})
        for (int bad : {int(C::kZoneOffset), int(C::kDstOffset), -1, 19}) {
            code = kDateNoError;
            ((*cal).*op)(static_cast<C::ZuDateFields>(bad), 1, code);
            EXPECT_EQ(code, kDateIllegalArgument) << bad;
        }
}

TEST(GregorianRoll, WrapsWithoutTouchingLargerFields) {
    check(&ZuCalendar::roll, {
        {2004, 1, 31, 0, C::kMonth, 1, "2004-02-29 00"}, {2004, 12, 15, 0, C::kMonth, 1, "2004-01-15 00"},
        {2004, 5, 5, 23, C::kHourOfDay, 1, "2004-05-05 00"}, {2004, 5, 5, 23, C::kHour, 1, "2004-05-05 12"},
        {2004, 5, 5, 10, C::kAmPm, 1, "2004-05-05 10"},  // kAmPm loses to the hour of day
        {2004, 1, 31, 0, C::kDate, 1, "2004-01-01 00"}, {2004, 2, 1, 0, C::kDate, -1, "2004-02-29 00"},
        {2003, 12, 31, 0, C::kDayOfYear, 1, "2003-01-01 00"},
        // A Sunday ends a Monday week; rolled weeks of the month are clamped to the month.
        {2004, 5, 9, 0, C::kDayOfWeek, 1, "2004-05-03 00"}, {2004, 5, 9, 0, C::kDowLocal, 1, "2004-05-03 00"},
        {2004, 5, 5, 0, C::kDayOfWeekInMonth, 1, "2004-05-12 00"},
        {2004, 5, 26, 0, C::kDayOfWeekInMonth, 1, "2004-05-05 00"},
        {2004, 5, 5, 0, C::kWeekOfMonth, 1, "2004-05-12 00"}, {2004, 5, 5, 0, C::kWeekOfMonth, -1, "2004-05-01 00"},
        {1582, 10, 4, 0, C::kDate, 1, "1582-10-15 00"},  // the 21-day month
        {1582, 10, 15, 0, C::kDate, -1, "1582-10-04 00"}, {1582, 10, 31, 0, C::kDate, 1, "1582-10-01 00"},
        {1582, 10, 1, 0, C::kDate, 20, "1582-10-31 00"}, {1582, 10, 4, 0, C::kWeekOfMonth, 1, "1582-10-21 00"}});
    auto cal = at(2004, 5, 5);
    ZuDateErrorCode code = kDateNoError;
    cal->roll(C::kYear, -2004, code);
    EXPECT_EQ(cal->get(C::kYear, code), 144683);  // wraps to the largest year
    cal->roll(C::kYear, 1, code);
    EXPECT_EQ(cal->get(C::kYear, code), 1);
}

TEST(GregorianFields, StrictRejectsWhatLenientNormalises) {
    run(*at(2004, 1, 1), {{[](C& c, E&) { c.set(2004, 3, 31); }, "2004-05-01 00:00:00.000"},  // 31 April
                          {[](C& c, E&) { c.set(C::kMonth, 13); }, "2005-02-01 00:00:00.000"}});  // January + 13
    struct { bool lenient; C::ZuDateFields field; int value; ZuDateErrorCode code; } cases[] = {
        {false, C::kDate, 31, kDateIllegalArgument}, {false, C::kDayOfYear, 367, kDateIllegalArgument},
        {false, C::kHourOfDay, 24, kDateIllegalArgument}, {false, C::kDayOfWeekInMonth, 0, kDateIllegalArgument},
        {false, C::kDate, 30, kDateNoError}, {false, C::kDayOfWeekInMonth, -1, kDateNoError},
        {true, C::kEra, 2, kDateIllegalArgument}};  // no era 2, even when lenient
    for (auto& c : cases) {
        auto cal = at(2004, 4, 1);
        cal->setLenient(c.lenient), cal->set(c.field, c.value);
        ZuDateErrorCode code = kDateNoError;
        cal->getTimeInMillis(code);
        EXPECT_EQ(code, c.code) << c.field << " " << c.value;
    }
}

TEST(GregorianFields, NewestStampChoosesTheDateFields) {
    auto cal = at(2004, 5, 5);
    // Each read recomputes every field with stamp 1; the one set after it is the newest.
    struct { C::ZuDateFields field; int value; const char* expect; } steps[] = {
        {C::kDayOfYear, 60, "2004-02-29"}, {C::kMonth, 4, "2004-05-29"},
        {C::kDayOfWeek, C::kFriday, "2004-05-28"},  // ties resolve through the week of the month
        {C::kDayOfWeekInMonth, 2, "2004-05-14"}, {C::kDayOfWeekInMonth, -1, "2004-05-28"},
        {C::kDayOfWeek, C::kSunday, "2004-05-30"}, {C::kWeekOfMonth, 1, "2004-05-02"}};
    for (auto& s : steps) {
        cal->set(s.field, s.value);
        EXPECT_EQ(show(*cal).substr(0, 10), s.expect) << s.field << " " << s.value;
    }
    // kAmPm's stamp is not consulted, its value is.
    run(*cal, {{[](C& c, E&) { c.clear(); }, "1970-01-01 00:00:00.000"},
               {[](C& c, E&) { c.set(C::kHour, 3), c.set(C::kAmPm, 1); }, "1970-01-01 15:00:00.000"}});
}

TEST(GregorianWeeks, FirstWeekHoldsFirstJanuary) {
    // 31 December 2003 is the Wednesday of 2004's week 1; with 1 January on a Monday (2018)
    // the days before it still belong to its week 1.
    EXPECT_EQ(fields(*at(2003, 12, 31), {C::kWeekOfYear, C::kYearWoy, C::kDowLocal}), "1 2004 3");
    EXPECT_EQ(fields(*at(2017, 12, 31), {C::kWeekOfYear, C::kYearWoy}), "1 2018");
    EXPECT_EQ(fields(*at(2004, 5, 31), {C::kWeekOfMonth, C::kDayOfWeekInMonth}), "6 5");
    for (int year = 1995; year <= 2030; ++year)
        EXPECT_EQ(fields(*at(year, 1, 1), {C::kWeekOfYear}), "1") << year;
    // Week 1 from the fields: in the week's own year (2004), then in year 2003, where the Monday
    // falls among 2003's days in 2004's week 1 and the Sunday on 5 January 2003, as it stands.
    run(*at(2004, 5, 31),
        {{[](C& c, E&) { c.set(C::kWeekOfYear, 1), c.set(C::kDayOfWeek, C::kMonday); }, "2003-12-29 00:00:00.000"},
         {[](C& c, E&) { c.set(C::kYear, 2003), c.set(C::kWeekOfYear, 1), c.set(C::kDayOfWeek, C::kMonday); },
          "2003-12-29 00:00:00.000"},
         {[](C& c, E&) { c.set(C::kYear, 2003), c.set(C::kWeekOfYear, 1), c.set(C::kDayOfWeek, C::kSunday); },
          "2003-01-05 00:00:00.000"}});
}

TEST(GregorianLimits, ActualMaximaFollowTheDate) {
    ZuDateErrorCode code = kDateNoError;
    auto feb = at(2004, 2, 10);  // a Tuesday
    struct { C::ZuDateFields field; int32_t max; } cases[] = {
        {C::kDate, 29}, {C::kDayOfYear, 366}, {C::kWeekOfMonth, 5}, {C::kDayOfWeekInMonth, 4},
        {C::kHourOfDay, 23}, {C::kYear, 144683}};
    for (auto& c : cases)
        EXPECT_EQ(feb->getActualMaximum(c.field, code), c.max) << c.field;
    EXPECT_EQ(feb->getActualMinimum(C::kDate, code) + at(2003, 2, 10)->getActualMaximum(C::kDate), 29);
    EXPECT_EQ(at(2004, 2, 29)->getActualMaximum(C::kDayOfWeekInMonth, code), 5);
    EXPECT_EQ(feb->getMinimum(C::kZoneOffset) + feb->getLeastMaximum(C::kWeekOfYear), -43199948);
    EXPECT_EQ(show(*feb), "2004-02-10 00:00:00.000");  // the searches run on clones
    // Epoch days count local days, truncated toward zero.
    for (auto [y, m, d, h, epochDay] :
         {std::tuple{2004, 1, 1, 0, 12418}, {1969, 12, 31, 12, 0}, {1969, 12, 30, 12, -1}})
        EXPECT_EQ(at(y, m, d, h)->getEpochDay(code), epochDay);
    EXPECT_FALSE(feb->inDaylightTime(code));
    EXPECT_EQ(code, kDateNoError);
}
