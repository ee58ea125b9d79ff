#!/usr/bin/env python3
# SPDX-FileCopyrightText: 2026 The OrvaUtils authors
# SPDX-License-Identifier: MIT
"""Compares the example shop-publisher with thumbsup (npm), and runs it on very many photographs.

    benchmarks/compare_publisher.py [--build build/release] [--rounds 3] [--thumbsup PROGRAM]
                                    [--photographs 20000]

Both make a site of the same 150 photographs of 12 megapixels: each at most 1600 and at most 640
pixels wide, with pages that show them. First to a folder that does not exist, then again without
changes. All files are in memory. thumbsup is installed to the folder build/thumbsup if there is npm;
otherwise it is left out with a message.

Then a project of 20,000 small photographs, all different: the seconds of a run without changes, and
the peak memory of each run. Exits with 1 if a promise is missed.
"""

import argparse
import os
import shutil
import subprocess
import sys
import tempfile
import time

import peers

PHOTOGRAPHS = 150
PROMISED_FIRST = 0.35
PROMISED_SECOND = 0.2
PROMISED_SECONDS = 3
PROMISED_MIB = 200
# For thumbsup, whose sizes are heights: those of a 4:3 photograph in 1600 and in 640 pixels. It
# makes a third one, of 120 pixels, as well.
SAME_WORK = ["--large-size", "1200", "--small-size", "480", "--photo-quality", "75"]


def thumbsup_program(given, build):
    """The path of thumbsup, which is installed if necessary; None if that is impossible."""
    if given:
        return given
    folder = os.path.join(os.path.dirname(os.path.abspath(build)), "thumbsup")
    program = os.path.join(folder, "node_modules", ".bin", "thumbsup")
    if not os.path.exists(program) and shutil.which("npm"):
        os.makedirs(folder, exist_ok=True)
        subprocess.run(["npm", "install", "--prefix", folder, "--no-audit", "--no-fund",
                        "thumbsup@2.18.0"], check=False, stdout=subprocess.DEVNULL,
                       stderr=subprocess.DEVNULL)
    return program if os.path.exists(program) and shutil.which("gm") else None


def copies(jpeg, folder, count):
    """Files of one picture that differ in a comment, in folders of a thousand."""
    with open(jpeg, "rb") as file:
        content = file.read()
    for number in range(count):
        path = os.path.join(folder, f"{number // 1000:03}", f"photograph-{number:05}.jpg")
        os.makedirs(os.path.dirname(path), exist_ok=True)
        comment = f"{number:06}".encode()
        with open(path, "wb") as file:
            file.write(content[:2] + b"\xff\xfe\x00\x08" + comment + content[2:])


def measured(command):
    """Seconds and MiB of a run."""
    start = time.perf_counter()
    process = subprocess.Popen(command, stdout=subprocess.DEVNULL)
    _, status, usage = os.wait4(process.pid, 0)
    seconds = time.perf_counter() - start
    process.returncode = os.waitstatus_to_exitcode(status)
    if process.returncode != 0:
        raise subprocess.CalledProcessError(process.returncode, command)
    return seconds, usage.ru_maxrss / (1024 * 1024 if sys.platform == "darwin" else 1024)


def compare(ours, theirs, photographs, work, rounds):
    """The table of first and second runs."""
    def site(name):
        return os.path.join(work, name)

    commands = {"ours": [ours, "--quiet", photographs, site("ours")]}
    if theirs:
        commands["thumbsup"] = [theirs, "--input", photographs, "--output", site("thumbsup"),
                                *SAME_WORK, "--log", "info"]

    def first(name):
        def once():
            shutil.rmtree(site(name), ignore_errors=True)
            return peers.run(commands[name], stderr=subprocess.DEVNULL)
        return once

    def second(name):
        return lambda: peers.run(commands[name], stderr=subprocess.DEVNULL)

    table = peers.Table(f"A site of {PHOTOGRAPHS} photographs of 12 megapixels, in memory")
    for what, kind, promised in (("first run", first, PROMISED_FIRST),
                                 ("second run, nothing new", second, PROMISED_SECOND)):
        medians = peers.alternate({name: kind(name) for name in commands}, rounds)
        if theirs:
            table.add(what, medians["ours"], "thumbsup", medians["thumbsup"], promised)
        else:
            print(f"{what}: {medians['ours']:.2f} s; thumbsup is not there and left out")
    for name in commands:
        pictures = [os.path.join(folder, file) for folder, _, files in os.walk(site(name))
                    for file in files if file.startswith("photograph-") and file.endswith(".jpg")]
        if len(pictures) < 2 * PHOTOGRAPHS:
            sys.exit(f"{name} has made {len(pictures)} pictures of {PHOTOGRAPHS} photographs")
    return table


def very_many(ours, bench, count, work):
    """Prints what a large project costs, and whether the promises are kept."""
    small = os.path.join(work, "small.jpg")
    subprocess.run([bench, "--make", "240", "180", small], check=True)
    photographs = os.path.join(work, "many")
    copies(small, photographs, count)
    site = os.path.join(work, "many-site")
    kept = True
    for what, promised in (("first run", None), ("second run, nothing new", PROMISED_SECONDS)):
        seconds, mib = measured([ours, "--quiet", photographs, site])
        missed = mib > PROMISED_MIB or (promised is not None and seconds > promised)
        limit = "" if promised is None else f" (promised {promised} s)"
        print(f"{count:,} photographs, {what}: {seconds:.2f} s{limit}, {mib:.0f} MiB"
              f" (promised {PROMISED_MIB}){' !' if missed else ''}")
        kept = kept and not missed
    return kept


def main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("--build", default="build/release", help="build folder (build/release)")
    parser.add_argument("--rounds", type=int, default=3)
    parser.add_argument("--thumbsup", help="the program")
    parser.add_argument("--photographs", type=int, default=20000,
                        help="so many in the large project; 0 leaves it out")
    parser.add_argument("--root", default="/dev/shm" if os.path.isdir("/dev/shm") else None,
                        help="where the photographs and sites are made")
    arguments = parser.parse_args()
    ours = os.path.join(arguments.build, "examples", "shop-publisher", "shop-publisher")
    bench = os.path.join(arguments.build, "benchmarks", "bench_import")
    work = tempfile.mkdtemp(prefix="compare_publisher-", dir=arguments.root)
    try:
        photo = os.path.join(work, "photo.jpg")
        subprocess.run([bench, "--make", "4000", "3000", photo], check=True)
        photographs = os.path.join(work, "photographs")
        copies(photo, photographs, PHOTOGRAPHS)
        table = compare(ours, thumbsup_program(arguments.thumbsup, arguments.build), photographs,
                        work, arguments.rounds)
        print(table)
        kept = not table.rows or table.kept()
        if arguments.photographs:
            kept = very_many(ours, bench, arguments.photographs, work) and kept
    finally:
        shutil.rmtree(work)
    return 0 if kept else 1


if __name__ == "__main__":
    sys.exit(main())
