# SPDX-FileCopyrightText: The Quillet authors
# SPDX-License-Identifier: Apache-2.0
"""The parts that need no desktop: their benchmark programs, and the backend's start."""

import base64
import json
import subprocess
import time
import urllib.parse
import urllib.request

from report import Row

SENTENCE = "i definately think that teh museum should of opened earlyer."


def run_program(setting, name):
    """The benchmarks that ran, each a dictionary with its counters."""
    program = setting.build / "bench" / name / f"bench_{name}"
    minimum = setting.count("0.5", "0.01")
    printed = subprocess.run(
        [str(program), "--benchmark_format=json", f"--benchmark_min_time={minimum}"],
        check=True,
        stdout=subprocess.PIPE,
        stderr=subprocess.DEVNULL,
        text=True,
    ).stdout
    found = json.loads(printed[printed.index("{") :])["benchmarks"]
    for benchmark in found:
        if "error_message" in benchmark:
            raise RuntimeError(f"{benchmark['name']}: {benchmark['error_message']}")
    return [b for b in found if b.get("run_type", "iteration") == "iteration"]


def track_row(found, wake):
    what = found["name"].split("/")[1].replace("_", " ")
    return Row(
        f"track(), {what}: p99",
        "< 10 us",
        "us",
        [found["p99_us"]],
        found["p99_us"] < 10,
        [wake["p99_us"]],
        "waking a thread",
        note=f"{found['calls']:.0f} calls, p50 {found['p50_us']:.1f} us; CPU of the caller: "
        f"p50 {found['p50_cpu_us']:.1f}, p99 {found['p99_cpu_us']:.1f} us",
    )


def store_row(found):
    return Row(
        "events stored",
        ">= 0.9 x peer",
        "/s",
        [found["events_per_s"]],
        found["ratio"] >= 0.9,
        [found["plain_per_s"]],
        "plain SQLite",
        f"{found['record_bytes']:.0f} bytes each; median of the rounds' ratios "
        f"{found['ratio']:.2f}",
    )


def drain_row(found):
    count = int(found["name"].split("/")[1])
    linear = found["cpu_vs_first"]
    return Row(
        f"{count:,} events drained",
        "CPU <= 1.2 x 10,000's",
        "/s",
        [found["events_per_s"]],
        linear <= 1.2,
        note=f"{found['cpu_us_per_event']:.1f} us of CPU for an event, {linear:.2f} times "
        "that of the shortest queue",
    )


def measure_metricpost(setting):
    found = {b["name"]: b for b in run_program(setting, "metricpost")}
    wake = next(b for name, b in found.items() if name.startswith("wake/"))
    rows = []
    for name, benchmark in found.items():
        kind = name.split("/")[0]
        if kind == "track":
            rows.append(track_row(benchmark, wake))
        elif kind == "store":
            rows.append(store_row(benchmark))
        elif kind == "drainQueue":
            rows.append(drain_row(benchmark))
    return rows


def first_answer(program):
    """Milliseconds from the start of the backend to its first answer."""
    start = time.monotonic()
    with subprocess.Popen(
        [program, "--child"],
        stdin=subprocess.PIPE,
        stdout=subprocess.PIPE,
        stderr=subprocess.DEVNULL,
        text=True,
    ) as process:
        process.stdin.write("secret\n")
        process.stdin.flush()
        port = process.stdout.readline().split()[1]
        query = urllib.parse.urlencode(
            {"command": "check-grammar", "text": SENTENCE}, quote_via=urllib.parse.quote
        )
        request = urllib.request.Request(f"http://127.0.0.1:{port}/generate?{query}")
        request.add_header("Authorization", "Basic " + base64.b64encode(b"quillet:secret").decode())
        with urllib.request.urlopen(request, timeout=30) as answer:
            if b"definitely" not in answer.read():
                raise RuntimeError("the backend's answer is wrong")
        passed = (time.monotonic() - start) * 1000
        process.stdin.close()
    return passed


def measure_backend(setting):
    program = str(setting.build / "backend" / "quillet-backend")
    starts = [first_answer(program) for _ in range(setting.count(15, 3))]
    row = Row("backend: start to first answer", "<= 300 ms", "ms", starts)
    row.reached = row.median() <= 300
    rows = [row]
    for found in run_program(setting, "offline"):
        kind, _, words = found["name"].partition("/")
        row = Row(
            f"offline: {kind}" + (f", {int(words):,} words" if words else ""),
            "",
            found["time_unit"],
            [found["real_time"]],
        )
        if words == "1000":
            row.goal, row.reached = "<= 100 ms", found["real_time"] <= 100
        rows.append(row)
    return rows
