# SPDX-FileCopyrightText: The Quillet authors
# SPDX-License-Identifier: Apache-2.0
"""Parts of Quillet itself fail: the backend, the store of the analytics, the program."""

import os
import pathlib
import signal

from session import wait_until
from witness import APPLY, CANCEL, OPTION, RESULT, Witness


def backend(witness):
    return wait_until(lambda: witness.processes("quillet-backend"), "the backend")


def test_backend_killed_then_a_model_that_never_answers(desktop, build, chat):
    witness = Witness(desktop, build, chat.environment)
    witness.opens_editor("letter.txt", "a text")
    for _ in range(2):
        before = backend(witness)
        os.kill(before[0], signal.SIGKILL)
        wait_until(lambda: before != witness.processes("quillet-backend"), "the backend's end")
        chat.answer += " again"
        witness.runs_command("elevate", chat.answer)
        witness.waits_for_text("mousepad", chat.answer)
        assert len(backend(witness)) == 1

    chat.silent = True
    try:
        asked = len(chat.prompts)
        witness.opens_popup()
        grid = witness.pixels(RESULT, 300, 100)
        witness.clicks_in_popup(OPTION)
        wait_until(lambda: len(chat.prompts) > asked, "the question")
        witness.stays_alive(3)
        assert witness.pixels(RESULT, 300, 100) != grid
        witness.clicks_in_popup(CANCEL)
        wait_until(lambda: witness.finds("elevate"), "the options")
        # One that dies in the middle of an answer only leaves the result empty.
        witness.click("elevate")
        wait_until(lambda: len(chat.prompts) > asked + 1, "the question")
        os.kill(backend(witness)[0], signal.SIGKILL)
        wait_until(lambda: "\nError:" in witness.quillet.output(), "the failure in the log")
    finally:
        chat.silent = False
    witness.click("reload")
    wait_until(lambda: chat.answer in witness.texts("quillet"), "the answer")


def test_an_answer_of_five_megabytes(desktop, build, chat):
    chat.answer = "\n".join(f"Line {i} of a long answer, äöü." for i in range(150_000))
    witness = Witness(desktop, build, chat.environment)
    witness.opens_editor("letter.txt", "a text")
    witness.opens_popup()
    witness.clicks_in_popup(OPTION)
    wait_until(lambda: chat.answer in witness.texts("quillet"), "the answer")
    witness.stays_alive(3)
    witness.clicks_in_popup(APPLY)
    witness.waits_for_text("mousepad", chat.answer)
    witness.stays_alive(2)


# The page tells how far it is: who asks it over the accessibility bus would come and go meanwhile.
PAGE = """<!doctype html><meta charset=utf-8><title>Empty page</title>
<textarea autofocus spellcheck=false style="width:500px;height:300px"
    oninput="document.title = value.endsWith('.') ? 'Done' : 'Being written'">before</textarea>"""


def test_ended_while_it_writes(desktop, build, chat):
    chat.answer = "".join(chr(0x4E00 + i % 5000) if i % 50 else "\n" for i in range(1, 60_000))
    witness = Witness(desktop, build, chat.environment)
    browser = desktop.start_chromium(PAGE)
    witness.sees_button_on(desktop.wait_for_window("Empty page"))
    layout = desktop.run(["xkbcomp", "-xkb", desktop.env["DISPLAY"], "-"])
    witness.opens_popup()
    witness.clicks_in_popup(OPTION)
    wait_until(lambda: chat.answer in witness.texts("quillet"), "the answer")
    witness.clicks_in_popup(APPLY)
    desktop.wait_for_window("Being written")
    witness.quillet.signal(signal.SIGTERM)
    assert witness.quillet.process.wait() == 0
    assert desktop.run(["xkbcomp", "-xkb", desktop.env["DISPLAY"], "-"]) == layout
    # What was on its way is still what it was to be.
    desktop.key("period")
    desktop.wait_for_window("Done")
    text = witness.texts("chromium")[0].rstrip(".\n")
    assert len(text) < len(chat.answer) and chat.answer.startswith(text)
    assert browser.running()


def test_killed_and_started_over_a_broken_store(desktop, build, chat):
    witness = Witness(desktop, build, chat.environment)
    witness.opens_editor("letter.txt", "a text")
    witness.runs_command("elevate", chat.answer)  # leaves events in the store
    cache = pathlib.Path(desktop.env["XDG_CACHE_HOME"])
    stores = wait_until(lambda: list(cache.glob("**/*MPDB.sqlite")), "the store")
    backend(witness)
    witness.quillet.signal(signal.SIGKILL)
    witness.quillet.process.wait()
    wait_until(lambda: not witness.processes("quillet-backend"), "the backend's end")

    for store in stores:
        for extra in cache.glob("**/*MPDB.sqlite-*"):
            extra.unlink()
        store.write_bytes(b"not a database" * 5000)
    works(desktop, build, chat)

    # Somewhere that not even the administrator can write.
    for fault in ("/proc/sys", "/dev/null"):
        works(desktop, build, chat, {"XDG_CACHE_HOME": fault})


def works(desktop, build, chat, environment=None):
    chat.answer += " and more"
    # The watching starts in the wizard, which is for the first start only.
    pathlib.Path(desktop.env["XDG_CONFIG_HOME"], "quillet", "quillet.conf").unlink()
    witness = Witness(desktop, build, {**chat.environment, **(environment or {})})
    witness.sees_button_on(desktop.wait_for_window("letter.txt"))
    witness.runs_command("elevate", chat.answer)
    witness.waits_for_text("mousepad", chat.answer)
    witness.stays_alive(1)
    witness.quillet.signal(signal.SIGKILL)
    witness.quillet.process.wait()
    wait_until(lambda: not witness.processes("quillet-backend"), "the backend's end")
