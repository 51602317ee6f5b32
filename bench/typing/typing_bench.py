#!/usr/bin/python3
# SPDX-FileCopyrightText: The Quillet authors
# SPDX-License-Identifier: Apache-2.0
"""Types texts into real programs with our keyboard and with `xdotool type`, and compares what
arrived: speed and exactness, program by program and kind by kind.

    typing_bench.py [--build DIR] [--json FILE] [--programs A,B] [--kinds A,B] [--length N]
                    [--repeat N] [--peer-length N] [--layouts us,de] [--load] [--exactness N]

Prints a table and, with --json, writes every single sample. A sample's time is from the request to
type to the moment at which the program's own text is complete, as its accessibility tree shows it.
"At most" is what the program would take with the whole machine for itself: as many characters a
second as its own processor time for them, measured in the same sample, leaves room for; "machine"
is the same with the processor time of everything that ran: the X server, the window manager, we.
The kind "long" is 30,000 Latin characters in one go, "line" 3,000 without any line break.
--load keeps one core busy meanwhile. --exactness N types N texts of 500 to 5,000 characters, of
every kind in turn, into each program and reports how many arrived exactly.
"""

import argparse
import json
import os
import pathlib
import random
import re
import signal
import statistics
import subprocess
import sys
import time

ROOT = pathlib.Path(__file__).resolve().parents[2]
sys.path[:0] = [str(ROOT / "tests/desktop"), str(ROOT / "tests/desktop/keyboard")]
from inputs import PROGRAMS, Input, first_difference  # noqa: E402
from session import Session  # noqa: E402
from speed_texts import SPEED_TEXTS, latin  # noqa: E402
from texts import KINDS, make  # noqa: E402

LONG = 30_000
BUSIEST = 6  # threads whose times are kept


def settle(target, text, patience):
    """Waits until the input holds `text`, or its text has not changed for `patience` seconds; what
    it holds, and since when."""
    last, since = None, time.monotonic()
    while True:
        now = target.read()
        if now != last:
            last, since = now, time.monotonic()
        if now == text or time.monotonic() - since > patience:
            return now, since
        time.sleep(0.1)  # reading takes the program's processor time


def with_descendants(pid):
    parents = {}
    for stat in pathlib.Path("/proc").glob("[0-9]*/stat"):
        try:
            # The name in brackets may hold anything; after it come the state and the parent.
            parents[int(stat.parent.name)] = int(stat.read_text().rpartition(")")[2].split()[1])
        except OSError:
            pass
    family = {pid}
    while more := {child for child, parent in parents.items() if parent in family} - family:
        family |= more
    return family


def thread_times(target):
    """Processor seconds of each thread of the program, by its name and numbers."""
    times = {}
    for pid in with_descendants(target.program.process.pid):
        process = pathlib.Path(f"/proc/{pid}")
        try:
            # A browser's processes are all called the same; this tells what each is for.
            role = re.search(r"--type=([\w-]+)", (process / "cmdline").read_text())
            for thread in (process / "task").iterdir():
                name = (role[1] + " " if role else "") + (thread / "comm").read_text().strip()
                # The first number is nanoseconds on a processor (proc's schedstat).
                nanoseconds = int((thread / "schedstat").read_text().split()[0])
                times[name, pid, thread.name] = nanoseconds / 1e9
        except OSError:
            pass
    return times


def times_spent(before, after):
    """Seconds that each thread has worked, the busiest first, as pairs of its name and them."""
    spent = [(thread[0], seconds - before.get(thread, 0)) for thread, seconds in after.items()]
    return sorted(spent, key=lambda pair: -pair[1])


def shortest_time(spent):
    """Seconds that the program needs if its threads never wait."""
    seconds = [time for _, time in spent]
    return max(seconds[0], sum(seconds) / os.cpu_count())


def flood(build):
    return build / "bench/typing/bench_flood"


def sample(target, tool, program, kind, layout, text):
    target.clear()
    target.desktop.run(["setxkbmap", layout])
    before = thread_times(target)
    start = time.monotonic()
    if tool == "ours":
        report = target.type(text)
        seconds = report["milliseconds"] / 1000
        spent = times_spent(before, thread_times(target))
    elif tool == "flood":
        report = {"result": "typed"}
        subprocess.run(
            [flood(target.build)], input=text, text=True, env=target.desktop.env, check=True
        )
    else:
        report = {"result": "typed"}
        subprocess.run(
            ["xdotool", "type", "--clearmodifiers", "--file", "-"],
            input=text,
            text=True,
            env=target.desktop.env,
            check=False,
        )
    # A page shows nothing new for long while a flood of keys is waiting.
    got, since = settle(target, text, 30 if tool == "flood" else 3)
    if tool != "ours":
        seconds = since - start
        spent = times_spent(before, thread_times(target))
    found = {
        "tool": tool,
        "program": program,
        "kind": kind,
        "layout": layout,
        "characters": len(text),
        "seconds": seconds,
        "shortest": shortest_time(spent),
        "threads": spent[:BUSIEST],
        "exact": got == text,
        "result": report["result"],
    }
    if "coreSeconds" in report:
        found["machine"] = report["coreSeconds"] / os.cpu_count()
    if got != text:
        found["difference"] = first_difference(got, text)
    return found


