#!/usr/bin/python3
"""What the tests execute of the plug-in: lines and branches of each source, and whether it is enough.

usage: report_coverage.py REPORT.json EXCEPTIONS

REPORT.json is gcovr's. EXCEPTIONS lists lines that no test can execute, one a paragraph: the file
and the line's text, and below, indented, why. An exception that a test executes after all is a
mistake, and so is one for a line that is not there.

Exit status: 0 enough, 1 too little or an exception that is wrong, 2 a file that cannot be read.
"""

import collections
import json
import pathlib
import sys

ROOT = pathlib.Path(__file__).resolve().parents[2]
LINE_AIM = 100.0
BRANCH_AIM = 95.0


class Mistake(Exception):
    """Something that the user can put right."""


def read_exceptions(path):
    """(file, text of the line) -> number of the line that names it."""
    found, named = {}, None
    for number, line in enumerate(path.read_text().splitlines(), 1):
        if not line.strip() or line.startswith("#"):
            continue
        if line[0].isspace():
            if named is None:
                raise Mistake(f"{path}:{number}: a reason without a line above it")
            found[named] = (found[named][0], True)
            continue
        file, _, text = line.partition(": ")
        named = (file, " ".join(text.split()))
        if not (ROOT / file).is_file() or not named[1]:
            raise Mistake(f"{path}:{number}: write it as FILE: TEXT OF THE LINE")
        found[named] = (number, False)
    for number, has_reason in found.values():
        if not has_reason:
            raise Mistake(f"{path}:{number}: no reason is given, indent one below the line")
    return {named: number for named, (number, _) in found.items()}


def percent(part, whole):
    return 100.0 * part / whole if whole else 100.0


def ranges(numbers):
    """1, 2, 3, 7 as "1-3, 7"."""
    parts = []
    for number in numbers:
        if parts and number == parts[-1][1] + 1:
            parts[-1][1] = number
        else:
            parts.append([number, number])
    return ", ".join(str(a) if a == b else f"{a}-{b}" for a, b in parts)


def examine(report, exceptions):
    """Rows of the table, and the exceptions that no line has asked for."""
    rows, unused = [], dict(exceptions)
    for of_file in sorted(report["files"], key=lambda entry: entry["file"]):
        file = of_file["file"]
        source = (ROOT / file).read_text().split("\n")
        lines, executed, missing, excepted = 0, 0, [], 0
        branches, taken, half = 0, 0, []
        for line in of_file["lines"]:
            if line.get("gcovr/noncode"):
                continue
            number = line["line_number"]
            key = (file, " ".join(source[number - 1].split()))
            if line["count"] == 0 and key in exceptions:
                unused.pop(key, None)
                excepted += 1
                continue
            lines += 1
            executed += line["count"] > 0
            if line["count"] == 0:
                missing.append(number)
            branches += len(line["branches"])
            here = sum(branch["count"] > 0 for branch in line["branches"])
            taken += here
            if line["count"] and here < len(line["branches"]):
                half.append(number)
        rows.append((file, lines, executed, missing, excepted, branches, taken, half))
    return rows, unused


def main():
    if len(sys.argv) != 3:
        print(__doc__.strip(), file=sys.stderr)
        return 2
    list_file = pathlib.Path(sys.argv[2])
    exceptions = read_exceptions(list_file)
    rows, unused = examine(json.loads(pathlib.Path(sys.argv[1]).read_text()), exceptions)
    width = max(len(row[0]) for row in rows)
    print(f"{'':{width}}   lines      %  excepted  branches      %  not executed; not both ways")
    total = collections.Counter()
    for file, lines, executed, missing, excepted, branches, taken, half in rows:
        total.update(lines=lines, executed=executed, excepted=excepted, branches=branches,
                     taken=taken)
        print(f"{file:{width}}  {lines:6} {percent(executed, lines):6.1f}  {excepted:8}  "
              f"{branches:8} {percent(taken, branches):6.1f}  {ranges(missing) or '-'}; "
              f"{ranges(half) or '-'}".rstrip("; -"))
    of_lines = percent(total["executed"], total["lines"])
    of_branches = percent(total["taken"], total["branches"])
    print(f"{'all':{width}}  {total['lines']:6} {of_lines:6.1f}  {total['excepted']:8}  "
          f"{total['branches']:8} {of_branches:6.1f}")
    good = True
    for (file, text), number in unused.items():
        print(f"{list_file}:{number}: {file} has no such line or a test executes it, take the entry "
              "out", file=sys.stderr)
        good = False
    if of_lines < LINE_AIM or of_branches < BRANCH_AIM:
        print(f"coverage: {of_lines:.2f} % of lines and {of_branches:.2f} % of branches executed; "
              f"{LINE_AIM:.0f} % and {BRANCH_AIM:.0f} % are wanted, the table names the lines",
              file=sys.stderr)
        good = False
    return 0 if good else 1


if __name__ == "__main__":
    try:
        sys.exit(main())
    except Mistake as mistake:
        print(f"coverage: {mistake}", file=sys.stderr)
        sys.exit(2)
    except (OSError, ValueError, KeyError) as error:
        print(f"coverage: {error}", file=sys.stderr)
        sys.exit(2)
