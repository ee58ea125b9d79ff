#!/usr/bin/env python3
# SPDX-FileCopyrightText: 2026 The OrvaUtils authors
# SPDX-License-Identifier: MIT
"""Compares the import of a photograph with other programs, process against process.

    benchmarks/compare_import.py [--build build/release] [--rounds 9] [--photo FILE]...

Every contender produces the same picture from the same file: upright, at most 1600 x 1600, as a
progressive JPEG of quality 75. The photographs (6, 12 and 24 megapixels, baseline, orientation 6)
are made by bench_import, one of 12 megapixels also with grain; --photo uses your own instead, with
the promise for the nearest size. importImage() is compared with copyImageFile() ("ours"), and
ImageImporter on a hundred photographs with importing one after another. All files are in memory.
Contenders that are not installed are left out.
"""

import argparse
import functools
import os
import shutil
import subprocess
import sys
import tempfile
import time

import peers

MEGAPIXELS = {6: (3000, 2000), 12: (4000, 3000), 24: (6000, 4000)}
GRAIN = 16  # the standard deviation of the noise in the grainy photograph
PROMISED_QT = {6: 0.9, 12: 0.75, 24: 0.65}
PROMISED_VIPS = 0.6
PROMISED_MAGICK = 0.35
PROMISED_MIB = {6: 60, 12: 60, 24: 55}
PROMISED_IMPORT_IMAGE = 1.05
MANY = 100
PROMISED_SERIAL = 0.55
PROMISED_VIPS_MANY = 0.45
PROMISED_MIB_MANY = 120


def contenders(bench, source, folder):
    """name -> (command, its output, promised ratio or None); ours is the first."""
    def out(name):
        return os.path.join(folder, name + ".jpg")

    # Debian's own name first: "convert" may be another program.
    magick = next(filter(shutil.which, ("convert-im6.q16", "magick")), "convert")
    known = {
        "ours": [bench, "--once", "ours", source, out("ours")],
        "importImage": [bench, "--once", "import", source, out("importImage")],
        "Qt, plain": [bench, "--once", "qt", source, out("Qt, plain")],
        "vipsthumbnail": ["vipsthumbnail", source, "-s", "1600x1600",
                          "-o", out("vipsthumbnail") + "[Q=75,interlace,strip]"],
        "GraphicsMagick": ["gm", "convert", source, "-auto-orient", "-resize", "1600x1600",
                           "-interlace", "Line", "-quality", "75", out("GraphicsMagick")],
        "ImageMagick": [magick, source, "-auto-orient", "-resize", "1600x1600",
                        "-interlace", "JPEG", "-quality", "75", out("ImageMagick")],
    }
    return {name: (command, out(name)) for name, command in known.items()
            if shutil.which(command[0])}


def peak_mib(command):
    """The peak memory of a process in MiB."""
    process = subprocess.Popen(command, stdout=subprocess.DEVNULL)
    _, status, usage = os.wait4(process.pid, 0)
    process.returncode = os.waitstatus_to_exitcode(status)
    if process.returncode != 0:
        raise subprocess.CalledProcessError(process.returncode, command)
    return usage.ru_maxrss / (1024 * 1024 if sys.platform == "darwin" else 1024)


def likeness(bench, ours, theirs):
    """PSNR of the luma of two results in dB; fails if they are not the same picture."""
    answer = subprocess.run([bench, "--psnr", ours, theirs], check=True, capture_output=True,
                            text=True).stdout.split()
    width, height, peer_width, peer_height = map(int, answer[:4])
    decibels = float(answer[4])
    if abs(width - peer_width) > 1 or abs(height - peer_height) > 1 or decibels < 28:
        sys.exit(f"{theirs} is not the picture that {ours} is: {' '.join(answer)}")
    return decibels


def is_progressive(path):
    """Whether the first frame marker of a JPEG is progressive."""
    with open(path, "rb") as file:
        data = file.read()
    at = 2
    while data[at + 1] not in (0xC0, 0xC1, 0xC2):
        at += 2 + int.from_bytes(data[at + 2:at + 4], "big")
    return data[at + 1] == 0xC2


