# SPDX-FileCopyrightText: The Quillet authors
# SPDX-License-Identifier: Apache-2.0
"""The texts that each program gets, one after the other: each replaces the one before."""

EASY = (
    "We has seen the naïve façade of the café in Zürich, and it were nice.\n"
    "The second paragraph is short.\n"
    "A third one ends it: Ångström, Łódź, déjà vu."
)
CORRECTED = EASY.replace("has seen", "have seen").replace("it were", "it was")
SENTENCE = "A long text is made of many words, and some of them is wrong. "
LONG = "\n".join(f"{number}. " + (SENTENCE * 5).strip() for number in range(97))

TEXTS = {
    "easy": EASY,
    "corrected": CORRECTED,
    "emoji": "Family 👩‍👩‍👧‍👦, wave 👋🏽, flag 🇩🇪, heart ❤️, coder 👩🏽‍💻.\nThe end 🎉",
    "Arabic": "مرحبا بالعالم، هذا نص قصير.\nوهذه هي الفقرة الثانية.",
    "Hindi": "नमस्ते दुनिया, यह एक छोटा पाठ है।\nक्षत्रिय ज्ञान श्री।",
    "CJK": "今天天气很好，我们去公园。\n東京の天気は晴れです。\n한국어 문장도 있습니다.",
    "combining": "Vie\u0323\u0302t Nam, e\u0301te\u0301, n\u0303 und o\u0308, a\u0301\u0323z.",
    "equal length": "Vie\u0323\u0302t Nem, e\u0301ta\u0301, n\u0303 and o\u0308, a\u0301\u0323y.",
    "long": LONG,
    "long corrected": LONG.replace("7. A long", "7. The long"),
    "short": "Ok.",
}
QUICK = ["easy", "corrected", "emoji", "CJK", "equal length", "short"]
