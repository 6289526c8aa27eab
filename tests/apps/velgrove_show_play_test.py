"""velgrove-show plays on the wire: the real program against the real virtual box, and everything that goes wrong."""

import os
import pty
import signal
import subprocess
import termios
import threading
import time
import tty
import unittest

from programs import InAFolder, frames_of, lit, program, show_program
from show_bytes import show
from together import Together
from virtual_box import Box, eventually

START_UP = 15.0  # seconds until a desk that comes up in five counts as stuck
LONGEST_PLAY = 40.0
RATE = 1000 / 30  # frames a second
GAP = 500  # ms without a frame that are a loss and no busy machine
RESUMES_WITHIN = 4.0  # seconds, twice what operators are promised

CUES = show(xy=[{"number": 1, "up": 1, "down": 1, "levels": {1: 250, 2: 1}}, {"number": 2, "levels": {1: 100, 3: 77}},
                {"number": 3, "levels": {2: 1, 12: 255, 40: 9}}], ab=[{"number": 1, "levels": {5: 50}}])
UP = "interface: DMX TX/RX"
SILENT = "interface: The interface does not answer."
LOST = "interface: The interface is unplugged. Output goes on when it is back."
WELL = "interface: all is well again"


class Desk:
    """A show being played, and what it says while it plays."""

    def __init__(self, folder, *arguments, stdin=""):
        environment = dict(os.environ, XDG_RUNTIME_DIR=folder, XDG_CONFIG_HOME=os.path.join(folder, "config"))
        self.process = subprocess.Popen([program("velgrove-show"), "play", *map(str, arguments)], env=environment,
                                        stdin=subprocess.PIPE, stdout=subprocess.PIPE, stderr=subprocess.PIPE,
                                        encoding="utf-8", errors="surrogateescape")
        self.process.stdin.write(stdin)
        self.process.stdin.close()
        self.lines = []
        self.listener = threading.Thread(target=lambda: self.lines.extend(map(str.rstrip, self.process.stderr)),
                                         daemon=True)
        self.listener.start()

    def says(self, line, times=1):
        return eventually(lambda: self.lines.count(line) >= times or self.process.poll() is not None, START_UP) and (
            self.lines.count(line) >= times)

    def end(self, how=signal.SIGTERM):
        self.process.send_signal(how)
        return self.end_by_itself()

    def end_by_itself(self):
        code = self.process.wait(LONGEST_PLAY)
        self.listener.join(LONGEST_PLAY)
        output = self.process.stdout.read()
        self.process.stdout.close(), self.process.stderr.close()
        return code, output

    def kill(self):
        if self.process.poll() is None:
            self.end(signal.SIGKILL)


class Play(InAFolder):
    def box(self, name="box"):
        box = Box(self.folder, "--quiet", "--name", name, "--frames", self.path(name + ".frames")).started()
        self.addCleanup(lambda: box.process.poll() is None and box.end(signal.SIGKILL))
        return box

    def play(self, script="", *arguments, data=CUES):
        desk = Desk(self.folder, self.write("show.kel", data), "-", *arguments, stdin=script)
        self.addCleanup(desk.kill)
        return desk

    def frames(self, name="box"):
        """The frames that the box has written down; it does so once a second."""
        text = self.read(name + ".frames").decode()
        return frames_of(text[:text.rfind("\n") + 1])

    def all_frames(self, box, name="box"):
        """All whole frames that a box has got until it ends, which it does here, in good order."""
        code, output, _ = box.end()
        self.assertEqual(code, 0)
        self.assertIn("garbage bytes 0\nhalf frames 0\n", output)
        return self.frames(name)

    def shows(self, levels):
        """Whether these levels come to the wire before long."""
        return eventually(lambda: self.frames() and lit(self.frames()[-1][1]) == levels)

    def comes_up(self, desk):
        self.assertTrue(desk.says(UP), desk.lines)
        self.assertTrue(eventually(self.frames))

    def frames_go_on(self, seconds=1.0):
        """Frames at about their rate for a while; loosely, for machines that are busy otherwise."""
        before = len(self.frames())
        self.assertTrue(eventually(lambda: len(self.frames()) > before))
        begin = self.frames()[-1][0]
        end = begin + 1000 * seconds
        self.assertTrue(eventually(lambda: self.frames()[-1][0] >= end))
        self.assertGreater(sum(begin < ms <= end for ms, _ in self.frames()), 0.6 * RATE * seconds)


