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
                "view|similarly|likewise|also|second|third|yes|thus|actually|finally|typically|"
                "obviously|"
                "apparently|surprisingly|sadly|interestingly|ultimately|basically|"
                "eventually|meanwhile|besides|naturally|regrettably|honestly|evidently|"
                "in general|in particular|in some cases|in today's world|in the meantime|for this "
                "reason|"
                "for that reason|for these reasons|after all|even so|in any case|in theory|"
                "in practice|in reality|at the same time|to be honest|in the first place")
                .split(u'|');
        return QSet<QString>(phrases.begin(), phrases.end());
    }();
    return result;
}

/// Adverbs that can only speak of the whole sentence: any clause may follow.
const QSet<QString> &sentenceAdverbs()
{
    static const QSet<QString> result = {
        QStringLiteral("moreover"),     QStringLiteral("furthermore"),
        QStringLiteral("nevertheless"), QStringLiteral("nonetheless"),
        QStringLiteral("consequently"), QStringLiteral("additionally")};
    return result;
}

bool isSubjectPronoun(const QString &lower)
{
    static const QSet<QString> subjects = {QStringLiteral("i"), QStringLiteral("we"),
                                           QStringLiteral("they"), QStringLiteral("he"),
                                           QStringLiteral("she")};
    return subjects.contains(lower);
}

constexpr TagSet finite = {Tag::Vbd, Tag::Vbz, Tag::Vbp, Tag::Md};

/// The place in "When I came home we ate" or "After lunch in the park we left"
/// where the main clause begins, or -1. Every sentence has a main clause; where
/// it has only so many verbs, the last pronoun before one begins it.
int mainClause(const Analysis &analysis, const Sentence &sentence)
{
    static const QSet<QString> clauses = {
        QStringLiteral("if"),       QStringLiteral("when"),    QStringLiteral("although"),
        QStringLiteral("unless"),   QStringLiteral("because"), QStringLiteral("though"),
        QStringLiteral("whenever"), QStringLiteral("while"),   QStringLiteral("as"),
        QStringLiteral("once"),     QStringLiteral("since")};
    static const QSet<QString> phrases = {QStringLiteral("after"),   QStringLiteral("before"),
                                          QStringLiteral("by"),      QStringLiteral("during"),
                                          QStringLiteral("despite"), QStringLiteral("without"),
                                          QStringLiteral("to"),      QStringLiteral("with")};
    static const QSet<QString> relatives = {
        QStringLiteral("that"),     QStringLiteral("which"),    QStringLiteral("who"),
        QStringLiteral("what"),     QStringLiteral("where"),    QStringLiteral("how"),
        QStringLiteral("why"),      QStringLiteral("whom"),     QStringLiteral("whose"),
        QStringLiteral("whatever"), QStringLiteral("wherever"), QStringLiteral("than")};
    constexpr TagSet ending = {Tag::Nn, Tag::Nns, Tag::Nnp, Tag::Prp,
                               Tag::Rb, Tag::Cd,  Tag::Jj,  Tag::Vbn};
    constexpr int shortestPhrase = 3;
    const QString &opener = analysis.lower(sentence.first);
    const bool clause = clauses.contains(opener);
    if (!clause && !phrases.contains(opener))
        return -1;
    int verbs = 0;
    for (int i = sentence.first; i < sentence.end; ++i)
        verbs += finite.has(analysis.tag(i)) ? 1 : 0;
    if (verbs != (clause ? 2 : 1))
        return -1;
    int before = 0;
    for (int i = sentence.first + 1; i + 1 < sentence.end; ++i) {
        if (!analysis.joins(i) || relatives.contains(analysis.lower(i)))
            return -1;
        const bool complete = clause ? before == 1 : i - sentence.first >= shortestPhrase;
        const QString &word = analysis.lower(i);
        const bool subject =
            isSubjectPronoun(word) || (word == u"there" && analysis.tag(i + 1) == Tag::Vbz);
        if (complete && subject && analysis.joins(i + 1) && finite.has(analysis.tag(i + 1)) &&
            ending.has(analysis.tag(i - 1)))
            return i;
        before += finite.has(analysis.tag(i)) ? 1 : 0;
    }
    return -1;
}

/// The place of a "however" or "therefore" between two clauses, or -1: "it is
/// late, however we stay".
int splice(const Analysis &analysis, const Sentence &sentence)
{
    constexpr TagSet subject = {Tag::Dt, Tag::Prp, Tag::Ex, Tag::Nnp, Tag::Nns, Tag::Nn, Tag::Jj};
    bool verb = false;
    for (int i = sentence.first + 1; i + 2 < sentence.end; ++i) {
        verb = verb || finite.has(analysis.tag(i - 1));
        if ((analysis.lower(i) != u"however" && analysis.lower(i) != u"therefore") ||
            analysis.document.gapBefore(i) != u", ")
            continue;
        // "He is, however, the best": only a pronoun begins a clause after a comma.
        const bool pronoun =
            isSubjectPronoun(analysis.lower(i + 1)) || analysis.lower(i + 1) == u"it";
        const bool comma = analysis.document.gapBefore(i + 1) == u", ";
        bool goesOn = finite.has(analysis.tag(i + 2));
        for (int k = i + 2; k < sentence.end && !comma; ++k)
            goesOn = goesOn || finite.has(analysis.tag(k));
        const bool opens =
            comma ? pronoun : analysis.joins(i + 1) && subject.has(analysis.tag(i + 1));
        return verb && opens && goesOn ? i : -1;
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
    constexpr TagSet clause = {Tag::Wrb, Tag::Cd, Tag::Nn, Tag::Jj, Tag::Vbg};
    for (const Sentence &sentence : analysis.document.sentences()) {
        if (!sentence.english || !sentence.terminated)
            continue;
        const int main = mainClause(analysis, sentence);
        if (main > 0 && analysis.document.gapBefore(main) == u" ")
            edits.replace(analysis.document.word(main - 1).end(), 0, QStringLiteral(","));
        const int linking = splice(analysis, sentence);
        if (linking > 0) {
            const Word &word = analysis.document.word(linking);
            edits.replace(word.start - 2, 1, QStringLiteral(";"));
            if (analysis.joins(linking + 1))
                edits.replace(word.end(), 0, QStringLiteral(","));
        }
        bool hasVerb = false;
        for (int i = sentence.first; i < sentence.end; ++i)
            hasVerb = hasVerb || finite.has(analysis.tag(i));
        if (!hasVerb)
            continue;
        QString phrase;
        for (int i = sentence.first;
             i < sentence.first + longest && i + shortestRest < sentence.end; ++i) {
            if (i > sentence.first && !analysis.joins(i))
                break;
            phrase += (i > sentence.first ? QStringLiteral(" ") : QString()) + analysis.lower(i);
            if (!introductions().contains(phrase))
                continue;
            const Tag next = analysis.tag(i + 1);
            const bool any = i > sentence.first || sentenceAdverbs().contains(phrase);
            const bool opens = subject.has(next) || (any && clause.has(next)) ||
                               (i > sentence.first && analysis.lower(i + 1) == u"if");
            if (analysis.joins(i + 1) && opens && analysis.lower(i + 1) != u"that" &&
                analysis.document.gapBefore(i + 1) == u" ")
                edits.replace(analysis.document.word(i).end(), 0, QStringLiteral(","));
        }
    }
}

} // namespace offline
