// Path names against their peers, on the same inputs: directory normalisation against
// std::filesystem::path::lexically_normal, and ZuPathName::match against fnmatch(3).
// After the run a summary prints each peer's time over Zu's time (above 1: Zu is
// faster); run with --benchmark_repetitions=N to take the fastest of N runs.
#include <zu/pathname.h>

#include <benchmark/benchmark.h>

#include "ratio_reporter.h"

#include <fnmatch.h>

#include <filesystem>
#include <string>
#include <vector>

namespace {

// Messy relative directories: ".", "..", empty components and plain names.
const std::vector<std::string>& messyPaths() {
    static const std::vector<std::string> paths = [] {
        static const char* const parts[] = {"src", ".", "lib", "", "..", "include", "zu", "..",
                                            "build", ".", "tests", "data"};
        std::vector<std::string> out;
        unsigned seed = 42;
        for (int n = 0; n < 64; ++n) {
            std::string p = "project";
            const int count = 3 + n % 6;
            for (int i = 0; i < count; ++i) {
                seed = seed * 1103515245u + 12345u;
                p += '/';
                p += parts[(seed >> 16) % 12];
            }
            out.push_back(p + "/");
        }
        return out;
    }();
    return paths;
}

struct MatchCase {
    const char* name;
    const char* pattern;
};

// File names and patterns both matchers read the same way.
const MatchCase kMatches[] = {
    {"main.cpp", "*.cpp"},         {"pathname_parse.cpp", "*.cpp"}, {"README.md", "*.txt"},
    {"libzu.so", "lib?u.so"},      {"data.tar.gz", "*.gz"},        {"a.out", "a.out"},
    {"report2024.pdf", "*4.pdf"},  {"notes.txt", "no?es.txt"},     {"Makefile", "*file"},
    {"core", "c?re"},
};

void BM_Normalize_Zu(benchmark::State& state) {
    const std::vector<std::string>& paths = messyPaths();
    for (auto _ : state) {
        for (const std::string& p : paths) {
            ZuPathName path;
            path.setInternalDir(p.c_str());
            benchmark::DoNotOptimize(path.getInternalDirectory().getValue());
        }
    }
    state.SetItemsProcessed(state.iterations() * static_cast<long>(paths.size()));
}

void BM_Normalize_LexicallyNormal(benchmark::State& state) {
    const std::vector<std::string>& paths = messyPaths();
    for (auto _ : state) {
        for (const std::string& p : paths) {
            const std::filesystem::path normal = std::filesystem::path(p.c_str()).lexically_normal();
            benchmark::DoNotOptimize(normal.c_str());
        }
    }
    state.SetItemsProcessed(state.iterations() * static_cast<long>(paths.size()));
}

void BM_Match_Zu(benchmark::State& state) {
    std::vector<ZuPathName> names, patterns;
    for (const MatchCase& c : kMatches) {
        names.emplace_back(c.name);
        patterns.emplace_back(c.pattern);
    }
    for (auto _ : state)
        for (size_t i = 0; i < names.size(); ++i) benchmark::DoNotOptimize(names[i].match(patterns[i]));
    state.SetItemsProcessed(state.iterations() * static_cast<long>(names.size()));
}

void BM_Match_Fnmatch(benchmark::State& state) {
    for (auto _ : state)
        for (const MatchCase& c : kMatches) benchmark::DoNotOptimize(::fnmatch(c.pattern, c.name, 0));
    state.SetItemsProcessed(state.iterations() * static_cast<long>(sizeof kMatches / sizeof *kMatches));
}

BENCHMARK(BM_Normalize_Zu);
BENCHMARK(BM_Normalize_LexicallyNormal);
BENCHMARK(BM_Match_Zu);
BENCHMARK(BM_Match_Fnmatch);

} // namespace

int main(int argc, char** argv) { return ZuSummaryReporter().runMain(argc, argv); }
