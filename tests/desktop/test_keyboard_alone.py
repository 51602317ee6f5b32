# SPDX-FileCopyrightText: The Quillet authors
# SPDX-License-Identifier: Apache-2.0
"""Everything is done with the keyboard alone, by what a screen reader says of each window."""

import pytest

from chat_server import ChatServer
from person import Person
from session import wait_until

ANSWER = "a better letter"


@pytest.fixture
def chat():
    with ChatServer(ANSWER) as server:
        yield server


def is_at(person, name):
    """Waits until the control has the focus. Every window has then said what its controls are."""
    try:
        wait_until(lambda: name in person.focus(), f"the focus at {name!r}", patience=20)
    except TimeoutError:
        raise AssertionError(f"the focus is at {person.focus()}, not at {name!r}") from None
    assert person.nameless() == []


def test_the_wizard_and_the_settings(desktop, build):
    person = Person(desktop)
    quillet = str(build / "quillet" / "quillet")
    desktop.start([quillet])
    window = desktop.wait_for_window("^Quillet$")
    is_at(person, "Next")
    desktop.key("Return")
    is_at(person, "Open Accessibility Settings")
    desktop.key("Return")
    is_at(person, "Quillet")
    desktop.key("Return")
    is_at(person, "Text to try Quillet on")
    desktop.key("Tab")
    is_at(person, "Next")
    desktop.key("Return")
    is_at(person, "Done")
    desktop.key("Return")
    wait_until(lambda: "All looks great!" in person.names(), "the status view")
    assert person.nameless() == []

    assert desktop.start([quillet, "--settings", "--doctor"]).process.wait(60) == 0
    settings = desktop.wait_for_window("^Quillet Settings$")
    wanted = {
        "Change the permission",
        "Shortcut",
        "Start Quillet when I log in, without a window",
        "Address",
        "Programs that Quillet stays out of",
        "Copy for a Bug Report",  # once the report is there
    }
    seen = set()

    def sees_all():
        desktop.key("Tab")
        seen.update(person.focus())
        assert person.nameless() == []
        return wanted <= seen

    wait_until(sees_all, "every control")
    desktop.key("Escape")
    wait_until(lambda: settings not in desktop.windows(".*"), "the end of the settings")
    assert window in desktop.windows(".*")


def test_the_main_job(desktop, build, chat):
    person = Person(desktop)
    person.sets_up_quillet(build, chat.environment)
    _, window = desktop.start_editor("mousepad", "the draft of a letter")
    person.waits_for_floating_button(person.brings_to_front(window))
    desktop.key("super+shift+q")
    is_at(person, "quick-improve")
    desktop.key("Right")
    is_at(person, "check-grammar")
    desktop.key("Right")
    is_at(person, "elevate")
    desktop.key("Return")
    wait_until(lambda: ANSWER in person.texts("quillet"), "the answer")
    is_at(person, "elevate")  # the result carries the command's name
    for name in ("cancel", "reload", "apply"):
        while name not in person.focus():
            before = person.focus()
            desktop.key("Tab")
            wait_until(lambda b=before: person.focus() not in ([], b), "the next control")
        is_at(person, name)
    desktop.key("Return")
    person.waits_for_text("mousepad", ANSWER)
    wait_until(lambda: "Written" in person.names(), "the confirmation")
    wait_until(lambda: desktop.active_window() == window, "the keyboard in the editor")
