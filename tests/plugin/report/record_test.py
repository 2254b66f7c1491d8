#!/usr/bin/env python3
"""What stands in recordings of the stand-in's sessions.

    record_test.py DIRECTORY    DIRECTORY holds a settings folder and a trace for each session
"""

import pathlib
import re
import sys
import unittest

WORK = pathlib.Path()


def lines_of(session, number=""):
    """The lines without the times behind them."""
    text = (WORK / session / f"KarvelRecording{number}.scn").read_bytes().decode("ascii")
    assert text.endswith("\r\n")
    return [re.sub(r"  # .*", "", line) for line in text[:-2].split("\r\n")]


def after_start(session, number=""):
    lines = lines_of(session, number)
    return lines[lines.index("start") + 1:]


def listener_of(session):
    return [line for line in (WORK / f"{session}.trace").read_text(errors="replace").splitlines()
            if line.lstrip().startswith("listener ")]


class RecordTest(unittest.TestCase):
    def test_set_up(self):
        self.assertEqual(["# A recording of KarvelMax", "release 13900", "screen 1280x1024",
                          "ini slowZooming=1", "ini flinderPopup=", "start"],
                         lines_of("typed")[:6])

    def test_nothing_of_a_text(self):
        self.assertEqual(
            ["key down shift", "expect answer pass", "key up shift", "expect answer pass",
             "key down ctrl", "expect answer pass", "key down f24", "expect answer pass",
             "key up f24", "expect answer pass", "key up ctrl", "expect answer pass",
             "key down f3", "expect answer pass", "key up f3", "expect answer pass",
             "key down q", "expect answer pass", "command 7", "expect answer 1",
             "key down f24", "expect answer swallow", "key up q", "expect answer swallow",
             # It came up after something was held, and ended nothing any more.
             "key up f24", "expect answer pass",
             "key up f24", "expect answer pass", "# ended"], after_start("typed"))

    def test_answers_to_the_users_own_input_alone(self):
        self.assertEqual(
            ["move screen 790 690", "expect answer pass", "key down alt", "expect answer pass",
             "down right", "expect answer swallow", "key up alt", "expect answer swallow",
             "up right", "expect answer swallow", "select Box001 Sphere001",
             "key down ctrl", "expect answer pass", "down left", "expect answer swallow"],
            after_start("answers")[:15])
        self.assertEqual(1, lines_of("answers").count("key down alt"))
        self.assertEqual(1, lines_of("answers").count("down left"))

    def test_each_has_a_file_of_its_own(self):
        first = [line for line in after_start("once_more") if "move" in line]
        self.assertEqual(["move screen 550 500"], first)
        self.assertEqual(["move screen 552 502", "expect answer pass", "down left",
                          "expect answer pass", "up left", "expect answer pass"],
                         after_start("once_more", 2)[:6])
        self.assertFalse((WORK / "once_more" / "KarvelRecording3.scn").exists())

    def test_ten_minutes(self):
        self.assertEqual(["move screen 550 500", "expect answer pass", "move screen 551 500",
                          "expect answer pass", "# ended after ten minutes"],
                         after_start("ten_minutes"))
        self.assertEqual(4, len(listener_of("ten_minutes")))
        for told in listener_of("ten_minutes")[1::2]:
            self.assertIn("ended after ten minutes", told)

    def test_a_crash_leaves_all_until_then(self):
        self.assertEqual(["down left", "expect answer swallow", "move screen 810 710",
                          "expect answer pass"], after_start("crash")[-4:])

    def test_a_full_disk(self):
        size = (WORK / "full_disk" / "KarvelRecording.scn").stat().st_size
        self.assertLessEqual(size, 20 * 1024)
        self.assertGreater(size, 20 * 1024 - 200)
        told = listener_of("full_disk")
        self.assertEqual(2, len(told), told)
        self.assertIn("could not be written any further", told[1])

    def test_hands_are_told_whatever_the_host_lacks(self):
        for number in range(1, 19):
            lines = lines_of("no_host", number if number > 1 else "")
            hooks = number != 17
            self.assertEqual(hooks, any(line.startswith("down ") for line in lines), number)
            self.assertEqual("# ended", lines[-1])
        self.assertFalse((WORK / "no_host" / "KarvelRecording19.scn").exists())


if __name__ == "__main__":
    WORK = pathlib.Path(sys.argv.pop(1))
    unittest.main()
