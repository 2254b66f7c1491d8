"""Writers of the picture formats that Pillow writes in no way that serves here.

Pillow knows no cursors, leaves the mask of old displays out of icons, and writes no bitmaps of 16
colours; its own choice of colours differs from version to version, and knows none that must be there.
A picture in memory is Pillow's, in mode RGBA.
"""

import struct

from PIL import Image

# Pixels with less alpha than this are left out of the 1-bit mask that old displays use.
MASK_THRESHOLD = 128
CUR_HEAD = 6 + 16


def _info_header(width, height, bits, size, colours=0):
    return struct.pack("<IiiHHIIiiII", 40, width, height, 1, bits, 0, size, 0, 0, colours, 0)


def _icon_bitmap(image):
    """32-bit colours with alpha, followed by the 1-bit mask; both bottom row first."""
    alpha = image.getchannel("A")
    shown = Image.new("RGBA", image.size)
    shown.paste(image, mask=alpha.point(lambda value: 255 if value else 0))
    hidden = alpha.point(lambda value: 255 if value < MASK_THRESHOLD else 0, "1")
    body = shown.tobytes("raw", "BGRA", 0, -1) + \
        hidden.tobytes("raw", "1", (image.width + 31) // 32 * 4, -1)
    return _info_header(image.width, image.height * 2, 32, len(body)) + body


def _directory(kind, entries):
    """`entries` are (width, height, word at 4, word at 6, bitmap) of a CUR or ICO file."""
    offset = 6 + 16 * len(entries)
    head = struct.pack("<HHH", 0, kind, len(entries))
    for width, height, first, second, body in entries:
        head += struct.pack("<BBBBHHII", width, height, 0, 0, first, second, len(body), offset)
        offset += len(body)
    return head + b"".join(entry[-1] for entry in entries)


def write_cur(image, hot_x, hot_y):
    return _directory(2, [(*image.size, hot_x, hot_y, _icon_bitmap(image))])


def read_cur(data):
    """Answers (image, hot x, hot y) of what write_cur wrote; Pillow would leave out the alpha."""
    size = (data[6], data[7])
    picture = data[CUR_HEAD + 40:][:4 * size[0] * size[1]]
    return Image.frombytes("RGBA", size, picture, "raw", "BGRA", 0, -1), \
        *struct.unpack_from("<HH", data, 10)


def write_ico(images):
    return _directory(1, [(*image.size, 1, 32, _icon_bitmap(image)) for image in images])


def write_bmp4(image, palette):
    """`palette`: 16 (red, green, blue) or fewer; every pixel takes the nearest of them."""
    nearest = {colour: min(range(len(palette)), key=lambda i: colour_distance(colour, palette[i]))
               for _, colour in image.getcolors(image.width * image.height)}
    numbers = Image.frombytes("P", image.size, bytes(nearest[each] for each in image.getdata()))
    pixels = numbers.tobytes("raw", "P;4", (image.width * 4 + 31) // 32 * 4, -1)
    table = b"".join(bytes((blue, green, red, 0)) for red, green, blue in palette)
    info = _info_header(*image.size, 4, len(pixels), len(palette))
    offset = 14 + len(info) + len(table)
    return struct.pack("<2sIHHI", b"BM", offset + len(pixels), 0, 0, offset) + info + table + pixels


# ---- palettes ------------------------------------------------------------------------------------


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
    histogram = {colour[:3]: number
                 for number, colour in image.getcolors(image.width * image.height)}
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
