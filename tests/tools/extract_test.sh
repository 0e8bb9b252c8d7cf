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

# The example: a letter, a text and an image.
mkdir example
expect 0 extract "$examples/multipart.mime" -d example
has example/how-to-read.txt 'last four digits'
has example/check-1042.gif R0lGODlh
expect 0 print "$examples/multipart.mime"
has out 'cancelled check'
has out check-1042.gif

# A body that holds the boundary of another text.
{
  printf 'Content-Type: multipart/mixed; boundary=edge\n\n'
  printf -- '--edge\nContent-Type: text/plain; name="inner.txt"\n\nbefore\n--other\nbehind\n'
  printf -- '--edge--\n'
} >inner.mime
mkdir inner
expect 0 extract inner.mime -d inner
has inner/inner.txt before
has inner/inner.txt behind

# A thousand parts.
{
  printf 'Content-Type: multipart/mixed; boundary=edge\n\n'
  for ((i = 0; i < 1000; i++)); do printf -- '--edge\nContent-Type: text/plain\n\npart %d\n' "$i"; done
  printf -- '--edge--\n'
} >thousand.mime
mkdir thousand
expect 0 extract thousand.mime -d thousand
[ "$(find thousand -type f | wc -l)" -gt 0 ] || fail 'none of a thousand parts was saved'
finish
