"""Builds the plug-in with one change, and finds out whether a test notices it.

Everything is taken from the gnu build: its compile and link commands, the objects of all sources
that a change does not concern, the stand-in. The coverage build says which scenario executes which
line. The work tree is not touched: a changed source lies in a folder of the job's, which comes first
where the compiler looks for files.
"""

import collections
import concurrent.futures
import hashlib
import json
import os
import pathlib
import re
import shlex
import shutil
import signal
import subprocess
import sys
import threading
import time

for folder in ("checks", "building"):
    sys.path.insert(0, str(pathlib.Path(__file__).resolve().parents[1] / folder))
import check_rooms as rooms  # noqa: E402
import link_tests as linking  # noqa: E402

WINE = "/usr/lib/wine/wine64"
GCOV = "x86_64-w64-mingw32-gcov-posix"
# Headers that take most of the time of a source that reads them.
LARGE_HEADERS = ("windows.h", "max.h")
# The report plug-in is another file, of which these tests see nothing.
PLUGIN_FOLDERS = tuple(room for room in rooms.names() if room != "report")
OF_THE_REPORT = ("host/inspection.cpp", "host/inspection.h")
# Programs of test cases, by the folder of the build that they lie in. Those that link sources of the
# plug-in are linked anew with a changed one; the last one loads the file.
TEST_PROGRAMS = {
    "plugin_rules_test": "tests_bin",
    "script_test": "tests_bin",
    "gesture_handlers_test": "tests_bin",
    "host_windows_test": "tests_bin",
    "later_hosts_test": "tests_bin",
    "hook_procedures_test": "tests_bin",
    "played_input_test": "tests_bin",
    "own_windows_test": "tests_bin",
    "registration_test": "tests_bin",
    "playback_test": "tests_bin",
    "modifier_cursor_test": "tests_bin",
    "settings_store_test": "tests_bin",
    "shell_commands_test": "host",
    "missing_host_test": "host",
    "entry_points_test": "host",
}
# The one that loads the file as the host does, and links nothing of it.
LOADER = "entry_points_test"
# The host made of numbers, which calls the sources of these folders as the other build compiles them.
RAW_HOST = "raw_host_test"
RAW_HOST_FOLDERS = ("host", "shell")
RAW_HOST_SUBJECT = "tests_bin/raw_host_subject.dll"
# The beginning of the random walk that the tests take with this build: some twenty walks.
WALK = ("--seed", "1", "--events", "30000")
WALK_FAILS = re.compile(r"^walk (\d+) fails", re.M)
# Tests that play with the file in a way of their own, tried on what nothing else has noticed.
TEST_SCRIPTS = (("tests/plugin/windows/dialogs_test.sh", "gnu"),
                ("tests/plugin/windows/settings_file_test.sh", "gnu"),
                ("tests/benchmarks/check_cost.sh",))
# What makes a test the first to be tried: that it has noticed this very change in earlier sources.
NOTICED_BEFORE = 100
# How many scenarios are played before the programs then, and how many before the tests that take longer.
LIKELY = 3
FIRST_TRIED = 12
# Stands for all tests that are no scenarios, among those that a change has met.
NO_SCENARIOS = ""
# What ends a play early: an expectation that does not hold, a crash, a hang.
PLAY_FAILS = re.compile(r"(tests/scenarios/\S+\.scn):\d+: (expected|crashed|no progress)")


class Failure(Exception):
    """Something that a run needs does not work."""


def digest(*parts):
    result = hashlib.sha256()
    for part in parts:
        result.update(part if isinstance(part, bytes) else part.encode())
        result.update(b"\0")
    return result.hexdigest()


def plugin_sources(root):
    """Sources and headers of the plug-in as the gnu build compiles it, relative to the root."""
    found = []
    for folder in PLUGIN_FOLDERS:
        for path in sorted((root / folder).rglob("*")):
            if path.suffix in (".cpp", ".h") and "unicode" not in path.parts:
                found.append(path.relative_to(root).as_posix())
    return [name for name in found if name not in OF_THE_REPORT]


def scenario_files(root):
    return sorted(path.relative_to(root).as_posix()
                  for path in (root / "tests/scenarios").rglob("*.scn"))


