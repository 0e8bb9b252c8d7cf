#!/usr/bin/env bash
# Large files: their transactions are shown, summed and compared while they are read, have no limit,
# and are the same as those of a file that is read as a whole.
source "$(dirname "$0")/runner.sh" "$@"

# Writes a statement with so many transactions.
large() {
  python3 - "$sign_on" "$(header)" "$@" <<'END'
import sys
sign_on, header, count = sys.argv[1:4]
sys.stdout.reconfigure(newline="\n", encoding="latin-1")
print(header + "\n\n<OFX>" + sign_on + "<BANKMSGSRSV1>")
for statement in range(1, 3):
    print("<STMTTRNRS><TRNUID>1<STATUS><CODE>0<SEVERITY>INFO</STATUS><STMTRS><CURDEF>USD<BANKACCTFROM><BANKID>1<ACCTID>" + str(statement) +
          "<ACCTTYPE>CHECKING</BANKACCTFROM><BANKTRANLIST><DTSTART>20260101<DTEND>20260131")
    for number in range(1, int(count) + 1 if statement == 1 else 4):
        print(f"<STMTTRN><TRNTYPE>DEBIT<DTPOSTED>20260102<TRNAMT>-{number}.25<FITID>{number}<NAME>Grocer, {number}</STMTTRN>")
    print("</BANKTRANLIST><LEDGERBAL><BALAMT>1<DTASOF>20260131</LEDGERBAL></STMTRS></STMTTRNRS>")
print("</BANKMSGSRSV1></OFX>")
END
}

# As many transactions as no list takes.
large 70000 >large.ofx
expect 0 print --csv large.ofx
[ ! -s err ] || fail 'nothing is out of order'
python3 - <<'END' || fail 'the rows of CSV'
import csv
rows = list(csv.DictReader(open("out", newline="")))
assert len(rows) == 70003, len(rows)
for number, row in enumerate(rows[:70000], 1):
    assert row["amount"] == f"-{number}.25" and row["name"] == f"Grocer, {number}", row
    assert (row["account"], row["account_id"], row["statement_currency"]) == ("1 1 CHECKING", "1", "USD"), row
assert [row["account_id"] for row in rows[70000:]] == ["2", "2", "2"]
END
expect 0 print --json large.ofx
python3 - <<'END' || fail 'the rows of JSON'
import json
sections = json.load(open("out"))["files"][0]["sections"]
tables = [section["transactions"] for section in sections if "transactions" in section]
assert [len(table) for table in tables] == [70000, 3], [len(table) for table in tables]
assert tables[0][69999]["amount"] == "-70000.25" and sections[-1]["fields"]["ledger_balance"] == "1"
END
expect 0 print large.ofx
has out 'Grocer, 70000'
has out '70000 transactions   in 0.00   out -2450052500.00   net -2450052500.00'
expect 0 check large.ofx
[ "$(cat out)" = 'large.ofx: clean' ] || fail 'a large file that is clean'
expect 0 sum --by account --csv large.ofx
has out '1 1 CHECKING,USD,70000,0.00,-2450052500.00,-2450052500.00'

# Statements that a tree could hold are read in the same way.
large 4000 >medium.ofx
large 2 >small.ofx
expect 0 print --json-lines medium.ofx
[ "$(wc -l <out)" -eq 4003 ] || fail 'the lines of JSON'
expect 0 diff medium.ofx medium.ofx
expect 1 diff small.ofx medium.ofx
has out '3998 new, 0 gone, 0 changed'
expect 0 print --csv --min -2 medium.ofx
[ "$(wc -l <out)" -eq 3 ] || fail 'the rows that were chosen'
"$krofx" print --csv - <medium.ofx >out 2>err || fail 'standard input'
[ "$(wc -l <out)" -eq 4004 ] || fail 'the rows of standard input'
gzip -k medium.ofx
expect 0 print --csv medium.ofx.gz
[ "$(wc -l <out)" -eq 4004 ] || fail 'the rows of a packed file'
sed 's/<TRNAMT>-7\.25/<TRNAMT>-7,25/' medium.ofx | gzip >damaged.ofx.gz
expect 1 check damaged.ofx.gz
has out 'damaged.ofx.gz: usable; 1 amount with a decimal comma'

# Each once, whatever the order in which files are read.
for jobs in 1 2; do
  expect 0 print --csv --unique --jobs $jobs medium.ofx small.ofx medium.ofx
  [ "$(wc -l <out)" -eq 4004 ] || fail "repeated rows with $jobs jobs"
  expect 0 print --unique --jobs $jobs medium.ofx small.ofx
  has out '4000 transactions   in'
  has out 'Transactions: none'
  expect 0 sum --unique --by account --csv --jobs $jobs small.ofx medium.ofx
  has out '1 1 CHECKING,USD,4000,'
done

