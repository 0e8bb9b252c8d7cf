#!/usr/bin/env bash
# `krofx certid`: the IDs of certificates in all their forms.
source "$(dirname "$0")/runner.sh" "$@"

# A publicly known root: its ID is its SHA-1 fingerprint in base64.
root=$examples/../src/krofx/security/roots/4000.der
other=$examples/../src/krofx/security/roots/4001.der
id=$(printf '\x0D\x97\x44\x61\x70\x37\x13\xCB\x74\x93\x2D\x2A\x75\xAC\xBC\x71\x4B\x28\x12\x66' | base64)
other_id=$(printf '\x44\x63\xC5\x31\xD7\xCC\xC1\x00\x67\x94\x61\x2B\xB6\x56\xD3\xBF\x82\x57\x84\x6F' | base64)

base64 "$root" >plain.b64
pem() {
  echo '-----BEGIN CERTIFICATE-----'
  base64 -w 64 "$1"
  echo '-----END CERTIFICATE-----'
}
{
  echo 'Something said of it.'
  pem "$root"
} >root.pem
{
  pem "$other"
  pem "$root"
} >chain.pem

for file in "$root" plain.b64 root.pem; do
  expect 0 certid "$file"
  [ "$(cat out)" = "$id" ] || fail "$file has another ID"
done
[ "$(wc -c <out)" -eq 29 ] || fail 'an ID does not have 28 characters'

# Standard input, and several files.
"$krofx" certid - <root.pem >out 2>err || fail 'standard input'
[ "$(cat out)" = "$id" ] || fail 'standard input has another ID'
expect 0 certid root.pem "$other"
[ "$(cat out)" = "$id  root.pem
$other_id  $other" ] || fail 'two files'

# The first certificate of several.
expect 0 certid chain.pem
[ "$(cat out)" = "$other_id" ] || fail 'the first of a chain'

# Input that is not a certificate; the others are still printed.
echo 'not a certificate' >letter.txt
: >empty
pem letter.txt >broken.pem
for file in letter.txt empty broken.pem missing .; do
  expect 2 certid "$file"
  has err "krofx: $file: "
  [ ! -s out ] || fail "$file has an ID"
done
expect 2 certid letter.txt root.pem
has out "$id  root.pem"
has err letter.txt

expect 64 certid
expect 0 certid --help
has out 'SHA-1'
finish
