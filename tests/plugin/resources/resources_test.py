#!/usr/bin/env python3
"""Holds the compiled resources against what they are to be, number by number.

    resources_test.py FILE --version 1.5.0 --artwork DIRECTORY [--largest-file BYTES]

FILE is KarvelMax.gup; DIRECTORY holds the toolbar strips.
"""

import argparse
import itertools
import os
import sys
import unittest

import pefile
from PIL import Image

import resource_reader as reading

OPTIONS = None
FILE = None
RESOURCES = {}

ENGLISH_US = 0x409

# Window styles by the names and values of the Windows interface.
WS_POPUP, WS_CHILD, WS_VISIBLE, WS_DISABLED = 0x80000000, 0x40000000, 0x10000000, 0x08000000
WS_CAPTION, WS_BORDER, WS_SYSMENU = 0x00C00000, 0x00800000, 0x00080000
WS_GROUP, WS_TABSTOP, WS_EX_STATICEDGE = 0x00020000, 0x00010000, 0x00020000
DS_SETFONT, DS_MODALFRAME = 0x40, 0x80
BS_DEFPUSHBUTTON, BS_AUTOCHECKBOX, BS_GROUPBOX = 1, 3, 7
SS_CENTER, SS_BITMAP = 1, 14
BUTTON, STATIC = 0x80, 0x82

CHECK_BOX = (BUTTON, WS_CHILD | WS_VISIBLE | WS_TABSTOP | BS_AUTOCHECKBOX, 0)
GROUP_BOX = (BUTTON, WS_CHILD | WS_VISIBLE | BS_GROUPBOX, 0)
DEFAULT_BUTTON = (BUTTON, WS_CHILD | WS_VISIBLE | WS_TABSTOP | BS_DEFPUSHBUTTON, 0)
CENTRED_TEXT = (STATIC, WS_CHILD | WS_VISIBLE | WS_GROUP | SS_CENTER, 0)
PICTURE = (STATIC, WS_CHILD | WS_VISIBLE | WS_BORDER | SS_BITMAP, WS_EX_STATICEDGE)

# Controls in tab order.
OPTIONS_PAGE_SIZE = (212, 203)
OPTIONS_PAGE = [
    (1026, GROUP_BOX, "Maya Style Navigation", (7, 7, 198, 177)),
    (1015, CHECK_BOX, "Active", (18, 18, 155, 10)),
    (1023, GROUP_BOX, "Zoom (Dolly)", (12, 28, 188, 38)),
    (1007, CHECK_BOX, "Use Alt + Right Mouse Button for Zooming", (18, 40, 155, 10)),
    (1005, CHECK_BOX, "Enable Slow Zooming", (18, 50, 155, 10)),
    (1024, GROUP_BOX, "Arc Rotate (Tumble)", (12, 69, 188, 48)),
    (1011, CHECK_BOX, "Use Alt + Left Mouse Button for Arc Rotate", (18, 80, 155, 10)),
    (1009, CHECK_BOX, "Lock Arc Rotate In Orthographic Views", (18, 90, 155, 10)),
    (1014, CHECK_BOX, "Lock Arc Rotate In User Views", (18, 100, 155, 8)),
    (1025, GROUP_BOX, "Misc", (12, 121, 188, 58)),
    (1010, CHECK_BOX, "AutoFocus Viewport on Key Press", (18, 187, 155, 10)),
    (1004, CHECK_BOX, "Middle Mouse Button for Quick Transforms", (18, 142, 155, 10)),
    (1012, CHECK_BOX, "Use Custom Selection Cursor Icons", (18, 132, 155, 10)),
    (1027, CHECK_BOX, "Hide Transform Gizmo during Quick Transforms", (29, 153, 162, 10)),
    (1006, CHECK_BOX, "Use Shift + MMB for Cloning and Edge Extrusion", (18, 163, 167, 10)),
]

