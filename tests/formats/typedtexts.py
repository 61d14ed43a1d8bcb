"""Formats of numbers and calendars as texts, for expected.py: what Python's int, Decimal and datetime make of them."""
import datetime
import re
from decimal import Decimal


def shown(value):
    if value is None:
        return ""
    if isinstance(value, bool):
        return "true" if value else "false"
    if isinstance(value, float):
        return format(value, ".17g")
    if isinstance(value, datetime.datetime):
        return value.isoformat()
    return value.hex().upper() if isinstance(value, bytes) else str(value)


def named(names, values):
    return [name + "=" + shown(value) for name, value in zip(names.split(), values, strict=True)]


def accesslog_items(text):
    yield "file"
    for line in text.splitlines():
        host, ident, user, time, method, target, protocol, status, size = re.fullmatch(
            r'(\S+) (\S+) (\S+) \[(.{26})\] "(\S+) (\S+) (\S+)" (\d{3}) (\d+|-)', line).groups()
        yield "entry"
        yield from named("host ident user time", [
            host, None if ident == "-" else ident, None if user == "-" else user,
            datetime.datetime.strptime(time, "%d/%b/%Y:%H:%M:%S %z")])
        yield "request"
        yield from named("method target protocol", [method, target, protocol])
        yield from named("status size", [int(status), None if size == "-" else int(size)])


def plain(number):
    """A decimal without trailing zeros, never in powers of ten."""
    return format(number.normalize() + 0, "f")


def placed(number, places):
    """The decimal of these digits whose point is so many places from their end, with all of them."""
    return format(Decimal(number).scaleb(-places), "f")


def german(text):
    return Decimal(text.replace(".", "").replace(",", "."))


def american(text):
    return Decimal(text.replace(",", ""))


def bookkeeping(text):
    return -american(text[1:-1]) if text.startswith("(") else american(text)


def quality(text):
    words = {"none": 0.0, "nothing": 0.0, "unknown": "NaN", "unlimited": "INF"}
    return words[text] if text in words else float(text)


PRICES = {
    "germany": german, "america": american, "discount": lambda text: Decimal(text[:-1]).scaleb(-2), "change": Decimal,
    "balance": lambda text: Decimal(text[-1] + text[:-1] if text.endswith("-") else text), "account": bookkeeping,
    "density": float, "stock": int, "weight": Decimal, "quality": quality,
    "tax": lambda text: placed(text, 2), "turnover": lambda text: placed(text, -3),
}


def pricelist_items(text):
    yield "file"
    for line in text.splitlines():
        article, *fields = line.split(";")
        yield "item"
        yield "article=" + article
        for (name, read), field in zip(PRICES.items(), fields, strict=True):
            value = read(field) if field else None
            yield name + "=" + (plain(value) if isinstance(value, Decimal) else shown(value))


# The digits of a zoned decimal by style, ten with a sign above zero and ten with one below, as texts of the encoding.
OVERPUNCHED = {
    "cp037": bytes(list(range(0xC0, 0xCA)) + list(range(0xD0, 0xDA))).decode("cp037"),
    "standard": "0123456789pqrstuvwxy",
    "translated": "{ABCDEFGHI}JKLMNOPQR",
    "realia": "0123456789 !\"#$%&'()",
}


def zoned(field, style, sign=-1):
    """The number of a field whose digit at the place `sign` carries it."""
    digit = OVERPUNCHED[style].index(field[sign])
    at = sign % len(field)
    number = int(field[:at] + str(digit % 10) + field[at + 1:])
    return -number if digit > 9 else number


def zoned_items(data, style="cp037"):
    text = data.decode("cp037" if style == "cp037" else "ascii")
    yield "file"
    for at in range(0, len(text), 110):
        record, fields = text[at:at + 110], []
        for width in (6, 20, 4, 9, 9, 6, 8, 16, 4, 3, 25):
            fields.append(record[:width])
            record = record[width:]
        number, name, grade, points, salary, bonus, left, account, hours, budget, pointer = fields
        yield "employee"
        yield from named("number name grade points salary bonus left account hours budget pointer", [
            number, name.rstrip(" "), zoned(grade, style), zoned(points, style, 0),
            placed(zoned(salary, style), 2), placed(zoned(bonus, style, 0), 2),
            int(left) if left.strip() else None, int(account), placed(int(hours), 2),
            placed(zoned(budget, style), -2), zoned(pointer, style)])


