"""What happens to the box of a desk that plays."""

import fcntl
import os
import time

from on_screen import Missing, eventually
from rig_box import FRAME, LEVELS, POLL, TRIGGER, new_terminal, terminal_at
from rig_rounds import FULL, RESUME, SILENT, TELL, UNPLUGGED, Fault

NOBODY = 65534
OWN_TERMINAL = f"/dev/pts/{100 + os.getpid() % 400}"  # so high that nobody else is given it meanwhile


# ---- The plug

def pull(stage):
    stage.pause()
    stage.kept["path"] = stage.box.path
    stage.box.unplug()


def pull_at(head):
    return lambda stage: stage.pulled_at(head)


def pull_in_answer(stage):
    """Behind a part of the answer to a reading."""
    count = stage.chance.randint(1, 511)
    stage.box.answers = lambda answer: [(0, answer[:count])]
    stage.pulled_at(LEVELS)
    stage.box.answers = None


def plug(stage):
    return stage.box.plug_in("box")


def plug_same(stage):
    back = stage.box.plug_in("box", at=stage.kept["path"])
    if stage.box.path != stage.kept["path"]:
        raise Missing("somebody else keeps the name of the terminal")
    return back


def plug_other(stage):
    """Somebody else has taken the name of the terminal meanwhile."""
    taken, _ = terminal_at(stage.kept["path"], 0.1)
    try:
        return stage.box.plug_in("box")
    finally:
        os.close(taken)


def pull_usb(stage):
    stage.pause()
    stage.box.unplug()
    name = stage.kept.setdefault("usb", "ttyUSB0")
    stage.usb.remove(name)


def plug_usb(other):
    """Under the name that it had, or under another one while a stranger has taken that."""
    def mend(stage):
        before = stage.kept["usb"]
        stranger = stage.kept.pop("stranger", None)
        if stranger:
            stage.usb.remove(stranger)
        name = before if not other else "ttyUSB%d" % (1 - int(before[-1]))
        if other:
            stage.usb.add(before, "0002", "/dev/null")
            stage.kept["stranger"] = before
        stage.kept["usb"] = name
        return stage.box.plug_in(prepare=lambda path: stage.usb.add(name, "0001", path))
    return mend


# ---- What the box says

def behave(stage):
    return stage.box.behave()


def fall_silent(stage):
    stage.pause()
    stage.box.silent = True
    stage.box.mark()


def several_answers(stage):
    """The fault lasts for some answers."""
    asked = stage.box.asked
    if not eventually(lambda: stage.box.asked >= asked + 4, 3, 0.01):
        raise Missing("the desk asks no more")


def cut_short(stage):
    count = stage.chance.randint(0, 511)
    stage.box.answers = lambda answer: [(0, answer[:count])]
    stage.kept["told"] += [SILENT] if count <= 100 else []
    several_answers(stage)


def split(stage):
    pause = stage.chance.uniform(0.001, 0.08)
    at = stage.chance.randint(1, 511)
    stage.box.answers = lambda answer: [(0, answer[:at]), (pause, answer[at:])]
    several_answers(stage)


def noise(chance, count):
    """Without the byte that is a press of the trigger, which would be obeyed."""
    return bytes(byte for byte in chance.randbytes(count) if byte != TRIGGER)


def talk_garbage(stage):
    chance = stage.chance
    stage.box.answers = lambda answer: [(0, noise(chance, chance.randint(0, 2000))), (0, answer[:chance.randint(0, 512)])]
    several_answers(stage)


def flood(stage):
    chance = stage.chance
    stage.box.flood = lambda: noise(chance, 3000)
    several_answers(stage)


# ---- A line that takes no more

def stop_reading(stage):
    stage.pause()
    stage.box.stalled = True


def pull_stalled(stage):
    stage.desk.await_words(FULL, TELL)
    stage.kept["path"] = stage.box.path
    stage.box.unplug()
    stage.box.behave()


def stall_and_pull(stage):
    stop_reading(stage)
    pull_stalled(stage)


# ---- More boxes than one

