#!/usr/bin/python3
"""Compares the declarations under sdk/ and a built plug-in with what the host expects.

usage: check_abi.py [PLUGIN.gup --map FILE] [OPTION...]

Without a plug-in only the declarations are compared: slots, sizes and offsets, and how each class
that is handed over by value travels, as clang lays them out and passes them under the Microsoft
rules. With a plug-in also what it exports and imports, its system version
and sections, its run-time type information, and, slot by slot, the tables of its classes that
derive from classes of the host. Prints a table of what was compared and one line a difference on
standard error. Exit status: 0 all agrees, 1 there are differences, 2 something cannot be read.

options: --generation NAME   the host's, a column of the tables under sdk/ (2012)
         --declarations DIR  the SDK headers (those made from the tables)
         --table FILE        what the host expects (the one made from them)
         --imports DIR       the lists of names that may be imported (those made from them)
         --classes NAME...   the classes of the host that the plug-in derives from (all of the table)
         --quiet             print the differences and the count only
"""

import argparse
import pathlib
import re
import struct
import subprocess
import sys
import tempfile

import pefile

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parent))
sys.path.insert(0, str(pathlib.Path(__file__).resolve().parents[1] / "building"))
import make_sdk  # noqa: E402  (in tools/building)
import system_headers  # noqa: E402  (beside this file)

ROOT = pathlib.Path(__file__).resolve().parents[2]
CLANG = "clang++-19"
EXPORTS = ["CanAutoDefer", "LibClassDesc", "LibDescription", "LibNumberClasses", "LibVersion"]
SYSTEM_DLLS = ["KERNEL32.dll", "USER32.dll", "GDI32.dll", "SHELL32.dll", "COMCTL32.dll",
               "ADVAPI32.dll", "msvcrt.dll"]
NEWEST_SYSTEM = (6, 1)  # Windows 7, the oldest system that the host runs on
# Types of arguments and results that are no classes: they travel in a register as they are.
SCALARS = ["ActionContextId", "ActionTableId", "BOOL", "BlockID", "COLORREF", "DWORD", "DWORD_PTR",
           "FPStatus", "FunctionID", "HACCEL", "HDC", "HINSTANCE", "HWND", "INT_PTR", "IOResult",
           "LifetimeType", "MAXScript::ScriptSource", "MenuContextId",
           "NotifyDependentsOption", "PartID", "RefMessage", "RefResult", "RefTargetHandle",
           "SClass_ID", "TimeValue", "ULONG", "ULONG_PTR", "bool", "int", "short", "void"]
SECTIONS = [".text", ".rdata", ".data", ".pdata", ".rsrc", ".reloc"]


class Unreadable(Exception):
    """A file or tool that the comparison needs is missing or is not what it should be."""


class Report:
    """Rows of the printed table, and the differences."""

    def __init__(self):
        self.rows = []
        self.differences = []

    def compare(self, subject, what, expected, found, same=None):
        agrees = expected == found if same is None else same
        self.rows.append((subject, what, str(expected), str(found), agrees))
        if not agrees:
            self.differences.append(f"{subject}: {what}: expected {expected}, found {found}")

    def print(self, quiet):
        if not quiet:
            head = ("subject", "what", "expected", "found")
            widths = [min(44, max(len(row[i]) for row in self.rows + [head])) for i in range(4)]
            line = "  ".join("{:%d}" % width for width in widths)
            print(line.format(*head) + "  same")
            for row in self.rows:
                print(line.format(*row[:4]) + ("  yes" if row[4] else "  NO"))
        print(f"{len(self.rows)} compared, {len(self.differences)} differences")
        for difference in self.differences:
            print(f"check_abi: {difference}", file=sys.stderr)


# ---- what the host expects -----------------------------------------------------------------------


class Member:
    def __init__(self, slot, signature, origin):
        self.slot = slot
        self.signature = signature
        self.origin = origin  # None, "imported", "inline" or "own"


