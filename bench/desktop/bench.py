#!/usr/bin/python3
# SPDX-FileCopyrightText: The Quillet authors
# SPDX-License-Identifier: Apache-2.0
"""Runs the groups of rows, prints the table and writes every sample. Started by bench/run."""

import argparse
import dataclasses
import datetime
import json
import os
import pathlib
import platform
import subprocess
import sys

HERE = pathlib.Path(__file__).resolve().parent
ROOT = HERE.parents[1]
sys.path[:0] = [str(HERE), str(ROOT / "tests" / "desktop")]

import faults  # noqa: E402
import figures  # noqa: E402
import footprint  # noqa: E402
import idle  # noqa: E402
import latency  # noqa: E402
import libraries  # noqa: E402
import ticks  # noqa: E402
import trees  # noqa: E402
import typing_rows  # noqa: E402
from report import print_table  # noqa: E402
from setting import Setting  # noqa: E402

GROUPS = {
    "footprint": footprint.measure,
    "tick": ticks.measure,
    "tree": trees.measure,
    "latency": latency.measure,
    "idle": idle.idle,
    "growth": idle.growth,
    "faults": faults.measure,
    "typing": typing_rows.speed,
    "exactness": typing_rows.exactness,
    "metricpost": libraries.measure_metricpost,
    "backend": libraries.measure_backend,
}


def machine():
    commit = subprocess.run(
        ["git", "-C", str(ROOT), "rev-parse", "--short", "HEAD"],
        text=True,
        stdout=subprocess.PIPE,
        stderr=subprocess.DEVNULL,
        check=False,
    )
    return {
        "date": datetime.datetime.now().isoformat(timespec="seconds"),
        "cores": os.cpu_count(),
        "load": os.getloadavg(),
        "kernel": platform.release(),
        "commit": commit.stdout.strip(),
    }


def main():
    parser = argparse.ArgumentParser(prog="bench/run", description="Measures the running product.")
    parser.add_argument("--build", type=pathlib.Path, required=True, help=argparse.SUPPRESS)
    parser.add_argument("--quillet", type=pathlib.Path, help="measure this build of Quillet")
    parser.add_argument(
        "--only",
        metavar="ROW",
        action="append",
        choices=GROUPS,
        help="one group of rows; may be given several times",
    )
    parser.add_argument("--quick", action="store_true", help="a few samples each")
    parser.add_argument(
        "--record", metavar="MACHINE", help="keep the figures in bench/figures/MACHINE.json"
    )
    parser.add_argument("--list", action="store_true", help="name the groups")
    options = parser.parse_args()
    if options.list:
        print("\n".join(GROUPS))
        return 0

    build = options.build.resolve()
    setting = Setting(
        build, (options.quillet or build / "quillet" / "quillet").resolve(), options.quick
    )
    before = machine()
    rows, failures = [], {}
    results = build / "results.json"
    for name in options.only or GROUPS:
        print(f"measuring {name} ...", file=sys.stderr, flush=True)
        try:
            rows += GROUPS[name](setting)
        except (
            OSError,
            RuntimeError,
            TimeoutError,
            ValueError,
            AssertionError,
            subprocess.SubprocessError,
        ) as problem:
            failures[name] = str(problem)
        after = machine()
        # Each time, so that an hour's samples outlive whatever ends the next group.
        found = {
            "before": before,
            "after": after,
            "quick": options.quick,
            "failures": failures,
            "rows": [dataclasses.asdict(row) for row in rows],
        }
        results.write_text(json.dumps(found, indent=1, ensure_ascii=False) + "\n")
    print(
        f"{before['date']}, commit {before['commit']}, {before['cores']} cores, load "
        f"{before['load'][0]:.1f} before and {after['load'][0]:.1f} after"
    )
    print_table(rows)
    for name, problem in failures.items():
        print(f"{name}: NOT MEASURED: {problem.strip()}")
    print(f"samples: {results}")
    if options.record:
        figures.record(ROOT / "bench" / "figures", options.record, before, rows)
    return 1 if failures or any(row.reached is False for row in rows) else 0


if __name__ == "__main__":
    sys.exit(main())
