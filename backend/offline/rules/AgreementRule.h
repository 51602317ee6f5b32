// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "backend/offline/rules/LanguageRule.h"

namespace offline
{

/// Verbs that do not agree with the subject right before them: "the teacher
/// oppose it", "the results was".
class AgreementRule : public LanguageRule
{
public:
    void check(const Analysis &analysis, EditList &edits) const override;
};

} // namespace offline
