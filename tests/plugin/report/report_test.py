#!/usr/bin/env python3
"""What the report plug-in told of the stand-in, held against what the scenarios had set up.

    report_test.py DIRECTORY HERE    DIRECTORY holds a settings folder and a trace for each scenario
"""

import pathlib
import re
import sys
import unittest

sys.dont_write_bytecode = True
sys.path.insert(0, str(pathlib.Path(__file__).resolve().parents[3] / "tools" / "report"))
import reports  # noqa: E402

WORK = HERE = pathlib.Path()


def lines_of(name):
    return (WORK / name / "KarvelReport.txt").read_bytes().decode("cp1252").split("\r\n")


class ReportTest(unittest.TestCase):
    def setUp(self):
        self.report = reports.read_report(WORK / "report" / "KarvelReport.txt")

    def one(self, noun, *arguments):
        found = [line for line in self.report.of_noun(noun)
                 if line.arguments[:len(arguments)] == list(arguments)]
        self.assertEqual(1, len(found), f"lines {noun} {arguments}")
        return found[0].values

    def windows(self, **wanted):
        return [line for line in self.report.of_noun("window")
                if all(line.values[key] == value for key, value in wanted.items())]

    def test_it_is_whole(self):
        lines = lines_of("report")
        self.assertEqual("Karvel report 1", lines[0])
        self.assertEqual(["end", ""], lines[-2:])

    def test_what_the_host_says_of_itself(self):
        host = self.one("host")
        self.assertEqual("12900", host["release"])
        self.assertEqual(12900, int(host["word"], 16) >> 16)
        self.assertEqual({"at": "0,0", "size": "1280x1024"}, self.one("screen"))
        self.assertEqual("0", self.one("mouse")["swapped"])

    def test_state(self):
        mode = self.one("mode")
        self.assertEqual(("202", "2"), (mode["id"], mode["stack"]))
        state = self.one("state")
        self.assertEqual(("2", "0"), (state["selected"], state["snap"]))
        self.assertNotEqual("0", state["level"])
        self.assertEqual({"value": '"0"'}, self.one("setting", "slowZooming"))
        self.assertEqual({"present": "1"}, self.one("polytools"))

    def test_windows_lie_as_they_are_shown(self):
        shown = re.findall(r"^state window (\S+) (-?\d+,-?\d+) (\d+x\d+)",
                           (WORK / "report.trace").read_text(), re.M)
        self.assertGreater(len(shown), 10)
        told = {(line.values["at"], line.values["size"]) for line in self.windows()}
        for name, place, size in shown:
            self.assertIn((place, size), told, name)

    def test_each_window_stands_behind_its_parent(self):
        main = self.one("window", 1)
        self.assertEqual(("0", "0"), (main["parent"], main["owner"]))
        for line in self.windows()[1:]:
            parent, owner = int(line.values["parent"]), int(line.values["owner"])
            self.assertLess(parent, line.arguments[0])
            self.assertEqual(parent == 0, owner != 0, line.text)

    def test_kinds(self):
        kinds = [line.values["kind"] for line in self.windows()]
        self.assertEqual({"locked": 1, "viewport": 3, "unwrap": 1, "schematic": 1, "trackview": 1,
                          "trackbar": 1},
                         {kind: kinds.count(kind) for kind in kinds if kind != "other"})
        for kind, name in (("unwrap", "UnwrapView"), ("schematic", "SVGraphWindow"),
                           ("trackview", "TVTrackWindow"), ("trackbar", "TrackBar")):
            self.assertEqual([f'"{name}"'], [line.values["class"] for line in
                                             self.windows(kind=kind)])

    def test_viewports(self):
        views = sorted((line.values["type"], line.values["perspective"], line.values["user"],
                        line.values["active"], line.values["spot"])
                       for line in self.report.of_noun("viewport"))
        self.assertEqual([("12", "0", "0", "0", "1"), ("4", "0", "0", "0", "0"),
                          ("6", "0", "1", "0", "0"), ("7", "1", "0", "1", "0")], views)

    def test_actions_and_buttons(self):
        self.assertEqual({"present": "1", "name": '"Move Horizontal"', "checked": "1",
                          "enabled": "1", "visible": "1"}, self.one("action", 2077580866, 40033))
        self.assertEqual("0", self.one("action", 2077580866, 40034)["checked"])
        lock = self.one("button", 59231)
        self.assertEqual(("1", "1"), (lock["enabled"], lock["checked"]))
        self.assertEqual("0", self.one("button", 50027)["enabled"])
        self.assertEqual({"present": "1", "enabled": "0"}, self.one("toolbar", 50027))
        self.assertEqual("1", self.one("button", 1008)["checked"])
        self.assertEqual("20", self.one("table", 1937596344)["items"])

    def test_input(self):
        seen = [line for line in lines_of("input") if line.startswith("input ")]
        place = re.search(r"point=(\S+)", seen[0])[1]
        window = re.search(r"window=(\S+)", seen[0])[1]
        mouse = f"window={window} point={place} hit=1 code=0"
        self.assertEqual([f"input mouse at=0 message=0x200 {mouse}",
                          f"input mouse at=250 message=0x204 {mouse}",
                          f"input mouse at=250 message=0x205 {mouse}",
                          "input key at=250 key=0 down=1 code=0",
                          "input key at=250 key=0 down=0 code=0",
                          "input key at=250 key=18 down=1 code=0",
                          "input key at=250 key=18 down=0 code=0",
                          "input key at=250 key=116 down=1 code=0",
                          "input key at=250 key=116 down=0 code=0",
                          "input key at=9999 key=117 down=1 code=0"], seen)
        self.assertIn('class="StandinViewport"', lines_of("input")[
            [line.split()[:2] for line in lines_of("input")].index(["window", window])])

    def told(self, name):
        return re.findall(r'^ *listener "Karvel report: (.*)\\n"$',
                          (WORK / f"{name}.trace").read_text(), re.M)

    def test_without_a_host_object_the_rest_is_told(self):
        told = self.told("faults")
        nowhere = [text for text in told if text == "there is no folder for it"]
        self.assertEqual(2, len(nowhere), "without the core, and without its answer")
        self.assertEqual(17 - 2, sum(text.endswith("KarvelReport.txt") for text in told))

    def test_a_file_that_cannot_be_written_is_told(self):
        self.assertEqual(1, len(self.told("refused")))
        self.assertRegex(self.told("refused")[0], r"KarvelReport\.txt could not be written$")


if __name__ == "__main__":
    WORK, HERE = (pathlib.Path(name) for name in sys.argv[1:3])
    unittest.main(argv=sys.argv[:1])