WELCOME = [
    (1, DEFAULT_BUTTON, "&Get Started!", (93, 28, 68, 16)),
    (-1, CENTRED_TEXT, "Thank you for installing Flinder for 3ds Max!", (7, 7, 241, 8)),
    (-1, PICTURE, 141, (15, 82, 225, 236)),
    (2, DEFAULT_BUTTON, "&Watch Videos", (93, 356, 68, 16)),
    (-1, CENTRED_TEXT, "Use the Customize UI dialog to quickly enable or disable Flinder.",
     (22, 69, 211, 13)),
    (-1, CENTRED_TEXT, "Check out the demo videos on our website to learn more about using Flinder "
                       "for 3ds Max.", (17, 334, 222, 18)),
    (-1, GROUP_BOX, "", (7, 61, 241, 264)),
    (-1, GROUP_BOX, "", (7, 327, 241, 52)),
    (1032, CHECK_BOX, "&Do not show at startup", (85, 48, 85, 12)),
    (-1, CENTRED_TEXT, "The Maya control scheme is enabled for you automatically by default.",
     (7, 16, 241, 10)),
]

MENU = [
    ("&Edit", [("Revert to &Defaults", 40003), ("Revert to &Saved", 40004)]),
    ("&Help", [("Using Flinder", 40013), ("&About", 40006)]),
]

STRINGS = {
    2: "Options...",
    3: "Isolated Playback Mode (Toggle) (shift+click to create selection set)",
    4: "Karvel",
    5: "Pixel Nudge Up",
    6: "N/A (Sticky)",
    7: "Selection Lock (Sticky)",
    8: "Snap to Points (Sticky)",
    9: "Snap to Grids (Sticky)",
    10: "Snap to Curves (Sticky)",
    11: "Show Options (Toggle)",
    12: "Snap Angles (Sticky)",
    13: "Time Scrubber (Sticky)",
    14: "Maya Style Navigation (Toggle)",
    15: "Pixel Nudge Down",
    16: "Pixel Nudge Left",
    17: "Pixel Nudge Right",
    18: "Center Pivot",
    19: "Frame Selected",
    20: "Frame All",
    21: "Go To Previous Key",
    22: "Go To Next Key",
    23: "Reset All Views",
    26: "About...",
    27: "About",
    124: "Enable Maya Style Navigation",
    127: "Iso Playback",
    128: "Create Iso Set",
    143: "Help Using Flinder",
    144: "Help Using Flinder...",
}

# The arrows act at their tips, the others at the middle of what they show.
CURSORS = {
    110: (2, 2),
    111: (2, 2),
    112: (2, 2),
    115: (16, 16),
    117: (16, 16),
    118: (12, 12),
    120: (16, 16),
    135: (16, 10),
}

ICONS = (136, 137, 503)

# By their number in the strip; the first one is 1.
FRAME_ALL, FRAME_SELECTED = 3, 4


def luminance(pixel):
    return (299 * pixel[0] + 587 * pixel[1] + 114 * pixel[2]) / 1000


class Inventory(unittest.TestCase):
    def test_there_is_what_is_needed_and_nothing_else(self):
        kinds = {}
        for kind, name in RESOURCES:
            kinds.setdefault(kind, set()).add(name)
        members = (reading.CURSOR, reading.ICON, reading.STRING)
        self.assertEqual({kind: names for kind, names in kinds.items() if kind not in members}, {
            reading.DIALOG: {107, 139},
            reading.MENU: {122},
            reading.GROUP_CURSOR: set(CURSORS),
            reading.GROUP_ICON: set(ICONS),
            reading.BITMAP: {141},
            reading.VERSION: {1},
        })

    def test_no_accelerator_table(self):
        # The commands come without default keys.
        self.assertEqual([name for kind, name in RESOURCES if kind == reading.ACCELERATOR], [])

    def test_everything_is_english(self):
        self.assertEqual({language for language, _ in RESOURCES.values()}, {ENGLISH_US})

    def test_resources_stay_small(self):
        # They take their share of the 250 KB that the whole plug-in may have.
        self.assertLess(sum(len(data) for _, data in RESOURCES.values()), 165000)


