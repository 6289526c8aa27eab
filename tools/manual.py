#!/usr/bin/env python3
"""Makes the operator's manual: a page of HTML from each page of Markdown, with the pages before and after at its head,
and pages.json, which the help window lists and searches.

    tools/manual.py docs/manual build/release/share/manual

Fails on a dead link, a missing picture, a picture that no page shows, and a page that no other page links.
"""

import argparse
import html
import html.parser
import json
import os
import re
import shutil
import sys

import markdown

ROOT = os.path.dirname(os.path.dirname(os.path.abspath(__file__)))
PALETTE = os.path.join(ROOT, "src", "desktop", "palette.json")
PICTURES = "pictures"
SOURCE = re.compile(r"(\d\d)-([a-z-]+)\.md")
FRONT = "index.html"

# No type beside the style sheet: a browser takes it all the same, and the help window leaves it for its own.
PAGE = """<!DOCTYPE html>
<html lang="en">
<head>
<meta charset="utf-8">
<meta name="viewport" content="width=device-width">
<title>{title} - Velgrove</title>
<link rel="stylesheet" href="manual.css">
</head>
<body>
{pager}
{body}
{pager}
</body>
</html>
"""


class Wrong(Exception):
    """The manual can't be made; says why, a fault a line."""


class Reader(html.parser.HTMLParser):
    """What a page holds: words, links, pictures, places that can be linked."""

    def __init__(self, text):
        super().__init__()
        self.words, self.links, self.pictures, self.places = [], [], [], set()
        self.feed(text)

    def handle_starttag(self, tag, attrs):
        given = dict(attrs)
        if "id" in given:
            self.places.add(given["id"])
        if tag == "a" and "href" in given:
            self.links.append(given["href"])
        if tag == "img":
            self.pictures.append(given["src"])

    def handle_data(self, data):
        self.words.append(data)

    @property
    def text(self):
        return " ".join("".join(self.words).split())


class Page:
    """A page: its file, its title, and what stands in it."""

    def __init__(self, folder, source):
        self.source = source
        self.file = SOURCE.fullmatch(source)[2] + ".html"
        with open(os.path.join(folder, source), encoding="utf-8") as file:
            text = file.read()
        if not text.startswith("# "):
            raise Wrong(f"{source}: doesn't begin with its title")
        self.title = text.split("\n", 1)[0][2:].strip()
        body = markdown.markdown(text, extensions=["tables", "fenced_code", "toc", "sane_lists"])
        self.body = re.sub(r'href="\d\d-([a-z-]+)\.md', r'href="\1.html', body)
        self.read = Reader(self.body)

    @property
    def searched(self):
        """The text below the title. The first page names all the others, and would be found for any word."""
        return "" if self.file == FRONT else self.read.text.removeprefix(self.title).strip()


def pager(pages, at):
    def link(page, words):
        return f'<a href="{page.file}">{words}</a>'
    parts = []
    if at > 0:
        parts.append(link(pages[at - 1], "&larr; " + html.escape(pages[at - 1].title)))
        parts.append(link(pages[0], "Contents"))
    if at + 1 < len(pages):
        parts.append(link(pages[at + 1], html.escape(pages[at + 1].title) + " &rarr;"))
    return '<p class="pager">' + " &nbsp;|&nbsp; ".join(parts) + "</p>"


def faults(pages, pictures):
    """What is wrong with the pages, a line each."""
    files = {page.file: page for page in pages}
    linked, shown = set(), set()
    for page in pages:
        for link in page.read.links:
            file, _, place = link.partition("#")
            target = files.get(file or page.file)
            if target is None or (place and place not in target.read.places):
                yield f"{page.source}: dead link {link}"
            elif target is not page:
                linked.add(target.file)
        for picture in page.read.pictures:
            shown.add(picture)
            if picture not in pictures:
                yield f"{page.source}: missing picture {picture}"
    for page in pages:
        if page.file != FRONT and page.file not in linked:
            yield f"{page.source}: no page links it"
    for picture in sorted(pictures - shown):
        yield f"{picture}: no page shows it"


def style(folder):
    """The style sheet, with the desk's colours for their names."""
    with open(PALETTE, encoding="utf-8") as file:
        colours = json.load(file)
    with open(os.path.join(folder, "manual.css"), encoding="utf-8") as file:
        return re.sub(r"@(\w+)", lambda name: colours.get(name[1], name[0]), file.read())


def write(folder, name, text):
    with open(os.path.join(folder, name), "w", encoding="utf-8") as file:
        file.write(text)


def make(folder, to):
    """Reads the manual in a folder and lays it into another, anew."""
    sources = sorted(name for name in os.listdir(folder) if name.endswith(".md"))
    strange = [name for name in sources if not SOURCE.fullmatch(name)]
    if strange:
        raise Wrong(f"{strange[0]}: isn't named NN-name.md")
    pages = [Page(folder, name) for name in sources]
    if not pages or pages[0].file != FRONT:
        raise Wrong("the first page isn't index")
    held = os.path.join(folder, PICTURES)
    pictures = {f"{PICTURES}/{name}" for name in os.listdir(held)} if os.path.isdir(held) else set()
    wrong = list(faults(pages, pictures))
    if wrong:
        raise Wrong("\n".join(wrong))

    shutil.rmtree(to, ignore_errors=True)
    os.makedirs(os.path.join(to, PICTURES))
    for picture in pictures:
        shutil.copy(os.path.join(folder, picture), os.path.join(to, picture))
    write(to, "manual.css", style(folder))
    for at, page in enumerate(pages):
        write(to, page.file, PAGE.format(title=html.escape(page.title), pager=pager(pages, at), body=page.body))
    write(to, "pages.json", json.dumps([{"file": page.file, "title": page.title, "text": page.searched}
                                        for page in pages], indent=1))


def main():
    parser = argparse.ArgumentParser(description=__doc__.split("\n\n", 1)[0])
    parser.add_argument("manual", help="the folder of the Markdown pages")
    parser.add_argument("to", help="where the pages go; what stood there goes")
    options = parser.parse_args()
    try:
        make(options.manual, options.to)
    except Wrong as wrong:
        sys.exit(f"{wrong}")


if __name__ == "__main__":
    main()
