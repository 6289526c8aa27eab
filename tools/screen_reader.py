"""Reads the desk's windows as a screen reader does, by AT-SPI on a bus of its own. Needs the system's Python, to which
the package of pyatspi belongs."""

import contextlib
import os
import re
import select
import subprocess
import time
from typing import NamedTuple

from on_screen import PATIENCE, Missing, need

LAUNCHER = "/usr/libexec/at-spi-bus-launcher"
MOST_CHILDREN = 300  # of a list or a table: the rest reads alike


class Bus:
    """The session bus of one screen with the accessibility bus behind it. Programs that start on the screen from then
    on speak, as on a desktop with a reader switched on."""

    def __init__(self, screen):
        own = {name: value for name, value in os.environ.items() if not name.startswith("DBUS_")}
        own |= {"DISPLAY": screen.display, "XDG_RUNTIME_DIR": screen.folder.name}
        self.daemon = subprocess.Popen(
            ["dbus-daemon", "--session", "--nofork", "--nopidfile", "--print-address"], env=own,
            stdout=subprocess.PIPE, stderr=subprocess.DEVNULL, text=True)
        if not select.select([self.daemon.stdout], [], [], PATIENCE)[0]:
            raise Missing("the session bus doesn't start")
        address = self.daemon.stdout.readline().strip()
        if not address:
            raise Missing("the session bus ends at once")
        self.launcher = subprocess.Popen([LAUNCHER, "--launch-immediately"],
                                         env=own | {"DBUS_SESSION_BUS_ADDRESS": address}, stderr=subprocess.DEVNULL)
        screen.surroundings |= {"DBUS_SESSION_BUS_ADDRESS": address, "QT_LINUX_ACCESSIBILITY_ALWAYS_ON": "1"}
        os.environ |= {"DBUS_SESSION_BUS_ADDRESS": address, "DISPLAY": screen.display}

    def close(self):
        for process in (self.launcher, self.daemon):
            process.terminate()
            process.wait(PATIENCE)
        self.daemon.stdout.close()


class Node(NamedTuple):
    """What is told of one element. `behind` are the names of what it stands in, from the window on."""

    role: str
    name: str
    description: str
    states: frozenset
    actions: tuple
    value: tuple  # now, least, most; empty when it has none
    table: tuple  # rows, columns
    labels: tuple
    behind: tuple
    accessible: object

    def __str__(self):
        return f"{self.role} {self.name!r} in {' / '.join(self.behind)}"


class Reader:
    """Listens to one program. The bus must stand before the first one is made."""

    def __init__(self, program="Velgrove"):
        import pyatspi  # connects to the bus
        self.spi, self.program = pyatspi, program
        self.states = {getattr(pyatspi, "STATE_" + name.upper()): name
                       for name in ("focusable", "focused", "showing", "enabled", "checked", "selected")}
        need(lambda: self.application() is not None, "the program tells nothing")

    def application(self):
        return next((one for one in self.spi.Registry.getDesktop(0) if one is not None and one.name == self.program), None)

    # ---- What stands on the screen

    def top_windows(self):
        program = self.application()
        program.clearCache()
        return [window for window in program if self._shows(window)]

    def find_window(self, title):
        """A window, or one inside the frame, by a pattern of its title."""
        for window in self.top_windows():
            if re.search(title, window.name):
                return window
            for inner in self.inner_windows(window):
                if re.search(title, inner.name):
                    return inner
        return None

    def window(self, title):
        need(lambda: self.find_window(title) is not None, f"no window {title!r} to read")
        return self.find_window(title)

    def wait_gone(self, title):
        need(lambda: self.find_window(title) is None, f"the window {title!r} stays")

    def inner_windows(self, window):
        return [node for area in self._with_role(window, "layered pane") for node in area
                if node.getRoleName() == "frame" and self._shows(node)]

    def read(self, window):
        """All that shows in a window, without the windows inside it."""
        window.clearCache()
        return list(self._walk(window, (window.name,)))

    def _walk(self, accessible, behind):
        for child in self._children(accessible):
            if not self._shows(child):
                continue
            if child.getRoleName() == "frame" and accessible.getRoleName() == "layered pane":
                continue
            node = self._node(child, behind)
            yield node
            yield from self._walk(child, (*behind, node.name) if node.name else behind)

    def _node(self, accessible, behind):
        states = accessible.getState()
        return Node(accessible.getRoleName(), accessible.name, accessible.description,
                    frozenset(name for state, name in self.states.items() if states.contains(state)),
                    self._actions(accessible), self._value(accessible), self._table(accessible),
                    tuple(target.name for relation in accessible.getRelationSet()
                          if relation.getRelationType() == self.spi.RELATION_LABELLED_BY
                          for target in (relation.getTarget(at) for at in range(relation.getNTargets()))),
                    behind, accessible)

    def _children(self, accessible):
        return [child for child in (accessible.getChildAtIndex(at)
                                    for at in range(min(accessible.childCount, MOST_CHILDREN))) if child is not None]

    def _with_role(self, accessible, role):
        for child in self._children(accessible):
            if child.getRoleName() == role:
                yield child
            elif child.getRoleName() in ("filler", "split pane", "panel"):
                yield from self._with_role(child, role)

    def _shows(self, accessible):
        return accessible.getState().contains(self.spi.STATE_SHOWING)

    def _actions(self, accessible):
        with contextlib.suppress(NotImplementedError):
            all_of_it = accessible.queryAction()
            return tuple(all_of_it.getName(at) for at in range(all_of_it.nActions))
        return ()

    def _value(self, accessible):
        with contextlib.suppress(NotImplementedError):
            value = accessible.queryValue()
            return value.currentValue, value.minimumValue, value.maximumValue
        return ()

    def _table(self, accessible):
        with contextlib.suppress(NotImplementedError):
            table = accessible.queryTable()
            return table.nRows, table.nColumns
        return ()

    # ---- The hand of a reader

    def element(self, window, role, name):
        """An element of a window by its role and a pattern of its name."""
        return next((node for node in self.read(window) if node.role == role and re.search(name, node.name)), None)

    def act(self, window, role, name, action="Press"):
        node = self.element(window, role, name)
        if node is None:
            raise Missing(f"no {role} {name!r}")
        node.accessible.queryAction().doAction(node.actions.index(action))

    def focus(self, window, role, name):
        self.element(window, role, name).accessible.queryComponent().grabFocus()

    # ---- What the desk tells by itself

    @contextlib.contextmanager
    def listening(self, *kinds):
        """Collects the events of these kinds, as (kind, role, name), whenever `hear` runs."""
        heard = []

        def note(event):
            heard.append((event.type, event.source.getRoleName(), event.source.name) if event.source else (event.type,))
        self.spi.Registry.registerEventListener(note, *kinds)
        try:
            yield heard
        finally:
            self.spi.Registry.deregisterEventListener(note, *kinds)

    @staticmethod
    def hear(seconds):
        from gi.repository import GLib
        context, end = GLib.MainContext.default(), time.monotonic() + seconds
        while time.monotonic() < end:
            if not context.iteration(False):
                time.sleep(0.01)
