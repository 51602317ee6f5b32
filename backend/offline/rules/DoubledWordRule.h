// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "backend/offline/rules/Rule.h"

#include <QSet>

namespace offline
{

/// A word written twice ("the the"), for words that are never repeated on
/// purpose; "had had" and "that that" stay.
class DoubledWordRule : public Rule
{
public:
    DoubledWordRule();
    void check(const Document &document, EditList &edits) const override;

private:
    QSet<QString> m_neverRepeated;
};

} // namespace offline
