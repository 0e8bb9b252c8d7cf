#!/usr/bin/env bash
# Investments: what `krofx print` shows of a brokerage statement, and `krofx request investment`.
source "$(dirname "$0")/runner.sh" "$@"

for version in '' -v2; do
  expect 0 check "$examples/brokerage$version.ofx"
  expect 0 check "$examples/brokerage-request$version.ofx"
  expect 0 print "$examples/brokerage$version.ofx"
  has out 'Investment statement: harbor.example 7-4401-22'
  # A name and a ticker that are only in the security list, beside positions, transactions, orders.
  for row in 'POSSTOCK +Green Mills Incorporated +GRML ' 'BUYSTOCK +BUY +Green Mills Incorporated +GRML ' \
    'OOSWITCHMF +Harbor Balanced Fund +HRBLX +Lighthouse Small Companies' \
    'INVBANKTRAN +DEP +15000 ' 'Available cash +2318.47' 'Margin rate +Interest on margin'; do
    grep -qE -- "$row" out || fail "no row like $row"
  done
  expect 0 print --json "$examples/brokerage$version.ofx"
  has out '"available_cash": "2318.47"'
  has out '"into_security": "Lighthouse Small Companies"'
  python3 - out <<'PYTHON' || fail 'JSON without one of each kind'
import json, sys
sections = {s["kind"]: s for s in json.load(open(sys.argv[1]))["files"][0]["sections"]}
statement = sections["investment-statement"]
kinds = {table: {row["type"] for row in statement[table]} for table in ("positions", "transactions", "orders")}
kinds["securities"] = {row["type"] for row in sections["securities"]["securities"]}
assert {table: len(types) for table, types in kinds.items()} == {
    "positions": 5, "transactions": 21, "orders": 11, "securities": 5}, kinds
sale = next(row for row in statement["transactions"] if row["type"] == "SELLSTOCK")
assert (sale["units"], sale["price"], sale["total"]) == ("-40", "28.10", "1114.05"), sale
assert (sale["security"], sale["security_sub_account"]) == ("Green Mills Incorporated", "CASH"), sale
PYTHON
  expect 0 print --csv --table positions "$examples/brokerage$version.ofx"
  [ "$(wc -l <out)" -eq 8 ] || fail 'CSV is not a header and seven positions'
  has out ',Treasury 4 1/8 05/15/2036,'
done

# Without a list there is no name, but the identifier.
sed '/<SECLISTMSGSRSV1>/,/<\/SECLISTMSGSRSV1>/d' "$examples/brokerage.ofx" >alone.ofx
expect 0 print alone.ofx
has out 931142103
lacks out 'Green Mills Incorporated'

export SECRET=sesame-99
sign_on_options=(--org HARBOR --user ada --password-env SECRET)
account=(--broker harbor.example --account 7-4401-22)
for version in '' --v2; do
  expect 0 request investment "${sign_on_options[@]}" "${account[@]}" $version --from 2026-01-01 --to 20260131 \
    --as-of 2026-01-31 --no-orders -o rq.ofx --force
  expect 0 check rq.ofx
  for element in '<DTSTART>20260101' '<DTEND>20260131' '<INCOO>N' '<DTASOF>20260131' '<INCBAL>Y'; do
    has rq.ofx "$element"
  done
  expect 0 print rq.ofx
  has out 'Request for an investment statement: harbor.example 7-4401-22'
  lacks out sesame-99
done
bad() {
  local message=$1
  shift
  expect 64 request investment "${sign_on_options[@]}" "$@"
  has err "$message"
}
bad 'no more than 22' --broker 12345678901234567890123 --account 1
bad '--as-of soon is not a date' "${account[@]}" --as-of soon
bad '--from soon is not a date' "${account[@]}" --from soon
expect 64 request investment "${sign_on_options[@]}" --account 1
expect 0 request investment --help
finish
