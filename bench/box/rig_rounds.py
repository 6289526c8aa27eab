"""A round of a fault on a desk that plays, what is looked at in it, and a case's row in the table."""

import contextlib
import os
import random
import time
from dataclasses import dataclass, field
from typing import Callable

from rig_desk import WELL, Desk, Missing, Screen, UsbTree, eventually
from rig_machine import before_others, stood_still_since

RESUME = 2.0  # seconds in which output comes back
TELL = 3.0  # seconds in which the operator is told
FLOW = 0.5  # seconds without a frame, while the box takes them
WARM_UP = 10  # rounds before what is used counts
GROWTH = (2048, 0, 0)  # KiB, open files, threads
TRIES = 4  # of a round, while the machine stands still
MOST_FINDINGS = 5  # in a case, before it is given up

UNPLUGGED = "The interface is unplugged. Output goes on when it is back."
FULL = "The interface takes no more data."
SILENT = "The interface does not answer."

HEADING = """\
| Case | rounds | played again | worst to resume | worst to obey | messages | half frames | growth: memory, files, threads | |
|---|---|---|---|---|---|---|---|---|"""


@dataclass
class Round:
    """What a round showed."""
    resumed: list = field(default_factory=list)  # seconds
    obeyed: float = 0.0
    messages: int = 0
    halves: list = field(default_factory=list)
    findings: list = field(default_factory=list)
    again: int = 0


def judged(attempt, since=None):
    """Plays a round. One that failed while the machine stood still is played again; its half frames count all the same.
    `since` is when the round began, if not now."""
    halves = []
    for again in range(TRIES):
        start, shown = since or time.monotonic(), Round(again=again)
        try:
            attempt(shown)
        except Missing as missing:
            shown.findings.append(str(missing))
        halves += shown.halves
        if not shown.findings or not stood_still_since(start):
            break
        since = None
    shown.halves = halves
    return shown


@dataclass
class Row(Round):
    name: str = ""
    rounds: int = 0
    used: list = field(default_factory=list)  # after each round
    skipped: str = ""

    def take(self, shown, rounds=1):
        self.rounds += rounds
        self.again += shown.again
        self.resumed += shown.resumed
        self.obeyed = max(self.obeyed, shown.obeyed)
        self.messages += shown.messages
        self.halves += shown.halves
        self.findings += [f"round {self.rounds}: {finding}" for finding in shown.findings]

    def growth(self):
        start = self.used[min(WARM_UP, len(self.used)) - 1]
        return tuple(now - then for now, then in zip(self.used[-1], start))

    def judge(self):
        self.findings += self.halves
        if len(self.used) > WARM_UP and any(now > most for now, most in zip(self.growth(), GROWTH)):
            self.findings.append("grows by {} KiB, {} files, {} threads".format(*self.growth()))

    def text(self):
        if self.skipped:
            return f"| {self.name} | 0 | | | | | | | skipped: {self.skipped} |"
        worst = f"{max(self.resumed):.2f} s" if self.resumed else "-"
        growth = "{} KiB, {}, {}".format(*self.growth()) if self.used else "-"
        verdict = "FAULT" if self.findings else "ok"
        return (f"| {self.name} | {self.rounds} | {self.again} | {worst} | {self.obeyed:.2f} s | {self.messages} | {len(self.halves)} | "
                f"{growth} | {verdict} |")


# ---- A round of a desk that plays

class Stage:
    """What a fault can lay its hands on."""

    def __init__(self, desk, chance, usb=None):
        self.desk, self.box, self.chance, self.usb = desk, desk.box, chance, usb
        self.kept = {}  # what a fault leaves for its mending

    def pause(self, least=0.0, most=0.2):
        time.sleep(self.chance.uniform(least, most))

    def pulled_at(self, head):
        self.box.pull_at = head
        if not eventually(lambda: not self.box.plugged_in, 3, 0.002):
            raise Missing("the desk never asks")


@dataclass
class Fault:
    """What goes wrong, and how it is mended: `mend` gives the time at which the desk could have its box again."""
    words: str
    come: Callable
    mend: Callable
    told: tuple = (UNPLUGGED,)  # messages that come, each once
    may: tuple = ()  # and those that may
    away: bool = True  # no frame arrives meanwhile
    set_up: dict = field(default_factory=dict)  # of the desk


def one_round(stage, fault, shown):
    desk, box = stage.desk, stage.box
    desk.slowest = 0.0
    box.mark()
    told = stage.kept["told"] = list(fault.told)
    fault.come(stage)
    for words in told:
        desk.await_words(words, TELL)
    desk.press(on_wire=not fault.away)
    stage.pause(0, 0.3)
    gap = box.longest_gap
    back = fault.mend(stage)
    if fault.away:
        if not eventually(lambda: box.first_frame, 3 * RESUME, 0.005):
            raise Missing("output doesn't come back")
        shown.resumed.append(max(box.first_frame - back, 0))
    desk.press(on_wire=True)
    stage.pause(0.25, 0.4)  # for what comes late
    if not fault.away:
        shown.resumed.append(max(gap, box.longest_gap))
    if shown.resumed[0] > (RESUME if fault.away else FLOW):
        shown.findings.append(f"no output for {shown.resumed[0]:.2f} s")
    shown.obeyed = desk.slowest
    look_at_messages(desk.journal.take(), told, fault.may, shown)


def look_at_messages(lines, told, may, shown):
    said = [line for line in lines if line != WELL]
    shown.messages += len(said)
    twice = any(said.count(line) > 1 for line in said)
    if twice or not set(told) <= set(said) <= set(told) | set(may):
        shown.findings.append(f"told {lines}")
    elif said and lines[-1] != WELL:
        shown.findings.append(f"still says {lines[-1]!r}")


def attempt(stage, fault, shown):
    try:
        one_round(stage, fault, shown)
    except Missing as missing:
        shown.findings.append(f"{missing}; told {stage.desk.journal.take()}")
    if shown.findings:
        stage.desk.alive()
        make_whole(stage, fault)


def play(name, fault, options):
    row = Row(name=name)
    with contextlib.ExitStack() as ends:
        try:
            stage = stand_up(ends, fault, options, random.Random(f"{options.seed} {name}"))
            before_others()
            while row.rounds < options.times and len(row.findings) < MOST_FINDINGS:
                row.take(judged(lambda shown: attempt(stage, fault, shown)))
                row.used.append(stage.desk.uses())
            row.halves = stage.box.wire.faults
            stage.desk.ends()
        except Missing as missing:
            row.findings.append(str(missing))
    row.judge()
    return row


def stand_up(ends, fault, options, chance):
    screen = Screen()
    ends.callback(screen.close)
    how, usb = dict(fault.set_up), None
    if how.pop("usb", False):
        usb = UsbTree(os.path.join(screen.folder.name, "usb"))
        how |= {"before": usb.seeing(), "links": (), "prepare": lambda path: usb.add("ttyUSB0", "0001", path)}
    desk = Desk(options.programs, screen, **how)
    ends.callback(desk.close)
    desk.start().play()
    return Stage(desk, chance, usb)


def make_whole(stage, fault):
    """Behind a finding: the next round begins with a box that works."""
    stage.box.behave()
    if not stage.box.plugged_in:
        fault.mend(stage)
    time.sleep(3)
    stage.desk.journal.take()
