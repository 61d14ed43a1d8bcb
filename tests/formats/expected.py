"""Reads a format by means of Python and writes what the tests compare with:  python3 expected.py FORMAT < DATA

The form: for each element its name, behind "=" its value if it is a simple one, and U+001E behind it. An element
that the data leave out is left out. `expected.py to ENCODING` writes UTF-8 data in another encoding.
"""
import csv
import datetime
import io
import re
import struct
import sys
from decimal import Decimal
from fractions import Fraction

sys.dont_write_bytecode = True  # the import would leave its compiled form among the sources
from typedtexts import *

FIELDS = ("code name category combiningClass bidiClass decomposition decimal digit numeric mirrored oldName comment "
          "upper lower title").split()
SEGMENTS = {
    "ORD": ("head", ["number", "date", ("buyer", ["id", "name"]), "reference", "note"]),
    "LIN": ("line", ["position", "article", "description", ("quantity", ["amount", "unit"]),
                     ("price", ["amount", "currency", "per"]), "remark"]),
    "END": ("end", ["lines", "remark"]),
}


def csv_items(text):
    yield "file"
    for row in csv.reader(io.StringIO(text, newline="")):
        yield "record"
        for field in row or [""]:
            yield "field=" + field


def unicodedata_items(text):
    yield "file"
    for line in text.splitlines():
        yield "character"
        for name, value in zip(FIELDS, line.split(";"), strict=True):
            yield name + "=" + value


def settings_items(text):
    lines = [line.strip() for line in text.splitlines()]
    yield "file"
    for line in lines:
        if line.startswith("#") and line[1:].strip():
            yield "comment=" + line[1:].strip(" ")
    for line in lines:
        if line and not line.startswith("#"):
            key, value = re.fullmatch(r"(.*?)\s*=\s*(.*)", line).groups()
            yield from ["setting", "key=" + key, "value=" + value]


def split_at(text, sign):
    """The parts between the signs that no question mark releases; the releases stay."""
    parts = [""]
    for piece in re.findall(r"\?.|.", text, re.S):
        if piece == sign:
            parts.append("")
        else:
            parts[-1] += piece
    return parts


def released(text):
    return re.sub(r"\?(.)", r"\1", text, flags=re.S)


def order_items(text):
    yield "order"
    for segment in split_at(text, "'"):
        tag, *elements = split_at(segment.lstrip(), "+")
        if tag not in SEGMENTS:
            continue
        name, members = SEGMENTS[tag]
        yield name
        for member, element in zip(members, elements):
            if not element:
                continue
            if isinstance(member, str):
                yield member + "=" + released(element)
                continue
            yield member[0]
            for component, value in zip(member[1], split_at(element, ":")):
                if value:
                    yield component + "=" + released(value)


# ---- Binary formats, whose functions take bytes ----


