"""Writes textnumbers.txt: texts of numbers, and what Python's int, float and Decimal make of them.

Run as: python3 tests/pifiterator/textnumbers.py > tests/pifiterator/textnumbers.txt

A line, its cells separated by tabs: type, pattern, settings, text, and the value or the code of the error.
Settings are words with "|" between them, such as "point=,". The texts are written by Python from the numbers;
what is refused is listed by hand.
"""
import random
from decimal import Decimal, getcontext

random.seed(620)
getcontext().prec = 200

RANGES = {
    "BYTE": (-(2**7), 2**7 - 1),
    "SHORT": (-(2**15), 2**15 - 1),
    "INT": (-(2**31), 2**31 - 1),
    "LONG": (-(2**63), 2**63 - 1),
    "UNSIGNEDBYTE": (0, 2**8 - 1),
    "UNSIGNEDSHORT": (0, 2**16 - 1),
    "UNSIGNEDINT": (0, 2**32 - 1),
    "UNSIGNEDLONG": (0, 2**64 - 1),
}
OUT_OF_RANGE, INCOMPLETE, EMPTY, NO_CONVERSION, NEGATIVE = (
    "CTDP3038E", "CTDP3043E", "CTDP3116E", "CTDP3051E", "CTDP3121E")


def row(kind, pattern, settings, text, result):
    print(kind, pattern, settings, text, result, sep="\t")


def rows(kind, pattern, settings, cases):
    for text, result in cases:
        row(kind, pattern, settings, text, result)


def plain(number):
    """As short as it gets, with an exponent where most of the digits would be zeros of a fraction."""
    number = Decimal(number).normalize()
    return format(number, "f") if number.adjusted() >= -6 or not number else str(number)


def shown(number):
    return repr(float(number)).removesuffix(".0")


def random_integer(digits):
    return random.choice([-1, 1]) * random.randrange(10 ** (digits - 1), 10**digits)


def random_decimal(digits):
    return Decimal(random_integer(digits)).scaleb(-random.randrange(digits))


def in_base(number, letter):
    return ("-" if number < 0 else "") + format(abs(number), letter)


def bounds():
    for kind, (least, most) in RANGES.items():
        for number in (least - 1, least, least + 1, -1, 0, 1, most - 1, most, most + 1, 10 * most):
            result = number if least <= number <= most else OUT_OF_RANGE
            row(kind, "#0", "-", str(number), result)
            row(kind, "#,##0", "-", f"{number:,}", result)
            row(kind, "#0;(#0)", "-", f"({-number})" if number < 0 else str(number), result)
            for base, letter in ((2, "b"), (8, "o"), (16, "x"), (16, "X")):
                row(kind, "#0", f"base={base}", in_base(number, letter), result)
    for base, letter in ((2, "b"), (8, "o"), (16, "x")):
        for number, result in ((2**63, 2**63), (2**64 - 1, 2**64 - 1), (2**64, OUT_OF_RANGE), (2**70, OUT_OF_RANGE),
                               (-(2**63), -(2**63)), (-(2**63) - 1, OUT_OF_RANGE)):
            row("INTEGER", "#0", f"base={base}", in_base(number, letter), result)


def large_integers():
    for digits in list(range(1, 41)) + [60, 100]:
        number = random_integer(digits)
        row("INTEGER", "#0", "-", str(number), number)
        row("INTEGER", "#,##0", "grouping=.", f"{number:,}".replace(",", "."), number)
        row("DECIMAL", "#0", "-", str(number), plain(number))
        row("NONNEGATIVEINTEGER", "#0", "-", str(number), number if number >= 0 else OUT_OF_RANGE)
        row("INTEGER", "#0", "-", "0" * 20 + str(abs(number)), abs(number))


