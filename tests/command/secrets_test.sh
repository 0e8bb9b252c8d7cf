#!/usr/bin/env bash
# Passwords stay out of every output, also when the file is damaged, and out of core files.
source "$(dirname "$0")/runner.sh" "$@"

# Prints the example with the tag of the password replaced, each element on a line or all on one.
damaged() {
  sed "s/<USERPASS>/$1/" "$examples/request-v1.ofx" >lines.ofx
  { sed '/^<OFX>/,$d' lines.ofx; sed -n '/^<OFX>/,$p' lines.ofx | tr -d '\n'; } >line.ofx
}
tag='<USERPASS>'
tags=('<userpass>' '<USERPASS' 'USERPASS>' 'userpass>' 'USERPAS>' 'SERPASS>' '<\/USERPASS>' '<!USERPASS>')
for ((index = 0; index < ${#tag}; ++index)); do
  tags+=("${tag:0:index}${tag:index+1}")
done
for each in "${tags[@]}"; do
  damaged "$each"
  for file in lines.ofx line.ofx; do
    for arguments in print 'print --json' check 'check --json'; do
      # shellcheck disable=SC2086
      "$krofx" $arguments $file
    done >out 2>err
    if grep -qF not-a-real-password out err; then fail "the password is shown after $each"; fi
  done
done

# Every tag of a password, with one character more, less or other, in all outputs. A file is the lines
# of a frame or one line of them all.
damage_all() { # TAG FRONT AFTER
  local tag=$1 at each character
  for ((at = 0; at <= ${#tag}; ++at)); do
    for character in '' ' ' '<' '>' / X $'\n' $'\t' '"' = : '[' '!' '?' $'\xc3'; do
      for each in "${tag:0:at}$character${tag:at}" "${tag:0:at}$character${tag:at+1}"; do
        ((++damages))
        printf '%s\n\n%s%sHunter2Secret%s' "$head" "$2" "$each" "$3" >"damaged/$damages-lines.ofx"
        printf '%s\n\n%s%sHunter2Secret%s' "$head" "${2//$'\n'/}" "$each" "${3//$'\n'/}" \
          >"damaged/$damages-line.ofx"
      done
    done
  done
}
mkdir damaged
damages=0
head=$(sed '/^$/,$d' "$examples/request-v2.ofx")
sign_on=$'<OFX>\n<SIGNONMSGSRQV1>\n'
sign_on_end=$'</SIGNONMSGSRQV1>\n</OFX>\n'
request=$'<SONRQ>\n<DTCLIENT>20260615065500\n<USERID>ada.w\n'
request_end=$'\n<LANGUAGE>ENG\n<APPID>KROFX\n<APPVER>0010\n</SONRQ>\n'
damage_all '<USERPASS>' "$sign_on$request" "$request_end$sign_on_end"
damage_all '<ONETIMEPASS>' "${sign_on/V1/V2}$request"$'<USERPASS>x\n' "$request_end${sign_on_end/V1/V2}"
damage_all '<NEWUSERPASS>' "$sign_on"$'<PINCHTRNRQ>\n<TRNUID>1\n<PINCHRQ>\n<USERID>ada.w\n' \
  $'\n</PINCHRQ>\n</PINCHTRNRQ>\n'"$sign_on_end"
damage_all '<TEMPPASS>' $'<OFX>\n<SIGNUPMSGSRSV1>\n<ENROLLTRNRS>\n<TRNUID>1\n<ENROLLRS>\n' \
  $'\n<USERID>ada.w\n</ENROLLRS>\n</ENROLLTRNRS>\n</SIGNUPMSGSRSV1>\n</OFX>\n'
for arguments in print 'print --json' 'print --wide' 'print --strict' 'print --csv' 'check --details' \
  'check --json' 'check --strict --details' 'check --strict --json'; do
  # shellcheck disable=SC2086
  "$krofx" $arguments damaged >out 2>err
  for each in Hunter unter nter2 ter2S er2Se r2Sec 2Secr Secre ecret; do
    if grep -qF -- "$each" out err; then
      fail "$arguments shows \"$(grep -hF -m 1 -- "$each" out err)\""
      break
    fi
  done
done
"$krofx" check --details damaged >out 2>err
has out USERPASS
"$krofx" print damaged >out 2>err
has out 'ada.w (not shown)'

# A temporary password that is too long is hidden, and its tag is not.
sed 's/tide-4471/tide-4471-long-enough-to-be-over-the-32-characters/' "$examples/sign-up-response.ofx" >long.ofx
for arguments in 'check --details' 'check --json' 'check --strict --details' print; do
  # shellcheck disable=SC2086
  "$krofx" $arguments long.ofx >out 2>err
  if grep -qF tide-4471 out err; then fail "$arguments shows a temporary password"; fi
done
"$krofx" check --details long.ofx >out 2>err
has out '<TEMPPASS>'

# The number of a card whose tag is damaged.
for tag in 'ACCTID>' '<ACCTD>' '<ACCT ID>' '<ACCTID' '</ACCTID>' '<ACCTI"D>'; do
  sed "s|<ACCTID>5500111122224410|${tag}5500111122224410|" "$examples/card.ofx" >card.ofx
  for arguments in 'check --details' 'check --json' 'check --strict --details' print 'print --json'; do
    # shellcheck disable=SC2086
    "$krofx" $arguments card.ofx >out 2>err
    if grep -qF 5500111122224410 out err; then fail "$arguments shows a card after $tag"; fi
  done
done
sed 's/<CCACCTFROM>/<CCACCFROM>/' "$examples/card.ofx" >card.ofx
for arguments in 'check --details' 'check --strict --details' 'check --strict --json'; do
  # shellcheck disable=SC2086
  "$krofx" $arguments card.ofx >out 2>err
  if grep -qF 5500111122224410 out err; then fail "$arguments shows a card without its aggregate"; fi
done
has out '************4410'

# No core file, whatever ends the command.
ulimit -c unlimited 2>/dev/null
mkfifo pipe
"$krofx" check - <pipe >out 2>err &
checking=$!
exec {hold}>pipe
limit=
for _ in $(seq 600); do
  limit=$(sed -n 's/^Max core file size *\([^ ]*\) .*/\1/p' "/proc/$checking/limits" 2>/dev/null)
  [ "$(readlink "/proc/$checking/exe")" = "$(readlink -f "$krofx")" ] && [ "$limit" != unlimited ] && break
done
case $limit in 0 | 1) ;; *) fail "a core file of $limit may be written" ;; esac
kill -TRAP "$checking"
wait "$checking"
[ $? -eq 133 ] || fail 'a signal does not end the command'
exec {hold}>&-
[ -z "$(find . -name 'core*')" ] || fail 'a core file was written'
finish