class Shows(Play):
    def test_what_reaches_the_box_is_what_a_rehearsal_prints(self):
        box = self.box()
        script = "0 plus\n100 manual 7 1\n200 go\n500 ab go\n1500 go\n1600 manual 9 33\n"
        code, output = self.play(script).end_by_itself()
        rehearsed = show_program("rehearse", self.path("show.kel"), self.write("script", script))
        self.assertEqual((code, output, rehearsed.code), (0, "", 0))
        played, expected = self.all_frames(box), frames_of(rehearsed.output)
        self.assertEqual(lit(played[-1][1]), {2: 2, 5: 50, 9: 33, 12: 255})
        self.assertEqual(lit(played[-1][1]), lit(expected[-1][1]))
        fading = {levels[0] for _, levels in played}
        self.assertGreater(len(fading), 10, "the fade was seen on the way")
        self.assertEqual(min(fading), 0)
        self.assertEqual(max(fading), 250)

    def test_an_end_is_kept_though_commands_lie_behind_it(self):
        box = self.box()
        code, _ = self.play("0 manual 1 9\n60000 manual 1 10\n", "--until", 1500).end_by_itself()
        frames = self.all_frames(box)
        self.assertEqual(code, 0)
        self.assertGreater(len(frames), 0.6 * RATE * 1.5)
        self.assertEqual(lit(frames[-1][1]), {1: 9})

    def test_a_request_to_end_is_met_in_good_order_with_a_whole_last_frame(self):
        self.end_by(signal.SIGTERM)

    def test_an_interrupt_ends_it_in_the_same_way(self):
        self.end_by(signal.SIGINT)

    def test_a_closed_terminal_ends_it_in_the_same_way(self):
        self.end_by(signal.SIGHUP)

    def end_by(self, how):
        box = self.box()
        desk = self.play("0 xy plus\n0 go\n", "--until", 60000)
        self.comes_up(desk)
        self.assertEqual(desk.end(how), (0, ""))
        self.assertRegex(desk.lines[-1], r"^sent \d+, dropped 0, swallowed 0 blocks$")
        self.assertNotEqual(self.all_frames(box), [])

    def test_a_signal_ends_the_start_up_too(self):
        box = self.box()
        desk = self.play("", "--until", 60000)
        self.assertTrue(desk.says("interface: Initializing USB interface"))
        begun = time.monotonic()
        self.assertEqual(desk.end()[0], 0)
        self.assertLess(time.monotonic() - begun, 3, "the waits of the start-up are cut short")
        self.assertEqual(self.all_frames(box), [])

    def test_what_is_not_the_desks_to_do_is_noted(self):
        box = self.box()
        desk = self.play("0 input 1 5\n0 trigger\n0 xy stage 9\n0 manual 1 5\n", "--until", 300)
        self.assertEqual(desk.end_by_itself()[0], 0)
        self.assertEqual([line.split(" ", 1)[1] for line in desk.lines if " note: " in line], [
            "note: input is the box's own on a real line",
            "note: trigger is the box's own on a real line",
            "note: XY - CueList has no row 9",
        ])
        self.assertEqual(lit(self.all_frames(box)[-1][1]), {1: 5})

    def test_what_the_operator_edits_plays_at_once(self):
        box = self.box()
        script = ("0 manual 7 70\n500 xy record\n600 manual 7 0\n"
                  "700 xy loop one 3 1\n800 xy loop 2 3 1\n900 go\n1200 effect run 5\n1300 go\n")
        desk = self.play(script)
        self.assertEqual(desk.end_by_itself()[0], 0)
        boxes = [line.split(" ", 2)[2] for line in desk.lines if " box " in line]
        self.assertEqual(boxes, ['"SYSTEM ERROR" "Application may close, Would you like to continue?"',
                                 '"Velgrove" "Effect 5 not registered"'])
        self.assertEqual(lit(self.all_frames(box)[-1][1]), {7: 70})

    def test_a_row_that_cannot_be_selected_ends_it_in_good_order(self):
        box = self.box()
        desk = self.play("0 manual 1 9\n500 xy select 9\n600 manual 1 10\n", "--until", 60000)
        self.assertEqual(desk.end_by_itself(), (2, ""))
        self.assertEqual(desk.lines[-1], "velgrove-show: standard input: line 2: XY - CueList has no row 9")
        self.assertRegex(desk.lines[-2], r"^sent \d+, dropped 0, swallowed 0 blocks$")
        self.assertEqual(lit(self.all_frames(box)[-1][1]), {1: 9})

    def test_after_1000_boxes_it_ends_with_words(self):
        self.box()
        desk = self.play("0 ab go\n" * 1200, data=show())
        self.assertEqual(desk.end_by_itself()[0], 1)
        self.assertEqual(sum("At end of show" in line for line in desk.lines), 1000)
        self.assertIn("velgrove-show: too many boxes: the run ends here", desk.lines)


