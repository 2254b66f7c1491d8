#!/usr/bin/env python3
"""Shows that tools/checks/check_abi.py sees a difference when there is one.

usage: check_abi_test.py [PLUGIN.gup PLUGIN.map]

Each case damages a copy of the declarations or of the plug-in in one place and expects the tool to
fail with the line that names the place.
"""

import contextlib
import functools
import io
import pathlib
import runpy
import shutil
import struct
import sys
import tempfile
import unittest

import pefile

ROOT = pathlib.Path(__file__).resolve().parent.parent.parent
sys.path.insert(0, str(ROOT / "tools/building"))
import make_sdk  # noqa: E402

MADE = make_sdk.made()
TOOL = ROOT / "tools/checks/check_abi.py"
PLUGIN = None
MAP = None


CHECK_ABI = runpy.run_path(str(TOOL))
# The compiler reads the same declarations once; damaged ones lie in a folder of their own each time.
MAIN = CHECK_ABI["main"].__globals__
MAIN["compile_probe"] = functools.lru_cache(maxsize=None)(CHECK_ABI["compile_probe"])


def run(*arguments):
    """(status, output, errors) of the tool."""
    output, errors = io.StringIO(), io.StringIO()
    before = sys.argv
    sys.argv = [str(TOOL), *map(str, arguments)]
    try:
        with contextlib.redirect_stdout(output), contextlib.redirect_stderr(errors):
            status = MAIN["main"]()
    finally:
        sys.argv = before
    return status, output.getvalue(), errors.getvalue()


def run_tool(*arguments):
    status, _, errors = run("--quiet", *arguments)
    return status, errors.splitlines()


class Copies(unittest.TestCase):
    def setUp(self):
        directory = tempfile.TemporaryDirectory()
        self.addCleanup(directory.cleanup)
        self.directory = pathlib.Path(directory.name)


