#!/usr/bin/env bash
# Grades two shots on the present screen, goes back and forth in their one history by menu, keys and
# clicks, and compares what the viewer shows: undo.sh WORKBENCH [FOLDER for the screenshots]
set -euo pipefail
workbench=$1
work=$(mktemp -d)
pictures=${2:-$work}
trap '[[ -z ${pid:-} ]] || kill "$pid" 2>/dev/null || true; rm -rf "$work"' EXIT
# The places below are pixels: letters must have one size, whatever Qt makes of the screen.
export QT_FONT_DPI=100
export HOME=$work XDG_CONFIG_HOME=$work/config XDG_DATA_HOME=$work/data LC_ALL=C.UTF-8
mkdir -p "$work/shot" "$pictures"
for frame in 1 2 3; do
  convert -size 36x64 'gradient:#402010-#80a0c0' -rotate 90 "$work/shot/a.000$frame.png"
  convert -size 36x64 'gradient:#a0c080-#103050' -rotate 90 "$work/shot/b.000$frame.png"
done
cat >"$work/layout.xml" <<'EOF'
<layout version="1.0"><window><splitter orientation="1">
  <split size="400" stretch="1"/>
  <dock id="main" activePageId="Viewer"><page id="Viewer"/></dock>
  <split size="360"/>
  <splitter orientation="2">
    <split size="300"/>
    <dock id="list" activePageId="Sequences"><page id="Sequences"/></dock>
    <split size="400" stretch="1"/>
    <dock id="steps" activePageId="History"><page id="History"/></dock>
  </splitter>
  <split size="380"/>
  <dock id="right" activePageId="Grade"><page id="Grade"/></dock>
</splitter></window></layout>
EOF

fail() { echo "undo: $*" >&2; exit 1; }

# Takes pictures of the viewer until two in a row are the same.
settle() {
  for _ in {1..60}; do
    import -window root -crop "360x600+$((X + 10))+$((Y + 90))" +repage "$work/last.ppm"
    sleep 0.3
    import -window root -crop "360x600+$((X + 10))+$((Y + 90))" +repage "$1"
    cmp -s "$1" "$work/last.ppm" && return
  done
  fail 'the picture does not come to rest'
}

# A state that was not seen before.
new() {
  settle "$pictures/$1.ppm"
  [[ -z ${2:-} ]] || ! cmp -s "$pictures/$1.ppm" "$pictures/$2.ppm" || fail "$1 looks like $2"
}

same() {
  settle "$pictures/now.ppm"
  cmp -s "$pictures/now.ppm" "$pictures/$1.ppm" || fail "$2 does not show $1"
}

click() {
  xdotool mousemove $((X + $1)) $((Y + $2)) sleep 0.1 click --repeat "${3:-1}" --delay 60 1 \
    sleep 0.3 mousemove 2 2
}

drag() {
  xdotool mousemove $((X + $1)) $((Y + $2)) mousedown 1
  for i in {1..8}; do
    xdotool mousemove $((X + $1 + $3 * i / 8)) $((Y + $2 + $4 * i / 8)) sleep 0.03
  done
  xdotool mouseup 1 mousemove 2 2
}

"$workbench" --layout "$work/layout.xml" "$work/shot" &
pid=$!
main=$(timeout 30 xdotool search --sync --onlyvisible --name 'KxUI Workbench$' | head -1) ||
  fail 'no window'
xdotool windowsize "$main" 1160 800 windowmove "$main" 40 40 sleep 0.5
X=$(xwininfo -id "$main" | awk '/Absolute upper-left X/ {print $NF}')
Y=$(xwininfo -id "$main" | awk '/Absolute upper-left Y/ {print $NF}')

new a-plain
drag 899 211 40 -20 # the wheel
new a-gain a-plain
click 850 321 # folds the balance
drag 886 398 30 0 # the exposure
new a-exposure a-gain
click 843 446 # folds the curves
click 858 518
xdotool key Down key Return # the preview
new a-preview a-exposure
click 843 446
click 480 230 # below the shots
xdotool key End Return # the other one
new b-plain a-preview
drag 963 654 0 -60 # its master curve
new b-curve b-plain

xdotool key ctrl+z
same b-plain 'the first undo'
xdotool key ctrl+z
same a-exposure 'undo across the shots'
xdotool key alt+e sleep 0.3 key Return
same a-gain 'undo by the menu'
xdotool key ctrl+shift+z
same a-exposure 'redo'
row() { click 597 $((397 + 23 * $1)); }
row 4
same b-curve 'a click on the last step'
row 1
same a-gain 'a click on the first step'
xdotool key Up
same a-plain 'the key to the row above'
xdotool key Down key Down key Down key Down
same b-curve 'the keys to the last row'

xdotool key ctrl+q
timeout 20 tail --pid="$pid" -f /dev/null || fail 'it does not end'
wait "$pid"
pid=
