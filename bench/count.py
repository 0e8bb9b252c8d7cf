#!/usr/bin/env python3
"""Counts the instructions of the benchmarks' operations under callgrind.

    count.py PROGRAM COMPILER [--write]

Compares the counts with those of counts.json, and fails when one has grown by over 5 %. With
--write it puts the counts there instead. Ends in status 77, which ctest takes for skipped, when
valgrind is missing, or the counts were taken with another compiler or C library.
"""

import json
import os
import platform
import shutil
import sys

from callgrind import SKIPPED, count

COUNTS = os.path.join(os.path.dirname(os.path.abspath(__file__)), "counts.json")
ALLOWED_GROWTH = 0.05


def main():
    program, compiler = sys.argv[1:3]
    made_with = f"{compiler}, {' '.join(platform.libc_ver())}"
    if shutil.which("valgrind") is None:
        print("Skipped: there is no valgrind to count with")
        sys.exit(SKIPPED)
    if "--write" in sys.argv:
        taken = {"made with": made_with, "instructions": count(program)}
        with open(COUNTS, "w", encoding="utf-8") as file:
            json.dump(taken, file, indent=2)
            file.write("\n")
        return
    with open(COUNTS, encoding="utf-8") as file:
        kept = json.load(file)
    if kept["made with"] != made_with:
        print(f"Skipped: the counts were taken with {kept['made with']}, and this is {made_with}")
        sys.exit(SKIPPED)
    now = count(program)
    status = 0
    for name in now.keys() - kept["instructions"].keys():
        print(f"{name}: not in counts.json")
        status = 1
    for name, before in kept["instructions"].items():
        if name not in now:
            print(f"{name}: not measured any more")
            status = 1
        elif now[name] > before * (1 + ALLOWED_GROWTH):
            print(f"{name}: {now[name]} instructions, {now[name] / before - 1:+.1%} on {before}")
            status = 1
    if status != 0:
        print("If this is wanted, take the counts anew: bench.sh --counts")
    sys.exit(status)


main()
