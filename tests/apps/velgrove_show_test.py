"""velgrove-show as its user sees it: shows as text and JSON and back, damaged files, wrong usage, bad scripts."""

import json
import os
import struct
import unittest

from programs import InAFolder, show_program
from show_bytes import (AB, XY, blackout, cue, cue_list, dmx_input, fixture, header, look, show, submaster, view, zoom)

PNG = b"\x89PNG\r\n\x1a\n\0\0\0\rIHDR" + bytes(3000)


def new_show():
    """A show saved straight after it was made: the one kind of file with a DMX input record."""
    return (header(1, 2, 1)
            + view([], [zoom()], [submaster(index) for index in range(24)])
            + cue_list("AB", [blackout(AB)]) + cue_list("XY", [blackout(XY)]) + dmx_input())


def full_show():
    """Something in every kind of record, and the texts and numbers that are easily lost."""
    levels = {channel: channel % 256 for channel in range(1, 513)}
    rig = [fixture(0, "Caf\xe9 \u20ac"), fixture(512, "n" * 300, x=-0.1, wattage=float("nan")),
           fixture(-1, "", x=float("inf"))]
    subs = [submaster(3, "Front", levels), submaster(-7, "")]
    cues = [cue(XY, 0.1, levels, -5, 32767, -32768, "one", ("AB", None)), cue(XY, 12.5, link=("EF", "")),
            cue(7, float("-inf"), description=b"\x81\x8d")]
    return (header(2, 3, 2, "N" * 50, "D" * 255)
            + view(rig, [zoom(), zoom(-1.5, 1e300, 5e-324, -0.0)], subs, "Stage") + view(name="Bridge")
            + cue_list("AB", []) + cue_list("", cues) + cue_list("spare", [blackout(AB, up=3)])
            + dmx_input(1, "in", bytes(range(256)) * 2 + b"\xff") + dmx_input(-1))


class PrintAndMake(InAFolder):
    def test_a_new_show_is_laid_out_as_its_readers_expect(self):
        data = new_show()
        for offset, expected in [
            (0, b"Play" + b" " * 46), (305, b"\1\0\2\0\1\0"), (311, b"\4\0Play"), (317, b"\1\0\0\0\x18\0"),
            (323, b"\0\0\0\0\0\x40\x8f\x40"), (331, bytes(16)), (347, b"\0\0\0\0\0\x40\x8f\x40"), (355, b"\1\0 "),
            (12955, b"\2\0AB\x08\0AB Fader\1\0"), (12971, b"\0\0\x08\0Blackout" + bytes(12)), (13507, b"\2\0\4\0None"),
            (13515, b"\x08\0\4\0None"), (13523, b"\2\0XY\x08\0XY Fader\1\0"), (14075, b"\1\0\4\0None\x08\0\4\0None"),
        ]:
            self.assertEqual(data[offset:offset + len(expected)], expected, offset)
        self.assertEqual(len(data), 14612)

    def test_json_gives_every_undamaged_file_back_byte_for_byte(self):
        for name, data in (("new", new_show()), ("full", full_show()), ("playable", show()), ("bare", bare_show())):
            made = self.json_and_back(self.write(name + ".kel", data))
            self.assertEqual(made, data, name)

    def json_and_back(self, path):
        printed = show_program("print", path, "--json")
        self.assertEqual((printed.code, printed.complaints), (0, ""))
        done = show_program("make", self.write("show.json", printed.output), self.path("made.kel"))
        self.assertEqual(done, (0, "", ""))
        return self.read("made.kel")

    def test_json_has_the_fields_of_the_records(self):
        path = self.write("full.kel", full_show())
        tree = json.loads(show_program("print", path, "--json").output)
        light = tree["colViews"][0]["colFixtures"][1]
        one, two, odd = tree["colQueueData"][1]["colQueueEntries"]
        self.assertEqual((tree["ProjectName"], tree["NumberOfQueues"]), ("N" * 50, 3))
        self.assertEqual((light["Channel"], light["x"], light["Wattage"]), (512, -0.1, "NaN"))
        self.assertEqual(one["Values"], [channel % 256 for channel in range(1, 513)])
        self.assertEqual((one["Up"], one["Down"], one["Delay"]), (-5, 32767, -32768))
        self.assertEqual((one["QueueListMasterGo"], one["QueueNumberMasterGo"]), ("AB", None))
        self.assertEqual((two["QueueNumberMasterGo"], odd["EntryNum"]), ("", "-Infinity"))
        self.assertEqual(len(tree["colViews"][0]["colSubMasters"][0]["DimmerLevel"]), 512)
        self.assertEqual(len(tree["colDMXIn"][0]["Values"]), 513)

    def test_counts_are_made_anew_from_the_arrays(self):
        tree = json.loads(show_program("print", self.write("new.kel", new_show()), "--json").output)
        tree["NumberOfViews"] = 17
        del tree["NumberOfDMXEntries"]
        tree["colDMXIn"] = []
        tree["colViews"][0]["colSubMasters"] = tree["colViews"][0]["colSubMasters"][:2]
        self.assertEqual(show_program("make", self.write("less.json", json.dumps(tree)), self.path("less.kel")).code, 0)
        self.assertEqual(self.read("less.kel"),
                         header(1, 2, 0) + view([], [zoom()], [submaster(0), submaster(1)])
                         + cue_list("AB", [blackout(AB)]) + cue_list("XY", [blackout(XY)]))

    def test_the_sheet_names_cues_lights_and_submasters(self):
        data = (header(1, 1, 0) + view([fixture(7, "Door special")], [], [submaster(0, "Front wash", {1: 255})])
                + cue_list("XY", [cue(XY, 2.5, {7: 1}, 3, 4, 5, "The knock", ("AB", "1.00"))]))
        done = show_program("print", self.write("sheet.kel", data))
        self.assertEqual((done.code, done.complaints), (0, ""))
        for expected in ("Play", "XY Fader", r"2\.50 +3 +4 +5 +1 +The knock +AB 1\.00", r"7 +leko +Door special",
                         "Front wash"):
            self.assertRegex(done.output, expected)

    def test_what_standard_output_does_not_take_is_no_success(self):
        path = self.write("new.kel", new_show())
        for command in (["print", path], ["print", path, "--json"], ["rehearse", path, "--until", "900"]):
            with open("/dev/full", "w", encoding="ascii") as full:
                done = show_program(*command, stdout=full, stderr=-1)
            self.assertEqual((done.code, done.lines), (1, ["velgrove-show: standard output can't be written"]), command)


