"""Unity builds: a compiler reads the sources of a folder as one text, so that it reads the system's
headers, which are most of its work, once instead of once for each source."""

import collections
import pathlib

# Each source of the report shows more of itself alone: the analyzer of clang-tidy follows what is
# recorded through all that record, and guesses before it is through.
ONE_BY_ONE = ["report"]


def by_folder(sources):
    """[[source...]...]: the sources of one folder together, in their order; those of ONE_BY_ONE alone."""
    groups = collections.OrderedDict()
    for source in map(pathlib.Path, sources):
        key = source if source.parent.name in ONE_BY_ONE else source.parent
        groups.setdefault(key, []).append(source)
    return list(groups.values())


def with_small_ones_together(groups, root):
    """The groups, those of few sources of a folder in `root` as one."""
    def is_small(group):
        folder = group[0].parent
        return len(group) < 6 and folder.parent == root and folder.name not in ONE_BY_ONE
    small = [source for group in groups if is_small(group) for source in group]
    return [group for group in groups if not is_small(group)] + ([small] if small else [])


def by_program(sources):
    """[[source...]...]: the sources of one program, and apart those that stand for others of its, for one
    kind of host: as much as one text can hold."""
    groups = collections.OrderedDict()
    for source in sources:
        folder = pathlib.Path(source).parent
        groups.setdefault((folder.name == "report", folder.name == "unicode"),
                          []).append(pathlib.Path(source))
    return list(groups.values())


def text_of(sources):
    """The text that includes the sources, one a line."""
    # To include a source is a mistake elsewhere.
    return "".join(f'#include "{source.resolve()}"  // NOLINT(bugprone-suspicious-include)\n'
                   for source in sources)


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
