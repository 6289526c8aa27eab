"""Rehearsal: a show and a script go in, and just the right frames come out."""

import json
import os
import subprocess
import sys
import unittest
import zlib
from itertools import zip_longest

from fade_model import Model
from programs import LONGEST_RUN, InAFolder, frame_of, frames_of, lit, program, show_program
from show_bytes import both_lists, look, show

HERE = os.path.dirname(os.path.abspath(__file__))
DATA = os.path.join(HERE, "..", "..", "data")
TOOLS = os.path.join(HERE, "..", "..", "tools")
SYSTEM_ERROR = 'box "SYSTEM ERROR" "Application may close, Would you like to continue?"'
PARTITION_FULL = 'box "Warning" "Cue Partition Full, please add to Next Cue."'
AT_END = 'box "Velgrove" "At end of show - no more cues left"'


class Rehearsal(InAFolder):
    def run_show(self, data, script="", *arguments):
        done = show_program("rehearse", self.write("show.kel", data), self.write("script", script), *arguments)
        self.assertEqual(done.code, 0, done.complaints)
        return frames_of(done.output), done.lines

    def lit_from(self, data, script, *arguments):
        """What is lit from when on: {ms: {channel: level}}. A run without words on standard error."""
        frames, complaints = self.run_show(data, script, "--changes", *arguments)
        self.assertEqual(complaints, [])
        return {ms: lit(levels) for ms, levels in frames}


def instant_cues(*looks):
    """Cues 1, 2, ... that come at once."""
    return [{"number": number, "levels": levels} for number, levels in enumerate(looks, 1)]


class Frames(Rehearsal):
    def test_a_frame_goes_out_every_30_ms_and_the_end_is_inclusive(self):
        for until, last in ((0, 0), (29, 0), (30, 30), (59, 30), (90, 90), (10_000, 9990)):
            frames, _ = self.run_show(show(), "", "--until", until)
            self.assertEqual([ms for ms, _ in frames], list(range(30, last + 1, 30)))
            self.assertTrue(all(len(levels) == 512 and not any(levels) for _, levels in frames))

    def test_without_an_end_a_run_goes_on_for_a_second_behind_the_last_command_and_fade(self):
        fading = show(xy=[{"number": 1, "up": 1, "down": 1}, {"number": 2}])
        for script, last in (("", 990), ("470 manual 1 1", 1470), ("100 xy plus\n200 go", 2220), ("5000 stop", 6000)):
            frames, _ = self.run_show(fading, script)
            self.assertEqual(frames[-1][0], last, script)

    def test_commands_behind_the_end_are_left_out(self):
        frames, _ = self.run_show(show(), "0 manual 1 9\n300 manual 1 10\n301 manual 1 11", "--until", 300)
        self.assertEqual([levels[0] for _, levels in frames], [0, *[9] * 9])
        self.assertEqual(frames[-1][0], 300)

    def test_a_run_ends_after_an_hour_at_the_latest(self):
        path, script = self.write("show.kel", show()), self.write("script", "0 manual 1 9\n3600001 manual 1 10\n")
        count, rest = 0, b""
        with subprocess.Popen([program("velgrove-show"), "rehearse", path, script], stdout=subprocess.PIPE) as run:
            while piece := run.stdout.read(1 << 20):
                count += piece.count(b"\n")
                rest = (rest + piece)[-4000:]
        self.assertEqual((run.returncode, count), (0, 120_000))
        ms, levels = frame_of(rest.decode().splitlines()[-1])
        self.assertEqual((ms, lit(levels)), (3_600_000, {1: 9}))

    def test_changes_leaves_out_frames_equal_to_the_one_before(self):
        script = "100 manual 1 9\n200 manual 1 9\n300 manual 1 0"
        self.assertEqual(self.lit_from(show(), script), {30: {}, 150: {1: 9}, 330: {}})

    def test_comments_blank_lines_and_any_blanks_are_passed_over(self):
        script = "# a comment\n\n   \t\n  #100 manual 1 1\n\t0   manual\t1  9 \r\n0 manual 2 8"
        path = self.write("show.kel", show())
        for arguments in ([self.write("script", script)], ["-"]):
            done = show_program("rehearse", path, *arguments, "--until", 60, "--changes", stdin=script)
            self.assertEqual((done.code, done.complaints), (0, ""))
            self.assertEqual(lit(frames_of(done.output)[-1][1]), {1: 9, 2: 8})


