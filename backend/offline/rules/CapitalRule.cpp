// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#include "backend/offline/rules/CapitalRule.h"

#include <QSet>

namespace offline
{

namespace
{

QSet<QString> setOf(const QString &words)
{
    const QStringList list = words.split(u' ');
    return QSet<QString>(list.begin(), list.end());
}

void capitalise(const Word &word, const Document &document, EditList &edits)
{
    edits.replace(word.start, 1, document.text().mid(word.start, 1).toUpper());
}

} // namespace

/// Words that people begin messages with. A text that begins in lower case with
/// another word may be the rest of a sentence, or a label.
bool CapitalRule::isSpokenOpening(const QString &lower)
{
    static const QSet<QString> openings = setOf(QStringLiteral(
        "i my we you they he she it this there hi hello hey dear thanks thank please sorry yes no "
        "yeah "
        "what how why who can could would do did does is are was were have has let let's i'm i've "
        "i'll i'd it's that's there's don't what's we're you're they're he's she's today yesterday "
        "tomorrow our your nice great good ok okay maybe however hence therefore unfortunately "
        "finally actually also because although when while after before during if in on at for "
        "from "
        "with so then but and some many most all every each another one people everyone there's "
        "these "
        "those as by since until without"));
    return openings.contains(lower);
}

/// Whether a lone "i" is the pronoun: it may be a counter or an enumerator.
bool CapitalRule::isPronoun(const Document &document, int index) const
{
    static const QSet<QString> before = setOf(QStringLiteral(
        "and but because so if when than as that which what how why where do did can could should "
        "would will am have had may must before after since until though although maybe hope think "
        "said guess then while was were shall might"));
    static const QSet<QString> after = setOf(QStringLiteral(
        "am was have had will would can could should shall must might may do did don't didn't "
        "can't couldn't won't wouldn't haven't hadn't wasn't think thought know knew want wanted "
        "like liked love loved need needed go went got get see saw hope hoped feel felt just "
        "really also always never still believe guess said say tell told made make take took "
        "tried try wonder wish understand remember forgot agree mean meant found find look "
        "looked work worked live lived use used saw ask asked came come left hate hated dont "
        "cant definitely honestly actually usually often probably only even totally completely "
        "recently finally sometimes bought read wrote heard met appreciate apologize apologise"));
    const Word &word = document.word(index);
    if (word.lower.startsWith(u"i'"))
        return word.lower == u"i'm" || word.lower == u"i've" || word.lower == u"i'll" ||
               word.lower == u"i'd";
    if (word.lower != u"i" || word.hyphenated)
        return false;
    const int count = int(document.words().size());
    // "i doubted": no counter does that.
    const bool acts = index + 1 < count && document.word(index + 1).joined &&
                      document.word(index + 1).lower.endsWith(u"ed") &&
                      m_lexicon.level(document.word(index + 1).lower) >= 3;
    if (acts)
        return true;
    if (index > 0 && word.joined && before.contains(document.word(index - 1).lower))
        return index + 1 == count || document.word(index + 1).joined;
    return index + 1 < count && document.word(index + 1).joined &&
           after.contains(document.word(index + 1).lower);
}

/// Whether a sentence in lower case is prose: it follows a finished sentence on
/// its line, or makes a whole sentence itself. Fragments, list items and terms
/// keep their lower case.
bool CapitalRule::opensCarelessly(const Document &document, size_t number) const
{
    constexpr int shortestSentence = 3;
    // A rarer word may be the name of a thing: "index is the position".
    constexpr int commonOpening = 10;
    const Sentence &sentence = document.sentences()[number];
    const Word &first = document.word(sentence.first);
    if (!sentence.english || first.letters != LetterCase::Lower || first.hyphenated ||
        (m_lexicon.level(first.lower) < commonOpening && !isSpokenOpening(first.lower)))
        return false;
    const QStringView gap = document.gapBefore(sentence.first);
    if (!gap.isEmpty() && !gap.back().isSpace())
        return false;
    const QStringView next = document.gapBefore(sentence.first + 1);
    if (next.startsWith(u'.') || next.startsWith(u')'))
        return false; // an enumerator
    // A message of one line without a full stop, that speaks of its writer.
    constexpr int shortestMessage = 5;
    bool speaks = false;
    for (int i = sentence.first; i < sentence.end; ++i)
        speaks = speaks || document.word(i).lower == u"i" || document.word(i).lower == u"i'm";
    const bool message = document.sentences().size() == 1 && speaks &&
                         sentence.end - sentence.first >= shortestMessage;
    const bool whole =
        (sentence.terminated || message) && sentence.end - sentence.first >= shortestSentence;
    if (sentence.startsParagraph) {
        const bool listed = gap.contains(u'-') || gap.contains(u'*') || gap.contains(u'\u2022') ||
                            gap.contains(u'\t');
        const bool indented = gap.size() > 1 && gap.endsWith(u"  ");
        // A whole sentence of several words is prose, whatever it begins with.
        constexpr int clearSentence = 5;
        const bool clear = sentence.end - sentence.first >= clearSentence &&
                           m_lexicon.level(first.lower) >= commonOpening + 2;
        return whole && !listed && !indented && number == 0 &&
               (clear || isSpokenOpening(first.lower));
    }
    const Sentence &before = document.sentences()[number - 1];
    const bool ellipsis = gap.contains(u"..") || gap.contains(u'\u2026');
    // "Yahoo! is", "who? me": those marks do not always end a sentence
    return before.english && before.end - before.first >= shortestSentence && !ellipsis &&
           gap.startsWith(u'.') && gap.mid(1).trimmed().isEmpty() && whole;
}

void CapitalRule::check(const Document &document, EditList &edits) const
{
    static const QSet<QString> names = setOf(QStringLiteral(
        "monday tuesday wednesday thursday friday saturday january february april september "
        "october november december"));
    for (size_t i = 0; i < document.sentences().size(); ++i) {
        if (opensCarelessly(document, i))
            capitalise(document.word(document.sentences()[i].first), document, edits);
    }
    const int count = int(document.words().size());
    for (int i = 0; i < count; ++i) {
        const Word &word = document.word(i);
        if (word.letters != LetterCase::Lower || word.lower.isEmpty() || word.hyphenated ||
            !document.isEnglish(word))
            continue;
        if (names.contains(word.lower) || isPronoun(document, i))
            capitalise(word, document, edits);
    }
}

} // namespace offline