class Dialogs(unittest.TestCase):
    def check(self, number, style, place, size, caption, controls):
        dialog = reading.read_dialog(RESOURCES[(reading.DIALOG, number)][1])
        self.assertEqual(hex(dialog["style"]), hex(style))
        self.assertEqual(dialog["extended"], 0)
        self.assertEqual(dialog["position"], place + size,
                         "place and size of \"%s\" in resources/karvel.rc and in "
                         "tests/plugin/resources/resources_test.py" % caption)
        self.assertEqual(dialog["caption"], caption)
        self.assertEqual(dialog["font"], (8, 400, 0, "MS Shell Dlg"))
        self.assertEqual((dialog["menu"], dialog["class"]), ("", ""))
        found = [(number, (window_class, style, extended), title, position)
                 for number, window_class, title, position, style, extended in dialog["controls"]]
        for index, (one, other) in enumerate(itertools.zip_longest(found, controls)):
            if one != other:
                self.fail("%s: control %d in tab order is %s in resources/karvel.rc and %s in "
                          "tests/plugin/resources/resources_test.py: correct the one that is wrong; a new "
                          "control stands in both" % (caption, index + 1, one, other))

    def test_options_page(self):
        self.check(107, WS_CHILD | WS_DISABLED | WS_CAPTION | DS_SETFONT, (0, 0), OPTIONS_PAGE_SIZE,
                   "Flinder", OPTIONS_PAGE)

    def test_welcome_window(self):
        self.check(139, WS_POPUP | WS_VISIBLE | WS_CAPTION | WS_SYSMENU | DS_SETFONT |
                   DS_MODALFRAME, (590, 4), (255, 386), "Flinder for 3ds Max", WELCOME)

    def test_numbers_are_given_once(self):
        for number in (107, 139):
            dialog = reading.read_dialog(RESOURCES[(reading.DIALOG, number)][1])
            named = [control[0] for control in dialog["controls"] if control[0] != -1]
            self.assertEqual(sorted(named), sorted(set(named)))

    def test_controls_lie_inside_their_dialog(self):
        for number in (107, 139):
            dialog = reading.read_dialog(RESOURCES[(reading.DIALOG, number)][1])
            _, _, width, height = dialog["position"]
            for control in dialog["controls"]:
                x, y, control_width, control_height = control[3]
                self.assertTrue(0 <= x and x + control_width <= width and
                                0 <= y and y + control_height <= height, control)


class Texts(unittest.TestCase):
    def test_menu(self):
        self.assertEqual(reading.read_menu(RESOURCES[(reading.MENU, 122)][1]), MENU)

    def test_strings(self):
        found = reading.read_strings(FILE)
        expected = {1: "KarvelMax (%s)" % OPTIONS.website, **STRINGS}
        for number in sorted({*found, *expected}):
            if found.get(number) != expected.get(number):
                self.fail("text %d is %r in resources/karvel.rc and %r in STRINGS of "
                          "tests/plugin/resources/resources_test.py: correct the one that is wrong; a new "
                          "text stands in both" % (number, found.get(number), expected.get(number)))

    def test_strings_fit_the_loader(self):
        # Loaded into 256 characters, the terminating zero among them, in the Western code page.
        for number, text in reading.read_strings(FILE).items():
            self.assertLess(len(text.encode("cp1252")), 256, number)


class Version(unittest.TestCase):
    def setUp(self):
        self.fixed, self.texts, self.translations, self.blocks = reading.read_version(FILE)

    def test_fixed_part(self):
        major, minor, patch = (int(part) for part in OPTIONS.version.split("."))
        high, low = major << 16 | minor, patch << 16
        fixed = self.fixed
        self.assertEqual((fixed.Signature, fixed.StrucVersion), (0xFEEF04BD, 0x10000))
        self.assertEqual((fixed.FileVersionMS, fixed.FileVersionLS, fixed.ProductVersionMS,
                          fixed.ProductVersionLS), (high, low, high, low))
        # A release build of a DLL for Windows NT and its successors.
        self.assertEqual((fixed.FileFlagsMask, fixed.FileFlags, fixed.FileOS, fixed.FileType,
                          fixed.FileSubtype), (0x3F, 0, 0x40004, 2, 0))

    def test_texts(self):
        self.assertEqual(self.texts["FileVersion"], OPTIONS.version)
        self.assertEqual(self.texts["ProductVersion"], OPTIONS.version)
        self.assertEqual(self.texts["ProductName"], "Karvel Tools for 3ds Max")
        self.assertEqual(self.texts["OriginalFilename"], "KarvelMax.gup")
        self.assertEqual(self.texts["InternalName"], "KarvelMax")
        self.assertEqual(self.texts["CompanyName"], "Karvel")
        self.assertEqual(self.texts["LegalCopyright"], OPTIONS.copyright)

    def test_the_description_is_the_one_that_the_host_shows(self):
        self.assertEqual(self.texts["FileDescription"], reading.read_strings(FILE)[1])

    def test_explorer_finds_the_texts(self):
        # It looks for the block that the translation names: language, then code page.
        self.assertEqual(self.translations, ["0x%04x 0x%04x" % (ENGLISH_US, 1252)])
        self.assertEqual([block.lower() for block in self.blocks], ["%04x%04x" % (ENGLISH_US, 1252)])


