#!/usr/bin/env python3
"""The pictures that the player writes, read by what shares nothing with their writer.

    png_test.py PNG_PROBE
"""

import pathlib
import struct
import subprocess
import sys
import tempfile
import unittest
import zlib

PROBE = None


def chunks_of(data):
    assert data[:8] == b"\x89PNG\r\n\x1a\n"
    at = 8
    while at < len(data):
        length, kind = struct.unpack_from(">I4s", data, at)
        content = data[at + 8:at + 8 + length]
        assert struct.unpack_from(">I", data, at + 8 + length)[0] == zlib.crc32(kind + content)
        yield kind, content
        at += 12 + length


def pixels_of(data):
    """(width, height, bytes of the rows) of a picture with 8-bit RGB pixels."""
    chunks = list(chunks_of(data))
    kinds = [kind for kind, _ in chunks]
    assert kinds[0] == b"IHDR" and kinds[-1] == b"IEND" and kinds.count(b"IHDR") == 1
    width, height, *form = struct.unpack(">IIBBBBB", chunks[0][1])
    assert form == [8, 2, 0, 0, 0], form
    stream = zlib.decompress(b"".join(content for kind, content in chunks if kind == b"IDAT"))
    row = 3 * width
    assert len(stream) == (row + 1) * height
    result, above = bytearray(), bytes(row)
    for begin in range(0, len(stream), row + 1):
        kind, line = stream[begin], bytearray(stream[begin + 1:begin + 1 + row])
        for i in range(row):
            left = line[i - 3] if i >= 3 else 0
            corner = above[i - 3] if i >= 3 else 0
            guess = left + above[i] - corner
            paeth = min((left, above[i], corner), key=lambda value: abs(guess - value))
            line[i] = (line[i] + (0, left, above[i], (left + above[i]) // 2, paeth)[kind]) & 255
        result += line
        above = bytes(line)
    return width, height, bytes(result)


class Png(unittest.TestCase):
    def test_pixels_come_back(self):
        for width, height in ((1, 1), (3, 5), (257, 40), (320, 200)):
            with tempfile.TemporaryDirectory() as folder:
                file = pathlib.Path(folder) / "picture.png"
                subprocess.run([PROBE, str(file), str(width), str(height)], check=True)
                read = pixels_of(file.read_bytes())
            expected = bytes(part & 255 for y in range(height) for x in range(width)
                             for part in (x * 7 + y * 3, x ^ y, 200 if x < width // 2 else x * y))
            self.assertEqual((width, height), read[:2])
            self.assertEqual(expected, read[2])


if __name__ == "__main__":
    if len(sys.argv) < 2:
        sys.exit(__doc__.strip())
    PROBE = sys.argv.pop(1)
    unittest.main()
