#!/usr/bin/env python3
"""Counts the instructions of the benchmarks' operations under callgrind.

    count.py PROGRAM COMPILER [--write]

Compares the counts with those of counts.json, and fails when one has grown by over 5 %. With
--write it puts the counts there instead. Ends in status 77, which ctest takes for skipped, when
callgrind or counts.json is missing, or the counts were taken with another compiler.
"""

import glob
import json
import os
import re
import shutil
import subprocess
import sys
import tempfile

COUNTS = os.path.join(os.path.dirname(os.path.abspath(__file__)), "counts.json")
SKIPPED = 77
ALLOWED_GROWTH = 0.05


def count(program):
    """{operation: instructions}."""
    with tempfile.TemporaryDirectory() as folder:
        command = ["valgrind", "--tool=callgrind", f"--callgrind-out-file={folder}/out"]
        command += ["--toggle-collect=bench::RunCounted*", "--dump-after=bench::RunCounted(bench::Operation const&)"]
        run = subprocess.run(command + [program], capture_output=True, text=True, check=False)
        if run.returncode != 0:
            sys.exit(run.stderr)
        names = run.stdout.splitlines()
        counts = {}
        for number, name in enumerate(names, 1):
            with open(f"{folder}/out.{number}", encoding="utf-8") as dump:
                counts[name] = int(re.search(r"^(?:summary|totals): (\d+)", dump.read(), re.M)[1])
        assert len(glob.glob(f"{folder}/out.*")) >= len(names)
        return counts


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
