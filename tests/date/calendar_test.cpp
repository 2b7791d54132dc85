// ZuCalendar: creation, zones and their ownership, set/get/clear and the state flags,
// comparisons, fieldDifference, class operations, failed codes and absurd input.
#include "date_test_util.h"

#include <gtest/gtest.h>

#include <cmath>
#include <ctime>
#include <vector>

TEST(CalendarCreate, EveryFormGivesAGregorianCalendarOrNull) {
    ZuDateErrorCode code = kDateNoError;
    ZuTimeZone zone;
    ZuLocale locale("C");  // week data: Monday, 0 minimal days, as every locale
    std::vector<ZuCalendar*> made = {ZuCalendar::createInstance(zone, code),
        ZuCalendar::createInstance(&zone, code), ZuCalendar::createInstance(code),
        ZuCalendar::createInstance(zone, locale, code), ZuCalendar::createInstance(&zone, locale, code),
        ZuCalendar::createInstance(locale, code)};
    made[0]->setFirstDayOfWeek(C::kSunday), made[0]->setMinimalDaysInFirstWeek(4);
    made[0]->setWeekCountData(locale, code);
    for (ZuCalendar* cal : made) {
        ASSERT_NE(dynamic_cast<ZuGregorianCalendar*>(cal), nullptr);
        EXPECT_NE(&cal->getTimeZone(), &zone);  // cloned, also from a pointer
        EXPECT_NEAR(cal->getTimeInMillis(code), ZuCalendar::getNow(), 5000.0);
        EXPECT_EQ(cal->getFirstDayOfWeek() * 10 + cal->getMinimalDaysInFirstWeek() + cal->isLenient(), 21);
        delete cal;
    }
    EXPECT_EQ(code, kDateNoError);
    EXPECT_EQ(ZuCalendar::createInstance(static_cast<const ZuTimeZone*>(nullptr), code), nullptr);
    EXPECT_EQ(code, kDateIllegalArgument);
    EXPECT_EQ(ZuCalendar::createInstance(code), nullptr);  // a failed code stays failed
    EXPECT_EQ(code, kDateIllegalArgument);
}

TEST(CalendarZone, OrphanedCalendarHoldsTheSharedZoneWithoutFreeingIt) {
    ZuDateErrorCode code = kDateNoError;
    for (int round = 0; round < 2; ++round) {  // the second round uses the shared zone again
        auto cal = at(2004, 5, 5);
        delete cal->orphanTimeZone();
        EXPECT_EQ(&cal->getTimeZone(), ZuTimeZone::createDefault());
        cal->adoptTimeZone(nullptr);  // ignored
        cal->adoptTimeZone(ZuTimeZone::createDefault());  // harmless too
    }
    auto cal = at(2004, 5, 5);
    ZuTimeZone* zone = new ZuTimeZone();
    zone->setRawOffset(3600000), cal->adoptTimeZone(zone);
    EXPECT_EQ(&cal->getTimeZone(), zone);
    EXPECT_EQ(cal->get(C::kHourOfDay, code), 1);  // fields recomputed in the new zone
    cal->setTimeZone(*zone);  // a clone: the default zone
    EXPECT_EQ(cal->get(C::kHourOfDay, code), 0);
    ZuGregorianCalendar noZone(static_cast<const ZuTimeZone*>(nullptr), code);
    EXPECT_EQ(code, kDateIllegalArgument);
}

TEST(CalendarFields, SetMarksStaleAndGetCompletes) {
    ZuDateErrorCode code = kDateNoError;
    ZuGregorianCalendar cal(2004, 0, 31, code);  // era, year, month, date: set, not computed
    EXPECT_TRUE(cal.isSet(C::kYear) && !cal.isSet(C::kDayOfYear));
    EXPECT_EQ(cal.get(C::kDayOfWeek, code), C::kSaturday);
    EXPECT_TRUE(cal.isSet(C::kDayOfYear));  // every field computed
    cal.clear(), cal.set(C::kYear, 2004), cal.set(C::kMonth, 1), cal.clear(C::kMonth);
    EXPECT_FALSE(cal.isSet(C::kMonth));
    run(cal, {{[](C&, E&) {}, "2004-01-01 00:00:00.000"},  // nothing but the year: 1 January
              {[](C& c, E&) { c.set(C::kMonth, 1); }, "2004-02-01 00:00:00.000"},  // no date: the 1st
              {[](C& c, E&) { c.set(2004, 1, 29, 13, 5, 9); }, "2004-02-29 13:05:09.000"}});
    EXPECT_EQ(cal.get(C::kAmPm, code) * 10 + cal.get(C::kHour, code), 11);
    EXPECT_EQ(code, kDateNoError);
    // Fields outside 0-18 are refused without touching memory.
    cal.set(static_cast<C::ZuDateFields>(19), 5), cal.clear(static_cast<C::ZuDateFields>(-1));
    EXPECT_FALSE(cal.isSet(static_cast<C::ZuDateFields>(100)));
    EXPECT_EQ(cal.get(static_cast<C::ZuDateFields>(19), code), 0);
    EXPECT_EQ(code, kDateIllegalArgument);
}

