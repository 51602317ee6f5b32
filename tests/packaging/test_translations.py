# SPDX-FileCopyrightText: The Quillet authors
# SPDX-License-Identifier: Apache-2.0
"""Every language has every text, and a translation keeps what programs rely on."""

import pathlib
import re
import xml.etree.ElementTree as ElementTree

import pytest

FOLDER = pathlib.Path(__file__).resolve().parents[2] / "Resources" / "localisation"


def table(language):
    tree = ElementTree.parse(FOLDER / f"Localizable{language}.ts")
    return {
        message.find("source").text: message.find("translation").text
        for message in tree.iter("message")
        if message.find("translation").get("type") is None
    }


@pytest.mark.parametrize("language", ["_de", "_es", "_fr"])
def test_the_language_is_complete(language):
    english, other = table(""), table(language)
    assert english.keys() - other.keys() == set(), "without a translation"
    assert other.keys() - english.keys() == set(), "translated, but shown nowhere"
    for key, text in other.items():
        assert text.strip(), key
        assert sorted(re.findall(r"%\d|%n", text)) == sorted(re.findall(r"%\d|%n", key)), key
        assert text.count("\n") == key.count("\n"), key
    # The popup knows these two buttons by their titles.
    for action in ("cancel", "reload"):
        assert other[action].lower() == action
    # A title that a narrow button has to hold: at most 60 % longer, or some letters.
    for key in other:
        if re.fullmatch(r"[a-z-]+", key):
            assert len(other[key]) <= max(1.6 * len(english[key]), len(english[key]) + 9), key
