# SPDX-FileCopyrightText: The Quillet authors
# SPDX-License-Identifier: Apache-2.0
"""A desktop of its own for one test: X server, window manager, session bus, accessibility bus.

Everything lives in a temporary folder and carries the folder's name in its environment, so that
stop() ends what the session started and nothing else.
"""

import os
import pathlib
import re
import shlex
import shutil
import signal
import subprocess
import tempfile
import time

I3_CONFIGURATION = str(pathlib.Path(__file__).with_name("i3.conf"))
MARK = "QUILLET_TEST_SESSION"
EDITORS = {
    "mousepad": ["mousepad", "--disable-server"],
    "gnome-text-editor": ["gnome-text-editor", "--standalone"],
    "featherpad": ["featherpad", "--standalone"],
}
# How each is started. i3 lays windows out by itself: here it lets them float, as the others do.
WINDOW_MANAGERS = {
    "openbox": ["openbox", "--sm-disable"],
    "metacity": ["metacity", "--sm-disable"],
    "mutter": ["mutter", "--x11", "--sm-disable"],
    "xfwm4": ["xfwm4", "--sm-client-disable"],
    "icewm": ["icewm"],
    "i3": ["i3", "-c", I3_CONFIGURATION],
    "kwin_x11": ["env", "KWIN_COMPOSE=N", "kwin_x11"],
}
PATIENCE = 60  # seconds; generous, because a busy machine is no fault of the program


def wait_until(condition, what, patience=PATIENCE):
    """Polls until `condition()` is truthy and returns that value."""
    deadline = time.monotonic() + patience
    while True:
        value = condition()
        if value:
            return value
        if time.monotonic() > deadline:
            raise TimeoutError(f"waited {patience} s for {what}")
        time.sleep(0.05)


# Without its own traffic and questions, so that only the page acts.
CHROMIUM = [
    "chromium",
    "--no-sandbox",
    "--force-renderer-accessibility",
    "--no-first-run",
    "--disable-background-networking",
    "--disable-component-update",
    "--disable-sync",
    "--password-store=basic",
]


