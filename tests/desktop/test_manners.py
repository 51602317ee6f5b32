# SPDX-FileCopyrightText: The Quillet authors
# SPDX-License-Identifier: Apache-2.0

"""That Quillet loses nothing and stays out of the user's way, with real programs."""

import pathlib

import pytest

from chat_server import ChatServer
from person import Person
from session import wait_until

TEXT = "the draft of a letter"


@pytest.fixture
def chat():
    with ChatServer("a better letter") as server:
        yield server


@pytest.fixture
def person(desktop, build, chat):
    person = Person(desktop)
    person.quillet, person.window = person.sets_up_quillet(build, chat.environment)
    yield person
    print(person.quillet.output()[-3000:])  # shown where the test has failed


def open_editor(person, text=TEXT):
    """An editor in front, with the button at its text: its window, and the button's place."""
    _, window = person.session.start_editor("mousepad", text)
    box = person.brings_to_front(window)
    wait_until(lambda: text in person.texts("mousepad"), "the editor's text")
    return window, person.waits_for_floating_button(box)


def open_popup(person, button):
    person.session.click(button[0] + 12, button[1] + 12)
    return wait_until(lambda: person.finds_panel(370, 250), "the popup")


def test_escape_and_a_click_elsewhere_close_the_popup(person):
    session = person.session
    window, button = open_editor(person)
    open_popup(person, button)
    session.key("Escape")  # the editor has the keyboard
    wait_until(lambda: not person.finds_panel(370, 250), "the closed popup")
    session.type("typed. ")
    wait_until(lambda: "typed. " + TEXT in person.texts("mousepad"), "the keys in the editor")

    place = open_popup(person, button)
    session.click(place[0] + 185, place[1] + 2)  # inside it
    x, y, _, height = session.geometry(window)
    session.click(x + 40, y + height - 60)
    wait_until(lambda: not person.finds_panel(370, 250), "the closed popup")
    assert session.active_window() == window


def test_an_apply_is_confirmed_and_taken_back(person):
    session = person.session
    _, button = open_editor(person)
    person.runs_command("elevate", "a better letter")
    person.waits_for_text("mousepad", "a better letter")
    wait_until(lambda: "Written" in person.names(), "the confirmation")
    session.click(button[0] + 12, button[1] + 12, button=3)
    person.click("Put back what was there")
    person.waits_for_text("mousepad", TEXT)


def test_the_shortcut_works_on_the_selection(person, chat):
    session = person.session
    open_editor(person, "one two three")
    session.key("ctrl+Home")
    session.key("ctrl+Right")
    session.key("ctrl+shift+Right")
    session.key("super+shift+q")
    wait_until(lambda: person.finds_panel(370, 250), "the popup")
    wait_until(
        lambda: session.run(["xdotool", "getwindowfocus"], check=False).strip()
        in session.run(
            ["xdotool", "search", "--onlyvisible", "--name", "^Quillet$"], check=False
        ).split(),
        "the keyboard in the popup",
    )
    session.type("e")  # elevate
    session.key("Return")
    wait_until(
        lambda: any("a better letter" in text for text in person.texts("quillet")), "the answer"
    )
    session.key("ctrl+Return")
    wait_until(
        lambda: any(
            "three" in text and "a better letter" in text and "two" not in text
            for text in person.texts("mousepad")
        ),
        "the text",
    )
    assert "two" in chat.prompts[0]["messages"][-1]["content"]
    assert "three" not in chat.prompts[0]["messages"][-1]["content"]


def test_the_permission_is_taken_back_at_once(person, build):
    session = person.session
    _, button = open_editor(person)
    assert session.start([str(build / "quillet/quillet"), "--permission"]).process.wait(60) == 0
    session.wait_for_window("^Accessibility$")
    assert person.finds_floating_button()
    person.click("Quillet")
    wait_until(lambda: not person.finds_floating_button(), "the end of the button")


def test_no_button_stays_where_no_input_is(person):
    session = person.session
    session.activate(person.window)
    person.click("Next")
    wait_until(lambda: "Great job!" in person.names(), "the last page")
    wait_until(lambda: not person.finds_floating_button(), "the end of the tutorial's button")

    window, _ = open_editor(person)
    session.run(["xdotool", "windowminimize", str(person.window)])
    session.run(["wmctrl", "-i", "-c", str(window)])
    wait_until(lambda: not person.finds_floating_button(), "the end of the editor's button")


def test_without_a_display_it_says_so(desktop, build):
    program = desktop.start(
        ["env", "-u", "DISPLAY", "-u", "QT_QPA_PLATFORM", str(build / "quillet/quillet")]
    )
    assert program.process.wait(60) == 1
    assert "no display could be opened" in program.output()


def test_an_installed_copy_prints_nothing_unless_asked(desktop, build):
    person = Person(desktop)
    prefix = pathlib.Path(desktop.env["HOME"]) / ".local/opt/quillet"
    desktop.run(["cmake", "--install", str(build), "--prefix", str(prefix)])
    quiet, _ = person.sets_up_quillet(prefix, program="bin/quillet")
    quiet.stop()
    assert quiet.output() == ""
    talking, _ = person.sets_up_quillet(prefix, {"QUILLET_DIAGNOSTICS": "1"}, program="bin/quillet")
    assert "🎯 Focused app: quillet" in talking.output()
