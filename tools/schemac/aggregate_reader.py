"""Reads schemas of aggregates, line by line. docs/schema.md describes the language.

What a line says on its own is checked here; what it says about other lines, in aggregate_checks.py.
"""

import dataclasses
import re

from model import (
    ROOTS,
    SIGNATURES,
    VERSIONS,
    Class,
    File,
    Override,
    Preset,
    Row,
    Rule,
    Shared,
    Splice,
)
from sources import SchemaError, Words

RULES = {
    "none": "kNone",
    "at_most_one": "kAtMostOne",
    "exactly_one": "kExactlyOne",
    "at_least_one": "kAtLeastOne",
    "all": "kAll",
    "exclusive_or": "kExclusiveOr",
}
CLASS_TYPES = ("child", "children", "repeated", "embedded")
VALUES = ("value", "repeated", "embedded")
# Words after a row's stem, with the kinds of rows that they suit.
ROW_WORDS = {
    "in": ("child", "children"),
    "grow": ("children", "repeated"),
    "pad": ("value",),
    "by": ("value",),
    "closed": VALUES,
    "lenient": VALUES,
    "unlisted": VALUES,
}


def indent(line):
    return len(line) - len(line.lstrip())


class Reader:
    """Reads one file."""

    def __init__(self, schema, tags, classes):
        self.tags, self.classes = tags, classes
        self.file = File(schema)
        self.current = None  # the class at hand
        self.verbatim = None  # takes the lines between declare or members and end
        self.comment = []  # the `///` lines above this line

    def read(self):
        opened = number = 0
        for number, line in self.file.schema.lines():
            place = self.file.schema.place(number)
            if self.verbatim is not None:
                self._verbatim(line, place)
            elif line.lstrip().startswith("///"):
                if self.comment and indent(self.comment[-1]) != indent(line):
                    raise SchemaError(place, f"{line.strip()} is not indented as the line above")
                self.comment.append(line.rstrip())
            else:
                if self.comment and (not line.strip() or indent(self.comment[-1]) != indent(line)):
                    raise SchemaError(
                        place, f"{self.comment[-1].strip()} must be right above what it is about"
                    )
                self._line(line, place)
                opened = number
        last = self.file.schema.place(number)
        if self.verbatim is not None:
            raise SchemaError(self.file.schema.place(opened), "no end to what begins here")
        if self.comment:
            raise SchemaError(last, f"{self.comment[-1].strip()} is at the end, about nothing")
        return self.file

    def _verbatim(self, line, place):
        if line.strip() == "end":
            self.verbatim = None
        elif line.strip() and indent(line) < 4:
            raise SchemaError(place, f"{line.strip()}: end expected before it")
        else:
            self.verbatim.append(line[4:].rstrip())

    def _line(self, line, place):
        text = line.strip()
        if text.startswith("#"):
            if self.comment:
                raise SchemaError(place, f"{self.comment[-1].strip()} is not about a comment")
            if self.current is None:
                self.file.comment.append(text.removeprefix("#").removeprefix(" "))
            return
        if not text:
            return
        comment = [part.strip() for part in self.comment]
        words = Words(place, text)
        if indent(line):
            if self.current is None:
                words.fail(f"{words.peek()} is before the first class")
            if not self.current.generated:
                words.fail(f"{words.peek()}: {self.current.name} is written by hand")
            self._member(words, comment)
        elif words.accept("payroll"):
            if self.current is not None or comment:
                words.fail("payroll must be above the first class")
            self._once(words, self.file.payroll, "payroll")
            self.file.payroll = True
        else:
            self._open(words, comment)
        words.end()
        self.comment = []

    # Classes

    def _open(self, words, comment):
        word = words.expect("aggregate", "base", "abstract", "class")
        made = Class(word, words.take("a name"), self.file, words.place, comment=comment)
        if made.name in (*self.classes, *ROOTS):
            words.fail(f"there is a class {made.name} already")
        if made.generated:
            words.expect(":")
            made.base = words.take("a base")
            made.header = self.file.name + ".h"
            if words.accept("="):
                made.tag = self._tag(words)
        else:
            words.expect("in")
            made.header = words.take("a header")
        self.classes[made.name] = self.current = made
        self.file.classes.append(made)

    def _tag(self, words):
        tag = words.take("a tag")
        if tag not in self.tags:
            words.fail(f"no tag {tag}")
        return tag

    def _tags(self, words):
        """The tags up to the end of the line or to a word of the language."""
        tags = []
        while words and words.peek() not in (":", "reported"):
            tags.append(self._tag(words))
            if tags[-1] in tags[:-1]:
                words.fail(f"{tags[-1]} is there twice")
        if not tags:
            words.take("a tag")
        return tags

    # Lines of a class

    def _member(self, words, comment):
        word = words.peek()
        if word in ("slot", "array"):
            self._shared(words, comment)
        elif word in self.tags:
            self.current.rows.append(self._row(words, comment))
        elif word[0].isupper():
            words.fail(f"no tag {word}")
        elif comment:
            words.fail(f"{word}: no /// comment can be about it")
        else:
            reader = getattr(self, f"_read_{word}", None)
            if reader is None:
                words.fail(f"unknown word {word}")
            reader(self.current, words.accept(word) and words)

    def _shared(self, words, comment):
        kind, name, cls = words.take("slot or array"), words.take("a name"), words.take("a class")
        if not re.fullmatch(r"[A-Z][A-Za-z0-9]*", name):
            words.fail(f"{name} is no name of a slot or an array")
        grow = words.number("grow N", 1) if kind == "array" and words.accept("grow") else 5
        self.current.shared.append(Shared(name, kind, cls, grow, words.place, comment))

    def _read_declare(self, cls, words):
        self.verbatim = cls.declarations

    def _read_members(self, cls, words):
        self.verbatim = cls.members

    def _read_rule(self, cls, words):
        condition, condition_tags = "kAlways", []
        if words.peek() in ("when", "unless"):
            condition = "kWhenAny" if words.take("") == "when" else "kUnlessAny"
            condition_tags = self._tags(words)
            words.expect(":")
        kind = RULES[words.expect(*RULES)]
        tags = self._tags(words)
        reported = bool(words.accept("reported"))
        rule = Rule(kind, tags, condition, condition_tags, reported, words.place)
        said = [dataclasses.replace(other, place=words.place) for other in cls.rules]
        self._once(words, rule in said, "rule")
        cls.rules.append(rule)

    def _read_version(self, cls, words):
        self._once(words, cls.version, "version")
        cls.version = words.number("a version", 1)

    def _read_override(self, cls, words):
        names = []
        while (word := words.expect(*SIGNATURES, *(["in"] if names else []))) != "in":
            self._once(words, word in [*names, *(o.name for o in cls.overrides)], word)
            names.append(word)
        file = words.take("a file")
        cls.overrides += [Override(name, file, words.place) for name in names]

    def _read_unmet_rules(self, cls, words):
        self._once(words, cls.unmet_rules, "unmet_rules")
        words.expect("in")
        name = f"UnmetRuleOf{cls.bare}"
        cls.unmet_rules = Override(name, words.take("a file"), words.place)

    def _read_preset(self, cls, words):
        tag = self._tag(words)
        self._once(words, tag in [preset.tag for preset in cls.presets], f"preset {tag}")
        cls.presets.append(Preset(tag, words.take("a text"), words.place))

    def _read_include(self, cls, words):
        header = words.take("a header")
        self._once(words, header in [other for other, _ in cls.includes], header)
        cls.includes.append((header, words.place))

    def _read_via(self, cls, words):
        self._once(words, cls.via, "via")
        cls.via = words.take("a class")
        words.expect("in")
        cls.via_header = words.take("a header")
        cls.via_place = words.place

    def _read_typed_array(self, cls, words):
        self._once(words, cls.typed_array, "typed_array")
        cls.typed_array = True

    def _read_rules_only(self, cls, words):
        self._once(words, cls.rules_only, "rules_only")
        cls.rules_only = True

    def _read_requires(self, cls, words):
        self._once(words, cls.requires is not None, "requires")
        cls.requires = [] if words.accept("nothing") else self._tags(words)
        cls.requires_place = words.place

    def _read_splice(self, cls, words):
        ancestor = words.take("a class")
        first = last = self._tag(words) if words else ""
        if words:
            words.expect("to")
            last = self._tag(words)
        cls.rows.append(Splice(ancestor, first, last, words.place))

    @staticmethod
    def _once(words, said, word):
        if said:
            words.fail(f"{word} is said twice")

    # Rows

    def _row(self, words, comment):
        row = Row(self._tag(words), words.place, comment=comment)
        word = words.take("a type")
        if word == "listed":
            row.kind = word
        elif word in CLASS_TYPES:
            row.kind, row.type = word, words.take("a class")
        elif word == "index":
            row.type = f"index {words.take('an enumeration')}"
        else:
            row.type = word
        required = None if row.kind == "listed" else self._use(words, word)
        row.versions = VERSIONS[words.accept(*VERSIONS)]
        if required is not None:
            row.required = row.versions if required == "" else VERSIONS[required]
        if row.kind != "listed":
            self._row_stem(row, words)
            self._row_words(row, words)
        return row

    @staticmethod
    def _use(words, row_type):
        """The versions that a row is required in; None when it is optional."""
        word = words.take("required or optional")
        use = re.fullmatch(r"(required|optional)|required\((.*)\)", word)
        if use is None or (use[2] is not None and use[2] not in list(VERSIONS)[1:]):
            wanted = "required, optional or required(VERSIONS)"
            words.fail(f"{word}: {wanted} expected after {row_type}")
        if use[1] == "optional":
            return None
        return use[2] or ""

    @staticmethod
    def _row_stem(row, words):
        stem = words.peek()
        if re.fullmatch(r"V\d+\W?", stem):
            words.fail(f"unknown versions {stem}")
        if re.fullmatch(r"[A-Z][A-Za-z0-9]*", stem):
            row.stem = words.take("a stem")

    @staticmethod
    def _row_words(row, words):
        seen = set()
        while words:
            word = words.expect(*ROW_WORDS)
            if word in seen:
                words.fail(f"{word} is said twice")
            seen.add(word)
            if row.kind not in ROW_WORDS[word]:
                words.fail(f"{word} does not suit a row of this type")
            if word == "in":
                row.shared = words.take("a slot or an array")
            elif word in ("grow", "pad"):
                setattr(row, word, words.number(f"{word} N", 1))
            elif word == "by":
                words.expect("hand")
                row.hand = True
            else:
                setattr(row, word, True)
