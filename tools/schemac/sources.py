"""The source tree as the compiler sees it: the schemas, by language, and the hand-written C++ that
they can name.

The first line of every schema is `schema LANGUAGE`. docs/schema.md describes the languages.
"""

import pathlib
import re
import shlex
from dataclasses import dataclass

LANGUAGES = ("aggregates", "keywords", "tags", "factory", "routing")
DECLARATION = re.compile(r"^(?:class|struct)\s+(?:KROFX_API\s+)?(\w+)[^;]*?\{", re.MULTILINE)


@dataclass(frozen=True)
class Place:
    """A line of a file."""

    path: pathlib.Path
    line: int

    def __str__(self):
        return f"{self.path}:{self.line}"


class SchemaError(Exception):
    """A mistake in a schema. Its text begins with the file and the line."""

    def __init__(self, place, message):
        super().__init__(f"{place}: error: {message}")


class Words:
    """The words of a statement, taken from left to right. `place` is where the last one was."""

    def __init__(self, place, text):
        self.place = place
        self._words = []
        self._last = ""
        self.extend(place, text)

    def extend(self, place, text):
        """Adds the words of a line that continues the statement."""
        try:
            words = shlex.split(text) if '"' in text else text.split()
        except ValueError as error:
            raise SchemaError(place, f"{text}: {error}") from error
        self._words += [(word, place) for word in words]

    def __bool__(self):
        return bool(self._words)

    def peek(self):
        return self._words[0][0] if self._words else ""

    def fail(self, message):
        raise SchemaError(self.place, message)

    def take(self, what):
        """The next word; `what` says what it has to be, for the error when there is none."""
        if not self._words:
            self.fail(f"{what} expected after {self._last}" if self._last else f"{what} expected")
        self._last, self.place = self._words.pop(0)
        return self._last

    def accept(self, *words):
        """The next word if it is one of these; otherwise an empty text."""
        return self.take("") if self.peek() and self.peek() in words else ""

    def expect(self, *words):
        """The next word, which has to be one of these."""
        before, wanted = self._last, " or ".join(words)
        word = self.take(wanted)
        if word not in words:
            self.fail(f"{word}: {wanted} expected" + (f" after {before}" if before else ""))
        return word

    def number(self, what, low=0, high=65535):
        word = self.take(what)
        if not re.fullmatch(r"-?\d{1,9}", word) or not low <= int(word) <= high:
            self.fail(f"{word}: {what} expected, a number from {low} to {high}")
        return int(word)

    def rest(self):
        """Takes the words that are left, one by one."""
        while self._words:
            yield self.take("")

    def end(self):
        """Refuses words that are left."""
        for word in self.rest():
            self.fail(f"unknown word {word}")


@dataclass(frozen=True)
class Schema:
    """One .schema file."""

    path: pathlib.Path
    name: str  # krofx/messages/banking/statements
    text: str  # without the first line

    def place(self, line):
        return Place(self.path, line)

    def lines(self):
        """The lines after the first, with their numbers."""
        return enumerate(self.text.split("\n"), 2)


class Tree:
    """The folder that holds krofx/."""

    def __init__(self, source):
        self.source = pathlib.Path(source)
        self._schemas = {language: [] for language in LANGUAGES}
        for path in sorted(self.source.glob("krofx/**/*.schema")):
            try:
                first, _, text = path.read_text(encoding="utf-8").partition("\n")
            except UnicodeDecodeError as error:
                raise SchemaError(Place(path, 1), f"no UTF-8: {error}") from error
            words = Words(Place(path, 1), first)
            words.expect("schema")
            language = words.expect(*LANGUAGES)
            words.end()
            name = path.relative_to(self.source).with_suffix("").as_posix()
            self._schemas[language].append(Schema(path, name, text))
        self._classes = None

    def schemas(self, language):
        return self._schemas[language]

    def only(self, language):
        """The one schema of a language."""
        found = self._schemas[language]
        if not found:
            raise SchemaError(Place(self.source, 1), f"no schema has the language {language}")
        if len(found) > 1:
            raise SchemaError(found[1].place(1), f"{found[0].path} has language {language} already")
        return found[0]

    def exists(self, name):
        """Whether there is a file `name`, as in krofx/model/factory.h."""
        return (self.source / name).is_file()

    def text(self, name):
        return (self.source / name).read_text()

    def header_of(self, cls):
        """The hand-written header that declares a class with a body; empty when none does."""
        if self._classes is None:
            self._classes = {}
            for path in sorted(self.source.glob("krofx/**/*.h")):
                name = path.relative_to(self.source).as_posix()
                for found in DECLARATION.findall(path.read_text()):
                    self._classes[found] = name
        return self._classes.get(cls, "")

    def check_definition(self, place, function, name):
        """Refuses a file that is not there or does not define `function`, as in KRFile::Build."""
        if not self.exists(name):
            raise SchemaError(place, f"no file {name}")
        if not re.search(rf"\b{re.escape(function)}\(", self.text(name)):
            raise SchemaError(place, f"{name} does not define {function}")
