#!/usr/bin/env python3
"""Makes the seed corpus of states: fuzz/corpus/restore_state.

Each name says what the state is. A file that is not made here was found by the fuzzer and is kept.
"""
import math
import pathlib
import plistlib
import struct
import subprocess

FOLDER = pathlib.Path(__file__).parent / "corpus" / "restore_state"

SWITCHES = ["EchoSwitch", "RMSwitch", "Freeze", "LIVE", "ScanSync", "DelaySync", "Keyboard", "NormalizeTouched"]
REALS = ["Volume", "Pan", "Width", "Density", "Rnd_Density", "Length", "Rnd_Length", "Pitch", "Rnd_Pitch",
         "Scanning", "Jittering", "EchoLeftDelay", "EchoRightDelay", "EchoLeftGain", "EchoRightGain",
         "RMFrequency", "RMAmount", "Normalize", "Mesures Sample", "Mesures Quarter", "DelaySubLeft",
         "DelaySubRight", "FadeInTime", "FadeOutTime", "RegionStart", "RegionEnd", "ScanPosition"]
WHOLES = ["Envelope", "Seed"]


def state(number, switch=False, **more):
    return ({f"{key}_0": switch for key in SWITCHES} | {f"{key}_0": number for key in REALS}
            | {f"{key}_0": int(max(min(number, 2 ** 63 - 1), -2 ** 63)) for key in WHOLES}
            | {"InputDryWet": number} | more)


def sample(path, **more):
    return {"Sample_0": {"Path": path, "RelativePath": path, "ContentHash": "0" * 32, "SampleRate": 44100.0} | more}


def flac(frames=300, channels=1, level=0.5):
    sound = b"".join(struct.pack("<h", round(32767 * level * math.sin(i / 7))) for i in range(frames * channels))
    coder = ["ffmpeg", "-v", "error", "-f", "s16le", "-ar", "8000", "-ac", str(channels), "-i", "-", "-map_metadata",
             "-1", "-fflags", "+bitexact", "-flags", "+bitexact", "-f", "flac", "-"]
    return subprocess.run(coder, input=sound, stdout=subprocess.PIPE, check=True).stdout


def captured(data, **more):
    return {"Captured_0": {"FLAC": data, "Scale": 1.0, "SampleRate": 8000.0, "Frames": 300} | more}


def states():
    sound = flac()
    yield "empty", {}
    yield "plain", state(0.5)
    yield "everything-on", state(1.0, True)
    yield "beyond-every-range", state(1e300, True)
    yield "below-every-range", state(-1e300)
    yield "wrong-types", {key: [b"data"] for key in state(0.5, Captured_0=1, Sample_0=1)}
    yield "unknown-keys", {"Later": {"deep": [1, {"er": b"data"}]}, "": 1, "Density_1": 2.0}
    yield "position-outside-the-region", {"RegionStart_0": 0.9, "RegionEnd_0": 0.3, "ScanPosition_0": 0.1}
    yield "region-of-nothing", {"RegionStart_0": 0.3, "RegionEnd_0": 0.3, "ScanPosition_0": 0.7}
    yield "captured", state(0.3, True) | captured(sound)
    yield "captured-level-of-one", captured(flac(level=1.0), Scale=1.0)
    yield "captured-huge", captured(sound, Scale=3e38) | {"EchoSwitch_0": True}
    yield "captured-tiny", captured(sound, Scale=1e-44)
    yield "captured-not-finite", captured(sound, Scale=1e300)
    yield "captured-rates", captured(sound, SampleRate=1e-30)
    yield "captured-high-rate", captured(sound, SampleRate=1e300)
    yield "captured-cut", captured(sound[:100])
    yield "captured-stereo", captured(flac(channels=2))
    yield "captured-frames-negative", captured(sound, Frames=-1)
    yield "sample-missing", sample("/nonexistent/sound.wav", RelativePath="../../../etc/passwd")
    yield "sample-device", sample("/dev/zero")
    yield "sample-waits-for-ever", sample("/proc/kmsg")
    yield "sample-without-end", sample("/proc/kcore")
    yield "sample-folder", sample("/")
    yield "sample-line-break", sample("/a\nb\tc.wav")
    yield "sample-no-path", {"Sample_0": {}}
    yield from modulated_states()