def windows_path(path):
    return "Z:" + str(path).replace("/", "\\")


def patience():
    """By how much everything may take longer because the machine is busy."""
    return min(5.0, max(1.0, os.getloadavg()[0] / (os.cpu_count() or 1)))


class Wine:
    """The session that ./dev has begun: programs run in it on the processor that it has."""

    def __init__(self, job=0):
        prefixes, _, own = os.environ.get("WINEPREFIX", "").rpartition("-")
        if not prefixes:
            raise Failure("there is no Wine session; run it as ./dev mutate")
        # Where the session's server is found (wine_session.sh).
        self.folder = os.path.join(os.path.dirname(prefixes), "wine-tmp")
        lane = job or int(own)
        self.environment = dict(os.environ, KARVEL_LANE=str(lane), WINEPREFIX=f"{prefixes}-{lane}")
        processors = sorted(os.sched_getaffinity(0))
        self.processor = str(processors[lane % len(processors)])

    def run(self, arguments, folder, log, longest, until=None, **variables):
        """The exit status; -1 when it took longer than that many seconds on an idle machine, -2 when
        it was ended because its output contained what is waited for."""
        with open(log, "wb") as output:
            process = subprocess.Popen(
                ["taskset", "-c", self.processor, WINE, *arguments], cwd=folder,
                stdin=subprocess.DEVNULL, stdout=output, stderr=subprocess.STDOUT,
                env={**self.environment, "TMPDIR": self.folder, **variables})
            begin = time.monotonic()
            while True:
                try:
                    return process.wait(0.1 if until else 1)
                except subprocess.TimeoutExpired:
                    status = 0
                    if until and until.search(log.read_text(errors="replace")):
                        status = -2
                    elif time.monotonic() - begin > longest * patience():
                        status = -1
                    if status:
                        process.kill()
                        process.wait()
                        return status

    @staticmethod
    def end_all_of(folder):
        """Ends what programs of this folder have left running: a play that goes on for ever outlives
        the program that has started it."""
        for entry in pathlib.Path("/proc").iterdir():
            try:
                words = (entry / "cmdline").read_bytes() if entry.name.isdigit() else b""
                if str(folder).replace("/", "\\").encode() in words:
                    os.kill(int(entry.name), signal.SIGKILL)
            except OSError:
                pass  # it has ended by itself


def where(build, plugin):
    """What the stand-in is to load."""
    return ["--abi", "gnu", "--host-dir", windows_path(build / "host"),
            "--plugin", windows_path(plugin), "--map", windows_path(plugin.with_suffix(".map"))]


def play(wine, root, build, plugin, scenarios, work, longest, until=None, **variables):
    """Plays the scenarios: status and messages."""
    listed = work / "files"
    listed.write_text("".join(name + "\n" for name in scenarios))
    log = work / "messages"
    status = wine.run(
        [str(build / "bin/standin.exe"), "play", *where(build, plugin),
         "--jobs", "2" if len(scenarios) > FIRST_TRIED else "1", "--trace", str(work / "trace"), "--files-from", str(listed)],
        root, log, longest, until, **variables)
    return status, log.read_text(errors="replace")


