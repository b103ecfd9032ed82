#!/bin/sh
# pkg-config.sh LIBDIR NAME COMPILER SOURCE OUTPUT ARGS: builds SOURCE by the installed NAME.pc alone, and
# runs it.
set -eu
export PKG_CONFIG_PATH="$1/pkgconfig"
# shellcheck disable=SC2046 # the flags are words
"$3" "$4" -o "$5" $(pkg-config --cflags --libs "$2")
program=$5
export LD_LIBRARY_PATH="$1"
shift 5
exec "$program" "$@"
