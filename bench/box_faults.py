#!/usr/bin/env python3
"""What the desk does when its interface box fails: each fault many times against the desk as it runs in the theatre.

    bench/box_faults.py [--times 100] [--case NAME]... [--jobs 6] [--seed 1] [--list]

The box is the rig's own, on a pseudo-terminal; each case has a desk with folders and a screen of its own. In each round
the fault comes, the operator presses a key, the fault goes, output must come again unaided within two seconds, and the
operator presses a key once more. Every byte on the wire is looked at, every message is counted, and what the desk uses of
the machine from the tenth round on must not grow. Prints a table; the exit code is 1 when a case has a finding."""

import argparse
import concurrent.futures
import contextlib
import os
import random
import sys
import time
from dataclasses import dataclass, field
from typing import Callable

from rig_box import FRAME, LEVELS, POLL, TRIGGER, VERSION, terminal_at
from rig_desk import ASKING, STARTED, WELL, Desk, Missing, Screen, UsbTree, eventually
from on_screen import PROGRAMS  # noqa: E402  (rig_desk knows the way)

RESUME = 2.0  # seconds in which output comes back
TELL = 3.0  # seconds in which the operator is told
FLOW = 0.5  # seconds without a frame, while the box takes them
WARM_UP = 10  # rounds before what is used counts
GROWTH = (2048, 0, 0)  # KiB, open files, threads
MOST_FINDINGS = 5  # in a case, before it is given up
AT_A_TIME = 4  # desks of a case that starts a desk a round
NOBODY = 65534

UNPLUGGED = "The interface is unplugged. Output goes on when it is back."
FULL = "The interface takes no more data."
SILENT = "The interface does not answer."


