#!/usr/bin/env python3
"""Fails each call of the plug-in, one at a time, in each kind of gesture and command.

usage: fault_table.py [--part I/N] [--only FAULT] [--situation TEXT] [--host YEAR] [--keep]
                      -- PLAYER ARGUMENT...

PLAYER and its arguments play scenarios: the names of the files are added to them, in a list.

First every situation is played without a fault, to learn which calls it makes in its first and in
its second half: a call that is not made there cannot fail there. Then each of these calls fails in
three ways: from the beginning to the end of the situation ("whole"), in its first half ("first") and
in its second ("second"). Afterwards the call works again, and what is left is compared with a fresh
session: keys and buttons, the capture, what was taken from the host and not given back, command
modes, actions, toolbar buttons, open windows, the settings file, the plug-in's own state, and how
the next orbit, click and key go. What may differ stands in exceptions.txt, each with its reason; a
line there that nothing needs any more is an error too.

options: --part I/N         every N-th fault, beginning with the I-th
         --only FAULT       this fault alone
         --situation TEXT   situations whose name contains TEXT
         --host YEAR        of a later host: the calls that 2012's file does not make
         --keep             leaves the scenarios in build/faults

Exit status: 0 nothing but the exceptions differs, 1 something does, 2 something cannot be read.
"""

import argparse
import collections
import fnmatch
import pathlib
import re
import subprocess
import sys
import tempfile

HERE = pathlib.Path(__file__).resolve().parent

sys.dont_write_bytecode = True
sys.path.insert(0, str(HERE.parent / "plugin"))
from default_settings import DEFAULT_SETTINGS  # noqa: E402

# Names that stand for several calls, each of which has a name of its own.
ALIASES = {"IsChecked", "IsEnabled", "Enabled"}

# Calls that the files for later hosts make where 2012's does not: for a wide copy of a long script.
LATER_MADE_MORE = {"malloc"}

# A pointer of the host's instead of a call: missed where this call would be made through it.
POINTERS = {"the_listener": "puts"}

# A settings file that has every line already, so that saving changes none.
SETTINGS = ["flinderPopup=", *(f"{key}={'1' if on else ''}" for key, on in DEFAULT_SETTINGS.items()),
            "top=200", "left=200"]

# Numbers that a gesture leaves behind and that the next one sets anew before it reads them.
LEFT_BEHIND = {"g_zoomLast", "g_zoomVirtual", "g_zoomWarp", "g_scrubLast", "g_thumbPos", "g_navKind",
               "g_searchCtrlId", "g_searchText", "g_nudgeStartTick", "g_nudgeRecorderWasOn",
               "g_previousLockRequests", "g_savedIsolatedPlayback", "g_lastFocusedViewport",
               "g_graphiteSculptTool", "g_graphitePdTool", "g_polyShiftActive"}

PLACE = ["mode 6", "select none", "move other 5 5", "move viewport.persp 200 150"]

FACTS = ["keys", "capture", "leaks", "modes", "state", "actions", "buttons", "dialogs", "settings",
         "plugin"]

AFTERWARDS = ["mode 6", "select none", "move other 5 5", "move viewport.persp 200 150",
              "key down alt", "down left", "move by 10 5", "up left", "key up alt",
              "move by 3 3", "down left", "up left", "key down k", "key up k"]

# Puts back what an exception may have left, so that the next situation can follow.
REPAIR = (
    ["poke useMayaStyle 0", "closebox options", "closebox welcome", "move other 5 5"]
    + [f"{way} {button}" for button in ("left", "middle", "right") for way in ("down", "up")]
    + [f"key {way} {key}" for key in ("alt", "ctrl", "shift") for way in ("down", "up")]
    + [f"poke {name} 0" for name in
       ("g_orbitActive", "g_zoomActive", "g_panActive", "g_navLocked", "g_heldButtons",
        "g_quickXform", "g_shiftClone", "g_selCtrl", "g_selShift", "g_selCtrlShift",
        "g_selectNotPushed", "g_sculptRedirect", "g_scrubState", "g_scrubWrapped",
        "g_altUpPending", "g_selectionLockRequests", "g_gizmoWasOn", "g_heldSnapSticky",
        "g_nudgeActive", "g_nudgeRepeating", "g_activeToolButton", "g_pendingSculptButton",
        "g_isolatedPlayback", "g_playbackDepth")]
    + [f"poke {key} {on}" for key, on in DEFAULT_SETTINGS.items()]
    + ["mode 6", "select none", "subobject off"])

