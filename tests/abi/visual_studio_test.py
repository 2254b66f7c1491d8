#!/usr/bin/env python3
"""The builds of Visual C++ with real SDKs, as far as they can be tried without either.

clang-cl stands for the compiler: it reads the same options. The headers made from sdk/ stand for the real
ones, mingw-w64's for the system's. A build is configured like on Windows and each of its sources
is compiled, without making anything, by the very command that it has there, those of a program that
have the same as one text.
"""

import concurrent.futures
import functools
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


@functools.cache
def system_headers():
    """What the real compiler would find by itself."""
    headers = run(["x86_64-w64-mingw32-g++-posix", "-print-file-name=include/c++"]).stdout.strip()
    folders = [headers, f"{headers}/x86_64-w64-mingw32", "/usr/x86_64-w64-mingw32/include"]
    return ["--target=x86_64-pc-windows-msvc", "/clang:-fgnuc-version=12.2.0", "/X",
            "-D__declspec=__declspec", "-D__STRICT_ANSI__",
            *[f"/imsvc{pathlib.Path(folder).resolve()}" for folder in folders]]


def configure(folder, **given):
    """Configures the preset in folder/build with the SDK in folder/max sdk: status and output."""
    # Clang takes its options from its name.
    compiler = folder / "clang-cl"
    compiler.symlink_to(shutil.which("clang-19"))
    with open(ROOT / "CMakePresets.json", encoding="utf-8") as file:
        preset = next(each for each in json.load(file)["configurePresets"]
                      if each["name"] == "windows-sdk")
    values = dict(preset["cacheVariables"], CMAKE_CXX_COMPILER=compiler,
                  MAXSDK=folder / "max sdk", KARVEL_LIKE_VISUAL_STUDIO="ON",
                  CMAKE_SYSTEM_NAME="Windows", CMAKE_CXX_COMPILER_WORKS="ON",
                  CMAKE_LINKER="lld-link-19", CMAKE_MT="llvm-mt-19",
                  CMAKE_TRY_COMPILE_TARGET_TYPE="STATIC_LIBRARY",
                  CMAKE_AR="llvm-lib-19", CMAKE_EXPORT_COMPILE_COMMANDS="ON",
                  CMAKE_CXX_FLAGS=" ".join(system_headers()), **given)
    result = run(["cmake", "-S", ROOT, "-B", folder / "build", "-G", "Ninja",
                  *[f"-D{name}={value}" for name, value in values.items()]])
    return result.returncode, result.stdout + result.stderr


class Of2012(unittest.TestCase):
    generation = "2012"

    @classmethod
    def setUpClass(cls):
        directory = tempfile.TemporaryDirectory(prefix="karvel-test-")
        cls.addClassCleanup(directory.cleanup)
        folder = pathlib.Path(directory.name)
        (folder / "max sdk").mkdir()
        (folder / "max sdk" / "include").symlink_to(make_sdk.made(cls.generation) / "include")
        cls.build = folder / "build"
        cls.configured = configure(folder)
        cls.commands = {}
        listed = cls.build / "compile_commands.json"
        if listed.exists():
            with open(listed, encoding="utf-8") as file:
                cls.commands = {str(pathlib.Path(entry["file"]).relative_to(ROOT)): entry["command"]
                                for entry in json.load(file)}

    def test_is_configured(self):
        self.assertEqual(0, self.configured[0], self.configured[1])
        self.assertGreater(len(self.commands), 30)

    def test_the_header_tells_the_generation(self):
        later = self.generation != "2012"
        self.assertEqual(later, "host/unicode/texts.cpp" in self.commands)
        self.assertEqual(not later, "host/ansi/texts.cpp" in self.commands)
        for command in self.commands.values():
            self.assertEqual(later, "-DUNICODE" in command or "/DUNICODE" in command, command)

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
            if self.generation != "2012" and "-std:c++17" not in command:
                continue  # sees nothing of the SDK
            path = ROOT / source
            words = [word for word in shlex.split(command)
                     if not word.startswith("/Fo") and word != str(path)]
            self.assertEqual(len(shlex.split(command)) - 2, len(words), command)
            groups.setdefault(tuple(words), []).append(path)
        self.assertTrue(groups)

        def compile_text(words, sources):
            text = unity_build.write(sources, self.build / "texts" / sources[0].relative_to(ROOT))
            result = run([words[0], "/Zs", *words[1:], text], cwd=self.build)
            return None if result.returncode == 0 else result.stdout + result.stderr

        def compile_group(group):
            words, sources = group
            if compile_text(words, sources) is None:
                return []
            # Names of one source may be in the way of another's.
            return [message for source in sources if (message := compile_text(words, [source]))]
        together = [(words, part) for words, sources in groups.items()
                    for part in unity_build.by_program(sources)]
        with concurrent.futures.ThreadPoolExecutor(max_workers=2) as pool:
            problems = [each for found in pool.map(compile_group, together) for each in found]
        self.assertEqual([], problems)


