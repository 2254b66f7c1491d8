#!/usr/bin/env python3
"""Settings files that a user may come to have.

    settings_file_test.py prepare DIRECTORY    makes a settings folder for each case
    settings_file_test.py check DIRECTORY      holds what the play of settings_file.scn left there
"""

import os
import random
import sys
import unittest

sys.dont_write_bytecode = True
sys.path.insert(0, os.path.join(os.path.dirname(os.path.abspath(__file__)), ".."))
from default_settings import DEFAULT_SETTINGS as DEFAULTS  # noqa: E402

DIRECTORY = ""
FILE = "Karvel.ini"

FIRST = next(iter(DEFAULTS))

OTHERS = [
    "; kept by hand, please leave",
    "[other]",
    "altRightZoom=not ours",
    "left=7",
    "colour=blue  ; as ever",
    "[main]",
    "slowZooming=1",
    "unknownKey=some text",
    "hideMClickXForms=",
    "[last]",
    "flinderPopup=not ours either",
]


def text_noise():
    """A megabyte of lines without any sense, but no section of ours."""
    source = random.Random(1)
    # An equals sign stands between keys and values only: the system trims the blanks around it.
    letters = "abcdefghijklmnopqrstuvwxyz0123456789 .,;:+-*/()!?%&$"
    lines = ["[noise]"]
    size = 0
    while size < 1 << 20:
        # A line as short as a letter, as long as no buffer expects.
        length = source.choice((1, 20, 80, 300, 5000))
        line = "n" + "".join(source.choice(letters) for _ in range(length)) + "."
        if length % 3 == 0:
            line += "=" + line
        lines.append(line)
        size += len(line) + 2
    return lines


def lines_to_bytes(lines):
    return "".join(line + "\r\n" for line in lines).encode("latin-1")


def case_files():
    source = random.Random(2)
    noise = text_noise()
    return {
        "others": lines_to_bytes(OTHERS),
        "text-noise": lines_to_bytes(noise),
        "settings-behind-noise": lines_to_bytes(noise + ["[main]", "altRightZoom="]),
        "byte-noise": bytes(source.choice(b"\x00\xff\n\r=[]\x1a\x80main") if source.random() < 0.3
                            else source.randrange(256) for _ in range(1 << 20)),
        "empty": b"",
        "no-line-end": b"[main]\r\naltRightZoom=",
        "unix-line-ends": b"[other]\nx=1\n[main]\naltRightZoom=\n",
        "keys-twice": b"[main]\r\naltRightZoom=\r\naltRightZoom=1\r\n[main]\r\nuseShiftClone=\r\n",
        "long-values": b"[main]\r\naltRightZoom=" + b"9" * 70000 + b"\r\nleft=" + b"1" * 90000
                       + b"\r\n[other]\r\nx=" + b"y" * 60000 + b"\r\n",
        "missing": None,
    }


def prepare():
    for name, content in case_files().items():
        folder = os.path.join(DIRECTORY, name)
        os.mkdir(folder)
        if content is not None:
            with open(os.path.join(folder, FILE), "wb") as file:
                file.write(content)
    # A folder of the file's name can be neither read nor written.
    os.makedirs(os.path.join(DIRECTORY, "folder-in-its-place", FILE))