def second_comes(stage):
    """A stranger's box, which the desk must not touch; then its own goes."""
    stage.pause()
    other, path = new_terminal()
    stage.kept["other"] = other
    os.symlink(path, os.path.join(stage.desk.boxes, "other"))
    stage.pause(0.1, 0.3)
    stage.box.unplug()


def second_goes(stage):
    back = stage.box.plug_in("box")
    if not eventually(lambda: stage.box.first_frame is not None, 3 * RESUME, 0.005):
        raise Missing("output doesn't come back beside another box")
    os.remove(os.path.join(stage.desk.boxes, "other"))
    touched = read_all(stage.kept.pop("other"))
    if touched:
        raise Missing(f"the desk sent {len(touched)} bytes to a box that isn't its own")
    return back


def read_all(end):
    try:
        return os.read(end, 100)
    except OSError:
        return b""
    finally:
        os.close(end)


def plug_twice(stage):
    back = stage.box.plug_in("box", "a box too")
    stage.pause()
    stage.box.link("z box too")
    return back


# ---- Who may open it

def plug_held(stage):
    """Another program has the box when it comes back, for a while."""
    holders = []

    def hold(path):
        holders.append(os.open(path, os.O_RDWR | os.O_NOCTTY | os.O_NONBLOCK))
        fcntl.flock(holders[0], fcntl.LOCK_EX)
    stage.box.plug_in("box", prepare=hold)
    stage.pause(0.3, 0.8)
    os.close(holders[0])
    return time.monotonic()


def for_all(path):
    os.chmod(path, 0o666)


def for_none(path):
    os.chmod(path, 0)


def plug_refused(stage):
    """The rules of the machine let the user in a while after the box has come back."""
    stage.box.plug_in("box", prepare=for_none)
    stage.pause(0.3, 0.8)
    for_all(stage.box.path)
    return time.monotonic()


def stranger():
    """Somebody whom permissions hold back; the administrator isn't one."""
    return NOBODY if os.geteuid() == 0 else None


FAULTS = {
    "unplug-idle": Fault("unplugged between two exchanges", pull, plug),
    "unplug-frame": Fault("unplugged in a frame", pull_at(FRAME), plug),
    "unplug-input": Fault("unplugged when the input is asked for", pull_at(LEVELS), plug),
    "unplug-answer": Fault("unplugged in the middle of the input's levels", pull_in_answer, plug),
    "unplug-trigger": Fault("unplugged when the trigger is polled", pull_at(POLL), plug),
    "same-name": Fault("comes back under the same device name", pull, plug_same, set_up={"at": OWN_TERMINAL}),
    "other-name": Fault("comes back under another device name", pull, plug_other),
    "serial-same-name": Fault("a box with a serial number comes back", pull_usb, plug_usb(False), set_up={"usb": True}),
    "serial-other-name": Fault("a box with a serial number comes back under another device name, a stranger under its own",
                               pull_usb, plug_usb(True), set_up={"usb": True}),
    "silent": Fault("answers nothing", fall_silent, behave, told=(SILENT,), away=False),
    "short": Fault("answers too short", cut_short, behave, told=(), away=False),
    "split": Fault("answers in two pieces", split, behave, told=(), away=False),
    "garbage": Fault("answers garbage, and parts of answers", talk_garbage, behave, told=(), may=(SILENT,), away=False),
    "flood": Fault("sends garbage without end", flood, behave, told=(), may=(SILENT,), away=False),
    "stalled": Fault("takes no more bytes, and later again", stop_reading, behave, told=(FULL,), may=(SILENT,)),
    "stalled-unplug": Fault("takes no more bytes, and is unplugged", stall_and_pull, plug, told=(FULL, UNPLUGGED),
                            may=(SILENT,)),
    "second-box": Fault("a second box appears, and the first one goes and comes back", second_comes, second_goes),
    "same-box-twice": Fault("one box under three names", pull, plug_twice, set_up={"links": ("a box too", "box")}),
    "held": Fault("comes back while another program holds it", pull, plug_held),
    "refused": Fault("comes back before the user is let in", pull, plug_refused,
                     set_up={"user": stranger(), "prepare": for_all}),
}
