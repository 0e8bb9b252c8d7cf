"""Writes the trusted roots into a C++ source: embed_roots.py FOLDER [OUT].

FOLDER holds a DER certificate <ID>.der for each of the five roots. OUT becomes the source that
defines what krofx/security/internal/trusted_roots.h declares; without OUT the files are only
checked.
"""

import pathlib
import sys

ROOTS = {
    1000: "kNorvikBrandingRoot",
    2000: "kVeriSignOFXCARoot",
    3000: "kVeriSignClass3Root",
    4000: "kRSAServerRoot",
    4001: "kRSAServerRootReissue",
}
# The length of a root has 16 bits.
MAX_LENGTH = 65535
BYTES_IN_LINE = 20

HEAD = """\
// The trusted roots, written by tools/roots/embed_roots.py. Do not edit.

#include "krofx/security/internal/trusted_roots.h"

namespace krofx::internal {

namespace {
"""


class Refused(Exception):
    pass


def elements(body):
    """The tags and contents of the DER values that `body` consists of."""
    found = []
    while body:
        if len(body) < 2:
            raise ValueError
        size, start = body[1], 2
        if size >= 0x80:
            start += size & 0x7F
            size = int.from_bytes(body[2:start], "big")
        if start == 2 and body[1] >= 0x80 or start + size > len(body):
            raise ValueError
        found.append((body[0], body[start : start + size]))
        body = body[start + size :]
    return found


def is_certificate(der):
    """Whether it has the shape of one: what is signed, the algorithm, the signature."""
    try:
        [(outer, parts)] = elements(der)
        [(body, fields), (algorithm, _), (signature, _)] = elements(parts)
        return (outer, body, algorithm, signature) == (0x30, 0x30, 0x30, 3) and len(
            elements(fields)
        ) >= 6
    except ValueError:
        return False


def read(folder, root):
    path = folder / f"{root}.der"
    try:
        der = path.read_bytes()
    except OSError as error:
        raise Refused(f"{path}: the root {root} cannot be read: {error.strerror}") from error
    if not is_certificate(der):
        raise Refused(f"{path}: it is not a certificate in DER form")
    if len(der) > MAX_LENGTH:
        raise Refused(f"{path}: a root may have {MAX_LENGTH} bytes, this one has {len(der)}")
    return der


def source(roots):
    text = HEAD
    for root, der in roots.items():
        text += f"\nconstexpr char k{root}[] ="
        for start in range(0, len(der), BYTES_IN_LINE):
            line = "".join(f"\\x{byte:02x}" for byte in der[start : start + BYTES_IN_LINE])
            text += f'\n    "{line}"'
        text += ";\n"
    text += "\n}  // namespace\n\n"
    for root, der in roots.items():
        text += f"const TrustedRoot {ROOTS[root]} = {{k{root}, {len(der)}, {root}}};\n"
    return text + "\n}  // namespace krofx::internal\n"


def main():
    try:
        roots = {root: read(pathlib.Path(sys.argv[1]), root) for root in ROOTS}
    except Refused as refused:
        sys.exit(str(refused))
    if len(sys.argv) > 2:
        out = pathlib.Path(sys.argv[2])
        out.parent.mkdir(parents=True, exist_ok=True)
        out.write_text(source(roots))


if __name__ == "__main__":
    main()
