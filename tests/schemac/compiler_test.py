"""What the schema compiler writes, and how it is run. What it refuses is in refusals_test.py.

Most tests compile the small tree with one more file.
"""

import os
import pathlib
import re
import shutil
import subprocess
import sys
import tempfile
import unittest

from small_tree import HERE, PROJECT, SmallTree

import schemac

GOOD = """\
schema aggregates

# A file.

/// A probe.
aggregate KRProbe : KRDataObj = BOX
  ACCTID  KRString22  required  Number
"""


class Probe(SmallTree):
    """Compiles the small tree with krofx/boxes/probe.schema."""

    def compile(self, text):
        self.write("boxes/probe", text)
        return self.outputs()

    def row(self, row):
        return GOOD + "  " + row + "\n"

    def refuse(self, text, *words):
        self.write("boxes/probe", text)
        error = self.check() or ""
        for word in ("probe.schema", *words):
            self.assertIn(word, error)


class Refused(Probe):
    """Mistakes other than misspelt words."""

    def test_refuses_a_schema_without_its_language(self):
        self.refuse(GOOD.removeprefix("schema aggregates\n"), ":1:", "schema")
        self.refuse("", ":1:", "schema")
        self.refuse("schema tags\n", "probe.schema", "tags")

    def test_refuses_a_tree_without_a_schema_of_each_language(self):
        for name in ("core/tags", "model/factory", "envelope/routing"):
            with self.subTest(schema=name):
                text = self.schema(name).read_text()
                self.schema(name).unlink()
                self.assertIn(f"the language {name.split('/')[1]}", self.check())
                self.write(name, text)

    def test_refuses_what_is_no_text(self):
        self.schema("boxes/probe").write_bytes(b"schema aggregates\n# \xff\n")
        self.assertIn("probe.schema:1: error: no UTF-8", self.check())

    def test_refuses_an_unknown_class_of_text(self):
        self.refuse(self.row("NAME KRString33 optional Name"), ":8:", "KRString33")

    def test_refuses_versions_that_are_not_there(self):
        self.refuse(self.row("NAME KRString32 optional V3 Name"), ":8:", "V3")
        self.refuse(self.row("NAME KRString32 required(V3) Name"), ":8:", "V3")

    def test_refuses_a_class_that_is_there_and_a_base_that_is_not(self):
        self.refuse(GOOD.replace("KRProbe", "KRPerson"), ":6:", "KRPerson")
        self.refuse(GOOD.replace("KRProbe", "KRDataObj"), ":6:", "KRDataObj")
        self.refuse(GOOD.replace("KRDataObj", "KRNoSuchBase"), ":6:", "KRNoSuchBase")

    def test_refuses_bases_in_a_circle(self):
        self.refuse(GOOD.replace("KRDataObj", "KRProbe"), ":6:", "KRProbe")
        more = "\n/// More.\nbase KRMore : KRProbe\n"
        self.refuse(GOOD.replace("KRDataObj", "KRMore") + more, ":10:", "base of itself")

    def test_refuses_a_class_without_comment(self):
        self.refuse(GOOD.replace("/// A probe.\n", ""), "KRProbe has no comment")

    def test_refuses_a_comment_that_is_not_right_above_what_it_is_about(self):
        self.refuse(self.row("/// Lost.\n\n  NAME KRString32 optional Name"), ":9:", "/// Lost.")
        self.refuse(self.row("/// Lost.\n    NAME KRString32 optional Name"), ":9:", "/// Lost.")
        self.refuse(self.row("/// Lost.\n    /// So."), ":9:", "/// So.")
        self.refuse(self.row("/// Lost.\n  # A note."), ":9:", "/// Lost.")
        self.refuse(self.row("/// Lost.\n  rule none ACCTID"), ":9:", "rule")
        self.refuse(self.row("/// Lost."), "/// Lost.")
        self.refuse("schema aggregates\n\n/// Lost.\npayroll\n", ":4:", "payroll")

    def test_refuses_rows_that_no_class_has(self):
        self.refuse("schema aggregates\n\n  NAME KRString32 optional Name\n", ":3:", "NAME")
        self.write("boxes/boxes", self.schema("boxes/boxes").read_text().replace(
            "file.h\n", "file.h\n  NAME KRString32 optional Name\n"
        ))
        self.assertIn(":8: error: NAME", self.check())

    def test_refuses_a_child_that_cannot_be_made(self):
        self.refuse(self.row("KEY child KROwner optional Key"), ":8:", "KROwner")
        self.refuse(self.row("KEY children KRNumbered optional Key"), ":8:", "KRNumbered")

    def test_refuses_a_shared_row_that_does_not_suit_its_slot_or_array(self):
        slot = "slot Renter KROwner\n  PERSON child KRPerson optional in Renter\n  "
        self.assertIsNone(self.refused_row(slot))
        self.refuse(self.row(slot + "OWNER child KRBox optional in Renter"), ":10:", "KRBox")
        self.refuse(self.row(slot + "OWNER children KRPerson optional in Renter"), ":10:", "Renter")
        self.refuse(self.row("OWNER child KRBox optional in Nowhere"), ":8:", "Nowhere")
        array = "array Some KROwner\n  PERSON children KRPerson optional Person in Some"
        self.refuse(self.row(array), ":9:", "PERSON")

    def refused_row(self, row):
        self.write("boxes/probe", self.row(row))
        return self.check()

    def test_refuses_a_row_without_a_name_for_its_accessors(self):
        self.refuse(self.row("NAME KRString32 optional"), ":8:", "NAME")

    def test_refuses_two_rows_of_one_name(self):
        self.refuse(self.row("NAME KRString32 optional Number"), ":8:", "Number")
        slot = "slot Number KRPerson\n  KEY child KRPerson optional in Number"
        self.refuse(self.row(slot), "Number")

    def test_refuses_a_word_that_does_not_suit_the_row(self):
        for row, word in (
            ("NAME KRString32 optional Name in Somewhere", "in"),
            ("NAME KRString32 optional Name grow 2", "grow"),
            ("NAME KRString32 optional Name pad 2", "pad"),
            ("KEY child KRPerson optional Key pad 2", "pad"),
            ("KEY child KRPerson optional Key closed", "closed"),
            ("KEY child KRPerson optional Key by hand", "by"),
            ("KEY listed optional", "optional"),
        ):
            self.refuse(self.row(row), ":8:", word)

    def test_refuses_lines_about_rows_that_the_class_does_not_have(self):
        self.refuse(self.row("rule none NAME"), ":8:", "NAME")
        self.refuse(self.row("rule when NAME : none ACCTID"), ":8:", "NAME")
        self.refuse(self.row("requires NAME"), ":8:", "NAME")
        self.refuse(self.row("preset NAME x"), ":8:", "NAME")
        self.refuse(self.row("rules_only"), "KRProbe")

    def test_refuses_lines_that_lack_a_word(self):
        lines = ["rule", "rule none", "rule when NAME", "version", "include", "splice", "requires"]
        lines += ["unmet_rules", "unmet_rules in", "override", "override Build"]
        lines += ["override Build in", "slot", "slot Name", "preset"]
        lines += ["NAME", "NAME KRString32", "NAME child", 'preset ACCTID "x']
        for line in lines:
            with self.subTest(line=line):
                self.refuse(self.row(line), ":8:")

    def test_refuses_an_override_that_its_file_does_not_define(self):
        self.refuse(self.row("override Build in krofx/boxes/rules.cpp"), ":8:", "KRProbe::Build")
        self.refuse(self.row("override Build in krofx/boxes/none.cpp"), ":8:", "boxes/none.cpp")

    def test_refuses_rules_that_their_file_does_not_define(self):
        self.refuse(self.row("unmet_rules in krofx/boxes/rules.cpp"), ":8:", "UnmetRuleOfProbe")
        self.refuse(self.row("unmet_rules in krofx/boxes/none.cpp"), ":8:", "boxes/none.cpp")

    def test_refuses_a_header_that_does_not_declare_its_class(self):
        text = "schema aggregates\n\nclass KRElse in krofx/envelope/file.h\n"
        self.refuse(text, ":3:", "KRElse")

    def test_refuses_to_derive_via_a_class_that_its_header_does_not_declare(self):
        self.refuse(self.row("via Lid in krofx/boxes/none.h"), ":8:", "Lid")
        self.refuse(self.row("via"), ":8:")
        self.refuse(self.row("via Lid"), ":8:", "in")

    def test_derives_via_a_class_that_is_written_by_hand(self):
        header = self.source / "krofx/boxes/lid.h"
        header.write_text("class KROFX_API Lid : public KRDataObj {\n};\n")
        probe = self.compile(self.row("via Lid in krofx/boxes/lid.h"))
        probe = probe["krofx/boxes/probe.h"]
        self.assertIn("class KROFX_API KRProbe : public krofx::internal::Lid {", probe)
        self.assertIn('#include "krofx/boxes/lid.h"', probe)

    def test_refuses_lines_for_the_class_that_do_not_end(self):
        self.refuse(self.row("declare\n    u16 Ask();"), ":8:", "end")
        self.refuse(self.row("members\n    u16 m_ask;\n\n/// Next.\nbase KRNext : KRBox"), "end")

    def test_refuses_to_splice_what_is_not_there(self):
        text = GOOD + "\n/// More.\naggregate KRMore : KRProbe\n  splice "
        self.assertIn("KRMore", self.compile(text + "KRProbe ACCTID")["krofx/boxes/probe.h"])
        self.refuse(text + "KRPrube", ":11:", "KRPrube")
        self.refuse(text + "KRPerson", ":11:", "KRPerson")
        self.refuse(text + "KRProbe NAME", ":11:", "NAME")
        self.refuse(text + "KRProbe ACCTID to NAME", ":11:", "NAME")
        self.refuse(text + "KRProbe ACCTID NAME", ":11:", "NAME")
        self.refuse(text + "KRProbe\n  splice KRProbe", ":12:", "ACCTID")
        turned = text.replace("  ACCTID", "  NAME s32 optional Name\n  ACCTID")
        self.refuse(turned + "KRProbe ACCTID to NAME", ":12:", "ACCTID comes after NAME")

    def test_refuses_more_rows_than_presence_has_bits(self):
        tags = [f"T{number}" for number in range(97)]
        known = self.schema("core/tags").read_text()
        self.write("core/tags", known + "\nids 55 to 151\n" + " ".join(tags) + "\n")
        head = "schema aggregates\n\n# A file.\n\n/// A probe.\naggregate KRProbe : KRDataObj\n"
        rows = [f"  {tag} KRString22 optional Word{i}\n" for i, tag in enumerate(tags)]
        self.assertIn("krofx/boxes/probe.h", self.compile(head + "".join(rows[:96])))
        self.refuse(head + "".join(rows), ":6:", "96")

    def test_refuses_an_operation_whose_maker_is_not_there(self):
        operation = "hand u16* NewShort() in krofx/model/factory.cpp"
        self.write("model/factory", f"schema factory\n\n{operation}\n")
        self.assertIn(":3: error: krofx/model/factory.cpp does not define", self.check())
        self.write("model/factory", "schema factory\n\nNumbered\n")
        self.assertIn("Numbered", self.check())

    def test_refuses_a_payload_under_the_tag_of_another(self):
        text = self.schema("envelope/routing").read_text()
        self.write("envelope/routing", text.replace("BOX=KRBox", "BOXRS=KRBox"))
        self.assertIn(":8: error: the tag of KRBox is BOX", self.check())

    def test_refuses_a_hole_in_the_numbers_of_tags(self):
        text = self.schema("core/tags").read_text()
        self.write("core/tags", text.replace("ids 15 to", "ids 16 to"))
        self.assertIn(":9: error: 16", self.check())
        self.write("core/tags", text.replace("15 to 21", "15 to 20"))
        self.assertIn(":9: error: 20", self.check())


