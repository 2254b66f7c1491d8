#!/usr/bin/env python3
"""The archive that a user downloads: what is in it, that it can be made again byte for byte, and
that only the file of the host's ABI gets in.

usage: archive_test.py MAKE_PACKAGE BUILD_ROOT
"""

import hashlib
import html.parser
import io
import os
import posixpath
import re
import shutil
import subprocess
import sys
import tempfile
import unittest
import xml.etree.ElementTree as xml
import zipfile

import complete_builds

MAKE_PACKAGE, BUILD_ROOT = sys.argv[1:3]
sys.path.insert(0, os.path.dirname(MAKE_PACKAGE))
import bundle  # noqa: E402
import hosts  # noqa: E402

GNU = os.path.join(BUILD_ROOT, "gnu")
HOSTS = hosts.read()
LATER = [host for host in HOSTS if host.release > 2012]
PRODUCT_BUILD = "msvc"

# Releases that load each other's files: the older one's goes for both.
PAIRS = {2010: 2011, 2013: 2014, 2015: 2016, 2020: 2021}

PAGES = ["CHANGELOG.html", "cheat-sheet.html", "diagnostics/report.html", "user-guide.html"]
ICONS = ["Karvel_16a.bmp", "Karvel_16i.bmp", "Karvel_24a.bmp", "Karvel_24i.bmp"]
BUNDLE = "KarvelMax.bundle/"
FILES = [
    "2012/KarvelMax.gup",
    "INSTALL.txt",
    "KarvelMax.bundle/PackageContents.xml",
    "NOTICE.txt",
    "SHA256SUMS",
    "cheat-sheet.pdf",
    "diagnostics/2012/KarvelReport.gup",
] + PAGES + [folder + icon for folder in ("2012/icons/", "KarvelMax.bundle/Contents/icons/")
             for icon in ICONS]
