#!/bin/bash
# Runs a command on a virtual X server of its own with a small window manager, so that moving,
# maximising and full screen are real. ORVO_SCREEN gives the size and depth of the screen.
set -u
for tool in Xvfb openbox xprop; do
    command -v "$tool" >/dev/null || { echo "$0: $tool is not installed" >&2; exit 125; }
done
state=$(mktemp -d) || exit 125
cleanup() {
    [ -z "${wm:-}" ] || kill "$wm" 2>/dev/null
    [ -z "${server:-}" ] || kill "$server" 2>/dev/null
    wait 2>/dev/null
    rm -rf "$state"
}
trap cleanup EXIT
trap 'exit 130' INT TERM

exec 3>"$state/display"
# Without -noreset it starts over when the first look for the window manager ends, and refuses a
# window manager that comes at that moment.
Xvfb -displayfd 3 -screen 0 "${ORVO_SCREEN:-1600x1000x24}" -nolisten tcp -noreset \
    +extension RANDR >"$state/xvfb.log" 2>&1 &
server=$!
exec 3>&-
for _ in $(seq 100); do
    [ -s "$state/display" ] && break
    sleep 0.1
done
[ -s "$state/display" ] || { echo "$0: Xvfb does not start" >&2; cat "$state/xvfb.log" >&2; exit 125; }
DISPLAY=":$(cat "$state/display")"
export DISPLAY
unset WAYLAND_DISPLAY

openbox --sm-disable >"$state/openbox.log" 2>&1 &
wm=$!
is_managed() {
    xprop -root _NET_SUPPORTING_WM_CHECK 2>/dev/null | grep -q 'window id'
}
for _ in $(seq 200); do
    is_managed && break
    sleep 0.05
done
is_managed || { echo "$0: openbox does not start" >&2; cat "$state/openbox.log" >&2; exit 125; }
"$@"
