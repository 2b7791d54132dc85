// Test module. Its entry point writes "init <file name>" to stderr, so that copies of
// one library under several names show which was loaded, and in which order.
// ZU_TEST_REFUSE: the entry point refuses the load with error value 7 ("Unknown").
// ZU_TEST_NO_ENTRY: no entry point at all.
#include <zu/module.h>

#include <cstdio>
#include <cstring>
#include <dlfcn.h>

namespace {

class TestModule : public ZuModule {
public:
    ~TestModule() override { std::fprintf(stderr, "delete module\n"); }
};

} // namespace

#ifndef ZU_TEST_NO_ENTRY
extern "C" __attribute__((visibility("default"))) ZuModule* ZuInitModule(void* arg) {
    Dl_info info{};
    dladdr(reinterpret_cast<void*>(&ZuInitModule), &info);
    const char* file = info.dli_fname ? std::strrchr(info.dli_fname, '/') : nullptr;
    std::fprintf(stderr, "init %s\n", file ? file + 1 : "?");
    if (arg)
        ++*static_cast<int*>(arg);
#ifdef ZU_TEST_REFUSE
    ZuModule::SetError(static_cast<ZuModule::Error>(7));
#endif
    return new TestModule;
}
#else
extern "C" __attribute__((visibility("default"))) int zuTestNothing() { return 0; }
#endif
