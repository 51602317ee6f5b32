// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#include "platform/text/WordChanges.h"

#include "platform/text/CommonSequence.h"

#include <QHash>
#include <QTextBoundaryFinder>

#include <algorithm>
#include <vector>

namespace platform
{

namespace
{

struct Word {
    qsizetype from;
    qsizetype length;
};

struct Words {
    std::vector<Word> places;
    /// Of each word; equal words have equal numbers.
    std::vector<int> numbers;
};

/// Words, signs and ideographs; white space only separates them.
Words wordsOf(QStringView text, QHash<QStringView, int> &numbers)
{
    Words words;
    QTextBoundaryFinder finder(QTextBoundaryFinder::Word, text.data(), text.size());
    for (qsizetype from = 0, to = 0; (to = finder.toNextBoundary()) != -1; from = to) {
        const QStringView word = text.sliced(from, to - from);
        if (word.trimmed().isEmpty())
            continue;
        const int number = numbers.value(word, static_cast<int>(numbers.size()));
        numbers.insert(word, number);
        words.places.push_back({from, to - from});
        words.numbers.push_back(number);
    }
    return words;
}

/// The change that puts the second piece of text in the place of the first, without the white space
/// that both begin or end with.
WordChange trimmed(QStringView before, QStringView after, WordChange change)
{
    while (change.oldLength > 0 && change.newLength > 0 &&
           before[change.oldFrom] == after[change.newFrom] && before[change.oldFrom].isSpace()) {
        ++change.oldFrom;
        ++change.newFrom;
        --change.oldLength;
        --change.newLength;
    }
    while (change.oldLength > 0 && change.newLength > 0 &&
           before[change.oldFrom + change.oldLength - 1] ==
               after[change.newFrom + change.newLength - 1] &&
           before[change.oldFrom + change.oldLength - 1].isSpace()) {
        --change.oldLength;
        --change.newLength;
    }
    return change;
}

} // namespace

QList<WordChange> wordChanges(QStringView before, QStringView after)
{
    QHash<QStringView, int> numbers;
    const Words oldWords = wordsOf(before, numbers);
    const Words newWords = wordsOf(after, numbers);
    QList<WordChange> found;
    qsizetype oldEnd = 0;
    qsizetype newEnd = 0;
    const auto closeGap = [&](qsizetype oldTo, qsizetype newTo) {
        const WordChange gap{oldEnd, oldTo - oldEnd, newEnd, newTo - newEnd};
        if (before.sliced(gap.oldFrom, gap.oldLength) != after.sliced(gap.newFrom, gap.newLength))
            found.append(trimmed(before, after, gap));
    };
    for (const auto &[i, j] : commonSequence(oldWords.numbers, newWords.numbers)) {
        const Word &oldWord = oldWords.places[size_t(i)];
        const Word &newWord = newWords.places[size_t(j)];
        closeGap(oldWord.from, newWord.from);
        oldEnd = oldWord.from + oldWord.length;
        newEnd = newWord.from + newWord.length;
    }
    closeGap(before.size(), after.size());
    return found;
}

double likeness(QStringView before, QStringView after)
{
    QHash<QStringView, int> numbers;
    const Words oldWords = wordsOf(before, numbers);
    const Words newWords = wordsOf(after, numbers);
    const std::size_t longer = std::max(oldWords.places.size(), newWords.places.size());
    if (longer == 0)
        return 1;
    const std::size_t common = commonSequence(oldWords.numbers, newWords.numbers).size();
    return static_cast<double>(common) / static_cast<double>(longer);
}

QString withoutChanges(QStringView before, QStringView after, const QList<WordChange> &undone)
{
    QString text;
    qsizetype end = 0;
    for (const WordChange &change : undone) {
        text += after.sliced(end, change.newFrom - end);
        text += before.sliced(change.oldFrom, change.oldLength);
        end = change.newFrom + change.newLength;
    }
    text += after.sliced(end);
    return text;
}

} // namespace platform