class LineMap:
    """Which scenario executes which lines of the plug-in, kept from run to run. A scenario is played
    again when it has changed, or a source that it executes; all of them when a header has."""

    def __init__(self, root, work):
        self.root = root
        self.file = work / "lines.json"
        self.work = work / "lines"
        self.scenarios = {}
        self.executing = {}  # file -> line -> names of the scenarios
        self.code_lines = {}  # file -> lines that hold code
        self.read = {}  # digest of an object's counts -> file -> (lines with code, executed ones)
        self.lock = threading.Lock()

    def load(self, wines, say):
        plugin = {name: digest((self.root / name).read_bytes())
                  for name in plugin_sources(self.root)}
        kept = json.loads(self.file.read_text()) if self.file.exists() else {}
        earlier = kept.get("plugin", {})
        changed = {name for name in {*plugin, *earlier} if plugin.get(name) != earlier.get(name)}
        known = kept.get("scenarios", {})
        if any(name.endswith(".h") for name in changed):
            known = {}
        known = {name: entry for name, entry in known.items() if not changed & set(entry["lines"])}
        code = {name: lines for name, lines in kept.get("code", {}).items() if name not in changed}
        names = scenario_files(self.root)
        sums = {name: digest((self.root / name).read_bytes()) for name in names}
        missing = [name for name in names if known.get(name, {}).get("sum") != sums[name]]
        self.scenarios = {name: known[name] for name in names if name not in missing}
        step = 50
        parts = collections.deque(missing[first:first + step]
                                  for first in range(0, len(missing), step))

        def work_on(wine, work):
            while parts:
                part = parts.popleft()
                say(f"lines of {len(part)} scenarios, from {part[0]}")
                measured = list(self.measure(wine, work, part, code))
                with self.lock:
                    for name, lines in measured:
                        self.scenarios[name] = {"sum": sums[name], "lines": lines}
                    self.file.write_text(json.dumps(
                        {"plugin": plugin, "scenarios": self.scenarios, "code": code}))

        with concurrent.futures.ThreadPoolExecutor(len(wines)) as pool:
            for each in [pool.submit(work_on, wine, self.work / str(number))
                         for number, wine in enumerate(wines)]:
                each.result()
        for name, entry in self.scenarios.items():
            for file, lines in entry["lines"].items():
                of_file = self.executing.setdefault(file, {})
                for line in lines:
                    of_file.setdefault(line, set()).add(name)
        self.code_lines = {file: set(lines) for file, lines in code.items()}

    def measure(self, wine, work, scenarios, code):
        build = self.root / "build/coverage"
        objects = build / "CMakeFiles/KarvelMax.dir"
        counts = work / "counts"
        shutil.rmtree(work, ignore_errors=True)
        counts.mkdir(parents=True)
        status, messages = play(
            wine, self.root, build, build / "plugin/KarvelMax.gup", scenarios, work,
            60 + 10 * len(scenarios),
            KARVEL_COVERAGE_OF_EACH=str(counts), GCOV_PREFIX_STRIP="99")
        if status != 0:
            raise Failure("a scenario fails with the unchanged plug-in:\n" + messages.strip())
        notes = {path.stem: path for path in objects.rglob("*.gcno")}
        keys = {}  # scenario -> digests of what it has left
        unread = {}
        for name in scenarios:
            folder = counts / name.replace("/", "+")
            if not folder.is_dir():
                raise Failure(f"{name}: its play has left no counts")
            for path in sorted(folder.iterdir()):
                # Most objects do the same in most scenarios.
                key = digest(path.name, path.read_bytes())
                keys.setdefault(name, []).append(key)
                if key not in self.read:
                    unread[key] = path
        self.read_counts(work, unread, notes)
        for name in scenarios:
            executed = {}
            for key in keys[name]:
                for file, (holding, found) in self.read[key].items():
                    with self.lock:
                        code[file] = sorted(holding.union(code.get(file, ())))
                    executed.setdefault(file, set()).update(found)
            yield name, {file: sorted(lines) for file, lines in executed.items() if lines}

    def read_counts(self, work, unread, notes):
        """Reads the counts of objects: file -> (lines that hold code, executed ones)."""
        listed = []
        for number, (key, path) in enumerate(unread.items()):
            folder = work / "read" / str(number)
            folder.mkdir(parents=True)
            path.replace(folder / path.name)
            (folder / (path.stem + ".gcno")).symlink_to(notes[path.stem])
            listed.append((key, f"read/{number}/{path.name}"))
        for first in range(0, len(listed), 200):
            part = listed[first:first + 200]
            answer = subprocess.run([GCOV, "--json-format", "--stdout", *(name for _, name in part)],
                                    cwd=work, capture_output=True, text=True, check=True)
            reports = [json.loads(line) for line in answer.stdout.splitlines()]
            of_name = {report["data_file"]: report for report in reports}
            for key, name in part:
                self.read[key] = self.lines_of(of_name[name])

    def lines_of(self, report):
        found = {}
        # An object that a cache has given was compiled in another work tree.
        folder = pathlib.PurePosixPath(report["current_working_directory"])
        root = folder.parents[1]
        for of_file in report["files"]:
            path = folder / of_file["file"].replace("\\", "/")
            path = pathlib.PurePosixPath(os.path.normpath(path))
            if root not in path.parents:
                continue
            file = path.relative_to(root).as_posix()
            if file.split("/")[0] not in PLUGIN_FOLDERS:
                continue
            holding, executed = found.setdefault(file, (set(), set()))
            for line in of_file["lines"]:
                holding.add(line["line_number"])
                if line["count"]:
                    executed.add(line["line_number"])
        return found

    def of_lines(self, file, first, last):
        """The scenarios that execute one of these lines; None when they hold no code."""
        lines = [line for line in range(first, last + 1) if line in self.code_lines.get(file, ())]
        if not lines:
            return None
        found = set()
        for line in lines:
            found |= self.executing.get(file, {}).get(line, set())
        return found

    def size(self, name):
        return sum(len(lines) for lines in self.scenarios[name]["lines"].values())


