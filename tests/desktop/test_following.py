# SPDX-FileCopyrightText: The Quillet authors
# SPDX-License-Identifier: Apache-2.0
"""The button stays at its input's corner while windows and pages move."""

import pytest

from chat_server import ChatServer
from person import Person
from session import Session, wait_until

PAGE = """<!doctype html><meta charset=utf-8><title>Long page</title><body style="margin:40px">
<div style="height:200px"></div>
<textarea aria-label="letter" style="width:500px;height:200px">some text</textarea>
<div style="height:5000px"></div>
"""


@pytest.fixture(params=["openbox", "i3"])
def person(request, build):
    with Session(window_manager=request.param) as session, ChatServer("result") as chat:
        person = Person(session)
        person.quillet, person.window = person.sets_up_quillet(build, chat.environment)
        yield person
        print(person.quillet.output()[-3000:])  # shown where the test has failed


def corner_of_editor(person, window):
    """Where the button belongs, by what the editor itself says of its input."""
    place = person.session.geometry(window)
    box = person._see("input", "mousepad")
    return place and box and (place[0] + box[0] + box[2] - 30, place[1] + box[1] + 5)


def waits_for_button_at(person, corner):
    def there():
        button = person.finds_floating_button()
        return button and button[:2] == corner() and button

    try:
        return wait_until(there, "the button at the corner")
    except TimeoutError:
        raise AssertionError(
            f"the button is at {person.finds_floating_button()}, not at {corner()}"
        ) from None


def waits_for_no_button(person, why):
    wait_until(lambda: not person.finds_floating_button(), f"no button: {why}")


def place_window(session, window, x, y, width, height):
    session.run(["xdotool", "windowsize", str(window), str(width), str(height)])
    session.run(["xdotool", "windowmove", str(window), str(x), str(y)])
    wait_until(lambda: abs(session.geometry(window)[0] - x) < 40, "the window's place")


def test_the_button_follows_the_editors_window(person):
    session = person.session
    _, editor = session.start_editor("mousepad", "some text")

    def corner():
        return corner_of_editor(person, editor)

    place_window(session, editor, 300, 200, 600, 400)
    person.brings_to_front(editor)
    waits_for_button_at(person, corner)
    place_window(session, editor, 500, 60, 600, 400)
    waits_for_button_at(person, corner)
    place_window(session, editor, 500, 60, 450, 500)
    waits_for_button_at(person, corner)

    # A window above the corner hides it; the popup stays where it is.
    session.start(["xterm", "-title", "Cover", "-geometry", "30x8", "-e", "sleep 600"])
    cover = session.wait_for_window("Cover")
    place_window(session, cover, corner()[0] - 60, corner()[1] - 60, 200, 150)
    session.run(["wmctrl", "-i", "-r", str(cover), "-b", "add,above"])
    person.brings_to_front(editor)
    if session.window_manager_name == "openbox":
        waits_for_no_button(person, "the corner is covered")
    place_window(session, cover, 20, 700, 200, 150)
    button = waits_for_button_at(person, corner)
    session.click(button[0] + 12, button[1] + 12)
    popup = wait_until(lambda: person.finds_panel(370, 250), "the popup")
    place_window(session, editor, 400, 90, 450, 500)
    waits_for_button_at(person, corner)
    assert person.finds_panel(370, 250) == popup
    session.key("Escape")

    # Dragged, it keeps its distance, also when the focus has been elsewhere.
    x, y = corner()
    session.run(["xdotool", "mousemove", str(x + 12), str(y + 12), "mousedown", "1"])
    session.run(["xdotool", "mousemove", str(x - 28), str(y + 42), "mouseup", "1"])
    waits_for_button_at(person, lambda: (corner()[0] - 40, corner()[1] + 30))
    place_window(session, editor, 300, 60, 450, 500)
    waits_for_button_at(person, lambda: (corner()[0] - 40, corner()[1] + 30))
    session.activate(cover)
    waits_for_no_button(person, "a terminal is in front")
    session.activate(editor)
    waits_for_button_at(person, lambda: (corner()[0] - 40, corner()[1] + 30))

    if session.window_manager_name == "i3":
        session.run(["i3-msg", "floating", "disable"])
        wait_until(lambda: session.geometry(editor)[2] > 900, "the tiled window")
    else:
        session.run(["xdotool", "windowminimize", str(editor)])
        waits_for_no_button(person, "the window is minimised")
        session.activate(editor)
    waits_for_button_at(person, lambda: (corner()[0] - 40, corner()[1] + 30))


def test_the_button_follows_the_page(person):
    session = person.session
    session.start_chromium(PAGE, "--window-size=900,700", "--window-position=0,0")
    window = session.wait_for_window("Long page")
    session.activate(window)
    wait_until(lambda: person.texts("chromium"), "the page's input")

    def corner():
        box = person.finds("letter", "chromium")
        return box and (box[0] + box[2] - 30, box[1] + 5)

    x, y, _, height = person.click("letter", "chromium")
    waits_for_button_at(person, corner)
    before = corner()
    session.click(x + 20, y + height + 40, button=5)
    wait_until(lambda: corner() != before, "the scrolled page")
    waits_for_button_at(person, corner)
    for _ in range(12):
        session.run(["xdotool", "click", "5"])
    waits_for_no_button(person, "the input is scrolled away")
    for _ in range(16):
        session.run(["xdotool", "click", "4"])
    waits_for_button_at(person, lambda: before)

    session.key("F11")
    wait_until(lambda: corner() not in (None, before), "the full screen")
    waits_for_button_at(person, corner)
    session.key("F11")
    waits_for_button_at(person, lambda: before)
