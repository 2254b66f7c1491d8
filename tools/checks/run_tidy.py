#!/usr/bin/python3
"""Runs clang-tidy over the plug-in and the stand-in, as the builds compile them.

usage: run_tidy.py [FOLDER...]

Without a folder all sources of both. The plug-in and the host DLLs are read as the msvc build
compiles them, the rest of the stand-in as the gnu build does. Most of its work are the system's headers,
in which it looks for patterns, too: it does so once for a program, whose sources it reads as one text
where their names allow it. Then its analyzer follows what a folder's sources do, which takes the longer
the more of them it sees. A result is kept in build/lint until a source of its text, a header or the
list of checks changes. Exit status: 0 nothing found, 1 something, 2 nothing could be checked.
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
import system_headers  # noqa: E402  (beside this file)
import unity_build  # noqa: E402

TIDY, CLANG, GNU = "clang-tidy-19", "clang++-19", "x86_64-w64-mingw32-g++-posix"
FOLDERS = [*rooms.names(), "standin"]
ELSEWHERE = ["benchmarks", "cmake"]
KEPT = ROOT / "build" / "lint"
UNITY_OPTIONS = [f"--header-filter=/({'|'.join(FOLDERS + ELSEWHERE)})/[^ ]*$"]


class Unreadable(Exception):
    """What is needed for a check is missing."""


def analyzed_together(sources):
    """The texts for the analyzer."""
    return unity_build.with_small_ones_together(unity_build.by_folder(sources), ROOT)


# name: how sources are put together, in the order in which it is tried, and what is off.
PASSES = {
    "patterns": ([unity_build.by_program, unity_build.by_folder], "clang-analyzer-*"),
    "paths": ([analyzed_together],
              "bugprone-* cert-* misc-* performance-* portability-* readability-*"),
}


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
        # Which file a source goes to is nothing that it reads; the compiler's warnings are the build's.
        elif word not in ("-c", "-Winvalid-pch", "-Werror", entry["file"]) and \
                not word.endswith("_EXPORTS"):
            flags.append(word)
    return flags


def read_groups(wanted):
    """[(preset, flags, [source...])]: sources that are compiled alike."""
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
    return [(preset, list(flags), sources) for (preset, flags), sources in groups.items()]


def fits_together(flags, sources, fitting):
    """Whether no name of one source is in the way of another's. `fitting`: what fits, of which each part
    does."""
    if len(sources) == 1 or any(known.issuperset(sources) for known in fitting):
        return True
    command = [CLANG, *flags, "-fsyntax-only", "-w", "-x", "c++", "-"]
    result = subprocess.run(command, input=unity_build.text_of(sources), capture_output=True,
                            text=True, check=False, cwd=ROOT)
    if result.returncode == 0:
        fitting.append(set(sources))
    return result.returncode == 0


def put_together(flags, sources, ways, fitting):
    """[[source...]...]: the texts that the first way makes, those whose names meet by the next one,
    at last each source."""
    if not ways:
        return [[source] for source in sources]
    texts = []
    for part in ways[0](sources):
        together = fits_together(flags, part, fitting)
        texts += [part] if together else put_together(flags, part, ways[1:], fitting)
    return texts


def texts_of(group, gnu_extra):
    """[(what, preset, flags, [source...])]: the texts of a group that the passes read."""
    preset, flags, sources = group
    if preset == "gnu":
        flags = flags + gnu_extra
    found = []
    fitting = []
    for what, (ways, _) in PASSES.items():
        texts = put_together(flags, sources, ways, fitting)
        options = flags
        # Headers that were compiled before are no help in finding patterns: they are gone through as well.
        if what == "paths" and len(texts) > 3:
            options = flags + system_headers.compiled([CLANG, *flags])
        found += [(what, preset, options, text) for text in texts]
    return found


def check_text(text, shared):
    """What clang-tidy says about one text; empty: nothing."""
    what, preset, flags, sources = text
    off = PASSES[what][1]
    parts = [shared, off.encode(), " ".join(flags).encode(),
             *(source.read_bytes() for source in sources)]
    key = hashlib.sha256(b"\0".join(parts)).hexdigest()
    name = f"{str(sources[0].relative_to(ROOT)).replace('/', '+')}.{preset}.{len(sources)}.{what}"
    kept = KEPT / name
    if kept.exists() and kept.read_text(encoding="utf-8") == key:
        return ""
    path = sources[0]
    options = ["--checks=" + ",".join(f"-{each}" for each in off.split())]
    if len(sources) > 1:
        # The analyzer only follows the functions of an included source where the file is called so.
        path = unity_build.write(sources, KEPT / f"UnifiedSource+{name}.cpp")
        options += UNITY_OPTIONS
    result = subprocess.run([TIDY, "--quiet", *options, str(path), "--", *flags],
                            capture_output=True, text=True, check=False, cwd=ROOT)
    if result.returncode == 0:
        kept.write_text(key, encoding="utf-8")
        return ""
    return result.stdout or result.stderr


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
        parts = pool.map(lambda group: texts_of(group, gnu_extra), groups)
        texts = [text for part in parts for text in part]
        # The long ones first.
        texts.sort(key=lambda text: -len(text[-1]))
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