def without_cache(words):
    """A command without the compiler's cache before it: a change is compiled once."""
    return words[1:] if pathlib.Path(words[0]).name == "ccache" else words


def script_fails(script, root, build, wine, log):
    """Whether it fails twice with the plug-in of this build."""
    for _ in range(2):
        with open(log, "wb") as output:
            answer = subprocess.run([str(root / script[0]), str(build), *script[1:]], cwd=root,
                                    stdin=subprocess.DEVNULL, stdout=output,
                                    stderr=subprocess.STDOUT, env=wine.environment, check=False)
        if answer.returncode == 0:
            return False
    return True


class GnuBuild:
    """The commands of the gnu build, made fast: headers that all sources read are compiled once, and
    test programs are linked by a linker that takes a tenth of the time. Neither makes a difference to
    the code."""

    def __init__(self, root, work):
        self.root = root
        self.work = work
        self.folder = root / "build/gnu"
        self.compile_commands = {}  # source -> words
        self.objects = {}           # source -> object, relative to the folder
        others = {}                 # object -> source, of all that is no part of the plug-in
        for entry in json.loads((self.folder / "compile_commands.json").read_text()):
            words = without_cache(shlex.split(entry["command"]))
            name = words[words.index("-o") + 1]
            path = pathlib.Path(entry["file"])
            if root not in path.parents:
                continue
            source = path.relative_to(root).as_posix()
            if name.startswith("CMakeFiles/KarvelMax.dir/"):
                # The headers that are compiled below are more.
                at = words.index("-Winvalid-pch")
                del words[at:at + 3]
                self.compile_commands[source] = words
                self.objects[source] = name
            elif source.split("/")[0] not in PLUGIN_FOLDERS:
                self.compile_commands.setdefault(source, words)
                others[name] = source
        self.links = {"KarvelMax": [*self.link_words("plugin/KarvelMax.gup"),
                                    "-Wl,--strip-debug"]}
        for program, folder in TEST_PROGRAMS.items():
            self.links[program] = linking.linker_words(
                self.link_words(f"{folder}/{program}.exe"), self.folder)
        self.of_tests = {program: {others[word]: word for word in words if word in others}
                         for program, words in self.links.items()}  # source -> object
        self.headers = {}  # of the plug-in -> its sources that read it
        self.test_readers = {}  # such a header -> the tests' sources that read it
        self.test_texts = {}  # source of the tests -> it and the tests' headers that it reads
        self.compiled_headers = {}  # source -> the one to begin with
        self.read_headers()
        self.pure = set(subprocess.run(
            ["x86_64-w64-mingw32-ar", "t", "libkarvel_pure.a"], cwd=self.folder,
            capture_output=True, text=True, check=True).stdout.split())

    def link_words(self, target):
        commands = subprocess.run(["ninja", "-t", "commands", target], cwd=self.folder,
                                  capture_output=True, text=True, check=True).stdout
        last = commands.strip().splitlines()[-1]
        words = [word for word in shlex.split(last) if word not in (":", "&&")]
        launcher = [at for at, word in enumerate(words) if word.endswith("/link_tests.py")]
        return words[launcher[0] + 1:] if launcher else words

    def read_headers(self):
        """Which headers the sources read: those of the plug-in, and the large ones."""
        for source, name in self.objects.items():
            read, begin = self.read_deps(name)
            for header in read:
                self.headers.setdefault(header, set()).add(source)
            if begin:
                self.compiled_headers[source] = self.compile_headers(source, begin)
        for objects in self.of_tests.values():
            for source, name in objects.items():
                read, _ = self.read_deps(name)
                self.test_texts[source] = "".join(
                    (self.root / file).read_text() for file in
                    (source, *(header for header in read if header.startswith("tests/"))))
                for header in read:
                    if header.split("/")[0] in PLUGIN_FOLDERS:
                        self.test_readers.setdefault(header, set()).add(source)

    def read_deps(self, name):
        """The repository's texts that an object is made from, and the large headers."""
        listed = subprocess.run(["ninja", "-t", "deps", name], cwd=self.folder,
                                capture_output=True, text=True, check=True).stdout
        paths = [pathlib.Path(os.path.normpath(self.folder / line.strip()))
                 for line in listed.splitlines()[1:]]
        leaves = {path.name for path in paths}
        return ([path.relative_to(self.root).as_posix() for path in paths
                 if self.root in path.parents and
                 (path.suffix == ".h" or self.root / "tests" in path.parents)],
                [header for header in LARGE_HEADERS if header in leaves])

    def compile_headers(self, source, headers):
        """The name by which a source includes the headers, compiled as it is."""
        words = self.plain_words(source)
        words = [word for word in words if word not in ("-c", str(self.root / source))]
        read = sorted((self.root / "sdk").rglob("*.h"))
        key = digest(*words, *headers, *(path.read_bytes() for path in read))
        place = self.work / "headers" / f"{key[:24]}.h"
        if not place.with_suffix(".h.gch").exists():
            place.parent.mkdir(parents=True, exist_ok=True)
            place.write_text("".join(f"#include <{header}>\n" for header in headers))
            partial = place.with_suffix(".partial")
            subprocess.run([*words, "-w", "-x", "c++-header", "-o", str(partial), str(place)],
                           cwd=self.folder, check=True)
            partial.replace(place.with_suffix(".h.gch"))
        return place

    def plain_words(self, source):
        """The command that compiles a source, without its result. Warnings are not asked for: they
        would only take changes out."""
        words = []
        skip = False
        leave_out = ("-Werror", "-Wall", "-Wextra", "-Wpedantic", "-Wshadow")
        for word in self.compile_commands[source]:
            if skip or word in leave_out:
                skip = False
            elif word == "-o":
                skip = True
            else:
                words.append(word)
        return words

    def sources_of(self, file):
        """The sources that have to be compiled when this file changes."""
        return [file] if file in self.objects else sorted(self.headers.get(file, ()))

    def sum_of(self, file):
        """Of all that the objects are made from which change with this file."""
        sources = self.sources_of(file)
        read = {name for name, readers in self.headers.items() if readers & set(sources)}
        return digest(*(name + (self.root / name).read_text()
                        for name in sorted({file, *sources, *read})))

    def check_programs(self, wine):
        """A program or script that fails with the plug-in as it is would notice anything."""
        for program, folder in TEST_PROGRAMS.items():
            log = self.work / "cases"
            if any(wine.run([str(self.folder / folder / f"{program}.exe")], self.root, log, 600) == 0
                   for _ in range(2)):
                continue
            raise Failure(f"{program} fails with the unchanged plug-in:\n" +
                          log.read_text(errors="replace"))
        for script in TEST_SCRIPTS:
            if script_fails(script, self.root, self.folder, wine, log):
                raise Failure(f"{script[0]} fails with the unchanged plug-in:\n" +
                              log.read_text(errors="replace"))

    def programs_of(self, sources):
        """Test programs that the sources are linked into."""
        found = []
        for program in TEST_PROGRAMS:
            words = self.links[program]
            for source in sources:
                if source in self.of_tests[program]:
                    found.append(program)
                    break
                leaf = source.rsplit("/", 1)[-1] + ".obj"
                linked = any(word.endswith("/" + source + ".obj") for word in words)
                if linked or (leaf in self.pure and "libkarvel_pure.a" in words):
                    found.append(program)
                    break
        return found

    def compile(self, source, overlay, target):
        """The object of a source, with the files in the overlay instead of the tree's own. None when
        it does not compile."""
        words = self.plain_words(source)
        if overlay and (overlay / source).exists():
            words[words.index(str(self.root / source))] = str(overlay / source)
        if source in self.compiled_headers:
            words[1:1] = ["-include", str(self.compiled_headers[source])]
        if overlay:
            words.insert(1, f"-I{overlay}")
        target.parent.mkdir(parents=True, exist_ok=True)
        answer = subprocess.run([*words, "-w", "-o", str(target)], cwd=self.folder,
                                capture_output=True, text=True, check=False)
        return target.read_bytes() if answer.returncode == 0 else None

    def link(self, name, changed, target):
        """Links a file of the build with changed objects (source -> object) instead of its own."""
        words = []
        placed = set()
        of_tests = self.of_tests.get(name, {})
        for word in self.links[name]:
            for source, made in changed.items():
                if word == of_tests.get(source) or word.endswith("/" + source + ".obj"):
                    word = str(made)
                    placed.add(source)
            if word == "libkarvel_pure.a":
                # Before the library: what is there already is not taken out of it.
                words += [str(made) for source, made in changed.items()
                          if source not in placed and
                          source.rsplit("/", 1)[-1] + ".obj" in self.pure]
            if word.startswith("-Wl,-Map,"):
                word = f"-Wl,-Map,{target.with_suffix('.map')}"
            if word.startswith("-Wl,--out-implib,"):
                continue
            words.append(word)
        at = words.index("-o") + 1
        words[at] = str(target)
        answer = subprocess.run(words, cwd=self.folder, capture_output=True, text=True, check=False)
        return answer.returncode == 0