class Order(Rehearsal):
    def test_at_one_instant_come_the_command_the_frame_the_merge_and_then_the_box(self):
        for script, expected in (
            ("40 manual 1 9", {60: {1: 9}}),   # in time for the merge at 40
            ("41 manual 1 9", {90: {1: 9}}),
            ("120 manual 1 9", {150: {1: 9}}),  # at 120 the frame leaves before the merge
            ("0 mode fixtures\n200 input 1 9", {270: {1: 9}}),  # read at 200, behind that instant's merge
            ("0 mode fixtures\n201 input 1 9", {330: {1: 9}}),
            ("0 manual 1 9\n40 manual 1 8", {60: {1: 8}}),
        ):
            self.assertEqual(self.lit_from(show(), script), {30: {}, **expected}, script)


class Sources(Rehearsal):
    def test_a_level_set_by_hand_reaches_the_wire_patched_or_not(self):
        script = "0 manual 1 255\n0 manual 300 1\n0 manual 512 2"
        self.assertEqual(self.lit_from(show(), script), {30: {}, 60: {1: 255, 300: 2, 512: 2}})

    def test_received_levels_do_what_the_mode_says(self):
        script = "0 input 5 77\n500 mode fixtures\n1000 mode subs\n1500 mode none\n2000 mode fixtures"
        self.assertEqual(self.lit_from(show(), script), {30: {}, 540: {5: 77}, 1020: {}, 2130: {5: 77}})

    def test_a_trigger_is_a_go_at_the_next_poll(self):
        cues = show(xy=instant_cues({1: 10}, {1: 20}, {1: 30}))
        self.assertEqual(self.lit_from(cues, "500 trigger\n1001 trigger"), {30: {}, 1050: {1: 10}, 2070: {1: 20}})

    def test_every_trigger_byte_counts(self):
        _, complaints = self.run_show(show(), "500 trigger 3")
        self.assertEqual(complaints, [f"1000 {AT_END}"] * 3)


class Buttons(Rehearsal):
    CUES = show(xy=instant_cues({1: 10}, {1: 20}, {1: 30}), ab=instant_cues({2: 11}, {2: 22}))

    def test_tools_act_on_xy_and_buttons_on_their_own_player(self):
        for script, expected in (
            ("0 go", {60: {1: 10}}),
            ("0 xy go", {60: {1: 10}}),
            ("0 ab go", {60: {2: 11}}),
            ("0 plus\n100 plus\n200 minus\n300 reset", {60: {1: 10}, 150: {1: 20}, 210: {1: 10}, 330: {}}),
            ("0 ab plus\n100 ab plus\n200 ab minus\n300 ab reset", {60: {2: 11}, 150: {2: 22}, 210: {2: 11}, 330: {}}),
            ("0 xy plus\n100 ab plus\n200 xy minus", {60: {1: 10}, 150: {1: 10, 2: 11}, 210: {2: 11}}),
            ("0 ab plus\n0 xy plus\n100 reset", {60: {1: 10, 2: 11}, 150: {}}),  # XY's clears both players
            ("0 xy plus\n0 ab plus\n100 ab reset", {60: {1: 10, 2: 11}, 150: {1: 10}}),
            ("0 xy minus\n0 xy plus\n100 xy minus\n200 xy minus", {60: {1: 10}, 150: {}}),
        ):
            self.assertEqual(self.lit_from(self.CUES, script), {30: {}, **expected}, script)

    def test_stage_and_next_put_the_marks_on_the_row(self):
        self.assertEqual(self.lit_from(self.CUES, "0 xy stage 2\n200 go"), {30: {}, 60: {1: 10}, 210: {1: 20}})
        self.assertEqual(self.lit_from(self.CUES, "0 xy stage 3\n200 go"), {30: {}, 60: {1: 20}, 210: {1: 10}},
                         "a next mark elsewhere stays")
        # Go follows the moved mark; the stage then stands one row below the old one, and the next Go leads on.
        self.assertEqual(self.lit_from(self.CUES, "0 xy next 4\n100 go\n500 go"), {30: {}, 150: {1: 30}, 540: {1: 20}})
        self.assertEqual(self.lit_from(self.CUES, "0 ab stage 2\n100 ab stage 1"), {30: {}, 60: {2: 11}, 150: {}})

    def test_a_row_that_is_not_there_is_noted_and_passed_over(self):
        frames, complaints = self.run_show(self.CUES, "0 ab stage 4\n50 xy next 5\n90 xy stage 2", "--until", 150)
        self.assertEqual(complaints, ["0 note: AB - CueList has no row 4", "50 note: XY - CueList has no row 5"])
        self.assertEqual(lit(frames[-1][1]), {1: 10})

    def test_blind_changes_nothing_on_the_wire_and_ends_live(self):
        script = "0 xy stage 2\n0 xy next 4\n200 xy blind\n400 xy blind\n600 xy next 3\n700 xy live\n900 ab blind"
        self.assertEqual(self.lit_from(self.CUES, script), {30: {}, 60: {1: 10}, 750: {1: 20}})


