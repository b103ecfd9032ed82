#!/usr/bin/env bash
# Uses file choosers on the present screen by the keyboard alone: chooser.sh PROGRAM
set -euo pipefail
program=$1
work=$(mktemp -d)
trap '[[ -z ${pid:-} ]] || kill "$pid" 2>/dev/null || true; rm -rf "$work"' EXIT
export HOME=$work XDG_CONFIG_HOME=$work/config XDG_DATA_HOME=$work/data LC_ALL=C.UTF-8
mkdir -p "$work/shot/lib"
touch "$work"/shot/plate.{1001..1010}.exr "$work"/shot/comp_v001.exr "$work"/shot/zoom.exr

fail() { echo "chooser: $*; said:" >&2; cat "$work/said" >&2; exit 1; }

# Waits for a line to be said so many times.
wait_for() {
  for _ in {1..300}; do
    [[ $(grep -cxF -- "$1" "$work/said") -ge ${2:-1} ]] && return
    sleep 0.1
  done
  fail "it does not say \"$1\" ${2:-1} times"
}

# begin MODE [NAME]: until the folder is listed and the window has the keyboard.
begin() {
  "$program" "$1" "$work/shot" "${@:2}" >"$work/said" &
  pid=$!
  window=$(timeout 30 xdotool search --sync --onlyvisible --name '^Chooser$' | head -1)
  xdotool windowactivate --sync "$window"
  wait_for listed
}

keys() { for key; do xdotool key --delay 40 "$key" sleep 0.1; done; }

# ends LINE: what was said last.
ends() {
  timeout 30 tail --pid="$pid" -f /dev/null || fail 'it does not end'
  wait "$pid"
  pid=
  [[ $(tail -1 "$work/said") == "$1" ]] || fail "not \"$1\""
}

begin open # letters go to the row
xdotool type --delay 40 pl
keys Return
ends "chosen $work/shot/plate.####.exr 1001-1010"

begin open # a part of a sequence, by the name of a frame
keys alt+n
xdotool type --delay 40 plate.1004.exr
keys alt+m
xdotool type --delay 40 1002-1008x2
keys Return
ends "chosen $work/shot/plate.####.exr 1002-1008"

begin open # into a folder and back
keys Home Return
wait_for listed 2
keys alt+Up
wait_for listed 3
keys alt+n
xdotool type --delay 40 zoom.exr
keys Return
ends "chosen $work/shot/zoom.exr 0-0"

begin open
keys Escape
ends cancelled

begin save comp_v001.exr # Return and Escape leave the file alone
keys Return
wait_for sheet
keys Return
wait_for 'no sheet'
keys Return
wait_for sheet 2
keys Escape
wait_for 'no sheet' 2
keys ctrl+equal Return # the next version is free
ends "chosen $work/shot/comp_v002.exr 0-0"

begin save comp_v001.exr
keys Return
wait_for sheet
keys r
ends "chosen $work/shot/comp_v001.exr 0-0"

begin save comp_v001.exr # as a sequence, by Tab to the switch
keys Tab Tab Tab Tab Home Return
ends "chosen $work/shot/comp_v001.####.exr 0-0"

begin folder
xdotool type --delay 40 li
keys alt+h
ends "chosen $work/shot/lib 0-0"