class Cursors(unittest.TestCase):
    def pixels(self, number):
        (_, _, pixels), = reading.read_cursor(RESOURCES, number)
        return pixels

    def test_sizes_and_hot_spots(self):
        found = {}
        for number in CURSORS:
            (hot_x, hot_y, pixels), = reading.read_cursor(RESOURCES, number)
            self.assertEqual((pixels.width, pixels.height), (32, 32), number)
            found[number] = (hot_x, hot_y)
        self.assertEqual(found, CURSORS)

    def test_seen_on_dark_and_on_light_views(self):
        # A dark outline and a light core, each a good part of the picture.
        for number in CURSORS:
            visible = self.pixels(number).visible()
            self.assertGreater(len(visible), 120, number)
            dark = sum(luminance(p) < 64 for p in visible)
            light = sum(luminance(p) > 200 for p in visible)
            self.assertGreater(dark, len(visible) * 0.15, number)
            self.assertGreater(light, len(visible) * 0.15, number)

    def test_the_outline_goes_all_the_way_round(self):
        # No light place touches the view directly: seen from outside, each opaque place that
        # borders on an empty one is dark or fading.
        for number in CURSORS:
            rows = self.pixels(number).rows
            for y in range(32):
                for x in range(32):
                    if rows[y][x][3] < 250 or luminance(rows[y][x]) < 160:
                        continue
                    around = [rows[y + dy][x + dx][3] for dx, dy in
                              ((1, 0), (-1, 0), (0, 1), (0, -1))
                              if 0 <= x + dx < 32 and 0 <= y + dy < 32]
                    self.assertNotIn(0, around, "cursor %d at %d,%d" % (number, x, y))

    def test_told_apart(self):
        # Where one is opaque and the other empty, or their brightness or hue is far apart.
        numbers = sorted(CURSORS)
        for i, one in enumerate(numbers):
            for other in numbers[i + 1:]:
                different = 0
                for row_one, row_other in zip(self.pixels(one).rows, self.pixels(other).rows):
                    for a, b in zip(row_one, row_other):
                        shown_a, shown_b = a[3] >= 128, b[3] >= 128
                        if shown_a != shown_b or (shown_a and max(
                                abs(a[k] - b[k]) for k in range(3)) > 80):
                            different += 1
                self.assertGreaterEqual(different, 40, "cursors %d and %d" % (one, other))

    def test_mask_and_colours_agree(self):
        # Displays without alpha use the mask; under it the colours are to be black, or they would
        # invert what is below.
        for number in CURSORS:
            pixels = self.pixels(number)
            for row, hidden in zip(pixels.rows, pixels.masked):
                for pixel, is_hidden in zip(row, hidden):
                    self.assertEqual(is_hidden, pixel[3] < 128, number)
                    if pixel[3] == 0:
                        self.assertEqual(pixel, (0, 0, 0, 0), number)


class Icons(unittest.TestCase):
    def test_sizes(self):
        for number in ICONS:
            sizes = [(p.width, p.height) for p in reading.read_icon(RESOURCES, number)]
            self.assertEqual(sizes, [(16, 16), (24, 24), (32, 32)], number)

    def test_told_apart(self):
        for size in range(3):
            drawn = [reading.read_icon(RESOURCES, number)[size].rows for number in ICONS]
            for i, one in enumerate(drawn):
                for other in drawn[i + 1:]:
                    different = sum(a != b for row_one, row_other in zip(one, other)
                                    for a, b in zip(row_one, row_other))
                    self.assertGreater(different, len(one) * len(one) * 0.2, size)

    def test_each_size_shows_something(self):
        for number in ICONS:
            for picture in reading.read_icon(RESOURCES, number):
                area = picture.width * picture.height
                visible = picture.visible()
                self.assertGreater(len(visible), area * 0.3, (number, picture.width))
                brightness = [luminance(p) for p in visible]
                self.assertGreater(max(brightness) - min(brightness), 120,
                                   (number, picture.width))


