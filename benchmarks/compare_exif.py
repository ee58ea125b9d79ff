#!/usr/bin/env python3
# SPDX-FileCopyrightText: 2026 The OrvaUtils authors
# SPDX-License-Identifier: MIT
"""EXIF of 1,000 small camera files beside libexif and exiv2: prints the table of ratios.

    compare_exif.py [--build BUILD_DIR] [--rounds N]

The program bench_exif makes the files, checks that all contenders give the same result, and runs
them in turn, in random order, N times (15) each. The
figures are processor time, user and system, which other programs on the machine disturb least.
"""

import argparse
import os
import sys

from peers import Table, benchmark_medians

JOBS = [
    # what is measured, our figure, the peer's figure, the ratio that we promise
    ("imageExifRotation", "rotation<OrvaUtils>", "libexif", "rotation<LibExif>", 0.8),
    ("imageExifRotation", "rotation<OrvaUtils>", "exiv2", "rotation<Exiv2Library>", 0.4),
    ("all tags", "allTags<OrvaUtils>", "libexif", "allTags<LibExif>", 0.9),
    ("all tags", "allTags<OrvaUtils>", "exiv2", "allTags<Exiv2Library>", None),
    ("clearRotation", "clearRotation<OrvaUtils>", "libexif and a splice",
     "clearRotation<LibExif>", 0.3),
    ("clearRotation", "clearRotation<OrvaUtils>", "exiv2", "clearRotation<Exiv2Library>", 0.15),
]


def main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("--build", default="build/release", help="build folder (build/release)")
    parser.add_argument("--rounds", type=int, default=15)
    arguments = parser.parse_args()
    seconds = benchmark_medians(os.path.join(arguments.build, "benchmarks", "bench_exif"),
                                arguments.rounds, 0.01)
    table = Table("EXIF of 1,000 camera files in memory, one pass over all")
    for what, ours, peer, theirs, promised in JOBS:
        table.add(what, seconds[ours], peer, seconds[theirs], promised)
    print(table)
    return 0 if table.kept() else 1


if __name__ == "__main__":
    sys.exit(main())