def zonedstandard_items(data):
    return zoned_items(data, "standard")


def zonedtranslated_items(data):
    return zoned_items(data, "translated")


def zonedrealia_items(data):
    return zoned_items(data, "realia")


def milliseconds(time):
    return time.replace(microsecond=time.microsecond // 1000 * 1000)


def listing_items(text):
    total, *lines = text.splitlines()
    yield from ["listing", "blocks=" + total.removeprefix("total ")]
    for line in lines:
        mode, links, owner, group, size, date, time, zone, name = line.split(maxsplit=8)
        name, *target = name.split(" -> ")
        yield "entry"
        yield from named("mode links owner group size modified name", [
            mode, int(links), owner, group, int(size),
            milliseconds(datetime.datetime.fromisoformat(f"{date} {time[:-3]}{zone}")), name])
        yield from named("target", target) if target else []


def iso_stamp(text):
    """Of the zone of a stamp, only the hours count."""
    day, *clock = text.split("T")
    time = datetime.datetime.fromisoformat("T".join([day + "-01-01"[len(day) - 4:]] + clock))
    zone = re.search(r"T.*([+-]\d\d):\d\d$", text)
    return time.replace(tzinfo=datetime.timezone(datetime.timedelta(hours=int(zone[1])))) if zone else time


def iso_time(text):
    return datetime.datetime.fromisoformat("1970-01-01T" + text)


def short_date(text):
    day, month, year = map(int, text.split("."))
    return datetime.datetime(year + (1900 if year >= 53 else 2000), month, day)


def local_time(text):
    india = datetime.timezone(datetime.timedelta(hours=5, minutes=30))
    return datetime.datetime.strptime(text, "%d %B %Y, %H:%M:%S").replace(tzinfo=india)


STAMPS = {
    "stamp": iso_stamp, "date": iso_stamp, "time": iso_time, "compact": datetime.datetime.fromisoformat,
    "fraction": datetime.datetime.fromisoformat, "local": local_time, "short": short_date,
}


def stamps_items(text):
    yield "file"
    for line in text.splitlines():
        word, stamp = line.split(" ", 1)
        yield "line"
        yield word + "=" + shown(STAMPS[word](stamp))


def dump_items(text):
    yield "file"
    for line in text.splitlines():
        address, row = line.split(": ", 1)
        yield "line"
        yield "address=" + shown(int(address, 16))
        for bits in row[:6 * 9].split():
            yield "byte=" + shown(int(bits, 2))
        yield "text=" + row[6 * 9 + 1:].lstrip()


def maps_items(text):
    yield "file"
    for line in text.splitlines():
        start, end, rights, offset, major, minor, inode, path = re.fullmatch(
            r"(\w+)-(\w+) (\S+) (\w+) (\w+):(\w+) (\d+) *(.*)", line).groups()
        yield "mapping"
        yield from named("start end rights offset major minor inode path", [
            int(start, 16), int(end, 16), rights, int(offset, 16), int(major, 16), int(minor, 16), int(inode), path])


USTAR = (("name", 100), ("mode", 8), ("uid", 8), ("gid", 8), ("size", 12), ("mtime", 12), ("chksum", 6), (None, 2),
         ("typeflag", 1), ("linkname", 100), ("magic", 6), ("version", 2), ("uname", 32), ("gname", 32),
         ("devmajor", 8), ("devminor", 8), ("prefix", 155), (None, 12))
OCTAL = "mode uid gid size mtime chksum devmajor devminor".split()


def ustar_items(data):
    yield "header"
    for name, width in USTAR:
        field, data = data[:width].decode("utf-8").rstrip("\0"), data[width:]
        if name:
            yield name + "=" + shown(int(field, 8) if name in OCTAL and field else field)
