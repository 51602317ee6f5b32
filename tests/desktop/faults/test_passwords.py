# SPDX-FileCopyrightText: The Quillet authors
# SPDX-License-Identifier: Apache-2.0
"""Passwords are none of Quillet's business: no button, and no question for them."""

import pathlib
import sys

from session import wait_until
from witness import Witness

HOSTILE = str(pathlib.Path(__file__).parents[2] / "support" / "hostile_app.py")
# A GTK entry with a password in it, without any bindings for GTK.
ENTRY = """
import ctypes
gtk = ctypes.CDLL("libgtk-3.so.0")
for name in ("gtk_window_new", "gtk_entry_new"):
    getattr(gtk, name).restype = ctypes.c_void_p
gtk.gtk_init(None, None)
window = ctypes.c_void_p(gtk.gtk_window_new(0))
entry = ctypes.c_void_p(gtk.gtk_entry_new())
gtk.gtk_window_set_title(window, b"Sign in")
gtk.gtk_entry_set_visibility(entry, 0)
gtk.gtk_entry_set_text(entry, b"a secret")
gtk.gtk_container_add(window, entry)
gtk.gtk_widget_show_all(window)
gtk.gtk_widget_grab_focus(entry)
gtk.gtk_main()
"""
PAGE = """<!doctype html><meta charset=utf-8><title>Sign in page</title>
<input type=password value="a secret" style="width:400px;height:60px" autofocus>"""


def puts_beside(session, window):
    """Puts a window beside Quillet's, in front, large enough for a click at (900, 400)."""
    session.run(
        [
            "xdotool",
            "windowsize",
            "--sync",
            str(window),
            "600",
            "500",
            "windowmove",
            "--sync",
            str(window),
            "650",
            "60",
        ]
    )
    session.activate(window)


def is_ignored(witness, title):
    """With the input of the window clicked, there is no button."""
    puts_beside(witness.session, witness.session.wait_for_window(title))
    witness.session.click(900, 400)
    has_no_button(witness)


def has_no_button(witness):
    """Not for several looks at the focus."""
    seen = witness.quillet.output().count("🎯")
    witness.sees_no_button()
    wait_until(lambda: witness.quillet.output().count("🎯") > seen + 4, "several looks")
    assert not witness.finds_floating_button()


def test_password_fields_of_toolkits(desktop, build):
    witness = Witness(desktop, build)
    program = desktop.start([sys.executable, "-c", ENTRY])
    is_ignored(witness, "Sign in")
    assert f"[PID: {program.pid}]" in witness.quillet.output()
    program.stop()

    program = desktop.start_chromium(PAGE)
    window = desktop.wait_for_window("Sign in page")
    puts_beside(desktop, window)
    desktop.key("Tab")
    desktop.key("shift+Tab")
    wait_until(lambda: f"[PID: {program.pid}]" in witness.quillet.output(), "the browser")
    has_no_button(witness)


def test_a_password_is_never_asked_for(desktop, build):
    witness = Witness(desktop, build)
    program = desktop.start([sys.executable, HOSTILE, "password"])
    is_ignored(witness, "hostile")
    calls = program.output()
    assert "GetRole" in calls, "Quillet has looked at it"
    asked = [
        line
        for line in calls.splitlines()
        if "Text" in line or "GetText" in line or "Selection" in line
    ]
    assert not asked, asked
