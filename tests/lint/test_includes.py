# SPDX-FileCopyrightText: The Quillet authors
# SPDX-License-Identifier: Apache-2.0
"""The check of includes catches what it is there for."""

import includes

TABLE = {"low": [], "high": ["low"], "high/inner": []}


def complaints(tmp_path, texts, table=None):
    for name, text in texts.items():
        (tmp_path / name).parent.mkdir(parents=True, exist_ok=True)
        (tmp_path / name).write_text(text)
    return includes.check(tmp_path, sorted(texts), table or TABLE)


def test_upward_includes_are_found_however_they_are_written(tmp_path):
    base = {"low/Low.h": "#include <QString>\n", "high/High.h": '#include "low/Low.h"\n'}
    assert not complaints(tmp_path, base)
    for written in ("high/High.h", "High.h", "../high/High.h"):
        bad = complaints(tmp_path, {**base, "low/Low.cpp": f'  #  include "{written}"\n'})
        assert len(bad) == 1 and bad[0].startswith("low/Low.cpp: low must not"), (written, bad)


def test_a_folder_inside_another_has_its_own_rule(tmp_path):
    files = {"low/Low.h": "", "high/inner/Inner.h": '#include "low/Low.h"\n'}
    assert complaints(tmp_path, files) == [
        "high/inner/Inner.h: high/inner must not include low/Low.h"
    ]


def test_unknown_folders_and_circles_are_errors(tmp_path):
    for unknown in ("new/New.h", "high/other/Other.h"):
        assert "not in the table" in complaints(tmp_path, {unknown: ""})[0]
    assert not complaints(tmp_path, {"low/deeper/Deep.h": ""})
    assert "circle" in complaints(tmp_path, {}, {"one": ["two"], "two": ["one"]})[0]


def test_tests_may_look_at_everything_and_nothing_may_look_at_tests(tmp_path):
    files = {"tests/A.h": '#include "low/Low.h"\n', "low/Low.h": ""}
    assert not complaints(tmp_path, files)
    assert complaints(tmp_path, {**files, "high/H.h": '#include "tests/A.h"\n'})
