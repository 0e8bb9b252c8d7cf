"""Turns keywords.schema files into enumerations, keyword tables and conversion classes.

For krofx/FOLDER/keywords.schema (the language is told at the top of krofx/values/keywords.schema)
it writes krofx/FOLDER/keywords.h, with the enumerations and their tables, and
krofx/FOLDER/keyword_conversions.h, with the classes. load() serves other generators that need to
know an enumeration.
"""

import pathlib
import re
import shlex
from dataclasses import dataclass, field

WRITERS = {None: "None", "direct": "Direct", "text": "Text", "tolerant": "Tolerant"}


@dataclass
class Keywords:
    """One enumeration and its texts."""

    name: str
    owner: "Owner"
    stem: str
    writer: str = None
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
    header: str = ""  # declares the enumerations
    comment: list = field(default_factory=list)
    lists: list = field(default_factory=list)


def _pairs(words):
    """Reads `as BankTx tagged` into {"as": "BankTx", "tagged": True}."""
    flags = ("tagged", "base", "range-checked")
    result, rest = {}, list(words)
    while rest:
        word = rest.pop(0)
        result[word] = True if word in flags else rest.pop(0)
    return result


def parse(path):
    """The owners of one file, in order."""
    owners, current, comment = [], None, []
    for number, line in enumerate(path.read_text().splitlines(), 1):
        text = line.strip()
        if not text or text.startswith("#"):
            continue
        try:
            if line.startswith("///"):
                comment.append(text)
            elif line[0].isspace():
                if comment:
                    raise ValueError("a /// comment must be right above a class or keywords line")
                current.texts += shlex.split(text)
            else:
                kind, name, *words = text.split()
                options = _pairs(words)
                if kind == "class":
                    current = Owner(
                        name, options.pop("base", False), options.pop("range-checked", False)
                    )
                    owners.append(current)
                elif kind == "keywords":
                    none = options.pop("none", None)
                    current = Keywords(
                        name,
                        owners[-1],
                        options.pop("as", name.removeprefix("KR")),
                        options.pop("build", None),
                        options.pop("tagged", False),
                        int(options.pop("read-from", 0)),
                        None if none is None else int(none),
                    )
                    WRITERS[current.writer]
                    owners[-1].lists.append(current)
                else:
                    raise ValueError(f"unknown word {kind}")
                current.comment, comment = comment, []
                if options:
                    raise ValueError(f"unknown words {sorted(options)}")
        except (AttributeError, IndexError, KeyError, ValueError) as error:
            raise SystemExit(f"{path}:{number}: {error!r}") from error
    return owners


def load(source):
    """Every enumeration of every keywords.schema below `source`, by name."""
    known = {}
    for file in sorted(pathlib.Path(source).glob("krofx/**/keywords.schema")):
        for owner in parse(file):
            owner.header = file.relative_to(source).with_suffix(".h").as_posix()
            known.update((k.name, k) for k in owner.lists)
    return known


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
    body = '#include "krofx/core/types.h"\n#include "krofx/values/keyword_table.h"\n\n'
    body += "// clang-format off\n\n" + "\n".join(_enumeration(k) for k in lists)
    body += "\nnamespace krofx::internal {\n\n" + "\n".join(_data(k) for k in lists)
    body += "\n}  // namespace krofx::internal\n\n// clang-format on\n"
    return _guarded(path, "// The enumerations of element values, and their keywords.", body)


def _pair(k):
    traits = f"krofx::internal::KeywordTraits<{k.name}>"
    failure = "0, and `out` unchanged, for a value beyond the list"
    if k.owner.range_checked:
        failure = "0, with a KRPW_BADFORMAT warning and `out` unchanged, beyond the list"
    failure += "."
    opening = f"  static u16 StringTo{k.stem}("
    reader = f"{opening}const KRString& text, {k.name}& out) {{"
    if len(reader) > 100:
        reader = reader.replace(", ", ",\n" + " " * len(opening))
    missing = "`out` unchanged" if k.none is None else f"`out` {k.name}_None"
    return f"""  /// Gives the keyword of a {k.name}.
  /// @return 1; {failure}
  static u16 {k.stem}ToString({k.name} value, KRString& out) {{
    return {traits}::ToText(value, out);
  }}
  /// Finds the {k.name} of a keyword, without regard to case.
  /// @return 1; 0, and {missing}, after a KRPW_BADFORMAT warning, when there is none.
{reader}
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
    body = f'#include "krofx/core/export.h"\n#include "krofx/core/string.h"\n#include "{include}"\n\n'
    body += "\n".join(_class(owner) for owner in owners)
    return _guarded(path, "// Conversions between enumerations and their keywords.", body)


def generate(source, write):
    for file in sorted(pathlib.Path(source).glob("krofx/**/keywords.schema")):
        folder = file.parent.relative_to(source).as_posix()
        owners = parse(file)
        keywords = f"{folder}/keywords.h"
        conversions = f"{folder}/keyword_conversions.h"
        write(keywords, _keywords_header(keywords, owners))
        write(conversions, _conversions_header(conversions, keywords, owners))
