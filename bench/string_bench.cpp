// ZuString against std::string and the C string functions, on the same inputs:
// copy, compare, caseCompare, getIndexOf and substitute. Every benchmark carries a
// "peer" label; after the run a summary prints each peer's time over Zu's time
// (above 1: Zu is faster).
#include <zu/string.h>

#include <benchmark/benchmark.h>

#include "ratio_reporter.h"

#include <cctype>
#include <clocale>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <cwchar>
#include <string>
#include <strings.h>
#include <vector>

namespace {

// Deterministic English-like text of `bytes` bytes, ending with `tail`.
std::string makeText(size_t bytes, const std::string& tail) {
    static const char* const words[] = {"the", "quick", "brown", "fox", "jumps", "over",
                                        "lazy", "dog", "and", "then", "sleeps", "in",
                                        "a", "warm", "place", "near", "the", "river"};
    std::string text;
    unsigned seed = 12345;
    while (text.size() + tail.size() < bytes) {
        seed = seed * 1103515245u + 12345u;
        text += words[(seed >> 16) % (sizeof words / sizeof *words)];
        text += ' ';
    }
    text.resize(bytes - tail.size());
    return text + tail;
}

struct Inputs {
    std::string small = makeText(1024, "END");          // 1 KB
    std::string smallOther = makeText(1024, "ENE");     // differs in the last byte
    std::string smallUpper;                              // small, upper case
    std::string large = makeText(64 * 1024, "zebra crossing"); // 64 KB, needle at the end
    std::string needle = "zebra crossing";
    Inputs() {
        smallUpper = small;
        for (char& c : smallUpper)
            c = static_cast<char>(std::toupper(static_cast<unsigned char>(c)));
    }
};

const Inputs& inputs() {
    static const Inputs in;
    return in;
}

// ---- copy: a 1 KB text ----
void BM_Copy_Zu(benchmark::State& state) {
    const ZuString text(inputs().small.c_str());
    for (auto _ : state) {
        ZuString copy(text);
        benchmark::DoNotOptimize(copy);
    }
}
void BM_Copy_StdString(benchmark::State& state) {
    const std::string text = inputs().small;
    for (auto _ : state) {
        std::string copy(text);
        benchmark::DoNotOptimize(copy);
    }
}
void BM_Copy_Strdup(benchmark::State& state) {
    const std::string text = inputs().small;
    for (auto _ : state) {
        char* copy = strdup(text.c_str());
        benchmark::DoNotOptimize(copy);
        std::free(copy);
    }
}

// ---- compare: two 1 KB texts differing in the last byte ----
void BM_Compare_Zu(benchmark::State& state) {
    const ZuString a(inputs().small.c_str()), b(inputs().smallOther.c_str());
    for (auto _ : state) benchmark::DoNotOptimize(a.compare(b));
}
void BM_Compare_StdString(benchmark::State& state) {
    const std::string a = inputs().small, b = inputs().smallOther;
    for (auto _ : state) benchmark::DoNotOptimize(a.compare(b));
}
void BM_Compare_Strcmp(benchmark::State& state) {
    const std::string a = inputs().small, b = inputs().smallOther;
    for (auto _ : state) benchmark::DoNotOptimize(std::strcmp(a.c_str(), b.c_str()));
}

// ---- caseCompare: a 1 KB text against its upper-case form ----
void BM_CaseCompare_Zu(benchmark::State& state) {
    const ZuString a(inputs().small.c_str()), b(inputs().smallUpper.c_str());
    for (auto _ : state) benchmark::DoNotOptimize(a.caseCompare(b));
}
void BM_CaseCompare_Strcasecmp(benchmark::State& state) {
    const std::string a = inputs().small, b = inputs().smallUpper;
    for (auto _ : state) benchmark::DoNotOptimize(strcasecmp(a.c_str(), b.c_str()));
}

// ---- getIndexOf: a 14-byte needle at the end of a 64 KB text ----
void BM_IndexOf_Zu(benchmark::State& state) {
    const ZuString text(inputs().large.c_str()), needle(inputs().needle.c_str());
    for (auto _ : state) benchmark::DoNotOptimize(text.getIndexOf(needle));
}
void BM_IndexOf_StdString(benchmark::State& state) {
    const std::string text = inputs().large, needle = inputs().needle;
    for (auto _ : state) benchmark::DoNotOptimize(text.find(needle));
}
void BM_IndexOf_Strstr(benchmark::State& state) {
    const std::string text = inputs().large, needle = inputs().needle;
    for (auto _ : state) benchmark::DoNotOptimize(std::strstr(text.c_str(), needle.c_str()));
}

// ---- substitute: every "the " becomes "THE: " in a 64 KB text (copy included) ----
void BM_Substitute_Zu(benchmark::State& state) {
    const ZuString text(inputs().large.c_str()), from("the "), to("THE: ");
    for (auto _ : state) {
        ZuString s(text);
        s.substitute(from, to);
        benchmark::DoNotOptimize(s.getValue());
    }
}
void BM_Substitute_StdString(benchmark::State& state) {
    const std::string text = inputs().large, from = "the ", to = "THE: ";
    for (auto _ : state) {
        std::string out;
        out.reserve(text.size() + text.size() / 4);
        size_t at = 0;
        for (size_t p; (p = text.find(from, at)) != std::string::npos; at = p + from.size()) {
            out.append(text, at, p - at);
            out += to;
        }
        out.append(text, at, std::string::npos);
        benchmark::DoNotOptimize(out.data());
    }
}
void BM_Substitute_Strstr(benchmark::State& state) {
    const std::string text = inputs().large;
    const char *from = "the ", *to = "THE: ";
    const size_t fromLength = std::strlen(from), toLength = std::strlen(to);
    for (auto _ : state) {
        size_t count = 0;
        for (const char* p = text.c_str(); (p = std::strstr(p, from)); p += fromLength) ++count;
        const size_t size = text.size() + count * (toLength - fromLength) + 1;
        char* out = static_cast<char*>(std::malloc(size));
        char* o = out;
        const char* at = text.c_str();
        for (const char* p; (p = std::strstr(at, from)); at = p + fromLength) {
            std::memcpy(o, at, static_cast<size_t>(p - at));
            o += p - at;
            std::memcpy(o, to, toLength);
            o += toLength;
        }
        std::strcpy(o, at);
        benchmark::DoNotOptimize(out);
        std::free(out);
    }
}

// ---- getIndexOf on wide characters: the same 64 KB search in a multibyte string ----
void BM_WideIndexOf_Zu(benchmark::State& state) {
    if (!std::setlocale(LC_ALL, "C.UTF-8") || MB_CUR_MAX <= 1) {
        state.SkipWithError("the C.UTF-8 locale is not installed");
        return;
    }
    const ZuString text(inputs().large.c_str()), needle(inputs().needle.c_str());
    std::setlocale(LC_ALL, "C");
    for (auto _ : state) benchmark::DoNotOptimize(text.getIndexOf(needle));
}
void BM_WideIndexOf_StdWString(benchmark::State& state) {
    const std::wstring text(inputs().large.begin(), inputs().large.end());
    const std::wstring needle(inputs().needle.begin(), inputs().needle.end());
    for (auto _ : state) benchmark::DoNotOptimize(text.find(needle));
}
void BM_WideIndexOf_Wcsstr(benchmark::State& state) {
    const std::wstring text(inputs().large.begin(), inputs().large.end());
    const std::wstring needle(inputs().needle.begin(), inputs().needle.end());
    for (auto _ : state) benchmark::DoNotOptimize(std::wcsstr(text.c_str(), needle.c_str()));
}

BENCHMARK(BM_Copy_Zu);
BENCHMARK(BM_Copy_StdString);
BENCHMARK(BM_Copy_Strdup);
BENCHMARK(BM_Compare_Zu);
BENCHMARK(BM_Compare_StdString);
BENCHMARK(BM_Compare_Strcmp);
BENCHMARK(BM_CaseCompare_Zu);
BENCHMARK(BM_CaseCompare_Strcasecmp);
BENCHMARK(BM_IndexOf_Zu);
BENCHMARK(BM_IndexOf_StdString);
BENCHMARK(BM_IndexOf_Strstr);
BENCHMARK(BM_Substitute_Zu);
BENCHMARK(BM_Substitute_StdString);
BENCHMARK(BM_Substitute_Strstr);
BENCHMARK(BM_WideIndexOf_Zu);
BENCHMARK(BM_WideIndexOf_StdWString);
BENCHMARK(BM_WideIndexOf_Wcsstr);

} // namespace

int main(int argc, char** argv) { return ZuSummaryReporter().runMain(argc, argv); }
