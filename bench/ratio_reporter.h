#ifndef ZU_BENCH_RATIO_REPORTER_H
#define ZU_BENCH_RATIO_REPORTER_H

// Console output plus, on each Zu run, the counter "speedup": its peer's CPU time over
// its own (above 1, Zu is faster). A Zu run is one whose name holds zuToken; its peer is
// the run named the same with peerToken in its place, registered (so run) before it.
// CPU time is steadier than wall time on a shared machine.

#include <benchmark/benchmark.h>

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

#endif