class Boxes(Rehearsal):
    def test_every_box_is_told_with_its_time_title_and_text(self):
        _, complaints = self.run_show(show(), "0 go\n250 xy go\n1000 ab go")
        self.assertEqual(complaints, [f"0 {AT_END}", f"250 {AT_END}", f"1000 {AT_END}"])

    def test_after_1000_boxes_the_run_ends(self):
        script = self.write("script", "".join(f"{10 * i} go\n" for i in range(1200)))
        done = show_program("rehearse", self.write("show.kel", show()), script, "--changes")
        self.assertEqual(done.code, 1)
        self.assertEqual(done.lines[:1000], [f"{10 * i} {AT_END}" for i in range(1000)])
        self.assertEqual(done.lines[1000:], ["velgrove-show: too many boxes: the run ends here"])


class Editing(Rehearsal):
    """Shows edited by a script and saved."""

    XY3 = instant_cues({1: 10}, {1: 20}, {1: 30})
    AB3 = instant_cues({2: 11}, {2: 22}, {2: 33})
    THREE = show(XY3, AB3)

    def edit(self, data, script):
        """What is said on standard error while a script edits a show, which is saved as out.kel."""
        return self.run_show(data, script, "--save", self.path("out.kel"))[1]

    def assert_saved(self, xy=(), ab=()):
        expected = self.write("expected.kel", show(xy, ab))
        self.assertEqual(self.lists_in(self.path("out.kel")), self.lists_in(expected))
        self.assertTrue(self.read("out.kel").endswith(both_lists(xy, ab)))

    @staticmethod
    def lists_in(path):
        return json.loads(show_program("print", "--json", path).output)["colQueueData"]

    def numbers_saved(self, position):
        return [round(each["EntryNum"], 4) for each in self.lists_in(self.path("out.kel"))[position]["colQueueEntries"]]

    def test_a_show_built_from_an_empty_one_is_saved_and_plays(self):
        self.assertEqual(self.edit(show(), BUILD), [])
        half = {"description": "House  to half", "up": 2, "down": 1, "link": ("AB", "1.00")}
        self.assert_saved(xy=[{"number": 1, "levels": {1: 200, 2: 100}, **half},
                              {"number": 2, "levels": {2: 100, 3: 50, 5: 9}, **half},
                              {"number": 1.1, "levels": {2: 100, 3: 50}, "description": "Interval", "up": 4,
                               "link": ("AB", "1.00")}],
                          ab=[{"number": 1, "levels": {2: 100, 3: 50}, "description": "Sky"}])
        played = self.lit_from(self.read("out.kel"), "0 go\n200 plus\n400 plus")
        self.assertEqual(played, {30: {}, 60: {1: 200, 2: 100, 3: 50}, 210: {2: 100, 3: 50},
                                  420: {2: 100, 3: 50, 5: 9}})

    def test_the_list_of_ab_stands_double_behind_an_insert_until_the_show_is_loaded_again(self):
        for player, position, rows in (("ab", 0, 10), ("xy", 1, 5)):
            insert = f"0 {player} select 2\n0 {player} insert\n"
            self.assertEqual(self.edit(self.THREE, f"{insert}10 {player} select {rows}"), [])
            self.assertEqual(self.numbers_saved(position), [0, 1, 2, 3, 1.1])
            self.ends_by(self.THREE, f"{insert}10 {player} select {rows + 1}", "line 3: ")
            saved = self.read("out.kel")
            self.run_show(saved, f"0 {player} select 5")
            self.ends_by(saved, f"0 {player} select 6", "line 1: ")

    def test_behind_a_delete_nothing_works_on_a_cue_until_one_is_selected(self):
        script = "0 xy select 3\n0 xy delete\n0 xy set desc New\n0 xy delete\n0 xy update\n0 xy copy\n0 xy paste\n"
        self.assertEqual(self.edit(self.THREE, script), [])
        self.assert_saved([self.XY3[0], self.XY3[2]], self.AB3)
        self.assertEqual(self.edit(self.THREE, script + "0 xy select 3\n0 xy delete"), [])
        self.assertEqual(self.numbers_saved(1), [0, 1])

    def test_times_that_are_none_are_told_and_leave_the_cue_as_it_was(self):
        for time in ("x", "40000", "-32769", "1,5"):
            complaints = self.edit(self.THREE, f"0 xy select 2\n0 xy set desc New\n0 xy set up {time}\n7 xy update")
            self.assertEqual(complaints, [f"7 {SYSTEM_ERROR}"], time)
            self.assert_saved(self.XY3, self.AB3)

    def ends_by(self, data, script, words):
        """A run that ends by a bad line once its time has come; the frames so far."""
        path = self.write("bad.script", script)
        done = show_program("rehearse", self.write("show.kel", data), path, "--save", self.path("none.kel"))
        self.assertEqual(done.code, 2, done)
        self.assertEqual(len(done.lines), 1, done.complaints)
        self.assertTrue(done.complaints.startswith(f"velgrove-show: {path}: {words}"), done.complaints)
        self.assertNotIn("none.kel", os.listdir(self.folder), "half an editing isn't saved")
        return frames_of(done.output)

    def test_what_is_not_there_when_its_time_comes_ends_the_run_with_the_number_of_the_line(self):
        for line, words in (
            ("ab select 5", "AB - CueList has no row 5\n"),
            ("xy set list EX", "XY - CueList offers None, XY, AB or EF, not EX\n"),
            ("ab set list XY", "AB - CueList offers None, AB, AB or EF, not XY\n"),
            ("ab set number 1.00", "AB - CueList offers None, not 1.00\n"),
            ("xy set list AB\n95 xy set number 4.00",
             "XY - CueList offers None, 0.00, 1.00, 2.00 or 3.00, not 4.00\n"),
        ):
            number = 2 + line.count("\n")
            frames = self.ends_by(self.THREE, f"# a comment\n95 {line}\n200 go", f"line {number}: {words}")
            self.assertEqual([ms for ms, _ in frames], [30, 60, 90])


