#!/usr/bin/env python3
"""What the desk does when its interface box fails: each fault many times against the desk as it runs in the theatre.

    bench/box_faults.py [--times 100] [--case NAME]... [--jobs 6] [--seed 1] [--list]

The box is the rig's own, on a pseudo-terminal; each case has a desk with folders and a screen of its own. In each round
the fault comes, the operator presses a key, the fault goes, output must come again unaided within two seconds, and the
operator presses a key once more. Every byte on the wire is looked at, every message is counted, and what the desk uses of
the machine from the tenth round on must not grow. A round that fails while the machine itself stood still is played again,
which the table tells; half frames count all the same. The exit code is 1 when a case has a finding.

The cases with a serial number need mount namespaces, as the administrator has them, and are skipped elsewhere."""

import argparse
import concurrent.futures
import os
import sys

HERE = os.path.dirname(os.path.abspath(__file__))
sys.path[:0] = [os.path.join(HERE, "box"), os.path.join(HERE, "..", "tools")]
from faults_at_start import STARTS, start_again  # noqa: E402
from faults_in_play import FAULTS  # noqa: E402
from on_screen import PROGRAMS  # noqa: E402
from rig_desk import UsbTree  # noqa: E402
from rig_machine import share, watched  # noqa: E402
from rig_rounds import HEADING, Row, play  # noqa: E402


def words_of():
    return ({name: fault.words for name, fault in FAULTS.items()} | {name: words for name, (words, _) in STARTS.items()} |
            {"two-desks": "a second desk comes for the box of one that plays"})


def run(name, options):
    if FAULTS.get(name) and FAULTS[name].set_up.get("usb") and not UsbTree.allowed():
        return Row(name=name, skipped="no mount namespaces here")
    try:
        return play(name, FAULTS[name], options) if name in FAULTS else start_again(name, options)
    except OSError as error:  # the rig's own failure must not hide what the other cases found
        return Row(name=name, findings=[f"the rig failed: {error}"])


def main():
    names = words_of()
    parser = argparse.ArgumentParser(description=__doc__.split("\n", 1)[0])
    parser.add_argument("--times", type=int, default=100, help="rounds a case")
    parser.add_argument("--case", choices=names, action="append", metavar="NAME", help="only these; --list names them")
    parser.add_argument("--jobs", type=int, default=6, help="cases at a time")
    parser.add_argument("--seed", type=int, default=1, help="starting number of the pauses and of the garbage")
    parser.add_argument("--programs", default=PROGRAMS, help="folder of the desk")
    parser.add_argument("--list", action="store_true", help="list the cases")
    options = parser.parse_args()
    if options.list:
        print("\n".join(f"{name:18} {words}" for name, words in names.items()))
        return 0
    print(HEADING, flush=True)
    chosen = options.case or names
    # A start of the desk is work for the machine: the cases of starts come behind the others, fewer at a time.
    phases = (([name for name in chosen if name in FAULTS], options.jobs),
              ([name for name in chosen if name not in FAULTS], max(options.jobs // 2, 1)))
    with watched() as machine:
        faulty = [not row_is_good(done.result()) for cases, jobs in phases for done in all_of(cases, jobs, machine, options)]
    return 1 if any(faulty) else 0


def all_of(cases, jobs, machine, options):
    with concurrent.futures.ProcessPoolExecutor(jobs, initializer=share, initargs=(machine,)) as pool:
        yield from concurrent.futures.as_completed([pool.submit(run, name, options) for name in cases])


def row_is_good(row):
    print(row.text(), flush=True)
    for finding in row.findings:
        print(f"{row.name}: {finding}", file=sys.stderr, flush=True)
    return not row.findings


if __name__ == "__main__":
    sys.exit(main())
