"""Calls of ./dev that are ended in the middle, and places where nothing can be written. Nothing is
built here and nothing runs under Wine: the programs are played."""

import fcntl
import os
import pathlib
import signal
import subprocess
import tempfile
import threading
import time
import unittest

from scratch import ROOT, Scratch, wait_for

# On a machine that is busy with other tests, too; within two seconds on one that is not.
SOON = 2 if os.getloadavg()[0] < os.cpu_count() else 10


class Call(unittest.TestCase):
    def setUp(self):
        self.scratch = Scratch()
        self.addCleanup(self.scratch.close)

    def building(self, scratch=None, **changes):
        """A call whose build does not come to an end, nor hear that it should."""
        scratch = scratch or self.scratch
        scratch.switch("cmake.stays")
        before = set(scratch.processes())
        call = scratch.start("build", "gnu", **changes)
        wait_for(lambda: any(scratch.command_of(pid).startswith("sleep 1000")
                             for pid in set(scratch.processes()) - before), "a build that stays")
        return call

    def nothing_is_left(self, scratch=None):
        scratch = scratch or self.scratch
        wait_for(lambda: not scratch.processes(), f"the end of {scratch.processes()}", SOON)
        self.assertEqual(scratch.left(), [])

    def one(self, part):
        found = self.scratch.with_command(part)
        self.assertEqual(len(found), 1, part)
        return found[0]

    def inner(self, call):
        """The process that does what the verb says, by its parent."""
        return next(pid for pid in self.scratch.with_command("build gnu") if pid != call.pid and
                    f"\nPPid:\t{call.pid}\n" in pathlib.Path(f"/proc/{pid}/status").read_text())


class Signals(Call):
    def test_a_signal_ends_a_build_at_once(self):
        calls = []
        for number, status in ((signal.SIGTERM, 143), (signal.SIGINT, 130), (signal.SIGHUP, 129)):
            scratch = Scratch()
            self.addCleanup(scratch.close)
            calls.append((number, status, scratch, self.building(scratch)))
        begin = time.monotonic()
        for number, _, _, call in calls:
            call.send_signal(number)
        for number, status, scratch, call in calls:
            with self.subTest(number):
                self.assertEqual(call.wait(30), status)
                self.assertLess(time.monotonic() - begin, SOON)
                self.nothing_is_left(scratch)

    def test_a_signal_ends_an_installation_of_packages(self):
        self.scratch.switch("missing")
        self.scratch.switch("apt-get.stays")
        call = self.scratch.start("test")
        wait_for(lambda: self.scratch.with_command("sleep 1000"), "an installation that stays")
        begin = time.monotonic()
        call.terminate()
        self.assertEqual(call.wait(30), 143)
        self.assertLess(time.monotonic() - begin, SOON)
        self.nothing_is_left()

    def test_an_installation_that_was_broken_off_is_finished_first(self):
        self.scratch.switch("missing")
        apt = self.scratch.fakes / "apt-get"
        apt.write_text(apt.read_text() + 'grep -q "^dpkg --configure -a" "$FAKES/calls"\n')
        self.assertEqual(self.scratch.dev("build", "gnu")[0], 0)
        self.assertEqual([call.split()[0] for call in self.scratch.calls if call[0] == "a"],
                         ["apt-get"] * 3)

    def test_the_status_of_a_verb_is_that_of_the_call(self):
        self.assertEqual(self.scratch.dev("build", "gnu")[0], 0)
        self.nothing_is_left()
        cmake = self.scratch.fakes / "cmake"
        cmake.write_text(cmake.read_text() + "exit 1\n")
        status, _, err = self.scratch.dev("build", "gnu")
        self.assertEqual(status, 1)
        self.assertIn("building gnu failed", err)
        self.nothing_is_left()


class Crashes(unittest.TestCase):
    # Wine writes this line before it starts its debugger, whose status need not be the program's.
    CRASH = "wine: Unhandled page fault on read access to 0 at address 1 (thread 2), starting debugger..."
    RUN = '. tools/session/wine_session.sh; karvel_wine=$1; WINEPREFIX=$2/prefix; "$3" program.exe'

    def test_a_program_that_crashed_has_failed(self):
        for said, status, wanted in (("", 0, 0), ("", 3, 3), (self.CRASH, 0, 5), (self.CRASH, 3, 3)):
            for run in ("run_wine", "run_wine_live"):
                with self.subTest((said, status, run)), tempfile.TemporaryDirectory() as folder:
                    wine = pathlib.Path(folder, "wine")
                    wine.write_text(f"#!/bin/bash\necho said\necho '{said}' >&2\nexit {status}\n")
                    wine.chmod(0o755)
                    done = subprocess.run(["bash", "-uc", self.RUN, "bash", wine, folder, run], cwd=ROOT,
                                          capture_output=True, text=True)
                    self.assertEqual((done.returncode, done.stdout), (wanted, "said\n"), done.stderr)


