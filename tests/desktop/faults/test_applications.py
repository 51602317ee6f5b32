# SPDX-FileCopyrightText: The Quillet authors
# SPDX-License-Identifier: Apache-2.0
"""The application that the user writes in fails."""

import signal

from session import wait_until
from witness import APPLY, LATE, OPTION, RESULT, Witness


def test_stopped_continued_killed_and_replaced(desktop, build):
    witness = Witness(desktop, build)
    editor, window = witness.opens_editor("first.txt", "first")
    editor.signal(signal.SIGSTOP)
    witness.stays_alive(10)
    witness.toggles_popup()
    editor.signal(signal.SIGCONT)
    witness.toggles_popup()

    witness.opens_popup()
    editor.signal(signal.SIGKILL)
    wait_until(lambda: not desktop.windows("first.txt"), "the editor's end")
    desktop.click(1270, 890)  # whatever had the focus, the desktop has it now
    wait_until(lambda: not witness.popup(), "the popup to close")
    witness.stays_alive(1)
    witness.opens_editor("second.txt", "second", "featherpad")
    witness.toggles_popup()


def test_stopped_while_its_text_is_written(desktop, build, chat):
    witness = Witness(desktop, build, chat.environment)
    other, other_window = witness.opens_editor("other.txt", "", "featherpad")
    editor, window = witness.opens_editor("letter.txt", "before")
    witness.opens_popup()
    before = witness.pixels(RESULT, 200, 40)
    witness.clicks_in_popup(OPTION)
    wait_until(lambda: chat.answer in witness.texts("quillet"), "the answer")
    assert witness.pixels(RESULT, 200, 40) != before
    editor.signal(signal.SIGSTOP)
    witness.clicks_in_popup(APPLY)
    with witness.watch() as watch:
        wait_until(lambda: desktop.windows("^Message from Quillet$"), "the message")
    assert watch.longest < LATE
    editor.signal(signal.SIGKILL)
    assert any("on the clipboard" in name for name in witness.names())
    witness.sees_button_on(other_window)
    desktop.key("ctrl+v")
    witness.waits_for_text("featherpad", chat.answer)
