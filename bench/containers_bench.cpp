// Containers against their standard peers at 10,000 keys: ZuHashTable and
// ZuStringHashTable against std::unordered_map (insert, find, remove), Zu_List against
// std::forward_list (append, iteration). Each Zu run carries a "zu/std" counter: its
// CPU time divided by the peer's (below 1 means Zu is faster).
// Cells come from the small-cell manager unless ZU_MEMORYMANAGER is already set.
#include <zu/hash.h>
#include <zu/list.h>

#include <benchmark/benchmark.h>

#include "ratio_reporter.h"

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <forward_list>
#include <random>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace {

const size_t KeyCount = 10000;

struct Keys;
Keys& keys();

struct Keys {
    std::vector<void*> pointers;      // addresses of distinct heap objects
    std::vector<std::string> strings; // identifier-like names, as stored
    std::vector<std::string> probes;  // the same names in other buffers, to look up
    std::vector<size_t> shuffled;     // a fixed random order of the keys
    std::vector<long> objects;
    Keys() : objects(KeyCount * 4) {
        for (size_t i = 0; i < KeyCount; ++i) {
            pointers.push_back(&objects[i * 4]);
            strings.push_back("symbol_" + std::to_string(i * 7919 % 100003) + "_name");
            shuffled.push_back(i);
        }
        probes = strings;
        std::shuffle(shuffled.begin(), shuffled.end(), std::mt19937(42));
    }
    char* string(size_t i) { return &strings[i][0]; }
    char* probe(size_t i) { return &probes[i][0]; }
};

// Probe orders: the order of insertion, or a fixed random one.
const std::vector<size_t>& order(bool random) {
    static std::vector<size_t> inOrder;
    if (inOrder.empty())
        for (size_t i = 0; i < KeyCount; ++i)
            inOrder.push_back(i);
    return random ? keys().shuffled : inOrder;
}


Keys& keys() {
    static Keys k;
    return k;
}

// ---- pointer keys ----------------------------------------------------------------------

void zuPointerInsert(benchmark::State& state) {
    Keys& k = keys();
    for (auto _ : state) {
        ZuHashTable table(17);
        for (void* p : k.pointers)
            table.insert(p, p);
        benchmark::DoNotOptimize(table._count);
    }
}

void stdPointerInsert(benchmark::State& state) {
    Keys& k = keys();
    for (auto _ : state) {
        std::unordered_map<void*, void*> map;
        for (void* p : k.pointers)
            map[p] = p;
        benchmark::DoNotOptimize(map.size());
    }
}

// Arguments: probe in random order (0 or 1), pre-size the container (0 or 1): Zu
// with 9239 buckets, the standard map with reserve(KeyCount).
void zuPointerFind(benchmark::State& state) {
    Keys& k = keys();
    ZuHashTable table(state.range(1) ? 9239 : 17);
    for (void* p : k.pointers)
        table.insert(p, p);
    const std::vector<size_t>& probes = order(state.range(0));
    for (auto _ : state)
        for (size_t i : probes)
            benchmark::DoNotOptimize(table.find(k.pointers[i], nullptr, nullptr));
}

void stdPointerFind(benchmark::State& state) {
    Keys& k = keys();
    std::unordered_map<void*, void*> map;
    if (state.range(1))
        map.reserve(KeyCount);
    for (void* p : k.pointers)
        map[p] = p;
    const std::vector<size_t>& probes = order(state.range(0));
    for (auto _ : state)
        for (size_t i : probes)
            benchmark::DoNotOptimize(map.find(k.pointers[i]));
}

void zuPointerRemove(benchmark::State& state) {
    Keys& k = keys();
    for (auto _ : state) {
        state.PauseTiming();
        ZuHashTable* table = new ZuHashTable(17);
        for (void* p : k.pointers)
            table->insert(p, p);
        state.ResumeTiming();
        for (void* p : k.pointers)
            table->remove(p);
        state.PauseTiming();
        delete table;
        state.ResumeTiming();
    }
}

void stdPointerRemove(benchmark::State& state) {
    Keys& k = keys();
    for (auto _ : state) {
        state.PauseTiming();
        auto* map = new std::unordered_map<void*, void*>;
        for (void* p : k.pointers)
            (*map)[p] = p;
        state.ResumeTiming();
        for (void* p : k.pointers)
            map->erase(p);
        state.PauseTiming();
        delete map;
        state.ResumeTiming();
    }
}

// ---- string keys (neither side copies the text) -------------------------------------------

using StringMap = std::unordered_map<std::string_view, void*>;

void zuStringInsert(benchmark::State& state) {
    Keys& k = keys();
    for (auto _ : state) {
        ZuStringHashTable table(17);
        for (size_t i = 0; i < KeyCount; ++i)
            table.insert(k.string(i), k.pointers[i]);
        benchmark::DoNotOptimize(table._count);
    }
}

void stdStringInsert(benchmark::State& state) {
    Keys& k = keys();
    for (auto _ : state) {
        StringMap map;
        for (size_t i = 0; i < KeyCount; ++i)
            map[std::string_view(k.string(i))] = k.pointers[i];
        benchmark::DoNotOptimize(map.size());
    }
}