# What moves controls by itself. A list with a real that is not finite is refused as a whole, so that
# such numbers can only come inside a take.

NOTHING, MIDI, SCRUB_Y, SECOND_FINGER, ACCEL_X, ACCEL_Y, LFO = range(7)
KNOBS = ["Density_0", "Length_0", "Pitch_0", "Scanning_0", "Jittering_0", "Pan_0", "InputDryWet", "DelaySubLeft_0"]
MOVED = KNOBS + ["WaveScrubbing_0", "EchoSwitch_0", "PlayToggle_0", "ScrubRec_0", "---"]
WRAPPER = {"MinRange": 0.2, "MaxRange": 0.9, "Gravity": 0.5, "Velocity": 2.0, "SecondFinger": True, "Shape": 0,
           "LinkSwitch": True, "ClockSub": 3, "ClockSubMult": 2.0, "Hz": 7.0}


def record(name, type, **wrapper):
    return {"name": name, "type": type, "text": "?"} | ({"WrapperState": wrapper} if wrapper else {})


def assigned(*records, **more):
    return {"ControlAssignments": list(records)} | more


def midi(*bindings, **navigation):
    return {"Midi": {"Bindings": list(bindings), "Navigation": navigation}}


def binding(name="Density_0", **more):
    return {"name": name, "source": 0, "number": 1, "channel": 0, "min": 0.0, "max": 1.0, "curve": 1.0, "takeOver": 1,
            "relative": False} | more


def take(points, length=None, plays=1):
    data = struct.pack(f"<{len(points)}f", *points) if isinstance(points, list) else points
    return {"_0_SCRUB_REC_LENGTH_": len(points) if length is None else length, "_0_SCRUB_REC_": data,
            "_0_SCRUB_REC_IS_PLAYING_": plays}


def everywhere(value):
    return {key: value for key in WRAPPER}


