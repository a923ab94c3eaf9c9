#!/bin/sh
# SPDX-License-Identifier: MIT
# a11ybus.sh LAUNCHER COMMAND...: runs COMMAND with Qt's AT-SPI bridge switched on, for tests of accessibility events:
# Qt only sends them (even to a test's update handler) while a client is listening.
# Started inside dbus-run-session: LAUNCHER (at-spi-bus-launcher) starts the accessibility bus on that private
# session bus, and QT_LINUX_ACCESSIBILITY_ALWAYS_ON turns the bridge on without a
# screen reader.
launcher_program=$1
shift
"$launcher_program" >/dev/null 2>&1 &
launcher=$!
i=0
while [ $i -lt 50 ] && ! dbus-send --session --print-reply --dest=org.freedesktop.DBus / org.freedesktop.DBus.NameHasOwner string:org.a11y.Bus 2>/dev/null | grep -q true; do
    sleep 0.1; i=$((i+1))
done
QT_LINUX_ACCESSIBILITY_ALWAYS_ON=1 "$@"
rc=$?
kill $launcher 2>/dev/null
exit $rc
