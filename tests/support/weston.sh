#!/bin/sh
# SPDX-License-Identifier: MIT
# Runs a command as the only client of a weston compositor of its own, inside the X
# server this script is started in (xvfb-run): weston's X11 backend shows its output
# in an X window at the screen's origin, so the X server's pointer, moved through
# XTEST, is the compositor's pointer, and a full-screen client's coordinates are the
# X screen's. The command runs with the Qt's Wayland platform.
#
# usage: weston.sh command [arguments...]
set -u
runtime=$(mktemp -d "${TMPDIR:-/tmp}/keltab-weston.XXXXXX") || exit 1
chmod 700 "$runtime"
export XDG_RUNTIME_DIR="$runtime"
socket=keltab-wayland
# No animations, and no clock on the panel: a picture of the screen shows the windows
# where they are, and nothing changes on it that the test did not change.
cat > "$runtime/weston.ini" <<'INI'
[core]
idle-time=0

[shell]
animation=none
close-animation=none
startup-animation=none
focus-animation=none
clock-format=none
INI
weston --config="$runtime/weston.ini" --backend=x11-backend.so --socket="$socket" --width=1280 --height=800 \
    --idle-time=0 --log="$runtime/weston.log" &
weston_pid=$!
i=0
while [ ! -S "$runtime/$socket" ]; do
    i=$((i + 1))
    if [ "$i" -gt 100 ] || ! kill -0 "$weston_pid" 2>/dev/null; then
        echo "weston.sh: weston did not start" >&2
        cat "$runtime/weston.log" >&2 2>/dev/null
        kill "$weston_pid" 2>/dev/null
        rm -rf "$runtime"
        exit 1
    fi
    sleep 0.1
done
WAYLAND_DISPLAY="$socket" QT_QPA_PLATFORM=wayland "$@"
status=$?
kill "$weston_pid" 2>/dev/null
wait "$weston_pid" 2>/dev/null
rm -rf "$runtime"
exit "$status"
