"""velgrove-show as its user sees it: shows as text and JSON and back, damaged files, wrong usage, bad scripts."""

import csv
import io
import json
import os
import unittest

from programs import InAFolder, show_program
from show_bytes import AB, XY, blackout, cue, cue_list, dmx_input, fixture, header, show, submaster, view, zoom

PNG = b"\x89PNG\r\n\x1a\n\0\0\0\rIHDR" + bytes(3000)


def new_show():
    """A show saved straight after it was made: the one kind of file with a DMX input record."""
    return (header(1, 2, 1)
            + view([], [zoom()], [submaster(index) for index in range(24)])
            + cue_list("AB", [blackout(AB)]) + cue_list("XY", [blackout(XY)]) + dmx_input())


class PrintAndMake(InAFolder):
    def test_json_gives_every_undamaged_file_back_byte_for_byte(self):
        accents = show(xy=[{"number": 0.1, "description": "Caf\xe9 \u20ac"}, {"number": 2, "description": b"\x81\x8d"}])
        for name, data in (("new", new_show()), ("accents", accents)):
            made = self.json_and_back(self.write(name + ".kel", data))
            self.assertEqual(made, data, name)

    def json_and_back(self, path):
        printed = show_program("print", path, "--json")
        self.assertEqual((printed.code, printed.complaints), (0, ""))
        done = show_program("make", self.write("show.json", printed.output), self.path("made.kel"))
        self.assertEqual(done, (0, "", ""))
        return self.read("made.kel")

    def test_the_sheet_names_cues_lights_and_submasters(self):
        data = show(xy=[{"number": 2.5, "up": 3, "levels": {7: 1}, "description": "Caf\xe9", "link": ("AB", "1.00")}])
        done = show_program("print", self.write("sheet.kel", data))
        self.assertEqual((done.code, done.complaints), (0, ""))
        for expected in ("Play", r"2\.50 +3 +0 +0 +AB 1\.00 +Caf\xe9 +7 @ 1\n", r"7 +Lamp +leko", "0 of 24 in use"):
            self.assertRegex(done.output, expected)

    def test_a_spreadsheet_gets_one_sheet_with_a_row_of_captions(self):
        evil = '=1+1, "two"'
        path = self.write("sheet.kel", show(xy=[{"number": 1, "description": evil, "levels": {7: 255, 8: 255}}]))
        def rows(*arguments):
            done = show_program("print", "--csv", *arguments, path)
            self.assertEqual((done.code, done.complaints), (0, ""), arguments)
            return list(csv.DictReader(io.StringIO(done.output), strict=True))
        cue = rows()[-1]
        self.assertEqual((cue["Cue"], cue["Description"], cue["Levels (%)"]), ("1.00", "'" + evil, "7-8 @ FL"))
        self.assertEqual(rows("--sheet", "xy"), rows())
        self.assertEqual(rows("--sheet", "ab")[0]["Cue"], "0.00")
        self.assertEqual(rows("--sheet", "patch")[0]["Name"], "Lamp")
        self.assertEqual(rows("--sheet", "submasters"), [])
        alone = show_program("print", path, "--sheet", "patch").output
        self.assertTrue(alone.startswith("Patch  ("), alone)
        lonely = self.write("lonely.kel", header(1, 1, 0) + view([], [zoom()], []) + cue_list("AB", []))
        done = show_program("print", lonely, "--csv")
        self.assertEqual(done, (1, "", f"velgrove-show: {lonely}: the show has no such cue list\n"))

    def test_what_standard_output_does_not_take_is_no_success(self):
        path = self.write("new.kel", new_show())
        for command in (["print", path], ["print", path, "--json"], ["rehearse", path, "--until", "900"]):
            with open("/dev/full", "w", encoding="ascii") as full:
                done = show_program(*command, stdout=full, stderr=-1)
            self.assertEqual((done.code, done.lines), (1, ["velgrove-show: standard output can't be written"]), command)


