#!/bin/sh
# Formats the project's C++ with clang-format, or reports which files are not formatted.
#
#   scripts/format.sh [--check] [CLANG_FORMAT] [FOLDER...]     the folders default to our sources
set -eu
root=$(cd "$(dirname "$0")/.." && pwd)

action=-i
if [ "${1:-}" = --check ]; then
  action='--dry-run --Werror'
  shift
fi
tool=clang-format
if [ $# -gt 0 ]; then
  tool=$1
  shift
fi
if [ $# -eq 0 ]; then
  for folder in src command tests examples bench fuzz; do
    [ -d "$root/$folder" ] && set -- "$@" "$root/$folder"
  done
fi
# clang-format does not find our .clang-format for files of the build tree, so its path is given.
find "$@" \( -name '*.h' -o -name '*.cpp' \) -print0 |
  xargs -0 "$tool" --style="file:$root/.clang-format" $action
