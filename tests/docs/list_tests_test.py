#!/usr/bin/env python3
"""Every scenario says by its keys what it is about, and the list of tests has them all.

    list_tests_test.py REPOSITORY
"""

import pathlib
import sys
import tempfile
import unittest

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parent))
import list_tests  # noqa: E402

ROOT = None


def problems_of(root):
    """One line for each scenario without a key, for each unknown subject and each unused one."""
    known, used, problems = list_tests.subjects(root), set(), []
    for name, keys, _ in list_tests.scenarios(root):
        if not keys:
            problems.append(f"tests/scenarios/{name}:1: the first comment has no key, begin it with "
                            "one such as [press 4]; docs/testing.md has the subjects")
        if len(name.split("/")) != 3:
            problems.append(f"tests/scenarios/{name}: put it into the folder of an area, in a room "
                            "of the plug-in")
        for key in keys:
            subject = list_tests.subject_of(key, known)
            used.add(subject)
            if subject is None:
                problems.append(f"tests/scenarios/{name}:1: no subject of docs/testing.md begins "
                                f"[{key}]")
    problems += [f"docs/testing.md: no scenario has the key {subject}"
                 for subject in known if subject not in used]
    return problems


class Repository(unittest.TestCase):
    maxDiff = None

    def test_every_scenario_has_keys_and_every_subject_a_scenario(self):
        self.assertEqual([], problems_of(ROOT))

    def test_the_list_has_every_scenario_and_every_file_of_cases(self):
        page = list_tests.page(ROOT)
        for path in (ROOT / "tests/scenarios").rglob("*.scn"):
            self.assertIn(path.relative_to(ROOT / "tests/scenarios").as_posix(), page)
        self.assertIn("| tests/docs/list_tests_test.py | test_every_scenario_has_keys", page)
        for path in (ROOT / "tests").rglob("*_test.cpp"):
            self.assertIn(f"| {path.relative_to(ROOT).as_posix()} | ", page)


class TheCheckItself(unittest.TestCase):
    """Each mistake is found in a small repository that has it."""

    def setUp(self):
        place = tempfile.TemporaryDirectory()
        self.addCleanup(place.cleanup)
        self.root = pathlib.Path(place.name)
        self.write("docs/testing.md", "| other | x |\n## What covers what\n| key | what |\n"
                   "|---|---|\n| press | x |\n| press moves | x |\n")
        self.write("tests/scenarios/hooks/mice/one.scn", "# [press 3, press moves 1+2] Text that\n"
                   "# goes on.\nstart\n# [press 5] A part.\n# [press] Another.\nup left\n# none\n")

    def write(self, name, text):
        path = self.root / name
        path.parent.mkdir(parents=True, exist_ok=True)
        path.write_text(text)

    def one_problem(self, said):
        problems = problems_of(self.root)
        self.assertEqual(1, len(problems), problems)
        self.assertIn(said, problems[0])

    def test_sound(self):
        self.assertEqual([], problems_of(self.root))
        page = list_tests.page(self.root)
        self.assertIn("## press\n\n| key | rule | scenario |\n|---|---|---|\n"
                      "| press | Another. | `hooks/mice/one.scn` |\n"
                      "| press 3 | Text that goes on. | `hooks/mice/one.scn` |\n", page)
        self.assertIn("| press moves 1+2 | Text that", page)
        self.assertIn("| press 5 | A part. | `hooks/mice/one.scn` |\n", page)

    def test_steps_are_sorted_as_numbers(self):
        self.write("tests/scenarios/hooks/mice/a.scn", "# [press 10] Later.\n")
        page = list_tests.page(self.root)
        self.assertLess(page.index("press 3"), page.index("press 10"))

    def test_scenario_without_a_key(self):
        self.write("tests/scenarios/hooks/mice/two.scn", "# Text.\nstart\n")
        self.one_problem("hooks/mice/two.scn:1: the first comment has no key")

    def test_unknown_subject(self):
        self.write("tests/scenarios/hooks/mice/two.scn", "# [pressure] Text.\n")
        self.one_problem("begins [pressure]")

    def test_subject_without_a_scenario(self):
        self.write("docs/testing.md", "## What covers what\n| press | x |\n| press moves | x |\n"
                   "| release | x |\n")
        self.one_problem("no scenario has the key release")

    def test_scenario_outside_of_an_area(self):
        self.write("tests/scenarios/hooks/two.scn", "# [press] Text.\n")
        self.one_problem("hooks/two.scn: put it into")


if __name__ == "__main__":
    if len(sys.argv) < 2:
        sys.exit(__doc__.strip())
    ROOT = pathlib.Path(sys.argv.pop(1)).resolve()
    unittest.main()
