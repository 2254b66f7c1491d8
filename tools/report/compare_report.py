#!/usr/bin/python3
"""Holds reports from a running 3ds Max against what the plug-in assumes of it.

usage: compare_report.py FILE...

FILE is a KarvelReport.txt; docs/troubleshooting.md says how a user makes one, docs/report.md what is
in it. Several of one host count as one: what one of them contradicts is contradicted, what another
confirms is confirmed. Each assumption of tests/host/assumptions.txt is told as

    contradicted   the report has lines that are not so; with them, and with the places in the plug-in
                   that would have to change
    not told       the report has no line that could tell, as of an editor that was closed
    confirmed      the lines are so; when the host was no stand-in, their mark may become `report`

Names of actions are taken as an English 3ds Max has them.

Exit status: 0 nothing is contradicted, 1 something is, 2 a file cannot be read.
"""

import sys

import assumptions
from reports import Mistake, read_report

SHOWN_LINES = 3


def nesting(line, report):
    """The windows that a line's window lies in, as it is told below the line; may be empty."""
    window = report.window_of(line)
    around = [f"window {one.number_at(0)} class={one.values.get('class')}"
              for one in report.around(window)] if window else []
    return [f"lies in {', in '.join(around)}"] if around else []


def explain(assumption, lines, reports):
    """Why it is contradicted, and where the code would have to change."""
    for line in lines[:SHOWN_LINES]:
        report = reports[line.file]
        yield f"{line.file}:{line.number}: {report.in_code_page(line.text)}"
        yield from nesting(line, report)
    if len(lines) > SHOWN_LINES:
        more = len(lines) - SHOWN_LINES
        yield f"and {more} more line{'s' if more > 1 else ''}"
    yield f"should be: {assumption.condition.partition(' : ')[2]}"
    yield "would have to change: " + ", ".join(
        f"{word} in {file}" for file, word in assumption.places)


def told_of(state, groups, verdicts, reports):
    """The lines of the output about all assumptions of one state."""
    found = [(group, row) for group in groups for row in group.assumptions
             if verdicts[row.name].state == state]
    yield f"{state}: {len(found)}"
    heading = None
    for group, row in found:
        if group.title != heading:
            heading = group.title
            yield f"  {heading}"
        yield f"    {row.name} ({row.mark}): {row.what}"
        if state == assumptions.CONTRADICTED:
            for text in explain(row, verdicts[row.name].lines, reports):
                yield f"        {text}"
    yield ""


def main(files):
    if not files or any(file.startswith("-") for file in files):
        print(__doc__.strip(), file=sys.stderr)
        return 2
    try:
        groups = assumptions.read_groups()
        reports = {file: read_report(file) for file in files}
    except Mistake as mistake:
        print(mistake, file=sys.stderr)
        return 2
    verdicts = {row.name: assumptions.judge_all(row, reports.values())
                for group in groups for row in group.assumptions}
    for state in (assumptions.CONTRADICTED, assumptions.NOT_TOLD, assumptions.CONFIRMED):
        print("\n".join(told_of(state, groups, verdicts, reports)))
    contradicted = any(verdict.state == assumptions.CONTRADICTED for verdict in verdicts.values())
    return 1 if contradicted else 0


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))
