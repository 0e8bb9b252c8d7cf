"""Turns the schema of routing into the tables of krofx/envelope/internal/routing.h. docs/schema.md describes
the language.
"""

import re

from cpp import array
from model import VERSIONS
from sources import SchemaError, Words
from tags import enumerator

STANDARD = {
    "request": "TOKEN(V1) TOKEN2(V2+) TOKENONLY REFRESH REJECTIFMISSING NORV.REFRESH",
    "response": "TOKEN(V1) TOKEN2(V2+) LOSTSYNC NORV.REFRESH SYNCERROR(V2+) NORV.SYNCERROR",
}
OWN = {"request": "TRNUID CLTCOOKIE TAN", "response": "TRNUID CLTCOOKIE STATUS"}
BARE = {"request": "TRNUID", "response": "TRNUID STATUS"}
RULES = {"held": "kHeld", "payload": "kPayload", "choice": "kChoice", "any": "kAny"}
# What excuses a response without a payload: each can be held, or held and shown.
EXCUSES = ("error", "up_to_date")
WRAPPER_WORDS = {
    "request": ("bare", "unmapped"),
    "response": ("bare", *EXCUSES, *(f"shown_{excuse}" for excuse in EXCUSES)),
}


def statements(schema):
    """The statements of a schema as Words: comments gone, continued lines joined."""
    words = None
    for number, line in schema.lines():
        line, place = line.strip(), schema.place(number)
        if words is None and (not line or line.startswith("#")):
            continue
        words = words or Words(place, "")
        words.extend(place, line.removesuffix("\\"))
        if not line.endswith("\\"):
            yield words
            words = None
    if words is not None:
        raise SchemaError(words.place, f"{words.peek()}: no line continues the statement")


