#!/usr/bin/env python3
"""A long evening of the desk in real time: both lists go on, menus, windows and dialogs come and go, the show is saved.

    bench/soak.sh [MINUTES] [--seed N]

Needs a release build and the packages of tools/packages.txt. The box takes the time of each frame; at the end the levels
on the wire tell by bits which cue each list stands on, so that a Go that was missed or doubled shows."""

import argparse
import contextlib
import json
import os
import random
import sys
import tempfile
import time

sys.path.insert(0, os.path.join(os.path.dirname(os.path.abspath(__file__)), ".."))
from desk import SIZE, velgrove_show  # noqa: E402
from measuring import at_rank, before_others, terminal_workers_first  # noqa: E402
from on_screen import DEMO, Booth, Screen, need  # noqa: E402

FIXTURES, BITS = 48, 12
STEP, HIGHEST = 0.2, 256  # of the cues' numbers: a list shows none above
SECONDS_A_GO = 4  # of each list, at the least: more than a fade takes
ROOM = 8192  # kB that the memory may grow: the toolkit keeps what it has painted
DIVERSIONS = ("nothing", "menu", "bars", "preferences", "save dialog", "save")


def bits(number):
    return [255 if number >> bit & 1 else 0 for bit in range(BITS)]


def evening(path, cues):
    """A show whose cues put their number on the wire: XY from channel 1 on, AB from 1 + BITS, and move all other lamps."""
    show = json.loads(velgrove_show("print", "--json", DEMO))
    view = show["colViews"][0]
    lamp = view["colFixtures"][0]
    view["colFixtures"] = [lamp | {"Channel": n + 1, "FixtureName": f"Lamp {n + 1}", "x": 60 + n % 12 * 80,
                                   "y": 150 + n // 12 * 220, "PerpX": 0, "PerpY": 0} for n in range(FIXTURES)]
    for data, place in zip(show["colQueueData"], (BITS, 0)):
        first = data["colQueueEntries"][0] | {"Delay": 0, "QueueListMasterGo": "None", "QueueNumberMasterGo": "None"}
        entries = [first | {"Up": 1, "Down": 1, "Values": [0] * 512}]
        for n in range(1, cues):
            others = [n * 37 % 256 if place else 0] * (FIXTURES - 2 * BITS)
            values = [0] * place + bits(n) + [0] * (BITS - place) + others
            entries.append(first | {"EntryNum": round(n * STEP, 1), "EntryDesc": f"Look {n}", "Up": 1 + n % 2, "Down": 1 + n % 2,
                                    "Values": values + [0] * (512 - len(values))})
        data["colQueueEntries"] = entries
    with open(path + ".json", "w", encoding="utf-8") as file:
        json.dump(show, file)
    velgrove_show("make", path + ".json", path)


class Use:
    """What a process holds."""

    def __init__(self, process):
        with open(f"/proc/{process.pid}/status", encoding="ascii") as file:
            lines = dict(line.split(":", 1) for line in file)
        self.memory, self.threads = int(lines["VmRSS"].split()[0]), int(lines["Threads"])
        self.descriptors = len(os.listdir(f"/proc/{process.pid}/fd"))

    def __str__(self):
        return f"{self.memory} kB, {self.descriptors} descriptors, {self.threads} threads"


class Operator:
    def __init__(self, booth, chance):
        self.booth, self.screen, self.chance = booth, booth.screen, chance
        _, self.xy, self.ab = [box.middle for box in booth.go_buttons()]
        self.gos = {self.xy: 0, self.ab: 0}
        self.counts = dict.fromkeys(DIVERSIONS, 0)
        self.loads = []

    def go(self, button):
        self.screen.click(button)
        self.gos[button] += 1

    def turn(self):
        terminal_workers_first()
        start = time.monotonic()
        self.loads.append(os.getloadavg()[0])
        self.go(self.xy)
        time.sleep(self.chance.uniform(0, 1.5))
        self.go(self.ab)
        time.sleep(0.1)
        self.divert(self.chance.choice(DIVERSIONS))
        time.sleep(max(start + SECONDS_A_GO + self.chance.uniform(0, 3) - time.monotonic(), 0))

    def divert(self, what):
        self.counts[what] += 1
        if what == "menu":
            self.screen.keys("alt+f", "Down", "Down", "Escape", "Escape")
        elif what == "bars":
            self.screen.click(self.booth.bar_tools()[1])
            time.sleep(0.7)
            self.screen.keys("Escape")
        elif what == "preferences":
            self.screen.keys("alt+e", "Return")
            self.screen.wait_for_dialog("^Preferences$")
            self.screen.keys("Escape")
            self.screen.wait_gone("^Preferences$")
        elif what == "save dialog":
            self.screen.keys("alt+f", "a")
            self.screen.wait_for_dialog("^Save As$")
            self.screen.keys("Escape")
            self.screen.wait_gone("^Save As$")
        elif what == "save":
            self.screen.keys("alt+f", "s")

    def cues_on_wire(self):
        """The number of the cue that each list has put on the wire."""
        with open(self.booth.frames_file, "rb") as file:
            levels = [int(level) for level in file.read().split(b"\n")[-2].split()[1:]]
        number = [sum((levels[first + bit] > 127) << bit for bit in range(BITS)) for first in (0, BITS)]
        return {self.xy: number[0], self.ab: number[1]}


def frame_gaps(booth, start):
    with open(booth.frames_file, "rb") as file:
        times = [float(line.split(b" ", 1)[0]) for line in file if line.endswith(b"\n")]
    times = [ms for ms in times if ms >= start]
    return [b - a for a, b in zip(times, times[1:])]


def play(booth, minutes, chance):
    operator = Operator(booth, chance)
    start, begin = booth.box_time(), time.monotonic()
    first = None
    while (now := time.monotonic() - begin) < 60 * minutes:
        if first is None and now >= 60:
            first = Use(booth.desk)
        operator.turn()
    time.sleep(4)
    last = Use(booth.desk)
    findings = []
    if operator.cues_on_wire() != operator.gos:
        findings.append(f"the wire shows cues {list(operator.cues_on_wire().values())} after {list(operator.gos.values())} Gos")
    gaps = frame_gaps(booth, start)
    far = [abs(gap - 30) for gap in gaps]
    print(f"{sum(operator.gos.values())} Gos; " + ", ".join(f"{name} {count}" for name, count in operator.counts.items()))
    print(f"{len(gaps)} gaps between frames; off 30 ms by " +
          ", ".join(f"{at_rank(far, p):.2f} ms ({p} %)" for p in (50, 95, 99, 99.9)) + f"; longest gap {max(gaps):.1f} ms")
    print(f"load of the machine {min(operator.loads):.1f} to {max(operator.loads):.1f}")
    print(f"after a minute: {first}\nat the end:     {last}")
    if first and (last.memory > first.memory + ROOM or last.descriptors > first.descriptors or last.threads > first.threads):
        findings.append("the desk holds more than after a minute")
    return findings


def main():
    parser = argparse.ArgumentParser(description=__doc__.split("\n", 1)[0])
    parser.add_argument("minutes", type=float, nargs="?", default=30)
    parser.add_argument("--seed", type=int, default=1, help="the starting number of what comes when")
    options = parser.parse_args()
    with contextlib.ExitStack() as ends:
        folder = ends.enter_context(tempfile.TemporaryDirectory())
        show = os.path.join(folder, "evening.kel")
        evening(show, min(int(options.minutes * 60 / SECONDS_A_GO) + 10, int(HIGHEST / STEP)))
        screen = Screen(*SIZE)
        ends.callback(screen.close)
        booth = Booth(screen, shows=[show], before_box=before_others())
        ends.callback(booth.end)
        booth.set_up(Settings={"MainLeft": 0, "MainTop": 0, "MainMaximised": 0,
                               "MainWidth": SIZE[0] * 15, "MainHeight": SIZE[1] * 15},
                     Project={"BarRows": 8, "BarColumns": 24, "BarGap": 100})
        booth.start()
        booth.wait_for_open_dialog()
        booth.open_show()
        need(lambda: booth.frames(), "no frame")
        findings = play(booth, options.minutes, random.Random(options.seed))
        report = booth.end_box().strip().splitlines()[-2:]
        print(", ".join(report))
        findings += [line for line in report if not line.endswith(" 0")]
        if booth.desk.poll() is not None:
            findings.append("the desk ended")
        if booth.complaints():
            findings.append("the desk complains: " + booth.complaints().strip())
    for finding in findings:
        print("FINDING: " + finding)
    print(f"soak.sh: {options.minutes:g} minutes, starting number {options.seed}, {len(findings) or 'no'} finding(s)")
    return 1 if findings else 0


if __name__ == "__main__":
    sys.exit(main())
