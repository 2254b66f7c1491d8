"""The pages that users get with the archive, made from the Markdown of the repository."""

import base64
import html
import os
import re
import subprocess

ROOT = os.path.dirname(os.path.dirname(os.path.dirname(os.path.abspath(__file__))))

# Page -> its source and, where only a part of it is wanted, the heading of that part.
PAGES = {
    "user-guide.html": ("docs/user-guide.md", None),
    "cheat-sheet.html": ("README.md", "The gestures on one screen"),
    "CHANGELOG.html": ("CHANGELOG.md", None),
    "diagnostics/report.html": ("docs/troubleshooting.md", "A report and a recording"),
}
PRINTED = ("cheat-sheet.html", "cheat-sheet.pdf")

STYLE = """
body { font: 15px/1.45 Verdana, "DejaVu Sans", sans-serif; color: #20262c; max-width: 60em;
       margin: 1.5em auto; padding: 0 1em; }
h1, h2, h3 { line-height: 1.2; color: #115e68; }
h2 { border-bottom: 1px solid #b8c4c8; padding-bottom: .2em; margin-top: 2em; }
img { max-width: 100%; }
table { border-collapse: collapse; margin: 1em 0; }
th, td { border: 1px solid #b8c4c8; padding: .3em .6em; text-align: left; vertical-align: top; }
th { background: #e2ecee; }
td img { width: 32px; max-width: none; vertical-align: middle; }
code, pre { font-family: Consolas, "DejaVu Sans Mono", monospace; font-size: .92em; }
pre { background: #eef2f3; padding: .7em 1em; overflow-x: auto; }
footer { margin-top: 3em; font-size: .85em; color: #5a666c; }
@media screen and (min-width: 70em) {
  .sheet { max-width: 82em; display: grid; grid-template-columns: auto 1fr; column-gap: 2em; }
  .sheet h1, .sheet footer { grid-column: 1 / 3; }
  .sheet h1 + p { grid-row: 2 / 4; margin: 0; }
  .sheet p > img { height: 36em; }
  .sheet table { margin: 0; align-self: start; }
}
@page { size: A4; margin: 1.2cm 1.5cm; }
@media print {
  body { font-size: 9.5pt; margin: 0; padding: 0; max-width: none; }
  .sheet p > img { display: block; height: 11.5cm; margin: 0 auto; }
  footer { margin-top: 1em; }
}
"""


class PageError(Exception):
    pass


def run(command, text=None):
    """Standard output of a program of one of Debian's packages."""
    # The same input gives the same bytes: neither the time nor the order of a set goes in.
    environment = {**os.environ, "SOURCE_DATE_EPOCH": "315532800", "PYTHONHASHSEED": "0",
                   "PYTHONIOENCODING": "utf-8"}
    try:
        done = subprocess.run(command, input=text.encode("utf-8") if text else None,
                              stdout=subprocess.PIPE, stderr=subprocess.PIPE, env=environment,
                              check=False)
    except OSError:
        raise PageError(f"{command[0]}:0: cannot be run, install its package (python3-markdown, "
                        "weasyprint)") from None
    if done.returncode != 0:
        raise PageError(f"{command[0]}:0: {done.stderr.decode('utf-8', 'replace').strip()}")
    return done.stdout


def read(path):
    with open(os.path.join(ROOT, path), "rb") as file:
        return file.read()


def section(text, heading):
    """The part below a heading of the second level, which becomes the page's title."""
    match = re.search(rf"^## {re.escape(heading)}\n(.*?)(?=^## |\Z)", text, re.M | re.S)
    if not match:
        raise PageError(f"there is no heading \"{heading}\"")
    return f"# {heading}\n{match.group(1)}"


def slug(heading):
    """The anchor that the usual viewers of Markdown give a heading."""
    return re.sub(r"[^\w\- ]", "", heading.strip().lower()).replace(" ", "-")


def add_anchors(body):
    def with_id(match):
        text = html.unescape(re.sub(r"<[^>]*>", "", match.group(2)))
        return f'<h{match.group(1)} id="{slug(text)}">{match.group(2)}</h{match.group(1)}>'
    return re.sub(r"<h([1-6])>(.*?)</h\1>", with_id, body)


class Links:
    """Leads the links of a page to what is in the archive, and notes its pictures."""

    def __init__(self, source, page):
        self.folder = os.path.dirname(source)
        self.up = "../" * page.count("/")
        self.pictures = {}

    def picture(self, match):
        path = os.path.normpath(os.path.join(self.folder, match.group(1)))
        name = "images/" + os.path.basename(path)
        self.pictures[name] = path
        return f'src="{self.up}{name}"'

    def link(self, match):
        target, text = match.groups()
        if re.match(r"[a-z]+:", target) or target.startswith("#"):
            return match.group(0)
        path, _, anchor = target.partition("#")
        path = os.path.normpath(os.path.join(self.folder, path))
        for page, (source, part) in PAGES.items():
            if source == path and part is None:
                anchor = "#" + anchor if anchor else ""
                return f'<a href="{self.up}{page}{anchor}">{text}</a>'
        # What is not in the archive is named, without a link that leads nowhere.
        return text

    def lead(self, body):
        body = re.sub(r'src="([^"]+)"', self.picture, body)
        return re.sub(r'<a href="([^"]+)">(.*?)</a>', self.link, body, flags=re.S)


def make_page(name, copyright_line):
    """The page's text, and its pictures: name in the archive -> path in the repository."""
    source, part = PAGES[name]
    text = read(source).decode("utf-8")
    if part:
        text = section(text, part)
    text = re.sub(r"^<!--.*?-->\n", "", text, flags=re.M | re.S)
    title = re.match(r"# (.*)\n", text).group(1)
    if not title.startswith("KarvelMax"):
        title = f"KarvelMax: {title[0].lower()}{title[1:]}"
    body = run(["markdown_py", "-x", "tables", "-x", "fenced_code"], text).decode("utf-8")
    kind = ' class="sheet"' if name == PRINTED[0] else ""
    links = Links(source, name)
    body = links.lead(add_anchors(body))
    page = (f'<!DOCTYPE html>\n<html lang="en">\n<head>\n<meta charset="utf-8">\n'
            f"<title>{html.escape(title)}</title>\n<style>{STYLE}</style>\n</head>\n"
            f"<body{kind}>\n"
            f"{body}\n<footer>{html.escape(copyright_line)}. NOTICE.txt has more.</footer>\n"
            "</body>\n</html>\n")
    return page, links.pictures


def print_page(page, pictures):
    """The page as PDF, without links: paper has none."""
    page = re.sub(r"</?a\b[^>]*>", "", page)
    # Within the page: the place of a picture's file would become a part of the result.
    for name, path in pictures.items():
        data = base64.b64encode(read(path)).decode("ascii")
        page = page.replace(f'src="{name}"', f'src="data:image/png;base64,{data}"')
    return run(["weasyprint", "--quiet", "-", "-"], page)


def make(copyright_line):
    """All pages and pictures by their names in the archive."""
    files = {}
    for name in PAGES:
        try:
            page, pictures = make_page(name, copyright_line)
            for picture, path in pictures.items():
                files[picture] = read(path)
        except OSError as error:
            raise PageError(f"{error.filename}:0: {error.strerror}") from None
        files[name] = page.replace("\n", "\r\n").encode("utf-8")
        if name == PRINTED[0]:
            files[PRINTED[1]] = print_page(page, pictures)
    return files
