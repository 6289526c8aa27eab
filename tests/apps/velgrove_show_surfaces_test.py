"""Submasters, grand master, preferences and timings from a script: what goes out on the wire, and the boxes."""

import json
import unittest

from programs import show_program
from show_bytes import show
from velgrove_show_rehearse_test import SYSTEM_ERROR, Rehearsal

RIG = show(patch=(1, 2, 3))
LOOK = "0 manual 1 200\n0 manual 2 101\n"


class Surfaces(Rehearsal):
    def test_a_recorded_look_comes_back_by_its_fader_and_by_its_label(self):
        record = LOOK + "400 sub record 3 Warm  front\n500 manual 1 0\n500 manual 2 0\n"
        self.assertEqual(
            self.lit_from(RIG, record + "1000 sub 3 50\n1100 bump 3\n1200 sub 3 10\n1300 bump 3\n"),
            {30: {}, 60: {1: 200, 2: 101}, 540: {}, 1020: {1: 100, 2: 50}, 1140: {1: 200, 2: 101},
             1230: {1: 20, 2: 10}, 1350: {}})
        self.run_show(RIG, record, "--save", self.path("out.kel"))
        saved = json.loads(show_program("print", "--json", self.path("out.kel")).output)
        self.assertEqual(saved["colViews"][0]["colSubMasters"][2]["SubMasterName"], "Warm  front")

    def test_a_deleted_submaster_is_gone_with_an_error_and_the_next_takes_its_button(self):
        frames, complaints = self.run_show(
            RIG, LOOK + "400 sub record 2\n500 manual 1 0\n500 manual 2 0\n600 sub delete 1\n700 sub 1 100", "--changes")
        self.assertEqual(complaints, ['600 box "Confirm Deletion" "Are you sure?"', f"600 {SYSTEM_ERROR}"])
        self.assertEqual(frames[-1][1][:3], [200, 101, 0])

    def test_the_input_drives_as_many_submasters_as_the_preferences_say(self):
        script = (LOOK + "400 sub record 2\n500 manual 1 0\n500 manual 2 0\n600 mode subs\n600 input 2 128\n"
                  "2000 pref NUMSubs 2\n2600 sub 2 100\n2700 mode none\n")
        frames, complaints = self.run_show(RIG, script, "--changes")
        # Saving takes the mode over from its boxes, which have no input ticked.
        self.assertEqual([levels[:2] for _, levels in frames], [[0, 0], [200, 101], [0, 0], [200, 101]])
        frames, complaints = self.run_show(RIG, script.replace("2600 sub", "2100 pref DMXSubmasters 1\n2600 sub"), "--changes")
        self.assertEqual([levels[:2] for _, levels in frames], [[0, 0], [200, 101], [0, 0], [100, 50]])
        self.assertEqual(complaints, ["2600 note: the DMX input drives the submasters"])

    def test_the_grand_master_shifts_and_gives_back(self):
        self.assertEqual(
            self.lit_from(RIG, LOOK + "100 gm -1\n200 gm 3\n300 gm cancel\n400 blackout\n500 gm ok\n600 gm 2"),
            {30: {}, 60: {1: 200, 2: 101}, 150: {1: 198, 2: 98}, 210: {1: 208, 2: 108},
             330: {1: 200, 2: 101}, 420: {}})

    def test_a_setting_that_is_no_number_is_told_once_and_the_light_goes_on(self):
        frames, complaints = self.run_show(
            RIG, "0 pref NUMSubs 300\n0 pref Up soon\n0 mode subs\n400 manual 1 9\n500 timing NumFixtures 600\n"
            "900 manual 1 8\n1000 timing OutRate 5\n", "--changes", "--until", 2000)
        self.assertEqual([(ms, levels[0]) for ms, levels in frames], [(30, 0), (420, 9), (930, 8)])
        told = [line.split(" ", 2) for line in complaints]
        errors = [int(ms) for ms, *words in told if " ".join(words) == SYSTEM_ERROR]
        # at Save, and when the form is loaded anew; at the input to submasters; at the send and the merge
        self.assertEqual(errors, [0, 333, 510, 520, 1000])

    def test_what_is_not_there_is_told_before_or_at_its_line(self):
        path = self.path("script")
        for line, words in (("sub 25 50", "N is outside 1 to 24: 25"),
                            ("sub 1 101", "PERCENT is outside 0 to 100: 101"),
                            ("gm ok", "the grand master isn't open"), ("pref Colour 1", "there is no such preference: Colour"),
                            ("pref Base 2", "VALUE is outside 0 to 1: 2"),
                            ("timing Rate 5", "there is no such timing: Rate"), ("sub 1", "wrong number of arguments for sub")):
            done = show_program("rehearse", self.write("show.kel", RIG), self.write("script", f"0 {line}"))
            self.assertEqual((done.code, done.complaints.strip()), (2, f"velgrove-show: {path}: line 1: {words}"))


if __name__ == "__main__":
    unittest.main()