for generation in {host.generation for host in LATER}:
    FILES += [f"KarvelMax.bundle/Contents/{generation}/KarvelMax.gup",
              f"diagnostics/{generation}/KarvelReport.gup"]


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

        self.builds = os.path.join(self.directory, "builds")
        complete_builds.complete(BUILD_ROOT, self.builds)

    def make(self):
        output = os.path.join(self.directory, "package.zip")
        done = subprocess.run([sys.executable, MAKE_PACKAGE, "--builds", self.builds,
                               "--output", output],
                              stdout=subprocess.PIPE, stderr=subprocess.PIPE, text=True, check=False)
        return done, output

    def made(self):
        done, output = self.make()
        self.assertEqual(done.returncode, 0, done.stderr)
        return output

    def refused(self, pattern):
        """One line, and no archive."""
        done, output = self.make()
        self.assertEqual(done.returncode, 1)
        self.assertRegex(done.stderr, r"\A\S+" + pattern + r".*\n\Z")
        self.assertFalse(os.path.exists(output))

    def copy_builds(self):
        """So that a test may change them."""
        copies = os.path.join(self.directory, "copies")
        shutil.copytree(self.builds, copies)
        self.builds = copies

    def build(self, *place):
        return os.path.join(self.builds, *place)

    archive = None

    def first_archive(self):
        """Made once: its printed page takes seconds."""
        if ArchiveTest.archive is None:
            with open(self.made(), "rb") as file:
                ArchiveTest.archive = file.read()
        return ArchiveTest.archive

    def contents(self):
        """Place in the folder of the archive -> bytes."""
        with zipfile.ZipFile(io.BytesIO(self.first_archive())) as archive:
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
        listed = [name.replace("\\", "/") for name in re.findall(r"^  (\S+)", listed, re.M)]
        for name in listed:
            self.assertTrue(name in contents or any(each.startswith(name + "/") for each in contents),
                            name)
        for name in contents:
            self.assertTrue(any(name == each or name.startswith(each + "/") for each in listed), name)

    def test_each_release_has_its_row_where_users_look(self):
        wanted = {str(host.release): "product" if host.release == 2012 else "preview" for host in HOSTS}
        self.assertEqual(wanted, {str(host.release): host.state for host in HOSTS})
        found = re.findall(r"^  (\d{4})  +.*?  +(\w+)(: not yet run on the host)?$",
                           source("package/INSTALL.txt.in"), re.M)
        self.assertEqual(wanted, {release: state for release, state, _ in found})
        readme = re.findall(r"^\| 3ds Max (\d{4}) \|[^|]+\| (\w+)(: not yet run on the host)? \|",
                            source("README.md"), re.M)
        self.assertEqual(found, readme)
        for release, state, unseen in found:
            self.assertEqual(state == "preview", bool(unseen), release)

    def test_a_release_takes_the_file_of_its_own_interface(self):
        for host in HOSTS:
            self.assertIn(int(host.generation), (host.release, PAIRS.get(host.release)), host)

    def test_later_releases_find_their_files_in_the_bundle(self):
        package = xml.fromstring(self.contents()[BUNDLE + "PackageContents.xml"])
        rows = {}
        for components in package.iter("Components"):
            years, entry = components.find("RuntimeRequirements"), components.find("ComponentEntry")
            self.assertEqual(years.get("SeriesMin"), years.get("SeriesMax"))
            rows.setdefault(int(years.get("SeriesMin")), []).append(
                (components.get("Description"), entry.get("ModuleName")))
        icons = [(kind, "./Contents/icons/") for kind in ("light icon paths parts",
                                                          "dark icon paths parts")]
        self.assertEqual(rows, {
            host.release: [("plugins parts", f"./Contents/{host.generation}/KarvelMax.gup")] +
                          (icons if host.release >= 2017 else []) for host in LATER})
        self.assertEqual(package.get("UpgradeCode"), "{847E38AF-6F7B-4A59-8046-48407547DAD6}")
        self.assertNotEqual(package.get("UpgradeCode"), package.get("ProductCode"))
        self.assertEqual(package.get("AppVersion"), "1.5.0")

    def inside_bundle(self):
        return {name.removeprefix(BUNDLE): data for name, data in self.contents().items()
                if name.startswith(BUNDLE)}

    def test_the_bundle_is_valid(self):
        self.assertEqual([], bundle.problems(self.inside_bundle(), LATER))

    def test_a_bundle_that_is_against_the_format_is_found(self):
        changes = {
            r' SeriesMax="2016"': "",                            # a series is missing
            r' SeriesMin="2018"': ' SeriesMin="R18"',
            r' ModuleName="./Contents/2016/KarvelMax.gup"': "",  # a component without its file
            r'"plugins parts"': '"plug-in parts"',
            r' UpgradeCode="[^"]*"': ' UpgradeCode="karvel"',
            r' OS="Win64"': ' OS="Win32"',
            r' ProductType="Application"': "",
            r'"./Contents/2016': r'"..\\2016',
            r"<CompanyDetails[^>]*>": "",
            r"<RuntimeRequirements[^>]*>": "",
            r"</ApplicationPackage>": "",
        }
        for old, new in changes.items():
            files = self.inside_bundle()
            text = files["PackageContents.xml"].decode("utf-8")
            changed = re.sub(old, new, text, count=1)
            self.assertNotEqual(text, changed, old)
            files["PackageContents.xml"] = changed.encode("utf-8")
            found = bundle.problems(files, LATER)
            self.assertTrue(found, old)
            self.assertRegex(found[0], r"^\d+: ", old)

    def test_a_bundle_that_does_not_give_each_release_its_file_is_found(self):
        self.assertEqual(bundle.problems({}, LATER), ["is missing"])

        files = self.inside_bundle()
        del files["Contents/2016/KarvelMax.gup"]
        self.assertEqual(bundle.problems(files, LATER),
                         ["Contents/2016/KarvelMax.gup is not in the bundle"] * 2)

        files = {name: data for name, data in self.inside_bundle().items()
                 if not name.startswith("Contents/icons/")}
        self.assertEqual(set(bundle.problems(files, LATER)), {"Contents/icons/ is not in the bundle"})

        def with_text(old, new):
            files = self.inside_bundle()
            text = files["PackageContents.xml"].decode("utf-8")
            self.assertIn(old, text)
            return bundle.problems(
                {**files, "PackageContents.xml": text.replace(old, new, 1).encode("utf-8")}, LATER)

        self.assertEqual(with_text('SeriesMin="2016" SeriesMax="2016"',
                                   'SeriesMin="2016" SeriesMax="2018"'),
                         ["2016 to 2018 is a range, give each release a row"])
        self.assertEqual(with_text('SeriesMin="2016" SeriesMax="2016"',
                                   'SeriesMin="2017" SeriesMax="2017"'),
                         ["2016 does not load Contents/2016/KarvelMax.gup",
                          "2017 loads Contents/2016/KarvelMax.gup, which is not for it"])
        self.assertEqual(with_text('SeriesMin="2016" SeriesMax="2016"',
                                   'SeriesMin="2015" SeriesMax="2015"'),
                         ["2016 does not load Contents/2016/KarvelMax.gup",
                          "2015 loads Contents/2016/KarvelMax.gup twice"])
        self.assertEqual(with_text("Contents/2018/KarvelMax.gup", "Contents/2016/KarvelMax.gup"),
                         ["2018 does not load Contents/2018/KarvelMax.gup",
                          "2018 loads Contents/2016/KarvelMax.gup, which is not for it"])

        files = self.inside_bundle()
        files["Contents/2017/KarvelMax.gup"] = b""
        self.assertEqual(bundle.problems(files, LATER),
                         ["Contents/2017/KarvelMax.gup is loaded by no release"])

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
        first = self.first_archive()
        self.copy_builds()
        for directory, _, names in os.walk(self.builds):
            for name in names:
                os.utime(os.path.join(directory, name), (1, 1))
        with open(self.made(), "rb") as second:
            self.assertEqual(first, second.read())

    def test_refuses_the_gnu_file(self):
        self.copy_builds()
        shutil.copy(os.path.join(GNU, "plugin", "KarvelMax.gup"), self.build(PRODUCT_BUILD, "plugin"))
        self.refused(r"KarvelMax\.gup:0: it was not built for the host's C\+\+ ABI")

    def test_refuses_the_file_of_another_generation(self):
        self.copy_builds()
        shutil.copy(self.build("msvc-2018", "plugin", "KarvelMax.gup"),
                    self.build("msvc-2016", "plugin"))
        self.refused(r"msvc-2016/plugin/KarvelMax\.gup:0: it announces 0x4e203200, "
                     "hosts of 2016 take 0x42682c00, ")

    def test_refuses_a_file_that_is_no_plugin(self):
        self.copy_builds()
        plugin = self.build(PRODUCT_BUILD, "plugin", "KarvelMax.gup")
        with open(plugin, "rb") as file:
            whole = file.read()
        for damaged in (b"", b"MZ", b"not a program at all" * 20, whole[:600]):
            with open(plugin, "wb") as file:
                file.write(damaged)
            self.refused(r"KarvelMax\.gup:")

    def test_names_a_missing_file(self):
        self.copy_builds()
        os.remove(self.build(PRODUCT_BUILD, "package", "INSTALL.txt"))
        self.refused(r"msvc/package/INSTALL\.txt:0: ")

    def test_no_archive_without_a_file_for_each_host(self):
        for place in ("plugin/KarvelMax.gup", "diagnostics/KarvelReport.gup"):
            plugin = self.build(f"msvc-{LATER[-1].generation}", place)
            os.rename(plugin, plugin + ".away")
            self.refused(rf"msvc-\d{{4}}/{place}:0: ")
            os.rename(plugin + ".away", plugin)


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1])