class Expectations:
    """A table of lines:
      class NAME SLOTS BASE < ... < NAME      the function table of a class
        SLOT SIGNATURE                        a member that is called at this slot
        SLOT SIGNATURE | imported|inline|own  one of a class that the plug-in derives from: taken from
                                              the host by name, written anew in sdk/, overridden
      slots NAME COUNT                        the length of a table none of whose members is called
      size NAME BYTES
      field NAME MEMBER OFFSET
      base NAME BASE OFFSET                   or `somewhere`, when nobody needs the place
      travels NAME HOW result HOW             a class by value, as an argument and as the result of a
                                              member: register, or address
    """

    def __init__(self, path):
        self.classes = {}  # name -> (count, bases, [Member])
        self.slot_counts = {}
        self.sizes = {}
        self.fields = []
        self.bases = []
        self.travels = {}  # class -> (how an argument travels, how a result does)
        current = None
        for number, line in enumerate(read_text(path).splitlines(), 1):
            text = line.split("#")[0].rstrip()
            words = text.split()
            try:
                if not words:
                    continue
                if text.startswith("  "):
                    signature, _, origin = text.strip().partition(" | ")
                    slot, signature = signature.split(" ", 1)
                    current.append(Member(int(slot), signature, origin or None))
                elif words[0] == "class":
                    current = []
                    bases = [base for base in words[3:] if base != "<"]
                    self.classes[words[1]] = (int(words[2]), bases, current)
                elif words[0] == "slots":
                    self.slot_counts[words[1]] = int(words[2])
                elif words[0] == "size":
                    self.sizes[words[1]] = int(words[2])
                elif words[0] == "field":
                    self.fields.append((words[1], words[2], int(words[3])))
                elif words[0] == "base":
                    offset = None if words[3] == "somewhere" else int(words[3])
                    self.bases.append((words[1], words[2], offset))
                elif words[0] == "travels":
                    if not {words[2], words[4]} <= {"address", "register"}:
                        raise ValueError
                    self.travels[words[1]] = (words[2], words[4])
                else:
                    raise ValueError
            except (ValueError, IndexError, AttributeError):
                raise Unreadable(f"{path}:{number}: not a line of the layout table: '{text}'")


def read_text(path):
    try:
        return pathlib.Path(path).read_text(encoding="utf-8")
    except OSError as error:
        raise Unreadable(f"{path}: cannot be read: {error.strerror}")


def read_import_lists(directory):
    """DLL name -> names that may be imported from it."""
    lists = {}
    for path in sorted(pathlib.Path(directory).glob("*.def")):
        names = set()
        dll = None
        for line in read_text(path).splitlines():
            words = line.split(";")[0].split()
            if words[:1] == ["LIBRARY"]:
                dll = words[1]
            elif words and words != ["EXPORTS"]:
                names.add(words[0])
        if dll is None:
            raise Unreadable(f"{path}: has no LIBRARY line")
        lists[dll] = names
    if not lists:
        raise Unreadable(f"{directory}: has no import lists")
    return lists


# ---- the declarations, as the compiler lays them out ---------------------------------------------


def compiler_flags(generation, declarations=None):
    """How a file for this generation is compiled, with these declarations in place of its own."""
    headers = subprocess.run(["x86_64-w64-mingw32-g++-posix", "-print-file-name=include/c++"],
                             capture_output=True, text=True, check=True).stdout.strip()
    return ["--target=x86_64-pc-windows-msvc", "-fgnuc-version=12.2.0", "-std=c++20",
            "-D__declspec=__declspec", "-D__STRICT_ANSI__", "-nostdinc++", "-isystem", headers,
            "-isystem", f"{headers}/x86_64-w64-mingw32",
            "-isystem", "/usr/x86_64-w64-mingw32/include",
            "-fno-exceptions", "-fno-threadsafe-statics",
            *(["-DUNICODE", "-D_UNICODE"] if make_sdk.Generation(make_sdk.SDK, generation).wide else []),
            *([] if declarations is None else ["-isystem", str(declarations)])]


