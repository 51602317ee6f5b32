// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#include "backend/offline/rules/MissingArticleRule.h"

#include <QSet>

namespace offline
{

void MissingArticleRule::check(const Analysis &analysis, EditList &edits) const
{
    constexpr double needed = 1.9;
    constexpr double neededAfterBe = 1.2; // "he is teacher"
    constexpr TagSet before = {Tag::In, Tag::Of, Tag::Vb, Tag::Vbd, Tag::Vbz, Tag::Vbp, Tag::Vbg};
    constexpr TagSet goesOn = {Tag::Nn, Tag::Nns, Tag::Nnp, Tag::Nnps, Tag::Pos, Tag::Cd, Tag::Vbg};
    for (int i = 1; i < int(analysis.tags.size()); ++i) {
        if (!analysis.joins(i) || !before.has(analysis.tag(i - 1)) || !analysis.mayChange(i) ||
            analysis.document.word(i).letters != LetterCase::Lower ||
            analysis.document.word(i - 1).hyphenated)
            continue;
        if (analysis.lower(i) == u"lot" && analysis.joins(i + 1) &&
            analysis.lower(i + 1) == u"of") {
            edits.replace(analysis.document.word(i).start, 0, QStringLiteral("a "));
            continue;
        }
        int head = i;
        if (analysis.tag(i) == Tag::Jj && analysis.joins(i + 1) && analysis.mayChange(i + 1))
            ++head;
        if (analysis.tag(head) != Tag::Nn ||
            (analysis.joins(head + 1) && goesOn.has(analysis.tag(head + 1))))
            continue;
        if (!analysis.inflections.plural(analysis.lower(head)))
            continue;
        static const QSet<QString> being = {QStringLiteral("is"), QStringLiteral("am"),
                                            QStringLiteral("was"), QStringLiteral("i'm")};
        double best = being.contains(analysis.lower(i - 1)) ? neededAfterBe : needed;
        QString article;
        const int count = head - i + 1;
        QStringList words;
        for (int k = i; k <= head; ++k)
            words.append(analysis.lower(k));
        for (const QString &candidate :
             {QStringLiteral("a"), QStringLiteral("an"), QStringLiteral("the")}) {
            const double gain = analysis.context.gain(i, count, QStringList{candidate} + words);
            if (gain > best) {
                best = gain;
                article = candidate;
            }
        }
        if (!article.isEmpty())
            edits.replace(analysis.document.word(i).start, 0, article + u' ');
    }
}

} // namespace offline
