// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "backend/offline/rules/LanguageRule.h"

namespace offline
{

/// The comma after a word or phrase that introduces a sentence: "However we
/// stayed."
class IntroductionRule : public LanguageRule
{
public:
    void check(const Analysis &analysis, EditList &edits) const override;
};

} // namespace offline
