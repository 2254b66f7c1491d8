#!/usr/bin/env python3
"""Holds the tables under sdk/ against raw_host.txt, which is written by itself: slots, ways in
which arguments and results travel, where members come from, sizes, offsets and names of imports. Then
damages a copy of each and wants to see it noticed."""

import pathlib
import re
import shutil
import sys
import tempfile
import unittest

ROOT = pathlib.Path(__file__).resolve().parents[3]
sys.path.insert(0, str(ROOT / "tools/building"))
sys.path.insert(0, str(ROOT / "tools/checks"))
import check_abi  # noqa: E402
import make_sdk  # noqa: E402

RAW_HOSTS = pathlib.Path(__file__).parent / "raw_host.txt"

TRAVELS = {
    "int": "BOOL FPStatus IOResult LifetimeType MAXScript::ScriptSource MenuContextId "
           "NotifyDependentsOption RefResult TimeValue int",
    "dword": "ActionContextId ActionTableId COLORREF DWORD RefMessage SClass_ID ULONG",
    "short": "BlockID FunctionID short",
    "bool": "bool",
    "pointer": "HACCEL HDC HINSTANCE HWND RefTargetHandle",
    "word64": "DWORD_PTR INT_PTR PartID ULONG_PTR",
    "nothing": "void",
}
TRAVEL_OF = {name: travel for travel, names in TRAVELS.items() for name in names.split()}


class RawHosts:
    """raw_host.txt: what one of the hosts has."""

    def __init__(self, text, host):
        self.slots, self.members, self.sizes, self.fields, self.imports = {}, {}, {}, {}, {}
        self.derived = set()
        self.word = None
        owner = None
        column = None
        for number, line in enumerate(text.split("\n"), 1):
            words = line.split()
            if not words or line.startswith("#"):
                continue
            if words[0] == "hosts":
                column = words.index(host) - 1
                count = len(words) - 1
            elif not line.startswith(" "):
                owner = words[-1]
                if words[0] == "derived":
                    self.derived.add(owner)
            else:
                assert column is not None and len(words) > count, f"line {number}: {line}"
                cell, what = words[column], line.split(None, count)[count]
                if cell != "-":
                    self.read(owner, cell, what)

    def read(self, owner, cell, what):
        kind, _, rest = what.partition(" ")
        if what == "slots":
            self.slots[owner] = int(cell)
        elif kind == "word":
            self.word = int(cell, 16)
        elif kind == "size":
            self.sizes[rest] = int(cell)
        elif kind == "field":
            self.fields[tuple(rest.split())] = int(cell)
        elif kind == "number":
            pass  # what the headers say in their own text
        elif " | ?" in what:
            self.imports.setdefault(owner, set()).add(what.split(" | ")[-1])
        else:
            member = re.fullmatch(r"(\S+?)\((.*)\) (\S+)(?: \| (\w+) ?(.*))?", what)
            origin = "" if member[4] in (None, "uncalled") else member[4]
            if origin and member[5].startswith("?"):
                self.imports.setdefault(origin, set()).add(member[5])
                origin = "imported"
            arguments = re.sub(r"(interval|text)\*", "pointer", member[2])
            self.members[owner, int(cell)] = (member[1], arguments, member[3], origin)


def travel_of(name, passed, as_result=False):
    """How a type travels, in the words of raw_host.txt."""
    if name.endswith(("*", "&")):
        return "pointer"
    if name in TRAVEL_OF:
        return TRAVEL_OF[name]
    short = {"Interface_ID": "id", "Class_ID": "id", "MSTR": "text", "ACCEL": "accel",
             "Interval": "interval"}[name]
    if as_result:
        return short + "&"
    return short + ("*" if passed[name][0] == "address" else "")


def row_of(member, passed):
    """A member of the made table in the words of raw_host.txt."""
    signature = member.signature
    origin = {None: "", "own": "own", "imported": "imported", "inline": "inline"}[member.origin]
    if "[scalar deleting]" in signature:
        return ("~", "int", "pointer", origin)
    match = re.fullmatch(r"(.*?[ *&])(?:\w+::)?(operator\[\]|\w+)\((.*)\)( const)?", signature)
    types = [re.sub(r"^const | (?=[*&])", "", each.strip()) for each in match[3].split(",") if each]
    result = re.sub(r"^const ", "", match[1].strip())
    return (match[2], ", ".join(travel_of(each, passed) for each in types),
            travel_of(result, passed, True), origin)


