#!/usr/bin/env bash
# Installs what is missing, builds the command, prints the sample statements with it, and fetches one
# over HTTPS from the example server.
set -euo pipefail
cd "$(dirname "$0")"
source scripts/packages.sh

install_missing "${build_packages[@]}"
echo "Building krofx"
quietly cmake --preset release
quietly cmake --build --preset release --parallel "$(nproc)"

# Finds a program that was built: built FOLDER NAME
built() {
  local program
  program=$(find "build/release/$1" -name "$2" -type f -perm -u+x 2>/dev/null | head -n 1)
  if [ -z "$program" ]; then
    echo "$2 was not built." >&2
    return 1
  fi
  echo "$program"
}
krofx=$(built command krofx)
bank_server=$(built examples bank_server)
for sample in examples/{checking,card,quirks,statement-v2}.ofx; do
  echo
  echo "\$ krofx print $sample"
  "$krofx" print "$sample"
done

# The server takes a free port of this machine, writes the certificate of its own authority, and then
# says where it listens.
work=$(mktemp -d)
server=
stop() {
  [ -z "$server" ] || kill "$server" 2>/dev/null || true
  rm -rf "$work"
}
trap stop EXIT
exec {server_lines}< <(exec "$bank_server" --ca-file "$work/ca.pem" 2>"$work/errors")
server=$!
if ! read -r -t 60 -u "$server_lines" line; then
  echo "The example server did not start." >&2
  cat "$work/errors" >&2
  exit 1
fi
url=${line##* }
request=(fetch statement --url "$url" --root "$work/ca.pem" --org HARBORFED --fid 40711 --user ada.w
  --bank 211370545 --account 00718220946)
echo
echo "\$ krofx ${request[*]}"
# No proxy is between this machine and itself.
no_proxy=127.0.0.1 KROFX_PASSWORD=not-a-real-password "$krofx" "${request[@]}"
