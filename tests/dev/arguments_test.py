"""What is written after ./dev: help, what is refused, what reaches the programs behind the verbs.
usage: arguments_test.py BUILD_DIRECTORY...   the builds whose tests use the labels"""

import json
import pathlib
import re
import subprocess
import sys
import tempfile
import unittest

from scratch import ROOT, Scratch

sys.path.insert(0, str(ROOT / "tools/building"))
import make_sdk  # noqa: E402

BUILDS = []

# One row a kind of mistake; each word of the message that must be there.
REFUSED = [
    ("frob", "no verb 'frob'"),
    ("help frob", "no verb 'frob'"),
    ("help play run", "'run' is too much"),
    ("run tour.scn", "'tour.scn' is too much"),
    ("coverage all", "'all' is too much"),
    ("test unit", "'unit' is too much"),
    ("stress unit hook", "'hook' is too much"),
    ("play", "play needs FILE.scn"),
    ("play missing.scn", "no file 'missing.scn'"),
    ("play tests", "no file 'tests'"),
    ("play --files-from missing.txt", "no file 'missing.txt'"),
    ("play --trace nowhere/trace dev", "no folder nowhere"),
    ("play --input maybe dev", "--input is 'maybe'"),
    ("play --input", "a value is missing after --input"),
    ("play --screen 1280 dev", "1280x1024"),
    ("play --release x dev", "--release is 'x'"),
    ("play --release 65536 dev", "1 to 65535"),
    ("play --abi clang dev", "gnu, msvc"),
    ("play --abi=clang dev", "gnu, msvc"),
    ("play --abi gnu --host 2024 dev", "--abi msvc only"),
    ("play --host unicode dev", "it can be 2012, 2016, 2018, 2024, 2026"),
    ("play --queries=yes dev", "--queries takes no value"),
    ("play --seed 1 dev", "no option --seed"),
    ("play -x dev", "no option -x"),
    ("run --abi gnu --host 2016", "--abi msvc only"),
    ("run --trace here", "--interactive"),
    ("fuzz --seed x", "--seed is 'x'"),
    ("fuzz --seed -1", "--seed is '-1'"),
    ("fuzz --events 0", "--events is '0'"),
    ("fuzz --length 9", "10 to 65535"),
    ("fuzz-model --seconds 0", "--seconds is '0'"),
    ("fuzz-model frob", "rules, settings, scenario, script, link_map"),
    ("bench --only direct,frob", "direct, growth, work, queue, start"),
    ("bench --host 2024", "no option --host"),
    ("test --host 2020", "it can be 2012, 2016, 2018, 2024, 2026"),
    ("stress --host 2024", "no option --host"),
    ("test -L host-2020", "no test has a label 'host-2020'"),
    ("package --abi gnu", "it can be msvc"),
    ("mutate --jobs 3", "1, 2"),
    ("mutate --only nowhere.cpp", "'nowhere.cpp'"),
    ("mutate --seeds 1-", "--seeds is '1-'"),
    ("mutate --count 0", "--count is '0'"),
    ("lint frob", "rooms, format, cppcheck, tidy, tidy-plugin"),
    ("format --all", "no option --all"),
    ("build frob", "gnu, msvc, native, msvc-2016, msvc-2018, msvc-2024, msvc-2026, coverage"),
    ("stress -n 0", "-n is '0'"),
    ("stress -n5x", "no option -n5x"),
    ("stress nowhere", "no test has a label 'nowhere'"),
    ("test -L nowhere", "no test has a label 'nowhere'"),
    ("test -L unit|nowhere|hook", "no test has a label 'nowhere'"),
    ("test -L [", "no test has a label '['"),
    ("test -LE nowhere", "no test has a label 'nowhere'"),
    ("test -L", "a value is missing after -L"),
    ("test -R", "a value is missing after -R"),
    ("test -j 0", "-j is '0'"),
    ("test -jx", "no option -jx"),
    ("test --repeat twice", "until-fail:5"),
    ("test --no-tests=maybe", "error, ignore"),
    ("test --no-tests", "no option --no-tests"),
    ("test --timeout soon", "--timeout is 'soon'"),
    ("test --test-dir elsewhere", "no option --test-dir"),
    ("test -D Nightly", "no option -D"),
]

