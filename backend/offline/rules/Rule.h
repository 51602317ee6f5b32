// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "backend/offline/text/Document.h"
#include "backend/offline/text/Edit.h"

namespace offline
{

/// Finds one kind of fault and proposes its correction. Rules are constant
/// after construction; any thread may use them.
class Rule
{
public:
    Rule() = default;
    Rule(const Rule &) = delete;
    Rule &operator=(const Rule &) = delete;
    virtual ~Rule() = default;

    virtual void check(const Document &document, EditList &edits) const = 0;
};

} // namespace offline
