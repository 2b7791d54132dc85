// Small-cell allocation: ZuMemoryManager against glibc malloc/free on the same inputs
// (cells of 8 to 64 bytes), released in LIFO and in shuffled order. Each Zu run times
// the manager and malloc/free alternately, batch by batch, so that both see the same
// machine, and carries the counter "speedup": malloc/free CPU time over the manager's.
#include <zu/alloc.h>

#include <benchmark/benchmark.h>

#include <time.h>

#include <algorithm>
#include <cstdlib>
#include <numeric>
#include <random>
#include <string>
#include <utility>
#include <vector>

namespace {

const size_t CellCount = 1000;

struct Inputs {
    std::vector<size_t> sizes;    // request sizes, 8 to 64 bytes
    std::vector<size_t> lifo;     // release order: reverse of allocation
    std::vector<size_t> shuffled; // release order: a fixed random permutation
    Inputs() : sizes(CellCount), lifo(CellCount), shuffled(CellCount) {
        std::mt19937 rng(42);
        for (size_t& s : sizes)
            s = 8 + rng() % 57;
        std::iota(lifo.rbegin(), lifo.rend(), size_t(0));
        std::iota(shuffled.begin(), shuffled.end(), size_t(0));
        std::shuffle(shuffled.begin(), shuffled.end(), rng);
    }
};

const Inputs& inputs() {
    static const Inputs in;
    return in;
}

struct Malloc {
    static void* get(size_t size) { return std::malloc(size); }
    static void put(void* p, size_t) { std::free(p); }
};

struct Manager {
    static void* get(size_t size) { return ZuMemoryManager::GetInstance()->alloc(size); }
    static void put(void* p, size_t size) { ZuMemoryManager::GetInstance()->release(p, size); }
};

// One round allocates every cell (touching it) and releases them all in order.
template <typename Allocator>
void round(const std::vector<size_t>& order, std::vector<void*>& cells) {
    const std::vector<size_t>& sizes = inputs().sizes;
    for (size_t i = 0; i < sizes.size(); ++i) {
        cells[i] = Allocator::get(sizes[i]);
        *static_cast<char*>(cells[i]) = static_cast<char>(i);
    }
    benchmark::DoNotOptimize(cells.data());
    for (size_t i : order)
        Allocator::put(cells[i], sizes[i]);
    benchmark::ClobberMemory();
}

void mallocOnly(benchmark::State& state, const std::vector<size_t>* order) {
    std::vector<void*> cells(CellCount);
    for (auto _ : state)
        round<Malloc>(*order, cells);
    state.SetItemsProcessed(int64_t(state.iterations() * CellCount));
}

double cpuSeconds() {
    timespec t;
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &t);
    return double(t.tv_sec) + double(t.tv_nsec) * 1e-9;
}

// Batches of rounds long enough for the clock's own cost to vanish.
const int Batch = 16;

void managerAgainstMalloc(benchmark::State& state, const std::vector<size_t>* order) {
    std::vector<void*> cells(CellCount);
    double zu = 0, peer = 0;
    for (auto _ : state) {
        const double start = cpuSeconds();
        for (int b = 0; b < Batch; ++b)
            round<Manager>(*order, cells);
        const double middle = cpuSeconds();
        for (int b = 0; b < Batch; ++b)
            round<Malloc>(*order, cells);
        const double end = cpuSeconds();
        zu += middle - start;
        peer += end - middle;
        state.SetIterationTime(middle - start);
    }
    state.SetItemsProcessed(int64_t(state.iterations() * Batch * CellCount));
    if (zu > 0)
        state.counters["speedup"] = peer / zu;
}

} // namespace

int main(int argc, char** argv) {
    // The manager is off unless switched on before its first use.
    setenv("ZU_MEMORYMANAGER", "yes", 1);
    for (auto [name, order] : {std::pair<const char*, const std::vector<size_t>*>{"LIFO", &inputs().lifo},
                               {"Shuffled", &inputs().shuffled}}) {
        benchmark::RegisterBenchmark((std::string("Cells/malloc_free/") + name).c_str(), mallocOnly, order);
        benchmark::RegisterBenchmark((std::string("Cells/ZuMemoryManager/") + name).c_str(),
                                     managerAgainstMalloc, order)
            ->UseManualTime();
    }
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv))
        return 1;
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
