// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "backend/offline/rules/LanguageRule.h"

namespace offline
{

/// Nouns whose number the words before them decide: "several reason", "one of
/// the reason", "an experts".
class NounNumberRule : public LanguageRule
{
public:
    void check(const Analysis &analysis, EditList &edits) const override;
};

} // namespace offline
