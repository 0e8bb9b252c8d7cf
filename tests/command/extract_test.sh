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

# An encoding that nobody knows: the file is not what was meant, which is said.
sed 's/quoted-printable/base65/' encoded.mime >unknown.mime
mkdir unknown
expect 1 extract unknown.mime -d unknown
has err 'krofx: quoted.txt: its encoding base65 is not known; it is saved as it came, not decoded'
has out quoted.txt
has unknown/quoted.txt 'a=3Db'

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

# What the boundary of a text is: a line of its own, in letters of any case. All of every body is saved.
part() { printf -- "$1\nContent-Type: text/plain; name=\"%s\"\n\n%s\n" "$2" "$3"; }
mixed() { printf 'Content-Type: multipart/mixed; boundary=edge\n\n'; }
{
  mixed
  part --edge like.txt "$(printf 'first\n--edgewise\n--edge of a line\nlast')"
  part '--EDGE ' other.txt second
  printf -- '--edge--\n'
} >like.mime
mkdir like
expect 0 extract like.mime -d like
[ "$(cat like/like.txt)" = "$(printf 'first\n--edgewise\n--edge of a line\nlast')" ] || fail 'a body ends too early'
[ "$(cat like/other.txt)" = second ] || fail 'the body of another part'
sed 's/^last$/'"$(head -c 70000 /dev/zero | tr '\0' x)"'/' like.mime >long.mime
mkdir long
expect 0 extract long.mime -d long
[ "$(wc -c <long/like.txt)" -gt 70000 ] || fail 'a long body is cut'
mkdir strict
expect 0 extract --strict like.mime -d strict
cmp -s like/like.txt strict/like.txt || fail 'the strict parser has another body'
# One that is longer than any should be: a short text's objects have the bodies.
boundary=$(head -c 300 /dev/zero | tr '\0' e)
sed "s/edge$/${boundary:0:80}/; s/edge--$/${boundary:0:80}--/" inner.mime >wide.mime
mkdir wide
expect 0 extract wide.mime -d wide
[ "$(cat wide/inner.txt)" = "$(printf 'before\n--other\nbehind')" ] || fail 'the body of a wide boundary'
sed "s/edge *$/$boundary/; s/edge--$/$boundary--/" long.mime >wide.mime
expect 2 extract wide.mime -d wide
has err 'wide.mime: its parts cannot be distinguished; nothing was saved'
[ "$(ls wide)" = inner.txt ] || fail 'something was saved'

# Parts without headers, or without the empty line after them.
{
  mixed
  printf -- '--edge\nno header here\nsecond line\n--edge\nContent-Type: text/plain;\n name="at-once.txt"\nbody at once\n'
  printf -- '--edge\n\nonly a body\n\n--edge\nContent-Type: text/plain; name="none.txt"\n--edge--\n'
} >bare.mime
mkdir bare
expect 0 extract bare.mime -d bare
[ "$(cat bare/part-1.txt)" = "$(printf 'no header here\nsecond line')" ] || fail 'a body without headers'
[ "$(cat bare/at-once.txt)" = 'body at once' ] || fail 'a body without an empty line'
[ "$(cat bare/part-3.txt)" = 'only a body' ] || fail 'a body after an empty line'
[ -f bare/none.txt ] && [ ! -s bare/none.txt ] || fail 'a part without a body'

# Names without an extension, and more files of one name than are made.
{
  mixed
  part --edge README first
  part --edge README second
  printf -- '--edge--\n'
} >twice.mime
mkdir twice
expect 0 extract twice.mime -d twice
[ "$(cat out)" = "$(printf 'README\nREADME-2')" ] || fail 'the names of two files'
has twice/README-2 second
(cd twice && seq -f README-%g 3 9998 | xargs touch)
expect 2 extract twice.mime -d twice
[ "$(cat out)" = README-9999 ] || fail 'not the last name that was free'
has err 'README: it cannot be saved: File exists'

# What cannot be written, or not whole, is said, and nothing of it is left.
expect 2 extract twice.mime -d /proc
has err 'README: it cannot be saved'
[ ! -s out ] || fail 'a name of what was not saved'
mkdir full
{
  mixed
  part --edge big.txt "$(head -c 5000000 /dev/zero | tr '\0' x | fold -w 1000)"
  part --edge other.txt second
  printf -- '--edge--\n'
} >big.mime
(trap '' XFSZ && ulimit -f 4096 && "$krofx" extract big.mime -d full >out 2>err)
[ $? -eq 2 ] || fail 'half of an attachment is none'
has err 'big.txt: it cannot be saved: File too large'
[ "$(ls full)" = other.txt ] || fail "what is left of it: $(ls full)"
expect 2 extract nowhere.mime
has err 'nowhere.mime: No such file or directory'
: >empty.mime
expect 2 extract empty.mime
has err 'empty.mime: it is empty'

# Standard input, where --strict allows no mendings either.
mkdir input
expect 2 extract - --strict -d input <open.mime
has err 'standard input: there are mendings, which --strict does not allow'
[ -z "$(ls input)" ] || fail 'something was saved'
expect 0 extract - --strict -d input <parts.mime
has input/escape-2.txt second

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
