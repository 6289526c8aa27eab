#!/usr/bin/env python3
"""How the desk performs on a screen: start, opening, processor share, and the steadiness of frames while it is busy.

    bench/desk.py [--minute 60] [--seconds 15] [--starts 5] [--phase NAME]...

Needs a release build, the packages of tools/packages.txt and a quiet machine. Prints Markdown tables.

A virtual box takes the time of each frame's arrival. The box runs before ordinary processes where that is allowed, so
that the clock of the measurement is not what is measured. So do the kernel's workers that carry bytes through a
pseudo-terminal: on a USB port there is no such hop, a write goes straight to the controller. Keys and mouse come from xdotool; what stands on the screen is
read from the virtual display's memory every two milliseconds, which is the resolution of the times of start and opening."""

import argparse
import contextlib
import json
import math
import os
import statistics
import subprocess
import sys
import tempfile
import time

from measuring import Work, at_rank, before_others, memory, processor_seconds, stolen, table, terminal_workers_first

sys.path.insert(0, os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", "tools"))
from on_screen import DEMO, PROGRAMS, ROOT, Booth, Missing, Screen, eventually, need  # noqa: E402

SIZE = (1920, 1080)
FIXTURES, CUES = 512, 1000
FADE = 100  # seconds: each level moves in each third of a second, when the plot shows it anew
FILES = 5000  # in the large folder
LOOK = 0.002  # seconds between two looks at the screen
BARS = (8, 25)  # rows and columns: as many bars as a window has


# ---- The show

def velgrove_show(*arguments):
    return subprocess.run([os.path.join(PROGRAMS, "velgrove-show"), *arguments], check=True, capture_output=True).stdout


def look(even, odd):
    return [even if channel % 2 == 0 else odd for channel in range(FIXTURES)]


def large_show(path):
    """512 fixtures in rows, and two lists of 500 cues between whose looks every channel rises or falls."""
    show = json.loads(velgrove_show("print", "--json", DEMO))
    view = show["colViews"][0]
    columns, rows = 32, 16
    model = view["colFixtures"][0]
    view["colFixtures"] = [
        model | {"Channel": n + 1, "FixtureName": f"Lamp {n + 1}", "x": 15 + n % columns * 970 / (columns - 1),
                 "y": 60 + n // columns * 880 / (rows - 1), "PerpX": 0, "PerpY": 0, "Angle": 0}
        for n in range(FIXTURES)]
    for cues, turn in zip(show["colQueueData"], (0, 1)):
        first = cues["colQueueEntries"][0] | {"Up": FADE, "Down": FADE, "Delay": 0, "QueueListMasterGo": "None",
                                              "QueueNumberMasterGo": "None"}
        looks = (look(255, 0), look(0, 255))
        cues["colQueueEntries"] = [first] + [
            first | {"EntryNum": n, "EntryDesc": f"Look {n}", "Values": looks[(n + turn) % 2]}
            for n in range(1, CUES // 2)]
    with open(path + ".json", "w", encoding="utf-8") as file:
        json.dump(show, file)
    velgrove_show("make", path + ".json", path)


# ---- What is measured

class Line:
    """The spacing of frames over some time."""

    def __init__(self, booth):
        self.booth = booth
        self.start = booth.box_time()

    def spacing(self):
        """Number of frames, distance from 30 ms at 50, 95, 99 and 99.9 percent, and the longest gap."""
        end = self.booth.box_time()
        need(lambda: self.booth.frames()[-1][0] >= end, "no frames behind the phase")
        times = [ms for ms, _ in self.booth.frames() if self.start <= ms <= end]
        gaps = [b - a for a, b in zip(times, times[1:])]
        far = [abs(gap - 30) for gap in gaps]
        return len(gaps), *(at_rank(far, p) for p in (50, 95, 99, 99.9)), max(gaps)


class Watch:
    """What stands on the screen, looked at again and again: lines of pixels that lie 16 apart."""

    def __init__(self, canvas):
        self.canvas = canvas

    def picture(self):
        return [self.canvas.row(y) for y in range(8, self.canvas.height, 16)]

    def until_change(self, start):
        """Seconds until anything else stands there."""
        before = self.picture()
        while self.picture() == before:
            time.sleep(LOOK)
        return time.monotonic() - start

    def until_settled(self, start, span=1.0):
        """Seconds until what stands there stays, but for a tenth of the lines: the levels come to the plot with the
        display's first tick, a third of a second later."""
        pictures = []
        while time.monotonic() < start + span:
            pictures.append((time.monotonic(), self.picture()))
            time.sleep(LOOK)
        last = pictures[-1][1]
        changed = max((i for i, (_, picture) in enumerate(pictures)
                       if sum(a != b for a, b in zip(picture, last)) > len(last) / 10), default=-1)
        return pictures[changed + 1][0] - start


# ---- Start and opening

class Start:
    """A process without a box: seconds to the splash, from the Return that chooses the show to its windows, and of the
    processor until the open dialog stands."""

    def __init__(self, show):
        screen = Screen(*SIZE)
        with contextlib.ExitStack() as ends:
            ends.callback(screen.close)
            booth = Booth(screen, shows=[show], box=False)
            ends.callback(booth.end)
            watch = Watch(screen.canvas)
            start = time.monotonic()
            booth.start()
            self.splash = watch.until_change(start)
            booth.wait_for_open_dialog()
            self.processor = processor_seconds(booth.desk)[0]
            self.memory = memory(booth.desk)
            with screen.hand() as hand:
                hand("key Home")
                time.sleep(0.5)
                start = time.monotonic()
                hand("key Return")
                self.opened = watch.until_settled(start)
            booth.wait_for_show()
            self.memory_with_show = memory(booth.desk)


SPLASH, OPENED = 0.2, 0.15  # seconds, at most


def starts(count, show):
    """Starts with the demo show and with the large one."""
    return {"the demo show": [Start(DEMO) for _ in range(count)],
            f"{FIXTURES} fixtures and {CUES} cues": [Start(show) for _ in range(count)]}


def starts_table(measured):
    every = [start for runs in measured.values() for start in runs]
    rows = [("process to splash", [start.splash for start in every], SPLASH)] + [
        (f"file chosen to desk, {name}", [start.opened for start in runs], OPENED) for name, runs in measured.items()]
    return table(" | middle | worst | wanted", [
        (name, *(f"{1000 * seconds:.0f} ms" for seconds in (statistics.median(values), max(values), wanted)))
        for name, values, wanted in rows])


# ---- The phases: each keeps the desk busy for so many seconds

class Phases:
    def __init__(self, booth, hand):
        self.booth, self.screen, self.hand = booth, booth.screen, hand
        self.faded_until = 0

    def keep_fading(self, seconds):
        """Both lists fade all through the next seconds."""
        if time.monotonic() + seconds < self.faded_until:
            return
        need(lambda: not self.booth.fading(), "fades end", 2 * FADE)
        for go in self.booth.go_buttons()[1:]:
            self.screen.click(go.middle)
        self.booth.wait_for_fade(lists=2)
        self.faded_until = time.monotonic() + FADE - 2

    @contextlib.contextmanager
    def beside(self, name):
        """What stands open during a phase, and isn't measured itself."""
        if name != "bars":
            yield
            return
        self.screen.keys("alt+i", "s")  # input to submasters: the desk reads it, and it moves no fixture
        tools = self.booth.bar_tools()
        for tool in tools:
            self.screen.click(tool)
            time.sleep(1)
        need(lambda: len(self.screen.canvas.boxes("queue", least=20, gap=2)) > 100, "no bars")
        self.screen.drag((200, 192), (900, 292))  # the second by its title, so that most of the first is in sight
        yield
        for _ in tools:
            self.screen.keys("Escape")
            time.sleep(0.5)
        self.screen.keys("alt+i", "n")

    def idle(self, seconds):
        time.sleep(seconds)

    def quietly(self, seconds):
        time.sleep(seconds)

    def bars(self, seconds):
        """The input's levels move too, a few channels at a time."""
        count, part = BARS[0] * BARS[1], 20

        def some(now):
            first = round(now / 0.04) * part % count
            self.booth.box.stdin.write("".join(f"input {first + n + 1} {round(now * 10) % 256}\n" for n in range(part)))
        self._every(0.04, seconds, some)

    def menu(self, seconds):
        self.hand("key alt+f")
        self._every(0.1, seconds - 0.5, lambda _: self.hand("key Down"))
        self.hand("key Escape")
        self.hand("key Escape")
        time.sleep(0.5)

    def list_dragged(self, seconds):
        go = self.booth.go_buttons()[2]
        x, y = go.left - 300, go.top - 44
        self.hand(f"mousemove {x} {y} mousedown 1")
        self._every(1 / 60, seconds, lambda t: self.hand(
            f"mousemove {x - 400 + 400 * math.cos(2 * t):.0f} {y + 200 + 200 * math.sin(2 * t - math.pi / 2):.0f}"))
        self.hand(f"mousemove {x} {y} mouseup 1")
        time.sleep(0.5)

    def frame_moved(self, seconds):
        frame = self.screen.window("^Velgrove - ")
        self._every(1 / 60, seconds, lambda t: self.hand(
            f"windowmove {frame} {150 + 150 * math.cos(2 * t):.0f} {100 + 100 * math.sin(2 * t):.0f}"))
        self.hand(f"windowmove {frame} 0 0")

    def frame_resized(self, seconds):
        """Also over the width at which the desk changes its layout."""
        frame = self.screen.window("^Velgrove - ")
        self._every(1 / 60, seconds, lambda t: self.hand(
            f"windowsize {frame} {1700 + 220 * math.cos(t):.0f} {980 + 100 * math.cos(t):.0f}"))
        self.hand(f"windowsize {frame} {SIZE[0]} {SIZE[1]}")
        time.sleep(1)

    def save_as(self, seconds):
        def once(_):
            self.screen.keys("alt+f", "a")
            self.screen.wait_for_dialog("^Save As$")
            time.sleep(1)
            self.screen.keys("Escape")
            self.screen.wait_gone("^Save As$")
        self._every(1, seconds, once)

    def printed(self, seconds):
        paper = os.path.join(self.booth.folders["HOME"], "Velgrove.pdf")

        def once(_):
            with contextlib.suppress(FileNotFoundError):
                os.remove(paper)
            self.screen.keys("alt+f", "p")
            self.screen.wait_for_dialog("^Print$")
            time.sleep(0.3)
            self.screen.keys("Return")
            self.screen.wait_gone("^Print$")
            need(lambda: os.path.exists(paper) and os.path.getsize(paper) > 0, "no paper")
        self._every(1, seconds, once)

    def saved(self, seconds):
        show = os.path.join(self.booth.data, "a-large.kel")

        def once(_):
            before = os.stat(show).st_mtime_ns
            self.screen.keys("alt+f", "s")
            need(lambda: os.stat(show).st_mtime_ns > before, "no save")
        self._every(1, seconds, once)

    def opened(self, seconds):
        """The lists close with their show: frames go on without a fade."""
        def once(_):
            self.screen.keys("alt+f", "o")
            if eventually(lambda: self.screen.dialog("^Exiting[.]"), 2):
                self.screen.keys("Tab", "Return")
            self.booth.wait_for_open_dialog()
            time.sleep(1)
            self.screen.keys("Escape")
            self.screen.wait_gone("^Open Project$")
        self._every(1, seconds, once)

    @staticmethod
    def _every(period, seconds, work):
        start = time.monotonic()
        done = 0
        while (now := time.monotonic() - start) < seconds:
            if now >= done * period:
                done += 1
                work(now)
            time.sleep(max(min(done * period - (time.monotonic() - start), seconds), 0))


NAMES = {
    "idle": "nothing at all (no fade)",
    "quietly": "nothing else",
    "bars": "both windows of {} bars stand open, and the input moves".format(BARS[0] * BARS[1]),
    "menu": "a menu is down",
    "list_dragged": "a cue list is dragged",
    "frame_moved": "the frame is moved",
    "frame_resized": "the frame is resized",
    "save_as": f"the save dialog opens on {FILES} files",
    "printed": "the plot is printed to PDF",
    "saved": f"the show of {CUES} cues is saved",
    "opened": f"the open dialog opens on {FILES} files (no fade)",
}

SHARES = ("idle", "quietly", "bars")  # measured for a minute, and with their share of the processor
NEAR, LONGEST = 1, 60  # ms: distance from 30 ms for 99 %, and the longest gap
SHARE = {"quietly": 0.06, "bars": 0.08}  # of a core, at most


def busy_desk(ends, show, user=None):
    """A desk with the large show open, of the user who starts it or another."""
    terminal_workers_first()
    screen = Screen(*SIZE)
    ends.callback(screen.close)
    booth = Booth(screen, shows=[show], before_box=before_others(), user=user)
    ends.callback(booth.end)
    if user is not None:
        os.chmod(booth.home.name, 0o755)
        boxes = os.path.join(booth.folders["XDG_RUNTIME_DIR"], "velgrove", "boxes")
        for box in os.listdir(boxes):
            os.chown(os.path.join(boxes, box), user, user)  # the terminal behind the link
    booth.large_folder = booth.path("large")
    os.makedirs(booth.large_folder)
    for n in range(FILES):
        for folder in (booth.data, booth.large_folder):
            with open(os.path.join(folder, f"show {n:04}.kel"), "wb"):
                pass
    booth.set_up(
        Settings={"MainLeft": 0, "MainTop": 0, "MainMaximised": 0, "MainWidth": SIZE[0] * 15, "MainHeight": SIZE[1] * 15},
        Project={"BarRows": BARS[0], "BarColumns": BARS[1], "BarGap": 100})
    booth.start(folder=booth.large_folder)
    booth.wait_for_open_dialog()
    booth.open_show()
    return booth


class Phase:
    """How steady the frames were meanwhile, and what the desk used."""

    def __init__(self, name, booth, busy, seconds):
        self.name = name
        if name not in ("idle", "opened"):
            busy.keep_fading(seconds + 2)
        with busy.beside(name):
            terminal_workers_first()
            work, line, taken = Work(booth.desk), Line(booth), stolen()
            getattr(busy, name)(seconds)
            self.share, self.threads = work.share()
            self.stolen = stolen() - taken
            self.spacing = line.spacing()
            self.memory = memory(booth.desk)

    def row(self):
        frames, *far, longest = self.spacing
        return NAMES[self.name], str(frames), *(f"{ms:.2f} ms" for ms in far), f"{longest:.1f} ms"

    def parts(self):
        """The threads' shares, in words."""
        return ", ".join(f"{name.rpartition(' ')[0]} {part:.1%}" for name, part in
                         sorted(self.threads.items(), key=lambda item: -item[1]) if part >= 0.0005)


PHASES_HEAD = "While both lists fade and | frames | 50 % | 95 % | 99 % | 99.9 % | longest gap"


def phases(booth, chosen, minute, seconds):
    with booth.screen.hand() as hand:
        busy = Phases(booth, hand)
        for name in chosen:
            yield Phase(name, booth, busy, minute if name in SHARES else seconds)


def main():
    parser = argparse.ArgumentParser(description=__doc__.split("\n", 1)[0])
    parser.add_argument("--minute", type=float, default=60, help="seconds of the phases whose share of the processor counts")
    parser.add_argument("--seconds", type=float, default=15, help="seconds of each other phase")
    parser.add_argument("--starts", type=int, default=5, help="starts of each show")
    parser.add_argument("--phase", choices=NAMES, action="append", help="only these")
    parser.add_argument("--user", type=int, help="number of the user whose desk it is; one who isn't root gets no place "
                        "before ordinary processes")
    options = parser.parse_args()
    with contextlib.ExitStack() as ends:
        folder = ends.enter_context(tempfile.TemporaryDirectory())
        show = os.path.join(folder, "a-large.kel")
        large_show(show)
        if options.starts:
            print(starts_table(starts(options.starts, show)) + "\n", flush=True)
        booth = busy_desk(ends, show, options.user)
        try:
            measured = list(phases(booth, options.phase or list(NAMES), options.minute, options.seconds))
            print(table(PHASES_HEAD, [phase.row() for phase in measured]))
            for phase in measured:
                print(f"\n{phase.share:.1%} of a core, {phase.memory:.0f} MiB - {NAMES[phase.name]}: {phase.parts()}")
        except Missing:
            picture = os.path.join(ROOT, "build", "bench-failed.png")
            booth.screen.picture(picture)
            print(f"See {picture}", file=sys.stderr)
            raise


if __name__ == "__main__":
    main()
