"""Checks what the lines of the schemas of aggregates say about each other, and completes the model:
spliced rows are put in their places, and each row knows the class that declares its member.
"""

import dataclasses

from model import ROOTS, Splice
from row_types import is_text, is_value_type
from sources import SchemaError

PRESENCE_BITS = 96  # of the presence set of an object


def check(model):
    """Completes the model. Refuses the first thing that does not fit."""
    for cls in model.classes.values():
        _check_bases(model, cls)
    for cls in model.classes.values():
        _expand(model, cls)
    for cls in model.classes.values():
        if not cls.generated:
            _check_hand_written(model, cls)
            continue
        if not cls.comment:
            raise SchemaError(cls.place, f"{cls.name} has no comment")
        for shared in cls.shared:
            _class_of(model, shared.place, shared.type)
        for row in cls.rows:
            _complete(model, cls, row)
            _check_row(model, cls, row)
        _check_names(cls)
        _check_table(model, cls)
        _check_lines(model, cls)
    _check_all_shared(model)


# Classes


def _check_bases(model, cls):
    seen = {cls.name}
    while cls.generated and cls.base not in ROOTS:
        base = model.classes.get(cls.base)
        if base is None or not base.generated:
            raise SchemaError(cls.place, f"no class {cls.base} is described")
        if base.name in seen:
            raise SchemaError(cls.place, f"{base.name} is a base of itself")
        seen.add(base.name)
        cls = base


def _check_hand_written(model, cls):
    if not model.tree.exists(cls.header):
        raise SchemaError(cls.place, f"no file {cls.header}")
    if model.tree.header_of(cls.name) != cls.header:
        raise SchemaError(cls.place, f"{cls.header} does not declare {cls.name}")


def _class_of(model, place, name):
    if name not in model.classes:
        raise SchemaError(place, f"no class {name} is described")
    return model.classes[name]


def _derives(model, cls, base):
    """Whether objects of one class are objects of the other. Nothing is said of what the bases of
    a hand-written class are."""
    names = [cls.name, *(ancestor.name for ancestor in model.ancestors(cls))]
    return base in names or not cls.generated


# Splices


def _expand(model, cls):
    """Puts the rows of ancestors where the class splices them."""
    rows = []
    for row in cls.rows:
        rows += _spliced(model, cls, row) if isinstance(row, Splice) else [row]
    cls.rows = rows


def _spliced(model, cls, splice):
    ancestors = {ancestor.name: ancestor for ancestor in model.ancestors(cls)}
    if splice.ancestor not in ancestors:
        raise SchemaError(splice.place, f"{splice.ancestor} is no ancestor of {cls.name}")
    _expand(model, ancestors[splice.ancestor])
    run = ancestors[splice.ancestor].rows
    tags = [row.tag for row in run]
    for tag in filter(None, (splice.first, splice.last)):
        if tag not in tags:
            raise SchemaError(splice.place, f"{splice.ancestor} has no row {tag}")
    if splice.first:
        run = run[tags.index(splice.first) : tags.index(splice.last) + 1]
    if not run:
        what = f"{splice.first} comes after {splice.last}" if tags else "it has no rows"
        raise SchemaError(splice.place, f"nothing to splice from {splice.ancestor}: {what}")
    return [dataclasses.replace(row, place=splice.place) for row in run]


# Rows


def _complete(model, cls, row):
    """Finds the class that declares the row's member: the furthest ancestor with the same row."""
    row.owner = cls
    row.lenient = row.lenient or cls.file.payroll
    for ancestor in reversed(model.ancestors(cls)):
        for other in ancestor.rows:
            if (other.tag, other.kind, other.type) == (row.tag, row.kind, row.type):
                row.owner = ancestor
                row.stem = row.stem or other.stem
                row.shared = row.shared or other.shared
                return