def compile_probe(generation, declarations, classes=()):
    """What the compiler tells about tables and records, one after the other, and its code for a
    function that takes and one that is given each of the classes."""
    probe = ROOT / "tests" / "abi" / "layout_probe.cpp"
    with tempfile.TemporaryDirectory() as directory:
        source = pathlib.Path(directory) / "probe.cpp"
        code = pathlib.Path(directory) / "probe.ll"
        lines = [f'#include "{probe}"', "struct Giver {",
                 *[f"    {name} Give_{name}();" for name in classes], "};"]
        for name in classes:
            lines += [f'extern "C" void Take_{name}({name}) {{}}',
                      f'extern "C" void Get_{name}(Giver* giver) {{ giver->Give_{name}(); }}']
        source.write_text("\n".join(lines) + "\n", encoding="utf-8")
        known = system_headers.compiled([CLANG, *compiler_flags(generation), "-O0"])
        command = [CLANG, *compiler_flags(generation, declarations), *known, "-O0", "-S", "-emit-llvm", "-o", str(code),
                   "-Xclang", "-fdump-vtable-layouts", "-Xclang", "-fdump-record-layouts-complete",
                   str(source)]
        try:
            result = subprocess.run(command, capture_output=True, text=True, check=False)
        except OSError as error:
            raise Unreadable(f"{CLANG}: cannot be run: {error.strerror}")
        if result.returncode != 0:
            first = next((line for line in result.stderr.splitlines() if "error" in line),
                         result.stderr.strip())
            raise Unreadable(f"the declarations do not compile: {first}")
        return without_namespaces(result.stdout), read_text(code)


def how_it_travels(code, name):
    """(argument, result) of a class by value, from the compiler's code: an address is a pointer
    there, and so is the place of a result, behind the object."""
    argument = re.search(rf"^define .*@Take_{name}\((\w+)", code, re.MULTILINE)
    result = re.search(rf"call (\w+) @\"\?Give_{name}@[^(]*\(ptr [^,]*, ptr [^,]*sret", code)
    return ("address" if argument and argument[1] == "ptr" else "register",
            "address" if result and result[1] == "void" else "register")


def classes_by_value(signature):
    """Types of the arguments and of the result that are neither pointers nor references nor
    scalars."""
    match = re.match(r"(.*?)(?:\w+::)?~?(?:operator\[\]|\w+)\((.*)\)", plain(signature))
    types = [match[1], *match[2].split(",")]
    types = [re.sub(r"\bconst\b", "", each).strip() for each in types]
    return [each for each in types
            if each and each[-1] not in "*&" and each not in SCALARS and each != "derived"]


def without_namespaces(text):
    """The tables name classes by their last names, which are unique."""
    return re.sub(r"\bMaxSDK::(CUI::)?", "", text)


def plain(signature):
    """A signature without what the compiler adds and without names for char."""
    signature = re.sub(r" \[(pure|deleting)\]", "", signature.strip())
    signature = without_namespaces(signature).replace("MCHAR", "char").replace("wchar_t", "char")
    return re.sub(r"BaseInterface::(?=LifetimeType)", "", signature)


def read_function_tables(output):
    """class -> (list of bases, list of signatures) of its first table; a second base has another."""
    tables = {}
    rows = None
    for line in output.splitlines():
        head = re.match(r"VFTable for (.*) \(\d+ entries\)\.", line)
        row = re.match(r"\s*(\d+) \| (.*)", line)
        if head:
            names = re.findall(r"'(\w+)'", head[1])
            rows = []
            tables.setdefault(names[-1], (names, rows))
        elif line.startswith("VFTable indices"):
            rows = None
        elif row and rows is not None and not row[2].endswith(" RTTI"):
            rows.append(plain(row[2]))
    return tables


