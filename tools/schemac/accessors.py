"""The accessors of a class: for each row, and for each slot or array that several rows share.

The comment of an accessor has three parts: what the accessor does, what the row means (the row's
own `///` lines), and the row's type, use and versions.
"""

import re

from cpp import definition, fill, inline
from row_types import DATES, NUMBERS, REPEATED_NUMBERS, cpp_type, describe, is_text, kind
from tags import enumerator

NOT_VALID = "0 when the tag is not valid in this version"


def member(stem):
    """m_txType for TxType, m_fitId for FITId, m_url2 for URL2."""
    head = re.match(r"[A-Z]+(?=[A-Z][a-z])|[A-Z]+|[A-Z]", stem)[0]
    return "m_" + head.lower() + stem[len(head) :]


def meaning(comment):
    """The text of `///` lines."""
    return " ".join(line.removeprefix("///").strip() for line in comment)


class AccessorWriter:
    """Writes the accessors of one class: declarations into `header`, definitions into `source`."""

    def __init__(self, model, cls):
        self.model, self.cls = model, cls
        self.header, self.source = "", ""
        self.uses = set()  # generated classes whose header the source needs
        self.about = ""  # what each comment says about the current row

    def declare(self, action, declaration, result=""):
        """A documented declaration: a prototype, or a (head, statement) that defines it at once."""
        self.header += fill("\n".join(part for part in (action, self.about) if part))
        if result:
            self.header += fill(f"@return {result}.")
        if isinstance(declaration, tuple):
            self.header += inline(*declaration)
        else:
            self.header += f"  {declaration};\n"

    def define(self, result, name, parameters, body, const=False):
        head = f"{result} {self.cls.name}::{name}"
        self.source += definition(head, parameters, " const" if const else "", body) + "\n"

    def row(self, row):
        """The accessors of one row."""
        self.header += "\n"
        use = describe(row) + self._elsewhere(row) + "."
        self.about = "\n".join(filter(None, (meaning(row.comment), use)))
        getattr(self, f"_{row.kind}")(row, row.stem, enumerator(row.tag))

    def shared(self, shared, rows):
        """The accessors of a slot or an array; `rows` are those that fill it."""
        self.header += "\n"
        what = "child" if shared.kind == "slot" else "list"
        self.about = "\n".join(
            filter(None, (meaning(shared.comment), f"{shared.name}: one {what} for several tags."))
        )
        if rows:
            lines = [f"{describe(row)}. {meaning(row.comment)}".strip() for row in rows]
            listed = "\n".join(f"- {line}" for line in lines)
        else:
            listed = ""
        if shared.kind == "array":
            self._array(shared.name, f"{shared.name} entries", shared.type, listed)
        else:
            self._slot(shared, listed)

    def _elsewhere(self, row):
        """Where the row has another use in a derived class, whose accessors are these."""
        own = "required" if row.required else "optional"
        named = {}
        for cls in self.model.classes.values():
            if cls.has_table and self.cls in self.model.ancestors(cls):
                use = self._use_in(cls, row)
                if use != own:
                    named.setdefault(use, []).append(cls.name)
        return "".join(f"; {use} in {', '.join(names)}" for use, names in named.items())

    def _use_in(self, cls, row):
        """What a class that derives from the row's makes of it."""
        if not any(other.tag == row.tag for other in self.model.table_rows(cls)):
            return "not valid"
        required = dict(self.model.required_of(cls))
        return "required" if row.tag in required else "optional"

    # Parts that several kinds share

    def _has(self, name, tag, text):
        if re.search(rf"\bHas{name}\(", "\n".join(self.cls.declarations)):
            return
        self.declare(
            f"Says whether {text} is present.",
            (f"u16 Has{name}() const", f"return ValidateTag({tag});"),
            "1 when it is; 0 when it is not",
        )

    def _clear(self, name, tag, text, child=""):
        self.declare(
            f"Makes {text} absent.{child}",
            (f"u16 Clear{name}()", f"return ClearTag({tag});"),
            "1; 0, after a KRPW_UNKNOWNTAG warning, when the tag is not valid in this version",
        )

    # Values

    def _value(self, row, name, tag):
        cpp, own = cpp_type(row), member(row.stem)
        text_class = is_text(cpp)
        shown = f"const {cpp}&" if text_class or cpp == "KRLanguage" else cpp
        self.declare(
            f"Gets the value of {row.tag}, whether the tag is present or not.",
            (f"{shown} Get{name}() const", f"return {own};"),
        )
        self._has(name, tag, row.tag)
        if not text_class:
            self._set_native(row, cpp)
        if not row.hand:
            self._set_text(row, text_class)
            if cpp in DATES or row.type in NUMBERS or self._reads_boolean_text(row):
                self._set_characters(row)
            if self._reads_boolean_text(row):
                self._set_int(row)
        self._clear(name, tag, row.tag)

    def _reads_boolean_text(self, row):
        return row.type == "boolean" and self.cls.file.payroll

    def _set_native(self, row, cpp):
        native = cpp
        if cpp in ("KRPosPrecisionInteger", "KRPercent"):
            native = "KRPrecisionInteger"
        reference = native.startswith("KR") and native not in self.model.keywords
        taken = f"const {native}& value" if reference else f"{native} value"
        limited = row.type in NUMBERS or cpp in DATES
        failure = NOT_VALID + (" or the value is not allowed" if limited else "")
        what = f"Sets {row.tag} to a copy of `value`." if reference else f"Sets {row.tag}."
        self.declare(what, f"u16 Set{row.stem}({taken})", f"1; {failure}")
        body = f"return SetNative(*this, {enumerator(row.tag)}, {member(row.stem)}, value);"
        self.define("u16", f"Set{row.stem}", [taken], body)

    def _set_text(self, row, text_class):
        if text_class:
            result = (
                f"1; {NOT_VALID}; 3 for an empty text. A text over the limit is kept, after a"
                " KRPW_TOOLONG warning"
            )
        else:
            result = (
                "1; 0 when the text is not such a value or the tag is not valid in this version"
            )
        parameter = "const KRString& text"
        declaration = f"u16 Set{row.stem}({parameter})"
        self.declare(f"Sets {row.tag} from its text, which is copied.", declaration, result)
        self.define("u16", f"Set{row.stem}", [parameter], self._from_text("SetFromText", row))

    def _from_text(self, function, row):
        """The call that stores a text into the row's member, even if the object's table differs."""
        own, value = member(row.stem), kind(self.model, row)
        return (f"return {function}", ["*this", enumerator(row.tag), value, f"&{own}", "text"])

    def _set_characters(self, row):
        name = f"Set{row.stem}"
        self.declare(
            f"Sets {row.tag} from its text, as the form for KRString does.",
            f"u16 {name}(const char* text)",
        )
        self.define("u16", name, ["const char* text"], f"return {name}(KRString(text));")
        # Where no number is taken, a literal 0 would be a null text. A form for int would take the
        # types of payroll amounts too, which are enumerators and are allowed.
        if not self._reads_boolean_text(row) and cpp_type(row) != "KRPayrollAmount":
            self.header += "  /// A number is not a text; a literal 0 would be a null one.\n"
            self.header += f"  u16 {name}(int) = delete;\n"

    def _set_int(self, row):
        # A literal 0 is both a number and a null pointer; a form for int resolves the call.
        name = f"Set{row.stem}"
        self.declare(
            f"Sets {row.tag}, as the form for u16 does: 0 is N, any other number is Y.",
            f"u16 {name}(int value)",
        )
        self.define("u16", name, ["int value"], f"return {name}(static_cast<u16>(value != 0));")

    # Children

    def _embedded(self, row, name, tag):
        self._has(name, tag, row.tag)

    def _child(self, row, name, tag):
        child, shared = row.type, bool(row.shared)
        self.uses.add(child)
        slot = member(row.shared or row.stem)
        self.declare(
            f"Gets the {row.tag} child, which this object still owns; null when there is none.",
            f"{child}* Get{name}() const",
        )
        cast = "dynamic_cast" if shared else "static_cast"
        self.define(f"{child}*", f"Get{name}", [], f"return {cast}<{child}*>({slot}.Get());", True)
        self._has(name, tag, row.tag)
        self.declare(
            f"Takes ownership of `child` and deletes the previous {row.tag}. Null leaves the tag"
            " present with nothing to write.",
            f"u16 Set{name}({child}* child)",
            f"1; {NOT_VALID}. In both cases the child belongs to this object",
        )
        body = f"return SetChild(*this, {slot}, {tag}, child);"
        if shared:
            body = f"if (child != nullptr) child->SetType({tag});\n  {body}"
        self.define("u16", f"Set{name}", [f"{child}* child"], body)
        self._clear(name, tag, row.tag, " This object still owns the child.")

    def _slot(self, shared, listed):
        self.uses.add(shared.type)
        own, name = member(shared.name), shared.name
        about = self.about
        self.about = f"{about}\n{listed}" if listed else about
        self.declare(
            "Gets the child, which this object still owns; null when there is none.",
            f"{shared.type}* Get{name}() const",
        )
        self.about = about
        body = f"return static_cast<{shared.type}*>({own}.Get());"
        self.define(f"{shared.type}*", f"Get{name}", [], body, True)
        self.declare(
            "Takes ownership of `child` and deletes the previous one. The child's type is the"
            " tag that becomes present. The tag of a previous child of another type stays present"
            f" as well, until Clear{name} is called. A child whose type is no tag of {name}, or is"
            " not valid here, is not written, and makes all its tags absent. Null leaves the tag"
            " present with nothing to write.",
            f"u16 Set{name}({shared.type}* child)",
            "1; 0 when that tag is not valid here, and for null when it is not known which tag is"
            " meant. In both cases the child belongs to this object",
        )
        body = f"return SetSharedChild(*this, {own}, child);"
        self.define("u16", f"Set{name}", [f"{shared.type}* child"], body)
        self.declare(
            f"Makes {name} absent, whatever its tag is. This object still owns the child.",
            f"u16 Clear{name}()",
            "1; 0, after a KRPW_UNKNOWNTAG warning, when none of the tags is valid in this version",
        )
        self.define("u16", f"Clear{name}", [], f"return ClearSharedChild(*this, {own});")

    def _children(self, row, name, tag):
        self._array(name, f"{row.tag} entries", row.type)
        self._has(name, tag, row.tag)

    def _array(self, name, entries, child, listed=""):
        """The accessors of an array of children, whose member is named after it."""
        own = member(name)
        self.uses.add(child)
        self.declare(
            f"Gets the number of {entries}.",
            (f"u16 GetNum{name}() const", f"return {own}.Entries();"),
        )
        about = self.about
        self.about = f"{about}\n{listed}" if listed else about
        self.declare(
            "Gets an entry, which this object still owns; null when there is none.",
            f"{child}* Get{name}(u16 index) const",
        )
        self.about = about
        self.declare(
            "Takes ownership of `child` as entry `index`, and deletes the one there.",
            f"u16 Set{name}(u16 index, {child}* child)",
            "1, and the child belongs to this object; 0 when it could not be stored or its type is"
            " that of another list of this object, and then it still belongs to the caller; 0 when"
            " its type is not valid in this version, and then it belongs to this object",
        )
        self.declare(
            "Takes ownership of `child` as the entry after the last.",
            f"u16 Append{name}({child}* child)",
            "1, whether its type is valid in this version or not, and the child belongs to this"
            " object; 0 when it could not be stored or its type is that of another list of this"
            " object, and then it still belongs to the caller",
        )
        self.declare(
            "Removes an entry without deleting it; the later ones move down.",
            (f"u16 Disconnect{name}(u16 index)", f"return {own}.UnSet(index);"),
            "1, and the entry belongs to the caller, who must have its pointer; 0 when there is no"
            " such entry",
        )
        self._all_of(name, own, "entries")
        body = f"return static_cast<{child}*>({own}.Get(index));"
        self.define(f"{child}*", f"Get{name}", ["u16 index"], body, True)
        body = f"return SetElement(*this, {own}, index, child);"
        self.define("u16", f"Set{name}", ["u16 index", f"{child}* child"], body)
        body = f"return AppendElement(*this, {own}, child);"
        self.define("u16", f"Append{name}", [f"{child}* child"], body)

    def _all_of(self, name, own, entries):
        self.declare(f"Deletes all {entries}.", (f"void DeleteAll{name}()", f"{own}.DeleteAll();"))
        self.declare(
            f"Removes all {entries} without deleting them: they belong to the caller, who must have"
            " their pointers.",
            (f"void Clear{name}()", f"{own}.Clear();"),
        )

    # Repeated values

    def _repeated(self, row, name, tag):
        own, array = member(row.stem), row.type
        if array in REPEATED_NUMBERS:
            element, native = "u16", REPEATED_NUMBERS[array]
        elif array == "KRDynamicArrayLanguage":
            element, native = "KRLanguage", "const KRLanguage&"
        else:
            element, native = "KRString", None
        self.declare(
            f"Gets the number of {row.tag} values.",
            (f"u16 GetNum{name}() const", f"return {own}.Entries();"),
        )
        self.declare(
            "Gets a value, which this object still owns; null when there is none.",
            (f"{element}* Get{name}(u16 index) const", f"return {own}.Get(index);"),
        )
        self._has(name, tag, row.tag)
        if native is None:
            self._set_repeated_text(row, own, tag)
        else:
            self._set_repeated_native(row, own, tag, native)
        self.define(
            "u16",
            f"Append{name}",
            ["const KRString& text"],
            self._from_text("AppendFromText", row),
        )
        self._all_of(name, own, "values")

    def _set_repeated_native(self, row, own, tag, native):
        name, value = row.stem, f"{native} value"
        self.declare(
            f"Sets {row.tag} value `index` to a copy, or adds one after the last.",
            f"u16 Set{name}(u16 index, {value})",
            f"1; {NOT_VALID} or it could not be stored",
        )
        self.declare(
            f"Adds a copy as a {row.tag} value.",
            f"u16 Append{name}({value})",
            "1; 0 when it could not be stored",
        )
        body = ("return SetNativeEntry", ["*this", tag, own, "index", "value"])
        self.define("u16", f"Set{name}", ["u16 index", value], body)
        body = ("return AppendNativeEntry", ["*this", tag, own, "value"])
        self.define("u16", f"Append{name}", [value], body)
        self.declare(
            f"Adds a {row.tag} value from its text, which is copied.",
            f"u16 Append{name}(const KRString& text)",
            "1; 0 when the text is not such a value",
        )

    def _set_repeated_text(self, row, own, tag):
        name, text = row.stem, "const KRString& text"
        self.declare(
            f"Sets {row.tag} value `index` to a copy of `text`.",
            f"u16 Set{name}(u16 index, {text})",
            f"1; {NOT_VALID} or it could not be stored; 3 for an empty text. A text over the limit is"
            " kept, after a KRPW_TOOLONG warning",
        )
        body = ("return SetTextEntry", ["*this", tag, own, "index", "text"])
        self.define("u16", f"Set{name}", ["u16 index", text], body)
        self.declare(
            f"Adds a copy as a {row.tag} value.",
            f"u16 Append{name}({text})",
            "1; 0 when it could not be stored; 3 for an empty text. A text over the limit is kept,"
            " after a KRPW_TOOLONG warning",
        )
