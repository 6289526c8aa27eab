#!/usr/bin/env python3
"""Takes the pictures of the documentation from the real desk, so that they stay true.

    tools/screenshots.py [--programs build/release/bin] [--to docs]

Needs a release build. The desk plays the demo show until both lists are in the middle of a fade."""

import argparse
import os
import subprocess
import time

from on_screen import PROGRAMS, ROOT, Booth, Screen

SIZES = ((1280, 800), (1920, 1080))


def small(path):
    """Few colours are enough for a dark desk."""
    subprocess.run(["convert", path, "-strip", "-colors", "250", "-define", "png:compression-level=9", path],
                   check=True)


def take(screen, folder, name):
    path = os.path.join(folder, name + ".png")
    screen.picture(path)
    small(path)
    print(path)


def evening(booth, folder, size):
    screen = booth.screen
    booth.start()
    booth.wait_for_open_dialog()
    if size == SIZES[0]:
        time.sleep(0.3)
        take(screen, folder, "open-dialog")
    booth.open_show()
    frame, xy, ab = booth.go_buttons()
    screen.click(frame.middle)  # the preset
    booth.wait_for_fade()
    booth.wait_fades_over()
    screen.click(xy.middle)  # the court
    booth.wait_for_fade()
    booth.wait_fades_over()
    xy, ab = booth.go_buttons()[1:]
    screen.click(ab.middle)  # the storm in the sky, and the letter in front of it
    screen.click(xy.middle)
    booth.wait_for_fade(lists=2)
    time.sleep(1.4)
    take(screen, folder, f"desk-{size[0]}x{size[1]}")


def main():
    options = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    options.add_argument("--programs", default=PROGRAMS)
    options.add_argument("--to", default=os.path.join(ROOT, "docs"))
    chosen = options.parse_args()
    for size in SIZES:
        screen = Screen(*size)
        booth = Booth(screen, programs=chosen.programs)
        try:
            evening(booth, chosen.to, size)
        finally:
            booth.end()
            screen.close()


if __name__ == "__main__":
    main()