def compare_many(bench, photo, folder, rounds):
    """A table and notes: a hundred photographs, at once, one after another, and by vips."""
    sources = os.path.join(folder, "many")
    results = os.path.join(folder, "results")
    os.mkdir(sources)
    os.mkdir(results)
    files = [os.path.join(sources, f"{number}.jpg") for number in range(MANY)]
    for file in files:
        os.link(photo, file)
    commands = {
        "ImageImporter": [bench, "--many", "importer", sources, results],
        "one after another": [bench, "--many", "serial", sources, results],
    }
    if shutil.which("vipsthumbnail"):
        commands["vipsthumbnail"] = ["vipsthumbnail", *files, "-s", "1600x1600", "-o",
                                     os.path.join(results, "%s.jpg[Q=75,interlace,strip]")]
    seconds = peers.alternate({name: functools.partial(peers.run, command)
                               for name, command in commands.items()}, rounds)
    table = peers.Table(f"{MANY} photographs of 12 megapixels on {os.cpu_count()} cores")
    promised = {"one after another": PROMISED_SERIAL, "vipsthumbnail": PROMISED_VIPS_MANY}
    for name in list(commands)[1:]:
        table.add("ImageImporter", seconds["ImageImporter"], name, seconds[name], promised[name])
    mib = peak_mib(commands["ImageImporter"])
    kept = table.kept() and mib <= PROMISED_MIB_MANY
    note = f"ImageImporter: {mib:.0f} MiB, promised {PROMISED_MIB_MANY}" + \
        ("" if mib <= PROMISED_MIB_MANY else "  missed")
    return table, note, kept


def main():
    parser = argparse.ArgumentParser(description=__doc__,
                                     formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("--build", default="build/release", help="the build folder")
    parser.add_argument("--rounds", type=int, default=9)
    parser.add_argument("--photo", action="append", help="a JPEG to import; may be repeated")
    options = parser.parse_args()
    bench = os.path.join(options.build, "benchmarks", "bench_import")
    memory = "/dev/shm" if os.path.isdir("/dev/shm") else None
    kept = True

    with tempfile.TemporaryDirectory(dir=memory) as folder:
        photos = []
        for megapixels, (width, height) in MEGAPIXELS.items():
            if not options.photo:
                path = os.path.join(folder, f"{megapixels}.jpg")
                subprocess.run([bench, "--make", str(width), str(height), path], check=True)
                photos.append((megapixels, path))
        if not options.photo:
            width, height = MEGAPIXELS[12]
            path = os.path.join(folder, "grainy.jpg")
            subprocess.run([bench, "--make", str(width), str(height), path, str(GRAIN)], check=True)
            photos.append((12, path))
        for path in options.photo or []:
            width, height = map(int, subprocess.run(
                [bench, "--psnr", path, path], check=True, capture_output=True,
                text=True).stdout.split()[:2])
            nearest = min(MEGAPIXELS, key=lambda m: abs(m - width * height / 1e6))
            photos.append((nearest, path))

        table = peers.Table("Import into 1600 x 1600, upright, progressive JPEG of quality 75")
        notes = []
        for megapixels, source in photos:
            known = contenders(bench, source, folder)
            seconds = peers.alternate(
                {name: functools.partial(peers.run, command)
                 for name, (command, _) in known.items()}, options.rounds)
            what = f"{megapixels} MP, {os.path.getsize(source) / 1e6:.1f} MB"
            if options.photo or os.path.basename(source) == "grainy.jpg":
                what += " " + os.path.basename(source)[:24]
            ours = known["ours"][1]
            for name, (command, output) in known.items():
                if name == "ours":
                    continue
                promised = {"importImage": None, "Qt, plain": PROMISED_QT[megapixels], "vipsthumbnail": PROMISED_VIPS,
                            "GraphicsMagick": PROMISED_MAGICK,
                            "ImageMagick": PROMISED_MAGICK}.get(name)
                if name == "importImage":
                    table.add(what + ", importImage", seconds[name], "copyImageFile",
                              seconds["ours"], PROMISED_IMPORT_IMAGE)
                else:
                    table.add(what, seconds["ours"], name, seconds[name], promised)
                if not is_progressive(output):
                    sys.exit(f"{output} is not progressive")
                notes.append(f"{what}: {name} {likeness(bench, ours, output):.1f} dB like ours, "
                             f"{peak_mib(command):.0f} MiB")
            mib = peak_mib(known["ours"][0])
            promise = f", promised {PROMISED_MIB[megapixels]}"
            if mib > PROMISED_MIB[megapixels]:
                promise += "  missed"
                kept = False
            notes.append(f"{what}: ours {mib:.0f} MiB{promise}")
        print(table)
        print("\n".join(notes))
        if not options.photo:
            many, note, many_kept = compare_many(bench, os.path.join(folder, "12.jpg"), folder,
                                                 max(1, options.rounds // 3))
            print(many)
            print(note)
            kept = kept and many_kept
        kept = kept and table.kept()
    return 0 if kept else 1


if __name__ == "__main__":
    started = time.perf_counter()
    result = main()
    print(f"\n{time.perf_counter() - started:.0f} s")
    sys.exit(result)
