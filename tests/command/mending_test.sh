#!/usr/bin/env bash
# Files as institutions send them: read whole, with every mending said, and written as clean OFX.
source "$(dirname "$0")/runner.sh" "$@"

# A comma is the decimal sign; nothing is multiplied.
statement PLAIN | sed 's/<TRNAMT>-.90/<TRNAMT>-11,76/' >comma.ofx
expect 0 print --csv comma.ofx
has out '-11.76'
has err '1 mending; "krofx check" lists them'
expect 1 check --details comma.ofx
has out 'mended: decimal-comma <TRNAMT> "-11,76" -> "-11.76"'
expect 0 print --json comma.ofx
python3 - <<'PY' || fail 'the mendings of JSON'
import json
file = json.load(open("out"))["files"][0]
mending = file["mendings"][0]
assert mending["kind"] == "decimal-comma" and mending["number"] == 300, mending
assert mending["was"] == "-11,76" and mending["taken"] == "-11.76", mending
assert mending["line"] > 0 and mending["path"].endswith("STMTTRN"), mending
PY

# Without a header, cut off, or in lower case.
statement PLAIN | sed '1,/^\r*$/d' >bare.ofx
expect 0 print bare.ofx
has out PLAIN
expect 2 print --strict bare.ofx

# OFX 2 is read and written, and reads back.
statement PLAIN >plain.ofx
for version in 203 220; do
  expect 0 rewrite --ofx2 --ofx2-version $version plain.ofx -o xml.ofx
  has xml.ofx '<?xml '
  has xml.ofx "VERSION=\"$version\""
  expect 0 check xml.ofx
  expect 0 rewrite xml.ofx -o back.ofx
  expect 0 rewrite plain.ofx -o again.ofx
  cmp -s back.ofx again.ofx || fail "version $version does not read back"
done
expect 64 rewrite --ofx2-version 203 plain.ofx
expect 0 rewrite comma.ofx
has out '<TRNAMT>-11.76'

# A text that breaks off never takes the place of the file that it came from.
statement PLAIN | head -c 600 >cut.ofx
cp cut.ofx before.ofx
expect 2 rewrite cut.ofx -o cut.ofx
cmp -s cut.ofx before.ofx || fail 'a broken file was overwritten'
expect 0 rewrite cut.ofx -o other.ofx
has err 'it breaks off in line'
finish
