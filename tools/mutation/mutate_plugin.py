#!/usr/bin/python3
"""Changes one thing at a time in the plug-in's sources and looks whether a test notices.

usage: ./dev mutate [--jobs 1|2] [--only FILE]... [--seeds LIST] [--count N] [--explained]
                    [--list] [--show TEXT]

Each change ("mutant") is built with the gnu build's own commands. Then the tests that execute the
changed lines run until one fails: first those that noticed changes nearby, then the programs that
link the source, the scenarios, at last the tests of the windows and the settings file. A change that
does not compile, or that gives the same code as the source itself or as another change, does not
count.

A mutant that no test notices is a survivor. survivors.txt, beside this file, says of each why it
may stay; one that stands there counts as a survivor without being tried.

options: --jobs N      how many at a time, 1 or 2 (1)
         --only FILE   mutants of this source alone; may be given several times
         --seeds LIST  choices of mutants, such as 3 or 1-5 or 1,4 (1); --seed is the same
         --count N     how many to try for each seed, those that count (400)
         --explained   try those too that are explained
         --list        print the mutants in the order in which they would be taken, and try none
         --show TEXT   print the changes whose name contains the text, as patches, and try none

What was tried is kept in build/mutate/results.json, one line a mutant, and not tried again, by no
seed, while the source and the headers that it reads stay as they are; survivors are when a test
changes.

Exit status: 0 all is well, 1 with one of the seeds fewer than 95 % were noticed, or a survivor is not
explained, 2 the command line or a file can not be read, 3 something that is needed does not work.
"""

import argparse
import collections
import concurrent.futures
import difflib
import json
import math
import pathlib
import re
import sys
import threading

HERE = pathlib.Path(__file__).resolve().parent
sys.path.insert(0, str(HERE))

import mutants as mutation  # noqa: E402
import mutation_tests as tests  # noqa: E402

ROOT = HERE.parents[1]
WORK = ROOT / "build/mutate"
SURVIVORS = HERE / "survivors.txt"
AIM = 95.0
FEWEST_OF_A_FILE = 4
# Most changes are noticed by one of so many; what needs more comes after all the others.
FIRST_SCENARIOS = 28
PARTS = (0.25, 0.5, 0.75, 1)


class Mistake(Exception):
    """Something that the user can put right."""


def seeds_of(text):
    """The seeds of a list such as 1-3,7."""
    found = []
    for part in text.split(","):
        match = re.fullmatch(r"(\d+)(?:-(\d+))?", part)
        if not match:
            raise argparse.ArgumentTypeError(f"{text}: that is no list of seeds")
        first = int(match.group(1))
        found += range(first, int(match.group(2) or first) + 1)
    return list(dict.fromkeys(found))


def read_options():
    parser = argparse.ArgumentParser(prog="./dev mutate", add_help=False)
    parser.add_argument("--jobs", type=int, default=1, choices=(1, 2))
    parser.add_argument("--only", action="append", default=[])
    parser.add_argument("--seeds", "--seed", type=seeds_of, default=[1])
    parser.add_argument("--count", type=int, default=400)
    parser.add_argument("--explained", action="store_true")
    parser.add_argument("--list", action="store_true")
    parser.add_argument("--show", action="append", default=[])
    parser.add_argument("-h", "--help", action="store_true")
    options = parser.parse_args()
    if options.help:
        print(__doc__.strip())
        sys.exit(0)
    if options.count < 1:
        raise Mistake("--count wants a number above 0")
    return options


def all_mutants(only):
    """File -> its mutants, for each file that has some."""
    files = tests.plugin_sources(ROOT)
    for name in only:
        if name not in files:
            raise Mistake(f"--only {name}: that is no source of the plug-in")
    sources = {name: (ROOT / name).read_text() for name in files}
    families = [names for source in sources.values() for names in mutation.enumerations_of(source)]
    families += mutation.resource_families((ROOT / "resources/resource_ids.h").read_text())
    result = {}
    for name, source in sources.items():
        if only and name not in only:
            continue
        found = mutation.mutants_of(name, source, families)
        if found:
            result[name] = found
    return result


