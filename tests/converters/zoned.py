"""Writes zoned.txt: which bytes each sign style takes at each place of the field 123, and what it reads then.

Run as: python3 tests/converters/zoned.py > tests/converters/zoned.txt

The styles are put together here from the character sets that they come from, not from ranges of bytes.
A line: style, pattern, "wants" if a sign is wanted where there is a plain digit, index of the changed byte,
then the bytes that are taken there, each with the number that the field is with it. The digit that carries
the sign has one that is positive unless it is the changed one.
"""

DIGITS = range(10)


def punched(zones, sign):
    return {zone | digit: (digit, sign) for zone in zones for digit in DIGITS}


def letters(zone, sign):
    return {ord(bytes([zone | digit]).decode("cp037")): (digit, sign) for digit in DIGITS}


def digits(text):
    return {byte: (digit, 1) for digit, byte in enumerate(text)}


ascii_digits = digits(b"0123456789")
ebcdic_digits = digits("0123456789".encode("cp037"))
# style: plain digits, digits with a sign, what else is taken in place of a plain digit
STYLES = {
    "ebcdic": (ebcdic_digits, ebcdic_digits | punched([0xC0], 1) | punched([0xB0, 0xD0], -1), {}),
    "standard": (ascii_digits, ascii_digits | punched([0x70], -1), {}),
    "translated": (ascii_digits, letters(0xC0, 1) | letters(0xD0, -1), {ord("{"): (0, 1)}),
    "realia": (ascii_digits, ascii_digits | punched([0x20], -1), {}),
}


PLACES = {"000": None, "+000": 0, "000+": 2}


def cell(byte, digit, negative, index):
    value = [1, 2, 3]
    value[index] = digit
    number = 100 * value[0] + 10 * value[1] + value[2]
    return f"{byte:02X}={'-' if negative else ''}{number}"


def main():
    for style, (plain, signed, extra) in STYLES.items():
        for pattern, place in PLACES.items():
            for wants in (True, False):
                for index in range(3):
                    taken = plain | extra
                    if index == place:
                        taken = signed if wants else plain | signed
                    cells = [
                        cell(byte, digit, index == place and sign < 0, index)
                        for byte, (digit, sign) in sorted(taken.items())
                    ]
                    print(style, pattern, "wants" if wants else "takes", index, *cells)


if __name__ == "__main__":
    main()
