#!/usr/bin/python3
"""Builds cursors, icons, the welcome picture and the toolbar strips from their SVG sources.

    build_artwork.py --source resources/artwork --output build/gnu/artwork
                     [--contact-sheet FILE] [--guide-images docs/images]

Writes NAME.cur, NAME.ico, welcome.bmp, Karvel_16i.bmp, Karvel_16a.bmp, Karvel_24i.bmp,
Karvel_24a.bmp and contact_sheet.png to the output directory. Needs Pillow (Debian package
python3-pil), rsvg-convert (librsvg2-bin) and the font DejaVu Sans (fonts-dejavu-core). The same
sources give the same bytes.

With --guide-images it also writes the pictures of the user guide, which are kept with its text:
gestures.png and cursor_NAME.png, twice as large as on screen.

A cursor's hot spot is the attribute data-hotspot="X,Y" of its svg element.
"""

import argparse
import base64
import io
import os
import subprocess
import sys
import tempfile
import xml.parsers.expat

from PIL import Image

import artwork_formats as formats

CURSORS = [
    # file, resource number, caption on the contact sheet
    ("select_control", 110, "Ctrl: deselect"),
    ("select_control_shift", 111, "Ctrl+Shift: add"),
    ("select_shift", 112, "Shift: toggle"),
    ("orbit", 115, "orbit"),
    ("pan", 117, "pan"),
    ("zoom", 118, "zoom"),
    ("refused", 120, "refused"),
    ("time_scrub", 135, "time scrub"),
]
CURSOR_SIZE = 32

ICONS = [
    ("options_page", 136, "options page"),
    ("application", 137, "application"),
    ("options_window", 503, "options window"),
]
ICON_SIZES = (16, 24, 32)

# The welcome window gives its picture 225 x 236 dialog units, 338 x 384 pixels in the dialog font
# at 96 dots an inch; two pixels of frame on every side come off.
WELCOME_SIZE = (334, 380)
WELCOME_COLOURS = 16

# In strip order: the first picture is number 1, as the host counts them.
TOOLBAR = [
    "01_next_key",
    "02_previous_key",
    "03_frame_all",
    "04_frame_selected",
    "05_reset_all_views",
    "06_selection_lock",
    "07_snap_to_points",
    "08_snap_to_curves",
    "09_snap_to_grids",
    "10_snap_angles",
    "11_nudge_up",
    "12_nudge_down",
    "13_nudge_left",
    "14_nudge_right",
    "15_maya_navigation",
    "16_options",
    "17_time_scrubber",
    "18_center_pivot",
]
# Height of the strip -> width of one picture. The small ones are 16 wide and 15 high; they are
# drawn 15 x 15 so that nothing is squeezed, with the spare column on the right.
TOOLBAR_STRIPS = ((16, 16, 15), (24, 24, 24))

FONT = "DejaVu Sans"


class ArtworkError(Exception):
    """One line for the person who edits the pictures: FILE:LINE: what, remedy."""


def say(path, line, what, remedy):
    return ArtworkError("%s:%d: %s, %s" % (path, line, what, remedy))


# --------------------------------------------------------------------------------------------
# Sources


def read_root(path):
    """Answers (line, attributes) of the svg element; the whole file is checked for being XML."""
    found = []

    parser = xml.parsers.expat.ParserCreate()

    def start(name, attributes):
        if not found:
            found.append((parser.CurrentLineNumber, name, attributes))

    parser.StartElementHandler = start
    try:
        with open(path, "rb") as source:
            parser.Parse(source.read(), True)
    except OSError as error:
        raise say(path, 0, "cannot be read (%s)" % error.strerror, "restore the picture") from None
    except xml.parsers.expat.ExpatError as error:
        raise say(path, error.lineno, "is not well-formed (%s)"
                  % xml.parsers.expat.errors.messages[error.code], "correct the markup") from None
    line, name, attributes = found[0]
    if name != "svg":
        raise say(path, line, "begins with <%s>" % name, "make <svg> the outermost element")
    return line, attributes


def check_view_box(path, width, height):
    line, attributes = read_root(path)
    expected = "0 0 %d %d" % (width, height)
    if attributes.get("viewBox") != expected:
        raise say(path, line, "viewBox is %r" % attributes.get("viewBox"),
                  "set it to \"%s\"" % expected)
    return line, attributes