def bare_show():
    return header(1, 0, 0) + view()


def damaged_shows():
    """Name, bytes, and how the message about the first fault goes on behind the file's name."""
    whole = full_show()
    inputs_at = len(whole) - len(dmx_input(1, "in")) - len(dmx_input(-1))
    first_light, second_light = len(fixture(0, "Caf\xe9 \u20ac")), len(fixture(512, "n" * 300))
    lights = 311 + len(view(name="Stage"))
    yield "empty", b"", "offset 0, ProjectName: the file ends before this field: this is no show"
    yield "one byte", whole[:1], "offset 0, ProjectName: the file ends inside this field"
    yield "in the description", whole[:200], "offset 50, ProjectDesc: the file ends inside this field"
    yield "before the counts", whole[:305], "offset 305, NumberOfViews: the file ends before this field"
    yield "in a count", whole[:308], "offset 307, NumberOfQueues: the file ends inside this field"
    yield "the header alone", whole[:311], "offset 311, view 1, ViewName: the file ends before this field"
    yield "in a name", whole[:315], "offset 311, view 1, ViewName: the file ends inside this field"
    yield ("in a light", whole[:lights + first_light + 20],
           f"offset {lights + first_light + 6}, view 1, fixture 2, FixtureName: the file ends inside this field")
    yield ("behind a light", whole[:lights + first_light + second_light],
           f"offset {lights + first_light + second_light}, view 1, NumberOfFixtures: counts 3 fixtures, 2 are there")
    yield ("in the input records", whole[:inputs_at + 20], f"offset {inputs_at + 8}, DMX input 1, Values: "
           "the file ends inside this field")
    yield "trailing bytes", whole + b"abc", f"offset {len(whole)}, end of the show: 3 bytes that belong to no record"
    yield "a PNG", PNG, "offset 311, NumberOfViews: the show has no view"
    yield "a short PNG", PNG[:100], "offset 50, ProjectDesc: the file ends inside this field"
    yield "a text", b"To be or not to be. " * 100, "offset 311, view 1, ViewName: the file ends inside this field"
    yield "a negative count", header(1, -2, 0) + view(), "offset 307, NumberOfQueues: a count of -2: this is no show"
    yield ("too many views", header(3, 0, 0) + view(),
           f"offset {311 + len(view())}, NumberOfViews: counts 3 views, 1 is there")
    yield ("too few lists", header(1, 1, 0) + view() + cue_list("AB", []) + cue_list("XY", []),
           f"offset {311 + len(view()) + len(cue_list('AB', []))}, end of the show: ")
    link = cue_list("XY", [cue(XY, 1)])[:-8]
    yield ("an unknown tag", header(1, 1, 0) + view() + link + struct.pack("<Hi", 3, 4),
           f"offset {311 + len(view()) + len(link)}, cue list 1, cue 1, QueueNumberMasterGo: its tag 3 isn't known")


