#!/usr/bin/env bash
# What a signal, or a disk that is full, leaves of the files that the command writes: the old file, or
# the whole new one.
here=$(cd "$(dirname "$0")" && pwd)
source "$here/runner.sh" "$@"
source "$here/servers.sh"
source "$here/banks.sh"
export XDG_DATA_HOME=$work/data KROFX_PASSWORD=not-a-real-password

# Without a terminal's job control a shell has what it puts into the background ignore the interrupt
# key; this runs a command that does not.
cat >interruptible <<'END'
#!/usr/bin/env python3
import os, signal, sys
for each in (signal.SIGINT, signal.SIGQUIT, signal.SIGXFSZ, signal.SIGPIPE):
    signal.signal(each, signal.SIG_DFL)
os.execvp(sys.argv[1], sys.argv[1:])
END
chmod +x interruptible

# An answer that never comes: the command waits when its temporary folder is there.
start "$3" --ca-file "$work/ca.pem" --delay 3600
# interrupt STATUS ARGUMENT...: runs the command, sends it a signal, that of the interrupt key unless
# `signal` is another, while it waits, and expects its status.
signal=INT
interrupt() {
  local wanted=$1 got child
  shift
  ./interruptible "$krofx" "$@" >out 2>err &
  child=$!
  until compgen -G "$TMPDIR/krofx-*" >/dev/null || ! kill -0 $child 2>/dev/null; do :; done
  kill -$signal $child
  wait $child 2>/dev/null
  got=$?
  [ $got -eq "$wanted" ] || fail "krofx $* gave $got, not $wanted"
  leaves_nothing
}
echo old >reply.ofx
sign_on=(--url "$url" --root ca.pem --org HARBORFED --user ada.w)
interrupt 130 fetch accounts "${sign_on[@]}" --save-reply reply.ofx --save-headers headers
[ "$(cat reply.ofx)" = old ] || fail 'an exchange that was interrupted wrote a reply'
# All that end a command do so when it is cleaned up.
for signal in HUP QUIT TERM ABRT ALRM USR1 USR2 XCPU XFSZ VTALRM PROF IO PWR STKFLT RTMIN RTMIN+7 RTMAX; do
  interrupt $((128 + $(kill -l $signal))) fetch accounts "${sign_on[@]}"
done
# A pipe that nobody reads is not the end of an exchange.
signal=PIPE interrupt 3 fetch accounts "${sign_on[@]}" --timeout 1
signal=INT
cp "$examples/request-v1.ofx" request.ofx
interrupt 130 send "$url" request.ofx --root ca.pem -o reply.ofx
[ "$(cat reply.ofx)" = old ] || fail 'an exchange that was interrupted wrote a reply'
write_banks <<END
[harbor]
url = "$url"
org = "HARBORFED"
user = "ada.w"
root = "$work/ca.pem"
profile = false

[[harbor.account]]
account = "00718220946"
bank = "211370545"
END
interrupt 130 fetch all
[ -z "$(find "$XDG_DATA_HOME" -type f)" ] || fail 'fetch all left a file without a reply'
[ "$(ls -A)" = "$(printf '%s\n' ca.pem config data err interruptible out reply.ofx request.ofx server-errors temporary)" ] ||
  fail "left over: $(ls -A)"

# At the prompt of a password nothing is written yet.
unset KROFX_PASSWORD
python3 "$here/with_terminal.py" "$(printf '\003')" "$krofx" request accounts @harbor -o new.ofx >out 2>err
[ $? -eq 6 ] || fail 'the interrupt key does not end the prompt'
[ ! -e new.ofx ] || fail 'a request was written without its password'

# While a file is read, the one in its place stays.
mkfifo pipe
echo old >rewritten.ofx
./interruptible "$krofx" rewrite pipe -o rewritten.ofx >out 2>err &
rewriting=$!
exec {hold}>pipe
head -c 500 "$examples/checking.ofx" >&"$hold"
kill -INT $rewriting
wait $rewriting
[ $? -eq 130 ] || fail 'the interrupt key does not end the reading'
exec {hold}>&-
[ "$(cat rewritten.ofx)" = old ] || fail 'a rewriting that was interrupted wrote a file'

# A disk without room, for which a limit of the size of files does here.
sed 's/\r$//' "$examples/multipart.mime" >small.mime
boundary=$(sed -n 's/.*boundary="\{0,1\}\([^";]*\).*/\1/p' small.mime | head -n 1)
{
  sed "/^--$boundary--/,\$d" small.mime
  printf -- '--%s\nContent-Type: text/plain; name="large.txt"\nContent-Disposition: attachment; filename="large.txt"\n\n' "$boundary"
  head -c 100000 /dev/zero | tr '\0' x
  printf '\n--%s--\n' "$boundary"
} >large.mime
mkdir parts
expect 0 extract large.mime -d parts
large=$(tail -n 1 out)
[ "$(stat -c %s "parts/$large")" -ge 100000 ] || fail 'the large part is not whole'
rm -rf parts
mkdir parts
(
  trap '' XFSZ
  ulimit -f 10
  exec "$krofx" extract large.mime -d parts
) >out 2>err
[ $? -eq 2 ] || fail 'a part that cannot be written is no failure'
has err "$large: it cannot be saved: "
[ ! -e "parts/$large" ] || fail 'half of a part was left'
echo old >rewritten.ofx
cat "$examples"/checking.ofx >big.ofx
(
  trap '' XFSZ
  ulimit -f 1
  exec "$krofx" rewrite big.ofx -o rewritten.ofx
) >out 2>err
[ $? -eq 2 ] || fail 'a file that cannot be written is no failure'
[ "$(cat rewritten.ofx)" = old ] || fail 'half of a file was written'
[ "$(echo rewritten.ofx*)" = rewritten.ofx ] || fail 'half of a file was left'
# The signal of the limit does not leave it either.
(
  ulimit -f 1
  exec ./interruptible "$krofx" rewrite big.ofx -o rewritten.ofx
) >out 2>err
[ $? -eq $((128 + $(kill -l XFSZ))) ] || fail 'the signal of the limit does not end the command'
[ "$(cat rewritten.ofx)" = old ] || fail 'half of a file was written'
[ "$(echo rewritten.ofx*)" = rewritten.ofx ] || fail 'the signal of the limit leaves half of a file'
finish
