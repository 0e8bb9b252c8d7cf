#!/usr/bin/env bash
# `krofx fetch all`: what is new on every account of every bank, kept in a folder.
here=$(cd "$(dirname "$0")" && pwd)
source "$here/runner.sh" "$@"
source "$here/servers.sh"
source "$here/banks.sh"
export XDG_DATA_HOME=$work/data
start "$3" --ca-file "$work/ca.pem"
expect 2 fetch all
has err 'no bank is known'
bank() {
  cat <<END
[$1]
url = "$url"
org = "HARBORFED"
fid = "40711"
user = "$2"
root = "$work/ca.pem"
password-command = "echo $3"
END
}
{ bank harbor ada.w not-a-real-password; bank grace grace.h not-her-password-either; } | write_banks

today=$(date +%Y-%m-%d)
kept=$XDG_DATA_HOME/krofx/statements
expect 0 fetch all
for name in harbor-00718220946 harbor-00718220954 harbor-card-4410 harbor-7-4401-22 grace-00718330011; do
  [ -f "$kept/$name-$today.ofx" ] || fail "no reply of $name"
  [ "$(stat -c %a "$kept/$name-$today.ofx")" = 600 ] || fail "others can read the reply of $name"
done
[ "$(find "$kept" -type f | wc -l)" -eq 5 ] || fail 'other files than replies'
has out "harbor 00718220946 CHECKING: $kept/harbor-00718220946-$today.ofx"
lacks out 5500111122224410
leaves_nothing
expect 0 print "$kept/harbor-00718220946-$today.ofx"
has out 'ALDER WORKS PAYROLL'

# Asked again, from the last day before today that there is a reply of, with some days before it.
mv "$kept/harbor-00718220946-$today.ofx" "$kept/harbor-00718220946-2026-01-20.ofx"
# Earlier days count no more, and what is no day or no reply does not count at all.
touch "$kept"/harbor-00718220946-2026-01-{01..19}.ofx "$kept"/harbor-00718220946-2026-01-{32.ofx,31.txt}
expect 0 fetch all @harbor
expect 0 print "$kept/harbor-00718220946-$today.ofx"
has out 'ALDER WORKS PAYROLL'
lacks out 'HARBOR STREET ATM'
expect 0 fetch all harbor --overlap 30
expect 0 print "$kept/harbor-00718220946-$today.ofx"
has out 'HARBOR STREET ATM'
expect 0 fetch all @harbor --from 2026-01-20
expect 0 print "$kept/harbor-00718220946-$today.ofx"
lacks out 'ALDER WORKS PAYROLL'
expect 0 fetch all @grace --folder elsewhere
[ -f "elsewhere/grace-00718330011-$today.ofx" ] || fail 'nothing in the folder that was named'
expect 2 fetch all @grace --folder /proc
has err '/proc/grace-00718330011'
[ ! -s out ] || fail 'a reply that was not kept is named as one that was'
expect 2 fetch all @grace --folder /proc/nowhere
has err 'krofx: fetch all: /proc/nowhere: the folder cannot be made'
env -u HOME -u XDG_DATA_HOME "$krofx" fetch all @grace >out 2>err
[ $? -eq 2 ] || fail 'replies are kept without a folder'
has err 'krofx: fetch all: there is no home folder; set HOME'
expect 64 fetch all @nobody
expect 64 fetch all --overlap -1

