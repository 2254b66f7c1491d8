#!/usr/bin/env python3
"""The archive that a user downloads: what is in it, that it can be made again byte for byte, and
that only the file of the host's ABI gets in.

usage: archive_test.py MAKE_PACKAGE BUILD_ROOT
"""

import hashlib
import os
import shutil
import subprocess
import sys
import tempfile
import unittest
import xml.etree.ElementTree
import zipfile

MAKE_PACKAGE, BUILD_ROOT = sys.argv[1:3]
MSVC = os.path.join(BUILD_ROOT, "msvc")
GNU = os.path.join(BUILD_ROOT, "gnu")

EXPECTED_NAMES = [
    "KarvelMax.bundle/Contents/icons/Karvel_16a.bmp",
    "KarvelMax.bundle/Contents/icons/Karvel_16i.bmp",
    "KarvelMax.bundle/Contents/icons/Karvel_24a.bmp",
    "KarvelMax.bundle/Contents/icons/Karvel_24i.bmp",
    "KarvelMax.bundle/Contents/plugins/KarvelMax.gup",
    "KarvelMax.bundle/INSTALL.txt",
    "KarvelMax.bundle/PackageContents.xml",
    "KarvelMax.bundle/SHA256SUMS",
]


class ArchiveTest(unittest.TestCase):
    def setUp(self):
        self.directory = tempfile.mkdtemp(prefix="karvel-package-")
        self.addCleanup(shutil.rmtree, self.directory)

    def make(self, build, name="package.zip"):
        output = os.path.join(self.directory, name)
        done = subprocess.run([sys.executable, MAKE_PACKAGE, "--build", build, "--output", output],
                              stdout=subprocess.PIPE, stderr=subprocess.PIPE, text=True, check=False)
        return done, output

    def made(self, name="package.zip"):
        done, output = self.make(MSVC, name)
        self.assertEqual(done.returncode, 0, done.stderr)
        return output

    def copy_of_build(self):
        build = os.path.join(self.directory, "build")
        for part in ("package", "plugin", "artwork"):
            shutil.copytree(os.path.join(MSVC, part), os.path.join(build, part))
        return build

    def test_holds_exactly_the_files_that_the_instructions_name(self):
        with zipfile.ZipFile(self.made()) as archive:
            self.assertEqual(archive.namelist(), EXPECTED_NAMES)
            self.assertIsNone(archive.testzip())

    def test_checksums_cover_every_other_file(self):
        with zipfile.ZipFile(self.made()) as archive:
            lines = archive.read("KarvelMax.bundle/SHA256SUMS").decode("ascii").splitlines()
            sums = {name: checksum for checksum, name in (line.split("  ") for line in lines)}
            others = [name for name in EXPECTED_NAMES if not name.endswith("SHA256SUMS")]
            self.assertEqual(sorted(sums), [name.split("/", 1)[1] for name in others])
            for name, checksum in sums.items():
                data = archive.read("KarvelMax.bundle/" + name)
                self.assertEqual(hashlib.sha256(data).hexdigest(), checksum, name)

    def test_same_input_gives_the_same_bytes(self):
        first = self.made("first.zip")
        build = self.copy_of_build()
        for directory, _, names in os.walk(build):
            for name in names:
                os.utime(os.path.join(directory, name), (1, 1))
        done, second = self.make(build, "second.zip")
        self.assertEqual(done.returncode, 0, done.stderr)
        with open(first, "rb") as one, open(second, "rb") as other:
            self.assertEqual(one.read(), other.read())

    def test_description_names_files_of_the_archive(self):
        with zipfile.ZipFile(self.made()) as archive:
            document = xml.etree.ElementTree.fromstring(
                archive.read("KarvelMax.bundle/PackageContents.xml"))
            modules = [entry.get("ModuleName") for entry in document.iter("ComponentEntry")]
        self.assertIn("./Contents/plugins/KarvelMax.gup", modules)
        for module in modules:
            place = "KarvelMax.bundle/" + module.removeprefix("./")
            self.assertTrue(any(name == place or name.startswith(place + "/")
                                for name in EXPECTED_NAMES), module)

    def test_refuses_the_gnu_file(self):
        build = self.copy_of_build()
        shutil.copy(os.path.join(GNU, "plugin", "KarvelMax.gup"), os.path.join(build, "plugin"))
        done, output = self.make(build)
        self.assertEqual(done.returncode, 1)
        self.assertIn("KarvelMax.gup:0: it was not built for the host's C++ ABI", done.stderr)
        self.assertEqual(len(done.stderr.splitlines()), 1)
        self.assertFalse(os.path.exists(output))

    def test_refuses_a_file_that_is_no_plugin(self):
        build = self.copy_of_build()
        plugin = os.path.join(build, "plugin", "KarvelMax.gup")
        with open(plugin, "rb") as file:
            whole = file.read()
        for damaged in (b"", b"MZ", b"not a program at all" * 20, whole[:600]):
            with open(plugin, "wb") as file:
                file.write(damaged)
            done, output = self.make(build)
            self.assertEqual(done.returncode, 1, damaged[:20])
            self.assertRegex(done.stderr, r"\A\S+KarvelMax\.gup:0: .+\n\Z")
            self.assertFalse(os.path.exists(output))

    def test_names_a_missing_file(self):
        build = self.copy_of_build()
        os.remove(os.path.join(build, "package", "INSTALL.txt"))
        done, output = self.make(build)
        self.assertEqual(done.returncode, 1)
        self.assertRegex(done.stderr, r"\A\S+INSTALL\.txt:0: .+\n\Z")
        self.assertFalse(os.path.exists(output))


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1])
