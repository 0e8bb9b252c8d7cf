#!/usr/bin/env bash
# Orders say what they order before they are written, and no request takes the place of another.
source "$(dirname "$0")/runner.sh" "$@"

export SECRET=sesame-99
sign_on_options=(--org BANK --user ada --password-env SECRET)
from=(--bank 211370545 --account 1)

# orders WORDS ARGUMENT...: the request says so on standard error, in one line, and nothing secret.
orders() {
  local words=$1
  shift
  expect 0 request "$1" "${sign_on_options[@]}" "${@:2}"
  [ "$(cat err)" = "krofx: request $1: $words" ] || fail "not \"$words\""
  has out '<OFX>'
}
for version in '' --v2; do
  # shellcheck disable=SC2086
  {
    orders '12.50 USD from 211370545/1 CHECKING to 211370545/2 SAVINGS, due 2026-02-01' \
      transfer "${from[@]}" --to-bank 211370545 --to-account 2 --to-type SAVINGS --amount 12.50 \
      --due 2026-02-01 $version
    orders '5 USD from 211370545/1 CHECKING to 999/7 CHECKING, MONTHLY, 12 times' \
      transfer "${from[@]}" --to-bank 999 --to-account 7 --amount 5 --every MONTHLY --times 12 $version
    orders '5 from card ************4410 to 9/8 CHECKING, WEEKLY without end' \
      transfer --card 5500111122224410 --to-bank 9 --to-account 8 --amount 5 --every WEEKLY $version
    orders '5 from 123/4/1 MONEYMRKT to card ************4410' \
      transfer --bank 123 --branch 4 --account 1 --type MONEYMRKT --to-card 5500111122224410 \
      --amount 5 $version
    orders '61.45 USD from 211370545/1 CHECKING to payee 501, account 88-1204, due 2026-03-20' \
      payment "${from[@]}" --amount 61.45 --due 20260320 --payee-id 501 --payee-account 88-1204 $version
    orders 'no payment of checks 100 to 103 from 211370545/1 CHECKING' \
      stop-check "${from[@]}" --first 100 --last 103 $version
    orders 'no payment of check 100 from 211370545/1 CHECKING' stop-check "${from[@]}" --first 100 $version
    orders 'no payment of check 7 to Plumber of 3.25 USD from 211370545/1 CHECKING' \
      stop-check "${from[@]}" --payee Plumber --number 7 --amount 3.25 $version
    orders 'no payment of check to Plumber dated 2026-01-31 from 211370545/1 CHECKING' \
      stop-check "${from[@]}" --payee Plumber --date 20260131 $version
    orders '5 USD from 211370545/1 CHECKING to 9/8 CHECKING, due 2026-01-31 09:30:00 UTC' \
      transfer "${from[@]}" --to-bank 9 --to-account 8 --amount 5 --due 20260131093000 $version
    orders 'letter to BANK: Hours' mail --subject Hours --text 'When?' $version
    orders 'letter to Desk about 211370545/1 CHECKING: Fee' \
      mail "${from[@]}" --to Desk --subject Fee --text 'Why?' $version
  }
done
orders '9 USD from 211370545/1 CHECKING to payee 3 of the list, due 2026-03-20' \
  payment "${from[@]}" --amount 9 --due 2026-03-20 --payee-list-id 3 --v2
orders '9 USD from 211370545/1 CHECKING to payee 6, payee 5 of the list, account 1, due 2026-03-20' \
  payment "${from[@]}" --amount 9 --due 2026-03-20 --payee-id 6 --payee-list-id 5 --payee-account 1
orders '9 USD from 211370545/1 CHECKING to Plumber, payee 5 of the list, due 2026-03-20' \
  payment "${from[@]}" --amount 9 --due 2026-03-20 --payee Plumber --payee-list-id 5 --v2
orders '5 USD from 211370545/1 SAVINGS to 9/8 MONEYMRKT, MONTHLY, 3 times' \
  transfer "${from[@]}" --type savings --to-bank 9 --to-account 8 --to-type MoneyMrkt --amount 5 --every monthly --times 3
orders 'no payment of check 100 from 211370545/1 SAVINGS' stop-check "${from[@]}" --type savings --first 100
orders '9 USD from 211370545/1 CHECKING to Kestrel Timber, due 2026-03-20' \
  payment "${from[@]}" --amount 9 --due 2026-03-20 --payee 'Kestrel Timber' --v2
# The number of a bank elsewhere says nothing of the currency, and neither does a wrong check digit.
orders '5 from 211370546/1 CHECKING to 211370546/2 CHECKING' \
  transfer --bank 211370546 --account 1 --to-bank 211370546 --to-account 2 --amount 5
# What moves nothing orders nothing, and what is refused does not either.
expect 0 request statement "${sign_on_options[@]}" "${from[@]}"
[ ! -s err ] || fail 'a statement orders something'
expect 64 request transfer "${sign_on_options[@]}" "${from[@]}" --amount 5
lacks err USD

# A file that is there stays, and its owner is not asked for a password first.
statement=(request statement --org BANK --user ada "${from[@]}" -o request.ofx)
echo 'a request that is still to be sent' >request.ofx
expect 2 "${statement[@]}" --password-env NOT_LOOKED_AT
has err 'krofx: request.ofx: there is such a file already'
has err --force
has request.ofx 'still to be sent'
expect 0 "${statement[@]}" --password-env SECRET --force
has request.ofx '<STMTRQ>'
[ "$(stat -c %a request.ofx)" = 600 ] || fail 'others can read the request'
rm request.ofx
expect 0 "${statement[@]}" --password-env SECRET
[ "$(ls)" = "$(printf 'err\nout\nrequest.ofx')" ] || fail 'another file was left behind'

# Days before today.
for unit in d w m; do
  expect 0 request statement "${sign_on_options[@]}" "${from[@]}" --from -2$unit --to today
  case $unit in
  d) day=$(date -d '2 days ago' +%Y%m%d) ;;
  w) day=$(date -d '14 days ago' +%Y%m%d) ;;
  m) day= ;;
  esac
  has out "<DTSTART>$day"
  has out "<DTEND>$(date +%Y%m%d)"
done
expect 64 request statement "${sign_on_options[@]}" "${from[@]}" --from -2x
expect 64 request statement "${sign_on_options[@]}" "${from[@]}" --from today --to -1d
has err 'is after'
expect 64 request transfer "${sign_on_options[@]}" "${from[@]}" --to-card 1 --amount 1 --due -2d

# A command or option that is misspelled names the nearest.
expect 64 prnt
has err 'krofx: command line: prnt is not a subcommand; see "krofx --help"; did you mean print?'
expect 64 request statment
has err 'did you mean statement?'
expect 64 request statement "${sign_on_options[@]}" "${from[@]}" --form=2026-01-01
has err '--form is not known; see "krofx request statement --help"; did you mean --from?'
lacks err 2026-01-01
expect 64 zzzzzz
lacks err 'did you mean'
expect 64 request statement "${sign_on_options[@]}" "${from[@]}" --type SAVNGS
has err 'did you mean SAVINGS?'
finish