class Declarations(Copies):
    def setUp(self):
        super().setUp()
        self.include = self.directory / "include"
        shutil.copytree(MADE / "include", self.include)

    def change(self, header, old, new):
        path = self.include / header
        text = path.read_text(encoding="utf-8")
        self.assertEqual(text.count(old), 1, f"{old} in {header}")
        path.write_text(text.replace(old, new), encoding="utf-8")

    def assert_difference(self, *lines):
        status, errors = run_tool("--declarations", self.include)
        self.assertEqual(status, 1, errors)
        for line in lines:
            self.assertIn("check_abi: " + line, errors)
        return errors

    def test_unchanged_copy_agrees(self):
        self.assertEqual(run_tool("--declarations", self.include), (0, []))

    def test_slot_missing(self):
        self.change("maxapi.h", "    SDK_SLOT(Interface, 146)\n", "")
        errors = self.assert_difference(
            "Interface: slots: expected 558, found 557",
            "Interface: slot 147: expected void Interface::PushAxisConstraints(int), "
            "found void Interface::PopAxisConstraints()")
        self.assertFalse([line for line in errors if "Interface: slot 145:" in line])

    def test_slot_too_many(self):
        self.change("custcont.h", "    virtual void SetCurFlyOff",
                    "    virtual void Stranger() {}\n    virtual void SetCurFlyOff")
        self.assert_difference("ICustButton: slots: expected 35, found 36",
                               "ICustButton: slot 20: expected int ICustButton::GetCurFlyOff(), "
                               "found void ICustButton::SetCurFlyOff(int, BOOL)")

    def test_neighbours_exchanged(self):
        self.change("gup.h", "    virtual DWORD Start() = 0;\n    virtual void Stop() = 0;\n",
                    "    virtual void Stop() = 0;\n    virtual DWORD Start() = 0;\n")
        self.assert_difference("GUP: slot 10: expected DWORD Start(), found void GUP::Stop()",
                               "GUP: slot 11: expected void Stop(), found DWORD GUP::Start()")

    def test_overloads_exchanged(self):
        one = "    SDK_CORE_API virtual FPInterface* GetInterface(Interface_ID id);\n"
        other = "    SDK_CORE_API virtual FPInterface* GetInterface(MCHAR* name);\n"
        self.change("plugapi.h", one + other, other + one)
        self.assert_difference(
            "ClassDesc2: slot 43: expected FPInterface *ClassDesc::GetInterface(char *), "
            "found FPInterface *ClassDesc::GetInterface(Interface_ID)")

    def test_parameter_of_another_type(self):
        self.change("actiontable.h", "MCHAR* pName", "const MCHAR* pName")
        self.assert_difference(
            "IActionManager: slot 36: expected BOOL IActionManager::RegisterActionContext("
            "ActionContextId, char *), found BOOL IActionManager::RegisterActionContext("
            "ActionContextId, const char *)")

    def test_member_moved(self):
        self.change("actiontable.h", "    HACCEL mhDefaultAccels;\n    HACCEL mhAccel;\n",
                    "    HACCEL mhAccel;\n    HACCEL mhDefaultAccels;\n")
        self.assert_difference("ActionTable: offset of mhAccel: expected 64, found 56")

    def test_object_too_large(self):
        self.change("hold.h", "void* hostData[6]", "void* hostData[7]")
        self.assert_difference("Hold: size: expected 48, found 56")

    def test_second_base_moved(self):
        self.change("ifnpub.h", "    void* hostData = nullptr;\n",
                    "    void* hostData[2] = {nullptr, nullptr};\n")
        self.assert_difference("IMenu: offset of base IMenuElement: expected 32, found 40")

    def test_node_without_its_second_base(self):
        self.change("inode.h", ", public FPMixinInterface", "")
        self.assert_difference("INode: offset of base FPMixinInterface: expected any, found None")

    def test_empty_second_base_missing(self):
        self.change("actiontable.h", ", public Noncopyable", "")
        self.assert_difference("ActionTable: size: expected 80, found 72",
                               "ActionTable: offset of mOps: expected 32, found 24")

    def test_id_without_a_copy_constructor(self):
        self.change("maxtypes.h", "    Interface_ID(const Interface_ID& other) : a(other.a), "
                    "b(other.b) {}\n", "")
        errors = self.assert_difference(
            "Interface_ID: as an argument: expected address, found register")
        self.assertEqual(len(errors), 1)

    def test_interval_with_a_copy_constructor(self):
        self.change("interval.h", "    TimeValue Start() const",
                    "    Interval(const Interval& o) : start(o.start), end(o.end) {}\n"
                    "    TimeValue Start() const")
        self.assert_difference("Interval: as an argument: expected register, found address")

    def test_class_by_value_that_the_table_does_not_know(self):
        table = self.directory / "table.txt"
        text = (MADE / "host_layout.txt").read_text(encoding="utf-8")
        table.write_text(text.replace("travels ACCEL address result address\n", ""),
                         encoding="utf-8")
        status, errors = run_tool("--declarations", self.include, "--table", table)
        self.assertEqual(status, 1)
        self.assertEqual(errors, [
            f"check_abi: ActionTable: slot {slot}: ACCEL: expected a line 'travels', found none"
            for slot in (51, 52, 53)])

    def test_declarations_that_do_not_compile(self):
        self.change("hold.h", "class Hold {", "class Hold [")
        status, errors = run_tool("--declarations", self.include)
        self.assertEqual(status, 2)
        self.assertEqual(len(errors), 1)
        self.assertIn("the declarations do not compile: ", errors[0])


class BadInput(Copies):
    def assert_unreadable(self, line, *arguments):
        self.assertEqual(run_tool(*arguments), (2, ["check_abi: " + line]))

    def test_missing_plugin(self):
        missing = self.directory / "none.gup"
        self.assert_unreadable(f"{missing}: cannot be read: No such file or directory",
                               missing, "--map", missing)

    def test_file_that_is_no_plugin(self):
        text = self.directory / "text.gup"
        text.write_text("not a plug-in", encoding="utf-8")
        self.assert_unreadable(f"{text}: is not a Windows file", text, "--map", text)

    def test_table_with_a_bad_line(self):
        table = self.directory / "table.txt"
        table.write_text("size Hold 48\nsize Hold many\n", encoding="utf-8")
        self.assert_unreadable(f"{table}:2: not a line of the layout table: 'size Hold many'",
                               "--table", table)


