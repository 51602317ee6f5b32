// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "platform/FrameWatch.h"
#include "platform/linux/focus/FrameRest.h"
#include "platform/linux/ports/WindowWatch.h"

namespace platform::linux_
{

class ActiveWindow;
class AtspiAccessibility;

/// Follows an element by what the window system notices of its window, and by the element's own
/// extents, which are asked for together with its states. Main thread only.
class ElementFrames : public QObject, public FrameWatch
{
    Q_OBJECT
public:
    /// All must outlive this object. `windows` is null where the window system notices nothing.
    ElementFrames(AtspiAccessibility &accessibility, ActiveWindow &activeWindow,
                  WindowWatch *windows);

    void watch(const AXUIElement &element,
               std::function<void(const std::optional<QRectF> &)> moved) override;

private:
    FrameRest::Reading read();

    AtspiAccessibility &m_accessibility;
    ActiveWindow &m_activeWindow;
    WindowWatch *const m_windows;
    FrameRest m_rest;
    AXUIElement m_element;
    /// The window that the element is in; 0 where it is unknown.
    std::uint32_t m_window = 0;
};

} // namespace platform::linux_
