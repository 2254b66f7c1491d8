#!/usr/bin/env python3
"""The archive that a user downloads: what is in it, that it can be made again byte for byte, and
that only the file of the host's ABI gets in.

usage: archive_test.py MAKE_PACKAGE BUILD_ROOT
"""

import hashlib
import html.parser
import os
import posixpath
import re
import shutil
import subprocess
import sys
import tempfile
import unittest
import zipfile

MAKE_PACKAGE, BUILD_ROOT = sys.argv[1:3]
MSVC = os.path.join(BUILD_ROOT, "msvc")
GNU = os.path.join(BUILD_ROOT, "gnu")

PAGES = ["CHANGELOG.html", "cheat-sheet.html", "diagnostics/report.html", "user-guide.html"]
FILES = [
    "INSTALL.txt",
    "KarvelMax.gup",
    "NOTICE.txt",
    "SHA256SUMS",
    "cheat-sheet.pdf",
    "diagnostics/KarvelReport.gup",
    "icons/Karvel_16a.bmp",
    "icons/Karvel_16i.bmp",
    "icons/Karvel_24a.bmp",
    "icons/Karvel_24i.bmp",
] + PAGES


def source(path):
    """A text of the repository."""
    with open(os.path.join(os.path.dirname(BUILD_ROOT), path), encoding="utf-8") as file:
        return file.read()


class Page(html.parser.HTMLParser):
    """What a browser finds in a page: its text, where it leads, what it shows."""

    def __init__(self, text):
        super().__init__()
        self.anchors, self.links, self.pictures, self.text, self.open = set(), [], [], "", []
        self.rows = 0
        self.feed(text)
        self.close()

    def handle_starttag(self, tag, attributes):
        attributes = dict(attributes)
        if "id" in attributes:
            self.anchors.add(attributes["id"])
        if tag == "a":
            self.links.append(attributes["href"])
        if tag == "img":
            self.pictures.append((attributes["src"], attributes["alt"]))
        if tag == "tr":
            self.rows += 1
        self.open.append(tag)

    def handle_endtag(self, tag):
        while self.open and self.open.pop() != tag:
            pass

    def handle_data(self, data):
        if "style" not in self.open:
            self.text += data


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
        for part in ("package", "plugin", "artwork", "diagnostics"):
            shutil.copytree(os.path.join(MSVC, part), os.path.join(build, part))
        return build

    found = None

    def contents(self):
        """Place in the folder of the archive -> bytes."""
        if ArchiveTest.found is None:
            ArchiveTest.found = self.read_contents()
        return dict(ArchiveTest.found)

    def read_contents(self):
        with zipfile.ZipFile(self.made()) as archive:
            self.assertIsNone(archive.testzip())
            names = archive.namelist()
            self.assertEqual(names, sorted(names))
            self.assertTrue(all(name.startswith("KarvelMax/") for name in names))
            return {name.split("/", 1)[1]: archive.read(name) for name in names}

    def test_holds_what_the_instructions_name_and_the_pictures_of_its_pages(self):
        contents = self.contents()
        shown = {picture for page in PAGES
                 for picture, _ in Page(contents[page].decode("utf-8")).pictures}
        self.assertGreater(len(shown), 10)
        self.assertEqual(sorted(contents), sorted(FILES + list(shown)))
        instructions = contents["INSTALL.txt"].decode("ascii")
        listed = re.search(r"What is in the download\r\n-+\r\n\r\n(.*?)\r\n\r\n", instructions,
                           re.S).group(1)
        names = [line.split()[0].replace("\\", "/") for line in listed.split("\r\n")]
        self.assertEqual(sorted(names), sorted(FILES + ["images"]))

    def test_pages_are_the_repository_s_own(self):
        contents = self.contents()
        pages = {name: Page(contents[name].decode("utf-8")) for name in PAGES}
        guide = source("docs/user-guide.md")
        for heading in re.findall(r"^#+ (.*)$", guide, re.M):
            self.assertIn(heading.replace("`", ""), pages["user-guide.html"].text)
        # Every line of every table but the ruled one under its heads.
        self.assertEqual(pages["user-guide.html"].rows,
                         len(re.findall(r"^\|", guide, re.M)) -
                         len(re.findall(r"^\|[-|]+\|$", guide, re.M)))
        self.assertGreaterEqual(pages["cheat-sheet.html"].rows, 12)
        self.assertIn(("images/gestures.png",
                       "Alt drags orbit, pan and zoom; the middle button transforms and clones; "
                       "Shift, Ctrl and Ctrl+Shift clicks select"),
                      pages["cheat-sheet.html"].pictures)
        self.assertIn("1.5.0", pages["CHANGELOG.html"].text)
        # What Markdown left over would stand in the text.
        for name, page in pages.items():
            for left in ("](", "|---", "<!--", "**", "\n## ", "\n| "):
                self.assertNotIn(left, page.text, name)

    def test_links_stay_in_the_archive(self):
        contents = self.contents()
        pages = {name: Page(contents[name].decode("utf-8")) for name in PAGES}
        followed = 0
        for name, page in pages.items():
            for link in page.links:
                if link.startswith("https://"):
                    continue
                target, _, anchor = link.partition("#")
                target = posixpath.normpath(posixpath.join(posixpath.dirname(name), target)) \
                    if target else name
                self.assertIn(target, pages, f"{name}: {link}")
                if anchor:
                    self.assertIn(anchor, pages[target].anchors, f"{name}: {link}")
                followed += 1
        self.assertGreater(followed, 10)

    def test_the_printed_sheet_is_one_page(self):
        sheet = self.contents()["cheat-sheet.pdf"]
        self.assertTrue(sheet.startswith(b"%PDF-"))
        self.assertEqual(len(re.findall(rb"/Type /Page\b(?!s)", sheet)), 1)
        self.assertIn(b"/Subtype /Image", sheet)
        self.assertNotIn(b"/URI", sheet)

    def test_no_file_that_this_host_does_not_read(self):
        self.assertNotIn("PackageContents.xml", {os.path.basename(name)
                                                 for name in self.contents()})

    def test_says_whose_it_is(self):
        contents = self.contents()
        for name in PAGES + ["INSTALL.txt", "NOTICE.txt"]:
            self.assertIn("Copyright (C) the Karvel developers", contents[name].decode("utf-8"))
        self.assertIn("trademarks", contents["NOTICE.txt"].decode("ascii"))
        self.assertNotRegex(contents["NOTICE.txt"].decode("ascii"), r"@\w+@")

    def test_checksums_cover_every_other_file(self):
        contents = self.contents()
        lines = contents.pop("SHA256SUMS").decode("ascii").splitlines()
        sums = {name: checksum for checksum, name in (line.split("  ") for line in lines)}
        self.assertEqual(sums, {name: hashlib.sha256(data).hexdigest()
                                for name, data in contents.items()})

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
