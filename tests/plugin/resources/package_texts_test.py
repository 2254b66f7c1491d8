#!/usr/bin/env python3
"""The texts of the archive, as the build fills them in.

    package_texts_test.py DIRECTORY VERSION WEBSITE
"""

import os
import re
import sys
import unittest

DIRECTORY = None
VERSION = None
WEBSITE = None


def read(name):
    with open(os.path.join(DIRECTORY, name), "rb") as source:
        return source.read()


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
        self.assertTrue(self.text.endswith("\r\n%s\r\n" % WEBSITE))

    def test_tells_what_a_user_needs(self):
        for words in ("3ds Max 2012", "folder  plugins  of", "UI\\Icons", "Karvel.ini",
                      "plug-in configuration folder", "\r\nRemove\r\n",
                      "\r\nInstall: 3ds Max 2012\r\n", "\r\nInstall: later releases\r\n",
                      "%ProgramData%\\Autodesk\\ApplicationPlugins",
                      "%APPDATA%\\Autodesk\\ApplicationPlugins", "Unblock", "getDir #userIcons",
                      "\r\nUpdate\r\n", "\r\nSettings\r\n", "SHA256SUMS"):
            self.assertIn(words, self.text)


if __name__ == "__main__":
    if len(sys.argv) != 4:
        sys.exit("usage: package_texts_test.py DIRECTORY VERSION WEBSITE")
    WEBSITE = sys.argv.pop()
    VERSION = sys.argv.pop()
    DIRECTORY = sys.argv.pop()
    unittest.main()
