#!/usr/bin/env python3
"""Which changes ./dev mutate finds in a source, and how it reads the list of survivors.

    mutants_test.py REPOSITORY
"""

import importlib
import pathlib
import re
import sys
import tempfile
import unittest

ROOT = None


# What a change of each kind makes of a text, all of them.
CHANGES = (
    ("comparison", "bool f(int a) { return a < b; }",
     ["bool f(int a) { return a <= b; }", "bool f(int a) { return a >= b; }"]),
    ("comparison", "bool f(int a) { return a == b; }", ["bool f(int a) { return a != b; }"]),
    # Brackets of templates.
    ("comparison", "int a = static_cast<int>(b->c);", []),
    ("junction", "bool a = b && c;", ["bool a = b || c;"]),
    ("negation", "bool a = !b;", ["bool a = b;"]),
    ("condition", "void f() { if (a) b(); }", ["void f() { if (!(a)) b(); }"]),
    ("condition", "int a = b + c ? 1 : 2;", ["int a = !(b + c) ? 1 : 2;"]),
    # A condition that declares.
    ("condition", "void f() { if (int* a = b()) c(a); }", []),
    ("constant", "int a[] = {7, 0x1F};",
     ["int a[] = {0, 0x1F};", "int a[] = {8, 0x1F};", "int a[] = {7, 0};", "int a[] = {7, 0x20};"]),
    # A flag has two values.
    ("constant", "void f() { g_a = 1; }", ["void f() { g_a = 0; }"]),
    ("constant", "int f() { return 0; }", ["int f() { return 1; }"]),
    ("flag", "int a = A | B | C;",
     ["int a =  B | C;", "int a = A  | C;", "int a = A |  C;", "int a = A | B ;"]),
    # A hexadecimal constant loses a bit, where there are others.
    ("flag", "int a = 0x2A;", ["int a = 0x28;"]),
    ("flag", "int a = 0x2B & B;", ["int a = 0x2A & B;"]),
    ("flag", "int a = 0x20 + 42;", []),
    ("call removed", "void f() { int a = g(); if (a) host::Stop(a, b(c)); d.e[1] = a; }",
     ["void f() { int a = g(); if (a) ; d.e[1] = a; }"]),
    ("assignment removed", "void f() { int a = g(); if (a) host::Stop(a, b(c)); d.e[1] = a; }",
     ["void f() { int a = g(); if (a) host::Stop(a, b(c)); ; }"]),
    # Declarations.
    ("call removed", "void f() { Name name(window); Other<A> b(c); }", []),
    # The last one stays.
    ("return removed", "int f() { if (a) return 1; return b; }", ["int f() { if (a) ; return b; }"]),
    ("return value", "int f() { return a(); }",
     ["int f() { return {}; }", "int f() { return !(a()); }"]),
    ("neighbour", "f(WM_LBUTTONDOWN);", ["f(WM_RBUTTONDOWN);"]),
    ("argument", "void f() { a::g(d.e, 0, b(c)); }",
     ["void f() { a::g({}, 0, b(c)); }", "void f() { a::g(d.e, 0, {}); }",
      "void f() { a::g(d.e, 0, b({})); }"]),
    # What is nothing, or has changes of its own.
    ("argument", 'void f() { g(nullptr, false, 7, "a", {}); H(a); if (b) return; }', []),
    # Parameters and declarations.
    ("argument", "int f(int a, int b) { A c(a, b); const B* g(a, b); return d<A>(a, b); }", []),
    ("arguments exchanged",
     "int f(int a, int b) { A c(a, b); const B* g(a, b); return d<A>(a, b); }", []),
    ("arguments exchanged", "void f() { g(a, b, c + 1); }",
     ["void f() { g(b, a, c + 1); }", "void f() { g(a, c + 1, b); }"]),
    ("statements exchanged", "void f() { a = 1; g(1); if (b) return; c(); }",
     ["void f() { g(1); a = 1; if (b) return; c(); }",
      "void f() { a = 1; if (b) return; g(1); c(); }",
      "void f() { a = 1; g(1); c(); if (b) return; }"]),
    # Those of inner blocks, and whole blocks.
    ("statements exchanged", "void f() { if (a) { b(); c(); } else { d(); } g(); }",
     ["void f() { g(); if (a) { b(); c(); } else { d(); } }",
      "void f() { if (a) { c(); b(); } else { d(); } g(); }"]),
    # Declarations, jumps and single statements.
    ("statements exchanged", "int f() { int a = g(); h(); A b(c); i(); return a; }", []),
    # Stored values that nobody sees in between, and one that is read.
    ("statements exchanged", "void f() { a.x = 1; b = 2; c = ToPoint(d); }", []),
    ("statements exchanged", "void f() { a = 1; b = a; }", ["void f() { b = a; a = 1; }"]),
    ("text", 'f("abce");', ['f("abde");']),
    ("text", 'f("");', ['f("x");']),
    ("text", 'extern "C" { }', []),
)


