"""Drives the desk on a screen of its own: a virtual display, a window manager without decorations, the real keys and
the real mouse. For demonstrations, screenshots, tests and measurements."""

import contextlib
import json
import mmap
import os
import re
import select
import shutil
import signal
import struct
import subprocess
import tempfile
import time

JOURNAL = re.compile(r"\d\d:\d\d:\d\d[.]\d\d\d (interface|box): ")
JOURNAL_TIME = len("21:04:05.123 ")
PATIENCE = 20.0  # seconds until something that must come counts as missing

ROOT = os.path.dirname(os.path.dirname(os.path.abspath(__file__)))
PROGRAMS = os.path.join(ROOT, "build", "release", "bin")
DEMO = os.path.join(ROOT, "data", "demo.kel")

# The frame fills the screen as on a desk of its own; dialogs have a dark title bar.
WINDOW_MANAGER = """<?xml version="1.0"?>
<openbox_config xmlns="http://openbox.org/3.4/rc">
  <theme><name>Onyx</name><titleLayout>LC</titleLayout></theme>
  <focus><focusNew>yes</focusNew><followMouse>no</followMouse></focus>
  <applications>
    <application class="*" type="normal"><decor>no</decor></application>
  </applications>
</openbox_config>
"""


class Missing(Exception):
    """Something that had to come didn't."""


def eventually(condition, patience=PATIENCE, pause=0.02):
    end = time.monotonic() + patience
    while time.monotonic() < end:
        if condition():
            return True
        time.sleep(pause)
    return False


def need(condition, what, patience=PATIENCE):
    if not eventually(condition, patience):
        raise Missing(what)


def palette():
    """The desk's colours by name, as the display holds them."""
    with open(os.path.join(ROOT, "src", "desktop", "palette.json"), encoding="utf-8") as file:
        return {name: bytes.fromhex(value[1:])[::-1] + b"\xff" for name, value in json.load(file).items()}


