#!/usr/bin/python3
"""Lists what each source of the plug-in takes from the SDK, and checks that it may.

usage: check_sdk_usage.py [--check | --write] [OPTION...] [SOURCE...]

Prints, for each source, the SDK headers that it includes, the classes, members and functions that it
uses, with their declarations, the members that it overrides, and the constants. Uses come from the
compiler: it reads a copy of the headers in which everything is marked, and reports each one. All of
it is checked against what the tables under sdk/ say that the SDK of 2012 has: every header has one of
its names, and every declaration stands there word by word, so const and other parameters agree.

options: --check            also compare the result with the page that --write has written
         --write            write that page (docs/sdk-usage.md)
         --list FILE        what may be used (the list made from the tables)
         --declarations DIR the SDK headers (those made from the tables)

Exit status: 0 all is listed, 1 something is not, 2 something cannot be read.
"""

import argparse
import concurrent.futures
import os
import pathlib
import re
import shutil
import subprocess
import sys
import tempfile

ROOT = pathlib.Path(__file__).resolve().parents[2]
sys.path.insert(0, str(pathlib.Path(__file__).resolve().parent))
sys.path.insert(0, str(pathlib.Path(__file__).resolve().parents[1] / "building"))
import check_rooms as rooms  # noqa: E402  (beside this file)
import make_sdk  # noqa: E402  (in tools/building)
import system_headers  # noqa: E402  (beside this file)
import unity_build  # noqa: E402

PLUGIN_FOLDERS = rooms.names()
PAGE = ROOT / "docs" / "sdk-usage.md"
# The system's and the language's headers that the plug-in needs.
SYSTEM_HEADERS = ["algorithm", "array", "commctrl.h", "cstdlib", "cstring", "iterator", "optional",
                  "prsht.h", "shellapi.h", "span", "windows.h"]
CLANG = "clang++-19"
MARK = '[[deprecated("sdk")]] '

# A declaration inside a class, or a function outside of one: what precedes the name, then the name
# and its opening parenthesis.
DECLARATION = re.compile(
    r"^(?P<indent>    |)(?P<text>(?!return\b|typedef\b|using\b|SDK_SLOT|#|//|if\b"
    r"|for\b|friend\b|extern \")[A-Za-z_~][\w:<>*&~ \[\]=]*?\(.*)$")


class Unreadable(Exception):
    """A file or tool that is needed is missing or is not what it should be."""


def plugin_sources():
    """The sources and headers bound to the SDK of 2012."""
    result = []
    for folder in PLUGIN_FOLDERS:
        for path in sorted((ROOT / folder).rglob("*")):
            if path.suffix in (".cpp", ".h") and "unicode" not in path.parts:
                result.append(path)
    return result


def compiler_flags(headers):
    """How the msvc build compiles, without what a check does not need."""
    where = subprocess.run(["x86_64-w64-mingw32-g++-posix", "-print-file-name=include/c++"],
                           capture_output=True, text=True, check=True).stdout.strip()
    where = os.path.realpath(where)
    return ["--target=x86_64-pc-windows-msvc", "-fgnuc-version=12.2.0", "-D__declspec=__declspec",
            "-D__STRICT_ANSI__", "-D_GLIBCXX_EXTERN_TEMPLATE=0", "-nostdinc++",
            "-isystem", where, "-isystem", f"{where}/x86_64-w64-mingw32",
            "-isystem", "/usr/x86_64-w64-mingw32/include", "-isystem", str(headers),
            "-I", str(ROOT), "-I", str(generated_folder()),
            "-DWINVER=0x0601", "-D_WIN32_WINNT=0x0601", "-DWIN32_LEAN_AND_MEAN", "-DNOMINMAX",
            "-std=c++20", "-fno-exceptions", "-fno-threadsafe-statics"]


def generated_folder():
    for preset in ("msvc", "gnu"):
        folder = ROOT / "build" / preset / "generated"
        if folder.is_dir():
            return folder
    raise Unreadable("build/msvc/generated is missing; configure first: ./dev build msvc")


# ---- the marked copy of the headers --------------------------------------------------------------

def mark(text):
    """The header with every declaration marked; lines keep their numbers."""
    lines = []
    depth = 0
    inside_class = []  # depths at which a class body begins
    continued = False
    for line in text.split("\n"):
        marked = line
        code = re.sub(r"//.*", "", line)
        in_class = bool(inside_class) and inside_class[-1] == depth
        head = re.match(r"^(class|struct) (\w+)(?= |$)(?!;)(?!.*;$)", line)
        if head:
            marked = f"{head[1]} {MARK}{line[len(head[1]) + 1:]}"
        elif not continued and (in_class or depth == 0) and not line.rstrip().endswith("\\"):
            match = DECLARATION.match(line)
            if match and bool(match["indent"]) == in_class:
                marked = match["indent"] + MARK + match["text"]
            elif depth == 0 and re.match(r"^SDK_\w+_API extern ", line):
                marked = MARK + line
        lines.append(marked)
        for character in code:
            if character == "{":
                depth += 1
                if head:
                    inside_class.append(depth)
                    head = None
            elif character == "}":
                if inside_class and inside_class[-1] == depth:
                    inside_class.pop()
                depth -= 1
        stripped = code.rstrip()
        continued = bool(stripped) and not stripped.endswith((";", "{", "}", ":", ">", '"')) \
            and not stripped.lstrip().startswith(("#", "SDK_SLOT"))
    return "\n".join(lines)


