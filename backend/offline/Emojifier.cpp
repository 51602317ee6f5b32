// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#include "backend/offline/Emojifier.h"

#include "backend/offline/Resources.h"

#include <QSet>

namespace offline
{

namespace
{

/// Sentences from one emoji to the next, at least.
constexpr int distance = 2;

bool isPictorial(QChar c)
{
    return c.isSurrogate() || (c >= QChar(0x2600) && c <= QChar(0x27BF)) ||
           (c >= QChar(0x2B00) && c <= QChar(0x2BFF));
}

bool hasEmoji(QStringView text)
{
    for (const QChar c : text) {
        if (isPictorial(c))
            return true;
    }
    return false;
}

/// The end of the punctuation that closes the sentence, or -1 where an emoji
/// would stand inside something.
qsizetype placeAfter(const Document &document, const Sentence &sentence)
{
    static constexpr QStringView closing = u".!?\u2026\"'\u201d\u2019";
    const qsizetype start = document.word(sentence.end - 1).end();
    const QStringView gap = document.gapBefore(sentence.end);
    qsizetype length = 0;
    while (length < gap.size() && closing.contains(gap[length]))
        ++length;
    return length == gap.size() || gap[length].isSpace() ? start + length : -1;
}

} // namespace

Emojifier::Emojifier()
{
    for (const QList<QString> &row : resourceTable(u"emoji.tsv"))
        m_emoji.insert(row.at(0), row.at(1));
}

QString Emojifier::emojiFor(const Document &document, const Sentence &sentence) const
{
    static const QSet<QString> negations = {QStringLiteral("not"),   QStringLiteral("no"),
                                            QStringLiteral("never"), QStringLiteral("nobody"),
                                            QStringLiteral("none"),  QStringLiteral("without")};
    static const QSet<QString> feasts = {QStringLiteral("christmas"), QStringLiteral("halloween")};
    QString emoji;
    qsizetype longest = 0; // of two words the longer one says more
    for (int i = sentence.first; i < sentence.end; ++i) {
        const Word &word = document.word(i);
        if (negations.contains(word.lower) || word.lower.endsWith(u"n't"))
            return {};
        // "Rose", "the Party": a name
        const bool name = word.letters == LetterCase::Capital && word.joined;
        if (word.lower.size() <= longest || word.hyphenated ||
            (name && !feasts.contains(word.lower)))
            continue;
        auto found = m_emoji.constFind(word.lower);
        if (found == m_emoji.constEnd() && word.lower.endsWith(u's'))
            found = m_emoji.constFind(word.lower.chopped(1));
        if (found == m_emoji.constEnd() && word.lower.endsWith(u"es"))
            found = m_emoji.constFind(word.lower.chopped(2));
        if (found != m_emoji.constEnd()) {
            emoji = *found;
            longest = word.lower.size();
        }
    }
    return emoji;
}

void Emojifier::check(const Document &document, EditList &edits) const
{
    QSet<QString> used;
    int sinceLast = distance;
    for (const Sentence &sentence : document.sentences()) {
        ++sinceLast;
        if (hasEmoji(document.gapBefore(sentence.end))) {
            sinceLast = 0;
            continue;
        }
        if (sinceLast < distance || !sentence.english)
            continue;
        const QString emoji = emojiFor(document, sentence);
        const qsizetype place = placeAfter(document, sentence);
        if (emoji.isEmpty() || place < 0 || used.contains(emoji) || document.text().contains(emoji))
            continue;
        edits.replace(place, 0, u' ' + emoji);
        used.insert(emoji);
        sinceLast = 0;
    }
}

} // namespace offline
