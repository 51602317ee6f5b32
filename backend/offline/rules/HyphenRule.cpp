// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#include "backend/offline/rules/HyphenRule.h"

#include "backend/offline/Resources.h"

namespace offline
{

namespace
{

void hyphenate(const Analysis &analysis, int first, int last, EditList &edits)
{
    for (int i = first + 1; i <= last; ++i) {
        const qsizetype end = analysis.document.word(i - 1).end();
        edits.replace(end, analysis.document.word(i).start - end, QStringLiteral("-"));
    }
}

/// Whether the words from `index` on are these, with a space between them.
bool matches(const Analysis &analysis, int index, const QStringList &words)
{
    for (int k = 0; k < words.size(); ++k) {
        const int at = index + k;
        if (at >= int(analysis.tags.size()) || analysis.lower(at) != words.at(k) ||
            !analysis.mayChange(at) || (k > 0 && analysis.document.gapBefore(at) != u" "))
            return false;
    }
    return true;
}

/// "an easy to use tool": the place of the verb, or -1.
int easyTo(const Analysis &analysis, int index)
{
    static const QSet<QString> judged = {QStringLiteral("easy"),      QStringLiteral("hard"),
                                         QStringLiteral("difficult"), QStringLiteral("ready"),
                                         QStringLiteral("simple"),    QStringLiteral("quick")};
    constexpr TagSet nouns = {Tag::Nn, Tag::Nns};
    constexpr TagSet verbs = {Tag::Vb, Tag::Vbp};
    for (int k = 1; k <= 3; ++k) {
        if (!analysis.joins(index + k) || analysis.document.gapBefore(index + k) != u" ")
            return -1;
    }
    const bool phrase = judged.contains(analysis.lower(index)) && analysis.joins(index) &&
                        analysis.tag(index - 1) == Tag::Dt && analysis.lower(index + 1) == u"to" &&
                        analysis.inflections.possible(analysis.lower(index + 2)).hasAny(verbs);
    return phrase && nouns.has(analysis.tag(index + 3)) ? index + 2 : -1;
}

} // namespace

HyphenRule::HyphenRule()
{
    for (const QList<QString> &row : resourceTable(u"compounds.tsv")) {
        for (const QString &entry : row.at(1).split(u' ')) {
            const QStringList words = entry.split(u'_');
            if (row.at(0) == u"prefix")
                m_prefixes.insert(entry);
            else if (row.at(0) == u"unit")
                m_units.insert(entry);
            else if (row.at(0) == u"suffix")
                m_suffixes.insert(entry);
            else if (row.at(0) == u"modifier")
                m_modifiers[words.first()].append(words);
            else if (row.at(0) == u"always")
                m_always[words.first()].append(words);
            else
                m_joined[words.first()].insert(words.last());
        }
    }
}

bool HyphenRule::isBeforeNoun(const Analysis &analysis, int index) const
{
    constexpr TagSet nouns = {Tag::Nn, Tag::Nns};
    int at = index + 1;
    if (analysis.joins(at) && analysis.tag(at) == Tag::Jj)
        ++at;
    return analysis.joins(at) && nouns.has(analysis.tag(at)) &&
           analysis.document.gapBefore(index + 1) == u" ";
}

/// "30 minute" before a noun, "10 year old".
bool HyphenRule::measures(const Analysis &analysis, int index) const
{
    static const QSet<QString> numbers = {QStringLiteral("two"),   QStringLiteral("three"),
                                          QStringLiteral("four"),  QStringLiteral("five"),
                                          QStringLiteral("six"),   QStringLiteral("seven"),
                                          QStringLiteral("eight"), QStringLiteral("nine"),
                                          QStringLiteral("ten"),   QStringLiteral("twelve")};
    if (!analysis.joins(index + 1) || !m_units.contains(analysis.lower(index + 1)) ||
        !analysis.mayChange(index + 1) || analysis.document.gapBefore(index + 1) != u" ")
        return false;
    const Word &number = analysis.document.word(index);
    const QStringView spelt =
        QStringView(analysis.document.text()).mid(number.start, number.length);
    const bool digits = spelt.front().isDigit() && spelt != u"1" && !number.hyphenated &&
                        spelt.size() <= 4 &&
                        (index == 0 || !analysis.document.gapBefore(index).endsWith(u'.'));
    if (analysis.document.word(index + 1).letters != LetterCase::Lower ||
        number.letters != LetterCase::Lower)
        return false;
    return digits || (numbers.contains(number.lower) && !number.hyphenated);
}

/// "pet friendly" and "well maintained" before a noun.
bool HyphenRule::describes(const Analysis &analysis, int index) const
{
    constexpr TagSet named = {Tag::Nn, Tag::Jj, Tag::Jjr, Tag::Jjs};
    constexpr TagSet before = {Tag::Dt, Tag::Jj, Tag::In, Tag::Of, Tag::Cd, Tag::Vbg, Tag::Rb};
    constexpr TagSet nouns = {Tag::Nn, Tag::Nns};
    if (analysis.document.gapBefore(index + 1) != u" " || !analysis.joins(index + 2) ||
        analysis.document.gapBefore(index + 2) != u" " || !nouns.has(analysis.tag(index + 2)))
        return false;
    const bool opens = !analysis.joins(index) || before.has(analysis.tag(index - 1));
    if (analysis.lower(index) == u"well")
        return opens && analysis.tag(index + 1) == Tag::Vbn;
    return opens && named.has(analysis.tag(index)) &&
           m_suffixes.contains(analysis.lower(index + 1));
}

void HyphenRule::check(const Analysis &analysis, EditList &edits) const
{
    for (int i = 0; i + 1 < int(analysis.tags.size()); ++i) {
        if (!analysis.document.isEnglish(analysis.document.word(i)))
            continue;
        const QString &word = analysis.lower(i);
        if (measures(analysis, i)) {
            const bool age = analysis.lower(i + 1) == u"year" && analysis.joins(i + 2) &&
                             analysis.lower(i + 2) == u"old";
            if (age)
                hyphenate(analysis, i, i + 2, edits);
            else if (isBeforeNoun(analysis, i + 1))
                hyphenate(analysis, i, i + 1, edits);
            continue;
        }
        if (!analysis.mayChange(i) || !analysis.joins(i + 1) || !analysis.mayChange(i + 1))
            continue;
        for (const QStringList &words : m_always.value(word)) {
            if (matches(analysis, i, words))
                hyphenate(analysis, i, i + int(words.size()) - 1, edits);
        }
        for (const QStringList &words : m_modifiers.value(word)) {
            const int last = i + int(words.size()) - 1;
            if (matches(analysis, i, words) && isBeforeNoun(analysis, last))
                hyphenate(analysis, i, last, edits);
        }
        if (const int verb = easyTo(analysis, i); verb > 0)
            hyphenate(analysis, i, verb, edits);
        if (describes(analysis, i))
            hyphenate(analysis, i, i + 1, edits);
        if (m_prefixes.contains(word) && analysis.document.gapBefore(i + 1) == u" " &&
            analysis.document.word(i + 1).letters == LetterCase::Lower)
            hyphenate(analysis, i, i + 1, edits);
        const auto joined = m_joined.constFind(word);
        if (joined != m_joined.constEnd() && joined->contains(analysis.lower(i + 1)) &&
            analysis.document.gapBefore(i + 1) == u" ") {
            const Word &first = analysis.document.word(i);
            edits.replace(first.end(), 1, QString());
        }
    }
}

} // namespace offline
