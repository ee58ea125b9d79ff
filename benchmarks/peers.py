# SPDX-FileCopyrightText: 2026 The OrvaUtils authors
# SPDX-License-Identifier: MIT
"""Shared by the compare_<topic>.py scripts: contenders that run in turn, medians, one table.

A contender is a function without arguments that does the whole job once and returns the seconds it
took. Contenders take turns (a b c, c a b, ...), so that other load on the machine affects all of
them equally, in an order that changes from round to round, so that no contender always runs with the
caches and memory that the same neighbour leaves. The figure of each is its median, and the ratio is
ours divided by the peer's.
"""

import collections
import json
import random
import resource
import statistics
import subprocess
import sys
import time


def timed(function):
    """Seconds that one call of function takes."""
    start = time.perf_counter()
    function()
    return time.perf_counter() - start


def run(command, **options):
    """Runs a command, raises an error if it fails, and returns its seconds."""
    return timed(lambda: subprocess.run(command, check=True, stdout=subprocess.DEVNULL, **options))


def cpu_of_children(function):
    """CPU seconds, user and system, of the child processes that function starts."""
    before = resource.getrusage(resource.RUSAGE_CHILDREN)
    function()
    after = resource.getrusage(resource.RUSAGE_CHILDREN)
    return after.ru_utime + after.ru_stime - before.ru_utime - before.ru_stime


def alternate(contenders, rounds=7):
    """Runs every contender once per round after a warm-up round; name -> median seconds."""
    seconds = {name: [] for name in contenders}
    for function in contenders.values():
        function()
    order = random.Random(1)
    for _ in range(rounds):
        for name in order.sample(list(contenders), len(contenders)):
            seconds[name].append(contenders[name]())
    return {name: statistics.median(times) for name, times in seconds.items()}


def benchmark_medians(program, rounds, seconds_each):
    """Runs a Google Benchmark program; benchmark -> the median of its CPU seconds.

    Benchmarks take turns at random, rounds times, each for seconds_each at least. Where a benchmark
    has taken its time itself, that is its time.
    """
    report = subprocess.run(
        [program, "--benchmark_format=json", "--benchmark_enable_random_interleaving=true",
         f"--benchmark_repetitions={rounds}", f"--benchmark_min_time={seconds_each}"],
        check=True, stdout=subprocess.PIPE, text=True).stdout
    units = {"ns": 1e-9, "us": 1e-6, "ms": 1e-3, "s": 1}
    seconds = collections.defaultdict(list)
    for measured in json.loads(report)["benchmarks"]:
        if measured.get("error_occurred"):
            sys.exit(f"{measured['name']}: {measured['error_message']}")
        if measured["run_type"] == "iteration":
            name = measured["name"]
            taken = measured["real_time" if name.endswith("/manual_time") else "cpu_time"]
            seconds[name.removesuffix("/manual_time")].append(taken * units[measured["time_unit"]])
    return {name: statistics.median(values) for name, values in seconds.items()}


class Table:
    """Rows with our median, the peer's, the ratio and the highest ratio that we promise."""

    def __init__(self, title):
        self.title = title
        self.rows = []

    def add(self, what, ours, peer_name, peer, promised=None):
        self.rows.append((what, ours, peer_name, peer, ours / peer, promised))

    def kept(self):
        """Whether every promise is kept."""
        return all(promised is None or ratio <= promised
                   for _, _, _, _, ratio, promised in self.rows)

    def __str__(self):
        lines = [self.title, "-" * len(self.title),
                 f"{'what':44} {'ours ms':>10}  {'peer':26} {'peer ms':>10} {'promised':>9} {'ratio':>7}"]
        for what, ours, peer_name, peer, ratio, promised in self.rows:
            limit = "" if promised is None else f"{promised:.2f}"
            mark = " !" if promised is not None and ratio > promised else ""
            lines.append(f"{what:44} {ours * 1e3:10.2f}  {peer_name:26} {peer * 1e3:10.2f}"
                         f" {limit:>9} {ratio:7.2f}{mark}")
        return "\n".join(lines) + "\n"
