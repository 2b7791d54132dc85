// Decimal numbers: parse, format, add and multiply of 30-digit values, ZuNumeric against
// Boost.Multiprecision's cpp_dec_float_50. Each Zu benchmark runs after its peer and reports
// "vs_peer" = peer time / Zu time (above 1: Zu is faster).
#include <zu/numeric.h>

#include <benchmark/benchmark.h>

#include <ctime>
#include <map>
#include <random>
#include <string>
#include <vector>

#if __has_include(<boost/multiprecision/cpp_dec_float.hpp>)
#include <boost/multiprecision/cpp_dec_float.hpp>
#define ZU_HAVE_PEER 1
using Peer = boost::multiprecision::cpp_dec_float_50;
#endif

namespace {

constexpr int kValues = 64;

// 30 significant digits, the point somewhere inside.
const std::vector<std::string>& texts() {
    static const std::vector<std::string> all = [] {
        std::mt19937 rng(7);
        std::vector<std::string> v;
        for (int i = 0; i < kValues; ++i) {
            std::string s(1, static_cast<char>('1' + rng() % 9));
            for (int k = 1; k < 30; ++k) s += static_cast<char>('0' + rng() % 10);
            s.insert(1 + rng() % 20, ".");
            v.push_back(s);
        }
        return v;
    }();
    return all;
}

std::map<std::string, double>& peerTimes() {
    static std::map<std::string, double> times;
    return times;
}

double threadNanoseconds() {
    timespec t;
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &t);
    return static_cast<double>(t.tv_sec) * 1e9 + static_cast<double>(t.tv_nsec);
}

// Runs body(i) for every iteration and returns the thread's CPU nanoseconds per iteration
// (CPU time, so that other load on the machine does not skew the ratios).
template <typename Body>
double timed(benchmark::State& state, Body body) {
    const double start = threadNanoseconds();
    std::size_t i = 0;
    for (auto _ : state) body(i++ % kValues);
    const double elapsed = threadNanoseconds() - start;
    return state.iterations() ? elapsed / static_cast<double>(state.iterations()) : 0;
}

template <typename Body>
void runZu(benchmark::State& state, const char* name, Body body) {
    const double ns = timed(state, body);
    const auto peer = peerTimes().find(name);
    if (peer != peerTimes().end() && ns > 0) state.counters["vs_peer"] = peer->second / ns;
}

const std::vector<ZuNumeric>& zuValues() {
    static const std::vector<ZuNumeric> v = [] {
        std::vector<ZuNumeric> r;
        for (const std::string& t : texts()) r.emplace_back(t.c_str());
        return r;
    }();
    return v;
}

void ZuParse(benchmark::State& state) {
    ZuNumeric n;
    runZu(state, "parse", [&](std::size_t i) {
        n.set(texts()[i].c_str());
        benchmark::DoNotOptimize(n);
    });
}

void ZuFormat(benchmark::State& state) {
    char out[64];
    runZu(state, "format", [&](std::size_t i) {
        zuValues()[i].get(out, sizeof out);
        benchmark::DoNotOptimize(out);
    });
}

void ZuAdd(benchmark::State& state) {
    runZu(state, "add", [&](std::size_t i) {
        ZuNumeric r = zuValues()[i] + zuValues()[(i + 1) % kValues];
        benchmark::DoNotOptimize(r);
    });
}

void ZuMultiply(benchmark::State& state) {
    runZu(state, "multiply", [&](std::size_t i) {
        ZuNumeric r = zuValues()[i] * zuValues()[(i + 1) % kValues];
        benchmark::DoNotOptimize(r);
    });
}

#ifdef ZU_HAVE_PEER
const std::vector<Peer>& peerValues() {
    static const std::vector<Peer> v(texts().begin(), texts().end());
    return v;
}

void PeerParse(benchmark::State& state) {
    peerTimes()["parse"] = timed(state, [&](std::size_t i) {
        Peer p(texts()[i]);
        benchmark::DoNotOptimize(p);
    });
}

void PeerFormat(benchmark::State& state) {
    peerTimes()["format"] = timed(state, [&](std::size_t i) {
        std::string s = peerValues()[i].str(30, std::ios_base::fixed);
        benchmark::DoNotOptimize(s);
    });
}

void PeerAdd(benchmark::State& state) {
    peerTimes()["add"] = timed(state, [&](std::size_t i) {
        Peer r = peerValues()[i] + peerValues()[(i + 1) % kValues];
        benchmark::DoNotOptimize(r);
    });
}

void PeerMultiply(benchmark::State& state) {
    peerTimes()["multiply"] = timed(state, [&](std::size_t i) {
        Peer r = peerValues()[i] * peerValues()[(i + 1) % kValues];
        benchmark::DoNotOptimize(r);
    });
}

BENCHMARK(PeerParse)->Name("Parse/cpp_dec_float_50");
BENCHMARK(ZuParse)->Name("Parse/ZuNumeric");
BENCHMARK(PeerFormat)->Name("Format/cpp_dec_float_50");
BENCHMARK(ZuFormat)->Name("Format/ZuNumeric");
BENCHMARK(PeerAdd)->Name("Add/cpp_dec_float_50");
BENCHMARK(ZuAdd)->Name("Add/ZuNumeric");
BENCHMARK(PeerMultiply)->Name("Multiply/cpp_dec_float_50");
BENCHMARK(ZuMultiply)->Name("Multiply/ZuNumeric");
#else
BENCHMARK(ZuParse)->Name("Parse/ZuNumeric");
BENCHMARK(ZuFormat)->Name("Format/ZuNumeric");
BENCHMARK(ZuAdd)->Name("Add/ZuNumeric");
BENCHMARK(ZuMultiply)->Name("Multiply/ZuNumeric");
#endif

} // namespace

BENCHMARK_MAIN();