def shares(candidates, count):
    """How many mutants of each file: by its number of candidates, a few of each in any case."""
    total = sum(len(found) for found in candidates.values())
    result = {name: min(len(found), max(FEWEST_OF_A_FILE, round(count * len(found) / total)))
              for name, found in candidates.items()}
    while sum(result.values()) > count:
        largest = max(result, key=lambda name: (result[name], name))
        if result[largest] <= 1:
            break
        result[largest] -= 1
    return result


# ---- survivors that are explained -----------------------------------------------------------------

def read_survivors(path, known_names):
    """Name of a mutant -> why it may stay. A line without indent names it, indented ones explain."""
    found, name, start = {}, None, 0
    reasons = []

    def close():
        if name is None:
            return
        if not reasons:
            raise Mistake(f"{path}:{start}: no reason is given, indent one below the mutant")
        found[name] = " ".join(reasons)

    for number, line in enumerate(path.read_text().splitlines(), 1):
        if not line.strip() or line.startswith("#"):
            continue
        if line[0].isspace():
            if name is None:
                raise Mistake(f"{path}:{number}: a reason without a mutant above it")
            reasons.append(line.strip())
            continue
        close()
        name, start, reasons = " ".join(line.replace("=>", " => ").split()), number, []
        if name not in known_names:
            raise Mistake(f"{path}:{number}: there is no such mutant, take the entry out")
        if name in found:
            raise Mistake(f"{path}:{number}: this mutant stands here twice, take one out")
    close()
    return found


def plain_name(mutant):
    return " ".join(mutant.name.split())


# ---- results that are kept ------------------------------------------------------------------------

class Results:
    """One line of JSON for each mutant that was tried. An "open" one has met some tests and waits
    for the rest; like a survivor it keeps which, so that only others are tried on it."""

    def __init__(self, path, sums):
        self.path = path
        self.sums = sums  # of each test
        self.of_all = tests.digest(*(part for item in sums.items() for part in item))
        self.lock = threading.Lock()
        self.kept = {}
        self.of_code = {}
        self.earlier = {}  # name -> who noticed it, whatever the sources were
        if path.exists():
            for line in path.read_text().splitlines():
                self.keep(json.loads(line))

    def keep(self, entry):
        self.kept[(entry["name"], entry["source"])] = entry
        if entry["code"]:
            self.of_code[(entry["code"], entry["source"])] = entry
        if entry["by"]:
            self.earlier[entry["name"]] = entry["by"]

    def find(self, name, source):
        return self.kept.get((name, source))

    def find_code(self, code, source):
        return self.of_code.get((code, source))

    def met_by(self, entry):
        """The scenarios that are as they were when they did not notice this one."""
        met = entry.get("met", {}) if entry else {}
        return {name for name, known in met.items() if self.sums.get(name) == known}

    def is_final(self, entry):
        """Whether no test has come that might notice it."""
        if entry["result"] == "open":
            return False
        return entry["result"] != "survived" or entry["tests"] == self.of_all

    def add(self, name, source, result, by="", code="", met=(), line=0):
        entry = {"name": name, "result": result, "by": by, "source": source, "code": code,
                 "line": line}
        if result in ("survived", "open"):
            entry["tests"] = self.of_all
            entry["met"] = {scenario: self.sums[scenario] for scenario in sorted(met)}
        with self.lock:
            self.keep(entry)
            with open(self.path, "a") as output:
                output.write(json.dumps(entry) + "\n")
        return entry

    def tidy(self):
        """Writes each mutant once."""
        lines = [json.dumps(entry) + "\n" for entry in self.kept.values()]
        partial = self.path.with_suffix(".partial")
        partial.write_text("".join(lines))
        partial.replace(self.path)