def differences(host, sdk=ROOT / "sdk", text=None):
    text = RAW_HOSTS.read_text(encoding="utf-8") if text is None else text
    raw = RawHosts(text, host)
    with tempfile.TemporaryDirectory(prefix="karvel-test-") as name:
        made = pathlib.Path(name)
        make_sdk.Sdk(sdk, host).write(made)
        table = check_abi.Expectations(made / "host_layout.txt")
        imports = {dll.split(".")[0]: names
                   for dll, names in check_abi.read_import_lists(made / "imports").items()}
    found = []

    def compare(what, one, other):
        if one != other:
            found.append(f"{what}: raw_host.txt has {one}, sdk/ has {other}")

    compare("version word", raw.word, make_sdk.Generation(sdk, host).version_word)
    for name, count in raw.slots.items():
        compare(f"{name}: slots", count, table.classes[name][0] if name in table.classes else None)
    members = {(name, member.slot): row_of(member, table.travels)
               for name, (_, _, rows) in table.classes.items() if name in raw.slots
               for member in rows
               # What a base has is held by the classes that a plug-in derives from.
               if name in raw.derived or f" {name}::" in member.signature.replace("*", " ")
               .replace("&", " ") or (name, member.slot) in raw.members}
    for name, slot in sorted(members.keys() | raw.members.keys()):
        one, other = raw.members.get((name, slot)), members.get((name, slot))
        if one and other:
            # What the plug-in writes may be inline in the host's class, or a member that it exports.
            if one[3] == "own" or (one[3] == "answers" and other[3] == "inline"):
                other = (*other[:3], one[3])
        compare(f"{name} slot {slot}", one, other)
    for name, size in raw.sizes.items():
        if name == "MSTR":
            name = "CStr" if host == "2012" else "WStr"
        if name in table.sizes:
            compare(f"{name}: size", size, table.sizes[name])
        else:
            found.append(f"{name}: has no size in sdk/")
    fields = {(owner, field): offset for owner, field, offset in table.fields}
    for field, offset in raw.fields.items():
        compare(".".join(field), offset, fields.get(field))
    # What nobody takes needs no row under sdk/.
    for dll, names in sorted(imports.items()):
        found += [f"{dll}: raw_host.txt does not have {name}"
                  for name in sorted(names - raw.imports.get(dll, set()))]
    return found


class Generations(unittest.TestCase):
    def test_agree(self):
        for host in make_sdk.Generation(ROOT / "sdk", "2012").names[1:]:
            with self.subTest(host):
                self.assertEqual([], differences(host))

    def test_agree_for_2012(self):
        # Its lists of names have some that nobody takes.
        self.assertEqual([], [each for each in differences("2012") if "does not have" not in each])


class Mistakes(unittest.TestCase):
    """One change in a copy of the tables, for 2024, and what is said of it."""

    def in_tables(self, header, row, old, new, which=0):
        folder = pathlib.Path(tempfile.mkdtemp(prefix="karvel-test-"))
        self.addCleanup(shutil.rmtree, folder)
        shutil.copytree(ROOT / "sdk", folder / "sdk")
        path = folder / "sdk/table" / f"{header}.txt"
        lines = path.read_text(encoding="utf-8").split("\n")
        places = [number for number, line in enumerate(lines) if row in line]
        changed = lines[places[which]].replace(old, new)
        self.assertNotEqual(lines[places[which]], changed)
        lines[places[which]] = changed
        path.write_text("\n".join(lines), encoding="utf-8")
        return differences("2024", folder / "sdk")

    def in_raw(self, old, new):
        text = RAW_HOSTS.read_text(encoding="utf-8")
        self.assertEqual(1, text.count(old), old)
        return differences("2024", text=text.replace(old, new))

    def test_a_slot(self):
        self.assertEqual(
            ["Interface slot 183: raw_host.txt has ('GetTime', '', 'int', ''), sdk/ has None",
             "Interface slot 184: raw_host.txt has None, sdk/ has ('GetTime', '', 'int', '')"],
            self.in_tables("maxapi.h", "TimeValue GetTime()", " 183 ", " 184 "))

    def test_a_slot_on_the_other_side(self):
        self.assertEqual(
            ["Interface slot 183: raw_host.txt has None, sdk/ has ('GetTime', '', 'int', '')",
             "Interface slot 184: raw_host.txt has ('GetTime', '', 'int', ''), sdk/ has None"],
            self.in_raw("181  183  181  GetTime()", "181  184  181  GetTime()"))

    def test_a_way_to_travel(self):
        found = self.in_tables("maxtypes.h", "address address address register register",
                               "address register register", "address address register", which=1)
        self.assertEqual(
            [f"{slot}: raw_host.txt has ('{name}', 'id', 'pointer', 'imported'), sdk/ has "
             f"('{name}', 'id*', 'pointer', 'imported')"
             for slot, name in (("ActionCallback slot 1", "GetInterface"),
                                ("ActionTable slot 1", "GetInterface"),
                                ("ActionTable slot 25", "GetDescByID"),
                                ("ClassDesc2 slot 46", "GetInterface"),
                                ("GUP slot 1", "GetInterface"))], found)
        found = self.in_tables("actiontable.h", "core  Interface_ID GetID()", "Interface_ID", "int")
        self.assertEqual(["ActionTable slot 2: raw_host.txt has ('GetID', '', 'id&', 'imported'), "
                          "sdk/ has ('GetID', '', 'int', 'imported')"], found)

    def test_an_argument(self):
        self.assertEqual(
            ["INode slot 194: raw_host.txt has ('IsHidden', 'dword, int', 'int', ''), sdk/ has "
             "('IsHidden', 'dword, bool', 'int', '')"],
            self.in_tables("inode.h", "int IsHidden(", "BOOL", "bool"))

    def test_an_offset_and_a_size(self):
        self.assertEqual(["ActionTable.mId: raw_host.txt has 48, sdk/ has 56"],
                         self.in_tables("actiontable.h", "ActionTableId mId", "   48 ", "   56 "))
        self.assertEqual(["Hold: size: raw_host.txt has 56, sdk/ has 64"],
                         self.in_tables("hold.h", "size", "   56   56", "   64   56"))

    def test_a_name(self):
        self.assertEqual(["core: raw_host.txt does not have ?Begin@Hold@@QEAAHXZ"],
                         self.in_tables("hold.h", "= ?Begin@Hold", "QEAAXXZ", "QEAAHXZ"))


if __name__ == "__main__":
    unittest.main()
