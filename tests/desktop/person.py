# SPDX-FileCopyrightText: The Quillet authors
# SPDX-License-Identifier: Apache-2.0
"""Works Quillet as a person does: looks for controls by their names and clicks them."""

import json
import pathlib

import gi

from session import wait_until

# What eyes.py cannot do without: it would see nothing, and say nothing.
gi.require_version("Atspi", "2.0")
EYES = pathlib.Path(__file__).with_name("eyes.py")


class Person:
    def __init__(self, session):
        self.session = session
        self.tutorial_button = None
        self.window = None

    def _see(self, *arguments):
        printed = self.session.run(["/usr/bin/python3", str(EYES), *arguments], check=False)
        try:
            return json.loads(printed.strip().splitlines()[-1])
        except (ValueError, IndexError):
            return None

    def finds(self, name, program="quillet"):
        """The control's rectangle on the screen, or None."""
        return self._see("find", program, name)

    def names(self, program="quillet"):
        return self._see("names", program)

    def focus(self, program="quillet"):
        """The names of the controls that have the focus."""
        return self._see("focus", program) or []

    def nameless(self, program="quillet"):
        """The controls that a screen reader has no name for; None when nothing could be seen."""
        return self._see("nameless", program)

    def texts(self, program):
        """The texts of the program's multi-line inputs."""
        return self._see("text", program) or []

    def sees_input(self, program, place="window"):
        """The visible part of the program's first multi-line input, in its window or on the
        screen; or None."""
        return self._see("input", program, place)

    def click(self, name, program="quillet"):
        """Clicks the middle of the control as soon as it is there."""
        x, y, width, height = wait_until(
            lambda: self.finds(name, program), f"{name!r} in {program}"
        )
        self.session.click(x + width / 2, y + height / 2)
        return x, y, width, height

    def waits_for_text(self, program, text):
        """Waits until an input of the program holds exactly `text`."""
        try:
            wait_until(lambda: text in self.texts(program), "the text")
        except TimeoutError:
            raise AssertionError(f"{program} holds {self.texts(program)!r}, not {text!r}") from None

    def finds_floating_button(self):
        """The rectangle of the floating button, or None: Quillet's only 25 by 25 window, which no
        window manager knows."""
        return self.finds_panel(25, 25)

    def finds_panel(self, width, height):
        """The rectangle of Quillet's visible window of this size, or None."""
        found = self.session.run(
            ["xdotool", "search", "--onlyvisible", "--name", "^Quillet$"], check=False
        )
        for window in filter(str.isdigit, found.splitlines()):
            place = self.session.geometry(window)
            if place and place[2:] == (width, height):
                return place
        return None

    def brings_to_front(self, window):
        """Activates another program's window; returns its rectangle."""
        self.session.activate(window)
        return self.session.geometry(window)

    def waits_for_floating_button(self, input_box=None):
        """Waits for the button. With `input_box`, waits until it is inside that and not where it
        stood in the tutorial: it follows the focus half a second later. Returns its rectangle."""

        def at_the_input():
            box = self.finds_floating_button()
            if (
                box
                and input_box
                and (
                    box == self.tutorial_button
                    or not (
                        input_box[0] <= box[0]
                        and box[0] + 25 <= input_box[0] + input_box[2]
                        and input_box[1] <= box[1]
                        and box[1] + 25 <= input_box[1] + input_box[3]
                    )
                )
            ):
                return None
            return box

        return wait_until(at_the_input, "the floating button")

    def clicks_floating_button(self, input_box=None):
        x, y, width, height = self.waits_for_floating_button(input_box)
        self.session.click(x + width / 2, y + height / 2)

    def sets_up_quillet(
        self,
        build,
        environment=None,
        pages=("Next", "Quillet is installed! Now you can try it!"),
        program="quillet/quillet",
    ):
        """Starts Quillet for somebody who has allowed it before, and goes through the wizard up to
        the tutorial, which starts the watching. `pages`: the button and the title that lead there,
        as the language has them. `program`: below `build`."""
        settings = pathlib.Path(self.session.env["XDG_CONFIG_HOME"]) / "quillet"
        settings.mkdir(exist_ok=True)
        (settings / "platform.conf").write_text("[accessibility]\nallowed=true\n")
        quillet = self.session.start([str(build / program), "--setup"], environment)
        self.window = window = self.session.wait_for_window("^Quillet$")
        self.session.move_window(window, 20, 40)
        self.click(pages[0])
        wait_until(lambda: pages[1] in (self.names() or []), "the tutorial page")
        self.tutorial_button = self.waits_for_floating_button()
        return quillet, window

    def runs_command(self, command, expected, input_box=None):
        """Opens the popup, runs a command of its first page, waits for the answer, applies it."""
        self.clicks_floating_button(input_box)
        self.click(command)
        wait_until(lambda: expected in self.texts("quillet"), "the answer in the popup")
        self.click("apply")