def _check_row(model, cls, row):
    if row.kind == "listed":
        return
    if row.kind in ("child", "children", "embedded"):
        child = _class_of(model, row.place, row.type)
        if not child.made:
            raise SchemaError(row.place, f"{row.type} cannot be made: it is {child.word}")
    elif row.kind == "repeated":
        if not model.tree.header_of(row.type):
            raise SchemaError(row.place, f"no header declares the array {row.type}")
    elif not is_value_type(model, row.type):
        raise SchemaError(row.place, f"no type {row.type.removeprefix('index ')}")
    if row.pad and row.type != "u16":
        raise SchemaError(row.place, f"pad suits u16 only, not {row.type}")
    if row.shared:
        _check_sharing(model, cls, row)
    elif not row.stem:
        raise SchemaError(row.place, f"{row.tag} needs a stem for its accessors")


def _check_sharing(model, cls, row):
    shared = model.shared_of(cls, row.shared)
    if shared is None:
        raise SchemaError(row.place, f"{cls.name} has no slot or array {row.shared}")
    wanted = {"child": "slot", "children": "array"}[row.kind]
    if shared.kind != wanted:
        raise SchemaError(row.place, f"{row.shared} is no {wanted}")
    if row.kind == "children" and (row.stem or row.grow):
        raise SchemaError(
            row.place, f"{row.tag} has neither stem nor grow: the array {row.shared} has them"
        )
    if not _derives(model, model.classes[row.type], shared.type):
        raise SchemaError(
            row.place, f"{row.type} does not suit {row.shared}: it is no {shared.type}"
        )


def _check_all_shared(model):
    """Refuses a slot or an array that no row is in."""
    used = set()
    for cls in model.classes.values():
        for row in cls.rows:
            if row.shared:
                used.add(model.shared_of(cls, row.shared).place)
    for cls in model.classes.values():
        for shared in cls.shared:
            if shared.place not in used:
                raise SchemaError(shared.place, f"no row is in {shared.name}")


def _check_names(cls):
    """Refuses a tag or an accessor that is there twice."""
    tags, stems = set(), {}
    for row in cls.rows:
        if row.tag in tags:
            raise SchemaError(row.place, f"there is a row {row.tag} already")
        tags.add(row.tag)
    named = [(shared.name, shared.place) for shared in cls.shared]
    named += [(row.stem, row.place) for row in cls.rows if row.stem and row.kind != "listed"]
    for stem, place in named:
        if stem in stems:
            raise SchemaError(place, f"{stem} is on line {stems[stem].line} already")
        stems[stem] = place


# The lines that are about rows


def _check_table(model, cls):
    rows = model.table_rows(cls)
    tags = {row.tag for row in rows}

    def check_tags(place, wanted):
        for tag in wanted:
            if tag not in tags:
                raise SchemaError(place, f"{cls.name} has no row {tag}")

    if len([row for row in rows if not row.unlisted]) > PRESENCE_BITS:
        raise SchemaError(cls.place, f"{cls.name} has more than {PRESENCE_BITS} valid tags")
    for rule in cls.rules:
        check_tags(rule.place, [*rule.condition_tags, *rule.tags])
    if cls.requires:
        check_tags(cls.requires_place, cls.requires)
    if cls.rules_only and not cls.rules:
        raise SchemaError(cls.place, f"{cls.name} says rules_only and has no rule")
    for preset in cls.presets:
        check_tags(preset.place, [preset.tag])
        row = next(row for row in rows if row.tag == preset.tag)
        if not is_text(row.type) and row.type != "KRLanguage":
            raise SchemaError(preset.place, f"{preset.tag} is no text")


def _check_lines(model, cls):
    for override in cls.overrides:
        function = f"{cls.name}::{override.name}"
        model.tree.check_definition(override.place, function, override.file)
    if cls.unmet_rules:
        own = cls.unmet_rules
        model.tree.check_definition(own.place, own.name, own.file)
    if cls.via and model.tree.header_of(cls.via) != cls.via_header:
        raise SchemaError(cls.via_place, f"{cls.via_header} does not declare {cls.via}")
    generated = {file.name + ".h" for file in model.files}
    for header, place in cls.includes:
        if header not in generated and not model.tree.exists(header):
            raise SchemaError(place, f"no file {header}")
