#!/usr/bin/env bash
# Builds the layers from core to parse for other machines, and runs their tests:
#
#   i686    32 bits, on this processor
#   s390x   64 bits with the most significant byte first, in an emulator
#
#   scripts/other_machines.sh [MACHINE...]    both, unless one is named
#
# What talks to servers is left out: it would need OpenSSL and libcurl for these machines. Of its own,
# limits of time, whose tests try both widths, and sizes of files depend on the number of bytes.
set -euo pipefail
cd "$(dirname "$0")/.."
# shellcheck source=scripts/packages.sh
source scripts/packages.sh

# shellcheck disable=SC2154
install_missing "${machine_packages[@]}"
layers=(core values build model parse)

options_for() {
  case $1 in
  i686) printf '%s\n' -DCMAKE_CROSSCOMPILING_EMULATOR=env ;;
  s390x) printf '%s\n' -DCMAKE_CROSSCOMPILING_EMULATOR=qemu-s390x ;;
  *)
    echo "other_machines.sh: $1 is no machine: i686 or s390x" >&2
    exit 64
    ;;
  esac
  # Linked statically, programs need nothing of the other machine to run. Of this machine's headers
  # the compiler sees none but Boost's, which are of no machine.
  printf '%s\n' -DCMAKE_SYSTEM_NAME=Linux "-DCMAKE_SYSTEM_PROCESSOR=$1" \
    "-DCMAKE_CXX_COMPILER=$1-linux-gnu-g++" "-DCMAKE_C_COMPILER=$1-linux-gnu-gcc" \
    -DCMAKE_EXE_LINKER_FLAGS=-static "-DCMAKE_CXX_FLAGS=-g0 -isystem $2"
}

run_on() {
  if [ "$1" = s390x ]; then qemu-s390x "${@:2}"; else "${@:2}"; fi
}

[ $# -gt 0 ] || set -- i686 s390x
for machine; do
  folder=$PWD/build/machine-$machine
  mapfile -t options < <(options_for "$machine" "$folder/headers")
  [ ${#options[@]} -gt 0 ] || exit 64
  mkdir -p "$folder/headers"
  ln -sfn /usr/include/boost "$folder/headers/boost"
  echo "Building for $machine"
  quietly cmake -S /usr/src/googletest -B "$folder/googletest" -G Ninja -DBUILD_GMOCK=OFF \
    -DCMAKE_BUILD_TYPE=Release "-DCMAKE_INSTALL_PREFIX=$folder/prefix" \
    -DCMAKE_INSTALL_LIBDIR=lib "${options[@]}"
  quietly cmake --build "$folder/googletest" --target install
  quietly cmake -S . -B "$folder" -G Ninja -DCMAKE_BUILD_TYPE=Debug \
    "-DCMAKE_PREFIX_PATH=$folder/prefix" -DKROFX_TRANSPORT=OFF -DKROFX_BUILD_COMMAND=OFF \
    -DKROFX_BUILD_EXAMPLES=OFF "${options[@]}"
  for layer in "${layers[@]}"; do
    quietly cmake --build "$folder" --target "krofx_${layer}_tests"
    echo "Testing $layer on $machine"
    run_on "$machine" "$folder/tests/krofx_${layer}_tests" --gtest_brief=1
  done
done
