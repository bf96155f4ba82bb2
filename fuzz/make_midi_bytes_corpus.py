#!/usr/bin/env python3
"""Makes the seed corpus of MIDI: fuzz/corpus/midi_bytes.

Each name says what the bytes are. The numbers are the steps of midi_bytes_fuzzer.cpp. A file that is
not made here was found by the fuzzer and is kept.
"""
import pathlib

FOLDER = pathlib.Path(__file__).parent / "corpus" / "midi_bytes"

KNOB, STEPS, TOGGLE, BUTTON, SCAN = range(5)


def learn(control, channel=False):
    return bytes([0, channel, control])


def bind(source, number, control, channel=0, least=0, most=250, curve=25, jump=False, relative=False):
    return bytes([1, source, number, channel, control, least, most, curve, jump, relative])


def send(*event, cut=0):
    return bytes([7, len(event), *event, cut])


def performances():
    yield "running-status", bind(0, 1, KNOB, jump=True) + send(0xB0, 1, 0, 1, 64, 1, 127, cut=3)
    yield "cut-off", bind(0, 1, KNOB, jump=True) + send(0xB0, 1, 0xB0, 1, 99, 0xE0, 1)
    yield "real-time-inside", bind(0, 1, KNOB, jump=True) + send(0xB0, 0xF8, 1, 0xFE, 2, cut=2)
    yield "system-common", bind(0, 1, KNOB, jump=True) + send(0xF2, 1, 2, 0xF1, 3, 0xF6, 0xB0, 1, 5)
    yield "system-exclusive", bind(0, 1, KNOB, jump=True) + send(0xF0, 1, 2, 3, 0xF7, 4, 0xB0, 1, 5, cut=2)
    yield "14-bit", bind(1, 2, KNOB, jump=True) + send(0xB0, 2, 64, 34, 127) + send(0xB0, 34, 0)
    yield "learns-14-bit", learn(STEPS) + send(0xB3, 5, 64, 37, 1) + send(0xB3, 5, 127)
    yield "learns-a-note-of-a-channel", learn(BUTTON, True) + send(0x95, 60, 100) + send(0x95, 60, 1)
    yield "relative-bend", bind(2, 0, KNOB, relative=True) + send(0xE0, 127, 127) + bytes([3, 20]) + send(0xE0, 0, 64)
    yield "pick-up", bind(0, 1, SCAN, most=100) + send(0xB0, 1, 0, 1, 127, 1, 60)
    yield "preset-while-moved", bind(3, 60, TOGGLE) + bind(3, 60, KNOB) + bytes([5]) + send(0x90, 60, 1, 60, 9)
    yield "navigation", bytes([4, 1, 36, 12]) + send(0xC0, 5, 0xB0, 0, 3, 0x90, 40, 1)
    yield "taken-away", bind(4, 0, KNOB) + bytes([6, KNOB, 6]) + send(0xD0, 99) + bytes([2, 0])


if __name__ == "__main__":
    FOLDER.mkdir(parents=True, exist_ok=True)
    for name, contents in performances():
        (FOLDER / name).write_bytes(contents)
