#!/usr/bin/env bash
# Long work says on a terminal how far it is and how much time is left, and nothing elsewhere.
here=$(cd "$(dirname "$0")" && pwd)
source "$here/runner.sh" "$@"

mkfifo pipe
cp "$examples/checking.ofx" "$examples/card.ofx" .
for command in print check sum; do
  python3 "$here/with_work.py" ' s left' pipe pipe checking.ofx "$krofx" $command --jobs 1 card.ofx pipe card.ofx \
    >out 2>err || fail "$command does not say how much time is left"
  has out 'krofx: 2 of 3, '
  grep -q 'about [0-9]* s left: pipe' out || fail "$command does not name the file at work"
  # The line is gone before the output.
  grep -q "$(printf 'pipe\r\033\\[K')" out || fail "the line of $command stays"
done

# Output and progress on one terminal: what stays is the output alone, whatever comes first.
"$krofx" print --csv --jobs 1 card.ofx checking.ofx card.ofx >expected
for command in 'print --csv --jobs 1 card.ofx pipe card.ofx' 'print --csv card.ofx pipe card.ofx'; do
  # shellcheck disable=SC2086
  python3 "$here/with_work.py" ' s left' pipe pipe checking.ofx "$krofx" $command >shown 2>err ||
    fail "no progress of $command"
  grep -q 'krofx: [123] of 3' shown || fail "no progress of $command is shown"
  sed "s/.*$(printf '\r\033\\[K')//; s/^pipe,/checking.ofx,/" shown >out
  cmp -s expected out || fail "the progress of $command is among its rows"
done
python3 "$here/with_work.py" ' s left' server "$krofx" get -o answer >out 2>err ||
  fail 'an exchange does not say how much time is left'
grep -q 'krofx: receiving from 127.0.0.1: [0-9]* of 100000 bytes, about [0-9]* s left' out ||
  fail 'not the progress of an exchange'
[ "$(stat -c %s answer)" -eq 100000 ] || fail 'not the whole answer'

# Without a terminal there is no line, however long it takes.
"$krofx" print --jobs 1 card.ofx pipe >out 2>err &
printing=$!
{ sleep 1.5 && cat checking.ofx; } >pipe
wait $printing || fail 'a pipe is not read'
[ ! -s err ] || fail 'progress without a terminal'
finish
