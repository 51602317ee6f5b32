# SPDX-FileCopyrightText: The Quillet authors
# SPDX-License-Identifier: Apache-2.0
"""The focused application lies on the accessibility bus, or floods it."""

import os
import pathlib
import sys

import pytest

from chat_server import ChatServer
from session import Session, wait_until
from witness import CANCEL, OPTION, Witness

HOSTILE = str(pathlib.Path(__file__).parents[2] / "support" / "hostile_app.py")
INPUT = (60, 80, 300, 150)  # where the hostile program claims its input to be


@pytest.fixture(scope="module")
def witness(build):
    """One desktop for all the lies, which leave no trace on it."""
    with Session() as desktop, ChatServer("an answer") as chat:
        witness = Witness(desktop, build, chat.environment)
        witness.editor, witness.editor_window = witness.opens_editor("letter.txt", "a letter")
        yield witness


@pytest.fixture
def attack(witness):
    """Starts the hostile program and waits until Quillet has noticed it; afterwards the healthy
    editor has its button again."""

    def start(lie):
        nonlocal program
        program = witness.session.start([sys.executable, HOSTILE, lie])
        witness.session.activate(witness.session.wait_for_window("hostile"))
        wait_until(lambda: f"[PID: {program.pid}]" in witness.quillet.output(), "the program")
        return program

    program = None
    yield start
    program.stop()
    witness.sees_button_on(witness.editor_window)
    witness.toggles_popup()


@pytest.mark.parametrize(
    "lie",
    [
        "negative-size",
        "far-away",
        "impossible-role",
        "endless-tree",
        "vanishing",
        "many-children",
        "silent",
    ],
)
def test_no_button(witness, attack, lie):
    attack(lie)
    witness.sees_no_button()
    witness.stays_alive(6 if lie == "silent" else 2)


@pytest.mark.parametrize("lie", ["invalid-text", "huge-value"])
def test_unusable_text(witness, attack, lie):
    attack(lie)
    witness.waits_for_floating_button(INPUT)
    witness.opens_popup()
    witness.clicks_in_popup(OPTION)
    witness.stays_alive(3)
    # A program that sends invalid text is thrown off the bus, and the popup goes with it.
    if lie != "invalid-text":
        witness.clicks_in_popup(CANCEL)
        witness.clicks_floating_button()
        wait_until(lambda: not witness.popup(), "the popup to close")


def test_two_thousand_focus_events_a_second(witness, attack):
    program = attack("focus-storm")
    begin = cpu_seconds(witness.quillet.pid)
    witness.stays_alive(60)
    assert cpu_seconds(witness.quillet.pid) - begin < 30, "the storm may not fill a core"
    witness.toggles_popup()
    assert program.running()


def cpu_seconds(pid):
    with open(f"/proc/{pid}/stat", encoding="utf-8") as file:
        fields = file.read().rpartition(")")[2].split()
    return (int(fields[11]) + int(fields[12])) / os.sysconf("SC_CLK_TCK")
