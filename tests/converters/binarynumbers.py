"""Writes binarynumbers.txt: fields of binary numbers and what they are, worked out by Python's int and Decimal.

Run as: python3 tests/converters/binarynumbers.py > tests/converters/binarynumbers.txt

A line: representation, byte order, check policy, sign codes, virtual point, simple type, the bytes in
hexadecimal, "=", the number or the error. A simple type of 8 is read as a decimal, of 5 as text, others as integers. The
draw is seeded: the same program writes the same lines.
"""
import random
from decimal import Context, Decimal, getcontext

random.seed(61)
getcontext().prec = 60
CODES = ["CDFC", "CDF0", "ADC0", "CDCC", "FFFF"]
INTEGER, LONG, INT, UNSIGNED_LONG, UNSIGNED_INT, NON_NEGATIVE, DECIMAL = 9, 10, 11, 14, 15, 18, 8
TEXT = 5


def line(representation, order, data, result, policy="strict", codes="CDFC", point=0, simple_type=INTEGER):
    print(representation, order, policy, codes, point, simple_type, data.hex().upper() or "-", "=", result)


def in_order(order, data):
    """Bytes with the most significant first, as they lie in the field."""
    return data if order == "big" else data[::-1]


def draw(length):
    edges = [0, 0x7F, 0x80, 0xFF]
    if random.random() < 0.5:
        return bytes([random.choice(edges)]) + bytes([random.choice(edges)] * (length - 1))
    return random.randbytes(length)


def integers():
    for order in "big", "little":
        for length in range(1, 9):
            for data in [draw(length) for _ in range(6)]:
                line("binary", order, data, int.from_bytes(data, order, signed=True), simple_type=LONG)
                line("binary", order, data, int.from_bytes(data, order, signed=True), simple_type=INTEGER)
                line("binary", order, data, int.from_bytes(data, order), simple_type=UNSIGNED_INT)
                line("binary", order, data, int.from_bytes(data, order), simple_type=UNSIGNED_LONG)
    line("binary", "big", bytes.fromhex("FFFFFE"), -2, simple_type=INT)
    line("binary", "big", bytes.fromhex("FFFFFE"), 16777214, simple_type=UNSIGNED_INT)


def long_integers():
    """More than 8 bytes. Zero bytes of most weight do not count; a big-endian integer without bounds of a
    machine word has them in front all the same and loses its last bytes instead."""
    for order in "big", "little":
        for length in range(9, 15):
            for zeros in 0, 1, length - 3, length:
                data = bytes(zeros) + bytes([random.choice([0x12, 0x85])] * (zeros < length))
                data = (data + random.randbytes(length))[:length] if zeros < length else data
                count = max(length - zeros, 1)
                field = in_order(order, data)
                unbound = field[:count]
                bound = field[zeros:] if order == "big" and zeros < length else field[:count]
                line("binary", order, field, int.from_bytes(unbound, order, signed=True), simple_type=INTEGER)
                line("binary", order, field, int.from_bytes(unbound, order), simple_type=NON_NEGATIVE)
                line("binary", order, field, int.from_bytes(unbound, order), simple_type=UNSIGNED_LONG)
                line("binary", order, field, int.from_bytes(bound, order, signed=True), simple_type=LONG)
                line("binary", order, field, int.from_bytes(bound, order), simple_type=UNSIGNED_INT)
    line("binary", "big", bytes(8) + b"\x05", 0)


def packed_word(policy, codes, nibble, is_zero):
    """The sign for a sign half byte, or None."""
    positive, negative, unsigned, zero = (int(code, 16) for code in codes)
    if policy == "strict":
        if is_zero:
            return 1 if nibble == zero else None
        return {positive: 1, unsigned: 1, negative: -1}.get(nibble) if nibble != negative else -1
    taken = {0: 1 if is_zero else None, 0xB: -1, 0xD: -1, 0xA: 1, 0xC: 1, 0xE: 1, 0xF: 1}
    sign = taken.get(nibble)
    return None if sign == -1 and is_zero else sign


def packed_signs():
    for policy in "strict", "lax":
        for codes in CODES if policy == "strict" else CODES[:1]:
            for digits in "000", "120", "9" * 19:
                for nibble in range(16):
                    sign = packed_word(policy, codes, nibble, int(digits) == 0)
                    data = bytes.fromhex(f"{digits}{nibble:X}")
                    result = "CTDP3031E item" if sign is None else sign * int(digits)
                    for order in "big", "little":
                        line("packed", order, in_order(order, data), result, policy, codes)


