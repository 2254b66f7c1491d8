#!/usr/bin/env python3
"""The documents agree with the sources, and their links lead somewhere.

    docs_test.py REPOSITORY
"""

import pathlib
import re
import shutil
import subprocess
import sys
import tempfile
import unittest

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parents[2] / "tools/checks"))
import check_rooms as rooms  # noqa: E402

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parents[1] / "plugin"))
from default_settings import DEFAULT_SETTINGS  # noqa: E402

ROOT = None
PLUGIN_FOLDERS = [room for room in rooms.names() if room != "host"]

# How the documents put what the rule tables say.
STATES = {"kNavOrbit": "orbit", "kNavZoom": "zoom", "kNavPan": "pan", "kNavLocked": "refused",
          "kNavCtrlSelection": "a Ctrl click", "kNavMiddleClickMode": "command mode 65743"}
STATE_ORDER = ["orbit", "pan", "zoom", "a Ctrl click", "command mode 65743", "refused"]
BUTTONS = {"kHeldLeft": "left", "kHeldRight": "right", "kHeldMiddle": "middle"}
BUTTON_ORDER = ["left", "right", "middle"]
ACTIONS = {
    "kMiddleClick": "middle click",
    "kStartOrbit": "orbit begins", "kStartPan": "pan begins", "kStartZoom": "zoom begins",
    "kOrbitToZoom": "orbit becomes zoom", "kPanToZoom": "pan becomes zoom",
    "kZoomToPan": "zoom becomes pan", "kZoomToOrbit": "zoom becomes orbit",
    "kEndOrbit": "orbit ends", "kEndPan": "pan ends", "kEndZoom": "zoom ends",
    "kSwallow": "nothing, the gesture goes on",
    "kLeaveLocked": "the refusal ends, or becomes zoom",
}


def read(path):
    return (ROOT / path).read_text(encoding="utf-8")


# ---- Markdown ------------------------------------------------------------------------------------

def documents():
    """All pages of the repository, without what builds leave behind."""
    return sorted(path for path in ROOT.rglob("*.md")
                  if path.relative_to(ROOT).parts[0] not in ("build", ".git"))


def without_code(text):
    """The text with fenced and indented code and code spans blanked; lines keep their numbers."""
    lines, fenced, indented, previous_blank = [], False, False, True
    for line in text.split("\n"):
        if line.lstrip().startswith("```"):
            fenced = not fenced
            line = ""
        elif fenced:
            line = ""
        elif line.startswith("    ") and (indented or previous_blank):
            indented, line = True, ""
        elif line.strip():
            indented = False
        previous_blank = not line.strip()
        lines.append(re.sub(r"`[^`]*`", "", line))
    return "\n".join(lines)


def anchors(text):
    """The anchors of a page's headings, by the rules of the usual viewers."""
    found, fenced = {}, False
    result = set()
    for line in text.split("\n"):
        if line.lstrip().startswith("```"):
            fenced = not fenced
        match = None if fenced else re.match(r"#{1,6}\s+(.*)", line)
        if not match:
            continue
        slug = re.sub(r"[^\w\- ]", "", match.group(1).strip().lower()).replace(" ", "-")
        count = found.get(slug, 0)
        found[slug] = count + 1
        result.add(f"{slug}-{count}" if count else slug)
    return result


def link_problems(page, text):
    """One line for each relative link or picture of the page that leads nowhere."""
    problems = []
    for number, line in enumerate(without_code(text).split("\n"), 1):
        for target in re.findall(r"\]\(([^)\s]+)\)", line):
            if re.match(r"[a-z]+:", target):
                continue
            path, _, anchor = target.partition("#")
            file = (page.parent / path) if path else page
            if not file.exists():
                problems.append(f"{page}:{number}: there is no {target}")
            elif anchor and file.suffix == ".md":
                known = anchors(text if not path else file.read_text(encoding="utf-8"))
                if anchor not in known:
                    problems.append(f"{page}:{number}: no heading makes the anchor of {target}")
    return problems


