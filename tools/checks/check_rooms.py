#!/usr/bin/python3
"""Holds the order of the rooms, tools/checks/rooms.txt, and the diagram of the plug-in's.

usage: check_rooms.py check [--root DIR]  each include leads down, and no sources include in a
                                          circle; docs/architecture.md shows the rooms as they are
       check_rooms.py draw [--root DIR]   writes diagram and table of docs/architecture.md anew
       check_rooms.py names               the rooms, from the top

Exit status: 0 all is well, 1 something is not, 2 the command line or a file cannot be read.
"""

import pathlib
import re
import sys

ROOT = pathlib.Path(__file__).resolve().parents[2]
TABLE = "tools/checks/rooms.txt"
PAGE = "docs/architecture.md"
BEGIN, END = "<!-- rooms: tools/checks/check_rooms.py draw -->", "<!-- end of rooms -->"
ROW = re.compile(r"^(\w+):([\w ]*)#\s*(.+)$")
STRANGERS = re.compile(r"^([\w/-]+)\s*!([\w/ -]+)#\s*(.+)$")
PLUGIN = "plug-in"
INCLUDE = re.compile(r'^\s*#\s*include\s+"(\w+)/([\w/.]+)"', re.MULTILINE)


class Mistake(Exception):
    """Something that the user can put right."""


def read_rooms(root=ROOT):
    """Room: (rooms that its row names, what is in it), from the top."""
    rooms = {}
    try:
        lines = (root / TABLE).read_text().splitlines()
    except OSError as error:
        raise Mistake(f"{TABLE}: {error.strerror}; it lists the rooms of the plug-in") from error
    for number, line in enumerate(lines, 1):
        if not line.strip() or line.startswith("#"):
            continue
        if STRANGERS.match(line):
            continue
        row = ROW.match(line)
        if not row:
            raise Mistake(f"{TABLE}:{number}: a row is 'room: rooms below it # what is in it'")
        if row[1] in rooms:
            raise Mistake(f"{TABLE}:{number}: {row[1]} has a row already; keep one of them")
        above = [name for name in row[2].split() if name in rooms or name == row[1]]
        if above:
            raise Mistake(f"{TABLE}:{number}: {row[1]} stands below {above[0]}; arrows lead down")
        rooms[row[1]] = (row[2].split(), row[3].strip())
    for room, (below, _) in rooms.items():
        for name in below:
            if name not in rooms:
                raise Mistake(f"{TABLE}: {room} leads to {name}, which has no row")
    return rooms


def read_strangers(root, rooms):
    """(folder, folders that nothing in it includes from, why)."""
    def folders(words):
        return [name for word in words for name in (rooms if word == PLUGIN else [word])]

    rows = [row for row in map(STRANGERS.match, (root / TABLE).read_text().splitlines()) if row]
    return [(folder, folders(row[2].split()), row[3].strip())
            for row in rows for folder in folders([row[1]])]


def names(root=ROOT):
    return list(read_rooms(root))


def below(rooms, room):
    """All rooms that a room may include from, its own left out."""
    found = set()
    for name in rooms[room][0]:
        found |= {name} | below(rooms, name)
    return found


def sources_of(root, rooms):
    return sorted(path for room in rooms for path in (root / room).rglob("*")
                  if path.suffix in (".h", ".cpp"))


def unit(name):
    """A header and its source are one: the path without the suffix."""
    return name.rsplit(".", 1)[0]


def check_includes(root, rooms):
    """The mistakes, and the graph of units: who includes whom."""
    mistakes, graph = [], {}
    for path in sources_of(root, rooms):
        source = path.relative_to(root).as_posix()
        room = source.split("/")[0]
        text = path.read_text()
        for include in INCLUDE.finditer(text):
            target, file = include[1], f"{include[1]}/{include[2]}"
            if target not in rooms:
                continue
            if unit(file) != unit(source):
                graph.setdefault(unit(source), set()).add(unit(file))
            if target != room and target not in below(rooms, room):
                line = text.count("\n", 0, include.start(1)) + 1
                mistakes.append(f"{source}:{line}: {room} includes {file}, but {target} is not "
                                f"below it in {TABLE}; move what both need down")
    return mistakes, graph


