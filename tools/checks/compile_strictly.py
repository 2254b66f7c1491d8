#!/usr/bin/python3
"""Compiles every source of the plug-in the way other compilers read it, without making anything.

usage: compile_strictly.py [--mode MODE]... [SOURCE...]

modes: msvc       clang in Microsoft mode, extensions of Microsoft's and of GNU's as errors
       msvc-2024  the same, bound to the SDK of 2024
       gnu-2024   g++ of mingw-w64, bound to the SDK of 2024
       msvc-2026  host/ alone in the first way, bound to the SDK of 2026, whose menus are others

Without --mode all four. A source of host/ansi or host/unicode is compiled for its own generation
only. Exit status: 0 all compile, 1 one does not, 2 a compiler is missing.
"""

import argparse
import concurrent.futures
import functools
import pathlib
import subprocess
import sys

import check_sdk_usage as sdk_usage
import system_headers
import unity_build
from check_sdk_usage import make_sdk

ROOT = pathlib.Path(__file__).resolve().parents[2]
MODES = ["msvc", "msvc-2024", "gnu-2024", "msvc-2026"]
# What the menus of hosts before 2025 are made with, and of those from then on.
MENUS = [ROOT / "host" / "menus.cpp", ROOT / "host" / "unicode" / "menus_in_notification.cpp"]
WARNINGS = ["-Wall", "-Wextra", "-Wpedantic", "-Wshadow", "-Werror"]
# What clang in Microsoft mode takes in silence or with a word, and what no other compiler may know.
STRICT = ["-Wmicrosoft", "-Wgnu", "-Wlanguage-extension-token",
          "-Wwritable-strings", "-Wextra-semi", "-Wzero-length-array", "-Wvla-extension",
          "-Wc99-extensions", "-Wc11-extensions", "-Wc23-extensions", "-Wc++23-extensions",
          # Over compiled headers it does not see who may use a field; the msvc build does.
          "-Wno-unused-private-field"]


def generation_of(mode):
    return mode.partition("-")[2] or "2012"


@functools.lru_cache(maxsize=None)
def command_for(mode):
    unicode = ["-DUNICODE", "-D_UNICODE"]
    headers = make_sdk.made(generation_of(mode)) / "include"
    strict = WARNINGS
    if mode == "gnu-2024":
        compiler = ["x86_64-w64-mingw32-g++-posix", "-std=c++20", "-fno-exceptions",
                    *unicode, "-isystem", str(headers), "-I", str(ROOT),
                    "-I", str(sdk_usage.generated_folder()), "-DWINVER=0x0601", "-D_WIN32_WINNT=0x0601",
                    "-DWIN32_LEAN_AND_MEAN", "-DNOMINMAX"]
    else:
        compiler = [sdk_usage.CLANG, *([] if generation_of(mode) == "2012" else unicode),
                    *sdk_usage.compiler_flags(headers)]
        strict = WARNINGS + STRICT
    return [*compiler, *system_headers.compiled(compiler), *strict, "-fsyntax-only",
            "-x", "c++", "-"]


def belongs(mode, source):
    generation = generation_of(mode)
    if source == MENUS[int(generation) < 2025]:
        return False
    other = "unicode" if generation == "2012" else "ansi"
    return not source.is_relative_to(ROOT / "host" / other) and \
        (generation != "2026" or source.is_relative_to(ROOT / "host"))


def all_sources():
    return [path for folder in sdk_usage.PLUGIN_FOLDERS
            for path in sorted((ROOT / folder).rglob("*.cpp"))]


def compile_text(mode, sources):
    result = subprocess.run(command_for(mode), input=unity_build.text_of(sources),
                            capture_output=True, text=True, check=False)
    return result.returncode, result.stderr


def compile_group(job):
    """[(mode, source, output)] for those of a group that do not compile."""
    mode, sources = job
    status, output = compile_text(mode, sources)
    if status == 0:
        return []
    if len(sources) == 1:
        return [(mode, sources[0], output)]
    # One by one: names of one source may be in the way of another's, and the message is shorter.
    results = [(source, *compile_text(mode, [source])) for source in sources]
    return [(mode, source, output) for source, status, output in results if status != 0]


def main():
    parser = argparse.ArgumentParser(usage=__doc__.split("\n")[2][7:])
    parser.add_argument("--mode", action="append", choices=MODES)
    parser.add_argument("sources", nargs="*", type=pathlib.Path)
    options = parser.parse_args()
    sources = [path.resolve() for path in options.sources] or all_sources()
    modes = options.mode or MODES
    groups = [(mode, group) for mode in modes for group in unity_build.by_program(
        [source for source in sources if belongs(mode, source)])]
    count = sum(len(group) for _, group in groups)
    failed = 0
    with concurrent.futures.ThreadPoolExecutor(max_workers=2) as pool:
        for problems in pool.map(compile_group, groups):
            for mode, source, output in problems:
                failed += 1
                print(f"{source}: does not compile in mode {mode}:\n{output}", file=sys.stderr)
    print(f"{count} sources read, {failed} failed")
    return 1 if failed else 0


if __name__ == "__main__":
    try:
        sys.exit(main())
    except (OSError, sdk_usage.Unreadable) as error:
        print(f"compile_strictly: {error}", file=sys.stderr)
        sys.exit(2)
