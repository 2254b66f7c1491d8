#!/usr/bin/python3
"""Makes the declarations of one generation of the host out of the tables under sdk/.

usage: make_sdk.py GENERATION OUTPUT [SDK]

Reads SDK (sdk/): generations.txt, whose head explains the tables, and table/. Writes, and leaves
alone what is as it should be:

  OUTPUT/include/            the headers under their real names
  OUTPUT/imports/DLL.def     the names that may be imported from each of the host's DLLs
  OUTPUT/host_layout.txt     slots, sizes, offsets and ways to travel, for check_abi.py
  OUTPUT/sdk_members.txt     what a plug-in may include, use and override, for check_sdk_usage.py

Exit status: 0 made, 1 a table is wrong, with one line that names file, line and remedy.
"""

import fcntl
import pathlib
import re
import sys

ROOT = pathlib.Path(__file__).resolve().parents[2]
SDK = ROOT / "sdk"
MADE = ROOT / "build" / "lint"

# Who defines a member that is taken by name, and the word in the macro of its DLL.
DLLS = {"core": "CORE", "maxutil": "MAXUTIL", "MAXScrpt": "MAXSCRIPT", "gup": "GUP",
        "ParamBlk2": "PARAMBLK2", "menus": "MENUS"}
KINDS = ["called", "own", "inline", *DLLS]
FACTS = ["slots", "size", "base", "field", "offset", "passed"]
CELL = r"(?:~?\d+|-|x|address|register|somewhere)"
OPENING = r"^(?:template .*)?(class|struct) (\w+)(?: : ([^{;]*))?$"


class Wrong(Exception):
    """A table that nothing can be made of; the text says where and what to do."""


class Place:
    """A line of a table, to name in a message."""

    def __init__(self, path, number):
        self.path, self.number = path, number

    def wrong(self, text):
        return Wrong(f"{self.path}:{self.number}: {text}")


class Member:
    """A row: what it declares and how it is reached in this generation."""

    def __init__(self, place, cell, kind, declaration):
        self.place, self.cell, self.kind = place, cell, kind
        self.declaration, brace, body = declaration.partition(" {")
        self.body = [brace + body] if brace else []
        self.import_name = None
        self.overrides = False

    @property
    def name(self):
        found = re.search(r"(operator(?: new| delete|\[\])|~?\w+)\(", self.declaration)
        return found[1] if found else self.declaration.split()[-1]

    @property
    def slot(self):
        return int(self.cell) if self.cell.isdigit() else None

    def text(self):
        """The declaration as it stands in the header, without indentation."""
        words = [f"SDK_{DLLS[self.kind]}_API"] if self.kind in DLLS else []
        if self.slot is not None and not self.overrides:
            words.append("virtual")
        end = " override" if self.overrides else ""
        pure = self.kind in ("called", "own") and not self.body
        return " ".join([*words, self.declaration]) + end + \
            (" = 0;" if pure else "\n".join(self.body) or ";")


class Class:
    def __init__(self, place, name, bases):
        self.place, self.name = place, name
        self.bases = [re.sub(r"^(?:public|private|protected) ", "", each.strip())
                      for each in bases.split(", ")] if bases else []
        self.derived = False
        self.slots = None
        self.known = True  # the number of slots is the host's, not a choice of the table
        self.facts = []  # (kind, words, value)
        self.lines = []  # what the header has: text, or a member
        self.members = []
        self.absent = False


