#!/usr/bin/env python3
"""Makes the program's sounds: short tones with soft edges, 8 bits, one channel.

    tools/make_sounds.py        writes ok, err2, turn, spd and forbidden.wav into res/
"""
import math
import pathlib
import struct
import wave

RATE = 11025
LOUDNESS = 0.45

# Each sound: tones one after the other as (hertz, milliseconds); 0 hertz is silence.
SOUNDS = {
    "ok.wav": [(880, 70), (1319, 130)],  # up: received
    "err2.wav": [(622, 110), (415, 110), (311, 190)],  # down: lost
    "turn.wav": [(988, 90), (0, 40), (988, 90), (0, 40), (1319, 160)],  # a turn is near
    "spd.wav": [(1568, 60), (0, 30), (1568, 60), (0, 30), (1568, 90)],  # too fast
    "forbidden.wav": [(466, 180), (370, 180), (466, 180), (370, 260)],  # as an alarm: a zone
}


def tone(hertz, milliseconds):
    count = RATE * milliseconds // 1000
    for i in range(count):
        second = i / RATE
        rise = min(1, i / (RATE * 0.005))
        fade = 1 - i / count
        value = math.sin(2 * math.pi * hertz * second)  # nothing at 0 hertz
        value += 0.3 * math.sin(4 * math.pi * hertz * second)
        yield LOUDNESS * rise * fade * value / 1.3


def main():
    folder = pathlib.Path(__file__).resolve().parent.parent / "res"
    for name, tones in SOUNDS.items():
        samples = [value for part in tones for value in tone(*part)]
        with wave.open(str(folder / name), "wb") as out:
            out.setnchannels(1)
            out.setsampwidth(1)
            out.setframerate(RATE)
            out.writeframes(b"".join(struct.pack("B", round(128 + 127 * s)) for s in samples))


main()
