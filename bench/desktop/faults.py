# SPDX-FileCopyrightText: The Quillet authors
# SPDX-License-Identifier: Apache-2.0
"""How long Quillet's own window takes at the longest to answer while something around it fails: the
desktop tests of faults watch that, and this reads it off them."""

import os
import pathlib
import re
import subprocess
import sys

from report import Row

TESTS = pathlib.Path(__file__).resolve().parents[2] / "tests" / "desktop" / "faults"
LIMIT = 250
LINE = re.compile(r"::test_(\S+)|longest pause (\d+) ms")


def longest_pauses(printed):
    """The pauses in milliseconds that each test has printed."""
    pauses, name = {}, None
    for test, pause in LINE.findall(printed):
        if test:
            name = test
        else:
            pauses.setdefault(name, []).append(int(pause))
    return pauses


def measure(setting):
    chosen = ["-k", "impossible-role"] if setting.quick else []
    result = subprocess.run(
        [
            "/usr/bin/python3",
            "-m",
            "pytest",
            "-p",
            "no:cacheprovider",
            "-v",
            "-s",
            *chosen,
            str(TESTS),
        ],
        stdout=subprocess.PIPE,
        text=True,
        check=False,
        env=dict(os.environ, QUILLET_BUILD_DIR=str(setting.build)),
    )
    if result.returncode:
        print(result.stdout, file=sys.stderr)
        raise RuntimeError("a test of the faults has failed")
    return [
        Row(
            f"longest answer, {name.replace('_', ' ')}",
            f"<= {LIMIT} ms",
            "ms",
            pauses,
            reached=max(pauses) <= LIMIT,
            note=f"at most {max(pauses)} ms",
        )
        for name, pauses in longest_pauses(result.stdout).items()
    ]
