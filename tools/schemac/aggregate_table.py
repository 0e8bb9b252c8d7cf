"""The table of a class (AggregateTable in krofx/model/internal/aggregate.h), which GetTable() gives.

It holds the valid tags with an index over them, the rows that parsing, writing and copying go by,
the required tags and the rules.
"""

import random

from accessors import member
from cpp import array
from row_types import kind
from sources import SchemaError
from tags import enumerator


# The room for a tag in a Row, with its terminator.
ELEMENT_SIZE = 24


def child_array(model, row):
    """The class of the array that a repeated child lives in."""
    child = model.classes[row.type]
    if child.typed_array and not row.shared:
        return f"KRDynamicArray{child.bare}"
    return "KRDynamicArrayDataObj"


def _row(model, cls, row):
    """The initialiser of one Row."""
    if row.kind == "listed":
        return "{}"
    own = member(row.shared or row.stem)
    parts = [f".member = &MemberOf<&{cls.name}::{own}>::Address"]
    if row.kind in ("value", "repeated", "embedded"):
        parts.append(f".value = &{kind(model, row)}")
        parts += [".closed = true"] if row.closed else []
        parts += [".lenient = true"] if row.lenient else []
        parts += [".warnsOnce = true"] if cls.file.payroll else []
    else:
        child = model.classes[row.type]
        parts.append(f".create = &CreateBy<&KRDataObjFactory::New{child.bare}>")
        if row.kind == "children":
            held = child_array(model, row)
            element = "KRDataObj" if held == "KRDynamicArrayDataObj" else row.type
            parts.append(f".array = &ChildArray<{held}, {element}>::kKind")
        elif row.shared:
            parts.append(".shared = true")
    element = f"<{row.tag}>"
    if len(element) < ELEMENT_SIZE:
        parts += [f".elementLength = {len(element)}", f'.element = "{element}"']
    return "{" + ", ".join(parts) + "}"


def perfect_hash(ids):
    """Positions, multiplier and shift of a perfect hash over the keys of {tag id: position}; None when
    none is found."""
    chance = random.Random(1)
    for bits in range(max(1, (len(ids) - 1).bit_length()), 9):
        shift = 32 - bits
        for _ in range(4000):
            multiplier = chance.getrandbits(32) | 1
            positions = [255] * (1 << bits)
            for tag_id, position in ids.items():
                place = ((tag_id * multiplier) & 0xFFFFFFFF) >> shift
                if positions[place] != 255:
                    break
                positions[place] = position
            else:
                return positions, multiplier, shift
    return None


