#!/usr/bin/env bash
# Lists that are longer than a tree takes: the rows of every table are printed whole, in the order of a
# list that a tree takes, in little memory; and check says what is missing in them.
source "$(dirname "$0")/runner.sh" "$@"

# Writes the entries of a kind from FIRST to LAST: entries KIND FIRST LAST
entries() {
  python3 - "$@" <<'END'
import sys
kind, first, last = sys.argv[1], int(sys.argv[2]), int(sys.argv[3])
sys.stdout.reconfigure(newline="\n")
def security(number):
    return f"<SECID><UNIQUEID>{number % 3}<UNIQUEIDTYPE>CUSIP</SECID>"
def info(number):
    return (f"<STOCKINFO><SECINFO><SECID><UNIQUEID>{number}<UNIQUEIDTYPE>CUSIP</SECID><SECNAME>Security {number}"
            f"<TICKER>T{number}</SECINFO></STOCKINFO>")
def closing(number):
    return f"<CLOSING><FITID>{number}<DTCLOSE>20260131<BALOPEN>1<BALCLOSE>{number}.25<DTPOSTSTART>20260101<DTPOSTEND>20260131</CLOSING>"
def position(number): return held("POSMF" if number % 300 == 0 else "POSSTOCK", number)
def stock(number): return held("POSSTOCK", number)
def fund(number): return held("POSMF", number)
def either(number): return held("POSMF" if number % 2 == 0 else "POSSTOCK", number)
def held(tag, number):
    return (f"<{tag}><INVPOS>{security(number)}<HELDINACCT>CASH<POSTYPE>LONG<UNITS>{number}<UNITPRICE>1<MKTVAL>{number}.25"
            f"<DTPRICEASOF>20260131</INVPOS></{tag}>")
def trade(number):
    if number % 300 == 0:
        return (f"<INVBANKTRAN><STMTTRN><TRNTYPE>DEBIT<DTPOSTED>20260102<TRNAMT>-{number}<FITID>{number}<NAME>Fee</STMTTRN>"
                "<SUBACCTFUND>CASH</INVBANKTRAN>")
    return (f"<BUYSTOCK><INVBUY><INVTRAN><FITID>{number}<DTTRADE>20260102</INVTRAN>{security(number)}<UNITS>{number}"
            f"<UNITPRICE>1<TOTAL>-{number}<SUBACCTSEC>CASH<SUBACCTFUND>CASH</INVBUY><BUYTYPE>BUY</BUYSTOCK>")
for number in range(first, last + 1): print(globals()[kind](number))
END
}
status='<TRNUID>1<STATUS><CODE>0<SEVERITY>INFO</STATUS>'
# Bank closings: closings FIRST LAST
closings() {
  header
  echo "<OFX>$sign_on<BANKMSGSRSV1><STMTENDTRNRS>$status<STMTENDRS><CURDEF>USD"
  echo '<BANKACCTFROM><BANKID>1<ACCTID>2<ACCTTYPE>CHECKING</BANKACCTFROM>'
  entries closing "$@"
  echo '</STMTENDRS></STMTENDTRNRS></BANKMSGSRSV1></OFX>'
}
# The positions of a new account: account NUMBER KIND FIRST LAST
account() {
  echo "<INVSTMTTRNRS>$status<INVSTMTRS><DTASOF>20260131<CURDEF>USD<INVACCTFROM><BROKERID>b.example<ACCTID>$1</INVACCTFROM><INVPOSLIST>"
  entries "${@:2}"
  echo "</INVPOSLIST></INVSTMTRS></INVSTMTTRNRS>"
}
# A statement of accounts on standard input, and descriptions of securities: with_securities FIRST LAST
with_securities() {
  header
  echo "<OFX>$sign_on<INVSTMTMSGSRSV1>"
  cat
  echo '</INVSTMTMSGSRSV1><SECLISTMSGSRSV1><SECLIST>'
  entries info "$@"
  echo '</SECLIST></SECLISTMSGSRSV1></OFX>'
}
# The list of an investment statement, after a short one of another account: investment LIST KIND FIRST LAST
investment() {
  local account list=$1
  header
  echo "<OFX>$sign_on<INVSTMTMSGSRSV1>"
  for account in 76 77; do
    echo "<INVSTMTTRNRS>$status<INVSTMTRS><DTASOF>20260131<CURDEF>USD<INVACCTFROM><BROKERID>b.example<ACCTID>$account</INVACCTFROM><$list>"
    [ "$list" = INVPOSLIST ] || echo '<DTSTART>20260101<DTEND>20260131'
    if [ $account = 76 ]; then entries "$2" 299 301; else entries "$2" "$3" "$4"; fi
    echo "</$list></INVSTMTRS></INVSTMTTRNRS>"
  done
  echo '</INVSTMTMSGSRSV1><SECLISTMSGSRSV1><SECLIST>'
  entries info 0 2
  echo '</SECLIST></SECLISTMSGSRSV1></OFX>'
}
# Writes a file with the first entry of a tag so many times: repeat FILE TAG COUNT
repeat() {
  python3 - "$@" <<'END'
import re, sys
name, tag, count = sys.argv[1], re.escape(sys.argv[2]), int(sys.argv[3])
text = open(name, newline="", encoding="latin-1").read()
entry = re.search(rf"<{tag}>.*?</{tag}>\s*", text, re.S)
sys.stdout.reconfigure(newline="", encoding="latin-1")
print(text[:entry.end()] + entry[0] * (count - 1) + text[entry.end():], end="")
END
}

