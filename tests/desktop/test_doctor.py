# SPDX-FileCopyrightText: The Quillet authors
# SPDX-License-Identifier: Apache-2.0
"""quillet --doctor in a real session: in a good one, and while something is missing."""

import json
import os
import pathlib

from session import wait_until


def findings(desktop, build, environment=None):
    command = [str(build / "quillet" / "quillet"), "--doctor", "--json"]
    program = desktop.start(command, environment)
    status = program.process.wait(60)
    report = json.loads(program.output())
    assert report["works"] == (status == 0)
    return status, report["findings"]


def state(found, name):
    return [finding["state"] for finding in found if finding["id"] == name]


def allow(desktop):
    folder = pathlib.Path(desktop.env["XDG_CONFIG_HOME"], "quillet")
    folder.mkdir(exist_ok=True)
    (folder / "platform.conf").write_text("[accessibility]\nallowed=true\n")


def test_a_good_session_and_a_browser_that_keeps_its_text_to_itself(desktop, build):
    allow(desktop)
    desktop.start_editor("mousepad", "some words of mine")
    profile = os.path.join(desktop.folder, "bare")
    options = [
        "--no-sandbox",
        "--no-first-run",
        "--password-store=basic",
        "--user-data-dir=" + profile,
    ]
    desktop.start(["chromium", *options, "about:blank"])
    wait_until(lambda: desktop.windows("Chromium"), "the browser")

    def both_programs():
        status, found = findings(desktop, build)
        details = " ".join(finding["detail"] for finding in found if finding["id"] == "program")
        return "mousepad" in details.lower() and "hromium shows" in details and (status, found)

    status, found = wait_until(both_programs, "both programs in the report")
    assert status == 0, found
    assert state(found, "session") == ["good"]
    assert state(found, "window-manager") == ["good"]
    assert state(found, "accessibility") == ["good"]
    assert state(found, "typing") == ["good"]
    assert state(found, "backend") == ["good"]
    assert state(found, "program") == ["good", "limited"]
    browser = [finding for finding in found if "hromium shows" in finding["detail"]][0]
    assert "--force-renderer-accessibility" in browser["remedy"]
    assert "some words of mine" not in json.dumps(found)


def test_what_is_missing_is_named(desktop, build):
    status, found = findings(desktop, build)
    assert status == 1 and state(found, "permission") == ["broken"]
    allow(desktop)
    for environment, name in (
        ({"DISPLAY": ":4711"}, "session"),
        ({"DBUS_SESSION_BUS_ADDRESS": "unix:path=/nowhere"}, "accessibility"),
    ):
        status, found = findings(desktop, build, environment)
        assert status == 1 and state(found, name) == ["broken"], found
