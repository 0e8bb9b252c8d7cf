#!/usr/bin/env bash
# The number of a card that a file has in the place of another account: wherever the file is shown only its
# end is. The numbers of accounts with a bank are shown. The script for long lists streams such a file.
source "$(dirname "$0")/runner.sh" "$@"

card=4111222233334444
masked='************4444'

# The statement of an account: of ACCOUNT NAME AMOUNT
of() {
  printf '%s' '<STMTTRNRS><TRNUID>1<STATUS><CODE>0<SEVERITY>INFO</STATUS><STMTRS><CURDEF>USD' "$1" \
    '<BANKTRANLIST><DTSTART>20260101<DTEND>20260131<STMTTRN><TRNTYPE>DEBIT<DTPOSTED>20260105' \
    "<TRNAMT>$3<FITID>1<NAME>$2<BANKACCTTO><BANKID>1<ACCTID>0033118720<ACCTTYPE>CHECKING</BANKACCTTO></STMTTRN>" \
    "$entries</BANKTRANLIST>" \
    '<LEDGERBAL><BALAMT>1<DTASOF>20260110</LEDGERBAL></STMTRS></STMTTRNRS>'
}
# A file with the statement of a bank account and that of a card among those of the bank, with further
# entries: statements AMOUNT ENTRIES CARD
statements() {
  local entries=$2
  header
  printf '%s' "<OFX>$sign_on<BANKMSGSRSV1>"
  of '<BANKACCTFROM><BANKID>1<ACCTID>00718220946<ACCTTYPE>CHECKING</BANKACCTFROM>' Market -1
  of "${3:-<CCACCTFROM><ACCTID>$card<ACCTKEY>$card</CCACCTFROM>}" Shop "$1"
  printf '%s' '</BANKMSGSRSV1></OFX>'
}
# Expects no output of a file to have the number.
hides() { # FILE
  local arguments
  for arguments in print 'print --wide' 'print --json' 'print --csv' 'print --json-lines' 'sum --by account' \
    'sum --by account --json' 'sum --by account --csv' 'diff other.ofx' 'check --details' 'check --json'; do
    # shellcheck disable=SC2086
    "$krofx" $arguments "$1" >out 2>err
    lacks out $card
    lacks err $card
  done
}

statements -5 '' >card.ofx
statements -6 '' >other.ofx
hides card.ofx
expect 0 print --wide card.ofx
has out "$masked"
has out 00718220946
expect 0 print --show-identifiers card.ofx
has out $card
expect 0 sum --by account card.ofx
has out "$masked"
has out '1 00718220946 CHECKING'
expect 1 diff other.ofx card.ofx
has out "~ $masked"
expect 0 print --account 3334444 card.ofx
has out Shop
lacks out Market
expect 1 check card.ofx
has out '1 account of another kind'
# What is mended is the tag, which is shown.
expect 1 check --details card.ofx
has out 'account-kind <CCACCTFROM> "CCACCTFROM" -> "BANKACCTFROM"'
expect 0 complete -- print card.ofx --account ''
has out 00718220946
lacks out $card

# What is mended in the account is masked too.
statements -5 '' "<CCACCTFROM><ACCTID>$card$(printf '\x02')</CCACCTFROM>" >control.ofx
hides control.ofx
expect 1 check --details control.ofx
has out control-character

# A statement in between that belongs into another message set, so that what comes after it is put back.
python3 - <<'END' >moved.ofx
text = open("card.ofx", newline="").read()
statement = "<CCSTMTTRNRS><TRNUID>1<STATUS><CODE>0<SEVERITY>INFO</STATUS><CCSTMTRS><CURDEF>USD<CCACCTFROM><ACCTID>5500111122224410</CCACCTFROM></CCSTMTRS></CCSTMTTRNRS>"
text = text.replace("<BANKID>1<ACCTID>00718220946", "<ACCTID>00718220946", 1)
at = text.index("</STMTTRNRS>") + len("</STMTTRNRS>")
print(text[:at] + statement + text[at:], end="")
END
hides moved.ofx
expect 0 print --wide moved.ofx
has out "$masked"

# Beside an account of investments, whose number is shown.
python3 - "$examples/brokerage.ofx" <<'END' >both.ofx
import re, sys
text = open("card.ofx", newline="").read()
broker = open(sys.argv[1], newline="").read()
statements = re.search("<INVSTMTMSGSRSV1>.*</INVSTMTMSGSRSV1>", broker, re.DOTALL).group()
at = text.index("</BANKMSGSRSV1>") + len("</BANKMSGSRSV1>")
print(text[:at] + statements + text[at:], end="")
END
hides both.ofx
expect 0 print --wide both.ofx
has out "$(grep -o '<ACCTID>[^<]*' "$examples/brokerage.ofx" | head -1 | cut -c9- | tr -d '\r')"
finish
