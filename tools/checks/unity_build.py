"""Unity builds: a compiler reads the sources of a folder as one text, so that it reads the system's
headers, which are most of its work, once instead of once for each source."""

import collections
import pathlib


def by_folder(sources):
    """[[source...]...]: the sources of one folder together, in their order."""
    groups = collections.OrderedDict()
    for source in sources:
        groups.setdefault(pathlib.Path(source).parent, []).append(pathlib.Path(source))
    return list(groups.values())


def text_of(sources):
    """The text that includes the sources, one a line."""
    return "".join(f'#include "{source.resolve()}"\n' for source in sources)


def sources_of(path):
    """What is compiled with this file: itself, or the sources that CMake has put together in it."""
    if path.parent.name != "Unity":
        return [path]
    return [pathlib.Path(line.split('"')[1])
            for line in path.read_text(encoding="utf-8").splitlines() if line.startswith("#include")]


def write(sources, path):
    path.parent.mkdir(parents=True, exist_ok=True)
    path.write_text(text_of(sources), encoding="utf-8")
    return path
