#!/usr/bin/env bash
# Choosing transactions, their totals and their sums.
source "$(dirname "$0")/runner.sh" "$@"
checking=$examples/checking.ofx

# rows COUNT ARGUMENT...: so many rows of CSV.
rows() {
  local wanted=$1
  shift
  expect 0 print --csv "$@"
  [ $(($(wc -l <out) - 1)) -eq "$wanted" ] || fail "krofx print --csv $* has not $wanted rows"
}

# Totals below a table, exact, a line for each currency.
expect 0 print "$checking"
has out '  61 transactions   in 9258.49   out -5279.17   net 3979.32'
expect 0 print "$examples/brokerage.ofx"
has out '  6 positions   value 11178.27   USD'
has out '  1 position   value 80   EUR'
has out '   out -566.95   net -566.95   EUR'
statement A | sed 's/<TRNAMT>-.90/<TRNAMT>9999999999999999.99/; s/<\/STMTTRN>/&<STMTTRN><TRNTYPE>FEE<DTPOSTED>20260103<TRNAMT>-.01<FITID>2<\/STMTTRN>/' >large.ofx
expect 0 print large.ofx
has out '2 transactions   in 9999999999999999.99   out -0.01   net 9999999999999999.98'

# Days, both of them included.
rows 68 "$checking"
rows 4 --from 2026-01-28 --to 2026-01-29 --account 0946 "$checking"
rows 33 --from 20260101 "$checking"
rows 35 --to 2025-12-31 "$checking"
rows 0 --from 2030-01-01 "$checking"
for span in 20d 3w 1m 1y; do
  statement RECENT | sed "s/<DTPOSTED>20260102/<DTPOSTED>$(date -d '10 days ago' +%Y%m%d)/" >recent.ofx
  rows 1 --from "-$span" recent.ofx
done
rows 0 --from -3d recent.ofx
rows 1 --to -3d recent.ofx

# Accounts by the end of their number; a card's own digits count, not the stars.
rows 61 --account 00718220946 "$checking"
rows 7 --account 954 "$checking"
rows 0 --account 211370545 "$checking"
card=$(expect 0 print --csv --show-identifiers "$examples/card.ofx"; sed -n 2p out | cut -d, -f3)
rows "$(($(wc -l <out) - 1))" --account "${card: -8}" "$examples/card.ofx"
lacks out "$card"
expect 0 print --account 0946 "$checking"
has out '00718220946'
lacks out '00718220954'
lacks out 'Sign-on'

# Texts in any case, types, amounts with their sign.
rows 4 --match 'sunrise BAKERY' --account 0946 --max -11.5 "$checking"
statement 'CAFÉ ZOË' >accents.ofx
rows 1 --match 'é zo' accents.ofx
rows 4 --type check "$checking"
rows 1 --type BUYSTOCK --match mills --min -567 --max -566 "$examples/brokerage.ofx"
rows 1 --min 1842.50 --max 1842.50 --to 2025-12-10 "$checking"
rows 2 --max -500 --account 0946 "$checking"

# What several downloads repeat is dropped once asked for.
rows 136 "$checking" "$checking"
rows 68 --unique "$checking" "$checking"
rows 68 --unique --jobs 4 "$checking" "$checking" "$checking" "$checking"
expect 0 sum --unique --by currency --csv "$checking" "$checking"
has out 'USD,68,'

# Two of one file stay, even if they have one identifier.
statement A >twice.ofx
python3 - <<'END'
text = open("twice.ofx", newline="").read()
at = text.index("<STMTTRN>")
end = text.index("</STMTTRN>") + len("</STMTTRN>")
open("twice.ofx", "w", newline="").write(text[:end] + text[at:end] + text[end:])
END
rows 2 --unique twice.ofx twice.ofx

# Other forms take the same choice.
expect 0 print --json --type CHECK "$checking"
python3 - <<'END' || fail 'the choice of JSON'
import json
sections = json.load(open("out"))["files"][0]["sections"]
assert {section["kind"] for section in sections} == {"bank-statement"}, sections
assert [row["type"] for section in sections for row in section["transactions"]] == ["CHECK"] * 4
END

# What is no choice.
refused() {
  expect 64 print "${@:2}" "$checking"
  has err "$1"
}
refused '--from 2026-02-30 is not a day' --from 2026-02-30
refused '--to -30x is not a day' --to -30x
refused '--min 10 is more than --max 5' --min 10 --max 5
refused '--min -5 is more than --max -10.5' --min -5 --max -10.5
refused '--from 2026-02-01 is after --to 2026-01-01' --from 2026-02-01 --to 2026-01-01
refused '--min 1,50 is not an amount' --min 1,50
refused '; did you mean CHECK?' --type chek
refused 'only transactions can be chosen' --csv --table closings --min 1

# Sums.
expect 0 sum "$checking"
has out '2025-12  USD          35  5789.34  -3305.06  2484.28'
has out '68 transactions   in 10092.76   out -5914.17   net 4178.59'
expect 0 sum --by month --csv --account 0946 "$checking"
[ "$(head -n1 out)" = 'month,currency,count,in,out,net' ] || fail 'the columns of sums'
expect 0 sum --by week --csv "$checking"
has out '2026-W01,USD,7,1854.34,-1545.33,309.01'
expect 0 sum --by account --csv "$checking"
has out '211370545 014 00718220946 CHECKING,USD,61,9258.49,-5279.17,3979.32'
expect 0 sum --by type --csv "$checking"
has out 'CHECK,USD,4,0.00,-3001.15,-3001.15'
expect 0 sum --by currency --csv "$checking" "$examples/brokerage.ofx"
[ "$(cat out)" = 'currency,count,in,out,net
EUR,1,0.00,-566.95,-566.95
USD,89,28445.11,-18204.07,10241.04' ] || fail 'currencies are not kept apart'
expect 0 sum --by name --json "$checking"
python3 - <<'END' || fail 'the JSON of sums'
import json
sums = json.load(open("out"))
assert (sums["format"], sums["version"], sums["by"]) == ("krofx-sum", 1, "name")
bakery = [each for each in sums["sums"] if each["name"] == "SUNRISE BAKERY"]
assert bakery == [{"name": "SUNRISE BAKERY", "currency": "USD", "count": 7, "in": "0.00", "out": "-94.64", "net": "-94.64"}], bakery
END
expect 0 sum --by name "$examples/card.ofx"
expect 0 sum --by account "$examples/card.ofx"
lacks out 5500111122224410
expect 64 sum --by moth "$checking"
has err 'did you mean month?'
expect 2 sum missing.ofx
expect 0 sum <"$checking"
expect 64 sum </dev/null
finish
