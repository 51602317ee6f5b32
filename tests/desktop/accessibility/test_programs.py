# SPDX-FileCopyrightText: The Quillet authors
# SPDX-License-Identifier: Apache-2.0
"""Real programs, looked at and written into through the accessibility adapter."""

import signal

import pytest

from probe import CANNOT_COMPLETE, SUCCESS, Probe
from session import EDITORS, wait_until

MIXED = "Grüße, 😀 мир\n\n日本語 e\u0301 end"


@pytest.fixture
def probe(desktop, build):
    probe = Probe(desktop, build)
    probe("allow")
    yield probe
    probe.close()


def open_editor(desktop, editor, text):
    program, window = desktop.start_editor(editor, text)
    desktop.activate(window)
    return program, window


def inside(frame, window):
    x, y, width, height = frame
    left, top, *size = window
    return (
        width > 50
        and height > 50
        and x >= left
        and y >= top
        and x + width <= left + size[0]
        and y + height <= top + size[1]
    )


@pytest.mark.parametrize("editor", EDITORS)
def test_an_editor_is_read_and_written(desktop, probe, editor):
    program, window = open_editor(desktop, editor, "one\ntwo 😀 three")
    seen = probe("wait", "AXTextArea", program.pid)
    assert seen["AXRole"] == "AXTextArea" and seen["pid"] == program.pid
    assert seen["AXValue"] == "one\ntwo 😀 three"
    assert seen["AXEditable"] and seen["settable"]
    seen = wait_until(lambda: (found := probe("focus")) and "AXFrame" in found and found, "a frame")
    assert inside(seen["AXFrame"], desktop.geometry(window))

    for text in (MIXED, "", MIXED * 200):
        assert probe("set", text)["set"] == SUCCESS
        wait_until(lambda: probe("focus").get("AXValue") == text, "the text")

    # The caret's place in UTF-16 units, behind a character of two.
    assert probe("set", "😀ab")["set"] == SUCCESS
    desktop.key("ctrl+End", "Left")
    wait_until(lambda: probe("focus").get("AXSelectedTextRange") == [3, 0], "the caret")
    desktop.key("shift+Left", "shift+Left")
    wait_until(lambda: probe("focus").get("AXSelectedText") == "😀a", "the selection")
    assert probe("focus")["AXSelectedTextRange"] == [0, 3]


PAGE = """<title>forms</title><meta charset=utf-8>
<textarea id=area rows=3>foo\nbar</textarea><input id=line value=single>
<input id=secret type=password value=hidden>
<div id=rich contenteditable>one <b>bold</b> <a href=x>link</a> tail<p>second 😀</p><div><br></div>
<ul><li>item a</li><li>item <i>b</i></li></ul><p>an <img src=data:,> image<br>next line</p></div>
<p id=plain tabindex=0>Only text, to be read.</p>
<script>document.onkeydown = e => {
  const id = {F6: 'area', F7: 'line', F8: 'secret', F9: 'rich', F10: 'plain'}[e.key];
  if (id) { document.getElementById(id).focus(); e.preventDefault(); } }</script>"""


def test_a_page_s_inputs(desktop, probe):
    browser = desktop.start_chromium(PAGE)
    desktop.activate(desktop.wait_for_window("forms"))
    seen = probe("wait", "AXWebArea", browser.pid)
    assert "AXValue" not in seen and not seen["settable"] and not seen["AXEditable"]
    assert "AXSelectedText" not in seen and "AXSelectedTextRange" not in seen
    wait_until(lambda: probe("contains")["contains"], "the page to be loaded")
    # No input has the focus: what stands in them is not read with the page.
    read = probe("tree")["tree"].split("\n")
    assert not {"foo", "bar", "single", "hidden", "••••••"} & set(read)

    desktop.key("F6")
    seen = probe("wait", "AXTextArea")
    assert seen["AXValue"] == "foo\nbar" and seen["settable"]
    for text in ("first\nsecond line", "", "last\n"):
        assert probe("set", text)["set"] == SUCCESS
        assert probe("focus")["AXValue"] == text
    assert probe("set", "last\n")["ms"] < 1000, "nothing is typed that is there already"

    desktop.key("F7")
    seen = probe("wait", "AXTextField")
    assert seen["AXValue"] == "single"

    desktop.key("F8")
    wait_until(lambda: probe("focus").get("AXSubrole") == "AXSecureTextField", "the password field")
    seen = probe("focus")
    assert seen["AXRole"] == "AXTextField" and "AXValue" not in seen and not seen["settable"]
    assert "AXSelectedText" not in seen and not seen["AXEditable"]

    desktop.key("F9")
    seen = probe("wait", "AXTextArea")
    assert seen["AXValue"] == "one bold link tail\nsecond 😀\n\nitem a\nitem b\nan  image\nnext line"
    for text in ("one line\n\na third", "", "x"):
        assert probe("set", text)["set"] == SUCCESS
        assert probe("focus")["AXValue"] == text

    desktop.key("F10")
    wait_until(
        lambda: probe("focus")["AXRole"] not in ("AXTextArea", "AXTextField"), "the paragraph"
    )
    assert not probe("focus")["settable"]


def test_a_page_without_inputs_is_none(desktop, probe):
    rows = "".join(f"<p>{i} <b>bold</b> <a href=x>link</a><hr>" for i in range(800))
    browser = desktop.start_chromium(f"<title>reading</title>{rows}")
    desktop.activate(desktop.wait_for_window("reading"))
    probe("wait", "AXWebArea", browser.pid)
    # Each text is an element of its own; the rule between them has none.
    expected = "\n".join(f"{i} \nbold\n \nlink\n" for i in range(800))
    wait_until(lambda: probe("tree").get("tree") == expected, "the page's text")
    assert not probe("contains")["contains"]


def test_a_stopped_application_holds_nothing_up(desktop, probe):
    editor, window = open_editor(desktop, "mousepad", "before")
    probe("wait", "AXTextArea", editor.pid)
    editor.signal(signal.SIGSTOP)
    # What is known needs no question; the first question waits, no other does.
    times = [probe("focus")["ms"] for _ in range(5)]
    probe("serve", 3000)
    times += [probe("focus")["ms"] for _ in range(5)]
    assert sum(time > 190 for time in times) <= 1, times
    assert probe("focus").get("error") == CANNOT_COMPLETE
    editor.signal(signal.SIGCONT)
    assert probe("wait", "AXTextArea", editor.pid)["AXValue"] == "before"


def test_focus_follows_the_window(desktop, probe):
    editor, window = open_editor(desktop, "mousepad", "first")
    probe("wait", "AXTextArea", editor.pid)
    # A program that shows nothing takes the focus away from the editor all the same.
    silent = desktop.start(["xmessage", "nothing to see"])
    desktop.activate(desktop.wait_for_window("xmessage"))
    assert probe("wait", "AXApplication", silent.pid)["pid"] == silent.pid
    desktop.activate(window)
    assert probe("wait", "AXTextArea", editor.pid)["AXValue"] == "first"


def test_the_bare_frame_of_a_browser_is_recognised(desktop, probe):
    assert probe("advice")["advice"] == ""
    browser = desktop.start(
        [
            "chromium",
            "--no-sandbox",
            "--no-first-run",
            "--password-store=basic",
            "--disable-renderer-accessibility",
            f"--user-data-dir={desktop.folder}/bare",
            "about:blank",
        ]
    )
    desktop.activate(desktop.wait_for_window("Chromium"))
    wait_until(lambda: "--force-renderer-accessibility" in probe("advice")["advice"], "the advice")
    assert probe("wait", "AXApplication", browser.pid)["pid"] == browser.pid
