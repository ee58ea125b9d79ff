#!/usr/bin/env python3
# SPDX-FileCopyrightText: 2026 The OrvaUtils authors
# SPDX-License-Identifier: MIT
"""Judges what gcovr has counted.

Says for every source file which share of its lines and branches ran, and fails when the whole is
below what is asked for, or when the list of the lines that no test reaches is not true: a line that
is not in it, or one in it that is reached by now or is no longer there.

The list, for people and for this program:

    src/Name.cpp
        if (cannotHappenHere())
    -       return false;
      Why no test reaches the lines that are marked.

The marked lines and the lines around them stand in the source one behind the other, and in one
place only; how they are indented does not count. What is indented by two blanks is the reason. A
line that is marked with "?" is reached on some machines and not on others.
"""

import argparse
import json
import pathlib
import sys


class Entry:
    """Some lines of a source file, those among them that no test reaches, and the reason."""

    CONTEXT, NEVER, SOMETIMES = " -?"

    def __init__(self, source):
        self.source = source
        self.lines = []  # the text of each, and its mark
        self.reason = ""

    def places(self, text):
        """The line numbers, from 0, at which the lines stand in the text of the source file."""
        wanted = [line for line, _ in self.lines]
        return [start for start in range(len(text) - len(wanted) + 1)
                if text[start:start + len(wanted)] == wanted]


def marked_lines(entry):
    return [line for line, mark in entry.lines if mark != Entry.CONTEXT]


def read_list(path):
    entries = []
    source = None
    for number, line in enumerate(path.read_text(encoding="utf-8").splitlines(), 1):
        if line.startswith("#") or not line.strip():
            continue
        if line[0] in (Entry.CONTEXT, Entry.NEVER, Entry.SOMETIMES) and line[1:4] == "   ":
            if not entries or entries[-1].source != source or entries[-1].reason:
                entries.append(Entry(source))
            entries[-1].lines.append((line[1:].strip(), line[0]))
        elif line.startswith("  "):
            if not entries or entries[-1].source != source:
                sys.exit(f"{path}:{number}: a reason without lines")
            entries[-1].reason = (entries[-1].reason + " " + line.strip()).strip()
        else:
            source = line.strip()
    for entry in entries:
        if not entry.source or not entry.reason or not marked_lines(entry):
            sys.exit(f"{path}: lines without a file, a mark or a reason: {entry.lines}")
    return entries


def uncovered_lines(file):
    return {line["line_number"] for line in file["lines"]
            if line["count"] == 0 and not line.get("gcovr/noncode")}


def check_list(entries, uncovered, texts):
    """What is wrong with the list, as messages."""
    wrong = []
    explained = {source: set() for source in uncovered}
    for entry in entries:
        first = marked_lines(entry)[0]
        if entry.source not in texts:
            wrong.append(f"{entry.source}: is listed, but is not counted")
            continue
        places = entry.places(texts[entry.source])
        if len(places) != 1:
            wrong.append(f"{entry.source}: the listed lines around \"{first}\" stand there"
                         f" {len(places)} times")
            continue
        for number, (line, mark) in enumerate(entry.lines, places[0] + 1):
            if mark == Entry.NEVER and number not in uncovered[entry.source]:
                wrong.append(f"{entry.source}:{number}: is listed, but is reached: {line}")
            elif mark != Entry.CONTEXT:
                explained[entry.source].add(number)
    for source, numbers in uncovered.items():
        for number in sorted(numbers - explained[source]):
            wrong.append(f"{source}:{number}: no test reaches this line, and no reason is listed:"
                         f" {texts[source][number - 1]}")
    return wrong


def share(part, whole):
    return 100.0 * part / whole if whole else 100.0


def main():
    parser = argparse.ArgumentParser(description=__doc__,
                                     formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("counts", type=pathlib.Path, help="what gcovr --json has written")
    parser.add_argument("uncovered", type=pathlib.Path, help="the list")
    parser.add_argument("--lines", type=float, required=True, help="percent to be reached")
    parser.add_argument("--branches", type=float, required=True, help="percent to be reached")
    parser.add_argument("--figures", type=pathlib.Path, required=True,
                        help="file for the figures of the whole, \"what:value\"")
    options = parser.parse_args()

    files = json.loads(options.counts.read_text(encoding="utf-8"))["files"]
    if not files:
        sys.exit("nothing was counted")
    texts = {file["file"]: [line.strip() for line in
                            pathlib.Path(file["file"]).read_text(encoding="utf-8").splitlines()]
             for file in files}
    uncovered = {file["file"]: uncovered_lines(file) for file in files}

    print(f"{'file':<42}{'lines':>15}{'%':>7}{'branches':>14}{'%':>7}")
    total = [0, 0, 0, 0]

    def print_row(name, row):
        print(f"{name:<42}{row[0]:>8} /{row[1]:>5}{share(row[0], row[1]):>7.1f}"
              f"{row[2]:>7} /{row[3]:>5}{share(row[2], row[3]):>7.1f}")

    for file in sorted(files, key=lambda file: file["file"]):
        code = [line for line in file["lines"] if not line.get("gcovr/noncode")]
        branches = [branch for line in code for branch in line["branches"]]
        row = [sum(line["count"] > 0 for line in code), len(code),
               sum(branch["count"] > 0 for branch in branches), len(branches)]
        total = [sum(pair) for pair in zip(total, row)]
        print_row(file["file"], row)
    print_row("all", total)
    print()

    entries = read_list(options.uncovered)
    wrong = check_list(entries, uncovered, texts)
    lines = share(total[0], total[1])
    branches = share(total[2], total[3])
    if lines < options.lines:
        wrong.append(f"{lines:.2f} % of the lines are less than {options.lines:g} %")
    if branches < options.branches:
        wrong.append(f"{branches:.2f} % of the branches are less than {options.branches:g} %")
    for message in wrong:
        print(message, file=sys.stderr)

    listed = sum(len(marked_lines(entry)) for entry in entries)
    options.figures.write_text(
        f"lines of src/ reached:{lines:.2f} % ({total[0]} of {total[1]})\n"
        f"branches of src/ reached:{branches:.2f} % ({total[2]} of {total[3]})\n"
        f"lines not reached:{total[1] - total[0]}\n"
        f"lines listed with the reason why no test reaches them:{listed}\n", encoding="utf-8")
    return 1 if wrong else 0


if __name__ == "__main__":
    sys.exit(main())