# What the setup of a situation does is undone behind its end.
UNDO = ((r"open (.*)", r"close \1"), (r"mode .*", "mode 6"),
        (r"((?:action|lock|subobject).*) on", r"\1 off"))

COLUMNS = ("whole", "first", "second")


class Unreadable(Exception):
    """A file that belongs to the test is not what it should be."""


class Situation:
    def __init__(self, name, marks, line):
        self.name = name
        self.line = line
        self.is_alone = "alone" in marks
        self.release = ""
        self.settings = []
        for mark in marks:
            if mark.startswith("release "):
                self.release = mark
            elif mark.startswith("ini "):
                self.settings.append(mark[4:])
            elif mark != "alone":
                raise Unreadable(f"situations.txt:{line}: [{mark}] is not known")
        self.parts = {"setup": [], "begin": [], "middle": [], "end": []}
        self.calls = {}
        self.settled = []

    def columns(self):
        return COLUMNS[:1] if self.is_alone else COLUMNS

    def preconditions(self):
        """What has to be equal in situations that are played one after the other."""
        return (self.name if self.is_alone else "", self.release, tuple(self.settings))


def undone(setup):
    """What takes back what these lines opened, switched on or changed, the last one first."""
    return [re.sub(pattern, undo, line) for line in reversed(setup) for pattern, undo in UNDO
            if re.fullmatch(pattern, line)]


def read_situations():
    situations = []
    part = None
    for number, line in enumerate((HERE / "situations.txt").read_text().splitlines(), 1):
        line = line.strip()
        if not line or line.startswith("#"):
            continue
        if line.startswith("== "):
            marks = re.findall(r"\[([^\]]*)\]", line)
            name = re.sub(r"\[[^\]]*\]", "", line[3:]).strip()
            situations.append(Situation(name, marks, number))
            part = "setup"
        elif line in ("setup", "begin", "middle", "end"):
            part = line
        elif part is None:
            raise Unreadable(f"situations.txt:{number}: this stands before the first situation")
        else:
            situations[-1].parts[part].append(line)
    for situation in situations:
        situation.parts["end"] += undone(situation.parts["setup"])
    return situations


def faults_of(names, host):
    """Those of all faults that the table of this host is for."""
    text = (HERE / "calls.txt").read_text()
    if host:
        return LATER_MADE_MORE | {name for year, name in re.findall(r"^from (\d+) (\S+)$", text, re.M)
                                  if year <= host}
    return names - ALIASES - set(re.findall(r"^(?:not called|before|from \d+) (\S+)$", text, re.M))


def matches(word, patterns):
    return any(fnmatch.fnmatchcase(word, pattern) for pattern in patterns)


class Exceptions:
    """What may differ on this host: faults, situations, columns and the differing facts, each as patterns."""

    def __init__(self, host):
        self.rows = []
        for number, line in enumerate((HERE / "exceptions.txt").read_text().splitlines(), 1):
            if not line.strip() or line.startswith("#"):
                continue
            fields = [field.strip() for field in line.split("|")]
            if len(fields) != 4:
                raise Unreadable(f"exceptions.txt:{number}: a line has four fields, not {len(fields)}")
            faults, *others = [[word.strip() for word in field.split(";")] for field in fields]
            faults = [fault.removesuffix(f" on {host}") for fault in faults]
            self.rows.append((number, faults, *others))
        self.used = set()

    def rows_for(self, *cell):
        """Those whose patterns fit this fault, situation and column."""
        return [row for row in self.rows
                if all(matches(*pair) for pair in zip(cell, row[1:]))]

    def mentions(self, fault, situation, column):
        return bool(self.rows_for(fault, situation, column))

    def allows(self, fault, situation, column, fact):
        fitting = {(number, fault) for number, *_, facts in self.rows_for(fault, situation, column)
                   if matches(fact, facts)}
        self.used |= fitting
        return bool(fitting)


