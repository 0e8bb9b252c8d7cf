"""Turns aggregate schemas (see model.py) into classes: for each NAME.schema a NAME.h and NAME.cpp.

A class gets documented accessors for every row, and one AggregateTable (krofx/model/aggregate.h)
that drives everything else. The output is formatted, and meant to be read in a debugger.
"""

import random
import re

import factory
import model
import routing
from accessors import AccessorWriter, meaning, member
from cpp import definition, fill
from row_types import cpp_type, kind
from tags import enumerator

# A table is read by its rows, one on each line, so it is kept out of the formatter's hands.
OFF, ON = "  // clang-format off\n", "  // clang-format on\n"


class ClassWriter:
    """Writes one class."""

    def __init__(self, schemas, cls):
        self.schemas, self.cls = schemas, cls
        self.header, self.source = "", ""
        self.uses = set()  # generated classes whose header the source needs

    def declares(self, row):
        return row.owner is self.cls and row.kind != "listed"

    # The table

    def child_array(self, row):
        """The class of the array that a repeated child lives in."""
        child = self.schemas.classes[row.type]
        if child.typed_array and not row.shared:
            return f"KRDynamicArray{child.bare}"
        return "KRDynamicArrayDataObj"

    def own_members(self):
        """(type, name, initialiser) of the members that this class declares: children first, so that
        a walk over a tree finds them beside the object's own state, then the values in row order."""
        result = []
        for shared in self.cls.shared:
            if shared.kind == "slot":
                result.append(("krofx::internal::ChildSlot", member(shared.name), ""))
            else:
                grow = f"{{{shared.grow}, {shared.grow}}}"
                result.append(("KRDynamicArrayDataObj", member(shared.name), grow))
        for row in self.cls.rows:
            if not self.declares(row) or row.shared:
                continue
            name = member(row.stem)
            if row.kind == "child":
                result.append(("krofx::internal::ChildSlot", name, ""))
            elif row.kind == "children":
                grow = row.grow or 5
                result.append((self.child_array(row), name, f"{{{grow}, {grow}}}"))
            elif row.kind == "repeated":
                grow = row.grow or 1
                result.append((row.type, name, f"{{{grow}, {grow}}}"))
            else:
                cpp = cpp_type(row)
                if cpp in ("u16", "s16", "u32", "s32"):
                    initial = " = 0"
                elif cpp in self.schemas.keywords:
                    initial = "{}"
                else:
                    initial = ""
                result.append((cpp, name, initial))
        slot = "krofx::internal::ChildSlot"
        return sorted(result, key=lambda own: own[0] != slot)

    def row_text(self, row):
        if row.kind == "listed":
            return "{}"
        own = member(row.shared or row.stem)
        place = f"{self.cls.file.path}:{row.line}"
        parts = [f".member = &MemberOf<&{self.cls.name}::{own}>::Address"]
        if row.kind in ("value", "repeated", "embedded"):
            parts.append(f".value = &{kind(self.schemas, row, place)}")
            if row.closed:
                parts.append(".closed = true")
            if row.lenient:
                parts.append(".lenient = true")
        else:
            self.uses.add(row.type)
            bare = self.schemas.classes[row.type].bare
            parts.append(f".create = &CreateBy<&KRDataObjFactory::New{bare}>")
            if row.kind == "children":
                array = self.child_array(row)
                element = "KRDataObj" if array == "KRDynamicArrayDataObj" else row.type
                parts.append(f".array = &ChildArray<{array}, {element}>::kKind")
            elif row.shared:
                parts.append(".shared = true")
        return "{" + ", ".join(parts) + "}"

    def index(self, listed):
        """Slots, multiplier and shift of the perfect hash over the tags of the valid table."""
        ids = {}
        for position, row in enumerate(listed):
            ids.setdefault(self.schemas.tags[row.tag], position)
        chance = random.Random(1)
        for bits in range(max(1, (len(ids) - 1).bit_length()), 9):
            for _ in range(4000):
                multiplier = chance.getrandbits(32) | 1
                hashes = {((i * multiplier) & 0xFFFFFFFF) >> (32 - bits) for i in ids}
                if len(hashes) < len(ids):
                    continue
                slots = [255] * (1 << bits)
                for tag_id, position in ids.items():
                    slots[((tag_id * multiplier) & 0xFFFFFFFF) >> (32 - bits)] = position
                return slots, multiplier, 32 - bits
        raise SystemExit(f"{self.cls.name}: no perfect hash found")

    @staticmethod
    def numbers(values, indent="      "):
        lines, line = [], indent
        for i, value in enumerate(values):
            piece = f"{value}" + (", " if i + 1 < len(values) else "")
            if len(line) + len(piece.rstrip()) > 98:
                lines.append(line.rstrip())
                line = indent
            line += piece
        return "\n".join(lines + [line])

    def array(self, declaration, items, indent="  "):
        """`declaration = {items};`, one item a line where one line will not do."""
        one = f"{indent}{declaration} = {{{', '.join(items)}}};"
        if len(one) <= 100:
            return one + "\n"
        if max(len(item) for item in items) <= 4:
            body = self.numbers(items, indent + "    ") + ",\n"
        else:
            body = "".join(f"{indent}    {item},\n" for item in items)
        return OFF + f"{indent}{declaration} = {{\n{body}{indent}}};\n" + ON

    def table(self):
        cls, rows = self.cls, self.schemas.table_rows(self.cls)
        listed = [row for row in rows if not row.unlisted]
        unlisted = [row for row in rows if row.unlisted]
        if len(listed) > 96:
            # The presence set of an object has 96 bits.
            raise SystemExit(f"{cls.file.path}:{cls.line}: {cls.name} has more than 96 valid tags")
        text = f"const AggregateTable* {cls.name}::GetTable() const {{\n"
        if listed:
            items = [f"{{{enumerator(r.tag)}, 0x{r.versions:x}}}" for r in listed]
            text += self.array("static constexpr KRTagTableEntry kValid[]", items)
            slots, multiplier, shift = self.index(listed)
            text += self.array("static constexpr u8 kSlots[]", [str(s) for s in slots])
            text += (
                "  static constexpr TagIndex kIndex = "
                f"{{kValid, kSlots, 0x{multiplier:x}u, {shift}}};\n"
            )
            text += self.array(
                "static constexpr Row kRows[]", [self.row_text(r) for r in listed + unlisted]
            )
        required = self.schemas.required_of(cls)
        if required:
            items = [f"{{{enumerator(tag)}, 0x{versions:x}}}" for tag, versions in required]
            text += self.array("static constexpr KRTagTableEntry kRequired[]", items)
        if unlisted:
            items = [enumerator(r.tag) for r in unlisted]
            text += self.array("static constexpr KRTagID kUnlisted[]", items)
        seen, children = set(), []
        for position, row in enumerate(listed):
            if row.kind in ("child", "children"):
                own = member(row.shared or row.stem)
                if own not in seen:
                    seen.add(own)
                    children.append(str(position))
        if children:
            text += self.array("static constexpr u8 kChildRows[]", children)
        rules, rules_only = self.schemas.table_rules(cls)
        items = []
        for number, rule in enumerate(rules):
            names = [enumerator(t) for t in rule.tags]
            text += self.array(f"static constexpr KRTagID kRule{number}[]", names)
            condition, count = "nullptr", 0
            if rule.condition_tags:
                names = [enumerator(t) for t in rule.condition_tags]
                text += self.array(f"static constexpr KRTagID kWhen{number}[]", names)
                condition, count = f"kWhen{number}", len(names)
            items.append(
                f"{{RuleKind::{rule.kind}, RuleCondition::{rule.condition}, {condition}, {count}, "
                f"kRule{number}, {len(rule.tags)}{', true' if rule.reported else ''}}}"
            )
        if rules:
            text += self.array("static constexpr Rule kRules[]", items)
        create = "nullptr"
        if factory.makes(self.schemas, cls):
            create = f"&CreateBy<&KRDataObjFactory::New{cls.bare}>"
        fields = [f'.className = "{cls.name}"']
        if listed:
            fields.append(f".valid = {{kValid, {len(listed)}, &kIndex}}")
        if required:
            fields.append(f".required = {{kRequired, {len(required)}}}")
        if listed:
            fields.append(".rows = kRows")
        if unlisted:
            fields += [".unlistedTags = kUnlisted", f".unlistedCount = {len(unlisted)}"]
        if children:
            fields += [".childRows = kChildRows", f".childRowCount = {len(children)}"]
            kinds = [listed[int(position)].kind for position in children]
            slots = kinds.index("children") if "children" in kinds else len(kinds)
            if slots:
                fields += [
                    f".leadingSlots = {slots}",
                    f".slots = &SlotsOf<kRows, kChildRows, {slots}>",
                ]
        if rules:
            fields += [".rules = kRules", f".ruleCount = {len(rules)}"]
        if rules_only:
            fields.append(".rulesOnly = true")
        fields.append(f".create = {create}")
        text += "  static constexpr AggregateTable kTable = {\n"
        text += "".join(f"      {field},\n" for field in fields) + "  };\n"
        text += "  return &kTable;\n}\n\n"
        self.source += text

    # The whole class

    def write(self):
        cls = self.cls
        payload = self.schemas.is_payload(cls)
        comment = meaning(cls.comment)
        if not comment:
            raise SystemExit(f"{cls.file.path}:{cls.line}: {cls.name} has no comment")
        if cls.tag:
            comment += f" Its tag is {cls.tag}."
        self.header += fill(comment, "")
        self.header += f"class KROFX_API {cls.name} : public {cls.base} {{\n public:\n"
        self.header += "  /// Makes an object with nothing in it.\n"
        self.header += f"  {cls.name}();\n"
        self.header += "  /// Shallow: the copy borrows children and shares arrays.\n"
        self.header += f"  {cls.name}(const {cls.name}& other);\n"
        self.header += "  /// As the copy constructor.\n"
        self.header += f"  {cls.name}& operator=(const {cls.name}& other);\n"
        self.header += f"  ~{cls.name}() override;\n"

        body = []
        if cls.tag:
            body.append(f"SetType({enumerator(cls.tag)});")
        if cls.version:
            body.append(f"SetMsgSetVersion({cls.version});")
        for tag, text in cls.presets:
            row = next(r for r in self.schemas.table_rows(cls) if r.tag == tag)
            body.append(f'{member(row.stem)} = KRString("{text}");')
        if body:
            lines = "".join(f"  {line}\n" for line in body)
            one = f"{cls.name}::{cls.name}() {{ {body[0]} }}"
            if len(body) == 1 and len(one) <= 100:
                self.source += one + "\n"
            else:
                self.source += f"{cls.name}::{cls.name}() {{\n{lines}}}\n"
        else:
            self.source += f"{cls.name}::{cls.name}() = default;\n"
        one = f"{cls.name}::{cls.name}(const {cls.name}& other) = default;\n"
        self.source += one if len(one) <= 101 else one.replace(" default;", "\n    default;")
        one = f"{cls.name}& {cls.name}::operator=(const {cls.name}& other) = default;"
        if len(one) <= 100:
            self.source += one + "\n"
        elif len(one) <= 100 + len(" default;"):
            self.source += one.replace(" default;", "\n    default;\n")
        else:
            self.source += one.replace("(", "(\n    ", 1) + "\n"
        self.source += f"{cls.name}::~{cls.name}() = default;\n\n"

        accessors = AccessorWriter(self.schemas, cls)
        for shared in cls.shared:
            accessors.shared(shared, [row for row in cls.rows if row.shared == shared.name])
        for row in cls.rows:
            if row.kind == "listed" or (row.kind == "children" and row.shared):
                continue
            if self.declares(row) or (row.kind == "child" and row.shared and row.stem):
                if row.stem:
                    accessors.row(row)
        self.header += accessors.header
        self.source += accessors.source
        self.uses |= accessors.uses

        if cls.has_table and not payload:
            self.header += "\n"
            self.header += fill(
                "Copies everything from `source`, children included, which come from the factory."
            )
            self.header += fill("@return 1; 0 for null, no factory or no memory.")
            self.header += f"  u16 DeepCopyFrom({cls.name}* source);\n"
            if "DeepCopyFrom" not in cls.overrides:
                self.source += definition(
                    f"u16 {cls.name}::DeepCopyFrom",
                    [f"{cls.name}* source"],
                    "",
                    "return CopyAggregate(*this, source);",
                )
        signatures = {
            "AllRequiredPresent": "u16 AllRequiredPresent() override;",
            "GetFirstMissingRequiredTag": (
                "KRTagID GetFirstMissingRequiredTag(KRTagID after) override;"
            ),
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
        # Only a payload's copy is virtual; that of any other class is declared above.
        overrides = [name for name in cls.overrides if name != "DeepCopyFrom" or payload]
        if overrides:
            self.header += "\n"
            for name in overrides:
                self.header += f"  {signatures[name]}\n"
        if cls.declarations:
            self.header += "\n" + "\n".join(f"  {line}".rstrip() for line in cls.declarations) + "\n"

        members = self.own_members()
        if cls.has_table:
            self.table()
        if cls.has_table or members or cls.members:
            self.header += "\n protected:\n"
        if cls.has_table:
            self.header += (
                "  const krofx::internal::AggregateTable* GetTable() const override;\n"
            )
        if members:
            if cls.has_table:
                self.header += "\n"
            for cpp, name, initial in members:
                self.header += f"  {cpp} {name}{initial};\n"
        if cls.members:
            self.header += "\n" + "\n".join(f"  {line}".rstrip() for line in cls.members) + "\n"
        self.header += "};\n"


def typed_array(cls):
    """The declaration of the array class of one aggregate."""
    one = (
        f"class KROFX_API KRDynamicArray{cls.bare}"
        f" : public krofx::internal::ElementArray<{cls.name}> {{\n"
    )
    if len(one) > 101:
        one = one.replace(" : public", "\n    : public")
    text = fill(f"An array of {cls.name}, which the factory makes.", "") + one
    text += " public:\n  using ElementArray::ElementArray;\n\n protected:\n"
    return text + f"  {cls.name}* NewElement() const override;\n}};\n"


def typed_array_source(cls):
    head = f"{cls.name}* KRDynamicArray{cls.bare}::NewElement() const {{"
    body = f"return static_cast<{cls.name}*>(\n      CreateElement(&CreateBy<&KRDataObjFactory::New{cls.bare}>));"
    one = body.replace("\n      ", "")
    body = one if len(one) <= 98 else body
    return f"{head}\n  {body}\n}}\n\n"


PAYROLL_INCLUDES = [
    "krofx/payroll/payroll_amount.h",
    "krofx/payroll/payroll_date_time.h",
]
HEADER_INCLUDES = [
    "krofx/core/fixed_strings.h",
    "krofx/model/child_slot.h",
    "krofx/model/data_object.h",
    "krofx/model/value_arrays.h",
    "krofx/values/date_time.h",
    "krofx/values/keywords.h",
    "krofx/values/language.h",
    "krofx/values/precision_integer.h",
]
SOURCE_INCLUDES = [
    "krofx/model/factory.h",
    "krofx/model/factory_make.h",
    "krofx/model/value_kinds.h",
]


def header_of(cls):
    return cls.header if cls.word == "class" else cls.file.name + ".h"


def write_file(schemas, file, write):
    writers = []
    for cls in file.classes:
        if not cls.generated:
            continue
        writer = ClassWriter(schemas, cls)
        writer.write()
        writers.append(writer)
    origin = f"// Generated by schemac from {file.name}.schema.\n"

    if writers:
        includes = set(HEADER_INCLUDES + (PAYROLL_INCLUDES if file.payroll else []))
        declared = set()
        for writer in writers:
            base = schemas.classes.get(writer.cls.base)
            if base is not None and header_of(base) != file.name + ".h":
                includes.add(header_of(base))
            includes |= set(writer.cls.includes)
            declared |= {u for u in writer.uses if schemas.classes[u].file is not file}
        for writer in writers:
            for row in writer.cls.rows:
                if row.type in schemas.keywords:
                    includes.add(schemas.keywords[row.type].owner.header)
                if row.kind == "children" and writer.child_array(row) != "KRDynamicArrayDataObj":
                    includes.add(header_of(schemas.classes[row.type]))
                elif row.kind == "embedded":
                    includes.add(header_of(schemas.classes[row.type]))
        includes.discard(file.name + ".h")
        own = {w.cls.name for w in writers}
        arrays = [w.cls for w in writers if w.cls.typed_array]
        later = {u for w in writers for u in w.uses if u in own} | {c.name for c in arrays}
        guard = re.sub(r"[^0-9A-Z]", "_", file.name.upper()) + "_H_"
        text = "\n".join(f"// {line}".rstrip() for line in file.comment) + "\n//\n" + origin
        text += f"\n#ifndef {guard}\n#define {guard}\n\n"
        text += "".join(f'#include "{i}"\n' for i in sorted(includes)) + "\n"
        forward = sorted(declared | later)
        text += "".join(f"class {name};\n" for name in forward) + ("\n" if forward else "")
        text += "".join(typed_array(c) + "\n" for c in arrays)
        text += "\n".join(w.header for w in writers)
        text += f"\n#endif  // {guard}\n"
        write(file.name + ".h", text)

    includes = set(SOURCE_INCLUDES)
    for writer in writers:
        for used in writer.uses:
            includes.add(header_of(schemas.classes[used]))
    includes |= {header_of(cls) for cls in file.classes}
    if file.payroll:
        includes.add("krofx/payroll/payroll_kinds.h")
    if any(row.kind == "embedded" for cls in file.classes for row in cls.rows):
        includes.add("krofx/model/embedded_child.h")
    includes.discard(file.name + ".h")
    text = origin + "\n"
    if writers:
        text += f'#include "{file.name}.h"\n\n'
    text += "".join(f'#include "{i}"\n' for i in sorted(includes))
    text += "\nusing namespace krofx::internal;\n\n"
    text += "".join(w.source for w in writers)
    text += "".join(typed_array_source(w.cls) for w in writers if w.cls.typed_array)
    made = [cls for cls in file.classes if factory.makes(schemas, cls)]
    text += "\n".join(factory.definition(cls) for cls in made)
    write(file.name + ".cpp", text.rstrip("\n") + "\n")


def generate(source, write):
    schemas = model.Schemas(source)
    factory.load(source)
    for file in schemas.files:
        write_file(schemas, file, write)
    factory.generate(schemas, source, write)
    routing.generate(schemas, source, write)
    headers = sorted({header_of(cls) for cls in schemas.classes.values()})
    text = "// Every aggregate and every class around them. Generated by schemac.\n\n"
    text += "#ifndef KROFX_AGGREGATES_H_\n#define KROFX_AGGREGATES_H_\n\n"
    text += "".join(f'#include "{h}"\n' for h in headers)
    text += "\n#endif  // KROFX_AGGREGATES_H_\n"
    write("krofx/aggregates.h", text)