def leading_4690(byte):
    """Digits and sign of the first byte, or the bad half byte and its place."""
    high, low = f"{byte:02X}"
    if high in "ABCE":
        return None, (high, 1)
    if low in "ABCEF" or (low == "D" and high != "F"):
        return None, (low, 2)
    return (high + low).strip("DF"), -1 if "D" in (high + low) else 1


def signs_4690():
    for byte in range(256):
        for tail, orders in ("", ["big"]), ("23", ["big"]), ("00" * 9, ["little"]):
            if tail != "23" and byte % 16 % 5 != 3:  # a part of them
                continue
            data = bytes.fromhex(f"{byte:02X}{tail}")
            for order in orders:
                field = in_order(order, data)
                digits, other = leading_4690(byte)
                if digits is None:
                    nibble, place = other
                    place += 2 * (len(data) - 1) if order == "little" else 0
                    result = f"CTDP3083E item {field.hex().upper()} zov4690packed {nibble} {place}"
                else:
                    number = int((digits + tail) or "0")
                    result = ("-" if other < 0 else "") + str(number)
                line("zov4690", order, field, result)


def bad_digits():
    """Each half byte of a field replaced by each that is no digit."""
    for representation, text, nibbles in [
        ("bcd", "1234567890", "ABCDEF"),
        ("packed", "123456789C", "ABCDEF"),
        ("bcd", "12" * 10, "A"),
        ("packed", "1" * 19 + "C", "F"),
    ]:
        for order in "big", "little":
            places = len(text) - (representation == "packed")
            for at in range(places):
                for nibble in nibbles:
                    field = in_order(order, bytes.fromhex(text[:at] + nibble + text[at + 1:]))
                    byte = at // 2 if order == "big" else len(text) // 2 - 1 - at // 2
                    where = 2 * byte + at % 2 + 1
                    line(representation, order, field,
                         f"CTDP3083E item {field.hex().upper()} {representation} {nibble} {where}")


def digits_of_all_lengths():
    for order in "big", "little":
        for length in range(1, 18):
            digits = "".join(random.choice("0123456789") for _ in range(2 * length))
            line("bcd", order, in_order(order, bytes.fromhex(digits)), int(digits))
            line("zov4690", order, in_order(order, bytes.fromhex(digits)), int(digits))
            line("packed", order, in_order(order, bytes.fromhex("5" + digits[2:] + "D")), -int("5" + digits[2:]))
    line("bcd", "big", b"", 0)


WORK = Context(prec=34)


def join(number, scale, more):
    return WORK.add(WORK.multiply(number, Decimal(scale)), Decimal(more))


def joined(digits):
    """Pairs of digits in words of nine pairs."""
    number = Decimal(0)
    for at in range(0, len(digits), 18):
        number = join(number, 10 ** len(digits[at:at + 18]), digits[at:at + 18])
    return number


def joined_bytes(field, order, signed):
    data = in_order(order, field)
    negative = signed and data[0] >= 0x80
    number = Decimal(0)
    for byte in data:
        number = join(number, 256, byte ^ 0xFF if negative else byte)
    return WORK.minus(join(number, 1, 1)) if negative else number


def many_digits():
    """More than 34, which are rounded on the way."""
    for order in "big", "little":
        for length in 18, 19, 20, 27, 28, 40, 45:
            for _ in range(4):
                digits = "".join(random.choice("0123456789") for _ in range(2 * length))
                if random.random() < 0.5:  # a tie where the digits end, for the last of them to break
                    zeros = random.randrange(2, 2 * length - 36) if length > 19 else 0
                    digits = "0" * zeros + "7" * 34 + "50" + "0" * (2 * length - 37 - zeros) + "1"
                    digits = digits[:2 * length]
                line("bcd", order, in_order(order, bytes.fromhex(digits)), joined(digits))
                line("zov4690", order, in_order(order, bytes.fromhex("F" + digits[1:])), joined("0" + digits[1:]))
                line("zov4690", order, in_order(order, bytes.fromhex("D" + digits[1:])),
                     -joined("0" + digits[1:]))
                number = join(joined(digits[:-2]), 10, digits[-2])
                line("packed", order, in_order(order, bytes.fromhex(digits[:-1] + "D")), -number)
        digits = "00" + "7" * 33 + "650"  # a tie that the digit beside the sign comes too late for
        line("packed", order, in_order(order, bytes.fromhex(digits + "1C")), join(joined(digits), 10, 1))
        for length in 14, 15, 16, 17, 20, 33, 60:
            for _ in range(4):
                field = bytes([random.choice([0x12, 0x85, 0xFF])]) + random.randbytes(length - 2) + b"\x81"
                line("binary", order, field, joined_bytes(field, order, True), simple_type=INTEGER)
                line("binary", order, field, joined_bytes(field, order, False), simple_type=NON_NEGATIVE)


