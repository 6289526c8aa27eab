"""Shows as the bytes of a show file, laid out field by field."""

import struct

CHANNELS = 512
AB, XY = 2, 1  # the marks that the cues of each list carry


def text(value):
    """A string, or the bytes that no character stands for."""
    data = value if isinstance(value, bytes) else value.encode("cp1252")
    return struct.pack("<H", len(data)) + data


def tagged(value):
    """A value that may be absent."""
    return struct.pack("<H", 0) if value is None else struct.pack("<H", 8) + text(value)


def look(levels):
    """512 level bytes from {channel: level}."""
    return bytes(levels.get(channel, 0) for channel in range(1, CHANNELS + 1))


def header(views, lists, inputs):
    return b"Play".ljust(50) + b" " * 255 + struct.pack("<3h", views, lists, inputs)


def fixture(channel, name="Lamp"):
    return (text("leko") + text(name) + struct.pack("<BihIIIIIII", 0, 0, channel, 0, 0, 0, 2, 0, 0, 0)
            + struct.pack("<5df", 0.0, 0.0, 0.0, 0.0, 0.0, 500.0)
            + b"".join(text(each) for each in ("L103", "Lee", "", "", "", "", ""))
            + struct.pack("<i4B", 0, 0, 0, 0, 0))


def zoom():
    return struct.pack("<4d", 1000.0, 0.0, 0.0, 1000.0)


def submaster(index):
    return text(" ") + struct.pack("<ii", 0, index) + look({}) + bytes(2)


def view(fixtures, zooms, submasters):
    return (text("Play") + struct.pack("<3h", len(zooms), len(fixtures), len(submasters))
            + b"".join([*fixtures, *zooms, *submasters]))


def cue(mark, number, levels=None, up=0, down=0, delay=0, description="", link=("None", "None")):
    return (text("") + text(description) + struct.pack("<hf3h", 0, number, up, down, delay)
            + look(levels or {}) + struct.pack("<h", mark) + text(link[0]) + tagged(link[1]))


def blackout(mark):
    return cue(mark, 0, description="Blackout")


def cue_list(name, cues):
    return text(name) + text(name + " Fader") + struct.pack("<h", len(cues)) + b"".join(cues)


def both_lists(xy=(), ab=()):
    """Both lists of a show. `xy` and `ab` hold the arguments of each cue behind Blackout."""
    return b"".join(cue_list(name, [blackout(mark), *(cue(mark, **each) for each in cues)])
                    for name, mark, cues in (("AB", AB, ab), ("XY", XY, xy)))


def dmx_input():
    return bytes(2) + text("") + text("") + bytes(513) + bytes(2)


def show(xy=(), ab=(), patch=range(1, 13)):
    """A whole show of one view, with the cues of both lists."""
    stage = view([fixture(channel) for channel in patch], [zoom()], [submaster(index) for index in range(24)])
    return header(1, 2, 0) + stage + both_lists(xy, ab)
