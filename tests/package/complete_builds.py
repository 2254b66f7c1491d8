#!/usr/bin/python3
"""A folder of builds to make an archive from: links to what is built, and for each generation that is
not built here files made of the product's, with that generation's version word: good to be packed, not
to be loaded.

usage: complete_builds.py BUILD_ROOT FOLDER
"""

import os
import pathlib
import sys

for folder in ("building", "package"):
    sys.path.insert(0, str(pathlib.Path(__file__).resolve().parents[2] / "tools" / folder))
import hosts  # noqa: E402
import make_sdk  # noqa: E402

PLUGINS = ("plugin/KarvelMax.gup", "diagnostics/KarvelReport.gup")


def made_up(product, generation):
    with open(product, "rb") as file:
        data = file.read()
    # mov eax, number; ret
    old, new = (make_sdk.Generation(make_sdk.SDK, each).version_word.to_bytes(4, "little")
                for each in (hosts.PRODUCT, generation))
    return data.replace(b"\xb8" + old + b"\xc3", b"\xb8" + new + b"\xc3")


def complete(root, folder):
    product = hosts.build_of(hosts.PRODUCT)
    for generation in hosts.generations(hosts.read()):
        build = hosts.build_of(generation)
        real = os.path.join(root, build)
        for place in PLUGINS:
            made = os.path.join(folder, build, place)
            os.makedirs(os.path.dirname(made), exist_ok=True)
            if os.path.exists(os.path.join(real, place)):
                os.symlink(os.path.join(real, place), made)
            else:
                with open(made, "wb") as file:
                    file.write(made_up(os.path.join(root, product, place), generation))
    for part in ("artwork", "package"):
        os.symlink(os.path.join(root, product, part), os.path.join(folder, product, part))


if __name__ == "__main__":
    complete(*sys.argv[1:3])