class Tables:
    """The rows of the tables, collected statement by statement."""

    def __init__(self, model):
        self.model = model
        self.arrays = ""
        self.rows = {}
        self.places = {}  # of what is there already

    def tag(self, words, text):
        if text not in self.model.tags:
            words.fail(f"no tag {text}")
        return enumerator(text)

    def versioned(self, words, word):
        """TOKEN2(V2+) gives ("TOKEN2", 0xfffe)."""
        match = re.fullmatch(r"([^()]+)(?:\(([^()]+)\))?", word)
        if match is None or (match[2] or "") not in VERSIONS:
            words.fail(f"{word}: TAG or TAG(VERSIONS) expected")
        self.tag(words, match[1])
        return match[1], VERSIONS[match[2] or ""]

    def array(self, type_name, name, items):
        self.arrays += array(f"constexpr {type_name} {name}[]", items, "", guarded=False)

    def valid(self, words, name, listed):
        rows = [self.versioned(words, word) for word in listed]
        seen = [tag for tag, _ in rows]
        for tag in seen:
            if seen.count(tag) > 1:
                words.fail(f"{tag} is there twice")
        items = [f"{{{enumerator(tag)}, 0x{mask:x}}}" for tag, mask in rows]
        self.array("KRTagTableEntry", name, items)
        return f"{{{name}, {len(items)}}}"

    def add(self, table, row):
        self.rows.setdefault(table, []).append(row)

    def once(self, words, *what):
        """Refuses a second statement about the same thing."""
        if what in self.places:
            words.fail(f"{what[-1]} is on line {self.places[what].line} already")
        self.places[what] = words.place

    def statement(self, words):
        """Reads one statement."""
        kind = words.expect("set", "transaction", "sync", "family")
        if kind == "family":
            self.family(words)
        else:
            side = words.expect("request", "response")
            name = words.take("a tag")
            self.once(words, kind, side, name)
            getattr(self, kind)(words, side, name)

    def family(self, words):
        family = self.tag(words, words.take("a tag"))
        words.expect(":")
        for tag in words.rest():
            self.once(words, "family", tag)
            self.add("families", f"{{{self.tag(words, tag)}, {family}}}")

    def set(self, words, side, name):
        versions = ("V1",) if words.accept("V1") else ("V1", "V2")
        words.expect(":")
        for version in versions:
            self.tag(words, name + version)
        valid = self.valid(words, "kSet_" + name.replace(".", "_"), words.rest())
        for version in versions:
            tag, mask = enumerator(name + version), VERSIONS[version]
            self.add(f"sets_{side}", f"{{{tag}, {valid}}}")
            self.add(f"set_tags_{side}", f"{{{tag}, 0x{mask:x}}}")

    def wrapper_words(self, words, side):
        """The words between the name of a wrapper and its payloads."""
        rule = RULES[words.expect(*RULES)]
        options = set()
        while words.peek() != ":":
            word = words.expect(*WRAPPER_WORDS[side], ":")
            if word in options:
                words.fail(f"{word} is said twice")
            options.add(word)
        words.expect(":")
        return rule, options

    def payload(self, words, word):
        """Reads TAG=CLASS, or TAG(VERSIONS)=CLASS."""
        tag, equals, name = word.partition("=")
        if not equals:
            words.fail(f"{word}: TAG=CLASS expected")
        cls = self.model.classes.get(name)
        if cls is None or not cls.made:
            words.fail(f"no schema describes a class {name} that can be made")
        if self.versioned(words, tag)[0] != (cls.tag or tag):
            words.fail(f"the tag of {name} is {cls.tag}, not {tag}")
        return tag, cls

    def transaction(self, words, side, name):
        short = name.replace(".", "_")
        own_tag = self.tag(words, name)
        rule, options = self.wrapper_words(words, side)
        payloads = [self.payload(words, word) for word in words.rest()]
        own = (BARE if "bare" in options else OWN)[side].split()
        valid = self.valid(words, "kValid_" + short, own + [tag for tag, _ in payloads])
        items = [
            f"{{{enumerator(self.versioned(words, tag)[0])},"
            f" &CreateBy<&KRDataObjFactory::New{cls.bare}>}}"
            for tag, cls in payloads
        ]
        pointer = tags = "nullptr"
        if items:
            pointer = f"kPayloads_{short}"
            self.array("PayloadRoute", pointer, items)
        if len(items) > 1:
            tags = f"kTags_{short}"
            names = [enumerator(self.versioned(words, tag)[0]) for tag, _ in payloads]
            self.array("KRTagID", tags, names)
        excuses = ", ".join(
            "Excuse::"
            + ("kShown" if f"shown_{key}" in options else "kHeld" if key in options else "kNone")
            for key in EXCUSES
        )
        mapped = "false" if "unmapped" in options or side == "response" else "true"
        self.add(
            f"transactions_{side}",
            f"{{{own_tag}, {valid}, {pointer}, {tags}, {len(items)}, PayloadRule::{rule}, "
            f"{excuses}, {mapped}}}",
        )

    def sync(self, words, side, name):
        short = name.replace(".", "_")
        own_tag = self.tag(words, name)
        unmapped = side == "request" and words.accept("unmapped")
        words.expect(":")
        listed = STANDARD[side].split() if words.accept("standard") else []
        listed = [self.versioned(words, word)[0] and word for word in listed]
        while words and words.peek() != "needs":
            listed.append(words.take("a tag"))
            self.versioned(words, listed[-1])
        valid = self.valid(words, "kValid_" + short, listed)
        known = {self.versioned(words, word)[0] for word in listed}
        either, needs = "false", []
        for word in words.rest() if words.accept("needs") else ():
            if word == "either_account":
                either = "true"
            elif word not in known:
                words.fail(f"{name} has no tag {word}")
            else:
                needs.append(enumerator(word))
        pointer = "nullptr"
        if needs:
            pointer = f"kNeeds_{short}"
            self.array("KRTagID", pointer, needs)
        mapped = "false" if unmapped or side == "response" else "true"
        self.add(
            f"syncs_{side}",
            f"{{{own_tag}, {valid}, {either}, {pointer}, {len(needs)}, {mapped}}}",
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


def read(schema, model):
    """The tables of the schema, checked."""
    tables = Tables(model)
    for words in statements(schema):
        tables.statement(words)
    return tables


def generate(tables, model, write):
    text = "// Generated by schemac from krofx/envelope/routing.schema.\n"
    text += "\n"
    headers = {cls.header for cls in model.classes.values()}
    headers |= {"krofx/envelope/internal/routing.h", "krofx/model/factory.h"}
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
