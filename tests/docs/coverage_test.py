#!/usr/bin/env python3
"""The tables under "What covers what" of docs/testing.md and the tests that they name agree.

    coverage_test.py REPOSITORY
"""

import pathlib
import re
import sys
import unittest

ROOT = None
PAGE = "docs/testing.md"
PART = "## What covers what"


def rows_of(text):
    """(line number, heading, behaviour, cell of tests) of each row of each table of the part."""
    rows, heading, inside = [], "", False
    for number, line in enumerate(text.split("\n"), 1):
        if line.startswith("## "):
            inside = line == PART
        elif line.startswith("### "):
            heading = line[4:]
        elif inside and line.startswith("|"):
            cells = [cell.strip() for cell in line.strip().strip("|").split("|")]
            if cells[0] == "behaviour" or set(line) == {"|", "-"}:
                continue
            rows.append((number, heading, *(cells + ["", ""])[:2]))
    return rows


def names_in(cell):
    return re.findall(r"`([^`]+)`", cell)


def scenarios(root):
    folder = root / "tests/scenarios"
    return {path.relative_to(folder).with_suffix("").as_posix() for path in folder.glob("*/*.scn")}


def other_tests(root):
    """Cases of GoogleTest as Suite.Case, of Python's unittest as file_test.test_name."""
    found = set()
    for path in (root / "tests").rglob("*_test.cpp"):
        source = path.read_text(encoding="utf-8")
        found |= {".".join(names) for names in
                  re.findall(r"^TEST(?:_F|_P)?\((\w+),\s*(\w+)\)", source, re.M)}
    for path in (root / "tests").rglob("*_test.py"):
        source = path.read_text(encoding="utf-8")
        found |= {f"{path.stem}.{name}" for name in re.findall(r"def (test_\w+)\(", source)}
    return found


def problems_of(text, known_scenarios, known_tests):
    """One line for each thing that is wrong with the table."""
    problems, named, seen = [], set(), {}
    for number, heading, behaviour, tests in rows_of(text):
        names = names_in(tests)
        if not behaviour:
            problems.append(f"{PAGE}:{number}: the row says no behaviour")
        if not names:
            problems.append(f"{PAGE}:{number}: nothing covers \"{behaviour}\"")
        if re.sub(r"`[^`]+`|, ", "", tests):
            problems.append(f"{PAGE}:{number}: names stand in backquotes with \", \" between them")
        if len(set(names)) < len(names):
            problems.append(f"{PAGE}:{number}: a name stands twice in the row")
        for name in names:
            if name not in (known_scenarios if "/" in name else known_tests):
                problems.append(f"{PAGE}:{number}: there is no {name}")
        earlier = seen.setdefault((heading, behaviour), number)
        if earlier != number:
            problems.append(f"{PAGE}:{number}: the row of line {earlier} again")
        named.update(names)
    for name in sorted(known_scenarios - named):
        problems.append(f"tests/scenarios/{name}.scn: no row of {PAGE} names it")
    return problems


class Table(unittest.TestCase):
    maxDiff = None

    def test_every_name_exists_and_every_scenario_is_named(self):
        text = (ROOT / PAGE).read_text(encoding="utf-8")
        self.assertEqual([], problems_of(text, scenarios(ROOT), other_tests(ROOT)))

    def test_there_is_something_to_compare(self):
        self.assertGreater(len(rows_of((ROOT / PAGE).read_text(encoding="utf-8"))), 300)
        self.assertGreater(len(scenarios(ROOT)), 700)
        self.assertGreater(len(other_tests(ROOT)), 200)


class TheCheckItself(unittest.TestCase):
    """Each mistake that a table can have is found in one that has it."""

    HEAD = "### Area\n| behaviour | covered by |\n|---|---|\n"
    SOUND = PART + "\n" + HEAD + "| a `key` | `area/one`, `Suite.Case` |\n| b | `area/two` |\n"
    SCENARIOS = {"area/one", "area/two"}
    TESTS = {"Suite.Case"}

    def problems(self, text):
        return problems_of(text, self.SCENARIOS, self.TESTS)

    def one_problem(self, changed, said):
        self.assertNotEqual(self.SOUND, changed)
        problems = self.problems(changed)
        self.assertEqual(1, len(problems), problems)
        self.assertIn(said, problems[0])

    def test_sound_table(self):
        self.assertEqual([], self.problems(self.SOUND))
        self.assertEqual(2, len(rows_of(self.SOUND)))

    def test_tables_of_other_parts_do_not_count(self):
        other = "## Levels\n| level | label |\n|---|---|\n| one | `two` |\n"
        self.assertEqual([], self.problems(other + self.SOUND + other))

    def test_scenario_that_is_not_there(self):
        self.one_problem(self.SOUND + "| c | `area/three` |\n", f"{PAGE}:7: there is no area/three")

    def test_case_that_is_not_there(self):
        self.one_problem(self.SOUND.replace("Suite.Case", "Suite.Cast"), "there is no Suite.Cast")

    def test_scenario_that_no_row_names(self):
        self.one_problem(self.SOUND.replace("`area/two`", "`area/one`"),
                         "tests/scenarios/area/two.scn: no row")

    def test_empty_cells(self):
        self.one_problem(self.SOUND + "| c | |\n", "nothing covers \"c\"")
        self.one_problem(self.SOUND + "| | `area/one` |\n", "says no behaviour")
        self.assertEqual(2, len(self.problems(self.SOUND + "| | |\n")))

    def test_words_instead_of_a_name(self):
        self.one_problem(self.SOUND.replace("`area/two`", "`area/two` and more"), "backquotes")

    def test_row_given_twice(self):
        self.one_problem(self.SOUND + "| b | `area/one` |\n", "the row of line 6 again")
        self.assertEqual([], self.problems(self.SOUND + self.HEAD.replace("Area", "Other") +
                                           "| b | `area/one` |\n"))

    def test_name_given_twice(self):
        self.one_problem(self.SOUND.replace("`area/two`", "`area/two`, `area/two`"), "twice")


if __name__ == "__main__":
    if len(sys.argv) < 2:
        sys.exit(__doc__.strip())
    ROOT = pathlib.Path(sys.argv.pop(1)).resolve()
    unittest.main()
