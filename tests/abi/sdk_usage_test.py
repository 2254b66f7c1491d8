#!/usr/bin/env python3
"""check_sdk_usage.py and compile_strictly.py, of tools/checks, find what they are there for."""

import pathlib
import shutil
import subprocess
import sys
import tempfile
import unittest

ROOT = pathlib.Path(__file__).resolve().parent.parent.parent
sys.path.insert(0, str(ROOT / "tools/building"))
import make_sdk  # noqa: E402


def run(tool, *arguments):
    return subprocess.run([str(ROOT / "tools/checks" / tool), *map(str, arguments)], capture_output=True,
                          text=True, check=False, timeout=120)


class InAFolder(unittest.TestCase):
    def setUp(self):
        self.folder = pathlib.Path(tempfile.mkdtemp(prefix="karvel-test-"))
        self.addCleanup(shutil.rmtree, self.folder)

    def source(self, text):
        path = self.folder / "probe.cpp"
        path.write_text(text, encoding="utf-8")
        return path


class Usage(InAFolder):
    def test_listed_calls_pass_and_are_shown(self):
        result = run("check_sdk_usage.py", self.source(
            "#include <max.h>\nint F() { return GetCOREInterface()->GetSubObjectLevel(); }\n"))
        self.assertEqual(0, result.returncode, result.stderr)
        self.assertIn("Interface: int GetSubObjectLevel()", result.stdout)
        self.assertIn("`<max.h>`", result.stdout)

    def test_a_header_of_another_name(self):
        for name in ("maxTypes.h", "sdk_layout.h", "Max.h"):
            source = self.source(f"#include <max.h>\n#if 0\n#include <{name}>\n#endif\n")
            result = run("check_sdk_usage.py", source)
            self.assertEqual(1, result.returncode, name)
            self.assertIn(f"probe.cpp:3: <{name}> is no header", result.stderr)

    def test_a_member_that_nobody_looked_up(self):
        result = run("check_sdk_usage.py", self.source(
            "#include <INodeTab.h>\nbool F(INodeTab& t) { return t.Contains(nullptr); }\n"))
        self.assertEqual(1, result.returncode)
        self.assertIn("probe.cpp:2: uses `INodeTab: bool Contains(INode* node)`", result.stderr)

    def test_members_of_each_kind_are_seen(self):
        source = self.source(
            "#include <max.h>\n"
            "#include <INodeTab.h>\n"
            "INode* A(INodeTab& t) { return t[0]; }\n"
            "int B(INodeTab& t, INode* n) { return t.IndexOf(n); }\n"
            "void C() { theHold.Begin(); }\n"
            "int D() { return SDK_GENERATION; }\n"
            "struct Base { virtual int proc(HWND) = 0; };\n"
            "class E : public Base {\n"
            "    int proc(HWND window) override;\n"
            "};\n")
        result = run("check_sdk_usage.py", source)
        self.assertIn("`Tab: T& operator[](INT_PTR index) const`", result.stdout)
        self.assertIn("`Hold: void Begin()`", result.stdout)
        self.assertIn("uses `INodeTab: int IndexOf(INode* node)`", result.stderr)
        self.assertIn("uses `constant SDK_GENERATION`", result.stderr)
        self.assertIn("uses `override int proc(HWND window)`", result.stderr)

    def test_a_declaration_with_another_const(self):
        headers = self.folder / "include"
        shutil.copytree(make_sdk.made() / "include", headers)
        hold = headers / "hold.h"
        text = hold.read_text(encoding="utf-8")
        changed = text.replace("Accept(MCHAR* name)", "Accept(const MCHAR* name)")
        self.assertNotEqual(text, changed)
        hold.write_text(changed, encoding="utf-8")
        result = run("check_sdk_usage.py", "--declarations", headers, ROOT / "host" / "scene.cpp")
        self.assertEqual(1, result.returncode)
        self.assertIn("uses `Hold: void Accept(const MCHAR* name)`", result.stderr)

    def test_a_source_that_does_not_compile(self):
        result = run("check_sdk_usage.py", self.source("#include <max.h>\nint F() { return nothing; }\n"))
        self.assertEqual(2, result.returncode)
        self.assertIn("does not compile", result.stderr)


class Strictness(InAFolder):
    def refuse(self, text, mode="msvc"):
        result = run("compile_strictly.py", "--mode", mode, self.source(text))
        self.assertEqual(1, result.returncode, text)

    def test_plain_code_passes_in_each_mode(self):
        source = self.source('#include <max.h>\nconst MCHAR* F() { return _M("x"); }\n')
        result = run("compile_strictly.py", source)
        self.assertEqual(0, result.returncode, result.stderr)
        self.assertIn("3 sources read, 0 failed", result.stdout)

    def test_extensions_of_gnu(self):
        self.refuse("int F(int a) { return a ?: 1; }\n")
        self.refuse("int F(int a) { return ({ a; }); }\n")
        self.refuse("int F(int n) { switch (n) { case 1 ... 3: return 1; } return 0; }\n")
        self.refuse("void F(int n) { char text[n]; text[0] = 0; }\n")

    def test_extensions_of_microsoft(self):
        self.refuse("struct A { int A::F(); };\n")
        self.refuse("struct A { enum B; };\n")

    def test_a_literal_where_the_sdk_writes(self):
        self.refuse('#include <max.h>\nvoid F() { theHold.Accept("text"); }\n')

    def test_narrow_texts_for_a_unicode_host(self):
        text = '#include <max.h>\nconst MCHAR* F() { return "x"; }\n'
        self.refuse(text, "msvc-2024")
        self.refuse(text, "gnu-2024")


if __name__ == "__main__":
    unittest.main()
