#!/usr/bin/env python3
# SPDX-FileCopyrightText: The Quillet authors
# SPDX-License-Identifier: Apache-2.0
"""Makes words.txt, the word frequencies that rank spelling candidates.

Input, all from Debian 12:
  * package scowl: its size classes (10 = most common ... 50) say how common a
    word is; its licence allows use, copying and distribution for any purpose.
  * word counts of English prose that Debian ships: packages fortunes,
    fortunes-min and debian-handbook. Only counts are kept.

Usage: make-words.py SCOWL_DIR PROSE_DIR... > words.txt

Output: one line for each level, most frequent first: the level's number (15 to
0) and its words, sorted, each as <length of the prefix shared with the word
before, as a letter from 'A'><rest>. The engine reads this format only.
"""
import html
import math
import os
import re
import sys
from collections import Counter

PRIOR = {10: 6.5, 20: 4.5, 35: 2.5, 40: 1.5, 50: 0.5}
WORD = re.compile(r"(?<![A-Za-z0-9_/.@'-])[a-z]+(?![A-Za-z0-9_/@'-])")


def classes(scowl):
    sizes = {}
    for region in ("english", "american", "british"):
        for size in sorted(PRIOR, reverse=True):
            path = os.path.join(scowl, f"{region}-words.{size}")
            if not os.path.exists(path):
                continue
            with open(path, encoding="latin-1") as lines:
                for word in map(str.strip, lines):
                    if re.fullmatch(r"[a-z]{2,24}", word):
                        sizes[word] = size
    sizes["a"] = 10
    return sizes


def counts(folders):
    counter = Counter()
    for folder in folders:
        for base, _, names in os.walk(folder):
            for name in names:
                if name.endswith((".dat", ".u8", ".png", ".gif", ".gz", ".pdf", ".epub")):
                    continue
                with open(os.path.join(base, name), encoding="utf-8", errors="replace") as file:
                    text = html.unescape(re.sub(r"<[^>]*>", " ", file.read()))
                counter.update(WORD.findall(text))
    return counter


def main():
    sizes = classes(sys.argv[1])
    counter = counts(sys.argv[2:])
    total = sum(counter[word] for word in sizes)
    levels = {}
    for word, size in sizes.items():
        per_million = counter[word] * 1e6 / total
        level = PRIOR[size] + 0.55 * math.log2(1 + per_million)
        levels.setdefault(min(15, int(level)), []).append(word)
    for level in sorted(levels, reverse=True):
        line, last = [], ""
        for word in sorted(levels[level]):
            shared = len(os.path.commonprefix((last, word)))
            line.append(chr(ord("A") + shared) + word[shared:])
            last = word
        print(level, "".join(line), sep=" ")


main()
