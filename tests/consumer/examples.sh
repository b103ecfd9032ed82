#!/bin/sh
# examples.sh PREFIX DOCS OUTPUT CMAKE-ARGS: what is installed for a host's developer to read is there,
# and the examples build and run against what is installed.
set -eu
prefix=$1
docs=$1/$2
output=$3
shift 3
for room in "$docs"/examples/*.cpp; do
  page=$docs/html/$(basename "$room" .cpp).html
  [ ! -e "$docs/html" ] || [ -s "$page" ] || { echo "no page $page"; exit 1; }
done
cmake -S "$docs/examples" -B "$output" "-DCMAKE_PREFIX_PATH=$prefix" "$@"
cmake --build "$output"
ctest --test-dir "$output" --output-on-failure
