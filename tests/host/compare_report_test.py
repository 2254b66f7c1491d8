#!/usr/bin/env python3
"""compare_report.py tells each assumption about 3ds Max from a report, and what is wrong in one."""

import pathlib
import shutil
import subprocess
import sys
import tempfile
import unittest

ROOT = pathlib.Path(__file__).resolve().parents[2]
TOOLS = ROOT / "tools/report"
sys.path.insert(0, str(TOOLS))
import assumptions  # noqa: E402
import reports  # noqa: E402

REPORT = (ROOT / "tests/host/everything_open.txt").read_text(encoding="ascii")

# What no single report can tell is told in others: the tool in use, the releases of old, a brush.
SITUATIONS = {
    "everything open": [],
    "another tool, an old release": [("mode id=6 class=7", "mode id=1 class=2"),
                                     ("host release=14000", "host release=12000")],
    "a brush": [("mode id=6 class=7", "mode id=0x4f298c8b class=10"),
                ("button 4184 present=1 window=17 enabled=1 checked=0",
                 "button 4184 present=1 window=17 enabled=1 checked=1")],
}

# Other values for each key that says what something is: a class, an id, a state. The windows that they
# lie in are left out, for with one of them all that is in it is elsewhere.
OTHER_VALUES = {
    "class": ['"Another"'], "name": ['"Another"'], "title": ['"Another"', "longer"], "id": ["4711"],
    "owner": ["2"], "release": ["15000"], "type": ["5"], "axis": ["6"], "flyout": ["none"],
    **dict.fromkeys(("double", "present", "perspective", "user", "spot", "checked", "snap"),
                    ["0", "1"]),
}
OTHER_MODES = {"class": ["40"], "id": ["13"]}


def rows():
    return [row for group in assumptions.read_groups() for row in group.assumptions]


def replaced(text, *changes):
    for old, new in changes:
        if text.count(old) != 1 and old != "\n":
            raise AssertionError(f"the report has '{old}' {text.count(old)} times")
        text = text.replace(old, new)
    return text


def told(report, state):
    if isinstance(report, str):
        report = reports.read_text("report", report)
    return [row.name for row in ROWS if assumptions.judge(row, report).state == state]


def other_values(line):
    """(line, key) for each value of the line that can be another one, changed so."""
    for key, value in line.values.items():
        table = OTHER_MODES if line.noun == "mode" else OTHER_VALUES
        for other in table.get(key, []):
            if other == "longer":
                other = f'{value[:-1]} 2"'
            if other != value:
                text = line.text.replace(f" {key}={value}", f" {key}={other}", 1)
                yield reports.Line(line.file, line.number, text), key


def changed_reports(text, but):
    """(report, changed line, key) for each report with one other value; lines of `but` stay."""
    lines = reports.read_text("report", text).lines
    for at, line in enumerate(lines):
        if line.noun == but:
            continue
        for changed, key in other_values(line):
            yield reports.Report("report", [*lines[:at], changed, *lines[at + 1:]]), changed, key


