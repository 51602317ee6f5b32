# SPDX-FileCopyrightText: The Quillet authors
# SPDX-License-Identifier: Apache-2.0
"""The figures that are kept: a file for each machine with the latest measurement of every row, and
the page with one table a machine that is made from them."""

import json
import statistics

from report import spread

HEAD = """# Figures

Made by `bench/run --record MACHINE`: the latest measurement of each row on each machine. Compare
ratios; times differ from machine to machine. [The method](../README.md).
"""

COLUMNS = ("goal", "median", "spread", "peer", "ratio", "reached", "measured")


def record(folder, name, machine, rows):
    """Puts the rows in place of the machine's earlier ones of the same names; makes the page."""
    folder.mkdir(exist_ok=True)
    file = folder / f"{name}.json"
    kept = json.loads(file.read_text()) if file.exists() else {"rows": {}}
    kept["machine"] = {key: machine[key] for key in ("cores", "kernel")}
    for row in rows:
        low, high = spread(row.samples)
        kept["rows"][row.name] = {
            "goal": row.goal,
            "median": f"{row.median():.4g} {row.unit}".strip(),
            "spread": f"{low:.4g} to {high:.4g}",
            "peer": f"{statistics.median(row.peer):.4g} {row.peer_name}" if row.peer else "",
            "ratio": f"{row.ratio():.2f}" if row.peer else "",
            "reached": {True: "yes", False: "**no**", None: ""}[row.reached],
            "measured": f"{machine['date'][:10]}, {machine['commit']}",
        }
    file.write_text(json.dumps(kept, indent=1, ensure_ascii=False) + "\n")
    (folder / "README.md").write_text(page(folder))


def page(folder):
    parts = [HEAD]
    for file in sorted(folder.glob("*.json")):
        kept = json.loads(file.read_text())
        parts.append(
            f"\n## {file.stem}\n\n{kept['machine']['cores']} cores, "
            f"Linux {kept['machine']['kernel']}\n\n"
            "| row | goal | median | middle half | peer | ratio | reached | measured |\n"
            "|---|---|---|---|---|---|---|---|\n"
        )
        for name, row in kept["rows"].items():
            cells = [name, *(row[key] for key in COLUMNS)]
            parts.append("| " + " | ".join(cell.replace("|", "/") for cell in cells) + " |\n")
    return "".join(parts)
