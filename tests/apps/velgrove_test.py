"""The desk itself on a virtual display, with keys, mouse and a virtual box."""

import json
import os
import shutil
import sys
import time
import unittest

import show_bytes
from programs import NOBODY, program, show_program

sys.path.insert(0, os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", "..", "tools"))
from on_screen import DEMO, Booth, Screen, need  # noqa: E402

FRONT, SKY = 3, 31  # channels of the demo show
PRESET_SKY, COURT_FRONT = 90, 184  # their levels in the first cue and in the court
BEFORE_HOUSE_OUT = 2  # rows below the first; the court comes next but one
AT_ONCE = 1.0  # seconds in which the desk must end


def setUpModule():
    global screen
    screen = Screen()
    unittest.addModuleCleanup(screen.close)


def content(show):
    """What the operator made: fixtures and cues, without the levels of the moment."""
    tree = json.loads(show_program("print", "--json", show).output)
    fixtures = [{name: value for name, value in fixture.items() if name in ("FixtureName", "Channel", "x", "y")}
                for fixture in tree["colViews"][0]["colFixtures"]]
    return fixtures, tree["colQueueData"]


class Desk(unittest.TestCase):
    """A desk and what is tested on it."""

    def booth(self, **how):
        self.desk = Booth(screen, os.path.dirname(program("velgrove")), **how)
        self.addCleanup(self.desk.end)
        self.addCleanup(screen.picture, self.id().rpartition(".")[2] + ".png")  # how it ended, for whoever wonders
        return self.desk

    def go(self, which=1):
        """Go of the frame (0), of XY (1) or of AB (2)."""
        screen.click(self.desk.go_buttons()[which].middle)

    def since(self, ms, channel):
        """What a channel has shown on the line since then."""
        return [levels[channel - 1] for at, levels in self.desk.frames() if at >= ms]

    def ends_by_itself(self):
        need(lambda: self.desk.desk.poll() is not None, "the desk doesn't end")
        self.assertEqual(self.desk.desk.returncode, 0, self.desk.complaints())
        self.assertEqual(self.desk.complaints(), "")

    def ends_by_a_signal(self):
        start = time.monotonic()
        self.desk.desk.terminate()
        self.ends_by_itself()
        self.assertLess(time.monotonic() - start, AT_ONCE)

    def box_saw_whole_frames(self):
        report = dict(line.rsplit(" ", 1) for line in self.desk.end_box().splitlines() if line[-1].isdigit())
        self.assertEqual((report["half frames"], report["garbage bytes"]), ("0", "0"))


class WithABox(Desk):
    def test_an_evening_is_played_saved_under_another_name_and_ended(self):
        desk = self.booth()
        desk.start()
        desk.wait_for_open_dialog()
        desk.open_show()
        start = desk.box_time()
        self.go(0)
        desk.wait_for_fade()
        desk.wait_fades_over()
        need(lambda: desk.level(SKY) >= PRESET_SKY - 2, "the first look doesn't come on the line")
        rise = self.since(start, SKY)
        self.assertEqual(rise, sorted(rise))
        self.assertGreater(len(set(rise)), PRESET_SKY // 2)  # a fade, not a jump

        mark = desk.next_rows()[0]
        two_rows = 2 * (mark.bottom - mark.top + 1)
        screen.drag(mark.middle, (mark.middle[0], mark.middle[1] + two_rows))
        need(lambda: desk.next_rows()[0].top == mark.top + two_rows, "the next mark doesn't follow the mouse")
        self.go()
        desk.wait_for_fade()

        copy = os.path.join(desk.data, "second evening.kel")
        screen.keys("alt+f", "a")
        screen.wait_for_dialog("^Save As$")
        screen.type(copy)
        screen.keys("Return")
        need(lambda: os.path.exists(copy), "the copy isn't there")

        desk.wait_fades_over()
        need(lambda: desk.level(FRONT) >= COURT_FRONT - 2, "the cue under the dragged mark doesn't come on the line")
        screen.keys("alt+f", "x")
        screen.wait_for_dialog("^Exiting[.]")
        screen.keys("Return")
        screen.wait_for_dialog("^Velgrove$")
        screen.keys("Return")
        self.ends_by_itself()
        self.assertEqual(content(copy), content(DEMO))
        self.box_saw_whole_frames()

    def test_a_box_that_is_unplugged_in_a_fade_gets_its_light_again(self):
        desk = self.booth()
        desk.start()
        desk.wait_for_open_dialog()
        desk.open_show()
        for _ in range(BEFORE_HOUSE_OUT):
            screen.click(desk.advance_button())
            time.sleep(0.3)
        self.go()
        desk.wait_for_fade()
        desk.box.stdin.write("unplug\n")
        self.assertEqual(desk.box.stdout.readline(), "unplugged\n")
        desk.wait_fades_over()
        self.go()  # the operator plays on, in the dark
        desk.wait_for_fade(lists=2)
        plugged = desk.box_time()
        desk.box.stdin.write("plug\n")
        need(lambda: any(self.since(plugged, FRONT)), "no light behind the plug")
        rise = self.since(plugged, FRONT)
        self.assertGreater(rise[0], 0)  # the fade has run on meanwhile
        self.assertGreater(desk.level(FRONT), rise[0])
        self.ends_by_a_signal()
        self.box_saw_whole_frames()


class WithoutABox(Desk):
    def test_without_a_show_the_desk_stands_with_its_tools_at_rest_until_one_is_opened(self):
        desk = self.booth(box=False)
        desk.start()
        desk.wait_for_open_dialog()
        screen.keys("Escape")
        screen.wait_gone("^Open Project$")
        self.assertTrue(desk.resting_tools())
        self.assertIsNone(screen.window("^Velgrove - "))
        screen.keys("alt+f", "o")
        desk.wait_for_open_dialog()
        desk.open_show()
        self.assertFalse(desk.resting_tools())
        self.ends_by_a_signal()

    def test_what_cannot_be_read_is_told_and_the_rest_opens(self):
        desk = self.booth(box=False, user=NOBODY if os.geteuid() == 0 else None)
        with open(DEMO, "rb") as file:
            demo = file.read()
        last_cue = demo.index(show_bytes.text("") + show_bytes.text("House up"))
        for name, size in (("1 damaged.kel", last_cue), ("2 gone.kel", len(demo)), ("3 locked.kel", len(demo))):
            with open(os.path.join(desk.data, name), "wb") as file:
                file.write(demo[:size])
        os.makedirs(os.path.join(desk.data, "closed"))
        desk.start()
        os.chmod(os.path.join(desk.data, "3 locked.kel"), 0)
        os.chmod(os.path.join(desk.data, "closed"), 0)
        desk.wait_for_open_dialog()

        os.remove(os.path.join(desk.data, "2 gone.kel"))
        self.told_and_back(lambda: desk.choose(2))
        self.told_and_back(lambda: desk.choose(2))  # the locked one has come up in the list
        self.told_and_back(lambda: screen.keys("shift+Tab", "End", "Return"))  # the folder

        screen.keys("Tab")
        desk.choose(1)
        screen.wait_for_dialog("^Velgrove$")
        screen.keys("Return")
        desk.wait_for_show()
        self.assertEqual(len([line for line in desk.journal() if line.startswith('box: "Velgrove" ')]), 4)
        self.go()
        desk.wait_for_fade()
        self.ends_by_a_signal()

    def test_a_show_that_is_handed_over_opens_by_one_key(self):
        desk = self.booth(box=False, shows=())
        os.makedirs(desk.path("tour"))
        shutil.copy(DEMO, desk.path("tour/second evening.kel"))
        desk.start(folder=desk.path("tour"), VELGROVE_SHOW="second evening.kel")
        desk.wait_for_open_dialog()
        screen.keys("Return")
        desk.wait_for_show()
        self.ends_by_a_signal()

    def told_and_back(self, choose):
        choose()
        screen.wait_for_dialog("^Velgrove$")
        screen.keys("Return")
        screen.wait_for_dialog("^Open Project$")


if __name__ == "__main__":
    unittest.main()
