#!/usr/bin/env bash
# `krofx fetch updates`: what became of orders, by the synchronisations that the profile of a bank offers, and as
# its SYNCMODE wants it: LITE tells of each thing once, FULL as often as it is asked.
here=$(cd "$(dirname "$0")" && pwd)
source "$here/runner.sh" "$@"
source "$here/servers.sh"
source "$here/banks.sh"
export XDG_DATA_HOME=$work/data KROFX_PASSWORD=not-a-real-password
start "$3" --ca-file "$work/ca.pem" --profile "$work/offered.ofx"
port=${url##*:}
port=${port%/ofx}
# Writes the file of the bank, with keys that standard input has, and with its accounts.
harbor() {
  { cat; cat <<END1; } | write_harbor_at_url

[[harbor.account]]
account = "00718220946"
bank = "211370545"

[[harbor.account]]
account = "00718220954"
bank = "211370545"
type = "SAVINGS"

[[harbor.account]]
account = "5500111122224410"
card = true

[[harbor.account]]
account = "7-4401-22"
broker = "harborfed.example"
END1
}
harbor </dev/null
statements=$XDG_DATA_HOME/krofx/statements
tokens=$XDG_STATE_HOME/krofx/tokens/harbor
updates=$statements/harbor-updates-$(date +%Y-%m-%d)

# order AMOUNT: has the bank make a transfer.
order() {
  expect 0 request transfer @harbor --account 0946 --to-account 0954 --amount "$1" -o transfer.ofx --force
  expect 0 send @harbor transfer.ofx -o reply.ofx
}

# SYNCMODE LITE, as the example bank has it: each thing once, and what was told is never replaced.
expect 0 fetch updates @harbor
has out 'harbor banking: nothing new'
[ -z "$(find "$statements" -type f)" ] || fail 'a file without news'
order 12.50
expect 0 fetch updates @harbor
has out "harbor banking: 1 new, $updates.ofx"
[ "$(stat -c %a "$updates.ofx")" = 600 ] || fail 'others can read the news'
[ "$(stat -c %a "$tokens")" = 600 ] || fail 'others can read the tokens'
expect 0 print "$updates.ofx" --json
has out '"amount": "12.5"'
has out '"server_id": "HF-000001"'
expect 0 fetch updates @harbor
has out 'nothing new'
order 7.25
cp "$updates.ofx" first.ofx
expect 0 fetch updates
has out "1 new, $updates.2.ofx"
cmp -s first.ofx "$updates.ofx" || fail 'news of the same day replaced what was told once'
expect 0 print "$updates.2.ofx" --json
has out '"amount": "7.25"'
lacks out '"amount": "12.5"'
expect 4 fetch updates @harbor --again
has err '--again is not possible for banking: it tells of each thing once (SYNCMODE LITE)'
lacks err investments

# What cannot be kept is asked for again.
order 3.75
cp "$tokens" before
expect 2 fetch updates @harbor --folder /proc
cmp -s before "$tokens" || fail 'a token of news that are not kept'
expect 0 fetch updates @harbor
has out '1 new'
expect 0 print "$updates.3.ofx" --json
has out '"amount": "3.75"'

# A refused sign-on, and a bank that is not there, change nothing.
order 1.25
cp "$tokens" before
KROFX_PASSWORD=wrong-password expect 5 fetch updates @harbor
cmp -s before "$tokens" || fail 'a refused sign-on changed a token'
# The second version has tokens of its own.
harbor <<<'version = 2'
expect 0 fetch updates @harbor
has out '4 new'
grep -q '^2.INTRASYNCRQ.*00718220946.CHECKING.4$' "$tokens" || fail 'no token of the second version'
harbor </dev/null
expect 0 fetch updates @harbor
has out '1 new'
# Tokens of another user or institution are not used.
sed -i 's/40711/40712/' "$banks"
expect 0 fetch updates @harbor
has out '4 new'
harbor </dev/null

# SYNCMODE FULL: --again has all of it told again.
rm -rf "$XDG_STATE_HOME/krofx/banks"
expect 0 fetch profile @harbor --save-reply own.ofx
expect 0 fetch profile @harbor --v2 --save-reply own2.ofx
sed 's/<SYNCMODE>LITE/<SYNCMODE>FULL/' own.ofx >offered.ofx
rm -rf "$XDG_STATE_HOME/krofx/banks"
expect 0 fetch updates @harbor
expect 0 fetch updates @harbor
has out 'nothing new'
expect 0 fetch updates @harbor --again
has out '4 new'
expect 0 fetch updates @harbor
has out 'nothing new'

# A bank that has lost what happened since the last time says so, and this in words.
stop_servers
start "$3" --ca-file "$work/ca.pem" --port "$port"
expect 1 fetch updates @harbor
has err 'transfers of 00718220946 CHECKING: the institution no longer has all that happened since the last time'
has err LOSTSYNC
expect 0 fetch updates @harbor

# Without a profile it is not known what there is to ask.
harbor <<<'profile = false'
expect 4 fetch updates @harbor
has err 'what it has news of is in its profile'
harbor </dev/null
expect 64 fetch updates @habor
has err 'did you mean harbor?'
expect 0 bank remove harbor
[ ! -e "$tokens" ] || fail 'the tokens of a bank that was removed are kept'

# What is asked is what the profile offers: in its message sets, with the accounts that each one is about.
sed -i 's/<CANRECUR>N/<CANRECUR>Y/; s/<CANEMAIL>N/<CANEMAIL>Y/; s|<EMAILPROF>|<STPCHKPROF><PROCENDTM>235900<CANUSERANGE>Y<CANUSEDESC>Y<STPCHKFEE>1</STPCHKPROF>&|' offered.ofx
core=$(sed -n '/<BANKMSGSETV1>/,/<\/MSGSETCORE>/p' offered.ofx | sed '1d' | tr -d '\n')
sed -i "s|</MSGSETLIST>|<EMAILMSGSET><EMAILMSGSETV1>$core<MAILSUP>Y<GETMIMESUP>N</EMAILMSGSETV1></EMAILMSGSET>&|" offered.ofx
start python3 "$here/http_server.py"
keeper=$url
start "$3" --http --profile "$work/offered.ofx"
sed -i "/<BANKMSGSET>/,/<\/BANKMSGSET>/s|<URL>.*|<URL>$keeper/keep/asked-bank|; /<INVSTMTMSGSET>/,/<\/INVSTMTMSGSET>/s|<URL>.*|<URL>$keeper/keep/asked-investment|; s|<EMAILMSGSETV1><MSGSETCORE>\(.*\)<URL>[^<]*|<EMAILMSGSETV1><MSGSETCORE>\1<URL>$keeper/keep/asked-mail|" offered.ofx
harbor </dev/null
sed -i '/^root/d' "$banks"
expect 3 fetch updates @harbor
asks() { [ "$(grep -c "<$2>" "$1")" -eq "$3" ] || fail "$1 has not $3 of $2"; }
asks asked-bank INTRASYNCRQ 2
asks asked-bank RECINTRASYNCRQ 2
asks asked-bank STPCHKSYNCRQ 2
asks asked-bank BANKMAILSYNCRQ 3
[ "$(grep -c '^<TOKEN>0$' asked-bank)" -eq 9 ] || fail 'not all is asked for the first time'
[ "$(grep -c '^<REJECTIFMISSING>N$' asked-bank)" -eq 9 ] || fail 'the bank may refuse the question'
lacks asked-bank REFRESH
asks asked-investment INVMAILSYNCRQ 1
asks asked-mail MAILSYNCRQ 1
expect 3 fetch updates @harbor --again
[ "$(grep -c '^<REFRESH>Y$' asked-bank)" -eq 9 ] || fail '--again does not ask for all'
lacks asked-bank '<TOKEN>'
# What the bank leaves unanswered is said.
sed -i "s|$keeper/keep/asked-bank|$url|" offered.ofx
rm -rf "$XDG_STATE_HOME/krofx/banks"
expect 4 fetch updates @harbor
has err 'the institution answered 2 of 9 questions; the rest is asked again'

# A reply that has something wrong in it is kept, since it may not come again. What was refused meanwhile is said.
news() {
  header
  printf '%s\n' '<OFX>' "$sign_on" '<BANKMSGSRSV1><INTRASYNCRS><TOKEN>77<LOSTSYNC>N' \
    '<BANKACCTFROM><BANKID>211370545<BRANCHID>1<ACCTID>00718220946<ACCTTYPE>CHECKING</BANKACCTFROM>' \
    '<INTRATRNRS><TRNUID>1<STATUS><CODE>10504<SEVERITY>ERROR</STATUS></INTRATRNRS>' '</INTRASYNCRS></BANKMSGSRSV1></OFX>'
}
news >news.ofx
sed -i "/<BANKMSGSET>/,/<\/BANKMSGSET>/s|<URL>.*|<URL>$keeper/file/news.ofx|" offered.ofx
rm -rf "$XDG_STATE_HOME/krofx/banks"
expect 4 fetch updates @harbor --folder kept
has err 'status 10504, there is not enough money in the account'
# Banks say more or less of an account than they were asked.
grep -q '^1.INTRASYNCRQ.*00718220946.CHECKING.77$' "$tokens" || fail 'no token by the number of the account'
[ "$(find kept -name 'harbor-updates-*.ofx' | wc -l)" -eq 1 ] || fail 'a refused order is not kept'
# What breaks off is kept too, and asked for again.
news | sed 's/<TOKEN>77/<TOKEN>78/; /<INTRATRNRS>/,$d' >news.ofx
expect 3 fetch updates @harbor --folder kept
has err 'krofx: harbor banking: the reply breaks off'
has out 'harbor banking: kept as it came, kept/harbor-updates-'
[ "$(find kept -name 'harbor-updates-*.ofx' | wc -l)" -eq 2 ] || fail 'half of a reply is not kept'
lacks "$tokens" '	78'
# What is done with each answer, of a bank with transfers alone. Its answers are those of a file, news.ofx.
# transfers VERSION [SCRIPT]: the profile, as sed changes it.
transfers() {
  sed '/<INVSTMTMSGSET>/,/<\/INVSTMTMSGSET>/d' "own$1.ofx" | sed "${2-}" |
    sed "/<BANKMSGSET>/,/<\/BANKMSGSET>/s|<URL\(2*\)>.*|<URL\1>$keeper/file/news.ofx|" >offered.ofx
  rm -rf "$XDG_STATE_HOME/krofx/banks" "$tokens" kept
}
# answer ANSWER...: to transfers, in a file of their own.
answer() {
  header
  printf '%s' "<OFX>$sign_on<BANKMSGSRSV${version:-1}>" "$@" "</BANKMSGSRSV${version:-1}></OFX>"
}
# sync TOKEN ACCOUNT REST
sync() {
  printf '%s' "<INTRASYNCRS>${1:+<${token:-TOKEN}>$1}<LOSTSYNC>N${error-}" \
    "<BANKACCTFROM><BANKID>${bank_id:-211370545}<ACCTID>$2<${type:-ACCTTYPE}>${3:-CHECKING}</BANKACCTFROM>${4-}</INTRASYNCRS>"
}
refused_order='<INTRATRNRS><TRNUID>1<STATUS><CODE>15500<SEVERITY>ERROR</STATUS></INTRATRNRS>'
updates() { expect "$1" fetch updates @harbor --folder kept; }
http_harbor() {
  harbor
  sed -i '/^root/d' "$banks"
}

# The status of a sign-on at one order is no reason to lose the others, but it is one to ask no more.
transfers ''
answer "$(sync 5 00718220946 CHECKING "$refused_order")" "$(sync 6 00718220954 SAVINGS)" >news.ofx
updates 5
has out 'harbor banking: 1 new, kept/harbor-updates-'
grep -q '00718220946.CHECKING.5$' "$tokens" || fail 'no token of what was kept'
grep -q '00718220954.SAVINGS.6$' "$tokens" || fail 'no token of what has no news'
# What cannot be kept is said, and the token file that is none is no reason to lose news.
rm "$tokens"
mkdir "$tokens"
updates 5
has out '1 new'
has err 'how far its news were fetched is not kept'
# Without a token, or with an error, it is asked from where it was.
transfers ''
answer "$(sync '' 00718220946)" "$(sync 6 00718220954 SAVINGS)" >news.ofx
updates 0
lacks "$tokens" 00718220946
# An account that may be two, and one that was not asked about.
transfers ''
{ sed '/^\[\[/,$d' "$banks"; printf '[[harbor.account]]\naccount = "7"\nbank = "%s"\n' 1 2; } >two.toml
cp "$banks" one.toml
write_banks <two.toml
answer "$(bank_id=3 sync 5 7)" "$(sync 6 8)" >news.ofx
updates 4
has err 'the institution answered 0 of 2 questions'
lacks "$tokens" CHECKING
answer "$(bank_id=2 sync 5 7)" >news.ofx
updates 4
has err 'the institution answered 1 of 2 questions'
[ "$(sed '1d' "$tokens")" = "$(printf '1\tINTRASYNCRQ\t2\t\t7\tCHECKING\t5')" ] || fail 'the token of another account'
write_banks <one.toml
# No answer at all.
transfers ''
answer >news.ofx
updates 4
lacks out 'nothing new'
has err 'answered 0 of 2'
echo 'The bank is closed.' >news.ofx
updates 2
has err 'harbor banking: this is a text without any OFX in it'
has out 'kept as it came'
lacks "$tokens" CHECKING
transfers ''
sed -i "s|$keeper/file/news.ofx|$keeper/echo|" offered.ofx
updates 2
has err 'sent a request back'
[ -z "$(find kept -type f)" ] || fail 'a request was kept as news'
# What is of no account.
transfers '' "/<BANKMSGSET>/,/<\/BANKMSGSET>/d; s|</MSGSETLIST>|<EMAILMSGSET><EMAILMSGSETV1>$core<MAILSUP>Y<GETMIMESUP>N</EMAILMSGSETV1></EMAILMSGSET>&|"
sed -i "s|<EMAILMSGSETV1><MSGSETCORE>\(.*\)<URL>[^<]*|<EMAILMSGSETV1><MSGSETCORE>\1<URL>$keeper/file/news.ofx|" offered.ofx
{ header; printf '%s' "<OFX>$sign_on<EMAILMSGSRSV1><MAILSYNCRS><TOKEN>9<LOSTSYNC>Y</MAILSYNCRS></EMAILMSGSRSV1></OFX>"; } >news.ofx
updates 1
has err ': letters: the institution no longer has all that happened'
[ "$(sed '1d' "$tokens")" = "$(printf '1\tMAILSYNCRQ\t9')" ] || fail 'not the token of letters'
# Nothing to ask for.
transfers '' '/<XFERPROF>/,/<\/XFERPROF>/d'
updates 4
has err 'harbor: by its profile it has no news of orders and letters'
# The version that the bank has, and no other.
http_harbor <<<'version = 2'
transfers 2 '/<BANKMSGSETV2>/,/<\/BANKMSGSETV2>/d'
updates 4
has err 'harbor does not offer banking in version 2'
transfers 2 '/<BANKMSGSETV1>/,/<\/BANKMSGSETV1>/d'
error='<SYNCERROR>6500' token=TOKEN2 type=ACCTTYPE2 version=2
answer "$(sync 5 00718220946)" "$(error='' sync 6 00718220954 SAVINGS)" >news.ofx
updates 4
has err 'transfers of 00718220946 CHECKING: the institution could not synchronize, error 6500'
lacks "$tokens" '00718220946'
has "$tokens" '00718220954'
unset error token type version

# What ends a bank before it is asked. One prompt that is left ends all of it.
http_harbor </dev/null
rm -rf "$XDG_STATE_HOME/krofx/banks"
{ sed 's/^\[harbor/[other/; s/\[harbor\./[other./' "$banks"; cat "$banks"; } >two.toml
write_banks <two.toml
transfers ''
env -u KROFX_PASSWORD python3 "$here/with_terminal.py" "$(printf '\003')" "$krofx" fetch updates >out 2>err
[ $? -eq 6 ] || fail 'the interrupt key does not end the round'
[ "$(grep -c 'Password of' out)" -eq 1 ] || fail 'asked on after the interrupt key'
stop_servers
rm -rf "$XDG_STATE_HOME/krofx/banks"
updates 3
http_harbor </dev/null
sed -i '/^\[\[/,$d' "$banks"
updates 3
has err 'nothing takes connections there'
# Nothing else is asked when the accounts cannot be asked for.
expect 3 fetch statement @harbor --account 0946
[ "$(grep -c 'nothing takes connections' err)" -eq 1 ] || fail 'asked again'
leaves_nothing
finish