class Session:
    running = []

    def __init__(self, a11y=True, window_manager="openbox", screen="1280x900"):
        """`window_manager`: one of WINDOW_MANAGERS; None for a desktop without any. `screen`: its
        size in pixels."""
        self.a11y = a11y
        self.screen = screen
        self.window_manager_name = window_manager
        self.folder = tempfile.mkdtemp(prefix="quillet-desktop-")
        self.programs = []
        self.window_manager = None
        self.env = {
            k: v
            for k, v in os.environ.items()
            if not k.startswith(("XDG_", "DBUS_", "AT_SPI_", "QT_", "GTK_", "WAYLAND"))
        }
        self.env.update(
            {
                MARK: self.folder,
                "HOME": self.folder,
                "LANG": "C.UTF-8",
                "LC_ALL": "C.UTF-8",
                "NO_PROXY": "localhost,127.0.0.1",
                "QT_LINUX_ACCESSIBILITY_ALWAYS_ON": "0",
                "QT_QPA_PLATFORM": "xcb",
                "GDK_BACKEND": "x11",
            }
        )
        for variable, name in (
            ("XDG_CONFIG_HOME", "config"),
            ("XDG_DATA_HOME", "data"),
            ("XDG_CACHE_HOME", "cache"),
            ("XDG_STATE_HOME", "state"),
            ("XDG_RUNTIME_DIR", "runtime"),
        ):
            self.env[variable] = os.path.join(self.folder, name)
            os.mkdir(self.env[variable], 0o700)

    def __enter__(self):
        try:
            self._start()
        except BaseException:
            self.stop()
            raise
        Session.running.append(self)
        return self

    def __exit__(self, failure, *_):
        Session.running.remove(self)
        if failure:
            print(self.ended_programs())
        self.stop()

    def ended_programs(self):
        """Of each program that runs no more: how it ended, and what it printed last."""
        return "\n".join(
            f"{shlex.join(program.command)}: {program.process.returncode}\n"
            f"{program.output()[-2000:]}"
            for program in self.programs
            if not program.running()
        )

    def _start(self):
        reading, writing = os.pipe()
        self.x_server = self.start(
            [
                "Xvfb",
                "-displayfd",
                str(writing),
                "-screen",
                "0",
                self.screen + "x24",
                "-nolisten",
                "tcp",
                "-noreset",
            ],
            pass_fds=[writing],
        )
        os.close(writing)
        with os.fdopen(reading) as pipe:
            number = pipe.readline().strip()
        if not number:
            raise RuntimeError("the X server did not start:\n" + self.x_server.output())
        self.env["DISPLAY"] = ":" + number

        bus = self.start(["dbus-daemon", "--session", "--nofork", "--print-address=1"])
        self.env["DBUS_SESSION_BUS_ADDRESS"] = wait_until(
            lambda: bus.output().strip().split("\n")[0] if "\n" in bus.output() else "",
            "the session bus",
        )
        if self.window_manager_name:
            self.start_window_manager(self.window_manager_name)
        if self.a11y:
            self.start_accessibility_bus()

    def start_window_manager(self, name):
        self.window_manager = self.start(WINDOW_MANAGERS[name])
        wait_until(
            lambda: name.split("_")[0]
            in self.run(
                [
                    "sh",
                    "-c",
                    'xprop -id $(xprop -root -notype _NET_SUPPORTING_WM_CHECK | cut -d" " -f5) '
                    "_NET_WM_NAME",
                ],
                check=False,
            ).lower(),
            name,
        )

    def is_managed(self):
        return self.window_manager is not None and self.window_manager.running()

    def start_accessibility_bus(self):
        self.bus_launcher = self.start(["/usr/libexec/at-spi-bus-launcher", "--launch-immediately"])
        wait_until(
            lambda: "unix:"
            in self.run(
                [
                    "dbus-send",
                    "--session",
                    "--dest=org.a11y.Bus",
                    "--print-reply",
                    "/org/a11y/bus",
                    "org.a11y.Bus.GetAddress",
                ],
                check=False,
            ),
            "the accessibility bus",
        )
        self.run(
            [
                "dbus-send",
                "--session",
                "--dest=org.a11y.Bus",
                "--print-reply",
                "/org/a11y/bus",
                "org.freedesktop.DBus.Properties.Set",
                "string:org.a11y.Status",
                "string:IsEnabled",
                "variant:boolean:true",
            ]
        )

    def start(self, command, environment=None, pass_fds=()):
        """Starts a program in the background; its output() is what it has printed so far."""
        program = Program(
            command,
            {**self.env, **(environment or {})},
            pass_fds,
            os.path.join(self.folder, f"output-{len(self.programs)}"),
        )
        self.programs.append(program)
        return program

    def start_editor(self, editor, text, name="letter.txt", environment=None):
        """An editor showing a file of this name and text: the program and its window."""
        path = os.path.join(self.folder, name)
        with open(path, "w", encoding="utf-8") as file:
            file.write(text)
        program = self.start([*EDITORS[editor], path], environment)
        return program, self.wait_for_window(name)

    def start_chromium(self, page, *options):
        """Chromium with its accessibility tree, on a profile of its own, showing `page` (a URL or
        HTML). It is ready when the page's window is there."""
        if not page.startswith(("http:", "file:", "data:", "about:")):
            path = os.path.join(self.folder, f"page-{len(self.programs)}.html")
            with open(path, "w", encoding="utf-8") as file:
                file.write(page)
            page = "file://" + path
        profile = os.path.join(self.folder, f"chromium-{len(self.programs)}")
        return self.start([*CHROMIUM, f"--user-data-dir={profile}", *options, page])

    def run(self, command, check=True, patience=PATIENCE):
        """Runs a short command in the session and returns what it printed."""
        result = subprocess.run(
            command,
            env=self.env,
            stdout=subprocess.PIPE,
            timeout=patience,
            stderr=subprocess.STDOUT,
            text=True,
            errors="replace",
        )
        if check and result.returncode:
            raise RuntimeError(f"{shlex.join(command)}: {result.returncode}\n{result.stdout}")
        return result.stdout

    def windows(self, title):
        """Ids of the visible windows whose title matches the regular expression; of those that the
        window manager knows, where one runs."""
        found = self.run(["xdotool", "search", "--onlyvisible", "--name", title], check=False)
        ids = [int(word) for word in found.split() if word.isdigit()]
        if not self.is_managed():
            return ids
        listed = self.run(["xprop", "-root", "_NET_CLIENT_LIST"], check=False)
        managed = {int(word.strip(","), 16) for word in listed.split() if word.startswith("0x")}
        return [window for window in ids if window in managed]

    def geometry(self, window):
        """Position and size of a window on the screen, in pixels; None when it is gone."""
        info = self.run(["xwininfo", "-id", str(window)], check=False)
        found = [
            re.search(label + r":\s+(-?\d+)", info)
            for label in ("Absolute upper-left X", "Absolute upper-left Y", "Width", "Height")
        ]
        return tuple(int(match.group(1)) for match in found) if all(found) else None

    def wait_for_window(self, title):
        return wait_until(lambda: self.windows(title), f"a window titled {title!r}")[-1]

    def activate(self, window):
        self.run(["xdotool", "windowactivate", "--sync", str(window)])

    def move_window(self, window, x, y):
        self.run(["xdotool", "windowmove", "--sync", str(window), str(x), str(y)])

    def active_window(self):
        found = self.run(["xdotool", "getactivewindow"], check=False).strip()
        return int(found) if found.isdigit() else None

    def click(self, x, y, button=1):
        self.run(["xdotool", "mousemove", str(round(x)), str(round(y)), "click", str(button)])

    def key(self, *keys):
        self.run(["xdotool", "key", "--clearmodifiers", *keys])

    def type(self, text):
        self.run(["xdotool", "type", "--delay", "20", "--", text])

    def screenshot(self, path):
        self.run(["import", "-window", "root", str(path)])
        return path

    def stop(self):
        """Ends every process of the session and removes its folder."""
        for number in (signal.SIGTERM, signal.SIGKILL):
            for pid in self._processes():
                try:
                    os.kill(pid, number)
                    os.kill(pid, signal.SIGCONT)
                except ProcessLookupError:
                    pass
            limit = time.monotonic() + 3
            while self._processes() and time.monotonic() < limit:
                time.sleep(0.05)
        for program in self.programs:
            program.process.wait()
        shutil.rmtree(self.folder, ignore_errors=True)

    def _processes(self):
        """What bears the session's mark, and what belongs to a program of it: some programs write
        over their environment, and one that is stopped while it ends would be waited for in vain.
        """
        mark = f"{MARK}={self.folder}".encode()
        leaders = {program.pid for program in self.programs if program.running()}
        found = []
        for pid in filter(str.isdigit, os.listdir("/proc")):
            try:
                with open(f"/proc/{pid}/environ", "rb") as file:
                    marked = mark in file.read().split(b"\0")
                if marked or os.getsid(int(pid)) in leaders:
                    found.append(int(pid))
            except OSError:
                pass
        return found


class Program:
    """A program running in a session."""

    def __init__(self, command, environment, pass_fds, log):
        self.command = command
        self.log = log
        with open(log, "wb") as output:
            self.process = subprocess.Popen(
                command,
                env=environment,
                stdin=subprocess.DEVNULL,
                stdout=output,
                stderr=subprocess.STDOUT,
                pass_fds=pass_fds,
                start_new_session=True,
            )
        self.pid = self.process.pid

    def output(self):
        with open(self.log, encoding="utf-8", errors="replace") as file:
            return file.read()

    def running(self):
        return self.process.poll() is None

    def signal(self, number):
        self.process.send_signal(number)

    def stop(self):
        self.signal(signal.SIGTERM)
        return self.process.wait(PATIENCE)
