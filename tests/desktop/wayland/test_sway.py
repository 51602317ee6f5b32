# SPDX-FileCopyrightText: The Quillet authors
# SPDX-License-Identifier: Apache-2.0
"""The whole job in a sway session, in native Wayland windows, without an X server."""

import sys
import pathlib

import pytest

sys.path.insert(0, str(pathlib.Path(__file__).parent))
from chat_server import ChatServer  # noqa: E402
from session import wait_until  # noqa: E402
from sway_session import SIDE, SwaySession, WaylandPerson  # noqa: E402

ANSWER = "Dear Zoë, naïve — “quoted” … 50 €.\nПривет, 你好。\n👩🏽‍💻 e\u0301"
BEFORE = "the text before, with ünïcode"


@pytest.fixture
def chat():
    with ChatServer(ANSWER) as server:
        yield server


@pytest.fixture
def person(build, chat):
    with SwaySession(build) as session:
        person = WaylandPerson(session)
        person.quillet, person.window = person.sets_up_quillet(build, chat.environment)
        yield person
        print(person.quillet.output()[-3000:])  # shown where the test has failed


def opens_editor(person, program, box=(200, 150, 700, 500)):
    session = person.session
    _, window = session.start_editor(program, BEFORE)
    session.place(window, *box)
    session.activate(window)
    wait_until(lambda: any(BEFORE in text for text in person.texts(program)), "the editor's text")
    return window, session.geometry(window)


def corner_of_input(person, program):
    """Where the button belongs: inside the top right corner of the input's visible part."""
    x, y, width, height = person.input_box(program)
    return (x + width - SIDE - 5, y + 5)


@pytest.mark.parametrize("program", ["mousepad", "gnome-text-editor"])
def test_the_job_is_done(person, chat, program):
    session = person.session
    editor, box = opens_editor(person, program)
    button = person.waits_for_floating_button(box)
    assert tuple(button[:2]) == corner_of_input(person, program)
    assert person.sees_button(box) == tuple(button[:2]), "the compositor shows it there"
    assert session.active_window() == editor
    person.runs_command("elevate", ANSWER, box)
    person.waits_for_text(program, ANSWER)
    assert session.active_window() == editor, "the keyboard is in the editor"
    assert BEFORE in chat.prompts[0]["messages"][-1]["content"]
    assert "✅ Text set successfully" in person.quillet.output()
    session.type("!")
    wait_until(lambda: any("!" in text for text in person.texts(program)), "the user's own key")


def test_the_edited_result_is_what_lands_and_the_button_is_dragged(person, chat):
    session = person.session
    chat.answer = "result"
    editor, box = opens_editor(person, "mousepad")
    x, y, _, _ = person.waits_for_floating_button(box)
    session.act(f"move {x + 12} {y + 12}", "down")
    for step in range(1, 41):
        session.act(f"move {x + 12 - 5 * step} {y + 12 + 2 * step}")
    session.act("up")
    assert person.sees_button(box) == (x - 200, y + 80), "dragged as far as the pointer"
    session.click(x - 200 + 12, y + 80 + 12)
    person.click("elevate")
    wait_until(lambda: "result" in person.texts("quillet"), "the answer")
    person.click("elevate")  # the result's text view carries the command's name
    wait_until(lambda: session.active_window() != editor, "the popup to have the keyboard")
    session.key("End")
    session.type(", edited")
    wait_until(lambda: "result, edited" in person.texts("quillet"), "the edit")
    person.click("apply")
    person.waits_for_text("mousepad", "result, edited")
    wait_until(lambda: session.active_window() == editor, "the keyboard to be back")
