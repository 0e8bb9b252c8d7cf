#!/usr/bin/env bash
# `krofx rewrite`: its output is a fixed point, and files are replaced whole or not at all.
source "$(dirname "$0")/runner.sh" "$@"

for example in "$examples"/*.ofx; do
  expect 0 rewrite "$example" -o once.ofx
  expect 0 rewrite once.ofx -o twice.ofx
  cmp -s once.ofx twice.ofx || fail "no fixed point: $example"
  expect 0 rewrite once.ofx
  cmp -s once.ofx out || fail "another text on standard output: $example"
done

# In place, through a link, with its permissions.
statement 'PLAIN' >plain.ofx
chmod 640 plain.ofx
ln -s plain.ofx link.ofx
expect 0 rewrite link.ofx -o link.ofx
[ -L link.ofx ] || fail 'the link was replaced'
[ "$(stat -c %a plain.ofx)" = 640 ] || fail 'the permissions changed'
expect 0 check plain.ofx

# What cannot be read or written leaves the target alone.
head -c 400 plain.ofx >cut.ofx
cp cut.ofx before.ofx
expect 2 rewrite cut.ofx -o cut.ofx
cmp -s cut.ofx before.ofx || fail 'a broken file was overwritten'
expect 2 rewrite plain.ofx -o nowhere/out.ofx
cp "$examples/multipart.mime" parts.mime
expect 2 rewrite parts.mime -o parts.mime
has err 'take it apart with "krofx extract"; nothing was written'
cmp -s parts.mime "$examples/multipart.mime" || fail 'a multipart text was overwritten'
expect 2 rewrite plain.ofx -o /dev/null
[ "$(find . -name '*.ofx.*' | wc -l)" -eq 0 ] || fail 'a file is left over'

# What is whole of a text that breaks off is written anywhere but in its place.
head -c -60 plain.ofx >short.ofx
cp short.ofx before.ofx
cp plain.ofx other.ofx
expect 0 rewrite short.ofx
has err 'it breaks off'
mv out whole.ofx
for output in new.ofx other.ofx; do
  expect 0 rewrite short.ofx -o $output
  cmp -s $output whole.ofx || fail "what is whole is not in $output"
done
expect 2 rewrite short.ofx -o short.ofx
has err 'it breaks off, and what is whole would take its place'
cmp -s short.ofx before.ofx || fail 'a text that breaks off was overwritten'

# Strict.
statement "$(head -c 60 /dev/zero | tr '\0' n)" >long.ofx
expect 0 rewrite long.ofx
expect 2 rewrite --strict long.ofx
expect 0 rewrite --strict plain.ofx
statement $'caf\351' >letters.ofx
expect 0 rewrite --strict letters.ofx
grep -qa $'<NAME>caf\351$' out || fail 'a letter that is not ASCII is lost'
# Of two answers in one wrapper the strict parser would lose the first.
sed 's/<STMTRS>/&<CURDEF>EUR<BANKACCTFROM><BANKID>1<ACCTID>first<ACCTTYPE>CHECKING<\/BANKACCTFROM><\/STMTRS>&/' \
  plain.ofx >two.ofx
grep -q '<ACCTID>first' two.ofx || fail 'there are not two answers'
expect 0 check --strict two.ofx
expect 2 rewrite --strict two.ofx
has err 'it is not in order, as --strict demands; "krofx check" says why; nothing was written'
expect 0 rewrite two.ofx
has out '<ACCTID>first'
expect 64 rewrite
finish