class RawHost:
    """What raw_host_test loads: the plug-in as the other build compiles it."""

    def __init__(self, root):
        self.root = root
        self.folder = root / "build/msvc"
        entries = json.loads((self.folder / "compile_commands.json").read_text())
        commands = [shlex.split(entry["command"]) for entry in entries
                    if "CMakeFiles/KarvelMax.dir/" in entry["command"]]
        self.compilers = {pathlib.Path(words[words.index("-c") + 1]).relative_to(root).as_posix():
                          words for words in commands}
        self.linker = subprocess.run(
            ["ninja", "-C", str(self.folder), "-t", "commands", "-s", RAW_HOST_SUBJECT],
            capture_output=True, text=True, check=True).stdout.strip()

    def make(self, sources, overlay, folder):
        """Whether the file can be made in the folder, with the overlay's files instead of the tree's
        own in these sources."""
        link = self.linker
        for number, source in enumerate(sources):
            words = without_cache(list(self.compilers[source]))
            at = words.index("-o") + 1
            made = folder / f"raw-{number}.obj"
            built, words[at] = words[at], str(made)
            if (overlay / source).exists():
                words[words.index(str(self.root / source))] = str(overlay / source)
            answer = subprocess.run([words[0], f"-I{overlay}", *words[1:], "-w"], cwd=self.folder,
                                    capture_output=True, check=False)
            if answer.returncode != 0:
                return False
            link = link.replace(f" {built} ", f" {made} ")
        (folder / "subject.dll").unlink(missing_ok=True)
        link = re.sub(r"/(out|map|implib):\S+?\.(dll\.lib|dll|map|lib)(?=\s)",
                      lambda match: f"/{match[1]}:{folder / 'subject'}.{match[2]}", link)
        subprocess.run(["sh", "-c", link], cwd=self.folder, capture_output=True, check=False)
        return (folder / "subject.dll").exists()