BUILD = """
0 manual 1 200
0 manual 2 100
500 xy set up 2
500 xy set down 1
500 xy set desc   House  to half \r
500 xy record
600 manual 1 0
600 manual 3 50
1000 xy record
1100 ab set up 9
1100 ab set desc Sky
1100 ab record
1200 ab record
1300 xy select 2
1300 xy insert
1400 xy select 3
1400 xy set desc Interval
1400 xy set up 4
1400 xy set list AB
1400 xy set number 1.00
1400 xy update
1500 manual 5 9
# the copy takes the link's choice and the levels of the plot
2000 xy select 2
2000 xy copy
2100 manual 5 0
2500 xy select 4
2500 xy paste
2600 ab select 3
2600 ab delete
2600 ab delete
"""


class Saving(Rehearsal):
    EDIT = "0 manual 1 9\n100 xy record\n200 manual 1 8"

    def rehearse(self, *arguments):
        return show_program("rehearse", self.write("show.kel", show()), self.write("script", self.EDIT), *arguments)

    def test_the_show_that_was_read_stays_as_it_was(self):
        plain = self.rehearse()
        self.assertEqual(self.rehearse("--save", self.path("out.kel")), plain)
        self.assertEqual(self.read("show.kel"), show())
        self.assertEqual(sorted(os.listdir(self.folder)), ["out.kel", "script", "show.kel"])

    def test_the_version_before_stays_beside_a_show_that_is_saved_again(self):
        self.assertEqual(self.rehearse("--save", self.path("show.kel")).code, 0)
        self.assertEqual(self.read("show.kel.bak"), show())
        self.assertNotEqual(self.read("show.kel"), show())

    def test_the_end_of_the_run_ends_the_editing(self):
        for until, cues in (("99", []), ("100", [{"number": 1, "levels": {1: 9}, "description": "Cue_1.00"}])):
            self.assertEqual(self.rehearse("--until", until, "--save", self.path("out.kel")).code, 0)
            self.assertTrue(self.read("out.kel").endswith(both_lists(xy=cues)), until)

    def test_where_it_cannot_be_saved_the_frames_are_whole_and_the_reason_is_told(self):
        plain = self.rehearse()
        for path, reason in ((self.path("no/out.kel"), "No such file or directory"), (self.folder, "Is a directory")):
            done = self.rehearse("--save", path)
            self.assertEqual(done, (1, plain.output, f"velgrove-show: {path}: {reason}\n"))
        with open("/dev/full", "w", encoding="ascii") as full:
            done = show_program("rehearse", self.path("show.kel"), "--save", self.path("out.kel"), stdout=full, stderr=-1)
        self.assertEqual((done.code, done.lines), (1, ["velgrove-show: standard output can't be written"]))
        self.assertIn("out.kel", os.listdir(self.folder))


