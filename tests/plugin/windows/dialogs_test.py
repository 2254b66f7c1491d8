#!/usr/bin/env python3
"""Holds the windows that dialogs_test.sh opened against what they are to be.

    dialogs_test.py DIRECTORY

DIRECTORY holds the trace and the pictures of dialogs.scn; the windows are cut out of the pictures
and left there. Places and sizes are in dialog units, as in the resource script.
"""

import os
import re
import subprocess
import sys
import unittest

DIRECTORY = ""
HERE = os.path.dirname(os.path.abspath(__file__))

sys.dont_write_bytecode = True
sys.path.insert(0, os.path.join(HERE, "..", "resources"))
import resources_test  # noqa: E402

# Pixels that may differ, however much: a caret or a rounding, but no check mark (some 40) and no
# letter's worth of text that moved.
ALLOWED = 25

# Controls in tab order: number (None: a static text or frame without one), x, y, width, height.
OPTIONS_PAGE = [(number, *place) for number, _, _, place in resources_test.OPTIONS_PAGE]
# The frame that each box stands in.
FRAMES = {
    1026: (1015, 1023, 1024, 1025),
    1023: (1007, 1005),
    1024: (1011, 1009, 1014),
    1025: (1012, 1004, 1027, 1006),
}
GROUPS_AND_BOXES_THAT_FOLLOW = {number for number, *_ in OPTIONS_PAGE} - {1015, 1010}

WELCOME = [
    (1, 93, 28, 68, 16),
    (None, 7, 7, 241, 8),
    ("picture", 15, 82, 225, 236),
    (2, 93, 356, 68, 16),
    (None, 22, 69, 211, 13),
    (None, 17, 334, 222, 18),
    (None, 7, 61, 241, 264),
    (None, 7, 327, 241, 52),
    (1032, 85, 48, 85, 12),
    (None, 7, 16, 241, 10),
]
WELCOME_SIZE = (255, 386)


class Control:
    def __init__(self, line):
        match = re.fullmatch(
            r"state control (\S+) (\S+) (-?\d+),(-?\d+) (\d+)x(\d+)((?: \w+)*) \"(.*)\"", line)
        if not match:
            raise ValueError("no control: " + line)
        name, self.kind, x, y, width, height, words, self.text = match.groups()
        self.number = int(name.split(".")[1]) if "." in name else None
        self.left, self.top = int(x), int(y)
        self.width, self.height = int(width), int(height)
        self.right, self.bottom = self.left + self.width, self.top + self.height
        self.words = words.split()

    def holds(self, other):
        return (self.left <= other.left and self.top <= other.top
                and other.right <= self.right and other.bottom <= self.bottom)

    def place(self):
        return (self.left, self.top, self.width, self.height)


