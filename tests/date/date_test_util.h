// Helpers for the calendar tests: build a calendar on a date, print its fields, run steps.
#ifndef ZU_TESTS_DATE_UTIL_H
#define ZU_TESTS_DATE_UTIL_H

#include <zu/calendar.h>

#include <gtest/gtest.h>

#include <cstdio>
#include <initializer_list>
#include <memory>
#include <string>

typedef ZuCalendar C;
typedef ZuDateErrorCode E;

// A lenient calendar in the default zone at year (proleptic: 0 is 1 BC), month 1-12,
// day and time, fields computed.
inline std::unique_ptr<ZuGregorianCalendar> at(int y, int mo, int d, int h = 0, int mi = 0,
                                               int s = 0, int ms = 0) {
    ZuDateErrorCode code = kDateNoError;
    std::unique_ptr<ZuGregorianCalendar> cal(new ZuGregorianCalendar(code));
    cal->clear();
    cal->set(C::kEra, y > 0 ? 1 : 0);
    cal->set(y > 0 ? y : 1 - y, mo - 1, d, h, mi, s);
    cal->set(C::kMillisecond, ms);
    cal->get(C::kYear, code);
    return cal;
}

// "2004-02-29 13:05:00.250" with a proleptic year, or "error N".
inline std::string show(ZuCalendar& cal) {
    ZuDateErrorCode code = kDateNoError;
    int era = cal.get(C::kEra, code), year = cal.get(C::kYear, code);
    char text[96];
    std::snprintf(text, sizeof text, "%d-%02d-%02d %02d:%02d:%02d.%03d", era ? year : 1 - year,
                  cal.get(C::kMonth, code) + 1, cal.get(C::kDate, code),
                  cal.get(C::kHourOfDay, code), cal.get(C::kMinute, code),
                  cal.get(C::kSecond, code), cal.get(C::kMillisecond, code));
    return code > 0 ? "error " + std::to_string(code) : text;
}

// The values of the given fields, space-separated ("error N" on a failed code).
inline std::string fields(ZuCalendar& cal, std::initializer_list<C::ZuDateFields> which) {
    ZuDateErrorCode code = kDateNoError;
    std::string text;
    for (C::ZuDateFields f : which) text += (text.empty() ? "" : " ") + std::to_string(cal.get(f, code));
    return code > 0 ? "error " + std::to_string(code) : text;
}

// Applies each step to cal in turn, checking show() after it.
struct Step { void (*apply)(C&, E&); const char* expect; };
inline void run(ZuCalendar& cal, std::initializer_list<Step> steps) {
    int i = 0;
    for (const Step& s : steps) {
        ZuDateErrorCode code = kDateNoError;
        s.apply(cal, code);
        EXPECT_EQ(show(cal), s.expect) << "step " << i++;
    }
}

#endif
