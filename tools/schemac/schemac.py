#!/usr/bin/env python3
"""The schema compiler: turns the .schema files beside the sources into C++.

    schemac.py --source src --out BUILD/generated          write everything
    schemac.py --source src --out BUILD/generated --list   name what would be written

Each kind of schema has a module of its own with one function, generate(source, write): `source`
is the folder that holds krofx/, `write(path, text)` takes a path below --out. A file whose text
has not changed is not touched, so nothing that includes it is compiled again.
"""

import argparse
import importlib
import os
import pathlib
import sys

sys.path.insert(0, os.path.dirname(os.path.abspath(__file__)))

KINDS = ("tags", "keywords", "keyword_writers", "aggregates")


def main():
    parser = argparse.ArgumentParser(description=__doc__.split("\n")[0])
    parser.add_argument("--source", type=pathlib.Path, required=True)
    parser.add_argument("--out", type=pathlib.Path, required=True)
    parser.add_argument("--list", action="store_true")
    options = parser.parse_args()

    outputs = {}
    for kind in KINDS:
        importlib.import_module(kind).generate(options.source, outputs.__setitem__)

    for name, text in outputs.items():
        path = options.out / name
        if options.list:
            print(path)
            continue
        if path.exists() and path.read_text() == text:
            continue
        path.parent.mkdir(parents=True, exist_ok=True)
        path.write_text(text)


if __name__ == "__main__":
    main()
