// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#include "backend/offline/rules/TenseRule.h"

#include <QSet>

namespace offline
{

namespace
{

bool isPastTime(const Analysis &analysis, int index)
{
    static const QSet<QString> spans = {QStringLiteral("week"),    QStringLiteral("month"),
                                        QStringLiteral("year"),    QStringLiteral("night"),
                                        QStringLiteral("weekend"), QStringLiteral("summer")};
    const QString &word = analysis.lower(index);
    return word == u"yesterday" || word == u"ago" ||
           (spans.contains(word) && index > 0 && analysis.joins(index) &&
            analysis.lower(index - 1) == u"last");
}

/// The only finite verb of the sentence, or -1.
int onlyVerb(const Analysis &analysis, const Sentence &sentence)
{
    constexpr TagSet finite = {Tag::Vbd, Tag::Vbz, Tag::Vbp, Tag::Md};
    static const QSet<QString> subjects = {
        QStringLiteral("i"),   QStringLiteral("we"),  QStringLiteral("they"), QStringLiteral("he"),
        QStringLiteral("she"), QStringLiteral("you"), QStringLiteral("it")};
    int verb = -1;
    for (int i = sentence.first; i < sentence.end; ++i) {
        // "He go": the tagger expects another form.
        const bool bare = analysis.tag(i) == Tag::Vb && i > sentence.first && analysis.joins(i) &&
                          subjects.contains(analysis.lower(i - 1));
        if (!bare && !finite.has(analysis.tag(i)))
            continue;
        if (verb >= 0)
            return -1;
        verb = i;
    }
    const bool follows = verb > sentence.first && analysis.joins(verb) &&
                         subjects.contains(analysis.lower(verb - 1));
    return follows ? verb : -1;
}

} // namespace

void TenseRule::check(const Analysis &analysis, EditList &edits) const
{
    for (const Sentence &sentence : analysis.document.sentences()) {
        bool past = false;
        for (int i = sentence.first; i < sentence.end && !past; ++i)
            past = isPastTime(analysis, i);
        const int verb = past && sentence.english ? onlyVerb(analysis, sentence) : -1;
        if (verb < 0 || !analysis.mayChange(verb) || analysis.tag(verb) == Tag::Vbd ||
            analysis.tag(verb) == Tag::Md || analysis.lower(verb).contains(u'\''))
            continue;
        const auto base = analysis.inflections.verbBase(analysis.lower(verb));
        if (!base || *base == u"be" || *base == u"have")
            continue;
        const auto right = analysis.inflections.verbForm(*base, VerbForm::Past);
        if (right && *right != analysis.lower(verb))
            analysis.replaceWord(edits, verb, *right);
    }
}

} // namespace offline