# Trees hold each half, and print what the whole must come to: kind by kind.
same_rows() {
  local table=$1 part
  shift
  "$@" 1 33000 >first.ofx
  "$@" 33001 66000 >second.ofx
  "$@" 1 66000 >long.ofx
  for part in first second long; do
    expect 0 print --csv --table "$table" $part.ofx
    [ ! -s err ] || fail "something is said about $table"
    mv out $part.csv
  done
  python3 - <<'END' || fail "the rows of $table"
import csv
def rows(name):
    with open(name + ".csv", newline="") as file:
        return [dict(row, file="") for row in csv.DictReader(file)]
def of(rows, account): return [row for row in rows if row["account_id"] == account]
first, second, long = rows("first"), rows("second"), rows("long")
account = long[-1]["account_id"]
kinds = list(dict.fromkeys(row.get("type") for row in of(first, account)))
both = [row for kind in kinds for row in of(first, account) + of(second, account) if row.get("type") == kind]
assert len(both) == 66000 and of(long, account) == both
assert of(long, "76") == of(first, "76")
END
}
same_rows positions investment INVPOSLIST position
expect 0 check long.ofx
[ "$(cat out)" = 'long.ofx: clean' ] || fail 'a long file that is clean'
same_rows transactions investment INVTRANLIST trade
expect 0 sum --by account --csv long.ofx
has out ',66000,'
same_rows closings closings
expect 0 print --json-lines --table closings long.ofx
[ "$(wc -l <out)" -eq 66000 ] || fail 'the lines of JSON'
expect 0 print --json long.ofx
[ "$(grep -c '"closing_balance"' out)" -eq 66000 ] || fail 'the table of JSON'
expect 0 print long.ofx
has out 66000.25
"$krofx" print --csv --table closings - <long.ofx >out 2>err || fail 'standard input'
[ "$(wc -l <out)" -eq 66001 ] || fail 'the rows of standard input'

# Lists of several kinds that are long in other accounts only come kind by kind too, and each row has its own texts.
# A list of securities may be long as well.
for count in 3 66000; do
  { account 76 stock 1 $count; account 77 fund 1 $count; account 78 either 1 6; } | with_securities 0 2 >kinds.ofx
  expect 0 print --csv --table positions kinds.ofx
  [ ! -s err ] || fail 'something is said about kinds'
  grep 'b.example 78,' out >$count.kinds
  grep -c 'Security' out >>kinds.counts
  account 76 stock 1 3 | with_securities $((2 - count)) 2 >securities.ofx
  expect 0 print --csv --table positions securities.ofx
  [ ! -s err ] || fail 'something is said about securities'
  mv out $count.securities
