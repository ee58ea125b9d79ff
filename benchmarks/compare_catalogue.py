#!/usr/bin/env python3
# SPDX-FileCopyrightText: 2026 The OrvaUtils authors
# SPDX-License-Identifier: MIT
"""The web font catalogue, and the start of a program that links the library.

    compare_catalogue.py [--build DIR] [--rounds N]

DIR is the build folder that contains benchmarks/bench_catalogue. This program checks that all
contenders agree and runs them in turn, in random order, N times each; its figures are medians of CPU
time. Programs are started in turn 20 N times each. Exits with 1 if a promised ratio is missed.
"""

import argparse
import os
import statistics
import subprocess
import sys

from peers import Table, alternate, benchmark_medians, run

JOBS = [
    # what is measured, our figure, the peer's figure, the promised ratio
    ("catalogue: load", "load", "fromJson", 1.5),
    ("catalogue: a second loader", "second loader", "fromJson", 0.05),
    ("catalogue: 10,000 look-ups", "10,000 look-ups", "linear search", 0.05),
    ("catalogue: 10,000 look-ups", "10,000 look-ups", "fromJson", 1.0),
]


def first_price(program, rounds):
    """The median of the seconds that the first price takes, each in a separate process."""
    return statistics.median(
        int(subprocess.run([program, "price"], check=True, stdout=subprocess.PIPE).stdout) / 1e9
        for _ in range(rounds))


def main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("--build", default="build/release", help="build folder (build/release)")
    parser.add_argument("--rounds", type=int, default=11)
    arguments = parser.parse_args()
    folder = os.path.join(arguments.build, "benchmarks")

    table = Table("Web font catalogue, currencies and start-up")
    seconds = benchmark_medians(os.path.join(folder, "bench_catalogue"),
                                arguments.rounds, 0.05)
    for what, ours, peer, promised in JOBS:
        table.add(what, seconds[ours], peer, seconds[peer], promised)

    library = os.path.join(folder, "start_library")
    qt = os.path.join(folder, "start_qt")
    starts = alternate({"library": lambda: run([library]), "qt": lambda: run([qt])},
                       rounds=20 * arguments.rounds)
    table.add("start of a program that links the library", starts["library"],
              "the same Qt modules", starts["qt"], 1.15)
    table.add("currencies: the first price's wait", first_price(library, arguments.rounds),
              "start with Qt alone", starts["qt"])
    print(table)
    return 0 if table.kept() else 1


if __name__ == "__main__":
    sys.exit(main())
