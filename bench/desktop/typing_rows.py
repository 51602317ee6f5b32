# SPDX-FileCopyrightText: The Quillet authors
# SPDX-License-Identifier: Apache-2.0
"""The rows of typing, from the command that measures typing."""

import json
import pathlib
import statistics
import subprocess
import sys
import tempfile

from report import Row

COMMAND = pathlib.Path(__file__).resolve().parents[1] / "typing" / "typing_bench.py"
GOALS = {"latin": 3000, "line": 3000, "long": 3000}
OTHER_GOAL = 1000
LAYOUTS = "us,de,fr,ru"


def samples_of(setting, *arguments):
    with tempfile.NamedTemporaryFile(suffix=".json") as file:
        # Fails where a text was not exact; that is a row of ours, not an accident.
        subprocess.run(
            [
                sys.executable,
                str(COMMAND),
                "--build",
                str(setting.build),
                "--json",
                file.name,
                *arguments,
            ],
            check=False,
            stdout=sys.stderr,
        )
        return json.load(file)["samples"]


def of(samples, tool):
    return [s for s in samples if s["tool"] == tool]


def rates(samples, time="seconds"):
    return [s["characters"] / s[time] for s in samples]


def exact(samples):
    return f"{sum(s['exact'] for s in samples)}/{len(samples)}"


def speed(setting):
    samples = []
    for programs, kinds, repeat in (
        (None, "latin,cjk,mixed", 3),
        (None, "line,different", 2),
        ("textarea,contenteditable", "long", 3),
    ):
        arguments = ["--kinds", kinds, "--repeat", str(setting.count(repeat, 1))]
        if setting.quick:
            programs = "mousepad"
        if programs:
            arguments += ["--programs", programs]
        samples += samples_of(setting, *arguments)
    rows = []
    for program, kind in dict.fromkeys((s["program"], s["kind"]) for s in samples):
        chosen = [s for s in samples if (s["program"], s["kind"]) == (program, kind)]
        ours, peer = of(chosen, "ours"), of(chosen, "xdotool")
        goal = GOALS.get(kind, OTHER_GOAL)
        program_allows = statistics.median(rates(ours, "shortest"))
        machine_allows = statistics.median(rates(ours, "machine"))
        row = Row(
            f"typing, {program}, {kind}",
            f">= {goal}/s, exact",
            "/s",
            rates(ours),
            peer=rates(peer),
            peer_name="xdotool",
            details=chosen,
            note=f"exact {exact(ours)}, the program's own processor time allows "
            f"{program_allows:.0f}/s, that of everything {machine_allows:.0f}/s",
        )
        if peer:
            row.note += f", xdotool {exact(peer)}"
        row.reached = all(s["exact"] for s in ours) and row.median() >= goal
        rows.append(row)
    return rows


def exactness(setting):
    """Texts of every kind, with several layouts, while the other core is busy."""
    arguments = ["--exactness", str(setting.count(100, 4)), "--layouts", LAYOUTS, "--load"]
    if setting.quick:
        arguments += ["--programs", "mousepad"]
    samples = samples_of(setting, *arguments)
    rows = []
    for program in dict.fromkeys(s["program"] for s in samples):
        ours = [s for s in samples if s["program"] == program]
        share = 100 * statistics.fmean(s["exact"] for s in ours)
        rows.append(
            Row(
                f"exactness, {program}",
                "100 %",
                "%",
                [share],
                share == 100,
                details=ours,
                note=f"{exact(ours)} texts, {statistics.median(rates(ours)):.0f}/s",
            )
        )
    return rows
