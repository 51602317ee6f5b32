# SPDX-FileCopyrightText: The Quillet authors
# SPDX-License-Identifier: Apache-2.0
"""What takes longer in a sway session: a browser that is typed into, a second screen, a program on
the session's X11 server."""

import pathlib
import sys

import pytest

sys.path.insert(0, str(pathlib.Path(__file__).parent))
from chat_server import ChatServer  # noqa: E402
from session import wait_until  # noqa: E402
from sway_session import SIDE, SwaySession, WaylandPerson  # noqa: E402

BEFORE = "the text before"
PAGE = f"""<!doctype html><meta charset=utf-8><title>Editor page</title><body style="margin:40px">
<textarea aria-label="first" style="width:500px;height:200px">{BEFORE}</textarea>"""
# No character above U+FFFF: Chromium cuts those.
LINES = ["Dear Zoë, naïve — “quoted” … 50 €.", "Привет, 你好,世界。 한국어 שלום e\u0301"]
TYPED = "\n".join(LINES * 12)


@pytest.fixture
def chat():
    with ChatServer(TYPED) as server:
        yield server


def starts(session, build, chat):
    person = WaylandPerson(session)
    person.quillet, person.window = person.sets_up_quillet(build, chat.environment)
    return person


def opens_page(person):
    session = person.session
    session.start_chromium(PAGE, "--ozone-platform=wayland")
    window = session.wait_for_window("Editor page")
    session.place(window, 150, 100, 900, 700)
    session.activate(window)
    wait_until(lambda: person.texts("chromium") == [BEFORE], "the page's input")
    person.click("first", "chromium")
    return window


def test_chromium_is_typed_into(build, chat):
    with SwaySession(build) as session:
        person = starts(session, build, chat)
        window = opens_page(person)
        person.runs_command("elevate", TYPED, session.geometry(window))
        wait_until(lambda: "✅ Text set" in person.quillet.output(), "the end of the keys")
        assert person.texts("chromium") == [TYPED]
        assert session.active_window() == window


def test_what_chromium_would_cut_is_left_on_the_clipboard(build, chat):
    chat.answer = "good 👍"
    with SwaySession(build) as session:
        person = starts(session, build, chat)
        window = opens_page(person)
        person.runs_command("elevate", "good 👍", session.geometry(window))
        wait_until(lambda: "❌ Failed to set text" in person.quillet.output(), "the refusal")
        assert person.texts("chromium") == [BEFORE], "rather nothing than half a character"


def test_a_program_on_x11_in_the_same_session(build, chat):
    with SwaySession(build, xwayland=True) as session:
        person = starts(session, build, chat)
        session.wait_for_x11()
        _, window = session.start_editor(
            "mousepad", BEFORE, environment={"GDK_BACKEND": "x11", "DISPLAY": session.display}
        )
        session.place(window, 200, 150, 700, 500)
        session.activate(window)
        wait_until(lambda: person.texts("mousepad") == [BEFORE], "the editor's text")
        box = session.geometry(window)
        button = person.waits_for_floating_button(box)
        assert person.sees_button(box) == tuple(button[:2])
        person.runs_command("elevate", TYPED, box)
        person.waits_for_text("mousepad", TYPED)


def test_a_window_on_the_second_screen_that_is_moved(build, chat):
    with SwaySession(build, screens=2) as session:
        person = starts(session, build, chat)
        _, window = session.start_editor("mousepad", BEFORE)
        session.place(window, 1280 + 200, 150, 700, 500)
        session.activate(window)
        wait_until(lambda: person.texts("mousepad") == [BEFORE], "the editor's text")
        box = session.geometry(window)
        assert box[0] > 1280
        x, y, _, _ = person.waits_for_floating_button(box)
        assert person.sees_button(box) == (x, y)
        assert box[0] + box[2] - 2 * SIDE < x < box[0] + box[2]
