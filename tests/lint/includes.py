#!/usr/bin/python3
# SPDX-FileCopyrightText: The Quillet authors
# SPDX-License-Identifier: Apache-2.0
"""Checks that no include runs upwards.

MAY_INCLUDE names, for each folder, the folders that its files may include besides their own. A
file belongs to the longest folder of the table that holds it. A folder that the table does not
name is an error, and so is a circle among the folders.
"""

import pathlib
import posixpath
import re
import subprocess
import sys

# fmt: off
MAY_INCLUDE = {
    # The list of writing commands, for application and backend.
    "commands": [],
    # What both programs do to protect their process.
    "process": [],

    # The analytics client, from the ground up.
    "MetricPost/include": [],
    "MetricPost/threads": [],
    "MetricPost/log": ["MetricPost/include", "MetricPost/threads"],
    "MetricPost/values": ["MetricPost/include", "MetricPost/log"],
    "MetricPost/store": ["MetricPost/include", "MetricPost/values", "MetricPost/threads",
                         "MetricPost/log"],
    "MetricPost/upload": ["MetricPost/include", "MetricPost/values", "MetricPost/threads",
                          "MetricPost/log"],
    "MetricPost/tracking": ["MetricPost/include", "MetricPost/store", "MetricPost/values",
                            "MetricPost/threads", "MetricPost/log"],
    "MetricPost/instance": ["MetricPost/include", "MetricPost/tracking", "MetricPost/store",
                            "MetricPost/upload", "MetricPost/values", "MetricPost/threads",
                            "MetricPost/log"],

    # The writing backend.
    "backend/process": [],
    "backend/engine": ["commands"],
    "backend/http": ["backend/engine", "commands"],
    "backend/model": ["process", "backend/engine", "backend/process", "commands"],
    # One library: its inner folders share their types both ways.
    "backend/offline": ["backend/engine", "commands"],
    "backend": ["process", "backend/process", "backend/engine", "backend/http", "backend/model",
                "backend/offline", "commands"],

    # The platform's contract, and the Linux adapter from the ground up. The accessibility bus's
    # side (atspi, reading, focus, accessibility) and the window system's (x11, keyboard) meet in
    # ports.
    "platform": [],
    "platform/text": [],
    "platform/linux/ports": ["platform", "platform/text"],
    "platform/linux/desktop": ["platform"],
    "platform/linux/keyboard": ["platform", "platform/linux/ports"],
    "platform/linux/x11": ["platform", "platform/linux/ports", "platform/linux/keyboard",
                           "platform/linux/desktop"],
    "platform/linux/wayland": ["platform", "platform/linux/ports", "platform/linux/desktop",
                               "platform/linux/keyboard"],
    "platform/linux/atspi": [],
    "platform/linux/inputmethods": ["platform/linux/ports", "platform/linux/atspi"],
    "platform/linux/diagnosis": ["platform"],
    "platform/linux/reading": ["platform", "platform/linux/ports", "platform/linux/atspi"],
    "platform/linux/focus": ["platform", "platform/linux/ports", "platform/linux/atspi",
                             "platform/linux/reading"],
    "platform/linux/accessibility": ["platform", "platform/text", "platform/linux/ports",
                                     "platform/linux/atspi", "platform/linux/reading",
                                     "platform/linux/focus"],
    "platform/linux": ["platform", "platform/linux/ports", "platform/linux/desktop",
                       "platform/linux/x11", "platform/linux/keyboard", "platform/linux/wayland",
                       "platform/linux/atspi", "platform/linux/inputmethods",
                       "platform/linux/reading", "platform/linux/focus",
                       "platform/linux/accessibility",
                       "platform/linux/diagnosis"],

    # The application.
    "quillet/diagnostics": [],
    "quillet/analytics": ["MetricPost/include"],
    "quillet/widgets": [],
    "quillet/focus": ["platform", "quillet/diagnostics"],
    "quillet/writing": ["commands", "quillet/diagnostics"],
    "quillet/popup": ["platform", "platform/text", "commands", "quillet/writing",
                      "quillet/widgets", "quillet/analytics", "quillet/diagnostics"],
    "quillet/button": ["platform", "quillet/focus", "quillet/popup", "quillet/widgets",
                       "quillet/analytics", "quillet/diagnostics"],
    "quillet/window": ["platform", "quillet/widgets"],
    "quillet/settings": ["platform", "commands", "quillet/widgets"],
    "quillet/shell": ["platform", "quillet/widgets", "quillet/diagnostics"],
    "quillet/doctor": ["platform", "quillet/widgets"],
    "quillet/application": ["platform", "process", "commands", "MetricPost/include",
                            "quillet/analytics",
                            "quillet/button", "quillet/diagnostics", "quillet/doctor",
                            "quillet/focus", "quillet/popup", "quillet/settings",
                            "quillet/shell", "quillet/widgets", "quillet/window",
                            "quillet/writing"],
}
# fmt: on

