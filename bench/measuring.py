"""What the measuring programs have in common: places before ordinary processes, shares of the processor, tables."""

import contextlib
import math
import os
import subprocess
import time


# ---- The instrument's place

def before_others():
    """A command that runs an instrument before ordinary processes, as far as that is allowed."""
    for command in (["chrt", "-r", "20"], ["nice", "-n", "-20"]):
        with contextlib.suppress(FileNotFoundError):
            if subprocess.run([*command, "true"], capture_output=True, check=False).returncode == 0:
                return command
    return ()


def terminal_workers_first():
    """Gives the kernel's workers a place before ordinary processes, where that is allowed. They keep it: the machine is as
    before when it has been started anew."""
    listed = subprocess.run(["ps", "-eo", "pid=,comm="], capture_output=True, text=True, check=True).stdout
    for pid, name in (line.split(None, 1) for line in listed.splitlines()):
        if name.startswith("kworker/u"):
            subprocess.run(["chrt", "-r", "-p", "5", pid], capture_output=True, check=False)


def stolen():
    """Seconds, since the machine's start, in which its host gave the processors to others."""
    with open("/proc/stat", encoding="ascii") as file:
        return int(file.readline().split()[8]) / os.sysconf("SC_CLK_TCK")


# ---- What is measured

def table(head, rows):
    """A table in Markdown; `head` is one line of titles."""
    titles = [title.strip() for title in head.split("|")]
    return "\n".join(f"| {' | '.join(row)} |" for row in (titles, ["---"] * len(titles), *rows))


def at_rank(values, percent):
    return sorted(values)[max(math.ceil(len(values) * percent / 100) - 1, 0)]


def processor_seconds(process):
    """Of a process, and of each of its threads by name."""
    threads = {}
    for thread in os.listdir(f"/proc/{process.pid}/task"):
        with contextlib.suppress(FileNotFoundError), open(f"/proc/{process.pid}/task/{thread}/stat") as file:
            name, _, rest = file.read().partition("(")[2].rpartition(")")
            user, system = map(int, rest.split()[11:13])
            threads[f"{name} {thread}"] = (user + system) / os.sysconf("SC_CLK_TCK")
    with open(f"/proc/{process.pid}/stat") as file:
        user, system = map(int, file.read().rpartition(")")[2].split()[11:13])
    return (user + system) / os.sysconf("SC_CLK_TCK"), threads


def memory(process):
    """MiB of a process that stand in memory; what it shares with others counts by its part."""
    with open(f"/proc/{process.pid}/smaps_rollup", encoding="ascii") as file:
        return next(int(line.split()[1]) / 1024 for line in file if line.startswith("Pss:"))


class Work:
    """What a process uses over some time."""

    def __init__(self, process):
        self.process, self.start = process, time.monotonic()
        self.used, self.threads = processor_seconds(process)

    def share(self):
        """Of a core: all, and each thread's."""
        took = time.monotonic() - self.start
        used, threads = processor_seconds(self.process)
        return (used - self.used) / took, {name: (spent - self.threads.get(name, 0)) / took
                                           for name, spent in threads.items()}
