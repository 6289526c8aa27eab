"""The machine under the rig: whether it stood still meanwhile. A desk that shares its processors with other work isn't the
one that a show runs on, and what it then did late says nothing about it."""

import contextlib
import multiprocessing
import os
import time

STILL = 0.05  # seconds by which a process that does nothing else is late

_last = None  # for each processor, when it last stood still


def before_others():
    """This thread goes before ordinary ones where that is allowed, so that the rig isn't what is measured. What it starts
    doesn't."""
    with contextlib.suppress(PermissionError):
        os.sched_setscheduler(0, os.SCHED_RR | os.SCHED_RESET_ON_FORK, os.sched_param(1))


def stood_still_since(start):
    return any(at >= start for at in _last)


def share(last):
    """In each process that asks."""
    global _last
    _last = last


@contextlib.contextmanager
def watched():
    """A process of ordinary rank on each processor sleeps and looks how late it wakes. Gives what `share` needs."""
    processors = sorted(os.sched_getaffinity(0))
    last = multiprocessing.Array("d", len(processors), lock=False)
    watchers = [multiprocessing.Process(target=_watch, args=(last, at, processor), daemon=True)
                for at, processor in enumerate(processors)]
    for watcher in watchers:
        watcher.start()
    yield last
    for watcher in watchers:
        watcher.terminate()


def _watch(last, at, processor, pause=0.01):
    os.sched_setaffinity(0, {processor})
    while True:
        start = time.monotonic()
        time.sleep(pause)
        if time.monotonic() - start > pause + STILL:
            last[at] = time.monotonic()