class Generation:
    """One column."""

    def __init__(self, sdk, name):
        path = sdk / "generations.txt"
        self.properties = {}
        self.names = []
        for number, line in enumerate(lines_of(path), 1):
            words = line.split("--")[0].split()
            place = Place(path, number)
            if not words:
                continue
            if not self.names:
                self.names = words[1:]
                if words[0] != "generation" or name not in self.names:
                    raise place.wrong(f"there is no generation '{name}'; it can be "
                                      f"{', '.join(self.names)}, or add a column")
                self.column = self.names.index(name)
            elif len(words) != len(self.names) + 1:
                raise place.wrong(f"'{words[0]}' has {len(words) - 1} values for "
                                  f"{len(self.names)} generations; give one for each")
            else:
                self.properties[words[0]] = words[1 + self.column]
        if not self.names:
            raise Place(path, 1).wrong("names no generation; begin with 'generation NAME...'")
        self.name = name
        self.wide = self.properties.get("texts") == "wide"

    @property
    def version_word(self):
        return int(self.properties["release"]) << 16 | int(self.properties["interface"]) << 8

    def includes(self, directive, words, place):
        """Whether `@from`, `@until` or `@only` with these words means this generation."""
        unknown = [word for word in words if word not in self.names]
        if unknown or not words:
            raise place.wrong(f"@{directive} wants one of {', '.join(self.names)}, not "
                              f"'{' '.join(words)}'")
        columns = [self.names.index(word) for word in words]
        if directive == "from":
            return self.column >= columns[0]
        if directive == "until":
            return self.column <= columns[0]
        return self.column in columns

    def filled_in(self, line):
        words = {"T": "_W" if self.wide else "D", "S": "WStr" if self.wide else "CStr",
                 "generation": self.name, **self.properties}
        return re.sub(r"\{(\w+)\}", lambda match: words.get(match[1], match[0]), line)


def lines_of(path):
    try:
        return path.read_text(encoding="utf-8").split("\n")
    except OSError as error:
        raise Wrong(f"{path}: cannot be read: {error.strerror}; it belongs to the tables") from error


