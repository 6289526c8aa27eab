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
FRONT_CENTRE, THRONE, SKY = 3, 10, 23
COURT = {FRONT_CENTRE: 163, SKY: 153}
LEONTES_ALONE = {FRONT_CENTRE: 0, THRONE: 255}
SHORT = 4


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
        self.two_lists()
        self.stop_and_resume()
        self.choose_next()
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

    def two_lists(self):
        self.tell("Go of the XY list: the court comes, and its link starts the sky in the AB list.")
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
        levels = {levels[FRONT_CENTRE - 1] for ms, levels in self.booth.frames() if since <= ms < since + span}
        if len(levels) != 1 or max(levels) in (0, COURT[FRONT_CENTRE]):
            raise Missing(f"a stopped fade stands still between its looks, not {sorted(levels)}")

    def choose_next(self):
        self.tell("A row is looked at, and the next mark is dragged two cues on.")
        mark = self.booth.next_rows()[0]
        x, row = mark.left + 120, mark.bottom - mark.top
        self.screen.click((x, mark.middle[1] + row))
        time.sleep(0.4)
        self.picture("row")
        mark = self.booth.next_rows()[0]  # the list may have brought another row into view
        self.screen.drag((x, mark.middle[1]), (x, mark.middle[1] + 2 * row))
        need(lambda: self.booth.next_rows()[0].top >= mark.top + row, "the next mark doesn't follow the mouse")
        self.picture("next-mark")
        self.screen.click(self.booth.go_buttons()[1].middle)
        self.booth.wait_for_fade()
        self.booth.wait_fades_over()
        self.stands("the dragged cue", LEONTES_ALONE)
        self.picture("dragged-cue")

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
        story = Story(booth, options.to)
        try:
            story.play()
        except (Missing, OSError, subprocess.SubprocessError) as failure:
            story.picture("failed")
            sys.exit(f"The demo failed: {failure}\n{booth.complaints()}See {story.pictures[-1]}")
        report(story)


if __name__ == "__main__":
    main()
