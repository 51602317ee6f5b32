# SPDX-FileCopyrightText: The Quillet authors
# SPDX-License-Identifier: Apache-2.0
"""Tries one program as a person does who has Quillet, and says what came of it.

What the program holds is what it copies itself with real keys. Quillet's own reading is a claim."""

import re
import subprocess
import time

import pages
import texts
from person import Person
from probe import Probe
from session import Session, wait_until

START_PATIENCE = 30
COPY_PATIENCE = 6
BUTTON_PATIENCE = 8
UNDO_STEPS = 6
# Behind a word that the correction leaves alone.
CARET = 17
# What nothing else puts on the clipboard.
NOTHING = "(nothing was copied)"


class Unreachable(Exception):
    """What keeps the rest of the trial from being made, in a few words."""


class Trial:
    def __init__(self, program, build):
        self.program = program
        self.build = build
        self.result = {"applies": {}}

    def run(self, wanted):
        """The results as a dictionary that JSON can hold."""
        try:
            with Session() as self.session:
                person = Person(self.session)
                quillet, window = person.sets_up_quillet(self.build)
                self.start()
                self.look_at_the_button(person)
                self.probe = Probe(self.session, self.build, "--keyboard")
                self.probe("allow")
                # The input gets the focus while the probe listens.
                self.session.activate(window)
                self.find_input()
                quillet.stop()
                self.correct_and_undo()
                self.apply(wanted)
        except Unreachable as reason:
            self.result["ended"] = str(reason)
        except (TimeoutError, AssertionError, RuntimeError, subprocess.SubprocessError) as error:
            self.result["ended"] = f"{type(error).__name__}: {str(error).splitlines()[0][:120]}"
        return self.result

    def start(self):
        folder = self.session.folder
        if self.program.prepare:
            self.program.prepare(folder)
        path = f"{folder}/{self.program.file}"
        if self.program.file.endswith((".txt", ".csv")):
            with open(path, "w", encoding="utf-8") as file:
                file.write(pages.START)
        command = [part.format(file=path, folder=folder) for part in self.program.command]
        self.session.start(command, self.program.environment)
        try:
            self.window = self.session.wait_for_window(self.program.title)
        except TimeoutError:
            raise Unreachable("its window does not come") from None
        # What copies nothing is tried nevertheless: it may be an input that is not found either.
        limit = time.monotonic() + START_PATIENCE
        while not self.shows_start() and time.monotonic() < limit:
            pass

    def shows_start(self):
        """Puts the caret into the input, and sees whether the text is there."""
        self.put_caret()
        return pages.START in (self.copied() or "")

    def put_caret(self):
        session = self.session
        session.activate(self.window)
        x, y, width, height = session.geometry(self.window)
        session.click(x + width * self.program.click[0], y + height * self.program.click[1])
        time.sleep(0.3)
        if self.program.keys:
            session.key(*self.program.keys)
            time.sleep(0.3)

    def copied(self):
        """What the program copies when all is selected; nothing when it copies nothing."""
        session = self.session
        self.offer(NOTHING)
        session.key("ctrl+a", "ctrl+c")
        limit = time.monotonic() + COPY_PATIENCE
        while time.monotonic() < limit:
            text = session.run(
                ["timeout", "5", "xclip", "-o", "-selection", "clipboard", "-t", "UTF8_STRING"],
                check=False,
            )
            if text != NOTHING and not text.startswith("Error:"):
                return self.plain(text)
            time.sleep(0.05)
        return None

    def offer(self, text):
        """Puts a text on the clipboard."""
        process = subprocess.Popen(
            ["xclip", "-selection", "clipboard", "-quiet"],
            env=self.session.env,
            stdin=subprocess.PIPE,
            stdout=subprocess.DEVNULL,
            stderr=subprocess.DEVNULL,
        )
        process.stdin.write(text.encode())
        process.stdin.close()
        wait_until(
            lambda: self.session.run(
                ["timeout", "5", "xclip", "-o", "-selection", "clipboard"], check=False
            )
            == text,
            "the clipboard",
        )

    def plain(self, text):
        text = text.replace("\r\n", "\n").replace("\xa0", " ")
        return re.sub("\n\n+", "\n", text) if self.program.has_blocks else text

    def look_at_the_button(self, person):
        """Where Quillet shows its button, against the corner of the input."""
        pid = self.session.run(["xdotool", "getwindowpid", str(self.window)], check=False).strip()
        left, top, *_ = self.session.geometry(self.window)
        corners = []
        for place, x, y in (("window", left, top), ("screen", 0, 0)):
            if area := person.sees_input(pid, place):
                corners.append((x + area[0] + area[2] - 30, y + area[1] + 5))
        box, off = None, None
        # The button follows an input that has moved, and the window may have come to rest just now.
        limit = time.monotonic() + BUTTON_PATIENCE
        while time.monotonic() < limit and off != 0:
            found = person.finds_floating_button()
            if found and found != person.tutorial_button:
                box = found
                if not corners:
                    break
                off = min(max(abs(box[0] - x), abs(box[1] - y)) for x, y in corners)
        self.result["button"] = bool(box)
        if box and corners:
            self.result["off"] = off

    def find_input(self):
        self.put_caret()
        limit = time.monotonic() + 10
        seen = {}
        while time.monotonic() < limit:
            seen = self.probe("focus")
            if seen.get("settable"):
                break
            time.sleep(0.25)
        self.result["found"] = bool(seen.get("settable"))
        if not self.result["found"]:
            raise Unreachable(f"no input found ({seen.get('AXRole', 'nothing')})")
        self.result["read"] = self.judge_text(pages.START, self.plain(seen.get("AXValue") or ""))

    @staticmethod
    def judge_text(wanted, found):
        if found == wanted:
            return "exact"
        if found is not None and found.strip() == wanted.strip():
            return "line end"
        if found is not None and found.split() == wanted.split():
            return "white space"
        return "wrong"

    def set(self, text):
        """What Quillet says of a text that it writes."""
        started = time.monotonic()
        report = self.probe("set", text)
        report["seconds"] = round(time.monotonic() - started, 2)
        return report

    def correct_and_undo(self):
        """A few corrected words: the caret stays, and undo takes the correction back."""
        self.set(texts.EASY)
        before = self.copied()
        self.session.key("ctrl+Home", *["Right"] * CARET)
        self.set(texts.CORRECTED)
        self.session.key("q")
        marked = self.copied() or ""
        self.result["caret"] = marked.partition("q")[0].endswith(texts.EASY[CARET - 8 : CARET])
        self.session.key("Right", "ctrl+z")
        steps = 0
        while steps < UNDO_STEPS and self.copied() != before:
            self.session.key("Right", "ctrl+z")
            steps += 1
        # The first step takes the marking letter back.
        self.result["undo"] = steps if self.copied() == before else None

    def apply(self, wanted):
        for name in wanted:
            before = self.copied()
            if before is None:
                self.put_caret()
                before = self.copied()
            self.value_before = self.probe("focus").get("AXValue")
            self.session.key("ctrl+End")
            report = self.set(texts.TEXTS[name])
            time.sleep(0.1)
            self.result["applies"][name] = {
                "seconds": report["seconds"],
                "verdict": self.verdict(report, texts.TEXTS[name], before),
            }

    def verdict(self, report, text, before):
        """An editor may copy less than it shows (Lexical does): after a failure its own words count
        only where what it shows has changed too."""
        wanted = self.plain(text)
        found = self.copied()
        judged = self.judge_text(wanted, found)
        succeeded = report["set"] == 0
        if judged == "exact":
            return "exact" if succeeded else "written, told as failed"
        if succeeded and report["changed"] and judged != "wrong":
            return "changed by the program: " + judged
        if succeeded:
            return f"FALSE SUCCESS: {judged}"
        if found == before or self.probe("focus").get("AXValue") == self.value_before:
            return "failed, old text there"
        return "DAMAGED, told" if report["damaged"] else "DAMAGED, not told"
