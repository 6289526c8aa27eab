"""The desk's windows as a screen reader finds them: every control has a name that tells it apart, every value can be
read, and a fade doesn't talk."""

import os
import re
import sys
import time
import unittest
from typing import Callable, NamedTuple

from programs import program

sys.path.insert(0, os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", "..", "tools"))
from on_screen import Booth, Screen, need  # noqa: E402
from screen_reader import Bus, Reader  # noqa: E402

CONTROLS = {"push button", "toggle button", "check box", "radio button", "text", "combo box", "slider", "scroll bar",
            "dial", "spin button", "page tab", "list", "tree", "tree table", "table", "menu item", "list item", "filler"}
VALUES = {"slider", "scroll bar", "dial", "spin button", "progress bar"}
TABLES = {"tree", "tree table", "table"}
CELLS = {"table cell", "table column header", "list item"}
OF_THE_CODE = re.compile(r"_|\b[a-z]+[A-Z]|\b(cmd|frm|txt|lbl|chk|mnu|ID)[A-Z]")
EVENTS_OF_A_FADE = 20  # its frames alone are more than thirty a second


def nothing(desk):
    pass


class Window(NamedTuple):
    """A window of the desk, how it is opened and how it goes."""

    title: str  # a pattern
    open: Callable = nothing
    close: Callable = nothing


def keys(*names):
    return lambda desk: screen.keys(*names)


def button(name, role="push button", action="Press", of="^Velgrove - "):
    return lambda desk: desk.reader.act(desk.reader.window(of), role, name, action)


def on(role, name, *names, of="^Velgrove - "):
    """Goes to an element and presses keys: a window that comes up by keys gets the focus of its own."""
    def press(desk):
        desk.reader.focus(desk.reader.window(of), role, name)
        screen.keys(*names)
    return press


def fixture(kind):
    """The dialog of the first fixture of a kind, from the plot and by keys."""
    def open_it(desk):
        plot = desk.reader.element(desk.reader.window(f"^{re.escape(desk.plot)}$"), "list", "^Stage plot$")
        names = [fixture.name for fixture in plot.accessible]
        at = next(at for at, name in enumerate(names) if bool(re.match(r"\d+ icue", name)) == (kind == "icue"))
        plot.accessible.queryComponent().grabFocus()
        screen.keys("Escape", "Page_Up", *["Page_Up"] * (len(names) // 10), *["Right"] * at, "Return")
    return open_it


def tab(title, name):
    """Another page of the same dialog."""
    return Window(title, button(f"^{name}$", "page tab", of=title))


ESCAPE = keys("Escape")
PUT_AWAY = keys("ctrl+w")
PREFERENCES = keys("alt+e", "Home", "Return")
LOCK = keys("alt+h", "Right", "Up", "Up", "Return")

# One after the other, over the frame.
WINDOWS = (
    Window("^Velgrove - "),
    Window("^XY - CueList$"),
    Window("^AB - CueList$"),
    Window("^Effects - CueList$", button("^Effects$", "check box", "Toggle"), PUT_AWAY),
    Window("^Check Show$", keys("alt+f", "c"), PUT_AWAY),
    Window("^Keys$", keys("alt+h", "k"), PUT_AWAY),
    Window("DMX Input", button("^Input Bars$"), PUT_AWAY),
    Window("DMX Output", button("^Output Bars$"), PUT_AWAY),
    Window("^Grand Master$", keys("F4"), ESCAPE),
    Window("^Preferences$", PREFERENCES),
    Window("^Velgrove$", button("^Velgrove timings$", of="^Preferences$"), keys("Return")),
    Window("^Internal Timing$", close=ESCAPE),
    # The strip of the submasters comes up, and what stands over it.
    Window("^Velgrove - ", lambda desk: (button("Show", "check box", "Toggle", of="^Preferences$")(desk),
                                         button("^Save$", of="^Preferences$")(desk),
                                         desk.reader.wait_gone("^Preferences$"))),
    Window("^1$", on("push button", "^Submaster 1,", "Return"), ESCAPE),
    Window("^Sub Master$", on("push button", "^Submaster 1,", "Menu"), ESCAPE),
    Window("^Loop Configuration$", button("^Loop$", of="^XY - CueList$"), ESCAPE),
    Window("^Fixture$", fixture("conventional")),
    tab("^Fixture$", "Properties"),
    Window("^Fixture$", close=ESCAPE),
    Window("^Moving Fixture$", fixture("icue"), ESCAPE),
    Window("^About Velgrove$", keys("alt+h", "a"), ESCAPE),
    Window("^Velgrove$", LOCK, keys("Return")),
    Window("^Velgrove$", LOCK, keys("Return")),
    Window("^Print Cue Sheets$", keys("alt+f", "h"), ESCAPE),
    Window("^Velgrove Help$", keys("F1"), ESCAPE),
    Window("^Show View$", keys("F11"), PUT_AWAY),
    Window("^Exiting", keys("alt+f", "x"), ESCAPE),
)


class WhatIsWrong:
    """The faults of one window, in words."""

    def __init__(self, nodes):
        self.nodes = nodes
        self.controls = [node for node in nodes
                         if "focusable" in node.states or (node.actions and node.role not in CELLS)]

    def faults(self):
        return [f"{fault}: {node}" for fault, check in (
            ("without a name", lambda node: not (node.name.strip() or any(node.labels)) and node.role not in CELLS),
            ("a name of the code", lambda node: node.role in CONTROLS - CELLS and OF_THE_CODE.search(node.name)),
            ("no value", lambda node: node.role in VALUES and not node.value),
            ("no rows and columns", lambda node: node.role in TABLES and not (node.table and node.table[1])),
        ) for node in self.controls if check(node)] + self.doubles() + self.silent_tables()

    def doubles(self):
        seen, doubles = set(), []
        for node in self.controls:
            if node.role in CELLS:
                continue
            said = (node.role, node.name, node.labels, node.behind)
            if said in seen:
                doubles.append(f"twice: {node}")
            seen.add(said)
        return doubles

    def silent_tables(self):
        """A table that has rows says something in its first cell."""
        return [f"a silent row: {node}" for node in self.nodes
                if node.role in TABLES and node.table and node.table[0]
                and not node.accessible.queryTable().getAccessibleAt(0, 0).name.strip()]


def setUpModule():
    global screen
    screen = Screen()
    unittest.addModuleCleanup(screen.close)
    bus = Bus(screen)
    unittest.addModuleCleanup(bus.close)


class ADesk(unittest.TestCase):
    def setUp(self):
        self.desk = Booth(screen, os.path.dirname(program("velgrove")))
        self.addCleanup(self.desk.end)
        self.addCleanup(screen.picture, self.id().rpartition(".")[2] + ".png")
        self.desk.start()
        self.desk.wait_for_open_dialog()
        self.desk.reader = self.reader = Reader()

    def check(self, title):
        wrong = WhatIsWrong(self.reader.read(self.reader.window(title)))
        with self.subTest(window=title):
            self.assertTrue(wrong.controls, "nothing can be used in it")
            self.assertEqual(wrong.faults(), [])

    def open_show(self):
        self.desk.open_show()
        self.desk.plot = next(window.name for window in self.reader.inner_windows(self.reader.window("^Velgrove - "))
                              if "CueList" not in window.name)


class EveryWindow(ADesk):
    def test_names_its_controls_and_tells_their_values(self):
        for page in ("^New$", "^Existing$"):
            button(page, "page tab", of="^Open Project$")(self.desk)
            self.check("^Open Project$")
        self.reader.focus(self.reader.window("^Open Project$"), "list", "^Shows$")
        self.open_show()
        for window in WINDOWS:
            window.open(self.desk)
            self.check(window.title)
            window.close(self.desk)
            if window.close is not nothing:
                self.reader.wait_gone(window.title)


class TheEvening(ADesk):
    def first_cells(self):
        table = self.reader.element(self.reader.window("^XY - CueList$"), "tree", "^XY cues$").accessible.queryTable()
        return [table.getAccessibleAt(row, 0).name.partition(", ")[2] for row in range(4)]

    def test_is_heard_by_its_marks_and_its_alerts_and_not_by_the_frames_of_a_fade(self):
        self.open_show()
        self.assertEqual(self.first_cells(), ["stage", "next", "", ""])
        with self.reader.listening("object") as heard:
            self.desk.screen.keys("space")
            self.desk.wait_for_fade()
            self.reader.hear(0.3)
            start, span, told = time.monotonic(), 0, 0
            heard.clear()
            while self.desk.fading():
                span, told = time.monotonic() - start, len(heard)
                self.reader.hear(0.2)
            self.assertGreater(span, 1, "too little of a fade")
            self.assertLess(told, EVENTS_OF_A_FADE, heard)
            self.desk.wait_fades_over()
            heard.clear()
            self.desk.box.stdin.write("unplug\n")
            need(lambda: (self.reader.hear(0.1), [event for event in heard if "showing" in event[0]
                                                  and event[1] == "alert" and event[2]])[1], "no alert")
        self.assertEqual(self.first_cells(), ["", "stage", "next", ""])


if __name__ == "__main__":
    unittest.main()