class Written(Probe):
    """What is written for a class."""

    def probe(self, *rows):
        """(comment, declaration) of each accessor of a class with these rows."""
        header = self.compile(GOOD + "".join(f"  {row}\n" for row in rows))["krofx/boxes/probe.h"]
        text = header.split("class KROFX_API KRProbe")[1]
        return re.findall(r"((?: +///.*\n)+) +(.*?)[;{]", text)

    def test_says_in_every_accessor_what_the_row_means_and_its_type_use_and_versions(self):
        rows = ["/// The name that the customer gave the account,", "/// in plain words."]
        rows += ["NAME KRString32 optional V2+ Name", "DTOPEN KRDateTime required Start"]
        found = [
            comment
            for comment, declaration in self.probe(*rows)
            if re.search(r"\b(Get|Has|Set|Clear)Name\(", declaration)
        ]
        self.assertEqual(len(found), 4)
        text = "  /// The name that the customer gave the account, in plain words.\n"
        line = "  /// NAME: text, at most 32 characters, optional, V2 and later.\n"
        for comment in found:
            self.assertIn(text, comment)
            self.assertIn(line, comment)

    def test_says_in_every_accessor_of_a_list_what_its_row_means(self):
        rows = ["/// The keys of a box.", "KEY children KRPerson optional Line"]
        rows += ["/// When to call.", "KEYS repeated KRDynamicArrayString optional Hour"]
        tried = 0
        for comment, declaration in self.probe(*rows):
            if re.search(r"Line(s\b|\()", declaration):
                self.assertIn("/// The keys of a box.\n", comment, declaration)
                tried += 1
            if "Hour(" in declaration:
                self.assertIn("/// When to call.\n", comment, declaration)
                tried += 1
        self.assertEqual(tried, 15)

    def test_lists_the_rows_of_a_shared_array_where_its_entries_are_read(self):
        rows = ["/// Both kinds.", "array Kinds KRPerson"]
        rows += ["/// The first.", "MEMO children KRPerson optional in Kinds"]
        rows += ["MEMO2 children KRPerson optional V2+ in Kinds"]
        comments = {declaration: comment for comment, declaration in self.probe(*rows)}
        shown = comments["KRPerson* GetKinds(u16 index) const"]
        self.assertIn("/// Both kinds.\n  /// Kinds: one list for several tags.\n", shown)
        self.assertIn("/// - MEMO: KRPerson, optional, all versions. The first.\n", shown)
        self.assertIn("/// - MEMO2: KRPerson, optional, V2 and later.\n", shown)

    def test_lists_the_rows_of_derived_classes_where_a_shared_child_is_read(self):
        rows = "  slot Renter KROwner\n\n/// More.\naggregate KRMore : KRProbe\n"
        rows += "  /// Who pays.\n  PERSON child KRPerson optional in Renter\n"
        header = self.compile(GOOD + rows)["krofx/boxes/probe.h"]
        line = "  /// - PERSON: KRPerson, optional, all versions. Who pays.\n"
        self.assertIn(line + "  KROwner* GetRenter() const;\n", header)

    def test_asks_for_the_presence_of_every_row_by_its_name(self):
        rows = ["NAME KRString32 optional Name", "KEY child KRPerson optional Key"]
        rows += ["OWNER children KRPerson optional Owner"]
        rows += ["PERSON embedded KRPerson optional Person"]
        rows += ["KEYS repeated KRDynamicArrayString optional Keys"]
        declared = [declaration for _, declaration in self.probe(*rows)]
        for name in ("Number", "Name", "Key", "Owner", "Person", "Keys"):
            self.assertEqual(declared.count(f"u16 Has{name}() const "), 1, name)

    def test_leaves_a_declared_question_for_presence_to_the_class(self):
        rows = ["NAME KRString32 optional Name", "declare"]
        rows += ["  /// By hand.", "  u16 HasName() const;", "end"]
        declared = [declaration for _, declaration in self.probe(*rows)]
        self.assertEqual([d for d in declared if "HasName" in d], ["u16 HasName() const"])

    def spliced(self, rows):
        """The tags of a class with these rows, whose base has three."""
        text = "schema aggregates\n\n# A file.\n\n/// A base.\nbase KRBase : KRDataObj\n"
        text += "  ACCTID KRString22 required Number\n  NAME KRString32 optional Name\n"
        text += "  MEMO s32 required Memo\n\n/// A probe.\naggregate KRProbe : KRBase\n"
        outputs = self.compile(text + "".join(f"  {row}\n" for row in rows))
        header = outputs["krofx/boxes/probe.h"]
        self.assertNotIn("m_memo", header.split("class KROFX_API KRProbe")[1])
        source = outputs["krofx/boxes/probe.cpp"].split("KRProbe::GetTable()")[1]
        return re.findall(r"\{KRTag_(\w+), 0xffff\}", source.split("kPositions")[0])

    def test_splices_rows_of_an_ancestor_where_the_wire_wants_them(self):
        self.assertEqual(
            self.spliced(["KEY s32 optional Key", "splice KRBase", "CITY s32 optional City"]),
            ["KEY", "ACCTID", "NAME", "MEMO", "CITY"],
        )
        self.assertEqual(
            self.spliced(["splice KRBase NAME to MEMO", "splice KRBase ACCTID"]),
            ["NAME", "MEMO", "ACCTID"],
        )

    def test_puts_a_file_under_the_customs_of_the_payroll_tags(self):
        text = self.row("OPEN boolean optional Flag")
        for head, texts, lenient in (("", 0, 0), ("payroll\n\n", 1, 2)):
            outputs = self.compile(text.replace("# A file.\n", "# A file.\n\n" + head))
            header = outputs["krofx/boxes/probe.h"]
            self.assertEqual(header.count("u16 SetFlag(const char* text);"), texts)
            source = outputs["krofx/boxes/probe.cpp"]
            self.assertEqual(source.count(".lenient = true"), lenient)

    def test_puts_a_new_class_after_the_others_in_the_factory(self):
        header = self.compile(GOOD)["krofx/model/factory.h"]
        self.assertEqual(
            re.findall(r"virtual \S+ New(\w+)\(", header),
            "UShort String File Person Company Listed Box BoxRs Probe".split(),
        )


