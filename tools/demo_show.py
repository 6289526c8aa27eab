#!/usr/bin/env python3
"""Writes the demo show as JSON, for `velgrove-show make`: a small evening at the theatre.

    tools/demo_show.py > demo.json && velgrove-show make demo.json data/demo.kel
"""
import json

CHANNELS = 512

# Five positions on the plot, upstage at the top: three electrics, the set, front of house.
# (type, shape, y, {channel: (x, name, watts, colour)})
POSITIONS = [
    ("scoop", 5, 880, {21: (120, "Cyc far left", 500, "L119"), 22: (310, "Cyc left", 500, "L119"),
                       23: (500, "Cyc centre", 500, "L119"), 24: (690, "Cyc right", 500, "L119"),
                       25: (880, "Cyc far right", 500, "L119")}),
    ("par38", 3, 690, {13: (230, "Back far left", 150, "L201"), 14: (365, "Back left", 150, "L201"),
                       15: (620, "Back right", 150, "L201"), 16: (755, "Back far right", 150, "L201")}),
    ("leko", 2, 690, {19: (490, "Window", 750, "L204")}),
    ("icue", 6, 690, {41: (95, "Moving left", 575, ""), 44: (895, "Moving right", 575, "")}),
    ("fresnel", 1, 505, {6: (70, "Side left", 1000, "L152"), 7: (190, "Top blue left", 1000, "L161"),
                         8: (310, "Top warm left", 1000, "L103"), 9: (430, "Top warm", 1000, "L103"),
                         11: (675, "Top warm right", 1000, "L103"), 12: (800, "Top blue right", 1000, "L161"),
                         17: (925, "Side right", 1000, "L152")}),
    ("leko", 2, 505, {10: (555, "Throne", 750, "")}),
    ("practical", 4, 300, {51: (255, "Lantern", 40, ""), 52: (715, "Brazier", 40, "L134")}),
    ("leko", 2, 110, {1: (135, "Front left", 750, "L103"), 2: (280, "Front left centre", 750, "L103"),
                      3: (425, "Front centre", 750, "L103"), 4: (570, "Special, the letter", 750, ""),
                      5: (715, "Front right centre", 750, "L103"), 18: (860, "Front right", 750, "L103")}),
]
RIG = {channel: (kind, shape, name, x, y, watts, colour)
       for kind, shape, y, row in POSITIONS for channel, (x, name, watts, colour) in row.items()}

FRONT, LETTER, SIDES, WARM, BLUE = (1, 2, 3, 5, 18), (4,), (6, 17), (8, 9, 11), (7, 12)
THRONE, BACK, WINDOW, CYC = (10,), (13, 14, 15, 16), (19,), (21, 22, 23, 24, 25)
MOVERS, LANTERN, BRAZIER = (41, 44), (51,), (52,)


def look(*parts):
    levels = [0] * CHANNELS
    for channels, level in parts:
        for channel in channels:
            levels[channel - 1] = level
    return levels


# number, what happens, (up, down, delay) of the fade that leaves the cue, look, link
XY = [
    (0, "Blackout", (3, 3, 0), look(), None),
    (1, "House to half, preset", (4, 3, 0), look((CYC, 90), (WINDOW, 60)), None),
    (2, "Court of Sicilia", (5, 5, 0), look((FRONT, 163), (WARM, 184), (BACK, 97), (CYC, 117)), ("AB", "1.00")),
    (3, "The letter", (2, 4, 2), look((FRONT, 70), (LETTER, 255), (WARM, 60), (THRONE, 140)), None),
    (4, "A knock", (0, 0, 0), look((FRONT, 70), (LETTER, 255), (WINDOW, 255), (THRONE, 140)), None),
    (5, "Leontes alone", (4, 4, 0), look((THRONE, 255), (SIDES, 90), (BACK, 56)), None),
    (6, "Court dissolves", (3, 4, 1), look((BACK, 120), (CYC, 60), (BLUE, 90)), None),
    (7, "Storm on the shore", (8, 5, 1), look((SIDES, 200), (BLUE, 140), (BACK, 97), (CYC, 153), (MOVERS, 255)),
     None),
    (8, "Exit, pursued by a bear", (2, 2, 0), look((BLUE, 180), (BACK, 56), (MOVERS, 217)), ("AB", "2.00")),
    (9, "Shepherd finds the child", (6, 8, 2), look((FRONT, 90), (LANTERN, 166), (BLUE, 110), (CYC, 77)), None),
    (9.5, "Lantern out", (2, 2, 0), look((FRONT, 60), (BLUE, 110), (CYC, 77)), None),
    (10, "Time passes", (6, 6, 0), look((CYC, 200), (MOVERS, 120)), None),
    (11, "Sheep-shearing, full day", (4, 4, 0), look((FRONT, 204), (WARM, 230), (CYC, 255), (SIDES, 90)), None),
    (12, "Dance", (3, 3, 0), look((FRONT, 140), (WARM, 255), (CYC, 200), (BRAZIER, 180), (MOVERS, 200)), None),
    (13, "Sicilia, night", (6, 6, 3), look((WINDOW, 180), (BACK, 120), (BRAZIER, 150), (THRONE, 60)), None),
    (14, "The statue wakes", (5, 5, 0), look((THRONE, 255), (WARM, 120), (LANTERN, 120), (FRONT, 90)), None),
    (15, "Curtain call", (3, 3, 0), look((FRONT, 255), (WARM, 255), (BACK, 255), (CYC, 160)), None),
]

