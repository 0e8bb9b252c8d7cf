"""Checks that operations that take an object or give one up say who owns it afterwards.

    owners_test.py FOLDER...

Looks at all headers below the folders: a setter or an appender of an object (`SetX(KRY* y)`), and what
disconnects one, has a comment that names the owner, or says that a copy is made.
"""

import pathlib
import re
import sys

TAKES = re.compile(r"\bu16 (?:Set|Append)\w*\([^)]*\bKR\w+\* \w+\)|\bDisconnect\w+\(u16")
# Values of their own, of which a copy is made.
LOOKED_AT = re.compile(r"const \w+\*|KRTagDictionaryEntry\*|KRParser\*")
OWNER = re.compile(r"\b(?:own|owns|owner|ownership|owning|belongs|belong|caller|copy|copies|copied)\b")
FEWEST = 500


def main():
    count = 0
    mistakes = []
    for folder in sys.argv[1:]:
        for path in sorted(pathlib.Path(folder).rglob("*.h")):
            comment = ""
            for number, line in enumerate(path.read_text(encoding="utf-8").splitlines(), 1):
                stripped = line.strip()
                if stripped.startswith("///"):
                    comment += stripped[3:]
                    continue
                if TAKES.search(stripped) and not LOOKED_AT.search(stripped):
                    count += 1
                    if not OWNER.search(comment):
                        mistakes.append(f"{path}:{number}: says no owner: {stripped}")
                comment = ""
    if count < FEWEST:
        mistakes.append(f"only {count} operations were found")
    sys.exit("\n".join(mistakes) or 0)


main()