def sums_of_tests():
    """Of each test's file by its name, and of all together that are no scenarios."""
    files = [path for path in sorted((ROOT / "tests").rglob("*"))
             if path.is_file() and path.suffix not in (".md", ".pyc")]
    sums = {path.relative_to(ROOT).as_posix(): tests.digest(path.read_bytes()) for path in files}
    sums[tests.NO_SCENARIOS] = tests.digest(
        *(part for item in sums.items() if not item[0].endswith(".scn") for part in item))
    return sums


# ---- which scenarios, in which order --------------------------------------------------------------

class Order:
    """The scenarios that execute a mutant's lines, those first that are likely to notice."""

    def __init__(self, lines, build):
        self.lines = lines
        self.build = build
        self.sources = {name: (ROOT / name).read_text() for name in tests.plugin_sources(ROOT)}
        self.sizes = {name: lines.size(name) for name in lines.scenarios}
        self.noticed = collections.defaultdict(list)  # file -> (line, test) of each that was noticed

    def note(self, file, line, test):
        self.noticed[file].append((line, test))

    def likely(self, mutant, earlier):
        """Test -> how likely it notices: those that noticed changes near this one, and what noticed
        this one when the sources were different."""
        scores = collections.Counter()
        for line, test in self.noticed[mutant.file]:
            scores[test] += 1 / (1 + abs(line - mutant.line))
        if earlier:
            scores[earlier] += tests.NOTICED_BEFORE
        return scores

    def statement_lines(self, file, mutant):
        """First and last line of the statement, the table row or the head of a block."""
        source = self.sources[file]
        first, last = mutant.start, mutant.end
        while first > 0 and source[first - 1] not in ";{}":
            first -= 1
        while last < len(source) and source[last] not in ";{}":
            last += 1
        begin = source.count("\n", 0, first) + 1
        return min(begin + 1, mutant.line) if begin < mutant.line else begin, \
            source.count("\n", 0, last) + 1

    def declared_names(self, file, line):
        """What the declaration that this line belongs to gives a name to."""
        source = self.sources[file]
        at = sum(len(text) + 1 for text in source.split("\n")[:line - 1])
        begin = max(source.rfind("\n\n", 0, at), source.rfind(";\n", 0, at), 0)
        end = source.find(";\n", at)
        part = re.sub(r"//[^\n]*", "", source[begin:end if end > 0 else len(source)])
        own = re.findall(r"^\s*(?:[\w:<>* ]+ )?\*?(k\w+|g_\w+)(?:\[\w*\])* ?[={;]", part, re.M)
        return own or re.findall(r"\b(k[A-Z]\w+|g_\w+)\b", source.split("\n")[line - 1])

    def users_of(self, name, seen):
        """The scenarios that execute a line that uses the name, or that uses what is made of it."""
        if name in seen:
            return set()
        seen.add(name)
        found = set()
        for file, source in self.sources.items():
            for match in re.finditer(rf"\b{re.escape(name)}\b", source):
                line = source.count("\n", 0, match.start()) + 1
                of_line = self.lines.of_lines(file, line, line)
                if of_line is not None:
                    found |= of_line
                if of_line is not None or "static_assert" in source.split("\n")[line - 1]:
                    continue
                for other in self.declared_names(file, line):
                    found |= self.users_of(other, seen)
        return found

    def concerned(self, mutant, readers):
        """Those readers of a header for which a change of it can make a difference: they name what
        the changed declaration gives a name to, or what the headers make of that."""
        headers = {name: mutation.declarations_of(source)
                   for name, source in self.sources.items() if name.endswith(".h")}
        names = {given for start, end, given in headers[mutant.file]
                 if start <= mutant.start < end}
        if not names - {""}:
            return readers
        grown = True
        while grown:
            before = len(names)
            for header, declarations in headers.items():
                for start, end, given in declarations:
                    part = self.sources[header][start:end]
                    if given not in names and names & set(re.findall(r"\w+", part)):
                        names.add(given)
            grown = len(names) > before
        return [name for name in readers if names & set(re.findall(r"\w+", self.text_of(name)))]

    def text_of(self, source):
        return self.sources.get(source) or self.build.test_texts[source]

    def of(self, mutant, scores):
        first, last = self.statement_lines(mutant.file, mutant)
        covering = self.lines.of_lines(mutant.file, mutant.line, mutant.line)
        if covering is None:
            covering = self.lines.of_lines(mutant.file, first, last)
        rest = set()
        if covering is None:
            # Data: those that use it first, but then all, since any may.
            covering = set()
            for name in self.declared_names(mutant.file, mutant.line):
                covering |= self.users_of(name, set())
            rest = set(self.lines.scenarios) - covering
        else:
            wider = self.lines.of_lines(mutant.file, first, last) or set()
            rest = wider - covering
        return self.arrange(mutant.file, covering, scores) + \
            self.arrange(mutant.file, rest, scores)

    def arrange(self, file, names, scores):
        """The likely ones, then one of each area in turn, short ones first. An area whose name has a
        word of the file's gives more at a time."""
        first = sorted((name for name in names if scores[name]),
                       key=lambda name: (-scores[name], self.sizes[name], name))[:6]
        words = set(re.split(r"[/_.]", file)) - {"cpp", "h", "key", "window", "moves"}
        areas = collections.defaultdict(list)
        for name in sorted(names - set(first), key=lambda name: (self.sizes[name], name)):
            areas[pathlib.PurePosixPath(name).parent.name].append(name)
        turns = []
        for area, of_area in areas.items():
            step = 4 if words & set(area.split("_")) else 1
            # The size of the first tells how near the area is to what it has in common with others.
            turns += ((turn // step, -step, self.sizes[of_area[0]], name)
                      for turn, name in enumerate(of_area))
        return first + [name for _, _, _, name in sorted(turns)]


# ---- the run --------------------------------------------------------------------------------------

class Shared:
    """What the runs of all seeds have in common."""

    def __init__(self, jobs):
        WORK.mkdir(parents=True, exist_ok=True)
        self.build = tests.GnuBuild(ROOT, WORK)
        self.build.check_programs(tests.Wine())
        self.lines = tests.LineMap(ROOT, WORK)
        self.lines.load([tests.Wine(number) for number in range(jobs)], say)
        self.results = Results(WORK / "results.json", sums_of_tests())
        self.order = Order(self.lines, self.build)
        self.sums = {name: self.build.sum_of(name) for name in tests.plugin_sources(ROOT)}
        for entry in self.results.kept.values():
            file = re.match(r"[\w/.]+", entry["name"]).group()
            if entry["result"] == "noticed" and entry.get("line") and \
                    entry["source"] == self.sums.get(file):
                self.order.note(file, entry["line"], entry["by"].split(" ")[0])


SAYING = threading.Lock()


def say(text):
    with SAYING:
        print(text, flush=True)


class Run:
    """The mutants that one seed chooses."""

    def __init__(self, options, candidates, seed, explained):
        self.options = options
        self.explained = () if options.explained else explained
        self.candidates = candidates
        self.seed = seed
        self.shares = shares(candidates, options.count)
        self.goals = self.shares
        self.lock = threading.Lock()
        self.stopped = False
        self.started = {name: 0 for name in candidates}   # how many of a file's were taken
        self.counted = {name: {} for name in candidates}
        self.waiting = collections.deque()
        self.codes = set()
        self.order_of_file = {name: mutation.chosen_order(found, seed)
                              for name, found in candidates.items()}

    def next_of(self, file):
        with self.lock:
            at = self.started[file]
            if self.stopped or len(self.counted[file]) >= self.goals[file] or \
                    at >= len(self.order_of_file[file]):
                return None
            self.started[file] += 1
            return self.order_of_file[file][at]

    def work_on(self, job, files):
        while True:
            with self.lock:
                file = files.popleft() if files else None
            if file is None:
                return
            while mutant := self.next_of(file):
                self.judge(job, mutant, FIRST_SCENARIOS)

    def finish(self, job, _):
        while True:
            with self.lock:
                mutant = self.waiting.popleft() if self.waiting and not self.stopped else None
            if mutant is None:
                return
            self.judge(job, mutant, None)

    def judge(self, job, mutant, limit):
        """With a limit, a mutant that needs more than so many scenarios waits for its turn."""
        name = plain_name(mutant)
        entry = self.results.find(name, self.sums[mutant.file])
        has_begun = limit and entry and tests.NO_SCENARIOS in self.results.met_by(entry)
        if entry is None or not (self.results.is_final(entry) or has_begun):
            entry = self.try_out(job, mutant, entry, limit)
            if entry["by"]:
                self.order.note(mutant.file, mutant.line, entry["by"].split(" ")[0])
        with self.lock:
            if entry["result"] not in ("noticed", "survived", "open"):
                return
            if limit:
                if entry["code"] in self.codes:
                    return
                self.codes.add(entry["code"])
                if not self.results.is_final(entry):
                    self.waiting.append(mutant)
            self.counted[mutant.file][name] = (mutant, entry)

    def try_out(self, job, mutant, earlier, limit):
        name = plain_name(mutant)
        source = self.sums[mutant.file]
        sources = self.build.sources_of(mutant.file)
        readers = []
        if mutant.file.endswith(".h"):
            sources = self.order.concerned(mutant, sources)
            readers = self.order.concerned(mutant,
                                           self.build.test_readers.get(mutant.file, ()))
        reason, changed = job.try_build(mutant, self.order.sources[mutant.file], sources)
        if reason:
            return self.results.add(name, source, reason)
        code = tests.digest(*(part for made in sorted(changed)
                              for part in (made, changed[made].read_bytes())))
        known = self.results.find_code(code, source)
        if known and known["name"] != name and self.results.is_final(known):
            return self.results.add(name, source, known["result"], known["by"], code,
                                    known.get("met", ()), mutant.line)
        if name in self.explained:
            return self.results.add(name, source, "survived", "", code, (), mutant.line)
        met_before = self.results.met_by(earlier)
        scores = self.order.likely(mutant, self.results.earlier.get(name, "").split(" ")[0])
        order = [test for test in self.order.of(mutant, scores) if test not in met_before]
        if tests.NO_SCENARIOS in met_before:
            readers = None
        by, met = job.noticed_by(mutant, changed, readers, order, scores, limit)
        result = "noticed" if by else "open" if limit else "survived"
        say(f"{result:8}  {name}" + (f"   by {by}" if by else ""))
        return self.results.add(name, source, result, by or "", code, met_before | set(met),
                                mutant.line)

    def begin(self, shared, part):
        """Tries this part of the mutants, of each file alike, on the tests that are likely to notice
        them."""
        self.build, self.results = shared.build, shared.results
        self.order, self.sums = shared.order, shared.sums
        self.goals = {file: math.ceil(share * part) for file, share in self.shares.items()}
        self.run(self.work_on)
        noticed, count = self.noticed_of_all()
        say(f"seed {self.seed}: {noticed} of {count} noticed, {len(self.waiting)} wait for more tests")

    def run(self, work):
        # The largest ones first, so that two jobs end together.
        files = collections.deque(sorted(self.candidates, key=lambda name: -self.shares[name]))
        with concurrent.futures.ThreadPoolExecutor(self.options.jobs) as pool:
            waiting = [pool.submit(work, tests.Job(number, self.build, WORK), files)
                       for number in range(self.options.jobs)]
            try:
                for each in waiting:
                    each.result()
            except BaseException:
                self.stopped = True
                raise
        self.results.tidy()

    def noticed_of_all(self):
        """How many were noticed, of how many."""
        entries = [entry for of_file in self.counted.values() for _, entry in of_file.values()]
        return sum(entry["result"] == "noticed" for entry in entries), len(entries)


def print_table(counted, explained, title_of):
    """A line for each group of the mutants, and one for all."""
    groups = collections.defaultdict(list)
    for mutant, entry in counted.values():
        groups[title_of(mutant)].append((mutant, entry))
    groups = dict(sorted(groups.items()))
    groups["all"] = list(counted.values())
    width = max(len(title) for title in groups)
    print(f"\n{'':{width}}  mutants  noticed  survivors  not explained")
    for title, group in groups.items():
        survivors = [mutant for mutant, entry in group if entry["result"] == "survived"]
        unexplained = sum(plain_name(mutant) not in explained for mutant in survivors)
        print(f"{title:{width}}  {len(group):7}  {len(group) - len(survivors):7}  "
              f"{len(survivors):9}  {unexplained:13}")


def report(runs, explained):
    """The tables; whether all is well."""
    counted = {name: result for run in runs for of_file in run.counted.values()
               for name, result in of_file.items()}
    print_table(counted, explained, lambda mutant: mutant.file)
    print_table(counted, explained, lambda mutant: mutant.operator)
    print()
    too_few = []
    for run in runs:
        noticed, count = run.noticed_of_all()
        percent = 100.0 * noticed / max(count, 1)
        print(f"seed {run.seed}: {percent:.1f} % of {count} mutants noticed (aim: {AIM:.0f} %)")
        if percent < AIM:
            too_few.append(run.seed)
    open_ones = [mutant for name, (mutant, entry) in counted.items()
                 if entry["result"] == "survived" and name not in explained]
    for mutant in open_ones:
        print(f"mutate: {mutant.file}:{mutant.line}: nothing notices this change, add a test or "
              f"explain it in {SURVIVORS.relative_to(ROOT)}:\n{plain_name(mutant)}",
              file=sys.stderr)
    for seed in too_few:
        print(f"mutate: too few are noticed with seed {seed}, {AIM:.0f} % are wanted",
              file=sys.stderr)
    return not open_ones and not too_few


def print_list(run):
    for file, found in run.order_of_file.items():
        print(f"# {file}: {run.shares[file]} of {len(found)}")
        for mutant in found:
            print(f"{mutant.line:5}  {mutant.operator:18}  {plain_name(mutant)}")


def print_patches(candidates, wanted):
    for found in candidates.values():
        for mutant in found:
            if not any(text in plain_name(mutant) for text in wanted):
                continue
            source = (ROOT / mutant.file).read_text()
            print(f"# {plain_name(mutant)}")
            sys.stdout.writelines(difflib.unified_diff(
                source.splitlines(True), mutant.apply(source).splitlines(True),
                mutant.file, mutant.file))


def main():
    options = read_options()
    candidates = all_mutants(options.only)
    if options.show:
        print_patches(candidates, options.show)
        return 0
    known_names = {plain_name(mutant) for found in all_mutants([]).values() for mutant in found}
    explained = read_survivors(SURVIVORS, known_names)
    runs = [Run(options, candidates, seed, explained) for seed in options.seeds]
    if options.list:
        for run in runs:
            print_list(run)
        return 0
    shared = Shared(options.jobs)
    # In turns, so that all seeds have come as far when this is broken off.
    for part in PARTS:
        for run in runs:
            run.begin(shared, part)
    for run in runs:
        run.run(run.finish)
    return 0 if report(runs, explained) else 1


if __name__ == "__main__":
    try:
        sys.exit(main())
    except Mistake as mistake:
        print(f"mutate: {mistake}", file=sys.stderr)
        sys.exit(2)
    except tests.Failure as failure:
        print(f"mutate: {failure}", file=sys.stderr)
        sys.exit(3)
    except BrokenPipeError:
        sys.exit(141)
    except KeyboardInterrupt:
        sys.exit(130)
