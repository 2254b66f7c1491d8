"""Small changes of C++ sources, one at a time: which there are, and what each makes of its file.

A change is found among the tokens of a source, without a parser; one that makes no sense does not
compile and is left out later. How the sources are formatted tells the rest: a binary operator has a
blank on each side, a template's bracket and a pointer's star have not.
"""

import dataclasses
import hashlib
import re

TOKEN = re.compile(
    r"""(?P<space>\s+)
    |(?P<comment>//[^\n]*|/\*.*?\*/)
    |(?P<directive>(?m:^[ \t]*)\#(?:\\\n|[^\n])*)
    |(?P<string>"(?:\\.|[^"\\\n])*")
    |(?P<letter>'(?:\\.|[^'\\\n])*')
    |(?P<number>(?:0[xX][0-9A-Fa-f]+|\d+)[uUlL]*)
    |(?P<name>[A-Za-z_]\w*)
    |(?P<sign><<=|>>=|<=>|->\*|\.\.\.|::|->|\+\+|--|<<|>>|<=|>=|==|!=|&&|\|\||\+=|-=|\*=|/=|\|=|&=|.)
    """, re.X | re.S)

KEYWORDS = frozenset(
    "return if else for while do switch case default break continue new delete using namespace "
    "class struct enum public private protected constexpr const static inline extern explicit "
    "template typename typedef virtual friend operator auto goto sizeof".split())
TYPE_WORDS = frozenset("int bool char void long unsigned float double HWND auto const".split())

COMPARISONS = {
    "==": ["!="], "!=": ["=="],
    "<": ["<=", ">="], "<=": ["<", ">"], ">": [">=", "<="], ">=": [">", "<"],
}
ARITHMETIC = {"+": "-", "-": "+", "*": "/", "/": "*", "&": "|"}
ASSIGNMENTS = frozenset(["=", "+=", "-=", "|=", "&="])

# Names that can stand for each other: each is exchanged with the one after it.
FAMILIES = [
    ["WM_LBUTTONDOWN", "WM_RBUTTONDOWN", "WM_MBUTTONDOWN"],
    ["WM_LBUTTONUP", "WM_RBUTTONUP", "WM_MBUTTONUP"],
    ["WM_MOUSEMOVE", "WM_LBUTTONDBLCLK"],
    ["WM_KEYDOWN", "WM_KEYUP"],
    ["WM_COMMAND", "WM_NOTIFY", "WM_INITDIALOG", "WM_DESTROY", "WM_CLOSE"],
    ["VK_CONTROL", "VK_SHIFT", "VK_MENU"],
    ["VK_LBUTTON", "VK_RBUTTON", "VK_MBUTTON"],
    ["VK_DOWN", "VK_UP", "VK_LEFT", "VK_RIGHT"],
    ["VK_LSHIFT", "VK_RSHIFT"],
    ["MK_LBUTTON", "MK_RBUTTON", "MK_MBUTTON", "MK_CONTROL", "MK_SHIFT"],
    ["MOUSEEVENTF_LEFTDOWN", "MOUSEEVENTF_LEFTUP", "MOUSEEVENTF_MIDDLEDOWN",
     "MOUSEEVENTF_MIDDLEUP"],
    ["INPUT_KEYBOARD", "INPUT_MOUSE"],
    ["PSN_APPLY", "PSN_RESET", "PSN_KILLACTIVE"],
    ["BST_CHECKED", "BST_UNCHECKED"],
    ["TRUE", "FALSE"],
    ["SM_CXVIRTUALSCREEN", "SM_CYVIRTUALSCREEN"],
    ["WH_KEYBOARD", "WH_MOUSE"],
    ["ICON_SMALL", "ICON_BIG"],
    ["HTMENU", "HTCAPTION"],
    ["g_orbitActive", "g_zoomActive", "g_panActive", "g_navLocked"],
    ["g_selCtrl", "g_selShift", "g_selCtrlShift"],
    ["g_graphiteSculptTool", "g_graphitePdTool"],
]
MEMBERS = [["x", "y"], ["left", "top"], ["right", "bottom"], ["client", "screen"]]
# What an argument is when it says nothing: to leave it out changes nothing.
NOTHING = frozenset(["0", "nullptr", "{}", "false", "FALSE", '""', "NULL"])
# A call that somebody may see: one that does more than turn a value into another form.
CALL = re.compile(r"\b(?!(?:if|for|while|sizeof|MAKE\w+|To\w*Point)\b)\w+\(")
MEMBER_TYPES = {"window": "HWND", "client": "POINT", "screen": "POINT", "message": "UINT"}
NUMBER_TYPE = re.compile(
    r"int|unsigned|bool|BOOL|UINT|WORD|DWORD|LONG|WPARAM|LPARAM|INT_PTR|LONG_PTR|WindowKind")