# ---- scenarios -----------------------------------------------------------------------------------

def mark(text):
    return f'script "\\"{text}\\""'


def precondition_lines(situation):
    settings = dict(line.split("=", 1) for line in SETTINGS)
    settings.update(line.split("=", 1) for line in situation.settings)
    lines = [situation.release] if situation.release else []
    return lines + [f"ini {key}={value}" for key, value in settings.items()]


def aftermath(place, clean):
    lines = [mark(f"facts {place}")] + [f"show {fact}" for fact in FACTS]
    return lines + [mark(f"clean {place}")] + (AFTERWARDS if clean else []) + [mark(f"done {place}")]


def item_lines(situation, place, fault="", column=""):
    """The lines of one situation; `place` is its number in the play."""
    on, off = ([f"fail {fault}"], [f"fail {fault} off"]) if fault else ([], [])
    calls = [] if fault else ["show calls"]
    lines = [mark(f"item {place}")]
    if not situation.is_alone:
        lines += PLACE
    lines += situation.parts["setup"] + calls
    lines += (on if column in ("whole", "first") else [])
    lines += [mark(f"begin {place}")] + situation.parts["begin"] + calls
    lines += (off if column == "first" else on if column == "second" else [])
    lines += [mark(f"middle {place}")] + situation.parts["middle"] + calls
    lines += off + [mark(f"settled {place}")] + settled()
    lines += [mark(f"end {place}")] + situation.parts["end"]
    return lines + aftermath(place, not situation.is_alone)


def repair_lines(place, fresh_facts):
    """The lines behind a situation that may leave something: repairs it, and looks again."""
    lines = list(REPAIR)
    for fact in fresh_facts:
        words = fact.split()
        if words[0] == "action":
            lines.append(" ".join(words))
        elif words[0].startswith("button.") and words[1] in ("on", "off"):
            lines.append(f"button {words[0][7:]} {words[1]}")
    return lines + [mark(f"repaired {place}")] + [f"show {fact}" for fact in FACTS] + [
        mark(f"next {place}")]


def settled():
    """Asked before "end" puts the host back, and compared with the same place without a fault."""
    return [f"show {fact}" for fact in ("keys", "capture", "leaks", "modes")]


class Player:
    def __init__(self, command, folder):
        self.command = command
        self.folder = pathlib.Path(folder)
        self.plays = 0

    def play(self, texts):
        """Plays the scenarios; answers output and message of each."""
        names = []
        for text in texts:
            self.plays += 1
            path = self.folder / f"play{self.plays:05}.scn"
            path.write_text("\n".join(text) + "\n")
            names.append(str(path))
        listed = self.folder / "list"
        listed.write_text("".join(name + "\n" for name in names))
        done = subprocess.run(self.command + ["--forgiving", "--files-from", str(listed)],
                              capture_output=True, text=True, errors="replace", check=False)
        outputs = dict.fromkeys(names, "")
        current = names[0] if len(names) == 1 else None
        chunks = collections.defaultdict(list)
        for line in done.stdout.splitlines():
            if len(names) > 1 and line.startswith("# ") and line[2:] in outputs:
                current = line[2:]
            elif current:
                chunks[current].append(line)
        messages = {name: [line for line in done.stderr.splitlines() if name in line]
                    for name in names}
        if done.returncode not in (0, 1, 3):
            raise Unreadable(f"the player ended with {done.returncode}: {done.stderr[-2000:]}")
        return [(chunks[name], messages[name]) for name in names]


