#!/usr/bin/env bash
# Installs what is missing, builds the command, and prints the sample statements with it.
set -euo pipefail
cd "$(dirname "$0")"
source scripts/packages.sh

install_missing "${build_packages[@]}"
echo "Building krofx"
quietly cmake --preset release
quietly cmake --build --preset release --parallel "$(nproc)"

krofx=$(find build/release/tools -name krofx -type f -perm -u+x 2>/dev/null | head -n 1)
if [ -z "$krofx" ]; then
  echo "The command was not built." >&2
  exit 1
fi
for sample in examples/{checking,card,quirks,statement-v2}.ofx; do
  echo
  echo "\$ krofx print $sample"
  "$krofx" print "$sample"
done
