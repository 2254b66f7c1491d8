#!/usr/bin/python3
"""Makes the archive that a user downloads, from a finished msvc build.

usage: make_package.py --build DIRECTORY --output FILE.zip

Needs the packages python3-pefile and, for the pages that are made from the Markdown of the
repository, python3-markdown and weasyprint.
The same input gives the same bytes: entries are sorted and carry one fixed time.
"""

import argparse
import hashlib
import os
import sys
import zipfile

import pefile

import user_pages

ROOT = "KarvelMax"
# The oldest time that the format knows.
FIXED_TIME = (1980, 1, 1, 0, 0, 0)

# Place in the archive -> place in the build directory. 3ds Max reads bundles from 2014 on, so the
# archive for 2012 is no bundle.
CONTENTS = {
    "KarvelMax.gup": "plugin/KarvelMax.gup",
    "INSTALL.txt": "package/INSTALL.txt",
    "NOTICE.txt": "package/NOTICE.txt",
    "icons/Karvel_16i.bmp": "artwork/Karvel_16i.bmp",
    "icons/Karvel_16a.bmp": "artwork/Karvel_16a.bmp",
    "icons/Karvel_24i.bmp": "artwork/Karvel_24i.bmp",
    "icons/Karvel_24a.bmp": "artwork/Karvel_24a.bmp",
    "diagnostics/KarvelReport.gup": "diagnostics/KarvelReport.gup",
}


class PackageError(Exception):
    pass


def check_plugin(data):
    """Only a file whose names the host exports may reach a user."""
    try:
        file = pefile.PE(data=data, fast_load=True)
        file.parse_data_directories([pefile.DIRECTORY_ENTRY["IMAGE_DIRECTORY_ENTRY_IMPORT"]])
    except pefile.PEFormatError as error:
        raise PackageError(f"it is no Windows file ({error.value})") from None
    if file.FILE_HEADER.Machine != pefile.MACHINE_TYPE["IMAGE_FILE_MACHINE_AMD64"]:
        raise PackageError("it is no 64-bit file")
    core = [each.name.decode("latin-1") for dll in getattr(file, "DIRECTORY_ENTRY_IMPORT", [])
            if dll.dll == b"core.dll" for each in dll.imports if each.name]
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
    for name in (name for name in CONTENTS if name.endswith(".gup")):
        try:
            check_plugin(files[name])
        except PackageError as error:
            path = os.path.join(build, CONTENTS[name])
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
