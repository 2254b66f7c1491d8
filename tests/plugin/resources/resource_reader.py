"""Reads Windows resources out of a built DLL, independently of the tools that made them: pefile finds
them and reads texts and the version block, Pillow the bitmaps. Neither of them knows dialogs, menus,
and the groups of cursors and icons."""

import io
import struct

import pefile
from PIL import Image

CURSOR, BITMAP, ICON, MENU, DIALOG, STRING = 1, 2, 3, 4, 5, 6
ACCELERATOR, GROUP_CURSOR, GROUP_ICON, VERSION = 9, 12, 14, 16


def read_file(path):
    file = pefile.PE(path, fast_load=True)
    assert file.FILE_HEADER.Machine == 0x8664, "not for 64-bit Windows"
    file.parse_data_directories([pefile.DIRECTORY_ENTRY["IMAGE_DIRECTORY_ENTRY_RESOURCE"]])
    assert hasattr(file, "DIRECTORY_ENTRY_RESOURCE"), "no resources"
    return file


def read_resources(file):
    """Answers {(type, number): (language, bytes)}; names that are texts stay texts."""
    found = {}
    for kind in file.DIRECTORY_ENTRY_RESOURCE.entries:
        for name in kind.directory.entries:
            key = tuple(str(each.name) if each.id is None else each.id for each in (kind, name))
            assert len(name.directory.entries) == 1, "resource %r of type %r twice" % key[::-1]
            language, = name.directory.entries
            place = language.data.struct
            found[key] = (language.id, file.get_data(place.OffsetToData, place.Size))
    return found


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


def read_strings(file):
    """Answers {number: text}."""
    return {number: text for kind in file.DIRECTORY_ENTRY_RESOURCE.entries if kind.id == STRING
            for block in kind.directory.entries for number, text in block.directory.strings.items()}


class Pixels:
    """A 32-bit colour bitmap of a cursor or icon with its 1-bit mask, top row first."""

    def __init__(self, data):
        (header, self.width, double_height, planes, bits, compression) = \
            struct.unpack_from("<IiiHHI", data, 0)
        assert (header, planes, bits, compression) == (40, 1, 32, 0), "not 32 plain bits a pixel"
        self.height = double_height // 2
        size = (self.width, self.height)
        mask_stride = (self.width + 31) // 32 * 4
        mask = 40 + self.width * self.height * 4
        assert len(data) == mask + mask_stride * self.height, "bitmap of %d bytes" % len(data)
        self.rows = self.in_rows(Image.frombytes("RGBA", size, data[40:mask], "raw", "BGRA", 0, -1))
        mask_bits = Image.frombytes("1", size, data[mask:], "raw", "1", mask_stride, -1)
        self.masked = [list(map(bool, row)) for row in self.in_rows(mask_bits)]

    def in_rows(self, image):
        pixels = list(image.getdata())
        return [pixels[y * self.width:(y + 1) * self.width] for y in range(self.height)]

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


def read_palette_bitmap(data):
    """Answers ((width, height), colours, how many pixels each colour in use has) of an uncompressed
    bitmap of 256 colours or fewer."""
    image = Image.open(io.BytesIO(data))
    assert (image.format, image.mode, image.info["compression"]) == ("DIB", "P", 0), \
        "not a plain bitmap with a palette"
    flat = image.getpalette()
    palette = list(zip(flat[::3], flat[1::3], flat[2::3]))
    return image.size, palette, [number for number, _ in image.getcolors()]


def read_version(file):
    """Answers (fixed part, {name: text}, [translation], [string block])."""
    texts, translations, blocks = {}, [], []
    for info in file.FileInfo[0]:
        if info.Key == b"StringFileInfo":
            for table in info.StringTable:
                blocks.append(table.LangID.decode())
                texts.update((name.decode(), text.decode()) for name, text in table.entries.items())
        elif info.Key == b"VarFileInfo":
            translations += [var.entry[b"Translation"] for var in info.Var]
    return file.VS_FIXEDFILEINFO[0], texts, translations, blocks
