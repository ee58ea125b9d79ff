#!/usr/bin/env python3
# SPDX-FileCopyrightText: 2026 The OrvaUtils authors
# SPDX-License-Identifier: MIT
"""Draws the pictures of the sample shop into photos/.

Needed only to change them: the pictures are committed. It needs rsvg-convert (librsvg2-bin),
convert (imagemagick), gifsicle and exiftool (libimage-exiftool-perl).

Every picture carries a red tag with an arrow and the word TOP in its upper left corner, so that
anyone sees which way up it is. The eight photographs "... orientation N" are stored turned or
mirrored, each with the EXIF orientation that tells how to turn it back.
"""

import math
import pathlib
import subprocess
import tempfile

PHOTOS = pathlib.Path(__file__).resolve().parent / "photos"

# How a picture is stored so that a viewer that obeys the orientation shows it upright.
STORED = {
    1: [],
    2: ["-flop"],
    3: ["-rotate", "180"],
    4: ["-flip"],
    5: ["-transpose"],
    6: ["-rotate", "270"],
    7: ["-transverse"],
    8: ["-rotate", "90"],
}


def gradient(name, stops, kind="linear", extra='x1="0" y1="0" x2="0" y2="1"'):
    inner = "".join(f'<stop offset="{at}" stop-color="{colour}"/>' for at, colour in stops)
    return f'<{kind}Gradient id="{name}" {extra}>{inner}</{kind}Gradient>'


def tag(size):
    """The red tag with the arrow, in the upper left corner."""
    s = size
    return f"""
    <g transform="translate({s * .22},{s * .22}) scale({s / 100})">
      <rect width="100" height="112" rx="14" fill="#d5262b"/>
      <path d="M50 10 L84 52 H62 V72 H38 V52 H16 Z" fill="#fff"/>
      <text x="50" y="101" font-family="DejaVu Sans" font-weight="bold" font-size="27"
            text-anchor="middle" fill="#fff">TOP</text>
    </g>"""


def svg(width, height, defs, body, backdrop=("#f3ece2", "#d9c9b4"), table="#b99f80", mark=True):
    """A picture: wall, table, product. The drawing area is 1000 wide with the table edge at 62 %."""
    scale = width / 1000
    h = height / scale
    scene = ""
    if backdrop:
        edge = h * .62
        defs += gradient("wall", [(0, backdrop[0]), (1, backdrop[1])])
        defs += gradient("table", [(0, table), (1, "#5b4632")],
                         extra='x1="0" y1="0" x2="0" y2="1.9"')
        scene = (f'<rect width="1000" height="{h}" fill="url(#wall)"/>'
                 f'<rect y="{edge}" width="1000" height="{h - edge}" fill="url(#table)"/>'
                 f'<rect y="{edge}" width="1000" height="4" fill="#fff" opacity=".35"/>')
    return f"""<svg xmlns="http://www.w3.org/2000/svg" width="{width}" height="{height}"
      viewBox="0 0 1000 {h}"><defs>{defs}
      <radialGradient id="shade"><stop offset="0" stop-color="#000" stop-opacity=".5"/>
      <stop offset="1" stop-color="#000" stop-opacity="0"/></radialGradient></defs>
      {scene}{body}{tag(110) if mark else ''}</svg>"""


def shadow(x, y, rx, ry):
    return f'<ellipse cx="{x}" cy="{y}" rx="{rx}" ry="{ry}" fill="url(#shade)"/>'


ROUND = 'x1="0" y1="0" x2="1" y2="0"'  # light from the left on a turned body


def turned(name, dark, base, light):
    return gradient(name, [(0, base), (.28, light), (.6, base), (1, dark)], extra=ROUND)


def bowl(width, height, dark, base, light, inside, dots):
    body = shadow(500, 640, 330, 46) + """
      <path d="M210 380 C220 560 360 640 500 640 C640 640 780 560 790 380 Z" fill="url(#body)"/>
      <path d="M410 628 h180 l14 30 h-208 Z" fill="url(#body)"/>
      <ellipse cx="500" cy="380" rx="290" ry="74" fill="url(#inside)"/>
      <ellipse cx="500" cy="380" rx="290" ry="74" fill="none" stroke="#fff" stroke-width="9"
               opacity=".75"/>"""
    for i in range(9):
        x = 262 + i * 59.5
        y = 486 + 44 * math.sin(math.pi * i / 8)
        body += f'<circle cx="{x}" cy="{y}" r="13" fill="{dots}" opacity=".9"/>'
    return svg(width, height, turned("body", dark, base, light)
               + gradient("inside", [(0, dark), (1, inside)]), body)


