#!/usr/bin/python3
# SPDX-FileCopyrightText: The Quillet authors
# SPDX-License-Identifier: Apache-2.0
"""An application that lies on the accessibility bus, with a window of its own.

Usage: hostile_app.py LIE, one of

  honest             a multi-line input with a text
  negative-size      its extents have a negative size
  far-away           its extents are at the limits of the integers
  huge-value         its text is 20 MB long
  invalid-text       its text is not valid UTF-8
  impossible-role    its role and states are out of range
  endless-tree       a document that is a child of itself and has ever more children
  vanishing          a document whose children are gone when they are asked
  many-children      a document that claims two thousand million children
  focus-storm        2,000 focus events a second between two inputs
  silent             it never answers
  password           its input is a password field; prints every call that reaches it
  private-command    its private address runs a command that leaves the file "ran" in HOME
  private-impostor   its private address is the socket of another process, which prints what it gets
  slow-farewell      it does nothing for a second after a client has left the bus, and prints
                     "early" when a key comes meanwhile, "key" for one that comes later

It speaks D-Bus by itself, because a library would refuse to send some of this.
"""

import ctypes
import os
import re
import select
import socket
import struct
import subprocess
import sys
import time

LIE = sys.argv[1]
ROOT = "/org/a11y/atspi/accessible/root"
FRAME, INPUT, OTHER, DOCUMENT = ("/org/a11y/atspi/accessible/" + n for n in "1234")
KEY_PRESS_MASK = 1
IS_DOCUMENT = LIE in ("endless-tree", "vanishing", "many-children")
FOCUSED = DOCUMENT if IS_DOCUMENT else INPUT
IMPOSTOR = os.path.join(os.environ["HOME"], "impostor")


class Writer:
    def __init__(self):
        self.data = b""

    def align(self, size):
        self.data += b"\0" * (-len(self.data) % size)

    def put(self, signature, value):
        kind = signature[0]
        if kind in "uib":
            self.align(4)
            self.data += struct.pack("<i" if kind == "i" else "<I", value)
        elif kind in "so":
            raw = value if isinstance(value, bytes) else value.encode()
            self.put("u", len(raw))
            self.data += raw + b"\0"
        elif kind == "g":
            self.data += bytes([len(value)]) + value.encode() + b"\0"
        elif kind == "v":
            self.put("g", value[0])
            self.put(value[0], value[1])
        elif kind == "(":
            self.align(8)
            for part, each in zip(split(signature[1:-1]), value):
                self.put(part, each)
        elif kind == "a":
            self.put("u", 0)
            at = len(self.data)
            element = signature[1:]
            self.align(8 if element[0] in "({" else 1 if element[0] == "g" else 4)
            start = len(self.data)
            for each in value:
                if element[0] == "{":
                    self.put("(" + element[1:-1] + ")", each)
                else:
                    self.put(element, each)
            self.data = (
                self.data[: at - 4] + struct.pack("<I", len(self.data) - start) + self.data[at:]
            )


def split(signature):
    parts, depth, current = [], 0, ""
    for letter in signature:
        current += letter
        depth += (letter in "({") - (letter in ")}")
        if depth == 0 and letter != "a":
            parts.append(current)
            current = ""
    return parts


