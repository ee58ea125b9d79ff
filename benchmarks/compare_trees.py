#!/usr/bin/env python3
# SPDX-FileCopyrightText: 2026 The OrvaUtils authors
# SPDX-License-Identifier: MIT
"""Compares the folder tree operations of FileUtils with cp, rsync, du, find and rm.

    compare_trees.py [--build BUILD_DIR] [--rounds N] [--root FOLDER] [--disk FOLDER]

Process is measured against process: both pay for their start. The tree has 20,000 files of 1 to
4 KiB in 500 folders (20 folders with 24 sub-folders each, 40 files in every one). All operations
are measured in memory, to exclude the disk; copies are also measured on a disk, as in real use, in
the folder given by --disk (by default the folder for temporary files, which should be on a disk).
Before anything is measured, each contender is checked to give the same result as its peer. Exits
with 1 if a promised ratio is missed.
"""

import argparse
import os
import shutil
import subprocess
import sys
import tempfile

import peers


def make_tree(root):
    """20,000 files in 500 folders; always the same ones."""
    state = 12345
    for top in range(20):
        for sub in [""] + [f"sub{index:02}" for index in range(24)]:
            folder = os.path.join(root, f"folder{top:02}", sub)
            os.makedirs(folder, exist_ok=True)
            for index in range(40):
                state = (state * 1103515245 + 12345) % 2**31
                with open(os.path.join(folder, f"photo-{index:04}.dat"), "wb") as file:
                    file.write(os.urandom(1024 + state % 3073))


def output(command):
    return subprocess.run(command, check=True, stdout=subprocess.PIPE).stdout.decode()


def bytes_of_files(tree):
    return sum(os.path.getsize(os.path.join(folder, name))
               for folder, _, names in os.walk(tree) for name in names)


def latest_file(tree):
    """The latest modification time of a file, in whole milliseconds."""
    return max(os.stat(os.path.join(folder, name)).st_mtime_ns // 1000000
               for folder, _, names in os.walk(tree) for name in names)


def check(condition, what):
    if not condition:
        sys.exit(f"compare_trees: {what}")


def main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("--build", default="build/release", help="build folder (build/release)")
    parser.add_argument("--rounds", type=int, default=11)
    parser.add_argument("--root", default="/dev/shm" if os.path.isdir("/dev/shm") else None,
                        help="where the trees are made, in memory")
    parser.add_argument("--disk", default=tempfile.gettempdir(),
                        help="where copies are measured once more, on a disk")
    arguments = parser.parse_args()
    program = [os.path.join(arguments.build, "benchmarks", "bench_trees"), "--once"]
    kept = True
    # A disk is slow; a few rounds of it last longer than all others.
    few = min(arguments.rounds, 5)
    for function, folder, rounds in ((compare, arguments.root, arguments.rounds),
                                     (compare_copies, arguments.disk, few)):
        work = tempfile.mkdtemp(prefix="compare_trees-", dir=folder)
        try:
            table = function(program, work, rounds)
        finally:
            shutil.rmtree(work)
        print(table)
        kept = kept and table.kept()
    return 0 if kept else 1


def make_large_files(root):
    """200 files of 10 MiB."""
    os.makedirs(root)
    for index in range(200):
        with open(os.path.join(root, f"film-{index:03}.dat"), "wb") as file:
            file.write(os.urandom(10 << 20))


def copying(command, source, work):
    """A contender that copies a tree; data that it has not written yet is written afterwards."""
    def once():
        copy = os.path.join(work, "copy")
        seconds = peers.run(command + [source, copy])
        shutil.rmtree(copy)
        subprocess.run(["sync", "-f", work], check=True)
        return seconds
    return once


def compare_copies(program, work, rounds):
    """Compares copies with cp, with and without syncing, which copyDir always does."""
    table = peers.Table(f"Copies of folder trees on a disk ({work})")
    synced = ["sh", "-c", 'cp -a "$0" "$1" && sync -f "$1"']

    def contend(what, operation, tree, *rivals):
        contenders = {"ours": copying(program + [operation], tree, work)}
        for name, command, _ in rivals:
            contenders[name] = copying(command, tree, work)
        medians = peers.alternate(contenders, rounds)
        for name, _, promised in rivals:
            table.add(what, medians["ours"], name, medians[name], promised)

    small = os.path.join(work, "small")
    make_tree(small)
    plain = ("cp -a", ["cp", "-a"])
    for operation, promised in (("copyDir", 1.6), ("replaceDir", None)):
        contend(f"{operation}, 20,000 small files", operation, small, (*plain, promised),
                ("cp -a, then sync -f", synced, 1.2))
    shutil.rmtree(small)
    large = os.path.join(work, "large")
    make_large_files(large)
    contend("copyDir, 200 files of 10 MiB", "copyDir", large, (*plain, None),
            ("cp -a, then sync -f", synced, 1.05))
    return table