class SettingsFileTest(unittest.TestCase):
    def left(self, name):
        with open(os.path.join(DIRECTORY, name, FILE), "rb") as file:
            return file.read()

    def lines(self, name):
        return self.left(name).decode("latin-1").replace("\r\n", "\n").split("\n")

    def settings(self, name):
        """The plug-in's settings at the first and at the last time they are shown."""
        with open(os.path.join(DIRECTORY, name + ".status"), encoding="ascii") as file:
            self.assertEqual(file.read().strip(), "0", name + ": the play went wrong")
        seen = []
        with open(os.path.join(DIRECTORY, name + ".trace"), encoding="utf-8",
                  errors="replace") as trace:
            for line in trace:
                words = line.split()
                if words[:2] == ["state", "plugin"] and words[2] in DEFAULTS:
                    if words[2] == FIRST:
                        seen.append({})
                    seen[-1][words[2]] = int(words[3])
        self.assertEqual(len(seen), 2, name)
        return seen

    def section(self, name, section):
        """The first lines of a section, as the system finds them: case does not matter."""
        found = {}
        inside = False
        for line in self.lines(name):
            line = line.strip()
            if line.startswith("["):
                if found and inside:
                    break
                inside = line.lower() == f"[{section}]"
            elif inside and "=" in line:
                key, value = line.split("=", 1)
                found.setdefault(key.strip(), value.strip())
        return found

    def holds_saved(self, name, before):
        """What the scenario's clicks make of the settings that were there before."""
        after = before | {"slowZooming": 1 - before["slowZooming"],
                          "hideMClickXForms": 1 - before["hideMClickXForms"]}
        first, last = self.settings(name)
        self.assertEqual(first, before, name)
        self.assertEqual(last, after, name)
        return after

    def written(self, name, after):
        main = self.section(name, "main")
        for key in DEFAULTS:
            self.assertEqual(main.get(key), "1" if after[key] else "", (name, key))
        self.assertEqual(main.get("flinderPopup"), "", name)

    def all_kept(self, name, wanted):
        """All lines of before are there, in their order; new ones may stand between them."""
        rest = iter(self.lines(name))
        for line in wanted:
            self.assertTrue(any(line == other for other in rest), f"{name} lost {line[:80]}")

    def test_nothing_of_others_is_lost(self):
        after = self.holds_saved("others", DEFAULTS)
        self.written("others", after)
        changed = [line.replace("slowZooming=1", "slowZooming=")
                   .replace("hideMClickXForms=", "hideMClickXForms=1") for line in OTHERS]
        self.all_kept("others", changed)

    def test_a_megabyte_of_text(self):
        self.written("text-noise", self.holds_saved("text-noise", DEFAULTS))
        self.all_kept("text-noise", text_noise())

    def test_settings_behind_a_megabyte(self):
        name = "settings-behind-noise"
        self.written(name, self.holds_saved(name, DEFAULTS | {"altRightZoom": 0}))
        self.all_kept(name, text_noise() + ["[main]", "altRightZoom="])

    def test_a_megabyte_of_bytes(self):
        # What the system reads from such a file is its own affair; the boxes work all the same.
        first, last = self.settings("byte-noise")
        self.assertEqual(last, first | {"slowZooming": 1 - first["slowZooming"],
                                        "hideMClickXForms": 1 - first["hideMClickXForms"]})

    def test_empty_and_missing(self):
        for name in ("empty", "missing"):
            self.written(name, self.holds_saved(name, DEFAULTS))

    def test_line_ends(self):
        for name in ("no-line-end", "unix-line-ends"):
            self.written(name, self.holds_saved(name, DEFAULTS | {"altRightZoom": 0}))
        self.assertEqual(self.section("unix-line-ends", "other"), {"x": "1"})

    def test_keys_given_twice(self):
        first, last = self.settings("keys-twice")
        self.assertEqual(first["altRightZoom"], 0)
        self.assertEqual(last["altRightZoom"], 0)
        self.assertEqual(self.lines("keys-twice").count("altRightZoom="), 1)
        self.assertIn("altRightZoom=1", self.lines("keys-twice"))

    def test_values_longer_than_any_buffer(self):
        self.written("long-values", self.holds_saved("long-values", DEFAULTS))
        self.assertEqual(self.section("long-values", "other")["x"], "y" * 60000)

    def test_folder_in_the_files_place(self):
        self.assertEqual(self.settings("folder-in-its-place"), [DEFAULTS, DEFAULTS])
        self.assertEqual(os.listdir(os.path.join(DIRECTORY, "folder-in-its-place", FILE)), [])

    def test_no_other_file_appears(self):
        for name in list(case_files()) + ["folder-in-its-place"]:
            self.assertEqual(os.listdir(os.path.join(DIRECTORY, name)), [FILE], name)


if __name__ == "__main__":
    TASK, DIRECTORY = sys.argv[1:3]
    if TASK == "prepare":
        prepare()
    else:
        unittest.main(argv=sys.argv[:1])
