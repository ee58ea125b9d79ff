#!/usr/bin/env python3
# SPDX-FileCopyrightText: 2026 The OrvaUtils authors
# SPDX-License-Identifier: MIT
"""Writes the inputs that the fuzz targets begin with: one folder for each target below DIR.

Usage: fuzz/seeds.py DIR [FOLDER OF PHOTOGRAPHS]

Real photographs, where there are some, become inputs of the targets that read EXIF. Only their
beginning is taken: what follows the EXIF segment is not looked at.
"""

import pathlib
import struct
import sys

BYTE, ASCII, SHORT, LONG, RATIONAL, UNDEFINED, SLONG, SRATIONAL = 1, 2, 3, 4, 5, 7, 9, 10


def value_bytes(order, kind, values):
    if kind in (BYTE, UNDEFINED, ASCII):
        return bytes(values)
    code = {SHORT: "H", LONG: "I", RATIONAL: "I", SLONG: "i", SRATIONAL: "i"}[kind]
    return struct.pack(order + code * len(values), *values)


def directory(order, start, entries, link):
    """An IFD at offset start; entries are (tag, type, count, values or raw offset)."""
    size = 2 + 12 * len(entries) + 4
    head, data = struct.pack(order + "H", len(entries)), b""
    for tag, kind, count, values in entries:
        raw = value_bytes(order, kind, values)
        head += struct.pack(order + "HHI", tag, kind, count)
        if len(raw) <= 4:
            head += raw.ljust(4, b"\0")
        else:
            head += struct.pack(order + "I", start + size + len(data))
            data += raw
    return head + struct.pack(order + "I", link) + data


def block(order, thumbnail=b"", gps=True):
    mark = b"II" if order == "<" else b"MM"
    exif = [
        (0x829A, RATIONAL, 1, [1, 125]),
        (0x9000, UNDEFINED, 4, b"0230"),
        (0x9003, ASCII, 20, b"2016:06:01 12:30:45\0"),
        (0x9204, SRATIONAL, 1, [-1, 3]),
        (0x9214, SHORT, 4, [1, 2, 3, 4]),
        (0x9286, UNDEFINED, 14, b"ASCII\0\0\0camera"),
        (0xA005, LONG, 1, [8]),
    ]
    positions = [
        (0x0000, BYTE, 4, bytes([2, 3, 0, 0])),
        (0x0001, ASCII, 2, b"N\0"),
        (0x0002, RATIONAL, 3, [43, 1, 46, 1, 5999, 100]),
    ]
    # The pointers are single Longs, so the sizes are known before the offsets are.
    def first(exif_at, gps_at):
        entries = [
            (0x010F, ASCII, 7, b"Camera\0"),
            (0x0112, SHORT, 1, [6]),
            (0x011A, RATIONAL, 1, [72, 1]),
            (0x0132, ASCII, 20, b"2016:06:01 12:30:45\0"),
            (0x8769, LONG, 1, [exif_at]),
        ]
        return entries + ([(0x8825, LONG, 1, [gps_at])] if gps else [])

    exif_at = 8 + len(directory(order, 8, first(0, 0), 0))
    exif_bytes = directory(order, exif_at, exif, 0)
    gps_at = exif_at + len(exif_bytes)
    gps_bytes = directory(order, gps_at, positions, 0) if gps else b""
    small_at = gps_at + len(gps_bytes)

    def small(at):
        return [
            (0x0103, SHORT, 1, [6]),
            (0x0112, SHORT, 1, [6]),
            (0x0201, LONG, 1, [at]),
            (0x0202, LONG, 1, [len(thumbnail)]),
        ]

    small_bytes = b""
    if thumbnail:
        small_bytes = directory(order, small_at, small(0), 0)
        small_bytes = directory(order, small_at, small(small_at + len(small_bytes)), 0) + thumbnail
    return (
        mark + struct.pack(order + "HI", 42, 8)
        + directory(order, 8, first(exif_at, gps_at), small_at if thumbnail else 0)
        + exif_bytes + gps_bytes + small_bytes
    )


def segment(marker, payload):
    return bytes([0xFF, marker]) + struct.pack(">H", len(payload) + 2) + payload


def jpeg(*segments):
    scan = segment(0xDA, bytes(10)) + b"\x12\xff\x00\x34" * 4 + b"\xff\xd9"
    return b"\xff\xd8" + b"".join(segments) + segment(0xDB, bytes(65)) + scan


