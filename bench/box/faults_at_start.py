"""What happens to the box while the desk starts: each round is a start. What is used of the machine is asked of no desk
that ends with its round."""

import concurrent.futures
import contextlib
import random
import threading
import time

from faults_in_play import for_none, noise, stranger
from rig_box import VERSION
from rig_desk import ASKING, STARTED, WELL, Desk, Missing, eventually
from rig_rounds import FLOW, RESUME, SILENT, UNPLUGGED, Fault, Row, judged, stand_up

AT_A_TIME = 2  # desks: a start is work for the machine
MAKING = threading.Lock()  # a program that is being copied can't be run, nor may another start inherit the copy


def starts_and_loses(options, chance, shown):
    """Unplugged when the version is asked for, or in the middle of its answer."""
    with starting(options) as desk:
        count = chance.randint(0, 36)
        desk.box.answers = lambda answer: [(0, answer[:count])]
        desk.box.pull_at = VERSION
        desk.await_words(UNPLUGGED)
        time.sleep(chance.uniform(0, 0.3))
        desk.box.answers = None
        back = desk.box.plug_in("box")
        if not eventually(lambda: desk.box.first_frame, 3 * RESUME, 0.005):
            raise Missing("no output")
        resumed = desk.box.first_frame - back
        if resumed > RESUME:
            raise Missing(f"output comes after {resumed:.2f} s")
        eventually(lambda: WELL in desk.journal.new(), 1)
        finish(desk, STARTED, [UNPLUGGED, WELL], shown, resumed)


def starts_on_a_bad_box(options, chance, shown):
    """It says nothing, too little, too much or rubbish until the desk stands, and is a good one then."""
    with starting(options) as desk:
        bad = chance.choice(("silent", "short", "split", "garbage"))
        desk.box.answers = {
            "silent": lambda answer: [],
            "short": lambda answer: [(0, answer[:10])],
            "split": lambda answer: [(0, answer[:10]), (0.05, answer[10:])],
            "garbage": lambda answer: [(0, noise(chance, 500))]}[bad]
        desk.await_words(STARTED)
        if not eventually(lambda: desk.box.first_frame, RESUME, 0.005):
            raise Missing(f"no output on a box that is {bad}")
        time.sleep(chance.uniform(0.3, 0.5))
        desk.box.answers = None
        accused = bad not in ("garbage", "split")
        eventually(lambda: WELL in desk.journal.new(), 1 if accused else 0)
        finish(desk, STARTED, [SILENT, WELL] if accused else [], shown)


def starts_and_is_refused(options, chance, shown, words="no permission to open it", **how):
    with starting(options, **how) as desk:
        desk.await_words(words)
        finish(desk, ASKING, [f"{desk.boxes}/box: {words}"], shown)


def starts_and_finds_nothing(options, chance, shown):
    """Unplugged behind its finding and before its opening."""
    with starting(options) as desk:
        desk.await_words("starting virtual comport")
        time.sleep(chance.uniform(0, 1.5))
        desk.box.unplug()
        desk.await_words("not there")
        finish(desk, ASKING, [f"{desk.boxes}/box: not there"], shown)


@contextlib.contextmanager
def starting(options, **how):
    with MAKING:
        desk = Desk(options.programs, **how).start()
    try:
        yield desk
    finally:
        desk.close()


def finish(desk, behind, last_words, shown, resumed=None):
    """The desk tells only that behind a step of its start, and ends at once and in good order."""
    time.sleep(0.3)
    told = desk.journal.take()
    told = told[told.index(behind) + 1:]
    shown.obeyed = desk.ends()
    shown.messages = len([line for line in told if line != WELL])
    shown.halves = desk.box.wire.faults if desk.own_box else []
    shown.resumed = [] if resumed is None else [resumed]
    if told != last_words:
        raise Missing(f"told {told}")


STARTS = {
    "start-bad-box": ("the box is silent, short, split or garbage at the start", starts_on_a_bad_box),
    "unplug-version": ("unplugged when the version is asked for", starts_and_loses),
    "unplug-found": ("unplugged between finding and opening: output waits for the next start", starts_and_finds_nothing),
    "refused-start": ("refused at the start: output waits for the next start",
                      lambda *args: starts_and_is_refused(*args, user=stranger(), prepare=for_none)),
}


def start_again(name, options):
    """Some desks at a time."""
    row = Row(name=name)
    chance = random.Random(f"{options.seed} {name}")
    with contextlib.ExitStack() as ends:
        try:
            work, look = (STARTS[name][1], lambda shown: None) if name in STARTS else beside_another(ends, options, row)
            pool = ends.enter_context(concurrent.futures.ThreadPoolExecutor(AT_A_TIME))
            for done in [pool.submit(start_judged, work, options, random.Random(chance.random()))
                         for _ in range(options.times)]:
                row.take(done.result())
                look(row)
        except Missing as missing:
            row.findings.append(str(missing))
    row.judge()
    return row


def start_judged(work, options, chance):
    return judged(lambda shown: work(options, chance, shown))


def beside_another(ends, options, row):
    """A desk that plays; the others come for its box, and each says who has it."""
    stage = stand_up(ends, Fault("", None, None), options, random.Random(options.seed))
    desk, box = stage.desk, stage.box
    row.halves = box.wire.faults
    since = [box.mark()]

    def look(shown):
        desk.press(on_wire=True)
        told, gap = desk.journal.take(), box.longest_gap
        since[0] = box.mark()
        shown.resumed.append(gap)
        if told or gap > FLOW:
            raise Missing(f"the desk that plays is disturbed: no frame for {gap:.2f} s, told {told}")

    def undisturbed(row):
        row.take(judged(look, since[0]), rounds=0)
        row.used.append(desk.uses())
    return lambda *args: starts_and_is_refused(*args, words="held by another program", box=box), undisturbed