class Dialog:
    def __init__(self, line):
        match = re.fullmatch(
            r"state dialog (\w+) (-?\d+),(-?\d+) (\d+)x(\d+) client (\d+)x(\d+) "
            r"units (\d+)x(\d+) owner (\S+) \"(.*)\"", line)
        if not match:
            raise ValueError("no dialog: " + line)
        self.name = match.group(1)
        numbers = [int(number) for number in match.groups()[1:9]]
        self.left, self.top, self.width, self.height = numbers[:4]
        self.client = (numbers[4], numbers[5])
        # What the system makes of 400 by 800 units: a hundred times the font's base units.
        self.base = (numbers[6] / 100, numbers[7] / 100)
        self.owner, self.title = match.groups()[9:]
        self.controls = []

    def pixels(self, x, y):
        """Dialog units to pixels, rounded as the system rounds."""
        return (int((x * self.base[0] + 2) // 4), int((y * self.base[1] + 4) // 8))

    def numbered(self, number):
        return next(control for control in self.controls if control.number == number)


def read_dialogs():
    """The two lists of open windows that the scenario shows, as dictionaries by name."""
    lists = []
    with open(os.path.join(DIRECTORY, "trace"), encoding="utf-8") as trace:
        for line in trace.read().splitlines():
            if line.startswith("state dialog options"):
                lists.append({})
            if line.startswith("state dialog "):
                dialog = Dialog(line)
                lists[-1][dialog.name] = dialog
            elif line.startswith("state control "):
                dialog.controls.append(Control(line))
    return lists


def run(*command):
    done = subprocess.run(command, capture_output=True, text=True, check=False)
    return done.returncode, done.stdout + done.stderr


class DialogTest(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        lists = read_dialogs()
        assert len(lists) == 2, "the scenario shows the windows twice"
        cls.options, cls.welcome = lists[0]["options"], lists[0]["welcome"]
        cls.switched_off = lists[1]["options"]

    # --- layout by number ---

    def test_owner_and_title(self):
        self.assertEqual((self.options.owner, self.options.title), ("main", "Karvel Options"))
        self.assertEqual((self.welcome.owner, self.welcome.title), ("main", "Flinder for 3ds Max"))

    def page(self):
        return next(control for control in self.options.controls if control.kind == "#32770")

    def test_options_page_in_dialog_units(self):
        page = self.page()
        pixels = self.options.pixels
        self.assertEqual((page.width, page.height), pixels(*resources_test.OPTIONS_PAGE_SIZE),
                         "the page and OPTIONS_PAGE_SIZE of tests/plugin/resources/resources_test.py")
        after_page = self.options.controls[self.options.controls.index(page) + 1:]
        for control, (number, x, y, width, height) in zip(after_page, OPTIONS_PAGE):
            self.assertEqual(control.number, number)
            left, top = pixels(x, y)
            self.assertEqual(control.place(), (page.left + left, page.top + top,
                                               *pixels(width, height)), number)

    def test_options_controls_are_all_there(self):
        self.assertEqual([control.number for control in self.options.controls
                          if control.kind == "Button" and "hidden" not in control.words],
                         [number for number, *_ in OPTIONS_PAGE] + [1, 2],
                         "the window's controls and those of OPTIONS_PAGE in "
                         "tests/plugin/resources/resources_test.py")

    def test_options_nothing_is_cut_off(self):
        page, tab = self.page(), self.options.numbered(12320)
        width, height = self.options.client
        visible = [control for control in self.options.controls if "hidden" not in control.words]
        for control in visible:
            self.assertGreaterEqual(control.left, 0, control.text)
            self.assertGreaterEqual(control.top, 0, control.text)
            self.assertLessEqual(control.right, width, control.text)
            # Room below the buttons too: the menu bar has not taken theirs.
            self.assertLess(control.bottom, height, control.text)
        self.assertTrue(tab.holds(page))
        for number, *_ in OPTIONS_PAGE:
            self.assertTrue(page.holds(self.options.numbered(number)), number)
        for number in (1, 2):
            self.assertGreater(self.options.numbered(number).top, tab.bottom)

    def test_options_frames_hold_their_boxes(self):
        for frame, boxes in FRAMES.items():
            for box in boxes:
                self.assertTrue(self.options.numbered(frame).holds(self.options.numbered(box)),
                                (frame, box))
        focus = self.options.numbered(1010)
        self.assertGreater(focus.top, self.options.numbered(1026).bottom)

    def test_options_boxes_keep_apart(self):
        boxes = sorted((self.options.numbered(number) for number, *_ in OPTIONS_PAGE
                        if number not in FRAMES), key=lambda box: box.top)
        for above, below in zip(boxes, boxes[1:]):
            self.assertLessEqual(above.bottom, below.top + 1, (above.text, below.text))

    def test_options_states(self):
        for number, *_ in OPTIONS_PAGE:
            self.assertNotIn("disabled", self.options.numbered(number).words, number)
            self.assertEqual("disabled" in self.switched_off.numbered(number).words,
                             number in GROUPS_AND_BOXES_THAT_FOLLOW,
                             f"control {number} is grey while navigation is off; what follows it "
                             "stands in GROUPS_AND_BOXES_THAT_FOLLOW of tests/plugin/windows/dialogs_test.py")

    def test_welcome_in_dialog_units(self):
        pixels = self.welcome.pixels
        self.assertEqual(self.welcome.client, pixels(*WELCOME_SIZE))
        self.assertEqual(len(self.welcome.controls), len(WELCOME))
        for control, (number, x, y, width, height) in zip(self.welcome.controls, WELCOME):
            if number == "picture":
                # A picture takes the size of its bitmap; its corner is what is given.
                self.assertEqual((control.left, control.top), pixels(x, y))
                for size, wanted in zip((control.width, control.height), pixels(width, height)):
                    self.assertLessEqual(abs(size - wanted), 4)
                continue
            self.assertEqual(control.number, number, control.text)
            self.assertEqual(control.place(), (*pixels(x, y), *pixels(width, height)),
                             control.text)

    def test_welcome_nothing_is_cut_off(self):
        width, height = self.welcome.client
        for control in self.welcome.controls:
            self.assertGreaterEqual(control.left, 0)
            self.assertGreaterEqual(control.top, 0)
            self.assertLess(control.right, width)
            self.assertLess(control.bottom, height)
        frame = self.welcome.controls[6]
        self.assertTrue(frame.holds(self.welcome.controls[2]), "the picture leaves its frame")

    # --- looks ---

    def cut(self, dialog, shot, name):
        file = os.path.join(DIRECTORY, name)
        status, said = run("convert", os.path.join(DIRECTORY, shot), "-crop",
                           f"{dialog.width}x{dialog.height}+{dialog.left}+{dialog.top}", "+repage",
                           "-strip", file)
        self.assertEqual(status, 0, said)
        return file

    def compare(self, file, fuzz, allowed, region=None, without=None):
        """Region, or all but one region, of a picture against the stored one."""
        stored = os.path.join(HERE, os.path.basename(file))
        command = ["compare", "-metric", "AE", "-fuzz", fuzz]
        both = [file, stored]
        if region or without:
            both = []
            for number, picture in enumerate((file, stored)):
                part = f"{file}.{number}.png"
                if region:
                    change = ["-crop", "{2}x{3}+{0}+{1}".format(*region), "+repage"]
                else:
                    left, top, width, height = without
                    change = ["-fill", "white", "-draw",
                              f"rectangle {left},{top} {left + width - 1},{top + height - 1}"]
                status, said = run("convert", picture, *change, part)
                self.assertEqual(status, 0, said)
                both.append(part)
        status, said = run(*command, *both, "null:")
        if region or without:
            for part in both:
                os.remove(part)
        self.assertIn(status, (0, 1), said)
        different = float(said.split()[0])
        self.assertLessEqual(
            different, allowed,
            f"{file} does not look like {stored}: {different:.0f} pixels differ. "
            "Look at both; if the new one is right, copy it there")

    def test_options_picture(self):
        self.compare(self.cut(self.options, "dialogs-01-after.png", "options.png"), "3%", ALLOWED)

    def test_options_switched_off_picture(self):
        self.compare(self.cut(self.switched_off, "dialogs-02-after.png", "options_off.png"), "3%",
                     ALLOWED)

    def test_welcome_picture(self):
        file = self.cut(self.welcome, "dialogs-01-after.png", "welcome.png")
        picture = self.welcome.controls[2]
        # The client area begins behind frame and title bar.
        frame = (self.welcome.width - self.welcome.client[0]) // 2
        title = self.welcome.height - self.welcome.client[1] - frame
        place = (picture.left + frame, picture.top + title, picture.width, picture.height)
        self.compare(file, "3%", ALLOWED, without=place)
        # The control scheme is drawn by another program, whose versions smooth edges differently.
        self.compare(file, "25%", picture.width * picture.height // 50, region=place)


if __name__ == "__main__":
    DIRECTORY = sys.argv.pop(1)
    unittest.main()
