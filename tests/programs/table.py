# SPDX-FileCopyrightText: The Quillet authors
# SPDX-License-Identifier: Apache-2.0
"""docs/programs.md: the results of the trials as a table."""

MAX_UNDO_STEPS = 2
MAX_OFF = 2  # pixels

HEAD = """<!-- SPDX-FileCopyrightText: The Quillet authors -->
<!-- SPDX-License-Identifier: Apache-2.0 -->

# Programs

`./test --programs` writes this page. It tries Quillet in each program as a person does, and
compares with what the program itself copies (Ctrl+A, Ctrl+C). "exact of" counts the texts that
landed unchanged; what became of the others stands below. "undo": steps that take a correction of
two words back. "off": pixels between the button and its corner. "s": seconds for the slowest text
of ordinary length, and of 30,000 characters.

| program | button | off | read | exact of | caret kept | undo | s | s, 30,000 |
| --- | --- | --- | --- | --- | --- | --- | --- | --- |
"""


def is_landed(apply):
    return apply["verdict"] == "exact" or apply["verdict"].startswith("changed by the program")


def is_good(result):
    return (
        not result.get("ended")
        and result.get("button")
        and result["applies"]
        and all(map(is_landed, result["applies"].values()))
        and (result.get("undo") or 99) <= MAX_UNDO_STEPS
        and result.get("off", 0) <= MAX_OFF
    )


def counts(result):
    applies = result["applies"].values()
    return sum(apply["verdict"] == "exact" for apply in applies), len(applies)


def summary(result):
    exact, all_texts = counts(result)
    words = [f"{exact} of {all_texts}"]
    if result.get("ended"):
        words.append(result["ended"])
    words += [f"button {result.get('button')}, off {result.get('off')}"]
    words += [f"undo {result.get('undo')}, caret {result.get('caret')}, read {result.get('read')}"]
    words += sorted({apply["verdict"] for apply in result["applies"].values()} - {"exact"})
    return "; ".join(words)


def yes(value):
    return "–" if value is None else "yes" if value else "no"


def row(name, result):
    exact, all_texts = counts(result)
    applies = result["applies"].items()
    short = [apply["seconds"] for text, apply in applies if "long" not in text]
    long = [apply["seconds"] for text, apply in applies if "long" in text]
    undo = result.get("undo")
    cells = [
        name,
        yes(result.get("button")),
        result.get("off", "–"),
        result.get("read", "–"),
        f"{exact} of {all_texts}" if all_texts else "–",
        yes(result.get("caret")),
        "–" if "undo" not in result else f"more than {MAX_UNDO_STEPS}" if undo is None else undo,
        f"{max(short):.1f}" if short else "–",
        f"{max(long):.1f}" if long else "–",
    ]
    return "| " + " | ".join(map(str, cells)) + " |"


def remarks(name, result):
    found = [result["ended"]] if result.get("ended") else []
    verdicts = {}
    for text, apply in result["applies"].items():
        if apply["verdict"] != "exact":
            verdicts.setdefault(apply["verdict"], []).append(text)
    found += [f"{verdict} ({', '.join(which)})" for verdict, which in verdicts.items()]
    return [f"- {name}: {'; '.join(found)}"] if found else []


def page(programs, results):
    tried = [program.name for program in programs if program.name in results]
    lines = [row(name, results[name]) for name in tried]
    notes = [line for name in tried for line in remarks(name, results[name])]
    return HEAD + "\n".join(lines) + "\n\n## What is not exact\n\n" + "\n".join(notes) + "\n"
