#!/usr/bin/env python3
"""The texts of the installable bundle, as the build fills them in.

    package_texts_test.py DIRECTORY VERSION
"""

import os
import re
import sys
import unittest
import xml.etree.ElementTree

DIRECTORY = None
VERSION = None


def read(name):
    with open(os.path.join(DIRECTORY, name), "rb") as source:
        return source.read()


class PackageContents(unittest.TestCase):
    def setUp(self):
        self.root = xml.etree.ElementTree.fromstring(read("PackageContents.xml"))

    def test_versions_and_codes(self):
        self.assertEqual(self.root.tag, "ApplicationPackage")
        self.assertEqual(self.root.get("AppVersion"), VERSION)
        self.assertEqual(self.root.get("FriendlyVersion"), VERSION)
        for entry in self.root.iter("ComponentEntry"):
            self.assertEqual(entry.get("Version"), VERSION)
        codes = [self.root.get("ProductCode"), self.root.get("UpgradeCode")]
        for code in codes:
            self.assertRegex(code, r"^\{[0-9A-F]{8}(-[0-9A-F]{4}){3}-[0-9A-F]{12}\}$")
        self.assertNotEqual(codes[0], codes[1])

    def test_offered_to_the_one_host_that_can_load_it(self):
        found = [(e.get("OS"), e.get("Platform"), e.get("SeriesMin"), e.get("SeriesMax"))
                 for e in self.root.iter("RuntimeRequirements")]
        self.assertEqual(set(found), {("Win64", "3ds Max", "2012", "2012")})
        self.assertEqual(len(found), 1 + len(self.root.findall("Components")))

    def test_names_the_files_where_the_instructions_find_them(self):
        modules = {e.get("ModuleName") for e in self.root.iter("ComponentEntry")}
        self.assertEqual(modules, {"./Contents/plugins/KarvelMax.gup", "./Contents/icons"})
        instructions = read("INSTALL.txt").decode("ascii")
        self.assertIn("Contents\\plugins\\KarvelMax.gup", instructions)
        for name in ("Karvel_16i", "Karvel_16a", "Karvel_24i", "Karvel_24a"):
            self.assertIn("Contents\\icons\\%s.bmp" % name, instructions)


class Instructions(unittest.TestCase):
    def setUp(self):
        self.text = read("INSTALL.txt").decode("ascii")

    def test_made_for_notepad(self):
        lines = self.text.split("\r\n")
        self.assertNotIn("\n", "".join(lines))
        self.assertLessEqual(max(len(line) for line in lines), 79)

    def test_version_filled_in(self):
        self.assertIn("version %s\r\n" % VERSION, self.text)
        self.assertIsNone(re.search(r"@\w+@", self.text))

    def test_tells_what_a_user_needs(self):
        for words in ("3ds Max 2012", "folder  plugins  of", "UI\\Icons", "Karvel.ini",
                      "plug-in configuration folder", "\r\nRemove\r\n", "\r\nInstall\r\n",
                      "\r\nUpdate\r\n", "\r\nSettings\r\n", "SHA256SUMS"):
            self.assertIn(words, self.text)


if __name__ == "__main__":
    if len(sys.argv) != 3:
        sys.exit("usage: package_texts_test.py DIRECTORY VERSION")
    VERSION = sys.argv.pop()
    DIRECTORY = sys.argv.pop()
    unittest.main()
