// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#include "backend/offline/rules/NounNumberRule.h"

#include <QSet>

#include <algorithm>

namespace offline
{

namespace
{

/// The place of the noun that ends the phrase after `index`, or -1.
int headAfter(const Analysis &analysis, int index)
{
    int at = index + 1;
    while (analysis.joins(at) && !analysis.document.word(at).hyphenated &&
           (analysis.tag(at) == Tag::Jj || analysis.tag(at) == Tag::Jjs ||
            analysis.tag(at) == Tag::Jjr || analysis.tag(at) == Tag::Rb))
        ++at;
    if (!analysis.joins(at) || (analysis.tag(at) != Tag::Nn && analysis.tag(at) != Tag::Nns))
        return -1;
    // "several reason codes": the last noun is the head.
    if (analysis.joins(at + 1)) {
        constexpr TagSet more = {Tag::Nn,  Tag::Nns, Tag::Nnp,  Tag::Jj, Tag::Vbg,
                                 Tag::Pos, Tag::Cd,  Tag::Nnps, Tag::Cc};
        if (more.has(analysis.tag(at + 1)) ||
            analysis.inflections.possible(analysis.lower(at + 1)).hasAny({Tag::Nn, Tag::Nns}))
            return -1;
    }
    // "These mean that": a verb. "the two price 'tipping points'": more follows.
    if (at == index + 1 && analysis.joins(at + 1) &&
        analysis.inflections.possible(analysis.lower(at)).hasAny({Tag::Vb, Tag::Vbp}) &&
        TagSet{Tag::Prp, Tag::Dt, Tag::In, Tag::Vbp, Tag::Vbz, Tag::Md}.has(analysis.tag(at + 1)))
        return -1;
    const QStringView after = analysis.document.gapBefore(at + 1);
    const bool quoteFollows = after.size() > 1 && after.front().isSpace();
    return analysis.document.word(at).hyphenated || quoteFollows ? -1 : at;
}

/// A number of things, in digits and above one: "the next 10 year". Not the
/// number that a thing has ("page 10", "top 10", "the 911 operator").
bool isCount(const Analysis &analysis, int index)
{
    constexpr TagSet numbered = {Tag::Nn, Tag::Nnp, Tag::Nns, Tag::Nnps, Tag::Cd, Tag::Dt};
    constexpr qsizetype longest = 3;
    const Word &word = analysis.document.word(index);
    const QStringView spelt = QStringView(analysis.document.text()).mid(word.start, word.length);
    const bool digits =
        std::all_of(spelt.begin(), spelt.end(), [](QChar c) { return c >= u'0' && c <= u'9'; });
    if (!digits || spelt.isEmpty() || spelt.size() > longest || spelt.front() == u'0' ||
        spelt == u"1" || word.hyphenated || !analysis.document.isEnglish(word))
        return false;
    if (index > 0 && word.joined &&
        (numbered.has(analysis.tag(index - 1)) || analysis.lower(index - 1) == u"top"))
        return false;
    const QStringView gap = analysis.document.gapBefore(index);
    const QStringView next = analysis.document.gapBefore(index + 1);
    return next == u" " && (gap.isEmpty() || gap.back().isSpace());
}

/// Measures that keep their singular after a number.
bool keepsSingular(const QString &noun)
{
    static const QSet<QString> words = {
        QStringLiteral("percent"),  QStringLiteral("million"), QStringLiteral("billion"),
        QStringLiteral("thousand"), QStringLiteral("hundred"), QStringLiteral("dozen"),
        QStringLiteral("foot"),     QStringLiteral("stone"),   QStringLiteral("euro"),
        QStringLiteral("min"),      QStringLiteral("hp"),      QStringLiteral("plus"),
        QStringLiteral("noon"),     QStringLiteral("x"),       QStringLiteral("trillion")};
    return words.contains(noun) || noun.size() < 3;
}

} // namespace

void NounNumberRule::check(const Analysis &analysis, EditList &edits) const
{
    constexpr double needed = -0.5;
    constexpr double neededSingular = 0.0;
    static const QSet<QString> pluralBefore = [] {
        const QStringList words =
            QStringLiteral("these those many several few various both two three four five six "
                           "seven eight nine ten eleven twelve twenty thirty hundreds thousands "
                           "numerous multiple")
                .split(u' ');
        return QSet<QString>(words.begin(), words.end());
    }();
    static const QSet<QString> singularBefore = {
        QStringLiteral("a"),    QStringLiteral("an"),      QStringLiteral("each"),
        QStringLiteral("this"), QStringLiteral("another"), QStringLiteral("every")};
    static const QSet<QString> quantities = {QStringLiteral("few"),     QStringLiteral("lot"),
                                             QStringLiteral("couple"),  QStringLiteral("hundred"),
                                             QStringLiteral("dozen"),   QStringLiteral("thousand"),
                                             QStringLiteral("million"), QStringLiteral("great"),
                                             QStringLiteral("good"),    QStringLiteral("other")};
    for (int i = 0; i + 1 < int(analysis.tags.size()); ++i) {
        const QString &determiner = analysis.lower(i);
        const bool oneOf =
            i > 1 && analysis.lower(i - 2) == u"one" && analysis.lower(i - 1) == u"of" &&
            analysis.joins(i) && analysis.joins(i - 1) &&
            (determiner == u"the" || determiner == u"my" || determiner == u"our" ||
             determiner == u"his" || determiner == u"her" || determiner == u"their" ||
             determiner == u"these" || determiner == u"your");
        const bool lotOf = i > 0 && determiner == u"of" && analysis.joins(i) &&
                           (analysis.lower(i - 1) == u"lot" || analysis.lower(i - 1) == u"lots");
        const bool count = isCount(analysis, i);
        const bool plural = pluralBefore.contains(determiner) || oneOf || lotOf || count;
        if (!plural && !singularBefore.contains(determiner))
            continue;
        const int head = headAfter(analysis, i);
        if (head < 0 || !analysis.mayChange(head) ||
            (head > i + 1 && quantities.contains(analysis.lower(i + 1))))
            continue;
        const QString &noun = analysis.lower(head);
        if (count && (head != i + 1 || keepsSingular(noun)))
            continue;
        if (plural && analysis.tag(head) == Tag::Nn) {
            const auto right = analysis.inflections.plural(noun);
            if (right && *right != noun && analysis.context.gain(head, 1, {*right}) >= needed)
                analysis.replaceWord(edits, head, *right);
        } else if (!plural && analysis.tag(head) == Tag::Nns) {
            const auto right = analysis.inflections.singular(noun);
            if (right && *right != noun && !analysis.inflections.isUncountable(*right) &&
                analysis.context.gain(head, 1, {*right}) >= neededSingular)
                analysis.replaceWord(edits, head, *right);
        }
    }
}

} // namespace offline
