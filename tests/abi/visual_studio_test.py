#!/usr/bin/env python3
"""The build of Visual C++ with the real SDK, as far as it can be tried without either.

clang-cl stands for the compiler: it reads the same options. The headers made from sdk/ stand for the real
ones, mingw-w64's for the system's. The build is configured like on Windows and each of its sources
is compiled, without making anything, by the very command that it has there, those of a folder that
have the same as one text.
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
import unittest

ROOT = pathlib.Path(__file__).resolve().parents[2]
sys.path.insert(0, str(ROOT / "tools/checks"))
import unity_build  # noqa: E402
sys.path.insert(0, str(ROOT / "tools/building"))
import make_sdk  # noqa: E402


def run(command, **options):
    return subprocess.run([str(word) for word in command], capture_output=True, text=True,
                          check=False, **options)


def system_headers():
    """What the real compiler would find by itself."""
    headers = run(["x86_64-w64-mingw32-g++-posix", "-print-file-name=include/c++"]).stdout.strip()
    folders = [headers, f"{headers}/x86_64-w64-mingw32", "/usr/x86_64-w64-mingw32/include"]
    return ["--target=x86_64-pc-windows-msvc", "/clang:-fgnuc-version=12.2.0", "/X",
            "-D__declspec=__declspec", "-D__STRICT_ANSI__",
            *[f"/imsvc{pathlib.Path(folder).resolve()}" for folder in folders]]


class VisualStudio(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        directory = tempfile.TemporaryDirectory(prefix="karvel-test-")
        cls.addClassCleanup(directory.cleanup)
        folder = pathlib.Path(directory.name)
        (folder / "maxsdk").mkdir()
        (folder / "maxsdk" / "include").symlink_to(make_sdk.made() / "include")
        cls.build = folder / "build"
        # Clang takes its options from its name.
        compiler = folder / "clang-cl"
        compiler.symlink_to(shutil.which("clang-19"))
        with open(ROOT / "CMakePresets.json", encoding="utf-8") as file:
            preset = next(each for each in json.load(file)["configurePresets"]
                          if each["name"] == "windows-sdk")
        values = dict(preset["cacheVariables"], CMAKE_CXX_COMPILER=compiler,
                      MAXSDK=folder / "maxsdk", KARVEL_LIKE_VISUAL_STUDIO="ON",
                      CMAKE_SYSTEM_NAME="Windows", CMAKE_CXX_COMPILER_WORKS="ON",
                      CMAKE_LINKER="lld-link-19", CMAKE_MT="llvm-mt-19",
                      CMAKE_TRY_COMPILE_TARGET_TYPE="STATIC_LIBRARY",
                      CMAKE_AR="llvm-lib-19", CMAKE_EXPORT_COMPILE_COMMANDS="ON",
                      CMAKE_CXX_FLAGS=" ".join(system_headers()))
        result = run(["cmake", "-S", ROOT, "-B", cls.build, "-G", "Ninja",
                      *[f"-D{name}={value}" for name, value in values.items()]])
        cls.configured = result.returncode, result.stdout + result.stderr
        cls.commands = {}
        listed = cls.build / "compile_commands.json"
        if listed.exists():
            with open(listed, encoding="utf-8") as file:
                cls.commands = {str(pathlib.Path(entry["file"]).relative_to(ROOT)): entry["command"]
                                for entry in json.load(file)}

    def test_is_configured(self):
        self.assertEqual(0, self.configured[0], self.configured[1])
        self.assertGreater(len(self.commands), 30)

    def test_no_option_of_another_compiler(self):
        for source, command in self.commands.items():
            own = [word for word in shlex.split(command)[1:]
                   if word not in system_headers() and not word.startswith("/Fo")]
            self.assertEqual([], [word for word in own if re.match(r"-[fWO]|/WX", word)], source)
            self.assertIn("/W3", own)

    def test_sources_that_see_the_sdk_are_compiled_as_it_wants(self):
        page = (ROOT / "docs" / "sdk-usage.md").read_text(encoding="utf-8")
        see = {name for name in re.findall(r"^## (\S+\.cpp)", page, re.MULTILINE)}
        self.assertGreater(len(see), 10)
        for source, command in self.commands.items():
            self.assertNotIn("NOMINMAX", command)
            older = "-std:c++17" in command
            self.assertTrue(older or "-std:c++20" in command, command)
            if source in see:
                self.assertTrue(older, source)

    def test_every_source_compiles(self):
        groups = {}
        for source, command in sorted(self.commands.items()):
            path = ROOT / source
            words = [word for word in shlex.split(command)
                     if not word.startswith("/Fo") and word != str(path)]
            self.assertEqual(len(shlex.split(command)) - 2, len(words), command)
            groups.setdefault((path.parent, tuple(words)), []).append(path)
        self.assertTrue(groups)

        def compile_text(words, sources):
            text = unity_build.write(sources, self.build / "texts" / sources[0].relative_to(ROOT))
            result = run([words[0], "/Zs", *words[1:], text], cwd=self.build)
            return None if result.returncode == 0 else result.stdout + result.stderr

        def compile_group(group):
            (_, words), sources = group
            if compile_text(words, sources) is None:
                return []
            # Names of one source may be in the way of another's.
            return [message for source in sources if (message := compile_text(words, [source]))]
        with concurrent.futures.ThreadPoolExecutor(max_workers=2) as pool:
            problems = [each for found in pool.map(compile_group, groups.items()) for each in found]
        self.assertEqual([], problems)


if __name__ == "__main__":
    unittest.main()
