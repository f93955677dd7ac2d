#!/usr/bin/env python3
"""Makes the font of the large read-outs: characters of seven segments, as lamps and liquid
crystals show them.

    tools/make_font.py          writes res/crystal.ttf, family "Crystal"
"""
import pathlib
import struct

UNITS = 1000  # per em
WIDTH = 560  # of a digit, with the space beside it
LEFT, RIGHT = 50, 510
BOTTOM, MIDDLE, TOP = 0, 350, 700
HALF = 42  # of a segment's thickness
GAP = 8  # between two segments
SLANT = 0.06  # to the right, for each unit upwards

# The segments, clockwise from the top, then the middle one:
#     a
#   f   b
#     g
#   e   c
#     d
LETTERS = {
    "0": "abcdef", "1": "bc", "2": "abged", "3": "abgcd", "4": "fgbc", "5": "afgcd",
    "6": "afgedc", "7": "abc", "8": "abcdefg", "9": "abcdfg",
    "A": "abcefg", "B": "cdefg", "C": "adef", "D": "bcdeg", "E": "adefg", "F": "aefg",
    "G": "acdef", "H": "bcefg", "I": "ef", "J": "bcde", "K": "acefg", "L": "def",
    "M": "aceg", "N": "abcef", "O": "abcdef", "P": "abefg", "Q": "abcfg", "R": "eg",
    "S": "acdfg", "T": "defg", "U": "bcdef", "V": "cde", "W": "bdfg", "X": "bcefg",
    "Y": "bcdfg", "Z": "abdeg", "-": "g", "_": "d", "=": "dg", "[": "adef", "]": "abcd",
    " ": "", "\u00b0": "abfg", "\"": "bf",
}

# Characters of dots and strokes of their own: (x, y) of squares' centres, or four corners.
DOT = 48  # half of a dot's side
DOTS = {".": [(120, 42)], ",": [(120, 42)], ":": [(140, 180), (140, 520)], "'": [(120, 640)]}
NARROW = 240
STROKES = {
    "/": [(70, 0), (150, 0), (490, 700), (410, 700)],
    "+": [],
}


def across(y):
    """A level segment around `y`."""
    l, r = LEFT + HALF + GAP, RIGHT - HALF - GAP
    return [(l, y), (l + HALF, y + HALF), (r - HALF, y + HALF), (r, y), (r - HALF, y - HALF),
            (l + HALF, y - HALF)]


def upright(x, low, high):
    """An upright segment around `x`."""
    b, t = low + GAP, high - GAP
    return [(x, b), (x - HALF, b + HALF), (x - HALF, t - HALF), (x, t), (x + HALF, t - HALF),
            (x + HALF, b + HALF)]


LOW, HIGH = BOTTOM + HALF, TOP - HALF
SEGMENTS = {
    "a": across(HIGH), "g": across(MIDDLE), "d": across(LOW),
    "f": upright(LEFT + HALF, MIDDLE, HIGH), "b": upright(RIGHT - HALF, MIDDLE, HIGH),
    "e": upright(LEFT + HALF, LOW, MIDDLE), "c": upright(RIGHT - HALF, LOW, MIDDLE),
}


def square(x, y):
    return [(x - DOT, y - DOT), (x - DOT, y + DOT), (x + DOT, y + DOT), (x + DOT, y - DOT)]


def clockwise(points):
    area = sum(x * v - u * y for (x, y), (u, v) in zip(points, points[1:] + points[:1]))
    return points if area < 0 else points[::-1]


def slanted(points):
    return [(round(x + y * SLANT), y) for x, y in points]


def glyphs():
    """(character, advance, contours), the empty box for what is missing first."""
    box = [(60, 0), (60, 700), (500, 700), (500, 0)]
    hole = [(110, 50), (450, 50), (450, 650), (110, 650)]
    yield None, WIDTH, [box, hole]
    table = {}
    for character, names in LETTERS.items():
        table[character] = (WIDTH, [SEGMENTS[name] for name in names])
        if character.isalpha():
            table[character.lower()] = table[character]
    for character, places in DOTS.items():
        table[character] = (NARROW, [square(*place) for place in places])
    table["/"] = (WIDTH, [STROKES["/"]])
    table["+"] = (WIDTH, [across(MIDDLE), [(238, 190), (238, 300), (322, 300), (322, 190)],
                          [(238, 400), (238, 510), (322, 510), (322, 400)]])
    for character in sorted(table):
        advance, contours = table[character]
        yield character, advance, [slanted(clockwise(contour)) for contour in contours]


def outline(contours):
    """One entry of the table "glyf": straight lines only, coordinates as 16-bit steps."""
    if not contours:
        return b""
    points = [point for contour in contours for point in contour]
    xs, ys = [p[0] for p in points], [p[1] for p in points]
    data = struct.pack(">hhhhh", len(contours), min(xs), min(ys), max(xs), max(ys))
    end = -1
    for contour in contours:
        end += len(contour)
        data += struct.pack(">H", end)
    data += struct.pack(">H", 0) + bytes([1]) * len(points)
    for axis in (xs, ys):
        data += b"".join(struct.pack(">h", b - a) for a, b in zip([0] + axis, axis))
    return data + bytes(-len(data) % 4)


