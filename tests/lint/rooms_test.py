#!/usr/bin/env python3
"""The check of the rooms: arrows that lead up, circles and a drawing of other rooms are found."""

import pathlib
import subprocess
import sys
import tempfile
import unittest

ROOT = pathlib.Path(__file__).resolve().parents[2]
ROOMS = ROOT / "tools/checks/check_rooms.py"
TABLE = """upper: middle  # what the user asks for
middle: lower  # how it is done
lower:  # what all use
"""


class Rooms(unittest.TestCase):
    def setUp(self):
        self.place = tempfile.TemporaryDirectory()
        self.addCleanup(self.place.cleanup)
        self.root = pathlib.Path(self.place.name)
        self.write("tools/checks/rooms.txt", TABLE)
        self.write("docs/architecture.md", "# A\n<!-- rooms: tools/checks/check_rooms.py draw -->\n"
                                           "<!-- end of rooms -->\nmore\n")
        self.write("upper/a.h", '#include "lower/c.h"\n')
        self.write("upper/a.cpp", '#include "upper/a.h"\n\n#include "middle/b.h"\n')
        self.write("middle/b.h", "// b\n")
        self.write("middle/b.cpp", '#include "middle/b.h"\n#include "lower/c.h"\n')
        self.write("lower/c.h", "// c\n")
        self.assertEqual(self.run_rooms("draw"), (0, "", ""))

    def write(self, name, text):
        path = self.root / name
        path.parent.mkdir(parents=True, exist_ok=True)
        path.write_text(text)

    def run_rooms(self, *arguments):
        done = subprocess.run([sys.executable, ROOMS, *arguments, "--root", self.root],
                              capture_output=True, text=True, check=False)
        return done.returncode, done.stdout, done.stderr

    def check(self):
        return self.run_rooms("check")

    def test_a_house_in_order_passes(self):
        self.assertEqual(self.check(), (0, "2 units in 3 rooms, every include leads down\n", ""))

    def test_an_arrow_back_is_named(self):
        self.write("lower/c.h", '// c\n\n#include "middle/b.h"\n')
        status, _, errors = self.check()
        self.assertEqual(status, 1)
        self.assertIn("lower/c.h:3: lower includes middle/b.h, but middle is not below it in "
                      "tools/checks/rooms.txt; move what both need down\n", errors)

    def test_an_arrow_to_a_room_beside_is_one_back(self):
        self.write("tools/checks/rooms.txt", "upper: lower # a\nmiddle: lower # b\nlower: # c\n")
        self.assertEqual(self.run_rooms("draw")[0], 0)
        self.assertEqual(self.check(), (1, "", "upper/a.cpp:3: upper includes middle/b.h, but "
                                        "middle is not below it in tools/checks/rooms.txt; move "
                                        "what both need down\n"))

    def test_a_circle_within_a_room_is_told(self):
        self.write("middle/d.h", '#include "middle/b.h"\n')
        self.write("middle/b.cpp", '#include "middle/b.h"\n#include "middle/d.h"\n')
        self.assertEqual(self.check(), (1, "", "a circle of includes: middle/b -> middle/d -> "
                                        "middle/b; move what they share down\n"))

    def test_an_include_from_a_stranger_is_named(self):
        with (self.root / "tools/checks/rooms.txt").open("a") as table:
            table.write("plug-in ! test # ships alone\nhost/engine ! host/player plug-in # below\n")
        self.write("host/player/p.cpp", '#include "host/engine/e.h"\n#include "lower/c.h"\n')
        self.write("host/engine/e.h", "// e\n")
        self.assertEqual(self.check()[0], 0)
        for source, include in (("middle/b.cpp", "test/t.h"), ("host/engine/e.h", "lower/c.h"),
                                ("host/engine/deep/e.cpp", "host/player/p.h")):
            with self.subTest(source=source):
                self.write(source, f'// a\n#include "{include}"\n')
                status, _, errors = self.check()
                self.assertEqual(status, 1)
                self.assertIn(f"{source}:2: ", errors)
                self.assertIn(f" includes {include}, but it is to know nothing of that: ", errors)

    def test_a_stranger_that_is_gone_is_told(self):
        with (self.root / "tools/checks/rooms.txt").open("a") as table:
            table.write("host ! upper # no plug-in\n")
        self.assertEqual(self.check(), (1, "", "tools/checks/rooms.txt: there is no folder host; "
                                        "take its row with ! out\n"))

    def test_a_drawing_of_other_rooms_is_told(self):
        self.write("tools/checks/rooms.txt", TABLE.replace("how it is done", "how it was done"))
        self.assertEqual(self.check(), (1, "", "docs/architecture.md: the rooms are not those of "
                                        "tools/checks/rooms.txt; "
                                        "run tools/checks/check_rooms.py draw\n"))

    def test_the_drawing_leaves_the_rest_of_the_page(self):
        text = (self.root / "docs/architecture.md").read_text()
        self.assertTrue(text.startswith("# A\n<!-- rooms"))
        self.assertTrue(text.endswith("<!-- end of rooms -->\nmore\n"))
        self.assertIn("    upper --> middle\n    middle --> lower\n", text)
        self.assertIn("| `lower/` | what all use |\n", text)

    def test_a_table_that_cannot_be_read_is_told_with_its_line(self):
        for table, told in (("upper lower\n", "tools/checks/rooms.txt:1: a row is"),
                            ("a: # a\na: # a\n", "tools/checks/rooms.txt:2: a has a row already"),
                            ("a: # a\nb: a # b\n", "tools/checks/rooms.txt:2: b stands below a"),
                            ("a: b # a\n", "tools/checks/rooms.txt: a leads to b, which has no row")):
            with self.subTest(table=table):
                self.write("tools/checks/rooms.txt", table)
                status, _, errors = self.check()
                self.assertEqual(status, 2)
                self.assertIn(told, errors)

    def test_includes_planted_in_the_sources_themselves_are_found(self):
        """The real table: one of the topmost room in the lowest, and those between strangers."""
        rooms = subprocess.run([sys.executable, ROOMS, "names"], capture_output=True, text=True,
                               check=True).stdout.split()
        self.write("tools/checks/rooms.txt", (ROOT / "tools/checks/rooms.txt").read_text())
        for folder in [*rooms, "standin"]:
            for path in (ROOT / folder).rglob("*.[hc]*"):
                if path.suffix in (".h", ".cpp"):
                    self.write(path.relative_to(ROOT), path.read_text())
        for name in ("upper", "middle", "lower"):
            for path in (self.root / name).iterdir():
                path.unlink()
        self.assertEqual(self.run_rooms("draw")[0], 0)
        self.assertEqual(self.check()[0], 0)
        for room, source, include in (
                ("resources", "resources/module.cpp", "shell/commands.h"),
                ("hooks", "hooks/mouse_hook.cpp", "tests/plugin/plugin_state.h"),
                ("standin", "standin/player/player.h", "tests/walks/walks.h"),
                ("standin", "standin/engine/trace/trace.h", "navigation/nav_rules.h"),
                ("standin/engine", "standin/engine/world/world.h", "standin/player/player.h")):
            with self.subTest(source=source):
                sound = (ROOT / source).read_text()
                self.write(source, f'#include "{include}"\n' + sound)
                status, _, errors = self.check()
                self.write(source, sound)
                self.assertEqual(status, 1)
                self.assertIn(f"{source}:1: {room} includes {include}", errors)


if __name__ == "__main__":
    unittest.main()
