#!/usr/bin/env python3
"""Makes the seed corpus of hands: fuzz/corpus/hands.

The bytes are what fuzz/hands.cpp reads. Each name says what happens. A file that is not made here was
found by the fuzzer and is kept.
"""
import pathlib
import struct

FOLDER = pathlib.Path(__file__).parent / "corpus" / "hands"
(SCRUB, KEYBOARD, TINY, PAD, KNOB, BUTTON, ASSIGN, RENDER, WAIT, STATE, RECORDER, TEMPO, HOST, MIDI, LEARN, PANEL, LAY,
 TILT, SOUND, TAKE, LATCHED, TAKE_AWAY) = range(22)
BEGIN, MOVE, END, CANCEL = range(4)
NAN, INF, LESS_INF, HUGE, LESS_HUGE, NEGATIVE = range(250, 256)
REC, PLAY_TAKE, REWIND_TAKE, REWIND, PLAY, KEYS = range(6)
# Places in the list of what can be assigned.
SCAN, SCANNING, DENSITY, PITCH, ECHO, KEYBOARD_ITSELF, PAD_ITSELF = 0, 1, 3, 7, 13, 39, 40
MIDI_TYPE, SCRUB_Y, SECOND, ACCEL_X, ACCEL_Y, LFO = range(1, 7)


def touch(surface, kind, finger=0, x=100, y=100, time=21):
    return bytes([surface, kind, finger, time]) + (bytes([x, y]) if kind in (BEGIN, MOVE) else b"")


def swipe(surface, finger=0, places=((20, 180), (60, 120), (120, 60), (180, 20))):
    (x, y), *rest = places
    return (touch(surface, BEGIN, finger, x, y) + b"".join(touch(surface, MOVE, finger, *each) + render(100)
                                                           for each in rest) + touch(surface, END, finger))


def render(frames=256):
    return bytes([RENDER, frames - 1])


def wait(seconds):
    return bytes([WAIT, round(seconds * 50)])


def assign(control, type, hz=100, shape=0, gravity=0):
    return bytes([ASSIGN, control, type, hz, shape, gravity])


def recorder(button, sync=1):
    return bytes([RECORDER, button, sync])


def midi(*message):
    return bytes([MIDI, *message]) + bytes(8 - len(message))


def learn(control):
    return bytes([LEARN, 0, control])


def take(points):
    return struct.pack("<BH", TAKE, len(points)) + bytes(points)