class Bus:
    def __init__(self, address):
        path = re.search(r"unix:path=([^,]*)", address).group(1)
        self.socket = socket.socket(socket.AF_UNIX)
        self.socket.connect(path)
        self.socket.sendall(
            b"\0AUTH EXTERNAL " + str(os.getuid()).encode().hex().encode() + b"\r\n"
        )
        assert self.socket.recv(1000).startswith(b"OK")
        self.socket.sendall(b"BEGIN\r\n")
        self.serial = 0
        self.buffer = b""
        self.call("org.freedesktop.DBus", "/org/freedesktop/DBus", "org.freedesktop.DBus", "Hello")
        self.name = self.read_reply()
        self.call(
            "org.a11y.atspi.Registry",
            ROOT,
            "org.a11y.atspi.Socket",
            "Embed",
            "(so)",
            (self.name, ROOT),
        )

    def send(self, kind, fields, signature="", value=None):
        self.serial += 1
        body = Writer()
        if signature:
            fields = fields + [(8, ("g", signature))]
            parts = split(signature)
            for part, each in zip(parts, value if len(parts) > 1 else [value]):
                body.put(part, each)
        head = Writer()
        head.data = struct.pack("<cBBBII", b"l", kind, 0, 1, len(body.data), self.serial)
        entries = Writer()
        for code, variant in fields:
            entries.align(8)
            entries.data += bytes([code])
            entries.put("v", variant)
        head.data += struct.pack("<I", len(entries.data)) + entries.data
        head.align(8)
        self.socket.sendall(head.data + body.data)

    def call(self, to, path, interface, member, signature="", value=None):
        self.send(
            1,
            [(1, ("o", path)), (2, ("s", interface)), (3, ("s", member)), (6, ("s", to))],
            signature,
            value,
        )

    def emit(self, path, interface, member, signature, value):
        self.send(
            4, [(1, ("o", path)), (2, ("s", interface)), (3, ("s", member))], signature, value
        )

    def messages(self, wait):
        """The messages that have come: (type, serial, fields, body)."""
        if not select.select([self.socket], [], [], wait)[0]:
            return
        data = self.socket.recv(1 << 16)
        if not data:
            sys.exit(0)
        self.buffer += data
        while len(self.buffer) >= 16:
            kind, body, serial, size = struct.unpack("<xBxxIII", self.buffer[:16])
            start = 16 + size + (-size % 8)
            if len(self.buffer) < start + body:
                return
            fields, at = {}, 16
            while at < 16 + size:
                at += -at % 8
                code, letter = self.buffer[at], chr(self.buffer[at + 2])
                at += 4
                if letter in "so":
                    at += -at % 4
                    length = struct.unpack_from("<I", self.buffer, at)[0]
                    fields[code] = self.buffer[at + 4 : at + 4 + length].decode()
                    at += 5 + length
                elif letter == "g":
                    length = self.buffer[at]
                    fields[code] = self.buffer[at + 1 : at + 1 + length].decode()
                    at += 2 + length
                else:
                    at += -at % 4
                    fields[code] = struct.unpack_from("<I", self.buffer, at)[0]
                    at += 4
            content = self.buffer[start : start + body]
            self.buffer = self.buffer[start + body :]
            yield kind, serial, fields, content

    def read_reply(self):
        while True:
            for kind, _, _, body in self.messages(10):
                if kind == 2:
                    length = struct.unpack_from("<I", body)[0]
                    return body[4 : 4 + length].decode()


def strings(body):
    """The texts at the beginning of a message's body."""
    found, at = [], 0
    while at + 4 <= len(body):
        at += -at % 4
        length = struct.unpack_from("<I", body, at)[0]
        found.append(body[at + 4 : at + 4 + length].decode(errors="replace"))
        at += 5 + length
    return found


def states(*bits):
    value = sum(1 << bit for bit in bits)
    return [value & 0xFFFFFFFF, value >> 32]


def children(name, path):
    if path == ROOT:
        return [FRAME]
    if path == FRAME:
        return [DOCUMENT] if IS_DOCUMENT else [INPUT, OTHER]
    if LIE == "endless-tree":
        return [DOCUMENT, path, path + "/a", path + "/b"] if path.count("/") < 18 else [DOCUMENT]
    if LIE == "vanishing" and path == DOCUMENT:
        return [f"/org/a11y/atspi/accessible/gone{i}" for i in range(50)]
    return []


def text():
    return {
        "huge-value": "20 MB of text. " * 1_400_000,
        "invalid-text": b"broken \xff\xfe\xc3\x28 text",
    }.get(LIE, "an honest text")


def extents():
    return {
        "negative-size": (100, 100, -50, -20),
        "far-away": (-2147483648, -2147483648, 2147483647, 2147483647),
    }.get(LIE, (60, 80, 300, 150))


def answer(name, path, member, body):
    """Signature and value of the answer; nothing for a method that is not there."""
    if "gone" in path:
        return None
    if member == "GetRole":
        known = {ROOT: 75, FRAME: 23, INPUT: 61, OTHER: 61, DOCUMENT: 95}
        lies = {"impossible-role": 4_000_000_000, "password": 40}
        return "u", lies[LIE] if LIE in lies and path == INPUT else known.get(path, 85)
    if member == "GetState":
        if LIE == "impossible-role" and path == INPUT:
            return "au", [0xFFFFFFFF & ~(1 << 6)] * 7
        if path == FRAME:
            return "au", states(1, 8, 25, 30)
        focus = [12] if path == FOCUSED else []
        return "au", states(8, 11, 25, 30, *focus, *([7, 17] if path in (INPUT, OTHER) else []))
    if member == "GetInterfaces":
        names = ["Accessible", "Component"] + (["Text"] if path in (INPUT, OTHER) else [])
        return "as", ["org.a11y.atspi." + each for each in names]
    if member == "GetAttributes":
        return "a{ss}", []
    if member == "GetApplicationBusAddress" and LIE == "private-command":
        return "s", "unixexec:path=/usr/bin/touch,argv1=" + os.environ["HOME"] + "/ran"
    if member == "GetApplicationBusAddress" and LIE == "private-impostor":
        return "s", "unix:path=" + IMPOSTOR
    if member == "GetChildren":
        return "a(so)", [(name, child) for child in children(name, path)]
    if member == "GetExtents":
        return "(iiii)", (20, 20, 600, 400) if path == FRAME else extents()
    if member == "GetText":
        return "s", text()
    if member in ("GetNSelections", "GetIndexInParent"):
        return "i", -5
    if member == "GetSelection":
        return "ii", (-7, 2_000_000_000)
    if member == "Get":
        wanted = (strings(body) + ["", ""])[1]
        if wanted == "ChildCount":
            many = 2_000_000_000 if LIE == "many-children" and path == DOCUMENT else -3
            return "v", ("i", len(children(name, path)) or many)
        if wanted == "Parent":
            parent = path if LIE == "endless-tree" else FRAME
            return "v", ("(so)", (name, ROOT if path == FRAME else parent))
        if wanted in ("CharacterCount", "CaretOffset"):
            return "v", ("i", -1)
        if wanted in ("Name", "Description", "ToolkitName", "Version"):
            return "v", ("s", "hostile")
    return None