def integers():
    rows("INT", "#0", "-", [
        ("-0", 0), ("00012", 12), ("1.5", INCOMPLETE), ("1,5", INCOMPLETE), ("+5", INCOMPLETE), ("5-", INCOMPLETE),
        ("1E2", INCOMPLETE), ("12+3", INCOMPLETE), ("12-3", INCOMPLETE), (" 5", INCOMPLETE), ("5 ", INCOMPLETE),
        ("x", INCOMPLETE), ("-", INCOMPLETE), ("--5", INCOMPLETE), ("5x", INCOMPLETE), ("\u0661\u0662", 12)])
    rows("INT", "#0", "lax", [(" 5", 5), ("5 ", 5), ("\u20035 ", 5), ("5x", INCOMPLETE)])
    rows("UNSIGNEDINT", "#0", "-", [("-0", 0), ("-1", OUT_OF_RANGE)])
    rows("INT", "#0.0", "-", [("7", 7), ("1.5", INCOMPLETE)])
    rows("INT", "+#0;-#0", "-", [("+5", 5), ("-5", -5), ("5", INCOMPLETE)])
    rows("INT", "#0;#0-", "-", [("5-", -5), ("5", 5), ("-5", INCOMPLETE)])
    rows("INT", "#0;(#0)", "-", [("(5)", -5), ("5", 5), ("(5", INCOMPLETE), ("-5", INCOMPLETE)])
    rows("INT", "#,##0", "-", [("1,234,567", 1234567), ("1234567", 1234567), ("1,23", INCOMPLETE)])
    rows("INT", "#,##,##0", "-", [("12,34,567", 1234567)])
    rows("INT", "#0%", "-", [("300%", 3), ("50%", OUT_OF_RANGE), ("3", INCOMPLETE)])
    rows("INT", "#0E0", "-", [("12E2", 1200), ("12E-1", OUT_OF_RANGE), ("3E0", 3), ("1E10", OUT_OF_RANGE)])
    rows("INT", "000V00", "virtual=3", [("12300", 123), ("12345", OUT_OF_RANGE)])
    rows("INT", "###PP", "-", [("123", 12300)])
    rows("INT", "PP###", "-", [("123", OUT_OF_RANGE), ("0", 0)])
    rows("INT", "#0", "zero=none nil", [("none", 0), ("nil", 0), ("None", INCOMPLETE), ("0", 0)])
    rows("INT", "#0", "zero=none|nocase", [("None", 0)])
    rows("INT", "#0", "zero=Z", [("Z", 0), ("0", 0), ("1Z", 10), ("-Z5", -5), ("z", 0)])
    rows("INT", "#0", "base=16", [("zz", INCOMPLETE), ("fe", 254), ("1 ", INCOMPLETE), ("+1", INCOMPLETE), ("-fE", -254)])
    rows("INT", "#0", "base=8", [("17", 15), ("18", INCOMPLETE)])
    rows("INT", "#0", "base=2", [("-101", -5), ("2", INCOMPLETE)])
    rows("INT", "#0", "trimleft=0", [("0042", 42), ("0", 0), ("000", 0), ("-5", -5), ("00-5", -5)])
    rows("INT", "#0", "trimright=0", [("5", 5), ("0", 0), ("000", 0), ("7000", 7)])
    rows("INT", "#0", "trimboth=0", [("0", 0), ("000", 0), ("0070", 7), ("00-700", -7)])
    rows("INT", "#0", "trimleft=%#r30;", [("0042", 42), ("000", 0)])
    rows("INT", "#0", "trimleft= ", [("  42", 42), ("   ", EMPTY)])


