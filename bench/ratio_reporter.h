#ifndef ZU_BENCH_RATIO_REPORTER_H
#define ZU_BENCH_RATIO_REPORTER_H

// Console output plus, on each Zu run, the counter "speedup": its peer's CPU time over
// its own (above 1, Zu is faster). A Zu run is one whose name holds zuToken; its peer is
// the run named the same with peerToken in its place, registered (so run) before it.
// CPU time is steadier than wall time on a shared machine.

#include <benchmark/benchmark.h>

#include <cstdio>
#include <map>
#include <string>
#include <utility>
#include <vector>

class ZuRatioReporter : public benchmark::ConsoleReporter {
public:
    ZuRatioReporter(std::string zuToken, std::string peerToken)
        : ConsoleReporter(OO_Tabular), _zu(std::move(zuToken)), _peer(std::move(peerToken)) {}

    void ReportRuns(const std::vector<Run>& runs) override {
        std::vector<Run> out = runs;
        for (Run& run : out) {
            std::string name = run.benchmark_name();
            const size_t at = name.find(_zu);
            if (at == std::string::npos) {
                _times[name] = run.GetAdjustedCPUTime();
                continue;
            }
            auto found = _times.find(name.replace(at, _zu.size(), _peer));
            if (found != _times.end() && run.GetAdjustedCPUTime() > 0)
                run.counters["speedup"] = found->second / run.GetAdjustedCPUTime();
        }
        ConsoleReporter::ReportRuns(out);
    }

    // The usual main: parse the arguments, run everything through this reporter.
    int runMain(int argc, char** argv) {
        benchmark::Initialize(&argc, argv);
        if (benchmark::ReportUnrecognizedArguments(argc, argv))
            return 1;
        benchmark::RunSpecifiedBenchmarks(this);
        benchmark::Shutdown();
        return 0;
    }

private:
    std::string _zu, _peer;
    std::map<std::string, double> _times;
};

// Console output, then a summary of ratios for programs that name their benchmarks
// BM_<Op>_Zu and BM_<Op>_<Peer>: for each peer of each operation, the peer's CPU time over
// Zu's. With repetitions, the fastest run of each counts: the least disturbed by other
// work on the machine.
class ZuSummaryReporter : public benchmark::ConsoleReporter {
public:
    void ReportRuns(const std::vector<Run>& runs) override {
        for (const Run& run : runs) {
            if (run.error_occurred || run.run_type != Run::RT_Iteration)
                continue;
            const std::string name = run.benchmark_name();
            const double t = run.GetAdjustedCPUTime();
            auto it = _times.find(name);
            if (it == _times.end() || t < it->second)
                _times[name] = t;
        }
        ConsoleReporter::ReportRuns(runs);
    }

    void printRatios() const {
        std::printf("\nRatios (peer CPU time / Zu CPU time; above 1 means Zu is faster):\n");
        const std::string suffix = "_Zu";
        for (const auto& [name, zuTime] : _times) {
            if (name.size() < suffix.size() ||
                name.compare(name.size() - suffix.size(), suffix.size(), suffix) != 0)
                continue;
            const std::string op = name.substr(0, name.size() - suffix.size() + 1);
            for (const auto& [peer, peerTime] : _times)
                if (peer != name && peer.compare(0, op.size(), op) == 0)
                    std::printf("  %-28s %-16s %8.2fx\n", name.c_str(),
                                peer.substr(op.size()).c_str(), peerTime / zuTime);
        }
    }

    // The usual main: parse the arguments, run everything, print the summary.
    int runMain(int argc, char** argv) {
        benchmark::Initialize(&argc, argv);
        if (benchmark::ReportUnrecognizedArguments(argc, argv))
            return 1;
        benchmark::RunSpecifiedBenchmarks(this);
        printRatios();
        benchmark::Shutdown();
        return 0;
    }

private:
    std::map<std::string, double> _times;
};

#endif
