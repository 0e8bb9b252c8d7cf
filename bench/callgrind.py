"""Counts the instructions of what a program runs through bench::RunCounted, under callgrind."""

import glob
import re
import subprocess
import sys
import tempfile

# What ctest takes for skipped.
SKIPPED = 77


def count(program):
    """{name: instructions} of the operations, whose names the program prints in their order."""
    with tempfile.TemporaryDirectory() as folder:
        command = ["valgrind", "--tool=callgrind", f"--callgrind-out-file={folder}/out"]
        command += ["--toggle-collect=bench::RunCounted*", "--dump-after=bench::RunCounted(bench::Operation const&)"]
        run = subprocess.run(command + [program], capture_output=True, text=True, check=False)
        if run.returncode != 0:
            sys.exit(run.stderr)
        names = run.stdout.splitlines()
        counts = {}
        for number, name in enumerate(names, 1):
            with open(f"{folder}/out.{number}", encoding="utf-8") as dump:
                counts[name] = int(re.search(r"^(?:summary|totals): (\d+)", dump.read(), re.M)[1])
        assert len(glob.glob(f"{folder}/out.*")) >= len(names)
        return counts
