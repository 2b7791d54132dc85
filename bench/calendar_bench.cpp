// Gregorian calendars: ZuGregorianCalendar against ICU's GregorianCalendar on the same
// instants, both on GMT with the default cutover. Four operations: fields from time (set
// the instant, read year, month, date, hour and day of year), time from fields (clear, set
// year to second, read the instant), add(month, 1) and add(date, 1). Each Zu row carries
// a "speedup" counter: ICU's CPU time divided by Zu's.
#include <zu/calendar.h>

#include <benchmark/benchmark.h>

#include "ratio_reporter.h"

#include <unicode/gregocal.h>
#include <unicode/timezone.h>

#include <array>
#include <cmath>
#include <memory>
#include <random>
#include <string>
#include <vector>

namespace {

typedef ZuCalendar C;

const size_t kCount = 1024;

// Instants from 1600 to 2400 and their fields (year, month, date, hour, minute, second).
struct Inputs {
    std::vector<double> instants;
    std::vector<std::array<int32_t, 6>> fields;
    Inputs() {
        std::mt19937_64 random(1582);
        std::uniform_real_distribution<double> range(-11676096000000.0, 13569465600000.0);
        ZuDateErrorCode code = kDateNoError;
        ZuGregorianCalendar cal(ZuTimeZone::createDefault(), code);
        for (size_t i = 0; i < kCount; ++i) {
            double t = std::floor(range(random) / 1000.0) * 1000.0;
            cal.setTimeInMillis(t, code);
            instants.push_back(t);
            fields.push_back({cal.get(C::kYear, code), cal.get(C::kMonth, code), cal.get(C::kDate, code),
                              cal.get(C::kHourOfDay, code), cal.get(C::kMinute, code),
                              cal.get(C::kSecond, code)});
        }
    }
};

const Inputs& inputs() {
    static const Inputs in;
    return in;
}

std::unique_ptr<icu::GregorianCalendar> icuCalendar() {
    UErrorCode status = U_ZERO_ERROR;
    std::unique_ptr<icu::GregorianCalendar> cal(
        new icu::GregorianCalendar(icu::TimeZone::getGMT()->clone(), status));
    return cal;
}

std::unique_ptr<ZuGregorianCalendar> zuCalendar() {
    ZuDateErrorCode code = kDateNoError;
    return std::unique_ptr<ZuGregorianCalendar>(
        new ZuGregorianCalendar(ZuTimeZone::createDefault(), code));
}

void icuFieldsFromTime(benchmark::State& state) {
    auto cal = icuCalendar();
    UErrorCode status = U_ZERO_ERROR;
    size_t i = 0;
    for (auto _ : state) {
        cal->setTime(inputs().instants[i++ % kCount], status);
        int32_t sum = cal->get(UCAL_YEAR, status) + cal->get(UCAL_MONTH, status) +
                      cal->get(UCAL_DATE, status) + cal->get(UCAL_HOUR_OF_DAY, status) +
                      cal->get(UCAL_DAY_OF_YEAR, status);
        benchmark::DoNotOptimize(sum);
    }
}

void zuFieldsFromTime(benchmark::State& state) {
    auto cal = zuCalendar();
    ZuDateErrorCode code = kDateNoError;
    size_t i = 0;
    for (auto _ : state) {
        cal->setTimeInMillis(inputs().instants[i++ % kCount], code);
        int32_t sum = cal->get(C::kYear, code) + cal->get(C::kMonth, code) +
                      cal->get(C::kDate, code) + cal->get(C::kHourOfDay, code) +
                      cal->get(C::kDayOfYear, code);
        benchmark::DoNotOptimize(sum);
    }
}

void icuTimeFromFields(benchmark::State& state) {
    auto cal = icuCalendar();
    UErrorCode status = U_ZERO_ERROR;
    size_t i = 0;
    for (auto _ : state) {
        const auto& f = inputs().fields[i++ % kCount];
        cal->clear();
        cal->set(f[0], f[1], f[2], f[3], f[4], f[5]);
        benchmark::DoNotOptimize(cal->getTime(status));
    }
}

void zuTimeFromFields(benchmark::State& state) {
    auto cal = zuCalendar();
    ZuDateErrorCode code = kDateNoError;
    size_t i = 0;
    for (auto _ : state) {
        const auto& f = inputs().fields[i++ % kCount];
        cal->clear();
        cal->set(f[0], f[1], f[2], f[3], f[4], f[5]);
        benchmark::DoNotOptimize(cal->getTimeInMillis(code));
    }
}

// Repeated adds; every 1024 steps the calendar goes back to a sample instant so that the
// dates stay in the same range for both.
void icuAdd(benchmark::State& state, UCalendarDateFields field) {
    auto cal = icuCalendar();
    UErrorCode status = U_ZERO_ERROR;
    size_t i = 0;
    for (auto _ : state) {
        if (i % kCount == 0)
            cal->setTime(inputs().instants[(i / kCount) % kCount], status);
        ++i;
        cal->add(field, 1, status);
    }
    benchmark::DoNotOptimize(cal->getTime(status));
}

void zuAdd(benchmark::State& state, C::ZuDateFields field) {
    auto cal = zuCalendar();
    ZuDateErrorCode code = kDateNoError;
    size_t i = 0;
    for (auto _ : state) {
        if (i % kCount == 0)
            cal->setTimeInMillis(inputs().instants[(i / kCount) % kCount], code);
        ++i;
        cal->add(field, 1, code);
    }
    benchmark::DoNotOptimize(cal->getTimeInMillis(code));
}


} // namespace

BENCHMARK(icuFieldsFromTime)->Name("FieldsFromTime/ICU");
BENCHMARK(zuFieldsFromTime)->Name("FieldsFromTime/Zu");
BENCHMARK(icuTimeFromFields)->Name("TimeFromFields/ICU");
BENCHMARK(zuTimeFromFields)->Name("TimeFromFields/Zu");
BENCHMARK_CAPTURE(icuAdd, month, UCAL_MONTH)->Name("AddMonth/ICU");
BENCHMARK_CAPTURE(zuAdd, month, C::kMonth)->Name("AddMonth/Zu");
BENCHMARK_CAPTURE(icuAdd, date, UCAL_DATE)->Name("AddDate/ICU");
BENCHMARK_CAPTURE(zuAdd, date, C::kDate)->Name("AddDate/Zu");

int main(int argc, char** argv) {
    return ZuRatioReporter("/Zu", "/ICU").runMain(argc, argv);
}
