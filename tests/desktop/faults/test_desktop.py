# SPDX-FileCopyrightText: The Quillet authors
# SPDX-License-Identifier: Apache-2.0
"""The desktop below Quillet fails: the accessibility service and the window manager."""

import os
import signal

import pytest

from chat_server import ChatServer
from session import wait_until
from witness import Witness


def kill(pids):
    assert pids
    for pid in pids:
        os.kill(pid, signal.SIGKILL)


def test_accessibility_registry_dies(desktop, build):
    witness = Witness(desktop, build)
    editor, window = witness.opens_editor("first.txt", "first")
    kill(witness.processes("at-spi2-registryd"))
    witness.stays_alive(2)
    witness.toggles_popup()
    witness.opens_editor("second.txt", "second", "featherpad")
    witness.toggles_popup()
    witness.sees_button_on(window)


def test_accessibility_bus_restarts(desktop, build):
    witness = Witness(desktop, build)
    witness.opens_editor("first.txt", "first")
    buses = [pid for pid in witness.processes("dbus-daemon") if is_accessibility_bus(pid)]
    kill(witness.processes("at-spi-bus-launcher"))
    kill(buses)
    desktop.bus_launcher.process.wait()
    witness.stays_alive(2)
    # The tutorial's own editor needs no bus.
    desktop.activate(witness.window)
    wait_until(
        lambda: witness.finds_floating_button() == witness.tutorial_button,
        "the button at the tutorial's editor",
    )
    witness.toggles_popup()
    desktop.start_accessibility_bus()
    witness.stays_alive(1)
    # Programs keep the bus that they were started with, so the next healthy input is a new one's.
    witness.opens_editor("second.txt", "second")
    witness.toggles_popup()
    witness.opens_editor("third.txt", "third", "featherpad")


def is_accessibility_bus(pid):
    with open(f"/proc/{pid}/cmdline", encoding="utf-8") as file:
        return "accessibility.conf" in file.read()


@pytest.mark.parametrize("replacement", ["metacity", "xfwm4"])
def test_window_manager_is_replaced(desktop, build, replacement):
    with ChatServer("another text") as chat:
        witness = Witness(desktop, build, chat.environment)
        editor, window = witness.opens_editor("letter.txt", "a text")
        witness.opens_popup()
        desktop.window_manager.signal(signal.SIGKILL)
        desktop.window_manager.process.wait()
        witness.stays_alive(2)
        desktop.start_window_manager(replacement)
        wait_until(lambda: desktop.windows("letter.txt"), "the editor to be managed")
        witness.sees_button_on(window)
        witness.stays_alive(1)
        if witness.popup():
            witness.clicks_floating_button()
            wait_until(lambda: not witness.popup(), "the popup to close")
        witness.runs_command("elevate", "another text")
        witness.waits_for_text("mousepad", "another text")