AB = [
    (0, "Blackout", (4, 4, 0), look(), None),
    (1, "Sky, warm", (6, 6, 0), look(((22, 24), 140), ((23,), 153)), None),
    (2, "Sky, storm", (5, 5, 0), look(((21, 25), 120)), None),
    (3, "Sea shimmer", (5, 5, 0), look(((21, 22), 90), ((24, 25), 110)), None),
    (4, "Sky dawn", (8, 8, 0), look(((23,), 200), ((22, 24), 90)), None),
    (5, "Sky full day", (6, 6, 0), look((CYC, 210)), None),
    (6, "Sky night", (6, 6, 0), look(((21, 25), 60)), None),
]


def cue(mark, number, description, times, levels, link):
    up, down, delay = times
    return {
        "EntryName": "", "EntryDesc": description, "Reserved": 0, "EntryNum": number,
        "Up": up, "Down": down, "Delay": delay, "Values": levels, "EntryQueueList": mark,
        "QueueListMasterGo": link[0] if link else "None",
        "QueueNumberMasterGo": link[1] if link else "None",
    }


def cue_list(name, mark, cues):
    return {"QueueListName": name, "QueueListDesc": name + " Fader",
            "colQueueEntries": [cue(mark, *each) for each in cues]}


def fixture(channel):
    kind, shape, name, x, y, watts, colour = RIG[channel]
    record = {"FixtureType": kind, "FixtureName": name, "Level": 0, "Channel": channel, "IconShape": shape,
              "PerpX": x, "PerpY": y + 100, "Angle": 0, "x": x, "y": y, "Wattage": watts,
              "ColorNumber": colour, "ColorMFG": "Lee" if colour else ""}
    for text in ("PatternNumber", "PatternMFG", "EdFocus", "Mood", "Effect"):
        record[text] = ""
    for number in ("Shape", "ChannelTextShape", "LevelTextShape", "DMXInTextShape", "CenterShape", "CenterShape1",
                   "CenterShape2", "RectShape", "DMXInControlChannel", "DMXIn", "Selected", "SelectIndex"):
        record[number] = 0
    return record


SUBMASTERS = {index: (name, look((channels, 255))) for index, (name, channels) in enumerate((
    ("Front", FRONT), ("Warm", WARM), ("Blue", BLUE), ("Back", BACK), ("Cyc", CYC), ("Sides", SIDES),
    ("Movers", MOVERS), ("Practicals", LANTERN + BRAZIER)))}


def submaster(index):
    name, levels = SUBMASTERS.get(index, (" ", look()))
    return {"SubMasterName": name, "Level": 0, "Identifier": index, "DimmerLevel": levels,
            "DMXInControlChannel": 0, "DMXIn": 0}


show = {
    "ProjectName": "The Winter's Tale".ljust(50), "ProjectDesc": "".ljust(255),
    "colViews": [{
        "ViewName": "The Winter's Tale",
        "colFixtures": [fixture(channel) for channel in RIG],
        "colZooms": [{"tp": 1000, "bt": 0, "lt": 0, "rt": 1000}],
        "colSubMasters": [submaster(index) for index in range(24)],
    }],
    "colQueueData": [cue_list("AB", 2, AB), cue_list("XY", 1, XY)],
    "colDMXIn": [],
}

for each in AB + XY:
    up, down, delay = each[2]
    assert down <= up + delay, f"cue {each[0]}: the fall would be cut off"
print(json.dumps(show))
