// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#include "backend/offline/words/Inflections.h"

#include "backend/offline/Resources.h"

namespace offline
{

Inflections::Inflections(const Tagger &tagger, const Verbs &verbs, const Lexicon &lexicon)
    : m_tagger(tagger)
    , m_verbs(verbs)
    , m_lexicon(lexicon)
{
    for (const QList<QString> &row : resourceTable(u"nouns.tsv")) {
        if (row.size() > 1) {
            m_plurals.insert(row.at(0), row.at(1));
            m_singulars.insert(row.at(1), row.at(0));
        } else {
            for (const QString &noun : row.at(0).split(u' '))
                m_uncountable.insert(noun);
        }
    }
}

std::optional<QString> Inflections::plural(const QString &noun) const
{
    const auto irregular = m_plurals.constFind(noun);
    if (irregular != m_plurals.constEnd())
        return *irregular;
    if (m_uncountable.contains(noun) || m_singulars.contains(noun) || noun.size() < 2)
        return std::nullopt;
    const QString form = regularPlural(noun);
    return m_lexicon.knows(form) ? std::optional(form) : std::nullopt;
}

std::optional<QString> Inflections::singular(const QString &noun) const
{
    const auto irregular = m_singulars.constFind(noun);
    if (irregular != m_singulars.constEnd())
        return *irregular;
    if (!noun.endsWith(u's') || noun.endsWith(u"ss") || noun.size() < 4)
        return std::nullopt;
    const QString candidates[] = {noun.endsWith(u"ies") ? noun.chopped(3) + u'y' : QString(),
                                  noun.chopped(1),
                                  noun.endsWith(u"es") ? noun.chopped(2) : QString()};
    for (const QString &form : candidates) {
        if (!form.isEmpty() && m_tagger.possible(form).has(Tag::Nn) && regularPlural(form) == noun)
            return form;
    }
    return std::nullopt;
}

bool Inflections::isVerb(const QString &base) const
{
    return m_tagger.possible(base).hasAny({Tag::Vb, Tag::Vbp});
}

std::optional<QString> Inflections::verbBase(const QString &word) const
{
    static constexpr VerbForm forms[] = {VerbForm::Base, VerbForm::Third, VerbForm::Past,
                                         VerbForm::Participle, VerbForm::Gerund};
    for (const VerbForm form : forms) {
        if (auto base = m_verbs.baseOf(word, form))
            return base;
    }
    if (isVerb(word))
        return word;
    QStringList candidates;
    for (const QStringView ending : {u"s", u"es", u"d", u"ed", u"ing"}) {
        if (!word.endsWith(ending) || word.size() < ending.size() + 2)
            continue;
        const QString stem = word.chopped(ending.size());
        candidates.append(stem);
        if (ending == u"ing")
            candidates.append(stem + u'e');
        if ((ending == u"ed" || ending == u"ing") && stem.back() == stem.at(stem.size() - 2))
            candidates.append(stem.chopped(1));
        if ((ending == u"es" || ending == u"ed") && stem.endsWith(u'i'))
            candidates.append(stem.chopped(1) + u'y');
    }
    for (const QString &base : candidates) {
        if (isVerb(base))
            return base;
    }
    return std::nullopt;
}

std::optional<QString> Inflections::verbForm(const QString &base, VerbForm form) const
{
    const QString result = m_verbs.form(base, form);
    if (m_lexicon.knows(result))
        return result;
    // "prefer" doubles its last letter; where the short form is no word, it does.
    const bool inflected =
        form == VerbForm::Past || form == VerbForm::Participle || form == VerbForm::Gerund;
    const QString doubled =
        base + base.back() +
        (form == VerbForm::Gerund ? QStringLiteral("ing") : QStringLiteral("ed"));
    return inflected && m_lexicon.knows(doubled) ? std::optional(doubled) : std::nullopt;
}

} // namespace offline
