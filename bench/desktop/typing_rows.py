"""The rows of typing, from the command that measures typing, where it is there."""

import json
import pathlib
import statistics
import subprocess
import sys
import tempfile

from report import Row

COMMAND = pathlib.Path(__file__).resolve().parents[1] / "typing" / "typing_bench.py"
GOALS = {"latin": 3000, "long": 3000}
OTHER_GOAL = 1000


def measure(setting):
    if not COMMAND.exists():
        return []
    with tempfile.NamedTemporaryFile(suffix=".json") as file:
        arguments = ["--build", str(setting.build), "--json", file.name]
        if setting.quick:
            arguments += ["--repeat", "1", "--programs", "mousepad", "--kinds", "latin"]
        # Fails where a text was not exact; that is a row of ours, not an accident.
        subprocess.run([sys.executable, str(COMMAND), *arguments], check=False, stdout=sys.stderr)
        samples = json.load(file)["samples"]
    return rows_of(samples)


def rows_of(samples):
    rows = []
    for program, kind in dict.fromkeys((s["program"], s["kind"]) for s in samples):
        speed, exact = {}, {}
        for tool in ("ours", "xdotool"):
            chosen = [s for s in samples
                      if (s["program"], s["kind"], s["tool"]) == (program, kind, tool)]
            speed[tool] = [s["characters"] / s["seconds"] for s in chosen]
            exact[tool] = f"{sum(s['exact'] for s in chosen)}/{len(chosen)}"
            if tool == "ours":
                all_exact = all(s["exact"] for s in chosen)
        goal = GOALS.get(kind, OTHER_GOAL)
        rows.append(Row(f"typing, {program}, {kind}", f">= {goal}/s, exact", "/s", speed["ours"],
                        all_exact and statistics.median(speed["ours"]) >= goal, speed["xdotool"],
                        "xdotool", f"exact {exact['ours']}, xdotool {exact['xdotool']}"))
    return rows
