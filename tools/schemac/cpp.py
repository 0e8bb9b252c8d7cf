"""Lays C++ out as clang-format does: comments, calls and functions, within 100 columns.

Everything that wraps a line does it here.
"""

COLUMNS = 100


def fill(text, indent="  "):
    """A documentation comment, wrapped; each line of `text` starts a line of its own."""
    lines = []
    for paragraph in text.split("\n"):
        # A continued item of a list is indented under its text.
        hang = "   " if paragraph.startswith("- ") else " "
        words = [word + " " for word in paragraph.split()]
        lines.append(pack(words, indent + "/// ", indent + "///" + hang).rstrip())
    return "\n".join(lines) + "\n"


def pack(pieces, line, pad, columns=COLUMNS):
    """Puts as many pieces on a line as fit; a piece ends in a blank where the line may break. The
    first line begins with `line`, the others with `pad`."""
    lines, start = [], line
    for piece in pieces:
        if len(line) + len(piece.rstrip()) > columns and line != start:
            lines.append(line.rstrip())
            line = start = pad
        line += piece
    return "\n".join(lines + [line])


def call(head, parts, tail, indent):
    """head(parts)tail on one line, or broken after the parts that fit; a part that does not fit
    after the head begins a line of its own."""
    one = f"{indent}{head}({', '.join(parts)}){tail}"
    if len(one) <= COLUMNS:
        return one + "\n"
    pieces = [part + ", " for part in parts[:-1]] + [f"{parts[-1]}){tail}"]
    opening = f"{indent}{head}("
    pad = " " * len(opening)
    if max(len(pad) + len(piece.rstrip()) for piece in pieces) > COLUMNS:
        pad = indent + "    "
        opening += "\n" + pad
    return pack(pieces, opening, pad) + "\n"


def class_head(name, base):
    """The head of an exported class."""
    one = f"class KROFX_API {name} : public {base} {{"
    return (one if len(one) <= COLUMNS else one.replace(" : public", "\n    : public")) + "\n"


def inline(head, statement):
    """A member function that its declaration defines."""
    one = f"  {head} {{ {statement} }}"
    if len(one) <= COLUMNS:
        return one + "\n"
    return f"  {head} {{\n    {statement}\n  }}\n"


def definition(head, parameters, qualifier, body):
    """A function outside its class; `body` is a text, or the parts of a call that may be broken."""
    if isinstance(body, tuple):
        lines = call(*body, ";", "  ")
        body = lines.strip() if lines.count("\n") == 1 else lines
    one = f"{head}({', '.join(parameters)}){qualifier} {{ {body} }}"
    if len(one) <= COLUMNS and "\n" not in body:
        return one + "\n"
    text = call(head, parameters, qualifier + " {", "")
    if body.endswith("\n"):
        text += body
    else:
        text += "".join(f"  {line.strip()}\n" for line in body.split("\n"))
    return text + "}\n"


def defaulted(head, parameter):
    """A defaulted constructor or assignment outside its class."""
    one = f"{head}({parameter}) = default;"
    if len(one) <= COLUMNS:
        return one + "\n"
    if len(one) - len(" default;") <= COLUMNS:
        return one.replace(" default;", "\n    default;\n")
    return one.replace("(", "(\n    ", 1) + "\n"


def inline_or_lines(head, statements):
    """A function outside its class; one statement may be on the line of the head."""
    one = f"{head} {{ {' '.join(statements)} }}"
    if len(statements) == 1 and len(one) <= COLUMNS:
        return one + "\n"
    return f"{head} {{\n" + "".join(f"  {line}\n" for line in statements) + "}\n"


# A table is read by its rows, one on each line, so it is kept out of the formatter's hands.
OFF, ON = "  // clang-format off\n", "  // clang-format on\n"


def array(declaration, items, indent="  ", guarded=True):
    """`declaration = {items};`, one item a line where one line will not do. It is kept out of the
    formatter's hands unless its caller does that."""
    one = f"{indent}{declaration} = {{{', '.join(items)}}};"
    if len(one) <= COLUMNS:
        return one + "\n"
    if max(len(item) for item in items) <= 4:
        pieces = [item + ", " for item in items[:-1]] + items[-1:]
        body = pack(pieces, indent + "    ", indent + "    ", COLUMNS - 2) + ",\n"
    else:
        body = "".join(f"{indent}    {item},\n" for item in items)
    text = f"{indent}{declaration} = {{\n{body}{indent}}};\n"
    return OFF + text + ON if guarded else text
