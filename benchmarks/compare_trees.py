#!/usr/bin/env python3
# SPDX-FileCopyrightText: 2026 The OrvaUtils authors
# SPDX-License-Identifier: MIT
"""The folder tree operations of FileUtils beside cp, rsync, du, find and rm.

    compare_trees.py [--build BUILD_DIR] [--rounds N] [--root FOLDER]

Process is measured against process: both pay for their start. The tree has 20,000 files of 1 to
4 KiB in 500 folders (20 folders with 24 sub-folders each, 40 files in every one) and lies in
memory, so that the disk is not what is measured. Before the clock runs, each contender is checked
to give the same result as its peer. Ends with 1 when a promised ratio is missed.
"""

import argparse
import os
import shutil
import subprocess
import sys
import tempfile

import peers


def make_tree(root):
    """20,000 files in 500 folders; the same ones every time."""
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
                        help="where the trees are made")
    arguments = parser.parse_args()
    program = [os.path.join(arguments.build, "benchmarks", "bench_trees"), "--once"]
    work = tempfile.mkdtemp(prefix="compare_trees-", dir=arguments.root)
    try:
        table = compare(program, work, arguments.rounds)
    finally:
        shutil.rmtree(work)
    print(table)
    return 0 if table.kept() else 1


def compare(program, work, rounds):
    tree = os.path.join(work, "tree")
    make_tree(tree)
    files = output(["find", tree, "-type", "f", "-printf", "%P\\n"])
    folders = output(["find", tree, "-mindepth", "1", "-type", "d"])
    check(files.count("\n") == 20000 and folders.count("\n") == 500, "the tree is not as it should")

    table = peers.Table("Folder trees: 20,000 files of 1-4 KiB in 500 folders, in memory")

    def contend(what, ours, *rivals):
        """A row for each rival, who is (name, function, promised ratio)."""
        contenders = {name: function for name, function, _ in rivals}
        medians = peers.alternate({"ours": ours, **contenders}, rounds)
        for name, _, promised in rivals:
            table.add(what, medians["ours"], name, medians[name], promised)

    # copyDir

    def copying(command, source=tree):
        def once():
            copy = os.path.join(work, "copy")
            seconds = peers.run(command + [source, copy])
            shutil.rmtree(copy)
            return seconds
        return once

    copy = os.path.join(work, "checked")
    subprocess.run(program + ["copyDir", tree, copy], check=True)
    check(subprocess.run(["diff", "-r", tree, copy], check=False).returncode == 0,
          "copyDir made another tree")
    shutil.rmtree(copy)
    contend("copyDir", copying(program + ["copyDir"]),
            ("cp -a", copying(["cp", "-a"]), 1.7),
            ("rsync -a --whole-file", copying(["rsync", "-a", "--whole-file"], tree + "/"), None))

    # folderSize; du adds the folders themselves

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
