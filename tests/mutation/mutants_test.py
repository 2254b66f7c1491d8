#!/usr/bin/env python3
"""Which changes ./dev mutate finds in a source, and how it reads the list of survivors.

    mutants_test.py REPOSITORY
"""

import importlib.machinery
import importlib.util
import pathlib
import sys
import tempfile
import unittest

ROOT = None


def load(name, file):
    loader = importlib.machinery.SourceFileLoader(name, str(ROOT / "tools" / file))
    module = importlib.util.module_from_spec(importlib.util.spec_from_loader(name, loader))
    sys.modules[name] = module
    loader.exec_module(module)
    return module


class Changes(unittest.TestCase):
    maxDiff = None

    def changed(self, source, operator, families=()):
        """What each change of this kind makes of the source."""
        return [mutant.apply(source)
                for mutant in mutants.mutants_of("a/b.cpp", source, families)
                if mutant.operator == operator]

    def test_comparisons_go_to_their_opposite_and_over_their_bounds(self):
        self.assertEqual(["bool f(int a) { return a <= b; }", "bool f(int a) { return a >= b; }"],
                         self.changed("bool f(int a) { return a < b; }", "comparison"))
        self.assertEqual(["bool f(int a) { return a != b; }"],
                         self.changed("bool f(int a) { return a == b; }", "comparison"))

    def test_brackets_of_templates_are_no_comparisons(self):
        self.assertEqual([], self.changed("int a = static_cast<int>(b->c);", "comparison"))

    def test_and_or_negation(self):
        self.assertEqual(["bool a = b || c;"], self.changed("bool a = b && c;", "junction"))
        self.assertEqual(["bool a = b;"], self.changed("bool a = !b;", "negation"))

    def test_conditions(self):
        self.assertEqual(["void f() { if (!(a)) b(); }"],
                         self.changed("void f() { if (a) b(); }", "condition"))
        self.assertEqual(["int a = !(b + c) ? 1 : 2;"],
                         self.changed("int a = b + c ? 1 : 2;", "condition"))

    def test_conditions_that_declare_stay(self):
        self.assertEqual([], self.changed("void f() { if (int* a = b()) c(a); }", "condition"))

    def test_constants(self):
        self.assertEqual(["int a[] = {0, 0x1F};", "int a[] = {8, 0x1F};", "int a[] = {7, 0};",
                          "int a[] = {7, 0x20};"],
                         self.changed("int a[] = {7, 0x1F};", "constant"))

    def test_a_flag_has_two_values(self):
        self.assertEqual(["void f() { g_a = 0; }"],
                         self.changed("void f() { g_a = 1; }", "constant"))
        self.assertEqual(["int f() { return 1; }"],
                         self.changed("int f() { return 0; }", "constant"))

    def test_flags_are_left_out(self):
        self.assertEqual(["int a = B | C;", "int a = A | C;", "int a = A | C;", "int a = A | B;"],
                         [" ".join(text.split()).replace(" ;", ";") for text in
                          self.changed("int a = A | B | C;", "flag")])

    def test_calls_and_assignments_are_left_out(self):
        source = "void f() { int a = g(); if (a) host::Stop(a, b(c)); d.e[1] = a; }"
        self.assertEqual(["void f() { int a = g(); if (a) ; d.e[1] = a; }"],
                         self.changed(source, "call removed"))
        self.assertEqual(["void f() { int a = g(); if (a) host::Stop(a, b(c)); ; }"],
                         self.changed(source, "assignment removed"))

    def test_declarations_are_no_calls(self):
        self.assertEqual([], self.changed("void f() { Name name(window); Other<A> b(c); }",
                                          "call removed"))

    def test_early_returns_go_and_last_ones_stay(self):
        self.assertEqual(["int f() { if (a) ; return b; }"],
                         self.changed("int f() { if (a) return 1; return b; }", "return removed"))

    def test_returned_values(self):
        self.assertEqual(["int f() { return {}; }", "int f() { return !(a()); }"],
                         self.changed("int f() { return a(); }", "return value"))

    def test_neighbours(self):
        families = mutants.enumerations_of("enum Kind : int {\n  kA = 0,\n  kB,  // last\n};\n"
                                           "enum class Step { kA, kC };")
        self.assertEqual([["kA", "kB"], ["Step::kA", "Step::kC"]], families)
        self.assertEqual(["int a = kB;"], self.changed("int a = kA;", "neighbour", families))
        self.assertEqual(["int a = Step::kA;"],
                         self.changed("int a = Step::kC;", "neighbour", families))
        self.assertEqual(["f(WM_RBUTTONDOWN);"], self.changed("f(WM_LBUTTONDOWN);", "neighbour"))

    def test_an_enumeration_keeps_its_own_names(self):
        source = "enum Kind : int { kA = 1, kB = 2 };"
        self.assertEqual([], self.changed(source, "neighbour", mutants.enumerations_of(source)))

    def test_texts(self):
        self.assertEqual(['f("abde");'], self.changed('f("abce");', "text"))
        self.assertEqual(['f("x");'], self.changed('f("");', "text"))
        self.assertEqual([], self.changed('extern "C" { }', "text"))

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
    mutants = load("mutants", "mutants.py")
    mutation_tests = load("mutation_tests", "mutation_tests.py")
    mutate = load("mutate", "mutate")
    unittest.main()
