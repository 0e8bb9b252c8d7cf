#!/usr/bin/env bash
# Builds the fuzz target and runs it for a while: ./fuzz.sh [SECONDS], 600 by default. It starts from
# the example texts and keeps what it learns in build/fuzz/corpus.
set -euo pipefail
cd "$(dirname "$0")"

mkdir -p build
cmake --preset fuzz >build/fuzz.log
cmake --build --preset fuzz --target krofx_parse_fuzz
mkdir -p build/fuzz/corpus
exec build/fuzz/fuzz/krofx_parse_fuzz -max_total_time="${1:-600}" -max_len=20000 \
  -dict=fuzz/ofx.dict -print_final_stats=1 build/fuzz/corpus examples
