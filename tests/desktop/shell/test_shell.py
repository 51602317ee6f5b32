# SPDX-FileCopyrightText: The Quillet authors
# SPDX-License-Identifier: Apache-2.0
"""The application among the windows, task bar and tray of a desktop."""

import os
import re
import shutil
import signal

from session import wait_until

ENTRY = "io.github.quillet.Quillet.desktop"


def start(desktop, build, environment=None):
    return desktop.start([str(build / "tests/desktop/shell/quillet_shell_probe")], environment)


def wait_for_main_window(desktop):
    window = desktop.wait_for_window("^Quillet$")
    wait_until(lambda: desktop.active_window() == window, "the active main window")
    return window


def close(desktop, window):
    desktop.run(["wmctrl", "-i", "-c", str(window)])
    wait_until(lambda: not desktop.windows("^Quillet$"), "the closed window")


def test_the_window_closes_into_the_background_and_a_second_start_brings_it_back(desktop, build):
    first = start(desktop, build)
    window = wait_for_main_window(desktop)
    assert "600x600" in desktop.run(["xwininfo", "-id", str(window)])
    size = desktop.run(["xprop", "-id", str(window), "WM_NORMAL_HINTS"])
    assert "minimum size: 600 by 600" in size and "maximum size: 600 by 600" in size

    close(desktop, window)
    wait_until(lambda: first.output() == "Window will close!\n", "the line")
    assert first.running()

    # The user is busy elsewhere, and the desktop announces the start.
    desktop.start(["xterm", "-title", "Other", "-e", "cat"])
    other = desktop.wait_for_window("Other")
    wait_until(lambda: desktop.active_window() == other, "the other window")
    messages = desktop.start(["stdbuf", "-oL", "xev", "-root", "-event", "property"])
    wait_until(
        lambda: desktop.run(["xprop", "-root", "-f", "_TEST", "8s", "-set", "_TEST", "x"])
        or "_TEST" in messages.output(),
        "the listener",
    )
    second = start(desktop, build, {"DESKTOP_STARTUP_ID": "launcher-1_TIME1"})
    assert second.process.wait(60) == 0
    again = wait_for_main_window(desktop)
    wait_until(lambda: "_NET_STARTUP_INFO_BEGIN" in messages.output(), "the end of the start-up")
    state = desktop.run(["xprop", "-id", str(again), "_NET_WM_STATE"])
    assert "SKIP_TASKBAR" not in state
    assert f"{again:#x}" in desktop.run(["xprop", "-root", "_NET_CLIENT_LIST"])

    # Minimised, it comes back too.
    desktop.run(["xdotool", "windowminimize", "--sync", str(again)])
    desktop.activate(other)
    assert start(desktop, build).process.wait(60) == 0
    wait_for_main_window(desktop)

    first.signal(signal.SIGTERM)
    assert first.process.wait(60) == 0
    assert first.output().endswith("cleaned up\n")


def find_menu(desktop):
    """Place and size of our menu, which is the only thing of ours that is as high."""
    found = desktop.run(
        ["xdotool", "search", "--onlyvisible", "--class", "quillet_shell_probe"], check=False
    )
    places = [desktop.geometry(int(window)) for window in found.split()]
    return next((place for place in places if place[3] > 60), None)


def find_icon(desktop):
    """The middle of our icon in the tray, on the screen."""
    tree = desktop.run(["xwininfo", "-root", "-tree"], check=False)  # windows come and go
    panel = tree[tree.find('"panel": ("panel" "trayer")') :]
    found = re.search(r'"quillet_shell_probe"\)\s+(\d+)x(\d+)\S+\s+\+(\d+)\+(\d+)', panel)
    if not found:
        return None
    width, height, x, y = map(int, found.groups())
    return x + width // 2, y + height // 2


def test_the_tray_brings_everything(desktop, build):
    """Also when it comes late, and when it was restarted."""
    program = start(desktop, build)
    close(desktop, wait_for_main_window(desktop))
    for last in (False, True):
        tray = desktop.start(
            [
                "trayer",
                "--edge",
                "top",
                "--align",
                "right",
                "--height",
                "24",
                "--widthtype",
                "pixel",
                "--width",
                "200",
            ]
        )
        place = wait_until(lambda: find_icon(desktop), "the icon")
        desktop.click(*place, button=3 if last else 1)
        x, y, width, height = wait_until(lambda: find_menu(desktop), "the menu")
        desktop.click(
            x + width // 2, y + height * (7 if last else 1) // 8
        )  # "Quit", "Open Quillet"
        if not last:
            close(desktop, wait_for_main_window(desktop))
            tray.stop()
            wait_until(lambda: not find_icon(desktop), "the end of the tray")
    wait_until(lambda: not program.running(), "the end")
    assert program.process.returncode == 0
    assert program.output().endswith("cleaned up\n")


def test_an_unpacked_bundle_installs_itself(desktop, build):
    """From the question to the running copy, with the real files."""
    bundle = os.path.join(desktop.folder, "Downloads", "quillet-1.0")
    os.makedirs(os.path.join(bundle, "bin"))
    os.makedirs(os.path.join(bundle, "share/applications"))
    shutil.copy(build / "tests/desktop/shell/quillet_shell_probe", bundle + "/bin/quillet")
    shutil.copy(build / "packaging" / ENTRY, bundle + "/share/applications")
    unpacked = desktop.start([bundle + "/bin/quillet"])
    wait_for_main_window(desktop)  # the alert
    desktop.key("Return")
    assert unpacked.process.wait(60) == 0

    installed = os.path.join(desktop.folder, ".local/opt/quillet/bin/quillet")

    def running_copies():
        found = []
        for pid in filter(str.isdigit, os.listdir("/proc")):
            try:
                # The link to the program itself is kept from other processes of the user.
                with open(f"/proc/{pid}/cmdline", "rb") as file:
                    if file.read().split(b"\0")[0] == os.fsencode(installed):
                        found.append(int(pid))
            except OSError:
                pass
        return found

    wait_until(running_copies, "the installed copy")
    window = wait_for_main_window(desktop)
    assert "600x600" in desktop.run(["xwininfo", "-id", str(window)])
    with open(desktop.env["XDG_DATA_HOME"] + "/applications/" + ENTRY) as entry:
        assert f'Exec="{installed}"\n' in entry.read()

    # The unpacked one now hands over without asking.
    close(desktop, window)
    assert desktop.start([bundle + "/bin/quillet"]).process.wait(60) == 0
    wait_for_main_window(desktop)
    assert len(running_copies()) == 1
