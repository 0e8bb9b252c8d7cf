# What the tests of the command share. Sourced, with the command and the examples as arguments.
# shellcheck shell=bash
set -u
krofx=$1
# shellcheck disable=SC2034
examples=$2
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
cd "$work" || exit 1
unset KROFX_PASSWORD
failures=0

# Notes a failure and shows what the last run printed.
fail() {
  echo "FAILED: $*"
  head -c 2000 out err
  failures=$((failures + 1))
}

# Runs the command and expects an exit status: expect STATUS ARGUMENT...
expect() {
  local wanted=$1 got
  shift
  "$krofx" "$@" >out 2>err
  got=$?
  [ "$got" -eq "$wanted" ] || fail "krofx $* gave $got, not $wanted"
}

# Expects a text in a file: has FILE TEXT
has() { grep -qF -- "$2" "$1" || fail "no \"$2\" in $1"; }

# Expects a text not to be in a file: lacks FILE TEXT
lacks() { if grep -qF -- "$2" "$1"; then fail "\"$2\" in $1"; fi; }

header() {
  printf '%s\n' OFXHEADER:100 DATA:OFXSGML VERSION:102 SECURITY:NONE ENCODING:USASCII CHARSET:1252 \
    COMPRESSION:NONE OLDFILEUID:NONE NEWFILEUID:NONE ''
}

sign_on='<SIGNONMSGSRSV1><SONRS><STATUS><CODE>0<SEVERITY>INFO</STATUS><DTSERVER>20260101<LANGUAGE>ENG</SONRS></SIGNONMSGSRSV1>'

# Prints a statement whose transaction has the given name.
statement() {
  header
  printf '%s' "<OFX>$sign_on<BANKMSGSRSV1><STMTTRNRS><TRNUID>1<STATUS><CODE>0<SEVERITY>INFO</STATUS>" \
    '<STMTRS><CURDEF>USD<BANKACCTFROM><BANKID>1<ACCTID>2<ACCTTYPE>CHECKING</BANKACCTFROM>' \
    '<BANKTRANLIST><DTSTART>20260101<DTEND>20260131<STMTTRN><TRNTYPE>DEBIT<DTPOSTED>20260102' \
    "<TRNAMT>-.90<FITID>1<NAME>$1</STMTTRN></BANKTRANLIST>" \
    '<LEDGERBAL><BALAMT>1000000000000000.10<DTASOF>20260131</LEDGERBAL></STMTRS></STMTTRNRS>' \
    '</BANKMSGSRSV1></OFX>'
}

finish() { [ "$failures" -eq 0 ] || exit 1; }
