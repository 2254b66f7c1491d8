#!/usr/bin/env python3
"""The artwork build: the same sources give the same bytes, and a mistake in a source is told in one
line with its place, leaving the finished pictures as they were.

    artwork_build_test.py REPOSITORY PICTURES

PICTURES is the folder of those that the build has made.
"""

import os
import re
import shutil
import subprocess
import sys
import tempfile
import unittest

REPOSITORY = PICTURES = None


class ArtworkBuild(unittest.TestCase):
    def setUp(self):
        self.directory = tempfile.mkdtemp(prefix="karvel_artwork_")
        self.addCleanup(shutil.rmtree, self.directory)
        self.source = os.path.join(self.directory, "artwork")
        self.output = os.path.join(self.directory, "output")
        shutil.copytree(os.path.join(REPOSITORY, "resources", "artwork"), self.source)

    def build(self):
        return subprocess.run(
            [sys.executable, os.path.join(REPOSITORY, "tools", "artwork", "build_artwork.py"),
             "--source", self.source, "--output", self.output],
            stdout=subprocess.PIPE, stderr=subprocess.PIPE, text=True, timeout=100, check=False)

    def finished(self, output=None):
        output = output or self.output
        found = {}
        for name in sorted(os.listdir(output)):
            with open(os.path.join(output, name), "rb") as picture:
                found[name] = picture.read()
        return found

    def edit(self, name, old, new):
        path = os.path.join(self.source, name)
        with open(path, encoding="utf-8") as source:
            text = source.read()
        self.assertIn(old, text)
        with open(path, "w", encoding="utf-8") as source:
            source.write(text.replace(old, new, 1))

    def refused(self, place, words):
        """The build fails with one line `FILE:LINE: what, remedy` and spoils no picture."""
        os.makedirs(self.output, exist_ok=True)
        kept = os.path.join(self.output, "orbit.cur")
        with open(kept, "wb") as picture:
            picture.write(b"the last good one")
        done = self.build()
        self.assertNotEqual(done.returncode, 0)
        self.assertEqual(done.stdout, "")
        self.assertEqual(len(done.stderr.splitlines()), 1, done.stderr)
        self.assertRegex(done.stderr, r"^%s: .+, .+$" % re.escape(
            os.path.join(self.source, place)))
        self.assertIn(words, done.stderr)
        with open(kept, "rb") as picture:
            self.assertEqual(picture.read(), b"the last good one")

    def test_same_sources_same_bytes(self):
        done = self.build()
        self.assertEqual((done.returncode, done.stdout, done.stderr), (0, "", ""))
        pictures = self.finished()
        self.assertEqual(sorted(pictures), [
            "Karvel_16a.bmp", "Karvel_16i.bmp", "Karvel_24a.bmp", "Karvel_24i.bmp",
            "application.ico", "contact_sheet.png", "options_page.ico", "options_window.ico",
            "orbit.cur", "pan.cur", "refused.cur", "select_control.cur",
            "select_control_shift.cur", "select_shift.cur", "time_scrub.cur", "welcome.bmp",
            "zoom.cur"])
        self.assertEqual(pictures, self.finished(PICTURES))

    def test_an_edited_picture_changes_its_file_only(self):
        shutil.copytree(PICTURES, self.output)
        before = self.finished()
        self.edit("icons/options_page.svg", "#f4a63a", "#3a88f4")
        self.assertEqual(self.build().returncode, 0)
        after = self.finished()
        self.assertEqual([name for name in before if before[name] != after[name]],
                         ["contact_sheet.png", "options_page.ico"])

    def names_in_repository(self, pattern, *path):
        with open(os.path.join(REPOSITORY, *path), encoding="utf-8") as source:
            return re.findall(pattern, source.read(), re.M)

    def pictures(self):
        return sorted(os.path.relpath(os.path.join(folder, name), self.source).replace(os.sep, "/")
                      for folder, _, names in os.walk(self.source) for name in names)

    def test_an_edit_of_any_picture_starts_a_build(self):
        named = self.names_in_repository(r"artwork/(\S+\.svg)", "resources", "CMakeLists.txt")
        for name in self.pictures():
            self.assertTrue(name in named, "resources/artwork/%s is not in artwork_sources of "
                            "resources/CMakeLists.txt, add it" % name)

    def test_each_icon_of_a_command_is_drawn(self):
        icons = self.names_in_repository(r"^    \{kCommand\w+, +IDS_\w+, +IDS_\w+, +(\w+),",
                                         "shell", "commands.h")
        self.assertGreater(len(icons), 10)
        drawn = {int(name.split("/")[1][:2]) for name in self.pictures()
                 if name.startswith("toolbar/")}
        for icon in icons:
            self.assertTrue(icon == "kNoIcon" or int(icon) in drawn, "shell/commands.h names picture "
                            "%s and resources/artwork/toolbar has none of this number, draw it"
                            % icon)

    def test_hot_spot_missing(self):
        self.edit("cursors/orbit.svg", ' data-hotspot="16,16"', "")
        self.refused("cursors/orbit.svg:1", "data-hotspot is ''")

    def test_hot_spot_not_numbers(self):
        self.edit("cursors/orbit.svg", '"16,16"', '"middle"')
        self.refused("cursors/orbit.svg:1", "data-hotspot is 'middle'")

    def test_hot_spot_outside(self):
        self.edit("cursors/orbit.svg", '"16,16"', '"16,32"')
        self.refused("cursors/orbit.svg:1", "hot spot 16,32 lies outside")

    def test_other_size(self):
        self.edit("cursors/orbit.svg", '"0 0 32 32"', '"0 0 48 48"')
        self.refused("cursors/orbit.svg:1", "viewBox is '0 0 48 48'")

    def test_broken_markup(self):
        self.edit("cursors/orbit.svg", "</defs>", "</def>")
        self.refused("cursors/orbit.svg:13", "not well-formed")

    def test_empty_file(self):
        with open(os.path.join(self.source, "cursors", "orbit.svg"), "w", encoding="utf-8"):
            pass
        self.refused("cursors/orbit.svg:1", "not well-formed")

    def test_picture_missing(self):
        os.remove(os.path.join(self.source, "cursors", "orbit.svg"))
        self.refused("cursors/orbit.svg:0", "cannot be read")

    def test_picture_that_nothing_names(self):
        shutil.copy(os.path.join(self.source, "cursors", "orbit.svg"),
                    os.path.join(self.source, "cursors", "spare.svg"))
        self.refused("cursors/spare.svg:1", "is in no list of pictures, "
                     "add it to its list in tools/artwork/build_artwork.py")


if __name__ == "__main__":
    if len(sys.argv) != 3:
        sys.exit("usage: artwork_build_test.py REPOSITORY PICTURES")
    PICTURES, REPOSITORY = (os.path.abspath(sys.argv.pop()) for _ in range(2))
    unittest.main()
