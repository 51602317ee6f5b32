# SPDX-FileCopyrightText: The Quillet authors
# SPDX-License-Identifier: Apache-2.0
"""The program quillet_panel_probe, driven line by line."""

import os
import re

from session import wait_until


class Probe:
    def __init__(self, desktop, build, environment=None):
        self.desktop = desktop
        pipe = os.path.join(desktop.folder, f"probe-{len(desktop.programs)}")
        os.mkfifo(pipe)
        self.program = desktop.start(
            [
                "sh",
                "-c",
                'exec "$0" <"$1"',
                str(build / "tests/desktop/shell/quillet_panel_probe"),
                pipe,
            ],
            environment,
        )
        self.commands = open(pipe, "w", buffering=1, encoding="utf-8")
        self.read = 0

    def next_line(self):
        def line():
            assert self.program.running(), self.program.output()
            lines = self.program.output().split("\n")[:-1]
            return lines[self.read :] and [lines[self.read]]

        found = wait_until(line, "an answer of the probe")[0]
        self.read += 1
        return found

    def __call__(self, command):
        self.commands.write(command + "\n")
        return self.next_line()


def stacking(desktop):
    """Ids of the root window's children, topmost first."""
    tree = desktop.run(["xwininfo", "-root", "-children"])
    return [int(line.split()[0], 16) for line in tree.split("\n") if re.match(r"\s+0x", line)]


def top_level(desktop, window):
    """The root window's child that holds `window`."""
    while True:
        info = desktop.run(["xwininfo", "-id", str(window), "-children"])
        parent = int(re.search(r"Parent window id: (0x[0-9a-f]+)", info).group(1), 16)
        root = int(re.search(r"Root window id: (0x[0-9a-f]+)", info).group(1), 16)
        if parent == root:
            return window
        window = parent


def is_above(desktop, upper, lower):
    order = stacking(desktop)
    return order.index(upper) < order.index(top_level(desktop, lower))


def input_focus(desktop):
    """Id of the window that has the keyboard; 1 or less when none has."""
    return int(desktop.run(["xdotool", "getwindowfocus", "-f"]).split()[-1])
