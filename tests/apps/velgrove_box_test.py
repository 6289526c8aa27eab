"""The virtual box as a whole: the real program, a desk's end of its terminal, and the faults on command."""

import errno
import fcntl
import os
import select
import shutil
import signal
import tempfile
import termios
import time
import tty
import unittest

from programs import NOBODY, program
from virtual_box import PATIENCE, Box, eventually

FRAME_HEAD = bytes([1, 2, 0, 0])
READ_LEVELS = bytes([1, 2, 3, 1, 4, 2, 1])
READ_VERSION = bytes([1, 255, 1, 255])


class Desk:
    """A desk's end of the line, opened as the desk opens it."""

    def __init__(self, path):
        self.descriptor = os.open(path, os.O_RDWR | os.O_NOCTTY | os.O_NONBLOCK)
        tty.setraw(self.descriptor, termios.TCSANOW)

    def close(self):
        os.close(self.descriptor)

    def send(self, data):
        return os.write(self.descriptor, data)

    def receive(self, count):
        data = b""
        end = time.monotonic() + PATIENCE
        while len(data) < count and time.monotonic() < end:
            if select.select([self.descriptor], [], [], end - time.monotonic())[0]:
                data += os.read(self.descriptor, count - len(data))
        return data

    def one_reading(self):
        select.select([self.descriptor], [], [], PATIENCE)
        return os.read(self.descriptor, 4096)

    def ask(self, command, count):
        self.send(command)
        return self.receive(count)


