// ZuGregorianCalendar: the cutover, leap years, add and roll, strictness, weeks, limits.
#include "date_test_util.h"

#include <gtest/gtest.h>

#include <functional>

TEST(GregorianCutover, JulianFourthIsFollowedByGregorianFifteenth) {
    auto cal = at(1582, 10, 4, 9, 30);
    ZuDateErrorCode code = kDateNoError;
    EXPECT_EQ(cal->get(C::kDayOfYear, code), 277);
    cal->add(C::kDate, 1, code);
    EXPECT_EQ(show(*cal), "1582-10-15 09:30:00.000");
    EXPECT_EQ(cal->get(C::kDayOfYear, code), 278);  // 288 minus the 10 dropped days
    EXPECT_EQ(cal->get(C::kDayOfWeek, code), C::kFriday);
    cal->add(C::kDate, -1, code);
    EXPECT_EQ(show(*cal), "1582-10-04 09:30:00.000");
    // A date inside the gap is read in the Julian calendar: 10 October is 20 October.
    EXPECT_EQ(show(*at(1582, 10, 10)), "1582-10-20 00:00:00.000");
    EXPECT_EQ(at(1582, 10, 15)->getTimeInMillis(code), ZuGregorianCalendar::kPapalCutover);
    EXPECT_EQ(code, kDateNoError);
}

TEST(GregorianCutover, MovedCutoverChangesLeapRuleAndSwitchDay) {
    ZuDateErrorCode code = kDateNoError;
    auto cal = at(1752, 9, 14);  // the instant that a later switch makes the first Gregorian day
    double change = cal->getTimeInMillis(code);
    cal->setGregorianChange(change, code);
    EXPECT_EQ(cal->getGregorianChange(), change);
    EXPECT_TRUE(cal->isLeapYear(1700));  // still Julian
    EXPECT_FALSE(cal->isLeapYear(1800));
    cal->setTimeInMillis(change - ZuGregorianCalendar::kOneDay, code);
    EXPECT_EQ(show(*cal), "1752-09-02 00:00:00.000");
    ZuGregorianCalendar other(code);
    EXPECT_FALSE(*cal == other);      // different cutovers
    EXPECT_FALSE(cal->equivalentTo(other));
    EXPECT_EQ(code, kDateNoError);
}

TEST(GregorianHelpers, LeapYearsMonthAndYearLengths) {
    ZuDateErrorCode code = kDateNoError;
    ZuGregorianCalendar cal(code);
    struct { int year; bool leap; } years[] = {{1500, true}, {1700, false}, {1600, true},
        {2000, true}, {1900, false}, {2004, true}, {1, false}, {0, true}, {-4, true}, {-1, false}};
    for (auto& y : years) {
        EXPECT_EQ(cal.isLeapYear(y.year), y.leap) << y.year;
        EXPECT_EQ(cal.yearLength(y.year), y.leap ? 366 : 365) << y.year;
        EXPECT_EQ(cal.monthLength(1, y.year), y.leap ? 29 : 28) << y.year;
    }
    EXPECT_EQ(cal.monthLength(13, 2004), 29);  // months outside 0-11 wrap, never overrun
    EXPECT_EQ(cal.monthLength(-1, 2004), 31);
    // 1 BC is proleptic year 0, a Julian leap year: monthLength turns the era into it,
    // yearLength() deliberately reads the year field (1) as it stands.
    cal.set(C::kEra, 0);
    cal.set(C::kYear, 1);
    EXPECT_EQ(cal.monthLength(1), 29);
    EXPECT_EQ(cal.yearLength(), 365);
}

TEST(GregorianHelpers, FloorDivisionAndJulianDays) {
    typedef ZuGregorianCalendar G;
    int32_t r = 0;
    EXPECT_EQ(G::floorDivide(7, 2), 3);
    EXPECT_EQ(G::floorDivide(-1, 4), -1);
    EXPECT_EQ(G::floorDivide(-4, 4), -1);
    EXPECT_EQ(G::floorDivide(-5, 4, r), -2);
    EXPECT_EQ(r, 3);
    EXPECT_EQ(G::floorDivide(-1.0, 4, r), -1);
    EXPECT_EQ(r, 3);
    EXPECT_EQ(G::floorDivide(9.5, 4, r), 2);
    EXPECT_EQ(r, 1);
    EXPECT_EQ(G::floorDivide(-7.5, 2.0), -4.0);
    EXPECT_EQ(G::floorDivide(5, 0), 0);  // no division by zero
    EXPECT_EQ(G::julianDayToMillis(2440588), 0.0);
    EXPECT_EQ(G::julianDayToMillis(2440589), 86400000.0);
    EXPECT_EQ(G::millisToJulianDay(-1), 2440587.0);
    EXPECT_EQ(G::millisToJulianDay(86399999), 2440588.0);
    EXPECT_EQ(G::aggregateStamp(0, 5), 0);
    EXPECT_EQ(G::aggregateStamp(3, 5), 5);
}