def read_hot_spot(path):
    line, attributes = check_view_box(path, CURSOR_SIZE, CURSOR_SIZE)
    text = attributes.get("data-hotspot", "")
    try:
        x, y = (int(part) for part in text.split(","))
    except ValueError:
        raise say(path, line, "data-hotspot is %r" % text,
                  "set it to two whole numbers such as \"16,16\"") from None
    if not (0 <= x < CURSOR_SIZE and 0 <= y < CURSOR_SIZE):
        raise say(path, line, "hot spot %d,%d lies outside the picture" % (x, y),
                  "keep both numbers from 0 to %d" % (CURSOR_SIZE - 1))
    return x, y


def check_no_unlisted(directory, names):
    """A picture that no list names would be edited in vain."""
    for entry in sorted(os.listdir(directory)):
        if entry.endswith(".svg") and entry[:-4] not in names:
            raise say(os.path.join(directory, entry), 1, "is in no list of pictures",
                      "add it to its list in tools/artwork/build_artwork.py or remove it")


def check_font():
    try:
        family = subprocess.run(["fc-match", "-f", "%{family}", FONT], stdout=subprocess.PIPE,
                                check=True, text=True).stdout
    except (OSError, subprocess.CalledProcessError):
        raise ArtworkError("fc-match:0: cannot be run, install the package fontconfig") from None
    if FONT not in family.split(","):
        raise ArtworkError("fc-match:0: font %s is missing (%s would stand in), "
                           "install the package fonts-dejavu-core" % (FONT, family))


def render(path, width, height):
    command = ["rsvg-convert", "--width", str(width), "--height", str(height),
               "--format", "png", path]
    try:
        done = subprocess.run(command, stdout=subprocess.PIPE, stderr=subprocess.PIPE,
                              check=False)
    except OSError:
        raise ArtworkError("rsvg-convert:0: cannot be run, "
                           "install the package librsvg2-bin") from None
    if done.returncode != 0:
        reason = " ".join(done.stderr.decode("utf-8", "replace").split())
        raise say(path, 1, "was not rendered (%s)" % reason, "correct the drawing")
    image = Image.open(io.BytesIO(done.stdout)).convert("RGBA")
    if image.size != (width, height):
        raise say(path, 1, "rendered as %d x %d" % (image.width, image.height),
                  "give it the proportions %d x %d" % (width, height))
    return image


# --------------------------------------------------------------------------------------------
# Outputs


def write_file(path, data):
    """Replaces the file in one step, so that two builds at once never show half a picture."""
    handle, temporary = tempfile.mkstemp(dir=os.path.dirname(path) or ".")
    with os.fdopen(handle, "wb") as out:
        out.write(data)
    os.chmod(temporary, 0o644)
    os.replace(temporary, path)


def encode(image, kind, **options):
    """The bytes of a picture in one of Pillow's formats."""
    data = io.BytesIO()
    image.save(data, kind, **options)
    return data.getvalue()


def build_cursors(source, output):
    directory = os.path.join(source, "cursors")
    check_no_unlisted(directory, [name for name, _, _ in CURSORS])
    for name, _, _ in CURSORS:
        path = os.path.join(directory, name + ".svg")
        hot_x, hot_y = read_hot_spot(path)
        image = render(path, CURSOR_SIZE, CURSOR_SIZE)
        if image.getpixel((hot_x, hot_y))[3] == 0 and name.startswith("select"):
            raise say(path, read_root(path)[0], "the arrow's hot spot is on nothing drawn",
                      "move data-hotspot to the tip")
        write_file(os.path.join(output, name + ".cur"), formats.write_cur(image, hot_x, hot_y))


def build_icons(source, output):
    directory = os.path.join(source, "icons")
    check_no_unlisted(directory, [name for name, _, _ in ICONS])
    for name, _, _ in ICONS:
        path = os.path.join(directory, name + ".svg")
        check_view_box(path, 48, 48)
        images = [render(path, size, size) for size in ICON_SIZES]
        write_file(os.path.join(output, name + ".ico"), formats.write_ico(images))


def build_welcome(source, output):
    path = os.path.join(source, "welcome.svg")
    check_view_box(path, *WELCOME_SIZE)
    image = render(path, *WELCOME_SIZE)
    if image.getextrema()[3] != (255, 255):
        raise say(path, 1, "has transparent places", "let the background cover the whole picture")
    palette = formats.choose_palette(image, [(255, 255, 255)], WELCOME_COLOURS)
    write_file(os.path.join(output, "welcome.bmp"), formats.write_bmp4(image, palette))


