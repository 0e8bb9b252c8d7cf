#!/usr/bin/env bash
# Wrong values of `krofx fetch`: they are wrong use before a password is read and before anything is sent.
here=$(cd "$(dirname "$0")" && pwd)
source "$here/runner.sh" "$@"
source "$here/servers.sh"
source "$here/banks.sh"
export XDG_DATA_HOME=$work/data
# It writes down that it was asked.
start python3 "$here/http_server.py"

wrong() { # MESSAGE ARGUMENT...
  local message=$1
  shift
  expect 64 fetch "$@"
  has err "$message"
  [ "$(wc -l <err)" -eq 1 ] || fail "fetch $* says more than what is wrong"
  [ ! -e password-read ] || fail "the password is read for fetch $*"
  [ ! -e asked ] || fail "the server is asked for fetch $*"
  rm -f password-read asked
}

all_wrong() {
  wrong '--from 2026-02-30 is not a date' statement @b --account 946 --from 2026-02-30
  wrong '--to x is not a date' statement @b --to x
  wrong '--from 2026-03-02 is after --to 2026-03-01' statement @b --from 2026-03-02 --to 2026-03-01
  wrong '--type CHEKING is not an account type' statement @b --account 946 --bank 1 --type CHEKING
  wrong '--bank has 10 characters' statement @b --account 946 --bank 1234567890
  wrong '--bank is not for cards' statement @b --account 946 --bank 1 --card
  wrong '--account is required' statement @b --card
  wrong '--language x is not a code' statement @b --language x
  wrong '--table bogus is not a table' statement @b --csv --table bogus
  wrong '--from 2026-02-30 is not a date' investment @b --from 2026-02-30
  wrong '--as-of x is not a date' investment @b --as-of x
  wrong '--from 2026-03-02 is after --to 2026-03-01' investment @b --broker c.example --account 7 \
    --from 2026-03-02 --to 2026-03-01
  wrong '--since x is not a date' accounts @b --since x
  wrong '--since x is not a date' profile @b --since x
  wrong '--from 2026-02-30 is not a date' all --from 2026-02-30
  wrong '--from x is not a date' all @b --from x
}

for profile in 'profile = false' 'version = 2' ''; do
  for accounts in '' '[[b.account]]
account = "00718220946"
bank = "211370545"
[[b.account]]
account = "7-4401-22"
broker = "b.example"'; do
    write_banks <<END
[b]
url = "$url/keep/asked"
org = "O"
user = "u"
password-command = "touch '$work/password-read'; echo secret"
$profile
$accounts
END
    all_wrong
    # What is right is asked for.
    expect 3 fetch statement @b --from 2026-02-01
    [ -e asked ] || fail 'nothing is asked for'
    rm -f password-read asked
  done
done
finish
