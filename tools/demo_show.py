#!/usr/bin/env python3
"""Writes the demo show as JSON, for `velgrove-show make`: a small evening at the theatre.

    tools/demo_show.py > demo.json && velgrove-show make demo.json data/demo.kel
"""
import json

CHANNELS = 512

# channel: (type, shape, name, x, y, watts, colour)
RIG = {
    1: ("fresnel", 1, "Front wash left", 200, 850, 1000, "L103"),
    2: ("fresnel", 1, "Front wash centre", 500, 850, 1000, "L103"),
    3: ("fresnel", 1, "Front wash right", 800, 850, 1000, "L103"),
    4: ("leko", 2, "Special table", 350, 700, 750, ""),
    5: ("leko", 2, "Special door", 750, 650, 750, ""),
    6: ("par38", 3, "Back light left", 250, 250, 150, "L201"),
    7: ("par38", 3, "Back light centre", 500, 230, 150, "L201"),
    8: ("par38", 3, "Back light right", 750, 250, 150, "L201"),
    9: ("practical", 4, "Table lamp", 360, 520, 40, ""),
    10: ("scoop", 5, "Cyclorama left", 350, 100, 500, "L119"),
    11: ("scoop", 5, "Cyclorama right", 650, 100, 500, "L119"),
    12: ("icue", 6, "Moving special", 500, 600, 575, ""),
}

FRONT, SPECIALS, BACK, LAMP, CYC, MOVER = (1, 2, 3), (4, 5), (6, 7, 8), (9,), (10, 11), (12,)


def look(*parts):
    levels = [0] * CHANNELS
    for channels, level in parts:
        for channel in channels:
            levels[channel - 1] = level
    return levels


# number, what happens, (up, down, delay) of the fade that leaves the cue, look, link
XY = [
    (0, "Blackout", (3, 3, 0), look(), None),
    (1, "House to half, preset", (4, 3, 0), look((CYC, 90), (LAMP, 60)), None),
    (2, "Morning", (5, 5, 0), look((FRONT, 140), (CYC, 200), (LAMP, 60)), ("AB", "1.00")),
    (3, "The letter", (2, 4, 2), look((FRONT, 70), ((4,), 255), (LAMP, 120)), None),
    (4, "A knock", (0, 0, 0), look((FRONT, 70), ((4, 5), 255), (LAMP, 120)), None),
    (5, "At the door", (4, 4, 0), look((FRONT, 110), ((5,), 220), (BACK, 90)), None),
    (6, "Evening falls", (2, 4, 3), look((BACK, 180), (CYC, 60), (LAMP, 200)), None),
    (6.5, "Alone", (2, 2, 0), look((LAMP, 200), ((12,), 160)), ("AB", "2.00")),
    (7, "Curtain call", (3, 3, 0), look((FRONT, 255), (BACK, 255), (CYC, 160)), None),
]

AB = [
    (0, "Blackout", (4, 4, 0), look(), None),
    (1, "Sun on the back wall", (6, 6, 0), look(((7,), 200), ((11,), 120)), None),
    (2, "Moon", (5, 5, 0), look(((6,), 110), ((10,), 80)), None),
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


SUBMASTERS = {0: ("Front", look((FRONT, 255))), 1: ("Back", look((BACK, 255))), 2: ("Cyc", look((CYC, 255)))}


def submaster(index):
    name, levels = SUBMASTERS.get(index, (" ", look()))
    return {"SubMasterName": name, "Level": 0, "Identifier": index, "DimmerLevel": levels,
            "DMXInControlChannel": 0, "DMXIn": 0}


show = {
    "ProjectName": "Demo".ljust(50), "ProjectDesc": "".ljust(255),
    "colViews": [{
        "ViewName": "Demo",
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
