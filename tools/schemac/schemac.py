#!/usr/bin/env python3
"""The schema compiler: turns the .schema files beside the sources into C++.

    schemac.py --source src --out BUILD/generated          write everything
    schemac.py --source src --out BUILD/generated --list   name what would be written

docs/schema.md describes the languages. Each has a module of its own that reads it and refuses what
it does not know, and modules that write from what was read: generate(..., write), where
`write(path, text)` takes a path below --out. A mistake is reported as FILE:LINE: error: TEXT, with
exit status 1, and then nothing is written. A file whose text has not changed is not touched, so
nothing that includes it is compiled again.
"""

import argparse
import os
import pathlib
import sys

sys.path.insert(0, os.path.dirname(os.path.abspath(__file__)))

import aggregate_checks
import aggregates
import factory
import keyword_writers
import keywords
import model
import routing
import tags
from aggregate_reader import Reader
from sources import SchemaError, Tree


class Project:
    """Everything that the schemas of a tree say, read and checked."""

    def __init__(self, source):
        tree = Tree(source)
        self.tag_blocks = tags.read(tree.only("tags"))
        ids = {tag: tag_id for block in self.tag_blocks for tag_id, tag in block.rows()}
        self.keyword_files = keywords.read(tree)
        self.keywords = keywords.by_name(self.keyword_files)
        self.model = model.Model(tree, ids, self.keywords)
        for schema in tree.schemas("aggregates"):
            self.model.files.append(Reader(schema, ids, self.model.classes).read())
        aggregate_checks.check(self.model)
        made = self.model.made_classes()
        self.operations = factory.read(tree.only("factory"), tree, made)
        self.routes = routing.read(tree.only("routing"), self.model)

    def outputs(self):
        """The generated files: {path: text}."""
        outputs = {}
        write = outputs.__setitem__
        tags.generate(self.tag_blocks, write)
        keywords.generate(self.keyword_files, write)
        keyword_writers.generate(self.keywords, write)
        aggregates.generate(self.model, write)
        factory.generate(self.operations, self.model.made_classes(), write)
        routing.generate(self.routes, self.model, write)
        return outputs


def main():
    parser = argparse.ArgumentParser(description=__doc__.split("\n")[0])
    parser.add_argument("--source", type=pathlib.Path, required=True)
    parser.add_argument("--out", type=pathlib.Path, required=True)
    parser.add_argument("--list", action="store_true")
    options = parser.parse_args()

    try:
        outputs = Project(options.source).outputs()
    except SchemaError as error:
        sys.exit(str(error))
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
