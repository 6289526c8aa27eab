#!/usr/bin/env python3
"""How steady frames arrive at the box: both players fade, and the box measures.

    bench/line.py [--seconds 60] [--runs 3]

Needs a release build and a quiet machine. Prints Markdown: the distance of the frames' spacing from 30 ms, and the share
of a core. The first 60 frames, the show's opening among them, are left out but in a last run."""

import argparse
import json
import os
import subprocess
import sys
import tempfile
import time

from measuring import Work, at_rank, before_others, table, terminal_workers_first

sys.path.insert(0, os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", "tools"))
from on_screen import DEMO, PROGRAMS, need  # noqa: E402

SHOW = os.path.join(PROGRAMS, "velgrove-show")
OPENING = 60  # frames
FAR = {95: 0.3, 99: 1.0, 100: 30.0}  # ms, at most, by percent
HEAD = "Run | frames | 50 % | 95 % | 99 % | farthest"


def fading_show(folder):
    """The demo show with fades that outlast every run."""
    show = json.loads(subprocess.run([SHOW, "print", "--json", DEMO], check=True, capture_output=True).stdout)
    for cues in show["colQueueData"]:
        for cue in cues["colQueueEntries"]:
            cue.update(Up=600, Down=600, Delay=0)
    path = os.path.join(folder, "fade")
    with open(path + ".json", "w", encoding="utf-8") as file:
        json.dump(show, file)
    subprocess.run([SHOW, "make", path + ".json", path + ".kel"], check=True)
    return path + ".kel"


class Run:
    """Frames of some seconds, from `velgrove-show play` to `velgrove-box`."""

    def __init__(self, seconds, opening=False):
        with tempfile.TemporaryDirectory() as folder:
            frames = os.path.join(folder, "frames")
            env = os.environ | {"XDG_RUNTIME_DIR": folder}
            show = fading_show(folder)
            with subprocess.Popen([*before_others(), os.path.join(PROGRAMS, "velgrove-box"), "--quiet", "--frames", frames],
                                  env=env, stdin=subprocess.DEVNULL, stdout=subprocess.PIPE, text=True) as box:
                try:
                    box.stdout.readline()
                    terminal_workers_first()
                    self.share = self._play(show, seconds, env)
                finally:
                    box.terminate()
            with open(frames, encoding="ascii") as file:
                times = [float(line.partition(" ")[0]) for line in file]
        times = times[0 if opening else OPENING:]
        self.far = [abs(b - a - 30) for a, b in zip(times, times[1:])]

    @staticmethod
    def _play(show, seconds, env):
        with subprocess.Popen([SHOW, "play", show, "-", "--until", str(int(seconds * 1000))], env=env, text=True,
                              stdin=subprocess.PIPE, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL) as desk:
            desk.stdin.write("0 go\n0 ab go\n")
            desk.stdin.close()
            time.sleep(3)  # the start-up
            work = Work(desk)
            time.sleep(max(seconds - 1, 1))
            share, _ = work.share()
            need(lambda: desk.poll() is not None, "the desk doesn't end", 30)
            return share

    def at(self, percent):
        return at_rank(self.far, percent)

    def row(self, name):
        return name, str(len(self.far)), *(f"{self.at(percent):.2f} ms" for percent in (50, 95, 99, 100))


def measure(seconds, runs):
    """The runs, by name."""
    return {str(n + 1): Run(seconds) for n in range(runs)} | {"from the first frame on": Run(seconds, opening=True)}


def main():
    parser = argparse.ArgumentParser(description=__doc__.split("\n", 1)[0])
    parser.add_argument("--seconds", type=float, default=60, help="of each run")
    parser.add_argument("--runs", type=int, default=3)
    options = parser.parse_args()
    runs = measure(options.seconds, options.runs)
    print(table(HEAD, [run.row(name) for name, run in runs.items()]))
    print(f"\nThe desk uses {max(run.share for run in runs.values()):.1%} of a core at most.")


if __name__ == "__main__":
    main()
