"""The table of what is assumed of 3ds Max, and what a report says about each line of it.

tests/host/assumptions.txt explains its lines.
"""

import collections
import pathlib
import re

from reports import NUMBER, TEXT, Mistake, number_of, unquoted

ROOT = pathlib.Path(__file__).resolve().parents[2]
TABLE = ROOT / "tests" / "host" / "assumptions.txt"
MARKS = ("report", "sdk", "documentation", "unconfirmed")
RELATIONS = ("is", "in", "under", "has", "holds", "exists")

CONFIRMED, CONTRADICTED, NOT_TOLD = "confirmed", "contradicted", "not told"

RANGE = r"(?:0x[0-9a-fA-F]+|-?\d+)?\.\.(?:0x[0-9a-fA-F]+|-?\d+)?"
CHOICE = rf"(?:{TEXT}|{RANGE}|\$\w+|[^\s\"|]+)"
CHOICES = rf"{CHOICE}(?:\|{CHOICE})*"
CONDITION_WORD = re.compile(rf"\s*(?:(\w+)(!=|=|~)({CHOICES})|({CHOICES}))(?=\s|$)")

Assumption = collections.namedtuple("Assumption", "name mark lines demand condition places what")
Group = collections.namedtuple("Group", "title assumptions")
Verdict = collections.namedtuple("Verdict", "state lines")


# Yes, no, or None: the report leaves out what it would take to know.

def every(answers):
    known = True
    for answer in answers:
        if answer is False:
            return False
        known = known and answer is not None
    return True if known else None


def some(answers):
    known = True
    for answer in answers:
        if answer:
            return True
        known = known and answer is not None
    return False if known else None


class Choice:
    """One of the values that a test allows."""

    def __init__(self, word, anywhere):
        self.name = word if word.startswith("$") else None
        self.numbers = None
        if re.fullmatch(RANGE, word):
            self.numbers = [number_of(end) for end in word.split("..")]
        elif NUMBER.match(word):
            self.numbers = [number_of(word)] * 2
        text = ".*".join(re.escape(part) for part in unquoted(word).split("*"))
        pattern = re.compile(text, re.DOTALL | (re.IGNORECASE if anywhere else 0))
        self.meets = pattern.search if anywhere else pattern.fullmatch

    def allows(self, value, names):
        if self.name:
            return names.setdefault(self.name, value) == value
        if self.numbers:
            number = value if isinstance(value, int) else number_of(value)
            low, high = self.numbers
            return number is not None and (low is None or low <= number) and \
                (high is None or number <= high)
        return self.meets(unquoted(str(value))) is not None


class Test:
    def __init__(self, key, sign, choices):
        self.key, self.sign = key, sign
        self.choices = [Choice(word, sign == "~") for word in re.findall(CHOICE, choices)]

    def of(self, value, names):
        allowed = any(choice.allows(value, names) for choice in self.choices)
        return allowed != (self.sign == "!=")


class Description:
    """A noun with its numbers, tests of values, and relations to other lines."""

    def __init__(self):
        self.noun, self.numbers, self.tests, self.relations = None, [], [], []

    def fits(self, line, report, names):
        if len(line.arguments) < len(self.numbers):
            return False
        return every(self.answers(line, report, names))

    def answers(self, line, report, names):
        for test, argument in zip(self.numbers, line.arguments):
            yield test.of(argument, names)
        for test in self.tests:
            value = line.values.get(test.key)
            yield None if value is None else test.of(value, names)
        for relation, other in self.relations:
            yield self.relates(relation, other, line, report, names)

    def relates(self, relation, other, line, report, names):
        if relation == "exists":
            return some(other.fits(one, report, names) for one in report.of_noun(other.noun))
        window = report.window_of(line)
        if not window:
            return False
        parent = report.parent_of(window)
        candidates = {"is": lambda: [window],
                      "in": lambda: [parent] if parent else [],
                      "under": lambda: report.around(window),
                      "has": lambda: report.children.get(window.number_at(0), []),
                      "holds": lambda: report.within(window)}[relation]()
        return some(other.fits(one, report, names) for one in candidates)


