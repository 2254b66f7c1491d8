#!/usr/bin/env python3
"""run_tidy.py finds in sources that it reads as one text what it finds in a single one."""

import json
import pathlib
import runpy
import shutil
import tempfile
import unittest

ROOT = pathlib.Path(__file__).resolve().parent.parent.parent
DIVISION = "int Divide{0}(int a) {{\n    int zero = 0;\n    return a > 3 ? a / zero : 0;\n}}\n"
SEMICOLON = "int Compare(int a) {\n    if (a > 3);\n    return a;\n}\n"


class Together(unittest.TestCase):
    def setUp(self):
        (ROOT / "build").mkdir(exist_ok=True)
        self.place = pathlib.Path(tempfile.mkdtemp(prefix="karvel-test-", dir=ROOT / "build"))
        self.addCleanup(shutil.rmtree, self.place)
        self.folder = self.place / "navigation"
        self.folder.mkdir()
        self.tidy = runpy.run_path(str(ROOT / "tools/checks/run_tidy.py"))
        self.tidy["check_text"].__globals__["KEPT"] = self.place / "kept"
        (self.place / "kept").mkdir()

    def found_in(self, **texts):
        sources = []
        for name, text in texts.items():
            sources.append(self.folder / f"{name}.cpp")
            sources[-1].write_text(text, encoding="utf-8")
        return "".join(self.tidy["check_text"](text, b"")
                       for text in self.tidy["texts_of"](("msvc", ["-std=c++20"], sources), []))

    def test_sound_sources(self):
        self.assertEqual("", self.found_in(one="int F() { return 1; }\n", other="int G();\n"))

    def test_what_the_analyzer_follows_through_a_function(self):
        found = self.found_in(one=DIVISION.format(1), other=DIVISION.format(2))
        for name in ("one", "other"):
            self.assertRegex(found, rf"{name}\.cpp:3:\d+: error: Division by zero")

    def test_what_a_pattern_shows(self):
        found = self.found_in(one="int F() { return 1; }\n", other=SEMICOLON)
        self.assertIn("other.cpp:2:", found)
        self.assertIn("bugprone-suspicious-semicolon", found)

    def test_a_source_that_includes_another(self):
        found = self.found_in(one='#include "other.cpp"\n', other="#pragma once\nint F();\n")
        self.assertIn("one.cpp:1:", found)
        self.assertNotIn("UnifiedSource", found)

    def test_what_stands_in_a_header(self):
        (self.folder / "both.h").write_text("#pragma once\ninline " + SEMICOLON, encoding="utf-8")
        found = self.found_in(one='#include "both.h"\n', other='#include "both.h"\nint G();\n')
        self.assertIn("both.h:3:", found)

    def test_sources_whose_names_meet_are_read_one_by_one(self):
        found = self.found_in(one="static int Same() { return 1; }\nint A() { return Same(); }\n",
                              other="static int Same() { return 2; }\nint B() { return Same(); }\n" +
                              SEMICOLON)
        self.assertIn("other.cpp:4:", found)

    def test_a_source_that_was_sound_is_not_read_again_until_it_changes(self):
        self.assertEqual("", self.found_in(one="int F();\n", other="int G();\n"))
        self.tidy["check_text"].__globals__["TIDY"] = "no-such-program"
        self.assertEqual("", self.found_in(one="int F();\n", other="int G();\n"))
        with self.assertRaises(FileNotFoundError):
            self.found_in(one="int F();\n", other="long G();\n")

    def test_sources_that_cmake_has_put_together_are_known_by_their_own_names(self):
        together = self.place / "build" / "gnu" / "benchmarks" / "x.dir" / "Unity" / "unity_0_cxx.cxx"
        together.parent.mkdir(parents=True)
        names = [str(self.place / "benchmarks" / name) for name in ("one.cpp", "other.cpp", "third.cpp")]
        together.write_text("/* made */\n" + "".join(f'#include "{name}"\n' for name in names[:2]),
                            encoding="utf-8")
        database = together.parents[3] / "compile_commands.json"
        database.write_text(json.dumps([
            {"file": str(file), "command": f"g++ -O1 -c {file}"} for file in (together, names[2])]),
            encoding="utf-8")
        self.tidy["read_groups"].__globals__["ROOT"] = self.place
        (preset, flags, sources), = self.tidy["read_groups"]([])
        self.assertEqual((["-O1"], names), (flags, list(map(str, sources))))


if __name__ == "__main__":
    unittest.main()
