// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "backend/offline/language/Tagger.h"
#include "backend/offline/words/Lexicon.h"
#include "backend/offline/words/Verbs.h"

#include <QHash>
#include <QSet>

#include <optional>

namespace offline
{

/// The forms of English nouns and verbs, irregular ones among them. Only forms
/// that a dictionary has are given. Constant; any thread may use it.
class Inflections
{
public:
    /// The arguments must outlive it.
    Inflections(const Tagger &tagger, const Verbs &verbs, const Lexicon &lexicon);

    /// The plural of a singular noun that can be counted.
    std::optional<QString> plural(const QString &noun) const;
    /// The singular of a plural noun.
    std::optional<QString> singular(const QString &noun) const;
    /// Whether a noun has no plural in common use ("information").
    bool isUncountable(const QString &noun) const { return m_uncountable.contains(noun); }

    /// The base of a verb in any form.
    std::optional<QString> verbBase(const QString &word) const;
    std::optional<QString> verbForm(const QString &base, VerbForm form) const;

    TagSet possible(const QString &lower) const { return m_tagger.possible(lower); }

private:
    bool isVerb(const QString &base) const;

    const Tagger &m_tagger;
    const Verbs &m_verbs;
    const Lexicon &m_lexicon;
    QHash<QString, QString> m_plurals;   ///< irregular, by singular
    QHash<QString, QString> m_singulars; ///< the same, by plural
    QSet<QString> m_uncountable;
};

} // namespace offline
