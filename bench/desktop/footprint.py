# SPDX-FileCopyrightText: The Quillet authors
# SPDX-License-Identifier: Apache-2.0
"""Memory, and the time until the window is there, against an empty window."""

import time

from report import Row
from session import Session
from setting import watch


def sizes_of(pid):
    """The proportional set size, and the part that no other process shares."""
    with open(f"/proc/{pid}/smaps_rollup", encoding="ascii") as file:
        sizes = {line.split(":")[0]: int(line.split()[1]) / 1024 for line in file if "kB" in line}
    return sizes["Pss"], sizes["Private_Clean"] + sizes["Private_Dirty"]


def memory(session, command, title):
    program = session.start(command)
    session.wait_for_window(title)
    time.sleep(2)  # what is done after the first frame is done
    sizes = sizes_of(program.pid)
    program.stop()
    return sizes


def start(session, setting, command):
    moments = watch(session, setting, 600, 600, "--exec", *command)
    return [(moments[what] - moments["start"]) / 1e6 for what in ("mapped", "painted")]


def measure(setting):
    quillet, empty = [str(setting.quillet)], [setting.program("empty_window")]
    sizes, empty_sizes, starts, empty_starts = [], [], [], []
    with Session() as session:
        for _ in range(setting.count(7, 2)):
            sizes.append(memory(session, quillet, "^Quillet$"))
            empty_sizes.append(memory(session, empty, "^Empty window$"))
        for _ in range(setting.count(15, 3)):
            starts.append(start(session, setting, quillet))
            empty_starts.append(start(session, setting, empty))
    rows = []
    for index, what in enumerate(("footprint", "footprint: private part")):
        rows.append(
            Row(
                what,
                "" if index else "<= 1.6 x peer",
                "MiB",
                [s[index] for s in sizes],
                peer=[s[index] for s in empty_sizes],
                peer_name="empty window",
            )
        )
    for index, what in enumerate(("window mapped", "window painted")):
        rows.append(
            Row(
                f"start: {what}",
                "<= 2.5 x peer",
                "ms",
                [s[index] for s in starts],
                peer=[s[index] for s in empty_starts],
                peer_name="empty window",
            )
        )
    for row, limit in zip((rows[0], *rows[2:]), (1.6, 2.5, 2.5)):
        row.reached = row.ratio() <= limit
    return rows
