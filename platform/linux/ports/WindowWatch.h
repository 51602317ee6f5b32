// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <QRect>

#include <cstdint>
#include <functional>

namespace platform::linux_
{

/// Notices when one window moves, without asking again and again. Main thread only.
class WindowWatch
{
public:
    enum class Change : std::uint8_t {
        /// The window has moved, changed its size or left the screen.
        Moved,
        /// What is in the window, or lies over it, may have moved: the user has scrolled or
        /// clicked, another window has moved or become active.
        Perhaps,
    };

    virtual ~WindowWatch() = default;

    /// Watches `window` in place of any other; 0 ends it. `changed` is called from the event loop.
    virtual void watch(std::uint32_t window, std::function<void(Change)> changed) = 0;
    /// Whether the watched window is on the screen.
    virtual bool isViewable() = 0;
    /// Whether another application's window lies over a part of `place`, in pixels of the screen,
    /// that the watched window would show.
    virtual bool isCovered(const QRect &place) = 0;
};

} // namespace platform::linux_