def exif_inputs():
    thumbnail = b"\xff\xd8\xff\xd9"
    blocks = [
        block(order, small, gps)
        for order in "<>" for small in (b"", thumbnail) for gps in (False, True)
    ]
    # Directories that lead back to themselves, counts beyond the end, types that do not exist.
    blocks.append(b"II*\0" + struct.pack("<IHHHIIHHIII", 8, 2, 0x8769, LONG, 1, 8, 0x9286, 7,
                                         0xFFFFFFF0, 8, 8))
    blocks.append(b"MM\0*" + struct.pack(">IHHHIII", 8, 1, 0x010F, 99, 3, 26, 0))
    jfif = segment(0xE0, b"JFIF\0\1\1\0\0\1\0\1\0\0")
    xmp = segment(0xE1, b"http://ns.adobe.com/xap/1.0/\0<x/>")
    files = []
    for tiff in blocks:
        app1 = segment(0xE1, b"Exif\0\0" + tiff)
        files += [jpeg(app1), jpeg(jfif, app1)]
    app1 = segment(0xE1, b"Exif\0\0" + blocks[0])
    files += [
        jpeg(), jpeg(jfif), jpeg(xmp, app1), jpeg(app1, xmp), jpeg(app1, app1),
        jpeg(segment(0xE1, b"Exif\0\0" + blocks[0].ljust(2000, b"\0"))),
        (b"\xff\xd8" + app1)[:60], b"\xff\xd8" + jfif, b"\xff\xd8\xff\xe1\0\2",
    ]
    # What is asked of a save stands at the end.
    files += [files[0] + bytes([1, 3]), files[2] + b"\x00\x10\x80\x40\x02\x01"]
    return blocks, files


def text(units, wide=False):
    return b"\1" + units.encode("utf-16-le") if wide else b"\0" + units.encode("latin-1")


def main():
    target = pathlib.Path(sys.argv[1])
    photos = pathlib.Path(sys.argv[2]) if len(sys.argv) > 2 else None
    blocks, files = exif_inputs()
    if photos and photos.is_dir():
        for path in sorted(photos.glob("*.jpg")):
            content = path.read_bytes()
            files.append(content[:4096])
            at = content.find(b"Exif\0\0")
            if 0 <= at < 100000:
                blocks.append(content[at + 6:at + 4096])

    versions = ["1.0", "1.0.7", "2.10", "2.9", "1.a", "1..2", "01", " 1", "99999999999", "1.2b", "-1"]
    inputs = {
        "exif_read": blocks,
        "exif_edit": [bytes([5 + 20 * i, i]) + block for block in blocks for i in range(2)],
        "exif_file": files,
        "exif_value": [
            bytes(range(1, 60)) + bytes([kind]) for kind in range(6)
        ] + [
            text("2016:06:01 12:30:45") + b"\6", text("é€😀", True) + b"\6", b"\6",
            b"UNICODE\0\xff\xfea\0b\0" + b"\7", b"ASCII\0\0\0text" + b"\7",
            b"JIS\0\0\0\0\0\x30\x21" + b"\7", bytes(12) + b"\7",
        ],
        "font_catalogue": [
            b'{"items":[{"family":"Open Sans","variants":["300","regular","italic","700italic"],'
            b'"lastModified":"2020-01-02"},{"family":"OpenSans","variants":[]}]}',
            b'{"items":[{"family":"\\u00c9t\\u00e9 \\ud83d\\ude00","variants":["bold",3,null]},7,[]]}',
            b'{"items":{}}', b"[]", b"{}", b"", b"\xef\xbb\xbf{}", b"[[[[[[", b'{"items":[',
        ],
        "html_text": [
            text("a&#233;b&nbsp;c &amp;") + b"\0\1", text("&#65x&#;&#99999999999;&#x41;&") + b"\1\0",
            text("<b title=\"x\"> é\n</b>") + b"\1\1", text("😀\ud83d é\u2028\u00ad".encode(
                "utf-16-le", "surrogatepass").decode("utf-16-le", "replace"), True) + b"\0\0",
            b"\1\x3d\xd8a\0\0\xde" + b"\1\1",
        ],
        "css_color": [text(color) for color in (
            "RGBA(1,2,3,0.5)", "rgba(1,2,3)", "rgb(255,0,256)", "rgb( 1,a,)", "#fff", "#12345678",
            "#123456789", "#123456789abc", "#12345", "red", "LightGoldenRodYellow", "transparent",
            "rgba(0,0,0,nan)", "rgba(0,0,0,1e9)", "rgba(0,0,0,-1)", "rgb(99999999999,1,2)", "")],
        "version": [text(a) + b"\\\0" + text(b) + b"\\\0" for a in versions for b in versions[:6]],
        "hexadecimal": [
            b"\x05\xa0\xff\\\0" + text("0aZZff") + bytes([base & 0xFF])
            for base in (16, 2, 10, 36, 37, 0, 1, -5, 127)
        ] + [b"\\\0" + text("-1+1 10x") + b"\x10"],
        "literals": [
            text("it's \"x\" \\ $a\n") + bytes([kind, 3, 4, 5, 6, 1]) for kind in range(7)
        ] + [bytes(range(80)), bytes(range(80, 0, -1)), text("12", True) + bytes([2, 6, 6, 6])],
    }
    for name, contents in inputs.items():
        folder = target / name
        folder.mkdir(parents=True, exist_ok=True)
        for number, content in enumerate(contents):
            (folder / f"seed-{number:03}").write_bytes(content)


main()
