// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#include "backend/offline/rules/IntroductionRule.h"

#include <QSet>

namespace offline
{

namespace
{

const QSet<QString> &introductions()
{
    static const QSet<QString> result = [] {
        const QStringList phrases =
            QStringLiteral(
                "however|therefore|moreover|furthermore|nevertheless|nonetheless|consequently|"
                "additionally|unfortunately|fortunately|luckily|firstly|secondly|thirdly|"
                "for example|for instance|in addition|in conclusion|in my opinion|of course|"
                "in other words|as a result|on the other hand|in contrast|"
                "to sum up|first of all|last but not least|by the way|as you know|as we know|"
                "in this case|in that case|in fact|in simple words|in my experience|to my surprise|"
                "as far as i know|in these cases|in both cases|in most cases|in many cases|"
                "above all|in summary|in short|to conclude|in my "
                "view|similarly|likewise|also|second|third|yes")
                .split(u'|');
        return QSet<QString>(phrases.begin(), phrases.end());
    }();
    return result;
}

/// The place in "When I came home we ate" where the main clause begins, or -1.
int mainClause(const Analysis &analysis, const Sentence &sentence)
{
    static const QSet<QString> openers = {QStringLiteral("if"), QStringLiteral("when"),
                                          QStringLiteral("although"), QStringLiteral("because"),
                                          QStringLiteral("unless")};
    static const QSet<QString> subjects = {QStringLiteral("i"),    QStringLiteral("we"),
                                           QStringLiteral("they"), QStringLiteral("he"),
                                           QStringLiteral("she"),  QStringLiteral("you")};
    constexpr TagSet finite = {Tag::Vbd, Tag::Vbz, Tag::Vbp, Tag::Md};
    constexpr TagSet ending = {Tag::Nn, Tag::Nns, Tag::Prp, Tag::Rb};
    if (!openers.contains(analysis.lower(sentence.first)))
        return -1;
    bool hasVerb = false;
    for (int i = sentence.first + 1; i + 1 < sentence.end; ++i) {
        if (!analysis.joins(i))
            return -1;
        // A verb after the pronoun, and no verb that could take it as its object.
        if (hasVerb && subjects.contains(analysis.lower(i)) && analysis.tag(i + 1) == Tag::Md &&
            ending.has(analysis.tag(i - 1)) && !finite.has(analysis.tag(i - 1)))
            return i;
        hasVerb = hasVerb || finite.has(analysis.tag(i));
    }
    return -1;
}

} // namespace

void IntroductionRule::check(const Analysis &analysis, EditList &edits) const
{
    constexpr int longest = 4;
    constexpr int shortestRest = 3;
    constexpr TagSet subject = {Tag::Prp, Tag::Dt, Tag::Nnp, Tag::Nns, Tag::Ex};
    // After more than one word a clause or any noun may follow as well.
    constexpr TagSet clause = {Tag::Wrb, Tag::Cd, Tag::Nn, Tag::Jj};
    for (const Sentence &sentence : analysis.document.sentences()) {
        if (!sentence.english || !sentence.terminated)
            continue;
        const int main = mainClause(analysis, sentence);
        if (main > 0 && analysis.document.gapBefore(main) == u" ")
            edits.replace(analysis.document.word(main - 1).end(), 0, QStringLiteral(","));
        QString phrase;
        for (int i = sentence.first;
             i < sentence.first + longest && i + shortestRest < sentence.end; ++i) {
            if (i > sentence.first && !analysis.joins(i))
                break;
            phrase += (i > sentence.first ? QStringLiteral(" ") : QString()) + analysis.lower(i);
            if (!introductions().contains(phrase))
                continue;
            const Tag next = analysis.tag(i + 1);
            const bool opens = subject.has(next) || (i > sentence.first && clause.has(next)) ||
                               (i > sentence.first && analysis.lower(i + 1) == u"if");
            if (analysis.joins(i + 1) && opens && analysis.lower(i + 1) != u"that" &&
                analysis.document.gapBefore(i + 1) == u" ")
                edits.replace(analysis.document.word(i).end(), 0, QStringLiteral(","));
        }
    }
}

} // namespace offline
