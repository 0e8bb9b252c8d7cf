#!/usr/bin/env bash
# Ten million mendings: those that are recorded are told, the rest is counted, and none of them takes memory
# beyond the text.
source "$(dirname "$0")/runner.sh" "$@"

python3 - "$examples/checking.ofx" <<'END' >many.ofx
import sys
text = open(sys.argv[1]).read()
at = text.index("<STMTTRN>")
print(text[:at] + "</ODD>" * 10000000 + text[at:])
END
# The text takes 60 MB.
if ulimit -v 200000; then
  expect 1 check many.ofx
  has out '100000 stray end tags (line '
  has out ', 9900000 more'
else
  fail 'there is no limit of memory'
fi
finish
