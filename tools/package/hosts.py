"""The releases of 3ds Max that the archive serves: hosts.txt, and what follows from a release's year."""

import dataclasses
import pathlib

TABLE = pathlib.Path(__file__).with_name("hosts.txt")
PRODUCT = "2012"

# Older ones take plug-ins from their folders only.
FIRST_WITH_BUNDLES = 2014
# The first whose toolbars take pictures from folders that a bundle names.
FIRST_WITH_ICON_PATHS = 2017


@dataclasses.dataclass(frozen=True)
class Host:
    release: int
    generation: str
    state: str

    @property
    def takes_bundles(self):
        return self.release >= FIRST_WITH_BUNDLES

    @property
    def takes_icon_paths(self):
        return self.release >= FIRST_WITH_ICON_PATHS


def read():
    rows = (line.split("--")[0].split() for line in TABLE.read_text(encoding="utf-8").splitlines())
    return [Host(int(release), generation, state) for release, generation, state in filter(None, rows)]


def generations(hosts):
    """Each once, in the order of the table."""
    return list(dict.fromkeys(host.generation for host in hosts))


def build_of(generation):
    """The preset that makes its file; the product's has no year in its name."""
    return "msvc" if generation == PRODUCT else f"msvc-{generation}"
