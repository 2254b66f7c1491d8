"""Nothing of Wine and of the virtual display is left of calls and scripts that were killed, and what
others use goes on. Under Wine, in prefixes of its own."""

import os
import pathlib
import signal
import subprocess
import unittest

from call_test import SOON
from scratch import ROOT, Scratch, wait_for

STAYS = r"C:\keep_alive.exe"
SESSION = """
. tools/session/wine_session.sh
wine_session_ends_with_script
wine_session_begin %s || exit 1
run_wine 'C:\\keep_alive.exe' %d
"""


class Sessions(unittest.TestCase):
    def setUp(self):
        self.scratch = Scratch()
        self.addCleanup(self.scratch.close)
        # Nothing writes to what prefixes are copies of.
        self.scratch.make_prefixes_known("wine-made-null", "wine-made-x11")
        for made in self.scratch.build.iterdir():
            for how in ("-aln", "-an"):
                if subprocess.run(["cp", how, f"{ROOT}/build/{made.name}/.", made]).returncode == 0:
                    break
        # Of a copy that was broken off.
        (self.scratch.build / "wine-made.partial-copy").mkdir()
        # The tests are one program that stays.
        ctest = self.scratch.fakes / "ctest"
        ctest.write_text(f"#!/bin/bash\nexec tools/session/run_under_wine.sh '{STAYS}' 1000\n")
        ctest.chmod(0o755)

    def a_test_run(self, processors=2):
        # That is what nproc goes by.
        call = self.scratch.start("test", OMP_NUM_THREADS=str(processors))
        wait_for(lambda: self.plays(1000), "a test that stays", 60)
        return call

    def by_hand(self, session, seconds):
        script = subprocess.Popen(["bash", "-uc", SESSION % (session, seconds)],
                                  cwd=self.scratch.root, env=self.scratch.environment)
        self.scratch.running.append(script)
        wait_for(lambda: self.plays(seconds), "a program that stays", 60)
        return script

    def plays(self, seconds):
        return self.scratch.with_command(f"{STAYS} {seconds}")

    def wines_own(self):
        """Wine's own processes, the last of which is there."""
        wait_for(lambda: self.scratch.with_command("rpcss.exe"), "Wine's own processes")
        return self.scratch.with_command("C:\\windows\\")

    def kill(self, *pids):
        for pid in pids:
            os.kill(pid, signal.SIGKILL)

    def nothing_is_left(self, besides=()):
        wait_for(lambda: not self.scratch.processes(besides),
                 "the end of " + ", ".join(map(self.scratch.command_of, self.scratch.processes(besides))),
                 SOON)
        self.assertEqual(self.scratch.left(), [])
        self.assertEqual(list(self.scratch.build.glob("*.out.*")), [])

    def test_a_signal_ends_the_sessions_of_all_processors(self):
        call = self.a_test_run(processors=3)
        wait_for(lambda: len(self.scratch.with_command("wineserver")) == 3,
                 "a server for each session")
        call.terminate()
        self.assertEqual(call.wait(SOON), 143)
        self.nothing_is_left()

    def test_so_does_a_kill(self):
        call = self.a_test_run()
        self.kill(call.pid)
        self.nothing_is_left()

    def test_wine_without_its_server_ends_with_the_call(self):
        call = self.a_test_run()
        self.wines_own()
        self.kill(*self.scratch.with_command("wineserver"))
        call.terminate()
        self.assertEqual(call.wait(SOON), 143)
        self.nothing_is_left()

    def test_the_next_call_ends_a_display_and_the_session_on_it(self):
        script = self.by_hand("x11 640x480", 1001)
        socket = pathlib.Path((self.scratch.build / "wine-prefix-display.display").read_text().strip())
        self.assertTrue(socket.exists())
        self.wines_own()
        self.kill(script.pid, *self.scratch.with_command("Xvfb"))
        self.assertTrue(socket.exists())
        self.assertEqual(self.scratch.dev("build", "gnu")[0], 0)
        self.nothing_is_left()
        self.assertFalse(socket.exists())

    def test_the_next_session_does_so_too(self):
        script = self.by_hand("null", 1002)
        old = self.wines_own()
        self.kill(script.pid, *self.scratch.with_command("wineserver"))
        script = self.by_hand("null", 1003)
        self.assertFalse(set(old) & set(self.scratch.processes()))
        script.terminate()
        script.wait(30)
        self.nothing_is_left()

    def test_a_session_that_others_use_goes_on(self):
        script = self.by_hand("null", 1004)
        call = self.a_test_run()
        self.kill(call.pid)
        wait_for(lambda: not self.plays(1000), "the end of what was killed", SOON)
        wait_for(lambda: not list(self.scratch.build.glob("calls/*")), "the end of its record", SOON)
        self.assertEqual(len(self.plays(1004)), 1)
        self.assertIsNone(script.poll())
        self.assertEqual(len(self.scratch.with_command("wineserver")), 1)
        script.terminate()
        script.wait(30)
        self.nothing_is_left()


if __name__ == "__main__":
    unittest.main()