class Loops(Rehearsal):
    """Cue N lights channel N, and a fade that runs on its times takes N seconds."""

    CUES = [{"number": number, "levels": {number: 200}, "up": number, "down": number} for number in range(1, 6)]

    def brightest(self, data, script, *arguments):
        """Which channel is the brightest from when on: [(ms, channel)]."""
        frames, complaints = self.run_show(data, script, "--changes", *arguments)
        self.assertEqual(complaints, [])
        walk = []
        for ms, levels in frames:
            channel = levels.index(max(levels)) + 1
            if any(levels) and (not walk or walk[-1][1] != channel):
                walk.append((ms, channel))
        return walk

    def assert_walk(self, walk, expected):
        """The next look outshines the stage look in the middle of a fade."""
        self.assertEqual([channel for _, channel in walk], [channel for _, channel in expected], walk)
        for (ms, channel), (wanted, _) in zip(walk, expected):
            self.assertAlmostEqual(ms, wanted, delta=100, msg=f"channel {channel} in {walk}")

    def test_one_go_walks_the_range_as_often_as_asked_and_the_next_leads_on(self):
        # The fades take 1, 1 and 2 seconds, then the 3 of the last row, then 1 again; each ends at a step.
        walk = self.brightest(show(xy=self.CUES), "0 xy loop 1 3.00 2\n500 go\n9500 go", "--until", 13000)
        self.assert_walk(walk, [(540, 1), (1000, 2), (2030, 3), (3550, 1), (6050, 2), (8050, 3), (11000, 4)])

    def test_ab_takes_the_times_before_the_next_row_and_so_those_of_blackout_in_between(self):
        # A delete makes AB the list that the dialog is for.
        arm = "0 ab select 6\n0 ab delete\n0 ab loop 1 3 2\n"
        walk = self.brightest(show(ab=self.CUES), arm + "500 ab go\n6000 ab go", "--until", 9000)
        self.assert_walk(walk, [(540, 1), (1000, 2), (2030, 3), (3550, 1), (4620, 2), (5080, 3), (7500, 4)])

    def test_texts_that_are_no_numbers_are_told_and_the_dialog_goes_by_its_close_box(self):
        _, complaints = self.run_show(show(xy=self.CUES), "5 xy loop one 3 2\n6 xy loop 1 3 40000\n200 xy plus")
        self.assertEqual(complaints, [f"5 {SYSTEM_ERROR}", f"6 {SYSTEM_ERROR}"])
        walk = self.brightest(show(xy=self.CUES), "0 xy loop 1 2 1\n200 go")
        self.assertEqual([channel for _, channel in walk], [1, 2], "the dialog can be asked for again")


