"""Writes numberformats.txt: numbers as they are written by patterns.

Run as: python3 tests/converters/numberformats.py > tests/converters/numberformats.txt

A line: pattern, settings of the row ("name=value" with "|" between them, or "-"), kind of value ("integer",
"decimal" or "double"), value, text. The pattern and what it must do to a number come from the same
description; the text is put together from it by Python's decimal arithmetic and its formatting of decimals.
"""

import decimal
import random
from dataclasses import dataclass, replace
from decimal import Decimal

MODES = {
    "CEILING": decimal.ROUND_CEILING,
    "FLOOR": decimal.ROUND_FLOOR,
    "DOWN": decimal.ROUND_DOWN,
    "UP": decimal.ROUND_UP,
    "HALF_EVEN": decimal.ROUND_HALF_EVEN,
    "HALF_DOWN": decimal.ROUND_HALF_DOWN,
    "HALF_UP": decimal.ROUND_HALF_UP,
    None: decimal.ROUND_HALF_EVEN,
}


@dataclass(frozen=True)
class Style:
    digits: int = 1  # at least, before the point
    least: int = 0  # at least, behind it
    most: int = 0
    group: int = 0
    prefix: str = ""
    suffix: str = ""
    negative: tuple = None  # prefix and suffix of negative numbers, where they have a pattern of their own
    exponent: bool = False
    step: str = None  # numbers are multiples of it
    step_in_pattern: bool = False
    mode: str = None
    virtual: bool = False
    grouping: str = ","
    point: str = "."
    mark: str = "E"


def digits_before(style):
    width = max(style.digits, style.group + 1 if style.group else 1)
    digits = "#" * (width - style.digits) + "0" * style.digits
    if not style.group:
        return digits
    return digits[: -style.group] + "," + digits[-style.group :]


def body(style):
    if style.step_in_pattern:
        return style.step
    point = "V" if style.virtual else "."
    before = digits_before(style)
    fraction = "0" * style.least + "#" * (style.most - style.least)
    return before + (point + fraction if fraction or style.virtual else "") + ("E0" if style.exponent else "")


def pattern(style):
    positive = style.prefix + body(style) + style.suffix
    if style.negative is None:
        return positive
    return positive + ";" + style.negative[0] + body(style) + style.negative[1]


def settings(style):
    result = []
    whole = pattern(style)
    if style.grouping != ",":
        result.append("grouping=" + style.grouping)
    if style.point != ".":
        result.append("point=" + style.point)
    if style.mark != "E":
        result.append("exponent=" + style.mark)
    if style.mode:
        result.append("mode=" + style.mode)
    if style.step and not style.step_in_pattern:
        result.append("step=" + style.step)
    if style.virtual:
        result.append(f"virtual={whole.index('V')}")
        if ";" in whole:
            positive, negative = whole.split(";")
            result.append(f"boundary={len(positive)}")
            result.append(f"negative={negative.index('V')}")
    return "|".join(result) or "-"


def grouped(digits, style):
    if not style.group:
        return digits
    parts = []
    while len(digits) > style.group:
        parts.insert(0, digits[-style.group :])
        digits = digits[: -style.group]
    return style.grouping.join([digits] + parts)


def mantissa(number, style):
    """A number that is not negative, with as many digits as it may have."""
    before, _, fraction = f"{number:f}".partition(".")
    fraction = fraction.rstrip("0").ljust(style.least, "0")
    before = before.lstrip("0").rjust(style.digits, "0")
    point = "" if style.virtual or not fraction else style.point
    return grouped(before, style) + point + fraction


def rounded(number, style):
    step = Decimal(style.step) if style.step else Decimal(1).scaleb(-style.most)
    return (number / step).to_integral_value(rounding=MODES[style.mode]) * step


def write(value, style):
    number = Decimal(value)
    if "%" in style.prefix + style.suffix:
        number *= 100
    mode = MODES[style.mode]
    # What is rounded has its sign until then.
    if style.exponent:
        with decimal.localcontext() as context:
            context.rounding = mode
            text, _, exponent = f"{number:.{style.most}e}".lstrip("-").partition("e")
        exponent = 0 if number == 0 else int(exponent)
        text = mantissa(Decimal(text), style) + style.mark + str(exponent)
    else:
        text = mantissa(abs(rounded(number, style)), style)
    if not number.is_signed():
        return style.prefix + text + style.suffix
    prefix, suffix = style.negative or ("-" + style.prefix, style.suffix)
    return prefix + text + suffix


STYLES = [
    Style(),
    Style(digits=5),
    Style(group=3),
    Style(group=4, grouping="'"),
    Style(group=3, least=2, most=2, grouping=".", point=","),
    Style(least=1, most=4),
    Style(most=3, digits=3),
    Style(prefix="$", group=3, least=2, most=2, negative=("($", ")")),
    Style(suffix="%", most=1),
    Style(suffix="+", negative=("", "-"), digits=3),
    Style(least=3, most=3, exponent=True),
    Style(most=5, exponent=True, mark="e", point=","),
    Style(step="0.25", least=2, most=2),
    Style(step="5", group=3),
    Style(step="0.05", step_in_pattern=True, least=2, most=2),
    Style(step="25", step_in_pattern=True, digits=2),
    Style(virtual=True, digits=3, least=2, most=2),
    Style(virtual=True, digits=3, least=2, most=2, negative=("(", ")")),
    Style(virtual=True, digits=1, least=1, most=3),
    Style(virtual=True, digits=4, least=1, most=1, group=3, grouping=" "),
]

NUMBERS = ["0", "1", "-1", "5", "-7", "12", "999", "1000", "-1234567", "123456789012345678"]
FRACTIONS = ["0.5", "-0.5", "1.5", "2.5", "0.005", "0.015", "-0.025", "0.0005", "0.995", "999.995", "12.375"]
FRACTIONS += ["-12.625", "1234.5678", "-98765.4321", "100", "0.1", "1234567890123456789012345678.901"]
DOUBLES = ["0.5", "-0.25", "1.75", "3.0", "1024.125", "-123456.5", "0.0078125"]


def main():
    decimal.getcontext().prec = 60
    decimal.getcontext().Emin = -9999
    generator = random.Random(62)
    for style in STYLES:
        for mode in [None] + generator.sample(sorted(filter(None, MODES)), 2):
            one = replace(style, mode=mode)
            head = f"{pattern(one)}\t{settings(one)}"
            for kind, values in (("integer", NUMBERS), ("decimal", FRACTIONS), ("double", DOUBLES)):
                for value in values:
                    print(head, kind, value, write(value, one), sep="\t")
            for _ in range(6):
                value = Decimal(generator.randrange(-(10**9), 10**9)).scaleb(-generator.randrange(0, 8))
                print(head, "decimal", f"{value:f}", write(value, one), sep="\t")


main()
