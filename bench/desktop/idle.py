# SPDX-FileCopyrightText: The Quillet authors
# SPDX-License-Identifier: Apache-2.0
"""What Quillet costs while it waits, and whether it grows."""

import json
import os
import time

from latency import Quillet
from report import Row
from session import Session, wait_until
from setting import allow, open_editor

GROWTH_LIMIT = 0.5  # MiB from a fifth of the way to the end


def cpu_seconds(pid):
    with open(f"/proc/{pid}/stat", encoding="utf-8") as file:
        fields = file.read().rsplit(")", 1)[1].split()
    return (int(fields[11]) + int(fields[12])) / os.sysconf("SC_CLK_TCK")


def idle(setting):
    seconds = setting.count(60, 5)
    with Session() as session:
        quillet = Quillet(session, setting)
        open_editor(session)
        wait_until(quillet.person.finds_floating_button, "the button")
        time.sleep(5)
        pids = {name: quillet.pid(name) for name in ("quillet", "quillet-backend")}
        before = {name: cpu_seconds(pid) for name, pid in pids.items() if pid}
        start = time.monotonic()
        time.sleep(seconds)
        passed = time.monotonic() - start
        rows = []
        for name, spent in before.items():
            used = 100 * (cpu_seconds(pids[name]) - spent) / passed
            ours = name == "quillet"
            rows.append(
                Row(
                    f"idle: {name}",
                    "< 0.2 %" if ours else "",
                    "%",
                    [used],
                    used < 0.2 if ours else None,
                    note=f"of one core over {passed:.0f} s",
                )
            )
    return rows


def growth(setting):
    with Session() as session:
        allow(session)
        open_editor(session)
        ticks, openings = (setting.count(count, count // 50) for count in (10000, 1000))
        command = f"{setting.program('endurance')} {ticks} {openings} 2>&1 >/dev/null"
        found = json.loads(session.run(["sh", "-c", command], patience=580).splitlines()[-1])
    sizes = [size / 1024 for size in found["rss"]]
    grown = sizes[-1] - sizes[1]
    row = Row(
        "memory growth",
        f"<= {GROWTH_LIMIT} MiB",
        "MiB",
        [grown],
        grown <= GROWTH_LIMIT and found["opened"] == openings,
    )
    row.note = (
        f"{ticks} ticks, {found['opened']} openings, {found['answers']} answers; resident "
        "after each tenth: " + ", ".join(f"{size:.1f}" for size in sizes)
    )
    return [row]
