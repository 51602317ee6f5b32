#!/usr/bin/python3
# SPDX-FileCopyrightText: The Quillet authors
# SPDX-License-Identifier: Apache-2.0
"""Walks through Quillet's main job on a virtual display, as a person who has just installed it.

    walkthrough.py BUILD_FOLDER SCREENSHOT_FOLDER

Prints the editor's text before and after, leaves a screenshot of every step, and exits non-zero if
the editor does not hold the result.
"""

import os
import pathlib
import sys

sys.path.insert(0, str(pathlib.Path(__file__).parents[1] / "tests" / "desktop"))
from person import Person  # noqa: E402
from session import Session, wait_until  # noqa: E402

BEFORE = """Hi Anna,

thanks for your message. i has looked at the the report and their are two mistakes in it.
Could you send me alot more details ,please? I would of called, but my phone dont work today.

Best regards
Tom"""


class Walkthrough:
    def __init__(self, session, build, pictures):
        self.session = session
        self.person = Person(session)
        self.build = build
        self.pictures = pictures
        self.step = 0

    def picture(self, name):
        self.step += 1
        path = self.pictures / f"{self.step:02}-{name}.png"
        self.session.screenshot(path)
        print(f"{self.step:2}. {name.replace('-', ' ')}: {path}", flush=True)

    def wizard(self):
        self.quillet = self.session.start([str(self.build / "quillet" / "quillet")])
        window = self.session.wait_for_window("^Quillet$")
        self.session.run(["xdotool", "windowmove", "--sync", str(window), "20", "40"])
        wait_until(lambda: self.person.finds("Next"), "the welcome page")
        self.picture("welcome")
        self.person.click("Next")
        wait_until(lambda: self.person.finds("Open Accessibility Settings"), "the install page")
        self.picture("install")
        self.person.click("Open Accessibility Settings")
        wait_until(lambda: self.session.windows("^Accessibility$"), "the permission window")
        self.picture("permission")
        self.person.click("Quillet")
        wait_until(lambda: self.person.finds("Next"), "the tutorial page")

    def tutorial(self):
        self.session.activate(self.session.windows("^Quillet$")[0])
        self.person.tutorial_button = self.person.waits_for_floating_button()
        self.session.type("this are my first try")
        self.picture("tutorial-editor-with-button")
        self.person.click("Next")
        wait_until(lambda: self.person.finds("Done"), "the closing page")
        self.picture("done")
        self.person.click("Done")
        wait_until(lambda: "All looks great!" in (self.person.names() or []), "the status view")
        self.picture("status")

    def editor(self):
        path = os.path.join(self.session.folder, "letter.txt")
        with open(path, "w", encoding="utf-8") as file:
            file.write(BEFORE)
        self.session.start(["mousepad", "--disable-server", path])
        window = self.session.wait_for_window("letter.txt")
        box = self.person.brings_to_front(window)
        wait_until(lambda: BEFORE in self.person.texts("mousepad"), "the editor's text")
        self.person.waits_for_floating_button(box)
        self.picture("button-in-another-editor")
        self.show("before", BEFORE)

        self.person.clicks_floating_button(box)
        wait_until(lambda: self.person.finds("check-grammar"), "the popup")
        self.picture("popup")
        self.person.click("check-grammar")
        answer = wait_until(self.answer, "the answer")
        self.picture("answer")
        self.person.click("apply")
        wait_until(lambda: self.person.texts("mousepad") != [BEFORE], "the text to be written")
        self.picture("applied")
        after = self.person.texts("mousepad")
        self.show("after", after[0] if after else "(nothing)")
        return after == [answer] and answer != BEFORE

    @staticmethod
    def show(when, text):
        print(f"    {when}:", *text.splitlines(), sep="\n        ", flush=True)

    def answer(self):
        shown = [text for text in self.person.texts("quillet") if text]
        return shown[0] if shown else None


def main():
    build, pictures = (pathlib.Path(argument).resolve() for argument in sys.argv[1:3])
    pictures.mkdir(parents=True, exist_ok=True)
    with Session() as session:
        walkthrough = Walkthrough(session, build, pictures)
        try:
            walkthrough.wizard()
            walkthrough.tutorial()
            done = walkthrough.editor()
        except (TimeoutError, RuntimeError) as problem:
            walkthrough.picture("stuck")
            print(
                f"The walkthrough is stuck: {problem}\n{walkthrough.quillet.output()[-2000:]}",
                file=sys.stderr,
            )
            return 1
    print(f"Screenshots are in {pictures}")
    print("The editor holds the result." if done else "The editor does NOT hold the result.")
    return 0 if done else 1


if __name__ == "__main__":
    sys.exit(main())