@dataclass
class Row:
    name: str
    rounds: int = 0
    resumed: list = field(default_factory=list)
    obeyed: float = 0.0
    messages: int = 0
    halves: list = field(default_factory=list)
    used: list = field(default_factory=list)  # after each round
    findings: list = field(default_factory=list)
    skipped: str = ""

    def growth(self):
        start = self.used[min(WARM_UP, len(self.used)) - 1]
        return tuple(now - then for now, then in zip(self.used[-1], start))

    def judge(self):
        self.findings += self.halves
        if len(self.used) > WARM_UP and any(now > most for now, most in zip(self.growth(), GROWTH)):
            self.findings.append("grows by {} KiB, {} files, {} threads".format(*self.growth()))

    def text(self):
        if self.skipped:
            return f"| {self.name} | 0 | | | | | | skipped: {self.skipped} |"
        worst = f"{max(self.resumed):.2f} s" if self.resumed else "-"
        growth = "{} KiB, {}, {}".format(*self.growth()) if self.used else "-"
        verdict = "FAULT" if self.findings else "ok"
        return (f"| {self.name} | {self.rounds} | {worst} | {self.obeyed:.2f} s | {self.messages} | {len(self.halves)} | "
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


def one_round(stage, fault, row):
    desk, box = stage.desk, stage.box
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
        if not eventually(lambda: (box.first_frame or 0) > back, 3 * RESUME, 0.005):
            raise Missing("output doesn't come back")
        row.resumed.append(box.first_frame - back)
        if row.resumed[-1] > RESUME:
            row.findings.append(f"round {row.rounds}: output comes back after {row.resumed[-1]:.2f} s")
    desk.press(on_wire=True)
    stage.pause(0.25, 0.4)  # for what comes late
    if not fault.away:
        row.resumed.append(max(gap, box.longest_gap))
        if row.resumed[-1] > FLOW:
            row.findings.append(f"round {row.rounds}: no frame for {row.resumed[-1]:.2f} s")
    look_at_messages(desk.journal.take(), told, fault.may, row)


def look_at_messages(lines, told, may, row):
    said = [line for line in lines if line != WELL]
    row.messages += len(said)
    twice = any(said.count(line) > 1 for line in said)
    if twice or not set(told) <= set(said) <= set(told) | set(may):
        row.findings.append(f"round {row.rounds}: told {lines}")
    elif said and lines[-1] != WELL:
        row.findings.append(f"round {row.rounds}: still says {lines[-1]!r}")


def play(name, fault, options):
    row = Row(name)
    with contextlib.ExitStack() as ends:
        try:
            stage = stand_up(ends, fault, options, random.Random(f"{options.seed} {name}"))
            for row.rounds in range(1, options.times + 1):
                try:
                    one_round(stage, fault, row)
                except Missing as missing:
                    row.findings.append(f"round {row.rounds}: {missing}; told {stage.desk.journal.take()}")
                    stage.desk.alive()
                    make_whole(stage)
                row.used.append(stage.desk.uses())
                if len(row.findings) >= MOST_FINDINGS:
                    break
            stage.desk.ends()
        except Missing as missing:
            row.findings.append(f"round {row.rounds}: {missing}")
        if row.rounds:
            row.obeyed, row.halves = stage.desk.slowest, stage.box.wire.faults
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


def make_whole(stage):
    """Behind a finding: the next round begins with a box that works."""
    stage.box.behave()
    if not stage.box.plugged_in:
        stage.box.plug_in("box")
    time.sleep(3)
    stage.desk.journal.take()


# ---- The plug

def pull(stage):
    stage.pause()
    stage.kept["path"] = stage.box.path
    stage.box.unplug()


def pull_at(head):
    return lambda stage: stage.pulled_at(head)


def pull_in_answer(stage):
    """Behind a part of the answer to a reading."""
    count = stage.chance.randint(1, 511)
    stage.box.answers = lambda answer: [(0, answer[:count])]
    stage.pulled_at(LEVELS)
    stage.box.answers = None


def plug(stage):
    return stage.box.plug_in("box")


def plug_same(stage):
    return stage.box.plug_in("box", at=stage.kept["path"])


def plug_other(stage):
    """Somebody else has taken the name of the terminal meanwhile."""
    taken, _ = terminal_at(stage.kept["path"])
    try:
        return stage.box.plug_in("box")
    finally:
        os.close(taken)


def pull_usb(stage):
    stage.pause()
    stage.box.unplug()
    name = stage.kept.setdefault("usb", "ttyUSB0")
    stage.usb.remove(name)


def plug_usb(other):
    """Under the name that it had, or under another one while a stranger has taken that."""
    def mend(stage):
        before = stage.kept["usb"]
        stranger = stage.kept.pop("stranger", None)
        if stranger:
            stage.usb.remove(stranger)
        name = before if not other else "ttyUSB%d" % (1 - int(before[-1]))
        if other:
            stage.usb.add(before, "0002", "/dev/null")
            stage.kept["stranger"] = before
        stage.kept["usb"] = name
        return stage.box.plug_in(prepare=lambda path: stage.usb.add(name, "0001", path))
    return mend


# ---- What the box says

def behave(stage):
    stage.box.behave()
    stage.box.mark()
    return time.monotonic()


def fall_silent(stage):
    stage.pause()
    stage.box.silent = True
    stage.box.mark()


def several_answers(stage):
    """The fault lasts for some answers."""
    asked = stage.box.asked
    if not eventually(lambda: stage.box.asked >= asked + 4, 3, 0.01):
        raise Missing("the desk asks no more")


def cut_short(stage):
    count = stage.chance.randint(0, 511)
    stage.box.answers = lambda answer: [(0, answer[:count])]
    stage.kept["told"] += [SILENT] if count <= 100 else []
    several_answers(stage)


def split(stage):
    pause = stage.chance.uniform(0.001, 0.08)
    at = stage.chance.randint(1, 511)
    stage.box.answers = lambda answer: [(0, answer[:at]), (pause, answer[at:])]
    several_answers(stage)


def noise(chance, count):
    """Without the byte that is a press of the trigger, which would be obeyed."""
    return bytes(byte for byte in chance.randbytes(count) if byte != TRIGGER)


def talk_garbage(stage):
    chance = stage.chance
    stage.box.answers = lambda answer: [(0, noise(chance, chance.randint(0, 2000))), (0, answer[:chance.randint(0, 512)])]
    several_answers(stage)


def flood(stage):
    chance = stage.chance
    stage.box.flood = lambda: noise(chance, 3000)
    several_answers(stage)


# ---- A line that takes no more

def stop_reading(stage):
    stage.pause()
    stage.box.stalled = True


def pull_stalled(stage):
    stage.desk.await_words(FULL, TELL)
    stage.kept["path"] = stage.box.path
    stage.box.unplug()
    stage.box.behave()


def stall_and_pull(stage):
    stop_reading(stage)
    pull_stalled(stage)


# ---- More boxes than one

def second_comes(stage):
    """A stranger's box, which the desk must not touch; then its own goes."""
    stage.pause()
    other, path = terminal_at("")
    stage.kept["other"] = other
    os.symlink(path, os.path.join(stage.desk.boxes, "other"))
    stage.pause(0.1, 0.3)
    stage.box.unplug()


def second_goes(stage):
    back = stage.box.plug_in("box")
    if not eventually(lambda: stage.box.first_frame is not None, 3 * RESUME, 0.005):
        raise Missing("output doesn't come back beside another box")
    os.remove(os.path.join(stage.desk.boxes, "other"))
    touched = read_all(stage.kept.pop("other"))
    if touched:
        raise Missing(f"the desk sent {len(touched)} bytes to a box that isn't its own")
    return back


def read_all(end):
    try:
        return os.read(end, 100)
    except OSError:
        return b""
    finally:
        os.close(end)


def plug_twice(stage):
    back = stage.box.plug_in("box", "a box too")
    stage.pause()
    stage.box.link("z box too")
    return back


# ---- Who may open it

def plug_held(stage):
    """Another program has the box when it comes back, for a while."""
    import fcntl
    holders = []

    def hold(path):
        holders.append(os.open(path, os.O_RDWR | os.O_NOCTTY | os.O_NONBLOCK))
        fcntl.flock(holders[0], fcntl.LOCK_EX)
    stage.box.plug_in("box", prepare=hold)
    stage.pause(0.3, 0.8)
    os.close(holders[0])
    return time.monotonic()


def for_all(path):
    os.chmod(path, 0o666)


def for_none(path):
    os.chmod(path, 0)


def plug_refused(stage):
    """The rules of the machine let the user in a while after the box has come back."""
    stage.box.plug_in("box", prepare=for_none)
    stage.pause(0.3, 0.8)
    for_all(stage.box.path)
    return time.monotonic()


def stranger():
    """Somebody whom permissions hold back; the administrator isn't one."""
    return NOBODY if os.geteuid() == 0 else None


FAULTS = {
    "unplug-idle": Fault("unplugged between two exchanges", pull, plug),
    "unplug-frame": Fault("unplugged in a frame", pull_at(FRAME), plug),
    "unplug-input": Fault("unplugged when the input is asked for", pull_at(LEVELS), plug),
    "unplug-answer": Fault("unplugged in the middle of the input's levels", pull_in_answer, plug),
    "unplug-trigger": Fault("unplugged when the trigger is polled", pull_at(POLL), plug),
    "same-name": Fault("comes back under the same device name", pull, plug_same),
    "other-name": Fault("comes back under another device name", pull, plug_other),
    "serial-same-name": Fault("a box with a serial number comes back", pull_usb, plug_usb(False), set_up={"usb": True}),
    "serial-other-name": Fault("a box with a serial number comes back under another device name, a stranger under its own",
                               pull_usb, plug_usb(True), set_up={"usb": True}),
    "silent": Fault("answers nothing", fall_silent, behave, told=(SILENT,), away=False),
    "short": Fault("answers too short", cut_short, behave, told=(), away=False),
    "split": Fault("answers in two pieces", split, behave, told=(), away=False),
    "garbage": Fault("answers garbage, and parts of answers", talk_garbage, behave, told=(), may=(SILENT,), away=False),
    "flood": Fault("sends garbage without end", flood, behave, told=(), may=(SILENT,), away=False),
    "stalled": Fault("takes no more bytes, and later again", stop_reading, behave, told=(FULL,), may=(SILENT,)),
    "stalled-unplug": Fault("takes no more bytes, and is unplugged", stall_and_pull, plug, told=(FULL, UNPLUGGED),
                            may=(SILENT,)),
    "second-box": Fault("a second box appears, and the first one goes and comes back", second_comes, second_goes),
    "same-box-twice": Fault("one box under three names", pull, plug_twice, set_up={"links": ("a box too", "box")}),
    "held": Fault("comes back while another program holds it", pull, plug_held),
    "refused": Fault("comes back before the user is let in", pull, plug_refused,
                     set_up={"user": stranger(), "prepare": for_all}),
}


# ---- Rounds that are a start of the desk

def starts_and_loses(options, chance, row):
    """Unplugged when the version is asked for, or in the middle of its answer."""
    with starting(options) as desk:
        count = chance.randint(0, 36)
        desk.box.answers = lambda answer: [(0, answer[:count])]
        desk.box.pull_at = VERSION
        desk.await_words(UNPLUGGED)
        time.sleep(chance.uniform(0, 0.3))
        desk.box.answers = None
        back = desk.box.plug_in("box")
        if not eventually(lambda: desk.box.first_frame, 3 * RESUME, 0.005):
            raise Missing("no output")
        resumed = desk.box.first_frame - back
        if resumed > RESUME:
            raise Missing(f"output comes after {resumed:.2f} s")
        eventually(lambda: WELL in desk.journal.new(), 1)
        finish(desk, STARTED, [UNPLUGGED, WELL], row, resumed)


def starts_and_is_refused(options, chance, row, words="no permission to open it", **how):
    with starting(options, **how) as desk:
        desk.await_words(words)
        finish(desk, ASKING, [f"{desk.boxes}/box: {words}"], row)


def starts_and_finds_nothing(options, chance, row):
    """Unplugged behind its finding and before its opening."""
    with starting(options) as desk:
        desk.await_words("starting virtual comport")
        time.sleep(chance.uniform(0, 1.5))
        desk.box.unplug()
        desk.await_words("not there")
        finish(desk, ASKING, [f"{desk.boxes}/box: not there"], row)


@contextlib.contextmanager
def starting(options, **how):
    desk = Desk(options.programs, **how)
    try:
        yield desk.start()
    finally:
        desk.close()


def finish(desk, behind, last_words, row, resumed=None):
    """The desk tells only that behind a step of its start, and ends at once and in good order."""
    time.sleep(0.3)
    told = desk.journal.take()
    told = told[told.index(behind) + 1:]
    if told != last_words:
        raise Missing(f"told {told}")
    row.obeyed = max(row.obeyed, desk.ends())
    row.messages += len([line for line in told if line != WELL])
    row.halves += desk.box.wire.faults if desk.own_box else []
    row.resumed += [] if resumed is None else [resumed]


STARTS = {
    "unplug-version": ("unplugged when the version is asked for", starts_and_loses),
    "unplug-found": ("unplugged between finding and opening: output waits for the next start", starts_and_finds_nothing),
    "refused-start": ("refused at the start: output waits for the next start",
                      lambda *args: starts_and_is_refused(*args, user=stranger(), prepare=for_none)),
}


def start_again(name, options):
    """Some desks at a time; what is used by the machine is asked of no desk that ends with its round."""
    row = Row(name)
    chance = random.Random(f"{options.seed} {name}")
    with contextlib.ExitStack() as ends:
        work = STARTS[name][1] if name in STARTS else beside_another(ends, options, row)
        pool = ends.enter_context(concurrent.futures.ThreadPoolExecutor(AT_A_TIME))
        for round_, done in enumerate([pool.submit(work, options, random.Random(chance.random()), row)
                                       for _ in range(options.times)], 1):
            try:
                done.result()
            except (Missing, ValueError) as missing:
                row.findings.append(f"round {round_}: {missing}")
            row.rounds = round_
    row.judge()
    return row


def beside_another(ends, options, row):
    """A desk that plays; the others come for its box, and each says who has it."""
    stage = stand_up(ends, Fault("", None, None), options, random.Random(options.seed))
    stage.box.mark()

    def undisturbed():
        stage.desk.press(on_wire=True)
        row.halves += stage.box.wire.faults
        row.resumed.append(stage.box.longest_gap)
        row.used.append(stage.desk.uses())
        if stage.desk.journal.take() or stage.box.longest_gap > FLOW:
            row.findings.append(f"the desk that plays is disturbed: no frame for {stage.box.longest_gap:.2f} s")
    ends.callback(undisturbed)
    return lambda *args: starts_and_is_refused(*args, words="held by another program", box=stage.box)


# ---- The matrix

def words_of():
    return ({name: fault.words for name, fault in FAULTS.items()} | {name: words for name, (words, _) in STARTS.items()} |
            {"two-desks": "a second desk comes for the box of one that plays"})


def run(name, options):
    if FAULTS.get(name) and FAULTS[name].set_up.get("usb") and not UsbTree.allowed():
        return Row(name, skipped="no mount namespaces here")
    return play(name, FAULTS[name], options) if name in FAULTS else start_again(name, options)


def main():
    names = words_of()
    parser = argparse.ArgumentParser(description=__doc__.split("\n", 1)[0])
    parser.add_argument("--times", type=int, default=100, help="rounds a case")
    parser.add_argument("--case", choices=names, action="append", metavar="NAME", help="only these; --list names them")
    parser.add_argument("--jobs", type=int, default=6, help="cases at a time")
    parser.add_argument("--seed", type=int, default=1, help="starting number of the pauses and of the garbage")
    parser.add_argument("--programs", default=PROGRAMS, help="folder of the desk")
    parser.add_argument("--list", action="store_true", help="list the cases")
    options = parser.parse_args()
    if options.list:
        print("\n".join(f"{name:18} {words}" for name, words in names.items()))
        return 0
    print("| Case | rounds | worst to resume | worst to obey | messages | half frames | growth: memory, files, threads | |")
    print("|---|---|---|---|---|---|---|---|", flush=True)
    faulty = False
    with concurrent.futures.ProcessPoolExecutor(options.jobs) as pool:
        for done in concurrent.futures.as_completed([pool.submit(run, name, options) for name in options.case or names]):
            row = done.result()
            print(row.text(), flush=True)
            for finding in row.findings:
                print(f"{row.name}: {finding}", file=sys.stderr, flush=True)
            faulty = faulty or bool(row.findings)
    return 1 if faulty else 0


if __name__ == "__main__":
    sys.exit(main())
