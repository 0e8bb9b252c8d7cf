"""Compares the programs in the guide with the examples that are built and run.

    guide_blocks.py [--update] GUIDE ROOT

A line `<!-- examples/NAME.cpp -->` of the guide is followed by the whole of that file, which is below
ROOT, as a block of C++. --update writes the blocks anew. Each program has fewer than 30 lines.
"""

import re
import sys

MARK = re.compile(r"<!-- (examples/\S+\.cpp) -->\n\n?(?:```cpp\n.*?```\n)?", re.DOTALL)
MOST_LINES = 29


def main():
    update = "--update" in sys.argv
    guide, root = [argument for argument in sys.argv[1:] if argument != "--update"]
    with open(guide, encoding="utf-8") as file:
        text = file.read()
    found = []

    def block(match):
        with open(f"{root}/{match[1]}", encoding="utf-8") as file:
            program = file.read()
        found.append(match[1])
        if program.count("\n") > MOST_LINES:
            sys.exit(f"{match[1]} has {program.count(chr(10))} lines")
        return f"<!-- {match[1]} -->\n\n```cpp\n{program}```\n"

    expected = MARK.sub(block, text)
    if len(found) != 9:
        sys.exit(f"nine programs are expected, not {len(found)}")
    if update:
        with open(guide, "w", encoding="utf-8") as file:
            file.write(expected)
    elif expected != text:
        sys.exit(f"{guide} does not show the programs as they are; run with --update")


main()
