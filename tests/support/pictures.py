"""Pictures of tests: reading and writing PNG, and comparing with a golden one."""

import struct
import zlib

SIGNATURE = b"\x89PNG\r\n\x1a\n"


def read_png(path):
    """Width, height and RGB bytes. Knows the one kind that the command writes."""
    data = path.read_bytes()
    if data[:8] != SIGNATURE:
        raise ValueError(f"{path} is no PNG")
    at, packed = 8, b""
    while at < len(data):
        size, kind = struct.unpack(">I4s", data[at:at + 8])
        body = data[at + 8:at + 8 + size]
        if kind == b"IHDR":
            width, height, depth, color, _, _, interlace = struct.unpack(">IIBBBBB", body)
            if (depth, color, interlace) != (8, 2, 0):
                raise ValueError(f"{path} is not plain 8-bit RGB")
        elif kind == b"IDAT":
            packed += body
        at += 12 + size
    return width, height, unfilter(zlib.decompress(packed), width * 3, height)


def unfilter(raw, row_size, height):
    out, above = bytearray(), bytearray(row_size)
    for y in range(height):
        start = y * (row_size + 1)
        kind, row = raw[start], bytearray(raw[start + 1:start + 1 + row_size])
        for i in range(row_size):
            left = row[i - 3] if i >= 3 else 0
            corner = above[i - 3] if i >= 3 else 0
            row[i] = (row[i] + predict(kind, left, above[i], corner)) & 255
        out += row
        above = row
    return bytes(out)


def predict(kind, left, up, corner):
    if kind == 4:
        guess = left + up - corner
        return min((abs(guess - v), i, v) for i, v in enumerate((left, up, corner)))[2]
    return (0, left, up, (left + up) // 2)[kind]


def write_png(path, width, height, rgb):
    def chunk(kind, body):
        return struct.pack(">I", len(body)) + kind + body + struct.pack(
            ">I", zlib.crc32(kind + body))
    rows = b"".join(b"\0" + rgb[y * width * 3:(y + 1) * width * 3] for y in range(height))
    header = struct.pack(">IIBBBBB", width, height, 8, 2, 0, 0, 0)
    path.write_bytes(SIGNATURE + chunk(b"IHDR", header) +
                     chunk(b"IDAT", zlib.compress(rows, 9)) + chunk(b"IEND", b""))


def compare(actual, golden, difference):
    """What is wrong, or None. Writes the difference picture if sizes agree."""
    if actual.read_bytes() == golden.read_bytes():
        return None
    width, height, have = read_png(actual)
    golden_width, golden_height, want = read_png(golden)
    if (width, height) != (golden_width, golden_height):
        return f"is {width}x{height}, expected {golden_width}x{golden_height}"
    if have == want:
        return None
    wrong, picture = [], bytearray()
    for i in range(0, len(want), 3):
        if have[i:i + 3] == want[i:i + 3]:
            picture += bytes(192 + v // 4 for v in want[i:i + 3])
        else:
            # The darker, the further off.
            off = max(abs(a - b) for a, b in zip(have[i:i + 3], want[i:i + 3]))
            picture += bytes((220 - off // 2, 0, 0))
            wrong.append(i // 3)
    write_png(difference, width, height, bytes(picture))
    first = wrong[0]
    have, want = (tuple(p[first * 3:first * 3 + 3]) for p in (have, want))
    return (f"{len(wrong)} pixels differ, the first at x {first % width}, y {first // width}: "
            f"{have}, expected {want}")
