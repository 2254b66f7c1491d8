"""What a plug-in file is made for: only one that its host can load may reach a user.

Needs the package python3-pefile.
"""

import pathlib
import sys

import pefile

TOOLS = pathlib.Path(__file__).resolve().parents[1]
sys.path.insert(0, str(TOOLS / "building"))
import make_sdk  # noqa: E402


class FileError(Exception):
    pass


def version_word(generation):
    """What a file announces to hosts of this generation."""
    row = make_sdk.Generation(make_sdk.SDK, generation).properties
    return int(row["release"]) << 16 | int(row["interface"]) << 8


def announced_word(file):
    """What LibVersion() answers, read from its code; none where that is not a plain number."""
    exports = getattr(file, "DIRECTORY_ENTRY_EXPORT", None)
    for symbol in exports.symbols if exports else []:
        if symbol.name == b"LibVersion":
            place = symbol.address
            code = file.get_data(place, 6)
            if code[:1] == b"\xe9":  # jmp: the linker leads an export to its function
                place += 5 + int.from_bytes(code[1:5], "little", signed=True)
                code = file.get_data(place, 6)
            if code[:1] == b"\xb8" and code[5:] == b"\xc3":  # mov eax, number; ret
                return int.from_bytes(code[1:5], "little")
    return None


def check(data, generation):
    try:
        file = pefile.PE(data=data, fast_load=True)
        file.parse_data_directories([pefile.DIRECTORY_ENTRY["IMAGE_DIRECTORY_ENTRY_IMPORT"],
                                     pefile.DIRECTORY_ENTRY["IMAGE_DIRECTORY_ENTRY_EXPORT"]])
    except pefile.PEFormatError as error:
        raise FileError(f"it is no Windows file ({error.value})") from None
    if file.FILE_HEADER.Machine != pefile.MACHINE_TYPE["IMAGE_FILE_MACHINE_AMD64"]:
        raise FileError("it is no 64-bit file")
    core = [each.name.decode("latin-1") for dll in getattr(file, "DIRECTORY_ENTRY_IMPORT", [])
            if dll.dll == b"core.dll" for each in dll.imports if each.name]
    foreign = [name for name in core if not name.startswith("?")]
    if not core or foreign:
        raise FileError("it was not built for the host's C++ ABI"
                        + (f" (it imports {foreign[0]})" if foreign else "")
                        + ", package the msvc build")
    wanted, found = version_word(generation), announced_word(file)
    if found != wanted:
        raise FileError(f"it does not announce {wanted:#010x}, which hosts of {generation} take, but "
                        + (f"{found:#010x}" if found is not None else "nothing that can be read"))