# What may be written where a copyright is claimed: the one form, and its stand-ins in templates.
COPYRIGHT = ("Copyright (C) the Karvel developers", "@KARVEL_COPYRIGHT@", "KARVEL_COPYRIGHT")


def texts_of_the_product():
    """Sources and texts that users or developers read; what tests expect is no statement."""
    for path in sorted(ROOT.rglob("*")):
        parts = path.relative_to(ROOT).parts
        if parts[0] in ("build", ".git", "tests", "tools") or path.suffix in (".png", ".gif"):
            continue
        if path.is_file():
            yield path, path.read_text(encoding="utf-8")


def other_copyrights(text):
    """Lines that claim a copyright in another form."""
    return [line for line in text.split("\n")
            if re.search(r"Copyright (\(C\)|©|by|[0-9])|©", line)
            and not any(form in line for form in COPYRIGHT)]


def steps_of_a_release():
    """Step -> command, from docs/releasing.md."""
    return dict(re.findall(r"^\| ([^|]+) \| `([^`]+)` \|$", read("docs/releasing.md"), re.M))


def passes(command, folder):
    return subprocess.run(["bash", "-c", command], cwd=folder, check=False).returncode == 0


def marked_tables(text):
    """Tables by their mark: name -> list of tables, a table being a list of rows of cells."""
    tables = {}
    for match in re.finditer(r"<!-- table: ([\w-]+) -->\n\n((?:\|.*\n)+)", text + "\n"):
        rows = [[cell.strip() for cell in line.strip().strip("|").split("|")]
                for line in match.group(2).strip().split("\n")]
        tables.setdefault(match.group(1), []).append(rows[2:])
    return tables


# ---- sources -------------------------------------------------------------------------------------

def settings_of(source):
    """(key, default) of each row of kSettings."""
    body = re.search(r"kSettings\[\]\s*=\s*\{(.*?)\n\};", source, re.S).group(1)
    rows = re.findall(r'\{&PluginSettings::(\w+),\s*"(\w+)",\s*(\d),', body)
    for field, key, _ in rows:
        if field != key:
            raise AssertionError(f"the field {field} carries the name of another key, {key}")
    return [(f"`{key}`", "on" if default == "1" else "off") for _, key, default in rows]


def box_labels(rc, table):
    """Key -> label of its check box."""
    controls = dict(re.findall(r'"(\w+)",\s*\d, (IDC_\w+),', table))
    labels = {name: text for text, name in
              re.findall(r'CONTROL\s+"([^"]*)",\s*(IDC_\w+),\s*"Button"', rc)}
    for key, control in controls.items():
        if control not in labels:
            raise AssertionError(f"resources/karvel.rc has no check box {control}, the one of {key}")
    return {f"`{key}`": labels[control] for key, control in controls.items()}


def commands_of(header, table, rc):
    """(id, description, short name) of each command, by ascending id."""
    ids = dict(re.findall(r"(kCommand\w+) = (\d+),", header))
    texts = dict(re.findall(r'^\s+(IDS_\w+)\s+"([^"]*)"', rc, re.M))
    rows = re.findall(r"\{(kCommand\w+),\s*(IDS_\w+),\s*(IDS_\w+),", table)
    for name in sorted(set(ids) ^ {name for name, _, _ in rows}):
        raise AssertionError(f"{name} stands in one of resources/command_ids.h and shell/commands.h "
                             "only: add it to the other")
    for text in (text for _, *both in rows for text in both):
        if text not in texts:
            raise AssertionError(f"resources/karvel.rc has no text {text}, which shell/commands.h names")
    return sorted(([ids[name], texts[description], texts[short]]
                   for name, description, short in rows), key=lambda row: int(row[0]))


