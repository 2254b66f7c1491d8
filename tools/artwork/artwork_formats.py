"""Readers and writers of the picture formats that the artwork build deals in.

A picture in memory is an `Image`: rows of straight (not premultiplied) RGBA bytes, top row first.
PNG is what the SVG renderer answers; CUR, ICO and BMP are what the resource compiler and the host
read. Only the standard library is used, so that the build needs no imaging package.
"""

import struct
import zlib

PNG_SIGNATURE = b"\x89PNG\r\n\x1a\n"

# Pixels with less alpha than this are left out of the 1-bit mask that old displays use.
MASK_THRESHOLD = 128


class FormatError(Exception):
    """A file does not hold the picture that was expected in it."""


class Image:
    def __init__(self, width, height, pixels=None):
        self.width = width
        self.height = height
        self.pixels = bytearray(width * height * 4) if pixels is None else bytearray(pixels)
        if len(self.pixels) != width * height * 4:
            raise FormatError("%d bytes of pixels for %d x %d" % (len(self.pixels), width, height))

    def at(self, x, y):
        start = (y * self.width + x) * 4
        return tuple(self.pixels[start:start + 4])

    def put(self, x, y, colour):
        start = (y * self.width + x) * 4
        self.pixels[start:start + 4] = bytes(colour)

    def paste(self, other, left, top):
        for y in range(other.height):
            source = y * other.width * 4
            target = ((top + y) * self.width + left) * 4
            self.pixels[target:target + other.width * 4] = \
                other.pixels[source:source + other.width * 4]


# --------------------------------------------------------------------------------------------
# PNG


def _paeth(left, above, corner):
    estimate = left + above - corner
    distances = (abs(estimate - left), abs(estimate - above), abs(estimate - corner))
    return (left, above, corner)[distances.index(min(distances))]