class Header:
    """One table: a header of the SDK."""

    def __init__(self, path, name, generation):
        self.path, self.name, self.generation = path, name, generation
        self.parts = []  # what the header has: text, members outside of classes, classes
        self.travels = []  # (class of the system's, how it is handed over)
        self.ours = set()  # positions in parts and lines that the SDK does not have
        self.conditions = []  # (directive, whether it holds)
        self.inner = False  # only the other headers include it
        self.current = None
        self.last = None
        for number, line in enumerate(lines_of(path), 1):
            self.read(line, Place(path, number))
        if self.conditions:
            raise Place(path, number).wrong("an '@' has no '@end'; add one")
        if self.current is not None:
            raise self.current.place.wrong(
                f"'{self.current.name}' does not end; add a line 'end'")

    def is_empty(self):
        """Whether this generation has nothing of what the header is there for."""
        classes = [part for part in self.parts if isinstance(part, Class)]
        return bool(classes) and all(each.absent for each in classes) and \
            not any(isinstance(part, Member) for part in self.parts)

    def read(self, line, place):
        if line.startswith("--"):
            return
        directive = re.match(r"\s*@(\w+)\s*(.*)$", line)
        if directive:
            self.read_directive(directive[1], directive[2].split(), place)
            return
        if not all(holds for _, holds in self.conditions):
            return
        line = self.generation.filled_in(line)
        row = re.match(rf"\s*((?:{CELL}\s+)*{CELL})  +(\w+)(?:  ?(.*))?$", line)
        if row and row[2] in KINDS + FACTS:
            self.read_row(row[1].split(), row[2], row[3] or "", place)
        elif row:
            raise place.wrong(f"'{row[2]}' is no kind of row; it can be "
                              f"{', '.join(KINDS + FACTS)}")
        elif re.match(r"\s+= ", line):
            self.read_import_name(line.split("= ", 1)[1].strip(), place)
        elif re.match(r"\s+\|", line):
            if self.last is not False:
                self.read_body(line.split("|", 1)[1], place)
        else:
            self.read_text(line, place)

    def read_directive(self, directive, words, place):
        if directive == "end":
            if not self.conditions:
                raise place.wrong("'@end' ends nothing; remove it")
            self.conditions.pop()
        elif directive == "inner":
            self.inner = True
        elif directive == "ours":
            self.conditions.append(("ours", True))
        elif directive in ("from", "until", "only"):
            self.conditions.append(
                (directive, self.generation.includes(directive, words, place)))
        else:
            raise place.wrong(f"'@{directive}' is none of @from, @until, @only, @ours, @inner, @end")

    def read_row(self, cells, kind, text, place):
        if len(cells) != len(self.generation.names):
            raise place.wrong(f"{len(cells)} values for {len(self.generation.names)} generations; "
                              "give one for each, '-' where it is not there")
        cell = cells[self.generation.column]
        if kind in FACTS:
            self.read_fact(cell, kind, text, place)
            return
        if not text:
            raise place.wrong("declares nothing; write the declaration behind the kind")
        if not re.fullmatch(r"\d+|x|-", cell):
            raise place.wrong(f"'{cell}' is no slot; write a number, 'x' for a member that has "
                              "none, or '-'")
        self.last = False
        if cell == "-":
            return
        member = Member(place, cell, kind, text)
        self.last = member
        if self.current is None:
            if cell != "x" or kind not in DLLS:
                raise place.wrong("outside of a class stands only what is taken by name; its "
                                  "values are 'x' or '-'")
            self.parts.append(member)
        else:
            self.current.members.append(member)
            self.current.lines.append(member)

    def read_fact(self, cell, kind, text, place):
        if kind == "passed" and self.current is None:
            if cell != "-":
                self.travels.append((text, cell))
            return
        if self.current is None:
            raise place.wrong(f"'{kind}' belongs into a class")
        if kind == "slots":
            self.current.absent = cell == "-"
            if cell != "-":
                self.current.known = not cell.startswith("~")
                if not re.fullmatch(r"~?\d+", cell):
                    raise place.wrong(f"'{cell}' is no number of slots")
                self.current.slots = int(cell.lstrip("~"))
            return
        if cell == "-":
            return
        if kind == "field":
            name = re.search(r"(\w+)(?:\[\w+\])?(?: = .*)?$", text)
            if not name:
                raise place.wrong("names no field; write its type and its name")
            self.current.lines.append(Text(f"    {text};", True))
            text = name[1]
        self.current.facts.append((kind, text, cell))

    def read_import_name(self, name, place):
        if self.last is None:
            raise place.wrong("a name without a member; write it below the member's row")
        if self.last is not False:
            self.last.import_name = name

    def read_body(self, text, place):
        if self.last is None:
            raise place.wrong("a body without a member; write it below the member's row")
        self.last.body.append(text)

    def read_text(self, line, place):
        opening = re.match(OPENING, line)
        if opening and not line.startswith("template"):
            if self.current is not None:
                raise place.wrong(f"'{self.current.name}' does not end before this; add 'end'")
            self.current = Class(place, opening[2], opening[3])
            self.current.head = line
            self.parts.append(self.current)
        elif line == "end":
            if self.current is None:
                raise place.wrong("'end' ends no class; remove it")
            self.current, self.last = None, None
        elif line == "derived" and self.current is not None:
            self.current.derived = True
        else:
            cells = re.match(rf"\s*(?:(?:~?\d+|-|x)\s+)+", line)
            if cells:
                raise place.wrong("looks like a row and is none; write one value a generation, "
                                  "two spaces, the kind and the declaration")
            text = Text(line, any(kind == "ours" for kind, _ in self.conditions))
            (self.parts if self.current is None else self.current.lines).append(text)


class Text(str):
    """A line that goes into the header as it is."""

    def __new__(cls, line, ours):
        text = super().__new__(cls, line)
        text.ours = ours
        return text