def compare(program, work, rounds):
    tree = os.path.join(work, "tree")
    make_tree(tree)
    files = output(["find", tree, "-type", "f", "-printf", "%P\\n"])
    folders = output(["find", tree, "-mindepth", "1", "-type", "d"])
    check(files.count("\n") == 20000 and folders.count("\n") == 500, "the tree is not as it should")

    table = peers.Table("Folder trees: 20,000 files of 1-4 KiB in 500 folders, in memory")

    def contend(what, ours, *rivals):
        """A row for each rival: (name, function, promised ratio)."""
        contenders = {name: function for name, function, _ in rivals}
        medians = peers.alternate({"ours": ours, **contenders}, rounds)
        for name, _, promised in rivals:
            table.add(what, medians["ours"], name, medians[name], promised)

    # copyDir and replaceDir

    for command in ("copyDir", "replaceDir"):
        copy = os.path.join(work, "checked")
        subprocess.run(program + [command, tree, copy], check=True)
        check(subprocess.run(["diff", "-r", tree, copy], check=False).returncode == 0,
              command + " made another tree")
        shutil.rmtree(copy)
    contend("copyDir", copying(program + ["copyDir"], tree, work),
            ("cp -a", copying(["cp", "-a"], tree, work), 1.2),
            ("rsync -a --whole-file",
             copying(["rsync", "-a", "--whole-file"], tree + "/", work), None))
    contend("copyDir, watched", copying(program + ["copyDirWatched"], tree, work),
            ("copyDir", copying(program + ["copyDir"], tree, work), 1.05))
    contend("replaceDir", copying(program + ["replaceDir"], tree, work),
            ("cp -a", copying(["cp", "-a"], tree, work), 1.2))
    large = os.path.join(work, "large")
    make_large_files(large)
    contend("copyDir, 200 files of 10 MiB", copying(program + ["copyDir"], large, work),
            ("cp -a", copying(["cp", "-a"], large, work), 1.05))
    shutil.rmtree(large)

    # folderSize; du includes the folders themselves

    size = bytes_of_files(tree)
    of_folders = sum(os.path.getsize(folder) for folder, _, _ in os.walk(tree))
    check(int(output(program + ["folderSize", tree])) == size, "folderSize gives another size")
    check(int(output(["du", "-sb", tree]).split()[0]) == size + of_folders,
          "du gives another size")
    check(output(program + ["folderSizeWithDate", tree]).split()
          == [str(size), "20000", str(latest_file(tree))], "folderSize gives another date or count")
    contend("folderSize", lambda: peers.run(program + ["folderSize", tree]),
            ("du -sb", lambda: peers.run(["du", "-sb", tree]), 1.9))
    contend("folderSize with the latest date",
            lambda: peers.run(program + ["folderSizeWithDate", tree]),
            ("du -sb", lambda: peers.run(["du", "-sb", tree]), 3))

    # listFilesInFileSystem

    check(sorted(output(program + ["listFiles", tree]).split("\n")) == sorted(files.split("\n")),
          "listFilesInFileSystem gives other files")
    contend("listFilesInFileSystem", lambda: peers.run(program + ["listFiles", tree]),
            ("find -type f", lambda: peers.run(["find", tree, "-type", "f"]), 1.6))

    # removeDirectory and removeContentDirectory

    def removing(command):
        def once():
            doomed = os.path.join(work, "doomed")
            subprocess.run(["cp", "-a", tree, doomed], check=True)
            seconds = peers.run(command + [doomed])
            left = os.listdir(doomed) if os.path.isdir(doomed) else []
            check(not left, f"{' '.join(command)} leaves {left}")
            shutil.rmtree(doomed, ignore_errors=True)
            return seconds
        return once

    contend("old::removeDirectory", removing(program + ["removeDirectory"]),
            ("rm -rf", removing(["rm", "-rf"]), 1.3))
    contend("removeContentDirectory", removing(program + ["removeContent"]),
            ("rm -rf", removing(["rm", "-rf"]), 1.3))

    table.add("(starting a program with the library)",
              peers.alternate({"": lambda: peers.run(program + ["nothing"])}, rounds)[""],
              "true", peers.alternate({"": lambda: peers.run(["true"])}, rounds)[""])
    return table


if __name__ == "__main__":
    sys.exit(main())
