# SPDX-FileCopyrightText: The Quillet authors
# SPDX-License-Identifier: Apache-2.0
"""Texts of every kind that people write, the same ones for the same seed."""

import random

ALPHABETS = {
    "latin": "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789"
    ".,;:!?'\"()[]{}<>/\\|@#$%^&*-_=+`~",
    "accents": "äöüßéèêàâçñåøæœãõíóúýřšžčěůłąęźżğışőű€£¥§°«»„“”’–—…¿¡ÄÖÜÉÈÀÇÑÅØÆŒ",
    "cyrillic": "абвгдеёжзийклмнопрстуфхцчшщъыьэюяАБВГДЕЖЗИЙКЛМНОПРСТУФХЦЧШЩЭЮЯіїєґў№",
    "greek": "αβγδεζηθικλμνξοπρσςτυφχψωάέήίόύώΑΒΓΔΕΖΗΘΙΚΛΜΝΞΟΠΡΣΤΥΦΧΨΩ",
    "arabic": "ابتثجحخدذرزسشصضطظعغفقكلمنهويءآأؤإئىة،؛؟",
    "hebrew": "אבגדהוזחטיכךלמםנןסעפףצץקרשתְִֵַָ",
}
CLUSTERS = [
    "😀",
    "😂",
    "🎉",
    "👍🏽",
    "👩🏿‍💻",
    "👨‍👩‍👧‍👦",
    "🏳️‍🌈",
    "🇩🇪",
    "🇯🇵",
    "🧑🏻‍🚀",
    "❤️",
    "👁️‍🗨️",
    "1️⃣",
    "🏴󠁧󠁢󠁥󠁮󠁧󠁿",
]
COMBINING = ["é", "ñ", "ä́", "q̣̇", "a̐éö̲", "Z̷͓", "เก้า", "नमस्ते", "ક્ષ", "한"]
KINDS = [
    "latin",
    "accents",
    "cyrillic",
    "greek",
    "arabic",
    "hebrew",
    "cjk",
    "emoji",
    "combining",
    "lines",
    "mixed",
]


def _words(rng, alphabet, length):
    out = []
    while len(out) < length:
        out.extend(rng.choice(alphabet) for _ in range(rng.randint(1, 9)))
        out.append(" ")
    return "".join(out)[:length]


def make(kind, length, seed=1, tab="\t"):
    """A text of about `length` code points. `tab` is what a tab is written as."""
    rng = random.Random(f"{kind} {length} {seed}")
    if kind in ALPHABETS:
        text = _words(rng, ALPHABETS[kind], length)
    elif kind == "cjk":
        text = "".join(chr(rng.randint(0x4E00, 0x9F00)) for _ in range(length - 10)) + "かなカナ、。한글「」"
    elif kind == "emoji":
        # Lines as people write them: Qt 5 decodes every picture of a line again with each key.
        text = "".join(
            rng.choice(CLUSTERS) + ("\n" if i % 20 == 19 else rng.choice(["", " ", "a"]))
            for i in range(length // 3)
        )
    elif kind == "combining":
        text = " ".join(rng.choice(COMBINING) for _ in range(length // 4))
    elif kind == "lines":
        text = "\n".join(
            _words(rng, "abcdeäж", rng.randint(0, 30)).strip() + rng.choice(["", tab + "x"])
            for _ in range(length // 18)
        )
    elif kind == "mixed":
        parts = [
            "latin",
            "accents",
            "cyrillic",
            "greek",
            "arabic",
            "hebrew",
            "cjk",
            "emoji",
            "combining",
            "lines",
        ]
        text = "\n".join(make(part, max(24, length // len(parts)), seed, tab) for part in parts)
    else:
        raise ValueError(kind)
    return text.strip() or "x"