class Sdk:
    """All tables, read for one generation."""

    def __init__(self, sdk, name):
        self.generation = Generation(sdk, name)
        folder = sdk / "table"
        self.headers = [Header(path, str(path.relative_to(folder))[:-len(".txt")], self.generation)
                        for path in sorted(folder.rglob("*.txt"))]
        if not self.headers:
            raise Wrong(f"{folder}: holds no table; give the folder that has table/ in it")
        self.headers = [header for header in self.headers if not header.is_empty()]
        self.classes = {part.name: part for header in self.headers for part in header.parts
                        if isinstance(part, Class) and not part.absent}
        for each in self.classes.values():
            self.arrange(each)
        for header in self.headers:
            for part in header.parts:
                for member in part.members if isinstance(part, Class) else [part]:
                    if isinstance(member, Member) and member.kind in DLLS \
                            and member.import_name is None:
                        raise member.place.wrong("is taken by name and has none; write '= NAME' "
                                                 "below, or '= -' where it is only called")

    def base_of(self, each):
        return self.classes.get(each.bases[0]) if each.bases else None

    def slots_of(self, each):
        """Length of the function table; 0 for a class without one."""
        if each is None:
            return 0
        return each.slots if each.slots is not None else self.slots_of(self.base_of(each))

    def at_slot(self, each, slot):
        """(owner, member) of what a class has at a slot, its own or a base's."""
        while each is not None:
            for member in each.members:
                if member.slot == slot:
                    return each, member
            each = self.base_of(each)
        return None, None

    def arrange(self, each):
        """Finds out which members override one of a base, and holds the slots against each other."""
        base = self.base_of(each)
        first, count = self.slots_of(base), self.slots_of(each)
        taken = {}
        for member in each.members:
            if member.slot is None:
                continue
            if member.slot >= count:
                raise member.place.wrong(f"slot {member.slot} is behind the last of "
                                         f"'{each.name}', which has {count}")
            if member.slot in taken:
                raise member.place.wrong(f"slot {member.slot} of '{each.name}' is taken by "
                                         f"line {taken[member.slot].place.number}")
            taken[member.slot] = member
            if member.slot < first:
                owner, there = self.at_slot(base, member.slot)
                if there is None or there.name != member.name and "~" not in member.name:
                    raise member.place.wrong(
                        f"slot {member.slot} is {f'{there.name} of {owner.name}' if there else 'not named in a base'}"
                        f"; '{each.name}' has slots of its own from {first} on")
                member.overrides = True
        if each.derived:
            free = [slot for slot in range(count) if self.at_slot(each, slot)[1] is None]
            if free:
                raise each.place.wrong(f"a plug-in derives from '{each.name}', so each slot needs "
                                       f"a row; {free[0]} has none")

    # ---- headers ---------------------------------------------------------------------------------

    def table_lines(self, each):
        """The members with slots as the compiler has to meet them: by slot, the free ones reserved,
        overloads the other way round, as the Microsoft rule turns them."""
        first, count = self.slots_of(self.base_of(each)), self.slots_of(each)
        own = sorted((member for member in each.members if member.slot is not None),
                     key=lambda member: member.slot)
        lines = [member for member in own if member.overrides]
        by_slot = {member.slot: member for member in own if not member.overrides}
        groups = []
        for slot in range(first, count):
            member = by_slot.get(slot)
            if member is None:
                groups.append([f"    SDK_SLOT({each.name}, {slot})"])
            elif groups and isinstance(groups[-1][0], Member) and \
                    groups[-1][0].name == member.name:
                groups[-1].insert(0, member)
            else:
                groups.append([member])
        seen = {}
        for group in groups:
            name = group[0].name if isinstance(group[0], Member) else None
            if name in seen:
                raise group[0].place.wrong(f"'{name}' stands at line {seen[name]} as well; "
                                           "overloads of a class have slots side by side")
            if name is not None:
                seen[name] = group[0].place.number
            lines += group
        return lines

    def class_lines(self, each):
        lines = [each.head + " {"]
        table = self.table_lines(each)
        for line in each.lines:
            if isinstance(line, Member) and line.slot is not None:
                lines += [entry if isinstance(entry, str) else indent(entry) for entry in table]
                table = []
            else:
                lines.append(line if isinstance(line, str) else indent(line))
        # A class none of whose slots has a name.
        if table:
            lines += ([] if "public:" in lines else ["public:"]) + table
        return lines + ["};"]

    def header_text(self, header):
        lines = []
        for part in header.parts:
            if isinstance(part, Class):
                if not part.absent:
                    lines += self.class_lines(part)
            else:
                lines.append(part if isinstance(part, str) else part.text())
        return "\n".join(lines)

    # ---- what is made of them ---------------------------------------------------------------------

    def all_members(self):
        """(class or None, member)."""
        for header in self.headers:
            for part in header.parts:
                if isinstance(part, Class) and not part.absent:
                    for member in part.members:
                        yield part, member
                elif isinstance(part, Member):
                    yield None, part

    def import_list(self, dll):
        names = []
        for _, member in self.all_members():
            if member.kind == dll and member.import_name != "-":
                is_data = "(" not in member.declaration
                names.append(member.import_name + (" DATA" if is_data else ""))
        if not names:
            return None
        return (f"; What a plug-in may import from {dll}.dll. The import library of the Microsoft "
                f"build is\n; made from this list, so a call of anything else does not link.\n"
                f"LIBRARY {dll}.dll\nEXPORTS\n" +
                "".join(f"    {name}\n" for name in sorted(names)))

    def chain_of(self, each):
        names = []
        while each is not None:
            if self.slots_of(each):
                names.insert(0, each.name)
            each = self.base_of(each)
        return names

    def layout(self):
        """The lines that check_abi.py reads; it explains them."""
        lines = [f"# Made by tools/building/make_sdk.py for the host of {self.generation.name}."]
        for each in self.classes.values():
            called = any(member.kind in ("called", *DLLS) and member.slot for member in each.members)
            if each.slots is None:
                continue
            if not each.derived and not called:
                if each.known:
                    lines.append(f"slots {each.name} {each.slots}")
                continue
            if not each.known:
                continue
            lines.append(f"class {each.name} {each.slots} " + " < ".join(self.chain_of(each)))
            for slot in range(each.slots):
                owner, member = self.at_slot(each, slot)
                if member is None or slot == 0 and not each.derived and member.name.startswith("~"):
                    continue
                lines.append(f"  {slot} " + self.layout_row(each, owner, member))
        for header in self.headers:
            lines += [f"travels {name} {how} result address" for name, how in header.travels]
        for each in self.classes.values():
            for kind, words, cell in each.facts:
                lines.append({"size": f"size {each.name} {cell}",
                              "base": f"base {each.name} {words} {cell}",
                              "field": f"field {each.name} {words} {cell}",
                              "offset": f"field {each.name} {words} {cell}",
                              "passed": f"travels {each.name} {cell} result address"}[kind])
        return "\n".join(lines) + "\n"

    def layout_row(self, each, owner, member):
        if member.name.startswith("~"):
            return "~derived() [scalar deleting] | own"
        own = each.derived and member.kind in ("own", "called")
        result, arguments, tail = signature_of(member.declaration, member.name)
        text = f"{result} {'' if own else owner.name + '::'}{member.name}({', '.join(arguments)}){tail}"
        text = re.sub(r"(?<=\w)([*&])", r" \1", text)
        text = re.sub(r"([*&]) (?=\w)", r"\1", text)
        if not each.derived:
            return text
        return text + (" | own" if own else " | inline" if member.kind == "inline" else " | imported")

    def member_list(self):
        lines = [f"# Made by tools/building/make_sdk.py for the host of {self.generation.name}."]
        lines += [f"header {header.name}" for header in self.headers if not header.inner]
        for owner, member in self.all_members():
            plain = tidy(member.declaration)
            lines.append(f"{owner.name}: {plain}" if owner else plain)
            if owner and member.slot is not None:
                lines.append("override " + without_names(plain))
        for header in self.headers:
            for part in header.parts:
                if isinstance(part, Class) and not part.absent:
                    lines.append(part.head)
            lines += declared_in_text(header)
        return "\n".join(dict.fromkeys(lines)) + "\n"

    def write(self, output):
        files = {f"include/{header.name}": self.header_text(header) for header in self.headers}
        files["host_layout.txt"] = self.layout()
        files["sdk_members.txt"] = self.member_list()
        for dll in DLLS:
            text = self.import_list(dll)
            if text is not None:
                files[f"imports/{dll}.def"] = text
        for path in [*output.rglob("*.h"), *output.rglob("*.def")]:
            if str(path.relative_to(output)) not in files:
                path.unlink()
        for name, text in files.items():
            path = output / name
            path.parent.mkdir(parents=True, exist_ok=True)
            if not path.exists() or path.read_text(encoding="utf-8") != text:
                path.write_text(text, encoding="utf-8")


