// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "backend/offline/rules/LanguageRule.h"

namespace offline
{

/// Verb forms after auxiliaries, "to" and prepositions: "can goes", "to went",
/// "have went", "by use it".
class VerbFormRule : public LanguageRule
{
public:
    void check(const Analysis &analysis, EditList &edits) const override;
};

} // namespace offline
