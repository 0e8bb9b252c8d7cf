#!/usr/bin/env bash
# Accounts, transfers, stop checks and mail: what `krofx print` shows of them, and the requests that
# `krofx request` makes.
source "$(dirname "$0")/runner.sh" "$@"

sign_on_options=(--org BANK --fid 7 --user ada --password-env SECRET -o rq.ofx --force)
bank=(--bank 123 --account 456)
export SECRET=sesame-99

# Makes a request of either version, checks it and prints it: request VERSION ARGUMENT...
request() {
  local version=$1
  shift
  expect 0 request "$1" "${sign_on_options[@]}" $version "${@:2}"
  expect 0 check rq.ofx
  expect 0 print --json rq.ofx
  lacks out '"kind": "other"'
  lacks out sesame-99
}

for version in '' --v2; do
  request "$version" accounts
  has out '"kind": "accounts-request"'
  has out '"accounts_date": "1970-01-01"'
  request "$version" accounts --since 2026-02-03
  has out '2026-02-03'

  request "$version" transfer "${bank[@]}" --to-bank 123 --to-account 789 --to-type SAVINGS \
    --amount 12.34 --due 2026-05-06
  has out '"kind": "transfer-request"'
  has out '"amount": "12.34"'
  has out '"from_account": "456"'
  has out '"to_account": "789"'
  has out '"due": "2026-05-06"'
  request "$version" transfer "${bank[@]}" --to-card 4400 --amount 5
  has out '"to_account": "4400"'
  request "$version" transfer --card 4400 --to-bank 9 --to-account 8 --amount 5
  has out '"kind": "transfer-request"'
  request "$version" transfer "${bank[@]}" --to-bank 999 --to-account 789 --amount 12.34
  has out '"kind": "interbank-transfer-request"'
  request "$version" transfer "${bank[@]}" --to-bank 123 --to-account 789 --amount 1 \
    --every MONTHLY --times 12
  has out '"kind": "recurring-transfer-request"'
  has out '"frequency": "MONTHLY"'
  has out '"times": 12'
  has out '"amount": "1"'
  request "$version" transfer "${bank[@]}" --to-bank 999 --to-account 789 --amount 1 --every WEEKLY
  has out '"kind": "recurring-interbank-transfer-request"'
  lacks out '"times"'

  request "$version" stop-check "${bank[@]}" --first 100 --last 103
  has out '"first_check": "100"'
  has out '"last_check": "103"'
  request "$version" stop-check "${bank[@]}" --payee Plumber --number 7 --date 2026-01-02 \
    --amount 3.25
  has out '"name": "Plumber"'
  has out '"user_date": "2026-01-02"'

  request "$version" mail --subject Hours --text 'Are you open & when?'
  has out '"kind": "mail-request"'
  has out '"subject": "Hours"'
  has out '"text": "Are you open & when?"'
  has out '"to": "BANK"'
  request "$version" mail "${bank[@]}" --subject Fee --text Why --from Ada --to Desk
  has out '"kind": "bank-mail-request"'
  has out '"from": "Ada"'
  request "$version" mail --card --account 4400 --subject Fee --text Why
  has out '"account_id": "4400"'
done

request --v2 transfer "${bank[@]}" --to-bank 123 --to-account 789 --amount 1 --memo Rent
has out '"memo": "Rent"'

# Accounts of a bank that is described, by the ends of their numbers: none but the one that is meant.
export HOME=$work/home XDG_CONFIG_HOME=$work/config XDG_STATE_HOME=$work/state
mkdir -p config/krofx
{
  printf '[%s]\nurl = "https://sea.example/ofx"\norg = "SEA"\nuser = "ada"\nprofile = false\n' lake sea
  printf '[[sea.account]]\naccount = "10946"\nbank = "1"\n[[sea.account]]\naccount = "20946"\nbank = "1"\ntype = "SAVINGS"\n'
  printf '[[sea.account]]\naccount = "5500111122220946"\ncard = true\n'
} >config/krofx/banks.toml
chmod 600 config/krofx/banks.toml
KROFX_PASSWORD=x expect 0 request statement @sea --account 10946
has out '<ACCTID>10946'
[ "$(grep -c '<ACCTID>' out)" -eq 1 ] || fail 'more than the account that is named'
# A whole number is that of its account, though another ends in it.
sed -i '/^\[\[sea.account\]\]$/{N;s/"20946"/"0946"/}' config/krofx/banks.toml
KROFX_PASSWORD=x expect 0 request statement @sea --account 0946
has out '<ACCTID>0946'
[ "$(grep -c '<ACCTID>' out)" -eq 1 ] || fail 'more than the account that is named'
sed -i 's/"0946"/"20946"/' config/krofx/banks.toml
KROFX_PASSWORD=x expect 0 request statement @sea
[ "$(grep -c '<ACCTID>' out)" -eq 3 ] || fail 'not all accounts'
KROFX_PASSWORD=x expect 0 request statement @sea --card --account 5500111122229999
has out '<ACCTID>5500111122229999'
KROFX_PASSWORD=x expect 0 request investment @sea --broker b.example --account 9
has out '<BROKERID>b.example'
# not_meant MESSAGE ARGUMENT...
not_meant() {
  expect 64 request "${@:2}"
  has err "$1"
  [ ! -s out ] || fail "a request was made: $*"
}
not_meant 'sea has several accounts that end in 946: 10946 CHECKING, 20946 SAVINGS' statement @sea --account 946
not_meant 'sea has several accounts that end in 946' transfer @sea --account 946 --to-account 10946 --amount 1
not_meant 'sea has several accounts that end in 946' transfer @sea --account 10946 --to-account 946 --amount 1
not_meant 'sea has no account that ends in 777; it has 10946 CHECKING, 20946 SAVINGS, card ************0946' \
  statement @sea --account 777
