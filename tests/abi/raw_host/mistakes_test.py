#!/usr/bin/env python3
"""Shows that raw_host_test notices a declaration that is wrong.

usage: mistakes_test.py MSVC_BUILD RAW_HOST_TEST.exe

The builds for later hosts lie beside that one, as MSVC_BUILD-YEAR.

Each case damages a copy of the headers in one place, compiles the sources that see it, links them
with the plug-in's other objects as the build does, and expects the raw host to fail with the line
that names the place.
"""

import concurrent.futures
import json
import pathlib
import re
import shlex
import shutil
import subprocess
import sys
import tempfile

ROOT = pathlib.Path(__file__).resolve().parents[3]
sys.path.insert(0, str(ROOT / "tools/checks"))
import system_headers  # noqa: E402
import unity_build  # noqa: E402
SUBJECT = "tests_bin/raw_host_subject.dll"

# name, header, text there, text instead, source that is compiled with it, test, what it has to say
MISTAKES = [
    ("an id in a register", "maxtypes.h",
     "    Interface_ID(const Interface_ID& other) : a(other.a), b(other.b) {}\n", "",
     "host/scene.cpp", "HostFunctions.SelectionSets",
     "expected the address of 8 bytes, found 0x1cf1cc5042a42b3"),
    ("an interval as an address", "interval.h", "    TimeValue Start() const",
     "    Interval(const Interval& o) : start(o.start), end(o.end) {}\n    TimeValue Start() const",
     "host/scene.cpp", "HostFunctions.Nodes", "INode slot 148 (INode.NotifyDependents), argument 1"),
    ("a pointer of 32 bits", "ref.h", "RefTargetHandle hTarg = nullptr", "int hTarg = 0",
     "host/scene.cpp", "HostFunctions.Nodes", "INode slot 148 (INode.NotifyDependents), argument 6"),
    ("a window's number cut to 32 bits", "maxapi.h", "virtual HWND GetHWnd() = 0;",
     "virtual unsigned GetNumber() = 0;\n    HWND GetHWnd() { return (HWND)(INT_PTR)GetNumber(); }",
     "host/views.cpp", "HostFunctions.Viewports", "Which is: 2147549699"),
    ("a neighbour's slot", "maxapi.h", "    virtual int GetSubObjectLevel() = 0;",
     "    SDK_SLOT(Interface, 1080)\n    virtual int GetSubObjectLevel() = 0;",
     "host/scene.cpp", "HostFunctions.Selection",
     "Interface slot 110 was called, which the plug-in has no business with"),
    ("a byte read as 32 bits", "imenuman.h", "virtual bool RegisterMenuBarContext",
     "virtual BOOL RegisterMenuBarContext", "host/menus.cpp", "HostFunctions.Menus",
     "is_new != 0"),
    ("32 bits read as a byte", "custcont.h", "virtual BOOL IsChecked()",
     "virtual bool IsChecked()", "host/buttons.cpp", "HostFunctions.Toolbars", "enabled != 0"),
    ("a second base at another place", "ifnpub.h", "    void* hostData = nullptr;\n",
     "    void* hostData[2] = {nullptr, nullptr};\n", "host/menus.cpp", "HostFunctions.Menus",
     "IMenu at a wrong offset slot 5 was called"),
    ("overloads exchanged", "plugapi.h",
     "    SDK_CORE_API virtual FPInterface* GetInterface(Interface_ID id);\n"
     "    SDK_CORE_API virtual FPInterface* GetInterface(MCHAR* name);\n",
     "    SDK_CORE_API virtual FPInterface* GetInterface(MCHAR* name);\n"
     "    SDK_CORE_API virtual FPInterface* GetInterface(Interface_ID id);\n",
     "shell/class_descriptor.cpp", "DerivedClasses.DescriptorsOtherMembers",
     "the export ClassDesc2.GetInterface(id*) was called, expected was "
     "ClassDesc2.GetInterface(pointer)"),
    ("the second class id", "plugapi.h", "return Class_ID(); }", "return Class_ID(0, 0); }",
     "shell/class_descriptor.cpp", "DerivedClasses.DescriptorsOtherMembers",
     "ClassDesc2.SubClassID"),
    ("interfaces taken out by the host", "plugapi.h", "interfaces.ZeroCount()",
     "interfaces.Delete(0, interfaces.Count())", "shell/class_descriptor.cpp",
     "DerivedClasses.DescriptorsTableOfInterfaces", "the export TBDelete was called"),
    ("nothing acquired", "baseinterface.h", "AcquireInterface() { return this; }",
     "AcquireInterface() { return nullptr; }", "shell/action_table.cpp",
     "DerivedClasses.TablesOtherMembers", "ActionTable.AcquireInterface"),
    ("an object too small", "actiontable.h", ", public Noncopyable", "", "shell/action_table.cpp",
     "DerivedClasses.TablesOwnMembers", "the export new, argument 0"),
    ("a number that no script can call", "actiontable.h", "        kGetCount,\n",
     "        kGetCount = 6,\n", "shell/action_table.cpp",
     "DerivedClasses.TableAnswersByNumber", "ActionTable.Count was not called"),
]
# The same for a later host.
LATER_HOST = "2024"
LATER_MISTAKES = [
    ("an id at an address", "maxtypes.h", "    Interface_ID(const Interface_ID&) = default;\n",
     "    Interface_ID(const Interface_ID& other) : a(other.a), b(other.b) {}\n",
     "host/scene.cpp", "HostFunctions.SelectionSets", "expected 0x1cf1cc5042a42b3, found 0x"),
    ("a list without a table of its own", "tab.h", "virtual ~Tab()", "~Tab()",
     "host/scene.cpp", "HostFunctions.ListsOfNodes", "expected 0x10, found 0x8"),
]