class Effects(Rehearsal):
    NOT_THERE = 'box "Velgrove" "Effect {} not registered"'

    def test_a_step_is_seen_if_a_frame_leaves_before_the_next_merge(self):
        # Steps at 110, 220, 330, 440 and 550; the merges of 440 and 560 take the last two away.
        seen = {30: {}, 120: {1: 255}, 150: {}, 240: {2: 255}, 270: {}, 360: {3: 255}, 390: {}}
        self.assertEqual(self.lit_from(show(), "0 effect add 1 3 110 2\n0 effect run 1"), seen)

    def test_a_cue_starts_the_effect_that_its_link_names(self):
        script = ("0 effect add 9 9 50 1\n0 effect add 7 8 110 1\n0 xy set list EF\n0 xy set number 2\n0 xy record\n"
                  "1015 go")
        self.assertEqual(self.lit_from(show(), script), {30: {}, 1140: {7: 255}, 1170: {}})

    def test_what_is_no_effect_is_told(self):
        for script, box in (("effect run 2", self.NOT_THERE.format(2)),
                            ("effect add 1 2 3 4\n0 effect run 40000", self.NOT_THERE.format(40000)),
                            ("effect run 1", SYSTEM_ERROR),  # one past the last row gets through the test
                            ("effect run one", SYSTEM_ERROR),
                            ("effect add 1 3 40000 1\n0 effect run 1", SYSTEM_ERROR),
                            ("effect add 1 x 110 1\n0 effect run 1", SYSTEM_ERROR)):
            frames, complaints = self.run_show(show(), f"0 {script}")
            self.assertEqual(complaints, [f"0 {box}"], script)
            self.assertFalse(any(any(levels) for _, levels in frames), script)