TEST(CalendarFields, FailedCodeMakesEveryOperationReturnAtOnce) {
    auto cal = at(2004, 5, 5);
    ZuDateErrorCode code = kDateIllegalArgument;
    EXPECT_EQ(cal->getTimeInMillis(code) + cal->get(C::kYear, code), 0.0);
    cal->add(C::kDate, 1, code), cal->roll(C::kDate, 1, code), cal->setTimeInMillis(0.0, code);
    EXPECT_EQ(cal->fieldDifference(1e12, C::kDate, code), 0);
    EXPECT_FALSE(cal->before(*at(2004, 5, 6), code) || cal->equals(*cal, code));
    EXPECT_EQ(cal->getActualMaximum(C::kDate, code) + cal->getEpochDay(code), 0);
    EXPECT_EQ(ZuCalendar::stringToDayNumber("3", code), 0);
    EXPECT_EQ(code, kDateIllegalArgument);
    EXPECT_EQ(show(*cal), "2004-05-05 00:00:00.000");  // nothing moved
}

TEST(CalendarCompare, InstantsAndSettings) {
    ZuDateErrorCode code = kDateNoError;
    auto a = at(2004, 5, 5, 12), b = at(2004, 5, 5, 12), later = at(2004, 5, 5, 12, 0, 0, 1);
    EXPECT_TRUE(*a == *b);
    EXPECT_TRUE(a->before(*later, code) && later->after(*a, code) && a->equals(*a, code));
    EXPECT_FALSE(a->after(*a, code) || a->before(*a, code));
    b->setLenient(false);
    EXPECT_FALSE(*a == *b || a->equivalentTo(*b));
    EXPECT_TRUE(a->equals(*b, code));
    b->setLenient(true), b->setMinimalDaysInFirstWeek(4);
    EXPECT_FALSE(*a == *b || *a == *later);
    EXPECT_TRUE(a->equivalentTo(*later));
    a->setTimeInMillis(NAN, code), b->setMinimalDaysInFirstWeek(0), b->setTimeInMillis(NAN, code);
    EXPECT_FALSE(*a == *b);  // a NaN instant is never equal
    EXPECT_TRUE(*a == *a);   // but the same object is
    *a = *later;
    EXPECT_TRUE(ZuGregorianCalendar(*later) == *later && *a == *later);
    EXPECT_EQ(code, kDateNoError);
}

TEST(CalendarFieldDifference, CountsStepsAndMovesTheCalendar) {
    ZuDateErrorCode code = kDateNoError;
    auto cal = at(2004, 5, 5);
    double start = cal->getTimeInMillis(code);
    EXPECT_EQ(cal->fieldDifference(start + 2.5 * 86400000.0, C::kDate, code), 2);
    EXPECT_EQ(show(*cal), "2004-05-07 00:00:00.000");
    EXPECT_EQ(cal->fieldDifference(start - 36 * 3600000.0, C::kHourOfDay, code), -84);
    EXPECT_EQ(show(*cal), "2004-05-03 12:00:00.000");
    EXPECT_EQ(cal->fieldDifference(cal->getTimeInMillis(code), C::kDate, code), 0);
    auto jan = at(2004, 1, 31);
    EXPECT_EQ(jan->fieldDifference(at(2004, 4, 30)->getTimeInMillis(code), C::kMonth, code), 3);
    EXPECT_EQ(show(*jan), "2004-04-29 00:00:00.000");  // pinned to 29 February on the way
    // A step that cannot move (era already 1) ends the search instead of looping.
    EXPECT_EQ(jan->fieldDifference(1e15, C::kEra, code), 0);
    jan->fieldDifference(1e15, C::kZoneOffset, code);
    EXPECT_EQ(code, kDateIllegalArgument);
}

TEST(CalendarClassOperations, NowAndDayNumbers) {
    double now = ZuCalendar::getNow();
    EXPECT_EQ(std::fmod(now, 1000.0), 0.0);
    EXPECT_NEAR(now, std::time(nullptr) * 1000.0, 2000.0);
    struct { const char* text; int32_t value; ZuDateErrorCode code; } cases[] = {
        {"1", 1, kDateNoError}, {"7", 7, kDateNoError}, {" 3x", 3, kDateNoError}, {"8", 8, kDateInvalidFormat},
        {"-2", -2, kDateInvalidFormat}, {"", 0, kDateInvalidFormat}, {nullptr, 0, kDateInvalidFormat}};
    for (auto& c : cases) {
        ZuDateErrorCode code = kDateNoError;
        EXPECT_EQ(ZuCalendar::stringToDayNumber(c.text, code) * 10 + code, c.value * 10 + c.code)
            << (c.text ? c.text : "null");
    }
    EXPECT_STREQ(ZuCalendar::kDateTimeElements, "DateTimeElements");
}

// Run under the sanitizers: no overflow, no out-of-range access, no endless loop.
TEST(CalendarRobustness, AbsurdInputsGiveFieldsNotCrashes) {
    for (double t : {1e300, -1e300, double(INFINITY), double(NAN), 4503599627370495.0, -1.7e17}) {
        auto cal = at(2004, 1, 1);
        ZuDateErrorCode code = kDateNoError;
        cal->setTimeInMillis(t, code);
        for (int f = 0; f < C::kFieldCount; ++f)
            for (int32_t amount : {INT32_MAX, INT32_MIN, 1}) {
                ZuDateErrorCode step = kDateNoError;
                cal->add(static_cast<C::ZuDateFields>(f), amount, step);
                cal->roll(static_cast<C::ZuDateFields>(f), amount, step), cal->get(C::kYear, step);
            }
        for (int32_t v : {INT32_MAX, INT32_MIN}) {
            for (int f = 0; f < C::kFieldCount; ++f)
                cal->set(static_cast<C::ZuDateFields>(f), v);
            cal->getTimeInMillis(code), cal->setLenient(!cal->isLenient()), cal->getTimeInMillis(code);
        }
    }
}