def bits_of(data, widths):
    """The bits as numbers, a list of one for each width; and the bytes behind them."""
    digits = "".join(f"{byte:08b}" for byte in data[:sum(widths) // 8])
    starts = [sum(widths[:i]) for i in range(len(widths))]
    return [int(digits[at:at + width], 2) for at, width in zip(starts, widths)], data[sum(widths) // 8:]


def tzif_items(data):
    magic, version, *counts = struct.unpack(">4sc15x6I", data[:44])
    assert magic == b"TZif"
    yield "header"
    yield "version=" + version.decode("ascii").strip("\0")
    yield from named("utcIndicators standardIndicators leapSeconds transitions types designationBytes", counts)


def zones_items(data):
    """The headers of all files of a list of paths."""
    for path in data.decode("utf-8").split():
        with open(path, "rb") as file:
            yield from tzif_items(file.read(44))


def pcap_items(data):
    order = {0xD4C3B2A1: "<", 0xA1B2C3D4: ">"}[struct.unpack(">I", data[:4])[0]]
    yield "file"
    yield from named("major minor zone accuracy greatestLength linkType", struct.unpack(order + "HHiIII", data[4:24]))
    at = 24
    while at < len(data):
        seconds, micros, captured, length = struct.unpack(order + "IIII", data[at:at + 16])
        at += 16 + captured
        yield "packet"
        yield "time=" + datetime.datetime.fromtimestamp(seconds, datetime.timezone.utc).isoformat()
        yield from named("microseconds captured data", [micros, captured, data[at - captured:at]])
        assert captured == length


def png_items(data):
    signature, length, name, width, height, depth, kind, compression, filtering, interlaced, crc = struct.unpack(
        ">8sI4sIIBBBB?4s", data[:33])
    assert signature == b"\x89PNG\r\n\x1a\n" and length == 13 and name == b"IHDR"
    yield from ["picture", "header"]
    yield from named(
        "width height bitDepth unused alpha colour palette compression filter interlaced crc",
        [width, height, depth, kind >> 3, bool(kind & 4), bool(kind & 2), bool(kind & 1), compression, filtering,
         interlaced, crc])


def tcp_items(data):
    ip, rest = bits_of(data, [4, 4, 6, 2, 16, 16, 3, 13, 8, 8, 16])
    yield from ["packet", "ip"]
    yield from named("version words services congestion length identification flags fragmentOffset timeToLive "
                     "protocol checksum source destination", ip + [rest[:4], rest[4:8]])
    tcp, rest = bits_of(rest[8:], [16, 16, 32, 32, 4, 4] + [1] * 8 + [16, 16, 16])
    tcp[6:14] = map(bool, tcp[6:14])
    yield "tcp"
    yield from named("sourcePort destinationPort sequence acknowledgement words unused cwr ece urg ack psh rst syn "
                     "fin window checksum urgent", tcp)
    if rest:
        yield "rest=" + shown(rest)


def packed(field, point=0):
    number = Decimal(int(field.hex()[:-1])).scaleb(-point)
    return -number if field.hex()[-1] in "bd" else number


def packed_4690(field):
    sign, digits = re.fullmatch("f?(d?)([0-9]*)", field.hex()).groups()
    return -int(digits) if sign else int(digits)


def hexadecimal_float(field):
    fraction = Fraction(int.from_bytes(field[1:], "big"), 256 ** (len(field) - 1))
    return float((-1 if field[0] & 128 else 1) * fraction * Fraction(16) ** ((field[0] & 127) - 64))


def short_float(number):
    """As few digits as tell the number from its neighbours among the floats of four bytes."""
    texts = (f"{number:.{digits}g}" for digits in range(1, 18))
    return float(next(text for text in texts if struct.pack(">f", float(text)) == struct.pack(">f", number)))


def payroll_items(data):
    yield "file"
    for (number, name, grade, points, salary, bonus, left, account, hours, till, rate, share,
         switches) in struct.iter_unpack(">6s20shi5s4s5s8s2s3s4s8s2s", data):
        yield "employee"
        yield from named(
            "number name grade points salary bonus left account hours till rate share switches",
            [number.decode("cp037"), name.decode("cp037").rstrip(" "), grade, points, packed(salary, 2),
             packed(bonus, 2), packed(left) if any(left) else None, int(account.hex()),
             Decimal(int(hours.hex())).scaleb(-2), packed_4690(till),
             # All zeros have no other reading in a float; in a double they have.
             short_float(hexadecimal_float(rate) or 2.0 ** -127), hexadecimal_float(share), switches])


def prefixed_items(data):
    yield "file"
    file = io.BytesIO(data)
    while length := file.read(4):
        end = file.tell() - 4 + int.from_bytes(length, "big")
        yield "record"
        for size, order in ((1, ""), (2, "Big"), (2, "Little"), (4, "Big"), (4, "Little")):
            text = file.read(int.from_bytes(file.read(size), order.lower() or "big"))
            yield f"text{size}{order}=" + text.decode("utf-8")
            blob = file.read(int.from_bytes(file.read(size), order.lower() or "big") - size)
            yield f"blob{size}{order}=" + shown(blob)
        assert file.tell() == end


BINARY = ["tzif", "zones", "pcap", "png", "tcp", "payroll", "prefixed", "ustar", "zoned", "zonedstandard",
          "zonedtranslated", "zonedrealia"]


def main():
    command, data = sys.argv[1], sys.stdin.buffer.read()
    if command not in BINARY:
        data = data.decode("utf-8")
    if command == "to":
        sys.stdout.buffer.write(data.encode(sys.argv[2]))
        return
    items = globals()[command + "_items"](data)
    sys.stdout.buffer.write("".join(item + "\x1e" for item in items).encode("utf-8"))


main()