TEST(GregorianAdd, CarriesAndPinsAtMonthEnds) {
    struct { int y, m, d; C::ZuDateFields f; int amount; const char* expect; } cases[] = {
        {2004, 1, 31, C::kMonth, 1, "2004-02-29"}, {2003, 1, 31, C::kMonth, 1, "2003-02-28"},
        {2004, 3, 31, C::kMonth, -1, "2004-02-29"}, {2004, 12, 15, C::kMonth, 1, "2005-01-15"},
        {2004, 1, 15, C::kMonth, -13, "2002-12-15"}, {2004, 2, 29, C::kYear, 1, "2005-02-28"},
        {2004, 5, 5, C::kWeekOfYear, 2, "2004-05-19"}, {2004, 5, 5, C::kDayOfWeek, -5, "2004-04-30"},
        {2004, 5, 5, C::kAmPm, 3, "2004-05-06"}, {2004, 5, 5, C::kEra, 1, "2004-05-05"},
    };
    for (auto& c : cases) {
        auto cal = at(c.y, c.m, c.d);
        ZuDateErrorCode code = kDateNoError;
        cal->add(c.f, c.amount, code);
        EXPECT_EQ(show(*cal).substr(0, show(*cal).find(' ')), c.expect) << c.y << "-" << c.m
            << "-" << c.d << " field " << c.f << " " << c.amount;
    }
    // Years cross the era boundary. Only the year and era are checked: with every
    // computed stamp tied, the day is resolved through the week of the month.
    struct { int y; C::ZuDateFields f; int amount; int era, year; } years[] = {
        {1, C::kYear, -1, 0, 1}, {0, C::kYear, 1, 1, 1}, {-4, C::kYear, 10, 1, 6},
        {-4, C::kYear, -3, 0, 8}, {2004, C::kEra, -1, 0, 2004}, {2004, C::kYearWoy, 1, 1, 2005}};
    ZuDateErrorCode code = kDateNoError;
    for (auto& c : years) {
        auto cal = at(c.y, 6, 1);
        cal->add(c.f, c.amount, code);
        EXPECT_EQ(cal->get(C::kEra, code), c.era) << c.y << " " << c.amount;
        EXPECT_EQ(cal->get(c.f == C::kEra ? C::kYear : c.f, code), c.year) << c.y << " " << c.amount;
    }
    auto cal = at(2004, 6, 1);
    for (C::ZuDateFields bad : {C::kZoneOffset, C::kDstOffset, static_cast<C::ZuDateFields>(19)}) {
        code = kDateNoError;
        cal->add(bad, 1, code);
        EXPECT_EQ(code, kDateIllegalArgument);
    }
}

TEST(GregorianAdd, TimeFieldsCarryIntoTheDate) {
    ZuDateErrorCode code = kDateNoError;
    auto cal = at(2004, 12, 31, 23, 30);
    cal->add(C::kHourOfDay, 1, code);
    EXPECT_EQ(show(*cal), "2005-01-01 00:30:00.000");
    cal->add(C::kMinute, -31, code);
    EXPECT_EQ(show(*cal), "2004-12-31 23:59:00.000");
    cal->add(C::kSecond, 61, code);
    cal->add(C::kMillisecond, -1, code);
    EXPECT_EQ(show(*cal), "2005-01-01 00:00:00.999");
    cal->add(C::kHour, 24, code);
    EXPECT_EQ(show(*cal), "2005-01-02 00:00:00.999");
}

