# SPDX-FileCopyrightText: The Quillet authors
# SPDX-License-Identifier: Apache-2.0
"""Applications that lie: no question hangs, crashes or believes them."""

import pathlib

import pytest

from probe import CANNOT_COMPLETE, Probe
from session import wait_until

HOSTILE = str(pathlib.Path(__file__).parents[2] / "support" / "hostile_app.py")


@pytest.fixture
def attack(desktop, build):
    probe = Probe(desktop, build)
    probe("allow")

    def start(lie):
        program = desktop.start([HOSTILE, lie])
        desktop.activate(desktop.wait_for_window("hostile"))
        return probe, program

    yield start
    probe.close()


def test_lies_about_one_input(desktop, attack):
    probe, program = attack("honest")
    seen = probe("wait", "AXTextArea", program.pid)
    assert seen["AXValue"] == "an honest text" and seen["AXFrame"] == [60, 80, 300, 150]
    program.stop()

    probe, program = attack("invalid-text")
    seen = probe("wait", "AXTextArea", program.pid)
    assert seen["AXRole"] == "AXTextArea" and "AXValue" not in seen
    program.stop()

    probe, program = attack("huge-value")
    assert probe("wait", "AXTextArea", program.pid)["pid"] == program.pid
    value = probe("focus").get("AXValue")
    assert value is None or len(value) == 20 * 1_050_000
    wait_until(lambda: probe("focus").get("AXRole") == "AXTextArea", "an answer")


@pytest.mark.parametrize("lie", ["endless-tree", "vanishing", "many-children"])
def test_lies_about_a_tree(attack, lie):
    probe, program = attack(lie)
    assert probe("wait", "AXWebArea", program.pid)["AXRole"] == "AXWebArea"
    assert not probe("contains")["contains"]
    assert probe("tree")["tree"].strip("\n") == ""
    assert probe("focus")["AXRole"] == "AXWebArea"


def test_a_private_address_runs_nothing_and_reaches_nobody_else(desktop, attack):
    for lie in ("private-command", "private-impostor"):
        probe, program = attack(lie)
        seen = probe("wait", "AXTextArea", program.pid)
        assert seen["AXValue"] == "an honest text"  # over the bus
        probe("serve", 300)
        assert not pathlib.Path(desktop.folder, "ran").exists()
        assert "got b'\\x00AUTH" not in program.output()
        program.stop()


def test_one_that_never_answers(attack):
    probe, program = attack("silent")
    times = []
    for _ in range(8):
        seen = probe("focus")
        times.append(seen["ms"])
        # Known is only that the focus is there, in whatever element.
        assert seen.get("error") == CANNOT_COMPLETE or seen["AXRole"] == "AXApplication"
        probe("serve", 50)
    assert sum(time > 190 for time in times) <= 2, times
