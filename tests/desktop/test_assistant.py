# SPDX-FileCopyrightText: The Quillet authors
# SPDX-License-Identifier: Apache-2.0
"""From focus to applied text, in the programs that people write in."""

import time

import pytest

from chat_server import ChatServer
from person import Person
from session import EDITORS, wait_until

# Every kind of character that has ever been lost on the way into another program.
ANSWER = (
    "Dear Zoë, naïve façade — “quoted” … 100 % ≠ 50 €.\n"
    "Привет, Γειά σου, שלום עולם, مرحبا بالعالم.\n"
    "\n"
    "你好,世界。日本語のテキスト。 한국어\n"
    "👩🏽‍💻 🇪🇸 👨‍👩‍👧‍👦 e\u0301 a\u0308o\u0302 no\u00a0break\n"
    "- one\n- two: https://example.org/a?b=c+d&e=%20f#g"
)
BEFORE = "the text before, with ünïcode"

PAGE = """<!doctype html><meta charset=utf-8><title>Editor page</title><body style="margin:40px">
<textarea aria-label="first" style="width:500px;height:200px">{before}</textarea>
<div aria-label="second" role="textbox" contenteditable
  style="width:500px;height:200px;border:1px solid">{before}</div>
"""


@pytest.fixture
def chat():
    with ChatServer(ANSWER) as server:
        yield server


@pytest.fixture
def person(desktop, build, chat):
    person = Person(desktop)
    person.quillet, person.window = person.sets_up_quillet(build, chat.environment)
    yield person
    print(person.quillet.output()[-3000:])  # shown where the test has failed


def test_the_permission_is_given_in_the_wizard(desktop, build):
    person = Person(desktop)
    desktop.start([str(build / "quillet" / "quillet")])
    person.click("Next")
    person.click("Open Accessibility Settings")
    desktop.wait_for_window("^Accessibility$")
    off = wait_until(
        lambda: person.finds("Off. Quillet does not see other applications."), "the text"
    )
    time.sleep(0.5)  # a person reads it first, and meanwhile the service has told its state
    person.click("Quillet")
    wait_until(lambda: "Text to try Quillet on" in (person.names() or []), "the tutorial page")
    # This takes two lines where one stood, and has room for them.
    wait_until(
        lambda: (
            person.finds(
                "On. Applications that were started before may have to be " "started again."
            )
            or off
        )[3]
        > 1.5 * off[3],
        "the whole text",
    )


@pytest.mark.parametrize("program", EDITORS)
def test_editors(person, chat, program):
    _, window = person.session.start_editor(program, BEFORE)
    box = person.brings_to_front(window)
    wait_until(lambda: any(BEFORE in text for text in person.texts(program)), "the editor's text")
    person.runs_command("elevate", ANSWER, box)
    person.waits_for_text(program, ANSWER)
    assert BEFORE in chat.prompts[0]["messages"][-1]["content"]
    assert "✅ Text set successfully" in person.quillet.output()


@pytest.mark.parametrize("number", [0, 1], ids=["textarea", "contenteditable"])
def test_chromium_inputs(person, chat, number):
    session = person.session
    session.start_chromium(
        PAGE.format(before=BEFORE), "--window-size=900,700", "--window-position=0,0"
    )
    session.activate(session.wait_for_window("Editor page"))
    wait_until(lambda: len(person.texts("chromium")) == 2, "the page's inputs")
    box = person.click(["first", "second"][number], "chromium")
    person.runs_command("elevate", ANSWER, box)
    # Chromium keeps no no-break space that is typed into a contenteditable.
    expected = ANSWER.replace("\u00a0", " ") if number else ANSWER
    # Asking over the accessibility bus before would be to come and go between the keys.
    wait_until(lambda: "✅ Text set successfully" in person.quillet.output(), "the end of the keys")
    wait_until(lambda: person.texts("chromium")[number].rstrip("\n") == expected, "the text")
    assert person.texts("chromium")[1 - number] == BEFORE, "the other input is as it was"
    assert BEFORE in chat.prompts[0]["messages"][-1]["content"]


def test_own_tutorial_editor(person, chat):
    session = person.session
    session.activate(person.window)
    session.type("my first try")
    person.runs_command("quick-improve", ANSWER)
    person.waits_for_text("quillet", ANSWER)
