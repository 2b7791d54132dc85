// Differential test: ZuGregorianCalendar against ICU's GregorianCalendar, both on GMT
// with the default cutover, over instants from year -1000 to 3000.
#include <zu/calendar.h>

#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
#include <memory>
#include <random>
#include <sstream>
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
struct FieldPair {
    UCalendarDateFields icu;
    C::ZuDateFields zu;
    const char* name;
};
const FieldPair kFields[] = {
    {UCAL_ERA, C::kEra, "era"},
    {UCAL_YEAR, C::kYear, "year"},
    {UCAL_MONTH, C::kMonth, "month"},
    {UCAL_DATE, C::kDate, "date"},
    {UCAL_DAY_OF_YEAR, C::kDayOfYear, "day of year"},
    {UCAL_DAY_OF_WEEK, C::kDayOfWeek, "day of week"},
    {UCAL_HOUR_OF_DAY, C::kHourOfDay, "hour of day"},
    {UCAL_MINUTE, C::kMinute, "minute"},
    {UCAL_SECOND, C::kSecond, "second"},
    {UCAL_MILLISECOND, C::kMillisecond, "millisecond"},
};

const double kDay = 86400000.0;

class IcuReference {
public:
    IcuReference() : _status(U_ZERO_ERROR) {
        _calendar.reset(new icu::GregorianCalendar(icu::TimeZone::getGMT()->clone(), _status));
    }
    bool ok() const { return U_SUCCESS(_status); }

    // Instant of 00:00 GMT on a proleptic (era-less) year, month, date.
    double instantOf(int32_t year, int32_t month, int32_t date) {
        _calendar->clear();
        _calendar->set(UCAL_ERA, year > 0 ? 1 : 0);
        _calendar->set(year > 0 ? year : 1 - year, month, date);
        return _calendar->getTime(_status);
    }
    void fields(double instant, int32_t* out) {
        _calendar->setTime(instant, _status);
        for (size_t i = 0; i < sizeof kFields / sizeof kFields[0]; ++i)
            out[i] = _calendar->get(kFields[i].icu, _status);
    }
    double timeOf(const int32_t* f) {
        _calendar->clear();
        _calendar->set(UCAL_ERA, f[0]);
        _calendar->set(f[1], f[2], f[3], f[6], f[7], f[8]);
        return _calendar->getTime(_status);
    }

private:
    UErrorCode _status;
    std::unique_ptr<icu::GregorianCalendar> _calendar;
};

// At least 100,000 instants: random ones over the whole range, dense ones around the
// cutover, around every 29 February and around every year end.
std::vector<double> sampleInstants(IcuReference& icu) {
    std::vector<double> instants;
    std::mt19937_64 random(20041231);
    double first = icu.instantOf(-1000, 0, 1);
    double last = icu.instantOf(3000, 11, 31) + kDay - 1;
    std::uniform_real_distribution<double> anywhere(first, last);
    for (int i = 0; i < 80000; ++i)
        instants.push_back(std::floor(anywhere(random)));

    // The cutover: every 20 minutes from 1582-09-20 to 1582-11-10, plus the edges.
    double cutover = ZuGregorianCalendar::kPapalCutover;
    for (double t = cutover - 25 * kDay; t < cutover + 26 * kDay; t += 1200000.0)
        instants.push_back(t);
    for (double edge : {cutover - 1, cutover, cutover + 1, cutover - kDay, cutover + kDay - 1})
        instants.push_back(edge);

    std::uniform_real_distribution<double> withinDay(0, kDay - 1);
    for (int32_t year = -1000; year <= 3000; ++year) {
        // Year end: the last and first milliseconds and a random instant either side.
        double newYear = icu.instantOf(year + 1, 0, 1);
        instants.push_back(newYear - 1);
        instants.push_back(newYear);
        instants.push_back(std::floor(newYear - kDay + withinDay(random)));
        instants.push_back(std::floor(newYear + withinDay(random)));
        // Around the end of February (Julian leap years before 1582, Gregorian after;
        // the centuries such as 1500, 1700 and 1900 are checked on both counts).
        if (year % 4 == 0 || year % 100 == 0) {
            double march = icu.instantOf(year, 2, 1);
            for (double offset : {-2.0, -1.0, 0.0})
                instants.push_back(std::floor(march + offset * kDay + withinDay(random)));
            instants.push_back(march - 1);
        }
    }
    return instants;
}

#endif

} // namespace

TEST(GregorianDifferential, FieldsAndInstantsMatchIcuOnGmt) {
#ifndef ZU_HAVE_ICU
    GTEST_SKIP() << "ICU (libicu-dev) was not found when building the tests";
#else
    IcuReference icu;
    ASSERT_TRUE(icu.ok());
    std::vector<double> instants = sampleInstants(icu);
    ASSERT_GE(instants.size(), 100000u);

    ZuDateErrorCode code = kDateNoError;
    ZuGregorianCalendar zu(ZuTimeZone::createDefault(), code);
    ASSERT_EQ(code, kDateNoError);

    const size_t nFields = sizeof kFields / sizeof kFields[0];
    int failures = 0;
    for (double instant : instants) {
        int32_t expected[nFields];
        icu.fields(instant, expected);
        zu.setTimeInMillis(instant, code);
        for (size_t i = 0; i < nFields && failures < 20; ++i) {
            int32_t actual = zu.get(kFields[i].zu, code);
            if (actual != expected[i]) {
                ++failures;
                ADD_FAILURE() << "fields of " << std::fixed << instant << ": " << kFields[i].name
                              << " is " << actual << ", ICU gives " << expected[i];
            }
        }

        // Time from fields, for the same date and time down to the second.
        double icuTime = icu.timeOf(expected);
        zu.clear();
        zu.set(C::kEra, expected[0]);
        zu.set(expected[1], expected[2], expected[3], expected[6], expected[7], expected[8]);
        double zuTime = zu.getTimeInMillis(code);
        if (zuTime != icuTime && failures < 20) {
            ++failures;
            ADD_FAILURE() << "time of era " << expected[0] << " " << expected[1] << "-"
                          << expected[2] + 1 << "-" << expected[3] << " is " << std::fixed
                          << zuTime << ", ICU gives " << icuTime;
        }
        ASSERT_EQ(code, kDateNoError);
        ASSERT_TRUE(icu.ok());
    }
    EXPECT_EQ(failures, 0);
#endif
}
