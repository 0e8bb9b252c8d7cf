#!/usr/bin/env python3
"""Makes the stand-ins for the roots 1000, 2000 and 3000: python3 make_stand_in_roots.py FOLDER.

The certificates that once had these IDs are not available. Each stand-in has the version, subject,
issuer, validity, signature algorithm and length of the certificate that it replaces, and a key of
its own, whose private half is lost when this script ends. The script was run once; its output is in
src/krofx/security/roots. Running it again makes other keys, and so other certificates.

The roots 1000 and 2000 are really signed, with MD5. Root 3000 names MD2, which hardly any software
supports any more, and has random bytes instead of a signature. This does no harm: a root is trusted
because it is in the list, not because of its own signature.

Only the standard library is used: DER is written by the few functions below.
"""

import hashlib
import pathlib
import secrets
import sys

KEY_BITS = 1024
# With this size, a certificate of 581 bytes has a serial number of at most 20 bytes.
CLASS_3_KEY_BITS = 1032
MD2_WITH_RSA = "1.2.840.113549.1.1.2"
MD5_WITH_RSA = "1.2.840.113549.1.1.4"
MD5 = "1.2.840.113549.2.5"
RSA = "1.2.840.113549.1.1.1"
BASIC_CONSTRAINTS = "2.5.29.19"
COMMENT = "2.16.840.1.113730.1.13"
ATTRIBUTES = {"C": "2.5.4.6", "O": "2.5.4.10", "OU": "2.5.4.11"}

BRANDING = (("C", "US"), ("O", "Norvik Inc."), ("OU", "Norvik OFX Branding Private CA"))
OFX_CA = (
    ("O", "VeriSign Trust Network"),
    ("OU", "Open Financial Exchange CA - Class 3"),
    ("OU", "Practice statement of the issuer incorporated by reference"),
)
CLASS_3 = (
    ("C", "US"),
    ("O", "VeriSign, Inc."),
    ("OU", "Class 3 Public Primary Certification Authority"),
)


# DER.


