#!/usr/bin/env python3
# SPDX-FileCopyrightText: 2026 The OrvaUtils authors
# SPDX-License-Identifier: MIT
"""Compares text operations and code emitters with ICU, Qt's own classes and KFormat.

    compare_text.py [--build DIR] [--rounds N]

DIR is the build folder that contains benchmarks/bench_text. This program checks that all contenders
agree and runs them in turn, in random order, N times each; the figures are medians of CPU time,
because everything runs in one thread. Exits with 1 if a promised ratio is missed.
"""

import argparse
import os
import sys

from peers import Table, benchmark_medians

ACCENTS = "removeAccents, 1,000 titles"
DURATION = "formatDurationFromMSec, 1,000 durations"
WORDS = "TimeUtils::msecToString, 1,000 durations"
JOBS = [
    # what is measured, our figure, the peer's figure, the promised ratio
    (ACCENTS, "removeAccents", "ICU Latin-ASCII", 0.05),
    (ACCENTS, "removeAccents", "ICU NFD, marks, NFC", 0.05),
    ("normalizeTextForSearch, 1,000 titles", "normalizeTextForSearch", "QRegularExpression", 0.25),
    ("compareVersion, 1,000 pairs", "compareVersion", "QVersionNumber", 0.4),
    (DURATION, "formatDurationFromMSec", "KFormat", 0.3),
    (DURATION, "formatDurationFromMSec", "KFormat, spelled out", 0.3),
    (WORDS, "msecToString", "KFormat", 0.3),
    (WORDS, "msecToString", "KFormat, spelled out", 0.3),
    ("PHP map, 100,000 entries", "PHP", "toJson", 1.1),
    ("PHP map, 100,000 entries", "PHP", "fromVariant, toJson", 0.35),
    ("JavaScript object, 100,000 entries", "JavaScript", "toJson", 1.1),
    ("JavaScript object, 100,000 entries", "JavaScript", "fromVariant, toJson", 0.35),
]

# Operations on a text of MILLIONS characters, all of which are replaced, and on one of half the
# length: twice the work takes twice the time.
GROWTH = [
    ("escapeQuotes", 16),
    ("htmlBRreplace", 16),
    ("TextStreamUTF8", 16),
    ("normalizeFilename", 2),
]
GROWTH_RATIO = 2.6

# The time that two hostile addresses of each kind may take together.
HOSTILE = ["hostile e-mail addresses", "hostile web addresses"]
HOSTILE_SECONDS = 0.1


def main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("--build", default="build/release", help="build folder (build/release)")
    parser.add_argument("--rounds", type=int, default=15)
    arguments = parser.parse_args()

    seconds = benchmark_medians(os.path.join(arguments.build, "benchmarks", "bench_text"),
                                arguments.rounds, 0.02)
    table = Table("Text and generated code")
    for what, ours, peer, promised in JOBS:
        table.add(what, seconds[ours], peer, seconds[peer], promised)
    for name, millions in GROWTH:
        table.add(f"{name}, {millions} million characters", seconds[f"{name}/{millions}"],
                  "half as many", seconds[f"{name}/{millions // 2}"], GROWTH_RATIO)
    for name in HOSTILE:
        table.add(name, seconds[name], "the limit", HOSTILE_SECONDS, 1.0)
    print(table)
    return 0 if table.kept() else 1


if __name__ == "__main__":
    sys.exit(main())
