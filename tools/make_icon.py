#!/usr/bin/env python3
"""Makes the program's icon: a heading arrow in a ring of a compass.

    tools/make_icon.py          writes res/vgps.ico
"""
import math
import pathlib
import struct
import zlib

SIZES = [16, 20, 24, 32, 40, 48, 64, 256]
SAMPLES = 5  # per pixel and direction

DISC = (20, 84, 130)
RING = (146, 205, 235)
LIGHT = (255, 255, 255)
SHADE = (198, 220, 234)


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


def pixel(column, row, size):
    total, hits = [0, 0, 0], 0
    for i in range(SAMPLES):
        for j in range(SAMPLES):
            x = (column + (i + 0.5) / SAMPLES) / size * 2 - 1
            y = 1 - (row + (j + 0.5) / SAMPLES) / size * 2
            colour = colour_at(x, y)
            if colour:
                hits += 1
                total = [t + c for t, c in zip(total, colour)]
    if not hits:
        return (0, 0, 0, 0)
    return tuple(t // hits for t in total) + (255 * hits // SAMPLES**2,)


def picture(size):
    return [[pixel(column, row, size) for column in range(size)] for row in range(size)]


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


def main():
    images = [(size, png(picture(size)) if size > 64 else bitmap(picture(size))) for size in SIZES]
    offset = 6 + 16 * len(images)
    directory = struct.pack("<HHH", 0, 1, len(images))
    for size, data in images:
        directory += struct.pack("<BBBBHHII", size % 256, size % 256, 0, 0, 1, 32, len(data), offset)
        offset += len(data)
    target = pathlib.Path(__file__).resolve().parent.parent / "res" / "vgps.ico"
    target.write_bytes(directory + b"".join(data for _, data in images))


main()
