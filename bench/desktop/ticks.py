# SPDX-FileCopyrightText: The Quillet authors
# SPDX-License-Identifier: Apache-2.0
"""One tick of the observer on a focused input."""

import json

from report import Row
from session import Session
from setting import allow, open_editor

PAGE = "<title>Textarea page</title><textarea autofocus rows=20 cols=60>Some text.</textarea>"


def samples(session, setting):
    command = f"{setting.program('tick')} {setting.count(500, 50)} 2>&1 >/dev/null"
    found = json.loads(session.run(["sh", "-c", command], patience=120).splitlines()[-1])
    if not found["cpu"]:
        raise RuntimeError("the observer saw no input")
    return {clock: [value / 1e6 for value in values] for clock, values in found.items()}


def rows_of(name, found):
    return [
        Row(f"tick, {name}: CPU", "<= 1 ms", "ms", found["cpu"]),
        Row(f"tick, {name}: time", "<= 3 ms", "ms", found["wall"]),
    ]


def measure(setting):
    with Session() as session:
        allow(session)
        open_editor(session)
        rows = rows_of("GTK editor", samples(session, setting))
    with Session() as session:
        allow(session)
        session.start_chromium(PAGE)
        session.activate(session.wait_for_window("Textarea page"))
        session.click(200, 250)
        rows += rows_of("Chromium", samples(session, setting))
    for row, limit in zip(rows, (1, 3, 1, 3)):
        row.reached = row.median() <= limit
    return rows
