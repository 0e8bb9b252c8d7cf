#!/usr/bin/env bash
# Builds krofx optimised by a profile: builds it so that it counts what it does, lets the benchmarks'
# operations run, and builds it again with the counts. Needs GCC.
#
#   scripts/profiled_build.sh [BUILD-FOLDER [CMAKE-OPTION...]]
#
# The default folder is build/profiled. With -DKROFX_LTO=ON it is optimised at link time as well.
set -euo pipefail
cd "$(dirname "$0")/.."
build=${1:-build/profiled}
options=(-G Ninja -DCMAKE_BUILD_TYPE=Release -DKROFX_BUILD_TESTS=OFF -DKROFX_BUILD_EXAMPLES=OFF
  -DKROFX_BUILD_BENCH=ON "${@:2}")

cmake -S . -B "$build" "${options[@]}" -DKROFX_PROFILE=generate
# An old profile would be added to.
find "$build" -name '*.gcda' -delete
cmake --build "$build" --target krofx_counts
"$build/bench/krofx_counts" >"$build/profile.log"
cmake -S . -B "$build" "${options[@]}" -DKROFX_PROFILE=use
cmake --build "$build"
