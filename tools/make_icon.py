#!/usr/bin/env python3
"""Makes the program's pictures: its icon, a heading arrow in a ring of a compass; the same with a
badge for what is going on; the arrows of the page buttons.

    tools/make_icon.py          writes vgps, record, play, pause, photo.ico, left and right.bmp and
                                kml.png (a place with a photograph, in KMZ files) into res/
"""
import math
import pathlib
import struct
import zlib

SIZES = [16, 20, 24, 32, 40, 48, 64, 256]
BADGE_SIZES = [16, 20, 24, 32, 48]
ARROW_SIZE = 32
PLACE_SIZE = 32
SAMPLES = 5  # per pixel and direction

DISC = (20, 84, 130)
RING = (146, 205, 235)
LIGHT = (255, 255, 255)
SHADE = (198, 220, 234)

RED = (214, 40, 40)
GREEN = (30, 150, 70)
AMBER = (236, 160, 20)
DARK = (40, 48, 56)
TRANSPARENT = (255, 0, 255)  # where the arrows of the buttons are clear


def colour_at(x, y):
    """The colour at a point of the square from -1 to 1, y upwards; None where it is clear."""
    radius = math.hypot(x, y)
    if radius > 0.97:
        return None
    # The arrow points to the north-east, as a moving one on a map would.
    u, v = (x - y) / math.sqrt(2), (x + y) / math.sqrt(2)
    top, wing, notch = 0.72, -0.52, -0.26
    if wing <= v <= top:
        half = 0.5 * (top - v) / (top - wing)
        floor = wing + (notch - wing) * max(0, 1 - abs(u) / 0.5)
        if abs(u) <= half and v >= floor:
            return LIGHT if u < 0 else SHADE
    return RING if radius > 0.84 else DISC


# The badges fill a square from -1 to 1 in the lower right corner.
def record_at(x, y):
    return RED if math.hypot(x, y) < 0.72 else None


def play_at(x, y):
    return GREEN if -0.55 < x < 0.75 and abs(y) < 0.75 * (0.75 - x) / 1.3 else None


def pause_at(x, y):
    return AMBER if 0.15 < abs(x) < 0.6 and abs(y) < 0.68 else None


def photo_at(x, y):
    if math.hypot(x, y + 0.1) < 0.34:
        return RING if math.hypot(x, y + 0.1) < 0.2 else LIGHT
    body = abs(x) < 0.8 and -0.62 < y < 0.42
    finder = abs(x) < 0.32 and 0.4 < y < 0.62
    return DARK if body or finder else None


BADGES = {"record": record_at, "play": play_at, "pause": pause_at, "photo": photo_at}
BADGE_RADIUS = 0.56  # of half the icon; a white disc under the badge keeps them apart


def with_badge(badge_at):
    def look(x, y):
        u, v = (x - (1 - BADGE_RADIUS)) / BADGE_RADIUS, (y + (1 - BADGE_RADIUS)) / BADGE_RADIUS
        if math.hypot(u, v) < 1:
            return badge_at(u, v) or LIGHT
        return colour_at(x, y)

    return look


def pixel(column, row, size, look):
    total, hits = [0, 0, 0], 0
    for i in range(SAMPLES):
        for j in range(SAMPLES):
            x = (column + (i + 0.5) / SAMPLES) / size * 2 - 1
            y = 1 - (row + (j + 0.5) / SAMPLES) / size * 2
            colour = look(x, y)
            if colour:
                hits += 1
                total = [t + c for t, c in zip(total, colour)]
    if not hits:
        return (0, 0, 0, 0)
    return tuple(t // hits for t in total) + (255 * hits // SAMPLES**2,)


def picture(size, look):
    return [[pixel(column, row, size, look) for column in range(size)] for row in range(size)]


def arrow_file(direction):
    """A bitmap of 24 bits; what is clear has a colour of its own, so nothing is smoothed."""
    size = ARROW_SIZE
    body = b""
    for row in range(size):  # from the bottom
        for column in range(size):
            x, y = ((column + 0.5) / size * 2 - 1) * direction, (row + 0.5) / size * 2 - 1
            head = -0.05 < x < 0.8 and abs(y) < (0.8 - x) * 0.85
            shaft = -0.8 < x <= 0 and abs(y) < 0.28
            r, g, b = DISC if head or shaft else TRANSPARENT
            body += bytes((b, g, r))
    header = struct.pack("<IiiHHIIiiII", 40, size, size, 1, 24, 0, len(body), 0, 0, 0, 0)
    return struct.pack("<2sIHHI", b"BM", 54 + len(body), 0, 0, 54) + header + body


def bitmap(rows):
    """A device-independent bitmap with its (empty) mask, as icons hold them."""
    size = len(rows)
    header = struct.pack("<IiiHHIIiiII", 40, size, size * 2, 1, 32, 0, 0, 0, 0, 0, 0)
    body = b"".join(bytes((b, g, r, a)) for row in reversed(rows) for r, g, b, a in row)
    mask = bytes((size + 31) // 32 * 4 * size)
    return header + body + mask


def png(rows):
    def chunk(kind, data):
        body = kind + data
        return struct.pack(">I", len(data)) + body + struct.pack(">I", zlib.crc32(body))

    size = len(rows)
    lines = b"".join(b"\0" + b"".join(bytes(p) for p in row) for row in rows)
    return (b"\x89PNG\r\n\x1a\n" + chunk(b"IHDR", struct.pack(">IIBBBBB", size, size, 8, 6, 0, 0, 0))
            + chunk(b"IDAT", zlib.compress(lines, 9)) + chunk(b"IEND", b""))


def icon_file(sizes, look):
    images = [(n, png(picture(n, look)) if n > 64 else bitmap(picture(n, look))) for n in sizes]
    offset = 6 + 16 * len(images)
    directory = struct.pack("<HHH", 0, 1, len(images))
    for size, data in images:
        directory += struct.pack("<BBBBHHII", size % 256, size % 256, 0, 0, 1, 32, len(data), offset)
        offset += len(data)
    return directory + b"".join(data for _, data in images)


def main():
    folder = pathlib.Path(__file__).resolve().parent.parent / "res"
    (folder / "vgps.ico").write_bytes(icon_file(SIZES, colour_at))
    for name, badge_at in BADGES.items():
        (folder / f"{name}.ico").write_bytes(icon_file(BADGE_SIZES, with_badge(badge_at)))
    for name, direction in (("left", -1), ("right", 1)):
        (folder / f"{name}.bmp").write_bytes(arrow_file(direction))
    (folder / "kml.png").write_bytes(png(picture(PLACE_SIZE, photo_at)))


main()