class Boxes(Play):
    def test_a_trigger_and_received_levels_come_from_the_box(self):
        box = self.box()
        box.command("input 6 66")
        desk = self.play("0 mode fixtures\n", "--until", 60000, data=show(xy=[{"number": 1, "levels": {1: 10}}]))
        self.comes_up(desk)
        self.assertTrue(self.shows({6: 66}))
        box.command("trigger")
        self.assertTrue(self.shows({1: 10, 6: 66}))

    def test_output_goes_on_when_the_plug_is_back_and_each_loss_is_told_once(self):
        box = self.box()
        desk = self.play("0 manual 1 9\n", "--until", 60000)
        self.comes_up(desk)
        for loss in (1, 2):
            unplugged = time.monotonic()
            box.command("unplug")
            self.assertTrue(desk.says(LOST, loss), desk.lines)
            time.sleep(1)
            box.command("plug")
            away = time.monotonic() - unplugged
            self.assertTrue(desk.says(WELL, loss), desk.lines)
            self.assertTrue(eventually(lambda: len(self.gaps()) == loss))
            self.assertLess(self.gaps()[-1] / 1000, away + RESUMES_WITHIN)
            self.frames_go_on()
        self.assertEqual(desk.lines.count(LOST), 2)
        self.assertEqual(lit(self.frames()[-1][1]), {1: 9})
        self.assertEqual(desk.end()[0], 0)

    def gaps(self):
        times = [ms for ms, _ in self.frames()]
        return [after - before for before, after in zip(times, times[1:]) if after - before > GAP]

    def test_a_box_that_vanishes_during_the_start_up_is_waited_for(self):
        box = self.box()
        desk = self.play("0 manual 1 9\n", "--until", 60000)
        self.assertTrue(desk.says("interface: Getting Version"))
        self.assertTrue(desk.says("interface: Velgrove interface box, virtual 1.00"))
        box.command("unplug")
        self.assertTrue(desk.says(LOST), desk.lines)
        box.command("plug")
        self.assertTrue(self.shows({1: 9}))

    def test_a_silent_box_holds_up_no_frames(self):
        box = self.box()
        box.command("silent on")
        desk = self.play("0 mode fixtures\n", "--until", 60000)
        self.comes_up(desk)
        self.frames_go_on(2.0)
        self.assertTrue(desk.says(SILENT), desk.lines)
        box.command("silent off")
        self.assertTrue(desk.says(WELL), desk.lines)
        self.assertEqual(desk.lines.count(SILENT), 1)
        self.assertEqual(desk.end()[0], 0)

    def test_a_box_that_takes_nothing_is_told_and_output_goes_on_behind(self):
        box = self.box()
        desk = self.play("", "--until", 60000)
        self.comes_up(desk)
        box.command("stall on")
        self.assertTrue(desk.says("interface: The interface takes no more data."), desk.lines)
        box.command("stall off")
        self.assertTrue(desk.says(WELL), desk.lines)
        self.frames_go_on()
        self.assertEqual(desk.end()[0], 0)
        self.assertIn("garbage bytes 0\n", box.end()[1])

    def test_short_and_split_replies_are_taken_as_far_as_they_go(self):
        box = self.box()
        for command in ("input 1 11", "input 150 15", "split on", "short 101"):
            box.command(command)
        desk = self.play("0 mode fixtures\n", "--until", 60000)
        self.comes_up(desk)
        self.assertTrue(self.shows({1: 11}), "channels behind the reply stay")
        box.command("short 3")
        self.assertTrue(desk.says(SILENT), desk.lines)
        self.frames_go_on()
        self.assertEqual(desk.end()[0], 0)


