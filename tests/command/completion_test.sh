#!/usr/bin/env bash
# Completion of words, as the command answers and in the shells; and the help that names commands.
here=$(cd "$(dirname "$0")" && pwd)
source "$here/runner.sh" "$@"
source "$here/banks.sh"
write_banks <<'END'
[harbor]
url = "https://bank.example/ofx"
org = "HARBORFED"
user = "ada.w"

[[harbor.account]]
account = "00718220946"
bank = "211370545"

[[harbor.account]]
account = "5500111122224410"
card = true

[halden]
url = "https://other.example/ofx"
org = "HALDEN"
user = "bob"

[[halden.account]]
account = "7-4401-22"
broker = "tern.example"
END

# offers WORDS WORD...: what may come next is these words, one a line, and nothing else.
offers() {
  local wanted=$1
  shift
  expect 0 complete -- "$@"
  [ "$(cut -f 1 out | tr '\n' ' ')" = "${wanted:+$wanted }" ] || fail "after \"$*\" not \"$wanted\""
}
offers 'print' pr
offers 'rewrite request' re
offers 'statement' fetch st
offers 'add list show check password remove' bank ''
offers 'harbor halden' bank show ''
offers 'halden' bank remove hal
offers '@harbor @halden' fetch statement ''
offers '@harbor' request transfer @har
# The number of a card is not shown; its end is enough.
offers '00718220946 4410' fetch statement @harbor --account ''
offers '4410' print "$examples/card.ofx" --account ''
offers 'CHECKING SAVINGS MONEYMRKT CREDITLINE' request transfer --to-type ''
offers 'SAVINGS' fetch statement --type S
offers 'BUYDEBT BUYMF BUYOPT BUYOTHER BUYSTOCK' print --type BUY
offers 'DIRECTDEBIT DIRECTDEP' sum --type DIR
offers 'MONTHLY' request transfer --every MON
offers '--to-type' request transfer --to-ty
offers 'transactions' print --csv --table transac
offers ':files' print ''
offers ':files' request statement -o ''
offers 'bash zsh fish' completion ''
offers 'print' help pri
offers 'transfer' help request tra
offers 'month' sum --by mo
offers 'SAVINGS' bank add --type S
# Of a broker's account it is the broker that tells it from others.
offers '7-4401-22' fetch statement @halden --account ''
has out "$(printf '7-4401-22\ttern.example')"
# Whatever was typed before, completion goes on.
offers '@harbor @halden' fetch statement --type SAVINGS ''
offers ':files' print --no-such ''
offers ':files' print --json ''
# Nothing is offered where any text can come, or where nothing is known.
offers '' request transfer --amount ''
offers '' fetch statement @nobody --account ''
offers '' fetch statement @harbor ''
offers '' bank add ''
offers '' bank list ''
offers '' zzz
offers '' print --no-such
"$krofx" complete -- print "$examples/checking.ofx" --account '' >out 2>err
[ -s out ] || fail 'no accounts of a file'
expect 0 complete -- ''
lacks out "$(printf 'complete\t')"
has out "$(printf 'print\t')"

# The help fits a screen and leads to everything.
expect 0 --help
[ "$(wc -l <out)" -le 23 ] || fail 'the help does not fit a screen'
[ "$(wc -L <out)" -le 80 ] || fail 'the help is wider than a screen'
for command in print check rewrite extract certid fetch bank request send get help completion; do
  has out "  $command "
  "$krofx" "$command" --help >wanted
  expect 0 help "$command"
  cmp -s wanted out || fail "help $command is not $command --help"
  expect 0 --help