JUMPS = frozenset(["return", "break", "continue", "goto"])


@dataclasses.dataclass
class Token:
    kind: str
    text: str
    start: int
    end: int


@dataclasses.dataclass(frozen=True)
class Mutant:
    file: str       # relative to the repository
    start: int      # the characters of the file that are replaced
    end: int
    text: str       # by what
    operator: str
    line: int
    before: str     # the lines concerned, blanks made single
    after: str
    number: int     # which of several equal pairs of lines in this file, from 1

    @property
    def name(self):
        number = f"#{self.number}" if self.number > 1 else ""
        return f"{self.file}{number}: {self.before}  =>  {self.after}"

    def apply(self, source):
        return source[:self.start] + self.text + source[self.end:]

    def rank(self, seed):
        return hashlib.sha256(f"{seed} {self.operator} {self.name}".encode()).hexdigest()


def tokens_of(source):
    """Without blanks, comments and directives."""
    found = []
    for match in TOKEN.finditer(source):
        kind = match.lastgroup
        if kind not in ("space", "comment", "directive"):
            found.append(Token(kind, match.group(), match.start(), match.end()))
    return found


def pairs_of(tokens):
    """Index of the other bracket for each bracket: (), {}, []."""
    pairs, open_ones = {}, []
    closing = {")": "(", "}": "{", "]": "["}
    for index, token in enumerate(tokens):
        if token.text in ("(", "{", "["):
            open_ones.append(index)
        elif token.text in closing:
            if not open_ones or tokens[open_ones[-1]].text != closing[token.text]:
                raise ValueError(f"the bracket at {token.start} closes nothing")
            pairs[index] = open_ones.pop()
            pairs[pairs[index]] = index
    return pairs


def enumerations_of(source):
    """The lists of names in the enumerations of a source, and its lists of like constants."""
    found = []
    bare = re.sub(r"//[^\n]*", "", source)
    for scope, body in re.findall(r"\benum (class \w+|\w+)[^;{]*\{([^}]*)\}", bare):
        names = re.findall(r"(\w+)\s*(?:=[^,]*)?(?:,|$)", body.strip())
        # The names of an enumeration class are used with its own before them.
        prefix = scope[6:] + "::" if scope.startswith("class ") else ""
        found.append([prefix + name for name in names])
    for block in re.findall(r"(?:^inline constexpr (?:int|unsigned long) k\w+ = \w+;.*\n){2,}",
                            source, re.M):
        found.append(re.findall(r"(k\w+) =", block))
    for body in re.findall(r"struct PluginSettings \{([^}]*)\}", bare):
        found.append(re.findall(r"int (\w+) = 0;", body))
    return [names for names in found if len(names) > 1]


def resource_families(source):
    """Identifiers of resources, those with one beginning together."""
    groups = {}
    for name in re.findall(r"#define (ID\w+) ", source):
        parts = name.split("_")
        groups.setdefault("_".join(parts[:2]) if "CURSOR" in name else parts[0], []).append(name)
    return [names for names in groups.values() if len(names) > 1]


