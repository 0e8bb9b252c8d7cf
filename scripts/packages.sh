# The Debian packages that krofx needs, in one place. Sourced by the scripts that install them.
# shellcheck shell=bash

# To build the library, the command and the examples.
build_packages=(cmake g++ libcli11-dev libcpp-httplib-dev libcurl4-openssl-dev libssl-dev libtoml11-dev
  ninja-build nlohmann-json3-dev pkg-config python3 zlib1g-dev)
# To run the tests as well.
test_packages=("${build_packages[@]}" bash-completion binutils ca-certificates clang-format fish
  libgtest-dev mold valgrind zsh)
# To run the benchmarks and take the counts.
# shellcheck disable=SC2034
bench_packages=("${build_packages[@]}" libbenchmark-dev libpugixml-dev valgrind)
# For benchmarks, fuzzing, coverage and clang-tidy; no script needs them all.
# shellcheck disable=SC2034
work_packages=(clang clang-tidy libbenchmark-dev libpugixml-dev llvm)

# To try other machines: see other_machines.sh.
# shellcheck disable=SC2034
machine_packages=(cmake g++-i686-linux-gnu g++-s390x-linux-gnu googletest libboost-dev ninja-build
  python3 qemu-user)

# Installs those of the named packages that are missing, and prints which.
install_missing() {
  local package missing=()
  if ! command -v dpkg-query >/dev/null; then
    echo "This is not a Debian system: make sure that these packages are installed: $*" >&2
    return
  fi
  for package; do
    if [ "$(dpkg-query -W -f='${db:Status-Status}' "$package" 2>/dev/null)" != installed ]; then
      missing+=("$package")
    fi
  done
  [ ${#missing[@]} -gt 0 ] || return 0
  if [ "$(id -u)" != 0 ]; then
    echo "Missing packages, and only root can install them: apt-get install ${missing[*]}" >&2
    return 1
  fi
  echo "Installing ${missing[*]}"
  quietly apt-get update
  DEBIAN_FRONTEND=noninteractive quietly apt-get install --yes --no-install-recommends \
    "${missing[@]}"
}

# Runs a command and shows its output only if it fails.
quietly() {
  local output status
  output=$("$@" 2>&1) && return
  status=$?
  printf '%s\n' "$output" "Failed: $*" >&2
  return $status
}
