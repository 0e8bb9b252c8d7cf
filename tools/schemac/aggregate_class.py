"""Writes one class: its declaration, its constructors, and what the other writers give for it."""

from accessors import AccessorWriter, meaning, member
from aggregate_table import TableWriter, child_array
from cpp import class_head, defaulted, definition, fill, inline_or_lines
from model import SIGNATURES
from row_types import stored_type
from tags import enumerator

SLOT = "krofx::internal::ChildSlot"


class ClassWriter:
    """Writes one class into `header` and `source`."""

    def __init__(self, model, cls):
        self.model, self.cls = model, cls
        self.payload = model.is_payload(cls)
        self.header, self.source = "", ""
        self.uses = set()  # classes whose header the source needs

    def write(self):
        self._opening()
        self._constructors()
        self._accessors()
        self._copy()
        self._overrides()
        self._lines(self.cls.declarations)
        if self.cls.has_table:
            self.source += TableWriter(self.model, self.cls).write()
            rows = self.model.table_rows(self.cls)
            self.uses |= {row.type for row in rows if row.kind in ("child", "children")}
        self._members()
        self.header += "};\n"

    def _opening(self):
        name = self.cls.name
        comment = meaning(self.cls.comment)
        if self.cls.tag:
            comment += f" Its tag is {self.cls.tag}."
        self.header += fill(comment, "")
        parent = f"krofx::internal::{self.cls.via}" if self.cls.via else self.cls.base
        self.header += class_head(name, parent) + " public:\n"
        self.header += "  /// Makes an empty object.\n"
        self.header += f"  {name}();\n"
        self.header += "  /// Shallow: the copy borrows children and shares arrays.\n"
        self.header += f"  {name}(const {name}& other);\n"
        self.header += "  /// Shallow, as the copy constructor is.\n"
        self.header += f"  {name}& operator=(const {name}& other);\n"
        self.header += f"  ~{name}() override;\n"

    def _constructors(self):
        cls, name = self.cls, self.cls.name
        body = []
        if cls.tag:
            body.append(f"SetType({enumerator(cls.tag)});")
        if cls.version:
            body.append(f"SetMsgSetVersion({cls.version});")
        for preset in cls.presets:
            row = next(r for r in self.model.table_rows(cls) if r.tag == preset.tag)
            body.append(f'{member(row.stem)} = KRString("{preset.text}");')
        if body:
            self.source += inline_or_lines(f"{name}::{name}()", body)
        else:
            self.source += defaulted(f"{name}::{name}", "")
        self.source += defaulted(f"{name}::{name}", f"const {name}& other")
        self.source += defaulted(f"{name}& {name}::operator=", f"const {name}& other")
        self.source += defaulted(f"{name}::~{name}", "") + "\n"

    def _declares(self, row):
        """Whether the class has the member that the row reads into."""
        return row.owner is self.cls and row.kind != "listed"

    def _accessors(self):
        rows = self.cls.rows
        accessors = AccessorWriter(self.model, self.cls)
        for shared in self.cls.shared:
            accessors.shared(shared, self.model.rows_in(shared))
        for row in rows:
            if row.stem and (self._declares(row) or (row.kind == "child" and row.shared)):
                accessors.row(row)
        self.header += accessors.header
        self.source += accessors.source
        self.uses |= accessors.uses

    def _copy(self):
        """DeepCopyFrom for objects of the class. Only a payload's is virtual, and inherited."""
        name = self.cls.name
        if not self.cls.has_table or self.payload:
            return
        self.header += "\n"
        self.header += fill(
            "Copies everything from `source`, children included, which come from the factory."
        )
        self.header += fill(
            "@return 1; 0 when `source` is null, there is no factory, or memory is exhausted."
        )
        self.header += f"  u16 DeepCopyFrom({name}* source);\n"
        if "DeepCopyFrom" not in self._overridden():
            head = f"u16 {name}::DeepCopyFrom"
            body = "return CopyAggregate(*this, source);"
            self.source += definition(head, [f"{name}* source"], "", body) + "\n"

    def _overridden(self):
        return [override.name for override in self.cls.overrides]

    def _overrides(self):
        names = [name for name in self._overridden() if name != "DeepCopyFrom" or self.payload]
        if names:
            self.header += "\n" + "".join(f"  {SIGNATURES[name]}\n" for name in names)

    def _lines(self, lines):
        if lines:
            self.header += "\n" + "\n".join(f"  {line}".rstrip() for line in lines) + "\n"

    def _members(self):
        members = self._own_members()
        if self.cls.has_table or members or self.cls.members:
            self.header += "\n protected:\n"
        if self.cls.has_table:
            self.header += "  const krofx::internal::AggregateTable* GetTable() const override;\n"
        if members and self.cls.has_table:
            self.header += "\n"
        self.header += "".join(f"  {cpp} {name}{initial};\n" for cpp, name, initial in members)
        self._lines(self.cls.members)

    def _own_members(self):
        """(type, name, initialiser) of the members that the class declares: children first, so
        that a walk over a tree finds them beside the object's own state, then the values in row
        order."""
        result = []
        for shared in self.cls.shared:
            if shared.kind == "slot":
                result.append((SLOT, member(shared.name), ""))
            else:
                grow = f"{{{shared.grow}, {shared.grow}}}"
                result.append(("KRDynamicArrayDataObj", member(shared.name), grow))
        for row in self.cls.rows:
            if self._declares(row) and not row.shared:
                cpp, initial = self._member_type(row)
                result.append((cpp, member(row.stem), initial))
        return sorted(result, key=lambda own: own[0] != SLOT)

    def _member_type(self, row):
        if row.kind == "child":
            return SLOT, ""
        if row.kind == "children":
            grow = row.grow or 5
            return child_array(self.model, row), f"{{{grow}, {grow}}}"
        if row.kind == "repeated":
            grow = row.grow or 1
            return row.type, f"{{{grow}, {grow}}}"
        cpp = stored_type(row)
        if cpp in ("u16", "s16", "u32", "s32"):
            return cpp, " = 0"
        return cpp, "{}" if cpp in self.model.keywords else ""
