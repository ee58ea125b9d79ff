#!/usr/bin/env python3
# SPDX-FileCopyrightText: 2026 The OrvaUtils authors
# SPDX-License-Identifier: MIT
"""Compares DirectoryWatcher with QFileSystemWatcher alone and with the obvious way of watching a tree,
and digests with md5sum and sha1sum.

    compare_watch.py [--build BUILD_DIR] [--rounds N] [--root FOLDER]

The tree has 5,000 files in 200 folders. Registering and latency are clock time, measured inside
the program; the cost of 2,000 new files is CPU time, and "step by step" lists the whole tree and
rebuilds its sets at each notification. Digests are of 1 GiB, process against process. Exits with 1
if a promised ratio is missed.
"""

import argparse
import os
import shutil
import subprocess
import sys
import tempfile

import peers


def make_tree(root):
    for top in range(10):
        for sub in range(20):
            folder = os.path.join(root, f"folder{top:02}", f"sub{sub:02}") if sub else \
                os.path.join(root, f"folder{top:02}")
            os.makedirs(folder, exist_ok=True)
            for index in range(25):
                with open(os.path.join(folder, f"photo-{index:04}.dat"), "wb") as file:
                    file.write(b"x")


def output(command):
    return subprocess.run(command, check=True, stdout=subprocess.PIPE).stdout.decode().split()[0]


def appear(program, kind, tree, count):
    """CPU seconds that a watcher of this kind spends on count new files in the root."""
    watcher = subprocess.Popen(program + ["appear", kind, tree, str(count)],
                               stdout=subprocess.PIPE, text=True)
    if watcher.stdout.readline().strip() != "ready":
        sys.exit("compare_watch: the watcher did not start")
    names = [os.path.join(tree, f"new-{index:05}") for index in range(count)]
    for name in names:
        with open(name, "wb"):
            pass
    seconds = watcher.stdout.read().strip()
    if watcher.wait() != 0:
        sys.exit(f"compare_watch: {kind} did not report each new file once")
    for name in names:
        os.unlink(name)
    return float(seconds)


def peak_memory(command):
    """The peak resident memory of a command in KiB."""
    _, status, usage = os.wait4(subprocess.Popen(command, stdout=subprocess.DEVNULL).pid, 0)
    if status != 0:
        sys.exit(f"compare_watch: {command} failed")
    return usage.ru_maxrss


def compare(program, work, rounds):
    table = peers.Table("Watching, and digests")
    tree = os.path.join(work, "tree")
    make_tree(tree)

    seconds = peers.alternate({
        "ours": lambda: float(output(program + ["register", "ours", tree])),
        "qt": lambda: float(output(program + ["register", "qt", tree])),
    }, rounds)
    table.add("register 5,000 files in 200 folders", seconds["ours"], "QFileSystemWatcher",
              seconds["qt"], 1.1)

    seconds = peers.alternate({
        "ours": lambda: float(output(program + ["latency", "ours", tree, "11"])),
        "qt": lambda: float(output(program + ["latency", "qt", tree, "11"])),
    }, max(3, rounds // 2))
    table.add("a new file is reported", seconds["ours"], "QFileSystemWatcher", seconds["qt"], 3)

    seconds = peers.alternate({
        "ours": lambda: appear(program, "ours", tree, 2000),
        "steps": lambda: appear(program, "steps", tree, 2000),
    }, max(3, rounds // 2))
    table.add("2,000 new files, CPU", seconds["ours"], "step by step", seconds["steps"], 0.15)

    large = os.path.join(work, "large")
    with open(large, "wb") as file:
        for _ in range(1024):
            file.write(os.urandom(1 << 20))
    for digest, tool, promised in [("md5", "md5sum", 1.1), ("sha1", "sha1sum", 1.05)]:
        if output(program + [digest, large]) != output([tool, large]):
            sys.exit(f"compare_watch: {digest} differs from {tool}")
        seconds = peers.alternate({
            "ours": lambda: peers.run(program + [digest, large]),
            "tool": lambda: peers.run([tool, large]),
        }, max(3, rounds // 2))
        table.add(f"{digest} of 1 GiB", seconds["ours"], tool, seconds["tool"], promised)

    small = os.path.join(work, "small")
    with open(small, "wb") as file:
        file.write(b"x")
    note = (f"memory at most: {peak_memory(program + ['md5', large]) // 1024} MiB for 1 GiB, "
            f"{peak_memory(program + ['md5', small]) // 1024} MiB for 1 byte")
    return table, note


def main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("--build", default="build/release",
                        help="build folder with benchmarks/bench_watch in it")
    parser.add_argument("--rounds", type=int, default=7)
    parser.add_argument("--root", default="/dev/shm" if os.path.isdir("/dev/shm") else None,
                        help="where the tree and the large file are made")
    arguments = parser.parse_args()
    program = [os.path.join(arguments.build, "benchmarks", "bench_watch"), "--once"]
    work = tempfile.mkdtemp(prefix="compare_watch-", dir=arguments.root)
    try:
        table, note = compare(program, work, arguments.rounds)
    finally:
        shutil.rmtree(work)
    print(table)
    print(note)
    return 0 if table.kept() else 1


if __name__ == "__main__":
    sys.exit(main())
