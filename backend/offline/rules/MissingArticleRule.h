// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "backend/offline/rules/LanguageRule.h"

namespace offline
{

/// A singular noun that can be counted and has no article, where the language
/// model expects one: "he is teacher".
class MissingArticleRule : public LanguageRule
{
public:
    void check(const Analysis &analysis, EditList &edits) const override;
};

} // namespace offline
