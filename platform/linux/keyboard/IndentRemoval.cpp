// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#include "platform/linux/keyboard/IndentRemoval.h"

#include <algorithm>

namespace platform::linux_
{

namespace
{

// A busy machine's editor may stand still for seconds. One whose indentation could
// not be deleted before gets less time.
constexpr Milliseconds patience{10000};
constexpr Milliseconds patienceInVain{1000};
constexpr Milliseconds lookPause{4};

// The length of the indentation that follows the last line break; absent when something else does.
std::optional<qsizetype> indentation(const QString &text)
{
    const auto end = std::find_if_not(text.crbegin(), text.crend(),
                                      [](QChar c) { return c.isSpace() && c != u'\n'; });
    if (end == text.crend() || *end != u'\n')
        return std::nullopt;
    return end - text.crbegin();
}

} // namespace

IndentRemoval::IndentRemoval(TypingTarget &target)
    : m_target(target)
{
}

IndentRemoval::Step IndentRemoval::next(std::size_t line, Milliseconds now)
{
    if (line != m_line) {
        m_line = line;
        m_done = false;
        m_left.reset();
        m_since = now;
    }
    if (m_done)
        return Step::Done;
    if (now < m_nextLook)
        return Step::Wait;
    m_nextLook = now + lookPause;
    const std::optional<QString> text = m_target.textBeforeCaret();
    const std::optional<qsizetype> indent = text ? indentation(*text) : std::nullopt;
    if (!indent || (m_left && *indent >= *m_left)) {
        if (now - m_since < (m_inVain ? patienceInVain : patience))
            return Step::Wait;
        m_inVain = m_done = true;
        return Step::Keep;
    }
    if (*indent == 0) {
        m_done = true;
        return Step::Done;
    }
    m_left = indent;
    m_since = now;
    return Step::Delete;
}

} // namespace platform::linux_
