#!/usr/bin/env bash
# Builds libzu.so and runs the tour (examples/tour.cpp).
set -euo pipefail
cd "$(dirname "$0")/.."
. scripts/deps.sh
zu_need_packages "${ZU_BUILD_PACKAGES[@]}"
cmake -S . -B build-demo -DCMAKE_BUILD_TYPE=RelWithDebInfo \
  -DZU_BUILD_TESTS=OFF -DZU_BUILD_BENCH=OFF -DZU_BUILD_EXAMPLES=ON >/dev/null
cmake --build build-demo -j "$(nproc)" --target zu_tour
ZUMODULEPATH="$PWD/build-demo/examples/modules" ./build-demo/examples/zu_tour
