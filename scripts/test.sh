#!/usr/bin/env bash
# Builds the library and runs the whole test suite through CTest.
#   scripts/test.sh             normal build in build/
#   scripts/test.sh --sanitize  AddressSanitizer + UndefinedBehaviorSanitizer build in build-asan/
set -euo pipefail
cd "$(dirname "$0")/.."
. scripts/deps.sh
zu_need_packages "${ZU_BUILD_PACKAGES[@]}" "${ZU_TEST_PACKAGES[@]}"

dir=build
args=(-DCMAKE_BUILD_TYPE=RelWithDebInfo)
if [ "${1:-}" = "--sanitize" ]; then
  dir=build-asan
  args=(-DCMAKE_BUILD_TYPE=Debug -DZU_SANITIZE=ON -DZU_BUILD_BENCH=OFF)
  export ASAN_OPTIONS=${ASAN_OPTIONS:-detect_leaks=1:abort_on_error=0}
  export UBSAN_OPTIONS=${UBSAN_OPTIONS:-print_stacktrace=1:halt_on_error=1}
fi
cmake -S . -B "$dir" "${args[@]}" >/dev/null
cmake --build "$dir" -j "$(nproc)"
cd "$dir"
ctest --output-on-failure -j "$(nproc)"
