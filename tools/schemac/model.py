"""Reads the schemas of aggregates. The language, by example:

    # What the file is about, for the head of the generated header.

    /// What the aggregate says. The text becomes the class's comment.
    aggregate KRBankTransactionList : KRDataObj = BANKTRANLIST
      /// What the row means. The text goes into the comment of each of its accessors.
      DTSTART  KRDateTime                  required        DtStart
      STMTTRN  children KRBankStatementTx  optional  V2+   StatementTx  grow 5
      rule at_most_one PAYEE2 PAYEE NAME

A line of `///` is about the block, row, slot or array right below it, and is indented as that is.

Blocks:
    aggregate CLASS : BASE [= TAG]   a class with tables, made by the factory
    base CLASS : BASE [= TAG]        a class with tables that only others derive from
    abstract CLASS : BASE            a class that only declares members; no tables
    class CLASS in HEADER            a hand-written class that the factory makes

A row is tag, type, use, versions and accessor stem, in wire order. A row that an ancestor declares
with the same tag and type reads into the ancestor's member. A block without rows has its base's; a
block with rows has only those that it names, and splices rows of its ancestors between its own:

    splice CLASS               all rows of an ancestor, in their order
    splice CLASS TAG           one of them
    splice CLASS TAG to TAG    a run of them
    types     KRStringN and other text classes, an enumeration of a keywords.schema, KRDateTime,
              KRTime, KRLanguage, amount, posamount, quantity, unitprice, rate, boolean, u16, s16,
              s32, u32, index KREnum (a u16 that holds the keyword's place), payamount and paydate
              (a KRPayrollAmount, a KRPayrollDateTime),
              child CLASS, children CLASS, repeated ARRAYCLASS, embedded CLASS (a child that is a
              part of the object; what is asked of it is declared and overridden by hand), and
              `listed`: valid, but neither read nor written
    use       required, optional, or required(VERSIONS) where that differs from the row's versions
    versions  nothing for all; V1, V2, V2+
    words     in NAME     the child lives in a slot or array that several rows share
              grow N      the array's initial size and growth step
              pad N       the number is written with leading zeros to N digits
              closed      the element is written with its end tag
              lenient     a text that is no such value is warned about and passed over; the parse
                          goes on
              by hand     the setter from a text is declared and defined by hand
              unlisted    read into its member, but not valid: never present, never written

A line `payroll` in the head puts the file under the customs of the payroll tags: every row is
lenient, and the setter of a boolean takes a const char* too, as those of amounts and dates do.

Other lines of a block:
    slot NAME CLASS            one child that several rows may fill
    array NAME CLASS [grow N]  one array that several rows fill
    rule [when TAG... :|unless TAG... :] WORD TAG... [reported]
                               none, at_most_one, exactly_one, at_least_one, all, exclusive_or;
                               reported: named among the missing required tags when it fails
    rules_only                 completeness is a matter of the rules; required rows do not count
    requires TAG...            what the class requires, in place of what its rows say; `nothing`
    typed_array                declares KRDynamicArrayCLASS, the array that rows of this class live in
    version N                  the version that the constructor sets
    override NAME...           virtual operations of KRDataObj that a .cpp beside the schema defines
    declare ... end            lines for the class's public part; a .cpp beside the schema defines
    members ... end            the same for its protected part
    include HEADER             what those lines need
    preset TAG "TEXT"          a text that the constructor gives a member without its presence
"""

import dataclasses
import pathlib
import re
import shlex
from dataclasses import dataclass, field

import keywords
import tags

VERSIONS = {"": 0xFFFF, "V1": 0x1, "V2": 0x2, "V2+": 0xFFFE}
RULES = {
    "none": "kNone",
    "at_most_one": "kAtMostOne",
    "exactly_one": "kExactlyOne",
    "at_least_one": "kAtLeastOne",
    "all": "kAll",
    "exclusive_or": "kExclusiveOr",
}


class SchemaError(Exception):
    """A mistake in a schema."""


