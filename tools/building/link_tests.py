#!/usr/bin/python3
"""Links a program of test cases by lld, which takes a twentieth of GNU ld's time for it.

usage: link_tests.py COMPILER ARGUMENT...

The mingw compiler calls no linker but its own, so it is asked which words that one would get.
"""

import shlex
import subprocess
import sys

LINKER = "ld.lld-19"


def linker_words(words, folder=None):
    """The linker's own command behind the compiler's."""
    shown = subprocess.run([*words, "-###"], cwd=folder, capture_output=True, text=True,
                           check=True).stderr
    last = [line for line in shown.splitlines() if "collect2" in line][-1]
    found = [LINKER]
    skip = False
    for word in shlex.split(last)[1:]:
        if skip or word.startswith(("-plugin-opt", "--out-implib=")):
            skip = False
        elif word in ("-plugin", "--out-implib"):
            skip = True
        else:
            found.append(word)
    return [*found, "--strip-debug"]


if __name__ == "__main__":
    if len(sys.argv) < 2:
        sys.exit(__doc__.strip())
    sys.exit(subprocess.run(linker_words(sys.argv[1:])).returncode)
