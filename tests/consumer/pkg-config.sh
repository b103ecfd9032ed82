#!/bin/sh
# pkg-config.sh LIBDIR COMPILER SOURCE OUTPUT ARGS: builds SOURCE by the installed kxui.pc alone, and runs
# it.
set -eu
export PKG_CONFIG_PATH="$1/pkgconfig"
# shellcheck disable=SC2046 # the flags are words
"$2" "$3" -o "$4" $(pkg-config --cflags --libs kxui)
program=$4
export LD_LIBRARY_PATH="$1"
shift 4
exec "$program" "$@"