done
[ "$(tr '\n' ' ' <kinds.counts)" = '12 132006 ' ] || fail "not all positions: $(cat kinds.counts)"
cmp -s 3.kinds 66000.kinds && [ "$(wc -l <3.kinds)" -eq 6 ] || fail 'the positions of two kinds'
cmp -s 3.securities 66000.securities || fail 'the names of securities'
has 66000.securities 'Security 2'

# Little memory, where a sanitizer does not take more than that for itself.
limit=150000
if (ulimit -v $limit && "$krofx" --version) >out 2>err; then
  for use in 'print --csv --table closings' check; do
    # shellcheck disable=SC2086
    (ulimit -v $limit && "$krofx" $use long.ofx) >out 2>err || fail "$use takes more memory"
  done
fi

# What is out of order is mended.
sed -e 's/<BALCLOSE>7\.25/<BALCLOSE>7,25/' -e 's/<BALCLOSE>8\.25/<INTU.X>1<BALCLOSE>8.25/' long.ofx >damaged.ofx
expect 0 print --csv --table closings damaged.ofx
[ "$(wc -l <out)" -eq 66001 ] || fail 'the rows that are mended'
has out ',7.25,'
has err 'damaged.ofx: 2 mendings'

# What is missing is said as of a tree.
for count in 60 66000; do
  closings 1 $count | sed -e 's/<FITID>5<DTCLOSE>/<DTCLOSE>/' -e 's/<FITID>42<DTCLOSE>/<DTCLOSE>/' >missing.ofx
  for strict in '' --strict; do
    # shellcheck disable=SC2086
    expect 1 check --details $strict missing.ofx
    grep -v ' a tag or header that must be there' out
  done >$count.details
done
cmp -s 60.details 66000.details || fail 'what is missing in a long list'
grep -q 'missing: <FITID> is missing in OFX/BANKMSGSRSV1/STMTENDTRNRS/STMTENDRS/CLOSING\[42\]' 66000.details ||
  fail 'the place of what is missing'
closings 1 100003 | sed 's/<FITID>[0-9]*<DTCLOSE>/<DTCLOSE>/' >missing.ofx
expect 1 check --json missing.ofx
has out 'usable; 100003 missing tags'
has out '"missing_unlisted": 3'

# Lists in texts that are smaller, and the values of their rows.
repeat "$examples/payroll-batch.ofx" N.TAXLINE 66000 >list.ofx
for each in "$examples/payroll-batch.ofx" list.ofx; do
  expect 0 print --csv --table lines "$each"
  wc -l <out >>counts
  cut -d , -f 2- out | sort -u >"$(basename "$each").rows"
  # A sum that would lack rows is not shown.
  "$krofx" print --json "$each" | grep -c '"taxes_total"' >>totals
done
[ "$(tail -n 1 counts)" -eq $(($(head -n 1 counts) + 65999)) ] || fail 'the rows of a payroll'
cmp -s list.ofx.rows payroll-batch.ofx.rows || fail 'the values of a payroll'
[ "$(tail -n 1 totals)" -lt "$(head -n 1 totals)" ] || fail 'a sum of a part of the rows'

# A list may be too long in a small text as well, and in several accounts.
payroll() {
  header
  echo "<OFX>$sign_on<N.PAYROLLMSGSRSV1><N.PAYROLLUPDATERS><TOKEN>8<N.PAYCHKNEXTID>1<N.PAYROLLTXNEXTID>1<N.EMPNEXTID>1"
  echo '<N.PITEMNEXTID>1<N.PAYROLLUPDATEDATA>'
  for ((number = 0; number < $2; ++number)); do printf '%s' "$1"; done
  echo '</N.PAYROLLUPDATEDATA></N.PAYROLLUPDATERS></N.PAYROLLMSGSRSV1></OFX>'
}
payroll '<N.PITEMMOD><N.PITEMID>4</N.PITEMMOD>' 66000 >items.ofx
for item in N.PITEMMOD n.pitemmod; do
  sed "0,/<N.PITEMMOD>/s//<$item>/" items.ofx >changed.ofx
  expect 0 print --csv --table items changed.ofx
  [ "$(wc -l <out)" -eq 66001 ] || fail "the rows of $item"
