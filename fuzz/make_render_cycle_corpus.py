#!/usr/bin/env python3
"""Makes the seed corpus of render cycles: fuzz/corpus/render_cycle.

The bytes are what fuzz/render_cycles.cpp reads. Each name says what happens. A file that is not made
here was found by the fuzzer and is kept.
"""
import math
import pathlib
import struct

FOLDER = pathlib.Path(__file__).parent / "corpus" / "render_cycle"
EFFECT, MUSIC_EFFECT, INSTRUMENT = b"\0", b"\1", b"\2"
PLAY, REWIND, FREEZE, LIVE, CLEAR, KEYBOARD = range(6)
NO_LEFT, NO_RIGHT, ONE_BUFFER, NO_PULL, PULL_FAILS, HOSTS_MEMORY, PULLS_NOTHING, THREE = (
    1 << bit for bit in range(8))
PARAMETER, RAMP, MIDI = 1, 2, 8


def cycle(frames=512, bits=0, kind=129):
    return struct.pack("<BHBB", 0, frames, bits, kind)


def event(address, value, type=PARAMETER):
    return struct.pack("<BBBfhB", 1, type, address, value, 0, 0)


def midi(*message, length=3):
    return struct.pack("<BB3Bh", 2, length, *message, 0)


def music(tempo=None, meter=None, beat=None):
    return b"".join(struct.pack("<BBd", 3, field, value)
                    for field, value in enumerate((tempo, meter, beat)) if value is not None)


def transport(flags):
    return bytes([4, flags])


def wait(seconds):
    return struct.pack("<BH", 5, round(seconds * 1000))


def button(which):
    return bytes([6, which])


def control(number, value):
    return struct.pack("<BBfB", 7, number, value, 0)


def allocate(rate=0, frames=512, channels=2, again=1):
    return struct.pack("<BBHBB", 8, rate, frames, channels, again)


def from_host(address, value, type=0):
    return struct.pack("<BBBf", 9, address, type, value)


def scan(start, end, milliseconds=0.0, envelope=2):
    return struct.pack("<BffdB", 10, start, end, milliseconds, envelope)


STATE = bytes([11])


def sound(frames=4000, rate=44100.0, level=0.5, loads=1):
    return struct.pack("<BHffB", 12, frames, rate, level, loads)


def play(kind, *steps, cycles=8):
    return kind + sound() + button(PLAY) + wait(0.1) + b"".join(steps) + cycle() * cycles


NAN, INF = math.nan, math.inf
EFFECTS_ON = control(13, 1.0) + control(18, 1.0)
FILES = {
    "every-event": play(
        MUSIC_EFFECT, event(5, 0.9), event(24, 1.0), event(255, 1.0), event(9, NAN), event(1, INF, RAMP),
        event(7, 0.2, RAMP), event(3, 5.0, 0), event(3, 5.0, 9), event(3, 5.0, 10), event(13, 0.4),
        midi(0x99, 60, 100), midi(0x90, 72, 0), midi(0x80, 60, 0), midi(0x90, 200, 1), midi(0x90, 60, 1, length=1)),
    "every-parameter": play(EFFECT, *(event(address, 1.0) + cycle(64) + wait(0.01) for address in range(24))),
    "buffers": play(INSTRUMENT, *(cycle(100, bits) for bits in range(8)), cycle(100, THREE)),
    "buffers-of-an-effect": play(EFFECT, *(cycle(100, bits) for bits in range(256))),
    "lengths": play(EFFECT, *(cycle(frames) for frames in (0, 1, 511, 512, 513, 4096, 4195))),
    "input": play(EFFECT, button(LIVE), *(cycle(256, HOSTS_MEMORY, kind) for kind in list(range(9)) + list(range(128, 137)))),
    "music": play(
        INSTRUMENT, control(25, 1.0), transport(2),
        *(music(*each) + cycle(64) + wait(0.02) for each in (
            (120.0, 4.0, -2.0), (0.0, 0.0, 0.0), (-90.0, -1.0, -2.0 ** 63), (1e308, 1e300, 1e300),
            (NAN, NAN, NAN), (INF, INF, -INF), (120.0, 3.5, 8.0), (120.0, 4.0, 4.0), (5e-324, 4.0, -0.0)))),
    "transport": play(EFFECT, *(transport(flags) + cycle(64) + wait(0.3) for flags in (2, 0, 2, 3, 128, 64, 2)),
                      control(25, 1.0), music(120.0, 4.0, 0.0), transport(2), cycle(64), wait(0.1), transport(0)),
    "buttons": play(EFFECT, *(button(which) + cycle(64) + wait(0.02) for which in (3, 2, 5, 1, 4, 0, 0, 3, 2, 3, 0))),
    "controls": play(EFFECT, EFFECTS_ON, *(control(number, value) + cycle(64) for number in range(34)
                                           for value in (1e9, -1e9))),
    "rates": play(EFFECT, EFFECTS_ON, *(allocate(rate, 64 << rate) + cycle(64) + wait(0.01) for rate in range(8))),
    "lengths-and-channels": play(MUSIC_EFFECT, *(allocate(0, frames, channels) + cycle(64) for frames, channels in
                                                 ((0, 2), (1, 1), (4096, 8), (4097, 9), (64, 0)))),
    "deallocated": play(EFFECT, allocate(again=0), cycle(), wait(0.1), allocate()),
    "from-the-host": play(INSTRUMENT, *(from_host(address, value, address % 3) + cycle(64) + wait(0.01)
                                        for address in range(25) for value in (0.3, NAN))),
    "regions": play(INSTRUMENT, *(scan(*each) + cycle(256) for each in (
        (0.0, 1.0), (1.0, 0.0, 1e300, 3), (0.5, 0.5, NAN, 11), (0.25, 0.26, -5.0, 12), (NAN, 2.0, 1.0, 255)))),
    "states": play(EFFECT, EFFECTS_ON, STATE, control(5, 1.0), cycle(), STATE, wait(0.1), cycle(), STATE, wait(0.1)),
    "loud-sound": play(INSTRUMENT, EFFECTS_ON, sound(level=3e38), cycle(4096)),
    "loud-captured-sound": play(EFFECT, EFFECTS_ON, sound(level=3e38, loads=0)),
    "odd-sounds": play(INSTRUMENT, *(sound(*each) + cycle(256) for each in (
        (0, 44100.0), (1, 44100.0), (2, 1e-30), (3, 1e38), (4999, NAN), (50, INF), (50, 8000.0, NAN), (50, 1.0)))),
}

if __name__ == "__main__":
    FOLDER.mkdir(parents=True, exist_ok=True)
    for name, data in FILES.items():
        (FOLDER / name).write_bytes(data)
