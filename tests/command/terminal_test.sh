#!/usr/bin/env bash
# What `krofx print` shows on terminals of 80 and 120 columns, and what elsewhere.
source "$(dirname "$0")/runner.sh" "$@"
tests=$(dirname "$examples")/tests/command

# Runs the command on a terminal: on_terminal COLUMNS ARGUMENT...
on_terminal() {
  local columns=$1
  shift
  TERM=xterm NO_COLOR=$no_color python3 "$tests/on_terminal.py" "$columns" "$krofx" "$@" >out 2>err || fail "krofx $* on a terminal"
}
no_color=

# Every line fits, whatever the file, and the amounts are all there.
cat >fits.py <<'END'
import re, sys, unicodedata
limit = int(sys.argv[1])
def width(text):
    return sum(0 if unicodedata.combining(c) else 2 if unicodedata.east_asian_width(c) in "WF" else 1 for c in text)
text = re.sub("\033\\[[0-9;]*m", "", open("out", encoding="utf-8").read())
wide = [line for line in text.splitlines() if width(line) > limit]
assert not wide, wide[:3]
END
statement 'ABC' | sed "s/<NAME>ABC/<NAME>日本語の長い名前がここにあります/; s/<FITID>1/&<MEMO>e$(printf '\314\201')tude 🙂 $(printf 'long %.0s' $(seq 30))/" >wide.ofx
# By short names, since the line that counts mendings names the file as it was given.
cp "$examples"/*.ofx .
for columns in 80 120; do
  for file in *.ofx; do
    on_terminal $columns print "$file"
    python3 fits.py $columns || fail "$file does not fit $columns columns"
  done
  on_terminal $columns sum --by name "$examples/checking.ofx"
  python3 fits.py $columns || fail "the sums do not fit $columns columns"
done

# At 80 columns texts are cut and the ID goes, at 120 there is room; amounts stay whole.
on_terminal 80 print "$examples/checking.ofx"
has out '…'
has out 'Memo'
lacks out 2025120309460005
has out "$(printf '\033[31m-1425.00\033[0m')"
lacks out "$(printf '\033[31m1842.50')"
on_terminal 120 print "$examples/checking.ofx"
lacks out '…'
has out 'Card ending 4410, terminal 5537'
on_terminal 80 print "$examples/brokerage.ofx"
has out 'Total'
has out '-4978.35'

# Everything with --wide, and where there is no terminal.
on_terminal 80 print --wide "$examples/checking.ofx"
lacks out '…'
has out 2025120309460005
expect 0 print "$examples/checking.ofx"
lacks out '…'
has out 2025120309460005
lacks out "$(printf '\033')"

# No colours when they are not wanted.
no_color=1
on_terminal 80 print "$examples/checking.ofx"
lacks out "$(printf '\033')"

# Decimal points are below each other.
statement A | sed 's/<TRNAMT>-.90/<TRNAMT>-1234.5/; s/<\/STMTTRN>/&<STMTTRN><TRNTYPE>FEE<DTPOSTED>20260103<TRNAMT>7<FITID>2<NAME>B<\/STMTTRN><STMTTRN><TRNTYPE>FEE<DTPOSTED>20260103<TRNAMT>.125<FITID>3<NAME>C<\/STMTTRN>/' >points.ofx
expect 0 print points.ofx
has out '2026-01-02  DEBIT  -1234.5    A'
has out '2026-01-03  FEE        7      B'
has out '2026-01-03  FEE        0.125  C'
has out '3 transactions   in 7.125   out -1234.500   net -1227.375'
finish