STATE_KEPT, STATE_BACK = bytes([STATE, 1]), bytes([STATE, 0])
SURFACES = (SCRUB, KEYBOARD, TINY, PAD)
ODD = (NAN, INF, LESS_INF, HUGE, LESS_HUGE, NEGATIVE, 240)
FILES = {
    "every-surface": b"".join(swipe(surface) for surface in SURFACES),
    "odd-points": b"".join(touch(surface, BEGIN, 0, odd, 50) + touch(surface, MOVE, 0, 50, odd) + render()
                           for surface in SURFACES for odd in ODD),
    "odd-times": b"".join(touch(surface, kind, 0, time=time) for surface in SURFACES for kind in range(4)
                          for time in (255, 0, 250)),
    "fingers-that-never-end": b"".join(touch(surface, BEGIN, finger, 30 * finger, 90) for surface in SURFACES
                                       for finger in list(range(6)) * 3),
    "unknown-fingers": b"".join(touch(surface, kind, 5) for surface in SURFACES for kind in (MOVE, END, CANCEL)),
    "second-finger-stays": touch(SCRUB, BEGIN, 0) + touch(SCRUB, BEGIN, 1) + touch(SCRUB, END, 0) + render()
    + touch(SCRUB, MOVE, 1, 10, 10) + touch(SCRUB, BEGIN, 2) + wait(1),
    "press-and-hold": touch(SCRUB, BEGIN) + wait(0.7) + touch(SCRUB, END) + render() + recorder(REWIND)
    + touch(SCRUB, BEGIN, 0, 30, 30) + wait(0.7) + bytes([LATCHED]) + render() + touch(SCRUB, CANCEL),
    "held-against-all": assign(SCAN, LFO) + take([10, 200, 50]) + recorder(PLAY_TAKE) + recorder(PLAY) + render()
    + touch(SCRUB, BEGIN) + wait(0.2) + render() * 3 + bytes([HOST, 0]) + wait(0.2) + bytes([HOST, 3]) + render()
    + touch(SCRUB, END) + wait(0.2) + render(),
    "held-while-live": touch(SCRUB, BEGIN) + bytes([BUTTON, 33]) + render() * 4 + bytes([BUTTON, 32]) + render(),
    "recorded-and-played": recorder(REC) + swipe(SCRUB) + wait(0.5) + recorder(PLAY_TAKE) + wait(1) + recorder(REC)
    + wait(0.5) + recorder(PLAY_TAKE) + recorder(PLAY_TAKE) + recorder(REWIND_TAKE),
    "armed-for-the-downbeat": take([0, 250]) + recorder(REC, 0) + recorder(PLAY_TAKE) + bytes([HOST, 0]) + wait(1)
    + recorder(PLAY, 0) + bytes([TEMPO, 6]) + struct.pack("<d", 1e308) + wait(1),
    "tempo-odd": b"".join(bytes([TEMPO, way]) + struct.pack("<d", bpm) + render() for way in (5, 6)
                          for bpm in (float("nan"), float("inf"), -1.0, 0.0, 1e-300, 1e308))
    + assign(DENSITY, LFO) + bytes([PANEL, 0, DENSITY, PANEL, 6, 1]) + take([1, 99]) + recorder(PLAY_TAKE, 0) + wait(1),
    "taps": bytes([TEMPO, 0, 30]) * 4 + bytes([TEMPO, 1]) * 2 + bytes([TEMPO, 3, 1]) + wait(2) + bytes([TEMPO, 4, 1])
    + wait(2) + bytes([TEMPO, 7, TEMPO, 2, NAN, TEMPO, 2, 250, TEMPO, 2, HUGE]),
    "every-control-by-every-source": b"".join(assign(control, type) + wait(0.04) + swipe(SCRUB, 1)
                                              for control in range(0, 41, 3) for type in range(8)),
    "lfo-shapes": b"".join(assign(DENSITY, LFO, 250, shape, 100 + shape) + wait(0.2) for shape in range(8)),
    "changed-under-the-finger": assign(DENSITY, SCRUB_Y) + touch(SCRUB, BEGIN) + touch(SCRUB, MOVE, 0, 20, 20)
    + assign(DENSITY, SECOND) + touch(SCRUB, MOVE, 0, 90, 90) + touch(SCRUB, BEGIN, 1) + assign(DENSITY, LFO)
    + touch(SCRUB, MOVE, 1, 10, 150) + bytes([TAKE_AWAY, 0]) + touch(SCRUB, MOVE, 1, 10, 10) + wait(0.2),
    "keyboard-moved-by-a-scrub": assign(KEYBOARD_ITSELF, SCRUB_Y) + assign(PAD_ITSELF, SECOND)
    + touch(SCRUB, BEGIN) + touch(SCRUB, BEGIN, 1) + touch(SCRUB, MOVE, 0, 90, 10) + touch(KEYBOARD, BEGIN, 2)
    + touch(SCRUB, MOVE, 1, 90, 190) + assign(KEYBOARD_ITSELF, 0) + touch(SCRUB, END) + touch(SCRUB, CANCEL, 1),
    "keyboard-locked": bytes([LAY, 0, 1]) + swipe(KEYBOARD) + swipe(KEYBOARD, 1) + midi(0x90, 60, 100) + render()
    + bytes([LAY, 5, 100, 100]) + swipe(KEYBOARD, 2) + bytes([LAY, 0, 0]) + bytes([LAY, 1, 2, LAY, 2]),
    "keyboard-and-midi": recorder(KEYS) + midi(0x90, 60, 100) + render() + touch(KEYBOARD, BEGIN)
    + midi(0x90, 72, 1, 0x80, 60, 0) + render() + touch(KEYBOARD, END) + midi(0x90, 255, 255) + render(),
    "knobs-under-hands": assign(DENSITY, LFO) + bytes([KNOB, DENSITY, BEGIN, 10, 10, 2]) + wait(0.2)
    + bytes([KNOB, DENSITY, MOVE, 10, 200, 2]) + wait(0.2) + bytes([KNOB, DENSITY, END, NAN, 200, 2]) + wait(0.2),
    "learned": b"".join(learn(control) + midi(0xB0, control % 8, 64, 0xB0, control % 8 + 32, 3) + render()
                        for control in range(36)) + midi(0xE0, 0, 127, 0xD0, 1, 0xC0, 5) + render() + STATE_KEPT
    + bytes([LEARN, 3]) + STATE_BACK + render() + midi(0xB0, 1, 127) + render(),
    "bound-at-random": b"".join(bytes([LEARN, 4, control, source, 1, 0, 200]) + struct.pack("<f", curve)
                                + bytes([takeover, 0]) + midi(0xB0, 1, 100, 0xE0, 0, control) + render()
                                for control, source, curve, takeover in (
        (DENSITY, 0, 1, 0), (PITCH, 2, 1, 1), (ECHO, 3, 9, 2), (SCAN, 4, float("nan"), 0), (PITCH, 5, 0, 1))),
    "tilted": assign(DENSITY, ACCEL_X) + assign(SCAN, ACCEL_Y) + b"".join(bytes([TILT, x, x * 7 % 256]) + wait(0.1)
                                                                       for x in (0, 100, 200, NAN, HUGE)),
    "states-while-it-moves": assign(DENSITY, LFO) + assign(SCAN, ACCEL_X) + assign(PITCH, SCRUB_Y) + STATE_KEPT
    + touch(SCRUB, BEGIN) + bytes([TAKE_AWAY, 0]) + STATE_BACK + render() + touch(SCRUB, MOVE, 0, 10, 10)
    + take([1, 2, 3]) + recorder(PLAY_TAKE) + STATE_KEPT + render() + STATE_BACK + wait(0.5),
    "panel": assign(DENSITY, LFO) + bytes([PANEL, 0, DENSITY, PANEL, 2, NAN, 0, PANEL, 2, 200, 0, PANEL, 3, 100, PANEL,
                                           4, HUGE, PANEL, 1, 4, PANEL, 1, 200, PANEL, 9]) + wait(0.1)
    + bytes([PANEL, 5]) + struct.pack("<q", -2 ** 63) + bytes([PANEL, 7]) + struct.pack("<id", -2 ** 31, 1e308),
    "sounds-and-regions-under-a-finger": touch(SCRUB, BEGIN) + b"".join(
        bytes([SOUND, *each]) + render() for each in ((1, 0), (1, 255), (0, 200, 0), (0, 100, 100), (0, NAN, 0))),
}

if __name__ == "__main__":
    FOLDER.mkdir(parents=True, exist_ok=True)
    for name, data in FILES.items():
        (FOLDER / name).write_bytes(data)
