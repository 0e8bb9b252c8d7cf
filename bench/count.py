#!/usr/bin/env python3
"""Counts the instructions of the benchmarks' operations under callgrind.

    count.py PROGRAM COMPILER [--write]

Compares the counts with those of counts.json, and fails when one has grown by over 5 %. With
--write it puts the counts there instead. Ends in status 77, which ctest takes for skipped, when
callgrind or counts.json is missing, or the counts were taken with another compiler.
"""

import json
import os
import shutil
import sys

from callgrind import SKIPPED, count

COUNTS = os.path.join(os.path.dirname(os.path.abspath(__file__)), "counts.json")
ALLOWED_GROWTH = 0.05


def main():
    program, compiler = sys.argv[1:3]
    if shutil.which("valgrind") is None:
        print("Skipped: there is no valgrind to count with")
        sys.exit(SKIPPED)
    if "--write" in sys.argv:
        taken = {"compiler": compiler, "instructions": count(program)}
        with open(COUNTS, "w", encoding="utf-8") as file:
            json.dump(taken, file, indent=2)
            file.write("\n")
        return
    if not os.path.exists(COUNTS):
        print("Skipped: no counts were taken yet")
        sys.exit(SKIPPED)
    with open(COUNTS, encoding="utf-8") as file:
        kept = json.load(file)
    if kept["compiler"] != compiler:
        print(f"Skipped: the counts were taken with {kept['compiler']}, and this is {compiler}")
        sys.exit(SKIPPED)
    now = count(program)
    status = 0
    for name, before in kept["instructions"].items():
        if name not in now:
            print(f"{name}: not measured any more")
            status = 1
        elif now[name] > before * (1 + ALLOWED_GROWTH):
            print(f"{name}: {now[name]} instructions, {now[name] / before - 1:+.1%} on {before}")
            status = 1
    if status != 0:
        print("If the growth is wanted, take the counts anew: bench.sh --counts")
    sys.exit(status)


main()
