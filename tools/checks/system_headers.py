"""The system's headers, compiled before: they are most of what a compiler reads of a source, and the
checks read the same ones many times over. Kept in build/lint."""

import fcntl
import hashlib
import os
import pathlib
import subprocess

ROOT = pathlib.Path(__file__).resolve().parents[2]
KEPT = ROOT / "build" / "lint"
HEADERS = ["windows.h", "commctrl.h", "algorithm", "cstddef", "cstring", "optional", "span"]
WINDOWS = "/usr/x86_64-w64-mingw32/include/windows.h"
TEXT = "".join(f"#include <{name}>\n" for name in HEADERS)


def compiled(command):
    """Options for `command`, a compiler and its flags, with which it has read the headers already."""
    # A file made of other headers would be refused.
    key = "\0".join([*command, TEXT, str(os.stat(WINDOWS).st_mtime_ns)])
    folder = KEPT / f"headers-{hashlib.sha256(key.encode()).hexdigest()[:16]}"
    clang = "clang" in command[0]
    header = folder / "system.h"
    result = folder / ("system.pch" if clang else "system.h.gch")
    folder.mkdir(parents=True, exist_ok=True)
    # Several checks run side by side; what one has begun the others wait for.
    with open(folder / "lock", "w", encoding="utf-8") as lock:
        fcntl.flock(lock, fcntl.LOCK_EX)
        if not result.exists():
            header.write_text(TEXT, encoding="utf-8")
            partial = folder / f"partial-{result.name}"
            subprocess.run([*command, "-x", "c++-header", str(header), "-o", str(partial)],
                           check=True)
            partial.replace(result)
    return ["-include-pch", str(result)] if clang else ["-include", str(header)]
