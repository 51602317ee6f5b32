// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#include "platform/linux/accessibility/ElementFrames.h"

#include "platform/linux/accessibility/AtspiAccessibility.h"
#include "platform/linux/accessibility/Elements.h"
#include "platform/linux/reading/Geometry.h"

namespace platform::linux_
{

namespace
{

/// The part of the element that has to be in sight, at its top right corner; points.
constexpr double cornerSize = 30;

} // namespace

ElementFrames::ElementFrames(AtspiAccessibility &accessibility, ActiveWindow &activeWindow,
                             WindowWatch *windows)
    : m_accessibility(accessibility)
    , m_activeWindow(activeWindow)
    , m_windows(windows)
{
    connect(&m_accessibility.focusTracker(), &FocusTracker::extentsChanged, &m_rest,
            &FrameRest::look);
}

void ElementFrames::watch(const AXUIElement &element,
                          std::function<void(const std::optional<QRectF> &)> moved)
{
    m_element = element;
    const auto *remote = dynamic_cast<const RemoteElement *>(element.data());
    m_window = remote ? remote->window() : 0;
    if (element && m_window == 0) {
        const auto active = m_activeWindow.activeWindow();
        m_window = active ? active->id : 0;
    }
    m_accessibility.focusTracker().watchExtents(remote ? remote->ref() : ObjectRef());
    if (m_windows)
        m_windows->watch(element ? m_window : 0, [this](WindowWatch::Change change) {
            change == WindowWatch::Change::Moved ? m_rest.leave() : m_rest.look();
        });
    if (element)
        m_rest.start([this] { return read(); }, std::move(moved));
    else
        m_rest.stop();
}

FrameRest::Reading ElementFrames::read()
{
    using Kind = FrameRest::Reading::Kind;
    if (m_windows && m_window != 0 && !m_windows->isViewable())
        return {Kind::OutOfSight};
    // Only the place of the active window is known.
    const auto active = m_activeWindow.activeWindow();
    if (m_window != 0 && (!active || active->id != m_window))
        return {Kind::Unknown};
    AXValue value;
    const AXError error =
        m_accessibility.AXUIElementCopyAttributeValue(m_element, QStringLiteral("AXFrame"), value);
    if (error == AXError::CannotComplete)
        return {Kind::Unknown};
    const auto *const frame = std::get_if<QRectF>(&value);
    if (error != AXError::Success || !frame)
        return {Kind::OutOfSight};
    QRectF corner(0, 0, std::min(cornerSize, frame->width()),
                  std::min(cornerSize, frame->height()));
    corner.moveTopRight(frame->topRight());
    if (m_windows && m_windows->isCovered(toPixels(corner, currentScreens())))
        return {Kind::OutOfSight};
    return {Kind::At, *frame};
}

} // namespace platform::linux_