done
has err '1 mending'
{ account 76 stock 1 65535; account 77 stock 1 65536; } | with_securities 0 2 >accounts.ofx
expect 0 print --csv --table positions accounts.ofx
[ "$(wc -l <out)" -eq 131072 ] || fail 'the rows of two accounts'

# What has a section of its own is held.
payroll '<N.EMPMOD><N.EMPID>22</N.EMPMOD>' 66000 >employees.ofx
expect 2 print --csv --table employees employees.ofx
has err '<N.PAYROLLUPDATEDATA> has more than 65535 entries of one kind'
expect 2 rewrite employees.ofx -o employees.ofx
has err 'the first 65535 were read; nothing was written'
wrappers() { # SIGN-ON SET WRAPPER
  header
  echo "<OFX>$1<$2>"
  for ((number = 0; number < 66000; ++number)); do echo "$3"; done
  echo "</$2></OFX>"
}
wrappers "$sign_on" BANKMSGSRSV1 "<STMTTRNRS>$status</STMTTRNRS>" >wrappers.ofx
expect 2 print --csv wrappers.ofx
has err '<BANKMSGSRSV1> has more than 65535 entries of one kind, which is more than can be held; the first 65535 were read'
expect 2 check wrappers.ofx
signing_on='<SIGNONMSGSRQV1><SONRQ><DTCLIENT>20260131<USERID>lind<USERPASS>not-a-real-password<LANGUAGE>ENG<APPID>KROFX<APPVER>0100
</SONRQ></SIGNONMSGSRQV1>'
wrappers "$signing_on" BANKMSGSRQV1 '<STMTTRNRQ><TRNUID>1</STMTTRNRQ>' >requests.ofx
expect 2 print --csv requests.ofx
has err '<BANKMSGSRQV1> has more than 65535 entries of one kind'
# Cards in the place of bank accounts, at both ends of a list of accounts.
card=4111222233334444
masked='************4444'
{
  header
  printf '%s' "<OFX>$sign_on<SIGNUPMSGSRSV1><ACCTINFOTRNRS>$status<ACCTINFORS><DTACCTUP>20260101"
  python3 - "$card" <<'END'
import sys
bank = "<BANKACCTFROM><BANKID>1<ACCTID>{}<ACCTTYPE>CHECKING</BANKACCTFROM>"
card = f"<CCACCTFROM><ACCTID>{sys.argv[1]}</CCACCTFROM>"
for n in range(1000000, 1070000):
    account = card if n in (1000003, 1069000) else bank.format(n)
    print(f"<ACCTINFO><BANKACCTINFO>{account}<SUPTXDL>Y<XFERSRC>N<XFERDEST>N<SVCSTATUS>ACTIVE</BANKACCTINFO></ACCTINFO>")
END
  printf '%s' '</ACCTINFORS></ACCTINFOTRNRS></SIGNUPMSGSRSV1></OFX>'
} >accounts.ofx
expect 0 print --csv --table accounts accounts.ofx
lacks out $card
[ "$(grep -cF "$masked" out)" -eq 2 ] || fail 'the cards of a long list'
[ "$(grep -c ',10[0-9]\{5\},' out)" -eq 69998 ] || fail 'the other accounts of a long list'
expect 1 check --details accounts.ofx
lacks out $card

# A card in the statement of a bank, of which more is mended than is recorded.
statement shop | sed "s|<BANKACCTFROM>.*</BANKACCTFROM>|<CCACCTFROM><ACCTID>$card</CCACCTFROM>|" |
  sed 's/<TRNAMT>-.90/<TRNAMT>-1,25/' >one.ofx
repeat one.ofx STMTTRN 100002 >many.ofx
expect 0 print --csv many.ofx
has err ' more;'
lacks out $card
has out "$masked"
finish
