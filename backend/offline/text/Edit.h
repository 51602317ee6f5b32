// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <QString>

#include <functional>
#include <map>
#include <optional>

namespace offline
{

/// Collects what the rules want changed in one text, and is the one place that
/// changes it. Rules are asked in order of precedence: where two edits overlap
/// or start at the same position, the one added first holds. One thread at a
/// time.
class EditList
{
public:
    /// Replace `length` UTF-16 units from `start` on.
    void replace(qsizetype start, qsizetype length, const QString &replacement);

    /// What an edit is to write instead: nothing to drop it.
    using Review = std::function<std::optional<QString>(qsizetype start, qsizetype end,
                                                        const QString &replacement)>;
    void review(const Review &review);

    bool isEmpty() const { return m_edits.empty(); }

    /// The text with the edits made; `text` itself when there is none.
    QString applied(const QString &text) const;

private:
    struct Edit {
        qsizetype end;
        QString replacement;
    };
    std::map<qsizetype, Edit> m_edits; // by start, never overlapping
};

} // namespace offline
