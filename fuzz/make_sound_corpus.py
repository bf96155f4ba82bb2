#!/usr/bin/env python3
"""Makes the seed corpus of sound files, valid and broken: fuzz/corpus/sound_file.

Headers are written by hand so that they can lie; compressed ones come from ffmpeg. Each name says
what the file is, and what reading it gives is in tests/platform/sound_file_corpus_test.cpp. A file
that is not made here was found by the fuzzer and is kept.
"""
import math
import pathlib
import struct
import subprocess
import tempfile

FOLDER = pathlib.Path(__file__).parent / "corpus" / "sound_file"
RATE = 8000
FRAMES = 400
LEFT = [round(16000 * math.sin(2 * math.pi * 440 * i / RATE)) for i in range(FRAMES)]
RIGHT = [round(8000 * math.sin(2 * math.pi * 660 * i / RATE)) for i in range(FRAMES)]
STEREO = [sample for pair in zip(LEFT, RIGHT) for sample in pair]


def ints(samples, order="<"):
    return struct.pack(f"{order}{len(samples)}h", *samples)


def chunk(name, body, order="<", size=None):
    length = len(body) if size is None else size
    return name + struct.pack(order + "I", length) + body + b"\0" * (len(body) % 2)


def wav(data, channels=1, rate=RATE, bits=16, code=1, data_size=None, extra=b"", block=None):
    block = channels * bits // 8 if block is None else block
    fmt = struct.pack("<HHIIHH", code, channels, rate, rate * block & 0xFFFFFFFF, block, bits)
    body = b"WAVE" + chunk(b"fmt ", fmt) + extra + chunk(b"data", data, size=data_size)
    return b"RIFF" + struct.pack("<I", len(body)) + body


def extended(rate):
    """rate as the 80-bit float of AIFF."""
    if rate == 0:
        return bytes(10)
    exponent = math.floor(math.log2(rate))
    return struct.pack(">HQ", 16383 + exponent, int(rate * 2 ** (63 - exponent)))


def aiff(data, channels=1, frames=FRAMES, bits=16, rate=RATE, form=b"AIFF", tail=b"", data_size=None):
    comm = struct.pack(">HIH", channels, frames, bits) + extended(rate) + tail
    sound = chunk(b"SSND", struct.pack(">II", 0, 0) + data, ">", data_size)
    body = form + chunk(b"COMM", comm, ">") + sound
    return b"FORM" + struct.pack(">I", len(body)) + body


