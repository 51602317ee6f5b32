# SPDX-FileCopyrightText: The Quillet authors
# SPDX-License-Identifier: Apache-2.0
"""Texts as people write them, for the speed of typing: sentences in paragraphs. Programs lay out a
whole paragraph again with each key, so one endless line would measure them and not the typing."""

import random

LATIN_WORDS = """
a able about after again all also and any are as at back be because been before but by
came can case change come could day did do each end even every far few find first for from get give
good great had has have here him his how if in into is it its just keep know large last left letter
like little long look made make many may meeting might month more most much must name need never
new next no not now of off office on once one only open or other our out over own part people place
please point project question read report right said same see send she should side since small so
some still such take tell than that the their them then there these they thing think this those
through time to today too two under until up use very want was way we week well went were what when
where which while who why will with work would write year you your café naïve façade Zürich señor
résumé""".split()
CJK_CHARACTERS = 600


def _paragraphs(sentence, paragraph, between, length):
    """Sentences, and a line break once a paragraph is long enough."""
    lines = [""]
    while sum(map(len, lines)) < length:
        lines[-1] += sentence()
        if len(lines[-1]) < paragraph:
            lines[-1] += between
        else:
            lines.append("")
    return "\n".join(lines)[:length].strip()


def latin(length, seed):
    """Now and then with an accent, which the us layout does not have."""
    rng = random.Random(f"latin {seed}")

    def sentence():
        words = [rng.choice(LATIN_WORDS) for _ in range(rng.randint(5, 16))]
        words[0] = words[0].capitalize()
        words[len(words) // 2] += rng.choice(["", ","])
        return " ".join(words) + rng.choice("...?!")

    return _paragraphs(sentence, 400, " ", length)


def cjk(length, seed):
    """Out of 600 different characters, the common ones as much commoner as they are in writing."""
    rng = random.Random(f"cjk {seed}")
    characters = [chr(code) for code in rng.sample(range(0x4E00, 0x9F00), CJK_CHARACTERS)]
    weights = [1 / (rank + 10) for rank in range(CJK_CHARACTERS)]

    def sentence():
        words = rng.choices(characters, weights, k=rng.randint(8, 24))
        words[len(words) // 2] += "，"
        return "".join(words) + "。"

    return _paragraphs(sentence, 100, "", length)


def different(length, seed):
    """Every character another one, in lines of a hundred."""
    rng = random.Random(f"different {seed}")
    characters = [chr(code) for code in rng.sample(range(0x4E00, 0x9F00), length)]
    return "\n".join("".join(characters[i : i + 100]) for i in range(0, length, 101))[:length]


SPEED_TEXTS = {"latin": latin, "cjk": cjk, "different": different}
