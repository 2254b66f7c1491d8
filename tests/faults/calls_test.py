#!/usr/bin/env python3
"""Every call of the plug-in either can be made to fail or cannot fail, and then calls.txt says why.

    calls_test.py PLUGIN NAMES

PLUGIN is the built file of the Microsoft ABI, NAMES a file with the names that `fail` takes.
"""

import pathlib
import re
import subprocess
import sys
import unittest

ROOT = pathlib.Path(__file__).resolve().parent.parent.parent
HERE = ROOT / "tests" / "faults"
PLUGIN = None
NAMES = None

KINDS = ("cannot fail", "by memory", "not called", "before")


def read_list(text):
    """{kind: {name: reason}}; raises on a line that is none."""
    result = {kind: {} for kind in KINDS}
    for number, line in enumerate(text.splitlines(), 1):
        if not line.strip() or line.startswith("#"):
            continue
        match = re.match(rf"({'|'.join(KINDS)}) (.+?)(?:: (.+))?$", line)
        if not match or (match[1] == "cannot fail") != bool(match[3]):
            raise ValueError(f"calls.txt:{number}: KIND NAME, and \": REASON\" where it cannot fail")
        if any(match[2] in names for names in result.values()):
            raise ValueError(f"calls.txt:{number}: {match[2]} stands twice")
        result[match[1]][match[2]] = match[3] or ""
    return result


def plain_name(symbol):
    """(name as in calls.txt, whether it is a virtual member) of an imported symbol."""
    if not symbol.startswith("?"):
        return symbol, False
    special = {"0": "{0}::{0}", "1": "{0}::~{0}", "2": "{0}::operator new",
               "3": "{0}::operator delete", "A": "{0}::operator[]"}
    match = re.match(r"\?\?(\w)(\w+)@@(\w)", symbol)
    if match:
        return special[match[1]].format(match[2]), match[3] in "UE" and "@@U" in symbol
    match = re.match(r"\?(\w+)@(?:(\w+)@)?@(.)", symbol)
    name = f"{match[2]}::{match[1]}" if match[2] else match[1]
    return name, bool(match[2]) and match[3] == "U"


def members_called(page):
    """Class::member and function names from docs/sdk-usage.md, what is overridden apart. What the
    report plug-in alone asks is no part of the table of faults."""
    found = set()
    for section in re.split(r"^## ", page, flags=re.M):
        if section.startswith(("report/", "host/inspection.", "host/watching.")):
            page = page.replace(section, "")
    for line in page.splitlines():
        match = re.match(r"- `(?!override |class |struct |constant )(?:(\w+): )?(.*)\((.*)\).*`$", line)
        if not match:
            continue
        name = re.search(r"(operator ?\S+|~?\w+)$", match[2])[1]
        found.add(f"{match[1]}::{name}" if match[1] else name)
    return found


def imports_of(plugin):
    shown = subprocess.run(["llvm-readobj-19", "--coff-imports", plugin], capture_output=True,
                           text=True, check=True).stdout
    return re.findall(r"Symbol: (\S+)", shown)


def can_fail(name, faults):
    """Whether a fault of this name, with or without its class, is known."""
    member = name.split("::")[-1]
    if name in faults or name.replace("::", ".") in faults or member in faults:
        return True
    return any(fault.endswith("." + member) for fault in faults)


def problems_of(symbols, members, faults, listed):
    problems = []
    leave_out = {name for names in listed.values() for name in names}
    seen = set()
    for symbol in symbols:
        name, is_virtual = plain_name(symbol)
        seen.add(name)
        # Tables of virtual members name the host's own code, which nobody calls from here.
        if is_virtual and name not in members and "~" not in name:
            continue
        if name not in leave_out and not can_fail(name, faults):
            problems.append(f"{name}: imported, but nothing makes it fail")
    for name in sorted(members - seen):
        if name not in leave_out and not can_fail(name, faults):
            problems.append(f"{name}: called, but nothing makes it fail")
    for name in sorted(set(listed["cannot fail"]) | set(listed["by memory"])):
        if name not in seen and name not in members:
            problems.append(f"{name}: stands in calls.txt, but is not called")
        if name in faults:
            problems.append(f"{name}: stands in calls.txt, and there is a fault")
    for name in listed["not called"]:
        if name in seen:
            problems.append(f"{name}: is called")
        if name not in faults:
            problems.append(f"{name}: there is no such fault")
    for name in listed["before"]:
        if name not in seen or name not in faults:
            problems.append(f"{name}: is not both imported and a fault")
    return problems


