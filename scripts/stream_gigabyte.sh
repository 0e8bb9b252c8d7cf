#!/usr/bin/env bash
# Streams a statement of 1 GB, made on the fly, in a process that may not have more than 64 MB of
# addresses, and prints what the kernel says of its memory.
#
#   scripts/stream_gigabyte.sh [BUILD-FOLDER]      default: build/release
set -euo pipefail
cd "$(dirname "$0")/.."
build=${1:-build/release}
[ -f "$build/CMakeCache.txt" ] ||
  cmake -S . -B "$build" -G Ninja -DCMAKE_BUILD_TYPE=Release -DKROFX_BUILD_TESTS=OFF -DKROFX_BUILD_PACKAGE_TESTS=ON
cmake --build "$build" --target krofx_stream_memory
program=$(find "$build" -name krofx_stream_memory -type f -perm -u+x)
ulimit -v 65536
exec "$program" 1024 64
