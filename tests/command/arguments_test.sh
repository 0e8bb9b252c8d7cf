#!/usr/bin/env bash
# What the command line takes, and what it refuses: amounts, dates, numbers, unknown words.
source "$(dirname "$0")/runner.sh" "$@"

sign_on_options=(--org BANK --fid 7 --user ada --password-env SECRET -o rq.ofx --force)
bank=(--bank 123 --account 456)
to=(--to-bank 123 --to-account 789)
export SECRET=sesame-99

# refused WHERE MESSAGE ARGUMENT...: wrong use, under the subcommand's own name, in one line.
refused() {
  local where=$1 message=$2
  shift 2
  rm -f rq.ofx
  expect 64 "$@"
  has err "krofx: $where: $message"
  [ "$(wc -l <err)" -eq 1 ] || fail "more than one line for $*"
  [ ! -e rq.ofx ] || fail "a refused request was written: $*"
}
transfer() { refused 'request transfer' "$1" request transfer "${sign_on_options[@]}" "${bank[@]}" "${@:2}"; }
payment() {
  refused 'request payment' "$1" request payment "${sign_on_options[@]}" "${bank[@]}" --v2 --payee Plumber "${@:2}"
}
stop_check() { refused 'request stop-check' "$1" request stop-check "${sign_on_options[@]}" "${bank[@]}" "${@:2}"; }
statement_of() { refused 'request statement' "$1" request statement "${sign_on_options[@]}" "${bank[@]}" "${@:2}"; }

# Amounts are plain: a comma multiplies money.
transfer '--amount 12,50: write 12.50' "${to[@]}" --amount 12,50
for amount in 1.234,5 .5 1,234.50 1,234 '12 50' 1e3 +1 -1 0x10 '$5' 12.; do
  transfer "--amount $amount: it is not an amount" "${to[@]}" --amount "$amount"
  payment "--amount $amount: it is not an amount" --amount "$amount" --due 2026-03-20
  stop_check "--amount $amount: it is not an amount" --payee Plumber --amount "$amount"
done
for amount in 0 0.00 000; do
  transfer "--amount $amount: it must be more than zero" "${to[@]}" --amount "$amount"
  payment "--amount $amount: it must be more than zero" --amount "$amount" --due 2026-03-20
done
transfer '--amount 12.505: it has more than two places' "${to[@]}" --amount 12.505
payment '--amount 12,50: write 12.50' --amount 12,50 --due 2026-03-20
stop_check '--amount 12,50: write 12.50' --payee Plumber --amount 12,50
for amount in 12 12.5 12.50 0.01 007; do
  expect 0 request transfer "${sign_on_options[@]}" "${bank[@]}" "${to[@]}" --amount "$amount"
done

# Days that exist, in order.
for day in 2026-02-30 2026-13-01 2026-00-10 2026-1-31 31.01.2026 20260229 2026-01-31T00:00 20260131250000 -1 ''; do
  [ -z "$day" ] && continue
  statement_of "--from $day is not a date" --from "$day"
done
statement_of '--from 2026-02-01 is after --to 20260131' --from 2026-02-01 --to 20260131
expect 0 request statement "${sign_on_options[@]}" "${bank[@]}" --from 2024-02-29 --to 20240229
expect 0 request statement "${sign_on_options[@]}" "${bank[@]}" --from 20260131093000
has rq.ofx '<DTSTART>20260131093000'
refused 'request investment' '--from 2026-02-01 is after' request investment "${sign_on_options[@]}" \
  --broker b --account 1 --from 2026-02-01 --to 2026-01-31
refused 'request investment' '--as-of 2026-02-30 is not a date' request investment \
  "${sign_on_options[@]}" --broker b --account 1 --as-of 2026-02-30

# Numbers and codes.
transfer '--times: a whole number from 1 to 999' "${to[@]}" --amount 1 --every MONTHLY --times 0
transfer '--times: a whole number from 1 to 999' "${to[@]}" --amount 1 --every MONTHLY --times 1000
transfer '--every OFTEN is not a frequency; write WEEKLY' "${to[@]}" --amount 1 --every OFTEN
transfer '--to-type PIG is not an account type' "${to[@]}" --to-type PIG --amount 1
transfer 'the transfer is to the account that it comes from' --to-bank 123 --to-account 456 --amount 1
refused 'request transfer' 'the transfer is to the account' request transfer "${sign_on_options[@]}" \
  --card 4400 --to-card 4400 --amount 1
stop_check '--first 110 is higher than --last 100' --first 110 --last 100
stop_check '--first 101 is higher than --last 99' --first 101 --last 99
expect 0 request stop-check "${sign_on_options[@]}" "${bank[@]}" --first 0099 --last 100
for language in EN eng ENGL 12A; do
  statement_of "--language $language is not a code" --language "$language"
done
statement_of '--country Ch is not a code' --v2 --country Ch
statement_of '--app-version: a whole number from 1 to 9999' --app-version 12x

# The header says Windows 1252, and so is the text; what it cannot hold is refused.
expect 0 request mail "${sign_on_options[@]}" --subject 'Grüße' --text 'Fünf € für Zoë – "bald"'
has rq.ofx CHARSET:1252
grep -qaF "$(printf '<SUBJECT>Gr\xfc\xdfe')" rq.ofx || fail 'the subject is not in the character set of the header'
expect 0 check rq.ofx
expect 0 print rq.ofx
has out 'Grüße'
has out 'Fünf € für Zoë – "bald"'
expect 0 request mail "${sign_on_options[@]}" --subject "$(printf 'ü%.0s' $(seq 60))" --text b
for text in 'Ωmega' '日本' "$(printf '\xff')"; do
  refused 'request mail' '--text has a character' request mail "${sign_on_options[@]}" --subject a --text "$text"
  refused 'request statement' '--user has a character' request statement --org B "${bank[@]}" --user "$text" -o rq.ofx
done
SECRET=gehölz99 expect 0 request statement "${sign_on_options[@]}" "${bank[@]}"
grep -qaF "$(printf '<USERPASS>geh\xf6lz99')" rq.ofx || fail 'the password is not in the character set of the header'
SECRET=日本語-secret expect 2 request statement "${sign_on_options[@]}" "${bank[@]}"
has err 'the password has a character'
lacks err secret
SECRET=$(printf 'ü%.0s' $(seq 171)) expect 0 request statement "${sign_on_options[@]}" "${bank[@]}"

# Words that are not known. What may be a password is not repeated.
refused 'command line' 'a subcommand is needed; see "krofx --help"'
refused 'command line' 'frob is not a subcommand' frob
refused request 'a subcommand is needed; see "krofx request --help"' request
refused request 'fortune is not a subcommand' request fortune
refused print '--jsn is not known; see "krofx print --help"' print --jsn x
refused send 'there is an argument too many' send a b hunter2
lacks err hunter2
refused send '--password is not known' send a b --password hunter2
lacks err hunter2
refused send '--password is not known' send a b --password=hunter2
lacks err hunter2
refused send '-p is not known' send a b -phunter2
lacks err hunter2
refused 'request statement' '--password-fd: a whole number' request statement --password-fd hunter2
lacks err hunter2
refused print '--table takes one value' print --csv --table

# What cannot be written is not a success.
if [ -w /dev/full ]; then
  for arguments in --help --version 'print --help' 'check --help'; do
    # shellcheck disable=SC2086
    "$krofx" $arguments >/dev/full 2>err
    [ $? -eq 2 ] || fail "krofx $arguments does not notice a full device"
    has err 'standard output'
  done
fi
finish
