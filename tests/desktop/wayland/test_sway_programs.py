# SPDX-FileCopyrightText: The Quillet authors
# SPDX-License-Identifier: Apache-2.0
"""What takes longer in a sway session: a browser that is typed into."""

import pathlib
import sys

import pytest

sys.path.insert(0, str(pathlib.Path(__file__).parent))
from chat_server import ChatServer  # noqa: E402
from session import wait_until  # noqa: E402
from sway_session import SwaySession, WaylandPerson  # noqa: E402

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