not_meant 'no account that ends in ************0947' statement @sea --account 5500111122220947
lacks err 5500111122220947
not_meant 'no such account of sea is known; name one with all its options' investment @sea
not_meant 'no such account of lake is known' statement @lake
not_meant '--account is required, or a bank' statement --org O --user u
not_meant '--bank is not for cards' statement --org O --user u --account 1 --bank 2 --card
not_meant 'name a bank with --bank, or use --card' statement --org O --user u --account 1
not_meant '--account is required, or a bank' investment --org O --user u --broker b
not_meant '--broker is required, or a bank' investment --org O --user u --account 1

# What cannot be asked for.
refused() {
  local status=$1 message=$2
  shift 2
  rm -f rq.ofx
  expect "$status" request "$1" "${sign_on_options[@]}" "${@:2}"
  has err "$message"
  [ ! -e rq.ofx ] || fail "a refused request was written: $*"
}
to=(--to-bank 123 --to-account 789)
refused 64 'not a date' accounts --since soon
refused 64 'name each end' transfer "${bank[@]}" --amount 1
refused 64 'name each end' transfer "${bank[@]}" --card 1 "${to[@]}" --amount 1
refused 64 'not an amount' transfer "${bank[@]}" "${to[@]}" --amount -1
refused 64 'not an amount' transfer "${bank[@]}" "${to[@]}" --amount much
refused 64 'not a date' transfer "${bank[@]}" "${to[@]}" --amount 1 --due later
refused 64 'needs --v2' transfer "${bank[@]}" "${to[@]}" --amount 1 --memo Rent
refused 64 'not a frequency' transfer "${bank[@]}" "${to[@]}" --amount 1 --every OFTEN
refused 64 '--to-type PIG' transfer "${bank[@]}" "${to[@]}" --to-type PIG --amount 1
refused 64 'times' transfer "${bank[@]}" "${to[@]}" --amount 1 --times 3
refused 64 'name the checks' stop-check "${bank[@]}"
refused 64 'name the checks' stop-check "${bank[@]}" --first 1 --payee Plumber
refused 64 'no more than 12' stop-check "${bank[@]}" --first 1234567890123
refused 64 'name an account' mail --card --subject a --text b
refused 64 'name an account' mail --account 1 --subject a --text b
refused 64 'no more than 60' mail --subject "$(printf 'x%.0s' $(seq 61))" --text b
refused 64 '--text has 2161' mail --subject a --text "$(printf 'x%.0s' $(seq 2161))"

# The examples: every exchange has a form of its own.
for version in '' -v2; do
  for family in sign-up transfers stop-checks mail; do
    for side in request response; do
      expect 0 print --json "$examples/$family-$side$version.ofx"
      lacks out '"kind": "other"'
      lacks out not-a-real-password
      lacks out tide-4471
      lacks out 000-00-4410
    done
  done
  expect 0 print "$examples/transfers-response$version.ofx"
  has out 'Recurring transfer'
  has out 'TW-88014'
  has out 'Halden Boatworks'
  expect 0 print "$examples/stop-checks-response$version.ofx"
  has out 'Paid on March 2'
  expect 0 print "$examples/mail-response$version.ofx"
  has out 'Re: Opening hours'
  has out 'error & has been taken back.'
  expect 0 print "$examples/sign-up-response$version.ofx"
  has out 'Travel card'
done
finish