done
"$krofx" request transfer --help >wanted
expect 0 help request transfer
cmp -s wanted out || fail 'help request transfer is not request transfer --help'
expect 0 help
has out 'Usage: krofx'
expect 64 help prnt
has err 'prnt is not a subcommand; did you mean print?'
expect 64 completion tcsh
has err 'the shells are bash, zsh and fish'
expect 64 prnt --help
has err 'prnt is not a subcommand; see "krofx --help"; did you mean print?'
expect 64 request tranfer --help
has err 'did you mean transfer?'
# Every help is in lines of 80 characters, breaks no word, and names the options that must be given.
names() { "$krofx" complete -- "$@" '' | cut -f 1; }
for command in $(names | grep -v ^:); do
  for below in '' $(names "$command" | grep '^[a-z]'); do
    case $command:$below in help:?* | completion:?*) continue ;; esac
    # shellcheck disable=SC2086
    expect 0 $command $below --help
    [ "$(wc -L <out)" -le 80 ] || fail "the help of $command $below is wider than 80"
    has out "Usage: krofx $command${below:+ $below} [OPTIONS]"
  done
done
expect 0 request transfer --help
has out '  --amount TEXT           The amount, as 12.50 (required)'
has out '  --times NUMBER          How many times; without it there is no end'
has out '  -o, --output TEXT       The file to write; else standard output'
has out '  BANK                    A bank of "krofx bank list", as @harbor; else --org'
has out '                          and --user'
expect 0 print --help
has out 'Usage: krofx print [OPTIONS] [FILE...]'

# In the shells.
cp "$examples/checking.ofx" .
mkdir bin
ln -s "$(readlink -f "$krofx")" bin/krofx
export PATH=$work/bin:$PATH
for shell in bash zsh fish; do
  expect 0 completion $shell
  mv out $shell.script
  [ -s $shell.script ] || fail "no script for $shell"
done
# in_shell LINE EXPECTED PREPARATION SHELL...
in_shell() {
  python3 "$here/with_tab.py" "$3" "$1" "$2" "${@:4}" >out 2>err ||
    fail "${4} does not complete \"$1\" to \"$2\""
}
if command -v bash >/dev/null; then
  prepare='. ./bash.script'
  in_shell 'krofx prin' 'print ' "$prepare" bash --norc -i
  in_shell 'krofx fetch statement @harb' '@harbor' "$prepare" bash --norc -i
  in_shell 'krofx request transfer --every=MON' 'MONTHLY' "$prepare" bash --norc -i
  in_shell 'krofx bank show hal' 'halden ' "$prepare" bash --norc -i
  in_shell 'krofx print --csv --table transac' 'transactions ' "$prepare" bash --norc -i
  in_shell 'krofx print checking.ofx --account 0071822094' '00718220946 ' "$prepare" bash --norc -i
  in_shell 'krofx fetch statement @harbor --account 0' '00718220946 ' "$prepare" bash --norc -i
  in_shell 'krofx print chec' 'checking.ofx ' "$prepare" bash --norc -i
fi
if command -v zsh >/dev/null; then
  prepare='autoload -U compinit && compinit -u -D && . ./zsh.script'
  in_shell 'krofx prin' 'print' "$prepare" zsh -f -i
  in_shell 'krofx fetch statement @harb' 'or' "$prepare" zsh -f -i
  in_shell 'krofx bank show hal' 'den ' "$prepare" zsh -f -i
  in_shell 'krofx print --csv --table transac' 'tions ' "$prepare" zsh -f -i
  in_shell 'krofx print checking.ofx --account 0071822094' '6 ' "$prepare" zsh -f -i
  in_shell 'krofx print chec' 'king.ofx ' "$prepare" zsh -f -i
fi
if command -v fish >/dev/null; then
  for line in 'prin:print' 'bank show har:harbor' 'fetch statement @har:@harbor' 'print --table transac:transactions' \
    'print checking.ofx --account 0:00718220946' 'fetch statement @harbor --account 0:00718220946' \
    'print chec:checking.ofx'; do
    fish --no-config -c "source fish.script; complete -C 'krofx ${line%:*}'" >out 2>err </dev/null
    has out "${line#*:}"
  done
fi
finish