# What the program behind the verb gets.
PASSED = [
    ("test", [], []),
    ("test", ["-L", "unit|hook", "-R", "a b"], ["-L", "unit|hook", "-R", "a b"]),
    ("test", ["-L", "^(unit|hook)$"], ["-L", "^(unit|hook)$"]),
    ("test", ["-j4", "--repeat=until-fail:3"], ["-j", "4", "--repeat", "until-fail:3"]),
    ("test", ["--no-tests=ignore", "--show-only=json-v1", "-VV", "-N"],
     ["--no-tests=ignore", "--show-only=json-v1", "-VV", "-N"]),
    ("stress", ["-n", "3", "unit", "--timeout", "9"], ["--timeout", "9"]),
    ("stress", ["unit", "-n3", "-E", "-x"], ["-E", "-x"]),
    ("play", ["--abi=gnu", "--input=real", "dev", "--facts"], ["--input", "real", "--facts"]),
    ("play", ["--screen", "800x600", "--shots", "tests", "dev"],
     ["--screen", "800x600", "--shots", "tests"]),
    ("run", ["--interactive", "--trace", "-"], ["--trace", "-"]),
    ("fuzz", ["--seed", "0x1f", "--events", "09", "--length", "10"],
     ["--seed", "0x1f", "--events", "09", "--length", "10"]),
    ("bench", ["--only", "queue,direct", "--abi", "gnu"], ["--only", "queue,direct"]),
    ("mutate", ["--only", "shell/entry.cpp", "--only", "hooks/mouse_hook.cpp", "--seeds", "1-3,7"],
     ["--only", "shell/entry.cpp", "--only", "hooks/mouse_hook.cpp", "--seeds", "1-3,7"]),
    ("lint", ["rooms", "tidy-plugin"], ["rooms", "tidy-plugin"]),
    ("format", ["--check"], ["--check"]),
    ("package", ["--abi", "msvc"], []),
    ("fuzz-model", ["rules", "--seconds", "5"], []),
]

# In which configuration ctest runs the tests, one call after the other.
CHOSEN = [
    ([], "rooms"),
    (["-R", "orbit"], ""),
    (["--rerun-failed"], ""),
    (["-L", "^(unit|hosts)$"], "rooms_hosts"),
    (["-F"], "rooms_hosts"),
    (["--tests-regex", "orbit", "--label-regex", "hosts"], "_hosts"),
    (["-LE", "hosts", "-E", "orbit"], "rooms"),
    (["-C", "mine"], "mine"),
    (["--host", "2024"], "rooms_hosts"),
    (["--host", "2012"], "rooms"),
    (["--host=2018", "-R", "orbit"], "_hosts"),
]

# Tests with their labels, and which of them are left.
LABELLED = {"a.gnu": "gnu;scenario", "a.2012": "msvc;scenario;host-2012",
            "a.2024": "msvc;scenario;hosts;host-2024", "b.2024": "msvc;abi;hosts;host-2024"}
LEFT = [
    ([], ["a.gnu", "a.2012", "a.2024", "b.2024"]),
    (["--host", "2012"], ["a.2012"]),
    (["--host", "2024"], ["a.2024", "b.2024"]),
    (["--host", "2024", "-L", "scenario"], ["a.2024"]),
    (["-R", "^b", "--host", "2024"], ["b.2024"]),
    (["--host", "2024", "-LE", "abi"], ["a.2024"]),
    (["--host", "2016"], []),
]

# ctest's options that are not about running tests that are built.
NOT_FOR_TESTS = re.compile(
    r"--(preset|list-presets|dashboard|test-model|test-action|group|script|script-new-process|"
    r"add-notes|test-dir|build-(?!config$).*|test-command|test-timeout|tomorrow-tag|overwrite|"
    r"extra-submit|force-new-ctest-process|submit-index|http1\.0|no-compress-output|"
    r"help.*|version)|-(D|M|T|S|SP|A|h|H|help|usage|version)")

# What the player gets from ./dev and from other programs only.
OF_OTHER_PROGRAMS = {"--ready", "--desktop", "--transcript", "--out", "--scenarios", "--film", "--watch",
                     "--host-dir", "--plugin", "--map", "--companion"}


def table():
    rows = []
    for line in (ROOT / "tools/dev/verbs.txt").read_text().splitlines():
        if line and not line.startswith("#"):
            verbs, word, value, reader, text = line.split(None, 4)
            rows.append((verbs.split(","), word, value, reader, text))
    return rows