class TableWriter:
    """Writes the table of one class: its arrays into `text`, and what names them into `fields`."""

    def __init__(self, model, cls):
        self.model, self.cls = model, cls
        rows = model.table_rows(cls)
        self.listed = [row for row in rows if not row.unlisted]
        self.unlisted = [row for row in rows if row.unlisted]
        self.text = ""
        self.fields = [f'.className = "{cls.name}"']

    def write(self):
        """The definition of GetTable()."""
        if self.listed:
            self._valid()
        required = self._required()
        if self.listed:
            self._rows()
        self.text += required
        self._unlisted()
        self._children()
        self._rules()
        create = "nullptr"
        if self.cls.made:
            create = f"&CreateBy<&KRDataObjFactory::New{self.cls.bare}>"
        self.fields.append(f".create = {create}")
        if self.cls.unmet_rules:
            self.fields.append(f".unmetRule = &{self.cls.unmet_rules.name}")
        self.fields.append(f".type = &typeid({self.cls.name})")
        self.fields.append(f".plain = PlainOperations<{self.cls.name}>()")
        text = f"const AggregateTable* {self.cls.name}::GetTable() const {{\n{self.text}"
        text += "  static constexpr AggregateTable kTable = {\n"
        text += "".join(f"      {field},\n" for field in self.fields) + "  };\n"
        return text + "  return &kTable;\n}\n\n"

    def _valid(self):
        """The valid tags, and the index that finds the row of a tag."""
        items = [f"{{{enumerator(r.tag)}, 0x{r.versions:x}}}" for r in self.listed]
        self.text += array("static constexpr KRTagTableEntry kValid[]", items)
        self.text += "  static_assert(sizeof kValid / sizeof *kValid <= PresenceBits::kCount);\n"
        ids = {}
        for position, row in enumerate(self.listed):
            ids.setdefault(self.model.tags[row.tag], position)
        found = perfect_hash(ids)
        if found is None:
            raise SchemaError(self.cls.place, f"{self.cls.name}: no perfect hash found")
        positions, multiplier, shift = found
        self.text += array("static constexpr u8 kPositions[]", [str(place) for place in positions])
        index = f"{{kValid, kPositions, 0x{multiplier:x}u, {shift}}}"
        self.text += f"  static constexpr TagIndex kIndex = {index};\n"
        self.fields.append(f".valid = {{kValid, {len(self.listed)}, &kIndex}}")

    def _rows(self):
        items = [_row(self.model, self.cls, row) for row in self.listed + self.unlisted]
        self.text += array("static constexpr Row kRows[]", items)
        self.fields.append(".rows = kRows")

    def _required(self):
        """The required tags. The fields of a table have an order that is not that of its arrays, so
        the array is returned, not written."""
        required = self.model.required_of(self.cls)
        if not required:
            return ""
        self.fields.append(f".required = {{kRequired, {len(required)}}}")
        items = [f"{{{enumerator(tag)}, 0x{versions:x}}}" for tag, versions in required]
        return array("static constexpr KRTagTableEntry kRequired[]", items)

    def _unlisted(self):
        if not self.unlisted:
            return
        items = [enumerator(row.tag) for row in self.unlisted]
        self.text += array("static constexpr KRTagID kUnlisted[]", items)
        self.fields.append(".unlistedTags = kUnlisted")
        self.fields.append(f".unlistedCount = {len(self.unlisted)}")

    def _children(self):
        """The rows that hold children, each slot or array once."""
        members, positions = set(), []
        for position, row in enumerate(self.listed):
            if row.kind in ("child", "children"):
                own = row.shared or row.stem
                if own not in members:
                    members.add(own)
                    positions.append(position)
        if not positions:
            return
        items = [str(position) for position in positions]
        self.text += array("static constexpr u8 kChildRows[]", items)
        self.fields += [".childRows = kChildRows", f".childRowCount = {len(positions)}"]
        kinds = [self.listed[position].kind for position in positions]
        slots = kinds.index("children") if "children" in kinds else len(kinds)
        if slots:
            self.fields.append(f".leadingSlots = {slots}")
            self.fields.append(f".slots = &SlotsOf<kRows, kChildRows, {slots}>")

    def _rules(self):
        rules, rules_only = self.model.table_rules(self.cls)
        items = [self._rule(number, rule) for number, rule in enumerate(rules)]
        if rules:
            self.text += array("static constexpr Rule kRules[]", items)
            self.fields += [".rules = kRules", f".ruleCount = {len(rules)}"]
        if rules_only:
            self.fields.append(".rulesOnly = true")

    def _rule(self, number, rule):
        """The arrays of tags of one rule; returns the rule's initialiser."""
        names = [enumerator(tag) for tag in rule.tags]
        conditions = [enumerator(tag) for tag in rule.condition_tags]
        condition = "nullptr"
        if rule.condition == "kUnlessAny":
            condition = f"kRule{number} + {len(names)}"
            names += conditions
        elif conditions:
            condition = f"kWhen{number}"
        self.text += array(f"static constexpr KRTagID kRule{number}[]", names)
        if condition == f"kWhen{number}":
            self.text += array(f"static constexpr KRTagID {condition}[]", conditions)
        return (
            f"{{RuleKind::{rule.kind}, RuleCondition::{rule.condition}, {condition},"
            f" {len(rule.condition_tags)}, kRule{number}, {len(rule.tags)}"
            f"{', true' if rule.reported else ''}}}"
        )
