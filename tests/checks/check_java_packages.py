#!/usr/bin/env python3
"""Checks that the Java packages use each other one way, without any circle.

usage: check_java_packages.py JAVA_ROOT
"""

import pathlib
import re
import sys

BASIC = "com.nelo.zel.vosmar.basic"
LEGACY = "com.nelo.security.cmskeystore"
INTERNAL = "com.nelo.zel.vosmar.internal"
ITEM = "com.nelo.zel.vosmar.item"
CLI = "com.nelo.zel.vosmar.cli"
OPTIONS, VIEW, COMMAND = f"{CLI}.options", f"{CLI}.view", f"{CLI}.command"
NOUNS = [f"{CLI}.{noun}" for noun in ("cert", "db", "key", "pfx", "store", "token")]

# What each package may use of this module, from the ground floor up. The nouns of the command line
# know nothing of each other.
MAY_USE = {
    INTERNAL: [],
    ITEM: [],
    BASIC: [INTERNAL, ITEM],
    LEGACY: [BASIC, INTERNAL, ITEM],
    OPTIONS: [BASIC],
    VIEW: [BASIC],
    COMMAND: [OPTIONS, VIEW, BASIC],
    **{noun: [COMMAND, OPTIONS, VIEW, BASIC] for noun in NOUNS},
    CLI: [*NOUNS, OPTIONS, VIEW, BASIC],
}
COMMENT = re.compile(r"/\*.*?\*/|//[^\n]*", re.DOTALL)
PACKAGE = re.compile(r"^package ([\w.]+);", re.MULTILINE)
# Names with all their packages are found in imports and in the midst of the code alike.
QUALIFIED = re.compile(r"\b(com\.nelo(?:\.[a-z]\w*)+)\.[A-Z*]")


def used_packages(root):
    """For each package, the files that use another package of this module, by that package."""
    used = {}
    for path in sorted(root.rglob("*.java")):
        if path.name == "module-info.java":
            continue
        code = COMMENT.sub("", path.read_text())
        named = PACKAGE.search(code)
        package = named[1] if named else path.name
        arrows = used.setdefault(package, {})
        for other in set(QUALIFIED.findall(code)) - {package}:
            arrows.setdefault(other, []).append(path.relative_to(root).as_posix())
    return used


def find_circle(packages, arrows):
    """A list of packages each of which uses the next, the last one the first; or None."""
    done = set()

    def visit(package, way):
        if package in way:
            return way[way.index(package) :]
        if package in done:
            return None
        for other in sorted(arrows.get(package, ())):
            circle = visit(other, [*way, package])
            if circle:
                return circle
        done.add(package)
        return None

    for package in packages:
        circle = visit(package, [])
        if circle:
            return circle
    return None


def main():
    used = used_packages(pathlib.Path(sys.argv[1]))
    wrong = []
    for package, arrows in used.items():
        if package not in MAY_USE:
            wrong.append(f"{package}: is no known package")
            continue
        for other, files in arrows.items():
            if other not in MAY_USE[package]:
                wrong.extend(f"{file}: must not use {other}" for file in files)
    for arrows in (used, MAY_USE):
        circle = find_circle(arrows, arrows)
        if circle:
            wrong.append("a circle: " + " -> ".join([*circle, circle[0]]))
    for complaint in wrong:
        print(complaint)
    if not used:
        sys.exit(f"nothing to check under {sys.argv[1]}: is it the root of the Java sources?")
    sys.exit(1 if wrong else 0)


main()
