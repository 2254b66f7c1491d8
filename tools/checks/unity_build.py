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


def write(sources, path):
    path.parent.mkdir(parents=True, exist_ok=True)
    path.write_text(text_of(sources), encoding="utf-8")
    return path