class Calls(unittest.TestCase):
    maxDiff = None

    def test_every_call_fails_or_has_a_reason(self):
        members = members_called((ROOT / "docs/sdk-usage.md").read_text(encoding="utf-8"))
        symbols = imports_of(PLUGIN)
        self.assertGreater(len(symbols), 100)
        self.assertGreater(len(members), 90)
        faults = set(pathlib.Path(NAMES).read_text(encoding="utf-8").split())
        listed = read_list((HERE / "calls.txt").read_text(encoding="utf-8"))
        self.assertEqual([], problems_of(symbols, members, faults, listed))


    def test_the_page_of_scenarios_names_every_fault(self):
        page = (ROOT / "docs/scenarios.md").read_text(encoding="utf-8")
        part = re.search(r"<!-- calls -->\n(.*?)<!-- end -->", page, re.S)[1]
        faults = pathlib.Path(NAMES).read_text(encoding="utf-8").split()
        self.assertEqual(sorted(faults), sorted(re.findall(r"`([^`]+)`", part)))


class TheCheckItself(unittest.TestCase):
    LISTED = read_list("cannot fail lstrlenA: counts\nnot called ShowWindow\n")
    SYMBOLS = ["SendInput", "lstrlenA", "?GetIMenu@@YAPEAVIMenu@@XZ",
               "?Count@ActionTable@@UEAAHXZ", "?theHold@@3VHold@@A"]
    FAULTS = {"SendInput", "GetIMenu", "ShowWindow", "theHold", "ICustButton.IsChecked"}

    def test_sound_list(self):
        self.assertEqual([], problems_of(self.SYMBOLS, {"ICustButton::IsChecked"}, self.FAULTS,
                                         self.LISTED))

    def test_import_without_a_fault(self):
        self.assertEqual(["Beep: imported, but nothing makes it fail"],
                         problems_of(self.SYMBOLS + ["Beep"], set(), self.FAULTS, self.LISTED))

    def test_member_without_a_fault(self):
        self.assertEqual(["ViewExp::GetHWnd: called, but nothing makes it fail"],
                         problems_of(self.SYMBOLS, {"ViewExp::GetHWnd"}, self.FAULTS, self.LISTED))

    def test_virtual_import_that_is_called(self):
        self.assertEqual(["ActionTable::Count: imported, but nothing makes it fail"],
                         problems_of(self.SYMBOLS, {"ActionTable::Count"}, self.FAULTS, self.LISTED))

    def test_line_that_nothing_needs(self):
        self.assertEqual(["lstrlenA: stands in calls.txt, but is not called"],
                         problems_of(["SendInput"], set(), self.FAULTS, self.LISTED))

    def test_call_that_is_made_after_all(self):
        self.assertEqual(["ShowWindow: is called"],
                         problems_of(self.SYMBOLS + ["ShowWindow"], set(), self.FAULTS, self.LISTED))

    def test_names_of_symbols(self):
        for symbol, expected in (
                ("??0GUP@@QEAA@XZ", ("GUP::GUP", False)),
                ("??1GUP@@UEAA@XZ", ("GUP::~GUP", True)),
                ("??2MaxHeapOperators@@SAPEAX_K@Z", ("MaxHeapOperators::operator new", False)),
                ("?Accept@Hold@@QEAAXPEAD@Z", ("Hold::Accept", False)),
                ("?GetHAccel@ActionTable@@UEAAPEAUHACCEL__@@XZ", ("ActionTable::GetHAccel", True)),
                ("?NumInterfaces@BaseInterfaceServer@@UEBAHXZ",
                 ("BaseInterfaceServer::NumInterfaces", True))):
            self.assertEqual(expected, plain_name(symbol))

    def test_line_without_a_reason(self):
        with self.assertRaises(ValueError):
            read_list("cannot fail lstrlenA\n")


if __name__ == "__main__":
    if len(sys.argv) < 3:
        sys.exit(__doc__.strip())
    NAMES = sys.argv.pop(2)
    PLUGIN = sys.argv.pop(1)
    unittest.main()