def check_strangers(root, rooms):
    mistakes = []
    for folder, others, why in read_strangers(root, rooms):
        if not (root / folder).is_dir():
            mistakes.append(f"{TABLE}: there is no folder {folder}; take its row with ! out")
        for path in sources_of(root, [folder]):
            text = path.read_text()
            for include in INCLUDE.finditer(text):
                file = f"{include[1]}/{include[2]}"
                if any(file.startswith(f"{other}/") for other in others):
                    line = text.count("\n", 0, include.start(1)) + 1
                    mistakes.append(f"{path.relative_to(root).as_posix()}:{line}: {folder} "
                                    f"includes {file}, but it is to know nothing of that: {why}")
    return mistakes


def find_circle(graph):
    """Units that include each other, the first one again at the end; empty when there are none."""
    done = set()

    def walk(name, way):
        if name in way:
            return way[way.index(name):] + [name]
        if name in done:
            return []
        for next_name in sorted(graph.get(name, ())):
            circle = walk(next_name, way + [name])
            if circle:
                return circle
        done.add(name)
        return []

    for name in sorted(graph):
        circle = walk(name, [])
        if circle:
            return circle
    return []


def drawing(rooms):
    lines = [BEGIN, "```mermaid", "flowchart TD"]
    lines += [f"    {room} --> {' & '.join(under)}" for room, (under, _) in rooms.items() if under]
    lines += ["```", "", "| room | what |", "|---|---|"]
    lines += [f"| `{room}/` | {what} |" for room, (_, what) in rooms.items()]
    return "\n".join(lines + [END])


def read_page(root):
    """The page before its drawing, the drawing, and what follows."""
    try:
        text = (root / PAGE).read_text()
    except OSError as error:
        raise Mistake(f"{PAGE}: {error.strerror}; it shows the rooms") from error
    begin, end = text.find(BEGIN), text.find(END)
    if begin < 0 or end < begin:
        raise Mistake(f"{PAGE}: '{BEGIN}' and '{END}' are not there; the rooms stand between them")
    end += len(END)
    return text[:begin], text[begin:end], text[end:]


def check(root):
    rooms = read_rooms(root)
    mistakes, graph = check_includes(root, rooms)
    mistakes += check_strangers(root, rooms)
    circle = find_circle(graph)
    if circle:
        mistakes.append(f"a circle of includes: {' -> '.join(circle)}; move what they share down")
    if read_page(root)[1] != drawing(rooms):
        mistakes.append(f"{PAGE}: the rooms are not those of {TABLE}; "
                        "run tools/checks/check_rooms.py draw")
    for mistake in mistakes:
        print(mistake, file=sys.stderr)
    if not mistakes:
        print(f"{len(graph)} units in {len(rooms)} rooms, every include leads down")
    return 1 if mistakes else 0


def draw(root):
    before, _, after = read_page(root)
    (root / PAGE).write_text(before + drawing(read_rooms(root)) + after)
    return 0


def main(arguments):
    root = ROOT
    if len(arguments) == 3 and arguments[1] == "--root":
        root = pathlib.Path(arguments[2])
        arguments = arguments[:1]
    verbs = {"check": check, "draw": draw, "names": lambda root: print(*names(root)) or 0}
    if len(arguments) != 1 or arguments[0] not in verbs:
        print("check_rooms.py: one of check, draw and names, see the head of the file",
              file=sys.stderr)
        return 2
    try:
        return verbs[arguments[0]](root)
    except Mistake as mistake:
        print(f"check_rooms.py: {mistake}", file=sys.stderr)
        return 2


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))