def build_toolbar(source, output):
    directory = os.path.join(source, "toolbar")
    check_no_unlisted(directory, TOOLBAR)
    for name in TOOLBAR:
        check_view_box(os.path.join(directory, name + ".svg"), 24, 24)
    for label, width, height in TOOLBAR_STRIPS:
        strip = Image.new("RGBA", (width * len(TOOLBAR), height))
        for index, name in enumerate(TOOLBAR):
            strip.paste(render(os.path.join(directory, name + ".svg"), height, height),
                        (index * width, 0))
        # Colours and alphas apart; the colours stay as they are where something is half seen.
        for kind, picture in (("i", strip), ("a", strip.getchannel("A"))):
            write_file(os.path.join(output, "Karvel_%d%s.bmp" % (label, kind)),
                       encode(picture.convert("RGB"), "BMP", dpi=(0, 0)))


# --------------------------------------------------------------------------------------------
# Contact sheet: made from the finished files, so that it shows what ships


def read_file(path):
    with open(path, "rb") as source:
        return source.read()


class Sheet:
    def __init__(self, width):
        self.width = width
        self.parts = []

    def rectangle(self, x, y, width, height, fill):
        self.parts.append('<rect x="%g" y="%g" width="%g" height="%g" fill="%s"/>'
                          % (x, y, width, height, fill))

    def text(self, x, y, text, size=11, anchor="start", weight="normal"):
        self.parts.append(
            '<text x="%g" y="%g" font-size="%g" text-anchor="%s" font-weight="%s">%s</text>'
            % (x, y, size, anchor, weight, text))

    def image(self, x, y, image, scale=1):
        data = base64.b64encode(encode(image, "PNG")).decode("ascii")
        self.parts.append(
            '<image x="%g" y="%g" width="%g" height="%g" style="image-rendering:optimizeSpeed" '
            'href="data:image/png;base64,%s"/>'
            % (x, y, image.width * scale, image.height * scale, data))

    def cross(self, x, y):
        self.parts.append('<path d="M%g,%g h9 M%g,%g v9" stroke="#ff00c8" stroke-width="1"/>'
                          % (x - 4.5, y, x, y - 4.5))

    def svg(self, height):
        return ('<svg xmlns="http://www.w3.org/2000/svg" viewBox="0 0 %d %d" '
                'font-family="%s" fill="#20262c"><rect width="100%%" height="100%%" '
                'fill="#ffffff"/>%s</svg>'
                % (self.width, height, FONT, "".join(self.parts))).encode("utf-8")


DARK_VIEW = "#3a3d40"
MIDDLE_VIEW = "#7b7b7b"
LIGHT_VIEW = "#e8e8e8"


def sheet_cursors(sheet, output, top):
    sheet.text(16, top, "Cursors (32 x 32; hot spot marked on the enlarged ones)", 13,
               weight="bold")
    for index, (name, number, caption) in enumerate(CURSORS):
        image, hot_x, hot_y = formats.read_cur(read_file(os.path.join(output, name + ".cur")))
        x = 16 + index * 134
        y = top + 12
        for row, background in enumerate((DARK_VIEW, MIDDLE_VIEW, LIGHT_VIEW)):
            sheet.rectangle(x, y + row * 44, 126, 44, background)
            sheet.image(x + 47, y + 6 + row * 44, image)
        sheet.rectangle(x, y + 132, 63, 132, DARK_VIEW)
        sheet.rectangle(x + 63, y + 132, 63, 132, LIGHT_VIEW)
        sheet.image(x + 15, y + 150, image, 3)
        sheet.cross(x + 15 + hot_x * 3 + 1.5, y + 150 + hot_y * 3 + 1.5)
        sheet.text(x + 63, y + 280, "%d  %s" % (number, caption), 11, "middle")
        sheet.text(x + 63, y + 294, "hot spot %d,%d" % (hot_x, hot_y), 9, "middle")
    return top + 330


def sheet_icons(sheet, output, left, top):
    sheet.text(left, top, "Icons (16, 24, 32)", 13, weight="bold")
    for index, (name, number, caption) in enumerate(ICONS):
        y = top + 12 + index * 140
        for row, background in enumerate((LIGHT_VIEW, DARK_VIEW)):
            sheet.rectangle(left, y + row * 58, 230, 58, background)
            x = left + 12
            for size in ICON_SIZES:
                icon = Image.open(os.path.join(output, name + ".ico"))
                icon.size = (size, size)
                sheet.image(x, y + row * 58 + (58 - size) / 2, icon)
                x += size + 24
        sheet.text(left, y + 130, "%d  %s" % (number, caption))


