# Banks of one's own for tests of the command. Sourced after runner.sh.
# shellcheck shell=bash
export HOME=$work/home XDG_CONFIG_HOME=$work/config XDG_STATE_HOME=$work/state
# shellcheck disable=SC2034
banks=$XDG_CONFIG_HOME/krofx/banks.toml

# Writes the file of banks from standard input.
write_banks() {
  mkdir -p "${banks%/*}"
  cat >"$banks"
  chmod 600 "$banks"
}

# Writes a file with the bank harbor, which is at `url`, and with what standard input has.
write_harbor_at_url() {
  { cat <<END; cat; } | write_banks
[harbor]
url = "$url"
org = "HARBORFED"
fid = "40711"
user = "ada.w"
root = "$work/ca.pem"
END
}
