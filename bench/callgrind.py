"""Counts the instructions of what a program runs through bench::RunCounted, under callgrind."""

import glob
import os
import re
import subprocess
import sys
import tempfile

# What ctest takes for skipped.
SKIPPED = 77

# The environment of the program. The C library has its functions for memory and strings in several
# forms, and takes one by the machine's processor: here it takes the one that every processor has.
# The rest of the environment is left out, so that nothing in it moves the program's memory.
FEATURES = "AVX AVX2 AVX512F AVX512VL AVX512BW BMI1 BMI2 ERMS FSRM LZCNT MOVBE POPCNT SSE4_1 SSE4_2 SSSE3"
ENVIRONMENT = {
    "GLIBC_TUNABLES": "glibc.cpu.hwcaps=" + ",".join(f"-{feature}" for feature in FEATURES.split())
    + ":glibc.cpu.x86_non_temporal_threshold=0x10000000",
    "LC_ALL": "C",
}


def count(program, *arguments):
    """{name: instructions} of the operations, whose names the program prints in their order."""
    with tempfile.TemporaryDirectory() as folder:
        command = ["valgrind", "--tool=callgrind", f"--callgrind-out-file={folder}/out"]
        command += ["--toggle-collect=bench::RunCounted*", "--dump-after=bench::RunCounted(bench::Operation const&)"]
        environment = ENVIRONMENT | {"PATH": os.environ["PATH"], "TMPDIR": folder}
        run = subprocess.run(
            command + [program, *arguments], capture_output=True, text=True, check=False, env=environment
        )
        if run.returncode != 0:
            sys.exit(run.stderr)
        names = run.stdout.splitlines()
        counts = {}
        for number, name in enumerate(names, 1):
            with open(f"{folder}/out.{number}", encoding="utf-8") as dump:
                counts[name] = int(re.search(r"^(?:summary|totals): (\d+)", dump.read(), re.M)[1])
        assert len(glob.glob(f"{folder}/out.*")) >= len(names)
        return counts
