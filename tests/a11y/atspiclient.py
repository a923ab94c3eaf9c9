#!/usr/bin/python3
# SPDX-License-Identifier: MIT
"""Reads the tab strips of atspihost over AT-SPI, the way a screen reader does.

For each strip (the classic one, the scrolling one and Qt's QTabBar as a control) it
checks the role, the page tabs in display order with their names and that exactly the
current tab is selected; for our strips also each tab's close button. Then, on each of
our strips, it presses the close button of a tab after the current one and then of
the current one through the Action interface, and checks the tabs left, the tab
selected now and that the events telling a screen reader so arrived.

Prints the tree it read. Exits nonzero, naming the strip and what was expected, on
the first failure.
"""

import argparse
import sys
import time
import warnings

import gi

gi.require_version("Atspi", "2.0")
from gi.repository import Atspi, Gio, GLib  # noqa: E402

TITLES = ["Alpha", "Beta", "Gamma"]
CURRENT = 1
# What each strip should call its tabs: ours name an untitled tab "New tab"; QTabBar
# leaves the name empty.
EXPECTED = {
    "classic": TITLES + ["New tab"],
    "scrolling": TITLES + ["New tab"],
    "qtabbar": TITLES + [""],
}
OURS = ("classic", "scrolling")


class Failure(Exception):
    pass


def expect(condition, bar, message):
    if not condition:
        raise Failure(f"{bar}: {message}")


def safe_name(obj):
    try:
        return obj.get_name()
    except GLib.Error:
        return "<gone>"


def find_app(pid, timeout):
    """The host's application object on the bus, polled for until timeout seconds."""
    deadline = time.monotonic() + timeout
    seen = []
    while time.monotonic() < deadline:
        desktop = Atspi.get_desktop(0)
        seen = []
        for i in range(desktop.get_child_count()):
            app = desktop.get_child_at_index(i)
            if app is None:
                continue
            try:
                name, app_pid = app.get_name(), app.get_process_id()
            except GLib.Error:
                continue
            seen.append(f"{name} (pid {app_pid})")
            if app_pid == pid and name == "keltab-atspihost":
                return app
        pump(0.2)
    raise Failure(f"host: no application keltab-atspihost with pid {pid} on the accessibility bus "
                  f"within {timeout} s; seen: {seen or 'none'}")


def pump(seconds):
    """Runs the main loop for @seconds, so that events are delivered."""
    loop = GLib.MainLoop()
    GLib.timeout_add(int(seconds * 1000), loop.quit)
    loop.run()


def children(obj):
    return [obj.get_child_at_index(i) for i in range(obj.get_child_count())]


def find_bars(app):
    """The page tab lists under @app: ours by accessible name; QTabBar names itself
    after its current tab whatever its accessible name, so it is the one other list."""
    bars = {}
    others = []
    stack = [app]
    while stack:
        obj = stack.pop()
        if obj.get_role() == Atspi.Role.PAGE_TAB_LIST:
            if obj.get_name() in OURS:
                bars[obj.get_name()] = obj
            else:
                others.append(obj)
            continue
        stack.extend(c for c in children(obj) if c is not None)
    if len(others) == 1:
        bars["qtabbar"] = others[0]
    return bars


def wait_for_bars(app, timeout):
    """The three strips, once the host's window shows them (it may still be starting)."""
    deadline = time.monotonic() + timeout
    bars = {}
    while time.monotonic() < deadline:
        try:
            bars = find_bars(app)
        except GLib.Error:
            bars = {}  # a widget went while the tree was walked: read it again
        if all(name in bars for name in EXPECTED):
            return bars
        pump(0.2)
        app.clear_cache()
    missing = [name for name in EXPECTED if name not in bars]
    raise Failure(f"host: no page tab list for {', '.join(missing)} within {timeout} s; found {sorted(bars)}")


def has_state(obj, state):
    return obj.get_state_set().contains(state)


def page_tabs(bar):
    return [c for c in children(bar) if c is not None and c.get_role() == Atspi.Role.PAGE_TAB]


def print_tree(obj, depth=0, limit=3):
    states = []
    state_set = obj.get_state_set()
    for state in (Atspi.StateType.SELECTED, Atspi.StateType.FOCUSED, Atspi.StateType.SHOWING,
                  Atspi.StateType.ENABLED):
        if state_set.contains(state):
            states.append(state.value_nick)
    extents = ""
    if "Component" in obj.get_interfaces():
        box = Atspi.Component.get_extents(obj, Atspi.CoordType.WINDOW)
        extents = f" at {box.x},{box.y} {box.width}x{box.height}"
    print(f"{'  ' * depth}[{obj.get_role_name()}] \"{obj.get_name()}\"{extents} {' '.join(states)}")
    if depth < limit:
        for child in children(obj):
            if child is not None:
                print_tree(child, depth + 1, limit)


