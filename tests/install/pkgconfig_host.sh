#!/bin/sh
# Builds and runs a host by pkg-config alone.
#
#   pkgconfig_host.sh PREFIX LIBDIR COMPILER HOST_SOURCE STATEMENT
set -eu
prefix=$1 lib=$1/$2 compiler=$3 source=$4 statement=$5
export PKG_CONFIG_PATH="$lib/pkgconfig"

program=$prefix/host_by_pkgconfig
# shellcheck disable=SC2046  # words are what pkg-config gives
"$compiler" -std=c++20 "$source" -o "$program" $(pkg-config --cflags --libs krofx)
LD_LIBRARY_PATH="$lib" "$program" "$statement"