def teapot(width, height):
    body = shadow(520, 652, 330, 44) + """
      <path d="M742 420 C900 380 910 560 730 560" fill="none" stroke="#28594f" stroke-width="34"/>
      <path d="M300 500 C190 480 190 380 120 350 L150 326 C240 350 250 410 330 420 Z"
            fill="#2f6a5e"/>
      <path d="M270 500 C270 360 380 300 520 300 C660 300 770 360 770 500 C770 610 660 652 520 652
               C380 652 270 610 270 500 Z" fill="url(#body)"/>
      <path d="M400 322 C420 270 620 270 640 322 C600 340 440 340 400 322 Z" fill="url(#body)"
            stroke="#1f453d" stroke-width="4"/>
      <circle cx="520" cy="258" r="26" fill="#e0b04c"/>
      <path d="M300 470 Q520 520 742 470 L746 500 Q520 552 296 500 Z" fill="#e0b04c"
            opacity=".9"/>"""
    return svg(width, height, turned("body", "#1c3f38", "#347567", "#79b8a6"), body,
               ("#f6efe4", "#e3cfae"))


def vase(width, height):
    stems = ""
    for x, y, colour in ((380, 150, "#e58f9d"), (500, 92, "#f2c14e"), (612, 160, "#d9657a"),
                         (448, 240, "#f6d9a8"), (566, 262, "#e9a3ad")):
        stems += f'<path d="M500 520 Q{(x + 500) / 2 + 20} {y + 190} {x} {y}" fill="none" ' \
                 'stroke="#5d7f4a" stroke-width="9"/>'
        for k in range(7):
            a = k * 2 * math.pi / 7
            stems += f'<circle cx="{x + 34 * math.cos(a)}" cy="{y + 34 * math.sin(a)}" r="26" ' \
                     f'fill="{colour}"/>'
        stems += f'<circle cx="{x}" cy="{y}" r="22" fill="#8a5a2b"/>'
    body = stems + shadow(500, 982, 230, 42) + """
      <path d="M430 480 H570 C560 560 680 650 680 790 C680 910 610 980 500 980
               C390 980 320 910 320 790 C320 650 440 560 430 480 Z" fill="url(#body)"/>
      <ellipse cx="500" cy="480" rx="74" ry="18" fill="#4d6b62"/>
      <path d="M330 730 Q500 790 670 730" fill="none" stroke="#fff" stroke-width="8"
            opacity=".55"/>
      <path d="M322 778 Q500 840 678 778" fill="none" stroke="#fff" stroke-width="8"
            opacity=".55"/>"""
    return svg(width, height, turned("body", "#6a8f84", "#a3c9bd", "#e3f2ec"), body,
               ("#eef2ef", "#c9d6d0"), "#a98e6c")


def lamp(width, height):
    defs = turned("shadecolour", "#8d3f20", "#c8633a", "#f0a274") + (
        '<radialGradient id="glow"><stop offset="0" stop-color="#fff3c4" stop-opacity=".95"/>'
        '<stop offset="1" stop-color="#fff3c4" stop-opacity="0"/></radialGradient>')
    body = shadow(500, 930, 260, 40) + """
      <ellipse cx="500" cy="470" rx="470" ry="330" fill="url(#glow)"/>
      <rect x="486" y="420" width="28" height="480" fill="#3c3430"/>
      <ellipse cx="500" cy="910" rx="170" ry="34" fill="#3c3430"/>
      <ellipse cx="500" cy="902" rx="170" ry="30" fill="#5a4f49"/>
      <path d="M390 180 H610 L730 450 H270 Z" fill="url(#shadecolour)"/>
      <ellipse cx="500" cy="450" rx="230" ry="36" fill="#fff1bd"/>"""
    return svg(width, height, defs, body, ("#4a5568", "#2d3442"), "#7b6148")


def pear(x, y, tilt, colour):
    return f"""<g transform="translate({x},{y}) rotate({tilt})">
      <path d="M0 -210 C60 -205 62 -120 92 -60 C140 30 110 130 0 130 C-110 130 -140 30 -92 -60
               C-62 -120 -60 -205 0 -210 Z" fill="url(#{colour})"/>
      <path d="M0 -205 q6 -40 34 -62" fill="none" stroke="#5b3c1e" stroke-width="13"/>
      <path d="M16 -232 q70 -50 120 0 q-60 42 -120 0 Z" fill="#5f8a3a"/></g>"""


def pears(width, height):
    defs = (turned("green", "#6f8a2a", "#a9bf4a", "#e3ec9a")
            + turned("gold", "#b57a1c", "#e0b040", "#f8e29a"))
    body = (shadow(330, 656, 150, 32) + shadow(520, 668, 150, 34) + shadow(720, 656, 150, 32)
            + pear(330, 530, -8, "green") + pear(715, 530, 10, "green")
            + pear(520, 545, 2, "gold"))
    return svg(width, height, defs, body, ("#fbf3e7", "#ecd5b3"), "#c19a6b")


