#!/usr/bin/env python3
"""Writes the demo show as JSON, for `velgrove-show make`: The Winter's Tale in a small theatre.

    tools/demo_show.py > demo.json && velgrove-show make demo.json data/demo.kel

The XY list plays the scenes, AB what stands around them: the cyclorama and the two moving lights.
"""
import json

CHANNELS = 512
MOVING_LIGHT = 6
OUT_OF_SIGHT = 2000  # where the desk keeps the channels of a moving light's position

SHAPES = {"fresnel": 1, "leko": 2, "par38": 3, "practical": 4, "scoop": 5, "icue": MOVING_LIGHT}
UPSTAGE, TO_STAGE_LEFT, TO_STAGE_RIGHT = 180, 270, 90  # where lights look that don't look downstage

# The positions, upstage at the top of the plot. Stage right is left on it, since it is drawn from the house.
# (type, angle, y, watts, {channel: (x, name, colour)})
POSITIONS = [
    ("scoop", UPSTAGE, 905, 500, {
        31: (105, "Cyc blue 1", "L119"), 32: (263, "Cyc amber 1", "L134"), 33: (421, "Cyc blue 2", "L119"),
        34: (579, "Cyc amber 2", "L134"), 35: (737, "Cyc blue 3", "L119"), 36: (895, "Cyc amber 3", "L134")}),
    ("icue", 0, 745, 575, {41: (80, "Moving light SR", ""), 44: (920, "Moving light SL", "")}),
    ("par38", 0, 745, 150, {
        21: (205, "Back amber SR", "L134"), 22: (292, "Back blue SR", "L201"), 23: (379, "Back amber C", "L134"),
        24: (621, "Back blue C", "L201"), 25: (708, "Back amber SL", "L134"), 26: (795, "Back blue SL", "L201")}),
    ("leko", 0, 745, 750, {27: (500, "Window gobo", "L204")}),
    ("fresnel", 0, 590, 1000, {
        11: (130, "Top warm SR", "L103"), 12: (250, "Top blue SR", "L161"), 13: (370, "Top warm C", "L103"),
        14: (630, "Top blue C", "L161"), 15: (750, "Top warm SL", "L103"), 16: (870, "Top blue SL", "L161")}),
    ("leko", 0, 590, 750, {17: (500, "Throne", "")}),
    ("fresnel", TO_STAGE_LEFT, 455, 1000, {51: (70, "Boom SR high", "L201")}),
    ("fresnel", TO_STAGE_LEFT, 340, 1000, {52: (70, "Boom SR low", "L152")}),
    ("fresnel", TO_STAGE_RIGHT, 455, 1000, {53: (930, "Boom SL high", "L201")}),
    ("fresnel", TO_STAGE_RIGHT, 340, 1000, {54: (930, "Boom SL low", "L152")}),
    ("practical", 0, 440, 40, {61: (680, "Table lamp", ""), 62: (290, "Door light", "")}),
    ("practical", 0, 325, 40, {63: (500, "Lantern", "")}),
    ("leko", UPSTAGE, 120, 750, {
        1: (165, "DR warm", "L103"), 2: (235, "DR cold", "L201"), 3: (365, "DRC warm", "L103"),
        4: (435, "DRC cold", "L201"), 5: (565, "DLC warm", "L103"), 6: (635, "DLC cold", "L201"),
        7: (765, "DL warm", "L103"), 8: (835, "DL cold", "L201")}),
    ("practical", 0, 120, 500, {71: (65, "House left", ""), 72: (935, "House right", "")}),
]

FRONT_WARM, FRONT_COLD, AREA_DR, AREA_DL = (1, 3, 5, 7), (2, 4, 6, 8), (1, 2), (7, 8)
CENTRE_COLD = (4, 6)
TOP_WARM, TOP_BLUE, THRONE, WINDOW = (11, 13, 15), (12, 14, 16), (17,), (27,)
BACK_AMBER, BACK_BLUE = (21, 23, 25), (22, 24, 26)
CYC_BLUE, CYC_AMBER = (31, 33, 35), (32, 34, 36)
MOVERS = (41, 44)
BOOMS_SR, BOOMS_SL = (51, 52), (53, 54)
BOOMS = BOOMS_SR + BOOMS_SL
LAMP, DOOR, LANTERN, HOUSE = (61,), (62,), (63,), (71, 72)


