#!/bin/sh
# Runs a command on a virtual screen of its own, with a window manager: run.sh COMMAND...
# A desktop that the caller may be sitting at is never touched.
folder=$(mktemp -d)
cleanup() {
    [ -z "${manager:-}" ] || kill "$manager" 2>/dev/null
    [ -z "${server:-}" ] || kill "$server" 2>/dev/null
    rm -rf "$folder"
}
trap cleanup EXIT
mkfifo "$folder/display"
Xvfb -displayfd 3 -screen 0 1280x1024x24 -nolisten tcp 3>"$folder/display" 2>/dev/null &
server=$!
read -r number <"$folder/display" || exit 1
DISPLAY=:$number
export DISPLAY
# The server tells its number before it takes everybody in: a manager that comes too early ends, and
# is started again. A window that is mapped while the manager starts may never be shown.
manager=
tries=0
until xdotool get_num_desktops >/dev/null 2>&1; do
    if [ $((tries += 1)) -gt 300 ]; then
        echo "run.sh: no window manager on display $DISPLAY" >&2
        exit 1
    fi
    if [ -z "$manager" ] || ! kill -0 "$manager" 2>/dev/null; then
        HOME=$folder openbox 2>"$folder/openbox" &
        manager=$!
    fi
    sleep 0.1
done
# The libraries of the window system keep some memory to the end, which is not ours to look after.
ASAN_OPTIONS=${ASAN_OPTIONS:+$ASAN_OPTIONS:}detect_leaks=0
export ASAN_OPTIONS
XDG_RUNTIME_DIR=$folder QT_QPA_PLATFORM=xcb "$@"
