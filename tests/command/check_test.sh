#!/usr/bin/env bash
# `krofx check`: every exit status, warnings with their places, missing tags, bad input.
source "$(dirname "$0")/runner.sh" "$@"

statement 'PLAIN' >plain.ofx
expect 0 check plain.ofx
[ "$(cat out)" = 'plain.ofx: clean' ] || fail 'a clean file'
expect 0 check --details plain.ofx
has out 'plain.ofx: status 0, clean'

statement 'X<FOO>bar' >unknown.ofx
expect 1 check unknown.ofx
[ "$(cat out)" = 'unknown.ofx: usable; 1 unknown tag (line 11)' ] || fail 'the summary of an unknown tag'
expect 1 check --details unknown.ofx
has out 'unknown.ofx:11:'
has out 'mended: '
has out '<FOO>'
expect 1 check --json unknown.ofx
has out '"mendings"'
has out '"number"'
has out 'BANKTRANLIST/STMTTRN'
expect 1 check --details --strict unknown.ofx
has out 'or text that cannot be read, was passed over: <FOO>'
has out 'unknown.ofx:11:'
expect 1 check --json --strict unknown.ofx
has out '"line": 11'
has out '"exit": 1'
python3 -m json.tool out >/dev/null || fail 'not JSON'

statement 'X' | sed 's/<DTASOF>20260131//' >lacking.ofx
expect 1 check lacking.ofx
has out 'lacking.ofx: usable; 1 missing tag'
expect 1 check --details lacking.ofx
has out 'missing: <DTASOF> is missing in OFX/BANKMSGSRSV1/STMTTRNRS/STMTRS/LEDGERBAL'

# Bad input: one line that says what is wrong, and status 2.
: >empty.ofx
head -c 300 /dev/urandom >binary.ofx
header >header.ofx
sed 's/^DATA:.*/DATA:NONSENSE/' plain.ofx >wrong.ofx
head -c 500 plain.ofx >cut.ofx
mkdir directory
for bad in empty binary header wrong cut; do
  strict=
  case $bad in wrong | cut) strict=--strict ;; esac
  # shellcheck disable=SC2086  # empty or one word
  expect 2 check $strict $bad.ofx
  has out "$bad.ofx: not usable"
  # shellcheck disable=SC2086
  expect 2 check $strict --json $bad.ofx
  has out '"exit": 2'
  # shellcheck disable=SC2086
  expect 2 print $strict $bad.ofx
  [ "$(wc -l <err)" -eq 1 ] || fail "not one line about $bad.ofx"
  # shellcheck disable=SC2086
  expect 2 rewrite $strict $bad.ofx
  [ -s out ] && fail "rewrite wrote something of $bad.ofx"
done
# What can be understood of them is read, and it is said what was mended.
expect 1 check --details wrong.ofx
has out 'wrong.ofx:2:6: mended: header-value <DATA> "NONSENSE" -> "OFXSGML"'
expect 1 check --details cut.ofx
has out 'mended: cut-off'
expect 0 print cut.ofx
has err 'it breaks off in line '
expect 2 check missing.ofx
has out 'No such file'
expect 2 check directory
has err 'holds no .ofx'
expect 2 rewrite directory
expect 64 check

# A value of a megabyte, deep nesting, tags that end too often or not at all.
statement "$(head -c 60000 /dev/zero | tr '\0' x)" >long.ofx
expect 1 check --details long.ofx
has out 'a text is longer than OFX allows'
{ header; printf '<OFX>'; head -c 1000000 /dev/zero | tr '\0' x; } >mega.ofx
timeout 60 "$krofx" check mega.ofx >out 2>err
[ $? -le 2 ] || fail 'a value of a megabyte'
{ header; for _ in $(seq 10000); do printf '<DEEP>'; done; } >deep.ofx
timeout 60 "$krofx" check deep.ofx >out 2>err
[ $? -le 2 ] || fail 'deep nesting'
{ header; printf '<OFX></OFX></OFX></STMTRS></BANKMSGSRSV1>'; } >ends.ofx
expect 1 check ends.ofx

# A password in a warning.
sed 's/<USERPASS>/<userpass>/; s/<ONETIMEPASS>/<ORG>x<ONETIMEPASS>/' "$examples/request-v2.ofx" >secret.ofx
"$krofx" check --details secret.ofx >out 2>err
lacks out not-a-real-password

# A multipart text whose parts have warnings is not clean.
expect 1 check --details --strict "$examples/multipart.mime"
has out 'status 7, read, with warnings'
lacks out clean
expect 0 print --json --strict "$examples/multipart.mime"
has out '"status": 7'

