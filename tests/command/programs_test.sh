#!/usr/bin/env bash
# The command is two programs. krofx does what needs only files and is not linked to the libraries of
# the network; for everything else krofx-full takes its place. Nobody sees which of them answers.
source "$(dirname "$0")/runner.sh" "$@"
full=$(dirname "$krofx")/krofx-full

# What krofx is linked to.
readelf -d "$krofx" >out || fail 'the program is not readable'
has out libstdc++
for library in libcurl libssl libcrypto; do lacks out "$library"; done
readelf -d "$full" >out
has out libcurl

# same ARGUMENT...: both programs say the same, with the same exit status.
same() {
  "$krofx" "$@" >out 2>err </dev/null
  local got=$?
  "$full" "$@" >full_out 2>full_err </dev/null
  local wanted=$?
  [ "$got" -eq "$wanted" ] || fail "krofx $* gave $got, and krofx-full $wanted"
  cmp -s out full_out && cmp -s err full_err || fail "krofx $* says something else than krofx-full"
}
statement Shop >good.ofx
same
same --version
same --version print
same --help
same -h
for command in print sum check diff rewrite extract certid fetch bank request send get help completion complete; do
  same "$command"
  same "$command" --help
  same "$command" --version
  same "$command" --frob good.ofx
  same help "$command"
  same "$command" a b c hunter2
done
for command in print sum check; do
  same "$command" good.ofx
  # The names of other subcommands are names of files.
  for other in print check fetch help; do same "$command" good.ofx "$other"; done
  same "$command" -- good.ofx
  same "$command" --jobs x good.ofx
done
same diff good.ofx good.ofx
same rewrite good.ofx
same rewrite --ofx2-version 203 good.ofx
same print --table help
same print --csv --table
same sum --by x good.ofx
same check --quiet --json good.ofx
same extract good.ofx
same certid good.ofx
same bank lst
same complete -- print --
same complete -- pri
same completion bash
for first in prnt PRINT 'print ' '' -- -x --frob; do
  same "$first"
  same "$first" print good.ofx
done

# Without krofx-full, krofx does what it can do alone. Neither the current folder nor PATH is searched.
mkdir alone elsewhere
cp "$krofx" alone/krofx
cat >elsewhere/krofx-full <<'END'
#!/bin/sh
printf '<%s>' "$@"
cat <&7
sed -n 's/^Max core file size *\([^ ]*\) .*/ core: \1/p' /proc/$$/limits
exit 5
END
chmod +x elsewhere/krofx-full
export PATH=$work/elsewhere:$PATH
krofx=$work/alone/krofx
cd elsewhere || exit 1
expect 0 --version
grep -qx 'krofx [0-9.]*' out || fail 'there is no version'
expect 0 print "$work/good.ofx"
has out Shop
expect 0 print --help
expect 64 print --frob
for arguments in '' --help 'fetch all' prnt 'help print'; do
  # shellcheck disable=SC2086
  expect 2 $arguments
  [ ! -s out ] || fail "krofx $arguments prints something"
  [ "$(wc -l <err)" -eq 1 ] || fail "krofx $arguments does not complain in one line"
  grep -qF "krofx-full: this part of krofx, which all but work on files needs, cannot be started: No such file" err ||
    fail "krofx $arguments does not say what is missing"
done
cd "$work" || exit 1

# It gets the arguments, the descriptors and the limits, and its exit status is that of krofx.
mv elsewhere/krofx-full alone/krofx-full
echo kept >seventh
"$krofx" 'a b' '' $'\xff\n' --version >out 2>err 7<seventh
[ $? -eq 5 ] || fail 'the exit status is not passed on'
printf '<a b><><\xff\n><--version>kept\n' >wanted
head -c "$(wc -c <wanted)" out | cmp -s - wanted || fail 'the arguments or descriptors are not passed on'
grep -qx ' core: [01]' out || fail 'a core file may be written'

# It is found from where krofx is, not from the name that krofx is started by.
ln -s "$krofx" link
"$work/link" x >out 7<seventh
has out '<x>'
finish