def oranges(width, height):
    defs = ('<radialGradient id="orange" cx=".35" cy=".3"><stop offset="0" stop-color="#ffd08a"/>'
            '<stop offset=".45" stop-color="#f4922f"/><stop offset="1" stop-color="#b9560f"/>'
            "</radialGradient>")
    body = shadow(500, 655, 360, 46)
    for x, y in ((320, 540), (680, 540), (500, 560), (410, 380), (590, 380)):
        body += f'<circle cx="{x}" cy="{y}" r="112" fill="url(#orange)"/>' \
                f'<circle cx="{x + 8}" cy="{y - 60}" r="9" fill="#5f7f2e"/>'
    return svg(width, height, defs, body, ("#eaf1f5", "#bccfd9"), "#8f7860")


def candles(width, height):
    defs = (turned("wax", "#b7a58b", "#efe2cb", "#fffaf0")
            + '<radialGradient id="halo"><stop offset="0" stop-color="#ffd27a" stop-opacity=".9"/>'
              '<stop offset="1" stop-color="#ffd27a" stop-opacity="0"/></radialGradient>')
    body = shadow(500, 940, 340, 46)
    for x, top in ((320, 560), (500, 400), (690, 640)):
        body += f"""<circle cx="{x}" cy="{top - 90}" r="190" fill="url(#halo)"/>
          <rect x="{x - 72}" y="{top}" width="144" height="{930 - top}" fill="url(#wax)"/>
          <ellipse cx="{x}" cy="930" rx="72" ry="20" fill="url(#wax)"/>
          <ellipse cx="{x}" cy="{top}" rx="72" ry="20" fill="#fff6e2"/>
          <path d="M{x} {top} v-34" stroke="#4a3a2a" stroke-width="7"/>
          <path d="M{x} {top - 130} C{x + 40} {top - 70} {x + 22} {top - 28} {x} {top - 28}
                   C{x - 22} {top - 28} {x - 40} {top - 70} {x} {top - 130} Z" fill="#ffb52e"/>"""
    return svg(width, height, defs, body, ("#5b3a4a", "#2f2130"), "#6b4a3a")


def plates(width, height):
    body = shadow(500, 640, 420, 46)
    for x, rim, centre in ((300, "#c9d7e6", "#3f6fa3"), (700, "#f0dcc0", "#c2703d"),
                           (500, "#e4e0f0", "#6a5fa0")):
        body += f"""<circle cx="{x}" cy="430" r="206" fill="#0003"/>
          <circle cx="{x}" cy="424" r="204" fill="{rim}"/>
          <circle cx="{x}" cy="424" r="204" fill="none" stroke="#fff" stroke-width="8"/>
          <circle cx="{x}" cy="424" r="134" fill="#fffdf8"/>
          <circle cx="{x}" cy="424" r="96" fill="none" stroke="{centre}" stroke-width="15"/>
          <circle cx="{x}" cy="424" r="42" fill="{centre}"/>"""
    return svg(width, height, "", body, ("#f2f4f3", "#cdd5d2"), "#9a8066")


def glass(width, height):
    """A cut-out: transparent around and through the glass."""
    body = """
      <path d="M330 150 H670 L620 640 Q500 700 380 640 Z" fill="#7fc4d8" fill-opacity=".35"
            stroke="#2f7f99" stroke-width="14" stroke-linejoin="round"/>
      <path d="M350 340 H650 L620 640 Q500 700 380 640 Z" fill="#f0912f" fill-opacity=".8"/>
      <ellipse cx="500" cy="340" rx="150" ry="26" fill="#ffc067"/>
      <path d="M380 190 L410 600" stroke="#fff" stroke-width="22" stroke-linecap="round"
            opacity=".7"/>
      <path d="M560 470 L700 60" stroke="#d5262b" stroke-width="22" stroke-linecap="round"/>"""
    return svg(width, height, "", body, None)


