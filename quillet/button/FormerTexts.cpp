// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#include "quillet/button/FormerTexts.h"

#include <algorithm>

using std::chrono::steady_clock;

FormerTexts::FormerTexts(std::chrono::milliseconds age)
    : m_maxAge(age)
{
    m_drop.setSingleShot(true);
    m_drop.callOnTimeout([this] { dropOld(); });
}

void FormerTexts::remember(const platform::AXUIElement &input, const QString &text)
{
    m_texts.push_back({input, text, steady_clock::now() + m_maxAge});
    if (m_texts.size() > maxCount)
        m_texts.pop_front();
    if (!m_drop.isActive())
        m_drop.start(m_maxAge);
}

std::optional<QString> FormerTexts::of(const platform::AXUIElement &input) const
{
    const auto found = std::find_if(m_texts.rbegin(), m_texts.rend(),
                                    [&](const Former &former) { return former.input == input; });
    return found == m_texts.rend() ? std::nullopt : std::optional(found->text);
}

void FormerTexts::forgetLast(const platform::AXUIElement &input)
{
    const auto found = std::find_if(m_texts.rbegin(), m_texts.rend(),
                                    [&](const Former &former) { return former.input == input; });
    if (found != m_texts.rend())
        m_texts.erase(std::prev(found.base()));
}

void FormerTexts::dropOld()
{
    const auto now = steady_clock::now();
    while (!m_texts.empty() && m_texts.front().until <= now)
        m_texts.pop_front();
    if (!m_texts.empty())
        m_drop.start(std::chrono::ceil<std::chrono::milliseconds>(m_texts.front().until - now));
}
