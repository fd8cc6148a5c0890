#!/usr/bin/env python3
"""Runs the README's sessions as they stand there, and compares what they print.

usage: run_readme.py README BUILD_FOLDER PRESET

A session is a block of code with commands after "$ ", each followed by what it prints; all of them
run in one shell. The Java program stands beside them under the name of its class. What differs from
run to run (serial numbers, times, digests) is masked on both sides.
"""

import difflib
import pathlib
import re
import subprocess
import sys
import tempfile

BLOCK = re.compile(r"^```(\w*)\n(.*?)^```$", re.DOTALL | re.MULTILINE)
MASKS = [
    (re.compile(r"\b(?:[0-9A-F]{2}:){31}[0-9A-F]{2}\b"), "DIGEST"),
    (re.compile(r"\b[0-9a-f]{32}\b"), "SERIAL"),
    (re.compile(r"\b\d{4}-\d{2}-\d{2}T\d{2}:\d{2}:\d{2}Z"), "TIME"),
    (re.compile(r"\b[A-Z][a-z]{2} \d{1,2}, \d{4}\b"), "DATE"),
]


def masked(text):
    for pattern, name in MASKS:
        text = pattern.sub(name, text)
    return [line.rstrip() for line in text.splitlines()]


def main():
    readme, build_folder, preset = sys.argv[1:]
    blocks = BLOCK.findall(pathlib.Path(readme).read_text(encoding="utf-8"))
    sessions = [text for _, text in blocks if text.startswith("$ ")]
    programs = [text for language, text in blocks if language == "java"]
    if not sessions or not programs:
        sys.exit(f"{readme} has {len(sessions)} sessions and {len(programs)} Java programs")

    with tempfile.TemporaryDirectory() as work:
        folder = pathlib.Path(work)
        # Where a clone has it after the build.
        (folder / "build").mkdir()
        (folder / "build" / preset).symlink_to(pathlib.Path(build_folder).resolve())
        for program in programs:
            name = re.search(r"^class (\w+)", program, re.MULTILINE).group(1)
            (folder / f"{name}.java").write_text(program, encoding="utf-8")

        expected = "".join(sessions)
        # The shell tells each command before it runs, as it stands in the README.
        script = "exec 2>&1\n"
        for line in expected.splitlines():
            if line.startswith("$ "):
                quoted = line.replace("'", "'\\''")
                # $? is to stay the one of the command before.
                script += f"told=$?; printf '%s\\n' '{quoted}'; (exit $told)\n{line[2:]}\n"
        told = subprocess.run(["bash", "-c", script], cwd=work, stdout=subprocess.PIPE,
                              stdin=subprocess.DEVNULL, timeout=600, check=False)

    lines = masked(expected), masked(told.stdout.decode("utf-8", "replace"))
    different = list(difflib.unified_diff(*lines, "README.md", "what came", lineterm=""))
    print("\n".join(different) or f"the sessions run as they stand: {len(lines[0])} lines")
    sys.exit(1 if different else 0)


main()
