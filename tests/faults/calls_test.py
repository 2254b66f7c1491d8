#!/usr/bin/env python3
"""Every call of the plug-in either can be made to fail or cannot fail, and then calls.txt says why.

    calls_test.py NAMES PLUGIN LATER_PLUGIN...

NAMES is a file with the names that `fail` takes, PLUGIN the file that ships, the others those for later
hosts.
"""

import pathlib
import re
import subprocess
import sys
import tempfile
import unittest

ROOT = pathlib.Path(__file__).resolve().parent.parent.parent
HERE = ROOT / "tests" / "faults"
PLUGINS = []
NAMES = None

sys.dont_write_bytecode = True
sys.path.insert(0, str(ROOT / "tools/building"))
import make_sdk  # noqa: E402

# What the report plug-in alone asks.
OF_THE_REPORT = ("report/", "host/inspection.", "host/watching.")

KINDS = {"cannot fail": r"(?P<name>.+?): (?P<word>.+)", "by": r"(?P<word>\S+) (?P<name>.+)",
         "not called": r"(?P<name>\S+)", "before": r"(?P<name>\S+)",
         "from": r"(?P<word>\d+) (?P<name>\S+)"}


def read_list(text):
    """{kind: {name: reason, fault or year}}; raises on a line that is none."""
    result = {kind: {} for kind in KINDS}
    for number, line in enumerate(text.splitlines(), 1):
        if not line.strip() or line.startswith("#"):
            continue
        kind = next((kind for kind in KINDS if line.startswith(kind + " ")), None)
        match = kind and re.fullmatch(f"{kind} {KINDS[kind]}", line)
        if not match:
            raise ValueError(f"calls.txt:{number}: is of none of the kinds that the file explains")
        if any(match["name"] in names for names in result.values()):
            raise ValueError(f"calls.txt:{number}: {match['name']} stands twice")
        result[kind][match["name"]] = match.groupdict().get("word")
    return result


def plain_name(symbol):
    """(name as in calls.txt, whether it is a virtual member) of an imported symbol."""
    if not symbol.startswith("?"):
        return symbol, False
    special = {"0": "{0}::{0}", "1": "{0}::~{0}", "2": "{0}::operator new",
               "3": "{0}::operator delete", "A": "{0}::operator[]"}
    match = re.match(r"\?\?(\w)(\w+)@(?:\w+@)*@(\w)", symbol)
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
        if section.startswith(OF_THE_REPORT):
            page = page.replace(section, "")
    return names_of(re.findall(r"^- `(.*)`$", page, re.M))


def names_of(declarations):
    found = set()
    for line in declarations:
        match = re.match(r"(?!override |class |struct |constant )(?:(\w+): )?(.*)\((.*)\)", line)
        if match:
            name = re.search(r"(operator ?.+|~?\w+)$", match[2])[1]
            found.add(f"{match[1]}::{name}" if match[1] else name)
    return found


def later_members_called(sources):
    """Those that the SDK of 2012 does not have. A constructor is imported."""
    first, *later = make_sdk.Generation(ROOT / "sdk", "2012").names
    listed = [names_of((make_sdk.made(year) / "sdk_members.txt").read_text().splitlines())
              for year in (first, *later)]
    code = re.sub(r"//.*", "", "".join(path.read_text(encoding="utf-8") for path in sources))
    called = {"": set(re.findall(r"\b(\w+)\(", code)), "::": set(re.findall(r"(?:->|\.)(\w+)\(", code))}
    return {name for name in set().union(*listed) - listed[0]
            if name.split("::")[-1] in called["::" if "::" in name else ""]}


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


def problems_of(symbols, members, faults, listed, later=()):
    """`symbols` of the file that ships and of the `later` ones."""
    first = {plain_name(symbol)[0] for symbol in symbols}
    named = [plain_name(symbol) for symbol in dict.fromkeys([*symbols, *later])]
    seen = {name for name, _ in named}
    # Tables of virtual members name the host's own code, which nobody calls from here.
    calls = [(name, "imported") for name, is_virtual in named
             if not is_virtual or name in members or "~" in name]
    calls += [(name, "called") for name in sorted(members - seen)]
    leave_out = {name for names in listed.values() for name in names}
    problems = [f"{name}: {how}, but nothing makes it fail" for name, how in calls
                if name not in leave_out and not can_fail(name, faults)]
    for name, fault in listed["by"].items():
        if fault not in faults:
            problems.append(f"{name}: there is no fault {fault}")
    for name in listed["from"]:
        if name in first:
            problems.append(f"{name}: is called by the file for 2012")
        if name not in faults:
            problems.append(f"{name}: there is no such fault")
        if not any(can_fail(call, {name}) for call in seen | members):
            problems.append(f"{name}: stands in calls.txt, but is not called")
    for name in sorted(set(listed["cannot fail"]) | set(listed["by"])):
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
        new = later_members_called(path for path in (ROOT / "host").rglob("*.cpp")
                                   if not str(path.relative_to(ROOT)).startswith(OF_THE_REPORT))
        symbols, *later = [imports_of(plugin) for plugin in PLUGINS]
        self.assertGreater(min(map(len, [symbols, *later])), 100)
        self.assertGreater(len(members), 90)
        self.assertIn("ICuiMenu::CreateAction", new)
        faults = set(pathlib.Path(NAMES).read_text(encoding="utf-8").split())
        listed = read_list((HERE / "calls.txt").read_text(encoding="utf-8"))
        self.assertEqual([], problems_of(symbols, members | new, faults, listed, sum(later, [])))

    def test_the_page_of_scenarios_names_every_fault(self):
        page = (ROOT / "docs/scenarios.md").read_text(encoding="utf-8")
        part = re.search(r"<!-- calls -->\n(.*?)<!-- end -->", page, re.S)[1]
        faults = pathlib.Path(NAMES).read_text(encoding="utf-8").split()
        self.assertEqual(sorted(faults), sorted(re.findall(r"`([^`]+)`", part)))


