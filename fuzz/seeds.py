#!/usr/bin/env python3
# SPDX-FileCopyrightText: 2026 The OrvaUtils authors
# SPDX-License-Identifier: MIT
"""Writes the initial inputs of the fuzz targets: one folder below DIR for each target.

Usage: fuzz/seeds.py DIR [FOLDER OF PHOTOGRAPHS]

Real photographs, if there are any, become inputs of the targets that read EXIF. Only their beginning
is used, because the rest is ignored.
"""

import pathlib
import struct
import sys
import zlib

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
    # Directories that refer to themselves, counts beyond the end, unknown types.
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
    # The settings for the save are at the end.
    files += [files[0] + bytes([1, 3]), files[2] + b"\x00\x10\x80\x40\x02\x01"]
    return blocks, files


def riff_chunk(kind, data):
    return kind + struct.pack("<I", len(data)) + data + bytes(len(data) & 1)


def png_chunk(kind, data):
    return struct.pack(">I", len(data)) + kind + data + struct.pack(">I", zlib.crc32(kind + data))


def gif_blocks(data):
    pieces = [data[at:at + 255] for at in range(0, len(data), 255)]
    return b"".join(bytes([len(piece)]) + piece for piece in pieces) + b"\0"


def metadata_inputs():
    """Complete pictures of each format, with and without metadata of every kind."""
    exif = block("<")
    xmp = (
        b"<x:xmpmeta xmlns:x='adobe:ns:meta/'><r:RDF xmlns:r='http://www.w3.org/1999/02/22-rdf-"
        b"syntax-ns#'><r:Description xmlns:exif='http://ns.adobe.com/exif/1.0/' "
        b"exif:GPSLatitude='43,46.9N' exif:Flash='0'><exif:GPSAltitude>12/1</exif:GPSAltitude>"
        b"</r:Description></r:RDF></x:xmpmeta>"
    )
    iptc = b"Photoshop 3.0\x008BIM\x04\x04\0\0\0\0\0\x08\x1c\x02\x50\0\x03Ann"
    profile = b"ICC_PROFILE\0\1\1" + bytes(40)

    # Grey, 8 x 8, every code table with one code of one bit.
    tables = segment(0xDB, b"\0" + b"\1" * 64) + segment(0xC0, b"\x08\0\x08\0\x08\1\1\x11\0")
    for table in (b"\0", b"\x10"):
        tables += segment(0xC4, table + b"\1" + bytes(15) + b"\0")
    scan = segment(0xDA, b"\1\1\0\0\x3f\0") + b"\x3f\xff\xd9"
    jfif = segment(0xE0, b"JFIF\0\1\1\0\0\1\0\1\0\0")
    told = (
        segment(0xE1, b"Exif\0\0" + exif) + segment(0xE1, b"http://ns.adobe.com/xap/1.0/\0" + xmp)
        + segment(0xED, iptc) + segment(0xE2, profile) + segment(0xE2, b"MPF\0II*\0")
        + segment(0xEE, b"Adobe\0\x64\0\0\0\0\0") + segment(0xFE, b"a comment")
    )
    jpegs = [b"\xff\xd8" + jfif + tables + scan, b"\xff\xd8" + jfif + told + tables + scan,
             b"\xff\xd8" + told + tables + scan + b"\xff\xd8a film"]

    header = png_chunk(b"IHDR", struct.pack(">IIBBBBB", 2, 2, 8, 2, 0, 0, 0))
    pixels = png_chunk(b"IDAT", zlib.compress(b"\0\1\2\3\4\5\6" * 2)) + png_chunk(b"IEND", b"")
    told = (
        png_chunk(b"iCCP", b"name\0\0" + zlib.compress(bytes(40))) + png_chunk(b"eXIf", exif)
        + png_chunk(b"iTXt", b"XML:com.adobe.xmp\0\0\0\0\0" + xmp)
        + png_chunk(b"iTXt", b"XML:com.adobe.xmp\0\1\0\0\0" + zlib.compress(xmp))
        + png_chunk(b"tEXt", b"Author\0Ann") + png_chunk(b"tIME", bytes(7))
        + png_chunk(b"zTXt", b"Raw profile type exif\0\0" + zlib.compress(b"45786966"))
    )
    mark = b"\x89PNG\r\n\x1a\n"
    pngs = [mark + header + pixels, mark + header + told + pixels, mark + header + pixels + b"more"]

    # One pixel, lossless.
    lossless = riff_chunk(b"VP8L", bytes.fromhex("2f00000010071011118888fe0700"))
    extended = riff_chunk(b"VP8X", b"\x2c" + bytes(9)) + riff_chunk(b"ICCP", bytes(40)) + lossless
    webps = [riff_chunk(b"RIFF", b"WEBP" + body) for body in (
        lossless, extended + riff_chunk(b"EXIF", exif) + riff_chunk(b"XMP ", xmp),
        extended + riff_chunk(b"EXIF", b"Exif\0\0" + exif) + riff_chunk(b"else", b"odd"))]

    screen = bytes.fromhex("47494638396102000100800100ff000000ff00")
    loop = bytes.fromhex("21ff0b4e45545343415045322e300301000000")
    frame = bytes.fromhex("21f90400010000002c0000000002000100000202440a00")
    magic = b"\1" + bytes(range(255, -1, -1)) + b"\0"
    told = b"\x21\xfe" + gif_blocks(b"a comment" * 40) + b"\x21\xff\x0bXMP DataXMP" + xmp + magic
    gifs = [screen + loop + frame + frame + b";", screen + told + frame + b";more",
            screen + frame[:-4]]
    return [bytes([kind]) + picture for kind, pictures in enumerate((jpegs, pngs, webps, gifs))
            for picture in pictures]


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
        "picture_metadata": metadata_inputs(),
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
