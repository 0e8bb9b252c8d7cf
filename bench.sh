#!/usr/bin/env bash
# Installs what is missing, builds the benchmarks as users get the library, and prints what they
# measured: a table of the operations, and the ratios that docs/performance.md is about.
#
#   bench.sh            the table and the ratios
#   bench.sh --counts   takes the counts of instructions anew, which a test compares with
set -euo pipefail
cd "$(dirname "$0")"
source scripts/packages.sh

install_missing "${bench_packages[@]}"
mkdir -p build
quietly cmake -S . -B build/bench -G Ninja -DCMAKE_BUILD_TYPE=Release -DKROFX_BUILD_TESTS=OFF \
  -DKROFX_BUILD_COMMAND=OFF -DKROFX_BUILD_EXAMPLES=OFF -DKROFX_BUILD_BENCH=ON \
  -DKROFX_BUILD_PACKAGE_TESTS=ON
quietly cmake --build build/bench --target krofx_bench krofx_counts

if [ "${1:-}" = --counts ]; then
  compiler=$(sed -nE 's/^set\(CMAKE_CXX_COMPILER_(ID|VERSION) "([A-Za-z]+|[0-9]+).*/\2/p' \
    build/bench/CMakeFiles/*/CMakeCXXCompiler.cmake | paste -sd ' ')
  python3 bench/count.py build/bench/bench/krofx_counts "$compiler $(uname -m)" --write
  exit
fi

# Each operation nine times, in an order that mixes them, so that what else the machine does falls
# on all of them.
build/bench/bench/krofx_bench --benchmark_repetitions=9 --benchmark_min_time=0.2 \
  --benchmark_enable_random_interleaving=true --benchmark_out=build/bench/result.json \
  --benchmark_out_format=json >build/bench/result.txt
python3 bench/report.py build/bench/result.json "$(build/bench/bench/krofx_counts memory 20000)"
