// Small-cell allocation: ZuMemoryManager against glibc malloc/free on the same inputs
// (cells of 8 to 64 bytes), released in LIFO and in shuffled order. Each Zu result
// carries a "speedup" counter: the malloc/free time divided by the manager's time.
#include <zu/alloc.h>

#include <benchmark/benchmark.h>

#include "ratio_reporter.h"

#include <algorithm>
#include <cstdlib>
#include <numeric>
#include <random>
#include <string>
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

// One iteration allocates every cell (touching it) and releases them all in order.
template <typename Allocator>
void cells(benchmark::State& state, const std::vector<size_t>& order) {
    const std::vector<size_t>& sizes = inputs().sizes;
    std::vector<void*> cells(sizes.size());
    for (auto _ : state) {
        for (size_t i = 0; i < sizes.size(); ++i) {
            cells[i] = Allocator::get(sizes[i]);
            *static_cast<char*>(cells[i]) = static_cast<char>(i);
        }
        benchmark::DoNotOptimize(cells.data());
        for (size_t i : order)
            Allocator::put(cells[i], sizes[i]);
        benchmark::ClobberMemory();
    }
    state.SetItemsProcessed(int64_t(state.iterations() * sizes.size()));
}

void mallocLifo(benchmark::State& s) { cells<Malloc>(s, inputs().lifo); }
void managerLifo(benchmark::State& s) { cells<Manager>(s, inputs().lifo); }
void mallocShuffled(benchmark::State& s) { cells<Malloc>(s, inputs().shuffled); }
void managerShuffled(benchmark::State& s) { cells<Manager>(s, inputs().shuffled); }


} // namespace

BENCHMARK(mallocLifo)->Name("Cells/malloc_free/LIFO");
BENCHMARK(managerLifo)->Name("Cells/ZuMemoryManager/LIFO");
BENCHMARK(mallocShuffled)->Name("Cells/malloc_free/Shuffled");
BENCHMARK(managerShuffled)->Name("Cells/ZuMemoryManager/Shuffled");

int main(int argc, char** argv) {
    // The manager is off unless switched on before its first use.
    setenv("ZU_MEMORYMANAGER", "yes", 1);
    return ZuRatioReporter("ZuMemoryManager", "malloc_free").runMain(argc, argv);
}