def check_bar(label, bar, names, current):
    """Role, the page tabs in order with their names, exactly @current selected and,
    for our strips, the close buttons."""
    expect(bar.get_role_name() == "page tab list", label,
           f"role is \"{bar.get_role_name()}\", expected \"page tab list\"")
    tabs = page_tabs(bar)
    read = [t.get_name() for t in tabs]
    expect(read == names, label, f"page tabs are {read}, expected {names}")
    # QTabBar (Qt 5.15 and 6.4) marks its current tab focused rather than selected;
    # the control is held to what it says, our strips to "selected".
    marks = (Atspi.StateType.SELECTED,) if label in OURS else (Atspi.StateType.SELECTED, Atspi.StateType.FOCUSED)
    selected = [i for i, t in enumerate(tabs) if any(has_state(t, mark) for mark in marks)]
    expect(selected == [current], label,
           f"selected tabs are {[read[i] for i in selected]}, expected only \"{names[current]}\"")
    for i, tab in enumerate(tabs):
        expect(tab.get_role_name() == "page tab", label,
               f"tab {i} has role \"{tab.get_role_name()}\", expected \"page tab\"")
    # Every tab fits the host's window: each is showing, the last one as well.
    for i, tab in enumerate(tabs):
        expect(has_state(tab, Atspi.StateType.SHOWING), label, f"tab \"{read[i]}\" is not showing")
    if label not in OURS:
        return tabs
    for i, tab in enumerate(tabs):
        buttons = [c for c in children(tab) if c is not None]
        expect(len(buttons) == 1, label, f"tab \"{names[i]}\" has {len(buttons)} children, expected its close button")
        button = buttons[0]
        expect(button.get_role() == Atspi.Role.PUSH_BUTTON, label,
               f"the child of tab \"{names[i]}\" has role \"{button.get_role_name()}\", expected \"push button\"")
        expect(button.get_name() == f"Close tab {names[i]}", label,
               f"the close button of tab \"{names[i]}\" is named \"{button.get_name()}\", "
               f"expected \"Close tab {names[i]}\"")
    return tabs


class EventLog:
    """The events a screen reader follows the strips by, as they arrive."""

    KINDS = ("object:children-changed", "object:state-changed", "object:selection-changed")

    def __init__(self):
        self.events = []
        self.listener = Atspi.EventListener.new(self.on_event)
        for kind in self.KINDS:
            self.listener.register(kind)

    def close(self):
        for kind in self.KINDS:
            self.listener.deregister(kind)

    def on_event(self, event):
        # Resolved now: the source may be gone by the time the log is read.
        child = safe_name(event.any_data) if isinstance(event.any_data, Atspi.Accessible) else None
        self.events.append((event.type, event.detail1, safe_name(event.source), child))

    def find(self, prefix, source, detail1=None):
        return [e for e in self.events
                if e[0].startswith(prefix) and e[2] == source and (detail1 is None or e[1] == detail1)]

    def text(self):
        return "; ".join(f"{kind}({detail1}) from \"{source}\"" + (f" child \"{child}\"" if child else "")
                         for kind, detail1, source, child in self.events)


def registered_events():
    """The events the registry tells applications that someone listens to. Qt's bridge
    sends only those, and learns of a new listener by a signal it may not be connected
    to yet while it starts."""
    session = Gio.bus_get_sync(Gio.BusType.SESSION, None)
    address = session.call_sync("org.a11y.Bus", "/org/a11y/bus", "org.a11y.Bus", "GetAddress", None,
                                GLib.VariantType.new("(s)"), Gio.DBusCallFlags.NONE, 5000, None).unpack()[0]
    bus = Gio.DBusConnection.new_for_address_sync(
        address, Gio.DBusConnectionFlags.AUTHENTICATION_CLIENT | Gio.DBusConnectionFlags.MESSAGE_BUS_CONNECTION,
        None, None)
    try:
        reply = bus.call_sync("org.a11y.atspi.Registry", "/org/a11y/atspi/registry", "org.a11y.atspi.Registry",
                              "GetRegisteredEvents", None, GLib.VariantType.new("(a(ss))"),
                              Gio.DBusCallFlags.NONE, 5000, None)
    finally:
        bus.close_sync(None)
    return {event for _, event in reply.unpack()[0]}