def read_records(output):
    """class -> (size, {member: offset}, {base: offset})."""
    records = {}
    for block in output.split("*** Dumping AST Record Layout"):
        lines = block.strip().splitlines()
        head = re.match(r"\s*0 \| (?:class|struct) (\w+)$", lines[0]) if lines else None
        size = re.search(r"\[sizeof=(\d+)", block)
        if not head or not size:
            continue
        members, bases = {}, {}
        for line in lines[1:]:
            row = re.match(r"\s*(\d+) \|(\s+)(.*)", line)
            if not row:
                continue
            base = re.match(r"(?:class|struct) (\w+) \((?:primary )?base\)", row[3])
            if base:
                bases.setdefault(base[1], int(row[1]))
            elif "(" not in row[3]:
                members.setdefault(row[3].split()[-1], int(row[1]))
        records[head[1]] = (int(size[1]), members, bases)
    return records


def compare_declarations(report, expected, generation, declarations):
    output, code = compile_probe(generation, declarations, tuple(expected.travels))
    primary = read_function_tables(output)
    for name, (count, bases, members) in expected.classes.items():
        if name not in primary:
            report.compare(name, "function table", "declared", "missing")
            continue
        chain, signatures = primary[name]
        report.compare(name, "bases", " < ".join(bases), " < ".join(chain))
        report.compare(name, "slots", count, len(signatures))
        for member in members:
            wanted = plain(member.signature)
            found = signatures[member.slot] if member.slot < len(signatures) else "nothing"
            if member.origin == "own":
                # The plug-in's own class names the owner; only the member has to agree.
                same = wanted.startswith("~") and "::~" in found or \
                    wanted == re.sub(r"\b\w+::(?=\w+\()", "", found)
                report.compare(name, f"slot {member.slot}", wanted, found, same)
            else:
                report.compare(name, f"slot {member.slot}", wanted, found)
    for name, count in expected.slot_counts.items():
        found = len(primary[name][1]) if name in primary else "missing"
        report.compare(name, "slots", count, found)

    records = read_records(output)
    nothing = (None, {}, {})
    for name, size in expected.sizes.items():
        report.compare(name, "size", size, records.get(name, nothing)[0])
    for name, member, offset in expected.fields:
        report.compare(name, f"offset of {member}", offset,
                       records.get(name, nothing)[1].get(member))
    for name, base, offset in expected.bases:
        found = records.get(name, nothing)[2].get(base)
        report.compare(name, f"offset of base {base}", "any" if offset is None else offset,
                       found, found is not None if offset is None else found == offset)

    for name, (argument, result) in expected.travels.items():
        found = how_it_travels(code, name)
        report.compare(name, "as an argument", argument, found[0])
        report.compare(name, "as a member's result", result, found[1])
    for name, (_, _, members) in expected.classes.items():
        for member in members:
            for by_value in classes_by_value(member.signature):
                report.compare(name, f"slot {member.slot}: {by_value}", "a line 'travels'",
                               "a line 'travels'" if by_value in expected.travels else "none")


# ---- the built file ------------------------------------------------------------------------------


def read_plugin(path):
    """The file as pefile reads it, with exports and imports."""
    try:
        data = pathlib.Path(path).read_bytes()
        file = pefile.PE(data=data, fast_load=True)
        file.parse_data_directories(
            [pefile.DIRECTORY_ENTRY["IMAGE_DIRECTORY_ENTRY_EXPORT"],
             pefile.DIRECTORY_ENTRY["IMAGE_DIRECTORY_ENTRY_IMPORT"]])
    except OSError as error:
        raise Unreadable(f"{path}: cannot be read: {error.strerror}")
    except pefile.PEFormatError:
        raise Unreadable(f"{path}: is not a Windows file")
    if file.PE_TYPE != pefile.OPTIONAL_HEADER_MAGIC_PE_PLUS:
        raise Unreadable(f"{path}: is not a 64-bit file")
    return data, file


def exports_of(file):
    directory = getattr(file, "DIRECTORY_ENTRY_EXPORT", None)
    return sorted(each.name.decode() for each in directory.symbols if each.name) if directory else []


def imports_of(file):
    """DLL -> the names that are taken from it."""
    imports = {}
    for dll in getattr(file, "DIRECTORY_ENTRY_IMPORT", []):
        imports.setdefault(dll.dll.decode(), []).extend(
            f"#{each.ordinal}" if each.import_by_ordinal else each.name.decode()
            for each in dll.imports)
    return imports


