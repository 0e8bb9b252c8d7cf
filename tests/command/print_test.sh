#!/usr/bin/env bash
# Every form of `krofx print`, and what must never be shown.
source "$(dirname "$0")/runner.sh" "$@"

statement 'PLAIN' >plain.ofx
expect 0 print plain.ofx
has out 'Bank statement: 1 2 CHECKING'
has out '1000000000000000.10'
has out '-0.90'
expect 0 print --json plain.ofx
has out '"format": "krofx-print"'
has out '"amount": "-0.90"'
has out '"posted": "2026-01-02"'
python3 -m json.tool out >/dev/null || fail 'not JSON'
expect 0 print --csv plain.ofx
has out 'file,kind,account,posted'
has out 'plain.ofx,bank-statement,1 2 CHECKING,2026-01-02'
[ "$(wc -l <out)" -eq 2 ] || fail 'CSV is not a header and a row'

# Standard input, directories, several files.
expect 0 print - <plain.ofx
has out 'standard input'
mkdir -p folder/below && cp plain.ofx folder/below/a.QFX && cp plain.ofx folder/b.ofx && touch folder/c.txt
expect 0 print folder plain.ofx
[ "$(grep -c '^== ' out)" -eq 3 ] || fail 'not three files'
expect 2 print folder missing.ofx
has err 'missing.ofx: No such file'
[ "$(grep -c '^Bank statement' out)" -eq 2 ] || fail 'the good files are not shown'

# Hostile texts: escape sequences, quotes for CSV, bytes of the code page.
statement "$(printf 'a\033[31mb,"c"\342\200\256\377')" >hostile.ofx
for form in '' --json --csv; do
  expect 0 print $form hostile.ofx
  if grep -q "$(printf '\033')" out; then fail "an escape character in print $form"; fi
  iconv -f UTF-8 -t UTF-8 out >/dev/null || fail "print $form is not UTF-8"
done

# Passwords.
for form in '' --json; do
  expect 0 print $form "$examples/request-v1.ofx" "$examples/request-v2.ofx"
  lacks out not-a-real-password
  lacks out 442190
done
for example in "$examples"/*.ofx; do
  expect 0 print "$example"
  expect 0 print --json "$example"
  python3 -m json.tool out >/dev/null || fail "not JSON: $example"
done
expect 64 print
expect 64 print --json --csv plain.ofx
expect 64 print --table closings plain.ofx
expect 64
expect 64 nonsense
for command in print check rewrite extract request 'request statement'; do
  expect 0 $command --help
  has out 'krofx'
done
finish