// Looks up copies of the stored names; arguments as for the pointer keys.
void zuStringFind(benchmark::State& state) {
    Keys& k = keys();
    ZuStringHashTable table(state.range(1) ? 9239 : 17);
    for (size_t i = 0; i < KeyCount; ++i)
        table.insert(k.string(i), k.pointers[i]);
    const std::vector<size_t>& probes = order(state.range(0));
    for (auto _ : state)
        for (size_t i : probes)
            benchmark::DoNotOptimize(table.find(k.probe(i), nullptr, nullptr));
}

void stdStringFind(benchmark::State& state) {
    Keys& k = keys();
    StringMap map;
    if (state.range(1))
        map.reserve(KeyCount);
    for (size_t i = 0; i < KeyCount; ++i)
        map[std::string_view(k.string(i))] = k.pointers[i];
    const std::vector<size_t>& probes = order(state.range(0));
    for (auto _ : state)
        for (size_t i : probes)
            benchmark::DoNotOptimize(map.find(std::string_view(k.probe(i))));
}

void zuStringRemove(benchmark::State& state) {
    Keys& k = keys();
    for (auto _ : state) {
        state.PauseTiming();
        ZuStringHashTable* table = new ZuStringHashTable(17);
        for (size_t i = 0; i < KeyCount; ++i)
            table->insert(k.string(i), k.pointers[i]);
        state.ResumeTiming();
        for (size_t i = 0; i < KeyCount; ++i)
            table->remove(k.probe(i));
        state.PauseTiming();
        delete table;
        state.ResumeTiming();
    }
}

void stdStringRemove(benchmark::State& state) {
    Keys& k = keys();
    for (auto _ : state) {
        state.PauseTiming();
        auto* map = new StringMap;
        for (size_t i = 0; i < KeyCount; ++i)
            (*map)[std::string_view(k.string(i))] = k.pointers[i];
        state.ResumeTiming();
        for (size_t i = 0; i < KeyCount; ++i)
            map->erase(std::string_view(k.probe(i)));
        state.PauseTiming();
        delete map;
        state.ResumeTiming();
    }
}

// ---- lists ---------------------------------------------------------------------------------

void zuListAppend(benchmark::State& state) {
    Keys& k = keys();
    for (auto _ : state) {
        Zu_List list;
        for (void* p : k.pointers)
            list.a(p);
        benchmark::DoNotOptimize(list._length);
    }
}

void stdListAppend(benchmark::State& state) {
    Keys& k = keys();
    for (auto _ : state) {
        std::forward_list<void*> list;
        auto tail = list.before_begin();
        for (void* p : k.pointers)
            tail = list.insert_after(tail, p);
        benchmark::DoNotOptimize(&list);
    }
}

void zuListIterate(benchmark::State& state) {
    Zu_List list;
    for (void* p : keys().pointers)
        list.a(p);
    for (auto _ : state) {
        uintptr_t sum = 0;
        Zu_LIterator it(list);
        while (void* v = it.nextElement())
            sum += reinterpret_cast<uintptr_t>(v);
        benchmark::DoNotOptimize(sum);
    }
}

void stdListIterate(benchmark::State& state) {
    std::forward_list<void*> list;
    auto tail = list.before_begin();
    for (void* p : keys().pointers)
        tail = list.insert_after(tail, p);
    for (auto _ : state) {
        uintptr_t sum = 0;
        for (void* v : list)
            sum += reinterpret_cast<uintptr_t>(v);
        benchmark::DoNotOptimize(sum);
    }
}

// Find in insertion order, in random order, and in random order with pre-sized containers.
void findArgs(benchmark::internal::Benchmark* b) {
    b->ArgNames({"random", "presized"})->Args({0, 0})->Args({1, 0})->Args({1, 1});
}


} // namespace

BENCHMARK(stdPointerInsert)->Name("Std/PointerKeys/Insert10k");
BENCHMARK(zuPointerInsert)->Name("Zu/PointerKeys/Insert10k");
BENCHMARK(stdPointerFind)->Name("Std/PointerKeys/Find10k")->Apply(findArgs);
BENCHMARK(zuPointerFind)->Name("Zu/PointerKeys/Find10k")->Apply(findArgs);
BENCHMARK(stdPointerRemove)->Name("Std/PointerKeys/Remove10k");
BENCHMARK(zuPointerRemove)->Name("Zu/PointerKeys/Remove10k");
BENCHMARK(stdStringInsert)->Name("Std/StringKeys/Insert10k");
BENCHMARK(zuStringInsert)->Name("Zu/StringKeys/Insert10k");
BENCHMARK(stdStringFind)->Name("Std/StringKeys/Find10k")->Apply(findArgs);
BENCHMARK(zuStringFind)->Name("Zu/StringKeys/Find10k")->Apply(findArgs);
BENCHMARK(stdStringRemove)->Name("Std/StringKeys/Remove10k");
BENCHMARK(zuStringRemove)->Name("Zu/StringKeys/Remove10k");
BENCHMARK(stdListAppend)->Name("Std/List/Append10k");
BENCHMARK(zuListAppend)->Name("Zu/List/Append10k");
BENCHMARK(stdListIterate)->Name("Std/List/Iterate10k");
BENCHMARK(zuListIterate)->Name("Zu/List/Iterate10k");

int main(int argc, char** argv) {
    // Cells come from the small-cell manager unless the caller chose otherwise.
    setenv("ZU_MEMORYMANAGER", "yes", 0);
    return ZuRatioReporter("Zu/", "Std/").runMain(argc, argv);
}
