# SPDX-FileCopyrightText: The Quillet authors
# SPDX-License-Identifier: Apache-2.0
"""What an apply leaves in other programs, and what it leaves alone."""

import functools
import http.server
import pathlib
import threading

import pytest

from probe import SUCCESS, Probe
from session import EDITORS, Session, wait_until

LONG = " ".join(f"word{i} is here" for i in range(150))
TEXTS = [
    # as many characters before as after
    ("same lenght of text", "same length of text"),
    # characters above U+FFFF before and in what changes
    ("I has a cat 😀 and two 👩🏽‍💻 dogs.", "I have a cat 😀 and two 👩🏽‍💻 dogs, too."),
    ("Ärger 😀 naïve", "Zoë: «Привет» 你好 👍🏽\n\nnext line"),
    (LONG, LONG.replace("word5 is", "word5 was").replace("word99 is", "word99 was")),
    ("gone", ""),
]
INPUTS = {
    "textarea": "<textarea id=t spellcheck=false></textarea>",
    "contenteditable": "<div id=t contenteditable role=textbox spellcheck=false></div>",
}
PAGE = """<!doctype html><meta charset=utf-8><title>write page</title>
<style>#t { width: 95%%; height: 500px; white-space: pre-wrap }</style>
%s<script>t.focus()</script>"""


def start(desktop, name):
    """Starts a program with an empty input and gives the input the focus."""
    browser, _, kind = name.partition(" ")
    if name in EDITORS:
        desktop.start(EDITORS[name])
        window = desktop.wait_for_window(".")
    else:
        page = PAGE % INPUTS[kind]
        if browser == "firefox":
            path = pathlib.Path(desktop.folder, "page.html")
            path.write_text(page)
            profile = pathlib.Path(desktop.folder, "firefox")
            profile.mkdir()
            desktop.start(["firefox-esr", "--no-remote", "--profile", str(profile), str(path)])
        else:
            desktop.start_chromium(page)
        window = desktop.wait_for_window("write page")
    desktop.activate(window)
    if name not in EDITORS:
        place = desktop.geometry(window)
        desktop.click(place[0] + 300, place[1] + 400)
    return window


@pytest.mark.parametrize(
    "name",
    [
        "mousepad",
        "gnome-text-editor",
        "featherpad",
        "chromium textarea",
        "chromium contenteditable",
        "firefox textarea",
        "firefox contenteditable",
    ],
)
def test_applies_are_exact_and_undone(desktop, build, name):
    start(desktop, name)
    probe = Probe(desktop, build, "--keyboard")
    probe("allow")
    assert probe("wait", "AXTextArea", 0).get("AXRole") == "AXTextArea"
    for before, after in TEXTS:
        for text in (before, after):
            report = probe("set", text)
            assert (report["set"], report["changed"]) == (SUCCESS, 0), (text, report)
            assert probe("focus").get("AXValue", "") == text
    # Two steps at the most take an apply back in the editors, one where one word was typed.
    probe("set", "one word hear")
    probe("set", "one word here")
    desktop.key("ctrl+z")
    if name in EDITORS:
        desktop.key("ctrl+z")
    wait_until(lambda: probe("focus").get("AXValue") == "one word hear", "the undone text")
    probe.close()


def test_the_format_of_unchanged_words_stays(desktop, build):
    INPUTS["rich"] = (
        "<div id=t contenteditable role=textbox spellcheck=false>"
        "<p>I has a <b>cat</b>.</p><p>Second <i>paragraf</i> and more.</p></div>"
        "<script>t.oninput = () => document.title = 'now ' + t.innerHTML</script>"
    )
    window = start(desktop, "chromium rich")
    probe = Probe(desktop, build, "--keyboard")
    probe("allow")
    assert "cat" in probe("wait", "AXTextArea", 0)["AXValue"]
    report = probe("set", "I have a cat.\nSecond paragraph and more.")
    assert report["set"] == SUCCESS, report

    def shows_the_text():
        title = desktop.run(["xdotool", "getwindowname", str(window)])
        return "I have a <b>cat</b>." in title and "paragraph" in title

    wait_until(shows_the_text, "the text in the title")
    probe.close()


def test_caps_lock_changes_nothing_in_chromium(desktop, build):
    start(desktop, "chromium textarea")
    probe = Probe(desktop, build, "--keyboard")
    probe("allow")
    probe("wait", "AXTextArea", 0)
    desktop.run(["xdotool", "key", "Caps_Lock"])
    assert "Caps Lock:   on" in desktop.run(["xset", "q"])
    try:
        probe("set", "Abc äÖ жЖ 漢字 ß")
        assert probe("focus")["AXValue"] == "Abc äÖ жЖ 漢字 ß"
        locks = desktop.run(["xset", "q"])
        assert "Caps Lock:   on" in locks, locks
    finally:
        desktop.run(["xdotool", "key", "Caps_Lock"])
    probe.close()


FRAME = """<!doctype html><button id=b>press</button><script>
let keys = 0, pressed = 0;
b.onclick = () => { ++pressed; };
b.onkeydown = () => { ++keys; };
onmessage = event => {
  if (event.data == "take") b.focus();
  if (event.data == "tell") event.source.postMessage({keys, pressed}, "*");
};</script>"""
HOST = """<!doctype html><meta charset=utf-8><title>write page</title>
<textarea id=t spellcheck=false style="width:95%%;height:400px">the old text</textarea>
<iframe id=f src="http://127.0.0.1:%d/frame.html"></iframe><script>
let stolen = false;
t.oninput = () => {
  if (stolen || t.value.length < 60) return;
  stolen = true;
  f.contentWindow.postMessage("take", "*");
  setTimeout(() => f.contentWindow.postMessage("tell", "*"), 6000);
};
onmessage = event => { document.title = "got " + event.data.keys + " " + event.data.pressed; };
t.focus();</script>"""


def test_a_frame_that_takes_the_focus_gets_few_keys_and_the_text_comes_back(build, tmp_path):
    handler = functools.partial(http.server.SimpleHTTPRequestHandler, directory=tmp_path)
    server = http.server.ThreadingHTTPServer(("127.0.0.1", 0), handler)
    threading.Thread(target=server.serve_forever, daemon=True).start()
    (tmp_path / "frame.html").write_text(FRAME)
    (tmp_path / "host.html").write_text(HOST % server.server_port)
    with Session() as desktop:
        desktop.start_chromium(f"http://localhost:{server.server_port}/host.html")
        window = desktop.wait_for_window("write page")
        desktop.activate(window)
        place = desktop.geometry(window)
        desktop.click(place[0] + 300, place[1] + 300)
        probe = Probe(desktop, build, "--keyboard")
        probe("allow")
        assert probe("wait", "AXTextArea", 0)["AXValue"] == "the old text"
        report = probe("set", "quite another text " * 40)
        assert report["set"] != SUCCESS, report
        title = wait_until(
            lambda: next(iter(desktop.windows("got ")), None)
            and desktop.run(["xdotool", "getwindowname", str(window)]),
            "the frame's word",
        )
        keys, pressed = (int(word) for word in title.split()[1:3])
        assert keys <= 8 and pressed <= 8, title
        assert report["elsewhere"] or keys == 0, (report, title)
        desktop.activate(window)
        desktop.click(place[0] + 300, place[1] + 300)
        assert not report["damaged"], report
        wait_until(lambda: probe("focus").get("AXValue") == "the old text", "the old text")
        probe.close()
    server.shutdown()
