#!/usr/bin/env python3
"""Shows that a generation of the host is a column of the tables, and what make_sdk.py says to a table
that is wrong."""

import pathlib
import re
import shutil
import subprocess
import sys
import tempfile
import unittest

ROOT = pathlib.Path(__file__).resolve().parents[2]
MAKER = ROOT / "tools/building/make_sdk.py"
sys.path.insert(0, str(MAKER.parent))
import make_sdk  # noqa: E402

VALUES = re.compile(r"^( +(?:~?\d+|-|x|address|register|somewhere))+(?=  \w)")


class Copies(unittest.TestCase):
    def setUp(self):
        self.folder = pathlib.Path(tempfile.mkdtemp(prefix="karvel-test-"))
        self.addCleanup(shutil.rmtree, self.folder)
        self.sdk = self.folder / "sdk"
        shutil.copytree(ROOT / "sdk", self.sdk)
        self.output = self.folder / "made"

    def change(self, name, old, new):
        path = self.sdk / name
        text = path.read_text(encoding="utf-8")
        self.assertEqual(text.count(old), 1, f"{old} in {name}")
        path.write_text(text.replace(old, new), encoding="utf-8")

    def make(self, generation="2012"):
        return subprocess.run([sys.executable, MAKER, generation, self.output, self.sdk],
                              capture_output=True, text=True, check=False)

    def made(self, name):
        return (self.output / name).read_text(encoding="utf-8")


class AddedGeneration(Copies):
    """A made-up release, 2099: as that of 2024, but for a few slots."""

    SLOTS = {"  TimeValue GetTime()": "201", "  int GetCommandStackSize()": "540",
             "  CommandMode* GetCommandStackEntry(int entry)": "541"}

    def add_column(self):
        texts = self.sdk / "generations.txt"
        lines = texts.read_text(encoding="utf-8").split("\n")
        like = next(line for line in lines if line.startswith("generation")).split().index("2024")
        added = {"generation": "2099"}
        texts.write_text("\n".join(
            line if line.startswith("--") or not line
            else f"{line}  {added.get(line.split()[0], line.split()[like])}" for line in lines),
            encoding="utf-8")
        for path in (self.sdk / "table").rglob("*.txt"):
            rows = path.read_text(encoding="utf-8").split("\n")
            for index, row in enumerate(rows):
                values = VALUES.match(row)
                if values:
                    value = next((slot for declared, slot in self.SLOTS.items()
                                  if row.endswith(declared)), values[0].split()[like - 1])
                    rows[index] = f"{values[0]} {value:>4}{row[len(values[0]):]}"
                elif row.startswith("@only") and "2024" in row:
                    rows[index] = row + " 2099"
            path.write_text("\n".join(rows), encoding="utf-8")

    def test_is_a_column(self):
        self.add_column()
        result = self.make("2099")
        self.assertEqual((0, ""), (result.returncode, result.stderr))
        header = self.made("include/maxapi.h")
        self.assertIn("SDK_SLOT(Interface, 200)\n    virtual TimeValue GetTime() = 0;\n"
                      "    SDK_SLOT(Interface, 202)\n", header)
        self.assertIn("SDK_SLOT(Interface, 183)", header)
        self.assertIn("#define SDK_GENERATION 2099\n", self.made("include/sdk_layout.h"))
        self.assertIn("LIBRARY gup.dll\n", self.made("imports/gup.def"))

        # The compiler's own numbers are those of the column.
        shutil.copytree(self.output, self.folder / "kept")
        self.compare(0, "")
        # And it would tell: the slots of 2024 are not these.
        self.make("2024")
        self.compare(1, "Interface: slot 201: expected TimeValue Interface::GetTime(), "
                        "found void Interface::Interface_slot_201()")

    def compare(self, status, says):
        result = subprocess.run(
            [ROOT / "tools/checks/check_abi.py", "--quiet", "--generation", "2024",
             "--declarations", self.output / "include",
             "--table", self.folder / "kept" / "host_layout.txt"],
            capture_output=True, text=True, check=False)
        self.assertEqual(status, result.returncode, result.stderr)
        self.assertIn(says, result.stderr)


