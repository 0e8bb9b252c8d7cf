"""Turns schemas of keywords into enumerations, keyword tables and conversion classes.
docs/schema.md describes the language.

For the schema krofx/FOLDER/keywords.schema it writes krofx/FOLDER/keywords.h, with the enumerations
and their tables, and krofx/FOLDER/keyword_conversions.h, with the classes.
"""

import re
from dataclasses import dataclass, field

from cpp import call
from sources import SchemaError, Words

WRITERS = {"": "None", "direct": "Direct", "text": "Text", "tolerant": "Tolerant"}


@dataclass
class Keywords:
    """One enumeration and its texts."""

    name: str
    owner: "Owner"
    stem: str
    place: object = None
    writer: str = ""
    tagged: bool = False
    read_from: int = 0
    none: int = None
    comment: list = field(default_factory=list)
    texts: list = field(default_factory=list)

    @property
    def bare(self):
        """The name without KR, as in KRBuilder::AddBankTxType."""
        return self.name.removeprefix("KR")

    def enumerator(self, text):
        return f"{self.name}_{re.sub(r'[^0-9A-Za-z]', '_', text)}"


@dataclass
class Owner:
    """The class that has the conversions of some enumerations."""

    name: str
    base: bool = False
    range_checked: bool = False
    place: object = None
    header: str = ""  # declares the enumerations
    comment: list = field(default_factory=list)
    lists: list = field(default_factory=list)


def _owner(words, tree):
    owner = Owner(words.take("a class"), place=words.place)
    while words:
        word = words.expect("base", "range-checked").replace("-", "_")
        if getattr(owner, word if word == "range_checked" else "base"):
            words.fail(f"{word} is said twice")
        setattr(owner, word, True)
    if owner.base and not tree.header_of(owner.name):
        words.fail(f"no hand-written header declares {owner.name}")
    return owner


def _keywords(words, owners):
    name = words.take("an enumeration")
    if not owners:
        words.fail(f"{name} is before the first class")
    made = Keywords(name, owners[-1], name.removeprefix("KR"), words.place)
    seen = set()
    while words:
        word = words.expect("as", "build", "tagged", "read-from", "none")
        if word in seen:
            words.fail(f"{word} is said twice")
        seen.add(word)
        if word == "as":
            made.stem = words.take("a stem")
        elif word == "build":
            made.writer = words.expect("direct", "text", "tolerant")
        elif word == "tagged":
            made.tagged = True
        elif word == "read-from":
            made.read_from = words.number("a value")
        else:
            made.none = words.number("a value", -1)
    owners[-1].lists.append(made)
    return made


def _add_texts(keywords, words):
    for text in words.rest():
        if text in keywords.texts:
            words.fail(f"keyword {text} is there twice")
        keywords.texts.append(text)


def parse(schema, tree):
    """The owners of one file, in order."""
    owners, current, comment = [], None, []
    for number, line in schema.lines():
        words = Words(schema.place(number), "" if line.lstrip().startswith(("#", "///")) else line)
        if line.lstrip().startswith("#"):
            continue
        if line.startswith("///"):
            comment.append(line.rstrip())
        elif not line.strip() or line[0].isspace():
            if comment:
                words.fail(f"{comment[-1]} must be right above a class or an enumeration")
            if words and not isinstance(current, Keywords):
                words.fail(f"{words.peek()} is in no enumeration")
            if words:
                _add_texts(current, words)
        else:
            kind = words.expect("class", "keywords")
            if kind == "class":
                current = _owner(words, tree)
                owners.append(current)
            else:
                current = _keywords(words, owners)
            current.comment, comment = comment, []
    if comment:
        raise SchemaError(schema.place(number), f"{comment[-1]} is at the end, about nothing")
    return owners


def read(tree):
    """The owners of every schema of keywords: [(schema, owners)], checked."""
    files = [(schema, parse(schema, tree)) for schema in tree.schemas("keywords")]
    places = {}
    for schema, owners in files:
        for owner in owners:
            owner.header = schema.name + ".h"
            for part in (owner, *owner.lists):
                if part.name in places:
                    raise SchemaError(part.place, f"{part.name} is at {places[part.name]} already")
                places[part.name] = part.place
                if not part.comment:
                    raise SchemaError(part.place, f"{part.name} has no /// comment")
            for keywords in owner.lists:
                if keywords.read_from >= len(keywords.texts):
                    raise SchemaError(
                        keywords.place, f"{keywords.name} has no keyword that is ever read"
                    )
    return files


