"""The programs under test: paths in front of unittest's own arguments."""

import os
import subprocess
import sys
import tempfile
import unittest
from typing import NamedTuple

LONGEST_RUN = 30.0  # seconds until a run counts as hanging
NOBODY = 65534

_paths = {}
while len(sys.argv) > 1 and os.path.isfile(sys.argv[1]):
    _path = sys.argv.pop(1)
    _paths[os.path.basename(_path)] = _path


def program(name):
    return _paths[name]


class Run(NamedTuple):
    code: int
    output: str
    complaints: str

    @property
    def lines(self):
        """What was complained about, a line each."""
        return self.complaints.splitlines()


def show_program(*arguments, stdin="", **how):
    """Runs velgrove-show to its end."""
    done = subprocess.run([program("velgrove-show"), *map(str, arguments)], input=stdin, encoding="utf-8",
                          errors="backslashreplace",
                          capture_output="stdout" not in how, timeout=LONGEST_RUN, check=False, **how)
    return Run(done.returncode, done.stdout, done.stderr)


def frame_of(line):
    """A line of frames: the time and 512 levels."""
    ms, *levels = line.split(" ")
    return float(ms) if "." in ms else int(ms), [int(level) for level in levels]


def frames_of(lines):
    return [frame_of(line) for line in lines.splitlines()]


def lit(levels):
    """The channels that aren't dark, with their levels."""
    return {channel: level for channel, level in enumerate(levels, 1) if level}


class InAFolder(unittest.TestCase):
    """A test with a folder of its own."""

    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = folder.name

    def path(self, name):
        return os.path.join(self.folder, name)

    def write(self, name, content):
        """Puts the file into its place whole: a program may be reading the one of that name at this moment."""
        data = content.encode() if isinstance(content, str) else content
        with open(self.path(name) + ".new", "wb") as file:
            file.write(data)
        os.replace(self.path(name) + ".new", self.path(name))
        return self.path(name)

    def read(self, name):
        with open(self.path(name), "rb") as file:
            return file.read()
