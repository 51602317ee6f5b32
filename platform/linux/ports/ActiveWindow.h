// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <QList>
#include <QRect>

#include <cstdint>
#include <optional>

namespace platform::linux_
{

/// Where a window lies, and what its program counts from when it reports the place of an element.
struct WindowPlace {
    /// The window's contents, without a shadow or frame that the program or the desktop draws.
    QRect contents;
    /// All that the program draws, with its shadow; the same as `contents` where that is unknown.
    QRect surface;
    /// The program does not know where on the screen its window is: it counts from the window.
    bool countsFromWindow = false;
    /// The numbers are points, not device pixels.
    bool inPoints = false;
};

/// Which window has the keyboard, as the window system sees it: what an application says of itself
/// is not enough to believe it. Main thread only; no call waits for another application.
class ActiveWindow
{
public:
    struct Window {
        std::uint32_t id = 0;
        /// The process that it belongs to, as the window system knows it, not as the window says;
        /// empty where it does not know.
        QList<std::int32_t> pids;
    };

    virtual ~ActiveWindow() = default;

    /// False where the window system does not tell; then only the applications' own word remains.
    virtual bool isAvailable() = 0;
    /// Absent when no window that is on the screen is active. Never a floating panel of ours: while
    /// one has the keyboard, the window that it was lent by.
    virtual std::optional<Window> activeWindow() = 0;
    /// Where the window lies on the screen; absent when it is gone or nothing is known of it.
    virtual std::optional<WindowPlace> geometry(std::uint32_t window) = 0;
    /// Whether no program knows by itself where on the screen its window is, so that an element has
    /// a place only where geometry() knows that of its window.
    virtual bool isPlaceNeeded() { return false; }
    /// Whether a floating panel of ours has the keyboard of the active window at present.
    virtual bool isKeyboardLent() { return false; }
};

} // namespace platform::linux_
