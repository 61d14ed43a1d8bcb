"""Writes dfdldecimal.txt: what becomes of DFDLDecimal objects, worked out by Python's decimal.

Run as: python3 tests/foundation/dfdldecimal.py > tests/foundation/dfdldecimal.txt

A line is operation, rounding mode as callers number it, operands, and the result behind "=". The draw is seeded:
the same program writes the same cases.
"""
import decimal
import os
import random
import struct
import sys
from decimal import Decimal

sys.path.insert(0, os.path.join(os.path.dirname(__file__), "..", "decimal"))
import makecases

random.seed(14)
MODES = {1: decimal.ROUND_CEILING, 2: decimal.ROUND_FLOOR, 3: decimal.ROUND_DOWN, 4: decimal.ROUND_UP,
         6: decimal.ROUND_HALF_DOWN, 7: decimal.ROUND_HALF_UP}
LARGEST = sys.float_info.max


def rounding(mode):
    return MODES.get(mode, decimal.ROUND_HALF_EVEN)


def digits_of(a):
    return len(a.as_tuple().digits)


def work(mode, precision=34):
    return makecases.context(precision, rounding(mode))


def lossless(mode, a):
    return work(mode, max(34, digits_of(a)))


def rescaled(mode, a, exponent):
    return lossless(mode, a).quantize(a, Decimal((0, (1,), exponent)))


def fixed(mode, a, places):
    a = makecases.trimmed(a)
    if not a.is_finite() or a.as_tuple().exponent >= -places:
        return a
    return makecases.trimmed(rescaled(mode, a, -places))


def magnitude(mode, a, limit):
    if not a.is_finite() or a.as_tuple().exponent + digits_of(a) >= limit:
        return 0
    return abs(int(rescaled(mode, a, 0)))


def signed(mode, a, limit, bits):
    number = magnitude(mode, a, limit) * (-1 if a.is_signed() else 1)
    return number if -2 ** (bits - 1) <= number < 2 ** (bits - 1) else 0


def double(mode, a):
    if a.is_infinite():
        value = LARGEST if a > 0 else -LARGEST
    else:
        value = float(work(mode, 18).plus(a) if digits_of(a) > 18 else a)
    return struct.pack(">d", value).hex()


def plain(mode, a):
    if not a.is_finite():
        return a
    if a.as_tuple().exponent < 0:
        return rescaled(mode, a, 0)
    return ("-" if a.is_signed() else "") + str(abs(int(a)))


def string(mode, a):
    text = str(a)
    return text.rstrip("0").rstrip(".") if "." in text and "E" not in text else text


def decimal_at(mode, a):
    exponent = a.as_tuple().exponent if a.is_finite() else 0
    return exponent + digits_of(a) if a.is_finite() and a else exponent


UNARY = {
    "negate": lambda m, a: a.copy_sign(Decimal(-1)),
    "abs": lambda m, a: makecases.trimmed(lossless(m, a).abs(a)),
    "reduce": lambda m, a: lossless(m, a).normalize(a),
    "integral": lambda m, a: a.to_integral_value(context=work(m)),
    "signed": lambda m, a: signed(m, a, 20, 64), "int": lambda m, a: signed(m, a, 11, 32),
    "unsigned": lambda m, a: magnitude(m, a, 21) % 2**64,
    "unsignedint": lambda m, a: magnitude(m, a, 11) % 2**32,
    "fitssigned": lambda m, a: int(a.is_nan() or -2**63 <= a <= 2**63 - 1),
    "fitsunsigned": lambda m, a: int(a.is_nan() or 0 <= a <= 2**64 - 1),
    "signum": lambda m, a: -1 if a.is_signed() else int(a.is_nan() or a != 0),
    "decimalat": decimal_at, "string": string,
}
BINARY = {"add": "add", "subtract": "subtract", "multiply": "multiply", "divide": "divide"}
WORDS = [0, 1, 2**31 - 1, 2**31, 2**32 - 1, 2**32, 2**63 - 1, 2**63, 2**64 - 1, 2**64, 10**19, 10**20 - 1]


def near_word():
    """A number around the bounds of words, possibly with a fraction or an exponent."""
    text = str(random.choice(WORDS) + random.choice([-1, 0, 0, 1])).lstrip("-")
    form = random.randrange(4)
    if form == 1:
        text += random.choice([".0", ".25", ".5", ".50000000000000000000000000000001", ".75"])
    elif form == 2:
        text += "0" * 20 + "E-20"
    elif form == 3 and text.endswith("0") and len(text) > 1:
        text = text[:-1] + "E1"
    return random.choice(["", "-"]) + text


def modest():
    """No exponent that would make gigabytes of digits."""
    while True:
        text = makecases.operand()
        if abs(Decimal(text).as_tuple().exponent if Decimal(text).is_finite() else 0) < 400:
            return text


def any_double():
    value = struct.unpack(">d", random.randbytes(8))[0]
    return value if value == value and abs(value) != float("inf") else 0.1


def line(name, mode, operands, result):
    print(name, mode, *operands, "=", result)


def main():
    mode = lambda: random.choice([0, 0, 1, 2, 3, 4, 5, 6, 7, 8])
    for name, method in BINARY.items():
        for _ in range(40):
            m, a, b = mode(), makecases.operand(), makecases.operand()
            line(name, m, [a, b], getattr(work(m), method)(makecases.read(a), makecases.read(b)))
    for name, result in UNARY.items():
        for draw in [makecases.operand] * 30 + [near_word] * 40:
            m, a = mode(), draw()
            line(name, m, [a], result(m, makecases.read(a)))
    for name, result in ("plain", plain), ("double", double):
        for draw in [modest] * 40 + [near_word] * 20:
            m, a = mode(), draw()
            if not makecases.read(a).is_nan():
                line(name, m, [a], result(m, makecases.read(a)))
    for _ in range(60):
        m, a, count = mode(), makecases.operand(), random.choice([1, 2, 5, 9, 18, 34, 50])
        line("round", m, [a, count], makecases.trimmed(work(m, count).plus(makecases.read(a))))
        count = random.choice([0, 1, 2, 5, 9, 34, -3])
        line("fixed", m, [a, count], fixed(m, makecases.read(a), count))
        value = random.choice([any_double(), round(random.uniform(-1000, 1000), random.randrange(6))])
        line("setdouble", m, [repr(value)], makecases.trimmed(Decimal("%.14e" % value)))


if __name__ == "__main__":
    main()