class DamagedFiles(InAFolder):
    def test_the_message_names_file_place_and_field(self):
        whole = new_show()
        for data, fault in (
            (b"", "offset 0, ProjectName: the file ends before this field: this is no show"),
            (whole[:340], "offset 339, view 1, zoom 1, lt: the file ends inside this field"),
            (whole + b"abc", f"offset {len(whole)}, end of the show: 3 bytes that belong to no record"),
            (PNG, "offset 311, NumberOfViews: the show has no view"),
        ):
            with self.subTest(fault):
                path = self.write("damaged.kel", data)
                for command in (["print"], ["print", "--json"], ["rehearse"], ["play"]):
                    done = show_program(*command, path)
                    self.assertEqual(done.code, 1, command)
                    self.assertTrue(done.lines[0].startswith(f"velgrove-show: {path}: {fault}"), done.complaints)
                    if command[0] != "print":
                        self.assertEqual(done.output, "", "a damaged show runs nothing")

    def test_a_cut_anywhere_is_noticed_and_what_stood_before_it_is_printed(self):
        data = (header(1, 1, 1) + view([fixture(7, "Door special")], [zoom()], [submaster(0)])
                + cue_list("XY", [cue(XY, 1, description="The knock")]) + dmx_input())
        light = data.index(b"Door special") + len("Door special")
        knock = data.index(b"The knock") + len("The knock")
        for length in [*range(0, len(data), 53), light, knock, knock + 540, len(data) - 1]:
            done = show_program("print", self.write("cut.kel", data[:length]))
            self.assertEqual(done.code, 1, length)
            self.assertRegex(done.lines[0], r"^velgrove-show: .*cut\.kel: offset \d+, .*: ", length)
            self.assertEqual("Door special" in done.output, length >= light, length)
            self.assertEqual("The knock" in done.output, length >= knock, length)

    def test_what_is_no_file_is_named_with_the_reason(self):
        for name, reason in (("missing.kel", "No such file or directory"), ("", "Is a directory")):
            for command in ("print", "rehearse", "play"):
                path = self.path(name)
                self.assertEqual(show_program(command, path), (1, "", f"velgrove-show: {path}: {reason}\n"))


class Check(InAFolder):
    def test_a_show_is_clean_or_each_line_names_list_and_cue(self):
        long_fall = {"number": 1, "up": 1, "down": 3, "levels": {1: 200}}
        note = [{"number": 1, "link": ("EF", "1")}]
        for cues, code, lines in (
            ([], 0, ["no findings"]),
            (note, 0, [r"XY 1\.00: note: its Go starts effect 1, .*", "no findings, 1 note"]),
            ([{"number": 2, "levels": {1: 200, 13: 9}, "link": ("AB", "7.00")}, long_fall], 1,
             [r"XY 1\.00: .*leaves the range after 0\.03 s.*", r"XY 2\.00: no fixture has channel 13, .*",
              r'XY 2\.00: its Go starts AB "7\.00", .*', "3 findings"]),
        ):
            done = show_program("check", self.write("evening.kel", show(xy=cues)))
            self.assertEqual((done.code, done.complaints), (code, ""), done)
            printed = done.output.splitlines()
            self.assertEqual(len(printed), len(lines), done.output)
            for line, expected in zip(printed, lines):
                self.assertRegex(line, f"^{expected}$")

    def test_a_damaged_show_is_checked_as_far_as_it_goes(self):
        data = show(xy=[{"number": 1, "up": -1}])
        done = show_program("check", self.write("cut.kel", data[:-3]))
        self.assertEqual((done.code, done.complaints), (1, ""))
        self.assertRegex(done.output, r"^Show: the file is damaged: offset \d+, .*\nXY 1\.00: Up is -1 s\n2 findings\n$")
        done = show_program("check", self.write("picture.kel", PNG))
        self.assertEqual((done.code, done.output), (1, ""))
        self.assertRegex(done.complaints, r"picture\.kel: offset 311, NumberOfViews: the show has no view")


class BadJson(InAFolder):
    def made(self, content, **how):
        return show_program("make", self.write("in.json", content), self.path("out.kel"), **how)

    def test_the_message_names_file_and_place_and_nothing_is_made(self):
        tree = json.loads(show_program("print", self.write("show.kel", show()), "--json").output)
        tree["colQueueData"][1]["colQueueEntries"][0]["EntryDesc"] = "\u03a9"
        for content, words in (
            (json.dumps(tree), 'colQueueData[1].colQueueEntries[0].EntryDesc: a show file has no character "\u03a9"\n'),
            ('{"a": 1,\n "b": }', "line 2, column 7: "),
            (b"\xff\xfe{}", "line 1, column 1: "),
            ("[" * 100_000, "line 1, column 100001: "),
        ):
            done = self.made(content)
            self.assertEqual((done.code, done.output), (1, ""))
            self.assertTrue(done.complaints.startswith(f"velgrove-show: {self.path('in.json')}: {words}"), done)
        self.assertNotIn("out.kel", os.listdir(self.folder))

    def test_a_full_disk_leaves_the_show_that_was_there(self):
        tree = show_program("print", self.write("show.kel", show()), "--json").output
        self.write("out.kel", "the old show")
        done = self.made(tree, preexec_fn=small_disk, restore_signals=False)
        self.assertEqual((done.code, done.complaints), (1, f"velgrove-show: {self.path('out.kel')}: File too large\n"))
        self.assertEqual(self.read("out.kel"), b"the old show")
        self.assertEqual(sorted(os.listdir(self.folder)), ["in.json", "out.kel", "show.kel"])


def small_disk():
    """Files end at 4000 bytes; the signal for it is ignored, so that writing fails as on a full disk."""
    import resource
    resource.setrlimit(resource.RLIMIT_FSIZE, (4000, 4000))


