# SPDX-FileCopyrightText: The Quillet authors
# SPDX-License-Identifier: Apache-2.0
"""Programs with an input to type into, and the probe that types."""

import json
import os
import subprocess
import time

from session import PATIENCE, wait_until

STYLE = 'style="white-space:pre-wrap;border:1px solid;width:95%;height:600px;overflow:auto"'
PAGES = {
    "textarea": f"<textarea {STYLE} spellcheck=false autofocus></textarea>",
    "contenteditable": f"<div {STYLE} contenteditable role=textbox aria-multiline=true "
    "spellcheck=false autofocus></div>",
}
TITLE = "typing page"

EDITORS = {
    "mousepad": (["mousepad"], "Mousepad"),
    "gnome-text-editor": (["gnome-text-editor", "--standalone"], "Text Editor"),
    "featherpad": (["featherpad", "--standalone"], "^Untitled"),
}
PROGRAMS = [*PAGES, *EDITORS]


class Input:
    """A program whose only input has the focus; `page` in place of a web page's usual contents."""

    def __init__(self, desktop, build, program, page=None):
        self.desktop = desktop
        self.build = build
        self.next_try = 0
        self.probe = str(build / "tests/support/type_probe")
        self.web = program not in EDITORS
        # Web pages take Tab for themselves, so that a tab arrives as spaces there.
        self.tab = "    " if self.web else "\t"
        if self.web:
            self.program = desktop.start_chromium(
                f'<!doctype html><meta charset="utf-8"><title>{TITLE}</title>'
                f"{page or PAGES[program]}"
            )
            title = TITLE
        else:
            command, title = EDITORS[program]
            self.program = desktop.start(command)
        self.window = desktop.wait_for_window(title)
        wait_until(self.has_focus, f"an input in {program}")

    def focus(self):
        self.desktop.activate(self.window)
        if self.web:
            self.desktop.run(
                ["xdotool", "mousemove", "--window", str(self.window), "300", "300", "click", "1"]
            )

    def has_focus(self):
        if self.read() is not None:
            return True
        # Not again and again: the window manager holds clicks back while it is busy, and would let
        # them go when something is being typed, which they then stop.
        if time.monotonic() > self.next_try:
            self.focus()
            self.next_try = time.monotonic() + 2
        return False

    def read(self):
        """The text of the focused input; None when there is none."""
        answer = subprocess.run(
            [self.probe, "--read"],
            env=self.desktop.env,
            text=True,
            stdout=subprocess.PIPE,
            timeout=PATIENCE,
        )
        if answer.returncode:
            return None
        # What an empty contenteditable shows as its text is a line break of its own.
        text = json.loads(answer.stdout)["text"]
        return "" if text == "\n" else text

    def start_typing(self, text, *options):
        process = subprocess.Popen(
            [self.probe, *options],
            env=self.desktop.env,
            text=True,
            stdin=subprocess.PIPE,
            stdout=subprocess.PIPE,
        )
        process.stdin.write(text)
        process.stdin.close()
        return process

    def finish(self, process):
        """What the probe reports in the end."""
        output = process.stdout.read()
        process.wait(PATIENCE)
        return json.loads(output) if output else None

    def type(self, text, *options):
        return self.finish(self.start_typing(text, *options))

    def clear(self):
        """Empties the input; with the us layout, because the keys need an "a"."""
        self.desktop.run(["setxkbmap", "us"])
        wait_until(self.has_focus, "the focus")
        if self.read():
            self.desktop.key("ctrl+a")
            self.desktop.key("Delete")
            wait_until(lambda: self.read() == "", "an empty input")

    def settled(self, expected):
        """The input's text once it is `expected`, or whatever it is when that takes too long."""
        try:
            wait_until(lambda: self.read() == expected, "the text")
        except TimeoutError:
            pass
        return self.read()


def keyboard_map(desktop):
    """The whole keyboard map as text, and which keys repeat."""
    return desktop.run(["xkbcomp", "-xkb", desktop.env["DISPLAY"], "-"]) + "".join(
        line
        for line in desktop.run(["xset", "q"]).splitlines(True)
        if "repeat" in line or "Lock" in line
    )


def first_difference(got, expected):
    at = len(os.path.commonprefix([got or "", expected]))
    return (
        f"{len(got or '')} of {len(expected)} characters, different at {at}: "
        f"{(got or '')[at:at + 12]!a} for {expected[at:at + 12]!a}"
    )
