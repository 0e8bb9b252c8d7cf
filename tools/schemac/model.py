"""What the schemas of aggregates say: classes with rows, rules and members of their own.

aggregate_reader.py reads it, aggregate_checks.py checks it, and the generators ask it.
"""

from dataclasses import dataclass, field

from sources import Place, Schema

VERSIONS = {"": 0xFFFF, "V1": 0x1, "V2": 0x2, "V2+": 0xFFFE}
# Hand-written bases of all aggregates. A payload, which a transaction carries, derives from the
# second one.
ROOTS = ("KRDataObj", "KRTransBase")

# The operations that a schema can override, as the class declares them.
SIGNATURES = {
    "AllRequiredPresent": "u16 AllRequiredPresent() override;",
    "GetFirstMissingRequiredTag": "KRTagID GetFirstMissingRequiredTag(KRTagID after) override;",
    "Build": "KRBuildStatus Build(KRBuilder* builder) const override;",
    "HandleTagStart": (
        "KRParseStatus HandleTagStart(const KRTagDictionaryEntry* const entry) override;"
    ),
    "HandleTagElement": (
        "KRParseStatus HandleTagElement(const KRTagDictionaryEntry* const entry,\n"
        "                                 const KRString& value) override;\n"
        "  using KRDataObj::HandleTagElement;"
    ),
    "GetArrayOfValidTags": "u16 GetArrayOfValidTags(KRArrayOfTags& tags) const override;",
    "GetChild": "KRDataObj* GetChild(u16 index) const override;",
    "GetNumberOfChildren": "u16 GetNumberOfChildren() const override;",
    "SetMsgSetVersion": "u16 SetMsgSetVersion(u16 version) override;",
    "DeepCopyFrom": "u16 DeepCopyFrom(KRTransBase* source) override;",
}


@dataclass
class Row:
    tag: str
    place: Place
    kind: str = "value"  # value, child, children, repeated, embedded, listed
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
    comment: list = field(default_factory=list)  # the `///` lines above the row
    owner: "Class" = None  # the class that declares the member


@dataclass
class Splice:
    """A place among the rows of a class where rows of an ancestor go."""

    ancestor: str
    first: str  # the tags of a run; empty for all rows
    last: str
    place: Place


@dataclass
class Shared:
    """A slot or array that several rows share."""

    name: str
    kind: str  # slot, array
    type: str
    grow: int
    place: Place
    comment: list


@dataclass
class Rule:
    kind: str
    tags: list
    condition: str
    condition_tags: list
    reported: bool
    place: Place


@dataclass
class Override:
    """A virtual operation, or another function, that a hand-written file defines."""

    name: str
    file: str
    place: Place


@dataclass
class Preset:
    """A text that the constructor gives a member."""

    tag: str
    text: str
    place: Place


@dataclass
class Class:
    word: str  # aggregate, base, abstract, class
    name: str
    file: "File"
    place: Place
    base: str = ""
    via: str = ""  # a hand-written class between the base and this one
    via_header: str = ""
    via_place: Place = None
    tag: str = ""
    comment: list = field(default_factory=list)
    rows: list = field(default_factory=list)
    shared: list = field(default_factory=list)
    rules: list = field(default_factory=list)
    overrides: list = field(default_factory=list)
    declarations: list = field(default_factory=list)
    members: list = field(default_factory=list)
    includes: list = field(default_factory=list)  # (header, place)
    presets: list = field(default_factory=list)
    version: int = 0
    header: str = ""  # declares the class
    typed_array: bool = False
    rules_only: bool = False
    requires: list = None  # tags, in place of what the rows say
    requires_place: Place = None
    unmet_rules: Override = None  # a function, not an operation of the class

    @property
    def bare(self):
        return self.name.removeprefix("KR")

    @property
    def generated(self):
        return self.word != "class"

    @property
    def has_table(self):
        return self.word in ("aggregate", "base")

    @property
    def made(self):
        """Whether the factory has an operation for the class."""
        return self.word in ("aggregate", "class")


@dataclass
class File:
    schema: Schema
    payroll: bool = False  # under the customs of the payroll tags
    comment: list = field(default_factory=list)
    classes: list = field(default_factory=list)

    @property
    def name(self):
        return self.schema.name


class Model:
    """All aggregates of a source tree, with the tags and enumerations that they name."""

    def __init__(self, tree, tags, keywords):
        self.tree = tree
        self.tags = tags  # text: id
        self.keywords = keywords  # name: Keywords
        self.files = []
        self.classes = {}

    def made_classes(self):
        """The classes that the factory makes, by their names without KR."""
        return {cls.bare: cls for cls in self.classes.values() if cls.made}

    def ancestors(self, cls):
        """The described classes above `cls`, nearest first."""
        result = []
        while (cls := self.classes.get(cls.base)) is not None:
            result.append(cls)
        return result

    def is_payload(self, cls):
        """Whether the class derives from KRTransBase."""
        return any(c.base == "KRTransBase" for c in (cls, *self.ancestors(cls)))

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
        """The rules of the class's table, and whether they alone say if an object is complete."""
        for candidate in (cls, *self.ancestors(cls)):
            if candidate.rules or candidate.rows:
                return candidate.rules, candidate.rules_only
        return [], False

    def rows_in(self, shared):
        """The rows that fill a slot or an array, those of derived classes too, each tag once."""
        rows = {}
        for cls in self.classes.values():
            for row in cls.rows:
                if row.shared == shared.name and self.shared_of(cls, row.shared) is shared:
                    rows.setdefault(row.tag, row)
        return list(rows.values())

    def shared_of(self, cls, name):
        """The slot or array of that name; None when the class has none."""
        for candidate in (cls, *self.ancestors(cls)):
            for shared in candidate.shared:
                if shared.name == name:
                    return shared
        return None