def caf(data, rate=float(RATE), channels=1, bits=16, data_size=None):
    desc = struct.pack(">d4sIIIII", rate, b"lpcm", 2, channels * bits // 8, 1, channels, bits)
    size = len(data) + 4 if data_size is None else data_size
    return (b"caff" + struct.pack(">HH", 1, 0) + b"desc" + struct.pack(">q", len(desc)) + desc
            + b"data" + struct.pack(">q", size) + struct.pack(">I", 0) + data)


def au(data, channels=1, rate=RATE, encoding=3, offset=24, size=None):
    length = len(data) if size is None else size
    return b".snd" + struct.pack(">IIIII", offset, length, encoding, rate, channels) + data


def floats(samples):
    return struct.pack(f"<{len(samples)}f", *samples)


def linear_files():
    mono = wav(ints(LEFT))
    half = [sample / 32768 for sample in LEFT]
    return {
        "mono.wav": mono,
        "stereo.wav": wav(ints(STEREO), channels=2),
        "float.wav": wav(floats(half), bits=32, code=3),
        "cut-in-the-middle.wav": mono[:444],
        "cut-in-the-header.wav": mono[:30],
        "only-a-header.wav": wav(b""),
        "claims-four-billion-frames.wav": wav(ints(LEFT), data_size=0xFFFFFFF0),
        "zero-channels.wav": wav(ints(LEFT), channels=0, block=2),
        "too-many-channels.wav": wav(ints(LEFT), channels=65535, block=2),
        "rate-zero.wav": wav(ints(LEFT), rate=0),
        "rate-too-high.wav": wav(ints(LEFT), rate=4000000000),
        "rate-a-million.wav": wav(ints(LEFT), rate=1000000),
        "zero-bits.wav": wav(ints(LEFT), bits=0, block=0),
        "not-a-number.wav": wav(floats(half[:99] + [math.nan] + half[99:]), bits=32, code=3),
        "infinite.wav": wav(floats(half[:7] + [-math.inf]), bits=32, code=3),
        "two-largest-floats.wav": wav(floats([3.4e38, 3.4e38]), channels=2, bits=32, code=3),
        "double-beyond-float.wav": wav(struct.pack("<2d", 0.5, 1e300), bits=64, code=3),
        "unknown-coding.wav": wav(ints(LEFT), code=0x1234),
        "chunk-beyond-the-end.wav": wav(ints(LEFT), extra=b"LIST\xff\xff\xff\x7fabcd"),
        "mono.aiff": aiff(ints(LEFT, ">")),
        "cut-in-the-middle.aiff": aiff(ints(LEFT, ">"))[:454],
        "claims-four-billion-frames.aiff": aiff(ints(LEFT, ">"), frames=0xFFFFFFFF, data_size=0xFFFFFFF0),
        "zero-channels.aiff": aiff(ints(LEFT, ">"), channels=0),
        "rate-zero.aiff": aiff(ints(LEFT, ">"), rate=0),
        "mono.aifc": aiff(ints(LEFT), form=b"AIFC", tail=b"sowt\0\0"),
        "ima4-cut.aifc": aiff(bytes(range(34)) * 3 + b"\1", frames=1 << 30, form=b"AIFC", tail=b"ima4\0\0"),
        "mono.caf": caf(ints(LEFT, "<")),
        "open-ended.caf": caf(ints(LEFT, "<"), data_size=-1),
        "cut-in-the-middle.caf": caf(ints(LEFT, "<"))[:468],
        "claims-too-much.caf": caf(ints(LEFT, "<"), data_size=1 << 62),
        "rate-not-a-number.caf": caf(ints(LEFT, "<"), rate=math.nan),
        "zero-channels.caf": caf(ints(LEFT, "<"), channels=0),
        "mono.au": au(ints(LEFT, ">")),
        "offset-beyond-the-end.au": au(ints(LEFT, ">"), offset=0x7FFFFFFF),
        "samples.raw": ints(LEFT),
        "one-byte.raw": b"\1",
        "empty.wav": b"",
        "text.wav": b"This is no sound, whatever its name says.\n",
        "zeros.mp3": bytes(512),
        "sync-then-noise.mp3": b"\xff\xfb\x90\x64" + bytes(i * 37 & 255 for i in range(800)),
        "tag-that-never-ends.mp3": b"ID3\4\0\0\x7f\x7f\x7f\x7f" + bytes(300),
    }


def encoded(source, name, *options):
    target = pathlib.Path(source).parent / name
    subprocess.run(["ffmpeg", "-v", "error", "-y", "-i", source, "-map_metadata", "-1", "-fflags",
                    "+bitexact", "-flags", "+bitexact", *options, str(target)], check=True)
    return target.read_bytes()


def compressed_files():
    with tempfile.TemporaryDirectory() as folder:
        source = f"{folder}/source.wav"
        pathlib.Path(source).write_bytes(wav(ints(STEREO * 5), channels=2))
        files = {
            "stereo.mp3": encoded(source, "a.mp3", "-b:a", "32k"),
            "stereo.flac": encoded(source, "a.flac"),
            "vorbis.ogg": encoded(source, "a.ogg", "-c:a", "libvorbis", "-q:a", "0"),
            "ima4.caf": encoded(source, "a.caf", "-c:a", "adpcm_ima_qt"),
            "adpcm.wav": encoded(source, "b.wav", "-c:a", "adpcm_ms"),
            "stereo.m4a": encoded(source, "a.m4a", "-c:a", "aac", "-b:a", "32k"),
            "index-first.m4a": encoded(source, "b.m4a", "-c:a", "aac", "-b:a", "32k",
                                       "-movflags", "+faststart"),
            "lossless.m4a": encoded(source, "c.m4a", "-c:a", "alac"),
        }
    return files | damaged(files)


def replaced(data, old, new):
    assert old in data
    return data.replace(old, new, 1)


def after(data, box, skip, value):
    """data with the bytes that follow box's name by skip bytes replaced by value."""
    at = data.index(box) + 4 + skip
    return data[:at] + value + data[at + len(value):]


def damaged(files):
    m4a, first, flac = files["stereo.m4a"], files["index-first.m4a"], files["stereo.flac"]
    return {
        "cut-in-the-middle.mp3": files["stereo.mp3"][:len(files["stereo.mp3"]) // 2],
        "cut-in-the-middle.flac": flac[:len(flac) // 2],
        "claims-too-much.flac": flac[:21] + b"\xff" * 5 + flac[26:],
        "cut-in-the-middle.ogg": files["vorbis.ogg"][:-300],
        "index-missing.m4a": m4a[:len(m4a) // 2],
        "sound-cut.m4a": first[:-200],
        "claims-too-many-packets.m4a": after(m4a, b"stsz", 4, struct.pack(">II", 9, 0x0FFFFFFF)),
        "time-scale-zero.m4a": after(m4a, b"mdhd", 12, struct.pack(">I", 0)),
        "claims-four-billion-frames.m4a": after(m4a, b"mdhd", 16, struct.pack(">I", 0xFFFFFFFF)),
        "no-track.m4a": replaced(m4a, b"trak", b"free"),
        "packets-overwritten.m4a": after(first, b"mdat", 60, bytes(i * 91 & 255 for i in range(200))),
    }


if __name__ == "__main__":
    FOLDER.mkdir(parents=True, exist_ok=True)
    for name, data in (linear_files() | compressed_files()).items():
        (FOLDER / name).write_bytes(data)