def look(*parts):
    levels = [0] * CHANNELS
    for channels, level in parts:
        for channel in channels:
            levels[channel - 1] = level
    return levels


def aimed(right, left):
    """Where both moving lights look: X and Y of each, 0 to 255."""
    return tuple(((channel + axis,), place)
                 for channel, places in zip(MOVERS, (right, left)) for axis, place in enumerate(places, 1))


ON_THRONE, ON_SHORE = aimed((150, 120), (106, 120)), aimed((60, 200), (196, 200))
CROSSED, OUTWARDS = aimed((200, 90), (56, 90)), aimed((70, 90), (186, 90))
ON_BOWS = aimed((128, 60), (128, 60))

# number, what happens, (up, down, delay) of the fade into the cue, look, link
XY = [
    (0, "Blackout", (3, 3, 0), look(), None),
    (1, "Preset, house open", (3, 3, 0),
     look((HOUSE, 204), (CYC_BLUE, 90), (WINDOW, 120), (LAMP, 140), (BACK_BLUE, 60)), None),
    (2, "House to half", (4, 3, 0),
     look((HOUSE, 102), (CYC_BLUE, 90), (WINDOW, 120), (LAMP, 140), (BACK_BLUE, 60)), None),
    (3, "House out", (3, 2, 0), look((CYC_BLUE, 60), (WINDOW, 80), (LAMP, 100)), None),
    (4, "Court of Sicilia", (4, 4, 0),
     look((FRONT_WARM, 184), (FRONT_COLD, 120), (TOP_WARM, 204), (BACK_AMBER, 110), (THRONE, 90), (LAMP, 180)),
     ("AB", "1.00")),
    (5, "Polixenes stays, DL", (3, 3, 0),
     look((FRONT_WARM, 90), (AREA_DL, 230), (TOP_WARM, 120), (BACK_AMBER, 80), (LAMP, 150)), None),
    (6, "Leontes aside, DR", (3, 3, 0),
     look((AREA_DR, 200), (BOOMS_SR, 140), (TOP_BLUE, 60), (BACK_BLUE, 90), (AREA_DL, 60)), None),
    (7, "Night, he can't sleep", (5, 3, 1), look((LAMP, 255), (WINDOW, 140), (BACK_BLUE, 60), (THRONE, 50)),
     ("AB", "2.00")),
    (7.5, "Paulina at the door", (0, 0, 0),
     look((LAMP, 255), (DOOR, 255), (WINDOW, 140), (BACK_BLUE, 60), (THRONE, 50)), None),
    (8, "The trial", (4, 5, 1), look((FRONT_COLD, 200), (THRONE, 255), (TOP_BLUE, 120), (BACK_BLUE, 90)), None),
    (9, "Hermione falls", (1, 1, 0), look((FRONT_COLD, 50), (THRONE, 255)), None),
    (10, "Shore of Bohemia", (5, 3, 1), look((BOOMS, 160), (TOP_BLUE, 140), (BACK_BLUE, 120)), ("AB", "3.00")),
    (11, "Storm, loop to 11.50", (2, 2, 0),
     look((BOOMS_SR, 220), (BOOMS_SL, 90), (TOP_BLUE, 170), (BACK_BLUE, 60)), None),
    (11.25, "Storm lulls", (2, 2, 0), look((BOOMS, 90), (TOP_BLUE, 90)), None),
    (11.5, "Storm gusts", (2, 2, 0), look((BOOMS_SR, 90), (BOOMS_SL, 230), (TOP_BLUE, 190), (BACK_BLUE, 200)), None),
    (12, "Thunder", (1, 1, 0), look((FRONT_COLD, 160), (BOOMS, 200), (BACK_BLUE, 255)), None),
    (12.5, "Exit, pursued by a bear", (4, 2, 0), look((BOOMS_SL, 200), (TOP_BLUE, 80), (BACK_BLUE, 150)),
     ("AB", "5.00")),
    (13, "Shepherd's lantern, C", (4, 2, 1), look((LANTERN, 204), (CENTRE_COLD, 70), (TOP_BLUE, 90)), None),
    (13.5, "Lantern out", (2, 2, 0), look((CENTRE_COLD, 70), (TOP_BLUE, 90)), None),
    (14, "Time speaks", (3, 3, 1), look((THRONE, 230), (BACK_BLUE, 90)), ("AB", "6.00")),
    (15, "Dawn, sixteen years on", (10, 7, 0), look((BACK_AMBER, 160), (BOOMS_SL, 200), (TOP_WARM, 90)),
     ("AB", "7.00")),
    (16, "Sheep-shearing, full day", (3, 3, 0),
     look((FRONT_WARM, 220), (FRONT_COLD, 140), (TOP_WARM, 230), (BACK_AMBER, 160), (BOOMS, 90)), ("AB", "8.00")),
    (17, "The dance", (3, 3, 0), look((FRONT_WARM, 140), (TOP_WARM, 255), (BACK_AMBER, 220), (BOOMS, 150)),
     ("AB", "9.00")),
    (18, "Polixenes unmasks", (0, 0, 0), look((FRONT_COLD, 255), (TOP_WARM, 60), (THRONE, 140)), None),
    (19, "Paulina's chapel", (4, 2, 1), look((WINDOW, 200), (DOOR, 120), (TOP_BLUE, 60), (BACK_BLUE, 120)),
     ("AB", "11.00")),
    (20, "The statue wakes", (5, 5, 0),
     look((THRONE, 255), (FRONT_WARM, 110), (BACK_AMBER, 120), (WINDOW, 200), (DOOR, 120)), None),
    (21, "Out on the last word", (1, 1, 0), look(), None),
    (22, "Curtain call", (2, 2, 0),
     look((FRONT_WARM, 255), (FRONT_COLD, 204), (TOP_WARM, 255), (BACK_AMBER, 255), (BOOMS, 180)), ("AB", "12.00")),
    (23, "House up", (3, 3, 0), look((HOUSE, 255), (FRONT_WARM, 90), (LAMP, 140)), ("AB", "13.00")),
]