def read_map(path):
    """Address -> names of the symbols there."""
    symbols = {}
    for line in read_text(path).splitlines():
        row = re.match(r" [0-9a-f]{4}:[0-9a-f]{8}\s+(\S+)\s+([0-9a-f]{16})", line)
        if row:
            symbols.setdefault(int(row[2], 16), []).append(row[1])
    if not symbols:
        raise Unreadable(f"{path}: is not a link map of the Microsoft build")
    return symbols


def member_of(symbol):
    """Owner and member of a decorated name: '?Start@Up@@UEAAKXZ' -> ('Up', 'Start')."""
    special = {"?_G": "~", "?_E": "~", "?1": "~", "?A": "operator[]"}
    for prefix, member in special.items():
        if symbol.startswith("?" + prefix):
            return symbol[len(prefix) + 1:].split("@")[0], member
    parts = symbol.lstrip("?").split("@")
    return (parts[1] if len(parts) > 1 else ""), parts[0]


def member_name(signature):
    name = re.match(r"(?:.*?[ *&])?(?:(\w+)::)?(operator\[\]|~?\w+)\(", signature)
    return name[1], "~" if name[2].startswith("~") else name[2]


def type_information(file, table):
    """(decorated name, decorated names of all bases) that lead from a function table's address, or
    None where they are damaged."""
    def words(address, count):
        return struct.unpack(f"<{count}I", file.get_data(address, 4 * count))

    def name_at(descriptor):
        return file.get_string_at_rva(descriptor + 16).decode()

    try:
        locator = file.get_qword_at_rva(table - 8) - file.OPTIONAL_HEADER.ImageBase
        signature, _, _, descriptor, hierarchy, own_address = words(locator, 6)
        _, _, count, array = words(hierarchy, 4)
        bases = [name_at(words(base, 1)[0]) for base in words(array, count)]
        sound = signature == 1 and own_address == locator
        return (name_at(descriptor), bases) if sound else None
    # What pefile answers where there is nothing: None, too few bytes, or its own error.
    except (AttributeError, TypeError, struct.error, UnicodeDecodeError, pefile.PEFormatError):
        return None


def compare_derived_tables(report, expected, file, symbols, classes):
    derived_from = {name: members for name, (_, _, members) in expected.classes.items()
                    if members[0].origin is not None}
    seen = set()
    for address, names in sorted(symbols.items()):
        for name in names:
            if not name.startswith("??_7") or not name.endswith("@@6B@"):
                continue
            if name == "??_7type_info@@6B@":  # is the type information's own
                continue
            own = name[4:-5]
            subject = f"class {own}"
            table = address - file.OPTIONAL_HEADER.ImageBase
            described, bases = type_information(file, table) or ("", [])
            sound = described == f".?AV{own}@@"
            report.compare(subject, "run-time type information", "present",
                           "present" if sound else "missing or damaged")
            bases = [base[4:-2] for base in bases] if sound else []
            for base in [base for base in bases if base in derived_from and base != own]:
                seen.add(base)
                for member in derived_from[base]:
                    target = file.get_qword_at_rva(table + 8 * member.slot)
                    there = symbols.get(target, ["no symbol"])
                    owner, wanted = member_name(member.signature)
                    # An imported or inline member may be overridden. Members of different classes
                    # can share their code, so several names may stand at one address.
                    found = [member_of(symbol) for symbol in there]
                    same = any(there_name == wanted for _, there_name in found)
                    if member.origin == "own":
                        same = same and "_purecall" not in there
                    report.compare(f"{subject} : {base}", f"slot {member.slot}",
                                   f"{owner or own}::{wanted}",
                                   "::".join(next((f for f in found if f[1] == wanted), found[0])),
                                   same)
    report.compare("plug-in", "derives from", " ".join(sorted(classes or derived_from)),
                   " ".join(sorted(seen)))


