# SPDX-FileCopyrightText: The Quillet authors
# SPDX-License-Identifier: Apache-2.0
"""What the groups of rows share: the programs, how much to measure, and a desktop ready for it."""

import pathlib
from dataclasses import dataclass

from session import wait_until

EDITOR_TEXT = "Some text in an editor."


@dataclass
class Setting:
    build: pathlib.Path
    quillet: pathlib.Path
    quick: bool

    def program(self, name):
        return str(self.build / "bench" / "desktop" / f"bench_{name}")

    def count(self, full, quick):
        return quick if self.quick else full


def allow(session):
    """Gives the consent that a person gives in the accessibility settings."""
    folder = pathlib.Path(session.env["XDG_CONFIG_HOME"]) / "quillet"
    folder.mkdir(exist_ok=True)
    (folder / "platform.conf").write_text("[accessibility]\nallowed=true\n")


def open_editor(session, name="letter.txt"):
    path = pathlib.Path(session.folder) / name
    path.write_text(EDITOR_TEXT)
    session.start(["mousepad", "--disable-server", str(path)])
    window = session.wait_for_window(name)
    session.activate(window)
    return window


def focus_when_ready(session, window):
    session.activate(window)
    wait_until(lambda: session.active_window() == window, "the window to be active")


def watch(session, setting, *arguments):
    """Runs the watcher to its end; its moments by name, in nanoseconds."""
    printed = session.run([setting.program("watch"), *map(str, arguments)])
    return {what: int(when) for what, when in map(str.split, printed.splitlines())}
