#!/usr/bin/env python3
# SPDX-FileCopyrightText: The Quillet authors
# SPDX-License-Identifier: Apache-2.0
"""Makes emoji.tsv, the words that emojify answers with an emoji.

Input: the English annotations of the Unicode CLDR, which Debian ships in the
package unicode-cldr-core (230 MB, which is why only the result is kept here).
Taken are the emoji whose CLDR name is a single word, and those that CHOSEN names
for a word; the CLDR must know each of these emoji.

Usage: make-emoji.py /usr/share/unicode/cldr/common/annotations/en.xml > emoji.tsv
"""
import re
import sys
import xml.etree.ElementTree as ElementTree

# Names that are everyday words with other meanings, or that hurt.
LEFT_OUT = set(
    """
back end on soon top up down cool free new ok id vs sos ng abc atm wc link key lock pin file
card mail office school church mosque temple person man woman boy girl baby child men women
adult elf fairy mage genie zombie vampire ring bell book books paper page letter chair door
window table bed couch toilet shower razor soap sponge bucket ladder magnet hook nut bolt gear
chain label bow brick rock wood hut stop minus plus divide multiply infinity check cross mark
star dizzy fire sun water droplet splash dash hole bomb collision gun knife dagger sword sword
coffin urn skull ghost alien robot poo pistol syringe pill blood bone bones foot leg ear nose
eye eyes mouth tongue tooth brain lips lungs heart hand hands drop trident name badge recycling
copyright registered trade scroll memo pen pencil crayon clip scissors triangle circle square
diamond orange pear peach cherries eggplant pad shorts dress cap crown purse pouch glasses
goggles television radio battery plug candle lamp coin money receipt chart abacus hammer axe
pick wrench screwdriver saw screw stairs mirror bus car taxi train tram station airplane ship
canoe boat anchor fuel watch stopwatch bubbles kiss ram rat ox snail bug ant spider cricket
worm microbe fly mosquito beetle wave joker stethoscope shield identification information
umbrella compass map globe placard loudspeaker megaphone bar pool guard detective tent flags bank
cold hot locked unlocked judge cook drum mate factory seal seat
thread turkey briefs restroom clamp construction customs crutch prohibited cigarette headstone
cockroach bat bowling knot wheel mouse mechanic package please amphora basket bald castle clipboard
closet coat cow custard envelope ewe goat hamsa horse hospital house houses kaaba ledger metal pie
pig pilot pushpin ribbon rial rosette salt sari sick sled snake stadium tractor troll trackball
videocassette wastebasket yarn moai mermaid merman merperson artist bear beans bathtub beaver
pager printer goblin ogre octopus dodo desert home bikini plunger herb egg fish chicken duck frog
fox shrimp squid
rose sake dove mammoth coral olive lotus jar bookmark ice seedling llama
""".split()
)

# fmt: off
CHOSEN = {
    "birthday": "🎂", "celebrate": "🎉", "celebration": "🎉", "party": "🎉",
    "congratulations": "🎉", "christmas": "🎄", "halloween": "🎃", "gift": "🎁",
    "love": "❤️", "happy": "😄", "smile": "😄", "laugh": "😂", "joy": "😂", "sad": "😢",
    "cry": "😢", "angry": "😠", "tired": "😫", "sleep": "😴", "team": "🤝",
    "hug": "🤗", "thanks": "🙏", "applause": "👏", "idea": "💡",
    "email": "📧", "phone": "📞", "coffee": "☕",
    "tea": "🍵", "beer": "🍺", "wine": "🍷", "cake": "🍰", "cat": "🐈", "dog": "🐕",
    "rain": "🌧️", "snow": "❄️", "delicious": "😋", "excited": "🤩", "proud": "😊", "hello": "👋",
    "goodbye": "👋", "amazing": "🤩", "funny": "😂", "surprised": "😮", "worried": "😟",
    "music": "🎵", "movie": "🎬", "camera": "📷", "money": "💰",
    "airplane": "✈️", "beach": "🏖️", "camping": "🏕️", "computer": "💻", "calendar": "📅",
    "muscle": "💪", "strong": "💪", "win": "🏆", "luck": "🍀",
    "school": "🏫", "flower": "💐", "wedding": "💒", "night": "🌃",
}
# fmt: on


def main():
    names = {}
    for node in ElementTree.parse(sys.argv[1]).getroot().iter("annotation"):
        if node.get("type") == "tts":
            names[node.get("cp")] = node.text
    table = {}
    for emoji, name in names.items():
        if re.fullmatch(r"[a-z]{3,}", name) and name not in LEFT_OUT and ord(emoji[0]) > 0x2700:
            table.setdefault(name, emoji)
    for word, emoji in CHOSEN.items():
        if emoji.replace("\ufe0f", "") not in names:
            sys.exit(f"the CLDR does not know {emoji}")
        table[word] = emoji
    print("# Made by make-emoji.py from the English annotations of the Unicode CLDR 41.")
    print("# Copyright 1991-2022 Unicode, Inc.; see https://www.unicode.org/copyright.html")
    for word in sorted(table):
        print(word, table[word], sep="\t")


main()