def later_hosts():
    return make_sdk.Generation(ROOT / "sdk", "2012").names[1:]


def words_of(verb):
    return [word for verbs, word, *_ in table() if verb in verbs and word != "."]


VERBS = list(dict.fromkeys(verbs[0] for verbs, word, *_ in table() if word == "."))


class Arguments(unittest.TestCase):
    def setUp(self):
        self.scratch = Scratch()
        self.addCleanup(self.scratch.close)

    def nothing_was_done(self):
        self.assertEqual(self.scratch.calls, [])
        self.assertFalse(self.scratch.build.exists())

    def test_what_makes_no_sense_is_refused_in_one_line_before_anything_is_done(self):
        for arguments, wanted in REFUSED:
            with self.subTest(arguments):
                status, out, err = self.scratch.dev(*arguments.split())
                # What only the verb can see is told when packages and builds have yet to come.
                self.assertEqual((status, out, err.count("\n")), (2, "", 1), err)
                self.assertTrue(err.startswith("dev: "), err)
                self.assertIn(wanted, err)
                self.assertEqual(self.scratch.calls, [])

    def test_help_after_a_verb_prints_its_words_and_does_nothing(self):
        for verb in VERBS:
            with self.subTest(verb):
                status, out, err = self.scratch.dev("help", verb)
                self.assertEqual((status, err), (0, ""))
                for word in words_of(verb):
                    self.assertRegex(out, rf"(?m)^  {re.escape(word)}")
                some = ["--frob", "-x"]
                for call in (["--help"], ["-h"], [*some, "--help"], ["extra", "-h"]):
                    self.assertEqual(self.scratch.dev(verb, *call), (0, out, ""))
        self.nothing_was_done()

    def test_help_lists_the_verbs(self):
        expected = None
        for call in ([], ["help"], ["--help"], ["-h"]):
            status, out, err = self.scratch.dev(*call)
            self.assertEqual((status, err), (0, ""))
            self.assertEqual(re.findall(r"(?m)^  (\S+) ", out), VERBS)
            self.assertEqual(out, expected or out)
            expected = out
        self.nothing_was_done()

    def test_what_reaches_the_program_behind_the_verb(self):
        script = ('root=$1; shift; . "$root/tools/dev/read_arguments.sh"; read_arguments "$@"; '
                  'for text in "${passed[@]}"; do printf "%s\\0" "$text"; done')
        for verb, written, passed in PASSED:
            with self.subTest((verb, written)):
                done = subprocess.run(["bash", "-uc", script, "bash", ROOT, verb, *written],
                                      cwd=ROOT, capture_output=True, text=True)
                self.assertEqual((done.returncode, done.stderr), (0, ""))
                self.assertEqual(done.stdout.split("\0")[:-1], passed)


    def run_ctest(self, build, tests, written):
        """What a run of these tests with what is written after `test` tells."""
        script = ('root=$1; build=$2; shift 2; . "$root/tools/dev/read_arguments.sh"; '
                  '. "$root/tools/dev/choose_tests.sh"; read_arguments test "$@"; '
                  'write_test_directory; ctest --test-dir "$build/tests" "${passed[@]}" -N')
        pathlib.Path(build, "gnu").mkdir(exist_ok=True)
        pathlib.Path(build, "gnu/CTestTestfile.cmake").write_text(tests)
        return subprocess.run(["bash", "-uc", script, "bash", ROOT, build, *written],
                              cwd=ROOT, capture_output=True, text=True)

    def test_how_scenarios_are_played(self):
        with tempfile.TemporaryDirectory() as build:
            for written, wanted in CHOSEN:
                with self.subTest(written):
                    done = self.run_ctest(
                        build, f'file(WRITE "{build}/chosen" "${{CTEST_CONFIGURATION_TYPE}}")\n', written)
                    chosen = pathlib.Path(build, "chosen")
                    self.assertEqual(chosen.read_text(), wanted, done.stderr)
                    chosen.unlink()

    def test_which_tests_a_host_leaves(self):
        tests = "".join(f'add_test({name} true)\nset_tests_properties({name} PROPERTIES LABELS "{labels}")\n'
                        for name, labels in LABELLED.items())
        for written, wanted in LEFT:
            with self.subTest(written), tempfile.TemporaryDirectory() as build:
                done = self.run_ctest(build, tests, written)
                self.assertEqual(re.findall(r"(?m)^ +Test +#\d+: (\S+)$", done.stdout), wanted, done.stderr)


