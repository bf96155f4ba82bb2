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


if __name__ == "__main__":
    FOLDER.mkdir(parents=True, exist_ok=True)
    for name, contents in states():
        (FOLDER / name).write_bytes(plistlib.dumps(contents))
