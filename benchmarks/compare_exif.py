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
import collections
import json
import os
import statistics
import subprocess
import sys

from peers import Table

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


def medians(program, rounds):
    """Processor seconds for one pass over all files, the median of all rounds, by contender."""
    report = subprocess.run(
        [program, "--benchmark_format=json", "--benchmark_enable_random_interleaving=true",
         f"--benchmark_repetitions={rounds}", "--benchmark_min_time=0.01"],
        check=True, stdout=subprocess.PIPE, text=True).stdout
    times = collections.defaultdict(list)
    for run in json.loads(report)["benchmarks"]:
        if run.get("error_occurred"):
            sys.exit(f"{run['name']}: {run['error_message']}")
        if run["run_type"] == "iteration":
            # Where files are restored between two passes, the program has taken the time itself.
            is_manual = run["name"].endswith("/manual_time")
            time = run["real_time"] if is_manual else run["cpu_time"]
            times[run["name"].removesuffix("/manual_time")].append(time / 1e3)
    return {name: statistics.median(values) for name, values in times.items()}


def main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("--build", default="build/release", help="build folder (build/release)")
    parser.add_argument("--rounds", type=int, default=15)
    arguments = parser.parse_args()
    seconds = medians(os.path.join(arguments.build, "benchmarks", "bench_exif"), arguments.rounds)
    table = Table("EXIF of 1,000 camera files in memory, one pass over all")
    for what, ours, peer, theirs, promised in JOBS:
        table.add(what, seconds[ours], peer, seconds[theirs], promised)
    print(table)
    return 0 if table.kept() else 1


if __name__ == "__main__":
    sys.exit(main())
