#!/usr/bin/env python3
"""Takes the pictures of the operator's manual: the real desk on a virtual display, with the demo show.

    tools/manual_pictures.py [--programs build/release/bin] [--to docs/manual/pictures] [--only NAME...]

Each picture is a step below; it finds its fixtures in the show and its windows by their titles, so that another show
may come in place of the demo as long as it has cues 1.00 to 4.00 in both lists and a moving light.
"""

import argparse
import contextlib
import json
import os
import subprocess
import time

from on_screen import DEMO, PROGRAMS, ROOT, Booth, Box, Screen, need
from screenshots import small

SIZE = (1280, 800)
WIDEST = 700  # pixels: what the help window shows beside its contents
LARGEST = 120_000  # bytes

# Where the parts of the desk stand on a screen of that size.
CHECK = Box(68, 121, 634, 530)
EFFECTS = Box(66, 121, 508, 580)
CHANNEL_FIELD = (226, 126)  # in the dialog of a light
FREE_CHANNEL = "500"
BAND = Box(366, 30, 1280, 100)
PLOT = Box(47, 101, 631, 697)
XY = Box(633, 101, 1280, 429)
STRIP = Box(0, 703, WIDEST, 776)
TOOLS = {"effects": 187, "grand master": 224}  # of the band, beside AB and XY
KEYS = {"Loop": 0.78, "Blind": 0.943}  # at the foot of the XY list, across its window
ADD_TOOL = (22, 202)  # left of the plot
MOVING_LIGHT = 6  # a fixture's IconShape
FIXTURE_TITLE = "Fixture|Light"
SOFTLY = 0.6  # seconds for a window to come up and its numbers to stand
INTO_FADE = 1.6  # seconds: both looks burn