AB = [
    (0, "Blackout", (4, 4, 0), look(), None),
    (1, "Sky of Sicilia", (5, 5, 0), look((CYC_AMBER, 150), (CYC_BLUE, 60), *ON_THRONE), None),
    (2, "Night, movers to shore", (5, 5, 0), look((CYC_BLUE, 70), *ON_SHORE), None),
    (3, "Storm sky, movers on", (5, 5, 0), look((CYC_BLUE, 110), (MOVERS, 200), *ON_SHORE), None),
    (4, "Lightning, with thunder", (0, 0, 0), look((CYC_BLUE, 255), (CYC_AMBER, 120), (MOVERS, 255), *ON_SHORE),
     ("XY", "12.00")),
    (5, "Lightning dies away", (4, 4, 0), look((CYC_BLUE, 60), (MOVERS, 90), *CROSSED), None),
    (6, "Stars", (4, 4, 0), look((CYC_BLUE, 90), (MOVERS, 120), *ON_THRONE), None),
    (7, "Dawn", (10, 10, 0), look((CYC_AMBER, 200), (CYC_BLUE, 60), *OUTWARDS), None),
    (8, "Full day", (3, 3, 0), look((CYC_AMBER, 160), (CYC_BLUE, 230), *OUTWARDS), None),
    (9, "Dance, beams outwards", (3, 3, 0), look((CYC_AMBER, 230), (CYC_BLUE, 90), (MOVERS, 220), *OUTWARDS), None),
    (10, "Dance, beams crossed", (2, 2, 0), look((CYC_AMBER, 120), (CYC_BLUE, 180), (MOVERS, 220), *CROSSED), None),
    (11, "Sky and movers out", (5, 5, 0), look(*ON_BOWS), None),
    (12, "Bows", (2, 2, 0), look((CYC_AMBER, 180), (CYC_BLUE, 120), (MOVERS, 255), *ON_BOWS), None),
    (13, "Sky for the way home", (3, 3, 0), look((CYC_AMBER, 90), (CYC_BLUE, 110), *ON_BOWS), None),
]