# ---- C++ text ------------------------------------------------------------------------------------


def indent(member):
    return "\n".join("    " + line if line else line for line in member.text().split("\n"))


def split_arguments(text):
    arguments, depth, current = [], 0, ""
    for character in text:
        depth += (character in "(<") - (character in ")>")
        if character == "," and depth == 0:
            arguments.append(current)
            current = ""
        else:
            current += character
    return [each.strip() for each in [*arguments, current] if each.strip()]


def signature_of(declaration, name):
    """(result, types of the arguments, what follows) of a member's declaration."""
    start = declaration.index(name + "(")
    depth = 0
    for end in range(start + len(name), len(declaration)):
        depth += (declaration[end] == "(") - (declaration[end] == ")")
        if depth == 0:
            break
    types = []
    for argument in split_arguments(declaration[start + len(name) + 1:end]):
        argument = argument.split(" = ")[0].removesuffix(" =").strip()
        match = re.match(r"(.*(?:[*&]|[\w>])) ?(?<=[ *&])(\w+)$", argument)
        argument = match[1] if match and match[1] not in ("const", "unsigned") else argument
        types.append(argument.strip())
    return declaration[:start].strip(), types, declaration[end + 1:]


def without_names(plain):
    """A tidied declaration without the names of its parameters."""
    match = re.search(r"(operator\[\]|~?\w+)\(", plain)
    result, types, tail = signature_of(plain, match[1])
    return f"{result} {match[1]}({', '.join(types)}){tail}".strip()


