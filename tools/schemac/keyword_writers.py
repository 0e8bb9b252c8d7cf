"""Writes the definitions of KRBuilder's operations for enumerations.

The operations are declared, with their place in the class, in krofx/build/builder.h; which of them
exist, and how they write, is said by the `build` and `tagged` words of the schemas of keywords.
"""

from cpp import definition

OPENING = """\
// The builder's operations for keywords, one for each enumeration that has them. Generated from the
// keywords.schema files; included by build/builder_keywords.cpp alone.

#ifndef KROFX_BUILD_KEYWORD_WRITERS_H_
#define KROFX_BUILD_KEYWORD_WRITERS_H_
"""


def _value(k):
    head = f"KRBuildStatus KRBuilder::Add{k.bare}"
    return definition(head, [f"{k.name} value"], "", "return AddKeyword(value);")


def _tag_and_value(k):
    return f"""\
KRBuildStatus KRBuilder::AddTagKR{k.bare}(KRTagID tag, {k.name} value) {{
  return WithTag(*this, tag, [&] {{ return Add{k.bare}(value); }});
}}
"""


def generate(keywords, write):
    written = [k for k in keywords.values() if k.writer]
    text = OPENING + "\n"
    text += "".join(_value(k) for k in written) + "\n"
    text += "".join(_tag_and_value(k) for k in written if k.tagged)
    write("krofx/build/keyword_writers.h", text + "\n#endif  // KROFX_BUILD_KEYWORD_WRITERS_H_\n")
