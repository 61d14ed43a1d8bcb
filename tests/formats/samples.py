"""Writes data in a format, at random or as examples/ has them:  python3 samples.py FORMAT SEED | example"""
import datetime
import random
import struct
import sys
import zlib
from decimal import Decimal

sys.dont_write_bytecode = True
from typedtexts import OVERPUNCHED


def png_chunk(name, data):
    return struct.pack(">I", len(data)) + name + data + struct.pack(">I", zlib.crc32(name + data))


def png(width, height, depth, kind, interlaced, channels):
    row = b"\0" + bytes((width * channels * depth + 7) // 8)
    header = struct.pack(">IIBBBBB", width, height, depth, kind, 0, 0, interlaced)
    return (b"\x89PNG\r\n\x1a\n" + png_chunk(b"IHDR", header) + png_chunk(b"IDAT", zlib.compress(row * height)) +
            png_chunk(b"IEND", b""))


def png_sample(pick):
    kind, channels = pick.choice([(0, 1), (2, 3), (4, 2), (6, 4)])
    return png(pick.randint(1, 400), pick.randint(1, 9), pick.choice([8, 16]), kind, pick.randint(0, 1), channels)


def png_example():
    return png(1, 1, 8, 2, 0, 3)


def pcap_sample(pick):
    order = pick.choice("<>")
    data = struct.pack(order + "IHHiIII", 0xA1B2C3D4, 2, 4, pick.randint(-43200, 43200), 0, 65535, 1)
    for _ in range(pick.randint(0, 5)):
        length = pick.choice([1, 60, 300])
        data += struct.pack(order + "IIII", pick.randrange(2 ** 31), pick.randrange(1000000), length, length)
        data += pick.randbytes(length)
    return data


def tcp_sample(pick):
    return b"\x45" + pick.randbytes(39 + pick.choice([0, 0, 1, 12, 600]))


def packed(number, digits, signs):
    """`signs` has a nibble for numbers above zero, below it, and for zero."""
    sign = signs[0 if number > 0 else 1 if number < 0 else 2]
    return bytes.fromhex(f"{abs(number):0{digits}}" + sign)


def packed_4690(number, digits):
    """The sign takes the first nibble, or the second behind a filler."""
    text = "d" + str(-number).rjust(digits - 2, "0") if number < 0 else str(number).rjust(digits - 1, "0")
    return bytes.fromhex(text.rjust(digits, "f"))


def hexadecimal_float(number, size):
    """Exact, and with the lowest bits unused, for numbers of as few bits as the samples have."""
    exponent, fraction = 64, abs(number)
    while fraction >= 1:
        exponent, fraction = exponent + 1, fraction / 16
    while 0 < fraction < 1 / 16:
        exponent, fraction = exponent - 1, fraction * 16
    head = (128 if number < 0 else 0) | (exponent if number else 0)
    return bytes([head]) + int(fraction * 256 ** (size - 1)).to_bytes(size - 1, "big")


def employee(number, name, grade, points, salary, bonus, left, account, hours, till, rate, share, switches,
             lax="cdc"):
    return (number.encode("cp037") + name.ljust(20).encode("cp037") + struct.pack(">hi", grade, points) +
            packed(salary, 9, "cdc") + packed(bonus, 7, lax) + (packed(left, 9, "ffc") if left else bytes(5)) +
            bytes.fromhex(f"{account:016}{hours:04}") + packed_4690(till, 6) + hexadecimal_float(rate, 4) +
            hexadecimal_float(share, 8) + switches)


def payroll_sample(pick):
    def within(digits):
        return pick.choice([0, 1, -1, 10 ** digits - 1, 1 - 10 ** digits, pick.randrange(10 ** digits)])
    return b"".join(
        employee(f"{pick.randrange(10 ** 6):06}", "".join(pick.choices("AZaz \u00e9\u00df.,-9", k=19)) + "x",
                 pick.randint(-2 ** 15, 2 ** 15 - 1), pick.randint(-2 ** 31, 2 ** 31 - 1), within(9), within(7),
                 pick.choice([0, 20261231, 1]), pick.randrange(10 ** 16), pick.randrange(10 ** 4), within(5),
                 pick.choice([0, 1.5, -0.1015625, 118.625, pick.randrange(2 ** 20) / 1024]),
                 pick.choice([0, -1.0, 2.0 ** -200, pick.randrange(2 ** 48) / 2 ** 40]), pick.randbytes(2),
                 pick.choice(["cdc", "abf", "ede", "fba"]))
        for _ in range(pick.randint(0, 5)))


def payroll_example():
    return (employee("000417", "LOVELACE, ADA", 12, 1815, 612450, 1250, 0, 4012345678901234, 3950, 12345, 1.5,
                     0.125, b"\xa0\x01") +
            employee("000518", "NO\u00cbL, MARCEL", -3, -70000, -100, -5, 20250930, 42, 0, -77, -0.25, 6.02e5,
                     b"\0\0", "abf"))


def prefixed(fields):
    """Texts and blobs by turns, five of each."""
    data = b""
    for i, (size, order) in enumerate(((1, "big"), (2, "big"), (2, "little"), (4, "big"), (4, "little"))):
        text, blob = fields[2 * i].encode("utf-8"), fields[2 * i + 1]
        data += len(text).to_bytes(size, order) + text + (len(blob) + size).to_bytes(size, order) + blob
    return (len(data) + 4).to_bytes(4, "big") + data


def prefixed_sample(pick):
    def text(most):
        return "".join(pick.choices("ab\u00e4\u20ac\U0001f642 ", k=pick.choice([0, 1, 3, most])))
    return b"".join(
        prefixed([field for most in (60, 100, 300, 300, 9000)
                  for field in (text(most), pick.randbytes(pick.choice([0, 1, most])))])
        for _ in range(pick.randint(0, 3)))


def prefixed_example():
    return (prefixed(["one", b"\1", "two", b"\2\2", "drei \u00fc", b"", "", b"\4" * 4, "five", b"\5" * 5]) +
            prefixed(["", b""] * 5))


# ---- Numbers and calendars as texts ----

def moment(pick):
    """Some time from the year 1 on, in a zone of whole half hours."""
    zone = datetime.timezone(datetime.timedelta(minutes=30 * pick.randint(-28, 28)))
    start = datetime.datetime(pick.choice([2, 999, 1600, 1899, 1999, 2024, 9998]), 1, 1, tzinfo=zone)
    return start + datetime.timedelta(seconds=pick.randrange(365 * 86400), milliseconds=pick.randrange(1000))


def accesslog_entry(pick):
    time = moment(pick)
    method, target = pick.choice(["GET", "POST"]), pick.choice(["", "index.html", "?q=a-b&c=[1]"])
    return (pick.choice(["127.0.0.1", "::1", "www.example.org"]) + pick.choice([" -", " id"]) +
            pick.choice([" -", " frank", " jos\u00e9"]) +
            f' [{time:%d/%b/}{time.year:04}:{time:%H:%M:%S %z}] "{method} /{target} HTTP/1.{pick.randint(0, 1)}" ' +
            pick.choice(["200", "304", "404", "599"]) +
            f" {pick.choice(['-', 0, 1, 2326, 2 ** 64 - 1, pick.randrange(10 ** 9)])}\n")


def accesslog_sample(pick):
    return "".join(accesslog_entry(pick) for _ in range(pick.randint(0, 6))).encode("utf-8")


def grouped(number, point=".", group=","):
    return f"{number:,.2f}".translate({ord(","): group, ord("."): point})


def price(pick):
    return Decimal(pick.choice([0, 1, 99, 100, 99999, 100000, 10 ** 12 - 1, pick.randrange(10 ** 9)])).scaleb(-2)


def pricelist_item(pick):
    change, balance, account = (price(pick) * pick.choice([1, -1]) + 0 for _ in range(3))
    fields = [
        grouped(price(pick), ",", "."), grouped(price(pick)), f"{pick.randint(0, 1000)}%", f"{change:+.2f}",
        f"{abs(balance):.2f}" + "-" * (balance < 0), f"({grouped(-account)})" if account < 0 else grouped(account),
        f"{pick.randint(1, 9)}.{pick.randint(0, 999):03}E{pick.randint(-300, 300)}",
        f"{pick.choice([0, 7, 42, 99999]):05}", f"{pick.randint(-999, 999) / 8:.3f}".center(9),
        pick.choice(["none", "nothing", "unknown", "unlimited", "0.5", "-17.25"]),
        f"{pick.randint(-99999, 99999):03}", f"{pick.randint(-999, 999)}"]
    return ";".join([pick.choice("ab")] + [field if pick.randint(0, 9) else "" for field in fields])


def pricelist_sample(pick):
    return "".join(pricelist_item(pick) + "\n" for _ in range(pick.randint(0, 6))).encode("utf-8")


def zoned(number, digits, style, sign=-1):
    text = f"{abs(number):0{digits}}"
    at = sign % digits
    return text[:at] + OVERPUNCHED[style][int(text[at]) + 10 * (number < 0)] + text[at + 1:]


def zoned_employee(style, number, name, grade, points, salary, bonus, left, account, hours, budget, pointer):
    return "".join([
        f"{number:06}{name:20}", zoned(grade, 4, style), zoned(points, 9, style, 0), zoned(salary, 9, style),
        zoned(bonus, 6, style, 0), f"{left:08}" if left else " " * 8, f"{account:016}{hours:04}",
        zoned(budget, 3, style), zoned(pointer, 25, style)]).encode("cp037" if style == "cp037" else "ascii")


def zoned_sample(pick, style="cp037"):
    def within(digits):
        return pick.choice([0, 1, -1, 10 ** digits - 1, 1 - 10 ** digits, pick.randrange(10 ** digits)])
    return b"".join(
        zoned_employee(style, pick.randrange(10 ** 6), pick.choice(["LOVELACE, ADA", "X", "O'NEILL"]), within(4),
                       within(9), within(9), within(6), pick.choice([0, 20261231, 1]), pick.randrange(10 ** 16),
                       pick.randrange(10 ** 4), within(3), within(25))
        for _ in range(pick.randint(0, 5)))


def zonedstandard_sample(pick):
    return zoned_sample(pick, "standard")


def zonedtranslated_sample(pick):
    return zoned_sample(pick, "translated")


def zonedrealia_sample(pick):
    return zoned_sample(pick, "realia")


def zoned_example():
    return (zoned_employee("cp037", 417, "LOVELACE, ADA", 12, 1815, 612450, 1250, 0, 4012345678901234, 3950, 15,
                           1234567890123456789012345) +
            zoned_employee("cp037", 518, "NO\u00cbL, MARCEL", -3, -70000, -100, -5, 20250930, 42, 0, -7, -1))


def listing_sample(pick):
    lines = [f"total {pick.randrange(10 ** 6)}"]
    for _ in range(pick.randint(0, 5)):
        time = moment(pick)
        name = pick.choice(["a", "a file", "\u00e4-b", "a -> b", "c  d -> ../e"])
        lines.append(
            f"{pick.choice('-dl')}rw-r--r-- {pick.randint(1, 99):2} root    {pick.choice(['root', 'www-data'])} "
            f"{pick.randrange(2 ** 63):20} {time.year:04}-{time:%m-%d %H:%M:%S.%f}{pick.randrange(1000):03} {time:%z} "
            f"{name}")
    return "".join(line + "\n" for line in lines).encode("utf-8")


def stamp(pick):
    time = moment(pick)
    year, form = f"{time.year:04}", pick.choice("stamp date time compact fraction local short".split())
    day, clock, zone = f"{year}-{time:%m-%d}", f"{time:%H:%M:%S}", f"{time:%z}"
    zone = zone[:3] + ":" + zone[3:]
    milliseconds = f"{time.microsecond // 1000:03}"
    return form + " " + {
        "stamp": day + "T" + clock + pick.choice(["", "." + milliseconds]) + pick.choice(["", "Z", zone]),
        "date": pick.choice([day, year + "-" + day[5:7]]),
        "time": clock + pick.choice(["", "." + milliseconds]) + pick.choice(["", zone]),
        "compact": day.replace("-", "") + "T" + clock.replace(":", "") + pick.choice(["Z", zone.replace(":", "")]),
        "fraction": f"{day}T{clock}.{milliseconds}{zone}",
        "local": f"{time.day} {time:%B} {year}, {clock}",
        "short": f"{time:%d.%m}.{pick.choice([0, 29, 52, 53, 99]):02}" if day[5:] != "02-29" else "29.02.24",
    }[form]


def stamps_sample(pick):
    return "".join(stamp(pick) + "\n" for _ in range(pick.randint(0, 9))).encode("utf-8")


def dump_sample(pick):
    data = bytes(pick.choices(range(33, 127), k=pick.randint(0, 40)))
    return "".join(
        f"{at:08x}: " + " ".join(f"{byte:08b}" for byte in data[at:at + 6]).ljust(6 * 9 - 1) + "  " +
        data[at:at + 6].decode("ascii") + "\n" for at in range(0, len(data), 6)).encode("ascii")


def main():
    name, seed = sys.argv[1:]
    make = globals()[name + ("_example" if seed == "example" else "_sample")]
    sys.stdout.buffer.write(make() if seed == "example" else make(random.Random(int(seed))))


main()