def marked_copy(declarations, folder):
    for path in declarations.rglob("*.h"):
        target = folder / path.relative_to(declarations)
        target.parent.mkdir(parents=True, exist_ok=True)
        text = path.read_text(encoding="utf-8")
        target.write_text(text if path.name == "sdk_layout.h" else mark(text), encoding="utf-8")


# ---- what a header declares ----------------------------------------------------------------------

class Declarations:
    def __init__(self, folder):
        self.folder = folder
        self.lines = {}

    def at(self, header, number):
        """The declaration at a line: `Class: signature`, `class Name : bases`, `signature`."""
        if header not in self.lines:
            path = self.folder / header
            self.lines[header] = path.read_text(encoding="utf-8").split("\n")
        lines = self.lines[header]
        line = lines[number - 1]
        if re.match(r"^(class|struct) ", line):
            return re.sub(r"\s*\{.*", "", line)
        text = ""
        for following in lines[number - 1:]:
            text += " " + following.strip()
            if following.rstrip().endswith((";", "{", "}")):
                break
        signature = make_sdk.tidy(text)
        if line.startswith("    "):
            for before in range(number - 2, -1, -1):
                owner = re.match(r"^(?:class|struct) (\w+)\b(?!;)", lines[before])
                if owner:
                    return f"{owner[1]}: {signature}"
        return signature


# ---- what a source uses --------------------------------------------------------------------------

USE = re.compile(r"^(?P<file>[^:\n]+):(?P<line>\d+):\d+: warning: '?(?P<name>.+?)'? is deprecated: sdk")
PLACE = re.compile(r"^(?P<file>[^:\n]+):(?P<line>\d+):\d+: note: .* has been explicitly marked")


def included(source):
    """(line, name) of the headers in angle brackets."""
    return [(number, match[1])
            for number, line in enumerate(source.read_text(encoding="utf-8").split("\n"), 1)
            if (match := re.match(r"\s*#\s*include\s*<([^>]+)>", line))]


def read_uses(text, sources, copy, declarations):
    """{source: {declaration: first line of the source with a use of it}} for what one text, a source
    or several as one, brings. None: it does not compile, and `message` says why."""
    known = system_headers.compiled([CLANG, *compiler_flags(make_sdk.made() / "include")])
    command = [CLANG, *compiler_flags(copy), *known, "-fsyntax-only", "-Wdeprecated-declarations",
               "-fno-caret-diagnostics", "-ferror-limit=0", "-x", "c++", "-"]
    result = subprocess.run(command, input=text, capture_output=True, text=True, check=False)
    if result.returncode != 0:
        return None, next((line for line in result.stderr.splitlines() if " error: " in line),
                          result.stderr.strip())
    found = {source: {} for source in sources}
    known = {str(source.resolve()): source for source in sources}
    where = None
    for line in result.stderr.splitlines():
        use = USE.match(line)
        place = PLACE.match(line)
        if use:
            source = known.get(str(pathlib.Path(use["file"]).resolve()))
            where = (source, int(use["line"])) if source else None
        elif place and where is not None:
            header = pathlib.Path(place["file"]).resolve()
            if copy.resolve() in header.parents:
                name = declarations.at(header.relative_to(copy.resolve()), int(place["line"]))
                source, number = where
                found[source][name] = min(number, found[source].get(name, number))
            where = None
    return found, ""


def uses(sources, copy, declarations):
    """What read_uses finds, of sources that lie in one folder."""
    found, message = read_uses(unity_build.text_of(sources), sources, copy, declarations)
    if found is not None:
        return found
    # Names of one source may be in the way of another's.
    found = {}
    for source in sources:
        alone, message = read_uses(unity_build.text_of([source]), [source], copy, declarations)
        if alone is None:
            raise Unreadable(f"{source} does not compile: {message}")
        found.update(alone)
    return found


def code_of(source):
    """The text without comments, without what stands in quotes and without what is for later hosts, in
    lines as before."""
    text = source.read_text(encoding="utf-8")
    text = re.sub(r"^#if MAX_RELEASE >= .*?^#(?:else|endif)$",
                  lambda match: "\n" * match[0].count("\n"), text, flags=re.M | re.S)
    return re.sub(r'//[^\n]*|"(?:[^"\\\n]|\\.)*"', '""', text)


def overrides(source):
    """`override SIGNATURE` -> line, for the members of classes that derive from the SDK's."""
    found = {}
    for number, line in enumerate(code_of(source).split("\n"), 1):
        match = re.match(r"\s+(\w[\w:*& ]*?\([^()]*\)(?: const)?) override\b", line)
        if match:
            plain = re.sub(r" = \w+", "", match[1])
            found.setdefault("override " + plain, number)
    return found


