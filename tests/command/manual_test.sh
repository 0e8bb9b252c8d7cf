#!/usr/bin/env bash
# The examples of the manual work as they are written. Those that need a server are left out.
source "$(dirname "$0")/runner.sh" "$@"

# What the examples find: the sample statements, a folder of downloads, and single ones.
ln -s "$examples" examples
mkdir bin statements
ln -s "$krofx" bin/krofx
cp "$examples/checking.ofx" "$examples/card.ofx" statements/
cp "$examples/checking.ofx" january.ofx
sed 's/<TRNAMT>-11.91/<TRNAMT>-11.92/' "$examples/checking.ofx" >february.ofx
cp "$examples/quirks.ofx" download.qfx
export KROFX_PASSWORD=sesame-99
PATH=$work/bin:$PATH

# The lines of the section, with its hyphens and backslashes as a reader sees them, joined where they go on.
sed -n '/^\.SH EXAMPLES/,/^\.fi/p' "$(dirname "$examples")/docs/krofx.1" | grep -v '^\.' |
  sed -e 's/\\-/-/g' -e 's/\\e$/\\/' | sed -e ':again' -e '/\\$/{N;s/\\\n//;b again' -e '}' >commands
[ "$(wc -l <commands)" -gt 15 ] || fail 'the manual has hardly an example'
while read -r line; do
  case $line in *https://* | *@* | *"fetch all"*) continue ;; esac
  bash -c "$line" >out 2>err </dev/null
  # A check or a comparison that finds something ends with 1.
  case $?:$line in
    0:* | 1:'krofx check'* | 1:'krofx diff'*) ;;
    *) fail "the example does not work: $line" ;;
  esac
done <commands
for command in print sum diff check; do
  grep -q "^krofx $command " commands || fail "no example of $command"
done
[ -s transactions.csv ] && [ -s request.ofx ] && [ -s download.xml ] || fail 'an example wrote no file'
finish