class OneChange(unittest.TestCase):
    def test_the_situations_confirm_every_line_together(self):
        confirmed = set()
        for name, changes in SITUATIONS.items():
            text = replaced(REPORT, *changes)
            with self.subTest(situation=name):
                self.assertEqual([], told(text, assumptions.CONTRADICTED))
            confirmed |= set(told(text, assumptions.CONFIRMED))
        self.assertEqual([], [row.name for row in ROWS if row.name not in confirmed])

    def test_one_other_value_contradicts_one_line_at_most_and_each_line_has_one_that_does(self):
        reached, conditions = set(), {row.name: row.condition for row in ROWS}
        for situation, changes in SITUATIONS.items():
            # The windows are the same in all situations.
            for report, line, key in changed_reports(replaced(REPORT, *changes),
                                                     "window" if changes else None):
                names = told(report, assumptions.CONTRADICTED)
                with self.subTest(situation=situation, line=line.text, key=key):
                    self.assertLessEqual(len(names), 1, names)
                    for name in names:
                        self.assertIn(key, conditions[name])
                reached |= set(names)
        self.assertEqual([], [row.name for row in ROWS if row.name not in reached])

    def test_what_is_not_there(self):
        """As a report writes it: nothing but that it is not present."""
        for line in reports.read_text("report", REPORT).lines:
            if line.noun not in ("table", "action", "toolbar") or line.text.startswith("table 0"):
                continue
            missing = " ".join([line.noun, *map(str, line.arguments), "present=0"])
            names = told(replaced(REPORT, (line.text + "\n", missing + "\n")),
                         assumptions.CONTRADICTED)
            relied_on = [row.name for row in ROWS if row.condition.startswith(
                " ".join([line.noun, *map(str, line.arguments)]) + " ")]
            # The snaps of old releases are nothing to this one.
            expected = [name for name in relied_on[:1] if not name.startswith("old-")]
            with self.subTest(line=missing):
                self.assertEqual(expected, names)

    def test_the_line_that_is_contradicted_is_the_one_about_it(self):
        for name, old, new in (
                ("view-panel", 'class="ViewPanel"', 'class="ViewPane"'),
                ("view-double-clicks", 'at=9,480 size=748x388 inner=9,480 client=748x388 double=1',
                 'at=9,480 size=748x388 inner=9,480 client=748x388 double=0'),
                ("unwrap-canvas", 'class="UnwrapView"', 'class="unwrapview"'),
                ("unwrap-double-clicks", 'client=480x300 double=0 visible=1 enabled=1 kind=unwrap',
                 'client=480x300 double=1 visible=1 enabled=1 kind=unwrap'),
                ("unwrap-dialog", 'parent=0 owner=1 class="#32770" id=0 title="Edit UVWs"',
                 'parent=0 owner=0 class="#32770" id=0 title="Edit UVWs"'),
                ("track-view-title", 'title="Track View - Curve Editor"', 'title="Curve Editor"'),
                ("track-view-title", 'parent=0 owner=1 class="TrackViewHost"',
                 'parent=7 owner=0 class="TrackViewHost"'),
                ("track-bar-title", 'title="Trackbar"', 'title="Trackbar 2"'),
                ("track-bar-title", 'title="Trackbar"', 'title="Track Bar"'),
                ("time-slider", 'parent=1 owner=0 class="TimeSlider"',
                 'parent=7 owner=0 class="TimeSlider"'),
                ("time-slider-thumb", 'class="TimeSliderThumb"', 'class="Thumb"'),
                ("lock-button", 'parent=29 owner=0 class="CustButton" id=59231',
                 'parent=1 owner=0 class="CustButton" id=59231'),
                ("lock-button", 'class="CustButton" id=59231', 'class="Button" id=59231'),
                ("lock-state", 'window=30 enabled=1 checked=1', 'window=30 enabled=1 checked=0'),
                ("snap-state", "snap=0", "snap=1"),
                ("brush-relax", 'id=4185', 'id=4187'),
                ("vertex-paint", 'parent=1 owner=0 class="#32770" id=0 title="VertexPaint"',
                 'parent=0 owner=1 class="#32770" id=0 title="VertexPaint"'),
                ("paint-1007", 'id=1007 title="Paint"', 'id=1007 title=""'),
                ("paint-1077", 'parent=21 owner=0 class="CustButton" id=1077',
                 'parent=20 owner=0 class="CustButton" id=1077'),
                ("gizmo", "action 0 40105 present=1 name=\"Transform Gizmo Toggle\"",
                 "action 0 40105 present=1 name=\"Undo\""),
                ("view-user", "type=6 perspective=0", "type=6 perspective=1"),
                ("select-modes", "mode id=6 class=7", "mode id=6 class=3"),
                ("transform-modes", "mode id=6", "mode id=11"),
                ("zoom-extents-flyout", "window=33 enabled=1 checked=0 flyout=0",
                 "window=33 enabled=1 checked=0 flyout=none"),
                ("host-release", "release=14000", "release=6999")):
            with self.subTest(name=name, new=new):
                self.assertEqual([name], told(replaced(REPORT, (old, new)),
                                              assumptions.CONTRADICTED))

    def test_what_was_closed_is_not_told(self):
        def without(first, last):
            numbers = {str(number) for number in range(first, last + 1)}
            return "\n".join(line for line in REPORT.split("\n")
                             if not (line.startswith("window ") and line.split()[1] in numbers))

        old = told(REPORT, assumptions.NOT_TOLD)
        for first, last, names in (
                (34, 35, ["unwrap-canvas", "unwrap-dialog", "unwrap-double-clicks", "unwrap-table"]),
                (36, 38, ["track-view-canvas", "track-view-title"]),
                (39, 40, ["schematic-canvas"]),
                (41, 41, ["track-bar-title"])):
            with self.subTest(names=names):
                text = without(first, last)
                self.assertEqual([], told(text, assumptions.CONTRADICTED))
                self.assertEqual(sorted(old + names), sorted(told(text, assumptions.NOT_TOLD)))

    def test_a_key_that_an_older_report_lacks_is_not_told(self):
        text = REPORT.replace(" double=1", "").replace(" double=0", "")
        self.assertEqual([], told(text, assumptions.CONTRADICTED))
        self.assertLess({"view-double-clicks", "unwrap-double-clicks"},
                        set(told(text, assumptions.NOT_TOLD)))

    def test_what_a_later_report_adds_is_left_out(self):
        for old, new in (("\nwindow ", "\nflock 3 of=seagulls\nwindow "),
                         ("\naction ", "\n# \"half a text\naction 1 present=0\naction "),
                         (" visible=1", ' opacity="a \\"b\\" = c" visible=1')):
            with self.subTest(new=new):
                self.assertEqual(told(REPORT, assumptions.CONFIRMED),
                                 told(REPORT.replace(old, new), assumptions.CONFIRMED))


