"""Reads a format by means of Python and writes what the tests compare with:  python3 expected.py FORMAT < DATA

The form: for each element its name, behind "=" its value if it is a simple one, and U+001E behind it. An element
that the data leave out is left out. `expected.py to ENCODING` writes UTF-8 data in another encoding.
"""
import csv
import io
import re
import sys

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


def main():
    if sys.argv[1] == "to":
        sys.stdout.buffer.write(sys.stdin.buffer.read().decode("utf-8").encode(sys.argv[2]))
        return
    text = sys.stdin.buffer.read().decode("utf-8")
    items = globals()[sys.argv[1] + "_items"](text)
    sys.stdout.buffer.write("".join(item + "\x1e" for item in items).encode("utf-8"))


main()
