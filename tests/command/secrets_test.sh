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
