# Completion of krofx for bash: every answer comes from the command itself.
_krofx() {
  local words=() word answer answers index joins=
  # Bash takes words apart at "=" and "@"; the command gets them whole. What is completed begins
  # at the "@" all the same, but after the "=".
  for ((index = 1; index <= COMP_CWORD; ++index)); do
    word=${COMP_WORDS[index]}
    if [ "$word" = '=' ]; then
      [ "$index" -lt "$COMP_CWORD" ] || words+=('')
    elif [ -n "$joins" ]; then
      words[-1]+=$word
    else
      words+=("$word")
    fi
    if [ "$word" = '@' ]; then joins=1; else joins=; fi
  done
  mapfile -t answers < <("${COMP_WORDS[0]}" complete -- "${words[@]}" 2>/dev/null)
  COMPREPLY=()
  for answer in "${answers[@]}"; do
    if [ "$answer" = ':files' ]; then
      compopt -o filenames 2>/dev/null
      mapfile -t -O "${#COMPREPLY[@]}" COMPREPLY < <(compgen -f -- "${COMP_WORDS[COMP_CWORD]}")
    else
      COMPREPLY+=("${answer%%$'\t'*}")
    fi
  done
}
complete -F _krofx krofx
