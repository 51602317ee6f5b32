# SPDX-FileCopyrightText: The Quillet authors
# SPDX-License-Identifier: Apache-2.0
"""Drives tests/support/ax_probe: the accessibility adapter as the application uses it."""

import json
import subprocess

SUCCESS = 0
FAILURE = -25200
CANNOT_COMPLETE = -25204


class Probe:
    def __init__(self, session, build, *options):
        with open(session.folder + "/ax_probe", "wb") as log:
            self.process = subprocess.Popen(
                [str(build / "tests" / "support" / "ax_probe"), *options],
                env=session.env,
                stdin=subprocess.PIPE,
                stdout=subprocess.PIPE,
                stderr=log,
                text=True,
            )

    def __call__(self, *command):
        self.process.stdin.write(json.dumps(command) + "\n")
        self.process.stdin.flush()
        line = self.process.stdout.readline()
        assert line, f"the probe ended with {self.process.wait()} at {command}"
        return json.loads(line)

    def close(self):
        self.process.stdin.close()
        assert self.process.wait(30) == 0, "the probe did not end well"
