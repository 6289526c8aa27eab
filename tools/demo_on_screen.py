#!/usr/bin/env python3
"""Plays the demo show on the real desk, on a virtual display and a virtual box, with keys and mouse.

    tools/demo_on_screen.py [--size 1280x800] [--programs build/release/bin] [--to build/demo]

Leaves numbered screenshots and prints what the box received. Fails with a last screenshot when something that must
come doesn't."""

import argparse
import contextlib
import os
import shutil
import subprocess
import sys
import time

from on_screen import PROGRAMS, ROOT, Booth, Missing, Screen, need

# Channels of the demo show, and the levels of its looks on them. The last step of a fade ends a little short of the look.
FRONT, BACK, SKY, GOLDEN_SKY, MOVING_LIGHT, LANTERN, HOUSE = 3, 22, 31, 32, 41, 63, 71
PRESET = {HOUSE: 204, SKY: 90}
COURT = {FRONT: 184, GOLDEN_SKY: 150, HOUSE: 0}
LIGHTNING, THUNDER, DAWN = {SKY: 255, MOVING_LIGHT: 255}, {BACK: 255}, {BACK: 0, GOLDEN_SKY: 200}
SHORT = 4
PRACTICALS, PRACTICALS_FULL = 13, {LANTERN: 204}  # a submaster
TO_SHORE = 8  # cues from the one where the dragged mark leaves the stage to the one before the shore


class Story:
    """What happens on the evening, one step after the other."""

    def __init__(self, booth, folder):
        self.booth, self.screen, self.folder = booth, booth.screen, folder
        self.pictures = []

    def picture(self, name):
        path = os.path.join(self.folder, f"{len(self.pictures) + 1:02}-{name}.png")
        self.screen.picture(path)
        self.pictures.append(path)

    def tell(self, words):
        print(words, flush=True)

    def play(self):
        self.start()
        self.first_go()
        self.choose_next()
        self.two_lists()
        self.stop_and_resume()
        self.submaster()
        self.storm()
        self.dawn()
        self.save()
        self.leave()

    def start(self):
        self.tell("The desk starts.")
        self.booth.start()
        self.screen.wait_for("^Velgrove$")
        time.sleep(0.5)
        self.picture("splash")
        self.booth.wait_for_open_dialog()
        self.picture("open-dialog")
        self.tell("The demo show is opened.")
        self.booth.open_show()
        self.picture("show")

    def first_go(self):
        self.tell("Go: the preset comes.")
        self.screen.click(self.booth.go_buttons()[0].middle)
        self.booth.wait_for_fade()
        time.sleep(1)
        self.picture("first-go")
        self.booth.wait_fades_over()
        self.stands("the preset", PRESET)

    def two_lists(self):
        self.tell("Go of the XY list: the court comes, and its link starts the sky of the AB list.")
        self.screen.click(self.booth.go_buttons()[1].middle)
        self.booth.wait_for_fade(lists=2)
        time.sleep(1)
        self.picture("two-lists")

    def stop_and_resume(self):
        self.tell("Stop in the middle, and Go again.")
        self.screen.click(self.booth.stop_button())
        time.sleep(0.7)
        self.picture("stopped")
        before = self.booth.box_time()
        time.sleep(0.7)
        self.screen.click(self.booth.go_buttons()[0].middle)
        self.booth.wait_fades_over()
        self.stands("the court and its sky", COURT)
        self.stood_still(before)
        self.picture("court")

    def stands(self, name, look):
        need(lambda: all(abs(self.booth.level(channel) - level) <= SHORT for channel, level in look.items()),
             f"{name} doesn't stand on the wire")

    def stood_still(self, since, span=500):
        """While the fade was stopped, its light stood."""
        levels = {levels[FRONT - 1] for ms, levels in self.booth.frames() if since <= ms < since + span}
        if len(levels) != 1 or max(levels) in (0, COURT[FRONT]):
            raise Missing(f"a stopped fade stands still between its looks, not {sorted(levels)}")

    def choose_next(self):
        self.tell("A row is looked at, and the next mark is dragged two cues on, to the court.")
        mark = self.booth.next_rows()[0]
        x, row = mark.left + 120, mark.bottom - mark.top
        self.screen.click((x, mark.middle[1] + row))
        time.sleep(0.4)
        self.picture("row")
        mark = self.booth.next_rows()[0]  # the list may have brought another row into view
        self.screen.drag((x, mark.middle[1]), (x, mark.middle[1] + 2 * row))
        need(lambda: self.booth.next_rows()[0].top >= mark.top + row, "the next mark doesn't follow the mouse")
        self.picture("next-mark")

    def submaster(self):
        self.tell("A submaster lights the lamps of the set.")
        level = self.booth.submaster(PRACTICALS)[1]
        self.screen.click(level)
        self.stands("the submaster", PRACTICALS_FULL)
        time.sleep(0.5)  # until the plot shows it
        self.picture("submaster")
        self.screen.click(level)
        self.stands("the set without it", {LANTERN: 0})

    def storm(self):
        self.tell("On to the shore, where the AB list strikes: its lightning starts the thunder of the XY list.")
        for _ in range(TO_SHORE):
            self.screen.click(self.booth.advance_button())
            time.sleep(0.3)
        self.screen.click(self.booth.go_buttons()[1].middle)
        self.booth.wait_for_fade(lists=2)
        time.sleep(2)
        self.picture("shore")
        self.booth.wait_fades_over()
        self.screen.click(self.booth.go_buttons()[2].middle)
        self.booth.wait_for_fade()
        self.stands("the lightning", LIGHTNING)
        self.booth.wait_fades_over()
        self.stands("the thunder", THUNDER)
        self.picture("thunder")
        self.tell("The bear, as the lightning dies away.")
        self.screen.click(self.booth.go_buttons()[1].middle)
        self.booth.wait_for_fade(lists=2)
        time.sleep(1)
        self.picture("bear")
        self.booth.wait_fades_over()

    def dawn(self):
        self.tell("The shepherd's lantern, and out; Time speaks; and then a slow dawn in both lists.")
        for lists, middle, name in ((1, 3, "lantern"), (1, 1, "lantern-out"), (2, 2, "time"), (2, 5, "dawn")):
            self.screen.click(self.booth.go_buttons()[1].middle)
            self.booth.wait_for_fade(lists)
            time.sleep(middle)
            self.picture(name)
            self.booth.wait_fades_over()
        self.stands("the morning", DAWN)

    def save(self):
        self.tell("The menu, and save.")
        show = os.path.join(self.booth.data, "demo.kel")
        before = os.stat(show).st_mtime_ns
        self.screen.keys("alt+f")
        time.sleep(0.4)
        self.picture("menu")
        self.screen.keys("s")
        need(lambda: os.stat(show).st_mtime_ns > before, "the show isn't saved")
        subprocess.run([os.path.join(self.booth.programs, "velgrove-show"), "print", show], check=True,
                       stdout=subprocess.DEVNULL)

    def leave(self):
        self.tell("The way out, in the middle of the next fade.")
        self.screen.click(self.booth.go_buttons()[1].middle)
        self.booth.wait_for_fade()
        time.sleep(1)
        self.screen.keys("alt+f", "x")
        self.screen.wait_for_dialog("^Exiting[.]")
        self.picture("save-changes")
        self.screen.keys("Return")
        self.screen.wait_for_dialog("^Velgrove$")
        self.picture("last-box")
        self.screen.keys("Return")
        need(lambda: self.booth.desk.poll() is not None, "the desk doesn't end")
        if self.booth.desk.returncode != 0:
            raise Missing(f"the desk ends with {self.booth.desk.returncode}")


