"""Writes binaryfloats.txt: floating point numbers in IEEE's and IBM's form, worked out by Python's Fraction.

Run as: python3 tests/converters/binaryfloats.py > tests/converters/binaryfloats.txt

A line: type, form, byte order, the bytes in hexadecimal, "=", the number as float.hex() writes it. Lines of
type "pattern" have an IEEE pattern before "=" and the IBM pattern behind it.
"""
import math
import random
import struct
from fractions import Fraction

random.seed(390)
WIDTHS = {"float": 32, "double": 64}


def exact(value):
    """A number that needs no rounding."""
    result = float(value)
    assert Fraction(result) == value
    return result


def from_ibm(kind, bits):
    width = WIDTHS[kind]
    fraction_bits = width - 8
    sign = -1 if bits >> (width - 1) else 1
    exponent = (bits >> fraction_bits & 0x7F) - 64
    fraction = bits & ((1 << fraction_bits) - 1)
    spare = 4 if kind == "double" else 1
    if kind == "double" and bits & 0x7FFFFFFF00000000 == 0:
        return sign * 0.0
    if kind == "float" and bits & 0x7FFFFFFF == 0:
        return sign * 2.0**-127
    kept = fraction >> spare << spare
    # Where all of the fraction falls off it counts as one.
    size = (Fraction(kept, 1 << fraction_bits) if kept else 1) * Fraction(16) ** exponent
    if kind == "float" and size >= 2**128:
        return math.inf
    if kind == "float" and size < Fraction(1, 2**126):
        return sign * 2.0**-127
    return exact(sign * size)


def to_ibm(kind, bits):
    width = WIDTHS[kind]
    mantissa_bits = 52 if kind == "double" else 23
    bias = 1023 if kind == "double" else 127
    sign = bits >> (width - 1) << (width - 1)
    looked_at = bits & (0x7FFFFFFF00000000 if kind == "double" else 0x7FFFFFFF)
    if not looked_at:
        return bits
    exponent = ((bits ^ sign) >> mantissa_bits) - bias
    size = (1 + Fraction(bits & ((1 << mantissa_bits) - 1), 1 << mantissa_bits)) * Fraction(2) ** exponent
    power = 0
    while size >= Fraction(16) ** power:
        power += 1
    while size < Fraction(16) ** (power - 1):
        power -= 1
    if kind == "double" and power + 64 > 126:
        return sign | (1 << (width - 1)) - 1
    if kind == "double" and power + 64 < 1:
        return sign
    fraction = int(size / Fraction(16) ** power * (1 << (width - 8)))
    return sign | (power + 64) << (width - 8) | fraction


def patterns(width):
    yield from (0, 1 << (width - 1))
    for bits in 1, 2, 3, 0xF, 0x10, 0x12345678:
        yield bits
        yield bits | 1 << (width - 1)
    for exponent in 0x00, 0x01, 0x20, 0x21, 0x3F, 0x40, 0x41, 0x42, 0x60, 0x61, 0x7F:
        for fraction in 1, 0xF, 0x118 << (width - 20), (1 << (width - 8)) - 1, 1 << (width - 9), 1 << (width - 12):
            yield exponent << (width - 8) | fraction
            yield 1 << (width - 1) | exponent << (width - 8) | fraction
    for _ in range(40):
        yield random.getrandbits(width)


def main():
    for kind, width in WIDTHS.items():
        letter = "d" if kind == "double" else "f"
        for bits in patterns(width):
            data = bits.to_bytes(width // 8, "big")
            print(kind, "ieee big", data.hex(), "=", struct.unpack(">" + letter, data)[0].hex())
            print(kind, "ibm big", data.hex(), "=", from_ibm(kind, bits).hex())
            print(f"pattern {kind} - {data.hex()} = {to_ibm(kind, bits):0{width // 4}x}")
        for data in random.randbytes(width // 8), b"\x01" + bytes(width // 8 - 2) + b"\x42":
            print(kind, "ieee little", data.hex(), "=", struct.unpack("<" + letter, data)[0].hex())
            bits = int.from_bytes(data, "little")
            print(kind, "ibm little", data.hex(), "=", from_ibm(kind, bits).hex())


if __name__ == "__main__":
    main()