class BuiltFile(Copies):
    def setUp(self):
        super().setUp()
        if PLUGIN is None:
            self.fail("no plug-in was given")
        self.data = bytearray(PLUGIN.read_bytes())
        self.file = pefile.PE(data=bytes(self.data), fast_load=True)

    def assert_difference(self, expected, *arguments):
        copy = self.directory / "KarvelMax.gup"
        copy.write_bytes(self.data)
        status, errors = run_tool(copy, "--map", MAP, *arguments)
        self.assertEqual(status, 1, errors)
        self.assertTrue([line for line in errors if expected in line], errors)

    def table_of(self, ending):
        """File offset of a function table, by the name that the link map gives it."""
        for line in MAP.read_text(encoding="utf-8").splitlines():
            words = line.split()
            if len(words) > 2 and words[1].startswith("??_7") and words[1].endswith(ending):
                return self.file.get_offset_from_rva(
                    int(words[2], 16) - self.file.OPTIONAL_HEADER.ImageBase)
        self.fail(f"no table {ending} in the link map")

    def test_entry_point_renamed(self):
        at = self.data.index(b"LibVersion\0")
        self.data[at:at + 10] = b"LibVersioN"
        self.assert_difference("plug-in: exports: expected CanAutoDefer LibClassDesc ")

    def test_name_that_the_host_does_not_export(self):
        imports = self.directory / "imports"
        shutil.copytree(MADE / "imports", imports)
        path = imports / "gup.def"
        name = "?ExecuteStringScript@GUP@@UEAA_NPEAD@Z"
        text = path.read_text(encoding="utf-8")
        self.assertIn(name, text)
        path.write_text(text.replace("    " + name + "\n", ""), encoding="utf-8")
        self.assert_difference(f"found {name}", "--imports", imports)

    def test_foreign_dll(self):
        at = self.data.index(b"USER32.dll\0")
        self.data[at:at + 10] = b"OTHERS.dll"
        self.assert_difference("imports of OTHERS.dll")

    def test_newer_windows(self):
        at = self.file.OPTIONAL_HEADER.get_field_absolute_offset("MajorSubsystemVersion")
        struct.pack_into("<HH", self.data, at, 10, 0)
        self.assert_difference("plug-in: subsystem version: expected 6.1 or older, found 10.0")

    def test_type_name_that_depends_on_the_folder_of_the_build(self):
        plain, placed = b".?AVModeChangeCallback@@\0", b".?AVModes@?A0x12345678@@\0"
        at = self.data.index(plain)
        self.data[at:at + len(plain)] = placed
        self.assert_difference("type names with the build's folder in them: expected none, "
                               "found .?AVModes@?A0x12345678@@")

    def test_type_information_missing(self):
        at = self.derived_table("GUP")
        struct.pack_into("<Q", self.data, at - 8, 0)
        self.assert_difference("run-time type information: expected present, found missing")

    def test_slots_of_a_table_exchanged(self):
        at = self.derived_table("GUP")
        one, other = struct.unpack_from("<QQ", self.data, at + 8 * 2)
        struct.pack_into("<QQ", self.data, at + 8 * 2, other, one)
        self.assert_difference(": GUP: slot 2: expected GUP::MaxInst, found GUP::MaxWnd")

    def derived_table(self, base):
        """The table of the plug-in's class that derives from a class of the host."""
        for line in run(PLUGIN, "--map", MAP)[1].splitlines():
            words = line.split()
            if words[:1] == ["class"] and words[2:4] == [":", base]:
                return self.table_of(f"??_7{words[1]}@@6B@"[4:])
        self.fail(f"no class derives from {base}")


if __name__ == "__main__":
    if len(sys.argv) == 3:
        PLUGIN, MAP = pathlib.Path(sys.argv[1]), pathlib.Path(sys.argv[2])
        unittest.main(argv=sys.argv[:1])
    unittest.main(argv=sys.argv[:1], defaultTest=["Declarations", "BadInput"])
