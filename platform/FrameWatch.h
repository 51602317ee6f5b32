// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "platform/Accessibility.h"

#include <QRectF>

#include <functional>
#include <optional>

namespace platform
{

/// Follows the place of one element on the screen. Main thread only.
class FrameWatch
{
public:
    virtual ~FrameWatch() = default;

    /// Watches `element` in place of any other; an empty handle ends it. `moved` is called from the
    /// event loop: soon after the beginning and whenever the element has come to rest elsewhere,
    /// with its "AXFrame" (accessibility coordinates); with nothing as soon as it moves, and while
    /// its top right corner is scrolled away, covered by another window or minimised.
    virtual void watch(const AXUIElement &element,
                       std::function<void(const std::optional<QRectF> &frame)> moved) = 0;
};

} // namespace platform
