"""The document about the random walks lists each exemption that the checker makes, with the reason
that the checker itself gives."""
import pathlib
import re
import unittest

ROOT = pathlib.Path(__file__).resolve().parents[2]


def exemptions_of_the_checker():
    source = (ROOT / "tests/walks/exemptions.cpp").read_text(encoding="utf-8")
    table = re.search(r"constexpr Text kTexts\[\] = \{(.*?)\n\};", source, re.DOTALL).group(1)
    rows = re.findall(r'\{((?:\s*"(?:[^"\\]|\\.)*"\s*,?)+)\}', table)
    texts = []
    for row in rows:
        # Neighbouring literals are one text.
        row = re.sub(r'"\s+"', "", row)
        texts.append(tuple(re.findall(r'"((?:[^"\\]|\\.)*)"', row)))
    return texts


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
        self.assertEqual([row[:3] for row in rows_of_the_document()], checker)

    def test_each_says_what_is_not_checked(self):
        for row in rows_of_the_document():
            self.assertTrue(row[3], row[0])


if __name__ == "__main__":
    unittest.main()
