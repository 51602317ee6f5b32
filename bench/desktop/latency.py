# SPDX-FileCopyrightText: The Quillet authors
# SPDX-License-Identifier: Apache-2.0
"""From the focus to the button, and from the click to the popup."""

import re
import time

from person import Person
from report import Row
from session import Session, wait_until
from setting import allow, open_editor, watch

FOCUSED = re.compile(r"^(\d+) 📝", re.MULTILINE)


class Quillet:
    """Quillet at its tutorial, which starts the watching, with its output stamped."""

    def __init__(self, session, setting):
        allow(session)
        self.session = session
        self.person = Person(session)
        self.output = session.start(
            ["sh", "-c", '"$0" | "$1"', str(setting.quillet), setting.program("stamp")]
        ).output
        session.wait_for_window("^Quillet$")
        self.person.click("Next")
        wait_until(lambda: "Starting Accessibility Observer" in self.output(), "the observer")

    def pid(self, name="quillet"):
        """The process of the session with this name."""
        for pid in self.session._processes():
            with open(f"/proc/{pid}/comm", encoding="utf-8") as file:
                if file.read().strip() == name[:15]:
                    return pid
        return None


def focus_to_button(session, setting, quillet, editors):
    found = {"mapped": [], "painted": []}
    for number in range(setting.count(20, 3)):
        seen = len(FOCUSED.findall(quillet.output()))
        watcher = session.start([setting.program("watch"), "25", "25"])
        wait_until(lambda: "armed" in watcher.output(), "the watcher")
        session.activate(editors[number % 2])
        wait_until(lambda: not watcher.running(), "the button")
        moments = {what: int(when) for what, when in map(str.split, watcher.output().splitlines())}
        stamps = FOCUSED.findall(quillet.output())[seen:]
        # The button of an editor that lost the focus at once is no sample.
        if len(stamps) == 1 and "painted" in moments:
            for what, samples in found.items():
                samples.append((moments[what] - int(stamps[0])) / 1e6)
    return found


def click_to_popup(session, setting, quillet):
    found = {"mapped": [], "painted": []}
    for _ in range(setting.count(20, 3)):
        x, y, width, height = wait_until(quillet.person.finds_floating_button, "the button")
        middle = x + width // 2, y + height // 2
        moments = watch(session, setting, 370, 250, "--click", *middle)
        for what, samples in found.items():
            samples.append((moments[what] - moments["start"]) / 1e6)
        session.click(*middle)
        time.sleep(0.4)
    return found


def measure(setting):
    with Session() as session:
        quillet = Quillet(session, setting)
        editors = [open_editor(session, name) for name in ("one.txt", "two.txt")]
        wait_until(quillet.person.finds_floating_button, "the button")
        button = focus_to_button(session, setting, quillet, editors)
        time.sleep(1)
        popup = click_to_popup(session, setting, quillet)
    rows = []
    for name, limit, found in (("focus seen to button", 30, button), ("click to popup", 50, popup)):
        for what, samples in found.items():
            row = Row(f"{name} {what}", f"<= {limit} ms", "ms", samples)
            row.reached = row.median() <= limit
            rows.append(row)
    return rows
