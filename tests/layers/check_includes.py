"""Checks that the includes of the library follow its layers, and that no folders include each other.

    check_includes.py --root DIR... --layer NAME=LAYER,LAYER...
    check_includes.py --program DIR

Each --root holds a folder `krofx` with a folder for each layer; sources and generated headers are
two such roots. Each --layer names the layers that NAME may include besides itself: all that it is
built on.

An include of a layer that is not among them is an error, reported as `file:line: ...`; so are a
folder that is no layer, an include of a header that gathers all layers, and a cycle between
folders, for which the includes that make it are reported. A folder `internal` counts as a part of
the folder that it is in. The exit status is 1 when there was an error.

A --program is a folder whose files include each other by their paths in it. Only cycles between its
folders are errors, of which the folder itself is one.
"""

import argparse
import os
import re
import sys
from dataclasses import dataclass

INCLUDE = re.compile(r'\s*#\s*include\s*"([^"]*)"')
ANGLED = re.compile(r"\s*#\s*include\s*<(krofx/[^>]*)>")
SOURCES = (".h", ".cpp", ".in")


@dataclass(frozen=True)
class Include:
    """One line that includes a file of the library."""

    path: str
    line: int
    source: str  # the folder of the file with the line, below krofx/ or in the program
    target: str  # the same for the file that it includes; empty for one in krofx/ itself
    text: str

    def place(self):
        return f"{self.path}:{self.line}"


def folder_of(path):
    """The folder of a file that is given relative to krofx/; internal/ is a part of its parent."""
    parts = [part for part in os.path.dirname(path).split("/") if part != "internal"]
    return "/".join(parts)


def layer_of(folder):
    return folder.split("/")[0]


def sources_in(top):
    """Gives the paths of all sources below a folder, in order."""
    paths = []
    for folder, _, names in os.walk(top):
        paths += [os.path.join(folder, name) for name in names if name.endswith(SOURCES)]
    return sorted(paths)


def read_includes(root, errors):
    """Gives the includes of the files of all layers below `root`, in the order of their paths."""
    top = os.path.join(root, "krofx")
    for path in sources_in(top):
        source = folder_of(os.path.relpath(path, top).replace(os.sep, "/"))
        if not source:
            continue
        with open(path, encoding="utf-8") as file:
            for number, line in enumerate(file, 1):
                match = INCLUDE.match(line) or ANGLED.match(line)
                if not match:
                    continue
                text = match.group(1)
                if not text.startswith("krofx/"):
                    errors.append(f"{path}:{number}: \"{text}\" is not given from krofx/ on")
                    continue
                target = folder_of(text.removeprefix("krofx/"))
                yield Include(path, number, source, target, text)


def read_program_includes(top):
    """Gives the includes of files of a program by files of it, in the order of their paths."""
    for path in sources_in(top):
        source = folder_of(os.path.relpath(path, top).replace(os.sep, "/")) or "."
        with open(path, encoding="utf-8") as file:
            for number, line in enumerate(file, 1):
                match = INCLUDE.match(line)
                if match and not match.group(1).startswith("krofx/"):
                    target = folder_of(match.group(1)) or "."
                    yield Include(path, number, source, target, match.group(1))


def check_layers(includes, allowed):
    """Gives an error for each include that `allowed` (a set of layers for each layer) forbids."""
    unknown = set()
    for include in includes:
        layer, target = layer_of(include.source), layer_of(include.target)
        if layer not in allowed:
            if layer not in unknown:
                yield f"{include.path}: the folder {layer} is no layer"
            unknown.add(layer)
        elif not target:
            yield f"{include.place()}: {include.text} is above all layers"
        elif target != layer and target not in allowed[layer]:
            below = ", ".join(sorted(allowed[layer])) or "no layer"
            yield f"{include.place()}: {include.text} is not below {layer}, which is on {below}"


def strong_components(graph):
    """Gives the sets of folders that reach each other (Tarjan's algorithm)."""
    index, low, stack, on_stack = {}, {}, [], set()

    def visit(node):
        index[node] = low[node] = len(index)
        stack.append(node)
        on_stack.add(node)
        for successor in sorted(graph.get(node, ())):
            if successor not in index:
                yield from visit(successor)
                low[node] = min(low[node], low[successor])
            elif successor in on_stack:
                low[node] = min(low[node], index[successor])
        if low[node] == index[node]:
            component = set()
            while node not in component:
                component.add(stack.pop())
            on_stack.difference_update(component)
            yield component

    for node in sorted(graph):
        if node not in index:
            yield from visit(node)


def check_cycles(includes):
    """Gives an error for each include that takes part in a cycle between folders."""
    graph = {}
    for include in includes:
        if include.target and include.target != include.source:
            graph.setdefault(include.source, set()).add(include.target)
    for component in strong_components(graph):
        if len(component) < 2:
            continue
        cycle = ", ".join(sorted(component))
        for include in includes:
            if include.source != include.target and {include.source, include.target} <= component:
                yield f"{include.place()}: {include.text} closes a cycle between {cycle}"


def check(roots, allowed):
    """Gives all errors of the files below `roots`."""
    errors = []
    includes = [include for root in roots for include in read_includes(root, errors)]
    if not includes:
        errors.append(f"no includes below {', '.join(roots)}")
    return errors + list(check_layers(includes, allowed)) + list(check_cycles(includes))


def check_program(top):
    """Gives all errors of a program."""
    includes = list(read_program_includes(top))
    errors = [] if includes else [f"no includes below {top}"]
    return errors + list(check_cycles(includes))


def main():
    parser = argparse.ArgumentParser(description=__doc__.split("\n")[0])
    parser.add_argument("--root", action="append", default=[])
    parser.add_argument("--layer", action="append", default=[])
    parser.add_argument("--program")
    arguments = parser.parse_args()
    allowed = {}
    for layer in arguments.layer:
        name, _, below = layer.partition("=")
        allowed[name] = set(filter(None, below.split(",")))
    if arguments.program:
        errors = check_program(arguments.program)
    else:
        errors = check(arguments.root, allowed)
    for error in errors:
        print(error)
    return 1 if errors else 0


if __name__ == "__main__":
    sys.exit(main())
