#!/usr/bin/env bash
# What scripts can rely on: each exit status of an exchange, by a bank that is well, slow, broken or refuses; and that
# the manual and the help have them in one table.
here=$(cd "$(dirname "$0")" && pwd)
source "$here/runner.sh" "$@"
source "$here/servers.sh"
source "$here/banks.sh"
export XDG_DATA_HOME=$work/data
bank_server=$3
# serve OPTION...: has an example bank be the bank harbor.
serve() {
  stop_servers
  start "$bank_server" --ca-file "$work/ca.pem" "$@"
  write_harbor_at_url <<END1
profile = false

[[harbor.account]]
account = "00718220946"
bank = "211370545"
END1
}
# ends STATUS: all that ask a bank end so.
ends() {
  local wanted=$1 command
  shift
  expect 0 request statement @harbor --from 2026-01-01 -o request.ofx --force
  for command in 'fetch statement @harbor' 'fetch all @harbor' 'bank check harbor' 'send @harbor request.ofx -o reply.ofx'; do
    # shellcheck disable=SC2086
    expect "$wanted" $command "$@"
    lacks err "$KROFX_PASSWORD"
  done
  leaves_nothing
}
export KROFX_PASSWORD=not-a-real-password

serve
ends 0
# 5: the sign-on is refused; again would lock it. 4: the request is.
KROFX_PASSWORD=wrong-password ends 5
sed -i 's/00718220946/999/' "$banks"
expect 4 fetch statement @harbor
expect 4 fetch all @harbor
# 3: no reply, whatever the reason that passes.
for option in '--status 429' '--status 500' '--status 502' '--status 503' '--status 504' '--cut 100' '--cut 700'; do
  # shellcheck disable=SC2086
  serve $option
  ends 3
done
serve --delay 3600
sed -i '/^profile/a timeout = 1' "$banks"
ends 3
has err 'no reply within 1 second'
stop_servers
ends 3
# 2: what stays until somebody changes something.
for option in '--status 400' '--status 401' '--status 404' '--fault expired' '--fault other-host'; do
  # shellcheck disable=SC2086
  serve $option
  ends 2
done
# 6: the user gives up at the prompt. 64: wrong use.
serve
unset KROFX_PASSWORD
for command in 'fetch statement @harbor' 'fetch all' 'bank check harbor' 'request statement @harbor -o new.ofx'; do
  for key in '\003' '\034' '\004'; do
    # shellcheck disable=SC2086,SC2059
    python3 "$here/with_terminal.py" "$(printf "$key")" "$krofx" $command >out 2>err
    got=$?
    [ $got -eq 6 ] || fail "krofx $command gave $got, not 6, for $key"
  done
done
[ ! -e new.ofx ] || fail 'a request was written without its password'
expect 64 fetch statement @nobody

# The statuses, as the manual and the help have them.
manual=$(dirname "$examples")/docs/krofx.1
sed -n '/^\.TS/,/^\.TE/p' "$manual" >table
for status in 0 1 2 3 4 5 6 64; do
  grep -q "^$status	" table || fail "the manual has no status $status in its table"
done
expect 0 --help
has out '6 cancelled, 64 wrong use'
finish
