#!/usr/bin/env python3
"""Holds the work for costly texts to their length: work.py PROGRAM [--show].

The program krofx_work parses, reads, checks and writes each kind of text at two lengths. No kind may
take more instructions for each byte of the longer one, but for a little. With --show it prints how
much each grows. Ends in status 77, which ctest takes for skipped, without valgrind.
"""

import re
import shutil
import sys

from callgrind import SKIPPED, count

ALLOWED_GROWTH = 1.25


def main():
    if shutil.which("valgrind") is None:
        print("Skipped: there is no valgrind to count with")
        sys.exit(SKIPPED)
    counts = count(sys.argv[1])
    names = sorted({name.rsplit(", ", 1)[0] for name in counts})
    status = 0
    for name in names:
        # {bytes of the text: instructions}
        lengths = sorted(
            (int(re.search(r", (\d+)$", full)[1]), instructions)
            for full, instructions in counts.items()
            if full.rsplit(", ", 1)[0] == name
        )
        (short, less), (long, more) = lengths
        growth = (more / less) / (long / short)
        if "--show" in sys.argv:
            print(f"{name}: {less} for {short} bytes, {more} for {long}: {growth:.2f}")
        if growth > ALLOWED_GROWTH:
            print(f"{name}: {growth:.2f} times the instructions for each byte")
            status = 1
    print(f"{len(names)} measured")
    sys.exit(status)


main()