class DamagedFiles(InAFolder):
    def test_the_message_names_file_place_and_field(self):
        for name, data, fault in damaged_shows():
            with self.subTest(name):
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
        os.mkfifo(self.path("pipe"))
        for name, reason in (("missing.kel", "No such file or directory"), ("", "Is a directory"),
                             ("pipe", "not a file but a device or a pipe")):
            for command in ("print", "rehearse", "play"):
                path = self.path(name)
                self.assertEqual(show_program(command, path), (1, "", f"velgrove-show: {path}: {reason}\n"))


class BadJson(InAFolder):
    def made(self, content, out="out.kel", **how):
        return show_program("make", self.write("in.json", content), self.path(out), **how)

    def test_the_message_names_file_path_and_what_is_wrong(self):
        whole = json.loads(show_program("print", self.write("show.kel", show(xy=[{"number": 1}])), "--json").output)
        first_cue = ["colQueueData", 1, "colQueueEntries", 0]
        at_first_cue = "colQueueData[1].colQueueEntries[0]."
        for place, value, words in [
            (["colViews"], None, "colViews: an array is wanted, here is null"),
            (["colViews", 0, "colFixtures", 2, "Channel"], 70000,
             "colViews[0].colFixtures[2].Channel: 70000 is outside -32768 to 32767"),
            (["colViews", 0, "colFixtures", 0, "x"], "left", 'colViews[0].colFixtures[0].x: "left" is no number'),
            (["colViews", 0, "colZooms", 0], 5, "colViews[0].colZooms[0]: an object is wanted, here is a number"),
            (["colViews", 0, "colSubMasters", 3, "DimmerLevel", 9], 256,
             "colViews[0].colSubMasters[3].DimmerLevel[9]: 256 is outside 0 to 255"),
            ([*first_cue, "Values"], [0] * 511, at_first_cue + "Values: 511 numbers; it has 512"),
            ([*first_cue, "Up"], 1.5, at_first_cue + "Up: 1.5 is no whole number"),
            ([*first_cue, "Up"], "5", at_first_cue + "Up: a whole number is wanted, here is a string"),
            ([*first_cue, "EntryDesc"], "\u03a9", at_first_cue + 'EntryDesc: a show file has no character "\u03a9"'),
            ([*first_cue, "Fade"], 1, at_first_cue + "Fade: no such field"),
            ([*first_cue, "Down"], "gone", at_first_cue + "Down: is missing"),
            (["ProjectName"], "n" * 51, "ProjectName: 51 characters; a show file holds 50"),
        ]:
            tree = json.loads(json.dumps(whole))
            record = tree
            for step in place[:-1]:
                record = record[step]
            record[place[-1]] = value
            if value == "gone":
                del record[place[-1]]
            done = self.made(json.dumps(tree))
            self.assertEqual((done.code, done.output, done.complaints),
                             (1, "", f"velgrove-show: {self.path('in.json')}: {words}\n"))
            self.assertNotIn("out.kel", os.listdir(self.folder))

    def test_what_is_no_json_is_told_with_line_and_column(self):
        for content, words in (("", "line 1, column 1: "), ('{"a": 1,\n "b": }', "line 2, column 7: "),
                               (b"\xff\xfe{}", "line 1, column 1: "), (show(), "line 1, column 1: "),
                               ("[" * 100_000, "line 1, column 100001: "),
                               ("[]", "the show: an object is wanted, here is an array")):
            done = self.made(content)
            self.assertEqual(done.code, 1)
            self.assertTrue(done.complaints.startswith(f"velgrove-show: {self.path('in.json')}: {words}"), done)

    def test_where_nothing_can_be_written_is_named_and_nothing_is_lost(self):
        tree = show_program("print", self.write("show.kel", show()), "--json").output
        os.mkdir(self.path("folder"))
        os.mkfifo(self.path("pipe"))
        for out, reason in (("no/such/out.kel", "No such file or directory"), ("folder", "Is a directory"),
                            ("pipe", "not a file but a device or a pipe")):
            done = self.made(tree, out)
            self.assertEqual((done.code, done.output), (1, ""))
            self.assertTrue(done.complaints.startswith("velgrove-show: " + self.path(out)), done)
            self.assertIn(reason, done.complaints)
        self.assertEqual(sorted(os.listdir(self.folder)), ["folder", "in.json", "pipe", "show.kel"])

    def test_a_full_disk_leaves_the_show_that_was_there(self):
        tree = show_program("print", self.write("show.kel", show()), "--json").output
        self.write("out.kel", "the old show")
        done = self.made(tree, preexec_fn=small_disk, restore_signals=False)
        self.assertEqual((done.code, done.complaints), (1, f"velgrove-show: {self.path('out.kel')}: File too large\n"))
        self.assertEqual(self.read("out.kel"), b"the old show")
        self.assertEqual(sorted(os.listdir(self.folder)), ["in.json", "out.kel", "show.kel"])

    def test_a_link_to_the_show_stays_a_link(self):
        tree = show_program("print", self.write("show.kel", show()), "--json").output
        self.write("tonight.kel", "the old show")
        os.symlink("tonight.kel", self.path("out.kel"))
        self.assertEqual(self.made(tree), (0, "", ""))
        self.assertEqual((os.readlink(self.path("out.kel")), self.read("tonight.kel")), ("tonight.kel", show()))


