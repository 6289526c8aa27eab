"""The virtual box as a process: started, commanded and ended."""

import os
import signal
import subprocess
import time

from programs import program

PATIENCE = 20.0  # seconds until something that must come counts as missing; a busy machine needs some


def eventually(condition, patience=PATIENCE):
    end = time.monotonic() + patience
    while time.monotonic() < end:
        if condition():
            return True
        time.sleep(0.005)
    return False


class Box:
    def __init__(self, runtime, *arguments, copy=None, **identity):
        """`copy` runs instead of the program itself."""
        self.folder = os.path.join(runtime, "velgrove", "boxes")
        self.process = subprocess.Popen(
            [copy or program("velgrove-box"), *arguments], env=dict(os.environ, XDG_RUNTIME_DIR=runtime),
            stdin=subprocess.PIPE, stdout=subprocess.PIPE, stderr=subprocess.PIPE, text=True, bufsize=1, **identity)

    def started(self):
        line = self.process.stdout.readline()
        assert line.startswith("plugged in: "), line + self.process.stderr.readline()
        return self

    def command(self, line):
        self.process.stdin.write(line + "\n")

    def obeyed(self):
        """Waits until all commands so far are carried out: complaints come in order."""
        self.command("no-such-command")
        line = self.process.stderr.readline()
        assert "no-such-command" in line, line

    def link(self, name="box"):
        return os.path.join(self.folder, name)

    def end(self, how=signal.SIGTERM):
        if self.process.poll() is None:
            self.process.send_signal(how)
        return self.end_by_itself()

    def end_by_itself(self):
        output, complaints = self.process.communicate(timeout=PATIENCE)
        return self.process.returncode, output, complaints
