# SPDX-FileCopyrightText: The Quillet authors
# SPDX-License-Identifier: Apache-2.0
"""Panels among the windows of other programs: focus, stacking, place, shape."""

import time

import pytest

from probe import Probe, input_focus, is_above
from session import WINDOW_MANAGERS, Session, wait_until

PANEL = "panel 400 300 370 250"


def terminal(desktop, title):
    desktop.terminal = desktop.start(
        ["xterm", "-title", title, "-geometry", "80x24+350+250", "-e", "cat"]
    )
    window = desktop.wait_for_window(title)
    if desktop.is_managed():
        wait_until(lambda: input_focus(desktop) == window, "the focus")
    else:
        desktop.run(["xdotool", "windowfocus", "--sync", str(window)])
    return window


@pytest.fixture(params=[*WINDOW_MANAGERS, None])
def managed(request):
    """A desktop under each window manager, and under none."""
    with Session(a11y=False, window_manager=request.param) as session:
        yield session


def test_a_panel_leaves_the_keyboard_alone_and_stays_in_sight(managed, build):
    target = terminal(managed, "Target")
    probe = Probe(managed, build)
    panel = int(probe(PANEL))

    wait_until(lambda: is_above(managed, panel, target), "the panel on top")
    assert managed.geometry(panel) == (400, 300, 370, 250)
    assert input_focus(managed) == target

    managed.click(585, 320)  # its button
    wait_until(lambda: probe("clicks") == "1", "the click")
    managed.click(585, 450)  # its text
    assert input_focus(managed) == target
    assert hex(panel) not in managed.run(["xprop", "-root", "_NET_CLIENT_LIST"])

    managed.run(["xdotool", "windowraise", str(target)])
    other = terminal(managed, "Other")
    wait_until(
        lambda: is_above(managed, panel, target) and is_above(managed, panel, other),
        "the panel on top again",
    )
    probe("move -100 -50")
    wait_until(lambda: managed.geometry(panel)[:2] == (-100, -50), "the panel where it was put")


def test_the_keyboard_is_borrowed_and_given_back(managed, build):
    target = terminal(managed, "Target")
    probe = Probe(managed, build)
    panel = int(probe(PANEL))
    assert probe("restore") == "restored 1"
    before = str(managed.terminal.pid)
    assert probe("front") == before
    assert probe("name " + before) == "XTerm"  # as its desktop entry has it
    assert probe("name 999999999") == "none"

    for closing in ("hide", "close"):
        probe("focus")
        wait_until(lambda: input_focus(managed) == panel, "the panel's focus")
        assert probe("front") == str(probe.program.pid)
        managed.type("abc")
        wait_until(lambda: "abc" in probe("text"), "the typed text")
        probe(closing)
        assert probe("restore") == "restored 1"
        assert input_focus(managed) == target
        wait_until(lambda: probe("front") == before, "the target in front")
        probe("show")

    probe("focus")
    managed.run(["xkill", "-id", str(target)])
    wait_until(lambda: not managed.windows("Target"), "the end of the target")
    assert probe("restore") == "restored 0"


def test_the_keyboard_is_left_where_the_user_has_taken_it(managed, build):
    other = terminal(managed, "Other")
    managed.run(["xdotool", "windowmove", "--sync", str(other), "20", "20"])
    terminal(managed, "Target")
    probe = Probe(managed, build)
    panel = int(probe(PANEL))
    probe("focus")
    wait_until(lambda: input_focus(managed) == panel, "the panel's focus")

    if managed.is_managed():
        managed.click(60, 60)
    else:
        managed.run(["xdotool", "windowfocus", "--sync", str(other)])
    wait_until(lambda: input_focus(managed) == other, "the other window's focus")
    probe("hide")
    assert probe("restore") == "restored 0"
    for _ in range(8):  # longer than giving back insists
        time.sleep(0.1)
        assert input_focus(managed) == other

    # Nothing is left to give back to a lender that the user has turned to.
    probe("show")
    wait_until(
        lambda: "IsViewable" in managed.run(["xwininfo", "-id", str(panel)]), "the panel again"
    )
    probe("focus")
    wait_until(lambda: input_focus(managed) == panel, "the panel's focus")
    managed.run(["xdotool", "windowfocus", "--sync", str(other)])
    assert probe("restore") == "restored 1"


def test_a_panel_is_above_full_screen_windows_and_on_every_desktop(desktop, build):
    target = terminal(desktop, "Target")
    probe = Probe(desktop, build)
    panel = int(probe(PANEL))
    desktop.run(["wmctrl", "-i", "-r", str(target), "-b", "add,fullscreen"])
    wait_until(lambda: desktop.geometry(target)[2] > 1200, "the full screen")
    wait_until(lambda: is_above(desktop, panel, target), "the panel on top")
    desktop.run(["xdotool", "set_num_desktops", "2"])
    desktop.run(["xdotool", "set_desktop", "1"])
    wait_until(lambda: "1" in desktop.run(["xdotool", "get_desktop"]), "the other desktop")
    assert "IsViewable" in desktop.run(["xwininfo", "-id", str(panel)])


def colours(desktop, tmp_path, name, points):
    """The colours at some points of the screen, as #RRGGBB."""
    picture = desktop.screenshot(tmp_path / name)
    found = []
    for x, y in points:
        line = desktop.run(
            ["convert", str(picture), "-crop", f"1x1+{x}+{y}", "-depth", "8", "txt:"]
        )
        found.append(line.split("#")[-1][:6])
    return found


@pytest.mark.parametrize("scale", ["1", "2"])
def test_what_is_not_painted_shows_what_is_behind(desktop, build, tmp_path, scale):
    """The corners are cut without a compositor, and blended while one runs."""
    desktop.run(["xsetroot", "-solid", "#00ff00"])  # a compositor may have one of its own
    probe = Probe(desktop, build, {"QT_SCALE_FACTOR": scale})
    panel = int(probe("panel 100 80 200 150"))
    x, y, width, height = desktop.geometry(panel)
    assert [x, y, width, height] == [int(scale) * points for points in (100, 80, 200, 150)]
    corner, edge, inside = (x + 1, y + 1), (x + width // 2, y + 2), (x + 5, y + 60)
    purple = "6C3DF5"

    def looks(name, shaped):
        shape = desktop.run(["xwininfo", "-shape", "-id", str(panel)])
        found = colours(desktop, tmp_path, name, [corner, edge, inside, (10, 10)])
        return ("No window shape" not in shape) == shaped and found[:3] == [
            found[3],
            purple,
            purple,
        ]

    wait_until(lambda: looks("cut.png", True), "the shape")
    compositor = desktop.start(["picom", "--backend", "xrender", "--config", "/dev/null"])
    wait_until(lambda: looks("blended.png", False), "the blended corners")
    compositor.stop()
    wait_until(lambda: looks("cut-again.png", True), "the shape")


def test_a_background_window_is_kept_out_of_the_task_bar(desktop, build):
    probe = Probe(desktop, build)
    window = probe("window")

    def left_out():
        state = desktop.run(["xprop", "-id", window, "_NET_WM_STATE"])
        return "SKIP_TASKBAR" in state and "SKIP_PAGER" in state

    probe("accessory")  # not shown yet
    terminal(desktop, "Busy")
    probe("activate")
    wait_until(lambda: desktop.active_window() == int(window), "the active window")
    assert left_out()
    probe("regular")
    wait_until(lambda: not left_out(), "the window in the task bar")
    probe("accessory")
    wait_until(left_out, "the window out of the task bar")