# A bad value is said of its tag.
for value in '2026XX' '20260102[-5:EST' '20260102120000[99:EST]' '20260102120000[-5:GMT]'; do
  statement PLAIN | sed "s/<DTPOSTED>20260102/<DTPOSTED>$value/" >date.ofx
  "$krofx" check --details date.ofx >out 2>err
  has out '<DTPOSTED>'
  "$krofx" check --json date.ofx >>out 2>>err
  for internal in Convert Extract SetTimeZone; do
    lacks out $internal
  done
done

# What is not OFX is called what it is, and no place is promised that is not named.
not_ofx() {
  expect 2 check "$1"
  has out "$2"
  lacks out 'krofx check'
  expect 2 print "$1"
  has err "$2"
  lacks err 'krofx check'
}
printf '\n<!doctype html><html><body>Sign on</body></html>' >page.ofx
printf '<HTML></HTML>' >old-page.ofx
printf '%%PDF-1.7\n\200' >paper.ofx
printf '\037\213\010\000' >packed.ofx
printf 'PK\003\004x' >zip.ofx
printf '\r\n  \n' >blank.ofx
printf '<?xml version="1.0"?>\n<Document xmlns="camt"><x>1</x></Document>' >other.xml
not_ofx page.ofx 'web page'
not_ofx old-page.ofx 'web page'
not_ofx paper.ofx 'PDF'
not_ofx packed.ofx 'compressed'
not_ofx zip.ofx 'compressed'
not_ofx empty.ofx 'it is empty'
not_ofx blank.ofx 'it is empty'
not_ofx other.xml 'XML without OFX in it'
"$krofx" rewrite --ofx2 "$examples/checking.ofx" >two.xml
expect 0 check two.xml
expect 2 check --strict two.xml
has out 'leave out --strict'
statement 'X<FOO>y' | head -c 600 >place.ofx
expect 2 print --strict place.ofx
has err 'names the place'
expect 2 check --details --strict place.ofx
lacks out 'krofx check'
has out 'place.ofx:11:'

# A choice that was missed is named as one.
choice() {
  sed '/<SECRQ>/,$d' "$examples/brokerage-request.ofx" >choice.ofx
  printf '%s' "<SECRQ>$1</SECRQ></SECLISTRQ></SECLISTTRNRQ></SECLISTMSGSRQV1></OFX>" >>choice.ofx
  expect 1 check --details choice.ofx
  has out "missing: $2"
  has out 'usable; 1 choice of tags not met'
  lacks out 'must be there is missing'
  lacks out '<SECID> is missing'
  lacks out '<TICKER> is missing'
  expect 1 check --json choice.ofx
  has out '"alternatives"'
  has out '"advice"'
}
choice '' 'one of '
has out 'none is'
choice '<TICKER>HRBLX<FIID>QH' 'one of '
has out 'both '
sed '/<USERPASS>/d' "$examples/request-v1.ofx" >no-password.ofx
expect 1 check --details no-password.ofx
has out 'missing: <USERPASS> is missing'
has out 'no-password.ofx: usable; 1 missing tag'

# What is missing is named in every line that speaks of it, and counted once.
unnamed() { grep -nE 'must be there is missing( in .*)?$' "$1"; }
payment() {
  { sed '/<BILLPAYMSGSRQV1>/,$d' "$examples/billpay-request.ofx"
    printf '%s' "<BILLPAYMSGSRQV1><PMTTRNRQ><TRNUID>1<PMTRQ><PMTINFO><BANKACCTFROM><BANKID>1<ACCTID>2" \
      "<ACCTTYPE>CHECKING</BANKACCTFROM><TRNAMT>5$1<PAYACCT>1<DTDUE>20260102$2</PMTINFO></PMTRQ></PMTTRNRQ>" \
      "</BILLPAYMSGSRQV1></OFX>"; } >payment.ofx
  expect 1 check --details payment.ofx
  if unnamed out; then fail 'what is missing is not named'; fi
}
payment '' ''
has out 'missing: one or more of <PAYEE> and <PAYEEID> must be there, and none is'
has out 'payment.ofx: usable; 1 choice of tags not met'
payment '<PAYEEID>1<PAYEE><NAME>A<ADDR1>1<CITY>C<STATE>NY<POSTALCODE>1<PHONE>1</PAYEE>' ''
has out 'missing: <PAYEE> must not be there beside <PAYEEID>'
payment '<PAYEEID>1' "<EXTDPMT><EXTDPMTINV><INVOICE><INVNO>1<INVTOTALAMT>5<INVPAIDAMT>5<INVDATE>20260101\
<INVDESC>d<DISCOUNT><DSCRATE>5<DSCDESC>x</DISCOUNT></INVOICE></EXTDPMTINV></EXTDPMT>"
has out 'missing: <DSCAMT> is missing'
has out 'must be there is missing: <DSCAMT>'
has out 'payment.ofx: usable; 1 missing tag'
expect 1 check --details no-password.ofx
has out 'must be there is missing: <USERPASS>'
account='<BANKACCTFROM><BANKID>1<ACCTID>2<ACCTTYPE>CHECKING</BANKACCTFROM>'
rule() { # MESSAGE-SET BODY ADVICE
  { sed '/^<BILLPAYMSGSRQV1>/,$d' "$examples/billpay-request.ofx"; printf '<%s>%s</%s></OFX>' "$1" "$2" "$1"; } >rule.ofx
  expect 1 check --details rule.ofx
  has out "missing: $3 must be there, and "
  [ "$(grep -c missing out)" -eq 1 ] || fail "more than the rule is said of $2"
  has out 'rule.ofx: usable; 1 choice of tags not met'
}
rule SIGNUPMSGSRQV1 "<ACCTTRNRQ><TRNUID>1<ACCTRQ><SVCADD>${account//FROM/TO}<CCACCTTO><ACCTID>4</CCACCTTO></SVCADD><SVC>BANKSVC</ACCTRQ></ACCTTRNRQ>" \
  'one of <BANKACCTTO>, <CCACCTTO> and <INVACCTTO>'
