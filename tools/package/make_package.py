#!/usr/bin/python3
"""Makes the archive that a user downloads, from finished builds of all generations.

usage: make_package.py --builds DIRECTORY --output FILE.zip
       make_package.py --list-builds

Needs the packages python3-pefile, libxml2-utils and, for the pages that are made from the Markdown of
the repository, python3-markdown and weasyprint.
The same input gives the same bytes: entries are sorted and carry one fixed time.
"""

import argparse
import hashlib
import os
import pathlib
import sys
import zipfile

import bundle
import hosts
import user_pages

for folder in ("building", "checks"):
    sys.path.insert(0, str(pathlib.Path(__file__).resolve().parents[1] / folder))
import check_abi  # noqa: E402
import make_sdk  # noqa: E402

ROOT = "KarvelMax"
# The oldest time that the format knows.
FIXED_TIME = (1980, 1, 1, 0, 0, 0)

BUNDLE = "KarvelMax.bundle/"
TEXTS = hosts.build_of(hosts.PRODUCT) + "/package/"
PICTURES = hosts.build_of(hosts.PRODUCT) + "/artwork/"
ICONS = ("Karvel_16i.bmp", "Karvel_16a.bmp", "Karvel_24i.bmp", "Karvel_24a.bmp")


def places(served):
    """Place in the archive -> place below the folder of all builds."""
    found = {name: TEXTS + name for name in ("INSTALL.txt", "NOTICE.txt")}
    found[BUNDLE + bundle.CONTENTS_FILE] = TEXTS + bundle.CONTENTS_FILE
    icons = [BUNDLE + bundle.ICONS]
    for host in served:
        build = hosts.build_of(host.generation)
        plugin = BUNDLE + bundle.plugin_of(host.generation)
        if not host.takes_bundles:
            plugin = f"{host.release}/KarvelMax.gup"
            icons.append(f"{host.release}/icons/")
        found[plugin] = f"{build}/plugin/KarvelMax.gup"
        found[f"diagnostics/{host.generation}/KarvelReport.gup"] = \
            f"{build}/diagnostics/KarvelReport.gup"
    found.update((folder + name, PICTURES + name) for folder in icons for name in ICONS)
    return found


class PackageError(Exception):
    pass


def read(path, build):
    try:
        with open(path, "rb") as file:
            return file.read()
    except OSError as error:
        raise PackageError(f"{path}:0: {error.strerror}, build it with ./dev build {build}") from None


def check_plugin(path, generation):
    """Only a file that its host can load may reach a user."""
    _, file = check_abi.read_plugin(path)
    core = check_abi.imports_of(file).get("core.dll", [])
    foreign = [name for name in core if not name.startswith("?")]
    if not core or foreign:
        raise PackageError(f"{path}:0: it was not built for the host's C++ ABI"
                           + (f" (it imports {foreign[0]})" if foreign else "")
                           + ", package the msvc build")
    wanted = make_sdk.Generation(make_sdk.SDK, generation).version_word
    found = check_abi.version_word(file)
    if found != wanted:
        raise PackageError(f"{path}:0: it announces {found and hex(found)}, hosts of {generation} take "
                           f"{wanted:#x}, build it with ./dev build {hosts.build_of(generation)}")


def add_bundle(files, served):
    """Completes the bundle among the files of the archive."""
    in_bundles = [host for host in served if host.takes_bundles]
    name = BUNDLE + bundle.CONTENTS_FILE
    files[name] = bundle.make_contents(files[name], in_bundles)
    inside = {place.removeprefix(BUNDLE): data for place, data in files.items()
              if place.startswith(BUNDLE)}
    for problem in bundle.problems(inside, in_bundles):
        raise PackageError(f"{name}:0: {problem}")


def make(builds, output):
    served = hosts.read()
    generations = {hosts.build_of(host.generation): host.generation for host in served}
    files = {}
    for name, place in places(served).items():
        path = os.path.join(builds, place)
        build = place.split("/")[0]
        files[name] = read(path, build)
        if name.endswith(".gup"):
            check_plugin(path, generations[build])
    add_bundle(files, served)

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
    parser.add_argument("--builds", help="the folder with a build of each generation")
    parser.add_argument("--output", help="the archive")
    parser.add_argument("--list-builds", action="store_true", help="which builds it takes, a line each")
    options = parser.parse_args()
    if options.list_builds:
        print(*map(hosts.build_of, hosts.generations(hosts.read())), sep="\n")
        return 0
    if not options.builds or not options.output:
        parser.error("--builds and --output are needed")
    try:
        make(options.builds, options.output)
    except (PackageError, check_abi.Unreadable, make_sdk.Wrong, user_pages.PageError) as error:
        print(error, file=sys.stderr)
        return 1
    return 0


if __name__ == "__main__":
    sys.exit(main())