# Tests and benchmarks look at everything, and the product never at them.
OBSERVERS = ("tests/", "bench/")
INCLUDE = re.compile(r'^\s*#\s*include\s+"([^"]+)"', re.MULTILINE)


def folder_of(path, table):
    """The longest folder of the table that holds the file. None where there is none, and where that
    folder has others of the table inside: then the file's own folder needs a line of its own."""
    own = path.rpartition("/")[0]
    folder = own
    while folder and folder not in table:
        folder = folder.rpartition("/")[0]
    if folder != own and any(other.startswith(folder + "/") for other in table):
        return None
    return folder or None


def resolve(includer, name, files):
    """The repository's file that an include means: beside the includer, from the root, or from the
    include folder nearest to the includer. None for a generated or a foreign header."""
    beside = posixpath.normpath(posixpath.join(posixpath.dirname(includer), name))
    if beside in files:
        return beside
    if name in files:
        return name
    found = [file for file in files if file.endswith("/" + name)]
    parts = includer.split("/")
    return max(found, key=lambda file: common(parts, file), default=None)


def common(parts, file):
    """How many leading folders a file shares with the given path."""
    count = 0
    for one, other in zip(parts, file.split("/")):
        if one != other:
            break
        count += 1
    return count


def circle(table):
    """A circle among the folders of the table, as a list, or None."""
    done, path = set(), []

    def visit(folder):
        if folder in path:
            return path[path.index(folder) :] + [folder]
        if folder in done:
            return None
        path.append(folder)
        for other in table.get(folder, []):
            found = visit(other)
            if found:
                return found
        path.pop()
        done.add(folder)
        return None

    for folder in table:
        found = visit(folder)
        if found:
            return found
    return None


def check(root, files, table):
    """The complaints about the given files (paths relative to root), one a line."""
    found = circle(table)
    complaints = ["the table runs in a circle: " + " -> ".join(found)] if found else []
    known = set(files)
    for file in files:
        if file.startswith(OBSERVERS):
            continue
        own = folder_of(file, table)
        if own is None:
            complaints.append(f"{file}: its folder is not in the table of tests/lint/includes.py")
            continue
        for name in INCLUDE.findall((root / file).read_text(encoding="utf-8")):
            target = resolve(file, name, known)
            if target is None:
                continue
            other = folder_of(target, table)
            if other != own and other not in table[own]:
                complaints.append(f"{file}: {own} must not include {target}")
    return complaints


def main():
    root = pathlib.Path(__file__).resolve().parents[2]
    listed = subprocess.run(
        ["git", "ls-files", "--cached", "--others", "--exclude-standard", "*.h", "*.cpp"],
        cwd=root,
        check=True,
        text=True,
        stdout=subprocess.PIPE,
    ).stdout.split()
    files = sorted(file for file in listed if (root / file).exists())
    complaints = check(root, files, MAY_INCLUDE)
    print("\n".join(complaints) or f"{len(files)} files include what they may", flush=True)
    return 1 if complaints else 0


if __name__ == "__main__":
    sys.exit(main())