# A sign-on that is refused is not tried again; other banks are asked all the same.
rm -rf "$kept"
{ bank harbor ada.w wrong-password; bank grace grace.h not-her-password-either; } | write_banks
cat >>"$banks" <<'END'
[[grace.account]]
account = "00718330011"
bank = "211370545"
END
expect 5 fetch all
[ "$(grep -c 'refused the sign-on' err)" -eq 1 ] || fail 'tried again with a wrong password'
[ "$(ls "$kept")" = "grace-00718330011-$today.ofx" ] || fail 'not what could be kept'
# A refused request keeps nothing in the place of a reply.
sed -i 's/00718330011/999/' "$banks"
expect 4 fetch all @grace
[ ! -e "$kept/grace-999-$today.ofx" ] || fail 'a refusal was kept as a reply'
# What a password-command prints that fails is no password, for none of the accounts.
{
  bank harbor ada.w x | sed 's/= "echo .*/= "echo not-a-real-password; exit 3"/'
  printf 'profile = false\n'
  for number in 00718220946 00718220947; do printf '[[harbor.account]]\naccount = "%s"\nbank = "211370545"\n' $number; done
} | write_banks
rm -rf "$kept"
expect 2 fetch all @harbor
[ "$(grep -c 'password-command ended with status 3' err)" -eq 2 ] || fail 'a password that a failed command printed is sent'
[ -z "$(ls "$kept")" ] || fail 'a password that a failed command printed is sent'
# The variable of one password is not sent to several banks.
{ bank harbor ada.w x; bank grace grace.h x; } | sed '/password-command/d' | write_banks
KROFX_PASSWORD=not-a-real-password setsid -w "$krofx" fetch all >out 2>err </dev/null
[ $? -eq 2 ] || fail 'a password is taken from nowhere'
has err 'no terminal to ask'
KROFX_PASSWORD=not-a-real-password expect 0 fetch all @harbor
# A file of banks that is wrong is said before anyone is asked.
cp "$banks" whole
echo wrong >>"$banks"
expect 2 fetch all
has err 'krofx: fetch all: '
has err 'this is not TOML'
cp whole "$banks"
stop_servers
KROFX_PASSWORD=not-a-real-password expect 3 fetch all @harbor

# A reply that lacks what was asked for is not kept: its days would count as read.
start python3 "$here/http_server.py"
{
  bank harbor ada.w x
  printf 'profile = false\n[[harbor.account]]\naccount = "1"\nbank = "211370545"\n'
} | sed "/^root/d; s|^url.*|url = \"$url/file/reply.ofx\"|" | write_banks
not_kept() {
  expect 2 fetch all @harbor --folder unusable
  has err "krofx: harbor 1 CHECKING: $1"
  [ -z "$(ls unusable)" ] || fail "kept although $1: $(ls unusable)"
}
statement x | sed 's/<LEDGERBAL>.*//' >reply.ofx
not_kept 'the reply breaks off'
{ header; echo "<OFX>$sign_on</OFX>"; } >reply.ofx
not_kept 'the reply has no statement'
echo 'The bank is closed.' >reply.ofx
not_kept 'this is a text without any OFX in it'
# One that only lacks what closes the file has it all.
statement x | sed 's|</BANKMSGSRSV1>.*||' >reply.ofx
expect 0 fetch all @harbor --folder unusable
[ -f "unusable/harbor-1-$today.ofx" ] || fail 'a reply without its last end tags is not kept'

# Accounts whose files would have one name each have their own, also when their order changes.
url=$url/file/reply.ofx
account() { printf '[[%s.account]]\naccount = "%s"\n%s\n' "$1" "$2" "${3:-bank = \"211370545\"}"; }
described() { # NAME ACCOUNTS
  bank "$1" ada.w x | sed '/^root/d'
  printf 'profile = false\n%s\n' "$2"
}
first=$(account har 5500111122224410 'card = true')
second=$(account har 5500111133334410 'card = true')
{
  described har "$(account har b-00718220946)
$(account har 00718220954)
$first
$second"
  described har-b "$(account har-b 00718220946)"
} | write_banks
expect 0 fetch all --folder own
[ "$(find own -type f | wc -l)" -eq 5 ] || fail "the reply of one account replaced another's: $(ls own)"
[ -f "own/har-00718220954-$today.ofx" ] || fail 'the name that is clear is another'
[ "$(find own -name "har-card-4410.????????-$today.ofx" | wc -l)" -eq 2 ] || fail "not the files of two cards: $(ls own)"
lacks out 5500111122224410
ls own >before
{
  described har-b "$(account har-b 00718220946)"
  described har "$second
$first
$(account har 00718220954)
$(account har b-00718220946)"
} | write_banks
expect 0 fetch all --folder own
ls own | cmp -s - before || fail 'the order of accounts changes the names of files'
# One bank alone has the same names.
expect 0 fetch all @har-b --folder own
ls own | cmp -s - before || fail 'the names depend on which banks are asked'
finish