class Program(Probe):
    """The compiler as a program."""

    def run_compiler(self, *options, **environment):
        command = [sys.executable, PROJECT / "tools/schemac/schemac.py"]
        command += ["--source", self.source, "--out", self.out, *options]
        environment = {**os.environ, **environment}
        return subprocess.run(command, capture_output=True, text=True, check=False, env=environment)

    def test_lists_what_it_writes(self):
        listed = self.run_compiler("--list").stdout.split()
        self.assertFalse(self.out.exists())
        self.assertEqual(self.run_compiler().returncode, 0)
        written = [str(path) for path in self.out.rglob("*") if path.is_file()]
        self.assertEqual(sorted(listed), sorted(written))
        self.assertIn(str(self.out / "krofx/boxes/boxes.h"), listed)

    def test_writes_the_same_whatever_the_order_of_a_set_is(self):
        texts = []
        for seed in ("1", "2"):
            self.run_compiler(PYTHONHASHSEED=seed)
            texts.append({p: p.read_text() for p in self.out.rglob("*") if p.is_file()})
            shutil.rmtree(self.out)
        self.assertEqual(texts[0], texts[1])

    def test_leaves_an_unchanged_file_alone(self):
        self.run_compiler()
        path = self.out / "krofx/boxes/boxes.h"
        before = path.stat().st_mtime_ns
        self.run_compiler()
        self.assertEqual(path.stat().st_mtime_ns, before)

    def test_writes_nothing_after_a_mistake(self):
        self.write("boxes/probe", self.row("NAME KRStrong32 optional Name"))
        for options in ((), ("--list",)):
            result = self.run_compiler(*options)
            self.assertEqual(result.returncode, 1)
            self.assertEqual(result.stdout, "")
            self.assertRegex(result.stderr, r"boxes/probe\.schema:8: error: no type KRStrong32\n$")
        self.assertFalse(self.out.exists())