def long_decimals():
    """Of 9 to 17 bytes in two's complement: rounded, without zero bytes of most weight or, big-endian, as many
    of the last bytes. The point says how the digits that are left are meant."""
    for order in "big", "little":
        for length in 8, 9, 13, 15, 17:
            for zeros in 0, 1, 5:
                for point in 0, 3:
                    field = in_order(order, bytes(zeros) + b"\x93" + random.randbytes(length - zeros - 1))
                    read = field[:length - zeros] if length > 8 else field
                    for name, signed in ("signed", True), ("unsigned", False):
                        sign, digits, exponent = joined_bytes(read, order, signed).as_tuple()
                        number = Decimal((sign, digits, -point if point else exponent))
                        line(name, order, field, number, point=point, simple_type=DECIMAL)


def decimals():
    for order in "big", "little":
        for point in 0, 2, -3, 40:
            for length in 1, 2, 7, 8:
                data = b"\x91" + random.randbytes(length - 1)
                field = in_order(order, data)
                for name, signed in ("signed", True), ("unsigned", False):
                    number = int.from_bytes(field, order, signed=signed)
                    line(name, order, field, Decimal(number).scaleb(-point), point=point, simple_type=DECIMAL)
            for length in 4, 9, 10, 17:
                digits = "7" + "".join(random.choice("0123456789") for _ in range(2 * length - 2))
                point_of = lambda number: Decimal(number).scaleb(-point)
                line("packed", order, in_order(order, bytes.fromhex(digits + "D")), point_of("-" + digits),
                     point=point, simple_type=DECIMAL)
                line("bcd", order, in_order(order, bytes.fromhex(digits + "3")), point_of(digits + "3"),
                     point=point, simple_type=DECIMAL)
    for representation in "signed", "bcd", "packed", "zov4690":
        line(representation, "big", bytes(18), "CTDP3150E item 36 34", simple_type=DECIMAL)


def texts():
    """The digits as they stand, "-" in front of negative ones. A bad half byte in front is shown by the other one."""
    for order in "big", "little":
        for length in 1, 2, 9, 10, 30:
            digits = "".join(random.choice("0123456789") for _ in range(2 * length))
            for representation in "bcd", "zov4690":
                line(representation, order, in_order(order, bytes.fromhex(digits)), digits, simple_type=TEXT)
            for leading in range(0, 256, 3 if length == 2 else 37):
                field = in_order(order, bytes([leading]) + bytes.fromhex(digits[2:]))
                kept, other = leading_4690(leading)
                result = ("-" if other == -1 else "") + (kept or "") + digits[2:]
                if kept is None:
                    nibble, place = other
                    place += 2 * (length - 1) if order == "little" else 0
                    shown = f"{leading:02X}"[1]
                    result = f"CTDP3083E item {field.hex().upper()} zov4690packed {shown} {place}"
                line("zov4690", order, field, result or "empty", simple_type=TEXT)
        for at in range(4):
            field = in_order(order, bytes.fromhex("1234"[:at] + "E" + "1234"[at + 1:]))
            where = at + 1 if order == "big" else [3, 4, 1, 2][at]
            line("bcd", order, field, f"CTDP3083E item {field.hex().upper()} bcd E {where}", simple_type=TEXT)
    for representation in "packed", "binary":
        line(representation, "big", b"\x12\x3C", "none", simple_type=TEXT)
    line("bcd", "big", b"", "empty", simple_type=TEXT)


integers()
long_integers()
packed_signs()
signs_4690()
bad_digits()
digits_of_all_lengths()
decimals()
many_digits()
long_decimals()
texts()
