#!/bin/sh
# SPDX-License-Identifier: MIT
# atspirun.sh LAUNCHER PYTHON CLIENT HOST: reads the strips of HOST (atspihost) over
# AT-SPI with CLIENT (atspiclient.py), as a screen reader would, with no desktop.
# Started inside dbus-run-session, whose private session bus carries org.a11y.Bus.
#
# The X server is an Xvfb of our own, started with -noreset, so that what the steps
# below leave on it (the launcher puts the accessibility bus's address on the root
# window) does not go when a connection closes, as it would on a server that resets
# whenever its last client leaves. -displayfd lets Xvfb pick a free display itself,
# so this runs beside any other X server.
launcher_program=$1
python=$2
client=$3
host_program=$4

workdir=$(mktemp -d "${TMPDIR:-/tmp}/keltab-atspi.XXXXXX")
xvfb=
launcher=
host=
client_pid=
cleanup() {
    [ -n "$client_pid" ] && kill "$client_pid" 2>/dev/null
    [ -n "$host" ] && kill "$host" 2>/dev/null && wait "$host" 2>/dev/null
    [ -n "$launcher" ] && kill "$launcher" 2>/dev/null
    [ -n "$xvfb" ] && kill "$xvfb" 2>/dev/null
    rm -rf "$workdir"
}
trap cleanup EXIT
# The accessibility bus's socket goes under the runtime directory, named after the
# display: a private one keeps it apart from any other session's.
mkdir -m 700 "$workdir/runtime"
XDG_RUNTIME_DIR=$workdir/runtime
export XDG_RUNTIME_DIR
fail() {
    echo "atspirun: $*" >&2
    exit 1
}

# Polls "$@" every 0.1 s for up to $1 tenths of a second.
wait_for() {
    tries=$1
    shift
    while [ "$tries" -gt 0 ]; do
        "$@" && return 0
        sleep 0.1
        tries=$((tries - 1))
    done
    return 1
}

Xvfb -displayfd 3 -noreset -nolisten tcp -screen 0 1600x1000x24 -dpi 96 3>"$workdir/display" >"$workdir/xvfb.log" 2>&1 &
xvfb=$!
display_known() { [ -s "$workdir/display" ]; }
wait_for 100 display_known || { cat "$workdir/xvfb.log" >&2; fail "Xvfb did not start"; }
DISPLAY=:$(cat "$workdir/display")
export DISPLAY

bus_owned() {
    dbus-send --session --print-reply --dest=org.freedesktop.DBus / org.freedesktop.DBus.NameHasOwner \
        string:org.a11y.Bus 2>/dev/null | grep -q true
}
"$launcher_program" >"$workdir/launcher.log" 2>&1 &
launcher=$!
wait_for 100 bus_owned || { cat "$workdir/launcher.log" >&2; fail "org.a11y.Bus was not owned within 10 s"; }

# What a desktop's accessibility setting does: toolkits and clients read it to decide
# whether to talk AT-SPI at all. It must be set before the host starts.
dbus-send --session --print-reply --dest=org.a11y.Bus /org/a11y/bus org.freedesktop.DBus.Properties.Set \
    string:org.a11y.Status string:IsEnabled variant:boolean:true >/dev/null || fail "could not set IsEnabled"

# The registry daemon, which keeps the list of applications, is started by D-Bus on
# the accessibility bus the first time anyone calls it; call it now so that neither
# the host nor the client waits on it.
address=$(dbus-send --session --print-reply=literal --dest=org.a11y.Bus /org/a11y/bus org.a11y.Bus.GetAddress) \
    || fail "no accessibility bus address"
address=$(echo "$address" | tr -d ' ')
registry_up() {
    dbus-send --bus="$address" --print-reply --dest=org.a11y.atspi.Registry \
        /org/a11y/atspi/accessible/root org.freedesktop.DBus.Peer.Ping >/dev/null 2>&1
}
wait_for 100 registry_up || fail "the AT-SPI registry did not answer on $address within 10 s"

# The client first: it registers its event listeners, then the host starts, so that
# Qt's bridge reads them from the registry when it comes up instead of racing for the
# signal that announces them.
"$python" "$client" --ready "$workdir/ready" --pid-file "$workdir/host.pid" --timeout 20 &
client_pid=$!
client_ready() { [ -s "$workdir/ready" ] || ! kill -0 "$client_pid" 2>/dev/null; }
wait_for 200 client_ready || fail "the client did not register its listeners within 20 s"

QT_QPA_PLATFORM=xcb QT_LINUX_ACCESSIBILITY_ALWAYS_ON=1 "$host_program" &
host=$!
echo "$host" >"$workdir/host.pid.new" && mv "$workdir/host.pid.new" "$workdir/host.pid"

wait "$client_pid"
rc=$?
if ! kill -0 "$host" 2>/dev/null; then
    echo "atspirun: the host is no longer running" >&2
    host=
    rc=1
fi
exit $rc
