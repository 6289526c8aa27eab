"""An interface box on a pseudo-terminal that does what a rig says, with every fault of a real one, and that looks at each
byte that arrives: a frame of which a part is missing is noted, also behind a plug that was pulled."""

import contextlib
import fcntl
import os
import select
import struct
import threading
import time
import tty

from rig_machine import before_others

FRAME, LEVELS, VERSION, POLL = b"\x01\x02\x00\x00", b"\x01\x02\x03\x01\x04\x02\x01", b"\x01\xff\x01\xff", b"\x01\x0a"
SIZES = {FRAME: 516, LEVELS: len(LEVELS), VERSION: len(VERSION), POLL: len(POLL)}
VERSION_TEXT = b"Velgrove interface box, rigged  1.00"
TRIGGER = 0x7F
CHANNELS = 512

UNLOCK, NUMBER = 0x40045431, 0x80045430  # of a pseudo-terminal: TIOCSPTLCK, TIOCGPTN


def new_terminal():
    """The box's end of a new pseudo-terminal, and the path of the desk's. The box never holds the desk's end, so that
    closing its own looks like a pulled plug."""
    end = os.open("/dev/ptmx", os.O_RDWR | os.O_NOCTTY | os.O_NONBLOCK | os.O_CLOEXEC)
    fcntl.ioctl(end, UNLOCK, struct.pack("i", 0))
    tty.setraw(end)
    return end, "/dev/pts/%d" % struct.unpack("i", fcntl.ioctl(end, NUMBER, bytes(4)))


def terminal_at(path, patience=5.0):
    """A new pseudo-terminal at a path, or at any when somebody has that. The kernel gives the lowest number that is free:
    those below are taken for a moment."""
    end = time.monotonic() + patience
    while True:
        below = []
        try:
            while not below or below[-1][1] < number_of(path):
                master, found = new_terminal()
                if found == path:
                    return master, found
                below.append((master, number_of(found)))
        finally:
            for master, _ in below:
                os.close(master)
        if time.monotonic() > end:
            return new_terminal()
        time.sleep(0.2)  # so many terminals are work for the machine


def number_of(path):
    return int(os.path.basename(path))


class Wire:
    """What arrives, command by command. A level is never 1, so that a 1 inside a frame is the head of the next command:
    the frame before it was cut."""

    def __init__(self):
        self.rest, self.faults = bytearray(), []

    def commands(self, data):
        self.rest += data
        while self.rest:
            head = next((head for head in SIZES if self.rest.startswith(head)), None)
            if head is None:
                if any(head.startswith(self.rest) for head in SIZES):
                    return
                self._cut(self._next_head(), "bytes of no command")
            elif len(self.rest) < SIZES[head]:
                return
            elif head == FRAME and 1 in self.rest[len(FRAME):SIZES[FRAME]]:
                self._cut(self.rest.index(1, len(FRAME)), "half a frame")
            else:
                part = bytes(self.rest[:SIZES[head]])
                del self.rest[:SIZES[head]]
                yield head, part[len(head):]

    def _next_head(self):
        at = self.rest.find(1, 1)
        return at if at > 0 else len(self.rest)

    def _cut(self, size, what):
        self.faults.append(f"{what}: {size} bytes from {self.rest[:12].hex(' ')}")
        del self.rest[:size]

    def end(self, cut_by_plug):
        """The line is down. What stands unfinished is a fault, unless the plug was pulled out of it."""
        if self.rest and not cut_by_plug:
            self.faults.append(f"the last of {len(self.rest)} bytes")
        self.rest.clear()


