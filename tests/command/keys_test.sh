#!/usr/bin/env bash
# The keys of a terminal at the prompt of a password and in an exchange: what is typed next is seen, nothing is half
# done, and no core file holds the password.
here=$(cd "$(dirname "$0")" && pwd)
source "$here/runner.sh" "$@"
source "$here/servers.sh"
source "$here/banks.sh"
export XDG_DATA_HOME=$work/data
ulimit -c unlimited 2>/dev/null
# typed STATUS STEP... -- COMMAND...: each step is a text, a tab and the keys for it.
typed() {
  local wanted=$1 steps='' got
  shift
  while [ "$1" != -- ]; do
    steps+=$(printf '%s\n.' "$1")
    steps=${steps%.}
    shift
  done
  shift
  python3 "$here/at_terminal.py" "$steps" "$@" >out 2>err
  got=$?
  [ $got -eq "$wanted" ] || fail "$* gave $got, not $wanted"
  has out 'the terminal shows what is typed'
  lacks out not-a-real-password
  leaves_nothing
  [ -z "$(find . -name 'core*')" ] || fail 'a core file was written'
}
start "$3" --ca-file "$work/ca.pem"
write_harbor_at_url <<<'profile = false'
fetch=("$krofx" fetch accounts @harbor)
prompt='Password of ada.w at HARBORFED (127.0.0.1): '
typed 0 "$prompt	not-a-real-password\\n" -- "${fetch[@]}"
has out 00718220946
typed 6 "$prompt	half\\x03" -- "${fetch[@]}"
has out interrupted
# The signals that are of no key end the command as such; a pipe that nobody reads is none of them.
for signal in HUP TERM ABRT ALRM USR1 USR2 XCPU VTALRM PROF IO PWR STKFLT RTMIN RTMAX; do
  typed $((128 + $(kill -l $signal))) "$prompt	kill=$signal" -- "${fetch[@]}"
  lacks out interrupted
done
typed 6 "$prompt	kill=INT" -- "${fetch[@]}"
has out interrupted
typed 0 "$prompt	kill=PIPE" '	not-a-real-password\n' -- "${fetch[@]}"
typed 6 "$prompt	half\\x1c" -- "${fetch[@]}"
typed 6 "$prompt	\\x04" -- "${fetch[@]}"
has out 'no password was typed'
typed 2 "$prompt	\\n" -- "${fetch[@]}"
has out 'the password is empty'
# A terminal that is the open file does not show it either.
typed 0 "reading	not-a-real-password\\n" -- bash -c '
  "$@" --password-fd 0 </dev/tty &
  child=$!
  until stty -a | grep -qE -- "(^| )-echo( |$)" || ! kill -0 $child; do :; done 2>/dev/null
  echo reading
  wait $child' - "${fetch[@]}"
has out 00718220946
# Put into the background, the command leaves the terminal to the shell, and asks anew when it comes back.
typed 0 "ready-now	krofx fetch accounts @harbor\\n" "$prompt	half\\x1a" \
  "Stopped	echo \$((6 * 7))-seen\\n" '42-seen	fg\n' "$prompt	not-a-real-password\\n" "Brokerage	exit\\n" -- \
  env PATH="$(dirname "$krofx"):$PATH" PS1='$ ' bash --norc -i -c "echo ready-now; exec env PS1='> ' bash --norc -i"
has out 'echo $((6 * 7))-seen'

# In the middle of an exchange the keys end it as they end other commands.
stop_servers
start "$3" --ca-file "$work/ca.pem" --delay 3600
write_harbor_at_url <<<'profile = false'
echo old >reply.ofx
typed 130 "$prompt	not-a-real-password\\n" "waiting for 127.0.0.1	\\x03" -- "${fetch[@]}" --save-reply reply.ofx
typed 131 "$prompt	not-a-real-password\\n" "waiting for 127.0.0.1	\\x1c" -- "${fetch[@]}" --save-reply reply.ofx
[ "$(cat reply.ofx)" = old ] || fail 'an exchange that was ended wrote a reply'
finish