def version_word(file):
    """What the plug-in announces to the host, out of the code of the function that the host asks."""
    directory = getattr(file, "DIRECTORY_ENTRY_EXPORT", None)
    address = next((each.address for each in directory.symbols if each.name == b"LibVersion"),
                   None) if directory else None
    code = file.get_data(address, 6) if address else b""
    if code[:1] == b"\xe9":  # jmp: it is only handed on
        code = file.get_data(address + 5 + struct.unpack("<i", code[1:5])[0], 6)
    # mov eax, the word; ret
    return struct.unpack("<I", code[1:5])[0] if code[:1] == b"\xb8" and code[5:] == b"\xc3" else None


def compare_plugin(report, expected, path, map_path, import_lists, classes, word):
    data, file = read_plugin(path)
    head = file.OPTIONAL_HEADER
    machine = file.FILE_HEADER.Machine
    report.compare("plug-in", "machine", "x64", "x64" if machine == 0x8664 else machine)
    report.compare("plug-in", "exports", " ".join(EXPORTS), " ".join(exports_of(file)))
    version = (head.MajorSubsystemVersion, head.MinorSubsystemVersion)
    report.compare("plug-in", "subsystem version", "6.1 or older", ".".join(map(str, version)),
                   version <= NEWEST_SYSTEM)
    sections = [section.Name.rstrip(b"\0").decode("latin-1") for section in file.sections]
    unusual = [name for name in sections if name not in SECTIONS]
    report.compare("plug-in", "unusual sections", "none", " ".join(unusual) or "none")
    # The compiler makes the name of an unnamed namespace from the path of the source.
    placed = re.findall(rb"\.\?A[UV][^\0]*\?A0x[^\0]*", data)
    report.compare("plug-in", "type names with the build's folder in them", "none",
                   " ".join(name.decode("ascii") for name in placed) or "none")
    report.compare("plug-in", "unwind tables", "present",
                   "present" if head.DATA_DIRECTORY[3].Size else "missing")
    lists = {dll.lower(): (dll, names) for dll, names in import_lists.items()}
    system = {dll.lower() for dll in SYSTEM_DLLS}
    for dll, names in sorted(imports_of(file).items()):
        if dll.lower() in lists:
            expected_name, allowed = lists[dll.lower()]
            unlisted = [name for name in names if name not in allowed]
            listed = f"listed for {expected_name}"
            report.compare(f"imports of {dll}", f"{len(names)} names", listed,
                           " ".join(unlisted) or listed)
        else:
            report.compare(f"imports of {dll}", f"{len(names)} names", "a DLL of Windows",
                           "a DLL of Windows" if dll.lower() in system else "another DLL")
    symbols = read_map(map_path)
    found = version_word(file)
    report.compare("plug-in", "version word", f"{word:#x}", "none" if found is None else f"{found:#x}")
    compare_derived_tables(report, expected, file, symbols, classes)


def main():
    parser = argparse.ArgumentParser(
        description=__doc__, usage=argparse.SUPPRESS,
        formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("plugin", nargs="?")
    parser.add_argument("--map")
    parser.add_argument("--generation", default="2012")
    parser.add_argument("--declarations")
    parser.add_argument("--table")
    parser.add_argument("--imports")
    parser.add_argument("--quiet", action="store_true")
    parser.add_argument("--classes", nargs="+")
    arguments = parser.parse_args()
    if (arguments.plugin is None) != (arguments.map is None):
        parser.error("a plug-in and its --map go together")

    report = Report()
    try:
        made = make_sdk.made(arguments.generation)
        expected = Expectations(arguments.table or made / "host_layout.txt")
        compare_declarations(report, expected, arguments.generation,
                             arguments.declarations or made / "include")
        if arguments.plugin is not None:
            compare_plugin(report, expected, arguments.plugin, arguments.map,
                           read_import_lists(arguments.imports or made / "imports"),
                           arguments.classes,
                           make_sdk.Generation(make_sdk.SDK, arguments.generation).version_word)
    except (Unreadable, make_sdk.Wrong) as problem:
        print(f"check_abi: {problem}", file=sys.stderr)
        return 2
    report.print(arguments.quiet)
    return 1 if report.differences else 0


if __name__ == "__main__":
    sys.exit(main())