class Changes(unittest.TestCase):
    maxDiff = None

    def changed(self, source, operator, families=()):
        """What each change of this kind makes of the source."""
        return [mutant.apply(source)
                for mutant in mutants.mutants_of("a/b.cpp", source, families)
                if mutant.operator == operator]

    def test_what_each_kind_of_change_makes(self):
        for operator, source, expected in CHANGES:
            with self.subTest(operator, source=source):
                self.assertEqual(expected, self.changed(source, operator))

    def test_neighbours(self):
        families = mutants.enumerations_of("enum Kind : int {\n  kA = 0,\n  kB,  // last\n};\n"
                                           "enum class Step { kA, kC };")
        self.assertEqual([["kA", "kB"], ["Step::kA", "Step::kC"]], families)
        self.assertEqual(["int a = kB;"], self.changed("int a = kA;", "neighbour", families))
        self.assertEqual(["int a = Step::kA;"],
                         self.changed("int a = Step::kC;", "neighbour", families))

    def test_an_enumeration_keeps_its_own_names(self):
        source = "enum Kind : int { kA = 1, kB = 2 };"
        self.assertEqual([], self.changed(source, "neighbour", mutants.enumerations_of(source)))

    def test_arguments_become_others_of_their_type(self):
        source = "void f(HWND a, int b, HWND c) {\n    const int d = 1;\n    g(b, a);\n    int e = 2;\n}"
        self.assertEqual(["g({}, a)", "g(d, a)", "g(b, {})", "g(b, c)"],
                         [text.split("    ")[2].strip(";\n")
                          for text in self.changed(source, "argument")])

    def test_equal_arguments_and_those_of_other_types_keep_their_places(self):
        for call in ("g(a, a)", 'g("a", 1)', "g(window, 0)", "g(event.window, event.client)",
                     "g(nullptr, 7)", "g(count, WM_PAINT, window)"):
            source = f"void f(HWND window, int count) {{ {call}; }}"
            expected = [source.replace("count, WM_PAINT", "WM_PAINT, count")] \
                if "PAINT" in call else []
            self.assertEqual(expected, self.changed(source, "arguments exchanged"), call)

    def test_comments_and_directives_stay(self):
        self.assertEqual([], mutants.mutants_of("a.cpp", '#include "a"\n// a < b && 7\n/* 1 */\n'))

    def test_declarations_and_what_they_name(self):
        source = ("namespace a {\nextern int g_b;\nenum C : int { kD = 1, kE };\n"
                  "constexpr int kF[] = {1, 2};\ninline bool G(int h) {\n    return h < 1;\n}\n"
                  "class I : public J {\n    int k;\n};\n}\n")
        self.assertEqual(["g_b", "kD", "kE", "kF", "G", "I"],
                         [name for _, _, name in mutants.declarations_of(source) if name])

    def test_equal_lines_are_told_apart(self):
        found = mutants.mutants_of("a.cpp", "void f() {\n  g();\n  g();\n}\n")
        self.assertEqual(["a.cpp: g();  =>  ;", "a.cpp#2: g();  =>  ;"],
                         [mutant.name for mutant in found])

    def test_the_choice_depends_on_the_seed_alone(self):
        source = (ROOT / "navigation/gestures.cpp").read_text()
        found = mutants.mutants_of("navigation/gestures.cpp", source)
        order = [mutant.name for mutant in mutants.chosen_order(found, 1)]
        self.assertEqual(order, [mutant.name for mutant in mutants.chosen_order(found[::-1], 1)])
        self.assertNotEqual(order, [mutant.name for mutant in mutants.chosen_order(found, 2)])
        self.assertEqual(sorted(order), sorted(mutant.name for mutant in found))

    def test_every_source_of_the_plugin_can_be_read(self):
        count = 0
        for file in mutation_tests.plugin_sources(ROOT):
            source = (ROOT / file).read_text()
            for mutant in mutants.mutants_of(file, source):
                self.assertNotEqual(source, mutant.apply(source), mutant.name)
                count += 1
        self.assertGreater(count, 3000)


class Seeds(unittest.TestCase):
    def test_lists(self):
        self.assertEqual([3], mutate.seeds_of("3"))
        self.assertEqual([1, 2, 3, 7], mutate.seeds_of("1-3,7,2"))

    def test_mistakes(self):
        for text in ("", "a", "1-", "-2", "1,,2"):
            with self.assertRaisesRegex(mutate.argparse.ArgumentTypeError, "no list of seeds"):
                mutate.seeds_of(text)


