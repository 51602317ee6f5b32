# SPDX-FileCopyrightText: The Quillet authors
# SPDX-License-Identifier: Apache-2.0
"""The button at its input when the main monitor is not at the desktop's origin."""

import pytest

from chat_server import ChatServer
from person import Person
from session import wait_until

# The main monitor's and the other's size and place, on a desktop of 1280 by 900.
LAYOUTS = {
    "left": ((640, 900, 640, 0), (640, 900, 0, 0)),
    "right": ((640, 900, 0, 0), (640, 900, 640, 0)),
    "above": ((1280, 450, 0, 450), (1280, 450, 0, 0)),
}


def monitor(session, name, place, output):
    width, height, x, y = place
    session.run(["xrandr", "--setmonitor", name, f"{width}/200x{height}/200+{x}+{y}", output])


@pytest.mark.parametrize("layout", LAYOUTS)
def test_the_button_is_at_its_input_on_every_monitor(desktop, build, layout):
    main, other = LAYOUTS[layout]
    monitor(desktop, "*Main", main, "screen")
    monitor(desktop, "Other", other, "none")
    person = Person(desktop)
    with ChatServer("result") as chat:
        person.quillet, own = person.sets_up_quillet(build, chat.environment)
        _, window = desktop.start_editor("mousepad", "some text")
        for _, _, x, y in (other, main):
            desktop.activate(own)
            # The tutorial's button first, so that the editor's is seen to come.
            wait_until(
                lambda: person.finds_floating_button() == person.tutorial_button,
                "the button in the tutorial",
            )
            desktop.run(["xdotool", "windowsize", "--sync", str(window), "500", "380"])
            desktop.run(["xdotool", "windowmove", str(window), str(x + 60), str(y + 40)])
            wait_until(
                lambda x=x: x + 50 <= desktop.geometry(window)[0] <= x + 90, "the editor's place"
            )
            box = person.brings_to_front(window)
            person.waits_for_floating_button(box)