class Box(tuple):
    """A rectangle of the screen."""

    def __new__(cls, left, top, right, bottom):
        return super().__new__(cls, (left, top, right, bottom))

    left, top, right, bottom = (property(lambda box, at=at: box[at]) for at in range(4))
    middle = property(lambda box: ((box.left + box.right) // 2, (box.top + box.bottom) // 2))


class Canvas:
    """The display's memory: what stands on the screen, read without asking anyone."""

    HEADER = struct.Struct(">25I")
    COLOUR_ENTRY = 12  # bytes

    def __init__(self, path):
        with open(path, "rb") as file:
            self.memory = mmap.mmap(file.fileno(), 0, prot=mmap.PROT_READ)
        header = self.HEADER.unpack(self.memory[:self.HEADER.size])
        self.start = header[0] + self.COLOUR_ENTRY * header[19]
        self.width, self.height, self.pitch = header[4], header[5], header[12]
        self.colours = palette()

    def row(self, y, left=0, right=None):
        right = self.width if right is None else right
        begin = self.start + y * self.pitch
        return self.memory[begin + 4 * left:begin + 4 * right]

    def part(self, box):
        return b"".join(self.row(y, box.left, box.right) for y in range(box.top, box.bottom))

    def boxes(self, *colours, least, gap=0):
        """Where colours of the palette fill lines of at least so many pixels, from the top. Lines so many rows apart
        belong together."""
        found = []
        for y in range(self.height):
            row = self.row(y)
            for left, right in (run for colour in colours for run in self._runs(row, self.colours[colour], least)):
                above = next((i for i, box in enumerate(found)
                              if box.bottom >= y - gap and box.left < right and left < box.right), None)
                if above is None:
                    found.append(Box(left, y, right, y + 1))
                else:
                    box = found[above]
                    found[above] = Box(min(box.left, left), box.top, max(box.right, right), y + 1)
        return found

    @staticmethod
    def _runs(row, pixel, least):
        wanted = pixel * least
        at = row.find(wanted)
        while at >= 0:
            if at % 4:
                at = row.find(wanted, at + 1)
                continue
            end = at + len(wanted)
            while row[end:end + 4] == pixel:
                end += 4
            yield at // 4, end // 4
            at = row.find(wanted, end)


class Screen:
    """A virtual display with a window manager."""

    def __init__(self, width=1280, height=800):
        self.size = (width, height)
        self.surroundings = {}  # what programs on this screen find in their environment as well
        self.folder = tempfile.TemporaryDirectory()
        reading, writing = os.pipe()
        self.server = subprocess.Popen(
            ["Xvfb", "-displayfd", str(writing), "-screen", "0", f"{width}x{height}x24", "-nolisten", "tcp", "-noreset",
             "-fbdir", self.folder.name], pass_fds=(writing,), stderr=subprocess.DEVNULL)
        os.close(writing)
        if not select.select([reading], [], [], PATIENCE)[0]:
            raise Missing("the virtual display doesn't start")
        with os.fdopen(reading) as line:  # to its end: the server dies of a pipe closed too early
            self.display = ":" + line.readline().strip()
        self.canvas = Canvas(os.path.join(self.folder.name, "Xvfb_screen0"))
        config = os.path.join(self.folder.name, "rc.xml")
        with open(config, "w", encoding="utf-8") as file:
            file.write(WINDOW_MANAGER)
        self.manager = subprocess.Popen(["openbox", "--sm-disable", "--config-file", config], env=self.env(),
                                        stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
        need(lambda: "WINDOW" in self._output("xprop", "-root", "_NET_SUPPORTING_WM_CHECK"), "no window manager")

    def env(self, **more):
        """The environment of a program on this screen, without what the user's own desktop says, and without its bus."""
        own = {name: value for name, value in os.environ.items()
               if not name.startswith(("QT_", "WAYLAND_", "XDG_CURRENT", "DBUS_"))}
        return own | {"DISPLAY": self.display, "XDG_SESSION_TYPE": "x11", "QT_QPA_PLATFORM": "xcb",
                      "DBUS_SESSION_BUS_ADDRESS": "disabled:"} | self.surroundings | more

    def _output(self, *command):
        return subprocess.run(command, env=self.env(), capture_output=True, text=True, check=False).stdout

    # ---- Windows, by a pattern of their titles

    def windows(self, title):
        return self._output("xdotool", "search", "--onlyvisible", "--name", title).split()

    def window(self, title):
        return next(iter(self.windows(title)), None)

    def dialog(self, title):
        """The visible dialog of that title: not the frame, nor the splash."""
        return next((window for window in self.windows(title)
                     if "TYPE_DIALOG" in self._output("xprop", "-id", window, "_NET_WM_WINDOW_TYPE")), None)

    def wait_for(self, title, patience=PATIENCE):
        need(lambda: self.window(title), f"no window {title!r}", patience)
        return self.window(title)

    def wait_for_dialog(self, title, patience=PATIENCE):
        """Waits until the dialog has come up, takes the keys and has shown all that it shows."""
        need(lambda: self.dialog(title) in (self._output("xdotool", "getactivewindow").strip(),), f"no dialog {title!r}",
             patience)
        self.wait_until_still(self.place_of(self.dialog(title)))

    def place_of(self, window):
        """What a window fills, without its title."""
        told = self._output("xwininfo", "-id", window)
        left, top, width, height = (int(re.search(rf"{name}: +(-?\d+)", told)[1])
                                    for name in ("Absolute upper-left X", "Absolute upper-left Y", "Width", "Height"))
        return Box(left, top, left + width, top + height)

    def frame_of(self, window):
        """What a window fills, with what the window manager draws around it."""
        inner = self.place_of(window)
        border = self._output("xprop", "-id", window, "_NET_FRAME_EXTENTS").partition("=")[2]
        left, right, top, bottom = (int(edge) for edge in border.split(",")) if border.strip() else (0, 0, 0, 0)
        return Box(inner.left - left, inner.top - top, inner.right + right, inner.bottom + bottom)

    def wait_until_still(self, box, span=0.25):
        """Waits until nothing has changed in a part of the screen for a while."""
        pictures = [b"", time.monotonic()]

        def still():
            now = self.canvas.part(box)
            if now != pictures[0]:
                pictures[:] = [now, time.monotonic()]
            return time.monotonic() - pictures[1] > span
        need(still, "the picture doesn't come to rest")

    def wait_gone(self, title, patience=PATIENCE):
        need(lambda: not self.dialog(title), f"the dialog {title!r} stays", patience)

    # ---- The hand

    def do(self, *xdotool):
        subprocess.run(["xdotool", *map(str, xdotool)], env=self.env(), check=True)

    def keys(self, *names):
        self.do("key", "--delay", 30, *names)

    def type(self, text):
        self.do("type", "--delay", 20, text)

    def click(self, at, button=1):
        self.do("mousemove", *at, "click", button)

    def drag(self, start, end, steps=8, pause=0.03):
        self.do("mousemove", *start, "mousedown", 1)
        for step in range(1, steps + 1):
            self.do("mousemove", *(round(a + (b - a) * step / steps) for a, b in zip(start, end)))
            time.sleep(pause)
        self.do("mouseup", 1)

    @contextlib.contextmanager
    def hand(self):
        """A function that moves the hand by lines of xdotool, at once and without waiting for it."""
        moving = subprocess.Popen(["xdotool", "-"], env=self.env(), stdin=subprocess.PIPE, text=True, bufsize=1)
        try:
            yield lambda line: moving.stdin.write(line + "\n")
        finally:
            moving.stdin.close()
            moving.wait(PATIENCE)

    def picture(self, path):
        subprocess.run(["import", "-window", "root", path], env=self.env(), check=True)

    def close(self):
        for process in (self.manager, self.server):
            process.terminate()
            process.wait()
        self.folder.cleanup()


class Booth:
    """A user's folders on a screen, a virtual box if wanted, and the desk running in them.

    The desk runs from a copy, so that its shows, its list of recent files and its settings are its own."""

    def __init__(self, screen, programs=PROGRAMS, shows=(DEMO,), box=True, before_box=(), before_desk=(),
                 user=None):
        """`before_box` and `before_desk` are commands that run these; `user` is whom the desk belongs to, if not to its
        starter."""
        self.screen, self.programs, self.user = screen, programs, user
        self.before_box, self.before_desk = list(before_box), list(before_desk)
        self.home = tempfile.TemporaryDirectory()
        self.folders = {name: self.path(path) for name, path in (
            ("HOME", "home"), ("XDG_CONFIG_HOME", "config"), ("XDG_DATA_HOME", "share"), ("XDG_RUNTIME_DIR", "run"))}
        for folder in self.folders.values():
            os.makedirs(folder, mode=0o700)
        self.data = self.path("bin/data")
        os.makedirs(self.data)
        for show in shows:
            shutil.copy(show, self.data)
        self.program = shutil.copy(os.path.join(programs, "velgrove"), self.path("bin"))
        shutil.copytree(os.path.join(programs, "graphics"), self.path("bin/graphics"))
        manual = os.path.join(os.path.dirname(programs), "share", "manual")
        if os.path.isdir(manual):
            shutil.copytree(manual, self.path("share/manual"))
        self.box = self.desk = None
        self.log = self.path("complaints")
        self.frames_file, self._frames, self._read_to = self.path("frames"), [], 0
        if box:
            self.plug_in()

    def path(self, name):
        return os.path.join(self.home.name, name)

    # ---- The box

    def plug_in(self):
        self.box = subprocess.Popen(
            [*self.before_box, os.path.join(self.programs, "velgrove-box"), "--quiet", "--frames", self.frames_file],
            env=os.environ | self.folders, stdin=subprocess.PIPE, stdout=subprocess.PIPE, text=True, bufsize=1)
        self._box_start = time.monotonic()
        line = self.box.stdout.readline()
        if not line.startswith("plugged in: "):
            raise Missing(f"the box says {line!r}")

    def frames(self):
        """All frames so far, as milliseconds since the box's start and 512 levels; the last second may be missing."""
        with open(self.frames_file, "rb") as file:
            file.seek(self._read_to)
            whole = file.read().rpartition(b"\n")[0]
        if whole:
            self._read_to += len(whole) + 1
            for line in whole.split(b"\n"):
                ms, *levels = line.split(b" ")
                self._frames.append((float(ms), tuple(map(int, levels))))
        return self._frames

    def box_time(self):
        """Milliseconds since the box's start, a few more or less."""
        return 1000 * (time.monotonic() - self._box_start)

    def level(self, channel):
        """What stood on a channel in the newest frame known."""
        frames = self.frames()
        return frames[-1][1][channel - 1] if frames else 0

    def end_box(self):
        """Ends the box, and gives its report."""
        self.box.send_signal(signal.SIGTERM)
        return self.box.communicate(timeout=PATIENCE)[0]

    # ---- The desk

    def set_up(self, **sections):
        """Writes the settings that the desk will find: Section={"Key": value}."""
        folder = os.path.join(self.folders["XDG_CONFIG_HOME"], "velgrove")
        os.makedirs(folder)
        with open(os.path.join(folder, "settings.toml"), "w", encoding="ascii") as file:
            for section, values in sections.items():
                file.write(f"[Velgrove.{section}]\n" + "".join(f'{key} = "{value}"\n' for key, value in values.items()))

    def start(self, folder=None, **env):
        """Starts the desk, in a folder of its own or that one, with this in its environment."""
        if self.user is not None:
            for path, _, files in os.walk(self.home.name):
                for name in [path, *(os.path.join(path, file) for file in files)]:
                    os.chown(name, self.user, self.user, follow_symlinks=False)
        with open(self.log, "wb") as log:
            self.desk = subprocess.Popen(
                [*self.before_desk, self.program], env=self.screen.env(**self.folders, **env),
                stdin=subprocess.DEVNULL, stdout=log, stderr=log,
                cwd=folder or self.folders["HOME"], user=self.user, group=self.user,
                extra_groups=[] if self.user is not None else None)
        return self

    def log_lines(self):
        with open(self.log, encoding="utf-8", errors="replace", newline="\n") as file:
            return file.read().split("\n")[:-1]  # whole lines, whatever stands in them

    def journal(self):
        """What the desk told the operator, without the time."""
        return [line[JOURNAL_TIME:] for line in self.log_lines() if JOURNAL.match(line)]

    def complaints(self):
        """What stands in the log beside the journal."""
        return "\n".join(line for line in self.log_lines() if not JOURNAL.match(line))

    def wait_for_open_dialog(self):
        self.screen.wait_for_dialog("^Open Project$")

    def open_show(self, presses=1):
        """Chooses the show that stands at that place of the list, and waits until its windows stand."""
        self.choose(presses)
        self.wait_for_show()

    def choose(self, presses=1):
        self.screen.keys("Home", *["Down"] * (presses - 1), "Return")

    def wait_for_show(self):
        self.screen.wait_for("^Velgrove - ")
        need(lambda: len(self.screen.canvas.boxes("goReady", "goQuiet", least=50, gap=50)) == 3, "no Go buttons of frame and lists")

    # ---- What the operator sees: buttons and rows are found by their colours, XY first

    def go_buttons(self):
        """Go of the frame, of XY and of AB."""
        frame, *lists = sorted(self.screen.canvas.boxes("goReady", "goQuiet", least=50, gap=50), key=lambda box: box.top)
        return [frame, *sorted(lists, key=lambda box: (round(box.left / 100), box.top))]

    def stop_button(self):
        """Stop of the frame, left of its Go."""
        go = self.go_buttons()[0]
        return go.left - (go.bottom - go.top), go.middle[1]

    def advance_button(self):
        """Q+ of the frame, the second button left of Stop, whose foot is red."""
        stop = min(self.screen.canvas.boxes("keyRed", least=80), key=lambda box: box.top)
        return stop.left - self.screen.canvas.height // 10, self.go_buttons()[0].middle[1]

    def bar_tools(self):
        """The tools of the input's and the output's bars, which stand left of Blackout at the end of the windows'."""
        roomy = self.screen.canvas.width >= 1600
        return [(x, self.go_buttons()[0].middle[1]) for x in ((370, 420) if roomy else (298, 335))]

    def submaster(self, number):
        """Where a submaster's button and its level stand in the strip at the foot, which is as wide as the screen."""
        width, height = self.screen.canvas.width, self.screen.canvas.height
        roomy = width >= 1600
        x = (number - 0.5 + (number - 1) // 6 * 0.12) * width / 24.4
        return (x, height - (116 if roomy else 80)), (x, height - (42 if roomy else 36))

    def stage_rows(self):
        return self._rows("stageLit", "stageDim")

    def next_rows(self):
        return self._rows("nextLit", "nextDim")

    def resting_tools(self):
        """The tools of the plot, left in the frame, that can't be pressed."""
        return [box for box in self.screen.canvas.boxes("disabled", least=4) if box.right < self.screen.canvas.width // 25]

    def fading(self):
        """How many lists show a fade."""
        return len(self._rows("stageDim"))

    def _rows(self, *colours):
        """A box for each row, whatever colours it has. The lists stand below each other or side by side."""
        band, right_of_xy = self.screen.canvas.height // 8, self.go_buttons()[1].right + 20
        rows = {}
        for box in self.screen.canvas.boxes(*colours, least=100, gap=30):
            if box.top > band:
                place = (box.left > right_of_xy, round(box.middle[1] / 10))
                known = rows.get(place, box)
                rows[place] = Box(min(known.left, box.left), known.top, max(known.right, box.right), known.bottom)
        return [rows[place] for place in sorted(rows)]

    def wait_for_fade(self, lists=1):
        need(lambda: self.fading() >= lists, f"no fade in {lists} lists")

    def wait_fades_over(self):
        need(lambda: self.fading() == 0, "a fade doesn't end")

    def end(self):
        for process in (self.desk, self.box):
            if process and process.poll() is None:
                process.terminate()
                try:
                    process.wait(PATIENCE)
                except subprocess.TimeoutExpired:
                    process.kill()
        self.home.cleanup()