class Of2026(Of2012):
    generation = "2026"

    def test_the_menus_are_those_of_2026(self):
        self.assertIn("host/unicode/menus_in_notification.cpp", self.commands)


class OtherSdks(unittest.TestCase):
    def offer(self, headers, **given):
        """Status and output for an SDK with these headers, without what changes from call to call."""
        with tempfile.TemporaryDirectory(prefix="karvel-test-") as name:
            folder = pathlib.Path(name)
            (folder / "max sdk" / "include").mkdir(parents=True)
            for header, text in headers.items():
                (folder / "max sdk" / "include" / header).write_text(text)
            status, output = configure(folder, **given)
            return status, output.replace(name, "")

    def refusal(self, headers, **given):
        status, output = self.offer(headers, **given)
        self.assertEqual(1, status, output)
        return " ".join(re.search(r"CMake Error at .*\n((?:  .*\n)+)", output)[1].split())

    def test_no_header(self):
        self.assertEqual("/max sdk/include/plugapi.h is missing; set MAXSDK to the folder of the SDK, "
                         "with include/ in it", self.refusal({"max.h": ""}))

    def test_no_release(self):
        self.assertEqual("/max sdk/include/plugapi.h does not tell MAX_RELEASE; say of which release it "
                         "is with -D KARVEL_SDK_GENERATION=YEAR", self.refusal({"plugapi.h": ""}))

    def test_what_no_header_tells_can_be_given(self):
        status, output = self.offer({"plugapi.h": ""}, KARVEL_SDK_GENERATION="2018")
        self.assertEqual(0, status, output)

    def test_the_compiler_stops(self):
        self.assertRegex(self.refusal({"plugapi.h": "#include <nowhere.h>"}),
                         "does not tell MAX_RELEASE; .*=YEAR .*error.*nowhere.h")

    def test_a_release_without_a_generation(self):
        self.assertEqual("/max sdk/include/plugapi.h is of 3ds Max 2020 (MAX_RELEASE 22000), which no "
                         "file is made for; set MAXSDK to an SDK of 2012, 2015, 2016, 2018, 2024, 2026",
                         self.refusal({"plugapi.h": "#define MAX_RELEASE 22000"}))

    def test_another_generation_than_the_given_one(self):
        # 2015 and 2016 share one; the number behind names, and in a header of its own.
        for headers, release, year in (
                ({"plugapi.h": "#define MAX_RELEASE 13900"}, 13900, 2012),
                ({"plugapi.h": "#define MAX_RELEASE_R17 17000\n#define MAX_RELEASE MAX_RELEASE_R17"},
                 17000, 2015),
                ({"plugapi.h": "#include <version.h>\n#define MAX_RELEASE (MAJOR * 1000)",
                  "version.h": "#define MAJOR 26"}, 26000, 2024)):
            self.assertEqual(
                f"/max sdk/include/plugapi.h is of 3ds Max {year} (MAX_RELEASE {release}), and "
                "KARVEL_SDK_GENERATION is 2018; leave that out, or set MAXSDK to an SDK of it",
                self.refusal(headers, KARVEL_SDK_GENERATION="2018"))


if __name__ == "__main__":
    unittest.main()