TEST(GregorianRoll, WrapsWithoutTouchingLargerFields) {
    struct { int y, m, d, h, mi; C::ZuDateFields f; int amount; const char* expect; } cases[] = {
        {2004, 1, 31, 0, 0, C::kMonth, 1, "2004-02-29 00:00"},
        {2004, 12, 15, 0, 0, C::kMonth, 1, "2004-01-15 00:00"},
        {2004, 5, 5, 23, 30, C::kHourOfDay, 1, "2004-05-05 00:30"},
        {2004, 5, 5, 23, 30, C::kHour, 1, "2004-05-05 12:30"},
        {2004, 5, 5, 10, 59, C::kMinute, 1, "2004-05-05 10:00"},
        {2004, 5, 5, 10, 0, C::kAmPm, 1, "2004-05-05 10:00"},  // the hour of day wins the tie
        {2004, 1, 31, 0, 0, C::kDate, 1, "2004-01-01 00:00"},
        {2004, 2, 1, 0, 0, C::kDate, -1, "2004-02-29 00:00"},
        {2003, 12, 31, 0, 0, C::kDayOfYear, 1, "2003-01-01 00:00"},
        {2004, 5, 9, 0, 0, C::kDayOfWeek, 1, "2004-05-03 00:00"},   // Sunday ends a Monday week
        {2004, 5, 9, 0, 0, C::kDowLocal, 1, "2004-05-03 00:00"},
        {2004, 5, 5, 0, 0, C::kDayOfWeekInMonth, 1, "2004-05-12 00:00"},
        {2004, 5, 26, 0, 0, C::kDayOfWeekInMonth, 1, "2004-05-05 00:00"},
        {2004, 5, 5, 0, 0, C::kWeekOfMonth, 1, "2004-05-12 00:00"},
        {2004, 5, 5, 0, 0, C::kWeekOfMonth, -1, "2004-05-01 00:00"},  // clamped to the month
        {1582, 10, 4, 0, 0, C::kDate, 1, "1582-10-15 00:00"},         // the 21-day month
        {1582, 10, 15, 0, 0, C::kDate, -1, "1582-10-04 00:00"},
        {1582, 10, 31, 0, 0, C::kDate, 1, "1582-10-01 00:00"},
        {1582, 10, 1, 0, 0, C::kDate, 20, "1582-10-31 00:00"},
        {1582, 10, 4, 0, 0, C::kWeekOfMonth, 1, "1582-10-21 00:00"},
    };
    for (auto& c : cases) {
        auto cal = at(c.y, c.m, c.d, c.h, c.mi);
        ZuDateErrorCode code = kDateNoError;
        cal->roll(c.f, c.amount, code);
        EXPECT_EQ(show(*cal).substr(0, 16), c.expect) << c.y << "-" << c.m << "-" << c.d
            << " field " << c.f << " " << c.amount;
    }
    auto cal = at(2004, 5, 5);
    ZuDateErrorCode code = kDateNoError;
    cal->roll(C::kYear, -2004, code);
    EXPECT_EQ(cal->get(C::kYear, code), 144683);  // wraps to the largest year
    cal->roll(C::kYear, 1, code);
    EXPECT_EQ(cal->get(C::kYear, code), 1);
    for (C::ZuDateFields bad : {C::kZoneOffset, C::kDstOffset, static_cast<C::ZuDateFields>(-1)}) {
        ZuDateErrorCode code = kDateNoError;
        cal->roll(bad, 1, code);
        EXPECT_EQ(code, kDateIllegalArgument);
    }
}

TEST(GregorianFields, StrictRejectsWhatLenientNormalises) {
    ZuDateErrorCode code = kDateNoError;
    auto cal = at(2004, 1, 1);
    cal->set(2004, 3, 31);  // 31 April
    EXPECT_EQ(show(*cal), "2004-05-01 00:00:00.000");
    cal->set(C::kMonth, 13);  // January plus 13 months
    EXPECT_EQ(show(*cal), "2005-02-01 00:00:00.000");

    std::function<void(ZuCalendar&)> invalid[] = {
        [](ZuCalendar& c) { c.set(2004, 3, 31); },
        [](ZuCalendar& c) { c.set(C::kDayOfYear, 367); },
        [](ZuCalendar& c) { c.set(C::kHourOfDay, 24); },
        [](ZuCalendar& c) { c.set(C::kDayOfWeekInMonth, 0); },
    };
    for (auto& makeInvalid : invalid) {
        auto strict = at(2004, 1, 1);
        strict->setLenient(false);
        makeInvalid(*strict);
        code = kDateNoError;
        EXPECT_EQ(strict->getTimeInMillis(code), 0.0);
        EXPECT_EQ(code, kDateIllegalArgument);
    }
    auto strict = at(2004, 1, 1);
    strict->setLenient(false);
    strict->set(2004, 1, 29);
    code = kDateNoError;
    EXPECT_EQ(show(*strict), "2004-02-29 00:00:00.000");
    strict->set(C::kEra, 2);
    strict->setLenient(true);
    strict->getTimeInMillis(code);
    EXPECT_EQ(code, kDateIllegalArgument);  // no era 2, even when lenient
}

TEST(GregorianFields, NewestStampChoosesTheDateFields) {
    ZuDateErrorCode code = kDateNoError;
    auto cal = at(2004, 5, 5);
    cal->set(C::kDayOfYear, 60);
    EXPECT_EQ(show(*cal), "2004-02-29 00:00:00.000");
    cal->set(C::kMonth, 4);  // now the month (with the computed date) wins again
    EXPECT_EQ(show(*cal), "2004-05-29 00:00:00.000");
    cal->set(C::kDayOfWeek, C::kFriday);
    cal->set(C::kDayOfWeekInMonth, -1);
    EXPECT_EQ(show(*cal), "2004-05-28 00:00:00.000");  // last Friday of May
    cal->set(C::kDayOfWeekInMonth, 2);
    EXPECT_EQ(show(*cal), "2004-05-14 00:00:00.000");
    cal->set(C::kDayOfWeek, C::kSunday);  // resolved through the week of the month
    EXPECT_EQ(show(*cal), "2004-05-16 00:00:00.000");
    auto clean = at(2004, 1, 1);
    clean->clear();
    EXPECT_EQ(show(*clean), "1970-01-01 00:00:00.000");
    clean->set(C::kHour, 3);
    clean->set(C::kAmPm, 1);  // kAmPm's stamp is not consulted, its value is
    EXPECT_EQ(show(*clean), "1970-01-01 15:00:00.000");
    EXPECT_EQ(code, kDateNoError);
}

