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
expect 2 rewrite plain.ofx -o /dev/null
[ "$(find . -name '*.ofx.*' | wc -l)" -eq 0 ] || fail 'a file is left over'

# Strict.
statement "$(head -c 60 /dev/zero | tr '\0' n)" >long.ofx
expect 0 rewrite long.ofx
expect 2 rewrite --strict long.ofx
expect 0 rewrite --strict plain.ofx
expect 64 rewrite
finish
