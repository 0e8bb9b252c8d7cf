#!/usr/bin/env python3
"""Runs all tests of a build with KROFX_COVERAGE and says what of the sources they reach.

    scripts/coverage.py BUILD [--no-tests]

Prints the part of the lines, and of the branches, that are reached in what is written by hand: the library
(src) and the command. A branch is a condition in the source that comes out true, or false: each of those in
"a && b" counts for itself. BUILD/pages has a page for each file. With --no-tests the report is of the last
run.

A single file may miss the goal if docs/coverage.md says why. Ends in 1 when a file misses it without that, or
all of them together do.
"""

import argparse
import glob
import json
import os
import re
import shutil
import subprocess
import sys

ROOT = os.path.dirname(os.path.dirname(os.path.abspath(__file__)))
PARTS = ("src", "command")
GOAL = {"lines": 97, "branches": 90}
# A file that lacks fewer says nothing by its percentage.
FEW = 2
EXCEPTIONS = os.path.join(ROOT, "docs", "coverage.md")


def find_tool(name):
    for each in (name, name + "-14"):
        if shutil.which(each):
            return each
    sys.exit(f"coverage.py: there is no {name}; it is in the package llvm")


def is_program(path):
    if not os.access(path, os.X_OK) or os.path.islink(path) or not os.path.isfile(path):
        return False
    with open(path, "rb") as file:
        return file.read(4) == b"\x7fELF"


def find_programs(build):
    """All programs of the tests, of the command, and the library that is shared."""
    programs = []
    for part in ("src", "command", "tests"):
        for parent, folders, names in os.walk(os.path.join(build, part)):
            folders[:] = [folder for folder in folders if folder != "CMakeFiles"]
            programs += [path for path in (os.path.join(parent, name) for name in names) if is_program(path)]
    return programs


def words_of(summaries):
    """What is reached of some files together."""
    words = []
    for kind in ("lines", "branches"):
        count = sum(summary[kind]["count"] for summary in summaries)
        covered = sum(summary[kind]["covered"] for summary in summaries)
        words.append(f"{100 * covered / count:.1f} % of {count} {kind}")
    return ", ".join(words)


def find_exceptions():
    """The files that may miss the goal: the first column of the tables."""
    with open(EXCEPTIONS, encoding="utf-8") as file:
        return set(re.findall(r"^\| `([^`]+)` \|", file.read(), re.MULTILINE))


def misses_goal(summaries):
    """Whether some files together miss the goal and lack more than a few lines or branches."""
    for kind, goal in GOAL.items():
        count = sum(summary[kind]["count"] for summary in summaries)
        covered = sum(summary[kind]["covered"] for summary in summaries)
        if count - covered > FEW and 100 * covered < goal * count:
            return True
    return False


def print_report(files):
    """Prints what is reached of each part and of all. True when no file misses the goal without a reason."""
    named = {os.path.relpath(os.path.normpath(file["filename"]), ROOT): file["summary"] for file in files}
    named = {name: summary for name, summary in named.items() if name.split(os.sep)[0] in PARTS}
    missing = {name for name, summary in named.items() if misses_goal([summary])}
    exceptions = find_exceptions()
    for name in sorted(missing - exceptions):
        print(f"misses the goal without a reason: {name}: {words_of([named[name]])}")
    for name in sorted(exceptions - missing):
        print(f"needs no reason any more: {name}")
    for part in PARTS:
        print(f"{part}: " + words_of([s for name, s in named.items() if name.startswith(part + os.sep)]))
    print("all: " + words_of(named.values()))
    return not missing - exceptions and not misses_goal(named.values())


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("build")
    parser.add_argument("--no-tests", action="store_true")
    asked = parser.parse_args()
    build = os.path.abspath(asked.build)

    profile = os.path.join(build, "profile")
    if not asked.no_tests:
        shutil.rmtree(profile, ignore_errors=True)
        jobs = str(os.cpu_count())
        subprocess.run(["ctest", "--test-dir", build, "--output-on-failure", "--parallel", jobs], check=True)

    merged = os.path.join(profile, "all.profdata")
    raw = glob.glob(os.path.join(profile, "*.profraw"))
    subprocess.run([find_tool("llvm-profdata"), "merge", "-sparse", *raw, "-o", merged], check=True)
    programs = find_programs(build)
    given = [programs[0], *(word for each in programs[1:] for word in ("-object", each))]
    given += ["-instr-profile=" + merged]
    cover = find_tool("llvm-cov")
    # Tests define some functions of the library themselves, which llvm-cov calls mismatched.
    quiet = {"stderr": subprocess.DEVNULL, "check": True}
    export = [cover, "export", "-summary-only", *given]
    report = json.loads(subprocess.run(export, stdout=subprocess.PIPE, **quiet).stdout)
    reached = print_report(report["data"][0]["files"])
    pages = os.path.join(build, "pages")
    others = "-ignore-filename-regex=^/usr/|/(tests|fuzz|examples|generated)/"
    show = [cover, "show", "-format=html", "-show-branches=count", "-output-dir=" + pages, others, *given]
    subprocess.run(show, stdout=subprocess.DEVNULL, **quiet)
    print("pages: " + os.path.join(pages, "index.html"))
    return 0 if reached else 1


sys.exit(main())
