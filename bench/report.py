#!/usr/bin/env python3
"""Prints the table of bench.sh: report.py RESULT.json "PEAK SIZE"."""

import collections
import json
import statistics
import sys

UNITS = {"ns": 1e-6, "us": 1e-3, "ms": 1.0}


def main():
    with open(sys.argv[1], encoding="utf-8") as file:
        results = json.load(file)
    peak, size = (int(number) for number in sys.argv[2].split())
    times = collections.defaultdict(list)
    for run in results["benchmarks"]:
        if run["run_type"] == "iteration":
            name = run["run_name"].removesuffix("/real_time")
            clock = "real_time" if run["run_name"] != name else "cpu_time"
            times[name].append(run[clock] * UNITS[run["time_unit"]])
    print(f"{'operation':28}{'median ms':>12}{'least':>12}{'most':>12}")
    for name, runs in times.items():
        print(f"{name:28}{statistics.median(runs):12.4f}{min(runs):12.4f}{max(runs):12.4f}")

    def ratio(name, what, by, target, factor=1.0):
        median = factor * statistics.median(times[what]) / statistics.median(times[by])
        least = factor * min(times[what]) / min(times[by])
        print(f"{name:44}{median:8.2f}{least:8.2f}   {target}")

    print(f"\n{'ratio':44}{'medians':>8}{'least':>8}   aim")
    ratio("parse / untyped XML parse", "parse bank", "parse XML", "<= 1.0")
    ratio("parse and check / untyped XML parse", "check bank", "parse XML", "<= 1.2")
    ratio("build / parse", "build bank", "parse bank", "<= 0.5")
    ratio("destroy / parse", "destroy bank", "parse bank", "<= 0.25")
    ratio("a transaction of 60000 / of 1000", "parse bank 60000", "parse bank 1000", "<= 1.15", 1 / 60)
    parse, calculate = "parse bank 20000", "calculate"
    ratio("speed of two threads / of one", f"one thread {parse}", f"two threads {parse}", ">= 1.9", 2)
    ratio("speed of two processes / of one", f"one thread {parse}", f"two processes {parse}", "", 2)
    ratio("two threads / two processes", f"two processes {parse}", f"two threads {parse}", ">= 0.95")
    ratio("calculating on two threads / on one", f"one thread {calculate}",
          f"two threads {calculate}", "the machine's", 2)
    print(f"{'peak memory / input':44}{peak / size:8.2f}{'':8}   <= 8")


main()
