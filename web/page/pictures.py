"""PNG pictures as they travel best: stored, for the transfer compresses them better than they can
themselves, and each row as its difference from the one above where that is smaller. The same pixels."""

import itertools
import struct
import zlib

SIGNATURE = b"\x89PNG\r\n\x1a\n"
BYTES_PER_PIXEL = {0: 1, 2: 3, 4: 2, 6: 4}  # by colour type, of 8 bits each
AS_IT_IS, FROM_ABOVE = 0, 2
BLOCK = 5  # bytes of zlib's before the content of a stored block


def chunks(content):
    place = len(SIGNATURE)
    while place < len(content):
        (length,) = struct.unpack_from(">I", content, place)
        yield content[place + 4 : place + 8], content[place + 8 : place + 8 + length]
        place += 12 + length


def chunk(kind, content):
    return struct.pack(">I", len(content)) + kind + content + struct.pack(">I", zlib.crc32(kind + content))


def difference(row, above):
    return bytes((a - b) & 255 for a, b in zip(row, above))


def pixel_rows(content):
    """Width, height and the rows of a picture of four channels that is stored unfiltered."""
    parts = list(chunks(content))
    width, height, depth, colour, _, _, interlaced = struct.unpack(">IIBBBBB", parts[0][1])
    if depth != 8 or interlaced or colour != 6:
        return None
    raw = zlib.decompress(b"".join(text for kind, text in parts if kind == b"IDAT"))
    size = 4 * width + 1
    return [raw[place : place + size] for place in range(0, len(raw), size)]


def stored(rows):
    """A stream of zlib's that holds each row in a block of its own, so that a row is where it should be."""
    blocks = [
        bytes([number == len(rows) - 1]) + struct.pack("<HH", len(row), len(row) ^ 0xFFFF) + row
        for number, row in enumerate(rows)]
    return b"\x78\x01" + b"".join(blocks) + struct.pack(">I", zlib.adler32(b"".join(rows)))


def less_painted(content, painted):
    """What is sent of a picture that the page paints itself: the file less what is painted, and where
    its rows of pixels lie. None where the picture is of another kind or size."""
    rows = pixel_rows(content)
    if rows is None or any(row[0] != AS_IT_IS for row in rows):
        return None
    row = len(rows[0]) - 1
    if row * len(rows) != len(painted):
        return None
    kept = list(itertools.takewhile(lambda part: part[0] != b"IDAT", chunks(content)))
    head = SIGNATURE + b"".join(chunk(*part) for part in kept)
    first = len(head) + 8 + 2 + BLOCK + 1
    file = bytearray(head + chunk(b"IDAT", stored(rows)) + chunk(b"IEND", b""))
    for number in range(len(rows)):
        place = first + number * (row + BLOCK + 1)
        file[place : place + row] = difference(rows[number][1:], painted[number * row : (number + 1) * row])
    return bytes(file), {"first": first, "row": row, "stride": row + BLOCK + 1}


def repack(content):
    """The picture in its smaller form; as it was when it is of a kind that is not known here."""
    parts = list(chunks(content))
    width, height, depth, colour, _, _, interlaced = struct.unpack(">IIBBBBB", parts[0][1])
    if depth != 8 or interlaced or colour not in BYTES_PER_PIXEL:
        return content
    size = width * BYTES_PER_PIXEL[colour] + 1
    raw = zlib.decompress(b"".join(text for kind, text in parts if kind == b"IDAT"))
    rows = [raw[place : place + size] for place in range(0, len(raw), size)]
    if len(rows) != height or any(row[0] != AS_IT_IS for row in rows):
        return content
    above = [bytes(size - 1), *(row[1:] for row in rows[:-1])]
    differences = b"".join(
        bytes([FROM_ABOVE]) + difference(row[1:], other) for row, other in zip(rows, above))
    smaller = min(raw, differences, key=lambda form: len(zlib.compress(form, 6)))
    kept = [part for part in parts if part[0] not in (b"IDAT", b"IEND")]
    return SIGNATURE + b"".join(chunk(*part) for part in kept) + chunk(
        b"IDAT", zlib.compress(smaller, 0)) + chunk(b"IEND", b"")
