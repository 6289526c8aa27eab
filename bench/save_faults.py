#!/usr/bin/env python3
"""What becomes of a show when the desk is killed, and when the disk is full.

    bench/save_faults.py [--times 1000] [--seed N] [--step 1] [--only save|full|recovery]...

Needs a release build (target save_driver). Prints a Markdown row a rig; ends with 1 on a finding.

save      A desk saves two versions of a show in turn and is killed at a random moment. The show's file is then whole,
          one of the two; so is the version before it, and no more is left beside them than of one save.
full      The disk takes so many bytes of a show and no more, for each number of bytes: made up, and by the system's
          own limit. Each time the old show stands, the operator is told, the show stays marked as changed, and the
          next save with room is whole.
recovery  A desk edits cues, or moves a fixture, and is killed at a random moment. The next start opens exactly a state
          that was reached, as a save of it would open: at least the newest that was reported to stand on the disk. An
          edit of a cue is on its way there when it returns, any other change fifteen seconds later at the latest."""

import argparse
import collections
import os
import random
import shutil
import statistics
import subprocess
import sys
import tempfile
import time

ROOT = os.path.join(os.path.dirname(os.path.abspath(__file__)), "..")
DEMO = os.path.join(ROOT, "data", "demo.kel")
LONGEST_LIFE = 0.2  # seconds until the kill
LATEST = 15  # edits, a second apart on the desk's clock
STATES = 300  # more than a desk reaches in its life
MOST_LEFT = 2  # a new version, and the second name of the one before
RUN = 60  # seconds until a run counts as hanging


class Finding(Exception):
    pass


def check(holds, what):
    if not holds:
        raise Finding(what)


def read(path):
    with open(path, "rb") as file:
        return file.read()


class Driver:
    def __init__(self, path):
        self.path = path

    def ask(self, *arguments, patience=RUN):
        done = subprocess.run([self.path, *arguments], capture_output=True, text=True, timeout=patience)
        check(done.returncode == 0, f"{' '.join(arguments)}: {done.stdout} {done.stderr}")
        return done.stdout.split("\n")[:-1]

    def kill_in_life(self, life, *arguments):
        """What it said until it was killed; a last line that was cut off doesn't count."""
        with subprocess.Popen([self.path, *arguments], stdout=subprocess.PIPE) as process:
            first = process.stdout.readline()
            time.sleep(life)
            ended = process.poll()
            process.kill()
            lines = (first + process.stdout.read()).decode().split("\n")[:-1]
        check(ended is None and lines[0] == "ready", f"{' '.join(arguments)} ended by itself: {lines[-1:]}")
        return lines[1:]


def leftovers(folder):
    return [name for name in os.listdir(folder) if name.startswith(".velgrove-")]


def save_kills(driver, folder, options):
    show, backup = os.path.join(folder, "show.kel"), os.path.join(folder, "show.kel.bak")
    versions, most, seen = None, 0, collections.Counter()
    for _ in range(options.times):
        shutil.copy(DEMO, show)
        driver.kill_in_life(random.uniform(0, LONGEST_LIFE), "save", folder)
        of_run = [read(os.path.join(folder, name)) for name in ("one", "two")]
        versions = versions or of_run
        check(of_run == versions, "the versions differ from run to run")
        check(read(show) in versions, "the show's file is neither version")
        check(read(backup) in versions, "the version before is neither version")
        seen[versions.index(read(show))] += 1
        most = max(most, len(leftovers(folder)))
        check(most <= MOST_LEFT, f"what killed saves leave piles up: {leftovers(folder)}")
    return (f"{options.times} kills; {seen[0]} left the one version, {seen[1]} the other; "
            f"at most {most} files left beside")


def full_disk(driver, folder, options):
    rows = []
    for kind in ("made-up", "system"):
        shutil.copy(DEMO, os.path.join(folder, "show.kel"))
        rows += [f"{kind}: {line}" for line in driver.ask("full", folder, kind, str(options.step), patience=None)]
        check(not leftovers(folder), "a failed save leaves files beside the show")
    return "; ".join(rows)


