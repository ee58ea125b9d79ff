#!/usr/bin/env python3
# SPDX-FileCopyrightText: 2026 The OrvaUtils authors
# SPDX-License-Identifier: MIT
"""Checks a built reference, for what Doxygen itself does not look at.

Usage: check.py FOLDER    the folder with xml, html, help and orvautils.qch

- every public class, function, enumeration, value and member is described, and every parameter is
  named in the sentences about its function, about another form of it, or about the class;
- every link within the pages leads to a file, and to a place in it, that exists;
- the Qt Help file holds every page, whole, and under the identifier that Qt Creator looks up for F1
  ("Class", "Class::function") the place where that is described.

Prints "N classes with M functions" and fails with a list of what is wrong.
"""

import html.parser
import pathlib
import re
import sqlite3
import sys
import urllib.parse
import xml.etree.ElementTree
import zlib

DESCRIPTIONS = ("briefdescription", "detaileddescription")


def text_of(element):
    return " ".join("".join(element.itertext()).split())


def is_described(element):
    return any(text_of(element.find(name)) for name in DESCRIPTIONS)


def named_in(member):
    """The words that a description sets apart as the names of parameters."""
    return {text_of(word).strip(",.:;") for name in DESCRIPTIONS for word in member.find(name).iter("emphasis")}


class Described:
    """What the XML says of the public interface."""

    def __init__(self, folder, problems):
        self.identifiers = {}  # "Class::function" -> {page}
        self.classes = 0
        self.functions = 0
        for path in sorted(folder.glob("class*.xml")) + sorted(folder.glob("struct*.xml")):
            compound = xml.etree.ElementTree.parse(path).getroot().find("compounddef")
            if compound.get("prot") == "public":
                self.read_class(compound, problems)

    def read_class(self, compound, problems):
        name = compound.findtext("compoundname")
        page = compound.get("id") + ".html"
        self.identifiers[name] = {page}
        self.classes += 1
        if not is_described(compound):
            problems.append(f"{name} is not described")
        self.related = compound.findall("sectiondef[@kind='related']/memberdef")
        members = [member for section in compound.findall("sectiondef")
                   for member in section.findall("memberdef") if member.get("prot") != "private"]
        for member in members:
            self.read_member(compound, member, members, problems)

    def read_member(self, compound, member, siblings, problems):
        scope = compound.findtext("compoundname")
        page = compound.get("id") + ".html"
        kind = member.get("kind")
        own = member.findtext("name")
        related = member in self.related
        name = own if related else f"{scope}::{own}"
        if not is_described(member):
            problems.append(f"{name} is not described")
        if not related or kind == "define":
            self.identifiers.setdefault(name, set()).add(page)
        for value in member.findall("enumvalue"):
            self.identifiers.setdefault(f"{scope}::{value.findtext('name')}", set()).add(page)
            if not is_described(value):
                problems.append(f"{scope}::{value.findtext('name')} is not described")
        if kind not in ("function", "signal", "slot"):
            return
        self.functions += 1
        told = named_in(compound)
        for sibling in siblings:
            if sibling.findtext("name") == own:
                told |= named_in(sibling)
        for parameter in member.findall("param"):
            declared = parameter.findtext("declname")
            if declared and declared not in told and self.needs_words(member, parameter):
                problems.append(f"{name}: nothing is said of {declared}")

    @staticmethod
    def needs_words(member, parameter):
        """The other side of an operator, the one parameter and the owner speak for themselves."""
        if member.findtext("name").startswith("operator") or len(member.findall("param")) == 1:
            return False
        return parameter.findtext("declname") != "parent"


class Page(html.parser.HTMLParser):
    """The links and anchors of one page."""

    def __init__(self, path):
        super().__init__()
        self.links = []
        self.anchors = set()
        self.feed(path.read_text(encoding="utf-8"))

    def handle_starttag(self, tag, attributes):
        for key, value in attributes:
            if key in ("href", "src", "data") and value:
                self.links.append(value)
            elif key in ("id", "name") and value:
                self.anchors.add(value)


def check_links(folder, problems):
    pages = {path: Page(path) for path in folder.rglob("*.html")}
    for path, page in pages.items():
        for link in page.links:
            url = urllib.parse.urlsplit(link)
            if url.scheme or url.netloc:
                continue
            target = (path.parent / urllib.parse.unquote(url.path)).resolve() if url.path else path
            if not target.exists():
                problems.append(f"{path.name}: no file for {link}")
            elif url.fragment and target in pages and url.fragment not in pages[target].anchors:
                problems.append(f"{path.name}: no place for {link}")


def check_help(path, folder, described, problems):
    database = sqlite3.connect(f"file:{path}?mode=ro", uri=True)
    names = dict(database.execute("SELECT FileId, Name FROM FileNameTable"))
    # A file is kept as Qt compresses bytes: their number in four bytes, then a zlib stream.
    files = {names[file]: zlib.decompress(data[4:]) if data else b""
             for file, data in database.execute("SELECT Id, Data FROM FileDataTable")}
    for page in folder.glob("*.html"):
        if files.get(page.name) != page.read_bytes():
            problems.append(f"{path.name}: {page.name} is not in it as it stands")

    places = {}
    for identifier, file, anchor in database.execute(
            "SELECT Identifier, FileId, Anchor FROM IndexTable"):
        places.setdefault(identifier, set()).add(names[file])
        content = files.get(names[file], b"").decode()
        if anchor and not re.search(rf'(id|name)="{re.escape(anchor)}"', content):
            problems.append(f"{path.name}: {identifier} leads to no place of {names[file]}")
    for identifier, pages in described.identifiers.items():
        if not pages & places.get(identifier, set()):
            problems.append(f"{path.name}: F1 on {identifier} finds nothing")


def main():
    if len(sys.argv) != 2:
        sys.exit(__doc__)
    folder = pathlib.Path(sys.argv[1])
    problems = []
    described = Described(folder / "xml", problems)
    check_links(folder / "html", problems)
    check_links(folder / "help", problems)
    check_help(folder / "orvautils.qch", folder / "help", described, problems)
    for problem in problems:
        print(problem, file=sys.stderr)
    if problems:
        sys.exit(f"{len(problems)} problems in the reference")
    print(f"{described.classes} classes with {described.functions} functions")


main()
