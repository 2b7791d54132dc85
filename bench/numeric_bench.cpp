// Decimal numbers: parse, format, add and multiply of 30-digit values, ZuNumeric against
// Boost.Multiprecision's cpp_dec_float_50, in one run.
//
// Each operation has a Google Benchmark entry for Zu and for the peer. The Zu entry also
// reports "vs_peer" = peer time / Zu time (above 1: Zu is faster), measured by running
// short batches of the two alternately and keeping the fastest batch of each, so that
// load from other processes on the machine does not skew the ratio.
#include <zu/numeric.h>

#include <benchmark/benchmark.h>

#include <ctime>
#include <functional>
#include <map>
#include <utility>
#include <random>
#include <string>
#include <vector>

#if __has_include(<boost/multiprecision/cpp_dec_float.hpp>)
#include <boost/multiprecision/cpp_dec_float.hpp>
#define ZU_HAVE_PEER 1
using Peer = boost::multiprecision::cpp_dec_float_50;
#endif

namespace {

constexpr std::size_t kValues = 64;

// 30 significant digits, the point somewhere among the first 20.
const std::vector<std::string>& texts() {
    static const std::vector<std::string> all = [] {
        std::mt19937 rng(7);
        std::vector<std::string> v;
        for (std::size_t i = 0; i < kValues; ++i) {
            std::string s(1, static_cast<char>('1' + rng() % 9));
            for (int k = 1; k < 30; ++k) s += static_cast<char>('0' + rng() % 10);
            s.insert(1 + rng() % 20, ".");
            v.push_back(s);
        }
        return v;
    }();
    return all;
}

// One operation on the i-th value (and the next one, for the arithmetic).
using Op = std::function<void(std::size_t)>;

struct Operation {
    Op zu;
    Op peer;
};

std::map<std::string, Operation>& operations() {
    static std::map<std::string, Operation> all;
    return all;
}

double nanoseconds() {
    timespec t;
    clock_gettime(CLOCK_MONOTONIC, &t);
    return static_cast<double>(t.tv_sec) * 1e9 + static_cast<double>(t.tv_nsec);
}

// Fastest time per call of `op` over one batch.
double batch(const Op& op) {
    constexpr std::size_t calls = 2000;
    const double start = nanoseconds();
    for (std::size_t i = 0; i < calls; ++i) op(i % kValues);
    return (nanoseconds() - start) / calls;
}

// Fastest batch times per call of Zu and of the peer, from alternating batches; computed
// once per operation.
std::pair<double, double> fastest(const std::string& name) {
    static std::map<std::string, std::pair<double, double>> cache;
    const auto found = cache.find(name);
    if (found != cache.end()) return found->second;
    const Operation& op = operations().at(name);
    double zu = 1e300, peer = 1e300;
    for (int round = 0; round < 200; ++round) {
        zu = std::min(zu, batch(op.zu));
        peer = std::min(peer, batch(op.peer));
    }
    return cache[name] = {zu, peer};
}

void run(benchmark::State& state, const std::string& name, bool zu) {
    const Operation& op = operations().at(name);
    const Op& body = zu ? op.zu : op.peer;
    std::size_t i = 0;
    for (auto _ : state) body(i++ % kValues);
    if (zu && op.peer) {
        const auto [zuTime, peerTime] = fastest(name);
        state.counters["vs_peer"] = peerTime / zuTime;
        state.counters["zu_ns"] = zuTime;
        state.counters["peer_ns"] = peerTime;
    }
}

void registerOperations() {
    char out[64] = {};
    ZuNumeric parsed;
    auto& all = operations();
    // Both sides read their operands from a static vector, so neither pays an accessor.
    static const std::vector<ZuNumeric> zuValues = [] {
        std::vector<ZuNumeric> r;
        for (const std::string& t : texts()) r.emplace_back(t.c_str());
        return r;
    }();
    all["Parse"].zu = [parsed](std::size_t i) mutable {
        parsed.set(texts()[i].c_str());
        benchmark::DoNotOptimize(parsed);
    };
    all["Format"].zu = [out](std::size_t i) mutable {
        zuValues[i].get(out, sizeof out);
        benchmark::DoNotOptimize(out);
    };
    all["Add"].zu = [](std::size_t i) {
        ZuNumeric r = zuValues[i] + zuValues[(i + 1) % kValues];
        benchmark::DoNotOptimize(r);
    };
    all["Multiply"].zu = [](std::size_t i) {
        ZuNumeric r = zuValues[i] * zuValues[(i + 1) % kValues];
        benchmark::DoNotOptimize(r);
    };
#ifdef ZU_HAVE_PEER
    static const std::vector<Peer> values(texts().begin(), texts().end());
    all["Parse"].peer = [](std::size_t i) {
        Peer p(texts()[i]);
        benchmark::DoNotOptimize(p);
    };
    all["Format"].peer = [](std::size_t i) {
        std::string s = values[i].str(30, std::ios_base::fixed);
        benchmark::DoNotOptimize(s);
    };
    all["Add"].peer = [](std::size_t i) {
        Peer r = values[i] + values[(i + 1) % kValues];
        benchmark::DoNotOptimize(r);
    };
    all["Multiply"].peer = [](std::size_t i) {
        Peer r = values[i] * values[(i + 1) % kValues];
        benchmark::DoNotOptimize(r);
    };
#endif
    for (const char* name : {"Parse", "Format", "Add", "Multiply"}) {
        const std::string n = name;
        if (all[n].peer)
            benchmark::RegisterBenchmark((n + "/cpp_dec_float_50").c_str(),
                                         [n](benchmark::State& s) { run(s, n, false); });
        benchmark::RegisterBenchmark((n + "/ZuNumeric").c_str(), [n](benchmark::State& s) { run(s, n, true); });
    }
}

} // namespace

int main(int argc, char** argv) {
    registerOperations();
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 1;
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