def script_functions_of(source):
    names = dict(re.findall(r'^MCHAR (k\w+)\[\] = _M\("(\w+)"\);', source, re.M))
    registered = re.findall(r"^Primitive \w+\((k\w+),", source, re.M)
    return [f"`{names[name]}`" for name in registered]


def words(text, dictionary, order, constants):
    """The flags of a table cell in words; names of combinations are taken apart first."""
    names = []
    for name in (part.strip() for part in text.split("|")):
        names += [part.strip() for part in constants.get(name, name).split("|")]
    return sorted((dictionary[name] for name in names if name not in ("kNavNone", "kHeldNone")),
                  key=order.index)


def list_in_words(items, joint):
    return (", ".join(items[:-1]) + f" {joint} " if len(items) > 1 else "") + items[-1]


def rules_of(source, name):
    """The rows of a rule table as the documents put them."""
    constants = dict(re.findall(r"constexpr unsigned (k\w+) = ([^;]+);", source))
    options = dict(re.findall(r"constexpr auto (k\w+) = &PluginSettings::(\w+);", source))
    body = re.search(rf"constexpr NavRule {name}\[\] = \{{(.*?)\n\}};", source, re.S).group(1)
    result = []
    for row in re.findall(r"^\s*\{(.*)\},$", body, re.M):
        when, unless, held, option, button, action = (cell.strip() for cell in row.split(","))
        when = words(when, STATES, STATE_ORDER, constants)
        unless = words(unless, STATES, STATE_ORDER, constants)
        held = words(held, BUTTONS, BUTTON_ORDER, constants)
        button = words(button, BUTTONS, BUTTON_ORDER, constants)
        if unless and when:
            state = f"{list_in_words(when, 'or')} but not {list_in_words(unless, 'or')}"
        elif unless:
            state = f"anything but {list_in_words(unless, 'or')}"
        else:
            state = list_in_words(when, "or") if when else "anything"
        result.append([
            str(len(result) + 1),
            state,
            list_in_words(held, "and") if held else "–",
            "–" if option == "kAlways" else f"`{options[option]}`",
            "any" if len(button) == 3 else list_in_words(button, "or"),
            ACTIONS[action.removeprefix("NavAction::")],
        ])
    return result


def host_functions(header):
    """The functions of host/host.h, those of class Viewport with its name before theirs."""
    header = re.sub(r"//.*", "", header)
    klass = re.search(r"class Viewport \{(.*?)\n\};", header, re.S)
    inside, private = klass.group(1).split("private:")[0], klass.group(0)
    names = {f"host::Viewport::{name}" for name in
             re.findall(r"^\s+(?:static )?\w+ ([A-Z]\w*)\(", inside, re.M)}
    outside = header.replace(private, "")
    names |= {f"host::{name}" for name in
              re.findall(r"^[\w:<>\*& ]+[ \*&]([A-Z]\w*)\(", outside, re.M)}
    return names


def sdk_members(source):
    return set(re.findall(r"(?:->|theHold\.)([A-Z]\w*)\(", re.sub(r"//.*", "", source)))


def defined_globals(source):
    """Those that other sources can name, so none of an unnamed namespace."""
    open_part = re.sub(r"^namespace \{.*?^\}  // namespace$", "", source, flags=re.M | re.S)
    return re.findall(r"^[A-Za-z][\w:<> \*]*[ \*](g_\w+)(?:\[\w*\])?(?: = .*)?;", open_part, re.M)


def row_difference(wanted, found):
    """The first row of a document that is not what the sources make it; empty when there is none."""
    for number in range(max(len(wanted), len(found))):
        row = wanted[number] if number < len(wanted) else None
        other = found[number] if number < len(found) else None
        if row == other:
            continue
        if row is None:
            return f"row {number + 1} is too many: | {' | '.join(other)} |"
        what = "is missing" if other is None else f"is | {' | '.join(other)} |"
        return f"row {number + 1} {what}, by the sources it begins with | {' | '.join(row)} |"
    return ""


