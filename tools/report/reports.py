"""A report from a running 3ds Max, read line by line (docs/report.md)."""

import re

FIRST = "Karvel report 1"
LAST = "end"
TEXT = r'"(?:[^"\\]|\\.)*"'
WORD = re.compile(rf'([A-Za-z]\w*)=({TEXT}|[^\s"]+)(?=\s|$)|([^\s="]+)(?=\s|$)', re.ASCII)
NUMBER = re.compile(r"-?\d+$|0[xX][0-9a-fA-F]+$")
ESCAPES = {"n": "\n", "r": "\r", "t": "\t", '"': '"', "\\": "\\"}


class Mistake(Exception):
    """Something that the user can put right."""


def number_of(text):
    """The number that a word is; None when it is none."""
    return int(text, 0 if text[:2] in ("0x", "0X") else 10) if NUMBER.match(text) else None


def unquoted(text):
    """What stands between the quotes; other words as they are."""
    if not text.startswith('"'):
        return text
    return re.sub(r"\\(.)", lambda found: ESCAPES.get(found[1], found[0]), text[1:-1])


class Line:
    def __init__(self, file, number, text):
        self.file, self.number, self.text = file, number, text
        self.noun, self.arguments, self.values = "", [], {}
        at = 0
        while at < len(text):
            word = WORD.match(text, at)
            if not word:
                raise self.mistake("no words of the form key=value after "
                                   f"'{text[:at].strip() or 'the beginning'}'; take the file as it "
                                   "was written, without changes by a mail program or an editor")
            if word[1]:
                self.values[word[1]] = word[2]
            elif not self.noun:
                self.noun = word[3]
            else:
                self.arguments.append(number_of(word[3]) if NUMBER.match(word[3]) else word[3])
            at = word.end() + len(re.match(r"\s*", text[word.end():])[0])
        if not self.noun:
            raise self.mistake("a line begins with its noun; take the file as it was written")

    def mistake(self, what):
        return Mistake(f"{self.file}:{self.number}: {what}")

    def number_at(self, place):
        """The number behind the noun, or under a key; 0 where there is none."""
        if isinstance(place, int):
            found = self.arguments[place] if place < len(self.arguments) else None
        else:
            found = number_of(self.values.get(place, ""))
        return found if isinstance(found, int) else 0


class Report:
    """The lines, and how the windows lie in one another.

    Texts are kept byte by byte, one character each: so they are quoted, whatever the code page is.
    """

    def __init__(self, file, lines):
        self.file, self.lines = file, lines
        self.windows, self.children, self.nouns = {}, {}, {}
        for line in lines:
            self.nouns.setdefault(line.noun, []).append(line)
        for line in self.of_noun("window"):
            self.add_window(line)
        for line in lines:
            self.check_window(line)

    def add_window(self, line):
        number, parent = line.number_at(0), line.number_at("parent")
        if number <= 0 or number in self.windows:
            raise line.mistake("each window has a number of its own; have the report made again")
        if parent and parent not in self.windows:
            raise line.mistake(f"there is no window {parent} above, to lie in; have the report made "
                               "again")
        self.windows[number] = line
        self.children.setdefault(parent, []).append(line)

    def check_window(self, line):
        meant = {"viewport": line.number_at(0), "button": line.number_at("window")}.get(line.noun)
        if meant and meant not in self.windows:
            raise line.mistake(f"there is no line of window {meant}; have the report made again")

    def of_noun(self, noun):
        return self.nouns.get(noun, [])

    def window_of(self, line):
        """The line of the window that a line is about; None: it is about none."""
        if line.noun == "window":
            return line
        if line.noun == "viewport":
            return self.windows.get(line.number_at(0))
        return self.windows.get(line.number_at("window"))

    def in_code_page(self, text):
        """The text as a person reads it."""
        page = next((line.number_at("codepage") for line in self.of_noun("language")), 0)
        try:
            return text.encode("latin-1").decode(f"cp{page}", errors="replace")
        except LookupError:
            return text

    def parent_of(self, window):
        return self.windows.get(window.number_at("parent"))

    def around(self, window):
        """The windows that it lies in, from the innermost."""
        parent = self.parent_of(window)
        while parent:
            yield parent
            parent = self.parent_of(parent)

    def within(self, window):
        """All windows in it, whether or not there are others between."""
        for child in self.children.get(window.number_at(0), ()):
            yield child
            yield from self.within(child)


def read_text(file, text):
    lines = text.replace("\r\n", "\n").rstrip("\n").split("\n")
    if lines[0] != FIRST:
        raise Mistake(f"{file}:1: not the first line of a report, '{FIRST}'; give a KarvelReport.txt, "
                      "and for another number the tools of the version that wrote it")
    if lines[-1] != LAST:
        raise Mistake(f"{file}:{len(lines)}: the report ends here, without its last line, '{LAST}': it "
                      "was cut short; have it made or sent again")
    return Report(file, [Line(file, number, line) for number, line in enumerate(lines[:-1], 1)
                         if number > 1 and line.strip() and not line.startswith("#")])


def read_report(file):
    try:
        with open(file, "rb") as opened:
            data = opened.read()
    except OSError as error:
        raise Mistake(f"{file}: {error.strerror}; name a KarvelReport.txt") from error
    return read_text(file, data.decode("latin-1"))