class WelcomePicture(unittest.TestCase):
    def test_format(self):
        size, palette, counts = reading.read_palette_bitmap(RESOURCES[(reading.BITMAP, 141)][1])
        # 225 x 236 dialog units are 338 x 384 pixels in the dialog font; a frame of two pixels on
        # every side comes off.
        self.assertEqual(size, (334, 380))
        self.assertIn((255, 255, 255), palette)
        # A drawing with texts: several colours, none covering nearly everything.
        self.assertGreaterEqual(len(counts), 12)
        self.assertLess(max(counts), 334 * 380 * 0.9)


class ToolbarStrips(unittest.TestCase):
    COUNT = 18

    def strip(self, name, width, height):
        """The pictures of a strip: for each a list of (red, green, blue)."""
        path = os.path.join(OPTIONS.artwork, name)
        strip = Image.open(path)
        self.assertEqual((strip.format, strip.mode, strip.info["compression"]), ("BMP", "RGB", 0), name)
        self.assertEqual(strip.height, height, name)
        self.assertEqual(strip.width // width, self.COUNT,
                         "%s has another number of pictures than COUNT of "
                         "tests/plugin/resources/resources_test.py: a new picture changes both" % name)
        self.assertEqual(strip.width % width, 0, name)
        # 24 bits a pixel, and nothing behind them.
        self.assertEqual(os.path.getsize(path), 54 + (strip.width * 3 + 3) // 4 * 4 * height, name)
        return [list(strip.crop((x, 0, x + width, height)).getdata())
                for x in range(0, strip.width, width)]

    def test_a_picture_at_every_number(self):
        for label, width, height in ((16, 16, 15), (24, 24, 24)):
            colours = self.strip("Karvel_%di.bmp" % label, width, height)
            alphas = self.strip("Karvel_%da.bmp" % label, width, height)
            seen = {}
            for number in range(1, self.COUNT + 1):
                alpha = alphas[number - 1]
                self.assertTrue(all(r == g == b for r, g, b in alpha), number)
                shown = [c for c, a in zip(colours[number - 1], alpha) if a[0] >= 128]
                self.assertGreater(len(shown), width * height * 0.15, (label, number))
                self.assertLess(len(shown), width * height, (label, number))
                brightness = [luminance(c) for c in shown]
                # Readable on the host's dark and light surfaces alike.
                self.assertLess(min(brightness), 64, (label, number))
                self.assertGreater(max(brightness), 150, (label, number))
                key = (tuple(colours[number - 1]), tuple(alpha))
                self.assertNotIn(key, seen, "%d repeats %s" % (number, seen.get(key)))
                seen[key] = number

    def test_the_two_framing_commands_are_told_apart_in_the_small_strip(self):
        colours = self.strip("Karvel_16i.bmp", 16, 15)
        alphas = self.strip("Karvel_16a.bmp", 16, 15)
        surface = 123  # between the host's dark and its light one

        def brightness(number):
            return [(luminance(c) * a[0] + surface * (255 - a[0])) / 255
                    for c, a in zip(colours[number - 1], alphas[number - 1])]

        # Without colours, which not everybody tells apart: a quarter of the drawn area differs.
        different = sum(abs(one - other) > 60
                        for one, other in zip(brightness(FRAME_ALL), brightness(FRAME_SELECTED)))
        self.assertGreater(different, 50)


def main():
    global OPTIONS, FILE
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("file")
    parser.add_argument("--version", required=True)
    parser.add_argument("--website", required=True)
    parser.add_argument("--copyright", required=True)
    parser.add_argument("--artwork", required=True)
    parser.add_argument("--largest-file", type=int)
    OPTIONS = parser.parse_args()
    try:
        FILE = reading.read_file(OPTIONS.file)
        RESOURCES.update(reading.read_resources(FILE))
    except OSError as error:
        print("%s:0: %s, build the resources first" % (OPTIONS.file, error.strerror),
              file=sys.stderr)
        return 1
    except (AssertionError, pefile.PEFormatError) as error:
        print("%s:0: holds no readable resources (%s), build it again" % (OPTIONS.file, error),
              file=sys.stderr)
        return 1
    passed = unittest.main(argv=[sys.argv[0]], exit=False).result.wasSuccessful()
    size = os.path.getsize(OPTIONS.file)
    if OPTIONS.largest_file and size >= OPTIONS.largest_file:
        print("%s:0: has %d bytes, keep it below %d" % (OPTIONS.file, size, OPTIONS.largest_file),
              file=sys.stderr)
        passed = False
    return 0 if passed else 1


if __name__ == "__main__":
    sys.exit(main())
