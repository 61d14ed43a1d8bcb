"""Writes cases.txt, worked out by Python's decimal:  python3 makecases.py > cases.txt

A line is operation, rounding mode, precision, operands, and the result behind "=". The draw is seeded: the same
program writes the same cases. `python3 makecases.py N` draws N cases of each operation instead of the usual few.
"""
import decimal
import random
import sys
from decimal import Decimal

ROUNDINGS = [decimal.ROUND_CEILING, decimal.ROUND_UP, decimal.ROUND_HALF_UP, decimal.ROUND_HALF_EVEN,
             decimal.ROUND_HALF_DOWN, decimal.ROUND_DOWN, decimal.ROUND_FLOOR]  # by DecRounding
SPECIAL = ["Infinity", "-Infinity", "NaN", "-NaN7", "sNaN12", "0", "-0", "0.00", "-0E+7", "0E-999999999"]
random.seed(34)


def context(precision, rounding=decimal.ROUND_HALF_EVEN):
    return decimal.Context(prec=precision, rounding=rounding, Emax=999999999, Emin=-999999999, clamp=0, traps=[])


def coefficient():
    count = random.choice([1, 1, 2, 3, 5, 8, 9, 10, 17, 18, 19, 33, 34, 35, 36, 54, 80])
    shape = random.randrange(6)
    if shape == 0:
        return "9" * count
    if shape == 1:
        return "1" + "0" * (count - 1)
    if shape == 2:
        return "".join(random.choice("0123456789") for _ in range(count)) + "5" + "0" * random.randrange(12)
    if shape == 3:
        return "1" + "0" * (count - 1) + random.choice("15")
    return "".join(random.choice("0123456789") for _ in range(count))


def operand():
    if random.random() < 0.06:
        return random.choice(SPECIAL)
    digits = coefficient()
    exponent = random.choice([0, 0, -1, -2, random.randint(-40, 40), random.randint(-80, 80)])
    if random.random() < 0.08:
        exponent = random.choice([999999999, 999999966, -999999999, -999999970, -1000000032]) - len(digits) + 1
    number = random.choice(["", "", "-"]) + digits
    return number + ("E%+d" % exponent if exponent else "")


def read(text):
    """Every digit is kept, but where the exponent is out of bounds."""
    digits = text.lstrip("-").split("E")[0].lstrip("0")
    return context(max(34, len(digits))).create_decimal(text)


def trimmed(number):
    if not number.is_finite():
        return number
    if not number:
        return Decimal((number.as_tuple().sign, (0,), 0))
    sign, digits, exponent = number.as_tuple()
    while exponent < 0 and digits[-1] == 0:
        digits, exponent = digits[:-1], exponent + 1
    return Decimal((sign, digits, exponent))


def rescale(c, a, exponent):
    return c.quantize(a, Decimal((0, (1,), int(exponent))))


def order(c, a, b):
    return -2 if a.is_nan() or b.is_nan() else int(c.compare(a, b))


BINARY = {"add": lambda c, a, b: c.add(a, b), "subtract": lambda c, a, b: c.subtract(a, b),
          "multiply": lambda c, a, b: c.multiply(a, b), "divide": lambda c, a, b: c.divide(a, b),
          "quantize": lambda c, a, b: c.quantize(a, b), "compare": order}
UNARY = {"plus": lambda c, a: c.plus(a), "abs": lambda c, a: c.abs(a), "reduce": lambda c, a: c.normalize(a),
         "integral": lambda c, a: a.to_integral_value(context=c), "trim": lambda c, a: trimmed(a),
         "text": lambda c, a: a}


def write(name, work, operands, drawn):
    mode = random.choice([3, 3, 0, 1, 2, 4, 5, 6])
    precision = random.choice([34, 34, 34, 34, 18, 9, 5, 1])
    result = work(context(precision, ROUNDINGS[mode]), *operands)
    print(name, mode, precision, *drawn, "=", result)


def main():
    number = int(sys.argv[1]) if len(sys.argv) > 1 else 60
    for name, work in BINARY.items():
        for _ in range(number):
            drawn = [operand(), operand()]
            if random.random() < 0.1:
                drawn[1] = drawn[0].lstrip("-")
            write(name, work, [read(text) for text in drawn], drawn)
    for _ in range(number):
        exponent = random.choice([random.randint(-40, 40), random.choice([-1000000033, -1000000032, 999999999])])
        drawn = [random.choice([operand(), operand(), random.choice(SPECIAL)]), str(exponent)]
        write("rescale", rescale, [read(drawn[0]), exponent], drawn)
    for name, work in UNARY.items():
        for _ in range(number):
            drawn = [operand()]
            write(name, work, [read(drawn[0])], drawn)


if __name__ == "__main__":
    main()
