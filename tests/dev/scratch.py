"""A copy of ./dev with nothing to build, and programs played around it."""

import os
import pathlib
import shutil
import signal
import subprocess
import tempfile
import time

ROOT = pathlib.Path(__file__).resolve().parent.parent.parent

# What the tests would do without it must not be done by the tests either.
FAKES = {
    "dpkg-query": """
for package in "$@"; do
    case $package in -*|/*) ;; *) [ -e "$FAKES/missing" ] || printf '/%s installed/' "$package" ;; esac
done""",
    "id": "echo 0",
    "dpkg": "",
    "apt-get": '[ ! -e "$FAKES/apt-get.stays" ] || exec sleep 1000',
    # Like a compiler that hears nothing below it.
    "cmake": '[ ! -e "$FAKES/cmake.stays" ] || { trap "" TERM; sleep 1000; }\n'
             '[ ! -e "$FAKES/cmake.fills" ] || { ln -s /dev/full "$FAKES/../build/karvel-probe"; exit 1; }',
}


class Scratch:
    """The copy, in a folder of its own; `calls` is what the fakes were called with."""

    def __init__(self):
        self.folder = tempfile.TemporaryDirectory(prefix="karvel-dev-")
        self.root = pathlib.Path(self.folder.name)
        self.build = self.root / "build"
        self.temporary = self.root / "tmp"
        self.fakes = self.root / "fakes"
        self.temporary.mkdir()
        self.fakes.mkdir()
        for name in ("dev", "CMakePresets.json", "tests/labels.txt", "sdk/generations.txt"):
            (self.root / name).parent.mkdir(exist_ok=True)
            shutil.copy2(ROOT / name, self.root / name)
        for name in ("tools/dev", "tools/session"):
            shutil.copytree(ROOT / name, self.root / name)
        for name, text in FAKES.items():
            path = self.fakes / name
            path.write_text(f'#!/bin/bash\necho "{name} $*" >>"$FAKES/calls"\n{text}\n')
            path.chmod(0o755)
        self.environment = {name: value for name, value in os.environ.items()
                            if not name.startswith(("KARVEL_", "WINE", "CTEST_"))}
        self.environment.update(PATH=f"{self.fakes}:{os.environ['PATH']}", FAKES=str(self.fakes),
                                TMPDIR=str(self.temporary))
        self.environment.pop("DISPLAY", None)
        self.running = []

    def close(self):
        for process in self.running:
            process.terminate()
        for pid in self.processes():
            try:
                os.kill(pid, signal.SIGKILL)
            except ProcessLookupError:
                pass
        for process in self.running:
            process.communicate()
        self.folder.cleanup()

    def switch(self, name, on=True):
        """Changes what a fake does."""
        (self.fakes / name).touch() if on else (self.fakes / name).unlink()

    def make_prefixes_known(self, *names):
        """As if these of Wine's prefixes had been made."""
        made_of = [self.root / "tools/session" / name
                   for name in ("make_wine_prefixes.sh", "keep_alive.c")]
        stamp = subprocess.run(["cksum"], input=b"".join(path.read_bytes() for path in made_of),
                               capture_output=True, check=True).stdout
        for name in names:
            (self.build / name).mkdir(parents=True, exist_ok=True)
            (self.build / name / "karvel-stamp").write_bytes(stamp)

    @property
    def calls(self):
        try:
            return (self.fakes / "calls").read_text().splitlines()
        except FileNotFoundError:
            return []

    def start(self, *arguments, **changes):
        environment = {**self.environment, **changes}
        process = subprocess.Popen([self.root / "dev", *arguments], env=environment, text=True,
                                   cwd=self.root, stdin=subprocess.DEVNULL,
                                   stdout=subprocess.PIPE,
                                   stderr=subprocess.PIPE)
        self.running.append(process)
        return process

    def dev(self, *arguments, **changes):
        """Status, standard output and standard error of a call."""
        process = self.start(*arguments, **changes)
        out, err = process.communicate(timeout=60)
        return process.returncode, out, err

    def processes(self, besides=()):
        """All that run because of a call here, by what is in their environment or command line."""
        found = []
        mark = os.fsencode(self.root)
        for entry in pathlib.Path("/proc").glob("[0-9]*"):
            try:
                text = (entry / "environ").read_bytes() + (entry / "cmdline").read_bytes()
                gone = (entry / "stat").read_text().rpartition(") ")[2][0] == "Z"
            except OSError:
                continue
            if mark in text and not gone and int(entry.name) != os.getpid():
                found.append(int(entry.name))
        return [pid for pid in found if pid not in besides]

    def command_of(self, pid):
        try:
            return pathlib.Path(f"/proc/{pid}/cmdline").read_bytes().replace(b"\0", b" ").decode()
        except OSError:
            return ""

    def with_command(self, part):
        return [pid for pid in self.processes() if part in self.command_of(pid)]

    def left(self):
        """Files of calls that are still there."""
        return sorted(str(path.relative_to(self.root)) for path in
                      [*self.temporary.iterdir(), *self.build.glob("calls/*")])


def wait_for(condition, what, seconds=30):
    """Looks until the condition holds. Returns its value."""
    end = time.monotonic() + seconds
    while True:
        value = condition()
        if value:
            return value
        if time.monotonic() > end:
            raise AssertionError(f"after {seconds} seconds still not: {what}")
        time.sleep(0.01)