def by_name(files):
    """Every enumeration, by name."""
    return {k.name: k for _, owners in files for owner in owners for k in owner.lists}


def _guarded(path, opening, body):
    guard = re.sub(r"[^0-9A-Z]", "_", path.upper()) + "_"
    return f"{opening}\n\n#ifndef {guard}\n#define {guard}\n\n{body}\n#endif  // {guard}\n"


def _enumeration(k):
    lines = list(k.comment)
    lines.append(f"enum {k.name} : {'u32' if k.none is None else 's32'} {{")
    if k.none is not None:
        lines.append(f"  {k.name}_None = {k.none},  ///< None of the keywords.")
    lines += [f'  {k.enumerator(t)} = {i},  ///< "{t}"' for i, t in enumerate(k.texts)]
    return "\n".join(lines + ["};\n"])


def _data(k):
    texts = ", ".join(f'"{t}"' for t in k.texts)
    none = f"  static constexpr {k.name} kNone = {k.name}_None;\n" if k.none is not None else ""
    return f"""template <>
struct KeywordData<{k.name}> {{
  static constexpr std::string_view kTexts[] = {{{texts}}};
  static constexpr u16 kReadFrom = {k.read_from};
  static constexpr bool kLogsOutOfRange = {str(k.owner.range_checked).lower()};
  static constexpr KeywordWriter kWriter = KeywordWriter::{WRITERS[k.writer]};
  static constexpr bool kTagged = {str(k.tagged).lower()};
{none}}};
"""


def _keywords_header(path, owners):
    lists = [k for owner in owners for k in owner.lists]
    body = '#include "krofx/core/types.h"\n#include "krofx/values/internal/keyword_table.h"\n\n'
    body += "// clang-format off\n\n" + "\n".join(_enumeration(k) for k in lists)
    body += "\nnamespace krofx::internal {\n\n" + "\n".join(_data(k) for k in lists)
    body += "\n}  // namespace krofx::internal\n\n// clang-format on\n"
    return _guarded(path, "// The enumerations of element values, and their keywords.", body)


def _pair(k):
    traits = f"krofx::internal::KeywordTraits<{k.name}>"
    failure = "0, with `out` unchanged, for a value beyond the list"
    if k.owner.range_checked:
        failure = "0, with `out` unchanged, after a KRPW_BADFORMAT warning, beyond the list"
    failure += "."
    parameters = ["const KRString& text", f"{k.name}& out"]
    reader = call(f"static u16 StringTo{k.stem}", parameters, " {", "  ")
    missing = "`out` unchanged" if k.none is None else f"`out` set to {k.name}_None"
    return f"""  /// Gives the keyword of a {k.name}.
  /// @return 1; {failure}
  static u16 {k.stem}ToString({k.name} value, KRString& out) {{
    return {traits}::ToText(value, out);
  }}
  /// Finds the {k.name} of a keyword, without regard to case.
  /// @return 1; 0, with {missing} and a KRPW_BADFORMAT warning, for any other.
{reader}\
    return {traits}::FromText(text, out);
  }}
"""


def _class(owner):
    name = owner.name + ("Base" if owner.base else "")
    text = "\n".join(owner.comment)
    text += f"\nclass KROFX_API {name} : public krofx::internal::KeywordConversion {{\n public:\n"
    text += "\n".join(_pair(k) for k in owner.lists) + "};\n"
    if owner.base:
        text = f"namespace krofx::internal {{\n\n{text}\n}}  // namespace krofx::internal\n"
    return text


def _conversions_header(path, include, owners):
    includes = ("krofx/core/export.h", "krofx/core/string.h", include)
    body = "".join(f'#include "{name}"\n' for name in includes) + "\n"
    body += "\n".join(_class(owner) for owner in owners)
    return _guarded(path, "// Conversions between enumerations and their keywords.", body)


def generate(files, write):
    for schema, owners in files:
        folder = schema.name.rpartition("/")[0]
        keywords = f"{folder}/keywords.h"
        conversions = f"{folder}/keyword_conversions.h"
        write(keywords, _keywords_header(keywords, owners))
        write(conversions, _conversions_header(conversions, keywords, owners))
