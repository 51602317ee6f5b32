// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#include "backend/offline/text/Edit.h"

#include <iterator>

namespace offline
{

void EditList::replace(qsizetype start, qsizetype length, const QString &replacement)
{
    const auto next = m_edits.lower_bound(start);
    if (next != m_edits.end() && (next->first < start + length || next->first == start))
        return;
    if (next != m_edits.begin() && std::prev(next)->second.end > start)
        return;
    m_edits.emplace_hint(next, start, Edit{start + length, replacement});
}

void EditList::review(const Review &review)
{
    for (auto edit = m_edits.begin(); edit != m_edits.end();) {
        const auto replacement = review(edit->first, edit->second.end, edit->second.replacement);
        if (replacement)
            edit->second.replacement = *replacement;
        edit = replacement ? std::next(edit) : m_edits.erase(edit);
    }
}

QString EditList::applied(const QString &text) const
{
    if (m_edits.empty())
        return text;
    // Straight apostrophes become curly where the text writes only curly ones.
    const bool curly = text.contains(u'\u2019') && !text.contains(u'\'');
    QString result;
    result.reserve(text.size() + 64);
    qsizetype done = 0;
    for (const auto &[start, edit] : m_edits) {
        result += QStringView(text).mid(done, start - done);
        QString replacement = edit.replacement;
        result += curly ? replacement.replace(u'\'', u'\u2019') : replacement;
        done = edit.end;
    }
    result += QStringView(text).mid(done);
    return result;
}

} // namespace offline
