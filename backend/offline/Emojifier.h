// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "backend/offline/text/Document.h"
#include "backend/offline/text/Edit.h"

#include <QHash>
#include <QString>

namespace offline
{

/// Adds an emoji after sentences that speak of what it shows: sparsely, each
/// emoji once, and nothing twice on a second run. Constant after construction;
/// any thread may use it.
class Emojifier
{
public:
    Emojifier();

    void check(const Document &document, EditList &edits) const;

private:
    QString emojiFor(const Document &document, const Sentence &sentence) const;

    QHash<QString, QString> m_emoji; ///< by word
};

} // namespace offline