class Table(unittest.TestCase):
    def test_each_verb_and_word_has_one_row(self):
        seen = [(verb, word) for verbs, word, *_ in table() for verb in verbs if word != "."]
        self.assertEqual(len(seen), len(set(seen)))
        self.assertLessEqual({verb for verb, _ in seen}, set(VERBS))

    def test_each_verb_is_there(self):
        script = (ROOT / "dev").read_text()
        functions = re.findall(r"(?m)^verb_(\w+)\(\)", script)
        self.assertEqual(sorted(functions), sorted(verb.replace("-", "_") for verb in VERBS
                                                   if verb != "help"))

    def test_the_script_asks_for_words_that_there_are(self):
        script = (ROOT / "dev").read_text() + (ROOT / "tools/dev/read_arguments.sh").read_text()
        asked = set(re.findall(r"given\[(-[\w-]+)\]", script))
        kept = {word for _, word, _, reader, _ in table() if reader == "dev" and word[0] == "-"}
        self.assertLessEqual(asked, {word for _, word, *_ in table()})
        self.assertEqual(kept - asked - {"--abi"}, set(), "kept, and nobody asks for it")

    def test_the_options_of_ctest(self):
        text = subprocess.run(["ctest", "--help"], capture_output=True, text=True).stdout
        theirs = set()
        for names in re.findall(r"(?m)^  (-.*?)(?:\s+= |=? *$)", text):
            theirs |= set(re.findall(r"(?<![\w-])(--?[\w.-]+\b)", names))
        theirs = {name for name in theirs if not NOT_FOR_TESTS.fullmatch(name)}
        self.assertGreater(len(theirs), 40)
        ours = {word.rstrip("=") for word in words_of("test")} - {"--host"}
        # Not in its help, but in its manual.
        self.assertEqual(ours - theirs, set())
        self.assertEqual(theirs - ours, set())

    def test_each_later_host_has_its_presets(self):
        presets = json.loads((ROOT / "CMakePresets.json").read_text())
        wanted = {f"msvc-{year}": year for year in later_hosts()}
        self.assertEqual(wanted, {
            preset["name"]: preset["cacheVariables"]["KARVEL_SDK_GENERATION"]
            for preset in presets["configurePresets"] if preset.get("inherits") == "msvc"})
        self.assertLessEqual({(name, name) for name in wanted}, {
            (preset["name"], preset["configurePreset"]) for preset in presets["buildPresets"]})

    def test_the_options_of_mutate(self):
        text = (ROOT / "tools/mutation/mutate_plugin.py").read_text()
        theirs = set(re.findall(r'"(--[\w-]+)"', text)) - {"--help"}
        self.assertEqual(theirs, set(words_of("mutate")))


    def test_the_options_of_the_player_and_of_the_walks(self):
        text = "".join((ROOT / name).read_text() for name in
                       ("standin/player/command_line.cpp", "tests/walks/walks.cpp"))
        theirs = set(re.findall(r'"(--[a-z-]+)', text)) - OF_OTHER_PROGRAMS
        ours = {word for verb in ("run", "play", "fuzz") for word in words_of(verb)
                if word.startswith("-")}
        self.assertEqual(theirs, ours - {"--interactive", "--host"})


class Labels(unittest.TestCase):
    def test_each_label_is_in_use(self):
        with tempfile.TemporaryDirectory() as folder:
            # Not beside the tests that are running.
            pathlib.Path(folder, "CTestTestfile.cmake").write_text(
                "".join(f'subdirs("{build}")\n' for build in BUILDS))
            text = subprocess.run(["ctest", "--test-dir", folder, "--print-labels"],
                                  capture_output=True, text=True, check=True).stdout
        used = set(re.findall(r"(?m)^  (\S+)$", text))
        table_of_labels = (ROOT / "tests/labels.txt").read_text().splitlines()
        known = [line.split()[0].replace("LATER", year) for line in table_of_labels
                 if not line.startswith("#") for year in (later_hosts() if "LATER" in line else [""])]
        self.assertEqual(sorted(used), sorted(known))


if __name__ == "__main__":
    BUILDS = sys.argv[1:]
    unittest.main(argv=sys.argv[:1])
