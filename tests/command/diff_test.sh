#!/usr/bin/env bash
# What is new, gone or changed from one download to another.
source "$(dirname "$0")/runner.sh" "$@"

old=$examples/checking.ofx
expect 0 diff "$old" "$old"
[ ! -s out ] || fail 'there is a difference of a file from itself'

# One goes, one comes, one changes.
python3 - "$old" <<'END'
import re, sys
text = open(sys.argv[1], encoding="latin-1", newline="").read()
text = text.replace("<TRNAMT>-11.91", "<TRNAMT>-11.92", 1)
rows = re.findall("<STMTTRN>.*?</STMTTRN>", text, re.S)
gone = next(row for row in rows if "2025120109460001" in row)
come = gone.replace("2025120109460001", "2025120109469999").replace("PINE &amp; OAK BOOKS", "NEW BOOKS")
text = text.replace(gone, come, 1)
open("new.ofx", "w", encoding="latin-1", newline="").write(text)
END
expect 1 diff "$old" new.ofx
[ "$(wc -l <out)" -eq 4 ] || fail 'not a line for each difference and one that counts them'
grep -q '^+ .*2025120109469999' out || fail 'nothing is new'
grep -q '^- .*-22.95 .*2025120109460001' out || fail 'nothing is gone'
grep -q '^~ 211370545 014 00718220946 CHECKING .*2025120209460004): amount "-11.91" -> "-11.92"$' out || fail 'nothing changed'
has out '1 new, 1 gone, 1 changed'
expect 1 diff --json "$old" new.ofx
python3 - <<'END' || fail 'the JSON of differences'
import json
diff = json.load(open("out"))
assert (diff["format"], diff["version"]) == ("krofx-diff", 1)
assert [each["id"] for each in diff["added"]] == ["2025120109469999"]
assert [each["id"] for each in diff["gone"]] == ["2025120109460001"]
(changed,) = diff["changed"]
assert changed["changes"] == [{"key": "amount", "old": "-11.91", "new": "-11.92"}], changed
END

# The same identifier in another account is another transaction.
sed 's/<ACCTID>00718220954/<ACCTID>00718220999/' "$old" >account.ofx
expect 1 diff "$old" account.ofx
has out '7 new, 7 gone, 2 changed'
has out 'to_account "00718220954" -> "00718220999"'

# What comes twice counts twice, and what has no identifier is compared by all that it says.
mkdir twice
cp "$old" twice/a.ofx
cp "$old" twice/b.ofx
expect 1 diff "$old" twice
has out '68 new, 0 gone, 0 changed'
statement A | sed 's/<FITID>1//' >without.ofx
expect 0 diff without.ofx without.ofx
sed 's/<NAME>A/<NAME>B/' without.ofx >other.ofx
expect 1 diff without.ofx other.ofx
has out '1 new, 1 gone, 0 changed'

# An amount with other places is the same; one of another currency is not.
statement A >one.ofx
sed "s/<TRNAMT>-.90/<TRNAMT>-0.9/" one.ofx >places.ofx
sed 's/<CURDEF>USD/<CURDEF>EUR/' one.ofx >euros.ofx
expect 0 diff one.ofx places.ofx
expect 1 diff one.ofx euros.ofx
has out 'statement_currency "USD" -> "EUR"'
"$krofx" rewrite "$examples/checking.ofx" -o written.ofx
expect 0 diff "$examples/checking.ofx" written.ofx

# Trouble is not a difference.
expect 2 diff "$old" missing.ofx
expect 64 diff "$old"
expect 64 diff "$old" "$old" "$old"
expect 1 diff "$examples/card.ofx" "$old"
lacks out 5500111122224410
finish
