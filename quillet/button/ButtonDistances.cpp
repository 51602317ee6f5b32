// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#include "quillet/button/ButtonDistances.h"

#include <algorithm>

void ButtonDistances::keep(const platform::AXUIElement &input, QPoint distance)
{
    std::erase_if(m_distances, [&](const Distance &each) { return each.input == input; });
    m_distances.push_back({input, distance});
    if (m_distances.size() > maxCount)
        m_distances.pop_front();
}

QPoint ButtonDistances::of(const platform::AXUIElement &input) const
{
    const auto found = std::find_if(m_distances.begin(), m_distances.end(),
                                    [&](const Distance &each) { return each.input == input; });
    return found == m_distances.end() ? QPoint() : found->distance;
}
