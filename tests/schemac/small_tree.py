"""A small source tree for the tests of the schema compiler: the schemas below tree/, which use
every word of every language, and the hand-written C++ that they name.
"""

import pathlib
import shutil
import sys
import tempfile
import unittest

HERE = pathlib.Path(__file__).parent
PROJECT = HERE.parents[1]
sys.path.insert(0, str(PROJECT / "tools/schemac"))

import schemac  # noqa: E402
from sources import SchemaError  # noqa: E402

CLASSES = """
    KRString22 KRString32 KRString255 KRString390 KRDynamicArrayString KRBoxConversion
""".split()
HAND_WRITTEN = {
    "core/classes.h": "".join(f"class {name} {{}};\n" for name in CLASSES),
    "envelope/file.h": "class KRFile {};\n",
    "model/factory.cpp": "u16* KRDataObjFactory::NewUShort();\n"
    "KRString22* KRDataObjFactory::NewString(u16 version);\n",
    "boxes/rules.h": "",
    "boxes/entry.h": "class KROFX_API Entry : public KRPerson {};\n",
    "boxes/rules.cpp": "KRParseStatus KRBox::HandleTagStart(int);\n"
    "KRBuildStatus KRBox::Build(int) const;\n"
    "u16 UnmetRuleOfBox(int);\n",
}


class SmallTree(unittest.TestCase):
    """A test with a copy of the small tree of its own, in `source`."""

    def setUp(self):
        folder = pathlib.Path(tempfile.mkdtemp())
        self.addCleanup(shutil.rmtree, folder)
        self.source, self.out = folder / "src", folder / "out"
        shutil.copytree(HERE / "tree", self.source)
        for name, text in HAND_WRITTEN.items():
            (self.source / "krofx" / name).write_text(text)

    def schema(self, name):
        return self.source / "krofx" / f"{name}.schema"

    def write(self, name, text):
        self.schema(name).write_text(text)

    def check(self):
        """Reads and checks the schemas; the error, or None when all is well."""
        try:
            schemac.Project(self.source)
        except SchemaError as error:
            return str(error)
        return None

    def outputs(self):
        return schemac.Project(self.source).outputs()
