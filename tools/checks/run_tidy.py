#!/usr/bin/python3
"""Runs clang-tidy over the plug-in and the stand-in, as the builds compile them.

usage: run_tidy.py [FOLDER...]

Without a folder all sources of both. The plug-in and the host DLLs are read as the msvc build
compiles them, the rest of the stand-in as the gnu build does. The sources of a folder, and those of
small rooms, are read as one text where their names allow it. A result is kept in build/lint until a source of its text, a
header or the list of checks changes. Exit status: 0 nothing found, 1 something, 2 nothing could be
checked.
"""

import concurrent.futures
import hashlib
import json
import os
import pathlib
import shlex
import subprocess
import sys

ROOT = pathlib.Path(__file__).resolve().parents[2]
sys.path.insert(0, str(pathlib.Path(__file__).resolve().parent))
import check_rooms as rooms  # noqa: E402  (beside this file)
import unity_build  # noqa: E402

TIDY, CLANG, GNU = "clang-tidy-19", "clang++-19", "x86_64-w64-mingw32-g++-posix"
FOLDERS = [*rooms.names(), "standin"]
ELSEWHERE = ["benchmarks", "cmake"]
KEPT = ROOT / "build" / "lint"
# A text that includes sources is no place for mistakes of its own.
UNITY_OPTIONS = ["--checks=-bugprone-suspicious-include",
                 f"--header-filter=/({'|'.join(FOLDERS + ELSEWHERE)})/[^ ]*$"]


class Unreadable(Exception):
    """What is needed for a check is missing."""


def gnu_headers():
    """The directories that g++ finds by itself."""
    where = subprocess.run([GNU, "-print-file-name=include/c++"], capture_output=True, text=True,
                           check=True).stdout.strip()
    where = os.path.realpath(where)
    return ["--target=x86_64-w64-mingw32", "-nostdinc++", "-isystem", where, "-isystem",
            f"{where}/x86_64-w64-mingw32", "-isystem", "/usr/x86_64-w64-mingw32/include"]


def flags_of(entry):
    """The command of a compilation without compiler, source and output, and without headers that
    were compiled before: each source has to read what it needs."""
    words = iter(shlex.split(entry["command"])[1:])
    flags = []
    for word in words:
        if word in ("-o", "-include"):
            next(words)
        # Which file a source goes to is nothing that it reads.
        elif word not in ("-c", "-Winvalid-pch", entry["file"]) and not word.endswith("_EXPORTS"):
            flags.append(word)
    return flags


def read_groups(wanted):
    """[(preset, flags, [source...])]: sources of one folder that are compiled alike, or of small rooms."""
    seen = {}
    for preset in ("msvc", "gnu"):
        database = ROOT / "build" / preset / "compile_commands.json"
        if not database.exists():
            continue
        for entry in json.loads(database.read_text(encoding="utf-8")):
            for path in unity_build.sources_of(pathlib.Path(entry["file"])):
                if ROOT not in path.parents or path.suffix != ".cpp":
                    continue
                top = path.relative_to(ROOT).parts[0]
                if top in ("build", "tests") or (wanted and top not in wanted):
                    continue
                seen.setdefault(path, (preset, tuple(flags_of(entry))))
    if not seen:
        raise Unreadable("there is no list of compile commands for it: ./dev build")
    groups = {}
    for path, (preset, flags) in sorted(seen.items()):
        groups.setdefault((preset, flags), []).append(path)
    return [(preset, list(flags), part) for (preset, flags), sources in groups.items()
            for part in unity_build.with_small_ones_together(unity_build.by_folder(sources), ROOT)]


def check(preset, flags, sources, key):
    """What clang-tidy says about one text; empty: nothing."""
    name = f"{str(sources[0].relative_to(ROOT)).replace('/', '+')}.{preset}.{len(sources)}"
    kept = KEPT / name
    if kept.exists() and kept.read_text(encoding="utf-8") == key:
        return ""
    path = sources[0]
    options = []
    if len(sources) > 1:
        # The analyzer only follows the functions of an included source where the file is called so.
        path = unity_build.write(sources, KEPT / f"UnifiedSource+{name}.cpp")
        options = UNITY_OPTIONS
    result = subprocess.run([TIDY, "--quiet", *options, str(path), "--", *flags],
                            capture_output=True, text=True, check=False, cwd=ROOT)
    if result.returncode == 0:
        kept.write_text(key, encoding="utf-8")
        return ""
    return result.stdout or result.stderr


def fits_together(flags, sources):
    """Whether no name of one source is in the way of another's."""
    command = [CLANG, *flags, "-fsyntax-only", "-w", "-x", "c++", "-"]
    return subprocess.run(command, input=unity_build.text_of(sources), capture_output=True,
                          text=True, check=False, cwd=ROOT).returncode == 0


def split(group, gnu_extra):
    """The texts of a group: one, or one for each source."""
    preset, flags, sources = group
    if preset == "gnu":
        flags = flags + gnu_extra
    together = len(sources) > 1 and fits_together(flags, sources)
    return [(preset, flags, part) for part in
            ([sources] if together else [[source] for source in sources])]


def check_text(text, shared):
    preset, flags, sources = text
    parts = [shared, " ".join(flags).encode(), *(source.read_bytes() for source in sources)]
    return check(preset, flags, sources, hashlib.sha256(b"\0".join(parts)).hexdigest())


def main():
    wanted = sys.argv[1:]
    unknown = [name for name in wanted if name not in FOLDERS + ELSEWHERE]
    if unknown:
        raise Unreadable(f"'{unknown[0]}' is no folder with sources, there are "
                         f"{', '.join(FOLDERS + ELSEWHERE)}")
    KEPT.mkdir(parents=True, exist_ok=True)
    headers = sorted([*(path for folder in [*FOLDERS, *ELSEWHERE]
                        for path in (ROOT / folder).rglob("*.h")),
                      *(ROOT / "sdk").rglob("*.txt")])
    # One sum over all headers: which source includes which is not worth knowing here.
    shared = b"\0".join([(ROOT / ".clang-tidy").read_bytes(), *(h.read_bytes() for h in headers)])
    shared = hashlib.sha256(shared).digest()
    groups = read_groups(wanted)
    gnu_extra = gnu_headers()
    found = False
    with concurrent.futures.ThreadPoolExecutor(max_workers=os.cpu_count()) as pool:
        texts = [text for part in pool.map(lambda group: split(group, gnu_extra), groups)
                 for text in part]
        # The long ones first.
        texts.sort(key=lambda text: -len(text[2]))
        for messages in pool.map(lambda text: check_text(text, shared), texts):
            if messages:
                found = True
                print(messages)
    if not found:
        print(f"clang-tidy finds nothing in {sum(len(group[2]) for group in groups)} files")
    return 1 if found else 0


if __name__ == "__main__":
    try:
        sys.exit(main())
    except (OSError, Unreadable) as error:
        print(f"tidy: {error}", file=sys.stderr)
        sys.exit(2)
