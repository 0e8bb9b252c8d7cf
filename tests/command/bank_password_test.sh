#!/usr/bin/env bash
# `krofx bank password`: another password at a bank, as its profile allows it; and what is said when a bank demands one.
here=$(cd "$(dirname "$0")" && pwd)
source "$here/runner.sh" "$@"
source "$here/servers.sh"
source "$here/banks.sh"
start "$3" --ca-file "$work/ca.pem" --profile "$work/offered.ofx"
bank_url=$url
write_harbor_at_url </dev/null
export OLD=not-a-real-password
# change NEW: from the password in OLD, with both from open files.
change() {
  KROFX_PASSWORD=$OLD expect "$1" bank password harbor --new-password-fd 0 <<<"$2"
  lacks err "$OLD"
  [ -z "$2" ] || lacks err "$2"
  lacks out "$2"
}
signs_on() { KROFX_PASSWORD=$1 expect "$2" fetch accounts @harbor; }

change 0 another-password-2
has err 'krofx: bank password: the password of ada.w at harbor is changed'
signs_on not-a-real-password 5
signs_on another-password-2 0
leaves_nothing

# On a terminal the new one is asked for twice and not shown, by prompts that say for whom and where.
OLD=another-password-2
python3 "$here/with_terminal.py" "$(printf 'another-password-2\nthird-password\nthird-password')" "$krofx" bank password harbor \
  >out 2>err || fail 'no change by what was typed'
has out 'Password of ada.w at HARBORFED (127.0.0.1): '
has out 'New password of ada.w at HARBORFED (127.0.0.1): '
has out 'New password of ada.w at HARBORFED (127.0.0.1), again: '
lacks out third-password
OLD=third-password
signs_on third-password 0
python3 "$here/with_terminal.py" "$(printf 'third-password\nfourth-password\nforth-password')" "$krofx" bank password harbor >out 2>err
[ $? -eq 2 ] || fail 'two passwords that differ are taken'
has out 'the two are not the same'
python3 "$here/with_terminal.py" "$(printf 'third-password\n\003')" "$krofx" bank password harbor >out 2>err
[ $? -eq 6 ] || fail 'the interrupt key does not end the second prompt'
signs_on third-password 0

python3 "$here/with_terminal.py" "$(printf 'third-password\nfourth-password\n\003')" "$krofx" bank password harbor >out 2>err
[ $? -eq 6 ] || fail 'the interrupt key does not end the last prompt'
signs_on third-password 0

# The rules of the profile are looked at before anything is sent.
change 2 short
has err 'the new password cannot be used: by the profile of harbor it has at least 6 characters'
change 2 'with some blanks'
has err 'it has no blanks'
change 2 ''
has err 'the password is empty'
change 2 ' fifth-password'
has err 'the new one cannot be used: the password has a blank at its start or its end'
signs_on third-password 0
OLD=wrong-password
change 5 fifth-password
# The new one is not asked for when the old one cannot be right.
OLD=short
change 5 fifth-password
has err 'the password cannot be right'
lacks err 'not known'
setsid -w "$krofx" bank password harbor --new-password-fd 0 <<<fifth-password >out 2>err
[ $? -eq 2 ] || fail 'a password is taken from nowhere'
has err 'there is no terminal to ask'
lacks err 'not known'
# Nothing is sent to another server.
sed -i 's/^root/pin = "AAAAAAAAAAAAAAAAAAAAAAAAAAA="\n&/' "$banks"
OLD=third-password
change 2 fifth-password
has err 'none of those given with --pin; nothing was sent'
lacks err 'not known'
write_harbor_at_url </dev/null
OLD=third-password

