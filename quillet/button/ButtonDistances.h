// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "platform/Accessibility.h"

#include <QPoint>

#include <deque>

/// How far the user has dragged the button from the corner of each input, for the inputs of late.
/// Main thread.
class ButtonDistances
{
public:
    static constexpr std::size_t maxCount = 50;

    void keep(const platform::AXUIElement &input, QPoint distance);
    /// Zero where the user has not moved it.
    QPoint of(const platform::AXUIElement &input) const;

private:
    struct Distance {
        platform::AXUIElement input;
        QPoint distance;
    };
    std::deque<Distance> m_distances;
};
