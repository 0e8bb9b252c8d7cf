"""Tests of the schema compiler: python3 compiler_test.py PROJECT.

The compiler is run over a copy of the project's schemas with one more file, so that a mistake in
that file is all there is to find.
"""

import pathlib
import re
import shutil
import subprocess
import sys
import tempfile
import unittest

PROJECT = pathlib.Path(sys.argv.pop(1)) if len(sys.argv) > 1 else pathlib.Path(__file__).parents[2]
GOOD = """\
# A file.

/// A probe.
aggregate KRProbe : KRDataObj = ACCTINFO
  ACCTID  KRString22  required  Number
"""


class Compiler(unittest.TestCase):
    def setUp(self):
        self.folder = pathlib.Path(tempfile.mkdtemp())
        self.addCleanup(shutil.rmtree, self.folder)
        for schema in (PROJECT / "src").rglob("*.schema"):
            target = self.folder / "src" / schema.relative_to(PROJECT / "src")
            target.parent.mkdir(parents=True, exist_ok=True)
            shutil.copy(schema, target)

    def compile(self, text=None, *options):
        if text is not None:
            (self.folder / "src/krofx/messages/banking/probe.schema").write_text(text)
        command = [sys.executable, PROJECT / "tools/schemac/schemac.py"]
        command += ["--source", self.folder / "src", "--out", self.folder / "out", *options]
        return subprocess.run(command, capture_output=True, text=True, check=False)

    def output(self, name):
        return (self.folder / "out/krofx" / name).read_text()

    def refuse(self, text, *words):
        result = self.compile(text)
        self.assertNotEqual(result.returncode, 0)
        for word in ("probe.schema", *words):
            self.assertIn(word, result.stderr)

    def row(self, row):
        return GOOD + "  " + row + "\n"

    def test_lists_what_it_writes(self):
        listed = self.compile(GOOD, "--list").stdout.split()
        self.assertFalse((self.folder / "out").exists())
        self.assertEqual(self.compile(GOOD).returncode, 0)
        written = [str(p) for p in (self.folder / "out").rglob("*") if p.is_file()]
        self.assertEqual(sorted(listed), sorted(written))
        self.assertIn(str(self.folder / "out/krofx/messages/banking/probe.h"), listed)

    def test_leaves_an_unchanged_file_alone(self):
        self.compile(GOOD)
        path = self.folder / "out/krofx/messages/banking/probe.h"
        before = path.stat().st_mtime_ns
        self.compile(GOOD)
        self.assertEqual(path.stat().st_mtime_ns, before)

    def test_writes_the_same_twice(self):
        self.compile(GOOD)
        first = {p: p.read_text() for p in (self.folder / "out").rglob("*.cpp")}
        shutil.rmtree(self.folder / "out")
        self.compile(GOOD)
        self.assertEqual(first, {p: p.read_text() for p in (self.folder / "out").rglob("*.cpp")})

    def test_refuses_an_unknown_tag(self):
        self.refuse(self.row("NOSUCHTAG KRString1 optional X"), ":6:", "NOSUCHTAG")

    def test_refuses_an_unknown_type(self):
        self.refuse(self.row("NAME KREnormous optional Name"), "KREnormous")

    def test_refuses_an_unknown_use_or_word(self):
        self.refuse(self.row("NAME KRString32 maybe Name"), ":6:")
        self.refuse(self.row("NAME KRString32 optional Name somehow"), ":6:", "somehow")

    def test_refuses_an_unknown_rule(self):
        self.refuse(self.row("rule sometimes ACCTID"), ":6:", "sometimes")

    def test_refuses_an_unknown_block(self):
        self.refuse("thing KRProbe : KRDataObj\n", ":1:")

    def test_refuses_a_class_that_is_there_and_a_base_that_is_not(self):
        self.refuse(GOOD.replace("KRProbe", "KRStatus"), "KRStatus")
        self.refuse(GOOD.replace("KRDataObj", "KRNoSuchBase"), "KRNoSuchBase")

    def test_refuses_a_class_without_comment(self):
        self.refuse(GOOD.replace("/// A probe.\n", ""), "comment")

    def test_refuses_a_shared_slot_that_is_not_there(self):
        self.refuse(self.row("CURRENCY child KRCurrency optional in Nowhere"), "Nowhere")

    def test_refuses_more_rows_than_presence_has_bits(self):
        self.compile()
        known = re.findall(r"KRTag_([A-Z0-9]+) =", self.output("core/tags.h"))[:97]
        self.assertEqual(len(known), 97)
        head = "/// A probe.\naggregate KRProbe : KRDataObj\n"
        rows = [f"  {tag} KRString1 optional Word{i}\n" for i, tag in enumerate(known)]
        self.assertEqual(self.compile(head + "".join(rows[:96])).returncode, 0)
        self.refuse(head + "".join(rows), "96")

    def test_refuses_a_comment_that_is_not_right_above_what_it_is_about(self):
        self.refuse(self.row("/// Lost.\n\n  NAME KRString32 optional Name"), ":7:", "comment")
        self.refuse(self.row("/// Lost.\n    NAME KRString32 optional Name"), ":7:", "comment")
        self.refuse(self.row("/// Lost.\n  rule none ACCTID"), ":7:", "rule")
        self.refuse(self.row("/// Lost."), "comment")

    def probe(self, *rows):
        """Groups of declarations of the class: the lines of each comment, then its declaration."""
        result = self.compile(GOOD + "".join(f"  {row}\n" for row in rows))
        self.assertEqual(result.stderr, "")
        text = self.output("messages/banking/probe.h").split("class KROFX_API KRProbe")[1]
        return re.findall(r"((?: +///.*\n)+) +(.*?)[;{]", text)

    def test_says_in_every_accessor_what_the_row_means_and_its_type_use_and_versions(self):
        rows = ["/// The name that the customer gave the account,", "/// in plain words."]
        rows += ["NAME KRString32 optional V2+ Name", "DTSTART KRDateTime required Start"]
        found = [
            comment
            for comment, declaration in self.probe(*rows)
            if re.search(r"\b(Get|Has|Set|Clear)Name\(", declaration)
        ]
        self.assertEqual(len(found), 4)
        for comment in found:
            self.assertIn("  /// The name that the customer gave the account, in plain words.\n", comment)
            self.assertIn("  /// NAME: text, at most 32 characters, optional, V2 and later.\n", comment)

    def test_says_in_every_accessor_of_a_list_what_its_row_means(self):
        rows = ["/// The lines of a picture.", "MSGBODY children KRStatus optional Line"]
        rows += ["/// When to call.", "CLTCOOKIE repeated KRDynamicArrayString optional Hour"]
        for comment, declaration in self.probe(*rows):
            if "Line(" in declaration:
                self.assertIn("/// The lines of a picture.\n", comment, declaration)
            if "Hour(" in declaration:
                self.assertIn("/// When to call.\n", comment, declaration)

    def test_lists_the_rows_of_a_shared_array_where_its_entries_are_read(self):
        rows = ["/// Both kinds.", "array Kinds KRStatus"]
        rows += ["/// The first.", "MEMO children KRStatus optional in Kinds"]
        rows += ["MEMO2 children KRStatus optional V2+ in Kinds"]
        comments = {d: c for c, d in self.probe(*rows)}
        shown = comments["KRStatus* GetKinds(u16 index) const"]
        self.assertIn("/// Both kinds.\n  /// Kinds: one list for several tags.\n", shown)
        self.assertIn("/// - MEMO: KRStatus, optional, all versions. The first.\n", shown)
        self.assertIn("/// - MEMO2: KRStatus, optional, V2 and later.\n", shown)

    def test_asks_for_the_presence_of_every_row_by_its_name(self):
        rows = ["NAME KRString32 optional Name", "STATUS child KRStatus optional Status"]
        rows += ["MSGBODY children KRStatus optional Line"]
        rows += ["CLTCOOKIE repeated KRDynamicArrayString optional Hour"]
        declared = [declaration for _, declaration in self.probe(*rows)]
        for name in ("Number", "Name", "Status", "Line", "Hour"):
            self.assertEqual(declared.count(f"u16 Has{name}() const "), 1, name)

    def test_leaves_a_declared_question_for_presence_to_the_class(self):
        rows = ["NAME KRString32 optional Name", "declare"]
        rows += ["  /// By hand.", "  u16 HasName() const;", "end"]
        declared = [declaration for _, declaration in self.probe(*rows)]
        self.assertEqual([d for d in declared if "HasName" in d], ["u16 HasName() const"])

    def spliced(self, rows):
        """The tags of a class whose rows are `rows` and whose base has three."""
        base = "ACCTID KRString22 required Number|NAME KRString32 optional Name|MEMO s32 required Memo"
        text = "/// A base.\nbase KRBase : KRDataObj\n  " + base.replace("|", "\n  ") + "\n\n"
        text += "/// A probe.\naggregate KRProbe : KRBase = ACCTINFO\n"
        result = self.compile(text + "".join(f"  {row}\n" for row in rows))
        self.assertEqual(result.stderr, "")
        source = self.output("messages/banking/probe.cpp").split("KRProbe::GetTable()")[1]
        return re.findall(r"\{KRTag_(\w+), 0xffff\}", source.split("kSlots")[0])

    def test_splices_rows_of_an_ancestor_where_the_wire_wants_them(self):
        self.assertEqual(
            self.spliced(["FI s32 optional Fi", "splice KRBase", "CITY s32 optional City"]),
            ["FI", "ACCTID", "NAME", "MEMO", "CITY"],
        )
        self.assertEqual(
            self.spliced(["splice KRBase NAME to MEMO", "FI s32 optional Fi", "splice KRBase ACCTID"]),
            ["NAME", "MEMO", "FI", "ACCTID"],
        )
        self.assertNotIn("m_memo", self.output("messages/banking/probe.h").split("KRProbe")[1])

    def test_refuses_to_splice_what_is_not_there(self):
        text = GOOD + "\n/// More.\naggregate KRMore : KRProbe\n  splice "
        self.assertEqual(self.compile(text + "KRProbe ACCTID").returncode, 0)
        self.refuse(text + "KRPrube", ":9:", "KRPrube")
        self.refuse(text + "KRStatus", ":9:", "KRStatus")
        self.refuse(text + "KRProbe NAME", ":9:", "NAME")
        self.refuse(text + "KRProbe ACCTID to NAME", ":9:", "NAME")
        self.refuse(text + "KRProbe ACCTID NAME", ":9:", "splice")
        self.refuse(text.replace("  ACCTID", "  NAME s32 optional Name\n  ACCTID") + "KRProbe ACCTID to NAME", ":10:")

    def test_puts_a_new_class_behind_the_others_in_the_factory(self):
        self.compile(GOOD)
        operations = re.findall(r"virtual \S+ New(\w+)\(", self.output("model/factory.h"))
        order = []
        for line in (PROJECT / "src/krofx/model/factory.schema").read_text().splitlines():
            if line.startswith("hand "):
                order.append(re.search(r"New(\w+)\(", line)[1])
            elif not line.startswith("#"):
                order += line.split()
        self.assertNotIn("Probe", order)
        listed = [name for name in operations if name in order]
        self.assertEqual(listed, [name for name in order if name in operations])
        self.assertEqual(operations[: len(listed)], listed)
        self.assertIn("Probe", operations[len(listed) :])

    def test_puts_a_file_under_the_customs_of_the_payroll_tags(self):
        text = self.row("INCLUDE boolean optional Flag")
        for head, texts, lenient in (("", 0, 0), ("payroll\n\n", 1, 2)):
            self.assertEqual(self.compile(head + text).returncode, 0)
            header = self.output("messages/banking/probe.h")
            self.assertEqual(header.count("u16 SetFlag(const char* text);"), texts)
            source = self.output("messages/banking/probe.cpp")
            self.assertEqual(source.count(".lenient = true"), lenient)

    def test_gives_the_factory_every_operation_in_its_order(self):
        self.compile()
        operations = re.findall(r"virtual \S+ New(\w+)\(", self.output("model/factory.h"))
        expected = (PROJECT / "tests/schemac/factory_operations.txt").read_text().split()
        self.assertEqual(operations[: len(expected)], expected)
        # The sign-on of a payroll is made by the host that sends it, so it came last.
        self.assertEqual(operations[len(expected) :], ["PayrollSignOnRq"])

    def test_finds_a_schema_for_every_class_that_a_row_or_a_route_names(self):
        self.compile()
        made = set(re.findall(r"class (KR\w+)", self.output("model/factory.h")))
        for schema in (PROJECT / "src").rglob("*.schema"):
            text = re.sub(r"^\s*(#|///).*", "", schema.read_text(), flags=re.MULTILINE)
            named = re.findall(r"^  \S+ +(?:child|children|embedded) +(\w+)", text, re.MULTILINE)
            if schema.name == "routing.schema":
                named = re.findall(r"=(KR\w+)", text)
                self.assertGreater(len(named), 80)
            self.assertEqual([name for name in named if name not in made], [], schema)

    def test_makes_the_first_operations_of_the_factory_take_no_version(self):
        self.compile()
        header = self.output("model/factory.h")
        for name in ("UShort", "ParseException", "MIMEHeader", "Language"):
            self.assertRegex(header, rf"New{name}\(\);")
        self.assertRegex(header, r"NewStatus\(u16 version\);")


if __name__ == "__main__":
    unittest.main()