def modulated_states():
    for name, type in (("midi", MIDI), ("scrub-y", SCRUB_Y), ("second-finger", SECOND_FINGER), ("accel-x", ACCEL_X),
                       ("accel-y", ACCEL_Y), ("lfo", LFO)):
        yield f"assigned-{name}", assigned(*(record(each, type, **WRAPPER) for each in MOVED))
    yield "assigned-unknown-types", assigned(*(record(each, type) for each, type in zip(
        MOVED, [-1, 7, -2 ** 63, 2 ** 63 - 1, 6.0, "6", True, b"6", [6], {}])))
    yield "assigned-lfo-of-every-shape", assigned(*(
        record(each, LFO, **WRAPPER | {"Shape": shape, "Hz": 24.0, "LinkSwitch": False})
        for each, shape in zip(MOVED, [0, 1, 2, 3, 4, 5, 6, -2 ** 63, 2 ** 63 - 1])))
    for name, value in (("huge", 1e308), ("low", -1e308), ("largest-whole", 2 ** 63 - 1), ("least-whole", -2 ** 63),
                        ("data", b"data"), ("text", "1"), ("on", True)):
        yield f"wrapper-{name}", assigned(*(record(each, type, **everywhere(value))
                                            for each, type in zip(MOVED, [LFO, SCRUB_Y, LFO, SECOND_FINGER] * 4)))
    yield "wrapper-is-no-dictionary", assigned(*(record(each, LFO) | {"WrapperState": [1]} for each in MOVED))
    yield "range-of-nothing", assigned(*(record(each, LFO, MinRange=0.5, MaxRange=0.5, Gravity=1.0) for each in MOVED))
    yield "range-turned-around", assigned(*(record(each, LFO, MinRange=1.0, MaxRange=0.0, Hz=24.0) for each in MOVED))
    yield "thousands-of-records", assigned(*(record(MOVED[i % len(MOVED)], i % 8) for i in range(3000)))
    yield "records-of-strangers", assigned(record("", LFO), record("Later_0", LFO), {"name": 3, "type": 6}, {}, 7,
                                           {"name": "Density_0"}, record("WaveScrubbing_1", LFO))
    yield "records-are-no-array", {"ControlAssignments": {"Density_0": 6}}
    yield "take", take([i / 99 for i in range(100)])
    yield "take-synced", take([0.2, 0.8, 0.4]) | {"ScanSync_0": True, "TapTempo": 999.0}
    yield "take-of-one-point", take([0.5])
    yield "take-longest", take([0.25] * 1800)
    yield "take-longer", take([0.25] * 2000)
    yield "take-odd-length", take(struct.pack("<3f", 0.1, 0.2, 0.3)[:-1], 3)
    yield "take-shorter-than-said", take([0.1], 2 ** 63 - 1)
    yield "take-negative", take([0.1], -2 ** 63)
    yield "take-not-finite", take([math.nan, 0.5, math.inf, -math.inf, 1e38, -1.0, math.nan])
    yield "take-plays-nothing", take([], 5, plays=2 ** 40)
    yield "take-lfo-and-freeze", take([0.9, 0.1]) | assigned(record("WaveScrubbing_0", LFO, **WRAPPER), Freeze_0=True)
    yield "midi-bindings", midi(binding(), binding(source=1, number=0), binding("Pitch_0", source=2, relative=True),
                                binding("EchoSwitch_0", source=3, number=61), binding("PlayToggle_0", number=2),
                                binding("WaveScrubbing_0", source=4), binding("Pan_0", takeOver=0, curve=10.0))
    yield "midi-bindings-hostile", midi(*(
        binding(**{key: value}) for key in ("source", "number", "channel", "takeOver", "min", "max", "curve", "name")
        for value in (-2 ** 63, 2 ** 63 - 1, -1e308, 1e308, 128, 119, b"1", [])), 3, {})
    yield "midi-bindings-without-end", midi(*(binding(number=i % 120, channel=i // 120 % 17) for i in range(1500)))
    yield "midi-relative-of-everything", midi(*(binding(name, source=2, relative=True, max=1.0, min=1.0)
                                                for name in MOVED))
    yield "midi-navigation", midi(programs=True, banks=True, channel=16, firstPresetNote=0, presetNotes=128,
                                  firstBankNote=127, bankNotes=128)
    yield "midi-navigation-hostile", midi(programs=2, banks="", channel=2 ** 63 - 1, firstPresetNote=-2 ** 63,
                                          presetNotes=2 ** 63 - 1, firstBankNote=1e308, bankNotes=0)
    tilt = [{"name": name, "axis": i % 2, "MinRange": 0.1, "MaxRange": 0.9, "Gravity": 0.3}
            for i, name in enumerate(MOVED)]
    yield "tilt", assigned(*(record(name, ACCEL_X + i % 2) for i, name in enumerate(MOVED)), Tilt=tilt)
    yield "tilt-without-records", {"Tilt": tilt}
    yield "tilt-that-is-also-lfo-and-midi", assigned(*(record(name, LFO) for name in MOVED), Tilt=tilt) | midi(
        *(binding(name) for name in MOVED))
    yield "tilt-hostile", {"Tilt": tilt * 90 + [3, {}, {"name": 1, "axis": 0}, {"name": "Pan_0", "axis": 2 ** 62},
                                                 {"name": "Pan_0", "axis": 1, "MinRange": -1e308, "Gravity": 1e308}]}
    yield "pad", {"Pad": [2.0, 48.0, 0.25, 0.75]}
    yield "pad-hostile", {"Pad": [1e308, -1e308, 1e308, b"x", {}]}
    for name, value in (("low", -1e308), ("high", 1e308), ("whole", 2 ** 63 - 1)):
        yield f"tap-tempo-{name}", {"TapTempo": value, "ScanSync_0": True, "DelaySync_0": True} | assigned(
            *(record(each, LFO, **WRAPPER) for each in MOVED))
    yield "lfo-switch-off", assigned(*(record(each, LFO, **WRAPPER) for each in MOVED), LFOSwitch=False)


if __name__ == "__main__":
    FOLDER.mkdir(parents=True, exist_ok=True)
    for name, contents in states():
        text = plistlib.dumps(contents)
        small = len(text) < 20000
        (FOLDER / name).write_bytes(text if small else plistlib.dumps(contents, fmt=plistlib.FMT_BINARY))
