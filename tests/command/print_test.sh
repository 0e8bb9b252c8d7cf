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

# An amount in another currency, and one that was converted from it, are two things.
for currency in CURRENCY ORIGCURRENCY; do
  statement PLAIN | sed "s/<NAME>PLAIN/&<$currency><CURRATE>1.25<CURSYM>EUR<\/$currency>/" >$currency.ofx
done
expect 0 print --json CURRENCY.ofx
has out '"currency": "EUR"'
has out '"rate": "1.25"'
lacks out original
expect 0 print --json ORIGCURRENCY.ofx
has out '"original_currency": "EUR"'
has out '"original_rate": "1.25"'
lacks out '"currency": "EUR"'
expect 0 print CURRENCY.ofx
has out 'Currency  '
lacks out 'Converted from'
expect 0 print ORIGCURRENCY.ofx
has out 'Converted from'
expect 0 print --csv CURRENCY.ofx ORIGCURRENCY.ofx
python3 - <<'END' || fail 'the currencies of CSV'
import csv
own, original = csv.DictReader(open("out"))
assert (own["currency"], own["rate"], own["original_currency"]) == ("EUR", "1.25", ""), own
assert (original["currency"], original["original_currency"]) == ("", "EUR"), original
END

# A zone that is GMT is a zone.
posted() {
  statement PLAIN | sed "s/<DTPOSTED>20260102/<DTPOSTED>$1/" >zone.ofx
  expect 0 print --json zone.ofx
  has out "\"posted\": \"$2\""
}
posted '20260102120000[0:GMT]' 2026-01-02T12:00:00+00:00
posted '20260102000000[0:GMT]' 2026-01-02T00:00:00+00:00
posted '20260102120000[-5:EST]' 2026-01-02T12:00:00-05:00
posted 20260102120000 2026-01-02T12:00:00
posted 20260102 2026-01-02

# A table that no file can have.
expect 64 print --csv --table bogus zone.ofx
has err 'krofx: print: --table bogus is not a table; the tables are '
has err 'transactions'
[ ! -s out ] || fail 'a table that is none was printed'
expect 0 print --csv --table closings zone.ofx

# The numbers of cards are shown by their last four characters, those of accounts are shown.
for form in '' --json '--csv'; do
  # shellcheck disable=SC2086
  expect 0 print $form "$examples/card.ofx" "$examples/sign-up-response.ofx" "$examples/transfers-response.ofx"
  lacks out 5500111122224410
  lacks out 4300118822330077
  has out '************4410'
  # shellcheck disable=SC2086
  expect 0 print $form --show-identifiers "$examples/card.ofx"
  has out 5500111122224410
done

# A transfer names its banks.
expect 0 print "$examples/transfers-request.ofx"
has out 'From bank'
has out 'To bank'

# Wide characters take two columns, marks none.
expect 0 print --csv zone.ofx
statement 'ABC' | sed "s/<NAME>ABC/<NAME>日本/; s/<\/STMTTRN>/&<STMTTRN><TRNTYPE>DEBIT<DTPOSTED>20260102<TRNAMT>-.90<FITID>2<NAME>e$(printf '\314\201')tude<\/STMTTRN>&/; s/<\/STMTTRN><\/STMTTRN>/<\/STMTTRN>/" >wide.ofx
expect 0 print wide.ofx
python3 - <<'END' || fail 'columns of wide characters'
import unicodedata
def width(text):
    return sum(0 if unicodedata.combining(c) else 2 if unicodedata.east_asian_width(c) in "WF" else 1 for c in text)
rows = [line for line in open("out", encoding="utf-8") if "DEBIT" in line]
assert len(rows) == 2, rows
ends = {width(row.rstrip("\n")) for row in rows}
assert len(ends) == 1, rows
END

# A damaged tag in front of a password makes it the value of that tag.
damage_user() { sed -z "s/<USERID>[^<]*<USERPASS>/<USERID$1<USERPASS>/" "$examples/request-v1.ofx" >damaged.ofx; }
for damage in ' ada\n' '\t' '><!--ada\n' '><?ada\n'; do
  damage_user "$damage"
  for form in '' --json --strict; do
    "$krofx" print $form damaged.ofx >out 2>err
    lacks out not-a-real-password
    lacks err not-a-real-password
  done
done

damage_user ' ada\n'
expect 0 print --strict damaged.ofx
has out 'User            (not shown)'

# So for the number of a card.
card=5500111122224410
for damage in 's/<CCACCTFROM>[^<]*<ACCTID>/<CCACCTFROMACCTID>/' \
  's/<CURDEF>USD[^<]*<.CURDEF>[^<]*<CCACCTFROM>[^<]*<ACCTID>/<CURDEF USD<CCACCTFROM <ACCTID>/'; do
  sed -z "$damage" "$examples/card.ofx" >damaged.ofx
  ! cmp -s damaged.ofx "$examples/card.ofx" || fail "no damage: $damage"
  for form in print 'print --json' 'print --strict' 'check --details' 'check --json' 'check --strict --details'; do
    "$krofx" $form damaged.ofx >out 2>err
    lacks out $card
    lacks err $card
  done
done
finish
