// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#include "backend/offline/rules/ConfusionRule.h"

#include "backend/offline/Resources.h"

#include <QSet>

namespace offline
{

namespace
{

/// "you're invoice is": a noun with its verb follows, so it belongs to somebody.
bool isPossessive(const Analysis &analysis, int index)
{
    const QString &word = analysis.lower(index);
    if ((word != u"you're" && word != u"they're") || !analysis.joins(index + 1))
        return false;
    constexpr TagSet nouns = {Tag::Nn, Tag::Nns};
    constexpr TagSet others = {Tag::Jj, Tag::Vbg, Tag::Vbn, Tag::Rb, Tag::In, Tag::Dt, Tag::Prp};
    constexpr TagSet finite = {Tag::Vbz, Tag::Vbd, Tag::Vbp, Tag::Md};
    // "send me you're invoice", "about you're order": no clause follows these.
    static const QSet<QString> governing = {
        QStringLiteral("me"),   QStringLiteral("us"),    QStringLiteral("him"),
        QStringLiteral("them"), QStringLiteral("about"), QStringLiteral("of"),
        QStringLiteral("in"),   QStringLiteral("on"),    QStringLiteral("with"),
        QStringLiteral("for"),  QStringLiteral("from"),  QStringLiteral("at"),
        QStringLiteral("by"),   QStringLiteral("to"),    QStringLiteral("into")};
    // "Tell them you're late": a clause does follow.
    static const QSet<QString> telling = {QStringLiteral("tell"),   QStringLiteral("tells"),
                                          QStringLiteral("told"),   QStringLiteral("show"),
                                          QStringLiteral("showed"), QStringLiteral("assure"),
                                          QStringLiteral("remind"), QStringLiteral("promise")};
    const bool governed = analysis.joins(index) && governing.contains(analysis.lower(index - 1)) &&
                          (index < 2 || !telling.contains(analysis.lower(index - 2)));
    const TagSet possible = analysis.inflections.possible(analysis.lower(index + 1));
    if (possible.hasAny(others))
        return false;
    if (governed && (possible.has(Tag::Nn) || possible.isEmpty()))
        return true;
    return nouns.has(analysis.tag(index + 1)) && analysis.joins(index + 2) &&
           finite.has(analysis.tag(index + 2));
}

constexpr double clearlyPossessive = -2.0;

} // namespace

ConfusionRule::ConfusionRule()
{
    for (const QList<QString> &row : resourceTable(u"confusions.tsv")) {
        const QStringList words = row.at(0).split(u' ');
        for (const QString &word : words) {
            for (const QString &other : words) {
                if (other != word)
                    m_others[word].append({other.split(u'_'), row.at(1).toDouble()});
            }
        }
    }
}

void ConfusionRule::check(const Analysis &analysis, EditList &edits) const
{
    for (int i = 0; i < int(analysis.tags.size()); ++i) {
        const auto others = m_others.constFind(analysis.lower(i));
        if (others == m_others.constEnd() || !analysis.mayChange(i))
            continue;
        double best = 0;
        const Other *chosen = nullptr;
        for (const Other &other : *others) {
            const bool possessive = !other.words.first().contains(u'\'') &&
                                    other.words.first() != u"there" && isPossessive(analysis, i);
            const double needed = possessive ? clearlyPossessive : other.needed;
            const double gain = analysis.context.gain(i, 1, other.words) - needed;
            if (gain > best) {
                best = gain;
                chosen = &other;
            }
        }
        if (chosen)
            analysis.replaceWord(edits, i, chosen->words.join(u' '));
    }
}

} // namespace offline
