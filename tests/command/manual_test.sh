#!/usr/bin/env bash
# The examples of the manual work as they are written, those of institutions against the example bank.
here=$(cd "$(dirname "$0")" && pwd)
source "$here/runner.sh" "$@"
source "$here/servers.sh"
source "$here/banks.sh"
start "$3" --ca-file "$work/ca.pem" --cert-file "$work/server.pem"

# What the examples find: the sample statements, a folder of downloads, single ones, a new password,
# and programs that keep passwords, the keyring's with the new one.
ln -s "$examples" examples
mkdir bin statements
ln -s "$krofx" bin/krofx
printf '#!/bin/sh\n[ "$*" = "show bank/harbor" ] && echo not-a-real-password\n' >bin/pass
echo another-password >new-password
cat >bin/secret-tool <<'END'
#!/bin/sh
case $1 in
store) cat "$(dirname "$0")/../new-password" >"$0.kept" ;;
lookup) cat "$0.kept" ;;
esac
END
chmod +x bin/pass bin/secret-tool
cp "$examples/checking.ofx" "$examples/card.ofx" statements/
cp "$examples/checking.ofx" january.ofx
sed 's/<TRNAMT>-11.91/<TRNAMT>-11.92/' "$examples/checking.ofx" >february.ofx
cp "$examples/quirks.ofx" download.qfx
export KROFX_PASSWORD=not-a-real-password XDG_DATA_HOME=$work/data
PATH=$work/bin:$PATH

# The lines of the section, with its hyphens and backslashes as a reader sees them, joined where they
# go on, and with the example bank in the place of the institution.
sed -n '/^\.SH EXAMPLES/,/^\.fi/p' "$(dirname "$examples")/docs/krofx.1" | grep -v '^\.' |
  sed -e 's/\\-/-/g' -e 's/\\e$/\\/' | sed -e ':again' -e '/\\$/{N;s/\\\n//;b again' -e '}' \
    -e "s|https://bank.example/ofx|$url --root ca.pem|" >commands
[ "$(wc -l <commands)" -gt 40 ] || fail 'the manual has hardly an example'
while read -r line; do
  bash -c "$line" >out 2>err </dev/null
  # A check or a comparison that finds something ends with 1.
  case $?:$line in
    0:* | 1:'krofx check'* | 1:'krofx diff'*) ;;
    *) fail "the example does not work: $line" ;;
  esac
  case $line in
    'krofx request transfer'*) has err '12.50 USD from 211370545/00718220946 CHECKING to ' ;;
    'krofx prnt'*) has err 'prnt is not a subcommand; see "krofx --help"; did you mean print?' ;;
    'krofx check --quite'*) has err '--quite is not known; see "krofx check --help"; did you mean --quiet?' ;;
    *'--type help'*) has err 'the types are ATM, BUYDEBT, ' ;;
    'krofx bank password'*) has err 'the password of ada.w at harbor is changed' ;;
    *'fetch updates'*) has out 'harbor banking: ' ;;
    *'bank show'*) has out '00718220946 CHECKING' ;;
    *'fetch statement @harbor --from'*) has out 'Card statement: ************4410' ;;
  esac
done <commands
for command in print sum diff check rewrite extract certid help completion 'bank add' 'bank check' 'bank list' \
  'bank show' 'bank password' 'bank remove' 'fetch statement' 'fetch all' 'fetch updates' 'request transfer' send; do
  grep -q "krofx $command\b" commands || fail "no example of $command"
done
grep -q 'krofx bank add.* --keyring' commands || fail 'no example of a keyring'
for file in transactions.csv request.ofx transfer.ofx reply.ofx download.xml; do
  [ -s "$file" ] || fail "an example wrote no $file"
done
[ "$(find "$XDG_DATA_HOME" -name 'harbor-*.ofx' | wc -l)" -eq 4 ] || fail 'not all accounts were fetched'
leaves_nothing
finish
