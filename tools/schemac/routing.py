"""Turns krofx/envelope/routing.schema (the language stands at its head) into the tables of
krofx/envelope/routing.h.
"""

import re

from model import VERSIONS
from tags import enumerator

STANDARD = {
    "request": "TOKEN(V1) TOKEN2(V2+) TOKENONLY REFRESH REJECTIFMISSING NORV.REFRESH",
    "response": "TOKEN(V1) TOKEN2(V2+) LOSTSYNC NORV.REFRESH SYNCERROR(V2+) NORV.SYNCERROR",
}
OWN = {"request": "TRNUID CLTCOOKIE TAN", "response": "TRNUID CLTCOOKIE STATUS"}
BARE = {"request": "TRNUID", "response": "TRNUID STATUS"}
RULES = {"held": "kHeld", "payload": "kPayload", "choice": "kChoice", "any": "kAny"}


def versioned(word):
    """TOKEN2(V2+) gives ("TOKEN2", 0xfffe)."""
    match = re.fullmatch(r"([^(]+)(?:\((.*)\))?", word)
    return match[1], VERSIONS[match[2] or ""]


def lines(path):
    """The logical lines: comments gone, continued lines joined."""
    text = ""
    for number, line in enumerate(path.read_text().splitlines(), 1):
        line = line.strip()
        if not text and (not line or line.startswith("#")):
            continue
        text += line.removesuffix("\\").strip() + " "
        if not line.endswith("\\"):
            yield number, text.split()
            text = ""


class Tables:
    def __init__(self, schemas):
        self.schemas = schemas
        self.arrays = ""
        self.rows = {}

    def tag(self, text):
        if text not in self.schemas.tags:
            raise ValueError(f"no tag {text}")
        return enumerator(text)

    def array(self, type_name, name, items):
        one = f"constexpr {type_name} {name}[] = {{{', '.join(items)}}};"
        if len(one) > 100:
            one = f"constexpr {type_name} {name}[] = {{\n" + "".join(
                f"    {item},\n" for item in items
            )
            one += "};"
        self.arrays += one + "\n"

    def valid(self, name, words):
        rows = [versioned(word) for word in words]
        items = [f"{{{self.tag(tag)}, 0x{mask:x}}}" for tag, mask in rows]
        self.array("KRTagTableEntry", name, items)
        return f"{{{name}, {len(items)}}}"

    def add(self, table, row):
        self.rows.setdefault(table, []).append(row)

    def set(self, side, name, options, children):
        valid = self.valid("kSet_" + name.replace(".", "_"), children)
        for version in ("V1",) if "V1" in options else ("V1", "V2"):
            self.add(f"sets_{side}", f"{{{self.tag(name + version)}, {valid}}}")
            mask = VERSIONS[version]
            self.add(f"set_tags_{side}", f"{{{self.tag(name + version)}, 0x{mask:x}}}")

    def transaction(self, side, name, options, children):
        short = name.replace(".", "_")
        payloads = [child.split("=") for child in children]
        own = BARE if "bare" in options else OWN
        valid = self.valid("kValid_" + short, own[side].split() + [p[0] for p in payloads])
        items = []
        for word, cls in payloads:
            known = self.schemas.classes.get(cls)
            create = "nullptr"
            if known is not None:
                create = f"&CreateBy<&KRDataObjFactory::New{known.bare}>"
            items.append(f"{{{self.tag(versioned(word)[0])}, {create}}}")
        pointer = "nullptr"
        if items:
            pointer = f"kPayloads_{short}"
            self.array("PayloadRoute", pointer, items)
        rule = next(RULES[word] for word in options if word in RULES)
        excuse = {
            key: "kShown" if f"shown_{key}" in options else "kHeld" if key in options else "kNone"
            for key in ("error", "up_to_date")
        }
        mapped = "false" if "unmapped" in options or side == "response" else "true"
        self.add(
            f"transactions_{side}",
            f"{{{self.tag(name)}, {valid}, {pointer}, {len(items)}, PayloadRule::{rule}, "
            f"Excuse::{excuse['error']}, Excuse::{excuse['up_to_date']}, {mapped}}}",
        )

    def sync(self, side, name, options, words):
        short = name.replace(".", "_")
        needs = []
        if "needs" in words:
            at = words.index("needs")
            words, needs = words[:at], words[at + 1 :]
        if words[0] == "standard":
            words = STANDARD[side].split() + words[1:]
        valid = self.valid("kValid_" + short, words)
        either = "true" if "either_account" in needs else "false"
        needs = [self.tag(n) for n in needs if n != "either_account"]
        pointer = "nullptr"
        if needs:
            pointer = f"kNeeds_{short}"
            self.array("KRTagID", pointer, needs)
        mapped = "false" if "unmapped" in options or side == "response" else "true"
        self.add(
            f"syncs_{side}",
            f"{{{self.tag(name)}, {valid}, {either}, {pointer}, {len(needs)}, {mapped}}}",
        )

    def table(self, type_name, name, key):
        items = "".join(f"    {row},\n" for row in self.rows[key])
        return f"constexpr {type_name} {name}[] = {{\n{items}}};\n\n"