class Usage(InAFolder):
    def test_wrong_usage_ends_with_2_and_words(self):
        path = self.write("show.kel", show())
        for arguments in ([], ["dance"], ["print"], ["print", path, "more"], ["print", path, "--xml"],
                          ["print", path, "--csv", "--json"], ["print", path, "--sheet", "bars"],
                          ["print", path, "--json", "--sheet", "xy"], ["make", path],
                          ["rehearse"], ["rehearse", path, "-", "more"], ["rehearse", path, "--until"],
                          ["rehearse", path, "--until", "-1"], ["rehearse", path, "--until", "soon"],
                          ["rehearse", path, "--until", "1.5"], ["rehearse", path, "--until", "2147483648"],
                          ["rehearse", path, "--save"], ["play", path, "--save", "out.kel"],
                          ["rehearse", path, self.path("missing")], ["rehearse", path, self.folder],
                          ["play"], ["play", path, "--changes"]):
            done = show_program(*arguments)
            self.assertEqual((done.code, done.output), (2, ""), arguments)
            self.assertRegex(done.complaints, r"\w{3}", arguments)
            self.assertLess(len(done.complaints), 300, "words that can be read")

    def test_help_shows_all(self):
        done = show_program("--help")
        self.assertEqual((done.code, done.complaints), (0, ""))
        for word in ("print", "check", "make", "rehearse", "play", "stage|next ROW", "select ROW",
                     "record|update|insert|delete|copy|paste", "set desc [TEXT]", "loop START LAST COUNT",
                     "effect add START STOP SPEED LOOPS", "manual CHANNEL LEVEL", "trigger [COUNT]",
                     "none|fixtures|subs", "Exit code"):
            self.assertIn(word, done.output)
        self.assertIn("--until", show_program("play", "--help").output)
        self.assertIn("--save OUT.kel", show_program("rehearse", "--help").output)


class BadScripts(InAFolder):
    def test_a_bad_line_stops_with_its_number_before_anything_runs(self):
        path = self.write("show.kel", show(xy=[{"number": 1}]))
        for line, words in [
            ("soon go", "the time is no whole number: soon"),
            ("99999999999999999999 go", "the time is no whole number"),
            ("2147483648 go", "the time is outside 0 to 2147483647: 2147483648"),
            ("99 go", "the time lies before the line above"),
            ("500", "a command is missing"),
            ("500 dance", "no such command: dance"),
            ("500 go 1", "wrong number of arguments for go"),
            ("500 ab dance", "no such command of a player: dance"),
            ("500 xy go 1", "wrong number of arguments for go"),
            ("500 xy stage", "wrong number of arguments for stage"),
            ("500 xy stage 0", "ROW is outside 1 to 32767: 0"),
            ("500 ab next two", "ROW is no whole number: two"),
            ("500 ab select", "wrong number of arguments for select"),
            ("500 ab select 0", "ROW is outside 1 to 32767: 0"),
            ("500 xy record 1", "wrong number of arguments for record"),
            ("500 xy set", "wrong number of arguments for set"),
            ("500 xy set colour 1", "no such field of a player: colour"),
            ("500 xy set up", "wrong number of arguments for up"),
            ("500 xy set number 1 2", "wrong number of arguments for number"),
            ("500 xy loop 1 2", "wrong number of arguments for loop"),
            ("500 effect", "wrong number of arguments for effect"),
            ("500 effect dance", "no such command of the effects: dance"),
            ("500 effect add 1 2 3", "wrong number of arguments for add"),
            ("500 effect run 1 2", "wrong number of arguments for run"),
            ("500 manual 1", "wrong number of arguments for manual"),
            ("500 manual 513 5", "CHANNEL is outside 1 to 512: 513"),
            ("500 manual 1 256", "LEVEL is outside 0 to 255: 256"),
            ("500 input x 5", "CHANNEL is no whole number: x"),
            ("500 input 1 5%", "LEVEL is no whole number: 5%"),
            ("500 mode all", "mode is none, fixtures or subs, not all"),
            ("500 trigger 0", "COUNT is outside 1 to"),
            ("500 trigger 1 1", "wrong number of arguments for trigger"),
            ("\x89PNG", "the time is no whole number"),
        ]:
            script = self.write("show.script", f"# a comment\n\n100 go\n{line}\n200 go\n")
            for command in ("rehearse", "play"):
                done = show_program(command, path, script)
                self.assertEqual((done.code, done.output), (2, ""), line)
                self.assertEqual(len(done.lines), 1, done.complaints)
                self.assertTrue(done.complaints.startswith(f"velgrove-show: {script}: line 4: {words}"), done)

    def test_a_bad_line_on_standard_input_is_named_too(self):
        done = show_program("rehearse", self.write("show.kel", show()), "-", stdin="go\n")
        self.assertEqual(done, (2, "", "velgrove-show: standard input: line 1: the time is no whole number: go\n"))


if __name__ == "__main__":
    unittest.main()