def _unfilter(data, width, height, channels):
    stride = width * channels
    rows = []
    previous = bytearray(stride)
    position = 0
    for _ in range(height):
        kind = data[position]
        row = bytearray(data[position + 1:position + 1 + stride])
        position += 1 + stride
        for i in range(stride):
            left = row[i - channels] if i >= channels else 0
            above = previous[i]
            corner = previous[i - channels] if i >= channels else 0
            if kind == 1:
                row[i] = (row[i] + left) & 255
            elif kind == 2:
                row[i] = (row[i] + above) & 255
            elif kind == 3:
                row[i] = (row[i] + (left + above) // 2) & 255
            elif kind == 4:
                row[i] = (row[i] + _paeth(left, above, corner)) & 255
        rows.append(row)
        previous = row
    return rows


def read_png(data):
    """Reads an 8-bit RGB or RGBA PNG without interlacing, which is what the renderer writes."""
    if not data.startswith(PNG_SIGNATURE):
        raise FormatError("not a PNG")
    position = len(PNG_SIGNATURE)
    compressed = b""
    header = None
    while position < len(data):
        length, kind = struct.unpack_from(">I4s", data, position)
        body = data[position + 8:position + 8 + length]
        if kind == b"IHDR":
            header = struct.unpack(">IIBBBBB", body)
        elif kind == b"IDAT":
            compressed += body
        position += 12 + length
    if header is None:
        raise FormatError("PNG without a header")
    width, height, depth, colour, _, _, interlace = header
    if depth != 8 or colour not in (2, 6) or interlace:
        raise FormatError("PNG of a kind that is not read here")
    channels = 4 if colour == 6 else 3
    rows = _unfilter(zlib.decompress(compressed), width, height, channels)
    image = Image(width, height)
    for y, row in enumerate(rows):
        for x in range(width):
            pixel = row[x * channels:(x + 1) * channels]
            image.put(x, y, pixel if channels == 4 else bytes(pixel) + b"\xff")
    return image


def write_png(image):
    stride = image.width * 4
    raw = b"".join(b"\0" + bytes(image.pixels[y * stride:(y + 1) * stride])
                   for y in range(image.height))

    def chunk(kind, body):
        return struct.pack(">I", len(body)) + kind + body + \
            struct.pack(">I", zlib.crc32(kind + body))

    header = struct.pack(">IIBBBBB", image.width, image.height, 8, 6, 0, 0, 0)
    return PNG_SIGNATURE + chunk(b"IHDR", header) + chunk(b"IDAT", zlib.compress(raw, 9)) + \
        chunk(b"IEND", b"")


# --------------------------------------------------------------------------------------------
# Device-independent bitmaps, the common core of BMP, ICO and CUR


def _info_header(width, height, bits, size, colours=0):
    return struct.pack("<IiiHHIIiiII", 40, width, height, 1, bits, 0, size, 0, 0, colours, 0)


def _icon_bitmap(image):
    """32-bit colours with alpha, followed by the 1-bit mask; both bottom row first."""
    colours = bytearray()
    mask = bytearray()
    mask_stride = (image.width + 31) // 32 * 4
    for y in reversed(range(image.height)):
        bits = bytearray(mask_stride)
        for x in range(image.width):
            red, green, blue, alpha = image.at(x, y)
            if alpha == 0:
                red = green = blue = 0
            colours += bytes((blue, green, red, alpha))
            if alpha < MASK_THRESHOLD:
                bits[x // 8] |= 0x80 >> (x % 8)
        mask += bits
    size = len(colours) + len(mask)
    return _info_header(image.width, image.height * 2, 32, size) + bytes(colours) + bytes(mask)


def _read_icon_bitmap(data):
    _, width, double_height, _, bits = struct.unpack_from("<IiiHH", data, 0)
    if bits != 32:
        raise FormatError("%d bits a pixel where 32 are expected" % bits)
    height = double_height // 2
    image = Image(width, height)
    position = 40
    for y in reversed(range(height)):
        for x in range(width):
            blue, green, red, alpha = data[position:position + 4]
            image.put(x, y, (red, green, blue, alpha))
            position += 4
    return image


def _directory(kind, entries):
    """`entries` are (width, height, word at 4, word at 6, bitmap) of a CUR or ICO file."""
    offset = 6 + 16 * len(entries)
    head = struct.pack("<HHH", 0, kind, len(entries))
    bodies = b""
    for width, height, first, second, body in entries:
        head += struct.pack("<BBBBHHII", width, height, 0, 0, first, second, len(body), offset)
        offset += len(body)
        bodies += body
    return head + bodies


def write_cur(image, hot_x, hot_y):
    return _directory(2, [(image.width, image.height, hot_x, hot_y, _icon_bitmap(image))])


def write_ico(images):
    return _directory(1, [(i.width, i.height, 1, 32, _icon_bitmap(i)) for i in images])


def read_directory(data):
    """Answers [(image, word at 4, word at 6)] of a CUR (words: hot spot) or ICO file."""
    _, kind, count = struct.unpack_from("<HHH", data, 0)
    if kind not in (1, 2):
        raise FormatError("neither a cursor nor an icon")
    found = []
    for i in range(count):
        _, _, _, _, first, second, size, offset = \
            struct.unpack_from("<BBBBHHII", data, 6 + 16 * i)
        found.append((_read_icon_bitmap(data[offset:offset + size]), first, second))
    return found


def _bitmap_file(info, palette, pixels):
    offset = 14 + len(info) + len(palette)
    size = offset + len(pixels)
    return struct.pack("<2sIHHI", b"BM", size, 0, 0, offset) + info + palette + pixels


def write_bmp24(image):
    """Colours only; alpha is dropped, not blended."""
    stride = (image.width * 3 + 3) // 4 * 4
    pixels = bytearray()
    for y in reversed(range(image.height)):
        row = bytearray()
        for x in range(image.width):
            red, green, blue, _ = image.at(x, y)
            row += bytes((blue, green, red))
        pixels += row.ljust(stride, b"\0")
    return _bitmap_file(_info_header(image.width, image.height, 24, len(pixels)), b"",
                        bytes(pixels))


def write_bmp4(image, palette):
    """`palette`: at most 16 (red, green, blue); every pixel takes the nearest of them."""
    if len(palette) > 16:
        raise FormatError("%d colours in a palette of 16" % len(palette))
    nearest = {}
    stride = ((image.width + 1) // 2 + 3) // 4 * 4
    pixels = bytearray()
    for y in reversed(range(image.height)):
        row = bytearray(stride)
        for x in range(image.width):
            colour = image.at(x, y)[:3]
            if colour not in nearest:
                nearest[colour] = min(range(len(palette)),
                                      key=lambda i: colour_distance(colour, palette[i]))
            row[x // 2] |= nearest[colour] << (4 if x % 2 == 0 else 0)
        pixels += row
    table = b"".join(bytes((blue, green, red, 0)) for red, green, blue in palette)
    info = _info_header(image.width, image.height, 4, len(pixels), len(palette))
    return _bitmap_file(info, table, bytes(pixels))


def read_bmp(data):
    if data[:2] != b"BM":
        raise FormatError("not a BMP")
    offset = struct.unpack_from("<I", data, 10)[0]
    header_size, width, height, _, bits, compression = struct.unpack_from("<IiiHHI", data, 14)
    if compression != 0 or bits not in (4, 24):
        raise FormatError("BMP of a kind that is not read here")
    stride = (width * bits + 31) // 32 * 4
    palette = 14 + header_size
    image = Image(width, height)
    for y in range(height):
        row = offset + (height - 1 - y) * stride
        for x in range(width):
            if bits == 24:
                at = row + x * 3
            else:
                pair = data[row + x // 2]
                at = palette + 4 * (pair >> 4 if x % 2 == 0 else pair & 15)
            blue, green, red = data[at:at + 3]
            image.put(x, y, (red, green, blue, 255))
    return image


# --------------------------------------------------------------------------------------------
# Palettes


def colour_distance(one, other):
    """Squared distance, weighted by how much the eye notices each channel."""
    return 3 * (one[0] - other[0]) ** 2 + 4 * (one[1] - other[1]) ** 2 + \
        2 * (one[2] - other[2]) ** 2


def choose_palette(image, fixed, count):
    """`fixed` colours, filled up to `count` with the ones that spare the largest error.

    Each added colour is the picture's own colour whose pixels are worst served so far (number of
    pixels times distance); a few rounds of averaging then settle the added ones. Everything is in a
    fixed order, so the same picture always gives the same palette.
    """
    histogram = {}
    for i in range(0, len(image.pixels), 4):
        colour = tuple(image.pixels[i:i + 3])
        histogram[colour] = histogram.get(colour, 0) + 1
    colours = sorted(histogram)
    palette = list(fixed)
    cost = {c: min(colour_distance(c, p) for p in palette) for c in colours}
    while len(palette) < count:
        worst = max(colours, key=lambda c: (cost[c] * histogram[c], c))
        if cost[worst] == 0:
            break
        palette.append(worst)
        for c in colours:
            cost[c] = min(cost[c], colour_distance(c, worst))
    for _ in range(8):
        sums = [[0, 0, 0, 0] for _ in palette]
        for c in colours:
            i = min(range(len(palette)), key=lambda k: colour_distance(c, palette[k]))
            for channel in range(3):
                sums[i][channel] += c[channel] * histogram[c]
            sums[i][3] += histogram[c]
        for i in range(len(fixed), len(palette)):
            if sums[i][3]:
                palette[i] = tuple((sums[i][k] + sums[i][3] // 2) // sums[i][3] for k in range(3))
    return palette
