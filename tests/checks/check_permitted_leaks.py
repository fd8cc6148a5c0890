#!/usr/bin/env python3
"""Compares the calls that leave something unreleased with the list of permitted ones.

usage: check_permitted_leaks.py SOURCE_ROOT PERMITTED_LEAKS
"""

import collections
import pathlib
import re
import sys

# Where the names are declared and defined, not called.
DEFINITIONS = {
    "bridge/frame/stated_leaks.h",
    "bridge/marshal/held_strings.h",
    "bridge/marshal/held_strings.cpp",
}
CALL = re.compile(r"\b(leaveHeld|leaveAllocated|leaveOpen|leaveStreamOpen|leavePinned)\s*\(")


def calls_in(root):
    """The number of calls by file and name."""
    found = collections.Counter()
    for path in sorted(root.glob("bridge/**/*")):
        name = path.relative_to(root).as_posix()
        if path.suffix not in (".h", ".cpp") or name in DEFINITIONS:
            continue
        code = re.sub(r"//[^\n]*|/\*.*?\*/", "", path.read_text(), flags=re.DOTALL)
        for call in CALL.findall(code):
            found[name, call] += 1
    return found


def permitted_in(path):
    """The same, as the list permits it."""
    permitted = collections.Counter()
    for line in path.read_text().splitlines():
        if not line or line.startswith("#"):
            continue
        file, call, count, reason = line.split(maxsplit=3)
        if not reason:
            sys.exit(f"{path}: {file} {call} has no reason")
        permitted[file, call] += int(count)
    return permitted


def main():
    root, listed = map(pathlib.Path, sys.argv[1:])
    found = calls_in(root)
    permitted = permitted_in(listed)
    if not found:
        sys.exit(f"no calls found under {root}: is it the source root?")
    wrong = 0
    for file, call in sorted(found.keys() | permitted.keys()):
        if found[file, call] != permitted[file, call]:
            wrong += 1
            print(f"{file}: {found[file, call]} x {call}, permitted are {permitted[file, call]}")
    sys.exit(1 if wrong else 0)


main()
