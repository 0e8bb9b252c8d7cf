#!/usr/bin/env python3
"""Holds the work for costly texts to their length: work.py PROGRAM [--show] [--times N].

The program krofx_work does each kind of work on each kind of text at three lengths. The two shorter
ones say what the longest should take if each further byte takes as many instructions as those before
it: so what does not depend on the length counts for nothing. It may take a little more. With --show
it prints all of them; with --times the texts are N times as long, which takes N times as long and
shows what grows more slowly. Ends in status 77, which ctest takes for skipped, without valgrind.
"""

import argparse
import shutil
import sys

from callgrind import SKIPPED, count

# A buffer that grows is copied now and then, and some looks ahead are cut short by the end of a short
# text.
ALLOWED_GROWTH = 1.25


def growth(counts):
    """How many times the expected instructions the longest text takes: [(bytes, instructions)]."""
    (short, least), (middle, less), (long, more) = sorted(counts)
    return more / (less + max(0, less - least) * (long - middle) / (middle - short))


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("program")
    parser.add_argument("--show", action="store_true")
    parser.add_argument("--times", default="1")
    options = parser.parse_args()
    if shutil.which("valgrind") is None:
        print("Skipped: there is no valgrind to count with")
        sys.exit(SKIPPED)
    pieces = {}
    for name, instructions in count(options.program, options.times).items():
        work, length = name.rsplit(", ", 1)
        pieces.setdefault(work, []).append((int(length), instructions))
    grown = sorted(((growth(counts), work) for work, counts in pieces.items()), reverse=True)
    for times, work in grown:
        if times > ALLOWED_GROWTH or options.show:
            print(f"{times:.2f} times the instructions: {work}, {sorted(pieces[work])}")
    print(f"{len(pieces)} pieces of work")
    sys.exit(1 if grown[0][0] > ALLOWED_GROWTH else 0)


main()