class OwnSchemas(unittest.TestCase):
    """The project's own schemas."""

    @classmethod
    def setUpClass(cls):
        project = schemac.Project(PROJECT / "src")
        cls.model = project.model
        cls.factory = project.outputs()["krofx/model/factory.h"]

    def test_gives_the_factory_every_operation_in_its_order(self):
        operations = re.findall(r"virtual \S+ New(\w+)\(", self.factory)
        expected = (HERE / "factory_operations.txt").read_text().split()
        self.assertEqual(operations[: len(expected)], expected)
        # The sign-on of a payroll is made by the host that sends it, so it is last.
        self.assertEqual(operations[len(expected) :], ["PayrollSignOnRq"])

    def test_makes_the_first_operations_of_the_factory_take_no_version(self):
        for name in ("UShort", "ParseException", "MIMEHeader", "Language"):
            self.assertRegex(self.factory, rf"New{name}\(\);")
        self.assertRegex(self.factory, r"NewStatus\(u16 version\);")

    def test_repeats_no_row_of_an_ancestor_word_for_word(self):
        self.maxDiff = None
        repeated = []
        for cls in self.model.classes.values():
            lines = cls.file.schema.path.read_text().split("\n")
            own = {" ".join(lines[row.place.line - 1].split()): row for row in cls.rows}
            for ancestor in self.model.ancestors(cls):
                text = ancestor.file.schema.path.read_text().split("\n")
                for row in ancestor.rows:
                    line = " ".join(text[row.place.line - 1].split())
                    if line in own and not line.startswith("splice"):
                        repeated.append(f"{own[line].place}: {line}")
        self.assertEqual(repeated, [])

    def test_says_in_sentences_what_every_row_slot_and_array_means(self):
        self.maxDiff = None
        model = schemac.Project(PROJECT / "src").model
        silent = []
        for cls in model.classes.values():
            about = [(row, row.tag) for row in cls.rows]
            about += [(shared, shared.name) for shared in cls.shared]
            for thing, name in about:
                text = " ".join(line.removeprefix("///").strip() for line in thing.comment)
                if not re.fullmatch(r"[A-Z0-9].* .*\.", text):
                    silent.append(f"{thing.place}: {name}: {text}")
        self.assertEqual(silent, [])