def neighbours_of(families):
    result = {}
    for names in families:
        for name, neighbour in zip(names, names[1:] + names[:1]):
            result.setdefault(name, neighbour)
    return result


class Finder:
    """All changes of one source."""

    def __init__(self, file, source, neighbours):
        self.file = file
        self.source = source
        self.neighbours = neighbours
        self.tokens = tokens_of(source)
        self.pairs = pairs_of(self.tokens)
        self.found = []

    def text(self, index):
        return self.tokens[index].text if 0 <= index < len(self.tokens) else ""

    def kind(self, index):
        return self.tokens[index].kind if 0 <= index < len(self.tokens) else ""

    def replace(self, first, last, text, operator):
        """Tokens first to last become the text."""
        self.found.append((self.tokens[first].start, self.tokens[last].end, text, operator))

    def is_spaced(self, index):
        """A binary operator, as far as its blanks tell."""
        token = self.tokens[index]
        before = self.source[token.start - 1:token.start]
        after = self.source[token.end:token.end + 1]
        return before.isspace() and after.isspace() and self.text(index - 1) not in ("(", ",", "")

    def statement_end(self, index):
        """The semicolon that ends what begins here; None where a block or bracket comes first."""
        while index < len(self.tokens):
            text = self.text(index)
            if text == ";":
                return index
            if text in ("(", "[", "{"):
                index = self.pairs[index]
            elif text in (")", "]", "}"):
                return None
            index += 1
        return None

    def begins_statement(self, index):
        before = self.text(index - 1)
        if before in (";", "{", "}", "else", ":"):
            return True
        return before == ")" and self.text(self.pairs[index - 1] - 1) in ("if", "for", "while")

    def closes_function(self, index):
        """Whether this brace ends the body of a function."""
        if self.text(index) != "}":
            return False
        before = self.pairs[index] - 1
        while self.text(before) in ("const", "override", "noexcept"):
            before -= 1
        if self.text(before) != ")":
            return False
        return self.text(self.pairs[before] - 1) not in ("if", "for", "while", "switch")

    def find(self):
        for index, token in enumerate(self.tokens):
            if token.kind == "sign":
                self.at_sign(index, token)
            elif token.kind == "number":
                self.at_number(index, token)
            elif token.kind == "string":
                self.at_string(index, token)
            elif token.kind == "name":
                self.at_name(index, token)
        # After the others, whose numbers stay as they are.
        for index, token in enumerate(self.tokens):
            if token.kind == "number":
                self.drop_bit(index, token)
            elif token.text == "(":
                self.at_arguments(index)
            elif token.text == "{":
                self.exchange_statements(index)
        return self.mutants()

    def at_sign(self, index, token):
        sign = token.text
        if sign in COMPARISONS and self.is_spaced(index) and self.text(index - 1) != "operator":
            for other in COMPARISONS[sign]:
                self.replace(index, index, other, "comparison")
        elif sign in ("&&", "||") and self.is_spaced(index):
            self.replace(index, index, "||" if sign == "&&" else "&&", "junction")
        elif sign == "!":
            self.replace(index, index, "", "negation")
        elif sign == "~" and self.text(index - 1) in ("&=", "&", "="):
            self.replace(index, index, "", "complement")
        elif sign in ("++", "--") and self.text(index + 1) not in (")", ";", ""):
            self.replace(index, index, "--" if sign == "++" else "++", "step")
        elif sign == "|":
            self.at_flag(index)
        elif sign in ARITHMETIC and self.is_spaced(index) and self.kind(index + 1) != "":
            self.replace(index, index, ARITHMETIC[sign], "arithmetic")
        elif sign in ("+=", "-="):
            self.replace(index, index, "-=" if sign == "+=" else "+=", "arithmetic")
        elif sign in ("|=", "&="):
            self.replace(index, index, "=", "assignment")
        elif sign == "?":
            self.negate_choice(index)

    def at_flag(self, index):
        """a | b: one of them is left out."""
        if self.kind(index - 1) in ("name", "number") and self.text(index - 2) != "::":
            self.replace(index - 1, index, "", "flag")
        if self.kind(index + 1) in ("name", "number") and self.text(index + 2) not in ("::", "("):
            self.replace(index, index + 1, "", "flag")

    def negate_choice(self, index):
        begin = index - 1
        while begin >= 0:
            text = self.text(begin)
            if text in (")", "]", "}"):
                begin = self.pairs[begin]
            elif text in ("=", "(", ",", "return", ";", "{", "[", "}"):
                break
            begin -= 1
        first = begin + 1
        condition = self.source[self.tokens[first].start:self.tokens[index - 1].end]
        self.replace(first, index - 1, f"!({condition})", "condition")

    def at_number(self, index, token):
        digits = token.text.rstrip("uUlL")
        suffix = token.text[len(digits):]
        value = int(digits, 0)
        form = "0x{:X}" if digits[:2].lower() == "0x" else "{}"
        if value != 0:
            self.replace(index, index, "0" + suffix, "constant")
        # A flag or an answer is 0 or is not: 2 says the same as 1.
        if value != 1 or self.text(index - 1) not in ("=", "return"):
            self.replace(index, index, form.format(value + 1) + suffix, "constant")

    def drop_bit(self, index, token):
        """A constant made of several flags loses one; one flag alone would be 0."""
        value = int(token.text.rstrip("uUlL"), 0)
        if token.text[:2].lower() == "0x" and value & (value - 1):
            self.replace(index, index, f"0x{value & (value - 1):X}", "flag")

    def at_string(self, index, token):
        if self.text(index - 1) == "extern":
            return
        content = token.text[1:-1]
        places = [match.start() for match in re.finditer(r"(?<!\\)[A-Za-z0-9](?!\")", content)]
        places = [at for at in places if content[max(at - 1, 0)] not in "\\%"]
        if not places:
            self.replace(index, index, '"' + content + 'x"', "text")
            return
        at = places[len(places) // 2]
        letter = content[at]
        other = {"z": "a", "Z": "A", "9": "0"}.get(letter, chr(ord(letter) + 1))
        self.replace(index, index, f'"{content[:at]}{other}{content[at + 1:]}"', "text")

    def at_name(self, index, token):
        name = token.text
        if name in ("true", "false"):
            self.replace(index, index, "false" if name == "true" else "true", "truth")
            return
        if name in ("if", "while") and self.text(index + 1) == "(":
            self.negate_condition(index + 1)
        elif name == "return":
            self.at_return(index)
        elif name not in KEYWORDS and self.begins_statement(index):
            self.at_statement(index)
        self.exchange(index, name)

    def exchange(self, index, name):
        first = index
        if self.text(index - 1) == "::" and f"{self.text(index - 2)}::{name}" in self.neighbours:
            first = index - 2
            name = f"{self.text(first)}::{name}"
        neighbour = self.neighbours.get(name)
        if neighbour and not self.is_declared(index):
            self.replace(first, index, neighbour, "neighbour")
        if self.text(index - 1) in (".", "->"):
            for names in MEMBERS:
                if name in names:
                    self.replace(index, index, names[1 - names.index(name)], "neighbour")

    def is_declared(self, index):
        """A name where it is given its meaning, which can not be another's."""
        if self.kind(index - 1) == "name" and self.text(index - 1) not in KEYWORDS:
            return True
        before = index - 1
        while before >= 0 and self.text(before) not in ("{", "}", ";", "(", ")"):
            before -= 1
        if self.text(before) != "{":
            return False
        opener = before - 1
        while opener >= 0 and self.text(opener) not in (";", "}", "{", ")"):
            if self.text(opener) == "enum":
                return self.text(index - 1) in ("{", ",")
            opener -= 1
        return False

    def negate_condition(self, index):
        end = self.pairs[index]
        inside = self.tokens[index + 1:end]
        if any(token.text in (";", "=") for token in inside):
            return
        condition = self.source[inside[0].start:inside[-1].end]
        self.replace(index + 1, end - 1, f"!({condition})", "condition")

    def at_return(self, index):
        end = self.statement_end(index)
        if end is None:
            return
        if not self.closes_function(end + 1):
            self.replace(index, end, ";", "return removed")
        elif end == index + 1:
            return
        inside = self.tokens[index + 1:end]
        if not inside or (len(inside) == 1 and inside[0].kind == "number") or \
                inside[0].text in ("true", "false", "{"):
            return
        value = self.source[inside[0].start:inside[-1].end]
        self.replace(index + 1, end - 1, "{}", "return value")
        if value not in ("TRUE", "FALSE", "nullptr"):
            self.replace(index + 1, end - 1, f"!({value})", "return value")

    def at_statement(self, index):
        """A call or an assignment that stands for itself is left out."""
        end = self.statement_end(index)
        if end is None:
            return
        at, was_name = index, False
        while at < end:
            text, kind = self.text(at), self.kind(at)
            if kind == "name":
                if was_name or text in TYPE_WORDS:
                    return
                was_name = True
            elif text in ("::", ".", "->", ".*", "*"):
                was_name = False
                if text == "*" and self.source[self.tokens[at].end].isspace():
                    return
            elif text == "[":
                at = self.pairs[at]
            elif text == "(":
                if self.pairs[at] + 1 == end:
                    self.replace(index, end, ";", "call removed")
                    return
                at = self.pairs[at]
            elif text in ASSIGNMENTS:
                self.replace(index, end, ";", "assignment removed")
                return
            else:
                return
            at += 1

    def text_of(self, first, last):
        return self.source[self.tokens[first].start:self.tokens[last].end]

    def parts(self, begin, end, separator):
        """(first, last) token of each part between two tokens, split where nothing is open."""
        found, first, index = [], begin, begin
        while index < end:
            text = self.text(index)
            if text in ("(", "[", "{"):
                index = self.pairs[index]
            elif text == separator:
                found.append((first, index - 1))
                first = index + 1
            index += 1
        found.append((first, end - 1))
        return [(first, last) for first, last in found if first <= last]

    def at_arguments(self, index):
        """The arguments of a call: each replaced by nothing at all or by a like one, and each
        exchanged with the next."""
        called = self.text(index - 1)
        if self.kind(index - 1) != "name" or called in KEYWORDS or self.is_declaration(index):
            return
        arguments = self.parts(index + 1, self.pairs[index], ",")
        texts = [self.text_of(first, last) for first, last in arguments]
        types = self.types_in_reach(index)
        for at, (first, last) in enumerate(arguments):
            # What is one number, flag or text has changes of its own. Macros take no braces.
            alone = first == last
            if texts[at] not in NOTHING and not called.isupper() and \
                    not (alone and self.kind(first) in ("number", "string", "letter")):
                self.replace(first, last, "{}", "argument")
            if alone and texts[at] in types:
                like = [name for name, of_type in types.items()
                        if of_type == types[texts[at]] and name != texts[at]]
                for other in like[:2]:
                    self.replace(first, last, other, "argument")
            if at + 1 == len(arguments) or texts[at] == texts[at + 1]:
                continue
            next_first, next_last = arguments[at + 1]
            if self.may_stand_for(self.type_of(first, last, types),
                                  self.type_of(next_first, next_last, types)):
                between = self.source[self.tokens[last].end:self.tokens[next_first].start]
                self.replace(first, next_last, texts[at + 1] + between + texts[at],
                             "arguments exchanged")

    def type_of(self, first, last, types):
        """What an argument is, as far as its words tell; None where they do not."""
        if first == last and self.kind(first) == "string":
            return "text"
        if first == last and self.text(first) in types:
            return types[self.text(first)]
        if first == last and self.text(first) == "nullptr":
            return "null"
        if self.kind(last) == "name" and self.text(last - 1) == "." and \
                self.text(last) in MEMBER_TYPES:
            return MEMBER_TYPES[self.text(last)]
        words = self.tokens[first:last + 1]
        if all(word.kind == "number" or word.text == "|" or word.text in ("true", "false") or
               (word.kind == "name" and word.text.isupper()) for word in words):
            return "int"
        return None

    @staticmethod
    def may_stand_for(one, other):
        """Whether both may be arguments of the same type."""
        if one is None or other is None:
            return True
        if "null" in (one, other):
            return not NUMBER_TYPE.fullmatch(other if one == "null" else one)
        return one == other or bool(NUMBER_TYPE.fullmatch(one) and NUMBER_TYPE.fullmatch(other))

    def is_declaration(self, index):
        """Whether this bracket holds parameters, or the value of a variable."""
        if self.text(self.pairs[index] + 1) in ("{", ":", "const", "override", "noexcept"):
            return True
        before = index - 2
        while self.text(before) in ("::", ".", "->"):
            before -= 2
        if self.kind(before) == "name":
            return self.text(before) not in ("return", "else", "case", "new")
        # A type's star, bracket or tilde touches it or the name.
        return self.text(before) in ("*", "&", ">", "~") and not self.is_spaced(before)

    def types_in_reach(self, index):
        """The parameters and variables that the function has before this, with their types."""
        body = self.body_around(index)
        if body is None:
            return {}
        close = body - 1
        while self.text(close) != ")":
            close -= 1
        inside = self.source[self.tokens[body].end:self.tokens[index].start]
        declared = re.findall(r"^\s*((?:const )?[A-Za-z_][\w:]*(?: [A-Za-z_]\w*)?[ *&]+)(\w+)(?: =|;)",
                              inside, re.M)
        for first, last in self.parts(self.pairs[close] + 1, close, ","):
            if last > first:
                declared.append((self.text_of(first, last - 1), self.text(last)))
        return {name: re.sub(r"const |[ &]", "", of_type) for of_type, name in declared
                if of_type.split()[0] not in JUMPS}

    def is_body(self, index):
        """Whether this brace begins the body of a function."""
        return self.closes_function(self.pairs[index])

    def body_around(self, index):
        at = index
        while at >= 0:
            if self.text(at) in ("}", ")", "]") and at != index:
                at = self.pairs[at]
            elif self.text(at) == "{" and self.is_body(at):
                return at
            at -= 1
        return None

    def exchange_statements(self, index):
        """Two statements of a block that follow each other change places."""
        earlier = None
        at, end = index + 1, self.pairs[index]
        while at < end:
            last = self.last_of_statement(at, end)
            if last is None:
                return
            unit = (at, last) if self.is_movable(at, last) else None
            if earlier and unit and self.makes_a_difference(earlier, unit):
                between = self.source[self.tokens[earlier[1]].end:self.tokens[at].start]
                self.replace(earlier[0], last, self.text_of(*unit) + between +
                             self.text_of(*earlier), "statements exchanged")
            earlier = unit
            at = last + 1

    def last_of_statement(self, at, end):
        """The last token of the statement that begins here."""
        if self.text(at) == "{":
            return self.pairs[at]
        if self.text(at) in ("if", "for", "while"):
            if self.text(at + 1) != "(":
                return None
            last = self.last_of_statement(self.pairs[at + 1] + 1, end)
            if last is not None and self.text(last + 1) == "else":
                return self.last_of_statement(last + 2, end)
            return last
        while at < end:
            text = self.text(at)
            if text == ";":
                return at
            if text in ("(", "[", "{"):
                at = self.pairs[at]
            elif text in (":", "case", "default", "enum", "struct", "class"):
                return None
            at += 1
        return None

    def is_movable(self, at, last):
        """A call, an assignment, or a condition before one; no declaration."""
        if self.text(at) == "if":
            return True
        if self.kind(at) != "name" or self.text(at) in KEYWORDS:
            return self.text(at) in ("++", "--", "*")
        was_name = False
        while at < last:
            if self.kind(at) == "name":
                if was_name or self.text(at) in TYPE_WORDS:
                    return False
                was_name = True
            elif self.text(at) in ("::", ".", "->"):
                was_name = False
            elif self.text(at) == "*" and not self.source[self.tokens[at].start - 1].isspace():
                return False
            else:
                return self.text(at) in ("(", "[") or self.text(at) in ASSIGNMENTS
            at += 1
        return False

    def makes_a_difference(self, first, second):
        """Nobody sees the order of two statements without a call unless one of them uses what the
        other one sets."""
        texts = [self.text_of(*unit) for unit in (first, second)]
        if texts[0] == texts[1]:
            return False
        if any(CALL.search(text) for text in texts):
            return True
        return any(re.search(rf"\b{name}\b", other)
                   for text, other in zip(texts, texts[::-1])
                   for name in re.findall(r"(\w+) (?:[-+|&]?=) ", text))

    def mutants(self):
        seen, counts, result = set(), {}, []
        for start, end, text, operator in self.found:
            if (start, end, text) in seen:
                continue
            seen.add((start, end, text))
            first = self.source.rfind("\n", 0, start) + 1
            last = self.source.find("\n", end)
            last = len(self.source) if last < 0 else last
            before = " ".join(self.source[first:last].split())
            after = " ".join((self.source[first:start] + text + self.source[end:last]).split())
            # Two places of one line may give the same text after all.
            counts[(before, after)] = counts.get((before, after), 0) + 1
            result.append(Mutant(self.file, start, end, text, operator,
                                 self.source.count("\n", 0, start) + 1, before, after,
                                 counts[(before, after)]))
        return result


def given_name(head):
    """The name that a declaration gives to something, by the tokens before its value or body."""
    words = [token.text for token in head]
    for keyword in ("class", "struct"):
        if keyword in words[:-1]:
            return words[words.index(keyword) + 1]
    last = ""
    for token in head:
        if token.text in ("(", "=", "[", ":"):
            break
        if token.kind == "name":
            last = token.text
    return last


def declarations_of(source):
    """(start, end, name) of each declaration that is not inside another one, and of each constant
    of an enumeration."""
    tokens = tokens_of(source)
    pairs = pairs_of(tokens)
    found, index, begin = [], 0, 0
    while index < len(tokens):
        text = tokens[index].text
        head = tokens[begin:index]
        if text == "{":
            words = [token.text for token in head]
            end = pairs[index]
            if "namespace" in words or words[:1] == ["extern"]:
                begin = index + 1
                end = index
            elif "enum" in words:
                first = index + 1
                for at in range(index + 1, end + 1):
                    if tokens[at].text in (",", "}") and at > first:
                        found.append((tokens[first].start, tokens[at - 1].end, tokens[first].text))
                        first = at + 1
                begin = end + 1
            elif "=" not in words:
                found.append((head[0].start, tokens[end].end, given_name(head)))
                begin = end + 1
            index = end
        elif text in ("(", "["):
            index = pairs[index]
        elif text in (";", "}"):
            if head:
                found.append((head[0].start, tokens[index].end, given_name(head)))
            begin = index + 1
        index += 1
    return found


def mutants_of(file, source, families=()):
    """All changes of a source. `families` come on top of those that the sources share."""
    return Finder(file, source, neighbours_of([*families, *FAMILIES])).find()


def chosen_order(mutants, seed):
    """A file's mutants in the order in which they are taken: by chance, and so that each kind of
    change has its turn. A change elsewhere in the file moves none of the others."""
    kinds = {}
    for mutant in mutants:
        kinds.setdefault(mutant.operator, []).append(mutant)
    turns = []
    for of_kind in kinds.values():
        of_kind.sort(key=lambda mutant: mutant.rank(seed))
        turns += enumerate(of_kind)
    turns.sort(key=lambda turn: (turn[0], turn[1].rank(seed)))
    return [mutant for _, mutant in turns]