class VirtualBox(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.runtime = folder.name

    def start(self, *arguments):
        box = Box(self.runtime, "--quiet", *arguments).started()
        self.addCleanup(lambda: box.process.poll() is None and box.end(signal.SIGKILL))
        return box

    def open(self, box, name="box"):
        return Desk(box.link(name))

    def test_recorded_frames_carry_all_levels_and_rising_times(self):
        path = os.path.join(self.runtime, "frames")
        box = self.start("--frames", path)
        desk = self.open(box)
        first, second = bytes([2, 1] * 256), bytes(range(256)) * 2
        for piece in (FRAME_HEAD, first, FRAME_HEAD + second[:100], second[100:]):
            desk.send(piece)
        desk.ask(READ_VERSION, 36)  # behind it both frames are in
        code, output, _ = box.end()
        with open(path) as file:
            lines = [line.split(" ") for line in file.read().splitlines()]
        self.assertEqual(code, 0)
        self.assertEqual([[int(level) for level in line[1:]] for line in lines], [list(first), list(second)])
        self.assertLessEqual(float(lines[0][0]), float(lines[1][0]))
        self.assertRegex(lines[0][0], r"^\d+\.\d{3}$")
        self.assertIn("frames 2\n", output)
        self.assertIn("garbage bytes 0\nhalf frames 0\n", output)

    def test_once_a_second_a_line_tells_rate_gap_and_changed_channels(self):
        box = Box(self.runtime).started()
        desk = self.open(box)
        levels = bytearray(512)
        levels[4] = 128
        desk.send(FRAME_HEAD + levels)
        desk.send(FRAME_HEAD + levels)
        line = box.process.stdout.readline()
        self.assertRegex(line, r"^[\d.]+ frames/s, longest gap [\d.]+ ms, 5=128\n$")
        self.assertEqual(box.end()[0], 0)

    def test_an_unplugged_box_is_gone_for_the_desk_and_comes_back_under_the_same_name(self):
        box = self.start()
        desk = self.open(box)
        desk.send(FRAME_HEAD + bytes(100))
        box.obeyed()
        box.command("unplug")
        self.assertIn("cut off in the middle", box.process.stderr.readline())
        self.assertEqual(box.process.stdout.readline(), "unplugged\n")
        self.assertFalse(os.path.lexists(box.link()))
        self.assertEqual(desk.one_reading(), b"")
        with self.assertRaises(OSError) as lost:
            desk.send(b"\1")
        self.assertEqual(lost.exception.errno, errno.EIO)
        box.command("plug")
        self.assertIn("plugged in: ", box.process.stdout.readline())
        again = self.open(box)
        self.assertEqual(len(again.ask(READ_VERSION, 36)), 36)
        desk.close()

    def test_a_desk_may_close_and_open_again_and_the_box_rests_meanwhile(self):
        box = self.start()
        desk = self.open(box)
        desk.send(FRAME_HEAD + bytes(100))
        desk.close()
        self.assertIn("cut off in the middle", box.process.stderr.readline())
        before = self.processor_time(box)
        time.sleep(0.3)
        self.assertLess(self.processor_time(box) - before, 0.1)
        again = self.open(box)
        again.send(FRAME_HEAD + bytes(512))
        self.assertEqual(len(again.ask(READ_VERSION, 36)), 36)
        self.assertIn("frames 1\n", (output := box.end()[1]))
        self.assertIn("half frames 1\n", output)

    @staticmethod
    def processor_time(box):
        with open(f"/proc/{box.process.pid}/stat") as file:
            fields = file.read().rsplit(")", 1)[1].split()
        return (int(fields[11]) + int(fields[12])) / os.sysconf("SC_CLK_TCK")

    def test_a_desk_that_dies_with_the_port_held_shuts_out_nobody(self):
        box = self.start_as_plain_user()
        desk = self.open(box)
        fcntl.ioctl(desk.descriptor, termios.TIOCEXCL)
        desk.close()
        self.assertIn("plugging in anew", box.process.stderr.readline())
        self.assertIn("plugged in: ", box.process.stdout.readline())
        self.assertEqual(len(self.open(box).ask(READ_VERSION, 36)), 36)

    def start_as_plain_user(self):
        """The administrator is never shut out of a terminal, so a box of the administrator wouldn't notice."""
        if os.geteuid() != 0:
            return self.start()
        os.chown(self.runtime, NOBODY, NOBODY)
        copy = shutil.copy(program("velgrove-box"), self.runtime)
        box = Box(self.runtime, "--quiet", copy=copy, user=NOBODY, group=NOBODY, extra_groups=[]).started()
        self.addCleanup(lambda: box.process.poll() is None and box.end(signal.SIGKILL))
        return box

    def test_two_boxes_stand_side_by_side_and_a_name_is_given_once(self):
        left, right = self.start("--name", "left"), self.start("--name", "right")
        left.command("input 1 10")
        right.command("input 1 20")
        left.obeyed(), right.obeyed()
        self.assertEqual(self.open(left, "left").ask(READ_LEVELS, 1), b"\x0a")
        self.assertEqual(self.open(right, "right").ask(READ_LEVELS, 1), b"\x14")
        code, _, complaint = Box(self.runtime, "--name", "left").end_by_itself()
        self.assertEqual(code, 1)
        self.assertIn("a box of this name is running", complaint)
        self.assertEqual(len(self.open(left, "left").ask(READ_VERSION, 36)), 36)

    def test_the_registration_goes_with_the_box_however_it_ends(self):
        for how in (signal.SIGINT, signal.SIGTERM, signal.SIGHUP, "quit"):
            box = self.start()
            self.assertTrue(os.path.exists(box.link()))
            if how == "quit":
                box.command("quit")
                code = box.end_by_itself()[0]
            else:
                code = box.end(how)[0]
            self.assertEqual((code, os.listdir(box.folder)), (0, []), how)

    def test_what_a_crashed_box_left_is_replaced_even_if_its_terminal_has_a_new_owner(self):
        box = self.start()
        box.end(signal.SIGKILL)
        stranger, stranger_end = os.openpty()
        os.unlink(box.link())
        os.symlink(os.ttyname(stranger_end), box.link())
        box = self.start()
        self.assertNotEqual(os.readlink(box.link()), os.ttyname(stranger_end))
        self.assertEqual(box.end()[0], 0)
        os.close(stranger_end), os.close(stranger)

    def test_the_end_of_standard_input_does_not_end_the_box(self):
        box = self.start()
        box.process.stdin.write("input 1 9")  # without an end of line
        box.process.stdin.close()
        desk = self.open(box)
        self.assertTrue(eventually(lambda: desk.ask(READ_LEVELS, 512)[0] == 9))
        box.process.stdin = None
        self.assertEqual(box.end()[0], 0)

    def test_folders_are_shut_to_others(self):
        box = self.start()
        for folder in (box.folder, os.path.dirname(box.folder)):
            self.assertEqual(os.stat(folder).st_mode & 0o7777, 0o700)

    def test_wrong_usage_ends_with_2_and_words(self):
        for arguments in (["--nonsense"], ["box"], ["--name"], ["--name", "a/b"], ["--name", ".."]):
            code, output, complaint = Box(self.runtime, *arguments).end_by_itself()
            self.assertEqual((code, output), (2, ""), arguments)
            self.assertIn("velgrove-box: ", complaint)
        code, output, _ = Box(self.runtime, "--help").end_by_itself()
        self.assertEqual(code, 0)
        self.assertIn("unplug", output)
        self.assertEqual(Box(self.runtime, "--frames", "/no/such/folder").end_by_itself()[0], 1)

if __name__ == "__main__":
    unittest.main()