class Life:
    """What a desk reported before it was killed."""

    def __init__(self, lines):
        words = [line.split() for line in lines]
        self.edits = [(int(number), int(handed)) for word, number, handed in words if word == "edit"]
        self.kept = [(int(number), float(ms)) for word, number, ms in words if word == "kept"]

    def check_handed(self, latest, states):
        """An edit that left the show as it was needs no new copy."""
        for number, handed in self.edits:
            check(number - handed <= latest or states[number] == states[handed],
                  f"edit {number} isn't on its way to the disk; {handed} is")

    @property
    def safe(self):
        return max((number for number, _ in self.kept), default=-1)


def recovery_kills(driver, folder, options):
    shutil.copy(DEMO, os.path.join(folder, "show.kel"))
    states = {kind: driver.ask("states", folder, kind, str(STATES)) for kind in ("cues", "plot")}
    writes, newest, opened = [], 0, 0
    for turn in range(options.times):
        kind, latest = (("cues", 0), ("plot", LATEST))[turn % 2]
        shutil.rmtree(os.path.join(folder, "recovery"), ignore_errors=True)
        life = Life(driver.kill_in_life(random.uniform(0, LONGEST_LIFE), "edit", folder, kind))
        check(len(life.edits) < STATES, "too many edits for the rig")
        life.check_handed(latest, states[kind])
        found = driver.ask("next", folder)[-1]
        writes += [ms for _, ms in life.kept]
        newest = max(newest, len(life.edits))
        if found == "none":
            check(life.safe < 0, f"no copy is offered, and edit {life.safe} was kept")
            continue
        opened += 1
        until = len(life.edits) + 1  # the last edit may have been killed before it was reported
        check(found in states[kind][max(life.safe, 0):until + 1],
              f"the copy holds no state from edit {life.safe} to {until}; it holds "
              f"{states[kind].index(found) if found in states[kind] else 'none that was reached'}")
    if not writes:
        return f"{options.times} kills; no desk lived long enough to keep a copy"
    return (f"{options.times} kills, up to {newest} edits before; {opened} starts offered a copy, each a state reached "
            f"and none older than what stood on the disk; a copy took {statistics.median(writes):.1f} ms (median), "
            f"{max(writes):.1f} ms (longest of {len(writes)})")


RIGS = {"save": save_kills, "full": full_disk, "recovery": recovery_kills}


def parse():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("--times", type=int, default=1000, help="kills of each rig (default: 1000)")
    parser.add_argument("--seed", type=int, default=None,
                        help="starting number of the random moments (default: the time)")
    parser.add_argument("--step", type=int, default=1, help="bytes between two places where the disk ends (default: 1)")
    parser.add_argument("--only", action="append", choices=RIGS, help="this rig; may be given again (default: all)")
    parser.add_argument("--driver", default=os.path.join(ROOT, "build/release/bin/save_driver"))
    options = parser.parse_args()
    options.seed = time.time_ns() % 2**32 if options.seed is None else options.seed
    return options


def main():
    options = parse()
    random.seed(options.seed)
    print(f"--seed {options.seed}\n\n| rig | result | seconds |\n|---|---|---|")
    findings = 0
    for name in options.only or RIGS:
        begun = time.monotonic()
        with tempfile.TemporaryDirectory(prefix="velgrove-faults-") as folder:
            try:
                result = RIGS[name](Driver(options.driver), folder, options)
            except (Finding, subprocess.TimeoutExpired) as finding:
                findings += 1
                result = f"FINDING: {finding}"
        print(f"| {name} | {result} | {time.monotonic() - begun:.0f} |", flush=True)
    return 1 if findings else 0


if __name__ == "__main__":
    sys.exit(main())