def wait_for_registration(timeout):
    """Waits until the registry lists every event the log listens to."""
    deadline = time.monotonic() + timeout
    missing = list(EventLog.KINDS)
    while time.monotonic() < deadline:
        # The registry keeps them in D-Bus spelling: "Object:ChildrenChanged:".
        events = [e.lower() for e in registered_events()]
        missing = [kind for kind in EventLog.KINDS if not any(e.startswith(kind.replace("-", "")) for e in events)]
        if not missing:
            return
        pump(0.1)
    raise Failure(f"client: the registry does not list {missing} within {timeout} s")


def read_pid(path, timeout):
    """The host's process id, from the file the runner writes once it has started it."""
    deadline = time.monotonic() + timeout
    while time.monotonic() < deadline:
        try:
            with open(path, encoding="ascii") as f:
                text = f.read().strip()
            if text:
                return int(text)
        except FileNotFoundError:
            pass
        time.sleep(0.1)
    raise Failure(f"host: not started within {timeout} s ({path} is not written)")


def wait_until(condition, timeout):
    deadline = time.monotonic() + timeout
    while time.monotonic() < deadline and not condition():
        pump(0.1)
    return condition()


def close_tab(label, bar, names, index, current_after, log, timeout):
    """Presses the close button of tab @index; the host removes the tab. Checks the tabs
    read afterwards, that tab @current_after (of those left) is the selected one, and
    that the events a screen reader needs to know this arrived. Returns the names left."""
    closed = names[index]
    tab = page_tabs(bar)[index]
    button = tab.get_child_at_index(0)
    expect("Action" in button.get_interfaces() and Atspi.Action.get_n_actions(button) > 0, label,
           f"the close button of \"{closed}\" has no action")
    # The older call: Qt answers GetName but not GetLocalizedName, which the newer one asks.
    with warnings.catch_warnings():
        warnings.simplefilter("ignore", DeprecationWarning)
        action_name = Atspi.Action.get_action_name(button, 0)
    print(f"{label}: pressing \"{button.get_name()}\" (action \"{action_name}\")")
    log.events.clear()
    expect(Atspi.Action.do_action(button, 0), label, f"do_action(0) on \"{button.get_name()}\" returned false")
    after = names[:index] + names[index + 1:]

    removed = wait_until(lambda: log.find("object:children-changed:remove", label), timeout)
    selection_moved = index == CURRENT
    if selection_moved:
        # The tab that became current must say so: "selected" switched on for it.
        wait_until(lambda: log.find("object:state-changed:selected", after[current_after], 1), timeout)
    print(f"{label}: events: {log.text()}")
    expect(removed, label,
           f"no object:children-changed:remove event from the page tab list within {timeout} s "
           f"after closing \"{closed}\"")
    if selection_moved:
        expect(log.find("object:state-changed:selected", after[current_after], 1), label,
               f"no object:state-changed:selected (on) event from \"{after[current_after]}\" within {timeout} s "
               f"after closing the current tab \"{closed}\"")

    # What a screen reader reads now: first through its cache, which the events keep
    # current, then afresh from the application.
    read = [t.get_name() for t in page_tabs(bar)]
    expect(read == after, label,
           f"after closing \"{closed}\" the page tabs read (cached) are {read}, expected {after}")
    bar.clear_cache()
    check_bar(label, bar, after, current_after)
    print(f"{label}: after closing \"{closed}\":")
    print_tree(bar, 1)
    return after


def main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("--ready", required=True,
                        help="a file written once the listeners are registered: the host may start then")
    parser.add_argument("--pid-file", required=True, help="a file the host's process id is written to")
    parser.add_argument("--timeout", type=float, default=20, help="seconds to wait for each step")
    args = parser.parse_args()

    Atspi.init()
    log = EventLog()
    try:
        # The host starts after this, so that Qt knows from its start whom to tell.
        wait_for_registration(args.timeout)
        with open(args.ready, "w", encoding="ascii") as f:
            f.write("ready\n")
        pid = read_pid(args.pid_file, args.timeout)
        app = find_app(pid, args.timeout)
        bars = wait_for_bars(app, args.timeout)
        print(f"application \"{app.get_name()}\" (pid {pid}):")
        for label in EXPECTED:
            print(f"{label}:")
            print_tree(bars[label], 1)
        for label, names in EXPECTED.items():
            check_bar(label, bars[label], names, CURRENT)
            print(f"{label}: ok")
        for label in OURS:
            # A tab right of the current one, then the current one: its right-hand
            # neighbour becomes current, as both strips do by default.
            names = close_tab(label, bars[label], EXPECTED[label], 2, CURRENT, log, 10)
            close_tab(label, bars[label], names, CURRENT, CURRENT, log, 10)
            print(f"{label}: closing ok")
    except Failure as failure:
        print(f"FAIL {failure}", file=sys.stderr)
        return 1
    finally:
        log.close()
    print("PASS")
    return 0


if __name__ == "__main__":
    sys.exit(main())