@dataclass
class Row:
    tag: str
    kind: str  # value, child, children, repeated, embedded, listed
    type: str = ""
    required: int = 0
    versions: int = 0xFFFF
    stem: str = ""
    shared: str = ""
    grow: int = 0
    pad: int = 0
    closed: bool = False
    unlisted: bool = False
    lenient: bool = False
    hand: bool = False
    line: int = 0
    comment: list = field(default_factory=list)  # the `///` lines above the row
    owner: "Class" = None  # the class that declares the member


@dataclass
class Splice:
    """A place among the rows of a class where rows of an ancestor go."""

    ancestor: str
    first: str  # the tags of a run; empty for all rows
    last: str
    line: int


@dataclass
class Shared:
    """A slot or array that several rows share."""

    name: str
    kind: str  # slot, array
    type: str
    grow: int
    comment: list = field(default_factory=list)
    owner: "Class" = None


@dataclass
class Rule:
    kind: str
    tags: list
    condition: str = "kAlways"
    condition_tags: list = field(default_factory=list)
    reported: bool = False


@dataclass
class Class:
    word: str
    name: str
    base: str
    tag: str
    file: "File"
    line: int
    comment: list = field(default_factory=list)
    rows: list = field(default_factory=list)
    shared: list = field(default_factory=list)
    rules: list = field(default_factory=list)
    overrides: list = field(default_factory=list)
    declarations: list = field(default_factory=list)
    members: list = field(default_factory=list)
    includes: list = field(default_factory=list)
    presets: list = field(default_factory=list)
    version: int = 0
    header: str = ""  # of a hand-written class
    typed_array: bool = False
    rules_only: bool = False
    requires: list = None  # tags, in place of what the rows say

    @property
    def bare(self):
        return self.name.removeprefix("KR")

    @property
    def generated(self):
        return self.word != "class"

    @property
    def has_table(self):
        return self.word in ("aggregate", "base")


@dataclass
class File:
    path: pathlib.Path
    name: str  # krofx/messages/banking/statements
    payroll: bool = False  # under the customs of the payroll tags
    comment: list = field(default_factory=list)
    classes: list = field(default_factory=list)


def _heads(comment, line):
    """Whether a comment may be about the line below it: the line is there, and indented alike."""

    def indent(text):
        return len(text) - len(text.lstrip())

    return bool(line.strip()) and indent(comment[-1]) == indent(line)