def report(story):
    frames = story.booth.frames()
    brightest = [max(each) for each in zip(*(levels for _, levels in frames))]
    print("The box received:")
    for line in story.booth.end_box().splitlines():
        print("  " + line)
    print(f"  channels that were lit: {sum(1 for level in brightest if level)}")
    print("Screenshots:")
    for path in story.pictures:
        print("  " + os.path.relpath(path, ROOT))


def main():
    parser = argparse.ArgumentParser(description=__doc__.split("\n", 1)[0])
    parser.add_argument("--size", default="1280x800", help="of the virtual display")
    parser.add_argument("--programs", default=PROGRAMS, help="where velgrove and its companions stand")
    parser.add_argument("--to", default=os.path.join(ROOT, "build", "demo"), help="where the screenshots go")
    options = parser.parse_args()
    shutil.rmtree(options.to, ignore_errors=True)
    os.makedirs(options.to)
    with contextlib.ExitStack() as ends:
        screen = Screen(*map(int, options.size.split("x")))
        ends.callback(screen.close)
        booth = Booth(screen, options.programs)
        ends.callback(booth.end)
        booth.set_up(Project={"PREF_SHOWSUBS": -1})
        story = Story(booth, options.to)
        try:
            story.play()
        except (Missing, OSError, subprocess.SubprocessError) as failure:
            story.picture("failed")
            sys.exit(f"The demo failed: {failure}\n{booth.complaints()}See {story.pictures[-1]}")
        report(story)


if __name__ == "__main__":
    main()
