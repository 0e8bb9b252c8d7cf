"""Tests of the roots that a build takes: python3 roots_test.py PROJECT CMAKE [OPTION...].

The options are those that a build folder is configured with.
"""

import ast
import pathlib
import re
import shutil
import subprocess
import sys
import tempfile
import unittest

PROJECT, *CMAKE = sys.argv[1:]
PROJECT = pathlib.Path(PROJECT)
del sys.argv[1:]
SCRIPT = PROJECT / "tools/roots/embed_roots.py"
SHIPPED = PROJECT / "src/krofx/security/roots"
IDS = ("1000", "2000", "3000", "4000", "4001")
# Parts of the build that this test does not need.
LEFT_OUT = [f"-DKROFX_BUILD_{part}=OFF" for part in ("TESTS", "TOOLS", "EXAMPLES")]


def run(*command):
    return subprocess.run(command, capture_output=True, text=True, check=False)


def embedded(source):
    """The bytes that a written source gives to each root."""
    text = source.read_text()
    found = {}
    for root, literals in re.findall(r"k(\d+)\[\] =([^;]+);", text):
        found[root] = ast.literal_eval("b" + " b".join(literals.split()))
    for root, length in re.findall(r"\{k(\d+), (\d+), \1\};", text):
        assert int(length) == len(found[root])
    return found


class Roots(unittest.TestCase):
    def setUp(self):
        self.folder = pathlib.Path(tempfile.mkdtemp())
        self.addCleanup(shutil.rmtree, self.folder)
        self.roots = self.folder / "roots"
        shutil.copytree(SHIPPED, self.roots)

    def swap(self):
        """Puts one root into the place of another."""
        shutil.copy(SHIPPED / "4001.der", self.roots / "1000.der")

    def refuse(self, *words):
        result = run(sys.executable, SCRIPT, self.roots, self.folder / "out.cpp")
        self.assertEqual(result.returncode, 1)
        for word in words:
            self.assertIn(word, result.stderr)
        self.assertFalse((self.folder / "out.cpp").exists())


class Script(Roots):
    def test_writes_the_bytes_of_the_files(self):
        out = self.folder / "a/b/out.cpp"
        self.assertEqual(run(sys.executable, SCRIPT, self.roots, out).returncode, 0)
        expected = {root: (SHIPPED / f"{root}.der").read_bytes() for root in IDS}
        self.assertEqual(embedded(out), expected)

    def test_only_looks_without_an_output(self):
        result = run(sys.executable, SCRIPT, self.roots)
        self.assertEqual((result.returncode, result.stdout, result.stderr), (0, "", ""))

    def test_refuses_a_missing_file(self):
        for root in IDS:
            path = self.roots / f"{root}.der"
            path.unlink()
            self.refuse(str(path), "No such file")
            shutil.copy(SHIPPED / path.name, path)

    def test_refuses_what_is_no_certificate(self):
        path = self.roots / "2000.der"
        good = path.read_bytes()
        pem = b"-----BEGIN CERTIFICATE-----\n"
        for bad in (b"", b"\x30", b"\x30\x80", pem, good[:-1], good + b"\0", b"\x30\x00", good[4:]):
            path.write_bytes(bad)
            self.refuse(str(path), "not a certificate")

    def test_refuses_a_certificate_of_more_than_16_bits(self):
        inner = bytes.fromhex("020101" * 6)
        parts = b"\x30" + bytes([len(inner)]) + inner + b"\x30\x00" + b"\x03\x82\xff\xff"
        parts += bytes(0xFFFF)
        (self.roots / "3000.der").write_bytes(b"\x30\x83" + len(parts).to_bytes(3, "big") + parts)
        self.refuse("3000.der", "65535")


class Build(Roots):
    def configure(self):
        command = [*CMAKE, *LEFT_OUT, "-S", PROJECT, "-B", self.folder / "build"]
        return run(*command, f"-DKROFX_ROOTS_DIR={self.roots}")

    def build(self):
        result = run(CMAKE[0], "--build", self.folder / "build", "--target", "krofx_roots")
        self.assertEqual(result.returncode, 0, result.stdout + result.stderr)
        return embedded(self.folder / "build/generated/krofx/security/trusted_roots.cpp")

    def test_takes_the_folder_that_is_named_and_follows_its_files(self):
        self.swap()
        result = self.configure()
        self.assertEqual(result.returncode, 0, result.stderr)
        real = (SHIPPED / "4001.der").read_bytes()
        self.assertEqual(self.build()["1000"], real)
        shutil.copy(SHIPPED / "4000.der", self.roots / "3000.der")
        after = self.build()
        self.assertEqual(after["3000"], (SHIPPED / "4000.der").read_bytes())
        self.assertEqual(after["1000"], real)

    def test_stops_at_a_folder_that_will_not_do(self):
        (self.roots / "4000.der").unlink()
        result = self.configure()
        self.assertNotEqual(result.returncode, 0)
        self.assertIn("KROFX_ROOTS_DIR", result.stderr)
        self.assertIn("4000.der", result.stderr)


if __name__ == "__main__":
    unittest.main()
