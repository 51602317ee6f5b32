"""The benchmarks of the parts that need no desktop, where they have been built."""

import json
import subprocess

from report import Row


def measure_program(setting, name):
    program = setting.build / "bench" / name / f"bench_{name}"
    if not program.exists():
        return []
    minimum = setting.count("0.5", "0.01")
    printed = subprocess.run([str(program), "--benchmark_format=json",
                              f"--benchmark_min_time={minimum}"], check=True,
                             stdout=subprocess.PIPE, stderr=subprocess.DEVNULL, text=True).stdout
    rows = []
    for found in json.loads(printed[printed.index("{"):])["benchmarks"]:
        if found.get("run_type", "iteration") == "iteration" and "error_message" not in found:
            rows.append(Row(f"{name}: {found['name']}", "", found["time_unit"],
                            [found["real_time"]]))
    return rows


def measure_metricpost(setting):
    return measure_program(setting, "metricpost")


def measure_offline(setting):
    return measure_program(setting, "offline")
