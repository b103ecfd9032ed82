#!/usr/bin/env bash
# Arranges the workbench with mouse and keys on the present screen, leaves it, starts it again, and
# compares what is to be seen: arrangement.sh WORKBENCH [FOLDER for the screenshots]
set -euo pipefail
workbench=$1
work=$(mktemp -d)
pictures=${2:-$work}
trap '[[ -z ${pid:-} ]] || kill "$pid" 2>/dev/null || true; rm -rf "$work"' EXIT
export HOME=$work XDG_CONFIG_HOME=$work/config XDG_DATA_HOME=$work/data LC_ALL=C.UTF-8
mkdir -p "$work/shot" "$pictures"
for frame in 1 2 3; do
  convert -size 64x36 'gradient:#402010-#80a0c0' "$work/shot/s.000$frame.png"
done

fail() { echo "arrangement: $*" >&2; exit 1; }

# Takes screenshots until two in a row are the same.
settle() {
  import -window root "$work/last.ppm"
  for _ in {1..60}; do
    sleep 0.3
    import -window root "$1"
    cmp -s "$1" "$work/last.ppm" && return
    cp "$1" "$work/last.ppm"
  done
  fail 'the screen does not come to rest'
}

# A window that goes while it is looked at ends the search: it begins again.
visible() {
  local found
  for _ in {1..100}; do
    found=$(xdotool search --onlyvisible --name "$1" 2>/dev/null | head -1) || true
    [[ -z $found ]] || { echo "$found"; return; }
    sleep 0.3
  done
  return 1
}

start() {
  "$workbench" "$work/shot" &
  pid=$!
  main=$(visible 'KxUI Workbench$') || fail 'no window'
  xdotool mousemove 2 2
  settle "$work/now.ppm"
}

quit() {
  xdotool key ctrl+q
  timeout 20 tail --pid="$pid" -f /dev/null || fail 'it does not end'
  wait "$pid"
  pid=
}

# From where to where, in the main window.
drag() {
  local X Y # of its contents, without the frame
  X=$(xwininfo -id "$main" | awk '/Absolute upper-left X/ {print $NF}')
  Y=$(xwininfo -id "$main" | awk '/Absolute upper-left Y/ {print $NF}')
  xdotool mousemove $((X + $1)) $((Y + $2)) mousedown 1
  for i in {1..10}; do
    xdotool mousemove $((X + $1 + ($3 - $1) * i / 10)) $((Y + $2 + ($4 - $2) * i / 10)) sleep 0.03
  done
  xdotool mouseup 1 mousemove 2 2
}

# The size of a window's contents.
extent() { xwininfo -id "$1" | awk '/Width|Height/ {printf "%s ", $NF}'; }

# Maximizes the main window, or not any more.
maximize() {
  local X Y
  X=$(xwininfo -id "$main" | awk '/Absolute upper-left X/ {print $NF}')
  Y=$(xwininfo -id "$main" | awk '/Absolute upper-left Y/ {print $NF}')
  xdotool mousemove $((X + 300)) $((Y - 8)) click --repeat 2 --delay 80 1 mousemove 2 2
  settle "$work/now.ppm"
}

start
xdotool windowsize "$main" 1000 640 windowmove "$main" 60 50 sleep 0.3
settle "$pictures/fresh.ppm"
# The first tab of the pane on the left, to the right edge of the viewer.
drag 60 36 992 300
settle "$pictures/docked.ppm"
cmp -s "$pictures/fresh.ppm" "$pictures/docked.ppm" && fail 'the tab cannot be dragged'
# The timeline by keys: to its pane, and from the pane's menu "Float Tab".
xdotool key ctrl+t key Escape key ctrl+shift+m sleep 0.3 \
  key Down key Down key Down key Down key Down key Return
floating=$(visible '^Timeline$') || fail 'nothing floats'
xdotool windowmove "$floating" 300 760 sleep 0.3
xdotool key ctrl+alt+grave
# What floats can have the whole screen.
normal=$(extent "$floating")
xdotool windowactivate --sync "$floating" key F11
settle "$work/now.ppm"
[[ $(extent "$floating") == '1280 1024 ' ]] || fail 'what floats is not full screen'
xdotool key F11
settle "$work/now.ppm"
[[ $(extent "$floating") == "$normal" ]] || fail 'what floated has another size after full screen'
xdotool windowactivate --sync "$main" mousemove 2 2
settle "$pictures/before.ppm"
quit
start
visible '^Timeline$' >/dev/null || fail 'what floated is gone'
settle "$pictures/after.ppm"
normal=$(extent "$main")
maximize
quit
start
[[ $(extent "$main") != "$normal" ]] || fail 'it is not maximized any more'
maximize
[[ $(extent "$main") == "$normal" ]] || fail 'it has another size after it was maximized'
quit
different=$(compare -metric AE "$pictures/before.ppm" "$pictures/after.ppm" null: 2>&1) ||
  fail "$different pixels differ"
