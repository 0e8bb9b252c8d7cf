#!/usr/bin/env bash
# `krofx request payment`: what it makes is complete in either version, and what is not is refused.
source "$(dirname "$0")/runner.sh" "$@"

export SECRET=sesame-99
base=(--org BANK --fid 7 --user ada --bank 123 --account 456 --payee-account 88-1204
  --password-env SECRET)
common=("${base[@]}" --amount 61.45 --due 2026-03-20)
address=(--payee 'Kestrel Timber' --payee-address '9 Mill Lane' --payee-city Harborton
  --payee-state ME --payee-postal-code 04578 --payee-phone 2075550117)

# complete [OPTION...]: the request can be made, has all that it needs, and shows what it asks for.
complete() {
  expect 0 request payment "${common[@]}" "$@" -o rq.ofx --force
  expect 0 check rq.ofx
  expect 0 print rq.ofx
  has out 'Payment asked for: 123 456 CHECKING'
  has out '61.45'
  has out '2026-03-20'
  lacks out sesame-99
}
for version in '' --v2; do
  complete $version --payee-id 501 --payee-list-id 3
  complete $version "${address[@]}" --memo 'Thank you' --bill FEB-2026
  expect 0 print --json rq.ofx
  has out '"payee": "Kestrel Timber"'
  has out '"amount": "61.45"'
  has out '"due": "2026-03-20"'
  has out '"memo": "Thank you"'
done
complete --v2 --payee-list-id 3
complete --v2 --payee 'Kestrel Timber'

# refused MESSAGE [OPTION...]: the request cannot be made.
refused() {
  local message=$1
  shift
  expect 64 request payment "${common[@]}" "$@"
  has err "$message"
}
refused 'either --payee or --payee-id'
refused 'either --payee or --payee-id' --payee-list-id 3
refused 'either --payee or --payee-id' --payee-id 501 "${address[@]}"
refused 'not with the first two' --v2
refused 'not with the first two' --v2 --payee-id 501 --payee-list-id 3 "${address[@]}"
refused 'a payee needs' --payee 'Kestrel Timber'
refused 'no more than 12' --payee-id 1234567890123
refused 'not an account type' --payee-id 501 --type PIGGY
common=("${base[@]}" --payee-id 501)
refused 'not an amount' --amount much --due 2026-03-20
refused 'not a date' --amount 61.45 --due soon
expect 64 request payment --org BANK --user ada
finish
