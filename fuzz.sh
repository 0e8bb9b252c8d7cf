#!/usr/bin/env bash
# Builds a fuzz target and runs it for a while: ./fuzz.sh [SECONDS [SUBJECT]], 600 by default. The
# subject is parse, which is the default, read or security. It starts from the example texts, or from
# the roots, and keeps what it learns in build/fuzz/corpus.
set -euo pipefail
cd "$(dirname "$0")"
seconds=${1:-600} subject=${2:-parse}

case $subject in
parse | read) seeds=examples options='-max_len=20000 -dict=fuzz/ofx.dict' ;;
security) seeds=src/krofx/security/roots options=-max_len=4000 ;;
*)
  echo "fuzz.sh: $subject is no subject: parse, read or security" >&2
  exit 64
  ;;
esac

mkdir -p build
cmake --preset fuzz >build/fuzz.log
cmake --build --preset fuzz --target "krofx_${subject}_fuzz"
mkdir -p "build/fuzz/corpus/$subject"
# shellcheck disable=SC2086  # options are words
exec "build/fuzz/fuzz/krofx_${subject}_fuzz" -max_total_time="$seconds" $options \
  -print_final_stats=1 "build/fuzz/corpus/$subject" "$seeds"
