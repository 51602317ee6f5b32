// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#include "backend/offline/rules/VerbFormRule.h"

#include <QSet>

namespace offline
{

namespace
{

struct Wanted {
    bool any = false;
    QList<VerbForm> forms;
};

/// Words that an infinitive follows. After others "to" may belong to a relative
/// clause: "the person I spoke to came".
bool takesInfinitive(const QString &word)
{
    static const QSet<QString> words = [] {
        const QStringList list =
            QStringLiteral(
                "want wants wanted need needs needed try tries tried trying like likes love loves "
                "hope hopes hoped decide decides decided plan plans planned have has had begin "
                "begins began start starts started able going used learn learned forget forgot "
                "remember remembered refuse refused agree agreed allow allowed help way ways time "
                "chance opportunity ability easy hard difficult important possible impossible "
                "necessary how what where better best willing ready happy glad sorry not order "
                "expect expected prefer prefers choose chose me him them us people students "
                "children you it enough things money reason reasons right place")
                .split(u' ');
        return QSet<QString>(list.begin(), list.end());
    }();
    return words.contains(word);
}

/// The forms that may follow the word at `index`.
Wanted formsAfter(const Analysis &analysis, int index)
{
    static const QSet<QString> doing = {QStringLiteral("do"),      QStringLiteral("does"),
                                        QStringLiteral("did"),     QStringLiteral("don't"),
                                        QStringLiteral("doesn't"), QStringLiteral("didn't")};
    static const QSet<QString> having = {QStringLiteral("have"),    QStringLiteral("has"),
                                         QStringLiteral("had"),     QStringLiteral("i've"),
                                         QStringLiteral("we've"),   QStringLiteral("they've"),
                                         QStringLiteral("you've"),  QStringLiteral("hasn't"),
                                         QStringLiteral("haven't"), QStringLiteral("hadn't")};
    static const QSet<QString> being = {
        QStringLiteral("is"),     QStringLiteral("are"),     QStringLiteral("was"),
        QStringLiteral("were"),   QStringLiteral("am"),      QStringLiteral("be"),
        QStringLiteral("been"),   QStringLiteral("i'm"),     QStringLiteral("you're"),
        QStringLiteral("we're"),  QStringLiteral("they're"), QStringLiteral("isn't"),
        QStringLiteral("aren't"), QStringLiteral("wasn't"),  QStringLiteral("weren't")};
    static const QSet<QString> prepositions = {
        QStringLiteral("by"),      QStringLiteral("of"),    QStringLiteral("for"),
        QStringLiteral("without"), QStringLiteral("after"), QStringLiteral("before"),
        QStringLiteral("about"),   QStringLiteral("in"),    QStringLiteral("from"),
        QStringLiteral("at"),      QStringLiteral("on"),    QStringLiteral("with")};
    const QString &word = analysis.lower(index);
    // "I'd spotted it": "had" or "would".
    if (word.endsWith(u"'d"))
        return {};
    if (analysis.tag(index) == Tag::Md || doing.contains(word))
        return {true, {VerbForm::Base}};
    if (analysis.tag(index) == Tag::To && index > 0 && analysis.joins(index) &&
        takesInfinitive(analysis.lower(index - 1)))
        return {true, {VerbForm::Base}};
    if (having.contains(word))
        return {true, {VerbForm::Participle}};
    if (being.contains(word))
        return {true, {VerbForm::Gerund, VerbForm::Participle}};
    if (prepositions.contains(word))
        return {true, {VerbForm::Gerund}};
    return {};
}

} // namespace

void VerbFormRule::check(const Analysis &analysis, EditList &edits) const
{
    constexpr double needed = 0.0;
    constexpr double neededGerund = 1.5;
    constexpr TagSet verbs = {Tag::Vb, Tag::Vbp, Tag::Vbd, Tag::Vbz, Tag::Vbn, Tag::Vbg};
    constexpr TagSet others = {Tag::Nn, Tag::Nns, Tag::Jj, Tag::Rb, Tag::In, Tag::Dt, Tag::Prp};
    for (int i = 1; i < int(analysis.tags.size()); ++i) {
        if (!analysis.mayChange(i) || !analysis.joins(i))
            continue;
        int before = i - 1;
        if ((analysis.tag(before) == Tag::Rb || analysis.lower(before) == u"not") &&
            analysis.joins(before))
            --before;
        const Wanted wanted = formsAfter(analysis, before);
        if (!wanted.any)
            continue;
        const QString &word = analysis.lower(i);
        const TagSet possible = analysis.inflections.possible(word);
        if (!verbs.has(analysis.tag(i)) && !possible.hasAny(verbs))
            continue;
        // What may as well be a noun or an adjective is left to where the tagger is sure.
        if (possible.hasAny(others) && !verbs.has(analysis.tag(i)))
            continue;
        // "prior to ordering": "to" is a preposition there.
        if (analysis.tag(before) == Tag::To && (word.endsWith(u"ing")))
            continue;
        const auto base = analysis.inflections.verbBase(word);
        if (!base || word.contains(u'\'') || *base == u"be")
            continue;
        // "in developed countries", "to look out for include": only a base form that
        // goes on as a verb does stands for the gerund.
        constexpr TagSet object = {Tag::Dt, Tag::Prp};
        if (wanted.forms == QList<VerbForm>{VerbForm::Gerund} &&
            (*base != word || !analysis.joins(i + 1) || !object.has(analysis.tag(i + 1)) ||
             (analysis.tag(i) != Tag::Vb && analysis.tag(i) != Tag::Vbp)))
            continue;
        double best = wanted.forms.front() == VerbForm::Base ? needed : neededGerund;
        QString right;
        bool fits = false;
        for (const VerbForm form : wanted.forms) {
            const auto candidate = analysis.inflections.verbForm(*base, form);
            if (!candidate)
                continue;
            if (*candidate == word)
                fits = true;
            const double gain = analysis.context.gain(i, 1, {*candidate});
            if (gain > best) {
                best = gain;
                right = *candidate;
            }
        }
        if (!fits && !right.isEmpty())
            analysis.replaceWord(edits, i, right);
    }
}

} // namespace offline
