// Chooses between ZuNumeric's portable and wide kernels, once, when the library loads.
#include "numeric_kernels.h"

#include <cstdlib>

namespace {

// The wide kernels need AVX-512 F, BW and VBMI with the registers enabled by the system
// (which the processor check includes), BMI2 and LZCNT.
bool wideKernelsUsable() {
    const char* portable = std::getenv("ZU_NUMERIC_PORTABLE");
    if (portable && *portable && !(portable[0] == '0' && portable[1] == '\0')) return false;
    __builtin_cpu_init();
    return __builtin_cpu_supports("avx512f") && __builtin_cpu_supports("avx512bw") &&
           __builtin_cpu_supports("avx512vbmi") && __builtin_cpu_supports("bmi2") &&
           __builtin_cpu_supports("lzcnt");
}

} // namespace

namespace zu_numeric {

const bool useWideKernels = wideKernelsUsable();

} // namespace zu_numeric