class Reckoned(Rehearsal):
    """Fades frame by frame against levels reckoned from their times alone."""

    PATCH = (1, 2, 3, 4, 100, 512)
    OLD = {1: 200, 2: 255, 3: 1, 4: 0, 5: 99, 100: 3}
    NEW = {1: 100, 2: 0, 3: 255, 4: 77, 5: 98, 512: 250}
    FAINT = {1: 1, 2: 1, 4: 1}

    def look_on_stage(self, levels):
        return [level if channel in self.PATCH else 0 for channel, level in enumerate(look(levels), 1)]

    def compare(self, up, down, delay, old, new, script, commands, until):
        times = {"up": up, "down": down, "delay": delay}
        data = show(xy=[{"number": 1, "levels": old, **times}, {"number": 2, "levels": new}], patch=self.PATCH)
        frames, complaints = self.run_show(data, script, "--until", until)
        model = Model().run(commands, until)
        self.assertEqual(len(frames), len(model.frames))
        for frame, expected in zip(frames, model.frames):
            self.assertEqual((frame[0], lit(frame[1])), (expected[0], lit(expected[1])))
        self.assertEqual(complaints, [f"{ms} {SYSTEM_ERROR}" for ms in model.boxes])
        return model

    def fade(self, up, down, delay, old, new, at=0):
        """From cue 1, put on stage at 0, to cue 2."""
        stage, coming = self.look_on_stage(old), self.look_on_stage(new)
        commands = [(0, lambda model: model.jump(stage))]
        if up == 0 and down == 0:
            commands.append((at, lambda model: model.jump(coming)))
        commands.append((at, lambda model: model.go(at, stage, coming, up, down, delay)))
        return self.compare(up, down, delay, old, new, f"0 xy plus\n{at} go", commands,
                            at + 1000 * max(up + delay, 1) + 300)

    def test_fades_with_all_kinds_of_times(self):
        for up, down, delay in ((2, 2, 0), (3, 3, 0), (1, 1, 0), (2, 1, 3), (2, 10, 0), (2, 1, 0), (3, 2, 1), (0, 0, 0),
                                (0, 0, 1), (0, 2, 0), (0, 1, 2), (2, 0, 0), (1, 0, 1), (7, 5, 0)):
            for at in (0, 17, 40):
                with self.subTest(up=up, down=down, delay=delay, at=at):
                    self.fade(up, down, delay, self.OLD, self.NEW, at)

    def test_looks_that_add_up_to_more_than_full(self):
        quiet = self.fade(1, 2, 0, self.FAINT, self.FAINT)
        self.assertEqual(quiet.boxes, [])
        loud = self.fade(1, 2, 0, {1: 9, 2: 200, 3: 80}, {1: 3, 2: 20, 3: 90})
        self.assertNotEqual(loud.boxes, [], "a sum that is no level is told")
        self.fade(1, 9, 0, {1: 255, 2: 255, 3: 255}, {1: 255, 2: 255, 3: 255})

    def test_a_fade_that_is_stopped_and_resumed(self):
        for up, down, delay, stop in ((4, 4, 0, 1600), (4, 3, 0, 3100), (2, 1, 2, 500), (2, 1, 2, 2700)):
            with self.subTest(up=up, down=down, delay=delay, stop=stop):
                old, new = self.look_on_stage(self.OLD), self.look_on_stage(self.NEW)
                commands = [(0, lambda model: model.jump(old)),
                            (10, lambda model: model.go(10, old, new, up, down, delay)),
                            (stop, Model.stop), (5000, lambda model: model.resume(5000))]
                script = f"0 xy plus\n10 go\n{stop} stop\n5000 go"
                self.compare(up, down, delay, self.OLD, self.NEW, script, commands, 9500)


class Demo(InAFolder):
    """The demo evening, as it stands in the repository."""

    GOLDEN = os.path.join(HERE, "..", "data", "demo.golden")
    STRETCH = 300  # ms

    def test_the_demo_evening_comes_out_as_it_always_did(self):
        done = show_program("rehearse", os.path.join(DATA, "demo.kel"), os.path.join(DATA, "demo.script"), "--changes")
        self.assertEqual((done.code, done.complaints), (0, ""))
        actual = self.told(frames_of(done.output))
        with open(self.GOLDEN, encoding="ascii") as file:
            golden = file.read().splitlines()
        if actual != golden:
            with open(self.GOLDEN + ".actual", "w", encoding="ascii") as file:
                file.writelines(line + "\n" for line in actual)
        for number, lines in enumerate(zip_longest(golden, actual), 1):
            self.assertEqual(*lines, f"demo.golden and demo.golden.actual differ first in line {number}")

    @classmethod
    def told(cls, changes):
        """A line for the last change of each stretch. The sum in it is over every change so far, so that none escapes."""
        lines, so_far = {}, 0
        for ms, levels in changes:
            so_far = zlib.crc32(bytes(levels), zlib.crc32(str(ms).encode(), so_far))
            lines[ms // cls.STRETCH] = " ".join([str(ms), f"{so_far:08x}", *cls.by_level(levels)])
        return list(lines.values())

    @staticmethod
    def by_level(levels):
        channels = {}
        for channel, level in lit(levels).items():
            channels.setdefault(level, []).append(str(channel))
        return (f"{','.join(same)}={level}" for level, same in channels.items())

    def test_the_demo_show_is_what_its_tool_makes(self):
        tool = os.path.join(TOOLS, "demo_show.py")
        tree = subprocess.run([sys.executable, tool], capture_output=True, timeout=LONGEST_RUN, check=True).stdout
        self.assertEqual(show_program("make", self.write("demo.json", tree), self.path("demo.kel")), (0, "", ""))
        with open(os.path.join(DATA, "demo.kel"), "rb") as file:
            self.assertEqual(self.read("demo.kel"), file.read())


if __name__ == "__main__":
    unittest.main()
