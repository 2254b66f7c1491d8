"""Reads Windows resources out of a .res file or a built DLL, byte by byte and independently of the
tools that made them."""

import struct

CURSOR, BITMAP, ICON, MENU, DIALOG, STRING = 1, 2, 3, 4, 5, 6
ACCELERATOR, GROUP_CURSOR, GROUP_ICON, VERSION = 9, 12, 14, 16


def read_resources(path):
    """Answers {(type, number): (language, bytes)}; names that are texts stay texts."""
    with open(path, "rb") as source:
        data = source.read()
    return read_dll(data) if data[:2] == b"MZ" else read_res(data)


class Reader:
    """A position in bytes; offsets count from where the structure began."""

    def __init__(self, data, position=0):
        self.data = data
        self.position = position

    def take(self, layout):
        values = struct.unpack_from("<" + layout, self.data, self.position)
        self.position += struct.calcsize("<" + layout)
        return values if len(values) > 1 else values[0]

    def align(self, size=4):
        self.position = (self.position + size - 1) // size * size

    def text(self):
        units = []
        while True:
            unit = self.take("H")
            if unit == 0:
                return b"".join(struct.pack("<H", u) for u in units).decode("utf-16-le")
            units.append(unit)

    def text_or_number(self):
        if struct.unpack_from("<H", self.data, self.position)[0] == 0xFFFF:
            return self.take("HH")[1]
        return self.text()


def read_res(data):
    found = {}
    reader = Reader(data)
    while reader.position + 8 <= len(data):
        start = reader.position
        data_size, header_size = reader.take("II")
        kind = reader.text_or_number()
        name = reader.text_or_number()
        reader.align()
        _, _, language, _, _ = reader.take("IHHII")
        body = data[start + header_size:start + header_size + data_size]
        if data_size:
            assert (kind, name) not in found, "resource %r of type %r twice" % (name, kind)
            found[(kind, name)] = (language, body)
        reader.position = start + header_size + data_size
        reader.align()
    return found


def read_dll(data):
    pe = struct.unpack_from("<I", data, 0x3C)[0]
    assert data[pe:pe + 4] == b"PE\0\0", "no PE header"
    machine, sections, _, _, _, optional_size, _ = struct.unpack_from("<HHIIIHH", data, pe + 4)
    assert machine == 0x8664, "not for 64-bit Windows"
    optional = pe + 24
    assert struct.unpack_from("<H", data, optional)[0] == 0x20B, "no 64-bit optional header"
    tree_address, _ = struct.unpack_from("<II", data, optional + 112 + 8 * 2)
    assert tree_address, "no resources"

    def offset_of(address):
        for i in range(sections):
            at = optional + optional_size + 40 * i
            size, start, raw_size, raw = struct.unpack_from("<IIII", data, at + 8)
            if start <= address < start + max(size, raw_size):
                return raw + address - start
        raise AssertionError("address %#x lies in no section" % address)

    root = offset_of(tree_address)

    def entries(directory):
        named, numbered = struct.unpack_from("<HH", data, root + directory + 12)
        for i in range(named + numbered):
            name, target = struct.unpack_from("<II", data, root + directory + 16 + 8 * i)
            if name & 0x80000000:
                at = root + (name & 0x7FFFFFFF)
                length = struct.unpack_from("<H", data, at)[0]
                name = data[at + 2:at + 2 + 2 * length].decode("utf-16-le")
            yield name, target & 0x7FFFFFFF

    found = {}
    for kind, names in entries(0):
        for name, languages in entries(names):
            for language, leaf in entries(languages):
                address, size = struct.unpack_from("<II", data, root + leaf)
                start = offset_of(address)
                assert (kind, name) not in found, "resource %r of type %r twice" % (name, kind)
                found[(kind, name)] = (language, data[start:start + size])
    return found


# Windows takes a control class by its number or, in any case of letters, by its name.
CLASS_NUMBERS = {"BUTTON": 0x80, "EDIT": 0x81, "STATIC": 0x82}


def read_dialog(data):
    reader = Reader(data)
    version, signature, _, extended, style, count = reader.take("HHIIIH")
    assert (version, signature) == (1, 0xFFFF), "not an extended dialog template"
    x, y, width, height = reader.take("hhhh")
    menu, window_class, caption = reader.text_or_number(), reader.text_or_number(), reader.text()
    points, weight, italic, _ = reader.take("HHBB")
    face = reader.text()
    controls = []
    for _ in range(count):
        reader.align()
        _, control_extended, control_style = reader.take("III")
        position = reader.take("hhhh")
        number = reader.take("i")
        control_class, title = reader.text_or_number(), reader.text_or_number()
        if isinstance(control_class, str):
            control_class = CLASS_NUMBERS.get(control_class.upper(), control_class)
        extra = reader.take("H")
        reader.position += extra
        controls.append((number, control_class, title, position, control_style, control_extended))
    return {"style": style, "extended": extended, "position": (x, y, width, height), "menu": menu,
            "class": window_class, "caption": caption, "font": (points, weight, italic, face),
            "controls": controls}


def read_menu(data):
    reader = Reader(data)
    version, offset = reader.take("HH")
    assert (version, offset) == (0, 0), "not a plain menu template"

    def items():
        found = []
        while True:
            flags = reader.take("H")
            if flags & 0x10:
                text = reader.text()
                found.append((text, items()))
            else:
                number = reader.take("H")
                found.append((reader.text(), number))
            if flags & ~(0x10 | 0x80):
                raise AssertionError("menu entry %r has state %#x" % (found[-1][0], flags))
            if flags & 0x80:
                return found

    return items()


