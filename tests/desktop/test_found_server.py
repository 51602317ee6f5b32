# SPDX-FileCopyrightText: The Quillet authors
# SPDX-License-Identifier: Apache-2.0
"""A language model's server that is found on this computer gets no text before the user agrees."""

import errno

import pytest

from chat_server import ChatServer
from person import Person
from session import wait_until

TEXT = "this are my first try"
ANSWER = "the model's answer"
TUTORIAL = ("Weiter", "Quillet ist eingerichtet! Probieren Sie es aus!")
QUESTION = "Das Sprachmodell auf diesem Rechner verwenden?"


@pytest.fixture
def found():
    try:
        with ChatServer(ANSWER, ChatServer.USUAL_PORT) as server:
            yield server
    except OSError as problem:
        if problem.errno != errno.EADDRINUSE:
            raise
        pytest.skip("a server of this computer listens at the usual port")


def result_of(person, command):
    """Runs a command on the tutorial's text; what the popup shows then."""
    person.clicks_floating_button()
    person.click(command)
    return wait_until(
        lambda: next((text for text in person.texts("quillet") if text not in ("", TEXT)), None),
        "the answer",
    )


def test_it_is_asked_about_once_and_waits_for_the_answer(desktop, build, found):
    person = Person(desktop)
    desktop.env["LC_ALL"] = "de_DE.UTF-8"
    quillet, window = person.sets_up_quillet(build, pages=TUTORIAL)
    wait_until(lambda: QUESTION in person.names(), "the question")
    assert desktop.active_window() == window, "the keyboard stays with the editor"
    desktop.type(TEXT)
    assert result_of(person, "check-grammar") == "this is my first try"
    assert found.prompts == []

    person.click("Verwenden")
    wait_until(lambda: QUESTION not in person.names(), "the end of the question")
    desktop.activate(window)
    assert result_of(person, "elevate") == ANSWER
    assert len(found.prompts) == 1

    quillet.stop()
    person.sets_up_quillet(build, pages=TUTORIAL)
    desktop.type(TEXT)
    assert result_of(person, "elevate") == ANSWER, "the answer is remembered"
    assert QUESTION not in person.names()
