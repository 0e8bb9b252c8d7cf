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
transfer '--amount 12.505: it has more than two places after the point; write two, as in 1234.50' "${to[@]}" --amount 12.505
transfer '--amount 0,0: it must be more than zero' "${to[@]}" --amount 0,0
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
# A day without a time is its midnight.
statement_of '--from 20260101093000 is after --to 2026-01-01' --from 20260101093000 --to 2026-01-01
expect 0 request statement "${sign_on_options[@]}" "${bank[@]}" --from 20260101000000 --to 2026-01-01
expect 0 request statement "${sign_on_options[@]}" "${bank[@]}" --from 2026-01-01 --to 20260101093000
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
# Another spelling of an account does not make it another account.
for types in '--type checking' '--to-type Checking --v2' '--type Savings --to-type SAVINGS'; do
  # shellcheck disable=SC2086
  transfer 'the transfer is to the account that it comes from' --to-bank 123 --to-account 456 $types --amount 1
done
for card in '5500 1111 2222 4410' 5500-1111-2222-4410 "$(printf '5500\302\24011112222 4410')"; do
  refused 'request transfer' 'the transfer is to the account' request transfer "${sign_on_options[@]}" \
    --card 5500111122224410 --to-card "$card" --amount 1
done
transfer 'the transfer is to the account' --to-bank 1-23 --to-account '4 56' --amount 1
stop_check '--first 110 is higher than --last 100' --first 110 --last 100
stop_check '--first 101 is higher than --last 99' --first 101 --last 99
expect 0 request stop-check "${sign_on_options[@]}" "${bank[@]}" --first 0099 --last 100
stop_check '--first A110 is higher than --last A100' --first A110 --last A100
expect 0 request stop-check "${sign_on_options[@]}" "${bank[@]}" --first A99 --last A100
for last in 99a B120 A; do
  stop_check "--first A110 and --last $last do not say which numbers lie between them" --first A110 --last "$last"
done
stop_check '--first 110 and --last 99a do not say which numbers' --first 110 --last 99a
for number in 1,000 1.5 -5 0 000 '1 2' '7 ' ' 7' '#7'; do
  stop_check "--first $number is not the number of a check" --first "$number"
  stop_check "--last $number is not the number of a check" --first 1 --last "$number"
  stop_check "--number $number is not the number of a check" --payee Plumber --number "$number"
done
# Blanks around a number are lost on the way, and another account can be the same.
refused 'request transfer' '--account has a blank' request transfer "${sign_on_options[@]}" --bank 123 \
  --account '789 ' "${to[@]}" --amount 1
transfer '--to-account has a blank' --to-bank 123 --to-account ' 456' --amount 1
transfer '--to-bank has a blank' --to-bank '123 ' --to-account 456 --amount 1
transfer '--to-card has a blank' --to-card '4400 ' --amount 1
transfer '--to-bank has a blank' --to-bank "$(printf '123\302\240')" --to-account 456 --amount 1
# What an order would not say is not taken.
for option in --to-branch --to-type; do
  transfer "$option requires --to-bank" --to-card 4400 $option SAVINGS --amount 1
  refused 'request mail' "${option/to-/} requires --bank" request mail "${sign_on_options[@]}" --subject a --text b \
    "${option/to-/}" SAVINGS
done
for option in address city state postal-code country phone; do
  refused 'request payment' "--payee-$option requires --payee" request payment "${sign_on_options[@]}" "${bank[@]}" \
    --amount 1 --due 2026-03-20 --payee-id 5 --payee-account 6 "--payee-$option" USA
done
payment '--payee-account has a blank' --amount 1 --due 2026-03-20 --payee-account ' 5'
for country in x de deu USAA; do
  payment "--payee-country $country is not a code of three capital letters, such as USA" --amount 1 \
    --due 2026-03-20 --payee-country "$country"
done

for option in --branch --type; do
  refused 'request statement' "$option requires --bank" request statement "${sign_on_options[@]}" --card --account 1 \
    $option SAVINGS
done

# Numbers are decimal, with zeros before them too.
expect 0 request transfer "${sign_on_options[@]}" "${bank[@]}" "${to[@]}" --amount 1 --every MONTHLY --times 012
has rq.ofx '<NINSTS>12'
expect 0 request transfer "${sign_on_options[@]}" "${bank[@]}" "${to[@]}" --amount 1 --every MONTHLY --times 08 --app-version 0100
grep -q '^<NINSTS>8$' rq.ofx || fail 'not eight times'
has rq.ofx '<APPVER>0100'
transfer '--times: a whole number from 1 to 999' "${to[@]}" --amount 1 --every MONTHLY --times 01000
transfer '--times: a whole number from 1 to 999' "${to[@]}" --amount 1 --every MONTHLY --times 99999999999999999999
transfer '--times: a whole number from 1 to 999' "${to[@]}" --amount 1 --every MONTHLY --times 0x10
expect 0 request statement --org B --user a "${bank[@]}" --password-fd 010 8<<<eight 10<<<ten
has out '<USERPASS>ten'

