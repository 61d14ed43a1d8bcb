"""Writes binarybytes.txt: words and their bytes, little-endian bits as they are written, and hexadecimal texts,
worked out by Python's int, struct and bytes.

Run as: python3 tests/converters/binarybytes.py > tests/converters/binarybytes.txt

Lines: "word", kind, byte order, number, "=", the bytes; "bits", how many, the bytes with the number, "=", the
bytes to be written; "hex", a text, "=", the bytes or what is wrong. The draw is seeded.
"""
import random
import struct

random.seed(62)


def show(data):
    return data.hex().upper() or "-"


def words():
    for order, sign in ("big", ">"), ("little", "<"):
        for kind, length in ("short", 2), ("int3", 3), ("int", 4), ("long", 8):
            for number in [0, 1, 1 << 8 * length - 1, (1 << 8 * length) - 2, random.getrandbits(8 * length)]:
                print("word", kind, order, number, "=", show(number.to_bytes(length, order)))
        for length in range(1, 12):
            for number in [1, (1 << 64) - 2, random.getrandbits(64)]:
                low = number & (1 << 8 * length) - 1
                print("word", "odd", order, number, "=", show(low.to_bytes(length, order)))
        for number in 0.0, -0.0, 1.5, -3.25e10, float("inf"), 1e-45:
            print("word", "float", order, number, "=", show(struct.pack(sign + "f", number)))
            print("word", "double", order, number, "=", show(struct.pack(sign + "d", number)))


def in_stream(data, bits):
    """The bits from the first byte to the last, of which only the last may have fewer than eight."""
    text = "".join(f"{byte:08b}" for byte in data[:-1]) + f"{data[-1]:08b}"[-((bits - 1) % 8 + 1):]
    return int(text, 2).to_bytes(len(data), "big")


def joined(data, bits):
    """Each byte joined with the low bits of the one in front, moved up; the first moved down."""
    rest = bits % 8
    following = bytes(byte | before << rest & 0xFF for before, byte in zip(data, data[1:]))
    return bytes([data[0] >> 8 - rest]) + following


def little_endian_bits():
    for bits in range(1, 65):
        length = (bits + 7) // 8
        number = random.getrandbits(bits)
        data = number.to_bytes(length, "little")
        if bits <= 16 or bits % 8 == 0:
            print("bits", bits, show(data), "=", show(in_stream(data, bits)))
            continue
        hollow = data[:1] + bytes(length - 2) + data[-1:]
        print("bits", bits, show(hollow), "=", show(in_stream(hollow, bits)))
        print("bits", bits, show(data), "=", show(joined(data, bits)))
    for length in 2, 5, 8:
        data = random.randbytes(length)
        for bits in 1, 7, 8:
            print("bits", bits, show(data), "=", show(bytes(length - 1) + data[:1]))
        for count in range(2, length):
            print("bits", 8 * count, show(data), "=", show(bytes(length - count) + data[:count]))
        print("bits", 8 * length + 8, show(data), "=", show(data))
        print("bits", 11, show(data), "=", show(joined(data, 11)))


def hexadecimal():
    for text in "aB", "00ff", "0123456789ABCDEF", "abcdefABCDEF", "9f" * 300:
        print("hex", text, "=", show(bytes.fromhex(text)))
    for text in "0G", "g0", "@1", "1`", "/1", "1:", "0x", "00fz", "-1":
        print("hex", text, "=", "none")
    for text in "a", "0G1", "123":
        print("hex", text, "=", "odd")


words()
little_endian_bits()
hexadecimal()
