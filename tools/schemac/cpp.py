"""Lays C++ out as clang-format does: comments, calls and functions, within 100 columns.

Everything that wraps a line does it here.
"""

COLUMNS = 100


def fill(text, indent="  "):
    """A documentation comment, wrapped; each line of `text` starts a line of its own."""
    lines = []
    for paragraph in text.split("\n"):
        line = indent + "///"
        # A continued item of a list is indented under its text.
        hang = "   " if paragraph.startswith("- ") else " "
        for word in paragraph.split():
            if len(line) + 1 + len(word) > COLUMNS:
                lines.append(line)
                line = indent + "///" + hang + word
            else:
                line += " " + word
        lines.append(line)
    return "\n".join(lines) + "\n"


def call(head, parts, tail, indent):
    """head(parts)tail on one line, or broken after the parts that fit."""
    one = f"{indent}{head}({', '.join(parts)}){tail}"
    if len(one) <= COLUMNS:
        return one + "\n"
    pad = " " * (len(indent) + len(head) + 1)
    lines, line = [], f"{indent}{head}("
    for i, part in enumerate(parts):
        piece = part + (", " if i + 1 < len(parts) else f"){tail}")
        if len(line) + len(piece.rstrip()) > COLUMNS and line.strip() != head + "(":
            lines.append(line.rstrip())
            line = pad
        line += piece
    return "\n".join(lines + [line]) + "\n"


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
        return one + "\n\n"
    text = call(head, parameters, qualifier + " {", "")
    if body.endswith("\n"):
        text += body
    else:
        text += "".join(f"  {line.strip()}\n" for line in body.split("\n"))
    return text + "}\n\n"


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


def numbers(values, indent):
    """Short values, as many on a line as fit."""
    lines, line = [], indent
    for i, value in enumerate(values):
        piece = value + (", " if i + 1 < len(values) else "")
        if len(line) + len(piece.rstrip()) > COLUMNS - 2:
            lines.append(line.rstrip())
            line = indent
        line += piece
    return "\n".join(lines + [line])


def array(declaration, items, indent="  "):
    """`declaration = {items};`, one item a line where one line will not do."""
    one = f"{indent}{declaration} = {{{', '.join(items)}}};"
    if len(one) <= COLUMNS:
        return one + "\n"
    if max(len(item) for item in items) <= 4:
        body = numbers(items, indent + "    ") + ",\n"
    else:
        body = "".join(f"{indent}    {item},\n" for item in items)
    return OFF + f"{indent}{declaration} = {{\n{body}{indent}}};\n" + ON
