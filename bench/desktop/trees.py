# SPDX-FileCopyrightText: The Quillet authors
# SPDX-License-Identifier: Apache-2.0
"""Looking through a large page, and reading it, in bulk and element by element."""

import json
import time

from report import Row
from session import Session
from setting import allow

BLOCK = "<div><p>Paragraph {0} with <b>bold</b> text.</p><ul><li>first {0}<li>second</ul></div>"
SECTIONS, BLOCKS_IN_EACH = 33, 50
PAGE_ELEMENTS = 18000  # at least; the table's note tells how many there are


def page(title, end):
    # In sections, because Chromium lists the children of one element in the square of their number.
    sections = "".join(
        "<section>" + BLOCK.format(number) * BLOCKS_IN_EACH + "</section>"
        for number in range(SECTIONS)
    )
    return f"<!doctype html><meta charset=utf-8><title>{title}</title>{sections}{end}"


def deep(inner):
    return "<div>" * 20 + inner + "</div>" * 20


def run_tree(session, setting, role, elements):
    printed = session.run(
        [setting.program("tree"), role, str(elements), str(setting.count(3, 1))], patience=580
    )
    found = json.loads(printed.splitlines()[-1])
    for key in ("decide", "decideNaive", "read", "readNaive"):
        found[key] = [value / 1e6 for value in found[key]]
    return found


def rows_of(name, found, decide_limit=None, read_limit=None):
    """Without limits of their own, ours must be no slower than the peer's."""
    rows = []
    for what, key, limit in (("decided", "decide", decide_limit), ("read", "read", read_limit)):
        row = Row(
            f"{name}: {what}",
            f"<= {limit} ms" if limit else "<= 1.05 x peer",
            "ms",
            found[key],
            peer=found[key + "Naive"],
            peer_name="one by one",
        )
        same = found["sameAnswer"] if key == "decide" else found["sameText"]
        row.reached = same and (row.median() <= limit if limit else row.ratio() <= 1.05)
        row.note = (
            f"{found['elements']} elements, "
            + (
                f"answer {'yes' if found['answer'] else 'no'}"
                if key == "decide"
                else f"{found['characters']} characters"
            )
            + (", the same both ways" if same else ", NOT THE SAME both ways")
        )
        rows.append(row)
    return rows


def measure(setting):
    rows = []
    for name, end in (
        ("page with an input", deep("<p contenteditable>The input.</p>")),
        ("page without input", deep("<p>The end.</p>")),
    ):
        with Session() as session:
            allow(session)
            session.start_chromium(page(name, end))
            session.activate(session.wait_for_window(name))
            time.sleep(setting.count(10, 5))  # the page's tree is built after its window
            session.click(600, 600)
            rows += rows_of(name, run_tree(session, setting, "AXWebArea", PAGE_ELEMENTS), 150, 500)
    with Session() as session:
        allow(session)
        session.start([setting.program("labels_window")])
        session.activate(session.wait_for_window("Labels window"))
        rows += rows_of("2,000 labels", run_tree(session, setting, "AXGroup", 2000))
    return rows
