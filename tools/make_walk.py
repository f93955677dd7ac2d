#!/usr/bin/env python3
"""Makes the second built-in simulation: a walk of seven minutes through a town and back.

    tools/make_walk.py          writes gps/town_walk_lines.inc, always the same

One string for each second, with all sentences of that second: RMC and GGA, and every fifth time
GSA and GSV. The walker follows a closed line of streets uphill to a viewpoint and down again,
slows down at corners and waits at crossings. The receiver wanders a little, as receivers do.
"""
import math
import pathlib
import random

# Corners of the walk: meters east and north of the start, altitude in meters, seconds of waiting.
CORNERS = [
    (0, 0, 92, 0), (38, 6, 92, 0), (52, 44, 94, 6), (96, 50, 97, 0), (104, 92, 104, 0),
    (80, 124, 112, 0), (42, 118, 119, 12), (24, 96, 113, 0), (-16, 104, 108, 0),
    (-40, 70, 101, 5), (-34, 28, 95, 0), (-8, 22, 93, 0), (0, 0, 92, 0),
]
START = (37.97130, 23.72640)  # degrees north and east
START_SECOND = 9 * 3600 + 15 * 60
DATE = "140626"
GEOID = 38.5
METERS_PER_DEGREE = 111320.0

# Number, elevation, azimuth, C/N0 (0: not received), used.
GPS = [(2, 61, 47, 44, 1), (5, 22, 120, 33, 1), (6, 35, 76, 39, 1), (12, 73, 301, 47, 1),
       (19, 11, 34, 24, 0), (24, 40, 215, 41, 1), (25, 52, 268, 43, 1), (29, 28, 309, 37, 1),
       (31, 18, 170, 30, 1)]
GLONASS = [(66, 47, 20, 40, 0), (75, 30, 318, 35, 0), (82, 14, 96, 26, 0), (84, 58, 240, 42, 0)]


def with_checksum(body):
    value = 0
    for character in body:
        value ^= ord(character)
    return f"${body}*{value:02X}"


def angle_text(degrees, digits, letters):
    letter = letters[0] if degrees >= 0 else letters[1]
    whole = int(abs(degrees))
    return f"{whole:0{digits}d}{(abs(degrees) - whole) * 60:07.4f},{letter}"


def positions():
    """East, north, height, speed in m/s and course for each second."""
    seconds = []
    for (x0, y0, z0, _), (x1, y1, z1, wait) in zip(CORNERS, CORNERS[1:]):
        length = math.hypot(x1 - x0, y1 - y0)
        course = math.degrees(math.atan2(x1 - x0, y1 - y0)) % 360
        slope = (z1 - z0) / length
        gone = 0.0
        while gone < length:
            near_corner = min(gone, length - gone)
            speed = (1.45 - 2.2 * max(slope, 0)) * min(1.0, 0.62 + near_corner / 16)
            speed *= random.uniform(0.95, 1.05)
            share = gone / length
            seconds.append((x0 + (x1 - x0) * share, y0 + (y1 - y0) * share, z0 + (z1 - z0) * share,
                            speed, course))
            gone += speed
        seconds += [(x1, y1, z1, 0.0, course)] * wait
    return seconds


def gsv(talker, satellites, seed):
    sentences = []
    count = (len(satellites) + 3) // 4
    for part in range(count):
        body = f"{talker}GSV,{count},{part + 1},{len(satellites):02d}"
        for number, elevation, azimuth, strength, _ in satellites[4 * part:4 * part + 4]:
            strength += round(2 * math.sin(seed / 7 + number))
            body += f",{number:02d},{elevation:02d},{azimuth:03d},{strength:02d}"
        sentences.append(with_checksum(body))
    return sentences


def epoch(second, place, wander):
    east, north, height, speed, course = place
    latitude = START[0] + (north + wander[1]) / METERS_PER_DEGREE
    longitude = START[1] + (east + wander[0]) / (
        METERS_PER_DEGREE * math.cos(math.radians(START[0])))
    at = START_SECOND + second
    time = f"{at // 3600:02d}{at // 60 % 60:02d}{at % 60:02d}.00"
    where = f"{angle_text(latitude, 2, 'NS')},{angle_text(longitude, 3, 'EW')}"
    heading = f"{(course + random.gauss(0, 1.5)) % 360:.1f}" if speed > 0 else ""
    used = sum(row[4] for row in GPS)
    hdop = 0.9 + 0.1 * math.sin(second / 40)
    sentences = [
        with_checksum(f"GPRMC,{time},A,{where},{speed / 0.514444:.2f},{heading},{DATE},,,A"),
        with_checksum(f"GPGGA,{time},{where},1,{used:02d},{hdop:.1f},{height + wander[2]:.1f},M,"
                      f"{GEOID},M,,"),
    ]
    if second % 5 == 0:
        slots = [f"{row[0]:02d}" for row in GPS if row[4]]
        slots += [""] * (12 - len(slots))
        sentences.append(with_checksum(
            f"GPGSA,A,3,{','.join(slots)},{hdop * 1.9:.1f},{hdop:.1f},{hdop * 1.6:.1f}"))
        sentences += gsv("GP", GPS, second) + gsv("GL", GLONASS, second)
    return sentences


def main():
    random.seed(7)
    wander = [0.0, 0.0, 0.0]
    lines = []
    for second, place in enumerate(positions()):
        wander = [0.97 * value + random.gauss(0, 0.08) for value in wander]
        text = "\\r\\n".join(epoch(second, place, wander))
        lines.append(f'"{text}",')
    target = pathlib.Path(__file__).resolve().parent.parent / "gps" / "town_walk_lines.inc"
    head = "// Made by tools/make_walk.py.\n"
    target.write_text(head + "\n".join(lines) + "\n", encoding="ascii")
    print(f"{len(lines)} seconds in {target}")


if __name__ == "__main__":
    main()
