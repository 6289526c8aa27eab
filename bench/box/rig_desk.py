"""The desk under a rig's eyes: what it tells its operator, whether it obeys him, and what it uses of the machine."""

import os
import shutil
import subprocess
import sys
import time

from rig_box import Box

sys.path.insert(0, os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", "..", "tools"))
from on_screen import Box as Place, Booth, Missing, Screen, eventually  # noqa: E402

AT_ONCE = 1.0  # seconds in which an action must be seen
START = 30.0  # seconds in which the desk must stand
WELL = "all is well again"
ASKING, STARTED = "Getting Version", "DMX TX/RX"
HARMLESS = ("This plugin does not support", "  OpenType support missing")  # of the toolkit: no screen; garbage has no font


class Unseen:
    """The screen of a desk that nobody sees and whose operator only ends it."""

    def env(self, **more):
        own = {name: value for name, value in os.environ.items() if name not in ("DISPLAY", "WAYLAND_DISPLAY")}
        return own | {"QT_QPA_PLATFORM": "offscreen", "DBUS_SESSION_BUS_ADDRESS": "disabled:"} | more


class Journal:
    """What the desk has told since the last look."""

    def __init__(self, booth):
        self.booth, self.read = booth, 0

    def new(self):
        lines = self.booth.journal()[self.read:]
        return [line.removeprefix("interface: ") for line in lines]

    def take(self):
        lines = self.new()
        self.read += len(lines)
        return lines


class Desk:
    """A desk with a box. With a screen, a submaster's level is the key that the operator presses again and again."""

    def __init__(self, programs, screen=None, links=("box",), user=None, before=(), prepare=lambda path: None, at=None,
                 box=None):
        """The box stands at a terminal `at` that path; `box` is one that another desk has already. `user` is whom the
        desk belongs to."""
        self.screen = screen
        self.booth = Booth(screen or Unseen(), programs, box=False, user=user, before_desk=before)
        self.boxes = os.path.join(self.booth.folders["XDG_RUNTIME_DIR"], "velgrove", "boxes")
        os.makedirs(self.boxes)
        self.journal = Journal(self.booth)
        self.on, self.slowest = False, 0.0
        self.own_box = box is None
        self.box = box or Box(self.boxes)
        if self.own_box:
            self.box.plug_in(*links, at=at, prepare=prepare)
        else:
            os.symlink(box.path, os.path.join(self.boxes, "box"))

    def start(self):
        self.booth.set_up(Project={"Base": 1, "PREF_SHOWSUBS": -1})  # the trigger is polled, the submasters are in sight
        self.booth.start()
        return self

    def play(self):
        """Opens the show, and brings the hand to the submaster's level."""
        self.booth.wait_for_open_dialog()
        self.booth.open_show()
        self.await_words(STARTED)
        self.journal.take()
        x, y = map(round, self.booth.submaster(1)[1])
        self.face = Place(x - 20, y - 8, x + 20, y + 8)
        self.screen.do("mousemove", x, y)
        self._hand = subprocess.Popen(["xdotool", "-"], env=self.screen.env(), stdin=subprocess.PIPE, text=True, bufsize=1)
        time.sleep(0.5)
        for _ in range(2):  # the first press of all loads the fader, which sets the first level's text to 0
            self._hand.stdin.write("click 1\n")
            time.sleep(0.5)
        return self

    @property
    def process(self):
        return self.booth.desk

    def alive(self):
        if self.process.poll() is not None:
            raise Missing(f"the desk has ended with {self.process.returncode}: {self.booth.complaints()}")

    def await_words(self, words, patience=START):
        def told():
            self.alive()
            return any(words in line for line in self.journal.new())
        if not eventually(told, patience, 0.01):
            raise Missing(f"{words!r} is never told")

    def press(self, on_wire):
        """Presses the key, and waits until that is seen on the screen and, with output, on the wire."""
        self.alive()
        self.on = not self.on
        before, start = self.screen.canvas.part(self.face), time.monotonic()
        self._hand.stdin.write("click 1\n")
        level = 255 if self.on else 0

        def seen():
            return self.screen.canvas.part(self.face) != before and (not on_wire or self.box.levels[0] == level)
        if not eventually(seen, 3 * AT_ONCE, 0.005):
            raise Missing("the desk doesn't obey")
        took = time.monotonic() - start
        self.slowest = max(self.slowest, took)
        if took > AT_ONCE:
            raise Missing(f"the desk obeys after {took:.1f} s")

    def uses(self):
        """Resident memory in KiB, open files, threads."""
        self.alive()
        folder = f"/proc/{self.process.pid}"
        with open(folder + "/statm", encoding="ascii") as file:
            resident = int(file.read().split()[1]) * os.sysconf("SC_PAGE_SIZE") // 1024
        return resident, len(os.listdir(folder + "/fd")), len(os.listdir(folder + "/task"))

    def ends(self):
        """Ends the desk by a signal, at once and in good order; gives the seconds."""
        self.alive()
        start = time.monotonic()
        self.process.terminate()
        if not eventually(lambda: self.process.poll() is not None, 3 * AT_ONCE, 0.005):
            raise Missing("the desk doesn't end")
        took = time.monotonic() - start
        complaints = [line for line in self.booth.complaints().splitlines() if not line.startswith(HARMLESS)]
        if self.process.returncode != 0 or took > AT_ONCE or complaints:
            raise Missing(f"the desk ended with {self.process.returncode} after {took:.1f} s: {complaints}")
        return took

    def close(self):
        if self.own_box:
            self.box.close()
        if getattr(self, "_hand", None):
            self._hand.kill()
            self._hand.wait()
        self.booth.end()


class UsbTree:
    """A machine's list of serial devices, as the kernel lays it out, in which boxes with serial numbers come and go. The
    desk sees it in a mount namespace in place of the real one."""

    SEE = """set -e
dev=$1 tty=$2; shift 2
for node in null zero urandom pts shm; do mount --rbind /dev/$node "$dev/$node"; done
mount --rbind "$dev" /dev
mount --bind "$tty" /sys/class/tty
exec "$@" """

    def __init__(self, folder):
        self.folder = folder
        self.dev, self.tty = (os.path.join(folder, name) for name in ("dev", "tty"))
        for path in (self.dev, self.tty, self.dev + "/pts", self.dev + "/shm"):
            os.makedirs(path)
        for node in ("null", "zero", "urandom"):
            with open(os.path.join(self.dev, node), "wb"):
                pass

    @staticmethod
    def enter():
        """The command that gives a process mounts of its own."""
        return ["unshare", "--mount"] if os.geteuid() == 0 else ["unshare", "--map-root-user", "--mount"]

    @classmethod
    def allowed(cls):
        return subprocess.run([*cls.enter(), "mount", "--bind", "/tmp", "/tmp"], capture_output=True,
                              check=False).returncode == 0

    def seeing(self):
        """The command in front of the desk."""
        return [*self.enter(), "sh", "-c", self.SEE, "sh", self.dev, self.tty]

    def add(self, name, serial, terminal):
        device = os.path.join(self.folder, "usb", name)
        port = os.path.join(device, "port")
        os.makedirs(port)
        for file, words in (("idVendor", "10c4"), ("idProduct", "ea60"), ("serial", serial)):
            with open(os.path.join(device, file), "w", encoding="ascii") as out:
                out.write(words + "\n")
        os.symlink("/drivers/cp210x", os.path.join(port, "driver"))
        os.makedirs(os.path.join(self.tty, name))
        os.symlink(port, os.path.join(self.tty, name, "device"))
        os.symlink(terminal, os.path.join(self.dev, name))

    def remove(self, name):
        os.remove(os.path.join(self.dev, name))
        for folder in (self.tty, os.path.join(self.folder, "usb")):
            shutil.rmtree(os.path.join(folder, name))