def read_strings(resources):
    found = {}
    for (kind, block), (_, data) in resources.items():
        if kind != STRING:
            continue
        reader = Reader(data)
        for i in range(16):
            length = reader.take("H")
            if length:
                text = reader.data[reader.position:reader.position + 2 * length]
                reader.position += 2 * length
                found[(block - 1) * 16 + i] = text.decode("utf-16-le")
    return found


class Pixels:
    """A 32-bit colour bitmap of a cursor or icon with its 1-bit mask, top row first."""

    def __init__(self, data):
        (header, self.width, double_height, planes, bits, compression) = \
            struct.unpack_from("<IiiHHI", data, 0)
        assert (header, planes, bits, compression) == (40, 1, 32, 0), "not 32 plain bits a pixel"
        self.height = double_height // 2
        mask_stride = (self.width + 31) // 32 * 4
        mask = 40 + self.width * self.height * 4
        assert len(data) == mask + mask_stride * self.height, "bitmap of %d bytes" % len(data)
        self.rows = []
        self.masked = []
        for y in reversed(range(self.height)):
            row = []
            hidden = []
            for x in range(self.width):
                blue, green, red, alpha = data[40 + (y * self.width + x) * 4:][:4]
                row.append((red, green, blue, alpha))
                byte = data[mask + y * mask_stride + x // 8]
                hidden.append(bool(byte & (0x80 >> x % 8)))
            self.rows.append(row)
            self.masked.append(hidden)

    def visible(self):
        return [pixel for row in self.rows for pixel in row if pixel[3] >= 128]


def read_cursor(resources, number):
    """Answers [(hot x, hot y, pixels)] of a cursor group."""
    _, group = resources[(GROUP_CURSOR, number)]
    reserved, kind, count = struct.unpack_from("<HHH", group, 0)
    assert (reserved, kind) == (0, 2), "not a cursor group"
    found = []
    for i in range(count):
        width, height, _, _, size, member = struct.unpack_from("<HHHHIH", group, 6 + 14 * i)
        _, data = resources[(CURSOR, member)]
        assert len(data) == size, "cursor %d: group says %d bytes, is %d" % (
            number, size, len(data))
        hot_x, hot_y = struct.unpack_from("<HH", data, 0)
        pixels = Pixels(data[4:])
        assert (width, height) == (pixels.width, pixels.height * 2), "cursor group's size"
        found.append((hot_x, hot_y, pixels))
    return found


def read_icon(resources, number):
    """Answers the pictures of an icon group."""
    _, group = resources[(GROUP_ICON, number)]
    reserved, kind, count = struct.unpack_from("<HHH", group, 0)
    assert (reserved, kind) == (0, 1), "not an icon group"
    found = []
    for i in range(count):
        width, height, _, _, _, bits, size, member = \
            struct.unpack_from("<BBBBHHIH", group, 6 + 14 * i)
        _, data = resources[(ICON, member)]
        assert len(data) == size and bits == 32, "icon %d, picture %d" % (number, i)
        pixels = Pixels(data)
        assert (width, height) == (pixels.width, pixels.height), "icon group's size"
        found.append(pixels)
    return found


def read_palette_bitmap(data, offset_of_header=0):
    """Answers (width, height, bits, colours, {palette index: pixels}) of an uncompressed bitmap."""
    at = offset_of_header
    header, width, height, planes, bits, compression, _, _, _, used, _ = \
        struct.unpack_from("<IiiHHIIiiII", data, at)
    assert (header, planes, compression) == (40, 1, 0), "not a plain bitmap"
    colours = used or 1 << bits
    palette = [tuple(data[at + 40 + 4 * i:][:3][::-1]) for i in range(colours)]
    stride = (width * bits + 31) // 32 * 4
    start = at + 40 + 4 * colours
    assert len(data) == start + stride * height, "bitmap of %d bytes" % len(data)
    counts = {}
    for y in range(height):
        for x in range(width):
            byte = data[start + y * stride + x * bits // 8]
            index = byte if bits == 8 else (byte >> 4 if x % 2 == 0 else byte & 15)
            counts[index] = counts.get(index, 0) + 1
    return width, height, bits, palette, counts


def read_version(data):
    """Answers (fixed part as 13 numbers, {name: text}, [(language, code page)], string block)."""

    def node(reader):
        start = reader.position
        length, value_length, text_value = reader.take("HHH")
        key = reader.text()
        reader.align()
        value = reader.data[reader.position:
                            reader.position + value_length * (2 if text_value else 1)]
        reader.position += len(value)
        children = []
        while True:
            reader.align()
            if reader.position >= start + length:
                break
            children.append(node(reader))
        reader.position = start + length
        return key, value, children

    key, fixed, children = node(Reader(data))
    assert key == "VS_VERSION_INFO", key
    texts = {}
    translations = []
    block = None
    for name, _, parts in children:
        if name == "StringFileInfo":
            (block, _, strings), = parts
            for string_name, value, _ in strings:
                texts[string_name] = value.decode("utf-16-le").rstrip("\0")
        elif name == "VarFileInfo":
            for _, value, _ in parts:
                translations += [struct.unpack_from("<HH", value, i)
                                 for i in range(0, len(value), 4)]
    return struct.unpack("<13I", fixed), texts, translations, block
