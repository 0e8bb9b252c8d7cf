#!/usr/bin/env bash
# Builds fuzz targets and runs them one after the other:
#
#   ./fuzz.sh [SECONDS [TARGET...]]    600 seconds each, and all targets, unless something else is said
#   ./fuzz.sh --minimise [TARGET...]   takes what was found into fuzz/corpus, without what is not needed
#
# What is found is kept in build/fuzz/corpus, and what goes wrong in build/fuzz/findings. See
# fuzz/README.md.
set -euo pipefail
cd "$(dirname "$0")"
source scripts/packages.sh

action=run seconds=600
if [ "${1:-}" = --minimise ]; then
  action=minimise
  shift
elif [ $# -gt 0 ]; then
  seconds=$1
  shift
fi
targets=("$@")
if [ ${#targets[@]} -eq 0 ]; then
  for source in fuzz/*_fuzz.cpp; do
    name=${source#fuzz/}
    targets+=("${name%_fuzz.cpp}")
  done
fi
for target in "${targets[@]}"; do
  if [ ! -e "fuzz/${target}_fuzz.cpp" ]; then
    echo "fuzz.sh: there is no target $target" >&2
    exit 64
  fi
done

install_missing "${build_packages[@]}" clang llvm
mkdir -p build/fuzz/findings
cmake --preset fuzz >build/fuzz.log
programs=("${targets[@]/#/krofx_}")
cmake --build --preset fuzz --target "${programs[@]/%/_fuzz}"

# The inputs are short: a target that reads few bytes tries more of them.
run() {
  local target=$1 options=(-entropic=0 -timeout=20 -print_final_stats=1 -max_len=2000)
  shift
  case $target in
  response | request | multipart | header | read | show | aggregate | setters)
    options+=(-max_len=4000 -dict=fuzz/ofx.dict)
    ;;
  stream)
    options+=(-dict=fuzz/ofx.dict)
    ;;
  esac
  "build/fuzz/fuzz/krofx_${target}_fuzz" "${options[@]}" \
    "-artifact_prefix=build/fuzz/findings/$target-" "$@" </dev/null
}

for target in "${targets[@]}"; do
  found=build/fuzz/corpus/$target kept=fuzz/corpus/$target
  mkdir -p "$found" "$kept"
  if [ "$action" = run ]; then
    folders=("$found" "$kept")
    [ ! -d "fuzz/fixed/$target" ] || folders+=("fuzz/fixed/$target")
    # The time that other programs leave is not all of the time that passes.
    TIMEFORMAT="$target: %U seconds of processor time"
    time run "$target" "-max_total_time=$seconds" "${folders[@]}"
  else
    smaller=$(mktemp -d)
    run "$target" -merge=1 "$smaller" "$kept" "$found"
    rm -rf "$kept"
    mv "$smaller" "$kept"
    chmod 755 "$kept"
  fi
done