def cut(lines):
    """The lines behind each mark: {"facts 3": [...], ...}."""
    result = {}
    current = None
    for line in lines:
        match = re.match(r'value "(\w+ \w+)"$', line)
        if match:
            current = match[1]
            result[current] = []
        elif current:
            result[current].append(line)
    return result


# ---- what is compared ----------------------------------------------------------------------------

def states_of(lines):
    facts = []
    for line in lines:
        words = line.split()
        if words[:1] != ["state"] or words[1] == "track" or words[2] in LEFT_BEHIND:
            continue
        if words[1] in ("keys", "threadkeys"):
            facts += [f"{words[1]} {word}" for word in words[2:]]
        else:
            facts.append(" ".join(words[1:]))
    return facts


def facts_of(pieces, place):
    facts = states_of(pieces.get(f"facts {place}", []))
    clean = [line.strip() for line in pieces.get(f"clean {place}", [])
             if line.split()[:1] and line.split()[0] in ("in", "win", "sdk", "script", "ini", "out")]
    return facts, clean


def key_of(fact):
    """What a fact is about, without what it says."""
    return re.split(r"[ =][^ =]*$", fact)[0]


def unlike(wanted, facts):
    """Facts that are not wanted, and wanted ones that are gone without a substitute."""
    keys = {key_of(fact) for fact in facts}
    return [fact for fact in facts if fact not in wanted] + [
        f"gone: {fact}" for fact in wanted if fact not in facts and key_of(fact) not in keys]


def differences(fresh, after):
    fresh_facts, fresh_clean = fresh
    facts, clean = after
    result = unlike(fresh_facts, facts)
    if clean != fresh_clean:
        for index, line in enumerate(clean):
            if index >= len(fresh_clean) or fresh_clean[index] != line:
                result.append(f"afterwards: {line}")
                break
        else:
            result.append("afterwards: nothing more")
    return result


class Table:
    def __init__(self, player, situations, exceptions):
        self.player = player
        self.situations = situations
        self.exceptions = exceptions
        self.fresh = {}
        self.complaints = []
        self.cells = 0

    def learn(self):
        """Plays everything without faults: the fresh sessions, and who calls what."""
        texts = []
        groups = collections.defaultdict(list)
        for situation in self.situations:
            groups[situation.preconditions()].append(situation)
        for preconditions, members in groups.items():
            lines = precondition_lines(members[0])
            if not preconditions[0]:
                lines += ["start"] + aftermath("fresh", True)
            for place, situation in enumerate(members):
                lines += item_lines(situation, place)
            texts.append(lines)
        played = zip(groups.items(), self.player.play(texts))
        for (preconditions, members), (output, messages) in played:
            pieces = cut(output)
            fresh = facts_of(pieces, "0" if preconditions[0] else "fresh")
            self.fresh[preconditions] = fresh
            for place, situation in enumerate(members):
                if f"done {place}" not in pieces:
                    raise Unreadable(f"situations.txt:{situation.line}: the play ended in "
                                     f"\"{situation.name}\": {messages}")
                halves = []
                for half in ("begin", "middle"):
                    lines = pieces[f"{half} {place}"]
                    for line in lines:
                        if line.startswith("state left out"):
                            raise Unreadable(f"situations.txt:{situation.line}: "
                                             f"\"{situation.name}\": {line[6:]}")
                    calls = [line for line in lines if line.startswith("state calls")]
                    halves.append(set(calls[0].split()[2:]))
                situation.calls = {"whole": halves[0] | halves[1], "first": halves[0],
                                   "second": halves[1]}
                situation.settled = states_of(pieces[f"settled {place}"])
                for difference in differences(fresh, facts_of(pieces, place)):
                    self.complaints.append(f"no fault: \"{situation.name}\" leaves {difference}")

    def run(self, faults):
        waiting = []
        for fault in faults:
            groups = collections.defaultdict(list)
            for situation in self.situations:
                for column in situation.columns():
                    if POINTERS.get(fault, fault) in situation.calls[column]:
                        groups[situation.preconditions()].append((situation, column))
            waiting += [(fault, items) for items in groups.values()]
        self.cells += sum(len(items) for _, items in waiting)
        while waiting:
            outputs = self.player.play([self.text(fault, items) for fault, items in waiting])
            left = []
            for (fault, items), (output, messages) in zip(waiting, outputs):
                rest = self.judge(fault, items, cut(output), messages)
                if rest:
                    left.append((fault, rest))
            waiting = left

    def text(self, fault, items):
        lines = precondition_lines(items[0][0])
        if not items[0][0].is_alone:
            lines.append("start")
        for place, (situation, column) in enumerate(items):
            lines += item_lines(situation, place, fault, column)
            if self.exceptions.mentions(fault, situation.name, column):
                lines += repair_lines(place, self.fresh[situation.preconditions()][0])
        return lines

    def judge(self, fault, items, pieces, messages):
        """Compares; answers the items behind the first one that differs, to be played afresh."""
        for place, (situation, column) in enumerate(items):
            if f"done {place}" not in pieces:
                what = messages[-1] if messages else "ended: without a word"
                found = [re.sub(r"^.*?\.scn(:\d+)?: ", "ended: ", what)]
            else:
                fresh = self.fresh[situation.preconditions()]
                found = [f"at once: {fact}" for fact in
                         unlike(situation.settled, states_of(pieces[f"settled {place}"]))]
                found += differences(fresh, facts_of(pieces, place))
            for difference in found:
                if not self.exceptions.allows(fault, situation.name, column, difference):
                    self.complaints.append(
                        f"{fault} | {situation.name} | {column} | {difference}")
            repaired = states_of(pieces.get(f"repaired {place}", []))
            if found and repaired != self.fresh[situation.preconditions()][0]:
                return items[place + 1:]
        return []