def tlv(tag, *contents):
    body = b"".join(contents)
    size = len(body)
    if size < 0x80:
        return bytes([tag, size]) + body
    octets = size.to_bytes((size.bit_length() + 7) // 8, "big")
    return bytes([tag, 0x80 | len(octets)]) + octets + body


def sequence(*contents):
    return tlv(0x30, *contents)


def integer(value):
    return tlv(0x02, value.to_bytes(value.bit_length() // 8 + 1, "big"))


def bits(body):
    return tlv(0x03, b"\0", body)


def oid(text):
    first, second, *rest = (int(step) for step in text.split("."))
    body = b""
    for step in (first * 40 + second, *rest):
        part = [step & 0x7F]
        while step := step >> 7:
            part.insert(0, 0x80 | step & 0x7F)
        body += bytes(part)
    return tlv(0x06, body)


def algorithm(text):
    return sequence(oid(text), tlv(0x05))


def name(attributes):
    return sequence(
        *(
            tlv(0x31, sequence(oid(ATTRIBUTES[kind]), tlv(0x13, value.encode("ascii"))))
            for kind, value in attributes
        )
    )


def validity(*moments):
    return sequence(*(tlv(0x17, f"{moment}Z".encode("ascii")) for moment in moments))


def extensions(comment):
    authority = sequence(
        oid(BASIC_CONSTRAINTS), tlv(0x01, b"\xff"), tlv(0x04, sequence(tlv(0x01, b"\xff")))
    )
    remark = sequence(oid(COMMENT), tlv(0x04, tlv(0x16, comment.encode("ascii"))))
    return tlv(0xA3, sequence(authority, remark))


# Keys.


def is_prime(number):
    if any(number % small == 0 for small in range(3, 2000, 2)):
        return False
    odd, twos = number - 1, 0
    while odd % 2 == 0:
        odd, twos = odd // 2, twos + 1
    for _ in range(40):
        power = pow(secrets.randbelow(number - 3) + 2, odd, number)
        if power in (1, number - 1):
            continue
        for _ in range(twos - 1):
            power = power * power % number
            if power == number - 1:
                break
        else:
            return False
    return True


class Key:
    EXPONENT = 65537

    def __init__(self, size):
        self.bytes = size // 8
        p, q = self.prime(size // 2), self.prime(size // 2)
        self.modulus = p * q
        self.secret = pow(self.EXPONENT, -1, (p - 1) * (q - 1))

    @classmethod
    def prime(cls, size):
        while True:
            # The two highest bits make the product as long as it must be.
            number = secrets.randbits(size) | 3 << size - 2 | 1
            if number % cls.EXPONENT != 1 and is_prime(number):
                return number

    def info(self):
        return sequence(
            algorithm(RSA), bits(sequence(integer(self.modulus), integer(self.EXPONENT)))
        )

    def sign(self, signature, body):
        if signature == MD2_WITH_RSA:
            return secrets.token_bytes(self.bytes)
        digest = hashlib.md5(body, usedforsecurity=False).digest()
        value = sequence(algorithm(MD5), tlv(0x04, digest))
        padded = b"\0\1" + b"\xff" * (self.bytes - 3 - len(value)) + b"\0" + value
        power = pow(int.from_bytes(padded, "big"), self.secret, self.modulus)
        return power.to_bytes(self.bytes, "big")


# Certificates.


def certificate(key, signer, signature, subject, issuer, moments, comment, serial_bytes):
    # A serial number is positive, and its first byte is not 0.
    serial = tlv(0x02, bytes([1 + secrets.randbelow(0x7F)]), secrets.token_bytes(serial_bytes - 1))
    version = [] if comment is None else [tlv(0xA0, integer(2))]
    tail = [] if comment is None else [extensions(comment)]
    body = sequence(
        *version,
        serial,
        algorithm(signature),
        name(issuer),
        validity(*moments),
        name(subject),
        key.info(),
        *tail,
    )
    return sequence(body, algorithm(signature), bits(signer.sign(signature, body)))


def of_length(length, comment, **parts):
    """Version 3 can be filled up in its comment, version 1 only in its serial number."""
    if comment is None:
        choices = ({"comment": None, "serial_bytes": count} for count in range(1, 21))
    else:
        choices = ({"comment": comment + "." * count, "serial_bytes": 16} for count in range(300))
    for choice in choices:
        made = certificate(**parts, **choice)
        if len(made) == length:
            return made
    raise SystemExit(f"no certificate of {length} bytes can be made")


def main():
    folder = pathlib.Path(sys.argv[1])
    branding, ofx_ca, class_3 = Key(KEY_BITS), Key(KEY_BITS), Key(CLASS_3_KEY_BITS)
    made = {
        1000: of_length(
            820,
            "This certificate stands in for root 1000, whose bytes are not to be had. Nobody holds its "
            "private key, so nothing can be issued under it. A build can name a folder of other "
            "roots; the file README.md beside this one says how.",
            key=branding,
            signer=branding,
            signature=MD5_WITH_RSA,
            subject=BRANDING,
            issuer=BRANDING,
            moments=("970903001310", "020903001310"),
        ),
        2000: of_length(
            698,
            "Stand-in",
            key=ofx_ca,
            signer=class_3,
            signature=MD5_WITH_RSA,
            subject=OFX_CA,
            issuer=CLASS_3,
            moments=("970710070000", "020710070000"),
        ),
        3000: of_length(
            581,
            None,
            key=class_3,
            signer=class_3,
            signature=MD2_WITH_RSA,
            subject=CLASS_3,
            issuer=CLASS_3,
            moments=("960129070000", "040107070000"),
        ),
    }
    for root, der in made.items():
        (folder / f"{root}.der").write_bytes(der)


if __name__ == "__main__":
    main()
