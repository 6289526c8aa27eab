#!/usr/bin/env python3
"""Measures everything that is wanted of the desk's speed, and writes docs/performance.md.

    bench/report.py [--minute 60] [--quick] [--to FILE]

Builds what it measures with the release preset, then runs engine_bench, model_bench, plot_bench, bench/line.py and bench/desk.py, one after the
other, for twenty minutes. Needs a quiet machine. Exit code 1 when a figure misses what is wanted.

`--quick` measures everything for a few seconds only, to try the script; its figures are no good."""

import argparse
import contextlib
import datetime
import json
import os
import platform
import re
import statistics
import subprocess
import sys
import tempfile
import time

import desk
import line
from measuring import table

sys.path.insert(0, os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", "tools"))
from on_screen import DEMO, PROGRAMS, ROOT  # noqa: E402

TEMPLATE = os.path.join(ROOT, "bench", "performance.in.md")
PROGRAMS_MEASURED = ("velgrove", "velgrove-show", "velgrove-box", "engine_bench", "model_bench", "plot_bench")
UNITS = {"ns": 1e-9, "us": 1e-6, "ms": 1e-3, "s": 1}

# What a benchmark is called in the report, and what is wanted, in seconds.
ENGINE = {
    "MergePass": ("one merge pass of 512 channels", 1e-6),
    "FadeStep": ("one fade step of 512 channels, percentages and mix", 2e-6),
    "SendFrame": ("one frame handed to a line that takes everything", None),
    "DisplayTick": ("one display tick of 512 fixtures, every level changed", 1e-3),
    "CopyPicture": ("the copy of that plot which the face paints from", None),
    "BarsRefresh": ("a refresh of 200 bars, every level changed", None),
    "FaderMove": ("a motion of a submaster's fader, 512 fixtures and 24 submasters that are all up", 0.2e-3),
    "GrandMasterMove": ("a motion of the grand master, 512 channels in five arrays", None),
}
MODEL = {"readBigShow": ("reading", 10e-3), "writeBigShow": ("writing", 20e-3)}
PLOT = {
    "DragStep": ("one step of a drag: move, copy, compare, paint what differs", None),
    "LevelsOnScreen": ("a display tick on which every level is another", None),
    "PanStep": ("the view moves, so that all is another", None),
    "BarsOnScreen/200": ("a refresh of the bars, every level another", None),
    "BarsOnScreen/20": ("a refresh of the bars, one level in ten another", None),
}


class Wanted:
    """What was wanted of the figures, and which miss it."""

    def __init__(self):
        self.asked, self.missed = 0, []

    def at_most(self, what, value, bound):
        if bound is None:
            return
        self.asked += 1
        if value > bound:
            self.missed.append(what)

    def verdict(self):
        held = f"{self.asked - len(self.missed)} of {self.asked} figures hold what is wanted of them"
        return held + (" at the same time." if not self.missed else "; these don't: " + "; ".join(self.missed) + ".")


def in_words(seconds):
    """A time, to two figures."""
    for unit, scale in (("µs", 1e-6), ("ms", 1e-3)):
        if seconds < 1000 * scale:
            value = seconds / scale
            return f"{value:.2f} {unit}" if value < 10 else f"{value:.0f} {unit}"
    return f"{seconds:.1f} s"


def output(*command):
    return subprocess.run(command, check=True, capture_output=True, text=True, cwd=ROOT).stdout.strip()


# ---- The parts

def micro(program, names, quick):
    """Seconds of each benchmark of a program, the middle of three runs."""
    arguments = ["--benchmark_format=json", "--benchmark_repetitions=3"] + ["--benchmark_min_time=0.01"] * quick
    env = os.environ | {"QT_QPA_PLATFORM": "offscreen"}
    run = subprocess.run([os.path.join(PROGRAMS, program), *arguments], check=True, capture_output=True, text=True, env=env)
    times = {}
    for result in json.loads(run.stdout)["benchmarks"]:
        if result["run_type"] == "iteration":
            times.setdefault(result["run_name"], []).append(result["real_time"] * UNITS[result["time_unit"]])
    return {name: statistics.median(times[name]) for name in names}


def micro_table(measured, names, wanted):
    rows = []
    for name, (what, bound) in names.items():
        wanted.at_most(what, measured[name], bound)
        rows.append((what, in_words(measured[name]), in_words(bound) if bound else ""))
    return rows


def rehearsals():
    """Seconds of the demo evening, and of an hour of frames that are printed."""
    show, script = os.path.join(PROGRAMS, "velgrove-show"), os.path.join(ROOT, "data", "demo.script")
    evening = [show, "rehearse", DEMO, script, "--changes"]
    hour = [show, "rehearse", DEMO, "--until", "3600000"]
    for what, command in (("a rehearsal of the demo evening", evening), ("an hour of frames, printed", hour)):
        start = time.monotonic()
        subprocess.run(command, check=True, stdout=subprocess.DEVNULL)
        yield what, in_words(time.monotonic() - start), ""


def line_table(runs, wanted):
    for name, run in runs.items():
        for percent, bound in line.FAR.items():
            if percent == 100 or name.isdigit():  # the show's opening holds up a frame, once
                wanted.at_most(f"line, run {name}, {percent} %", run.at(percent), bound)
    bounds = ("wanted", "", "", *(f"{line.FAR[percent]:g} ms" for percent in (95, 99, 100)))
    return table(line.HEAD, [*(run.row(name) for name, run in runs.items()), bounds])


def starts_table(measured, wanted):
    every = [start for runs in measured.values() for start in runs]
    wanted.at_most("process to splash", max(start.splash for start in every), desk.SPLASH)
    for name, runs in measured.items():
        wanted.at_most(f"file chosen to desk, {name}", statistics.median(s.opened for s in runs), desk.OPENED)
    return desk.starts_table(measured)


ORDINARY = ("quietly", "menu", "printed")  # also measured for a user without a place before others
NOBODY = 65534


def phase_rows(measured):
    return [(*phase.row(), f"{1000 * phase.stolen:.0f} ms") for phase in measured]


PHASES_HEAD = desk.PHASES_HEAD + " | stolen"


def phases_table(measured, wanted):
    for phase in measured:
        what = desk.NAMES[phase.name]
        wanted.at_most(f"99 % while {what}", phase.spacing[3], desk.NEAR)
        wanted.at_most(f"longest gap while {what}", phase.spacing[-1], desk.LONGEST)
        wanted.at_most(f"share of a core, {what}", phase.share, desk.SHARE.get(phase.name))
    bounds = ("wanted", "", "", "", f"{desk.NEAR} ms", "", f"{desk.LONGEST} ms", "")
    return table(PHASES_HEAD, [*phase_rows(measured), bounds])


def shares_table(starts, measured):
    every = [start for runs in starts.values() for start in runs]
    rows = [("until the open dialog stands", f"{statistics.median(s.processor for s in every):.2f} s in all",
             f"{statistics.median(s.memory for s in every):.0f} MiB", "")]
    rows += [(f"with {name} open", "", f"{statistics.median(s.memory_with_show for s in runs):.0f} MiB", "")
             for name, runs in starts.items()]
    for phase in measured:
        if phase.name in desk.SHARES:
            bound = desk.SHARE.get(phase.name)
            rows.append((desk.NAMES[phase.name] if phase.name == "idle" else f"both lists fade, {desk.NAMES[phase.name]}",
                         f"{phase.share:.1%} of a core", f"{phase.memory:.0f} MiB", f"{bound:.0%}" if bound else ""))
    return table(" | processor | memory | wanted", rows)


def threads(measured):
    return "\n".join(f"- {desk.NAMES[phase.name]}: {phase.parts()}" for phase in measured if phase.name in desk.SHARES)


def machine(load, minute):
    """What was measured, on what."""
    with open("/proc/cpuinfo", encoding="utf-8") as file:
        model = re.search(r"model name\s*: (.*)", file.read())
    memory = os.sysconf("SC_PAGE_SIZE") * os.sysconf("SC_PHYS_PAGES") / 2**30
    changed = " with changes" if output("git", "status", "--porcelain", "--untracked-files=no") else ""
    return (f"Measured on {datetime.date.today()}, commit {output('git', 'rev-parse', '--short', 'HEAD')}{changed}, on "
            f"{os.cpu_count()} cores of {model.group(1) if model else platform.machine()} (virtual), {memory:.0f} GiB, "
            f"Linux {platform.release().split('-')[0]}, {output('g++', '--version').splitlines()[0]}, release preset; load "
            f"of the machine {load:.1f} at the start and {os.getloadavg()[0]:.1f} at the end. "
            f"Runs that matter most took {minute:.0f} s each, others a quarter of that.")


# ---- All together

def on_a_desk(show, names, spans, user=None):
    """The phases on one desk."""
    with contextlib.ExitStack() as ends:
        return list(desk.phases(desk.busy_desk(ends, show, user), list(names), *spans))


def measure(minute, quick):
    """The report's parts, by their names in the template. Runs that matter take `minute` seconds, others a quarter."""
    load, wanted = os.getloadavg()[0], Wanted()
    parts = {"engine": table("What runs | time | wanted", micro_table(micro("engine_bench", ENGINE, quick), ENGINE, wanted))}
    parts["model"] = table("What runs | time | wanted", [
        *micro_table(micro("model_bench", MODEL, quick), MODEL, wanted), *rehearsals()])
    parts["plot"] = table("What runs | time | wanted", micro_table(micro("plot_bench", PLOT, quick), PLOT, wanted))
    runs = line.measure(minute, 1 if quick else 3)
    parts["line"] = line_table(runs, wanted)
    parts["line_share"] = f"{max(run.share for run in runs.values()):.1%}"
    with tempfile.TemporaryDirectory() as folder:
        show = os.path.join(folder, "a-large.kel")
        desk.large_show(show)
        starts = desk.starts(1 if quick else 5, show)
        spans = (minute, max(minute / 4, 3))
        phases = on_a_desk(show, desk.NAMES, spans)
        ordinary = on_a_desk(show, ORDINARY, spans, NOBODY) if os.geteuid() == 0 else []
    parts["starts"] = starts_table(starts, wanted)
    parts["phases"] = phases_table(phases, wanted)
    parts["ordinary"] = table(PHASES_HEAD, phase_rows(ordinary)) if ordinary else "(not measured: run the report as root)"
    parts["shares"], parts["threads"] = shares_table(starts, phases), threads(phases)
    parts["machine"], parts["verdict"] = machine(load, minute), wanted.verdict()
    return parts, not wanted.missed


def main():
    parser = argparse.ArgumentParser(description=__doc__.split("\n", 1)[0])
    parser.add_argument("--minute", type=float, default=60, help="seconds of each run that matters most")
    parser.add_argument("--quick", action="store_true", help="a few seconds of each, to try the script")
    parser.add_argument("--to", default=os.path.join(ROOT, "docs", "performance.md"), help="where the report goes")
    options = parser.parse_args()
    output("cmake", "--preset", "release")
    output("cmake", "--build", "--preset", "release", "--target", *PROGRAMS_MEASURED)
    parts, good = measure(5 if options.quick else options.minute, options.quick)
    with open(TEMPLATE, encoding="utf-8") as file:
        text = re.sub(r"\{\{(\w+)\}\}", lambda found: parts[found.group(1)], file.read())
    with open(options.to, "w", encoding="utf-8") as file:
        file.write(text)
    print(parts["verdict"])
    sys.exit(0 if good else 1)


if __name__ == "__main__":
    main()