def constants_of(declarations_folder):
    """Macros and enumerators of the SDK."""
    names = set()
    for path in declarations_folder.rglob("*.h"):
        text = code_of(path)
        names |= set(re.findall(r"^#define (\w+)", text, re.M))
        for body in re.findall(r"^enum \w+ \{(.*?)\};", text, re.M | re.S):
            names |= set(re.findall(r"^\s+(\w+)", body, re.M))
    return names


def constants(source, known):
    found = {}
    for number, line in enumerate(code_of(source).split("\n"), 1):
        for word in re.findall(r"\b[A-Z_]\w+\b", line):
            if word in known:
                found.setdefault(f"constant {word}", number)
    return found


# ---- the list and the page -----------------------------------------------------------------------

class Allowed:
    """Lines `header NAME`, or a declaration; `override` stands before a member that may be overridden,
    whose parameters have no names here, `constant` before a constant. # begins a remark."""

    def __init__(self, path):
        self.headers, self.declarations = set(), set()
        try:
            text = path.read_text(encoding="utf-8")
        except OSError as error:
            raise Unreadable(f"{path}: cannot be read: {error.strerror}")
        for line in text.split("\n"):
            line = re.sub(r"(^|\s)#.*", "", line).strip()
            kind, _, name = line.partition(" ")
            if kind == "header":
                self.headers.add(name)
            elif line:
                self.declarations.add(line)

    def has(self, declaration):
        kind, _, member = declaration.partition(" ")
        if kind == "override":
            declaration = f"override {make_sdk.without_names(member)}"
        return declaration in self.declarations


def examine(sources, allowed, declarations_folder):
    """({source: (headers, declarations)}, problems)."""
    result, problems = {}, []
    declarations = Declarations(declarations_folder)
    known_constants = constants_of(declarations_folder)
    with tempfile.TemporaryDirectory(prefix="karvel-sdk-") as name:
        copy = pathlib.Path(name)
        marked_copy(declarations_folder, copy)
        found = {}
        with concurrent.futures.ThreadPoolExecutor(max_workers=2) as pool:
            for part in pool.map(lambda group: uses(group, copy, declarations),
                                 unity_build.by_folder(sources)):
                found.update(part)
    for source in sources:
        used = found[source]
        shown = source.relative_to(ROOT) if ROOT in source.resolve().parents else source
        headers = []
        for number, header in included(source):
            if header in allowed.headers:
                headers.append(header)
            elif header not in SYSTEM_HEADERS:
                problems.append(f"{shown}:{number}: <{header}> is no header of the SDK of 2012 and "
                                "none of the system's that are used; correct the name or list it")
        used = {**used, **overrides(source), **constants(source, known_constants)}
        for declaration, number in sorted(used.items()):
            if not allowed.has(declaration):
                problems.append(f"{shown}:{number}: uses `{declaration}`, which is not listed; "
                                "check it against the SDK of 2012 and give it a row under sdk/table")
        if headers or used:
            result[str(shown)] = (headers, sorted(used))
    return result, problems


def page_of(result):
    lines = ["# What each source takes from the SDK", "",
             "Written by `tools/checks/check_sdk_usage.py --write`; a test compares it with the sources.",
             "A class that is only named or derived from stands with its bases, a member behind its class.",
             ""]
    for source, (headers, declarations) in result.items():
        lines += [f"## {source}", ""]
        if headers:
            lines += ["Includes " + ", ".join(f"`<{header}>`" for header in headers) + ".", ""]
        lines += [f"- `{declaration}`" for declaration in declarations]
        if declarations:
            lines.append("")
    return "\n".join(lines)


def main():
    parser = argparse.ArgumentParser(usage=__doc__.split("\n")[2][7:], add_help=True)
    parser.add_argument("--check", action="store_true")
    parser.add_argument("--write", action="store_true")
    parser.add_argument("--list", type=pathlib.Path)
    parser.add_argument("--declarations", type=pathlib.Path)
    parser.add_argument("sources", nargs="*", type=pathlib.Path)
    options = parser.parse_args()
    if not shutil.which(CLANG):
        raise Unreadable(f"{CLANG} is missing; install it")
    sources = [path.resolve() for path in options.sources] or plugin_sources()
    made = make_sdk.made()
    result, problems = examine(sources, Allowed(options.list or made / "sdk_members.txt"),
                               (options.declarations or made / "include").resolve())
    page = page_of(result)
    if options.write:
        PAGE.write_text(page, encoding="utf-8")
    elif not options.check:
        print(page)
    elif not PAGE.exists() or PAGE.read_text(encoding="utf-8") != page:
        problems.append(f"{PAGE.relative_to(ROOT)}:1: is not what the sources use now; "
                        "write it anew: tools/checks/check_sdk_usage.py --write")
    for problem in problems:
        print(problem, file=sys.stderr)
    if not problems:
        print(f"{len(sources)} sources, {len(result)} of them use the SDK, all of it listed",
              file=sys.stderr)
    return 1 if problems else 0


if __name__ == "__main__":
    try:
        sys.exit(main())
    except (Unreadable, make_sdk.Wrong) as error:
        print(f"check_sdk_usage: {error}", file=sys.stderr)
        sys.exit(2)
