# SPDX-FileCopyrightText: The Quillet authors
# SPDX-License-Identifier: Apache-2.0
"""The user, another window, a signal: typing stops cleanly and the keyboard is as it was."""

import pathlib
import signal
import subprocess
import time

import pytest

from inputs import Input, keyboard_map
from session import Session, wait_until
from texts import make

# Long enough to be still under way when something happens, and full of borrowed characters.
TEXT = make("cjk", 20000, seed=5)
HOSTILE = str(pathlib.Path(__file__).parents[2] / "support" / "hostile_app.py")


@pytest.fixture
def editor(request, build):
    with Session() as desktop:
        yield Input(desktop, build, getattr(request, "param", "mousepad"))


def start(editor):
    """Starts typing and waits until some of the text is there."""
    before = keyboard_map(editor.desktop)
    process = editor.start_typing(TEXT)
    wait_until(lambda: editor.read(), "the first characters")
    assert process.poll() is None, "the text was too short for this test"
    return process, before


def check_prefix(text):
    assert 0 < len(text) < len(TEXT)
    assert TEXT.startswith(text)


def test_a_key_of_the_user_stops_it(editor):
    process, before = start(editor)
    editor.desktop.run(["xdotool", "key", "Down"])
    assert editor.finish(process)["result"] == "interrupted"
    assert keyboard_map(editor.desktop) == before
    check_prefix(editor.read() or "")


def test_a_held_modifier_delays_the_start(editor):
    editor.desktop.run(["xdotool", "keydown", "ctrl"])
    process = editor.start_typing("aqwж漢")
    time.sleep(0.5)
    assert process.poll() is None and not editor.read()
    editor.desktop.run(["xdotool", "keyup", "ctrl"])
    assert editor.finish(process)["result"] == "typed"
    assert editor.settled("aqwж漢") == "aqwж漢"


def test_nothing_goes_into_another_window(editor):
    log = editor.desktop.start(["xev", "-event", "keyboard"])
    other = editor.desktop.wait_for_window("Event Tester")
    editor.focus()
    wait_until(editor.has_focus, "the editor")
    process, before = start(editor)
    editor.desktop.activate(other)
    assert editor.finish(process)["result"] in ("interrupted", "misplaced")
    assert "KeyPress" not in log.output()
    assert keyboard_map(editor.desktop) == before
    editor.desktop.activate(editor.window)
    check_prefix(wait_until(editor.read, "the text"))


def test_only_what_was_found_is_typed_into(build):
    """The focus goes elsewhere after the input was found and before the first key."""
    page = """<textarea id=first style="width:95%;height:500px"></textarea>
        <textarea id=second></textarea>
        <script>second.oninput = () => document.title = "second got " + second.value</script>"""
    with Session() as desktop:
        editor = Input(desktop, build, "textarea", page)
        log = desktop.start(["xev", "-event", "keyboard"])
        other = desktop.wait_for_window("Event Tester")
        for leaves in (lambda: desktop.key("Tab"), lambda: desktop.activate(other)):
            editor.focus()
            wait_until(editor.has_focus, "the page")
            probe = subprocess.Popen(
                [editor.probe, "--announce"],
                env=desktop.env,
                text=True,
                stdin=subprocess.PIPE,
                stdout=subprocess.PIPE,
            )
            assert "found" in probe.stdout.readline()
            leaves()
            time.sleep(0.5)
            got, _ = probe.communicate("ls\n")
            assert '"no target"' in got
        assert "KeyPress" not in log.output()
        assert "got" not in desktop.run(["xdotool", "getwindowname", str(editor.window)])


def test_a_page_that_moves_the_focus_gets_no_more_than_is_on_its_way(build):
    text, moves_after, most_on_their_way = make("latin", 5000, seed=6), 200, 8
    page = (
        """<textarea id=first autofocus spellcheck=false></textarea>
        <textarea id=second spellcheck=false></textarea>
        <script>first.oninput = () => {
            if (first.value.length < %d) return;
            document.title = "moved after " + first.value.length;
            second.focus();
        }</script>"""
        % moves_after
    )
    with Session() as desktop:
        editor = Input(desktop, build, "textarea", page)
        assert editor.type(text)["result"] in ("interrupted", "misplaced")
        desktop.key("Return")  # the last key to arrive
        wait_until(lambda: (editor.read() or "").endswith("\n"), "the end of the text")
        second = editor.read().rstrip("\n")
        title = desktop.run(["xdotool", "getwindowname", str(editor.window)])
        first = int(title.split("moved after ")[1].split()[0])
        assert len(second) <= most_on_their_way
        assert text[first:].startswith(second)


def test_no_key_comes_before_the_program_knows_that_nobody_listens(desktop, build):
    # Browsers crash that learn it while they ask the registry about a key.
    program = desktop.start([HOSTILE, "slow-farewell"])
    desktop.activate(desktop.wait_for_window("hostile"))
    subprocess.run(
        [str(build / "tests/support/type_probe")],
        env=desktop.env,
        input="typed",
        text=True,
        check=True,
    )
    assert wait_until(program.output, "the keys").startswith("key")


def test_a_closed_window_ends_it(editor):
    process, before = start(editor)
    editor.program.process.kill()
    assert editor.finish(process)["result"] in ("interrupted", "misplaced", "failed")
    assert keyboard_map(editor.desktop) == before


@pytest.mark.parametrize("editor", ["mousepad", "textarea"], indirect=True)
def test_a_terminated_process_leaves_the_keyboard_as_it_was(editor):
    process, before = start(editor)
    process.send_signal(signal.SIGTERM)
    assert editor.finish(process) is None
    assert keyboard_map(editor.desktop) == before
    # What was on its way is still what it was to be.
    editor.desktop.key("Return")
    wait_until(lambda: (editor.read() or "").endswith("\n"), "the last key")
    check_prefix(editor.read().rstrip("\n"))


@pytest.mark.parametrize("layout", [None, "fr"], ids=["left", "changed"])
def test_the_next_start_puts_back_only_what_a_killed_process_left(editor, layout):
    process, before = start(editor)
    process.kill()
    process.wait()
    assert keyboard_map(editor.desktop) != before
    if layout:
        editor.desktop.run(["setxkbmap", layout])
        # The layout is new, that keys do not repeat is not.
        before = keyboard_map(editor.desktop).replace("repeat:  off", "repeat:  on")
    subprocess.run([editor.probe, "--recover"], env=editor.desktop.env, check=True)
    assert keyboard_map(editor.desktop) == before
