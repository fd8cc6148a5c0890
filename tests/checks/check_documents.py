#!/usr/bin/env python3
"""Checks that what the documents point to is there: links, headings, and paths of this repository.

usage: check_documents.py SOURCE_ROOT
"""

import pathlib
import re
import sys

LINK = re.compile(r"\]\(([^)\s]+)\)")
HEADING = re.compile(r"^#+ (.*)$", re.MULTILINE)
# A path in code style; * stands for any part of a name. Paths below build are made, not kept.
PATH = re.compile(r"`((?:bridge|engine|java|tests|docs|script|bench|cmake)/[\w./*-]+)`")


def anchors(text):
    """The headings of a document as links name them."""
    return {re.sub(r"[^\w -]", "", h.lower()).replace(" ", "-") for h in HEADING.findall(text)}


def wrong_link(document, target):
    if target.startswith(("http:", "https:")):
        return False
    name, _, heading = target.partition("#")
    path = document.parent / name if name else document
    return not path.exists() or (heading and heading not in anchors(path.read_text()))


def main():
    root = pathlib.Path(sys.argv[1])
    documents = sorted([*root.glob("*.md"), *root.glob("docs/*.md")])
    checked, wrong = 0, []
    for document in documents:
        text = document.read_text()
        name = document.relative_to(root)
        links, paths = LINK.findall(text), PATH.findall(text)
        checked += len(links) + len(paths)
        wrong += [f"{name}: {link} leads nowhere" for link in links if wrong_link(document, link)]
        wrong += [f"{name}: there is no {path}" for path in paths if not any(root.glob(path))]
    for complaint in wrong:
        print(complaint)
    if checked == 0:
        sys.exit(f"nothing to check under {root}: is it the source root?")
    print(f"{checked} links and paths in {len(documents)} documents")
    sys.exit(1 if wrong else 0)


main()
