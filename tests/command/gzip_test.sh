#!/usr/bin/env bash
# Files that gzip has packed, whole and damaged, and folders of them.
source "$(dirname "$0")/runner.sh" "$@"

cp "$examples/checking.ofx" plain.ofx
gzip -k plain.ofx
expect 0 print plain.ofx
sed 's/^== plain.ofx /== plain.ofx.gz /' out >wanted
expect 0 print plain.ofx.gz
cmp -s out wanted || fail 'a packed file is shown in another way'
expect 0 print --csv <plain.ofx.gz
[ "$(wc -l <out)" -eq 69 ] || fail 'packed standard input'
expect 0 check plain.ofx.gz
has out 'plain.ofx.gz: clean'
expect 0 rewrite plain.ofx.gz

# Found in folders, in any kind of name; a folder without a statement says so.
mkdir folder empty
cp plain.ofx.gz folder/a.qfx.gz
cp plain.ofx.gz folder/notes.gz
cp plain.ofx folder/b.OFX
expect 0 check --details folder
has out 'folder/a.qfx.gz: clean'
has out '2 files: 2 clean'
expect 2 print empty
has err 'empty: the directory holds no .ofx, .qfx or .qbo file, packed or not: no statement'

# Several packed parts, one after the other, are one text.
{ head -c 1000 plain.ofx | gzip; tail -c +1001 plain.ofx | gzip; } >parts.ofx.gz
expect 0 check parts.ofx.gz
has out 'clean'

# Damaged ones are not usable, and nothing of them is guessed.
size=$(stat -c %s plain.ofx.gz)
head -c $((size / 2)) plain.ofx.gz >half.ofx.gz
head -c $((size - 3)) plain.ofx.gz >end.ofx.gz
{ cat plain.ofx.gz; printf garbage; } >after.ofx.gz
{ head -c 200 plain.ofx.gz; head -c 100 /dev/zero; tail -c +301 plain.ofx.gz; } >hole.ofx.gz
head -c 2 plain.ofx.gz >short.ofx.gz
for bad in half end after hole short; do
  expect 2 check $bad.ofx.gz
  has out "$bad.ofx.gz: not usable: it is compressed, and "
  expect 2 print $bad.ofx.gz
done

# A small file that unpacks to a large one does not take the memory.
head -c 1100000000 /dev/zero | gzip -9 >bomb.ofx.gz
# A sanitizer reserves more addresses than any limit leaves it.
limit=1500000
(ulimit -v $limit; "$krofx" --version) >/dev/null 2>&1 || limit=unlimited
(ulimit -v $limit; "$krofx" check bomb.ofx.gz >out 2>err)
[ $? -eq 2 ] || fail 'a bomb is read'
has out 'it may be an attack'
finish
