"""What the type of a row means: the C++ type, the kind of value that reads and writes it
(krofx/model/value_kinds.h), and the words that describe it to a host.
"""

import re

NUMBERS = {
    # schema word: (C++ type, kind)
    "amount": ("KRPrecisionInteger", "kNumber<KRPrecisionInteger, &KRBuilder::AddTagKRAmount>"),
    "posamount": (
        "KRPosPrecisionInteger",
        "kNumber<KRPosPrecisionInteger, &KRBuilder::AddTagKRAmount>",
    ),
    "quantity": ("KRPrecisionInteger", "kNumber<KRPrecisionInteger, &KRBuilder::AddTagKRQuantity>"),
    "unitprice": (
        "KRPrecisionInteger",
        "kNumber<KRPrecisionInteger, &KRBuilder::AddTagKRUnitPrice>",
    ),
    "rate": ("KRPercent", "kNumber<KRPercent, &KRBuilder::AddTagKRRate>"),
    "payamount": ("KRPayrollAmount", "kPayrollAmount"),
    "paydate": ("KRPayrollDateTime", "kPayrollDateTime"),
}
SCALARS = {
    # schema word: (C++ type, kind, description)
    "boolean": ("u16", "kBoolean", "Y (1) or N (0)"),
    "u16": ("u16", "kUShort", "0 to 65535"),
    "s16": ("s16", "kSShort", "-32768 to 32767"),
    "u32": ("u32", "kULong", "32 bits unsigned"),
    "s32": ("s32", "kSLong", "32 bits signed"),
}
DATES = {"KRDateTime": "kDateTime", "KRTime": "kTime"}
REPEATED_NUMBERS = {
    "KRDynamicArrayBankAccountType": "KRBankAccountType",
    "KRDynamicArrayBankAccountType2": "KRBankAccountType2",
    "KRDynamicArrayDayOfWeek": "KRDayOfWeek",
    "KRDynamicArrayNorvService": "KRNorvService",
    "KRDynamicArrayNorvService2": "KRNorvService2",
    "KRDynamicArrayUShort": "u16",
}
WORDS = {
    "rate": "percent, 0 to 100",
    "KRTime": "time",
    "payamount": "amount that can be blank",
    "paydate": "date that can be blank",
}
VERSION_WORDS = {0xFFFF: "all versions", 1: "V1", 2: "V2", 0xFFFE: "V2 and later"}


TEXTS = ("KRMultiLenString", "KRUserPassword", "KREMailMsgBody")


def is_text(name):
    """Whether the class holds text."""
    return name.startswith("KRString") or name in TEXTS


def is_fixed_text(name):
    """Whether the class holds text and adds nothing to it but a length."""
    return re.fullmatch(r"KRString\d+", name) is not None


def is_value_type(model, name):
    """Whether a row can have the type."""
    if name.startswith("index "):
        return name.removeprefix("index ") in model.keywords
    if name in NUMBERS or name in SCALARS or name in DATES or name in model.keywords:
        return True
    return name == "KRLanguage" or (is_text(name) and model.tree.header_of(name) != "")


def cpp_type(row):
    """The type of a value, as getters give it."""
    if row.type in NUMBERS:
        return NUMBERS[row.type][0]
    if row.type in SCALARS:
        return SCALARS[row.type][0]
    if row.type.startswith("index "):
        return "u16"
    return row.type


def stored_type(row):
    """The type of the member that holds a value: krofx/model/internal/stored_values.h."""
    cpp = cpp_type(row)
    if is_fixed_text(cpp):
        return f"krofx::internal::StoredText<{cpp}>"
    if cpp == "KRDateTime":
        return "krofx::internal::StoredDate"
    if cpp in ("KRPrecisionInteger", "KRPosPrecisionInteger", "KRPercent"):
        return f"krofx::internal::StoredNumber<{cpp}>"
    return cpp


def kind(model, row):
    """The kind of value of a row."""
    if row.kind == "repeated":
        return f"kRepeated<{row.type}>"
    if row.kind == "embedded":
        return f"kEmbedded<{row.type}>"
    if row.pad:
        return f"kPaddedUShort<{row.pad}>"
    if row.type in NUMBERS:
        return NUMBERS[row.type][1]
    if row.type in SCALARS:
        return SCALARS[row.type][1]
    if row.type in DATES:
        return DATES[row.type]
    if row.type == "KRLanguage":
        return "kLanguage"
    if row.type.startswith("index "):
        return f"kKeywordIndex<{row.type.split()[1]}>"
    if row.type in model.keywords:
        known = model.keywords[row.type]
        operation = "nullptr"
        if known.tagged:
            operation = f"&KRBuilder::AddTagKR{known.bare}"
        elif known.writer:
            operation = f"&KRBuilder::Add{known.bare}"
        return f"kKeyword<{row.type}, {operation}>"
    return f"kFixedText<{row.type}>" if is_fixed_text(row.type) else f"kText<{row.type}>"


def describe(row):
    """TRNTYPE: KRBankTxType, required, V1."""
    length = re.fullmatch(r"KRString(\d+)", row.type)
    if length:
        what = f"text, at most {length[1]} characters"
    elif row.type in SCALARS:
        what = SCALARS[row.type][2]
    elif row.type in NUMBERS or row.type == "KRTime":
        what = WORDS.get(row.type, row.type)
    elif row.type == "KRDateTime":
        what = "date"
    elif row.type.startswith("index "):
        what = f"the place of its keyword, a {row.type.split()[1]}"
    else:
        what = row.type
    use = "required" if row.required else "optional"
    if row.required not in (0, row.versions):
        use += f" in {VERSION_WORDS[row.required]}"
    return f"{row.tag}: {what}, {use}, {VERSION_WORDS[row.versions]}"
