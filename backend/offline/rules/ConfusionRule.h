// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "backend/offline/rules/LanguageRule.h"

#include <QHash>
#include <QStringList>

namespace offline
{

/// Words taken for others that sound or look alike, by context: the sets stand in
/// data/confusions.tsv.
class ConfusionRule : public LanguageRule
{
public:
    ConfusionRule();
    void check(const Analysis &analysis, EditList &edits) const override;

private:
    struct Other {
        QStringList words;
        double needed;
    };
    QHash<QString, QList<Other>> m_others; ///< by word
};

} // namespace offline
