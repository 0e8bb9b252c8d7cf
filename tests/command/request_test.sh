#!/usr/bin/env bash
# `krofx request statement`: what it makes is read back, and the password stays secret.
source "$(dirname "$0")/runner.sh" "$@"

sign_on_options=(--org BANK --fid 7 --user ada)
bank=(--bank 123 --account 456 --from 2026-01-01 --to 20260131)
export SECRET=sesame-99

for version in '' --v2; do
  for account in "${bank[*]}" '--card --account 5500'; do
    expect 0 request statement "${sign_on_options[@]}" $version $account --password-env SECRET -o rq.ofx --force
    [ "$(stat -c %a rq.ofx)" = 600 ] || fail 'others can read the request'
    has rq.ofx '<USERPASS>sesame-99'
    lacks out sesame-99
    lacks err sesame-99
    expect 0 check rq.ofx
    expect 0 print --json rq.ofx
    lacks out sesame-99
    has out '"user_id": "ada"'
    has out 'statement-request'
  done
done

# A profile can be asked for anonymously, which takes no password, and by a user.
for version in '' --v2; do
  # shellcheck disable=SC2086
  expect 0 request profile --org BANK --since 2026-01-31 $version -o rq.ofx --force
  has rq.ofx '<USERID>anonymous00000000000000000000000'
  has rq.ofx '<DTPROFUP>20260131'
  expect 0 check rq.ofx
  # shellcheck disable=SC2086
  expect 0 request profile "${sign_on_options[@]}" $version --password-env SECRET
  has out '<USERPASS>sesame-99'
done
expect 64 request profile --org BANK --since soon
expect 64 request statement --org BANK --account 2 --bank 1

# Ways of the password.
expect 0 request statement "${sign_on_options[@]}" "${bank[@]}" --password-fd 0 <<<'from-fd'
has out '<USERPASS>from-fd'
KROFX_PASSWORD=from-env expect 0 request statement "${sign_on_options[@]}" "${bank[@]}"
has out '<USERPASS>from-env'
expect 2 request statement "${sign_on_options[@]}" "${bank[@]}" --password-env NOTHING
expect 2 request statement "${sign_on_options[@]}" "${bank[@]}" --password-fd 9
printf 'x%.0s' $(seq 500) >long
expect 2 request statement "${sign_on_options[@]}" "${bank[@]}" --password-fd 0 <long
lacks err xxxxx
expect 64 request statement "${sign_on_options[@]}" "${bank[@]}" --password secret

# A terminal shows no password.
python3 "$(dirname "$0")/on_terminal.py" 80 "$krofx" request statement "${sign_on_options[@]}" "${bank[@]}" >out 2>err
[ $? -eq 2 ] || fail 'a request is written to a terminal'
has out 'krofx: request statement: the request holds the password and is not shown on a terminal'

# What OFX does not take.
bad() {
  local message=$1
  shift
  expect 64 request statement "${sign_on_options[@]}" --password-env SECRET "$@"
  has err "krofx: request statement: "
  has err "$message"
}
bad 'no more than 22' --bank 1 --account 12345678901234567890123
bad 'not a date' --bank 1 --account 2 --from soon
bad 'not an account type' --bank 1 --account 2 --type PIGGY
bad 'not an account type' --bank 1 --account 2 --type UNKNOWN
bad 'needs --v2' --bank 1 --account 2 --country CHE
expect 64 request statement "${sign_on_options[@]}" --account 2 --password-env SECRET
expect 64 request statement --account 2
expect 64 request
finish