class Schemas:
    """All aggregate schemas of a source tree."""

    def __init__(self, source):
        self.keywords = keywords.load(source)
        blocks = tags.read((pathlib.Path(source) / tags.SCHEMA).read_text())
        self.tags = {tag: tag_id for block in blocks for tag_id, tag in block.rows()}
        self.files = []
        self.classes = {}
        for path in sorted(pathlib.Path(source).glob("krofx/**/*.schema")):
            if path.name in ("keywords.schema", "tags.schema"):
                continue
            if path.name in ("factory.schema", "routing.schema"):
                continue
            self.files.append(self._parse(path, source))
        self._resolve()

    # Reading

    def _parse(self, path, source):
        name = path.relative_to(source).with_suffix("").as_posix()
        file, current, declaring, comment = File(path, name), None, None, []
        for number, line in enumerate(path.read_text().splitlines(), 1):
            text = line.strip()
            try:
                if declaring is not None and text == "end":
                    declaring = None
                elif declaring is not None:
                    declaring.append(line[4:].rstrip())
                elif text.startswith("///"):
                    comment.append(line)
                    continue
                elif comment and not _heads(comment, line):
                    raise SchemaError("a /// comment must be right above what it is about")
                elif not text:
                    continue
                elif text.startswith("#"):
                    if current is None:
                        file.comment.append(text.removeprefix("#").removeprefix(" "))
                elif line == "payroll" and current is None:
                    file.payroll = True
                elif not line[0].isspace():
                    current = self._open(text.split(), file, number)
                    current.comment, comment = [part.strip() for part in comment], []
                elif text == "declare":
                    declaring = current.declarations
                elif text == "members":
                    declaring = current.members
                else:
                    self._line(current, text, number, [part.strip() for part in comment])
                    comment = []
            except (AttributeError, IndexError, KeyError, ValueError, SchemaError) as error:
                raise SystemExit(f"{path}:{number}: {text}: {error!r}") from error
        if comment:
            raise SystemExit(f"{path}: a /// comment at the end is about nothing")
        return file

    def _open(self, words, file, number):
        word, name = words[:2]
        rest = words[2:]
        made = Class(word, name, "KRDataObj", "", file, number)
        if word == "class":
            made.header = rest[rest.index("in") + 1]
        elif word in ("aggregate", "base", "abstract"):
            made.base = rest[rest.index(":") + 1]
            if "=" in rest:
                made.tag = self._tag(rest[rest.index("=") + 1])
        else:
            raise SchemaError(f"unknown word {word}")
        if name in self.classes:
            raise SchemaError(f"{name} is there already")
        self.classes[name] = made
        file.classes.append(made)
        return made

    def _tag(self, text):
        if text not in self.tags:
            raise SchemaError(f"no tag {text}")
        return text

    def _line(self, current, text, number, comment):
        words = shlex.split(text)
        word = words[0]
        if word in ("slot", "array"):
            grow = int(words[4]) if len(words) > 4 else 5
            current.shared.append(Shared(words[1], word, words[2], grow, comment, current))
            return
        if comment and word not in self.tags:
            raise SchemaError(f"no /// comment can be about {word}")
        if word == "rule":
            current.rules.append(self._rule(words[1:]))
        elif word == "version":
            current.version = int(words[1])
        elif word == "override":
            current.overrides += words[1:]
        elif word == "preset":
            current.presets.append((self._tag(words[1]), words[2]))
        elif word == "include":
            current.includes.append(words[1])
        elif word == "typed_array":
            current.typed_array = True
        elif word == "rules_only":
            current.rules_only = True
        elif word == "requires":
            current.requires = [] if words[1:] == ["nothing"] else [self._tag(w) for w in words[1:]]
        elif word == "splice":
            current.rows.append(self._splice(words[1:], number))
        else:
            current.rows.append(self._row(words))
            current.rows[-1].line, current.rows[-1].comment = number, comment

    def _rule(self, words):
        condition, condition_tags = "kAlways", []
        if words[0] in ("when", "unless"):
            condition = "kWhenAny" if words[0] == "when" else "kUnlessAny"
            colon = words.index(":")
            condition_tags = [self._tag(w) for w in words[1:colon]]
            words = words[colon + 1 :]
        reported = words[-1] == "reported"
        rule_tags = [self._tag(w) for w in (words[1:-1] if reported else words[1:])]
        return Rule(RULES[words[0]], rule_tags, condition, condition_tags, reported)

    def _splice(self, words, number):
        ancestor, *run = words
        if len(run) == 3 and run[1] == "to":
            del run[1]
        elif len(run) > 1:
            raise SchemaError("splice CLASS, splice CLASS TAG or splice CLASS TAG to TAG expected")
        run = [self._tag(tag) for tag in run]
        return Splice(ancestor, run[0] if run else "", run[-1] if run else "", number)

    def _row(self, words):
        words = list(words)
        row = Row(self._tag(words.pop(0)), "value")
        word = words.pop(0)
        if word == "listed":
            row.kind = "listed"
        elif word in ("child", "children", "repeated", "embedded"):
            row.kind, row.type = word, words.pop(0)
        elif word == "index":
            row.type = f"index {words.pop(0)}"
        else:
            row.type = word
        required = None
        if row.kind != "listed":
            use = re.fullmatch(r"(required|optional)(?:\((.*)\))?", words.pop(0))
            if use is None:
                raise SchemaError("required or optional expected")
            if use[1] == "required":
                required = use[2]
        if words and words[0] in VERSIONS:
            row.versions = VERSIONS[words.pop(0)]
        if row.kind != "listed" and use[1] == "required":
            row.required = row.versions if required is None else VERSIONS[required]
        if words and re.match(r"[A-Z]", words[0]):
            row.stem = words.pop(0)
        while words:
            word = words.pop(0)
            if word == "in":
                row.shared = words.pop(0)
            elif word in ("grow", "pad"):
                setattr(row, word, int(words.pop(0)))
            elif word in ("closed", "lenient", "unlisted"):
                setattr(row, word, True)
            elif word == "by":
                row.hand = words.pop(0) == "hand"
            else:
                raise SchemaError(f"unknown word {word}")
        return row

    # Resolving

    def ancestors(self, cls):
        """The generated classes above `cls`, nearest first."""
        result = []
        while (cls := self.classes.get(cls.base)) is not None:
            result.append(cls)
        return result

    def _resolve(self):
        for cls in self.classes.values():
            if cls.generated and cls.base not in self.classes:
                if cls.base not in ("KRDataObj", "KRTransBase"):
                    raise SystemExit(f"{cls.file.path}:{cls.line}: no class {cls.base}")
        for cls in self.classes.values():
            self._expand(cls)
        for cls in self.classes.values():
            for row in cls.rows:
                self._resolve_row(cls, row)

    def _expand(self, cls):
        """Puts the rows of ancestors where the class splices them."""
        rows = []
        for row in cls.rows:
            if isinstance(row, Splice):
                try:
                    rows += self._spliced(cls, row)
                except SchemaError as error:
                    raise SystemExit(f"{cls.file.path}:{row.line}: {error}") from error
            else:
                rows.append(row)
        cls.rows = rows

    def _spliced(self, cls, splice):
        ancestors = {ancestor.name: ancestor for ancestor in self.ancestors(cls)}
        if splice.ancestor not in ancestors:
            raise SchemaError(f"{splice.ancestor} is no ancestor of {cls.name}")
        ancestor = ancestors[splice.ancestor]
        self._expand(ancestor)
        run = ancestor.rows
        if splice.first:
            tags_there = [row.tag for row in run]
            for tag in (splice.first, splice.last):
                if tag not in tags_there:
                    raise SchemaError(f"{splice.ancestor} has no row {tag}")
            run = run[tags_there.index(splice.first) : tags_there.index(splice.last) + 1]
        if not run:
            raise SchemaError(f"there is no row to splice from {splice.ancestor}")
        return [dataclasses.replace(row, line=splice.line) for row in run]

    def _resolve_row(self, cls, row):
        if row.kind in ("child", "children", "embedded") and row.type not in self.classes:
            # Its domain is not described yet: the tag is valid, and nothing is made for it.
            row.kind, row.type = "listed", ""
        row.owner = cls
        row.lenient = row.lenient or cls.file.payroll
        if row.shared:
            self.shared_of(cls, row.shared)
        for ancestor in reversed(self.ancestors(cls)):
            for other in ancestor.rows:
                if other.tag == row.tag and other.kind == row.kind and other.type == row.type:
                    row.owner = ancestor
                    row.stem = row.stem or other.stem
                    row.shared = row.shared or other.shared
                    return

    def is_payload(self, cls):
        """Derives from KRTransBase."""
        while cls is not None:
            if cls.base == "KRTransBase":
                return True
            cls = self.classes.get(cls.base)
        return False

    def table_rows(self, cls):
        """The rows of the class's table: its own, or those of the nearest ancestor with any."""
        for candidate in (cls, *self.ancestors(cls)):
            if candidate.rows:
                return candidate.rows
        return []

    def required_of(self, cls):
        """The required table of the class: tags with the versions that they are required in."""
        rows = self.table_rows(cls)
        if cls.requires is not None:
            return [(row.tag, row.versions) for row in rows if row.tag in cls.requires]
        return [(row.tag, row.required) for row in rows if row.required]

    def table_rules(self, cls):
        """The rules of the class's table, and whether they alone tell if an object is complete."""
        for candidate in (cls, *self.ancestors(cls)):
            if candidate.rules or candidate.rows:
                return candidate.rules, candidate.rules_only
        return [], False

    def shared_of(self, cls, name):
        for candidate in (cls, *self.ancestors(cls)):
            for shared in candidate.shared:
                if shared.name == name:
                    return shared
        raise SystemExit(f"{cls.file.path}:{cls.line}: {cls.name} has no slot or array {name}")

    def text_class(self, name):
        return name.startswith("KRString") or name in (
            "KRMultiLenString",
            "KRUserPassword",
            "KREMailMsgBody",
        )