# What is out of order is mended and said, also where the parser would take it otherwise.
sed 's/<TRNAMT>-7\.25/<TRNAMT>-7,25/' large.ofx >comma.ofx
expect 0 print --csv comma.ofx
[ "$(wc -l <out)" -eq 70004 ] || fail 'the rows that are mended'
has out ',-7.25,'
has err 'comma.ofx: 1 mending; "krofx check" lists them'
expect 0 print --csv --strict comma.ofx
[ "$(wc -l <out)" -eq 70004 ] || fail 'the rows to the letter'
expect 0 sum --by account --csv comma.ofx
has out '1 1 CHECKING,USD,70000,0.00,-2450052500.00,-2450052500.00'
expect 1 check comma.ofx
has out '1 amount with a decimal comma'

# The mended rows are those of the text as it was meant, however it is damaged.
large 50000 >meant.ofx
"$krofx" print --csv meant.ofx 2>err | cut -d , -f 2- >meant.csv
damaged() {
  expect 0 print --csv damaged.ofx
  cut -d , -f 2- <out | cmp -s - meant.csv || { head -n 5 out >rows; mv rows out; fail "$1"; }
  has err ' mending'
}
sed 's/<[^>]*>/\L&/g' meant.ofx >damaged.ofx
damaged 'small letters'
sed 's/<\/STMTTRN>//' meant.ofx >damaged.ofx
damaged 'no end tags'
sed '1,/^\r*$/d' meant.ofx >damaged.ofx
damaged 'no header'
sed 's/<NAME>/<INTU.X>1<NAME>/' meant.ofx >damaged.ofx
damaged 'private tags'
head -n 5000 comma.ofx >cut.ofx
expect 0 print --csv cut.ofx
has out ',-7.25,'
has err 'breaks off'

# White space makes a file large. All that is said of it stays the same.
mkdir plain padded
cp "$examples"/*.ofx plain
# Transactions with all that there is, and with odd values.
python3 - "$(statement 'A &amp; B')" >plain/every.ofx <<'END'
import sys
sys.stdout.reconfigure(newline="\n", encoding="cp1252")
print(sys.argv[1].replace("</STMTTRN>", """<MEMO>caf\u00e9 \u201cquoted\u201d, "both"&lt;br&gt;</STMTTRN>
<STMTTRN><TRNTYPE>CHECK<DTPOSTED>20260102120000.500[-5.50:EST]<DTUSER>20260103000000[0:GMT]<DTAVAIL>20260104120000[5:PKT]
<TRNAMT>-0012.500<FITID>every<CORRECTFITID>old<CORRECTACTION>REPLACE<SRVRTID>server<CHECKNUM>0012<REFNUM>reference<SIC>1234
<PAYEEID>payee<NAME>Name<BANKACCTTO><BANKID>9<ACCTID>to 1<ACCTTYPE>SAVINGS</BANKACCTTO><MEMO>memo
<CURRENCY><CURRATE>1.10<CURSYM>EUR</CURRENCY></STMTTRN>
<STMTTRN><TRNTYPE>XFER<DTPOSTED>20260102115959<TRNAMT>+.5<FITID>2<PAYEE><NAME>Of the payee<ADDR1>1 Road<CITY>Town<STATE>NY
<POSTALCODE>10001<PHONE>1</PAYEE><CCACCTTO><ACCTID>4111222233334444</CCACCTTO><MEMO>USERPASS>secret
<ORIGCURRENCY><CURRATE>.5<CURSYM>CHF</ORIGCURRENCY></STMTTRN>"""))
END
# Texts that are out of order.
sed 's/<FITID>1/<FITID>1<TRNAMT>-7/' plain/every.ofx >plain/repeated.ofx
sed -e 's/<FITID>every//' -e 's/<DTPOSTED>/<dtposted>/' plain/every.ofx >plain/missing.ofx
sed 's/<NAME>Name/<NAME>This is a name that is longer than it may be/' plain/every.ofx >plain/long.ofx
cat plain/every.ofx plain/card.ofx >plain/two.ofx
for file in plain/*.ofx; do
  { cat "$file"; head -c 4300000 /dev/zero | tr '\0' '\n'; } >"padded/$(basename "$file")"
done
for use in 'print' 'print --json' 'print --csv' 'print --json-lines' 'print --csv --table closings' 'print --csv --strict' 'check' \
  'check --details' 'sum'; do
  for folder in plain padded; do
    # shellcheck disable=SC2086
    (cd "$folder" && "$krofx" $use ./*.ofx >"../$folder.out" 2>"../$folder.err"; echo $? >>"../$folder.out")
  done
  cmp -s plain.out padded.out && cmp -s plain.err padded.err || { diff plain.out padded.out | head -5 >out; fail "$use"; }
done

# What does not fit on a disk.
if [ -e /dev/full ]; then
  "$krofx" print --csv medium.ofx >/dev/full 2>err
  [ $? -eq 2 ] || fail 'a full disk'
  [ "$(grep -c 'standard output' err)" -eq 1 ] || fail 'a full disk is said once'
fi
finish