def tidy(text):
    """A declaration without body, initialisers, linkage and default arguments."""
    text = re.sub(r"\bSDK_\w+_API\b ?", "", text)
    text = re.sub(r"\s+", " ", text).strip()
    depth = 0
    for index, character in enumerate(text):
        depth += (character == "(") - (character == ")")
        if character == ")" and depth == 0:
            tail = re.match(r"\)( const)?( noexcept)?", text[index:])
            text = text[:index] + tail[0]
            break
    text = re.sub(r" = [^,()]+(?:\([^()]*\))?(?=[,)])", "", text)
    text = re.sub(r"^(?:virtual|inline|static|extern) ", "", text)
    return re.sub(r"[;{].*", "", text).strip()


def declared_in_text(header):
    """Constants, functions and classes in those lines of a table that are C++ as they are."""
    lines = []
    owner = None
    in_enumeration = False
    for part in header.parts:
        texts = part.lines if isinstance(part, Class) else [part]
        if isinstance(part, Class):
            owner = part.name
        for text in texts:
            if not isinstance(text, Text) or text.ours:
                continue
            macro = re.match(r"#define (\w+)", text)
            value = re.match(r"\s+(\w+)(?: = .*)?,", text)
            opened = re.match(r"(class|struct) (\w+).*\{", text)
            if re.match(r"\s*enum .*\{", text):
                in_enumeration = True
            elif "};" in text and in_enumeration:
                in_enumeration = False
            elif macro and not macro[1].startswith("SDK_"):
                lines.append(f"constant {macro[1]}")
            elif in_enumeration and value:
                lines.append(f"constant {value[1]}")
            elif opened:
                owner = opened[2]
                lines.append(re.sub(r"\s*\{.*", "", text))
            elif owner and re.match(r"    [A-Za-z~][\w:<>*&~ \[\]=]*?\(", text):
                lines.append(f"{owner}: {tidy(text)}")
        if isinstance(part, Class) or part == "};":
            owner = None
    return lines


def made(generation="2012", sdk=SDK):
    """The folder with what belongs to a generation, made anew where a table has changed. For the
    checks, which need no configured build."""
    output = MADE / f"sdk-{generation}"
    output.mkdir(parents=True, exist_ok=True)
    # Several checks run side by side; what one has begun the others wait for.
    with open(output / "lock", "w", encoding="utf-8") as lock:
        fcntl.flock(lock, fcntl.LOCK_EX)
        Sdk(sdk, generation).write(output)
    return output


def main():
    if len(sys.argv) not in (3, 4):
        sys.exit(__doc__.split("\n")[2])
    try:
        Sdk(pathlib.Path(sys.argv[3]) if len(sys.argv) == 4 else SDK,
            sys.argv[1]).write(pathlib.Path(sys.argv[2]))
    except Wrong as problem:
        print(f"make_sdk: {problem}", file=sys.stderr)
        return 1
    return 0


if __name__ == "__main__":
    sys.exit(main())
