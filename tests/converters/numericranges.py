"""Writes numericranges.txt: numbers, and the simple types whose range takes them, worked out by Python's int,
float and Decimal.

Run as: python3 tests/converters/numericranges.py > tests/converters/numericranges.txt

A line: kind of the value, the number, "=", the numbers of the types from 6 (float) to 18.
"""
import math
import struct
from decimal import ROUND_HALF_EVEN, Context, Decimal

WORDS = Context(prec=60)
FLOAT, DOUBLE, DECIMAL, INTEGER, LONG, INT, UNSIGNED_LONG, UNSIGNED_INT, NON_NEGATIVE = 6, 7, 8, 9, 10, 11, 14, 15, 18
BOUNDS = {LONG: (-2 ** 63, 2 ** 63 - 1), INT: (-2 ** 31, 2 ** 31 - 1), 12: (-2 ** 15, 2 ** 15 - 1), 13: (-128, 127),
          UNSIGNED_LONG: (0, 2 ** 64 - 1), UNSIGNED_INT: (0, 2 ** 32 - 1), 16: (0, 2 ** 16 - 1), 17: (0, 255)}


def takes_integer(number, kind):
    if kind == NON_NEGATIVE:
        return number >= 0
    low, high = BOUNDS.get(kind, (number, number))
    return low <= number <= high


def takes_real(number, kind, single):
    """The bounds of the long types, and of the int types for a float, are the nearest that a real can reach."""
    if kind == FLOAT:
        return single or math.isnan(number) or abs(number) <= 3.4028234663852886e38
    if kind in (DOUBLE, DECIMAL):
        return True
    if not math.isfinite(number):
        return False
    low, high = BOUNDS.get(kind, (number, number))
    return low <= number <= high + (kind in (LONG, UNSIGNED_LONG) or single and kind in (INT, UNSIGNED_INT))


def takes_decimal(number, kind):
    """Fractions count against the bounds of words, and are rounded before they count against smaller ones."""
    if kind < INTEGER:
        return True
    if not number.is_finite():
        return False
    if kind == INTEGER:
        return True
    if kind == NON_NEGATIVE:
        return number >= 0
    low, high = BOUNDS[UNSIGNED_LONG if kind >= UNSIGNED_LONG else LONG]
    if not low <= number <= high:
        return False
    low, high = BOUNDS[kind]
    return kind in (LONG, UNSIGNED_LONG) or low <= number.quantize(1, ROUND_HALF_EVEN, context=WORDS) <= high


def line(kind, number, takes):
    print(kind, number, "=", *[simple for simple in range(FLOAT, NON_NEGATIVE + 1) if takes(simple)])


edges = sorted({edge + by for bounds in BOUNDS.values() for edge in bounds for by in (-1, 0, 1)})
for edge in edges:
    if takes_integer(edge, LONG):
        line("signed", edge, lambda kind: takes_integer(edge, kind))
    if takes_integer(edge, UNSIGNED_LONG):
        line("unsigned", edge, lambda kind: takes_integer(edge, kind))
    for number in Decimal(edge), Decimal(edge) + Decimal("0.5"), Decimal(edge) - Decimal("0.25"):
        line("decimal", number, lambda kind: takes_decimal(number, kind))
    near = float(edge)
    for real in sorted({near, near + 0.5, math.nextafter(near, math.inf), math.nextafter(near, -math.inf)}):
        line("double", real.hex(), lambda kind: takes_real(real, kind, False))
    single = struct.unpack("f", struct.pack("f", near))[0]
    pattern = struct.unpack("I", struct.pack("f", near))[0]
    for real in {struct.unpack("f", struct.pack("I", pattern + by))[0] for by in (-1, 0, 1) if pattern + by > 0}:
        line("float", real.hex(), lambda kind: takes_real(real, kind, True))
for text in "inf", "-inf", "nan":
    line("float", text, lambda kind: takes_real(float(text), kind, True))
for text in "inf", "-inf", "nan", "3.4028234663852886e38", "-3.4028234663852886e38", "3.402823466385289e38":
    line("double", text, lambda kind: takes_real(float(text), kind, False))
for text in "Infinity", "-Infinity", "NaN", "1E+40", "-1E+40", "1E-40":
    line("decimal", text, lambda kind: takes_decimal(Decimal(text), kind))
for text in "text", "truth":
    line(text, 1, lambda kind: True)