class InAFolder(unittest.TestCase):
    def setUp(self):
        self.folder = pathlib.Path(tempfile.mkdtemp(prefix="karvel-test-"))
        self.addCleanup(shutil.rmtree, self.folder)

    def write(self, data, name="KarvelReport.txt"):
        path = self.folder / name
        path.write_bytes(data if isinstance(data, bytes) else data.encode("ascii"))
        return path

    def run_tool(self, tool, *arguments):
        done = subprocess.run([TOOLS / tool, *map(str, arguments)], capture_output=True, text=True,
                              check=False, timeout=60)
        return done.returncode, done.stdout, done.stderr


class Told(InAFolder):
    def test_nothing_contradicted(self):
        status, out, errors = self.run_tool("compare_report.py", self.write(REPORT))
        self.assertEqual((0, ""), (status, errors))
        self.assertTrue(out.startswith("contradicted: 0\n"), out)
        self.assertIn("\nnot told: 6\n", out)
        self.assertIn("\nconfirmed: 67\n", out)

    def test_a_contradiction_names_lines_and_places(self):
        path = self.write(replaced(REPORT, ('class="ViewPanel"', 'class="ViewPane"')))
        status, out, _ = self.run_tool("compare_report.py", path)
        self.assertEqual(1, status)
        lines = out.split("\n")
        self.assertEqual(["contradicted: 1", "  Viewports",
                          "    view-panel (unconfirmed): viewports lie in a window of class "
                          "`ViewPanel`, before release 15000"], lines[:3])
        number = REPORT[:REPORT.index("viewport 8 ")].count("\n") + 1
        self.assertEqual(f"        {path}:{number}: viewport 8 type=2 perspective=0 user=0 active=0 "
                         "enabled=1 spot=0 camera=0", lines[3])
        self.assertEqual('        lies in window 7 class="ViewPane", in window 1 class="3DSMAX"',
                         lines[4])
        self.assertEqual(["        and 1 more line", '        should be: in window class="ViewPanel"',
                          "        would have to change: ClassifyWindow in host/window_kind.cpp, "
                          "g_viewPanel in hooks/viewport_focus.cpp"], lines[9:12])

    def test_several_reports_of_one_host_count_as_one(self):
        path = self.write(REPORT)
        others = [self.write(replaced(REPORT, *changes), f"{number}.txt")
                  for number, changes in enumerate(SITUATIONS.values())]
        status, out, _ = self.run_tool("compare_report.py", path, *others)
        self.assertEqual(0, status)
        self.assertIn("\nnot told: 0\n", out)
        wrong = self.write(replaced(REPORT, ('class="TrackBar"', 'class="Bar"')), "wrong.txt")
        status, out, _ = self.run_tool("compare_report.py", path, wrong, *others)
        self.assertEqual(1, status)
        self.assertTrue(out.startswith("contradicted: 1\n"), out)
        self.assertIn(f"{wrong}:", out)

    def test_line_ends_and_code_pages(self):
        """The second byte of a character may be that of a backslash; a report escapes each byte."""
        for page, name in ((1252, "Spur … é"), (932, "トラック 表示ソ"), (99999, "no such page")):
            known = f"cp{page}" if page != 99999 else "ascii"
            marked = replaced(REPORT, ("codepage=1252", f"codepage={page}"), ("\n", "\r\n"),
                              ('title="Main Toolbar"', 'title="#"'),
                              ('class="ViewPanel"', 'class="#"')) + "\r\n\r\n"
            text = name.encode(known).replace(b"\\", b"\\\\")
            path = self.write(marked.encode("ascii").replace(b'"#"', b'"' + text + b'"'))
            report = reports.read_report(path)
            title = reports.unquoted(report.windows[2].values["title"])
            self.assertEqual(name, report.in_code_page(title))
            self.assertEqual(["view-panel"], [
                row.name for row in ROWS
                if assumptions.judge(row, report).state == assumptions.CONTRADICTED])
            self.assertEqual(1, self.run_tool("compare_report.py", path)[0])


