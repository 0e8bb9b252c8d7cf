#!/usr/bin/env bash
# `krofx extract`: attachments under safe names, nothing overwritten, nothing outside the folder.
source "$(dirname "$0")/runner.sh" "$@"

{
  printf 'Content-Type: multipart/x-mixed-replace; boundary=edge\r\n\r\n'
  printf -- '--edge\r\nContent-Type: text/plain; name="../../escape.txt"\r\n\r\nfirst\r\n'
  printf -- '--edge\r\nContent-Type: text/plain; name="escape.txt"\r\n\r\nsecond\r\n'
  printf -- '--edge--\r\n'
} >parts.mime
mkdir -p deep/er
expect 0 extract parts.mime -d deep/er
has deep/er/escape.txt first
has deep/er/escape-2.txt second
expect 0 extract parts.mime -d deep/er
has deep/er/escape-3.txt first
[ "$(find . -name 'escape*' | wc -l)" -eq "$(find deep/er -name 'escape*' | wc -l)" ] ||
  fail 'something was written outside the folder'
expect 0 print parts.mime
has out escape.txt

expect 2 extract parts.mime -d nowhere
statement 'PLAIN' >plain.ofx
expect 2 extract plain.ofx
has err 'no parts'
sed '$d' parts.mime >open.mime
mkdir other
expect 2 extract open.mime -d other
expect 64 extract
finish
