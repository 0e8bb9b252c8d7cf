"""Tags: the schema of tags becomes the enumeration KRTagID and the constant table of the tag
dictionary. docs/schema.md describes the language.
"""

import re

from sources import SchemaError, Words

HEADER = """\
// The tags that the library knows, as numbers. Generated from core/tags.schema.

#ifndef KROFX_CORE_TAGS_H_
#define KROFX_CORE_TAGS_H_

#include "krofx/core/types.h"

/// A tag as a number: {count} tags with consecutive ids from 1 to {count}; 0 is not a tag. The name
/// of an enumerator is the tag's text with each point as an underscore: KRTag_NORV_BID is
/// "NORV.BID".
/// TagDictionary turns an id into the text on the wire and back.
// clang-format off
enum KRTagID : u32 {{
  KRTag_None = 0,  ///< no tag
{enumerators}}};
// clang-format on

#endif  // KROFX_CORE_TAGS_H_
"""

SOURCE = """\
// The table of the tag dictionary, in id order. Generated from core/tags.schema.

#include "krofx/core/tag_dictionary.h"

namespace {{

constexpr KRTagDictionaryEntry kTags[] = {{
{rows}}};

}}  // namespace

const KRTagDictionaryEntry* GetKRTagDictionary() {{ return kTags; }}

u16 NumberOfKRDictionaryEntry() {{ return static_cast<u16>(sizeof kTags / sizeof kTags[0]); }}
"""


class Block:
    """A run of consecutive ids with what the schema says about it."""

    def __init__(self, place, first, last, comment):
        self.place, self.first, self.last, self.comment = place, first, last, comment
        self.tags = []

    def rows(self):
        return zip(range(self.first, self.last + 1), self.tags)


def _open(words, comment):
    words.expect("ids")
    first = words.number("the first id", 1)
    words.expect("to")
    block = Block(words.place, first, words.number("the last id", first), comment)
    words.end()
    return block


def read(schema):
    """The blocks of the schema, checked: no hole in the ids, the counts announced, no tag twice."""
    blocks, comment, places = [], [], {}
    for number, line in schema.lines():
        line, place = line.strip(), schema.place(number)
        if line.startswith("#"):
            comment.append(line[1:].strip())
        elif not line:
            comment = []
        elif line.split()[0] == "ids":
            blocks.append(_open(Words(place, line), comment))
        else:
            for tag in line.split():
                if not re.fullmatch(r"[A-Z][A-Z0-9.]*", tag):
                    raise SchemaError(place, f"{tag} is no tag: capitals, digits and points only")
                if not blocks:
                    raise SchemaError(place, f"tag {tag} is before the first block")
                if tag in places:
                    raise SchemaError(place, f"tag {tag} is on line {places[tag].line} already")
                places[tag] = place
                blocks[-1].tags.append(tag)
    _check_ids(blocks)
    return blocks


def _check_ids(blocks):
    expected = 1
    for block in blocks:
        if block.first != expected:
            raise SchemaError(block.place, f"{block.first}: id {expected} is the next one")
        expected += len(block.tags)
        if block.last != expected - 1:
            raise SchemaError(block.place, f"{block.last}: the tags end at id {expected - 1}")


def enumerator(tag):
    return "KRTag_" + tag.replace(".", "_")


def generate(blocks, write):
    enumerators, rows = "", ""
    for block in blocks:
        enumerators += "\n" + "".join(f"  // {line}\n" for line in block.comment)
        for tag_id, tag in block.rows():
            enumerators += f"  {enumerator(tag)} = {tag_id},  ///< {tag}\n"
            rows += f'    {{{enumerator(tag)}, "{tag}"}},\n'
    write("krofx/core/tags.h", HEADER.format(count=blocks[-1].last, enumerators=enumerators))
    write("krofx/core/tags.cpp", SOURCE.format(rows=rows))
