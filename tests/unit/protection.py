#!/usr/bin/python3
# SPDX-FileCopyrightText: The Quillet authors
# SPDX-License-Identifier: Apache-2.0
"""Tries to get at the memory of the running programs, as another program of the same user.

usage: protection.py QUILLET BACKEND
"""

import ctypes
import errno
import os
import socket
import subprocess
import sys
import time
import traceback

UNPRIVILEGED_USER = 65534
LIMIT = 60  # seconds, generous for a busy machine
# Of the processor, whatever else the machine does. The work that it has takes longer.
MAX_WORK_AFTER_PARENT = 2  # seconds
PTRACE_SEIZE = 0x4206
KEY = "sk-not-for-others"
libc = ctypes.CDLL(None, use_errno=True)


def open_files(pid):
    """The files about the process that this user can open."""
    for name in ("mem", "environ", "maps"):
        try:
            os.close(os.open(f"/proc/{pid}/{name}", os.O_RDONLY))
            yield name
        except PermissionError:
            pass


def can_trace(pid):
    if libc.ptrace(PTRACE_SEIZE, pid, None, None) == 0:
        return True
    if ctypes.get_errno() != errno.EPERM:
        raise OSError(ctypes.get_errno(), "ptrace")
    return False


def core_limit(pid):
    with open(f"/proc/{pid}/limits", encoding="utf-8") as limits:
        return next(line.split()[-3:-1] for line in limits if line.startswith("Max core"))


def problems_of(program):
    end = time.monotonic() + LIMIT
    # Until it has come so far.
    while list(open_files(program.pid)) and time.monotonic() < end and program.poll() is None:
        pass
    if program.poll() is not None:
        yield "it did not wait for its output"
    elif found := list(open_files(program.pid)):
        yield f"open to other programs: {', '.join(found)}"
    elif can_trace(program.pid):
        yield "other programs can trace it"
    elif core_limit(program.pid) != ["0", "0"]:
        yield "core dumps are not off"


def as_same_user(targets):
    """Runs with the user id that the programs have, which is not root's."""
    problems = []
    control = subprocess.Popen(["sleep", str(2 * LIMIT)])
    end = time.monotonic() + LIMIT
    # Before its first line it is still this process, which changed its user and is closed.
    while "mem" not in open_files(control.pid) and time.monotonic() < end:
        pass
    if "mem" not in open_files(control.pid) or not can_trace(control.pid):
        problems.append("this system lets no program trace its child, so nothing is proved here")
    control.kill()
    control.wait()
    for name, descriptor in targets.items():
        # A pipe that is full: the program waits in its first line of output.
        reader, writer = os.pipe()
        os.set_blocking(writer, False)
        try:
            while True:
                os.write(writer, bytes(1))
        except BlockingIOError:
            os.set_blocking(writer, True)
        program = subprocess.Popen(
            [f"/proc/self/fd/{descriptor}", "--version"], stdout=writer, pass_fds=[descriptor]
        )
        try:
            problems += [f"{name}: {problem}" for problem in problems_of(program)]
        finally:
            program.kill()
            program.wait()
        os.close(reader)
        os.close(writer)
    for problem in problems:
        print(problem)
    return 1 if problems else 0


def other_user(targets):
    """Root may trace everything, so another user tries where the tests run as root."""
    if os.getuid() != 0:
        return as_same_user(targets)
    child = os.fork()
    if child == 0:
        status = 1
        try:
            os.setgroups([])
            os.setgid(UNPRIVILEGED_USER)
            os.setuid(UNPRIVILEGED_USER)
            status = as_same_user(targets)
        except Exception:  # the other process must not go on with what is below
            traceback.print_exc()
        finally:
            sys.stdout.flush()
            os._exit(status)
    return os.waitstatus_to_exitcode(os.waitpid(child, 0)[1])


class Backend:
    """The backend as Quillet's child."""

    def __init__(self, program, **environment):
        environment = {**os.environ, "QUILLET_FIND_OLLAMA": "false", **environment}
        self.process = subprocess.Popen(
            [program, "--child", "--config", "/nonexistent"],
            stdin=subprocess.PIPE,
            stdout=subprocess.PIPE,
            env=environment,
        )
        self.process.stdin.write(b"secret\n")
        self.process.stdin.flush()
        self.port = int(self.process.stdout.readline().split()[1])

    def ask(self, text):
        client = socket.create_connection(("127.0.0.1", self.port))
        client.sendall(
            b"GET /with/secret/generate?command=check-grammar&text=%b HTTP/1.1\r\n"
            b"Host: 127.0.0.1\r\n\r\n" % text
        )
        return client

    def cpu_ticks(self):
        with open(f"/proc/{self.process.pid}/stat", encoding="utf-8") as stat:
            return int(stat.read().rsplit(")", 1)[1].split()[11])

    def work_after_parent(self):
        """How long it computes after its parent's end, in seconds; None: it goes on waiting."""
        before = self.cpu_ticks()
        self.process.stdin.close()
        end = time.monotonic() + LIMIT
        while time.monotonic() < end:
            pid, status, usage = os.wait4(self.process.pid, os.WNOHANG)
            if pid:
                assert os.waitstatus_to_exitcode(status) == 0, status
                return usage.ru_utime - before / os.sysconf("SC_CLK_TCK")
            time.sleep(0.01)
        self.process.kill()
        return None


def ends_with_its_parent(program):
    model = socket.create_server(("127.0.0.1", 0))
    url = f"http://127.0.0.1:{model.getsockname()[1]}/v1"
    asking = Backend(program, QUILLET_MODEL_URL=url, QUILLET_MODEL_KEY=KEY)
    asking.client = asking.ask(b"text")
    connection = model.accept()[0]
    if os.getuid() == 0:
        with open(f"/proc/{asking.process.pid}/environ", "rb") as environ:
            if KEY.encode() in environ.read():
                print("backend: the key stays in its environment")
                return 1

    computing = Backend(program)
    computing.client = computing.ask(
        b"i%20definately%20go%20their%20becuase%20she%20dont%20," * 15_000
    )
    before = computing.cpu_ticks()
    while computing.cpu_ticks() < before + os.sysconf("SC_CLK_TCK"):
        time.sleep(0.01)
    work = [computing.work_after_parent(), asking.work_after_parent()]
    connection.close()
    print("seconds of work after the parent's end:", work)
    return 0 if all(each is not None and each < MAX_WORK_AFTER_PARENT for each in work) else 1


quillet, backend = sys.argv[1:]
programs = {name: os.open(name, os.O_RDONLY) for name in (quillet, backend)}
sys.exit(other_user(programs) | ends_with_its_parent(backend))
