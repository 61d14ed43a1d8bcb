"""Writes calendars.txt: what texts are by patterns, strict and lax, as datetime has it.

Run as: python3 tests/parsers/calendars.py > tests/parsers/calendars.txt

A line: pattern, strict or lax, text, fields. The fields are year, month from 0, day, hour, minute, second,
microsecond and, if the text has a zone, Z and its offset in minutes; or "refused".
"""
import random
from datetime import datetime, timedelta

random.seed(6)

# pattern, the text's form, whether it has a time, a fraction's digits, a zone
FORMS = [
    ("yyyyMMdd", "{y:04}{mo:02}{d:02}", False, 0, None),
    ("dd.MM.yyyy", "{d:02}.{mo:02}.{y:04}", False, 0, None),
    ("d/M/yyyy", "{d}/{mo}/{y:04}", False, 0, None),
    ("yyyyMMddHHmmss", "{y:04}{mo:02}{d:02}{h:02}{mi:02}{s:02}", True, 0, None),
    ("yyyy-MM-dd'T'HH:mm:ss", "{y:04}-{mo:02}-{d:02}T{h:02}:{mi:02}:{s:02}", True, 0, None),
    ("yyyy-MM-dd HH:mm:ss.SSS Z", "{y:04}-{mo:02}-{d:02} {h:02}:{mi:02}:{s:02}.{f} {z}", True, 3, "{}{:02}{:02}"),
    ("yyyy-MM-dd'T'HH:mm:ss.SSXXX", "{y:04}-{mo:02}-{d:02}T{h:02}:{mi:02}:{s:02}.{f}{z}", True, 2, "{}{:02}:{:02}"),
    ("dd/MMM/yyyy:HH:mm:ss Z", "{d:02}/{name}/{y:04}:{h:02}:{mi:02}:{s:02} {z}", True, 0, "{}{:02}{:02}"),
    ("EEE MMM d HH:mm:ss yyyy", "{day} {name} {d} {h:02}:{mi:02}:{s:02} {y:04}", True, 0, None),
    ("I", "{y:04}-{mo:02}-{d:02}T{h:02}:{mi:02}:{s:02}", True, 0, None),
    ("I", "{y:04}-{mo:02}-{d:02}T{h:02}:{mi:02}:{s:02}.{f}Z", True, 3, "Z"),
]
NAMES = "Jan Feb Mar Apr May Jun Jul Aug Sep Oct Nov Dec".split()


def carried(fields):
    """The moment that fields beyond their bounds come to."""
    year, month, day, hour, minute, second = fields
    first = datetime(year + (month - 1) // 12, (month - 1) % 12 + 1, 1)
    return first + timedelta(days=day - 1, hours=hour, minutes=minute, seconds=second)


def choose(has_time, may_spoil):
    """Fields of a moment, at times with one beyond its bounds, which may be the month if there is no name of it."""
    moment = datetime(1583, 1, 1) + timedelta(seconds=random.randrange(8400 * 365 * 86400))
    fields = list(moment.timetuple()[:6] if has_time else (moment.year, moment.month, moment.day, 0, 0, 0))
    spoilt = random.choice([0, 0, 0] + [field for field in may_spoil if has_time or field < 3])
    if spoilt:
        fields[spoilt] = [None, 13, random.choice([29, 30, 31]), 24, 60, 60][spoilt]
    return fields


def moment_of(pattern, fields, strict):
    """None if the text is refused."""
    try:
        return datetime(*fields)
    except ValueError:
        # Stamps are held to the bounds of their dates alone.
        if strict and (pattern != "I" or carried(fields[:3] + [0, 0, 0]).month != fields[1]):
            return None
        return carried(fields)


for pattern, form, has_time, places, zone in FORMS:
    # A name of a month has no bounds, and a day that moves is on another day of the week.
    may_spoil = [] if "{day}" in form else [2, 2, 3, 4, 5] + ([] if "{name}" in form else [1])
    for _ in range(24):
        strict = random.random() < 0.5
        fields = choose(has_time, may_spoil)
        fraction = random.randrange(10**places) if places else 0
        sign, hours, minutes = random.choice("+-"), random.randrange(14), random.randrange(60)
        moment = moment_of(pattern, fields, strict)
        values = dict(zip(("y", "mo", "d", "h", "mi", "s"), fields), f=str(fraction).zfill(places))
        values["name"] = NAMES[(fields[1] - 1) % 12]
        values["day"] = moment.strftime("%a") if moment else ""
        if zone is not None:
            values["z"] = zone.format(sign, hours, minutes)
        shown = "refused"
        if moment is not None:
            shown = f"{moment.year} {moment.month - 1} {moment.day} {moment.hour} {moment.minute} {moment.second} "
            shown += f"{fraction * 10 ** (6 - places)} "
            if zone is not None:
                shown += f"Z{0 if zone == 'Z' else (hours * 60 + minutes) * (-1 if sign == '-' else 1)}"
        print(pattern, "strict" if strict else "lax", form.format(**values), shown, sep="|")