def listen_as_another_process():
    listener = socket.socket(socket.AF_UNIX)
    listener.bind(IMPOSTOR)
    if os.fork():
        listener.close()
        return
    listener.listen()
    while True:
        client, _ = listener.accept()
        print("got", client.recv(100), flush=True)


def show_window():
    x11 = ctypes.CDLL("libX11.so.6")
    for function in ("XOpenDisplay", "XDefaultRootWindow", "XCreateSimpleWindow"):
        getattr(x11, function).restype = ctypes.c_void_p
    display = ctypes.c_void_p(x11.XOpenDisplay(None))
    root = ctypes.c_void_p(x11.XDefaultRootWindow(display))
    window = ctypes.c_void_p(x11.XCreateSimpleWindow(display, root, 20, 20, 600, 400, 0, 0, 0))
    x11.XStoreName(display, window, ("hostile " + LIE).encode())
    x11.XSelectInput(display, window, KEY_PRESS_MASK)
    x11.XMapWindow(display, window)
    x11.XFlush(display)
    return x11, display


def key_has_come(x11, display):
    event = ctypes.create_string_buffer(192)  # an XEvent
    return bool(x11.XCheckMaskEvent(display, KEY_PRESS_MASK, event))


def note_keys(window, word):
    while key_has_come(*window):
        print(word, flush=True)


def main():
    address = subprocess.run(
        [
            "dbus-send",
            "--session",
            "--dest=org.a11y.Bus",
            "--print-reply=literal",
            "/org/a11y/bus",
            "org.a11y.Bus.GetAddress",
        ],
        stdout=subprocess.PIPE,
        text=True,
        check=True,
    ).stdout.strip()
    bus = Bus(address)
    if LIE == "private-impostor":
        listen_as_another_process()
    window = show_window()
    event = ("focused", 1, 0, ("i", 0), (bus.name, ROOT))
    begin = time.monotonic()
    pause = {"focus-storm": 0.001, "slow-farewell": 0.1}.get(LIE, 1)
    sent = 0
    if LIE == "slow-farewell":
        bus.call(
            "org.freedesktop.DBus",
            "/org/freedesktop/DBus",
            "org.freedesktop.DBus",
            "AddMatch",
            "s",
            "type='signal',member='NameOwnerChanged'",
        )
    if LIE != "focus-storm":
        bus.emit(FOCUSED, "org.a11y.atspi.Event.Object", "StateChanged", "siiv(so)", event)
    while window:
        for kind, serial, fields, body in bus.messages(pause):
            if (
                LIE == "slow-farewell"
                and fields.get(3) == "NameOwnerChanged"
                and not strings(body)[2]
            ):
                note_keys(window, "key")
                time.sleep(1)
                note_keys(window, "early")
            if kind != 1 or LIE == "silent":
                continue
            if LIE == "password":
                print(
                    fields.get(2),
                    fields[3],
                    *strings(body) if fields[3] == "Get" else [],
                    flush=True,
                )
            reply = answer(bus.name, fields[1], fields[3], body)
            to = [(5, ("u", serial)), (6, ("s", fields[7]))]
            if reply:
                bus.send(2, to, *reply)
            else:
                bus.send(3, to + [(4, ("s", "org.freedesktop.DBus.Error.UnknownMethod"))])
        if LIE == "slow-farewell":
            note_keys(window, "key")
        while LIE == "focus-storm" and sent < (time.monotonic() - begin) * 2000:
            sent += 1
            bus.emit(
                (INPUT, OTHER)[sent % 2],
                "org.a11y.atspi.Event.Object",
                "StateChanged",
                "siiv(so)",
                event,
            )


main()
