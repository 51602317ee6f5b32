// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#include "backend/offline/text/EditReview.h"

#include <QSet>
#include <QStringList>

#include <algorithm>

namespace offline
{

namespace
{

bool isDeterminer(const QString &lower)
{
    static const QSet<QString> determiners = {
        QStringLiteral("a"),   QStringLiteral("an"),    QStringLiteral("the"),
        QStringLiteral("my"),  QStringLiteral("your"),  QStringLiteral("its"),
        QStringLiteral("our"), QStringLiteral("their"), QStringLiteral("every")};
    return determiners.contains(lower);
}

/// "had had", "that that" and "you you" (of two clauses) can be right.
bool mayRepeat(const QString &lower)
{
    static const QSet<QString> words = {QStringLiteral("had"), QStringLiteral("that"),
                                        QStringLiteral("you"), QStringLiteral("her"),
                                        QStringLiteral("it")};
    return words.contains(lower);
}

bool clash(const QString &first, const QString &second)
{
    if (first.isEmpty() || second.isEmpty())
        return false;
    return (first == second && !mayRepeat(first)) || (isDeterminer(first) && isDeterminer(second));
}

} // namespace

void dropNewMistakes(const Document &document, EditList &edits)
{
    const std::vector<Word> &words = document.words();
    edits.review([&](qsizetype start, qsizetype end,
                     const QString &replacement) -> std::optional<QString> {
        // The first word that the edit reaches, and the first one after it.
        const auto first = std::find_if(words.begin(), words.end(),
                                        [&](const Word &word) { return word.end() > start; });
        const auto after =
            std::find_if(first, words.end(), [&](const Word &word) { return word.start >= end; });
        QStringList written = replacement.toLower().split(u' ', Qt::SkipEmptyParts);
        const bool wordwise = first != words.end() && first->start == start && !written.isEmpty() &&
                              (after == first || std::prev(after)->end() == end);
        if (!wordwise)
            return replacement;
        const QString before =
            first != words.begin() && first->joined ? std::prev(first)->lower : QString();
        const QString next = after != words.end() && after->joined ? after->lower : QString();
        const bool insertion = after == first;
        const QString oldFirst = insertion ? next : first->lower;
        const QString oldLast = insertion ? before : std::prev(after)->lower;
        if (clash(before, written.first()) && !clash(before, oldFirst)) {
            const bool repeats = before == written.first() && written.size() > 1;
            return repeats ? std::optional(replacement.section(u' ', 1)) : std::nullopt;
        }
        if (clash(written.last(), next) && !clash(oldLast, next))
            return std::nullopt;
        return replacement;
    });
}

} // namespace offline
