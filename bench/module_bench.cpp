// The module loader's two costs: a ReScan over a directory of 1,000 descriptor files,
// and a Load of a module whose descriptor requires a chain of 10 modules. There is no
// peer: the figures are kept to compare versions of the loader.
#include <zu/context.h>
#include <zu/module.h>

#include <benchmark/benchmark.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>

namespace fs = std::filesystem;

namespace {

// A fresh directory holding count descriptors "<prefix><i>.imd" (each requiring the
// next when chained) beside links "<prefix><i>.so" to the benchmark module.
std::string makeModules(const char* prefix, int count, bool chained) {
    char pattern[] = "/tmp/zu_module_bench_XXXXXX";
    const std::string dir = mkdtemp(pattern);
    for (int i = 0; i < count; ++i) {
        const std::string name = prefix + std::to_string(i);
        std::ofstream(dir + "/" + name + ".imd")
            << "<?xml version=\"1.0\"?>\n<module version=\"5.7\">\n"
            << (chained && i + 1 < count
                    ? "  <requires module=\"" + std::string(prefix) + std::to_string(i + 1) + "\"/>\n"
                    : std::string())
            << "</module>\n";
        fs::create_symlink(ZU_BENCH_MODULE, dir + "/" + name + ".so");
    }
    return dir;
}

// Points the module path at dir alone.
void useModulePath(const std::string& dir) {
    setenv("ZUMODULEPATH", dir.c_str(), 1);
    ZuGlobalContext::GetInstance()->initializeModulePath();
}

void reScan1000(benchmark::State& state) {
    const std::string dir = makeModules("d", 1000, false);
    useModulePath(dir);
    ZuModule::ReScan(); // the first call only initialises the loader
    unsigned count = 0;
    for (auto _ : state) {
        ZuModule::_DeleteModuleDescriptors();
        ZuModule::ReScan();
        ZuModule::GetDescriptors(count);
    }
    ZuModule::_DeleteModuleDescriptors();
    state.counters["descriptors"] = count;
    fs::remove_all(dir);
}

// Each iteration: scan the 11 descriptors, load the head (and so its 10 required
// modules, depth first), then delete the 11 modules, which closes their libraries at
// the next clean-up of the registry.
void loadChainOf10(benchmark::State& state) {
    const std::string dir = makeModules("c", 11, true);
    useModulePath(dir);
    ZuModule::ReScan();
    for (auto _ : state) {
        ZuModule::_DeleteModuleDescriptors();
        ZuModule::ReScan();
        ZuModule* head = ZuModule::Load("c0", nullptr);
        if (!head) {
            state.SkipWithError("the chain did not load");
            break;
        }
        for (int i = 1; i < 11; ++i)
            if (ZuModuleDescriptor* d = ZuModule::Find(("c" + std::to_string(i)).c_str()))
                delete d->getModule();
        delete head;
    }
    ZuModule::_DeleteModuleDescriptors();
    fs::remove_all(dir);
}

} // namespace

BENCHMARK(reScan1000)->Unit(benchmark::kMicrosecond);
BENCHMARK(loadChainOf10)->Unit(benchmark::kMicrosecond);
BENCHMARK_MAIN();