# A bank that does not change passwords is not asked; one that wants another one first is named with what to do.
KROFX_PASSWORD=$OLD expect 0 fetch profile @harbor --save-reply own.ofx
sed 's/<PINCH>Y/<PINCH>N/; s/<CHGPINFIRST>N/<CHGPINFIRST>Y/' own.ofx >offered.ofx
rm -rf "$XDG_STATE_HOME/krofx/banks"
change 4 fifth-password
has err 'harbor does not change passwords on request, by its profile'
expect 0 bank show harbor
has out 'no blanks; to be changed at the first sign-on'
rm -rf offered.ofx "$XDG_STATE_HOME/krofx/banks"
{
  header
  printf '%s' '<OFX><SIGNONMSGSRSV1><SONRS><STATUS><CODE>15000<SEVERITY>ERROR</STATUS><DTSERVER>20260101<LANGUAGE>ENG</SONRS>' \
    '</SIGNONMSGSRSV1></OFX>'
} >expired.ofx
start python3 "$here/http_server.py"
server=$url
url=$url/file/expired.ofx write_harbor_at_url <<<'profile = false'
sed -i '/^root/d' "$banks"
signs_on third-password 5
has err 'status 15000, the password must be changed first, with "krofx bank password NAME"'

# A reply without an answer to the change does not mean that it is done.
sed -i 's/15000<SEVERITY>ERROR/0<SEVERITY>INFO/' expired.ofx
KROFX_PASSWORD=third-password expect 4 bank password harbor --new-password-fd 0 <<<'never-kept-1'
has err 'the reply does not say that the password is changed'
has err 'whether the password is changed is not known'

# After a reply that is not OFX, no reply, or a signal, the command says that it is not known which one counts.
unknown() { # STATUS PATH
  url=$server/$2 write_harbor_at_url <<<'profile = false'
  sed -i '/^root/d' "$banks"
  KROFX_PASSWORD=third-password expect "$1" bank password harbor --new-password-fd 0 <<<'never-kept-1'
  has err 'whether the password is changed is not known: try the new one with "krofx bank check harbor", once'
  lacks err never-kept-1
}
echo 'Thank you.' >thanks.txt
unknown 2 file/thanks.txt
has err 'this is a text without any OFX in it'
unknown 2 status/204
unknown 3 cut
sed -i "s|^url.*|url = \"$server/never\"|" "$banks"
KROFX_PASSWORD=third-password "$krofx" bank password harbor --new-password-fd 0 <<<'never-kept-1' >out 2>err &
waiting=$!
read -r -t 60 -u "$server_lines" line
kill -TERM "$waiting"
wait "$waiting"
[ $? -eq 143 ] || fail 'a signal does not end the command'
has err 'whether the password is changed is not known'

# Where the password is kept, the new one takes the place of the old one.
url=$bank_url
mkdir -p keyring
cat >keyring/secret-tool <<'END1'
#!/bin/sh
case "$*" in
"store --label=krofx application krofx bank harbor" | "lookup application krofx bank harbor") ;;
*) exit 1 ;;
esac
if [ "$1" = store ]; then cat >"$0.kept"; else cat "$0.kept"; fi
END1
chmod +x keyring/secret-tool
printf third-password >keyring/secret-tool.kept
write_harbor_at_url <<<'keyring = true'
PATH=$work/keyring:$PATH expect 0 bank password harbor --new-password-fd 0 <<<'gehölz-9'
[ "$(cat keyring/secret-tool.kept)" = gehölz-9 ] || fail 'the keyring has not the new password'
PATH=$work/keyring:$PATH expect 0 fetch accounts @harbor
chmod -w keyring/secret-tool.kept
sed -i 's/cat >"$0.kept"/exit 1/' keyring/secret-tool
PATH=$work/keyring:$PATH expect 2 bank password harbor --new-password-fd 0 <<<'sixth-password'
has err 'the keyring did not take the password'
has err 'the old one is still there'
write_harbor_at_url <<<'password-command = "echo sixth-password"'
expect 0 bank password harbor --new-password-fd 0 <<<'seventh-password'
has err 'now change it where password-command takes it from'

# Where nothing takes connections nothing was sent, so the old password counts.
write_harbor_at_url </dev/null
OLD=seventh-password
signs_on seventh-password 0
stop_servers
change 3 eighth-password
has err 'nothing takes connections there'
lacks err 'not known'
expect 64 bank password habor
has err 'did you mean harbor?'
leaves_nothing
finish