class Job:
    """One worker with its folder: a build beside the gnu build, in which the plug-in is its own."""

    def __init__(self, number, build, work):
        self.build = build
        self.root = build.root
        self.wine = Wine(number)
        self.base = work / "base"
        self.folder = work / f"job-{number}"
        shutil.rmtree(self.folder, ignore_errors=True)
        (self.folder / "build/plugin").mkdir(parents=True)
        (self.folder / "build/tests_bin").mkdir()
        for name in ("bin", "walks"):
            (self.folder / "build" / name).symlink_to(build.folder / name)
        # A folder of its own: programs that lie beside the host's DLLs are linked anew too.
        (self.folder / "build/host").mkdir()
        for path in (build.folder / "host").iterdir():
            (self.folder / "build/host" / path.name).symlink_to(path)
        self.plugin = self.folder / "build/plugin/KarvelMax.gup"
        self.overlay = self.folder / "overlay"
        self.raw_host = RawHost(self.root)

    def base_object(self, source):
        """The object of an unchanged source, compiled as the changed ones are."""
        key = digest(*(name + (self.root / name).read_text()
                       for name in (source, *sorted(self.build.headers))))
        target = self.base / key[:24] / (source + ".obj")
        if not target.exists():
            partial = self.folder / "base.obj"
            if self.build.compile(source, None, partial) is None:
                raise Failure(f"{source} does not compile unchanged")
            target.parent.mkdir(parents=True, exist_ok=True)
            partial.replace(target)
        return target.read_bytes()

    def try_build(self, mutant, source_text, sources):
        """Compiles the sources: (why it does not count, None), or (None, changed objects)."""
        overlay = self.overlay
        shutil.rmtree(overlay, ignore_errors=True)
        changed_file = overlay / mutant.file
        changed_file.parent.mkdir(parents=True)
        changed_file.write_text(mutant.apply(source_text))
        changed = {}
        for source in sources:
            target = self.folder / "objects" / (source + ".obj")
            made = self.build.compile(source, overlay, target)
            if made is None:
                return "does not compile", None
            if made != self.base_object(source):
                changed[source] = target
        if not changed:
            return "same code", None
        if not self.build.link("KarvelMax", changed, self.plugin):
            return "does not link", None
        return None, changed

    def noticed_by(self, mutant, changed, readers, order, scores, limit):
        """The first test that notices the change that has been built, and the scenarios that did
        not. `readers` are the tests' sources that a change of a header concerns; None when all but
        scenarios has been tried. With a limit only so many scenarios are played. Without a limit, no
        test at all means that none notices it."""
        programs = self.build.programs_of(changed) if readers is not None else []
        # The file itself is loaded early where that is likely to tell.
        if mutant.file.split("/")[0] in ("shell", "host") and readers is not None:
            programs.append(LOADER)
        programs.sort(key=lambda program: -scores[program])
        met = []
        likely = max((scores[name] for name in order[:1]), default=0)
        for program in programs:
            if not met and likely >= NOTICED_BEFORE:
                by = self.play_part(order[:LIKELY])
                if by:
                    return by, met
                met += order[:LIKELY]
            by = self.run_program(program, changed)
            if by:
                return by, met
        by = self.play_part(order[len(met):FIRST_TRIED])
        if by:
            return by, met
        met += order[len(met):FIRST_TRIED]
        by = self.others_notice(mutant, changed, programs, readers) if readers is not None else None
        if by:
            return by, met
        met.append(NO_SCENARIOS)
        if limit:
            by = self.play_part(order[FIRST_TRIED:limit])
            return by, met + order[FIRST_TRIED:limit]
        by = self.walk()
        if by:
            return by, met
        for first in range(FIRST_TRIED, len(order), 128):
            by = self.play_part(order[first:first + 128])
            if by:
                return by, met
            met += order[first:first + 128]
        by = None if LOADER in programs else self.run_program(LOADER, changed)
        return by or next((script[0] for script in TEST_SCRIPTS if self.run_script(script)),
                          None), met

    def others_notice(self, mutant, changed, programs, readers):
        """The first of the tests that notices it: programs whose own sources read a changed header,
        the host made of numbers."""
        made = dict(changed)
        for source in readers:
            target = self.folder / "objects" / (source + ".obj")
            if self.build.compile(source, self.overlay, target) is not None:
                made[source] = target
        for program in self.build.programs_of(made):
            if program not in programs or any(source in self.build.of_tests[program]
                                              for source in made):
                by = self.run_program(program, made)
                if by:
                    return by
        return self.run_raw_host(changed) if mutant.file.split("/")[0] in RAW_HOST_FOLDERS else None

    def run_program(self, program, changed):
        if program == LOADER:
            return self.run_cases(LOADER, [self.folder / f"build/host/{LOADER}.exe"],
                                  [self.build.folder / f"host/{LOADER}.exe"])
        target = self.folder / "build" / TEST_PROGRAMS[program] / f"{program}.exe"
        target.unlink(missing_ok=True)
        if not self.build.link(program, changed, target):
            # It plays a part of what a source needs, and the change wants another part.
            return None
        return self.run_cases(
            program, [target], [self.build.folder / TEST_PROGRAMS[program] / f"{program}.exe"])

    def run_raw_host(self, changed):
        program = self.build.folder / f"tests_bin/{RAW_HOST}.exe"
        if not self.raw_host.make(list(changed), self.overlay, self.folder):
            return None
        facts = [self.root / "tests/abi/raw_host/raw_host.txt", self.root / "docs/host-calls.md"]
        subject = self.raw_host.folder / RAW_HOST_SUBJECT
        return self.run_cases(
            RAW_HOST, [program, self.folder / "subject.dll", self.folder / "subject.map", *facts],
            [program, subject, subject.with_suffix(".map"), *facts])

    def run_cases(self, program, words, unchanged):
        log = self.folder / "cases"
        why = ""
        for _ in range(2):  # a process under Wine now and then does not get going
            status = self.wine.run([str(word) for word in words], self.root, log, 20)
            text = log.read_text(errors="replace")
            if status == 0:
                return None
            failed = re.search(r"\[  FAILED  \] ([\w./]+)", text)
            if failed and self.passes_unchanged(unchanged, failed.group(1)):
                return f"{program} {failed.group(1)}"
            if status == -1:
                self.wine.end_all_of(self.folder / "build")
            why = "does not end" if status == -1 else "crashes"
        return f"{program} ({why})" if self.passes_unchanged(unchanged, "*") else None

    def passes_unchanged(self, words, case):
        """Whether this case passes with the plug-in as it is: on a busy machine the system now and
        then does not even make a window."""
        log = self.folder / "cases_unchanged"
        return self.wine.run([*map(str, words), f"--gtest_filter={case}"], self.root, log, 60) == 0

    def walk(self):
        """The walk that fails, when one does."""
        log = self.folder / "walk"
        for _ in range(2):
            status = self.wine.run(
                [str(self.folder / "build/walks/walks.exe"),
                 *where(self.folder / "build", self.plugin), "--jobs", "2", *WALK],
                self.root, log, 600, WALK_FAILS)
            if status == 0:
                return None
            self.wine.end_all_of(self.folder / "build")
            text = log.read_text(errors="replace")
            failed = WALK_FAILS.search(text)
            if failed and "no progress" not in text:
                return f"walk {failed.group(1)}"
        return f"walk (status {status})"

    def play_part(self, part):
        """The first of these scenarios that notices the change."""
        while part:
            status, messages = play(self.wine, self.root, self.folder / "build", self.plugin, part,
                                    self.folder, 20 + 3 * len(part), PLAY_FAILS)
            if status == 0:
                return None
            self.wine.end_all_of(self.folder / "build")
            failed = PLAY_FAILS.search(messages)
            if failed and failed.group(2) == "expected":
                return failed.group(1)
            # An event that could not be carried out is told like a scenario that cannot be read; they
            # have all been read and played with the plug-in as it is.
            place = re.search(r"(tests/scenarios/\S+\.scn):\d+: ", messages)
            if place and status == 2:
                return place.group(1)
            suspects = [failed.group(1)] if failed else part
            by = next(filter(None, map(self.fails_again, suspects)), None)
            if by or not failed:
                return by
            part = part[part.index(suspects[0]) + 1:]
        return None

    def fails_again(self, name):
        """Whether this scenario fails with the change when it is played alone. What may be the fault
        of a busy machine does not count unless the plug-in as it is passes there and then."""
        status, messages = self.play_alone(name, self.plugin)
        if status == 0:
            return None
        failed = PLAY_FAILS.search(messages)
        if not (failed and failed.group(2) == "expected") and \
                (self.play_alone(name, self.build.folder / "plugin/KarvelMax.gup")[0] != 0 or
                 self.play_alone(name, self.plugin)[0] == 0):
            return None
        return f"{name} (status {status})"

    def play_alone(self, name, plugin):
        result = play(self.wine, self.root, self.folder / "build", plugin, [name], self.folder, 20)
        if result[0] != 0:
            self.wine.end_all_of(self.folder / "build")
        return result

    def run_script(self, script):
        return script_fails(script, self.root, self.folder / "build", self.wine,
                            self.folder / "script")
