#!/usr/bin/env bash
# Installs what is missing, builds krofx in two ways, and runs all tests:
#
#   build/release   what users get, with tests of the installation from outside projects
#   build/asan      every other test, under the address and undefined-behaviour sanitizers
#
# Prints little while all is well. Building again takes only what has changed.
set -euo pipefail
cd "$(dirname "$0")"
source scripts/packages.sh

install_missing "${test_packages[@]}"
jobs=$(nproc)

for preset in release asan; do
  echo "Building $preset"
  quietly cmake --preset "$preset"
  quietly cmake --build --preset "$preset" --parallel "$jobs"
done
for preset in release asan; do
  echo "Testing $preset"
  ctest --preset "$preset" --progress --parallel "$jobs"
done
