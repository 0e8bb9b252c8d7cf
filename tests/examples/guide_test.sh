#!/usr/bin/env bash
# The programs of the guide that write, answer and send requests: guide_test.sh ASK EXCHANGE IMPORT
# BATCH ANSWER SERVER EXAMPLES
set -u
ask=$1 exchange=$2 import=$3 batch=$4 answer=$5 server=$6 examples=$7
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

"$batch" 17 >"$folder/batch.ofx" || fail 'batch failed'
grep -q '<TOKEN>17' "$folder/batch.ofx" || fail 'there is no synchronisation in the batch'
[ "$("$import" "$folder/batch.ofx")" = '' ] || fail 'the batch does not read clean'
"$answer" "$folder/batch.ofx" >"$folder/answer.ofx" || fail 'answer failed'
grep -q '<BALAMT>1288.41' "$folder/answer.ofx" || fail 'there is no statement in the answer'
[ "$("$import" "$folder/answer.ofx")" = '' ] || fail 'the answer does not read clean'
"$answer" "$examples/transfers-request.ofx" >"$folder/refused.ofx" || fail 'answer failed'
grep -q '<CODE>2028' "$folder/refused.ofx" || fail 'a transfer was not refused'
[ "$("$import" "$folder/refused.ofx")" = '' ] || fail 'the refusals do not read clean'

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