class Pictures:
    """The pictures, one after the other on one desk."""

    def __init__(self, booth, folder, only):
        self.booth, self.screen, self.folder, self.only = booth, booth.screen, folder, only
        show = subprocess.run([os.path.join(booth.programs, "velgrove-show"), "print", "--json", DEMO],
                              capture_output=True, text=True, check=True).stdout
        self.fixtures = json.loads(show)["colViews"][0]["colFixtures"]

    # ---- Taking

    def take(self, name, box):
        if self.only and name not in self.only:
            return
        whole, path = os.path.join(self.booth.home.name, "screen.png"), os.path.join(self.folder, name + ".png")
        self.screen.picture(whole)
        subprocess.run(["convert", whole, "-crop", f"{box.right - box.left}x{box.bottom - box.top}+{box.left}+{box.top}",
                        "+repage", "-filter", "Lanczos", "-resize", f"{WIDEST}x>", path], check=True)
        small(path)
        size = os.path.getsize(path)
        print(f"{os.path.relpath(path, ROOT)}: {size // 1024} kB", flush=True)
        if size > LARGEST:
            raise SystemExit(f"{path} is too large")

    def take_dialog(self, name, title):
        self.screen.wait_for_dialog(title)
        self.take(name, self.screen.frame_of(self.screen.dialog(title)))

    def middle_of(self, fixture):
        """Where a fixture stands while the whole plot is seen."""
        return round(54 + 0.557 * fixture["x"]), round(682 - 0.557 * fixture["y"])

    def first(self, moves):
        """The first moving light, or the first of the others, that stands on the plot."""
        return min((each for each in self.fixtures if (each["IconShape"] == MOVING_LIGHT) == moves
                    and 0 <= each["x"] <= 1000), key=lambda each: each["Channel"])

    def menu(self, *keys):
        self.screen.keys(*keys)
        time.sleep(SOFTLY)

    def tool(self, name):
        self.screen.click((TOOLS[name], 64))

    # ---- What is seen

    def start(self):
        self.booth.start()
        self.take_dialog("open-dialog", "^Open Project$")
        self.screen.keys("ctrl+Tab")
        time.sleep(SOFTLY)
        self.take_dialog("new-show", "^Open Project$")
        self.screen.keys("ctrl+Tab")
        time.sleep(SOFTLY)
        self.screen.keys("Escape")
        self.screen.wait_gone("^Open Project$")
        self.menu("alt+f", "o")
        self.booth.wait_for_open_dialog()
        self.booth.open_show()
        time.sleep(SOFTLY)

    def in_a_fade(self):
        """Cue 2.00 comes up, with a submaster beside it."""
        self.screen.click(self.booth.advance_button())
        time.sleep(SOFTLY)
        self.screen.click(self.booth.submaster(1)[0])
        self.screen.wait_for("^1$")
        for _ in range(6):
            self.screen.keys("Prior")
        time.sleep(SOFTLY)
        fader = self.screen.frame_of(self.screen.window("^1$"))
        self.take("fader", Box(0, fader.top, 640, STRIP.bottom))
        self.screen.keys("Return")
        self.screen.wait_gone("^1$")
        self.screen.click(self.booth.go_buttons()[1].middle)
        self.booth.wait_for_fade()
        time.sleep(INTO_FADE)
        self.take("desk", Box(0, 0, *SIZE))
        self.take("band", BAND)
        self.take("list", XY)
        self.booth.wait_fades_over()
        time.sleep(SOFTLY)
        self.take("plot", PLOT)
        self.take("strip", STRIP)

    def blind(self):
        self.click_next_row()
        self.screen.click(self.key_of_xy(KEYS["Blind"]))
        time.sleep(SOFTLY)
        self.take("blind", PLOT)
        self.screen.click(self.key_of_xy(KEYS["Blind"]))
        time.sleep(SOFTLY)

    def plot_tools(self):
        self.screen.click(ADD_TOOL)
        time.sleep(SOFTLY)
        self.take("add-light", Box(0, 101, 380, 420))
        self.screen.keys("Escape")
        time.sleep(SOFTLY)
        self.screen.click((SIZE[0] // 4, PLOT.bottom - 40), button=3)

    def fixtures_dialogs(self):
        for name, moves in (("moving-light", True), ("fixture", False)):
            fixture = self.first(moves)
            self.screen.click(self.middle_of(fixture), button=3)
            self.take_dialog(name, FIXTURE_TITLE)
            if not moves:  # its old channel loses its light, so that the check has something to find
                dialog = self.screen.frame_of(self.screen.dialog(FIXTURE_TITLE))
                self.screen.click((dialog.left + CHANNEL_FIELD[0], dialog.top + CHANNEL_FIELD[1]))
                self.screen.keys("ctrl+a")
                self.screen.type(FREE_CHANNEL)
            self.screen.keys("Escape")
            self.screen.wait_gone(FIXTURE_TITLE)

    def surfaces(self):
        self.screen.click(self.booth.submaster(24)[0], button=3)
        self.take_dialog("record-submaster", "^Sub Master$")
        self.screen.keys("Escape")
        self.screen.wait_gone("^Sub Master$")
        self.tool("grand master")
        self.take_dialog("grand-master", "^Grand Master$")
        self.screen.keys("Escape")
        self.screen.wait_gone("^Grand Master$")

    def windows(self):
        self.screen.click(self.booth.bar_tools()[1])
        need(lambda: len(self.screen.canvas.boxes("queue", least=20, gap=2)) > 3, "no bars")
        time.sleep(SOFTLY)
        self.take("bars", Box(53, 116, 880, 690))
        self.screen.keys("Escape")
        self.menu("alt+f", "c")
        time.sleep(2 * SOFTLY)
        self.take("check", CHECK)
        self.close(CHECK)
        self.tool("effects")
        time.sleep(SOFTLY)
        self.choose_effect(EFFECTS)
        self.take("effects", EFFECTS)
        self.close(EFFECTS)

    def menus(self):
        self.menu("alt+e", "Return")
        self.take_dialog("preferences", "^Preferences$")
        self.screen.keys("Escape")
        self.screen.wait_gone("^Preferences$")
        self.menu("alt+e", "Down", "Return")
        time.sleep(SOFTLY)
        self.take("status", self.screen.frame_of(self.screen.window("^VelgroveComm$")))
        self.screen.do("windowclose", self.screen.window("^VelgroveComm$"))
        self.screen.click(self.key_of_xy(KEYS["Loop"]))
        self.take_dialog("loop", "^Loop Configuration$")
        self.screen.keys("Return")
        self.screen.wait_gone("^Loop Configuration$")

    def troubles(self):
        self.booth.box.stdin.write("unplug\n")
        time.sleep(3 * SOFTLY)
        self.take("banner", Box(0, 100, WIDEST, 142))
        self.menu("alt+f", "x")
        self.take_dialog("save-question", "^Exiting[.]")

    # ---- Where to press

    def close(self, box):
        """The close box of a window in the frame."""
        self.screen.click((box.right - 12, box.top + 10))
        time.sleep(SOFTLY)

    def choose_effect(self, box):
        """The first ready one, into the list."""
        self.screen.click((box.left + 100, box.top + 283))
        time.sleep(SOFTLY)
        self.screen.keys("Home", "Return")
        time.sleep(SOFTLY)
        self.screen.click((box.left + 80, box.bottom - 34))
        time.sleep(SOFTLY)

    def click_next_row(self):
        mark = self.booth.next_rows()[0]
        self.screen.click((mark.left + 120, mark.middle[1]))
        time.sleep(SOFTLY)

    @staticmethod
    def key_of_xy(share):
        """A key at the foot of the XY list, by its place across the window."""
        return round(XY.left + share * (XY.right - XY.left)), XY.bottom - 22


def main():
    parser = argparse.ArgumentParser(description=__doc__.split("\n", 1)[0])
    parser.add_argument("--programs", default=PROGRAMS, help="where velgrove and its companions stand")
    parser.add_argument("--to", default=os.path.join(ROOT, "docs", "manual", "pictures"), help="where the pictures go")
    parser.add_argument("--only", nargs="*", default=[], help="the names of those to take")
    options = parser.parse_args()
    os.makedirs(options.to, exist_ok=True)
    with contextlib.ExitStack() as ends:
        screen = Screen(*SIZE)
        ends.callback(screen.close)
        booth = Booth(screen, options.programs)
        ends.callback(booth.end)
        booth.set_up(Project={"PREF_SHOWSUBS": -1, "BarRows": 8, "BarColumns": 24, "BarGap": 100,
                              "Up": 3, "Down": 3, "Delay": 0})
        pictures = Pictures(booth, options.to, set(options.only))
        try:
            pictures.start()
            pictures.in_a_fade()
            pictures.blind()
            pictures.plot_tools()
            pictures.surfaces()
            pictures.fixtures_dialogs()
            pictures.windows()
            pictures.menus()
            pictures.troubles()
        except BaseException:
            screen.picture(os.path.join(ROOT, "build", "manual-pictures-failed.png"))
            raise


if __name__ == "__main__":
    main()
