# Servers for tests of the command's exchanges. Sourced after runner.sh.
# shellcheck shell=bash
servers=()
trap 'stop_servers; rm -rf "$work"' EXIT
# Every exchange keeps its files here, and removes them all.
export TMPDIR=$work/temporary
mkdir "$TMPDIR"
# The proxy settings of the person who runs the tests are not used.
unset http_proxy https_proxy all_proxy HTTP_PROXY HTTPS_PROXY ALL_PROXY

stop_servers() {
  local server
  for server in "${servers[@]}"; do
    kill "$server" 2>/dev/null
    wait "$server" 2>/dev/null
  done
  servers=()
}

# Starts a server and waits for its first line, which ends with its URL: start COMMAND...
# Sets `url`; further lines come from the descriptor `server_lines`.
start() {
  local line
  exec {server_lines}< <(exec "$@" 2>"$work/server-errors")
  servers+=($!)
  if ! read -r -t 60 -u "$server_lines" line; then
    echo "FAILED: $1 did not start"
    cat "$work/server-errors"
    exit 1
  fi
  # shellcheck disable=SC2034
  url=${line##* }
}

# Expects that no temporary file is left.
leaves_nothing() {
  # The thread sanitizer has a file of its own, which it loses when it is stopped early.
  rm -f "$TMPDIR"/tsan.rodata.*
  [ -z "$(ls -A "$TMPDIR")" ] || fail "left over: $(ls -A "$TMPDIR")"
}