for way in '<TOKEN>1<REFRESH>Y' ''; do
  rule BANKMSGSRQV1 "<INTRASYNCRQ>$way<REJECTIFMISSING>N$account</INTRASYNCRQ>" 'one of <REFRESH>, <TOKEN> and <TOKENONLY>'
done
rule BANKMSGSRQV1 "<BANKMAILSYNCRQ><TOKEN>1<REJECTIFMISSING>N<INCIMAGES>N<USEHTML>N$account<CCACCTFROM><ACCTID>4</CCACCTFROM></BANKMAILSYNCRQ>" \
  'one of <BANKACCTFROM> and <CCACCTFROM>'
rule BILLPAYMSGSRQV1 '<PMTTRNRQ><TRNUID>1</PMTTRNRQ>' 'one of <PMTCANCRQ>, <PMTMODRQ> and <PMTRQ>'
sed '/^OFXHEADER/d' "$examples/checking.ofx" >no-header.ofx
expect 2 check --details --strict no-header.ofx
has out 'must be there is missing: <OFXHEADER>'
if unnamed out; then fail 'what is missing is not named'; fi

# What a person wants is said first: groups, with the lines where they are together.
expect 1 check "$examples/quirks.ofx"
[ "$(wc -l <out)" -eq 1 ] || fail 'more than a line without --details'
has out 'quirks.ofx: usable; 7 tags in lower case (lines 37-43), 2 unknown tags'
expect 1 check --quiet "$examples/quirks.ofx"
[ ! -s out ] || fail '--quiet prints'
expect 0 check --quiet plain.ofx
expect 2 check --quiet empty.ofx
expect 64 check --quiet --details plain.ofx
expect 1 check --json "$examples/quirks.ofx"
has out '"summary": "usable; 7 tags in lower case'

# Many files: those that are not clean, and how many of each.
mkdir many
for number in $(seq 30); do cp plain.ofx "many/$number.ofx"; done
expect 0 check many
[ "$(cat out)" = '30 files: 30 clean' ] || fail 'many clean files'
cp unknown.ofx many/7.ofx
cp unknown.ofx many/8.ofx
expect 1 check many
[ "$(cat out)" = 'many/7.ofx: usable; 1 unknown tag (line 11)
many/8.ofx: usable; 1 unknown tag (line 11)
30 files: 28 clean, 2 with warnings' ] || fail 'many files'
cp empty.ofx many/9.ofx
expect 2 check --jobs 3 many
has out '30 files: 27 clean, 2 with warnings, 1 not usable'
mkdir folder
touch folder/notes.txt
expect 2 check folder
has err 'folder: the directory holds no .ofx'

# The order is that of the arguments, however many files are read at once.
for form in '' --json --details; do
  for jobs in 1 2 7; do
    # shellcheck disable=SC2086
    expect 2 check $form --jobs $jobs many "$examples"
    cp out "jobs-$jobs"
  done
  cmp -s jobs-1 jobs-2 && cmp -s jobs-1 jobs-7 || fail "--jobs changes the output of $form"
done
expect 64 check --jobs 0 plain.ofx
finish
