#!/usr/bin/env bash
# Ten minutes of an artist on the present screen: picks a light above white from the viewer, matches
# two shots by white balance, track balls and curves, keys the exposure, by mouse and by keys; takes
# all of it back across both shots, does it again, and compares what the viewer shows:
# match.sh WORKBENCH [FOLDER for the screenshots]
set -euo pipefail
workbench=$1
work=$(mktemp -d)
pictures=${2:-$work}
trap '[[ -z ${pid:-} ]] || kill "$pid" 2>/dev/null || true; rm -rf "$work"' EXIT
# The places below are pixels: letters must have one size, whatever Qt makes of the screen.
export QT_FONT_DPI=100
export HOME=$work XDG_CONFIG_HOME=$work/config XDG_DATA_HOME=$work/data LC_ALL=C.UTF-8
mkdir -p "$work/shot" "$pictures"

fail() { echo "match: $*" >&2; exit 1; }

# Two shots of one place in different light, with a lamp that is six times as bright as white.
perl -e '
for my $shot (["a", 0.3, 0.2, 0.12], ["b", 0.1, 0.2, 0.3]) {
  my ($name, @tint) = @$shot;
  for my $frame (1 .. 8) {
    open my $file, ">:raw", "$ARGV[0]/$name.000$frame.hdr" or die;
    print $file "#?RADIANCE\nFORMAT=32-bit_rle_rgbe\n\n-Y 36 +X 64\n";
    for my $y (0 .. 35) {
      for my $x (0 .. 63) {
        my $is_lamp = $x >= 40 && $x < 52 && $y >= 6 && $y < 16;
        my @light = $is_lamp ? (6, 3, 1.5) : map { $_ * (0.3 + $y / 25 + $frame / 40) } @tint;
        my ($most) = sort { $b <=> $a } @light;
        my $power = -8;
        $power++ while $most >= 2 ** $power;
        print $file pack "C4", (map { $_ * 256 / 2 ** $power } @light), 128 + $power;
      }
    }
  }
}' "$work/shot"
cat >"$work/layout.xml" <<'EOF'
<layout version="1.0"><window><splitter orientation="1">
  <split size="400" stretch="1"/>
  <splitter orientation="2">
    <split size="300" stretch="1"/>
    <dock id="main" activePageId="Viewer"><page id="Viewer"/></dock>
    <split size="200"/>
    <dock id="list" activePageId="Sequences"><page id="Sequences"/></dock>
    <split size="400"/>
    <dock id="steps" activePageId="History"><page id="History"/></dock>
  </splitter>
  <split size="390"/>
  <dock id="right" activePageId="Grade"><page id="Grade"/></dock>
  <split size="420"/>
  <splitter orientation="2">
    <split size="560" stretch="1"/>
    <dock id="color" activePageId="Colour"><page id="Colour"/></dock>
    <split size="300"/>
    <dock id="keys" activePageId="Exposure"><page id="Exposure"/></dock>
  </splitter>
</splitter></window></layout>
EOF

viewer=400x220+8+84
colors=400x560+825+40

# Waits until two pictures of a part of the window in a row are the same.
settle() {
  for _ in {1..60}; do
    import -window root -crop "$(placed "$2")" +repage "$work/last.ppm"
    sleep 0.2
    import -window root -crop "$(placed "$2")" +repage "$1"
    cmp -s "$1" "$work/last.ppm" && return
  done
  fail 'the picture does not come to rest'
}

placed() {
  local size x y
  IFS=+ read -r size x y <<<"$1"
  echo "$size+$((X + x))+$((Y + y))"
}

# Waits for a state of the viewer that is another one than that before.
before=
new() {
  for _ in {1..20}; do
    settle "$pictures/$1.ppm" "$viewer"
    if [[ -z $before ]] || ! cmp -s "$pictures/$1.ppm" "$pictures/$before.ppm"; then
      before=$1
      states+=("$1")
      return
    fi
  done
  fail "$1 looks like $before"
}
states=()

# Waits for one that was seen before.
same() {
  for _ in {1..20}; do
    settle "$pictures/now.ppm" "$viewer"
    cmp -s "$pictures/now.ppm" "$pictures/$1.ppm" && return
  done
  fail "$2 does not show $1"
}

point() { xdotool mousemove $((X + $1)) $((Y + $2)); }

click() {
  point "$1" "$2"
  xdotool click --repeat "${3:-1}" --delay 60 1 mousemove 2 2
}

drag() {
  point "$1" "$2"
  xdotool mousedown 1
  for i in {1..8}; do
    point $(($1 + $3 * i / 8)) $(($2 + $4 * i / 8))
    sleep 0.03
  done
  xdotool mouseup 1 mousemove 2 2
}

"$workbench" --layout "$work/layout.xml" "$work/shot" &
pid=$!
main=$(timeout 30 xdotool search --sync --onlyvisible --name 'KxUI Workbench$' | head -1) ||
  fail 'no window'
xdotool windowsize --sync "$main" 1240 960 windowmove "$main" 20 30
X=-1
for _ in {1..50}; do # until the window manager has put it there
  was=$X
  X=$(xwininfo -id "$main" | awk '/Absolute upper-left X/ {print $NF}')
  Y=$(xwininfo -id "$main" | awk '/Absolute upper-left Y/ {print $NF}')
  [[ $X != "$was" ]] || break
  sleep 0.2
done

new a-first
xdotool key Right Right Right # in the middle of the clip
new a-plain

# The pipette reads the light of the file, which the screen cannot show.
click 920 568
settle "$work/colors.ppm" "$colors"
point 302 148
settle "$work/colors.ppm" "$colors"
xdotool click 1 mousemove 2 2
kept() { cat "$XDG_CONFIG_HOME"/*/swatches "$XDG_CONFIG_HOME"/*/*/swatches 2>/dev/null; }
for _ in {1..50}; do
  [[ -z $(kept) ]] || break
  sleep 0.2
done
[[ $(kept) == *$'\n'6\ 3\ 1.5\ 1* ]] || fail "the pipette took $(kept)"
click 950 63 # the gain by which it is grey
new a-grey

# By the mouse.
drag 492 413 14 -10 # the shadows
new a-shadows
drag 613 413 -12 8
new a-midtones
drag 734 413 0 -16
new a-highlights
drag 684 847 0 -30 # the middle of the master curve
new a-curve
click 840 759 # the first key: a stop more on all frames
new a-key
click 1220 864 # the last frame: a stop less
new a-keys

# The other shot by keys.
click 60 434
xdotool key Down Return
new b-plain
click 492 413
xdotool key shift+Left
new b-shadows
click 613 413
xdotool key shift+Up
new b-midtones
click 734 413
xdotool key Prior
new b-highlights
click 784 775 # the upper end of the master curve
xdotool key shift+Down
new b-curve
click 722 644
xdotool key ctrl+a type 1.5
xdotool key Return
new b-exposure

# All the way back, where another shot comes in between, and forth again. That the one is opened is
# no step, nor is which frame is seen.
for ((i = ${#states[@]} - 2; i > 0; --i)); do
  [[ ${states[i]} != a-keys ]] || continue
  xdotool key ctrl+z
  same "${states[i]}" 'undo'
done
for ((i = 2; i < ${#states[@]}; ++i)); do
  [[ ${states[i]} != b-plain ]] || continue
  xdotool key ctrl+shift+z
  same "${states[i]}" 'redo'
done

xdotool key ctrl+q
timeout 20 tail --pid="$pid" -f /dev/null || fail 'it does not end'
wait "$pid"
pid=
