"""What the schema compiler refuses. A small tree uses every word of every language, and these tests
misspell each word in it, add a word to each line, and say each line twice.
"""

import re
import unittest

from small_tree import SmallTree

import aggregate_reader
import row_types
import routing

SCHEMAS = (
    "core/tags values/keywords boxes/boxes model/factory envelope/routing".split()
)
# A word as the compiler sees it, with the parts that it takes apart: TAG(VERSIONS)=CLASS.
WORD = re.compile(r'"[^"]*"|\w[\w./+*-]*|[:=\\]')
# Accessors, values and texts are the schema's to name: any spelling is a good one.
STEMS = """
    Number Name Memo Memo2 City Language DtOpen Time Rent Fee Units UnitPrice Rate Paid DtPaid Open
    Count Change Size Weight Kind Colour Day Key Keys Owners Person Company DtClose USD
""".split()
KEYWORDS = re.compile(r'^  [A-Z ]+("[A-Z ]+")?$')


def statements(text):
    """(number, line) of each line that says something to the compiler."""
    verbatim = False
    for number, line in enumerate(text.split("\n"), 1):
        verbatim = verbatim and line.strip() != "end"
        if line.strip() and not verbatim and not line.lstrip().startswith(("#", "//")):
            yield number, line
        verbatim = verbatim or line.strip() in ("declare", "members")


def misspelt(word):
    """A word with one letter too many; another sign for a sign."""
    if word in (":", "="):
        return ";"
    middle = (len(word) + 1) // 2
    return word[:middle] + ("q" if word[middle - 1].islower() else "Q") + word[middle:]


class Refusals(SmallTree):
    def setUp(self):
        super().setUp()
        self.texts = {name: self.schema(name).read_text() for name in SCHEMAS}

    def change(self, name, number, line):
        """The error that one line brings when it is put in place of what is there."""
        lines = self.texts[name].split("\n")
        lines[number - 1 : number] = line.split("\n")
        self.write(name, "\n".join(lines))
        error = self.check()
        self.write(name, self.texts[name])
        return error

    def test_takes_the_tree_as_it_is(self):
        self.assertIsNone(self.check())

    def test_tree_uses_every_word(self):
        used = set(re.findall(r"[\w-]+", "\n".join(self.texts.values())))
        reader = aggregate_reader
        words = [*reader.RULES, *reader.CLASS_TYPES, *reader.ROW_WORDS]
        words += [*row_types.NUMBERS, *row_types.SCALARS, *row_types.DATES, *routing.RULES]
        words += [word for words in routing.WRAPPER_WORDS.values() for word in words]
        words += [n.removeprefix("_read_") for n in dir(reader.Reader) if "_read_" in n]
        self.assertEqual([word for word in words if word not in used], [])

    def is_definition(self, name, line, word):
        """Whether a word gives a name. A misspelt one is missed where the name is used."""
        if name == "core/tags":
            return not line.startswith("ids")
        if line[0].isspace():
            return line.split()[0] in ("slot", "array") and line.split()[1] == word
        return name != "envelope/routing" and line.split()[1:2] == [word]

    def test_refuses_every_word_misspelt(self):
        tried = 0
        for name, text in self.texts.items():
            for number, line in statements(text):
                for match in WORD.finditer(line):
                    word = match[0]
                    free = word in STEMS and not line.split()[0] == word
                    if free or word == "\\" or (name == "values/keywords" and KEYWORDS.match(line)):
                        continue
                    if name == "values/keywords" and line.split()[2:4] == ["as", word]:
                        continue
                    wrong = misspelt(word)
                    with self.subTest(schema=name, line=line, word=wrong):
                        changed = line[: match.start()] + wrong + line[match.end() :]
                        error = self.change(name, number, changed)
                        self.assertIsNotNone(error)
                        if self.is_definition(name, line, word):
                            self.assertRegex(error, r"\.schema:\d+: error: ")
                        else:
                            self.assertIn(f"{name}.schema:{number}: error: ", error)
                            self.assertIn(wrong, error)
                    tried += 1
        self.assertGreater(tried, 400)

    def test_refuses_a_word_too_many(self):
        for name, text in self.texts.items():
            for number, line in statements(text):
                if line.endswith("\\") or (name == "values/keywords" and KEYWORDS.match(line)):
                    continue
                with self.subTest(schema=name, line=line):
                    error = self.change(name, number, line + " stray")
                    self.assertIn(f"{name}.schema:{number}: error: ", error or "")
                    self.assertIn("stray", error)

    def test_refuses_a_line_said_twice(self):
        for name, text in self.texts.items():
            for number, line in statements(text):
                if line.endswith("\\"):
                    continue
                with self.subTest(schema=name, line=line):
                    error = self.change(name, number, f"{line}\n{line}")
                    self.assertIn(f"{name}.schema:", error or "")


if __name__ == "__main__":
    unittest.main()
