// Time units: texts, snaps, steps, lengths and the predefined sequence.
#include "date_test_util.h"

#include <zu/timeunit.h>

#include <gtest/gtest.h>

#include <cstring>
#include <string>
#include <typeinfo>

namespace {

std::string text(const ZuTimeUnit& unit, double millis) {
    char* t = unit.toString(millis);
    std::string result = t ? t : "(null)";
    delete[] t;
    return result;
}

const ZuTimeUnitMilliSecond kMs; const ZuTimeUnitSecond kSec; const ZuTimeUnitMinute kMin;
const ZuTimeUnitHour kHour; const ZuTimeUnitDay kDay; const ZuTimeUnitWeek kWeek;
const ZuTimeUnitMonth kMonth; const ZuTimeUnitQuarter kQuarter; const ZuTimeUnitYear kYear;

} // namespace

TEST(TimeUnitText, EachUnitPrintsItsGrain) {
    ZuDateErrorCode code = kDateNoError;
    const double sunday = at(1970, 3, 15, 12)->getTimeInMillis(code);
    const double morning = at(2004, 11, 5, 9, 7)->getTimeInMillis(code);
    struct { const ZuTimeUnit& unit; double millis; const char* expect; } cases[] = {
        {kMs, sunday, "6350400000.000000"}, {kSec, sunday, "6350400.000000"}, {kMin, sunday, "105840.000000"},
        {kHour, sunday, "12:0"}, {kDay, sunday, "15/03"}, {kWeek, sunday, "W11"}, {kMonth, sunday, "03/1970"},
        {kQuarter, sunday, "Q1 1970"}, {kYear, sunday, "1970"}, {kSec, 1500.0, "1.500000"},
        {kMin, -90000.0, "-1.500000"}, {kQuarter, at(2004, 12, 31, 23)->getTimeInMillis(code), "Q4 2004"},
        {kDay, morning, "5/11"}, {kHour, morning, "9:7"}, {kWeek, at(2003, 12, 31)->getTimeInMillis(code), "W1"}};
    for (auto& c : cases)
        EXPECT_EQ(text(c.unit, c.millis), c.expect) << typeid(c.unit).name();
    EXPECT_EQ(text(kMs, 1e300).size(), 308u);  // long texts are not cut or overrun
}

TEST(TimeUnitSnap, SnapsToTheStartOfTheUnit) {
    struct { const ZuTimeUnit& unit; int y, mo, d, h, mi, s, ms; const char* expect; } cases[] = {
        {kMs, 2004, 8, 10, 15, 20, 5, 250, "2004-08-10 15:20:05.250"},
        {kSec, 2004, 8, 10, 15, 20, 5, 250, "2004-08-10 15:20:05.000"},
        {kMin, 2004, 8, 10, 15, 20, 5, 250, "2004-08-10 15:20:00.000"},
        {kHour, 2004, 8, 10, 15, 20, 5, 250, "2004-08-10 15:00:00.000"},
        // The units clear kHour, the hour of the half day: afternoons snap to noon.
        {kDay, 2004, 8, 10, 15, 20, 5, 250, "2004-08-10 12:00:00.000"},
        {kDay, 2004, 8, 10, 9, 20, 0, 0, "2004-08-10 00:00:00.000"},
        {kDay, 2004, 8, 8, 9, 20, 0, 0, "2004-08-08 00:00:00.000"},  // a Sunday stays put
        {kWeek, 2004, 8, 10, 9, 20, 0, 0, "2004-08-09 00:00:00.000"},
        {kWeek, 2004, 8, 8, 9, 20, 0, 0, "2004-08-02 00:00:00.000"},  // Sunday ends the week
        {kWeek, 2004, 8, 1, 9, 0, 0, 0, "2004-07-26 00:00:00.000"},
        {kMonth, 2004, 8, 10, 15, 20, 5, 250, "2004-08-01 12:00:00.000"},
        {kQuarter, 2004, 8, 10, 9, 0, 0, 0, "2004-07-01 00:00:00.000"},
        {kQuarter, 2004, 12, 31, 9, 0, 0, 0, "2004-10-01 00:00:00.000"},
        {kYear, 2004, 8, 10, 9, 0, 0, 0, "2004-02-01 00:00:00.000"},  // 1 February, on purpose
    };
    for (auto& c : cases) {
        auto cal = at(c.y, c.mo, c.d, c.h, c.mi, c.s, c.ms);
        c.unit.snapToPreviousTimeUnit(*cal);
        EXPECT_EQ(show(*cal), c.expect) << typeid(c.unit).name() << " " << c.d;
    }
}

TEST(TimeUnitStep, AddsOneUnitAndReportsNominalLength) {
    struct { const ZuTimeUnit& unit; double millis; const char* expect; } cases[] = {
        {kMs, 1.0, "2004-01-31 23:30:00.001"}, {kSec, 1000.0, "2004-01-31 23:30:01.000"},
        {kMin, 60000.0, "2004-01-31 23:31:00.000"}, {kHour, 3600000.0, "2004-02-01 00:30:00.000"},
        {kDay, 86400000.0, "2004-02-01 23:30:00.000"}, {kWeek, 604800000.0, "2004-02-07 23:30:00.000"},
        {kMonth, 2592000000.0, "2004-02-29 23:30:00.000"},
        {kQuarter, 7776000000.0, "2004-04-30 23:30:00.000"},
        {kYear, 31536000000.0, "2005"}};
    for (auto& c : cases) {
        auto cal = at(2004, 1, 31, 23, 30);
        c.unit.addTimeUnit(*cal);
        // Only the year is checked for the year unit: with every computed stamp tied,
        // the day is resolved through the week of the month.
        EXPECT_EQ(show(*cal).substr(0, std::strlen(c.expect)), c.expect) << typeid(c.unit).name();
        EXPECT_EQ(c.unit.getMillis(), c.millis);
        std::unique_ptr<ZuTimeUnit> copy(c.unit.copy());
        EXPECT_EQ(typeid(*copy), typeid(c.unit));
    }
}

TEST(TimeUnitPredefined, HandsOutFinestToCoarsestThenTheYear) {
    ZuPredefinedUnits units;
    ZuTimeUnit* year = nullptr;
    const ZuTimeUnit* order[] = {&kMs, &kSec, &kMin, &kHour, &kDay, &kWeek, &kMonth, &kQuarter, &kYear};
    for (const ZuTimeUnit* unit : order) {
        year = units.getNextUnit();
        ASSERT_NE(year, nullptr);
        EXPECT_EQ(typeid(*year), typeid(*unit));
    }
    for (int i = 0; i < 3; ++i)
        EXPECT_EQ(units.getNextUnit(), year);  // tenth call and later: the year unit
}
