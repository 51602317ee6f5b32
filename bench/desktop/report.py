# SPDX-FileCopyrightText: The Quillet authors
# SPDX-License-Identifier: Apache-2.0
"""Rows of the table, and what is computed from samples."""

import statistics
from dataclasses import dataclass, field


@dataclass
class Row:
    name: str
    goal: str
    unit: str
    samples: list
    reached: bool | None = None  # None: for comparison only
    peer: list = field(default_factory=list)
    peer_name: str = ""
    note: str = ""
    details: list = field(default_factory=list)  # what else is known of the samples

    def median(self):
        return statistics.median(self.samples)

    def ratio(self):
        """Ours to the peer's, of medians."""
        return self.median() / statistics.median(self.peer) if self.peer else None


def spread(samples):
    """The middle half, as two numbers; all of it where there are few."""
    if len(samples) < 4:
        return min(samples), max(samples)
    quarters = statistics.quantiles(samples, n=4)
    return quarters[0], quarters[2]


def print_table(rows):
    lines = [("row", "goal", "median", "middle half", "peer", "ratio", "reached")]
    for row in rows:
        low, high = spread(row.samples)
        lines.append(
            (
                row.name,
                row.goal,
                f"{row.median():.4g} {row.unit}",
                f"{low:.4g} to {high:.4g}",
                f"{statistics.median(row.peer):.4g} {row.unit} {row.peer_name}" if row.peer else "",
                f"{row.ratio():.2f}" if row.peer else "",
                {True: "yes", False: "NO", None: "-"}[row.reached],
            )
        )
    widths = [max(len(line[column]) for line in lines) for column in range(len(lines[0]))]
    for line in lines:
        print("  ".join(cell.ljust(width) for cell, width in zip(line, widths)).rstrip())
    for row in rows:
        if row.note:
            print(f"{row.name}: {row.note}")
