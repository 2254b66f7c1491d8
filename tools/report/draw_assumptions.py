#!/usr/bin/python3
"""Shows what is assumed of 3ds Max on the page of the host's calls.

usage: draw_assumptions.py [--check] [PAGE]

Writes the table of tests/host/assumptions.txt into docs/host-calls.md, between the marks that are there
for it; with --check changes nothing.

Exit status: 0 all is well, 1 the page shows other assumptions, 2 the command line or a file cannot be
read.
"""

import pathlib
import sys

import assumptions
from reports import Mistake

PAGE = assumptions.ROOT / "docs" / "host-calls.md"
BEGIN, END = "<!-- assumptions: tools/report/draw_assumptions.py -->\n", "<!-- end of assumptions -->\n"
MARKS = {"report": "confirmed by a report", "sdk": "SDK", "documentation": "documented",
         "unconfirmed": "not confirmed"}


def drawing(groups):
    lines = ["", "| assumed | where it is relied on | mark |", "|---|---|---|"]
    for group in groups:
        lines.append(f"| **{group.title}** | | |")
        for row in group.assumptions:
            places = ", ".join(f"`{file}`: `{word}`" for file, word in row.places)
            lines.append(f"| {row.what} | {places} | {MARKS[row.mark]} |")
    return "\n".join([*lines, "", ""])


def draw(page, check):
    try:
        text = page.read_text(encoding="utf-8")
    except OSError as error:
        raise Mistake(f"{page}: {error.strerror}; it shows the assumptions") from error
    before, _, rest = text.partition(BEGIN)
    _, end, after = rest.partition(END)
    if not end:
        raise Mistake(f"{page}: '{BEGIN.strip()}' and '{END.strip()}' are not there; the assumptions "
                      "stand between them")
    drawn = before + BEGIN + drawing(assumptions.read_groups()) + END + after
    if check and drawn != text:
        print(f"{page}: the assumptions are not those of tests/host/assumptions.txt; run "
              "tools/report/draw_assumptions.py", file=sys.stderr)
        return 1
    if not check:
        page.write_text(drawn, encoding="utf-8")
    return 0


def main(arguments):
    check = "--check" in arguments
    pages = [argument for argument in arguments if argument != "--check"]
    if len(pages) > 1 or any(page.startswith("-") for page in pages):
        print("draw_assumptions.py: --check and a page, see the head of the file", file=sys.stderr)
        return 2
    try:
        return draw(pathlib.Path(pages[0]) if pages else PAGE, check)
    except Mistake as mistake:
        print(f"draw_assumptions.py: {mistake}", file=sys.stderr)
        return 2


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))