class WrongTables(Copies):
    def assert_says(self, place, says, generation="2012"):
        result = self.make(generation)
        self.assertEqual(1, result.returncode)
        self.assertEqual(f"make_sdk: {self.sdk}/{place}: {says}\n", result.stderr)
        self.assertFalse(self.output.exists())

    def line_of(self, name, text):
        lines = (self.sdk / name).read_text(encoding="utf-8").split("\n")
        return f"{name}:{next(number for number, line in enumerate(lines, 1) if text in line)}"

    def test_a_generation_that_is_none(self):
        names = make_sdk.Generation(self.sdk, "2012").names
        self.assert_says(self.line_of("generations.txt", "generation  "),
                         f"there is no generation '1999'; it can be {', '.join(names)}, or add a "
                         "column", "1999")

    def test_a_property_without_a_value(self):
        self.change("generations.txt", "\ntexts       narrow", "\ntexts")
        count = len(make_sdk.Generation(ROOT / "sdk", "2012").names)
        self.assert_says(self.line_of("generations.txt", "texts  "),
                         f"'texts' has {count - 1} values for {count} generations; give one for each")

    def test_a_row_without_a_value(self):
        name = "table/maxapi.h.txt"
        place = self.line_of(name, "TimeValue GetTime()")
        row = (self.sdk / name).read_text(encoding="utf-8").split("\n")[int(place[-3:].lstrip(":")) - 1]
        self.change(name, row, row.replace(" 181 ", " ", 1))
        count = len(make_sdk.Generation(ROOT / "sdk", "2012").names)
        self.assert_says(place, f"{count - 1} values for {count} generations; give one for each, '-' "
                                "where it is not there")

    def change_cell(self, name, declaration, old, new):
        """The value of 2012 in the row of a declaration."""
        place = self.line_of(name, declaration)
        row = (self.sdk / name).read_text(encoding="utf-8").split("\n")[int(place.split(":")[1]) - 1]
        self.change(name, row, row.replace(old, new, 1))
        return place

    def test_two_members_at_one_slot(self):
        other = self.line_of("table/maxapi.h.txt", "called  INode* GetSelNode(int i)").split(":")[1]
        place = self.change_cell("table/maxapi.h.txt", "int GetSelNodeCount()", " 123", " 122")
        self.assert_says(place, f"slot 122 of 'Interface' is taken by line {other}")

    def test_a_slot_behind_the_last(self):
        place = self.change_cell("table/maxapi.h.txt", "* GetMacroRecorder()", " 526", " 558")
        self.assert_says(place, "slot 558 is behind the last of 'Interface', which has 558")

    def test_a_slot_of_a_base(self):
        place = self.change_cell("table/maxapi.h.txt", "void RedrawViews(", "  29", "  17")
        self.assert_says(place, "slot 17 is IsEnabled of FPInterface; 'Interface' has slots of its own "
                                "from 28 on")

    def test_a_slot_that_a_plugins_table_would_lack(self):
        name = "table/gup.h.txt"
        self.change_cell(name, "own  void Stop()", "  11", "   -")
        self.assert_says(self.line_of(name, "class GUP :"),
                         "a plug-in derives from 'GUP', so each slot needs a row; 11 has none")

    def test_overloads_apart(self):
        name = "table/maxapi.h.txt"
        first = self.line_of(name, "void RedrawViews(").split(":")[1]
        self.change(name, "void ThawSelection()", "void RedrawViews(int)")
        self.assert_says(self.line_of(name, "void RedrawViews(int)"),
                         f"'RedrawViews' stands at line {first} as well; overloads of a class have "
                         "slots side by side")

    def test_a_name_without_its_import(self):
        name = "table/hold.h.txt"
        self.change(name, "    = ?Begin@Hold@@QEAAXXZ\n", "")
        self.assert_says(self.line_of(name, "void Begin()"),
                         "is taken by name and has none; write '= NAME' below, or '= -' where it is "
                         "only called")

    def test_a_kind_that_is_none(self):
        name = "table/cmdmode.h.txt"
        self.change(name, "called  int ID()", "asked  int ID()")
        self.assert_says(self.line_of(name, "asked"),
                         "'asked' is no kind of row; it can be "
                         f"{', '.join(make_sdk.KINDS + make_sdk.FACTS)}")

    def test_ends_that_are_missing(self):
        name = "table/cmdmode.h.txt"
        self.change(name, "\nend", "\n")
        self.assert_says(self.line_of(name, "class CommandMode :"),
                         "'CommandMode' does not end; add a line 'end'")

    def test_a_condition_without_an_end(self):
        name = "table/strbasic.h.txt"
        text = (self.sdk / name).read_text(encoding="utf-8")
        head, _, tail = text.rpartition("@end\n")
        (self.sdk / name).write_text(head + tail, encoding="utf-8")
        self.assert_says(f"{name}:{len((head + tail).split(chr(10)))}",
                         "an '@' has no '@end'; add one", "2024")

    def test_a_condition_on_no_generation(self):
        name = "table/strbasic.h.txt"
        self.change(name, "@until 2012", "@until 2011")
        names = make_sdk.Generation(self.sdk, "2012").names
        self.assert_says(self.line_of(name, "@until 2011"),
                         f"@until wants one of {', '.join(names)}, not '2011'")

    def test_no_tables(self):
        shutil.rmtree(self.sdk / "table")
        result = self.make()
        self.assertEqual(1, result.returncode)
        self.assertEqual(f"make_sdk: {self.sdk}/table: holds no table; give the folder that has "
                         "table/ in it\n", result.stderr)


if __name__ == "__main__":
    unittest.main()
