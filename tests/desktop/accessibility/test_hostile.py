"""Applications that lie: no question hangs, crashes or believes them."""

import os
import pathlib
import sys

import pytest

sys.path.insert(0, os.path.dirname(__file__))
from probe import CANNOT_COMPLETE, Probe  # noqa: E402
from session import wait_until  # noqa: E402

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

    for lie in ("negative-size", "far-away"):
        probe, program = attack(lie)
        seen = probe("wait", "AXTextArea", program.pid)
        assert seen["AXRole"] == "AXTextArea" and "AXFrame" not in seen
        program.stop()

    probe, program = attack("invalid-text")
    seen = probe("wait", "AXTextArea", program.pid)
    assert seen["AXRole"] == "AXTextArea" and "AXValue" not in seen
    program.stop()

    probe, program = attack("impossible-role")
    assert probe("wait", "AXUnknown", program.pid)["AXRole"] == "AXUnknown"
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


def test_a_storm_of_focus_events(attack):
    probe, program = attack("focus-storm")
    probe("wait", "AXTextArea", program.pid)
    spent = probe("serve", 3000)
    # Under half of one core even where each event would be looked at.
    assert spent["cpu"] < 1500
    assert probe("wait", "AXTextArea", program.pid)["pid"] == program.pid