class TheCheckItself(unittest.TestCase):
    LISTED = read_list("cannot fail lstrlenA: counts\nnot called ShowWindow\n"
                       "by GetIMenu IMenu::AddItem\nfrom 2018 Ring\n")
    SYMBOLS = ["SendInput", "lstrlenA", "?GetIMenu@@YAPEAVIMenu@@XZ",
               "?Count@ActionTable@@UEAAHXZ", "?theHold@@3VHold@@A"]
    LATER = ["Ring", "SendInput"]
    MEMBERS = {"IMenu::AddItem"}
    FAULTS = {"SendInput", "GetIMenu", "ShowWindow", "theHold", "ICustButton.IsChecked", "Ring"}

    def assert_problems(self, problems, first=(), members=(), later=(), without=()):
        """What is said of the sound lists, with these calls more and some less."""
        left = [[each for each in names if each not in without]
                for names in (self.SYMBOLS, self.MEMBERS, self.FAULTS, self.LATER)]
        self.assertEqual(problems, problems_of([*left[0], *first], {*left[1], *members}, set(left[2]),
                                               self.LISTED, [*left[3], *later]))

    def test_sound_list(self):
        self.assert_problems([], members=["ICustButton::IsChecked"])

    def test_import_without_a_fault(self):
        self.assert_problems(["Beep: imported, but nothing makes it fail"], first=["Beep"])
        self.assert_problems(["Beep: imported, but nothing makes it fail"], later=["Beep"])

    def test_member_without_a_fault(self):
        self.assert_problems(["ViewExp::GetHWnd: called, but nothing makes it fail"],
                             members=["ViewExp::GetHWnd"])

    def test_virtual_import_that_is_called(self):
        self.assert_problems(["ActionTable::Count: imported, but nothing makes it fail"],
                             members=["ActionTable::Count"])

    def test_line_that_nothing_needs(self):
        self.assert_problems(["lstrlenA: stands in calls.txt, but is not called"], without=["lstrlenA"])
        self.assert_problems(["IMenu::AddItem: stands in calls.txt, but is not called"],
                             without=["IMenu::AddItem"])
        self.assert_problems(["Ring: there is no such fault",
                              "Ring: stands in calls.txt, but is not called"], without=["Ring"])

    def test_call_that_is_made_after_all(self):
        self.assert_problems(["ShowWindow: is called"], first=["ShowWindow"])
        self.assert_problems(["Ring: is called by the file for 2012"], first=["Ring"])

    def test_call_that_fails_by_no_fault(self):
        self.assert_problems(["GetIMenu: imported, but nothing makes it fail",
                              "IMenu::AddItem: there is no fault GetIMenu"],
                             first=["?GetIMenu@@YAPEAVIMenu@@XZ"], without=["GetIMenu"] + self.SYMBOLS[2:3])

    def test_names_of_symbols(self):
        for symbol, expected in (
                ("??0GUP@@QEAA@XZ", ("GUP::GUP", False)),
                ("??1GUP@@UEAA@XZ", ("GUP::~GUP", True)),
                ("??0MaxGuid@MaxSDK@@QEAA@PEBD@Z", ("MaxGuid::MaxGuid", False)),
                ("??2MaxHeapOperators@@SAPEAX_K@Z", ("MaxHeapOperators::operator new", False)),
                ("?Accept@Hold@@QEAAXPEAD@Z", ("Hold::Accept", False)),
                ("?GetHAccel@ActionTable@@UEAAPEAUHACCEL__@@XZ", ("ActionTable::GetHAccel", True)),
                ("?NumInterfaces@BaseInterfaceServer@@UEBAHXZ",
                 ("BaseInterfaceServer::NumInterfaces", True))):
            self.assertEqual(expected, plain_name(symbol))

    def test_line_without_a_reason(self):
        for line in ("cannot fail lstrlenA", "by lstrlenA", "from lstrlenA", "often lstrlenA"):
            with self.assertRaises(ValueError):
                read_list(line)

    def test_members_of_later_hosts(self):
        with tempfile.TemporaryDirectory() as folder:
            source = pathlib.Path(folder, "source.cpp")
            source.write_text("view.IsAlive(); menu->CreateAction(a); RegisterNotification(b);\n"
                              "core->GetTime(); ToPointer(); // view.IsCanvasNavigationMode()\n")
            self.assertEqual({"ViewExp::IsAlive", "ICuiMenu::CreateAction", "RegisterNotification"},
                             later_members_called([source]))


if __name__ == "__main__":
    if len(sys.argv) < 4:
        sys.exit(__doc__.strip())
    NAMES, *PLUGINS = sys.argv[1:]
    unittest.main(argv=sys.argv[:1])
