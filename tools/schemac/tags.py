"""Tags: core/tags.schema becomes the enumeration KRTagID and the constant table behind the tag
dictionary.

The schema is blocks of "ids FIRST to LAST" followed by tag texts, with comment lines that begin
with "#". The comment before a block describes it and goes into the header.
"""

import re

SCHEMA = "krofx/core/tags.schema"

HEADER = """\
// The tags that the library knows, as numbers. Generated from core/tags.schema.

#ifndef KROFX_CORE_TAGS_H_
#define KROFX_CORE_TAGS_H_

#include "krofx/core/types.h"

/// A tag as a number: {count} tags, ids 1 to {count} with no hole; 0 is no tag. An enumerator is
/// named by the tag's text with each point as an underscore, so KRTag_NORV_BID is "NORV.BID".
/// TagDictionary turns an id into the text on the wire and back.
// clang-format off
enum KRTagID : u32 {{
  KRTag_None = 0,  ///< no tag
{enumerators}}};
// clang-format on

#endif  // KROFX_CORE_TAGS_H_
"""

SOURCE = """\
// The table behind the tag dictionary, in id order. Generated from core/tags.schema.

#include "krofx/core/tag_dictionary.h"

namespace {{

constexpr KRTagDictionaryEntry kTags[] = {{
{rows}}};

}}  // namespace

KRTagDictionaryEntry const* GetKRTagDictionary() {{ return kTags; }}

u16 NumberOfKRDictionaryEntry() {{ return static_cast<u16>(sizeof kTags / sizeof kTags[0]); }}
"""


def fail(line, text):
    raise SystemExit(f"{SCHEMA}:{line}: {text}")


class Block:
    """A run of consecutive ids with what the schema says about it."""

    def __init__(self, line, first, last, comment):
        self.line, self.first, self.last, self.comment = line, first, last, comment
        self.tags = []

    def rows(self):
        return zip(range(self.first, self.last + 1), self.tags)


def read(text):
    """The blocks of a schema, checked: ids without a hole, counts as announced, no tag twice."""
    blocks, comment, line_of = [], [], {}
    for number, line in enumerate(text.splitlines(), 1):
        line = line.strip()
        if line.startswith("#"):
            comment.append(line[1:].strip())
        elif not line:
            comment = []
        elif match := re.fullmatch(r"ids (\d+) to (\d+)", line):
            blocks.append(Block(number, int(match[1]), int(match[2]), comment))
        else:
            if not blocks:
                fail(number, "a tag before the first block")
            for tag in line.split():
                if not re.fullmatch(r"[A-Z][A-Z0-9.]*", tag):
                    fail(number, f"{tag} is no tag: capitals, digits and points only")
                if tag in line_of:
                    fail(number, f"{tag} stands already on line {line_of[tag]}")
                line_of[tag] = number
                blocks[-1].tags.append(tag)

    expected = 1
    for block in blocks:
        if block.first != expected:
            fail(block.line, f"the block must begin with id {expected}")
        expected += len(block.tags)
        if block.last != expected - 1:
            fail(block.line, f"the block's tags end at id {expected - 1}")
    return blocks


def enumerator(tag):
    return "KRTag_" + tag.replace(".", "_")


def generate(source, write):
    path = source / SCHEMA
    if not path.exists():
        return
    blocks = read(path.read_text())

    enumerators, rows = "", ""
    for block in blocks:
        enumerators += "\n" + "".join(f"  // {line}\n" for line in block.comment)
        for tag_id, tag in block.rows():
            enumerators += f"  {enumerator(tag)} = {tag_id},  ///< {tag}\n"
            rows += f'    {{{enumerator(tag)}, "{tag}"}},\n'
    write("krofx/core/tags.h", HEADER.format(count=blocks[-1].last, enumerators=enumerators))
    write("krofx/core/tags.cpp", SOURCE.format(rows=rows))
