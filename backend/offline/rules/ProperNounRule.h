// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "backend/offline/rules/LanguageRule.h"

#include <QHash>

namespace offline
{

/// Capitals of names (languages, peoples, places, companies) and of initials:
/// data/proper-nouns.tsv has those that mean nothing else in lower case.
class ProperNounRule : public LanguageRule
{
public:
    ProperNounRule();
    void check(const Analysis &analysis, EditList &edits) const override;

private:
    QHash<QString, QString> m_names; ///< as written, by their lower case
};

} // namespace offline