# A text of any length is refused, not left out.
long=$(printf '%070000d' 0 | tr 0 9)
for text in "${long:0:65535}" "${long:0:65534}" "${long:0:400}"; do
  transfer "--branch has ${#text} characters; OFX takes no more than 22" "${to[@]}" --amount 1 --branch "$text"
  transfer "--memo has ${#text} characters; OFX takes no more than 390" "${to[@]}" --amount 1 --v2 --memo "$text"
  stop_check "--last has ${#text} characters; OFX takes no more than 12" --first 1 --last "$text"
  stop_check "--number has ${#text} characters; OFX takes no more than 12" --payee Plumber --number "$text"
  payment "--payee-account has ${#text} characters; OFX takes no more than 32" --amount 1 --due 2026-03-20 \
    --payee-account "$text"
  payment "--payee-list-id has ${#text} characters; OFX takes no more than 36" --amount 1 --due 2026-03-20 \
    --payee-list-id "$text"
  refused 'request statement' "--fid has ${#text} characters; OFX takes no more than 32" \
    request statement --org B --user a "${bank[@]}" --fid "$text"
done
mail=(request mail "${sign_on_options[@]}" --subject a --text)
for length in 2161 70000; do
  refused 'request mail' "--text has $length characters; OFX takes no more than 2160" "${mail[@]}" "${long:0:$length}"
done
expect 0 "${mail[@]}" "${long:0:2160}"

# A text of blanks would be no text, and blanks around a name would make it another one.
for blanks in '   ' "$(printf '\302\240')"; do
  payment '--payee-address has nothing but blanks' --amount 1 --due 2026-03-20 --payee-address "$blanks"
  payment '--bill has nothing but blanks' --amount 1 --due 2026-03-20 --bill "$blanks"
  payment '--memo has nothing but blanks' --amount 1 --due 2026-03-20 --memo "$blanks"
  stop_check '--payee has nothing but blanks' --payee "$blanks"
  refused 'request mail' '--text has nothing but blanks' "${mail[@]}" "$blanks"
  refused 'request mail' '--from has nothing but blanks' "${mail[@]}" b --from "$blanks"
  refused 'request mail' '--to has nothing but blanks' "${mail[@]}" b --to "$blanks"
  for name in "$blanks" "${blanks}a" "a$blanks"; do
    for option in --user --org --fid --app-id; do
      given=(--org B --user a --fid 7 --app-id A)
      for index in 0 2 4 6; do
        [ "${given[index]}" != "$option" ] || given[index + 1]=$name
      done
      refused 'request statement' "$option has a blank at its start or its end" request statement "${given[@]}" "${bank[@]}"
      refused 'request mail' "$option has a blank at its start or its end" request mail "${given[@]}" --subject a --text b
    done
    SECRET=$name expect 2 request statement "${sign_on_options[@]}" "${bank[@]}"
    [ "$(cat err)" = 'krofx: request statement: the password has a blank at its start or its end, which would be lost on the way' ] ||
      fail 'not refused for the blanks of the password'
  done
done
SECRET='two words' expect 0 request statement "${sign_on_options[@]}" "${bank[@]}"
has rq.ofx '<USERPASS>two words'

# An empty value is not an option that is left out: a variable of a script may have no value.
for option in --due --every --memo --to-branch --to-type; do
  transfer "$option: its value is empty" "${to[@]}" --amount 1 "$option" '' --v2
  transfer "$option: its value is empty" "${to[@]}" --amount 1 "$option=" --v2
done
stop_check '--last: its value is empty' --first 5 --last ''
stop_check '--last: its value is empty' --first 5 --last= --v2
for option in --amount --date --number; do
  stop_check "$option: its value is empty" --payee Plumber "$option" ''
done
statement_of '--from: its value is empty' --from '' --to ''
statement_of '--app-id: its value is empty' --app-id ''
statement_of '--output: its value is empty' -o ''
statement_of 'BANK: its value is empty' ''
payment '--due: its value is empty' --amount 1 --due ''
refused 'request accounts' '--since: its value is empty' request accounts "${sign_on_options[@]}" --since ''
refused 'request mail' '--subject: its value is empty' request mail "${sign_on_options[@]}" --subject '' --text a
refused print '--min: its value is empty' print --min ''
refused print '--account: its value is empty' print --account ''
refused print '--from: its value is empty' print --from=
refused 'fetch statement' '--root: its value is empty' fetch statement --root '' --url https://127.0.0.1:1/
# After -- there are no options.
expect 2 print -- --from=
has err '--from='

# Control characters would be in the request as they are.
for control in '\n' '\033[2J' '\177' '\t'; do
  text=$(printf "a${control}b")
  transfer '--memo has a control character' --v2 "${to[@]}" --amount 1 --memo "$text"
  transfer '--to-account has a control character' --to-bank 1 --to-account "$text" --amount 1
  statement_of '--app-id has a control character' --app-id "$text"
  refused 'request statement' '--user has a control character' request statement --org B "${bank[@]}" --user "$text" -o rq.ofx
  refused 'request mail' '--subject has a control character' request mail "${sign_on_options[@]}" \
    --subject "$text" --text a
  SECRET=$text expect 2 request statement "${sign_on_options[@]}" "${bank[@]}"
  has err 'the password has a control character'
done
expect 2 request statement --org B --user a "${bank[@]}" --password-fd 0 -o rq.ofx --force < <(printf 'hidden\0secret\n')
has err 'the password has a control character'
lacks err hidden
expect 0 request mail "${sign_on_options[@]}" --subject a --text "$(printf 'Good day,\n\n\tthe fee\r\nis wrong.')"
refused 'request mail' '--text has a control character' request mail "${sign_on_options[@]}" \
  --subject a --text "$(printf 'a\033b')"
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
refused 'request statement' '--card takes no value' request statement --card=hunter2
lacks err hunter2

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
