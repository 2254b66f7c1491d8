#!/usr/bin/env python3
"""Lists all scenarios by the keys that their comments begin with, then the cases of all other tests by
their files.

    list_tests.py REPOSITORY [OUTPUT]
"""

import collections
import pathlib
import re
import sys

# "[press 4, gesture moves 1+2]" and a rule: subjects of docs/testing.md, with the numbers of steps.
KEYED = re.compile(r"^# \[([a-z][^\]]*)\] (.+(?:\n# (?!\[).+)*)", re.M)
KEY = re.compile(r"([a-z ]+?)(?: ([\d+-]+))?$")


def subjects(root):
    """The subjects in the order of their table."""
    page = (root / "docs/testing.md").read_text(encoding="utf-8")
    part = page[page.index("## What covers what"):]
    return [row for row in re.findall(r"^\| ([a-z ]+) \|", part, re.M) if row != "key"]


def scenarios(root):
    """(path under tests/scenarios, keys, rule) of each keyed comment; no keys where none begins a file."""
    folder = root / "tests/scenarios"
    for path in sorted(folder.rglob("*.scn")):
        name, text = path.relative_to(folder).as_posix(), path.read_text(encoding="utf-8")
        if not KEYED.match(text):
            yield name, [], ""
        for keys, rule in KEYED.findall(text):
            yield name, keys.split(", "), rule.replace("\n# ", " ")


def subject_of(key, known):
    """The longest known subject that the key begins with; none is None."""
    fitting = [name for name in known if key == name or key.startswith(name + " ")]
    return max(fitting, key=len, default=None)


def other_tests(root):
    """File -> its cases."""
    found = collections.defaultdict(list)
    for path in sorted((root / "tests").rglob("*_test.*")):
        pattern = {".cpp": r"^TEST(?:_F|_P)?\((\w+),\s*(\w+)\)", ".py": r"def ()(test_\w+)\("}
        for names in re.findall(pattern.get(path.suffix, r"$.()()"), path.read_text("utf-8"), re.M):
            found[path.relative_to(root).as_posix()].append(".".join(filter(None, names)))
    return found


def steps(key):
    return [int(number) for number in re.findall(r"\d+", key)]


def page(root):
    known = subjects(root)
    by_subject = collections.defaultdict(list)
    for name, keys, rule in scenarios(root):
        for key in keys:
            by_subject[subject_of(key, known)].append((key.rstrip("0123456789+-"), steps(key), key, name, rule))
    lines = ["# What covers what"]
    for subject in known:
        lines += ["", f"## {subject}", "", "| key | rule | scenario |", "|---|---|---|"]
        lines += [f"| {key} | {rule} | `{name}` |"
                  for _, _, key, name, rule in sorted(by_subject[subject])]
    lines += ["", "## Other tests", "", "| file | cases |", "|---|---|"]
    lines += [f"| {file} | {', '.join(cases)} |" for file, cases in other_tests(root).items()]
    return "\n".join(lines) + "\n"


if __name__ == "__main__":
    if len(sys.argv) not in (2, 3):
        sys.exit(__doc__.strip())
    text = page(pathlib.Path(sys.argv[1]))
    if len(sys.argv) == 3:
        pathlib.Path(sys.argv[2]).write_text(text, encoding="utf-8")
    else:
        sys.stdout.write(text)
