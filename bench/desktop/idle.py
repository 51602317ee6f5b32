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


def precise_cpu_seconds(pid):
    """Of all threads that still run; the kernel counts in nanoseconds here, in hundredths of a
    second in stat."""
    total = 0
    for thread in os.listdir(f"/proc/{pid}/task"):
        with open(f"/proc/{pid}/task/{thread}/schedstat", encoding="ascii") as file:
            total += int(file.read().split()[0])
    return total / 1e9


def idle(setting):
    seconds = setting.count(60, 5)
    with Session() as session:
        quillet = Quillet(session, setting)
        open_editor(session)
        wait_until(quillet.person.finds_floating_button, "the button")
        time.sleep(5)
        pids = {name: quillet.pid(name) for name in ("quillet", "quillet-backend")}
        before = {name: (cpu_seconds(pid), precise_cpu_seconds(pid), time.monotonic())
                  for name, pid in pids.items() if pid}
        time.sleep(seconds)
        rows = []
        for name, (coarse, precise, start) in before.items():
            passed = time.monotonic() - start
            used = 100 * (precise_cpu_seconds(pids[name]) - precise) / passed
            counted = 100 * (cpu_seconds(pids[name]) - coarse) / passed
            ours = name == "quillet"
            rows.append(Row(f"idle: {name}", "< 0.2 %" if ours else "", "%", [used],
                            used < 0.2 if ours else None,
                            note=f"of one core over {passed:.0f} s; {counted:.2f} % by stat"))
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
    row = Row("memory growth", f"<= {GROWTH_LIMIT} MiB", "MiB", [grown],
              grown <= GROWTH_LIMIT and found["opened"] == openings)
    row.note = (f"{ticks} ticks, {found['opened']} openings, {found['answers']} answers; resident "
                "after each tenth: " + ", ".join(f"{size:.1f}" for size in sizes))
    return [row]
