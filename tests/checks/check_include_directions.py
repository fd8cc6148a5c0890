#!/usr/bin/env python3
"""Checks that includes run one way through the rooms of the bridge and of the engine.

usage: check_include_directions.py SOURCE_ROOT
"""

import pathlib
import re
import sys

# Of keydb, the rooms above it take only the routines that it shares.
SHARED_KEYDB = ["bridge/keydb/certificate_file.h", "bridge/keydb/entries_by_label.h"]

# What each room may include of this repository: rooms, or single headers.
MAY_INCLUDE = {
    "bridge/kmlib": [],
    "bridge/frame": ["bridge/kmlib"],
    "bridge/marshal": ["bridge/frame", "bridge/kmlib"],
    "bridge/keydb": ["bridge/marshal", "bridge/frame", "bridge/kmlib"],
    "bridge/token": ["bridge/marshal", "bridge/frame", "bridge/kmlib", *SHARED_KEYDB],
    "bridge/certstore": ["bridge/marshal", "bridge/frame", "bridge/kmlib", *SHARED_KEYDB],
    "bridge/legacy": ["bridge"],
    "engine/sys": ["bridge/kmlib"],
    "engine/cms": ["engine/sys", "bridge/kmlib"],
    "engine/km": ["engine/cms", "engine/sys", "bridge/kmlib"],
}
INCLUDE = re.compile(r'^\s*#\s*include\s*"([^"]+)"', re.MULTILINE)


def allows(room, included):
    """Whether a file of the room may include that header."""
    allowed = [room, *MAY_INCLUDE[room]]
    return any(included == entry or included.startswith(entry + "/") for entry in allowed)


def main():
    root = pathlib.Path(sys.argv[1])
    checked = 0
    wrong = []
    for path in sorted([*root.glob("bridge/**/*"), *root.glob("engine/**/*")]):
        if path.suffix not in (".h", ".c", ".cpp"):
            continue
        name = path.relative_to(root).as_posix()
        room = "/".join(name.split("/")[:2])
        if room not in MAY_INCLUDE:
            wrong.append(f"{name}: lies in no known room")
            continue
        checked += 1
        for included in INCLUDE.findall(path.read_text()):
            # A header with no folder is a generated one, or a neighbour inside kmlib.
            if "/" in included and not allows(room, included):
                wrong.append(f"{name}: must not include {included}")
    for complaint in wrong:
        print(complaint)
    if checked == 0:
        sys.exit(f"nothing to check under {root}: is it the source root?")
    sys.exit(1 if wrong else 0)


main()