def sheet_toolbar(sheet, output, left, top):
    sheet.text(left, top, "Toolbar strips (number in the strip; 24 x 24 and 16 x 15)", 13,
               weight="bold")
    strips = []
    for label, _, _ in TOOLBAR_STRIPS:
        strip = Image.open(os.path.join(output, "Karvel_%di.bmp" % label)).convert("RGB")
        strip.putalpha(Image.open(os.path.join(output, "Karvel_%da.bmp" % label)).convert("L"))
        strips.append(strip)
    for index, name in enumerate(TOOLBAR):
        x = left + (index % 3) * 146
        y = top + 12 + (index // 3) * 72
        little, big = (strip.crop((index * width, 0, (index + 1) * width, height))
                       for strip, (_, width, height) in zip(strips, TOOLBAR_STRIPS))
        for column, background in enumerate((LIGHT_VIEW, DARK_VIEW)):
            sheet.rectangle(x + column * 68, y, 68, 42, background)
            sheet.image(x + column * 68 + 8, y + 9, big)
            sheet.image(x + column * 68 + 42, y + 13, little)
        sheet.text(x, y + 56, name.replace("_", " "), 10)


def build_contact_sheet(output):
    sheet = Sheet(1096)
    top = sheet_cursors(sheet, output, 26)
    sheet.text(16, top, "Welcome picture (141)", 13, weight="bold")
    sheet.image(16, top + 12, Image.open(os.path.join(output, "welcome.bmp")))
    sheet_icons(sheet, output, 376, top)
    sheet_toolbar(sheet, output, 646, top)
    height = top + 12 + 440
    source = os.path.join(output, "contact_sheet.svg")
    write_file(source, sheet.svg(height))
    done = subprocess.run(["rsvg-convert", "--format", "png", "--width", str(sheet.width),
                           "--height", str(height), source],
                          stdout=subprocess.PIPE, stderr=subprocess.PIPE, check=False)
    os.remove(source)
    if done.returncode != 0:
        raise ArtworkError("%s:1: was not rendered (%s), report it" % (
            source, " ".join(done.stderr.decode("utf-8", "replace").split())))
    write_file(os.path.join(output, "contact_sheet.png"), done.stdout)
    return done.stdout


# --------------------------------------------------------------------------------------------
# User guide


def build_guide_images(source, directory):
    welcome = render(os.path.join(source, "welcome.svg"), *(2 * side for side in WELCOME_SIZE))
    write_file(os.path.join(directory, "gestures.png"), encode(welcome, "PNG"))
    for name, _, _ in CURSORS:
        path = os.path.join(source, "cursors", name + ".svg")
        image = render(path, 2 * CURSOR_SIZE, 2 * CURSOR_SIZE)
        write_file(os.path.join(directory, "cursor_%s.png" % name), encode(image, "PNG"))


def main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("--source", required=True, help="directory of the SVG files")
    parser.add_argument("--output", required=True, help="directory of the finished pictures")
    parser.add_argument("--contact-sheet", help="second place for contact_sheet.png")
    parser.add_argument("--guide-images", help="directory of the user guide's pictures")
    options = parser.parse_args()
    try:
        check_font()
        os.makedirs(options.output, exist_ok=True)
        build_cursors(options.source, options.output)
        build_icons(options.source, options.output)
        build_welcome(options.source, options.output)
        build_toolbar(options.source, options.output)
        picture = build_contact_sheet(options.output)
        if options.contact_sheet:
            os.makedirs(os.path.dirname(os.path.abspath(options.contact_sheet)), exist_ok=True)
            write_file(options.contact_sheet, picture)
        if options.guide_images:
            os.makedirs(options.guide_images, exist_ok=True)
            build_guide_images(options.source, options.guide_images)
    except ArtworkError as error:
        print(error, file=sys.stderr)
        return 1
    except OSError as error:
        print("%s:0: %s, check the directory's rights and free space"
              % (error.filename, error.strerror), file=sys.stderr)
        return 1
    return 0


if __name__ == "__main__":
    sys.exit(main())
