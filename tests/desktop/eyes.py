#!/usr/bin/python3
# SPDX-FileCopyrightText: The Quillet authors
# SPDX-License-Identifier: Apache-2.0
"""What a person sees of other programs, through the accessibility bus of the session that this runs
in. Prints JSON.

    eyes.py find PROGRAM NAME        screen rectangle of the visible control with this name
    eyes.py text PROGRAM             texts of the program's editable inputs, one by one
    eyes.py names PROGRAM            names of the visible controls
    eyes.py focus PROGRAM            names of the visible controls that have the focus
    eyes.py nameless PROGRAM         roles of visible controls without a name or a real role
    eyes.py input PROGRAM [screen]   rectangle of the visible part of the first editable input, in
                                     its window or on the screen

PROGRAM is a part of the program's name, or its process id.
"""

import json
import sys

import gi

gi.require_version("Atspi", "2.0")
from gi.repository import Atspi  # noqa: E402


def applications(program):
    desktop = Atspi.get_desktop(0)
    for index in range(desktop.get_child_count()):
        application = desktop.get_child_at_index(index)
        if not application:
            continue
        if program.isdigit():
            if application.get_process_id() == int(program):
                yield application
        elif program.lower() in (application.get_name() or "").lower():
            yield application


def walk(element, depth=0):
    if element is None or depth > 60:
        return
    yield element
    try:
        count = element.get_child_count()
        if element.get_state_set().contains(Atspi.StateType.MANAGES_DESCENDANTS):
            return
    except gi.repository.GLib.Error:
        return
    for index in range(count):
        try:
            child = element.get_child_at_index(index)
        except gi.repository.GLib.Error:
            continue
        yield from walk(child, depth + 1)


def showing(element):
    return element.get_state_set().contains(Atspi.StateType.SHOWING)


def find(program, name):
    """Of several with the same name, a window and a control in it say, the smallest."""
    boxes = []
    for application in applications(program):
        for element in walk(application):
            component = element.get_component_iface()
            if element.get_name() == name and component and showing(element):
                box = component.get_extents(Atspi.CoordType.SCREEN)
                if box.width > 0 and box.height > 0:
                    boxes.append([box.x, box.y, box.width, box.height])
    return min(boxes, key=lambda box: box[2] * box[3], default=None)


def text_of(element):
    """The text with embedded objects replaced by their own text, blocks on lines of their own."""
    text = element.get_text_iface()
    if not text:
        return ""
    whole = Atspi.Text.get_text(text, 0, Atspi.Text.get_character_count(text))
    hypertext = element.get_hypertext_iface()
    if "\ufffc" not in whole or not hypertext:
        return whole
    parts = []
    link = 0
    for character in whole:
        if character != "\ufffc":
            parts.append(character)
            continue
        child = Atspi.Hypertext.get_link(hypertext, link).get_object(0)
        link += 1
        parts.append(text_of(child) + ("\n" if child.get_role_name() != "link" else ""))
    return "".join(parts)


def inputs(program):
    for application in applications(program):
        for element in walk(application):
            states = element.get_state_set()
            if (
                element.get_text_iface()
                and states.contains(Atspi.StateType.EDITABLE)
                and states.contains(Atspi.StateType.MULTI_LINE)
            ):
                yield element


def texts(program):
    return [text_of(element) for element in inputs(program)]


def input_box(program, place="window"):
    """What lies in the elements around it. Some toolkits answer wrongly for the window, others for
    the screen."""
    coordinates = Atspi.CoordType.SCREEN if place == "screen" else Atspi.CoordType.WINDOW
    element = next(inputs(program), None)
    edges = None
    while element and element.get_component_iface():
        box = element.get_component_iface().get_extents(coordinates)
        new = [box.x, box.y, box.x + box.width, box.y + box.height]
        if edges is None:
            edges = new
        elif element.get_role_name() in ("scroll pane", "viewport", "frame"):
            edges = [*map(max, edges[:2], new[:2]), *map(min, edges[2:], new[2:])]
        element = element.get_parent()
    return edges and [edges[0], edges[1], edges[2] - edges[0], edges[3] - edges[1]]


def names(program):
    return [
        element.get_name()
        for application in applications(program)
        for element in walk(application)
        if element.get_name() and showing(element)
    ]


def focused(program):
    return [
        element.get_name()
        for application in applications(program)
        for element in walk(application)
        if showing(element) and element.get_state_set().contains(Atspi.StateType.FOCUSED)
    ]


def nameless(program):
    """What the keyboard reaches, pictures, and windows: a screen reader says their names."""
    found = []
    for application in applications(program):
        for element in walk(application):
            role = element.get_role_name()
            matters = element.get_state_set().contains(Atspi.StateType.FOCUSABLE) or role in (
                "frame",
                "dialog",
                "alert",
                "icon",
                "image",
            )
            if showing(element) and matters and not (element.get_name() and role != "unknown"):
                found.append(f"{role} in {element.get_parent().get_name()!r}")
    return found


if __name__ == "__main__":
    action, *arguments = sys.argv[1:]
    actions = {"find": find, "text": texts, "names": names, "input": input_box}
    actions |= {"focus": focused, "nameless": nameless}
    print(json.dumps(actions[action](*arguments)))
