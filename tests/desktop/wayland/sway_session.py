# SPDX-FileCopyrightText: The Quillet authors
# SPDX-License-Identifier: Apache-2.0
"""A Wayland session of its own for one test: sway without a screen, drawn by software, with
a pointer and a keyboard. sway refuses to run as root: then it alone runs as another user.
"""

import json
import os
import pathlib
import re
import subprocess

from person import Person
from session import Session, wait_until

SCREEN = (1280, 900)
SIDE = 25  # of the button
CONFIG = """
output * resolution {width}x{height}
output HEADLESS-1 position 0 0
output HEADLESS-2 position {width} 0
xwayland {xwayland}
default_border pixel 2
focus_follows_mouse no
seat * hide_cursor 0
for_window [title=".*"] floating enable
"""


class SwaySession(Session):
    def __init__(self, build, xwayland=False, screens=1):
        super().__init__()
        self.build = build
        self.xwayland = xwayland
        self.screens = screens
        self.window_manager = None
        for variable in ("DISPLAY", "QT_QPA_PLATFORM", "GDK_BACKEND"):
            self.env.pop(variable, None)
        self.hand = None

    def _start(self):
        os.chmod(self.folder, 0o711)
        runtime = pathlib.Path(self.folder, "sway")
        runtime.mkdir(0o700)
        config = pathlib.Path(self.folder, "sway.conf")
        config.write_text(
            CONFIG.format(
                width=SCREEN[0], height=SCREEN[1], xwayland="enable" if self.xwayland else "disable"
            )
        )
        other_user = []
        if os.getuid() == 0:
            os.chown(runtime, 65534, 65534)
            other_user = ["setpriv", "--reuid=65534", "--regid=65534", "--clear-groups"]
        self.env["SWAYSOCK"] = str(runtime / "ipc")
        self.compositor = self.start(
            [*other_user, "sway", "--config", str(config)],
            {
                "XDG_RUNTIME_DIR": str(runtime),
                "HOME": str(runtime),
                "WLR_BACKENDS": "headless",
                "WLR_HEADLESS_OUTPUTS": str(self.screens),
                "WLR_LIBINPUT_NO_DEVICES": "1",
                "WLR_RENDERER": "pixman",
            },
        )
        wait_until(
            lambda: (runtime / "ipc").exists() and list(runtime.glob("wayland-?")),
            "the compositor: " + self.compositor.output(),
        )
        self.env["WAYLAND_DISPLAY"] = str(next(runtime.glob("wayland-?")))
        self.env["XDG_SESSION_TYPE"] = "wayland"
        self.hand = subprocess.Popen(
            [
                str(self.build / "tests/desktop/wayland/wayland_hand"),
                str(SCREEN[0] * self.screens),
                str(SCREEN[1]),
            ],
            env=self.env,
            stdin=subprocess.PIPE,
            stdout=subprocess.PIPE,
            text=True,
        )
        assert self.hand.stdout.readline() == "ready\n"
        bus = self.start(["dbus-daemon", "--session", "--nofork", "--print-address=1"])
        self.env["DBUS_SESSION_BUS_ADDRESS"] = wait_until(
            lambda: bus.output().strip().split("\n")[0] if "\n" in bus.output() else "",
            "the session bus",
        )
        self.start_accessibility_bus()

    def stop(self):
        if self.hand:
            self.hand.kill()
            self.hand.wait()
        super().stop()

    def sway(self, command):
        return self.run(["swaymsg", command])

    def tree(self):
        """The windows, each as the compositor describes it."""
        found = []

        def collect(node):
            if node.get("pid"):
                found.append(node)
            for child in node["nodes"] + node["floating_nodes"]:
                collect(child)

        collect(json.loads(self.run(["swaymsg", "-r", "-t", "get_tree"])))
        return found

    def windows(self, title):
        return [node["id"] for node in self.tree() if re.search(title, node["name"] or "")]

    def geometry(self, window):
        """Where the window's contents lie."""
        for node in self.tree():
            if node["id"] == window:
                rect, inner = node["rect"], node["window_rect"]
                return (
                    rect["x"] + inner["x"],
                    rect["y"] + inner["y"],
                    inner["width"],
                    inner["height"],
                )
        return None

    def activate(self, window):
        self.sway(f"[con_id={window}] focus")

    def active_window(self):
        return next((node["id"] for node in self.tree() if node["focused"]), None)

    def place(self, window, x, y, width, height):
        self.sway(f"[con_id={window}] resize set {width} {height}, move absolute position {x} {y}")

    def move_window(self, window, x, y):
        self.sway(f"[con_id={window}] move absolute position {x} {y}")

    def act(self, *commands):
        """What the hand does."""
        for command in commands:
            self.hand.stdin.write(command + "\n")
            self.hand.stdin.flush()
            assert self.hand.stdout.readline() == "ok\n", command

    def click(self, x, y, button=1):
        self.act(f"move {round(x)} {round(y)}", "down", "up")

    def key(self, *keys):
        self.act(*(f"key {key}" for key in keys))

    def type(self, text):
        self.act("type " + text)

    def screenshot(self, path):
        self.run(["grim", str(path)])
        return path

    def pixels(self):
        """The screen: a function from a place to its colour."""
        path = os.path.join(self.folder, "screen.ppm")
        self.run(["grim", "-t", "ppm", path])
        data = pathlib.Path(path).read_bytes()
        header = re.match(rb"P6\s+(\d+)\s+(\d+)\s+255\s", data)
        width = int(header[1])
        assert (width, int(header[2])) == (SCREEN[0] * self.screens, SCREEN[1])
        body = data[header.end() :]
        return lambda x, y: body[3 * (y * width + x) : 3 * (y * width + x) + 3]


class WaylandPerson(Person):
    """Programs do not know where their windows are: the compositor does."""

    def finds(self, name, program="quillet"):
        box = super().finds(name, program)
        return box and self._on_screen(box, program)

    def _on_screen(self, box, program):
        """Quillet's panels know their place; everything else counts from its window."""
        if program == "quillet" and self.session.active_window() != self.window:
            return box
        window = self.window if program == "quillet" else self.session.active_window()
        x, y, _, _ = self.session.geometry(window)
        return [box[0] + x, box[1] + y, *box[2:]]

    def finds_floating_button(self):
        """The rectangle of the button as Quillet's own accessibility tells it."""
        box = super().finds("Quillet")
        return tuple(box) if box and box[2:] == [25, 25] else None

    def input_box(self, program):
        """The visible part of the program's first multi-line input, on the screen."""
        box = self._see("input", program)
        return tuple(self._on_screen(box, program))

    def sees_button(self, region):
        """Where the screen shows the button in this region, by the violet square in its picture;
        None where there is none of its size."""
        pixel = self.session.pixels()
        left, top, width, height = region
        violet = [
            (x, y)
            for y in range(top, top + height)
            for x in range(left, left + width)
            if is_violet(*pixel(x, y))
        ]
        if not violet:
            return None
        xs = [place[0] for place in violet]
        ys = [place[1] for place in violet]
        # A white edge one pixel wide lies around it.
        size = (max(xs) - min(xs) + 3, max(ys) - min(ys) + 3)
        return (min(xs) - 1, min(ys) - 1) if size == (25, 25) else None


def is_violet(red, green, blue):
    return 60 <= red <= 160 and 20 <= green <= 130 and blue >= 190