def unknown_words(wanted, text):
    return sorted(word for word in wanted if not re.search(rf"\b{re.escape(word)}\b", text))


# ---- tests ---------------------------------------------------------------------------------------

class Documents(unittest.TestCase):
    maxDiff = None

    def tables(self, page, name):
        tables = marked_tables(read(page)).get(name)
        self.assertTrue(tables, f"{page} has no table marked {name}")
        return tables

    def compare_rows(self, wanted, found, where):
        difference = row_difference([list(row) for row in wanted], [list(row) for row in found])
        if difference:
            self.fail(f"{where}: {difference}")

    def test_links_and_pictures_exist(self):
        pages = documents()
        self.assertGreater(len(pages), 10)
        problems = []
        for page in pages:
            problems += link_problems(page, page.read_text(encoding="utf-8"))
        self.assertEqual([], problems)

    def test_settings(self):
        header = read("settings/plugin_settings.h")
        expected = settings_of(header)
        labels = box_labels(read("resources/karvel.rc"), header)
        self.assertGreater(len(expected), 5)
        self.compare_rows(expected, [(f"`{key}`", "on" if on else "off")
                                     for key, on in DEFAULT_SETTINGS.items()],
                          "DEFAULT_SETTINGS of tests/plugin/default_settings.py")
        for page in ("README.md", "docs/user-guide.md"):
            for table in self.tables(page, "settings"):
                self.compare_rows([(*row, labels[row[0]]) for row in expected],
                                  [row[:3] for row in table], f"{page}, table of settings")

    def test_commands(self):
        expected = commands_of(read("resources/command_ids.h"), read("shell/commands.h"),
                               read("resources/karvel.rc"))
        self.assertGreater(len(expected), 10)
        for page in ("README.md", "docs/user-guide.md"):
            for table in self.tables(page, "commands"):
                self.compare_rows(expected, [row[:3] for row in table],
                                  f"{page}, table of commands")

    def test_script_functions(self):
        expected = script_functions_of(read("script/primitives.cpp"))
        self.assertEqual(6, len(expected))
        for table in self.tables("docs/user-guide.md", "script-functions"):
            self.assertEqual(expected, [row[0] for row in table])
        self.assertEqual([], unknown_words([name.strip("`") for name in expected],
                                           read("README.md")))

    def test_chords(self):
        source = read("navigation/nav_rules.cpp")
        for name, mark in (("kPress", "press-rules"), ("kRelease", "release-rules")):
            expected = rules_of(source, name)
            self.assertGreaterEqual(len(expected), 10)
            for table in self.tables("docs/user-guide.md", mark):
                self.compare_rows(expected, table, f"docs/user-guide.md, table {mark}")

    def test_every_action_of_the_rules_has_its_words(self):
        actions = re.search(r"enum class NavAction \{(.*?)\};", read("navigation/nav_rules.h"),
                            re.S).group(1)
        for action in sorted(set(ACTIONS) ^ set(re.findall(r"^\s+(k\w+),", actions, re.M))):
            self.fail(f"{action} stands in one of NavAction (navigation/nav_rules.h) and ACTIONS "
                      "(tests/docs/docs_test.py) only")

    def test_host_calls_are_listed(self):
        page = read("docs/host-calls.md")
        functions = host_functions(read("host/host.h"))
        self.assertGreater(len(functions), 50)
        self.assertEqual([], unknown_words(functions, page))
        named = set(re.findall(r"host::(?:Viewport::)?[A-Z]\w*", page))
        self.assertEqual(set(), named - functions)
        members = set()
        for source in [*(ROOT / "host").glob("*.cpp"), *(ROOT / "host/ansi").glob("*.cpp")]:
            members |= sdk_members(source.read_text(encoding="utf-8"))
        self.assertGreater(len(members), 50)
        self.assertEqual([], unknown_words(members, page))

    def test_globals_are_listed(self):
        listed = dict(row[:2] for row in self.tables("docs/architecture.md", "globals")[0])
        found = {}
        for room in rooms.names():
            for source in sorted((ROOT / room).glob("*.cpp")):
                names = defined_globals(source.read_text(encoding="utf-8"))
                if names:
                    unit = source.relative_to(ROOT).with_suffix("").as_posix()
                    found[f"`{unit}`"] = " ".join(f"`{name}`" for name in names)
        self.assertGreater(len(found), 15)
        for unit in sorted({*found, *listed}):
            if found.get(unit) != listed.get(unit):
                self.fail(f"docs/architecture.md, table of globals: {unit} has "
                          f"{listed.get(unit, 'no row')}, the source defines "
                          f"{found.get(unit, 'none')}, in this order")

    def test_the_stand_in_knows_the_globals(self):
        """Of the other two, one is the record of the settings and one holds no state."""
        header = read("standin/engine/plugin/globals.h")
        known = set(re.findall(r'\{"(g_\w+)", GlobalKind', header)) | {"g_settings", "g_module"}
        defined = {name for room in rooms.names() for source in (ROOT / room).glob("*.cpp")
                   for name in defined_globals(source.read_text(encoding="utf-8"))}
        for name in sorted(known ^ defined):
            self.fail(f"{name} is defined by no source of the plug-in, remove it from kGlobals of "
                      "standin/engine/plugin/globals.h" if name in known else
                      f"{name} is missing in kGlobals of standin/engine/plugin/globals.h")

    def test_copyright_has_one_form(self):
        found = 0
        for path, text in texts_of_the_product():
            self.assertEqual([], other_copyrights(text), path)
            found += any(form in text for form in COPYRIGHT)
        self.assertGreaterEqual(found, 7)

    def test_the_web_address_stands_in_one_place(self):
        places = [str(path.relative_to(ROOT)) for path, text in texts_of_the_product()
                  if re.search(r"https?://[\w.]*\.example", text)]
        self.assertLessEqual(set(places), {"CMakeLists.txt"})

    def test_first_screen(self):
        first, *rest = re.split(r"^## ", read("README.md"), flags=re.M)
        self.assertLessEqual(len(first.split("\n")), 36)
        picture = re.search(r"!\[[^\]]+\]\(([^)]+)\)", first).group(1)
        self.assertEqual("docs/images/tour.gif", picture)
        data = (ROOT / picture).read_bytes()
        self.assertEqual(b"GIF89a", data[:6])
        self.assertLessEqual(len(data), 1 << 20)
        # A block before each step of the drag.
        self.assertGreaterEqual(data.count(b"\x21\xf9\x04"), 20)
        for words in ("./dev run ", "./dev run --interactive", "./dev package", "./dev play",
                      "docs/scenarios.md", "#reporting-a-bug"):
            self.assertIn(words, first)
        self.assertEqual(["Install and remove", "The gestures on one screen"],
                         [part.split("\n")[0] for part in rest[:2]])

    def test_pictures_stand_in_the_user_guide(self):
        guide = read("docs/user-guide.md")
        for heading, picture in (("Alt drags", "editors"), ("The middle button alone", "quick-transform"),
                                 ("Trying it without 3ds Max", "things-to-try")):
            part = re.search(rf"^### {heading}\n(.*?)(?=^##)", guide, re.M | re.S).group(1)
            self.assertIn(f"(images/{picture}.png)", part)

    def test_names_are_explained(self):
        for page in ("README.md", "docs/user-guide.md", "package/INSTALL.txt.in"):
            # One paragraph with all three.
            self.assertTrue(any(all(re.search(rf"\b{said}", paragraph.replace("*", ""))
                                    for said in ("KarvelMax is", "Karvel are", "Flinder is"))
                                for paragraph in read(page).split("\n\n")), page)

    def test_no_release_with_a_placeholder_or_without_a_licence(self):
        steps = steps_of_a_release()
        address = steps["The web address is no placeholder"]
        licence = steps["The owner has chosen a licence"]
        with tempfile.TemporaryDirectory() as folder:
            build = pathlib.Path(folder) / "CMakeLists.txt"
            shutil.copy(ROOT / "CMakeLists.txt", build)
            text = build.read_text(encoding="utf-8")
            changed = re.sub(r'(set\(KARVEL_WEBSITE )"[^"]*"', r'\1"http://www.karvel.example"', text)
            build.write_text(changed, encoding="utf-8")
            self.assertFalse(passes(address, folder))
            self.assertFalse(passes(licence, folder))
            build.write_text(changed.replace("www.karvel.example", "karvel.org"), encoding="utf-8")
            (build.parent / "LICENSE").write_text("A licence\n", encoding="utf-8")
            self.assertTrue(passes(address, folder))
            self.assertTrue(passes(licence, folder))
        if not passes(licence, ROOT):
            self.assertRegex(read("README.md"), r"## Licence\n\nNo licence has been chosen")

    def test_ways_to_a_report(self):
        form = re.search(r"## Reporting a bug\n(.*?)\n## ", read("docs/user-guide.md"), re.S).group(1)
        self.assertEqual(5, len(re.findall(r"^    \w[^:]*:", form, re.M)))
        # The form stands before the scenario.
        self.assertLess(form.index("Version:"), form.index("scenario"))
        for page in ("README.md", "docs/troubleshooting.md"):
            self.assertRegex(read(page), r"\(\S*user-guide\.md#reporting-a-bug\)", page)


