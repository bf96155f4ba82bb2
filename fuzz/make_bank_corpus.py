#!/usr/bin/env python3
"""Makes the seed corpora of banks and of imported documents: fuzz/corpus/bank, fuzz/corpus/import.

Each name says what the file is; what opening, checking and mending a bank gives is in
tests/library/bank_corpus_test.cpp. The factory banks are seeds of the same fuzzers. A file that is
not made here was found by a fuzzer and is kept.
"""
import pathlib
import plistlib

FOLDER = pathlib.Path(__file__).parent / "corpus"

KEYS = ["0 - 21.11.2026 | 12:00:00", "1 - 21.11.2026 | 12:00:07", "10 - 21.11.2026 | 12:01:00"]


def record(tag, **values):
    return {"SnapshotTags": tag, "Density_0": 40.0, "Freeze_0": False, **values}


def bank(*tags):
    return dict(zip(KEYS, (record(tag) for tag in tags)))


def nested(depth):
    value = {"end": True}
    for _ in range(depth):
        value = {"inner": value}
    return value


def banks():
    three = plistlib.dumps(bank("Slow Glass", "Rain", "Swarm"))
    middle = three.find(b"<real>40.0</real>", three.find(b"1 - 21"))
    return {
        "three-presets.zephyra": three,
        "three-presets-binary.zephyra": plistlib.dumps(bank("Slow Glass", "Rain", "Swarm"),
                                                       fmt=plistlib.FMT_BINARY),
        "empty-bank.zephyra": plistlib.dumps({}),
        "no-bytes.zephyra": b"",
        "a-sound.zephyra": b"RIFF\x24\0\0\0WAVEfmt ",
        "an-array.zephyra": plistlib.dumps([record("Alone")]),
        "record-is-text.zephyra": plistlib.dumps({KEYS[0]: record("Whole"), KEYS[1]: "broken"}),
        "no-tag.zephyra": plistlib.dumps({KEYS[0]: {"Density_0": 40.0}}),
        "tag-is-number.zephyra": plistlib.dumps({KEYS[0]: record(7)}),
        "same-tags.zephyra": plistlib.dumps(bank("Twin", "Twin")),
        "key-without-dash.zephyra": plistlib.dumps({"plain": record("Plain")}),
        "cut-in-second.zephyra": three[:three.find(b"1 - 21") + 60],
        "cut-at-end.zephyra": three[:-17],
        "damaged-in-second.zephyra": three[:middle] + b"<real>4O.0</real>" + three[middle + 17:],
        "cut-binary.zephyra": plistlib.dumps(bank("A", "B"), fmt=plistlib.FMT_BINARY)[:-9],
        "deep.zephyra": plistlib.dumps({KEYS[0]: record("Deep", more=nested(40))}),
        "deep-tags.zephyra": b'<plist version="1.0">' + b"<dict><key>a</key>" * 500,
        "other-scripts.zephyra": plistlib.dumps(bank("\u3053\u3048", "\u0434\u044b\u043c",
                                                     "e\u0301toile")),
    }


def imports():
    body = banks()["three-presets.zephyra"]
    return {
        "plain": b"New.zephyra\nOther\n" + body,
        "name-taken": b"Mine.zephyra\nOther name\n" + body,
        "taken-and-given-again": b"Mine.zephyra\nMine\n" + body,
        "empty-answer": b"Mine.zephyra\n  \n" + body,
        "escaped-climb": b"..%2F..%2Fbeside.zephyra\n../beside\n" + body,
        "escaped-end": b"a%00b.zephyra\nx\n" + body,
        "typed-climb": b"Mine.zephyra\n../beside\n" + body,
        "other-type": b"song.txt\nx\nwords",
        "upper-case": b"LOUD.ZEPHYRA\nx\n" + body,
        "not-utf-8": b"\xff\xfe.zephyra\n\xff\n" + body,
        "long-answer": b"Mine.zephyra\n" + b"n" * 250 + b"\n" + body,
        "no-content": b"Empty.zephyra\nx\n",
    }


def main():
    for folder, files in (("bank", banks()), ("import", imports())):
        (FOLDER / folder).mkdir(parents=True, exist_ok=True)
        for name, content in files.items():
            (FOLDER / folder / name).write_bytes(content)


if __name__ == "__main__":
    main()
