#!/usr/bin/env bash
# The programs of the guide that write a request and send one: guide_test.sh ASK EXCHANGE IMPORT
# SERVER EXAMPLES
set -u
ask=$1 exchange=$2 import=$3 server=$4 examples=$5
folder=$(mktemp -d)
trap 'kill "$bank" 2>/dev/null; rm -rf "$folder"' EXIT
bank=
fail() {
  echo "$*" >&2
  exit 1
}

"$ask" >"$folder/transfer.ofx" || fail 'ask failed'
grep -q '<INTRATRNRQ>' "$folder/transfer.ofx" || fail 'there is no transfer in the request'
[ "$("$import" "$folder/transfer.ofx")" = '' ] || fail 'the request does not read clean'

exec {lines}< <(exec "$server" --ca-file "$folder/ca.pem" --id-file "$folder/id" 2>"$folder/log")
bank=$!
read -r -t 60 -u "$lines" line || fail 'the server did not start'
url=${line##* }
statement=$examples/request-v1.ofx
"$exchange" "$url" "$folder/ca.pem" "$(cat "$folder/id")" "$statement" >"$folder/out" ||
  fail "nothing came: $(cat "$folder/out")"
grep -qE '^20[0-9-]+ ' "$folder/out" || fail 'there are no transactions in the reply'
if "$exchange" "$url" "$folder/ca.pem" AAAAAAAAAAAAAAAAAAAAAAAAAAA= "$statement" >"$folder/out"; then
  fail 'another certificate than the pinned one was accepted'
fi
grep -qF "$(cat "$folder/id")" "$folder/out" || fail 'the certificate that came is not named'