def condition_words(text):
    """(key, sign, choices) for tests, ("", "", word) for other words."""
    at, words = 0, []
    while at < len(text.rstrip()):
        found = CONDITION_WORD.match(text, at)
        if not found:
            raise ValueError(f"'{text[at:].strip()}' is no word, number or test")
        words.append((found[1], found[2], found[3]) if found[1] else ("", "", found[4]))
        at = found.end()
    return words


def read_description(text, noun_first):
    first = innermost = Description()
    wants_noun, around = noun_first, ""
    for key, sign, word in condition_words(text):
        if wants_noun:
            if key or not word.isalpha():
                raise ValueError(f"a noun is missing in '{text.strip()}'")
            if around not in ("", "exists") and word != "window":
                raise ValueError(f"'{around}' leads to a window, not to '{word}'")
            innermost.noun, wants_noun = word, False
        elif key:
            innermost.tests.append(Test(key, sign, word))
        elif word in RELATIONS:
            inner = Description()
            innermost.relations.append((word, inner))
            innermost, wants_noun, around = inner, True, word
        elif innermost.noun and not innermost.tests:
            innermost.numbers.append(Test("", "=", word))
        else:
            raise ValueError(f"'{word}' is none of {', '.join(RELATIONS)}")
    if wants_noun:
        raise ValueError(f"a noun is missing at the end of '{text.strip()}'")
    return first


def read_condition(text):
    lines, colon, demand = text.partition(" : ")
    if not colon:
        raise ValueError("the condition is 'lines : demand'")
    return read_description(lines, True), read_description(demand, False)


def read_row(line):
    columns = [column.strip() for column in line.split(" | ")]
    if len(columns) != 5 or not all(columns):
        raise ValueError("a line is 'name | mark | condition | where | what'")
    name, mark, condition, where, what = columns
    if mark not in MARKS:
        raise ValueError(f"the mark '{mark}' is none of {', '.join(MARKS)}")
    places = [place.rsplit(" ", 1) for place in where.split(", ")]
    if any(len(place) != 2 for place in places):
        raise ValueError("where is 'file word, file word'")
    lines, demand = read_condition(condition)
    return Assumption(name, mark, lines, demand, condition, places, what)


def read_groups(table=TABLE):
    groups, names = [], set()
    try:
        rows = table.read_text(encoding="utf-8").splitlines()
    except OSError as error:
        raise Mistake(f"{table}: {error.strerror}; it lists what is assumed") from error
    for number, line in enumerate(rows, 1):
        if not line.strip() or line.startswith("#"):
            continue
        try:
            if line.startswith("["):
                groups.append(Group(line.strip("[]"), []))
                continue
            row = read_row(line)
            if row.name in names:
                raise ValueError(f"there is a line {row.name} already")
            if not groups:
                raise ValueError("a line in brackets has to head the first ones")
        except ValueError as error:
            raise Mistake(f"{table}:{number}: {error}; the head of the file says how lines "
                          "are") from error
        names.add(row.name)
        groups[-1].assumptions.append(row)
    return groups


def judge(assumption, report):
    """What a report says about an assumption, with the lines that say it."""
    wrong, right = [], []
    for line in report.of_noun(assumption.lines.noun):
        names = {}
        if assumption.lines.fits(line, report, names) is not True:
            continue
        met = assumption.demand.fits(line, report, names)
        if met is False:
            wrong.append(line)
        elif met:
            right.append(line)
    if wrong:
        return Verdict(CONTRADICTED, wrong)
    return Verdict(CONFIRMED, right) if right else Verdict(NOT_TOLD, [])


def judge_all(assumption, reports):
    """The same for several reports: one that contradicts weighs more than all others."""
    verdicts = [judge(assumption, report) for report in reports]
    for state in (CONTRADICTED, CONFIRMED):
        lines = [line for verdict in verdicts if verdict.state == state for line in verdict.lines]
        if lines:
            return Verdict(state, lines)
    return Verdict(NOT_TOLD, [])
