#!/usr/bin/env python3
# SPDX-FileCopyrightText: 2026 The OrvaUtils authors
# SPDX-License-Identifier: MIT
"""Compares EXIF of 1,000 small camera files with libexif, exiv2 and exiftool: prints the ratios.

    compare_exif.py [--build BUILD_DIR] [--rounds N]

The program bench_exif makes the files, checks that all contenders give the same result, and runs
them in turn, in random order, N times (15) each. The figures are processor time, user and system,
which other programs on the machine affect least. exiftool is one process for all files, and runs
once.
"""

import argparse
import os
import resource
import shutil
import subprocess
import sys
import tempfile

from peers import Table, benchmark_medians

JOBS = [
    # what is measured, our figure, the peer's figure, the promised ratio
    ("imageExifRotation", "rotation<OrvaUtils>", "libexif", "rotation<LibExif>", 0.8),
    ("imageExifRotation", "rotation<OrvaUtils>", "exiv2", "rotation<Exiv2Library>", 0.4),
    ("all tags", "allTags<OrvaUtils>", "libexif", "allTags<LibExif>", 0.9),
    ("all tags", "allTags<OrvaUtils>", "exiv2", "allTags<Exiv2Library>", None),
    ("clearRotation", "clearRotation<OrvaUtils>", "libexif and a splice",
     "clearRotation<LibExif>", 0.3),
    ("clearRotation", "clearRotation<OrvaUtils>", "exiv2", "clearRotation<Exiv2Library>", 0.15),
    ("imageExifOrientation", "orientation<OrvaUtils>", "libexif", "orientation<LibExif>", 0.3),
    ("imageExifOrientation", "orientation<OrvaUtils>", "exiv2", "orientation<Exiv2Library>", None),
    ("setOrientation", "setOrientation<OrvaUtils>", "libexif and a splice",
     "setOrientation<LibExif>", 0.1),
    ("setOrientation", "setOrientation<OrvaUtils>", "exiv2", "setOrientation<Exiv2Library>", 0.05),
    ("setOrientation", "setOrientation<OrvaUtils>", "exiftool", "-Orientation#=3", 0.01),
    ("ExifEditor, an Artist", "setArtist<OrvaUtils>", "libexif and a splice",
     "setArtist<LibExif>", 0.7),
    ("ExifEditor, an Artist", "setArtist<OrvaUtils>", "libexif, complete beside",
     "setArtist<LibExifBeside>", 0.7),
    ("ExifEditor, an Artist", "setArtist<OrvaUtils>", "exiv2", "setArtist<Exiv2Library>", None),
    ("ExifEditor, an Artist", "setArtist<OrvaUtils>", "exiftool", "-Artist=Somebody with a camera",
     None),
]


def exiftool_seconds(program, change):
    """The processor time of one exiftool process that changes all files."""
    memory = "/dev/shm" if os.path.isdir("/dev/shm") else None
    with tempfile.TemporaryDirectory(dir=memory) as folder:
        subprocess.run([program, "--files", folder], check=True)
        before = resource.getrusage(resource.RUSAGE_CHILDREN)
        subprocess.run(["exiftool", "-q", "-m", "-overwrite_original", change, folder], check=True)
        after = resource.getrusage(resource.RUSAGE_CHILDREN)
    return after.ru_utime + after.ru_stime - before.ru_utime - before.ru_stime


def main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("--build", default="build/release", help="build folder (build/release)")
    parser.add_argument("--rounds", type=int, default=15)
    arguments = parser.parse_args()
    program = os.path.join(arguments.build, "benchmarks", "bench_exif")
    seconds = benchmark_medians(program, arguments.rounds, 0.01)
    table = Table("EXIF of 1,000 camera files in memory, one pass over all")
    for what, ours, peer, theirs, promised in JOBS:
        if peer == "exiftool":
            if not shutil.which("exiftool"):
                continue
            seconds[theirs] = exiftool_seconds(program, theirs)
        table.add(what, seconds[ours], peer, seconds[theirs], promised)
    print(table)
    return 0 if table.kept() else 1


if __name__ == "__main__":
    sys.exit(main())
