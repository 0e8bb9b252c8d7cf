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
# Tests with servers, terminals and time limits wait, and leave processors to others.
tests=$((2 * jobs))

for preset in release asan; do
  echo "Building $preset"
  quietly cmake --preset "$preset"
  quietly cmake --build --preset "$preset" --parallel "$jobs"
done
for preset in release asan; do
  echo "Testing $preset"
  if [ -t 1 ]; then
    ctest --preset "$preset" --progress --parallel "$tests"
  else
    # Away from a terminal only what went wrong is worth a line, and the count.
    ctest --preset "$preset" --parallel "$tests" |
      sed -uE '/^ *Start +[0-9]+: /d; /^ *[0-9]+\/[0-9]+ Test +#[0-9]+: .* Passed +[0-9.]+ sec *$/d'
  fi
done