def cup(width, height, phase):
    steam = ""
    for k, x in enumerate((430, 500, 570)):
        sway = 26 * math.sin(phase + .8 + k * 2.1)
        steam += f'<path d="M{x} 330 C{x + sway} 270 {x - sway} 220 {x + sway} 150" fill="none" ' \
                 'stroke="#fff" stroke-width="20" stroke-linecap="round" opacity=".9"/>'
    body = steam + """
      <rect x="300" y="680" width="400" height="22" rx="11" fill="#4f3826"/>
      <path d="M690 440 C830 430 830 600 660 610" fill="none" stroke="#b23a3a" stroke-width="36"/>
      <path d="M290 380 H710 C710 560 660 680 500 680 C340 680 290 560 290 380 Z" fill="#cf4b4b"/>
      <ellipse cx="500" cy="380" rx="210" ry="44" fill="#efe5da"/>
      <ellipse cx="500" cy="386" rx="184" ry="34" fill="#4a2c1a"/>"""
    return svg(width, height, "", body, ("#6f8fa3", "#6f8fa3"), "#a07f5f")


LOGO = """<?xml version="1.0" encoding="UTF-8"?>
<svg xmlns="http://www.w3.org/2000/svg" width="480" height="480" viewBox="0 0 480 480">
  <title>Sample shop</title>
  <circle cx="240" cy="240" r="220" fill="#f6e7cf" stroke="#a4502d" stroke-width="12"/>
  <path d="M120 220 C126 330 190 372 240 372 C290 372 354 330 360 220 Z" fill="#a4502d"/>
  <ellipse cx="240" cy="220" rx="120" ry="30" fill="#7c3a1f"/>
  <path d="M206 180 q-24 -34 0 -66 M240 180 q-24 -34 0 -66 M274 180 q-24 -34 0 -66"
        fill="none" stroke="#a4502d" stroke-width="12" stroke-linecap="round"/>
  <g transform="translate(24,24) scale(.6)">
    <rect width="100" height="112" rx="14" fill="#d5262b"/>
    <path d="M50 10 L84 52 H62 V72 H38 V52 H16 Z M30 82 H70 V98 H30 Z" fill="#fff"/>
  </g>
</svg>
"""


def run(*command):
    subprocess.run([str(part) for part in command], check=True)


def render(drawing, path):
    source = path.with_suffix(".svg")
    source.write_text(drawing, encoding="utf-8")
    run("rsvg-convert", "-o", path, source)


def jpeg(work, name, drawing, orientation, quality=80):
    upright = work / "upright.png"
    render(drawing, upright)
    target = PHOTOS / name
    target.parent.mkdir(parents=True, exist_ok=True)
    run("convert", upright, "-alpha", "off", *STORED[orientation], "+repage", "-strip", "-sampling-factor",
        "4:2:0", "-quality", quality, target)
    run("exiftool", "-q", "-overwrite_original", "-n", f"-Orientation={orientation}",
        "-Make=Sample shop", "-Artist=The OrvaUtils authors", target)


def main():
    PHOTOS.mkdir(exist_ok=True)
    with tempfile.TemporaryDirectory() as folder:
        work = pathlib.Path(folder)
        jpeg(work, "ceramics/Bol bleu d'été.jpg",
             bowl(960, 720, "#1f3f6b", "#3a6ea5", "#8fb8de", "#5d8ec0", "#f4e3b5"), 1)
        jpeg(work, "ceramics/Plates, mirrored - orientation 2.jpg", plates(960, 720), 2)
        jpeg(work, "ceramics/Teapot - orientation 3.jpg", teapot(960, 720), 3)
        jpeg(work, "ceramics/Yellow bowl, mirrored - orientation 4.jpg",
             bowl(960, 720, "#9a6a12", "#d9a32e", "#f7dc8c", "#c68f22", "#7a3b2e"), 4)
        jpeg(work, "light/Candles, mirrored - orientation 5.JPG", candles(720, 960), 5)
        jpeg(work, "light/Lampe d’atelier - orientation 6.jpg", lamp(720, 960), 6)
        jpeg(work, "Oranges & more, mirrored - orientation 7.jpeg", oranges(960, 720), 7)
        jpeg(work, "ceramics/Vase céladon - orientation 8.jpg", vase(720, 960), 8)
        jpeg(work, "Pears 100% ripe #1.jpg", pears(2000, 1500), 1, 62)

        glass_png = work / "glass.png"
        render(glass(640, 480), glass_png)
        run("convert", glass_png, "-strip", "-define", "png:compression-level=9",
            PHOTOS / "Glass, cut out.png")

        frames = []
        for k in range(6):
            frame = work / f"cup{k}.png"
            render(cup(320, 240, k * math.pi / 3), frame)
            frames.append(frame)
        animated = work / "cup.gif"
        run("convert", "-delay", "16", "-loop", "0", *frames, "+dither", "-colors", "64",
            animated)
        run("gifsicle", "-O3", "--no-warnings", "-o", PHOTOS / "Hot cup.gif", animated)

        (PHOTOS / "Shop sign.svg").write_text(LOGO, encoding="utf-8")


if __name__ == "__main__":
    main()