def small_disk():
    """Files end at 4000 bytes; the signal for it is ignored, so that writing fails as on a full disk."""
    import resource
    resource.setrlimit(resource.RLIMIT_FSIZE, (4000, 4000))


class Usage(InAFolder):
    def test_wrong_usage_ends_with_2_and_words(self):
        path = self.write("show.kel", show())
        for arguments in ([], ["dance"], ["print"], ["print", path, "more"], ["print", path, "--xml"], ["make", path],
                          ["rehearse"], ["rehearse", path, "-", "more"], ["rehearse", path, "--until"],
                          ["rehearse", path, "--until", "-1"], ["rehearse", path, "--until", "soon"],
                          ["rehearse", path, "--until", "1.5"], ["rehearse", path, "--until", "2147483648"],
                          ["rehearse", path, self.path("missing")], ["rehearse", path, self.folder],
                          ["play"], ["play", path, "--changes"]):
            done = show_program(*arguments)
            self.assertEqual((done.code, done.output), (2, ""), arguments)
            self.assertRegex(done.complaints, r"\w{3}", arguments)
            self.assertLess(len(done.complaints), 300, "words that can be read")

    def test_help_shows_all(self):
        done = show_program("--help")
        self.assertEqual((done.code, done.complaints), (0, ""))
        for word in ("print", "make", "rehearse", "play", "stage|next ROW", "manual CHANNEL LEVEL", "trigger [COUNT]",
                     "none|fixtures|subs", "Exit code"):
            self.assertIn(word, done.output)
        self.assertIn("--until", show_program("play", "--help").output)


class BadScripts(InAFolder):
    def test_a_bad_line_stops_with_its_number_before_anything_runs(self):
        path = self.write("show.kel", show(xy=[{"number": 1}]))
        for line, words in [
            ("soon go", "the time is no whole number: soon"),
            ("-1 go", "the time is outside 0 to 2147483647: -1"),
            ("1.5 go", "the time is no whole number: 1.5"),
            ("99999999999999999999 go", "the time is no whole number"),
            ("2147483648 go", "the time is outside 0 to 2147483647: 2147483648"),
            ("99 go", "the time lies before the line above"),
            ("500", "a command is missing"),
            ("500 dance", "no such command: dance"),
            ("500 Go", "no such command: Go"),
            ("500 go 1", "wrong number of arguments for go"),
            ("500 ab", "wrong number of arguments for ab"),
            ("500 ab dance", "no such button of a player: dance"),
            ("500 xy go 1", "wrong number of arguments for go"),
            ("500 xy stage", "wrong number of arguments for stage"),
            ("500 xy stage 0", "ROW is outside 1 to 32767: 0"),
            ("500 ab next two", "ROW is no whole number: two"),
            ("500 ab reset 1", "wrong number of arguments for reset"),
            ("500 manual 1", "wrong number of arguments for manual"),
            ("500 manual 0 5", "CHANNEL is outside 1 to 512: 0"),
            ("500 manual 513 5", "CHANNEL is outside 1 to 512: 513"),
            ("500 manual 1 256", "LEVEL is outside 0 to 255: 256"),
            ("500 manual 1 -1", "LEVEL is outside 0 to 255: -1"),
            ("500 manual 1 5 5", "wrong number of arguments for manual"),
            ("500 input x 5", "CHANNEL is no whole number: x"),
            ("500 input 1 5%", "LEVEL is no whole number: 5%"),
            ("500 mode", "wrong number of arguments for mode"),
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
