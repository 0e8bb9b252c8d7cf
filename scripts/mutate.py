#!/usr/bin/env python3
"""Makes small changes to the sources of a layer, one at a time, and sees whether its tests notice.

    scripts/mutate.py LAYER [COUNT] [--seed N] [--file PART]

Builds the test programs in build/mutate, in a copy of the sources. Then it makes COUNT changes (50
unless given), chosen by the seed, each in one line of the layer's .cpp and .h files: a comparison is
turned round or moved by one, a condition is negated, a number is moved by one, a sum becomes a
difference, a statement is left out. The tests of the layer are run, and those of the other layers if
they notice nothing. A change that no test notices is a survivor: its line is printed. With --file only
files with PART in their path are changed.

A survivor is no fault by itself: some changes make no difference that anyone could see.
"""

import argparse
import filecmp
import os
import random
import re
import shutil
import subprocess
import sys

ROOT = os.path.dirname(os.path.dirname(os.path.abspath(__file__)))
COPY = os.path.join(ROOT, "build", "mutate")
COPIED = ("cmake", "docs", "src", "tests", "tools", "examples", "fuzz", "CMakeLists.txt")

# The layers whose tests may notice a change in another, those that use most of it first.
OTHERS = ("envelope", "exchanges", "reader", "stream", "host", "payroll", "parse", "transport", "rewriting")
OTHERS += ("messages", "extensions", "security", "build", "model", "values", "core")

# (what is replaced, by what). Each match of a line is one change that can be made.
CHANGES = (
    (r" == ", " != "),
    (r" != ", " == "),
    (r" < ", " <= "),
    (r" <= ", " < "),
    (r" > ", " >= "),
    (r" >= ", " > "),
    (r" && ", " || "),
    (r" \|\| ", " && "),
    (r" \+ ", " - "),
    (r" - ", " + "),
    (r"\bif \((?!constexpr)", "if (!("),
    (r"\breturn true;", "return false;"),
    (r"\breturn false;", "return true;"),
    (r"\breturn 0;", "return 1;"),
    (r"\breturn 1;", "return 0;"),
    (r"\+\+(?=\w)", "--"),
    (r"(?<=[ (])1(?=[;), ])", "2"),
    (r"(?<=[ (])0(?=[;), ])", "1"),
    (r"^( +)\w[\w.>-]*\([^;{}]*\);$", r"\1;"),
)
SKIPPED = re.compile(r"^\s*(//|#|template|using|static_assert|KROFX_API|friend)|= 0;$|\boperator\b")


def find_changes(path):
    """Every (path, line number, new line) that a file allows."""
    with open(path, encoding="utf-8") as file:
        lines = file.read().split("\n")
    for number, line in enumerate(lines):
        if SKIPPED.search(line) or '"' in line:
            continue
        code = line.split("//")[0].rstrip()
        for pattern, by in CHANGES:
            for match in re.finditer(pattern, code):
                new = code[: match.start()] + match.expand(by) + code[match.end() :]
                if by == "if (!(":
                    if not re.search(r"\) (\{|return\b[^;]*;|continue;|break;)$", new):
                        continue
                    new = re.sub(r"\) (\{|return\b[^;]*;|continue;|break;)$", r")) \1", new)
                yield path, number, new


def run(command, timeout):
    """Whether a command ended well, in time."""
    try:
        done = subprocess.run(
            command, cwd=COPY, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL, timeout=timeout, check=False
        )
    except subprocess.TimeoutExpired:
        return False
    return done.returncode == 0


def test_target(layer):
    return f"krofx_{layer}_tests"


def tests_pass(layer, timeout):
    program = os.path.join(COPY, "build", "tests", test_target(layer))
    return run([program, "--gtest_brief=1"], timeout)


def files_below(root):
    """The files of the copied folders, by their names from the root."""
    for name in COPIED:
        if os.path.isfile(os.path.join(root, name)):
            yield name
        for parent, _, names in os.walk(os.path.join(root, name)):
            yield from (os.path.relpath(os.path.join(parent, each), root) for each in names)


def copy_sources():
    """Makes the copy what the sources are. What has not changed keeps its time, so that it is not
    built again; what an interrupted run has left changed is built again."""
    wanted = set(files_below(ROOT))
    for name in set(files_below(COPY)) - wanted:
        os.remove(os.path.join(COPY, name))
    for name in wanted:
        source, copy = os.path.join(ROOT, name), os.path.join(COPY, name)
        if not os.path.exists(copy) or not filecmp.cmp(source, copy, shallow=False):
            os.makedirs(os.path.dirname(copy), exist_ok=True)
            shutil.copy(source, copy)


def prepare(layers):
    copy_sources()
    configure = ["cmake", "-S", ".", "-B", "build", "-G", "Ninja", "-DCMAKE_BUILD_TYPE=Debug"]
    configure += ["-DCMAKE_CXX_FLAGS=-O0 -g0 -w", "-DKROFX_BUILD_COMMAND=OFF", "-DKROFX_BUILD_EXAMPLES=OFF"]
    for command in (configure, ["ninja", "-C", "build", *map(test_target, layers)]):
        if not run(command, None):
            sys.exit("this does not work before any change: " + " ".join(command))
    for layer in layers:
        if not tests_pass(layer, 600):
            sys.exit(f"the tests of {layer} fail before any change")


def sources_of(layer, part):
    folder = os.path.join(COPY, "src", "krofx", layer)
    for parent, _, names in sorted(os.walk(folder)):
        for name in sorted(names):
            path = os.path.join(parent, name)
            if name.endswith((".cpp", ".h")) and part in path:
                yield path


def try_change(change, layers):
    """What became of a change: "noticed", "noticed by other layers", "not compiled" or "survived"."""
    path, number, new = change
    with open(path, encoding="utf-8") as file:
        before = file.read()
    lines = before.split("\n")
    lines[number] = new
    try:
        with open(path, "w", encoding="utf-8") as file:
            file.write("\n".join(lines))
        for layer in layers:
            if not run(["ninja", "-C", "build", test_target(layer)], 900):
                return "not compiled"
            if not tests_pass(layer, 120):
                return "noticed" if layer == layers[0] else "noticed by other layers"
        return "survived"
    finally:
        with open(path, "w", encoding="utf-8") as file:
            file.write(before)


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("layer", choices=sorted(OTHERS))
    parser.add_argument("count", nargs="?", type=int, default=50)
    parser.add_argument("--seed", type=int, default=1)
    parser.add_argument("--file", default="")
    asked = parser.parse_args()

    layers = [asked.layer] + [layer for layer in OTHERS if layer != asked.layer]
    prepare(layers)
    changes = [c for path in sources_of(asked.layer, asked.file) for c in find_changes(path)]
    random.Random(asked.seed).shuffle(changes)
    results = {"noticed": 0, "noticed by other layers": 0, "survived": 0, "not compiled": 0}
    for change in changes[: asked.count]:
        result = try_change(change, layers)
        results[result] += 1
        if result == "survived":
            path, number, new = change
            print(f"survived: {os.path.relpath(path, COPY)}:{number + 1}: {new.strip()}", flush=True)
    print(", ".join(f"{count} {name}" for name, count in results.items()), f"of {len(changes)} possible")


main()
