#!/usr/bin/python3
# SPDX-FileCopyrightText: The Quillet authors
# SPDX-License-Identifier: Apache-2.0
"""Reads programs as they were built and complains about a protection that one of them lacks.

usage: hardening.py COMPILE_COMMANDS PROGRAM...
"""

import json
import platform
import subprocess
import sys

ENDBR64 = b"\xf3\x0f\x1e\xfa"
MIN_LANDING_PADS = 10


def readelf(option, program):
    command = ["readelf", "-W", option, program]
    return subprocess.run(command, check=True, capture_output=True, text=True).stdout


def missing_protections(program):
    headers, segments, dynamic = (readelf(option, program) for option in ("-h", "-l", "-d"))
    symbols = readelf("--dyn-syms", program)
    stack = next((line for line in segments.splitlines() if "GNU_STACK" in line), "RWE")
    if "DYN" not in headers or "INTERP" not in segments:
        yield "not position-independent"
    if "GNU_RELRO" not in segments or "NOW" not in dynamic:
        yield "no full RELRO"
    if "RWE" in stack:
        yield "executable stack"
    if "__stack_chk_fail" not in symbols:
        yield "no stack protector"
    # Debian's start files have no mark for it, so that the program has none either. But every
    # function that a pointer can reach begins with the instruction.
    with open(program, "rb") as file:
        landing_pads = file.read().count(ENDBR64)
    if platform.machine() == "x86_64" and landing_pads < MIN_LANDING_PADS:
        yield "no control-flow protection"


def unprotected_sources(compile_commands):
    with open(compile_commands, encoding="utf-8") as file:
        for entry in json.load(file):
            wanted = ["-fstack-protector-strong", "-fstack-clash-protection"]
            if "-O2" in entry["command"] or "-O3" in entry["command"]:
                wanted.append("-D_FORTIFY_SOURCE=2")
            for flag in wanted:
                if flag not in entry["command"]:
                    yield f"{entry['file']}: no {flag}"


complaints = list(unprotected_sources(sys.argv[1]))
for path in sys.argv[2:]:
    complaints += [f"{path}: {what}" for what in missing_protections(path)]
print("\n".join(complaints))
sys.exit(1 if complaints else 0)
