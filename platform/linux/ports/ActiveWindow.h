// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <QList>
#include <QRect>

#include <cstdint>
#include <optional>

namespace platform::linux_
{

/// Which window has the keyboard, as the window system sees it: what an application says of itself
/// is not enough to believe it. Main thread only; no call waits for another application.
class ActiveWindow
{
public:
    struct Window {
        std::uint32_t id = 0;
        /// Processes that it may belong to, the most credible first: the window system's own
        /// knowledge before what the window says.
        QList<std::int32_t> pids;
    };

    virtual ~ActiveWindow() = default;

    /// False where the window system does not tell; then only the applications' own word remains.
    virtual bool isAvailable() = 0;
    /// Absent when no window is active.
    virtual std::optional<Window> activeWindow() = 0;
    /// Where the window's contents lie on the screen, in device pixels, without a shadow that the
    /// application draws around them.
    virtual std::optional<QRect> geometry(std::uint32_t window) = 0;
};

} // namespace platform::linux_
