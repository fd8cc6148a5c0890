#!/usr/bin/env python3
"""Checks that includes run one way through the rooms of the bridge and of the engine, and that no
units include each other in a circle. A unit is a header with the source file of its name.

usage: check_include_directions.py SOURCE_ROOT
"""

import pathlib
import re
import sys

CODES = "bridge/kmlib/zelkm_codes.h"

# Of keydb, the rooms above it take only the routines that it shares.
SHARED_KEYDB = ["bridge/keydb/certificate_file.h", "bridge/keydb/entries_by_label.h"]

# What each room may include of this repository beside itself: rooms, or single headers. Only the
# engine's face knows the operations and the records of the C interface.
BELOW_KM = ["engine/cms", "engine/cms/pkcs12", "engine/sys", CODES]
MAY_INCLUDE = {
    "bridge/kmlib": [],
    "bridge/frame": ["bridge/kmlib"],
    "bridge/marshal": ["bridge/frame", "bridge/kmlib"],
    "bridge/keydb": ["bridge/marshal", "bridge/frame", "bridge/kmlib"],
    "bridge/token": ["bridge/marshal", "bridge/frame", "bridge/kmlib", *SHARED_KEYDB],
    "bridge/certstore": ["bridge/marshal", "bridge/frame", "bridge/kmlib", *SHARED_KEYDB],
    "bridge/legacy": ["bridge"],
    "engine/sys": [CODES],
    "engine/cms": ["engine/sys", CODES],
    "engine/cms/pkcs12": ["engine/cms", "engine/sys", CODES],
    "engine/km/store": BELOW_KM,
    "engine/km/keydb": ["engine/km/store", *BELOW_KM],
    "engine/km/token": ["engine/km/store", *BELOW_KM],
    "engine/km/certstore": ["engine/km/store", *BELOW_KM],
    "engine/km/work": ["engine/km/keydb", "engine/km/store", *BELOW_KM],
    "engine/km/face": ["engine/km", *BELOW_KM, "bridge/kmlib"],
}
INCLUDE = re.compile(r'^\s*#\s*include\s*"([^"]+)"', re.MULTILINE)


def room_of(name):
    """The innermost room that a file or header lies in; None when it lies in none."""
    folder = name.rpartition("/")[0]
    while folder and folder not in MAY_INCLUDE:
        folder = folder.rpartition("/")[0]
    return folder or None


def allows(room, included):
    """Whether a file of the room may include that header."""
    home = room_of(included)
    for entry in [room, *MAY_INCLUDE[room]]:
        if included == entry or home == entry:
            return True
        # A room that is named stands for the rooms in it too, where it is none with walls itself.
        if entry not in MAY_INCLUDE and included.startswith(entry + "/"):
            return True
    return False


def unit_of(name):
    """A header and the source file of its name are one unit."""
    return name.rpartition(".")[0]


def circles(uses):
    """The circles of a graph that is given as node -> nodes: Tarjan's strongly connected parts."""
    index, low, on_stack, stack, found = {}, {}, set(), [], []

    def visit(node):
        index[node] = low[node] = len(index)
        stack.append(node)
        on_stack.add(node)
        for other in sorted(uses.get(node, ())):
            if other not in index:
                visit(other)
                low[node] = min(low[node], low[other])
            elif other in on_stack:
                low[node] = min(low[node], index[other])
        if low[node] == index[node]:
            part = []
            while not part or part[-1] != node:
                part.append(stack.pop())
                on_stack.discard(part[-1])
            if len(part) > 1:
                found.append(sorted(part))

    sys.setrecursionlimit(10000)
    for node in sorted(uses):
        if node not in index:
            visit(node)
    return found


def main():
    root = pathlib.Path(sys.argv[1])
    uses = {}
    wrong = []
    for path in sorted([*root.glob("bridge/**/*"), *root.glob("engine/**/*")]):
        if path.suffix not in (".h", ".c", ".cpp"):
            continue
        name = path.relative_to(root).as_posix()
        room = room_of(name)
        if room is None:
            wrong.append(f"{name}: lies in no known room")
            continue
        unit = uses.setdefault(unit_of(name), set())
        for included in INCLUDE.findall(path.read_text()):
            # A header with no folder is a generated one, or a neighbour inside kmlib.
            if "/" not in included:
                continue
            if unit_of(included) != unit_of(name):
                unit.add(unit_of(included))
            if not allows(room, included):
                wrong.append(f"{name}: must not include {included}")
    for part in circles(uses):
        wrong.append("units in a circle: " + ", ".join(part))
    for complaint in wrong:
        print(complaint)
    if not uses:
        sys.exit(f"nothing to check under {root}: is it the source root?")
    sys.exit(1 if wrong else 0)


main()
