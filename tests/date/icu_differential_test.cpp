// Differential test: ZuGregorianCalendar against ICU's GregorianCalendar, both on GMT
// with the default cutover, over instants from year -1000 to 3000.
#include <zu/calendar.h>

#include <gtest/gtest.h>

#include <cmath>
#include <random>
#include <vector>

#ifdef ZU_HAVE_ICU
#include <unicode/gregocal.h>
#include <unicode/timezone.h>
#endif

namespace {

#ifdef ZU_HAVE_ICU

typedef ZuCalendar C;

// The compared fields, in ICU's numbering and ours. Week fields are left out: the week
// data differs on purpose (first day Monday, minimal days 0).
const struct { UCalendarDateFields icu; C::ZuDateFields zu; } kFields[] = {
    {UCAL_ERA, C::kEra}, {UCAL_YEAR, C::kYear}, {UCAL_MONTH, C::kMonth}, {UCAL_DATE, C::kDate},
    {UCAL_DAY_OF_YEAR, C::kDayOfYear}, {UCAL_DAY_OF_WEEK, C::kDayOfWeek}, {UCAL_HOUR_OF_DAY, C::kHourOfDay},
    {UCAL_MINUTE, C::kMinute}, {UCAL_SECOND, C::kSecond}, {UCAL_MILLISECOND, C::kMillisecond}};
const size_t kFieldCount = sizeof kFields / sizeof kFields[0];

const double kDay = 86400000.0;

// ICU's side, on GMT with the default cutover.
struct Icu {
    UErrorCode status = U_ZERO_ERROR;
    icu::GregorianCalendar cal{icu::TimeZone::getGMT()->clone(), status};

    // The instant of a date and time in a proleptic year (0 is 1 BC).
    double timeOf(int32_t year, int32_t month, int32_t date, int32_t h = 0, int32_t m = 0, int32_t s = 0) {
        cal.clear(), cal.set(UCAL_ERA, year > 0), cal.set(year > 0 ? year : 1 - year, month, date, h, m, s);
        return cal.getTime(status);
    }
};

// At least 100,000 instants: random ones over the whole range, dense ones around the
// cutover, the end of every February and every year end.
std::vector<double> sampleInstants(Icu& icu) {
    std::vector<double> instants;
    std::mt19937_64 random(20041231);
    std::uniform_real_distribution<double> anywhere(icu.timeOf(-1000, 0, 1), icu.timeOf(3001, 0, 1));
    for (int i = 0; i < 80000; ++i)
        instants.push_back(std::floor(anywhere(random)));
    // The cutover: every 20 minutes from 1582-09-20 to 1582-11-10, plus the edges.
    double cutover = ZuGregorianCalendar::kPapalCutover;
    for (double t = cutover - 25 * kDay; t < cutover + 26 * kDay; t += 1200000.0)
        instants.push_back(t);
    instants.insert(instants.end(), {cutover - 1, cutover + 1, cutover + kDay - 1});
    // Around every year end and every 1 March (Julian leap years before 1582, then Gregorian
    // ones, the centuries included): the edges and a random instant in each day around.
    std::uniform_real_distribution<double> withinDay(0, kDay - 1);
    for (int32_t year = -1000; year <= 3000; ++year)
        for (double edge : {icu.timeOf(year + 1, 0, 1), icu.timeOf(year, 2, 1)}) {
            instants.insert(instants.end(), {edge - 1, edge});
            for (double day : {-2.0, -1.0, 0.0})
                instants.push_back(std::floor(edge + day * kDay + withinDay(random)));
        }
    return instants;
}

#endif

} // namespace

TEST(GregorianDifferential, FieldsAndInstantsMatchIcuOnGmt) {
#ifndef ZU_HAVE_ICU
    GTEST_SKIP() << "ICU (libicu-dev) was not found when building the tests";
#else
    Icu icu;
    std::vector<double> instants = sampleInstants(icu);
    ASSERT_GE(instants.size(), 100000u);
    ZuDateErrorCode code = kDateNoError;
    ZuGregorianCalendar zu(ZuTimeZone::createDefault(), code);
    int failures = 0;
    for (double instant : instants) {
        int32_t f[kFieldCount] = {};
        icu.cal.setTime(instant, icu.status);
        zu.setTimeInMillis(instant, code);
        for (size_t i = 0; i < kFieldCount && failures < 20; ++i) {
            f[i] = icu.cal.get(kFields[i].icu, icu.status);
            if (zu.get(kFields[i].zu, code) != f[i] && ++failures)
                ADD_FAILURE() << "fields of " << std::fixed << instant << ": field " << kFields[i].zu
                              << " is " << zu.get(kFields[i].zu, code) << ", ICU gives " << f[i];
        }
        // Time from fields, for the same date and time down to the second.
        double icuTime = icu.timeOf(f[0] ? f[1] : 1 - f[1], f[2], f[3], f[6], f[7], f[8]);
        zu.clear();
        zu.set(C::kEra, f[0]);
        zu.set(f[1], f[2], f[3], f[6], f[7], f[8]);
        if (zu.getTimeInMillis(code) != icuTime && failures < 20 && ++failures)
            ADD_FAILURE() << "time of era " << f[0] << " " << f[1] << "-" << f[2] + 1 << "-" << f[3] << " is "
                          << std::fixed << zu.getTimeInMillis(code) << ", ICU gives " << icuTime;
        ASSERT_EQ(code, kDateNoError);
        ASSERT_TRUE(U_SUCCESS(icu.status));
    }
    EXPECT_EQ(failures, 0);
#endif
}