class BadInput(InAFolder):
    def refused(self, path, message):
        status, out, errors = self.run_tool("compare_report.py", path)
        self.assertEqual((2, ""), (status, out))
        self.assertEqual(1, errors.count("\n"), errors)
        self.assertRegex(errors, f"^{path}{message}\n$")

    def test_a_file_that_is_not_there(self):
        self.refused(self.folder / "none.txt", ": No such file or directory; name a .*")

    def test_what_is_no_report(self):
        for data in (b"", b"\n", REPORT.replace("report 1", "report 2").encode(),
                     b"\xff\xfeK\x00a\x00", b"MZ\x90\x00\x03"):
            self.refused(self.write(data), ":1: not the first line of a report, .*; give .*")

    def test_a_report_that_was_cut_short(self):
        lines = REPORT.split("\n")
        self.assertEqual(["end", ""], lines[-2:])
        for left in (1, 20, len(lines) - 2):
            self.refused(self.write("\n".join(lines[:left]) + "\n"),
                         f":{left}: the report ends here, .*cut short; .*")
        self.refused(self.write(REPORT[:-6]), f":{len(lines) - 2}: the report ends here, .*")

    def test_lines_that_cannot_be_read(self):
        for old, new, message in (
                ('title="Main Toolbar"', 'title="Main Toolbar', "no words of the form key=value .*"),
                ('title="Main Toolbar"', 'title="Main Toolbar"x', "no words of the form key=value .*"),
                ('title="Main Toolbar"', 'title=', "no words of the form key=value .*"),
                ("window 2 ", "", "no number stands .*|a line begins with its noun; .*"),
                ("window 2 ", "window 1 ", "each window has a number of its own; .*"),
                ("window 2 ", "window two ", "each window has a number of its own; .*"),
                ("window 2 parent=1", "window 2 parent=99", "there is no window 99 above, .*")):
            with self.subTest(new=new):
                number = REPORT[:REPORT.index(old)].count("\n") + 1
                self.refused(self.write(replaced(REPORT, (old, new))), f":{number}: ({message})")

    def test_a_viewport_or_button_of_no_window(self):
        for old, new in (("viewport 8 ", "viewport 99 "), ("window=33", "window=99")):
            number = REPORT[:REPORT.index(old)].count("\n") + 1
            self.refused(self.write(replaced(REPORT, (old, new))),
                         f":{number}: there is no line of window 99; .*")

    def test_no_file_at_all(self):
        for arguments in ((), ("--help",)):
            status, out, errors = self.run_tool("compare_report.py", *arguments)
            self.assertEqual((2, ""), (status, out))
            self.assertIn("usage: compare_report.py FILE...", errors)


class TheTable(InAFolder):
    def test_every_place_is_there(self):
        for row in ROWS:
            for file, word in row.places:
                with self.subTest(name=row.name):
                    self.assertRegex((ROOT / file).read_text(encoding="utf-8"), rf"\b{word}\b")

    def test_rows_that_cannot_be_read_are_told_with_their_line(self):
        good = 'a | sdk | host : release=1.. | dev set | b'
        for row, message in (
                ("a | sdk | host : release=1 | b", "a line is "),
                (good.replace("sdk", "sure"), "the mark 'sure' is none of "),
                (good.replace("dev set", "dev"), "where is "),
                (good.replace(" : ", " "), "the condition is "),
                (good.replace("release=1..", "release=\"1"), "'release=\"1' is no word"),
                (good.replace("release=1..", "release=1 beside window id=1"), "'beside' is none of "),
                (good.replace("release=1..", "release=1 under button 1"), "'under' leads to a window"),
                (good.replace("release=1..", "release=1 under"), "a noun is missing at the end"),
                (good.replace("release=1..", "under id=1"), "a noun is missing in"),
                (good + "\n" + good, "there is a line a already")):
            with self.subTest(row=row):
                table = self.write(f"# head\n[Group]\n{row}\n", "table.txt")
                with self.assertRaises(reports.Mistake) as caught:
                    assumptions.read_groups(table)
                number = 3 + row.count("\n")
                self.assertTrue(str(caught.exception).startswith(f"{table}:{number}: {message}"),
                                caught.exception)
        with self.assertRaisesRegex(reports.Mistake, "table.txt:1: a line in brackets "):
            assumptions.read_groups(self.write(good + "\n", "table.txt"))

    def test_a_page_that_shows_other_assumptions_is_told_and_drawn_anew(self):
        page = self.folder / "page.md"
        text = (ROOT / "docs/host-calls.md").read_text(encoding="utf-8")
        changed = text.replace("of class `ViewPanel`", "of class `View`", 1)
        self.assertNotEqual(text, changed)
        page.write_text(changed, encoding="utf-8")
        status, _, errors = self.run_tool("draw_assumptions.py", "--check", page)
        self.assertEqual(1, status)
        self.assertIn("run tools/report/draw_assumptions.py", errors)
        self.assertEqual((0, "", ""), self.run_tool("draw_assumptions.py", page))
        self.assertEqual(text, page.read_text(encoding="utf-8"))
        page.write_text("# No marks\n", encoding="utf-8")
        self.assertEqual(2, self.run_tool("draw_assumptions.py", page)[0])


ROWS = rows()

if __name__ == "__main__":
    unittest.main()
