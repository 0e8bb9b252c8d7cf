#!/usr/bin/env bash
# `krofx extract`: attachments under safe names, nothing overwritten, nothing outside the folder,
# base64 decoded.
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
expect 2 extract --strict open.mime -d other
expect 0 extract open.mime -d other
has other/escape.txt first
has err mending
expect 64 extract

# Names that would hide a file, or that are no names; kinds that say no more.
{
  printf 'Content-Type: multipart/mixed; boundary=edge\r\n\r\n'
  for type in 'text/plain; name=".-hidden.txt"' 'text/plain; name=bare.txt; charset=utf-8' \
    'text/plain; name="../.."' 'image/png' 'font/woff' '; name="n o!t?.e"'; do
    printf -- '--edge\r\nContent-Type: %s\r\n\r\nbody --edge is no line\r\n' "$type"
  done
  printf -- '--edge--\r\n'
} >names.mime
mkdir names
expect 0 extract names.mime -d names
[ "$(cd names && echo *)" = 'bare.txt hidden.txt not.e part-3.txt part-4.png part-5.bin' ] ||
  fail "the names are $(cd names && echo *)"
for name in names/*; do
  printf 'body --edge is no line\r\n' | cmp -s - "$name" || fail "the bytes of $name"
done

# The example: a letter, a text, and an image in base64.
mkdir example
expect 0 extract "$examples/multipart.mime" -d example
has example/how-to-read.txt 'last four digits'
has example/check-1042.gif GIF89a
grep R0lGODlh "$examples/multipart.mime" | base64 -d | cmp - example/check-1042.gif ||
  fail 'the image was not decoded'
expect 0 print "$examples/multipart.mime"
has out 'cancelled check'
has out check-1042.gif

# Encodings: base64 in any case and over several lines, none in it, others, and what is not base64.
{
  printf 'Content-Type: multipart/mixed; boundary=edge\r\n\r\n'
  part() {
    printf -- '--edge\r\nContent-Type: text/plain; name="%s"\r\n' "$1"
    printf 'Content-Transfer-Encoding: %s\r\n\r\n%b\r\n' "$2" "$3"
  }
  part lines.txt ' BASE64 ' 'aGVs\r\nbG8g\r\nd29ybGQ='
  part zero.bin base64 'AAEC'
  part quoted.txt quoted-printable 'a=3Db'
  part plain.txt 8bit 'aGVsbG8='
  part broken.txt base64 'this is no base64!'
  part cut.txt base64 'aGVsbG8'
  printf -- '--edge--\r\n'
} >encoded.mime
mkdir encoded
expect 0 extract encoded.mime -d encoded
has err 'broken.txt'
has err 'cut.txt'
lacks err 'lines.txt'
lacks err 'plain.txt'
[ "$(cat encoded/lines.txt)" = 'hello world' ] || fail 'several lines of base64'
printf '\000\001\002' | cmp - encoded/zero.bin || fail 'bytes that are not text'
has encoded/quoted.txt 'a=3Db'
has encoded/plain.txt 'aGVsbG8='
has encoded/broken.txt 'this is no base64!'
has encoded/cut.txt 'aGVsbG8'

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