def character_map(characters):
    """The table "cmap" in format 4, one range for each run of characters."""
    codes = [(ord(character), glyph) for glyph, character in enumerate(characters) if character]
    runs = []
    for code, glyph in codes:
        if runs and code == runs[-1][1] + 1 and glyph - code == runs[-1][2]:
            runs[-1][1] = code
        else:
            runs.append([code, code, glyph - code])
    runs.append([0xFFFF, 0xFFFF, 1])
    count = len(runs)
    power = 1 << (count.bit_length() - 1)
    body = struct.pack(">HHHH", count * 2, power * 2, power.bit_length() - 1, (count - power) * 2)
    body += b"".join(struct.pack(">H", run[1]) for run in runs) + bytes(2)
    body += b"".join(struct.pack(">H", run[0]) for run in runs)
    body += b"".join(struct.pack(">H", run[2] & 0xFFFF) for run in runs) + bytes(2 * count)
    table = struct.pack(">HHH", 4, len(body) + 6, 0) + body
    return struct.pack(">HHHHI", 0, 1, 3, 1, 12) + table


def names():
    texts = {1: "Crystal", 2: "Regular", 3: "Crystal 1.0", 4: "Crystal", 5: "Version 1.0",
             6: "Crystal"}
    records, strings = b"", b""
    for number, text in texts.items():
        data = text.encode("utf-16-be")
        records += struct.pack(">HHHHHH", 3, 1, 0x409, number, len(data), len(strings))
        strings += data
    return struct.pack(">HHH", 0, len(texts), 6 + len(records)) + records + strings


def checksum(data):
    data += bytes(-len(data) % 4)
    return sum(struct.unpack(f">{len(data) // 4}I", data)) & 0xFFFFFFFF


def font(tables):
    count = len(tables)
    power = 1 << (count.bit_length() - 1)
    head = struct.pack(">IHHHH", 0x10000, count, power * 16, power.bit_length() - 1,
                       (count - power) * 16)
    offset = 12 + 16 * count
    directory, body, head_at = b"", b"", 0
    for tag in sorted(tables):
        data = tables[tag]
        if tag == "head":
            head_at = offset
        directory += tag.encode() + struct.pack(">III", checksum(data), offset, len(data))
        data += bytes(-len(data) % 4)
        body += data
        offset += len(data)
    whole = head + directory + body
    adjustment = (0xB1B0AFBA - checksum(whole)) & 0xFFFFFFFF
    return whole[:head_at + 8] + struct.pack(">I", adjustment) + whole[head_at + 12:]


def main():
    made = list(glyphs())
    outlines = [outline(contours) for _, _, contours in made]
    offsets = [sum(map(len, outlines[:i])) for i in range(len(outlines) + 1)]
    points = [p for _, _, contours in made for contour in contours for p in contour]
    box = (min(p[0] for p in points), min(p[1] for p in points), max(p[0] for p in points),
           max(p[1] for p in points))
    widest = max(advance for _, advance, _ in made)
    most_points = max(sum(map(len, contours)) for _, _, contours in made)
    most_contours = max(len(contours) for _, _, contours in made)
    ascent, descent = 800, -200
    characters = [character for character, _, _ in made]
    metrics = b"".join(
        struct.pack(">Hh", advance, min((p[0] for c in contours for p in c), default=0))
        for _, advance, contours in made)
    tables = {
        "head": struct.pack(">IIIIHHQQhhhhHHhhh", 0x10000, 0x10000, 0, 0x5F0F3CF5, 3, UNITS,
                            3345753600, 3345753600, *box, 0, 8, 2, 1, 0),
        "hhea": struct.pack(">IhhhHhhhhhhhhhhhH", 0x10000, ascent, descent, 0, widest, 0, 0,
                            box[2], 1, 0, 0, 0, 0, 0, 0, 0, len(made)),
        "maxp": struct.pack(">IHHHHHHHHHHHHHH", 0x10000, len(made), most_points, most_contours,
                            0, 0, 1, 0, 0, 0, 0, 0, 0, 0, 0),
        "OS/2": struct.pack(">HhHHHhhhhhhhhhhh10sIIII4sHHHhhhHHII", 3, WIDTH, 400, 5, 0, 650, 600,
                            0, 75, 650, 600, 0, 350, 50, 300, 0, bytes(10), 3, 0, 0, 0, b"    ",
                            64, min(ord(c) for c in characters if c),
                            max(ord(c) for c in characters if c), ascent, descent, 0, ascent,
                            -descent, 1, 0) + struct.pack(">hhHHH", 700, 700, 0, 32, 1),
        "hmtx": metrics,
        "cmap": character_map(characters),
        "loca": b"".join(struct.pack(">I", offset) for offset in offsets),
        "glyf": b"".join(outlines),
        "name": names(),
        "post": struct.pack(">IIhhIIIII", 0x30000, 0, -100, 50, 0, 0, 0, 0, 0),
    }
    target = pathlib.Path(__file__).resolve().parent.parent / "res" / "crystal.ttf"
    target.write_bytes(font(tables))


main()