def rate(samples, time="seconds"):
    return statistics.median(s["characters"] / s[time] for s in samples) if samples else 0


def where_time_goes(sample):
    return ", ".join(
        f"{thread} {1000 * seconds / sample['characters']:.2f}"
        for thread, seconds in sample["threads"]
    )


def print_table(samples):
    print(
        f"{'program':18} {'kind':10} {'ours/s':>8} {'exact':>7} {'at most/s':>10} "
        f"{'machine/s':>10} {'xdotool/s':>10} {'exact':>7} {'ratio':>6} {'flood/s':>8}"
    )
    for program, kind in dict.fromkeys((s["program"], s["kind"]) for s in samples):
        of = {
            tool: [
                s
                for s in samples
                if s["tool"] == tool and s["program"] == program and s["kind"] == kind
            ]
            for tool in ("ours", "xdotool", "flood")
        }
        exact = {tool: f"{sum(s['exact'] for s in of[tool])}/{len(of[tool])}" for tool in of}
        peer = rate(of["xdotool"])
        # One that loses keys is done early.
        whole_floods = [s for s in of["flood"] if s["exact"]]
        ratio = f"{rate(of['ours']) / peer:.1f}" if peer else "-"
        print(
            f"{program:18} {kind:10} {rate(of['ours']):8.0f} {exact['ours']:>7} "
            f"{rate(of['ours'], 'shortest'):10.0f} {rate(of['ours'], 'machine'):10.0f} "
            f"{peer:10.0f} {exact['xdotool']:>7} {ratio:>6} "
            f"{rate(whole_floods) or '-':>8.6}"
        )
        if of["ours"]:
            print("    milliseconds a character:", where_time_goes(of["ours"][-1]))
    for s in samples:
        if s["tool"] == "ours" and not s["exact"]:
            print(
                f"not exact: {s['program']} {s['kind']} {s['layout']}, {s['result']} after "
                f"{s['seconds']:.1f} s: {s['difference']}"
            )


def text_of(kind, length, seed, tab):
    if kind == "long":
        return latin(LONG, seed)
    if kind == "line":
        return latin(length, seed).replace("\n", " ")
    return SPEED_TEXTS[kind](length, seed) if kind in SPEED_TEXTS else make(kind, length, seed, tab)


def exactness_texts(count, layouts, tab):
    for i in range(count):
        rng = random.Random(i)
        kind = KINDS[i % len(KINDS)]
        yield kind, layouts[i % len(layouts)], make(kind, rng.randint(500, 5000), i, tab)


def peers(options):
    found = ["xdotool"] if options.peer_length > 0 else []
    return found + (["flood"] if flood(options.build).exists() else [])


def types(tool, kind):
    """Whether the tool is measured with texts of this kind."""
    if tool == "flood":
        return kind in ("latin", "line")
    return tool == "ours" or kind != "long"


def speed_samples(options, program, layouts, tools):
    """The samples of some tools, on a desktop that no other tool has used: after a text that
    xdotool has typed, openbox works ten times as long at each change of the keyboard map."""
    wanted = [
        (kind, i, tool)
        for kind in options.kinds.split(",")
        for i in range(options.repeat)
        for tool in tools
        if types(tool, kind)
    ]
    if not wanted:
        return []
    samples = []
    with Session() as desktop:
        target = Input(desktop, options.build, program)
        for kind, i, tool in wanted:
            length = options.peer_length if tool == "xdotool" else options.length
            text = text_of(kind, length, i, target.tab)
            if tool == "flood":
                text = "".join(c for c in text if c.isascii())
            samples.append(sample(target, tool, program, kind, layouts[i % len(layouts)], text))
    return samples


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("--build", type=pathlib.Path, default=ROOT / "build/test")
    parser.add_argument("--json")
    parser.add_argument("--programs", default=",".join(PROGRAMS))
    parser.add_argument("--kinds", default="latin,cjk,mixed")
    parser.add_argument("--layouts", default="us")
    parser.add_argument("--length", type=int, default=3000)
    parser.add_argument("--peer-length", type=int, default=500)
    parser.add_argument("--repeat", type=int, default=3)
    parser.add_argument("--exactness", type=int, default=0)
    parser.add_argument("--load", action="store_true")
    options = parser.parse_args()
    layouts = options.layouts.split(",")

    burner = subprocess.Popen([sys.executable, "-c", "while True: pass"]) if options.load else None
    samples = []
    try:
        for program in options.programs.split(","):
            if options.exactness:
                with Session() as desktop:
                    target = Input(desktop, options.build, program)
                    for kind, layout, text in exactness_texts(
                        options.exactness, layouts, target.tab
                    ):
                        samples.append(sample(target, "ours", program, kind, layout, text))
                continue
            for tools in (["ours"], peers(options)):
                samples += speed_samples(options, program, layouts, tools)
    finally:
        if burner:
            burner.send_signal(signal.SIGTERM)
            burner.wait()
        if options.json:
            with open(options.json, "w", encoding="utf-8") as file:
                json.dump(
                    {"load_before": os.getloadavg(), "cores": os.cpu_count(), "samples": samples},
                    file,
                    indent=1,
                )
        print_table(samples)
    return 0 if all(s["exact"] for s in samples if s["tool"] == "ours") else 1


if __name__ == "__main__":
    sys.exit(main())