def cue(mark, entry, times):
    number, description, _, levels, link = entry
    up, down, delay = times
    assert down <= up + delay, f"into {description}: the fall would be cut off"
    return {
        "EntryName": "", "EntryDesc": description, "Reserved": 0, "EntryNum": number,
        "Up": up, "Down": down, "Delay": delay, "Values": levels, "EntryQueueList": mark,
        "QueueListMasterGo": link[0] if link else "None",
        "QueueNumberMasterGo": link[1] if link else "None",
    }


def cue_list(name, mark, cues):
    """The desk takes a fade's times from the cue that it leaves."""
    leaving = [entry[2] for entry in cues[1:] + cues[:1]]
    return {"QueueListName": name, "QueueListDesc": name + " Fader",
            "colQueueEntries": [cue(mark, *each) for each in zip(cues, leaving)]}


def fixture(kind, angle, x, y, channel, name, watts, colour):
    record = {"FixtureType": kind, "FixtureName": name, "Level": 0, "Channel": channel, "IconShape": SHAPES[kind],
              "PerpX": x, "PerpY": y + 100, "Angle": angle, "x": x, "y": y, "Wattage": watts,
              "ColorNumber": colour, "ColorMFG": "Lee" if colour else ""}
    for text in ("PatternNumber", "PatternMFG", "EdFocus", "Mood", "Effect"):
        record[text] = ""
    for number in ("Shape", "ChannelTextShape", "LevelTextShape", "DMXInTextShape", "CenterShape", "CenterShape1",
                   "CenterShape2", "RectShape", "DMXInControlChannel", "DMXIn", "Selected", "SelectIndex"):
        record[number] = 0
    return record


def fixtures():
    for kind, angle, y, watts, row in POSITIONS:
        for channel, (x, name, colour) in row.items():
            yield fixture(kind, angle, x, y, channel, name, watts, colour)
            if SHAPES[kind] == MOVING_LIGHT:
                for axis, title in enumerate(("X", "Y"), 1):
                    aside = x + OUT_OF_SIGHT, y + OUT_OF_SIGHT
                    yield fixture(kind, 0, *aside, channel + axis, f"{name}, {title}", 0, "")


SUBMASTERS = [
    ("Fr warm", look((FRONT_WARM, 255))),
    ("Fr cold", look((FRONT_COLD, 255))),
    ("Straw", look((TOP_WARM, 255))),
    ("Top blue", look((TOP_BLUE, 255))),
    ("Bk gold", look((BACK_AMBER, 255))),
    ("Bk blue", look((BACK_BLUE, 255))),
    ("Booms", look((BOOMS, 255))),
    ("Throne", look((THRONE, 255))),
    ("Window", look((WINDOW, 255))),
    ("Cyc blue", look((CYC_BLUE, 255))),
    ("Cyc gold", look((CYC_AMBER, 255))),
    ("Movers", look((MOVERS, 255), *ON_BOWS)),
    ("Practs", look((LAMP + DOOR + LANTERN, 204))),
    ("Sunset", look((CYC_AMBER, 230), (BOOMS_SR, 140), (BACK_AMBER, 200))),
    ("Moon", look((CYC_BLUE, 110), (TOP_BLUE, 150), (WINDOW, 180))),
    ("House", look((HOUSE, 255))),
]


def submaster(index):
    name, levels = SUBMASTERS[index] if index < len(SUBMASTERS) else (" ", look())
    return {"SubMasterName": name, "Level": 0, "Identifier": index, "DimmerLevel": levels,
            "DMXInControlChannel": 0, "DMXIn": 0}


show = {
    "ProjectName": "The Winter's Tale".ljust(50), "ProjectDesc": "".ljust(255),
    "colViews": [{
        "ViewName": "The Winter's Tale",
        "colFixtures": list(fixtures()),
        "colZooms": [{"tp": 1000, "bt": 0, "lt": 0, "rt": 1000}],
        "colSubMasters": [submaster(index) for index in range(24)],
    }],
    "colQueueData": [cue_list("AB", 2, AB), cue_list("XY", 1, XY)],
    "colDMXIn": [],
}
print(json.dumps(show))
