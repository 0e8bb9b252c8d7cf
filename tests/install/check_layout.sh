#!/bin/sh
# Prints what is missing from an installation, and what should not be in it.
#
#   check_layout.sh PREFIX LIBDIR VERSION WITH_COMMAND LIBEXECDIR
set -eu
prefix=$1 lib=$1/$2 version=$3 with_command=$4
failed=0

complain() {
  echo "$1" >&2
  failed=1
}

wanted="include/krofx/krofx.h include/krofx/aggregates.h include/krofx/version.h
  $2/libkrofx.a $2/libkrofx.so $2/libkrofx.so.$version $2/pkgconfig/krofx.pc
  $2/cmake/krofx/krofxConfig.cmake $2/cmake/krofx/krofxConfigVersion.cmake
  share/doc/krofx/README.md share/doc/krofx/LICENSE"
if [ "$with_command" = 1 ]; then
  wanted="$wanted bin/krofx $5/krofx/krofx-full share/man/man1/krofx.1 share/bash-completion/completions/krofx"
  wanted="$wanted share/zsh/site-functions/_krofx share/fish/vendor_completions.d/krofx.fish"
fi
for file in $wanted; do
  [ -e "$prefix/$file" ] || complain "not installed: $file"
done

# The command finds its other program wherever the installation is.
if [ "$with_command" = 1 ] && ! "$prefix/bin/krofx" --help >/dev/null; then
  complain "the installed command does not find $5/krofx/krofx-full"
fi

# Programs are linked to the name with the major version.
objdump -p "$lib/libkrofx.so" | grep -q "SONAME *libkrofx.so.${version%%.*}\$" ||
  complain "the soname of libkrofx.so is not that of version $version"

# Every exported symbol of our own has one of our names in it. Weak and unique symbols come from
# templates that all C++ libraries share.
strangers=$(nm -DC --defined-only "$lib/libkrofx.so" | awk '$2 ~ /^[TDBR]$/' |
  grep -vE 'KR|krofx::|TagDictionary|SearchDictionary|PayrollSignOnRq|LocalAccess|Receiver|VYN' || true)
[ -z "$strangers" ] || complain "exported without a name of ours:
$strangers"

# A header that only the library itself uses is not installed.
for file in model/internal/factory_make.h model/value_kinds.h values/internal/digits.h; do
  [ ! -e "$prefix/include/krofx/$file" ] || complain "installed, but not public: $file"
done
exit $failed
