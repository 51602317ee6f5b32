// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "backend/offline/rules/LanguageRule.h"

#include <QHash>
#include <QSet>
#include <QStringList>

namespace offline
{

/// Hyphens of compounds: "a 30 minute walk", "a well known fact", "non profit",
/// and words written apart: "web site". data/compounds.tsv has them.
class HyphenRule : public LanguageRule
{
public:
    HyphenRule();
    void check(const Analysis &analysis, EditList &edits) const override;

private:
    bool measures(const Analysis &analysis, int index) const;
    bool describes(const Analysis &analysis, int index) const;
    bool isBeforeNoun(const Analysis &analysis, int index) const;

    QSet<QString> m_prefixes;
    QSet<QString> m_units;
    QSet<QString> m_suffixes;
    QHash<QString, QList<QStringList>> m_modifiers; ///< by their first word
    QHash<QString, QList<QStringList>> m_always;
    QHash<QString, QSet<QString>> m_joined; ///< second words, by first word
};

} // namespace offline
