#!/usr/bin/env python3
"""Makes the archive that a user downloads, from a finished msvc build.

usage: make_package.py --build DIRECTORY --output FILE.zip

The pages beside the plug-in are made from the Markdown of the repository (packages python3-markdown
and weasyprint).
The same input gives the same bytes: entries are sorted and carry one fixed time.
"""

import argparse
import hashlib
import os
import struct
import sys
import zipfile

# No compiled copies between the sources.
sys.dont_write_bytecode = True

import user_pages  # noqa: E402

ROOT = "KarvelMax"
# The oldest time that the format knows.
FIXED_TIME = (1980, 1, 1, 0, 0, 0)

PLUGIN = "KarvelMax.gup"

# Place in the archive -> place in the build directory. 3ds Max reads bundles from 2014 on, so the
# archive for 2012 is no bundle.
CONTENTS = {
    PLUGIN: "plugin/KarvelMax.gup",
    "INSTALL.txt": "package/INSTALL.txt",
    "NOTICE.txt": "package/NOTICE.txt",
    "icons/Karvel_16i.bmp": "artwork/Karvel_16i.bmp",
    "icons/Karvel_16a.bmp": "artwork/Karvel_16a.bmp",
    "icons/Karvel_24i.bmp": "artwork/Karvel_24i.bmp",
    "icons/Karvel_24a.bmp": "artwork/Karvel_24a.bmp",
}


class PackageError(Exception):
    pass


def read_imports(data):
    """The imported names of a 64-bit file, by DLL."""
    try:
        header = struct.unpack_from("<I", data, 0x3C)[0]
        if data[:2] != b"MZ" or data[header:header + 4] != b"PE\0\0":
            raise PackageError("it is no Windows file")
        machine, sections = struct.unpack_from("<HH", data, header + 4)
        optional_size = struct.unpack_from("<H", data, header + 20)[0]
        optional = header + 24
        if machine != 0x8664 or struct.unpack_from("<H", data, optional)[0] != 0x20B:
            raise PackageError("it is no 64-bit file")
        table = []
        for index in range(sections):
            at = optional + optional_size + index * 40
            size, address, raw_size, raw = struct.unpack_from("<IIII", data, at + 8)
            table.append((address, max(size, raw_size), raw))

        def offset(address):
            for start, size, raw in table:
                if start <= address < start + size:
                    return address - start + raw
            raise PackageError("its import table lies outside its sections")

        def text(address):
            at = offset(address)
            return data[at:data.index(b"\0", at)].decode("latin-1")

        imports = {}
        at = offset(struct.unpack_from("<I", data, optional + 112 + 8)[0])
        while True:
            names, _, _, dll, addresses = struct.unpack_from("<IIIII", data, at)
            if dll == 0:
                return imports
            entries = imports.setdefault(text(dll), [])
            entry = offset(names or addresses)
            while True:
                value = struct.unpack_from("<Q", data, entry)[0]
                if value == 0:
                    break
                if not value >> 63:
                    entries.append(text(value + 2))
                entry += 8
            at += 20
    except (struct.error, ValueError) as error:
        raise PackageError(f"it cannot be read ({error})") from None


def check_plugin(data):
    """Only a file whose names the host exports may reach a user."""
    imports = read_imports(data)
    core = imports.get("core.dll", [])
    foreign = [name for name in core if not name.startswith("?")]
    if not core or foreign:
        raise PackageError("it was not built for the host's C++ ABI"
                           + (f" (it imports {foreign[0]})" if foreign else "")
                           + ", package the msvc build")


def make(build, output):
    files = {}
    for name, place in CONTENTS.items():
        path = os.path.join(build, place)
        try:
            with open(path, "rb") as file:
                files[name] = file.read()
        except OSError as error:
            raise PackageError(f"{path}:0: {error.strerror}, build it with ./dev build msvc") from None
    try:
        check_plugin(files[PLUGIN])
    except PackageError as error:
        path = os.path.join(build, CONTENTS[PLUGIN])
        raise PackageError(f"{path}:0: {error}") from None

    # The line of the notice that says whose this is stands below each page.
    files.update(user_pages.make(files["NOTICE.txt"].decode("ascii").splitlines()[1]))

    sums = "".join(f"{hashlib.sha256(files[name]).hexdigest()}  {name}\n" for name in sorted(files))
    files["SHA256SUMS"] = sums.encode("ascii")

    os.makedirs(os.path.dirname(os.path.abspath(output)), exist_ok=True)
    partial = output + ".partial"
    with zipfile.ZipFile(partial, "w", zipfile.ZIP_DEFLATED, compresslevel=9) as archive:
        for name in sorted(files):
            entry = zipfile.ZipInfo(f"{ROOT}/{name}", FIXED_TIME)
            entry.compress_type = zipfile.ZIP_DEFLATED
            entry.create_system = 0
            entry.external_attr = 0o644 << 16
            archive.writestr(entry, files[name])
    os.replace(partial, output)


def main():
    parser = argparse.ArgumentParser(description=__doc__.split("\n", maxsplit=1)[0])
    parser.add_argument("--build", required=True)
    parser.add_argument("--output", required=True)
    options = parser.parse_args()
    try:
        make(options.build, options.output)
    except (PackageError, user_pages.PageError) as error:
        print(error, file=sys.stderr)
        return 1
    return 0


if __name__ == "__main__":
    sys.exit(main())
