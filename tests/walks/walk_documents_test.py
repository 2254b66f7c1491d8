"""The document about the random walks lists each exemption that the checker makes, with its reason."""
import pathlib
import re
import unittest

ROOT = pathlib.Path(__file__).resolve().parents[2]


def exemptions_of_the_checker():
    source = (ROOT / "tests/walks/exemptions.inc").read_text(encoding="utf-8")
    return re.findall(r'^EXEMPTION\(k\w+, "(.+)"\)$', source, re.MULTILINE)


def rows_of_the_document():
    page = (ROOT / "docs/walks.md").read_text(encoding="utf-8")
    section = page.split("## Exemptions", 1)[1].split("\n## ", 1)[0]
    rows = []
    for line in section.splitlines():
        cells = [cell.strip() for cell in line.strip().strip("|").split("|")]
        if line.startswith("|") and len(cells) == 4 and not set(cells[0]) <= {"-"}:
            rows.append(tuple(cells))
    return rows[1:]


class Exemptions(unittest.TestCase):
    def test_each_stands_in_the_document(self):
        checker = exemptions_of_the_checker()
        self.assertGreater(len(checker), 10)
        self.assertEqual([row[0] for row in rows_of_the_document()], checker)

    def test_each_has_its_situation_its_reason_and_what_is_not_checked(self):
        for row in rows_of_the_document():
            self.assertTrue(all(row), row[0])


if __name__ == "__main__":
    unittest.main()
