#!/usr/bin/env bash
# Rows as CSV and as lines of JSON: the same columns whatever the files, as docs/csv.md has them.
source "$(dirname "$0")/runner.sh" "$@"
csv_md=$(dirname "$examples")/docs/csv.md

statement 'PLAIN' >plain.ofx

# The columns of each table are those of the document, with and without rows.
expect 0 print --table help
cut -d' ' -f1 out >tables
[ "$(wc -l <tables)" -gt 20 ] || fail 'too few tables'
while read -r table; do
  documented=$(sed -n "/^### $table\$/,/^### /p" "$csv_md" | sed -n '/^```$/,/^```$/p' | sed '/^```/d' | tr -d ' \n')
  for file in plain.ofx "$examples/card.ofx" "$examples/brokerage.ofx" "$examples/payroll-batch.ofx"; do
    expect 0 print --csv --table "$table" "$file"
    [ "$(head -n1 out)" = "$documented" ] || fail "the columns of $table in $file"
  done
done <tables
[ "$(grep -c '^### ' "$csv_md")" -eq "$(wc -l <tables)" ] || fail 'docs/csv.md has other tables'

# The account of each row, in columns of its own.
expect 0 print --csv plain.ofx "$examples/card.ofx" "$examples/brokerage.ofx"
python3 - <<'END' || fail 'the accounts of CSV'
import csv
rows = list(csv.DictReader(open("out", newline="")))
bank = [row for row in rows if row["kind"] == "bank-statement"]
assert len(bank) == 1, bank
wanted = {"account": "1 2 CHECKING", "bank_id": "1", "branch_id": "", "account_id": "2",
          "account_type": "CHECKING", "statement_currency": "USD", "posted": "2026-01-02", "amount": "-0.90"}
assert {key: bank[0][key] for key in wanted} == wanted, bank
card = [row for row in rows if row["kind"] == "card-statement"]
assert card and all(row["account_id"] == "************4410" and row["bank_id"] == "" for row in card), card
held = [row for row in rows if row["kind"] == "investment-statement"]
assert held and all(row["broker_id"] == "harbor.example" and row["account_id"] == "7-4401-22" and row["statement_currency"] == "USD" for row in held), held
assert any(row["traded"] == "2026-03-03" for row in held), held
END

# Where a transfer went: the bank too, in the last column, since those that were there keep their places.
statement 'MOVED<BANKACCTTO><BANKID>777<ACCTID>888<ACCTTYPE>SAVINGS</BANKACCTTO><CURRENCY><CURRATE>1.25<CURSYM>EUR</CURRENCY>' >moved.ofx
expect 0 print --csv moved.ofx
python3 - <<'END' || fail 'the bank of a transfer in CSV'
import csv
[row] = csv.DictReader(open("out", newline=""))
assert (row["to_bank"], row["to_account"], row["rate"]) == ("777", "888", "1.25"), row
assert list(row)[-2:] == ["statement_currency", "to_bank"], row
END
expect 0 print --json-lines moved.ofx
has out '"to_bank":"777"'
expect 0 print --json moved.ofx
has out '"to_bank": "777"'
expect 0 print --wide moved.ofx
for each in 'To bank' 777 'To account' 888 'Rate' 1.25; do has out "$each"; done
expect 0 print moved.ofx
lacks out 777

# Lines of JSON: the same rows, without what is absent.
expect 0 print --csv plain.ofx "$examples/card.ofx" "$examples/brokerage.ofx"
mv out rows.csv
expect 0 print --json-lines plain.ofx "$examples/card.ofx" "$examples/brokerage.ofx"
python3 - <<'END' || fail 'lines of JSON'
import csv, json
lines = [json.loads(line) for line in open("out")]
rows = list(csv.DictReader(open("rows.csv", newline="")))
assert len(lines) == len(rows)
text = lambda value: str(value).lower() if isinstance(value, bool) else str(value)
for line, row in zip(lines, rows):
    assert {key: text(value) for key, value in line.items()} == {key: value for key, value in row.items() if value != "" or key in line}, (line, row)
END
statement "$(printf 'a\033[31mb,"c"\342\200\256\377')" >hostile.ofx
expect 0 print --json-lines hostile.ofx
python3 -c 'import json; [json.loads(line) for line in open("out", encoding="utf-8")]' || fail 'hostile texts in lines of JSON'
expect 0 print --json-lines --table parts "$examples/multipart.mime"
has out '"size":'

# Options that make no sense together, and tables that are none.
expect 64 print --json-lines --csv plain.ofx
expect 64 print --json-lines --json plain.ofx
expect 64 print --table closings plain.ofx
has err '--table needs --csv or --json-lines'
expect 64 print --json-lines --table trnsactions plain.ofx
has err '; did you mean transactions?'

# Standard input without a hyphen, when there is anything in it.
expect 0 print --csv <plain.ofx
has out 'standard input,bank-statement'
expect 0 check < <(cat plain.ofx)
has out 'standard input'
expect 64 print </dev/null
has err 'FILE is needed'
: >nothing
expect 64 check <nothing
python3 "$(dirname "$examples")/tests/command/with_terminal.py" '' "$krofx" print >out
[ $? -eq 64 ] || fail 'a terminal is read from'
has out 'FILE is needed'
finish