def main():
    parser = argparse.ArgumentParser(description=__doc__,
                                     formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("--part", default="1/1")
    parser.add_argument("--only")
    parser.add_argument("--situation", default="")
    parser.add_argument("--host", default="")
    parser.add_argument("--faults", required=True, help="file with the names of all faults")
    parser.add_argument("--keep")
    parser.add_argument("player", nargs="+")
    options = parser.parse_args()
    part, parts = (int(number) for number in options.part.split("/"))
    situations = [situation for situation in read_situations()
                  if options.situation in situation.name]
    exceptions = Exceptions(options.host)
    names = set(pathlib.Path(options.faults).read_text().split())
    faults = sorted(faults_of(names, options.host) & ({options.only} if options.only else names))
    faults = faults[part - 1::parts]
    with tempfile.TemporaryDirectory(prefix="karvel-faults-") as folder:
        player = Player(options.player, options.keep or folder)
        table = Table(player, situations, exceptions)
        table.learn()
        table.run(faults)
        plays = player.plays
    if not options.situation:
        for number, named, *_ in exceptions.rows:
            for fault in named:
                if fault.split(" on ")[0] not in names:
                    table.complaints.append(f"exceptions.txt:{number}: there is no fault {fault}")
                elif fault in faults and (number, fault) not in exceptions.used:
                    table.complaints.append(f"exceptions.txt:{number}: {fault} does not need this")
        for fault in faults:
            call = POINTERS.get(fault, fault)
            if not any(call in situation.calls["whole"] for situation in situations):
                table.complaints.append(f"{fault}: no situation makes this call")
    for complaint in table.complaints:
        print(complaint)
    print(f"{len(faults)} faults, {len(situations)} situations, {table.cells} times a call failed, "
          f"{plays} plays, {len(table.complaints)} complaints")
    return 1 if table.complaints else 0


if __name__ == "__main__":
    try:
        sys.exit(main())
    except Unreadable as problem:
        print(problem, file=sys.stderr)
        sys.exit(2)
