# SPDX-FileCopyrightText: The Quillet authors
# SPDX-License-Identifier: Apache-2.0
"""Watches Quillet through a fault without the accessibility bus: by its windows, their pixels and
the looks at the focus that it prints."""

import json
import re
import subprocess
import time

from person import Person
from session import PATIENCE, wait_until

# Seconds that Quillet may pause on a busy machine; the faults last several times as long.
LATE = 3
POPUP = (370, 250)
# Places in the popup: the first option of the grid, and the buttons below a result.
OPTION, RESULT, CANCEL, APPLY = (98, 90), (185, 90), (65, 217), (304, 217)


class Watch:
    """How long Quillet's main window took at the longest to answer, asked a hundred times a
    second, as a window manager asks."""

    def __init__(self, session, build, window):
        self.process = subprocess.Popen(
            [build / "tests/support/window_watch", str(window)],
            env=session.env,
            stdin=subprocess.PIPE,
            stdout=subprocess.PIPE,
            text=True,
        )

    def __enter__(self):
        return self

    def __exit__(self, *_):
        report = json.loads(self.process.communicate(timeout=PATIENCE)[0])
        self.answers, self.longest = report["answers"], report["longest"] / 1000
        print(f"longest pause {report['longest']:.0f} ms")


class Witness(Person):
    def __init__(self, session, build, environment=None):
        super().__init__(session)
        self.build = build
        self.quillet, self.window = self.sets_up_quillet(build, environment)

    def watch(self):
        return Watch(self.session, self.build, self.window)

    def stays_alive(self, seconds):
        """Watches for a time, and has it that Quillet has answered throughout."""
        with self.watch() as watch:
            time.sleep(seconds)
        assert watch.answers and watch.longest < LATE and self.quillet.running()

    def popup(self):
        """Where the popup is on the screen, or None."""
        return self.finds_panel(*POPUP)

    def toggles_popup(self):
        """The floating button opens the popup, and closes it."""
        self.opens_popup()
        self.clicks_floating_button()
        wait_until(lambda: not self.popup(), "the popup to close")

    def opens_popup(self):
        assert not self.popup()
        self.clicks_floating_button()
        return wait_until(self.popup, "the popup")

    def clicks_in_popup(self, place):
        x, y, _, _ = wait_until(self.popup, "the popup")
        self.session.click(x + place[0], y + place[1])

    def pixels(self, place, width=1, height=1):
        """What is on the screen around a place of the popup."""
        x, y, _, _ = wait_until(self.popup, "the popup")
        return self.session.run(
            [
                "sh",
                "-c",
                f"import -window root -crop {width}x{height}+{x + place[0] - width // 2}"
                f"+{y + place[1] - height // 2} -depth 8 rgb:- | md5sum",
            ]
        )

    def sees_button_on(self, window):
        """Puts the window in front and waits until the floating button is on it."""
        pid = self.session.run(["xdotool", "getwindowpid", str(window)]).strip()
        self.session.activate(window)

        def there():
            looks = re.findall(r"\[PID: (\d+)\]", self.quillet.output())
            button = self.finds_floating_button()
            if not button or looks[-1:] != [pid]:
                return False
            # Not moved to a place of its own: the button would not follow.
            x, y, width, height = self.session.geometry(window)
            return x <= button[0] < x + width and y <= button[1] < y + height

        wait_until(there, "the floating button on the window")

    def sees_no_button(self):
        wait_until(lambda: not self.finds_floating_button(), "the floating button to go")

    def opens_editor(self, name, text, program="mousepad"):
        """A healthy editor with its floating button: the program and its window."""
        editor, window = self.session.start_editor(program, text, name)
        self.sees_button_on(window)
        return editor, window

    def processes(self, name):
        """Process ids of the session's programs of that name."""
        found = []
        for pid in self.session._processes():
            try:
                with open(f"/proc/{pid}/comm", encoding="utf-8") as file:
                    if file.read().strip() == name[:15]:
                        found.append(pid)
            except OSError:
                pass
        return found
