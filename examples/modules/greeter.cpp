// A sample module: loaded by name through ZuModule::Load, it answers the argument it is
// given (a buffer of at least 64 bytes, or null) with a greeting.
#include <zu/module.h>

#include <cstdio>

namespace {

class Greeter : public ZuModule {};

} // namespace

extern "C" __attribute__((visibility("default"))) ZuModule* ZuInitModule(void* arg) {
    if (arg)
        std::snprintf(static_cast<char*>(arg), 64, "hello from the greeter module");
    return new Greeter;
}
