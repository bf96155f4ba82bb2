#!/usr/bin/env python3
"""Makes the seed corpus of property lists, valid and broken: fuzz/corpus/property_list.

Each name says what the file is, and what reading it gives is in
tests/platform/property_list_corpus_test.cpp. A file that is not made here was found by the fuzzer and
is kept.
"""
import datetime
import pathlib
import plistlib
import struct

FOLDER = pathlib.Path(__file__).parent / "corpus" / "property_list"

EVERY_TYPE = {
    "array": [1, [True, False], {}],
    "data": b"\0\1\2\xff",
    "date": datetime.datetime(2024, 2, 29, 23, 59, 58),
    "real": 0.1,
    "text": "a <b> & \u00e9\U0001f600\ttab",
    "whole": -5,
}


def xml(body, head='<?xml version="1.0" encoding="UTF-8"?>\n'):
    return f'{head}<plist version="1.0">{body}</plist>\n'.encode()


def binary(objects, reference_bytes=1, top=0, count=None, table_at=None):
    """A binary list of objects that are already encoded."""
    body, places = b"bplist00", []
    for item in objects:
        places.append(len(body))
        body += item
    table = b"".join(struct.pack(">H", place) for place in places)
    trailer = struct.pack(">6xBBQQQ", 2, reference_bytes, len(objects) if count is None else count, top,
                          len(body) if table_at is None else table_at)
    return body + table + trailer


def doubling(levels):
    """Arrays that each hold the next one twice."""
    return [bytes([0xA2, i + 1, i + 1]) for i in range(levels)] + [b"\x09"]


def xml_files():
    nested = "<array>" * 65 + "</array>" * 65
    return {
        "every-type.xml": plistlib.dumps(EVERY_TYPE),
        "comments-and-cdata.xml": xml("<!-- <array> --><array><string>a<!-- </string> -->"
                                      "<![CDATA[<&]]>&#65;&#x42;</string></array><!-- -->"),
        "carriage-returns.xml": xml("\r\n<string>a\r\nb\rc&#13;</string>\r\n"),
        "empty.xml": b"",
        "text.xml": b"This is no property list.\n",
        "64-deep.xml": xml("<array>" * 64 + "</array>" * 64),
        "65-deep.xml": xml(nested),
        "entities.xml": xml("<string>&a;</string>", '<!DOCTYPE plist [<!ENTITY a "b">]>'),
        "latin-1.xml": xml("<true/>", '<?xml version="1.0" encoding="ISO-8859-1"?>'),
        "cut.xml": plistlib.dumps(EVERY_TYPE)[:300],
        "key-twice.xml": xml("<dict><key>a</key><true/><key>&#97;</key><true/></dict>"),
        "key-without-value.xml": xml("<dict><key>a</key></dict>"),
        "bad-data.xml": xml("<dict><key>a</key><data>AA!A</data></dict>"),
        "bad-date.xml": xml("<dict><key>a</key><date>2023-02-29T00:00:00Z</date></dict>"),
        "bad-real.xml": xml("<dict><key>Pad</key><array><real>abc</real></array></dict>"),
        "bad-whole.xml": xml("<dict><key>a</key><integer>0x10</integer></dict>"),
        "infinite.xml": xml("<dict><key>a</key><real>-inf</real></dict>"),
        "control-character.xml": xml("<dict><key>a</key><string>&#1;</string></dict>"),
        "not-utf-8.xml": xml("<dict><key>a</key><string>?</string></dict>").replace(b"?<", b"\xff<"),
    }


def binary_files():
    every = plistlib.dumps(EVERY_TYPE, fmt=plistlib.FMT_BINARY)
    return {
        "every-type.binary": every,
        "float-and-shared.binary": binary([b"\xa3\1\1\2", b"\x22" + struct.pack(">f", 0.1), b"\x10\xff"]),
        "cut.binary": every[:-40],
        "circle.binary": binary([b"\xa1\0"]),
        "doubled-40-times.binary": binary(doubling(40)),
        "reference-beyond.binary": binary([b"\xa1\x09"]),
        "claims-too-many.binary": binary([b"\x09"], count=1 << 62),
        "array-beyond-the-end.binary": binary([b"\xaf\x13" + b"\xff" * 8]),
        "string-beyond-the-end.binary": binary([b"\x5f\x11\xff\xff"]),
        "key-no-string.binary": binary([b"\xd1\1\1", b"\x10\1"]),
        "identifier.binary": binary([b"\xd1\1\2", b"\x51k", b"\x80\1"]),
        "whole-of-65-bits.binary": plistlib.dumps([2 ** 63], fmt=plistlib.FMT_BINARY),
        "not-a-number.binary": plistlib.dumps([float("nan")], fmt=plistlib.FMT_BINARY),
        "half-a-pair.binary": binary([b"\x61\xd8\x00"]),
        "zero-in-text.binary": binary([b"\xd1\1\2", b"\x51k", b"\x53a\0b"]),
        "date-beyond.binary": binary([b"\x33" + struct.pack(">d", 1e15)]),
    }


if __name__ == "__main__":
    FOLDER.mkdir(parents=True, exist_ok=True)
    for name, data in (xml_files() | binary_files()).items():
        (FOLDER / name).write_bytes(data)