ACCESS = """\
template <class Row, u16 kRequests, u16 kResponses>
constexpr Rows<Row> Choose(Side side, const Row (&requests)[kRequests],
                           const Row (&responses)[kResponses]) {
  return side == Side::kRequest ? Rows<Row>{requests, kRequests} : Rows<Row>{responses, kResponses};
}

}  // namespace

Rows<TransactionRoute> Transactions(Side side) {
  return Choose(side, kRequestTransactions, kResponseTransactions);
}

Rows<SyncRoute> Syncs(Side side) { return Choose(side, kRequestSyncs, kResponseSyncs); }

Rows<MessageSetRoute> MessageSets(Side side) { return Choose(side, kRequestSets, kResponseSets); }

Rows<FamilyRoute> Families() { return {kFamilies, sizeof kFamilies / sizeof kFamilies[0]}; }

KRArrayOfTags MessageSetTags(Side side) {
  const Rows<KRTagTableEntry> tags = Choose(side, kRequestSetTags, kResponseSetTags);
  return {tags.rows, tags.count};
}

}  // namespace krofx::internal
"""


def generate(schemas, source, write):
    path = source / "krofx/envelope/routing.schema"
    if not path.exists():
        return
    tables = Tables(schemas)
    for number, words in lines(path):
        try:
            colon = words.index(":")
            head, tail = words[:colon], words[colon + 1 :]
            if head[0] == "family":
                for tag in tail:
                    tables.add("families", f"{{{tables.tag(tag)}, {tables.tag(head[1])}}}")
            elif head[0] in ("set", "transaction", "sync"):
                getattr(tables, head[0])(head[1], head[2], head[3:], tail)
            else:
                raise ValueError(f"unknown word {head[0]}")
        except (IndexError, KeyError, StopIteration, ValueError) as error:
            raise SystemExit(f"{path}:{number}: {error!r}") from error

    text = "// Generated by schemac from krofx/envelope/routing.schema.\n"
    text += "\n"
    headers = {
        cls.header if cls.word == "class" else cls.file.name + ".h"
        for cls in schemas.classes.values()
    } | {"krofx/envelope/routing.h", "krofx/model/factory.h"}
    text += "".join(f'#include "{h}"\n' for h in sorted(headers))
    text += "\nnamespace krofx::internal {\n\nnamespace {\n\n"
    # Tables are read by their rows, one on each line.
    text += "// clang-format off\n" + tables.arrays + "\n"
    for side, word in (("request", "Request"), ("response", "Response")):
        text += tables.table("TransactionRoute", f"k{word}Transactions", f"transactions_{side}")
        text += tables.table("SyncRoute", f"k{word}Syncs", f"syncs_{side}")
        text += tables.table("MessageSetRoute", f"k{word}Sets", f"sets_{side}")
        text += tables.table("KRTagTableEntry", f"k{word}SetTags", f"set_tags_{side}")
    text += tables.table("FamilyRoute", "kFamilies", "families") + "// clang-format on\n\n"
    write("krofx/envelope/routing_tables.cpp", text + ACCESS)
