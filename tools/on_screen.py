"""Drives the desk on a screen of its own: a virtual display, a window manager without decorations, the real keys and
the real mouse. For demonstrations, screenshots, tests and measurements."""

import contextlib
import os
import select
import signal
import subprocess
import tempfile
import time

PATIENCE = 20.0  # seconds until something that must come counts as missing

# Windows stand as on a desk of its own: no title bars beside the desk's, dialogs in the middle.
WINDOW_MANAGER = """<?xml version="1.0"?>
<openbox_config xmlns="http://openbox.org/3.4/rc">
  <focus><focusNew>yes</focusNew><followMouse>no</followMouse></focus>
  <applications>
    <application class="*" type="normal"><decor>no</decor></application>
  </applications>
</openbox_config>
"""


def eventually(condition, patience=PATIENCE):
    end = time.monotonic() + patience
    while time.monotonic() < end:
        if condition():
            return True
        time.sleep(0.02)
    return False


def need(condition, what, patience=PATIENCE):
    if not eventually(condition, patience):
        raise TimeoutError(what)


class Screen:
    """A virtual display with a window manager."""

    def __init__(self, width, height):
        self.folder = tempfile.TemporaryDirectory()
        reading, writing = os.pipe()
        self.server = subprocess.Popen(
            ["Xvfb", "-displayfd", str(writing), "-screen", "0", f"{width}x{height}x24", "-nolisten", "tcp", "-noreset"],
            pass_fds=(writing,), stderr=subprocess.DEVNULL)
        os.close(writing)
        if not select.select([reading], [], [], PATIENCE)[0]:
            raise TimeoutError("the virtual display doesn't start")
        with os.fdopen(reading) as line:  # to its end: the server dies of a pipe closed too early
            self.display = ":" + line.readline().strip()
        config = os.path.join(self.folder.name, "rc.xml")
        with open(config, "w", encoding="utf-8") as file:
            file.write(WINDOW_MANAGER)
        self.manager = subprocess.Popen(["openbox", "--sm-disable", "--config-file", config], env=self.env(),
                                        stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
        need(lambda: "WINDOW" in self._output(["xprop", "-root", "_NET_SUPPORTING_WM_CHECK"]), "no window manager")

    def env(self, **more):
        return dict(os.environ, DISPLAY=self.display, XDG_SESSION_TYPE="x11", QT_QPA_PLATFORM="xcb", **more)

    def _output(self, command):
        done = subprocess.run(command, env=self.env(), capture_output=True, text=True, check=False)
        return done.stdout

    def window(self, title):
        """The visible window of that title, or none."""
        found = self._output(["xdotool", "search", "--onlyvisible", "--name", title]).split()
        return found[-1] if found else None

    def wait_for(self, title, patience=PATIENCE):
        need(lambda: self.window(title), f"no window {title!r}", patience)
        return self.window(title)

    def wait_gone(self, title, patience=PATIENCE):
        need(lambda: not self.window(title), f"the window {title!r} stays", patience)

    def do(self, *xdotool):
        subprocess.run(["xdotool", *map(str, xdotool)], env=self.env(), check=True)

    def keys(self, *names):
        self.do("key", "--delay", 30, *names)

    def type(self, text):
        self.do("type", "--delay", 20, text)

    def click(self, x, y, button=1):
        self.do("mousemove", x, y, "click", button)

    def drag(self, start, end, steps=8):
        self.do("mousemove", *start, "mousedown", 1)
        for step in range(1, steps + 1):
            self.do("mousemove", *(round(a + (b - a) * step / steps) for a, b in zip(start, end)))
            time.sleep(0.03)
        self.do("mouseup", 1)

    def picture(self, path):
        subprocess.run(["import", "-window", "root", path], env=self.env(), check=True)

    def close(self):
        for process in (self.manager, self.server):
            process.terminate()
            process.wait()
        self.folder.cleanup()


class Booth:
    """A screen, a user's folders, a virtual box if wanted, and the desk running in them."""

    def __init__(self, bin_folder, width=1280, height=800, box=True, shows=(), sanitizer=False):
        self.bin = bin_folder
        self.home = tempfile.TemporaryDirectory()
        self.screen = Screen(width, height)
        self.size = (width, height)
        self.box = self.desk = None
        self.folders = {name: os.path.join(self.home.name, path) for name, path in (
            ("HOME", "home"), ("XDG_CONFIG_HOME", "config"), ("XDG_DATA_HOME", "data"), ("XDG_RUNTIME_DIR", "run"))}
        for folder in self.folders.values():
            os.makedirs(folder, mode=0o700)
        self.shows = os.path.join(self.folders["HOME"], "shows")
        os.makedirs(self.shows)
        self.frames = os.path.join(self.home.name, "frames")
        if box:
            self.plug_in()

    def plug_in(self):
        self.box = subprocess.Popen(
            [os.path.join(self.bin, "velgrove-box"), "--quiet", "--frames", self.frames],
            env=dict(os.environ, **self.folders), stdin=subprocess.PIPE, stdout=subprocess.PIPE, text=True)
        line = self.box.stdout.readline()
        assert line.startswith("plugged in: "), line

    def start(self):
        self.desk = subprocess.Popen([os.path.join(self.bin, "velgrove")], env=self.screen.env(**self.folders),
                                     stderr=subprocess.PIPE, text=True)
        return self

    def frames_so_far(self):
        with open(self.frames, encoding="ascii") as file:
            return sum(1 for _ in file)

    def end_box(self):
        """Ends the box, and gives its report."""
        self.box.send_signal(signal.SIGTERM)
        return self.box.communicate(timeout=PATIENCE)[0]

    def end(self):
        with contextlib.suppress(ProcessLookupError):
            if self.desk and self.desk.poll() is None:
                self.desk.terminate()
                self.desk.wait(PATIENCE)
            if self.box and self.box.poll() is None:
                self.box.terminate()
                self.box.wait(PATIENCE)
        self.screen.close()
        self.home.cleanup()