class TheChecksThemselves(unittest.TestCase):
    """Each check finds the difference that it is there for."""

    def test_links(self):
        page = ROOT / "README.md"
        broken = "# A heading\n\n[x](no-such-file.md) ![y](no.png) [z](#nowhere) [ok](#a-heading)\n"
        self.assertEqual(3, len(link_problems(page, broken)))
        self.assertEqual([], link_problems(page, "`[x](no.md)`\n\n    [y](no.md)\n\n[z](dev)\n"))
        self.assertEqual([], link_problems(page, "[far](http://www.karvel.example/none)\n"))

    def test_anchors(self):
        self.assertEqual({"a-b-c", "what-3ds-max-does", "a-b-c-1"},
                         anchors("# A b, `c`\n## What 3ds Max does\n```\n# no\n```\n# A b c\n"))

    def test_rules(self):
        source = read("navigation/nav_rules.cpp")
        # The buttons of a row, whichever it is.
        changed = source.replace("kHeldNone,   kAlways", "kHeldLeft,   kAlways", 1)
        self.assertNotEqual(source, changed)
        self.assertNotEqual(rules_of(source, "kPress"), rules_of(changed, "kPress"))

    def test_settings(self):
        source = read("settings/plugin_settings.h")
        changed = re.sub(r'("slowZooming",\s*)1', r"\g<1>0", source)
        self.assertNotEqual(source, changed)
        self.assertNotEqual(settings_of(source), settings_of(changed))

    def test_copyrights(self):
        self.assertEqual([], other_copyrights("Copyright (C) the Karvel developers.\nno copyright"))
        self.assertEqual(3, len(other_copyrights("Copyright by us\nCopyright (C) 2012 us\n© us")))

    def test_rows(self):
        one, other = ["1", "orbit"], ["1", "pan"]
        self.assertEqual("", row_difference([one, other], [one, other]))
        self.assertIn("row 2 is missing", row_difference([one, other], [one]))
        self.assertIn("row 1 is | 1 | pan |", row_difference([one], [other]))
        self.assertIn("row 2 is too many", row_difference([one], [one, other]))

    def test_words(self):
        self.assertEqual(["g_zoom"], unknown_words(["g_zoom", "g_pan"], "g_pan g_zoomLast"))


if __name__ == "__main__":
    if len(sys.argv) < 2:
        sys.exit(__doc__.strip())
    ROOT = pathlib.Path(sys.argv.pop(1)).resolve()
    unittest.main()