TEST(GregorianWeeks, FirstWeekHoldsFirstJanuary) {
    ZuDateErrorCode code = kDateNoError;
    auto cal = at(2003, 12, 31);
    EXPECT_EQ(cal->get(C::kWeekOfYear, code), 1);
    EXPECT_EQ(cal->get(C::kYearWoy, code), 2004);
    EXPECT_EQ(cal->get(C::kDowLocal, code), 3);  // Wednesday in a Monday week
    for (int year = 1995; year <= 2030; ++year)
        EXPECT_EQ(at(year, 1, 1)->get(C::kWeekOfYear, code), 1) << year;
    // With 1 January on a Monday the days before it still belong to its week 1.
    auto sunday = at(2017, 12, 31);
    EXPECT_EQ(sunday->get(C::kWeekOfYear, code), 1);
    EXPECT_EQ(sunday->get(C::kYearWoy, code), 2018);
    auto may = at(2004, 5, 31);
    EXPECT_EQ(may->get(C::kWeekOfMonth, code), 6);
    EXPECT_EQ(may->get(C::kDayOfWeekInMonth, code), 5);
    // The Monday of week 1 of 2004 is the Monday before 1 January.
    may->set(C::kWeekOfYear, 1);
    may->set(C::kDayOfWeek, C::kMonday);
    EXPECT_EQ(show(*may), "2003-12-29 00:00:00.000");
    // Year 2003 set after the week's year: week 1 days before 1 January belong to the
    // 2003 days of 2004's week 1, not to 2002.
    may->set(C::kYear, 2003);
    may->set(C::kWeekOfYear, 1);
    may->set(C::kDayOfWeek, C::kMonday);
    EXPECT_EQ(show(*may), "2003-12-29 00:00:00.000");
    may->set(C::kYear, 2003);
    may->set(C::kWeekOfYear, 1);
    may->set(C::kDayOfWeek, C::kSunday);
    EXPECT_EQ(show(*may), "2003-01-05 00:00:00.000");
}

TEST(GregorianLimits, ActualMaximaFollowTheDate) {
    ZuDateErrorCode code = kDateNoError;
    auto feb = at(2004, 2, 10);
    EXPECT_EQ(feb->getActualMaximum(C::kDate, code), 29);
    EXPECT_EQ(feb->getActualMaximum(C::kDayOfYear, code), 366);
    EXPECT_EQ(feb->getActualMaximum(C::kWeekOfMonth, code), 5);
    EXPECT_EQ(feb->getActualMaximum(C::kDayOfWeekInMonth, code), 4);  // Tuesdays
    EXPECT_EQ(at(2004, 2, 29)->getActualMaximum(C::kDayOfWeekInMonth, code), 5);
    EXPECT_EQ(feb->getActualMaximum(C::kHourOfDay, code), 23);
    EXPECT_EQ(feb->getActualMinimum(C::kDate, code), 1);
    EXPECT_EQ(at(2003, 2, 10)->getActualMaximum(C::kDate), 28);
    EXPECT_EQ(feb->getActualMaximum(C::kYear, code), 144683);
    EXPECT_EQ(feb->getMinimum(C::kZoneOffset), -43200000);
    EXPECT_EQ(feb->getLeastMaximum(C::kWeekOfYear), 52);
    EXPECT_EQ(feb->getMaximum(static_cast<C::ZuDateFields>(40)), 0);
    EXPECT_EQ(show(*feb), "2004-02-10 00:00:00.000");  // the searches run on clones
    EXPECT_EQ(code, kDateNoError);
}

TEST(GregorianFields, EpochDayIsTruncatedLocalDays) {
    ZuDateErrorCode code = kDateNoError;
    EXPECT_EQ(at(1970, 1, 2, 6)->getEpochDay(code), 1);
    EXPECT_EQ(at(2004, 1, 1)->getEpochDay(code), 12418);
    EXPECT_EQ(at(1969, 12, 31, 12)->getEpochDay(code), 0);  // toward zero
    EXPECT_EQ(at(1969, 12, 30, 12)->getEpochDay(code), -1);
    EXPECT_FALSE(at(2004, 7, 1)->inDaylightTime(code));
    EXPECT_EQ(code, kDateNoError);
}
