# SPDX-FileCopyrightText: The Quillet authors
# SPDX-License-Identifier: Apache-2.0
"""What is typed arrives exactly, in every program and with every layout."""

import pytest

from inputs import PROGRAMS, Input, first_difference, keyboard_map
from session import Session, wait_until
from texts import KINDS, make


@pytest.fixture(scope="module", params=PROGRAMS)
def program(request, build):
    """One desktop for each program: starting it takes longer than typing into it."""
    with Session() as desktop:
        yield Input(desktop, build, request.param)


@pytest.fixture
def typed_input(program):
    program.clear()
    return program


def length_of(typed_input, length):
    """Into pages the keys go in small bursts, each confirmed: a third of the text has as many."""
    return length // 3 if typed_input.web else length


def check(typed_input, text, *options):
    report = typed_input.type(text, *options)
    got = typed_input.settled(text)
    assert (report["result"], got) == ("typed", text), (report, first_difference(got, text))


@pytest.mark.parametrize("layout", ["us", "de", "fr", "ru", "us,ru"])
def test_every_kind_with_every_layout(typed_input, layout):
    typed_input.desktop.run(["setxkbmap", layout])
    before = keyboard_map(typed_input.desktop)
    check(typed_input, make("mixed", length_of(typed_input, 600), seed=layout, tab=typed_input.tab))
    assert keyboard_map(typed_input.desktop) == before


@pytest.mark.parametrize("kind", KINDS)
def test_long_texts(typed_input, kind):
    check(typed_input, make(kind, length_of(typed_input, 1500), seed=7, tab=typed_input.tab))


def test_caps_lock_and_num_lock_change_nothing(typed_input):
    for lock in ("Caps_Lock", "Num_Lock"):
        typed_input.desktop.key(lock)
    try:
        before = keyboard_map(typed_input.desktop)
        check(typed_input, "Abc äÖ жЖ 漢字 123 ﬁ ß")
        typed_input.clear()
        check(typed_input, make("mixed", 600, seed=lock, tab=typed_input.tab))
        assert keyboard_map(typed_input.desktop) == before
    finally:
        for lock in ("Caps_Lock", "Num_Lock"):
            typed_input.desktop.key(lock)


def test_indentation_after_pictures(typed_input):
    # Some editors indent the next line by themselves, and some count a picture as two characters.
    tab = typed_input.tab
    check(typed_input, f"a line\n{'😀' * 40}\nanother\n{tab}x\nend\n{tab}y\n{tab}z")


def test_without_reading_back(typed_input):
    # Without a target it is not known that this is a web page, where Return makes a paragraph.
    text = make("mixed", 240, seed=3, tab="    ").replace("\n", " ")
    check(typed_input, text, "--blind")


def start_with_input_method(desktop, build, name, engine):
    """An input in a desktop whose input method is IBus, with that engine."""
    desktop.env.update(GTK_IM_MODULE="ibus", XMODIFIERS="@im=ibus")
    desktop.start(["ibus-daemon", "--xim", "--panel", "disable"])

    def ready():
        desktop.run(["ibus", "engine", engine], check=False)
        return engine in desktop.run(["ibus", "engine"], check=False)

    wait_until(ready, "the input method")
    return Input(desktop, build, name)


@pytest.mark.parametrize(
    "name, kind, length",
    [("textarea", "cjk", 1500), ("mousepad", "cjk", 1500), ("gnome-text-editor", "mixed", 240)],
)
def test_with_an_input_method(build, name, kind, length):
    """It hands the keys back to the program in its own time."""
    with Session() as desktop:
        typed_input = start_with_input_method(desktop, build, name, "xkb:us::eng")
        check(typed_input, make(kind, length, seed=9, tab=typed_input.tab))


@pytest.mark.parametrize("name", ["textarea", "mousepad"])
def test_an_input_method_that_composes_is_off_meanwhile(build, name):
    with Session() as desktop:
        typed_input = start_with_input_method(desktop, build, name, "libpinyin")
        check(typed_input, "ni hao wo shi hello 你好 ni hao.\nzai jian")
        wait_until(
            lambda: "libpinyin" in desktop.run(["ibus", "engine"], check=False), "the old engine"
        )
