#!/usr/bin/env python3
"""Each link of a Markdown or HTML file to another file leads to one that is there, and to a heading or mark that is in it.

    links.py FOLDER...
"""
import functools
import html.parser
import os
import pathlib
import re
import sys
import urllib.parse

PASSED_OVER = re.compile(r"^(build.*|\..*|demo-run|__pycache__)$")


class Page(html.parser.HTMLParser):
    """The links of an HTML page, and what they can lead to."""

    def __init__(self, text):
        super().__init__()
        self.links, self.marks = [], set()
        self.feed(text)

    def handle_starttag(self, tag, attrs):
        for name, value in attrs:
            if name in ("href", "src"):
                self.links.append(value or "")
            elif name == "id" or (name == "name" and tag == "a"):
                self.marks.add(value)


def mark_of_heading(text):
    """As the pages that show Markdown make it: small letters, a dash for each blank, no other signs."""
    text = re.sub(r"\[([^]]*)\]\([^)]*\)", r"\1", text).strip().lower()
    return re.sub(r"[^\w\- ]", "", text).replace(" ", "-")


@functools.cache
def read(path):
    """Links with their lines, and marks."""
    text = path.read_text()
    if path.suffix == ".html":
        page = Page(text)
        return [(link, 0) for link in page.links], page.marks
    links, marks, is_code = [], set(), False
    for number, line in enumerate(text.splitlines(), 1):
        is_code ^= line.lstrip().startswith("```")
        if is_code or line.startswith("    "):
            continue
        if heading := re.match(r"#+ +(.*)", line):
            mark, count = mark_of_heading(heading.group(1)), 1
            while mark in marks:
                mark, count = f"{mark_of_heading(heading.group(1))}-{count}", count + 1
            marks.add(mark)
        line = re.sub(r"`[^`]*`", lambda code: "." * len(code.group(0)), line)
        links += [(link, number) for link in re.findall(r"\]\(([^)\s]+)[^)]*\)", line)]
        links += [(link, number) for link in re.findall(r"^\[[^]]+\]: +(\S+)", line)]
    return links, marks


def faults_in(folder):
    """A line for each link that leads nowhere, or out of the folder."""
    folder, count = folder.resolve(), 0
    for top, folders, names in os.walk(folder):
        folders[:] = sorted(name for name in folders if not PASSED_OVER.match(name))
        for path in sorted(pathlib.Path(top, name) for name in names if name.endswith((".md", ".html"))):
            for link, line in read(path)[0]:
                parts = urllib.parse.urlsplit(link)
                if parts.scheme or parts.netloc:
                    continue
                count += 1
                place = f"{path.relative_to(folder)}:{line}: {link}: "
                target = (path.parent / urllib.parse.unquote(parts.path)).resolve() if parts.path else path
                if not target.is_relative_to(folder):
                    yield place + "leads out of the folder"
                elif not target.exists():
                    yield place + "no such file"
                elif parts.fragment and target.suffix in (".md", ".html") and urllib.parse.unquote(parts.fragment) not in read(target)[1]:
                    yield place + "no such heading"
    if count == 0:
        yield f"{folder}: no links at all"


def main(folders):
    faults = [fault for folder in folders for fault in faults_in(pathlib.Path(folder))]
    print("\n".join(faults))
    return 1 if faults else 0


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))