class Box:
    """The box in a thread of its own. Its faults are plain attributes, which a rig sets between two bytes."""

    def __init__(self, folder):
        self.folder, self.path = folder, None
        self.wire, self.frames, self.levels = Wire(), 0, bytes(CHANNELS)
        self.first_frame, self.last_frame, self.longest_gap = None, None, 0.0
        # Faults: answers are passed through `answers`, which gives the pieces and the seconds before each.
        self.silent, self.stalled, self.flood, self.answers, self.pull_at = False, False, None, None, None
        self.asked = 0  # commands that want an answer
        self._master, self._links, self._later, self._rest_until = None, [], [], 0.0
        self._lock, self._ended = threading.RLock(), False
        self._wake, self._waker = os.pipe()
        self._thread = threading.Thread(target=self._serve, daemon=True)
        self._thread.start()

    # ---- The plug

    def plug_in(self, *links, at=None, prepare=lambda path: None):
        """Stands at a new terminal, or at that path, and is found by these links. Gives the time."""
        with self._lock:
            self._master, self.path = new_terminal() if at is None else terminal_at(at)
            prepare(self.path)
            self._links = [os.path.join(self.folder, link) for link in links]
            for link in self._links:
                self._lay(link)
            self._later.clear()
            back = self.mark()
        self._rouse()
        return back

    def _lay(self, link):
        os.symlink(self.path, link + ".new")
        os.rename(link + ".new", link)

    def link(self, name):
        """One more link to the same terminal."""
        with self._lock:
            self._links.append(os.path.join(self.folder, name))
            self._lay(self._links[-1])

    def unplug(self, at_once=False):
        """Pulls the plug behind what has arrived, or in the middle of it."""
        with self._lock:
            if self._master is None:
                return
            if not at_once:
                time.sleep(0.002)  # what the desk has written is on its way through the kernel
                self._read()
            self.wire.end(cut_by_plug=at_once or self.stalled)
            for link in self._links:
                with contextlib.suppress(FileNotFoundError):
                    os.remove(link)
            os.close(self._master)
            self._master = None

    @property
    def plugged_in(self):
        return self._master is not None

    def mark(self):
        """From here on the first frame and the longest gap count. Gives the time."""
        with self._lock:
            self.first_frame, self.last_frame, self.longest_gap = None, None, 0.0
            return time.monotonic()

    def behave(self):
        """Ends every fault of its behaviour. Gives the time."""
        with self._lock:
            self.silent, self.stalled, self.flood, self.answers = False, False, None, None
            back = self.mark()
        self._rouse()
        return back

    def close(self):
        self.unplug(at_once=True)
        self._ended = True
        self._rouse()
        self._thread.join()
        os.close(self._wake)
        os.close(self._waker)

    # ---- In its thread

    def _rouse(self):
        os.write(self._waker, b"x")

    def _serve(self):
        before_others()
        while not self._ended:
            now = time.monotonic()
            due = min((at for at, _ in self._later), default=now + 0.1)
            watched = [self._wake]
            if self._master is not None and not self.stalled and now >= self._rest_until:
                watched.append(self._master)
            pause = 0.003 if self.flood else 0.01 if now < self._rest_until else max(due - now, 0)
            with contextlib.suppress(OSError, ValueError):  # the plug may have been pulled meanwhile
                if self._wake in select.select(watched, [], [], pause)[0]:
                    os.read(self._wake, 1000)
            with self._lock:
                if not self.stalled:
                    self._read()
                self._send()

    def _read(self):
        while self._master is not None:
            try:
                data = os.read(self._master, 65536)
            except BlockingIOError:
                return
            except OSError:  # no desk has the other end
                self._rest_until = time.monotonic() + 0.01
                return
            for head, part in self.wire.commands(data):
                self._take(head, part)
                if self._master is None:
                    return
            if self.pull_at == FRAME and self.wire.rest.startswith(FRAME):
                self._pull()

    def _take(self, head, part):
        if head == FRAME:
            now = time.monotonic()
            self.frames, self.levels = self.frames + 1, part
            if self.last_frame is not None:
                self.longest_gap = max(self.longest_gap, now - self.last_frame)
            self.first_frame, self.last_frame = self.first_frame or now, now
        else:
            self.asked += 1
            self._answer(head)
        if self.pull_at == head:
            self._pull()

    def _answer(self, head):
        answer = {LEVELS: bytes(CHANNELS), VERSION: VERSION_TEXT, POLL: b""}[head]
        if self.silent:
            return
        pieces = [(0, answer)] if self.answers is None else self.answers(answer)
        at = time.monotonic()
        for pause, piece in pieces:
            at += pause
            self._later.append((at, piece))
        self._send()

    def _send(self):
        now = time.monotonic()
        while self._later and self._later[0][0] <= now:
            self._write(self._later.pop(0)[1])
        if self.flood:
            self._write(self.flood())

    def _write(self, data):
        with contextlib.suppress(OSError):  # full, or nobody there: lost, as on a real line
            if self._master is not None:
                os.write(self._master, data)

    def _pull(self):
        self.pull_at = None
        self.unplug(at_once=True)