class Results(unittest.TestCase):
    SUMS = {"": "all", "a.scn": "1", "b.scn": "2"}

    def results(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        return mutate.Results(pathlib.Path(folder.name) / "results.json", self.SUMS)

    def test_what_one_seed_tried_is_found_by_the_next(self):
        results = self.results()
        results.add("a.cpp: b => c", "sum", "noticed", "a.scn", "code", line=7)
        later = mutate.Results(results.path, self.SUMS)
        entry = later.find("a.cpp: b => c", "sum")
        self.assertEqual(("noticed", "a.scn", 7), (entry["result"], entry["by"], entry["line"]))
        self.assertTrue(later.is_final(entry))
        self.assertEqual(entry, later.find_code("code", "sum"))
        # With other sources it is tried again, by the same test first.
        self.assertIsNone(later.find("a.cpp: b => c", "other"))
        self.assertEqual("a.scn", later.earlier["a.cpp: b => c"])

    def test_a_survivor_meets_new_tests(self):
        results = self.results()
        entry = results.add("a.cpp: b => c", "sum", "survived", "", "code", ["a.scn", "b.scn"])
        self.assertTrue(results.is_final(entry))
        later = mutate.Results(results.path, {"": "more", "a.scn": "1", "b.scn": "changed"})
        entry = later.find("a.cpp: b => c", "sum")
        self.assertFalse(later.is_final(entry))
        self.assertEqual({"a.scn"}, later.met_by(entry))


class Programs(unittest.TestCase):
    def test_every_program_with_sources_of_the_plugin_is_tried(self):
        of_plugin = re.compile(r"PLUGIN\s|karvel_pure")
        found = {match.group(1)
                 for file in (ROOT / "tests").rglob("CMakeLists.txt")
                 for match in re.finditer(r"karvel_gtest\((\w+)([^()]*)\)", file.read_text())
                 if of_plugin.search(match.group(2))}
        self.assertIn("host_windows_test", found)
        # What loads the whole file needs none of its sources.
        self.assertEqual(found | {mutation_tests.LOADER}, set(mutation_tests.TEST_PROGRAMS))

    def test_a_failing_play_is_told_from_one_that_goes_on(self):
        for line, why in (("expected \"out swallow\"", "expected"),
                          ("crashed with exception c0000005", "crashed"),
                          ("no progress for 10 seconds, the play is ended here", "no progress")):
            said = mutation_tests.PLAY_FAILS.search(f"tests/scenarios/a/b/c.scn:7: {line}\n")
            self.assertEqual(("tests/scenarios/a/b/c.scn", why), said.groups())
        self.assertIsNone(mutation_tests.PLAY_FAILS.search("the play is begun again\n"))
        self.assertEqual("3", mutation_tests.WALK_FAILS.search("seed 1\nwalk 3 fails: x").group(1))

    def test_lines_are_found_whatever_the_compiler_calls_their_file(self):
        lines = [{"line_number": 3, "count": 2}, {"line_number": 4, "count": 0}]
        for name in ("../../host/core.cpp", "/elsewhere/host/core.cpp"):
            found = mutation_tests.LineMap(ROOT, ROOT / "build").lines_of({
                "current_working_directory": "/elsewhere/build/coverage",
                "files": [{"file": name, "lines": lines},
                          {"file": "/usr/include/c++/vector", "lines": lines},
                          {"file": "../../build/coverage/sdk_made/include/max.h", "lines": lines}]})
            self.assertEqual({"host/core.cpp": ({3, 4}, {3})}, found)

    def test_a_compilers_cache_is_left_out(self):
        self.assertEqual(["g++", "-c"], mutation_tests.without_cache(["/usr/bin/ccache", "g++", "-c"]))
        self.assertEqual(["g++", "-c"], mutation_tests.without_cache(["g++", "-c"]))


class Survivors(unittest.TestCase):
    KNOWN = {"a/b.cpp: f();  =>  ;".replace("  ", " ")}

    def read(self, text):
        with tempfile.TemporaryDirectory() as folder:
            path = pathlib.Path(folder) / "list"
            path.write_text(text)
            return mutate.read_survivors(path, self.KNOWN)

    def refused(self, text, said):
        with self.assertRaisesRegex(mutate.Mistake, said):
            self.read(text)

    def test_sound_list(self):
        self.assertEqual({"a/b.cpp: f(); => ;": "because of this"},
                         self.read("# list\n\na/b.cpp: f(); => ;\n    because\n    of this\n"))

    def test_mistakes(self):
        self.refused("a/b.cpp: f(); => ;\n", ":1: no reason")
        self.refused("    because\n", ":1: a reason without")
        self.refused("a/b.cpp: g(); => ;\n    because\n", ":1: there is no such mutant")
        self.refused("a/b.cpp: f(); => ;\n  a\na/b.cpp: f(); => ;\n  b\n", ":3: .* twice")

    def test_the_list_names_changes_that_there_are(self):
        known = {mutate.plain_name(mutant)
                 for found in mutate.all_mutants([]).values() for mutant in found}
        mutate.read_survivors(mutate.SURVIVORS, known)


if __name__ == "__main__":
    if len(sys.argv) < 2:
        sys.exit(__doc__.strip())
    ROOT = pathlib.Path(sys.argv.pop(1)).resolve()
    sys.path.insert(0, str(ROOT / "tools/mutation"))
    mutants = importlib.import_module("mutants")
    mutation_tests = importlib.import_module("mutation_tests")
    mutate = importlib.import_module("mutate_plugin")
    unittest.main()
