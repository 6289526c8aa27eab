#!/usr/bin/env python3
"""Draws the six fixture symbols of the plot as exchange drawings (DXF, release 12).

    tools/fixture_shapes.py graphics

Each is 100 units along its longer side and stands about the origin, with its front downstage (down). The body has
room for two lines of text. What is closed gets filled with the light's colour.
"""
import math
import pathlib
import sys


def entity(kind, *pairs):
    return [(0, kind), (8, "0"), *pairs]


def line(x1, y1, x2, y2):
    return entity("LINE", (10, x1), (20, y1), (11, x2), (21, y2))


def circle(x, y, radius):
    return entity("CIRCLE", (10, x), (20, y), (40, radius))


def polyline(*points, closed=True):
    """Points are (x, y) or (x, y, degrees of the arc to the next point, anticlockwise)."""
    pairs = entity("POLYLINE", (66, 1), (70, int(closed)), (10, 0), (20, 0), (30, 0))
    for x, y, *arc in points:
        pairs += entity("VERTEX", (10, x), (20, y))
        if arc:
            pairs.append((42, round(math.tan(math.radians(arc[0]) / 4), 6)))
    return pairs + entity("SEQEND")


def box(left, top, right, bottom):
    return polyline((left, top), (right, top), (right, bottom), (left, bottom))


SYMBOLS = {
    # A short housing that widens towards its lens
    "fresnel": [polyline((-33, 50), (33, 50), (33, 16), (45, -4), (45, -50), (-45, -50), (-45, -4), (-33, 16))],
    # A lamp cap, a long barrel, and the lens in front
    "leko": [polyline((-22, 50), (22, 50), (22, 18), (31, 4), (31, -50), (-31, -50), (-31, 4), (-22, 18)),
             line(-31, -38, 31, -38)],
    # A reflector lamp in its can
    "par38": [polyline((-25, 50), (25, 50), (31, -50), (-31, -50)),
              line(-30.25, -37.5, 30.25, -37.5)],
    # A lamp of the set: a globe that shines to all sides
    "practical": [circle(0, 0, 41),
                  line(0, 41, 0, 50), line(0, -41, 0, -50), line(41, 0, 50, 0), line(-41, 0, -50, 0)],
    # A deep bowl with its socket, and the frame for colour below it
    "scoop": [polyline((-50, -39), (50, -39), (50, -24, 57), (22, 41, 25), (10, 44), (10, 50), (-10, 50), (-10, 44, 25),
                       (-22, 41, 57), (-50, -24)),
              line(-49, -49, 49, -49)],
    # A head that turns in its yoke, on a base
    "icue": [circle(0, 6, 44),
             box(-50, -42, 50, -50),
             polyline((-44, 6), (-49, 6), (-49, -42), closed=False),
             polyline((44, 6), (49, 6), (49, -42), closed=False)],
}


def text(pairs):
    return "".join(f"{code:3d}\n{value:g}\n" if isinstance(value, float) else f"{code:3d}\n{value}\n"
                   for code, value in pairs)


def drawing(entities):
    head = [(0, "SECTION"), (2, "HEADER"), (9, "$ACADVER"), (1, "AC1009"), (0, "ENDSEC"),
            (0, "SECTION"), (2, "ENTITIES")]
    return text(head + [pair for each in entities for pair in each] + [(0, "ENDSEC"), (0, "EOF")])


folder = pathlib.Path(sys.argv[1])
for name, entities in SYMBOLS.items():
    (folder / f"{name}.dxf").write_text(drawing(entities))
