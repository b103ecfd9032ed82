#!/bin/sh
# workbench.sh PREFIX DATA-FOLDER: the installed workbench finds its library, its help pages lie where it
# looks for them, and its man page knows its options.
set -eu
options=$("$1/bin/kxui-workbench" --help | grep -oE -e '--[a-z][a-z-]+ ' | sort -u)
[ -n "$options" ] || { echo "no options in --help"; exit 1; }
for option in $options; do
  tr -d '\\' <"$1/share/man/man1/kxui-workbench.1" | grep -qF -e "$option" ||
    { echo "the man page does not know $option"; exit 1; }
done
[ -s "$1/share/$2/help/index.html" ] || { echo "no help pages"; exit 1; }