class Ports(Play):
    def set_port(self, port):
        os.makedirs(self.path("config/velgrove"))
        return self.write("config/velgrove/settings.toml", f"[Velgrove.Interface]\nPort = {port}\n")

    def test_without_a_box_it_ends_with_words(self):
        desk = self.play()
        self.assertEqual(desk.end_by_itself(), (1, ""))
        self.assertEqual(desk.lines, ["velgrove-show: no interface box is attached"])

    def test_a_port_that_another_desk_holds_is_left_alone(self):
        box = self.box()
        first, second = self.play("0 manual 1 9\n", "--until", 3000), self.play("0 manual 1 9\n", "--until", 3000)
        codes = sorted([first.end_by_itself()[0], second.end_by_itself()[0]])
        self.assertEqual(codes, [0, 1])
        loser = first if first.process.returncode == 1 else second
        self.assertIn(f"interface: {box.link()}: held by another program", loser.lines)
        self.assertIn("garbage bytes 0\nhalf frames 0\n", box.end()[1])

    def test_a_port_set_by_hand_is_used_and_no_other(self):
        chosen, other = self.box("a"), self.box("z")
        self.set_port(f"'{os.readlink(os.path.join(self.folder, 'velgrove/boxes/a'))}'")
        self.assertEqual(self.play("0 manual 1 9\n").end_by_itself()[0], 0)
        self.assertEqual(lit(self.all_frames(chosen, "a")[-1][1]), {1: 9})
        self.assertEqual(self.all_frames(other, "z"), [])

    def test_a_port_set_by_hand_that_is_not_there_is_named(self):
        self.box()
        self.set_port("'/no/such/port'")
        desk = self.play()
        self.assertEqual(desk.end_by_itself(), (1, ""))
        self.assertIn("interface: /no/such/port: not there", desk.lines)

    def test_damaged_settings_are_set_aside_with_words_and_the_box_is_found(self):
        box = self.box()
        settings = self.set_port("/dev/ttyUSB0")
        desk = self.play("0 manual 1 9\n")
        self.assertEqual(desk.end_by_itself()[0], 0)
        self.assertRegex(desk.lines[0], rf"^velgrove-show: The settings in {settings} are damaged \(line 2: .*\)\. "
                         rf"They were set aside as {settings}\.damaged; the defaults are used\.$")
        self.assertIn("ttyUSB0", self.read("config/velgrove/settings.toml.damaged").decode())
        self.assertEqual(lit(self.all_frames(box)[-1][1]), {1: 9})

    def test_garbage_from_the_port_holds_up_no_frames(self):
        far, near = pty.openpty()
        tty.setraw(near, termios.TCSANOW)
        self.set_port(f"'{os.ttyname(near)}'")
        received = bytearray()
        talker = threading.Thread(target=self.babble, args=(far, received), daemon=True)
        talker.start()
        desk = self.play("0 manual 1 9\n", "--until", 2000, data=show())
        code, _ = desk.end_by_itself()
        os.close(near)
        talker.join(START_UP)
        self.assertEqual(code, 0)
        self.assertTrue(all(line.isprintable() for line in desk.lines), desk.lines)
        frame = bytes([1, 2, 0, 0, 9]) + bytes(511)
        self.assertGreater(bytes(received).count(frame), 0.6 * RATE)

    @staticmethod
    def babble(far, received):
        """Answers every byte string with something that means nothing, until the line is let go."""
        noise = bytes(range(128, 256)) + b"\0\1\2\x1b[2J"
        try:
            while piece := os.read(far, 4096):
                received += piece
                os.write(far, noise)
        except OSError:
            os.close(far)


def load_tests(loader, tests, _):
    return Together(case for suite in tests for case in suite)


if __name__ == "__main__":
    unittest.main()
