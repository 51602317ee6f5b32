// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "backend/offline/rules/LanguageRule.h"

#include <QSet>

namespace offline
{

/// Capitals of the names of languages, peoples and places: data/proper-nouns.tsv
/// has those that mean nothing else in lower case.
class ProperNounRule : public LanguageRule
{
public:
    ProperNounRule();
    void check(const Analysis &analysis, EditList &edits) const override;

private:
    QSet<QString> m_names;
};

} // namespace offline
