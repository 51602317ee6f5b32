# SPDX-FileCopyrightText: The Quillet authors
# SPDX-License-Identifier: Apache-2.0
"""The keyboard in the popup, and back in the user's windows, under each window manager."""

import pathlib
import time

import pytest

from chat_server import ChatServer
from person import Person
from session import WINDOW_MANAGERS, Session, wait_until


@pytest.fixture(params=WINDOW_MANAGERS)
def person(request, build):
    with Session(window_manager=request.param) as session, ChatServer("result") as chat:
        person = Person(session)
        person.quillet, _ = person.sets_up_quillet(build, chat.environment)
        yield person
        print(person.quillet.output()[-3000:])  # shown where the test has failed


def puts_keyboard_into_result(person, box, expected):
    person.clicks_floating_button(box)
    person.click("elevate")
    wait_until(lambda: expected in person.texts("quillet"), "the answer")
    person.click("elevate")  # the result's text view carries the command's name


def test_the_result_is_edited_and_the_keyboard_is_never_stolen(person):
    session = person.session
    _, editor = session.start_editor("mousepad", "the text before")
    session.run(["xdotool", "windowmove", "--sync", str(editor), "60", "60"])
    session.run(["xdotool", "windowsize", "--sync", str(editor), "600", "400"])
    notes = pathlib.Path(session.folder, "notes")
    session.start(["xterm", "-title", "Notes", "-geometry", "40x8", "-e", f"cat > {notes}"])
    other = session.wait_for_window("Notes")
    session.run(["xdotool", "windowmove", "--sync", str(other), "900", "640"])
    wait_until(lambda: session.active_window() == other, "the notes in front")
    wait_until(lambda: not person.finds_floating_button(), "no button over the notes")
    box = person.brings_to_front(editor)

    puts_keyboard_into_result(person, box, "result")
    session.key("End")
    session.type(", edited")
    wait_until(lambda: "result, edited" in person.texts("quillet"), "the edit")
    person.click("apply")
    person.waits_for_text("mousepad", "result, edited")
    wait_until(lambda: session.active_window() == editor, "the keyboard to be back")

    puts_keyboard_into_result(person, box, "result")
    x, y, width, height = session.geometry(other)
    session.click(x + width / 2, y + height / 2)
    wait_until(lambda: session.active_window() == other, "the other window in front")
    session.type("some ")
    time.sleep(1.5)  # the watching has seen the change, and giving back would have insisted
    session.type("words\n")
    wait_until(lambda: notes.read_text() == "some words\n", "the words where they were typed")
    assert "result, edited" in person.texts("mousepad")
