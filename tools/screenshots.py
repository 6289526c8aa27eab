#!/usr/bin/env python3
"""Takes the pictures of the documentation: the demo show in the middle of a fade of both lists, in both layouts, with
some submasters up; the bars of its levels; the show view, bright and dimmed; and the open dialog.

    tools/screenshots.py [--programs build/release/bin] [--to docs]
"""

import argparse
import contextlib
import os
import subprocess
import time

from on_screen import PROGRAMS, ROOT, Booth, Screen, need

SIZES = ((1280, 800), (1920, 1080))
BEFORE = 10  # rows below the first, the one before the picture
THRONE = 17  # a channel that is full in its look
PART = 5  # pages of the fader
INTO_FADE = 1.6  # seconds: both looks burn


def small(path):
    """Writes a picture anew with as few colours and bytes as its like needs."""
    subprocess.run(["convert", path, "+dither", "-colors", "256", "-define", "png:compression-level=9", "-strip",
                    f"PNG8:{path}"], check=True)


def take(screen, folder, name):
    path = os.path.join(folder, name)
    screen.picture(path)
    small(path)
    print(f"{os.path.relpath(path, ROOT)}: {os.path.getsize(path) // 1024} kB")


PRACTICALS, SUNSET = 13, 14


def some_submasters(booth):
    """One is full, one stands in between."""
    screen = booth.screen
    screen.click(booth.submaster(SUNSET)[1])
    button, _ = booth.submaster(PRACTICALS)
    screen.click(button)
    screen.wait_for(f"^{PRACTICALS}$")
    for _ in range(PART):
        screen.keys("Prior")
    screen.keys("Return")
    screen.wait_gone(f"^{PRACTICALS}$")


def bars(booth, folder):
    """What goes out, over the plot and the lists."""
    booth.screen.click(booth.bar_tools()[1])
    need(lambda: len(booth.screen.canvas.boxes("queue", least=20, gap=2)) > 10, "no bars")
    take(booth.screen, folder, "bars.png")
    booth.screen.keys("Escape")


def booth_views(booth, folder):
    """The list in large type in a fade, and the same dimmed."""
    screen = booth.screen
    screen.keys("F11")
    time.sleep(0.5)
    screen.keys("space")
    time.sleep(INTO_FADE)
    take(screen, folder, "show-view.png")
    screen.keys("F10")
    time.sleep(0.5)
    take(screen, folder, "dim.png")


def desk_in_a_fade(booth):
    """The trial goes over into the shore on the XY list, whose link starts the storm's sky in the AB list."""
    booth.open_show()
    some_submasters(booth)
    screen = booth.screen
    for _ in range(BEFORE):
        screen.click(booth.advance_button())
        time.sleep(0.3)
    need(lambda: booth.frames()[-1][1][THRONE - 1] == 255, "the trial isn't on stage")
    screen.click(booth.go_buttons()[1].middle)
    booth.wait_for_fade(lists=2)
    time.sleep(INTO_FADE)
    need(lambda: booth.fading() == 2, "the fades were over before the picture")


def main():
    parser = argparse.ArgumentParser(description=__doc__.split("\n", 1)[0])
    parser.add_argument("--programs", default=PROGRAMS, help="where velgrove and its companions stand")
    parser.add_argument("--to", default=os.path.join(ROOT, "docs"), help="where the pictures go")
    options = parser.parse_args()
    for width, height in SIZES:
        with contextlib.ExitStack() as ends:
            screen = Screen(width, height)
            ends.callback(screen.close)
            booth = Booth(screen, options.programs)
            ends.callback(booth.end)
            booth.set_up(Project={"PREF_SHOWSUBS": -1, "BarRows": 8, "BarColumns": 24, "BarGap": 100})
            booth.start()
            booth.wait_for_open_dialog()
            if (width, height) == SIZES[0]:
                take(screen, options.to, "open-dialog.png")
            desk_in_a_fade(booth)
            take(screen, options.to, f"desk-{width}x{height}.png")
            if (width, height) == SIZES[0]:
                booth.wait_fades_over()
                bars(booth, options.to)
                booth_views(booth, options.to)


if __name__ == "__main__":
    main()
