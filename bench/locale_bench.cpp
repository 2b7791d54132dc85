// Locale-independent number conversion against the C library's own conversions
// (snprintf "%.16g" and strtod in the "C" numeric locale). Each benchmark times both
// over the same inputs in the same run and reports zu_ns, peer_ns (per call) and ratio.
#include <zu/locale.h>

#include <benchmark/benchmark.h>

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <vector>

namespace {

using Clock = std::chrono::steady_clock;

const std::vector<double>& values() {
    static const std::vector<double> v = {0.5,  -1234.25, 6.02214076e23, 1e-300, 3.141592653589793,
                                          42.0, -0.001,   1.7976931348623157e308};
    return v;
}

template <typename Zu, typename Peer>
void compare(benchmark::State& state, size_t n, Zu zu, Peer peer) {
    double zuNs = 0, peerNs = 0, calls = 0;
    for (auto _ : state) {
        auto t0 = Clock::now();
        for (size_t i = 0; i < n; ++i)
            zu(i);
        auto t1 = Clock::now();
        for (size_t i = 0; i < n; ++i)
            peer(i);
        auto t2 = Clock::now();
        zuNs += std::chrono::duration<double, std::nano>(t1 - t0).count();
        peerNs += std::chrono::duration<double, std::nano>(t2 - t1).count();
        calls += double(n);
    }
    state.counters["zu_ns"] = zuNs / calls;
    state.counters["peer_ns"] = peerNs / calls;
    state.counters["ratio"] = zuNs / peerNs;
}

void DoubleToText(benchmark::State& state) {
    char buffer[32];
    const auto& v = values();
    compare(
        state, v.size(),
        [&](size_t i) { benchmark::DoNotOptimize(ZuDoubleToString(buffer, v[i], nullptr)); },
        [&](size_t i) {
            benchmark::DoNotOptimize(std::snprintf(buffer, sizeof buffer, "%.16g", v[i]));
        });
}

void TextToDouble(benchmark::State& state) {
    std::vector<std::string> texts;
    for (double d : values()) {
        char buffer[32];
        std::snprintf(buffer, sizeof buffer, "%.16g", d);
        texts.push_back(buffer);
    }
    compare(
        state, texts.size(),
        [&](size_t i) {
            double value;
            char* end;
            ZuStringToDouble(texts[i].c_str(), &end, value);
            benchmark::DoNotOptimize(value);
        },
        [&](size_t i) { benchmark::DoNotOptimize(std::strtod(texts[i].c_str(), nullptr)); });
}

BENCHMARK(DoubleToText);
BENCHMARK(TextToDouble);

} // namespace

BENCHMARK_MAIN();
