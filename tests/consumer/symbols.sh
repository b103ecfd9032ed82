#!/bin/sh
# symbols.sh LIBRARY HEADERS: the library shows its five C functions and what the installed headers
# name in its namespaces; nothing that a host could bind to by accident.
set -eu
shown=$(nm --dynamic --defined-only --demangle "$1" | cut -d ' ' -f 3- | sed 's/@@KXUI_1$//')

c_functions=$(printf '%s\n' "$shown" | grep -E '^[a-z]+_[a-z]+$' | tr '\n' ' ')
[ "$c_functions" = "filename_absolute filename_isdir filename_list filename_match filename_name " ] ||
  { echo "C functions: $c_functions"; exit 1; }

foreign=$(printf '%s\n' "$shown" | grep -vE '^([a-z]+_[a-z]+|KXUI_1)$' |
  grep -vE '^((vtable|typeinfo|typeinfo name) for |non-virtual thunk to )?(Kestrel::|(FilePathEdit|FrameSlider)(::|$))' || true)
[ -z "$foreign" ] || { echo "shown, but not ours:"; echo "$foreign"; exit 1; }

words=$(mktemp)
trap 'rm -f "$words"' EXIT
cat "$2"/*/*.h | grep -oE '[A-Za-z_]+' | sort -u >"$words"
private=$(printf '%s\n' "$shown" | sed -nE 's/^([a-z-]+ )*Kestrel::[A-Za-z]+::([A-Za-z_]+).*/\2/p' |
  sort -u | grep -vxF -f "$words" || true)
[ -z "$private" ] || { echo "shown, but in no public header:"; echo "$private"; exit 1; }