class Kills(Call):
    def kill(self, *pids):
        for pid in pids:
            os.kill(pid, signal.SIGKILL)

    def test_a_killed_call_is_cleaned_up_after(self):
        call = self.building()
        self.kill(call.pid)
        self.nothing_is_left()

    def test_so_is_one_whose_worker_is_killed(self):
        call = self.building()
        self.kill(self.inner(call))
        self.assertEqual(call.wait(30), 137)
        self.nothing_is_left()

    def test_and_one_whose_watch_was_killed_before(self):
        call = self.building()
        self.kill(*self.scratch.with_command("end_killed_calls"))
        call.terminate()
        self.assertEqual(call.wait(30), 143)
        self.nothing_is_left()

    def test_what_all_is_killed_of_the_next_call_removes(self):
        call = self.building()
        self.kill(*self.scratch.with_command("end_killed_calls"), call.pid, self.inner(call))
        self.assertNotEqual(self.scratch.left(), [])
        self.scratch.switch("cmake.stays", False)
        self.assertEqual(self.scratch.dev("build", "native")[0], 0)
        self.nothing_is_left()

    def test_a_half_made_prefix_goes(self):
        partial = self.scratch.build / "wine-made.partial"
        partial.mkdir(parents=True)
        (self.scratch.build / "wine-made.lock").touch()
        self.scratch.dev("build", "gnu")
        self.assertFalse(partial.exists())

    def test_other_calls_go_on(self):
        other = Scratch()
        self.addCleanup(other.close)
        elsewhere = self.building(other)
        first = self.building()
        kept = self.scratch.left()
        killed = self.building(TMPDIR=str(self.scratch.fakes))
        self.kill(killed.pid)
        wait_for(lambda: len(list(self.scratch.build.glob("calls/*"))) == 1, "one record", SOON)
        self.scratch.switch("cmake.stays", False)
        self.assertEqual(self.scratch.dev("build", "native")[0], 0)
        self.assertEqual(self.scratch.left(), kept)
        self.assertTrue(self.inner(first))
        self.assertIsNone(first.poll())
        self.assertIsNone(elsewhere.poll())
        self.assertTrue(other.with_command("sleep 1000"))


class Places(Call):
    def refused(self, *words, arguments=("build", "gnu"), **changes):
        status, out, err = self.scratch.dev(*arguments, **changes)
        self.assertEqual((status, out, err.count("\n")), (1, "", 1), err)
        for word in words:
            self.assertIn(str(word), err)
        self.assertFalse([call for call in self.scratch.calls if call.startswith("cmake")])

    def test_a_folder_for_temporary_files_that_is_missing(self):
        self.refused("TMPDIR", self.scratch.root / "nowhere", "No such file or directory",
                     TMPDIR=str(self.scratch.root / "nowhere"))

    def test_one_that_is_none(self):
        self.refused("TMPDIR", "Not a directory", TMPDIR=str(self.scratch.root / "dev"))

    def test_a_build_folder_that_is_none(self):
        self.scratch.build.touch()
        self.refused(f"the build folder {self.scratch.build}", "Not a directory")

    def test_a_full_disk(self):
        self.scratch.build.mkdir()
        (self.scratch.build / "karvel-probe").symlink_to("/dev/full")
        self.refused(f"the build folder {self.scratch.build}", "No space left on device")

    def test_a_disk_that_becomes_full(self):
        self.scratch.switch("cmake.fills")
        status, _, err = self.scratch.dev("build", "gnu")
        self.assertEqual(status, 1)
        self.assertIn(f"the build folder {self.scratch.build} cannot be written: "
                      "No space left on device", err)

    def test_folders_that_may_only_be_read(self):
        self.scratch.build.mkdir(mode=0o555)
        # The folder for temporary files of a call of ./dev is its own user's.
        for folder in (self.scratch.root, self.scratch.root.parent):
            folder.chmod(folder.stat().st_mode | 0o055)
        self.scratch.fakes.chmod(0o777)
        # Root may write everywhere.
        other_user = ["setpriv", "--reuid=65534", "--clear-groups"] if os.getuid() == 0 else []
        closed = self.scratch.root / "closed"
        closed.mkdir(mode=0o555)
        for folder, what in ((self.scratch.build, "the build folder"), (closed, "TMPDIR")):
            with self.subTest(what):
                done = subprocess.run(
                    [*other_user, self.scratch.root / "dev", "build", "gnu"],
                    env={**self.scratch.environment, "TMPDIR": str(closed)},
                    cwd="/", capture_output=True, text=True)
                self.assertEqual((done.returncode, done.stderr.count("\n")), (1, 1), done.stderr)
                self.assertIn(f"{what}", done.stderr)
                self.assertIn(f"{folder}", done.stderr)
                self.assertIn("Permission denied", done.stderr)
                self.scratch.build.chmod(0o777)

    def test_a_display_that_is_not_there(self):
        self.refused("$DISPLAY", ":4711", arguments=("run", "--interactive"), DISPLAY=":4711")
        self.refused("$DISPLAY is empty", arguments=("run", "--interactive"))


class Waits(Call):
    def holding(self, name):
        path = self.scratch.build / name
        path.parent.mkdir(parents=True, exist_ok=True)
        lock = open(path, "w")
        self.addCleanup(lock.close)
        fcntl.flock(lock, fcntl.LOCK_EX)
        return lock

    def says(self, call, text):
        # One that says nothing may wait for ever.
        end = threading.Timer(30, call.terminate)
        end.start()
        self.addCleanup(end.cancel)
        for line in call.stderr:
            if text in line:
                return
        self.fail(f"'{text}' was not said")

    def test_a_second_build_says_so(self):
        lock = self.holding("gnu.lock")
        call = self.scratch.start("build", "gnu")
        self.says(call, "waiting: another ./dev builds gnu")
        lock.close()
        self.assertEqual(call.wait(30), 0)

    def test_a_second_run_says_so_and_keeps_the_pictures(self):
        self.scratch.make_prefixes_known("wine-prefix-display")
        picture = self.scratch.build / "tour/01.png"
        picture.parent.mkdir()
        picture.touch()
        self.holding("wine-prefix-display.users")
        call = self.scratch.start("run")
        self.says(call, "waiting: another ./dev run")
        self.assertTrue(picture.exists())
        call.terminate()
        self.assertEqual(call.wait(30), 143)
        self.assertTrue(picture.exists())
        self.nothing_is_left()


if __name__ == "__main__":
    unittest.main()