class ShownClass(unittest.TestCase):
    """docs/schema.md shows a schema and the class that is generated from it. To write both into
    the document: compiler_test.py --show."""

    DOCUMENT = PROJECT / "docs/schema.md"

    @staticmethod
    def shown(document):
        """The document with its two blocks as they have to be."""
        vault = (HERE / "vault.schema").read_text()
        with tempfile.TemporaryDirectory() as folder:
            source = pathlib.Path(folder) / "src"
            shutil.copytree(PROJECT / "src", source, copy_function=os.symlink)
            (source / "krofx/messages/banking/vault.schema").write_text(vault)
            header = schemac.Project(source).outputs()["krofx/messages/banking/vault.h"]
        for marker, text in (("tests/schemac/vault.schema", vault), ("vault.h", header)):
            opening, rest = re.fullmatch(
                rf"(.*?{re.escape(marker)} -->\n```\w*\n)(.*)", document, re.DOTALL
            ).groups()
            document = opening + text + rest[rest.index("```") :]
        return document

    def test_is_shown_as_it_is_generated(self):
        self.maxDiff = None
        document = self.DOCUMENT.read_text()
        self.assertEqual(document, self.shown(document))


if __name__ == "__main__":
    if sys.argv[1:] == ["--show"]:
        ShownClass.DOCUMENT.write_text(ShownClass.shown(ShownClass.DOCUMENT.read_text()))
    else:
        unittest.main()
