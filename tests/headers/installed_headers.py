"""Compares the installed files with a list that is checked in.

    installed_headers.py [--update] --list FILE --root DIR...

What krofx/krofx.h and krofx/host.h reach is installed. The list has a line for each such header:
whether hosts may include it (`public`: one of these or krofx/aggregates.h names it) or it is only there because a public
header needs it (`internal`), and below it each header that it includes, the standard library's too. A
header that is new, gone, or pulls in something else is a difference; --update writes the list anew. A
header that is installed must be public or in a folder `internal/`.
"""

import argparse
import difflib
import os
import re
import sys

INCLUDE = re.compile(r'#include (?:"(krofx/[^"]+)"|(<[^>]+>))')
GATHERING = ("krofx/krofx.h", "krofx/host.h", "krofx/aggregates.h")


def includes_of(header, roots):
    for root in roots:
        path = os.path.join(root, header)
        if os.path.exists(path):
            with open(path, encoding="utf-8") as file:
                return [own or other for own, other in INCLUDE.findall(file.read())]
    sys.exit(f"{header} is included, but there is no such file")


def describe(roots):
    """Gives the lines of the list."""
    included = {}
    waiting = ["krofx/krofx.h", "krofx/host.h"]
    while waiting:
        header = waiting.pop()
        if header not in included:
            included[header] = includes_of(header, roots)
            waiting += [name for name in included[header] if not name.startswith("<")]
    public = {name for header in GATHERING for name in included[header]} | set(GATHERING)
    for header in sorted(included):
        yield f"{'public' if header in public else 'internal'} {header}"
        if header not in GATHERING:
            yield from (f"    {name}" for name in sorted(included[header]))


def main():
    parser = argparse.ArgumentParser(description=__doc__.split("\n")[0])
    parser.add_argument("--update", action="store_true")
    parser.add_argument("--list", required=True)
    parser.add_argument("--root", action="append", required=True)
    arguments = parser.parse_args()
    found = [line + "\n" for line in describe(arguments.root)]
    misplaced = [line.split()[1] for line in found if line.startswith("internal ")]
    misplaced = [header for header in misplaced if "/internal/" not in header]
    if misplaced:
        sys.exit(f"neither named in krofx/krofx.h nor in a folder internal/: {', '.join(misplaced)}")
    if arguments.update:
        with open(arguments.list, "w", encoding="utf-8") as file:
            file.writelines(found)
        return 0
    with open(arguments.list, encoding="utf-8") as file:
        expected = file.readlines()
    difference = list(difflib.unified_diff(expected, found, arguments.list, "what is installed"))
    sys.stdout.writelines(difference)
    if difference:
        print(f"If that is meant: python3 {' '.join(sys.argv)} --update")
    return 1 if difference else 0


if __name__ == "__main__":
    sys.exit(main())