def run(command, **options):
    return subprocess.run(command, capture_output=True, text=True, check=False, **options)


class Build:
    """The commands by which the build makes the file under test."""

    def __init__(self, folder):
        self.folder = pathlib.Path(folder).resolve()
        with open(self.folder / "compile_commands.json", encoding="utf-8") as file:
            entries = json.load(file)
        # The plug-in's own: other parts of the build may compile the same source once more.
        self.compilers = {str(source): shlex.split(entry["command"]) for entry in entries
                          if "CMakeFiles/KarvelMax.dir/" in entry["command"]
                          for source in unity_build.sources_of(pathlib.Path(entry["file"]))}
        self.linker = run(["ninja", "-C", str(self.folder), "-t", "commands", "-s",
                           SUBJECT]).stdout.strip()

    def make(self, folder, mistake):
        """The file with the mistake in it, or what kept it from being made."""
        _, header, old, new, source, _, _ = mistake
        headers = folder / "include"
        shutil.copytree(self.folder / "sdk_made" / "include", headers)
        text = (headers / header).read_text(encoding="utf-8")
        if text.count(old) != 1:
            return None, f"{header} has no or more than one: {old}"
        (headers / header).write_text(text.replace(old, new), encoding="utf-8")
        # COMPILER OPTION... -o OBJECT -c SOURCE
        *compiler, _, built, _, text = self.compilers[str(ROOT / source)]
        command = [str(headers) if word == str(self.folder / "sdk_made" / "include") else word
                   for word in compiler]
        compiled = run([*command, *system_headers.compiled(compiler), "-Wno-unused-private-field",
                        "-o", str(folder / "source.obj"), "-c", text], cwd=self.folder)
        if compiled.returncode != 0:
            return None, compiled.stderr
        link = self.linker.replace(f" {built} ", f" {folder / 'source.obj'} ")
        link = re.sub(r"/(out|map|implib):\S+?\.(dll\.lib|dll|map|lib)(?=\s)",
                      lambda match: f"/{match[1]}:{folder / 'subject'}.{match[2]}", link)
        linked = run(["sh", "-c", link], cwd=self.folder)
        subject = folder / "subject.dll"
        return (subject, "") if subject.exists() else (None, linked.stdout + linked.stderr)


def main():
    folder, program = sys.argv[1], sys.argv[2]
    build, later = Build(folder), Build(f"{folder}-{LATER_HOST}")
    cases = [(build, "2012", mistake) for mistake in MISTAKES]
    cases += [(later, LATER_HOST, mistake) for mistake in LATER_MISTAKES]
    failures = []
    with tempfile.TemporaryDirectory(prefix="karvel-test-") as directory, \
            concurrent.futures.ThreadPoolExecutor(max_workers=2) as pool:
        folders = [pathlib.Path(directory) / str(index) for index in range(len(cases))]
        for folder in folders:
            folder.mkdir()
        made = pool.map(lambda case, folder: case[0].make(folder, case[2]), cases, folders)
        for (_, host, mistake), folder, (subject, problem) in zip(cases, folders, made):
            name, test, says = mistake[0], mistake[5], mistake[6]
            if subject is None:
                failures.append(f"{name}: is not built: {problem}")
                continue
            result = run([str(ROOT / "tools/session/run_under_wine.sh"), program, str(subject),
                          str(folder / "subject.map"), str(ROOT / "tests/abi/raw_host/raw_host.txt"),
                          str(ROOT / "docs/host-calls.md"), host, f"--gtest_filter={test}"])
            if "Running 1 test from" not in result.stdout:
                failures.append(f"{name}: {test} was not run: {result.stdout}{result.stderr}")
            elif result.returncode == 0:
                failures.append(f"{name}: {test} does not notice it")
            elif says not in result.stdout:
                failures.append(f"{name}: {test} does not say '{says}':\n{result.stdout}")
    for failure in failures:
        print(f"mistakes_test: {failure}", file=sys.stderr)
    print(f"{len(cases)} mistakes, {len(cases) - len(failures)} noticed")
    return 1 if failures else 0


if __name__ == "__main__":
    sys.exit(main())