def decimals():
    for digits in range(1, 50):
        number = random_decimal(digits)
        sign, size = ("-" if number < 0 else ""), abs(number)
        swapped = f"{size:,f}".translate(str.maketrans(",.", ".,"))
        row("DECIMAL", "#,##0.###", "-", f"{number:,f}", plain(number))
        row("DECIMAL", "#,##0.###", "grouping=.|point=,", sign + swapped, plain(number))
        row("DECIMAL", "#0.0##;(#0.0##)", "-", f"({size:f})" if sign else f"{size:f}", plain(number))
        row("DECIMAL", "#0.0##;#0.0##-", "-", f"{size:f}{sign}", plain(number))
        row("DECIMAL", "#0.##%", "-", f"{number:f}%", plain(number / 100))
        exponent = random.randrange(-20, 20)
        row("DECIMAL", "#0.0##E0", "-", f"{number:f}E{exponent}", plain(number.scaleb(exponent)))
        row("DECIMAL", "#0.0##E0", "exponent=x", f"{number:f}x{exponent}", plain(number.scaleb(exponent)))
        if number == number.to_integral_value():
            row("DECIMAL", "###V00", "virtual=3", f"{number:f}", plain(number.scaleb(-2)))
            row("DECIMAL", "PP###", "-", f"{number:f}", plain(number.scaleb(-5)))
            row("DECIMAL", "###PP", "-", f"{number:f}", plain(number.scaleb(2)))
    rows("DECIMAL", "#,##0.00", "-", [
        ("1,234.50", "1234.5"), ("-0.00", 0), ("1.2.3", INCOMPLETE), ("1,2345.00", INCOMPLETE), (".5", "0.5"), ("5.", 5),
        ("abc", INCOMPLETE), ("1.5E3", INCOMPLETE)])
    rows("DECIMAL", "000V00;(000V00)", "virtual=3|boundary=6|negative=4", [
        ("12345", "123.45"), ("(12345)", "-123.45"), ("(1)", "-0.01"), ("-1", INCOMPLETE)])
    rows("DECIMAL", "#V00;-#V00", "virtual=1|boundary=4|negative=2", [("123", "1.23"), ("-123", "-1.23")])
    rows("DECIMAL", "PP##;-PP##", "-", [("12", "0.0012"), ("-12", "-0.0012")])
    rows("DECIMAL", "#0.0", "unsigned", [("-1.5", NEGATIVE), ("1.5", "1.5")])
    rows("DECIMAL", "#0.0", "infinity=INF|nan=NaN", [("INF", NO_CONVERSION), ("NaN", NO_CONVERSION), ("inf", INCOMPLETE)])
    rows("DECIMAL", "#0.0", "zero=zero", [("zero", 0), ("0.0", 0)])
    rows("DECIMAL", "#0.0", "trimright=0", [("1.250", "1.25"), ("100", 1)])
    rows("DECIMAL", "#0.0", "trimleft=0", [("00.5", "0.5"), ("000.0", 0), ("012.50", "12.5")])
    rows("DECIMAL", "#0.0", "trimboth=0", [("00.500", "0.5")])
    rows("DECIMAL", "#0.0E0", "-", [("1E30", 10**30), ("1E100", "1E+100"), ("1E-7", "1E-7"), ("1E999999", "1E+999999")])
    rows("DECIMAL", "#,##,##0", "-", [("12,00,000", 1200000)])


def floats():
    for digits in range(1, 25):
        number = random_decimal(digits)
        row("DOUBLE", "#0.0##", "-", f"{number:f}", shown(number))
        row("DOUBLE", "#,##0.##", "grouping= |point=,",
            f"{number:,f}".translate(str.maketrans(",.", " ,")), shown(number))
        for exponent in (-310, -25, 0, 7, 250):
            row("DOUBLE", "#0.0##E0", "-", f"{number:f}E{exponent}", shown(f"{number:f}E{exponent}"))
        row("DOUBLE", "#0.0%", "-", f"{number:f}%", shown(number / 100))
    rows("DOUBLE", "#0.0E0", "infinity=INF|nan=NaN", [
        ("INF", "INF"), ("-INF", OUT_OF_RANGE), ("NaN", "NaN"), ("1E308", "1e+308"), ("1E309", OUT_OF_RANGE), ("-1E309", OUT_OF_RANGE),
        ("1E-400", 0), ("1e5", INCOMPLETE), ("inf", INCOMPLETE), ("1E", INCOMPLETE)])
    rows("DOUBLE", "#0.0E0", "nocase", [("1e5", 100000)])
    rows("DOUBLE", "#0.0E0", "nocase|zero=zero", [("Zero", 0)])
    rows("FLOAT", "#0.0E0", "infinity=INF|nan=NaN", [
        ("1.5", "1.5"), ("3.4E38", "3.4e+38"), ("3.5E38", OUT_OF_RANGE), ("-3.5E38", OUT_OF_RANGE), ("INF", "INF"),
        ("NaN", "NaN"), ("1E-60", 0)])
    rows("DOUBLE", "##0V00", "virtual=3", [("12345", "123.45"), ("-5", "-0.05")])
    rows("DOUBLE", "#0.0", "base=16", [("ff", 0)])


def main():
    bounds()
    large_integers()
    integers()
    decimals()
    floats()


if __name__ == "__main__":
    main()
