#!/usr/bin/python3
# SPDX-FileCopyrightText: The Quillet authors
# SPDX-License-Identifier: Apache-2.0
"""Quillet's whole job again and again, for minutes or hours, while its backend is killed and its
analytics service is down half of the time. Fails when memory or descriptors grow.

usage: endurance.py BUILD MINUTES
"""

import contextlib
import http.server
import json
import os
import pathlib
import signal
import statistics
import subprocess
import sys
import threading
import time

sys.path[:0] = [os.path.dirname(__file__), os.path.join(os.path.dirname(__file__), "faults")]
from chat_server import ChatServer  # noqa: E402
from session import Session, wait_until  # noqa: E402
from witness import Witness  # noqa: E402

ROUNDS_BETWEEN_KILLS = 7
EVENTS_IN_A_FILLING = 5_000
# What a process may gain between the first quarter of the time and the last one.
MAX_GROWTH = {"memory": 6 * 1024, "descriptors": 4}  # kibibytes, number


class AnalyticsService:
    """Takes batches and counts their records; only while it is up."""

    def __init__(self):
        self.received = 0
        self.port = 0
        self.server = None

    def up(self):
        outer = self

        class Handler(http.server.BaseHTTPRequestHandler):
            def do_POST(self):
                body = self.rfile.read(int(self.headers["Content-Length"]))
                outer.received += len(json.loads(body))
                self.send_response(200)
                self.send_header("Content-Length", "1")
                self.end_headers()
                self.wfile.write(b"1")

            def log_message(self, *_):
                pass

        self.server = http.server.ThreadingHTTPServer(("127.0.0.1", self.port), Handler)
        self.server.daemon_threads = True
        self.port = self.server.server_address[1]
        threading.Thread(target=self.server.serve_forever, daemon=True).start()

    def down(self):
        self.server.shutdown()
        self.server.server_close()


class AnalyticsClient:
    """A program with an instance of the analytics client, which does what it is told to."""

    def __init__(self, build, folder, service):
        self.store = pathlib.Path(folder) / "endurance_MPDB.sqlite"
        self.service = service
        self.expected = 0
        self.process = subprocess.Popen(
            [
                build / "tests/unit/MetricPost/metricpost_child",
                "obey",
                folder,
                "endurance",
                f"http://127.0.0.1:{service.port}",
            ],
            stdin=subprocess.PIPE,
            stdout=subprocess.PIPE,
            text=True,
        )

    def tell(self, order):
        self.process.stdin.write(order + "\n")
        self.process.stdin.flush()
        assert self.process.stdout.readline() == "done\n"

    def cycle(self):
        """Fills the queue, tries to drain it while the service is down, and drains it."""
        self.service.down()
        self.tell(f"track {EVENTS_IN_A_FILLING}")
        self.expected += EVENTS_IN_A_FILLING
        full = self.store.stat().st_size
        self.tell("drain")
        self.service.up()
        self.tell("drain")
        assert self.service.received == self.expected, (self.service.received, self.expected)
        drained = self.store.stat().st_size
        assert drained < full / 4, f"the store does not shrink: {full} to {drained} bytes"


def figures(pid):
    """Resident memory in kibibytes, open descriptors; None for a process that is gone."""
    with contextlib.suppress(OSError):
        pages = int(pathlib.Path(f"/proc/{pid}/statm").read_text(encoding="ascii").split()[1])
        return {
            "memory": pages * os.sysconf("SC_PAGE_SIZE") // 1024,
            "descriptors": len(os.listdir(f"/proc/{pid}/fd")),
        }
    return None


def growth(samples, what):
    """From the first quarter, without its first half, in which caches fill, to the last quarter."""
    values = [sample[what] for sample in samples]
    quarter = max(1, len(values) // 4)
    early = values[quarter // 2 : quarter] or values[:1]
    return statistics.median(values[-quarter:]) - statistics.median(early)


def report(program, samples):
    print(f"{program}: {len(samples)} samples")
    good = True
    for what, limit in MAX_GROWTH.items():
        values = [sample[what] for sample in samples]
        tenths = [values[len(values) * i // 10] for i in range(10)] + values[-1:]
        gained = growth(samples, what)
        good = good and gained <= limit
        print(f"  {what}: {' '.join(map(str, tenths))}; growth {gained:.0f}, at most {limit}")
    return good


def endure(build, minutes):
    end = time.monotonic() + minutes * 60
    service = AnalyticsService()
    service.up()
    samples = {"quillet": [], "quillet-backend": [], "analytics client": []}
    kills = rounds = 0
    with Session() as desktop, ChatServer("") as chat:
        client = AnalyticsClient(build, desktop.env["XDG_CACHE_HOME"], service)
        witness = Witness(desktop, build, chat.environment)
        witness.opens_editor("letter.txt", "a text")
        try:
            while time.monotonic() < end:
                rounds += 1
                chat.answer = f"This is the text of round {rounds}."
                witness.runs_command("elevate", chat.answer)
                witness.waits_for_text("mousepad", chat.answer)
                client.cycle()
                backend = wait_until(lambda: witness.processes("quillet-backend"), "the backend")[0]
                for program, pid in zip(
                    samples, (witness.quillet.pid, backend, client.process.pid)
                ):
                    samples[program].append(figures(pid))
                if rounds % ROUNDS_BETWEEN_KILLS == 0:
                    os.kill(backend, signal.SIGKILL)
                    kills += 1
                    wait_until(
                        lambda gone=backend: gone not in witness.processes("quillet-backend"),
                        "the backend's end",
                    )
            assert witness.quillet.running()
        finally:
            client.process.kill()
            client.process.wait()
    print(f"{minutes} minutes: {rounds} texts rewritten, the backend killed {kills} times,")
    print(f"{service.received} events stored while the service was down, each received once")
    return all([report(program, list(filter(None, each))) for program, each in samples.items()])


sys.exit(0 if endure(pathlib.Path(sys.argv[1]), float(sys.argv[2])) else 1)
