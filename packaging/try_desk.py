#!/usr/bin/env python3
"""The desk of an installed package in the hands of an ordinary user: try_desk.py TREE PICTURES

TREE is a system in a folder, with the user "technician". The display is of this machine, so that the tree holds nothing but
what the package depends on."""

import json
import os
import re
import shutil
import signal
import subprocess
import sys
import unittest

ROOT = os.path.dirname(os.path.dirname(os.path.abspath(__file__)))
sys.path.insert(0, os.path.join(ROOT, "tools"))
from on_screen import JOURNAL, PATIENCE, Screen, need  # noqa: E402

TREE, PICTURES = sys.argv[1:3]
HOME = "/home/technician"
DATA = HOME + "/.local/share/velgrove"
SHOW = HOME + "/Tour d'été/second evening.kel"
RUNTIME = "/run/technician"
NAME = "Second Evening"
DESKTOP_ENTRY = "/usr/share/applications/velgrove.desktop"


def tree(path):
    return TREE + path


def entry_command(show):
    """What a desktop runs: without a shell, the file in the place of %f."""
    with open(tree(DESKTOP_ENTRY), encoding="utf-8") as file:
        words = re.search("^Exec=(.*)$", file.read(), re.MULTILINE)[1].split()
    return [word if word != "%f" else show for word in words if show or word != "%f"]


def as_user(*command, **env):
    """A command in the tree with the user's groups, limits and runtime folder, as behind a login."""
    settings = [f"{name}={value}" for name, value in (env | {"XDG_RUNTIME_DIR": RUNTIME}).items()]
    return ["chroot", TREE, "su", "-", "technician", "-s", "/bin/sh", "-c", 'exec env "$@"', "--", "sh", *settings, *command]


class Desk:
    def __init__(self, screen, show=""):
        self.log_name = os.path.join(PICTURES, "desk.log")
        with open(self.log_name, "wb") as log:
            self.process = subprocess.Popen(
                as_user(*entry_command(show), DISPLAY=screen.display, LC_ALL="C.UTF-8"),
                stdin=subprocess.DEVNULL, stdout=log, stderr=log)

    def log(self):
        with open(self.log_name, encoding="utf-8", errors="replace") as file:
            return file.read().splitlines()

    def pid(self):
        """Of the desk itself, which its user's session has for a child."""
        return int(subprocess.check_output(["pgrep", "--parent", str(self.process.pid)]))

    def end(self):
        if self.process.poll() is None:
            os.kill(self.pid(), signal.SIGTERM)
            self.process.wait(PATIENCE)
        return self.process.returncode


class InstalledDesk(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.screen = Screen()
        cls.addClassCleanup(cls.screen.close)
        os.makedirs(tree(RUNTIME), mode=0o700)
        cls.addClassCleanup(shutil.rmtree, tree(RUNTIME))  # as a logout does
        cls.give_to_user(RUNTIME)
        cls.box = subprocess.Popen(as_user("velgrove-box", "--quiet"), stdin=subprocess.PIPE, stdout=subprocess.PIPE,
                                   text=True)
        cls.addClassCleanup(cls.end_box)
        assert cls.box.stdout.readline().startswith("plugged in: ")
        os.makedirs(os.path.dirname(tree(SHOW)))
        cls.make_show()
        cls.give_to_user(os.path.dirname(SHOW), SHOW)

    @staticmethod
    def give_to_user(*paths):
        user = os.stat(tree(HOME))
        for path in paths:
            os.chown(tree(path), user.st_uid, user.st_gid)

    @staticmethod
    def make_show():
        """The demo under a name of its own, so that nobody takes one for the other."""
        demo = "/usr/share/velgrove/shows/demo.kel"
        show = json.loads(subprocess.check_output(["chroot", TREE, "velgrove-show", "print", "--json", demo]))
        show["ProjectName"] = NAME
        with open(tree(SHOW + ".json"), "w", encoding="utf-8") as file:
            json.dump(show, file)
        subprocess.run(["chroot", TREE, "velgrove-show", "make", SHOW + ".json", SHOW], check=True)
        os.remove(tree(SHOW + ".json"))

    @classmethod
    def end_box(cls):
        if cls.box.poll() is None:
            cls.box.communicate("quit\n", timeout=PATIENCE)

    def desk(self, show=""):
        desk = Desk(self.screen, show)
        self.addCleanup(desk.end)
        self.addCleanup(self.screen.picture, os.path.join(PICTURES, self.id().rpartition(".")[2] + ".png"))
        self.screen.wait_for_dialog("^Open Project$")
        return desk

    def ends_well(self, desk):
        self.assertEqual(desk.end(), 0)
        self.assertEqual([line for line in desk.log() if not JOURNAL.match(line)], [])

    def test_1_the_first_start_offers_the_demo(self):
        self.assertFalse(os.path.exists(tree(DATA)))
        desk = self.desk()
        self.assertTrue(os.path.exists(tree(DATA + "/demo.kel")))
        self.assertEqual([line for line in desk.log() if " box: " in line], [])
        self.screen.keys("Down", "Return")
        self.screen.wait_for("^Velgrove - ")
        self.ends_well(desk)

    def test_2_a_double_click_stands_in_the_dialog_and_one_key_opens_it(self):
        os.utime(tree("/usr/share/velgrove/graphics/leko.dxf"))  # newer than its shape, which nobody here can write
        desk = self.desk(SHOW)
        self.screen.picture(os.path.join(PICTURES, "offered.png"))
        self.screen.keys("Return")
        self.screen.wait_for("^Velgrove - " + NAME)
        need(lambda: any("DMX TX/RX" in line for line in desk.log()), "the interface isn't found")
        scheduling = subprocess.run(["ps", "-L", "-o", "cls=,rtprio=", "-p", str(desk.pid())], capture_output=True,
                                    text=True, check=True).stdout.split("\n")
        self.assertEqual(["RR", "10"] in [line.split() for line in scheduling], os.environ["REAL_TIME"] == "10")
        print("".join(f"    {line}\n" for line in desk.log()), end="")
        self.assertEqual([line for line in desk.log() if " box: " in line], [])
        self.ends_well(desk)

    def test_3_a_show_that_is_gone_is_told_and_the_dialog_comes(self):
        desk = Desk(self.screen, SHOW + ".gone")
        self.addCleanup(desk.end)
        self.screen.wait_for_dialog("^Velgrove$")
        self.screen.picture(os.path.join(PICTURES, "gone.png"))
        self.screen.keys("Return")
        self.screen.wait_for_dialog("^Open Project$")
        self.ends_well(desk)


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1], verbosity=2)
